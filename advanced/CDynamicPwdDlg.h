#pragma once

#include <QDialog>

#include "ui_CDynamicPwdDlg.h"

/// Asks how the client offers the dynamic password.
class CDynamicPwdDlg : public QDialog
{
    Q_OBJECT

public:
    explicit CDynamicPwdDlg(QWidget* parent = nullptr);

    quint8 defaultChecked = 0; // result: selected by default in the client
    quint8 changeEnable = 0;   // result: the user may change it

public slots:
    void OnBnClickedOk();

private:
    void setWindowText();

    Ui_CDynamicPwdDlg ui;
};
