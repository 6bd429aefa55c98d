#pragma once

#include <QDialog>

#include "ui_WancontrolDlg.h"

/// Asks for the filter action of all network cards while the client is off line.
class WancontrolDlg : public QDialog
{
    Q_OBJECT

public:
    explicit WancontrolDlg(QWidget* parent = nullptr);

    quint32 passAction = 1; // result: 1 pass, 0 discard

public slots:
    void onOk();

private:
    void setWindowText();

    Ui_WancontrolDlg ui;
};
