#pragma once

#include <QDialog>

#include "ui_CMsgAuthDlg.h"

/// Asks how the client offers message authentication, and for the server of the messages.
class CMsgAuthDlg : public QDialog
{
    Q_OBJECT

public:
    explicit CMsgAuthDlg(QWidget* parent = nullptr);

    /// The narrow rule of isDottedAddress.
    static bool IsIPFormat(const QString& address);
    /// True for any address.
    static bool CheckIpAddr(QString& address);

    quint8 defaultChecked = 0; // result: selected by default in the client
    quint8 changeEnable = 0;   // result: the user may change it
    QString address;           // result: the server
    unsigned long port = 0;    // result: its port

public slots:
    void OnBnClickedOk();

private:
    void setWindowText();

    Ui_CMsgAuthDlg ui;
};
