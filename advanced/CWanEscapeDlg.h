#pragma once

#include <QDialog>

#include "ui_CWanEscapeDlg.h"

/// Asks for the servers that the client tries when it escapes from WAN control.
class CWanEscapeDlg : public QDialog
{
    Q_OBJECT

public:
    explicit CWanEscapeDlg(QWidget* parent = nullptr);

    // The results, written only when all of them have passed.
    QString address;       // management server
    QString port;          // its port, as text
    QString dnsAddress;    // DNS server
    QString backupAddress; // backup management server, may be empty

public slots:
    void onOk();

private:
    void setWindowText();

    Ui_CWanEscapeDlg ui;
};
