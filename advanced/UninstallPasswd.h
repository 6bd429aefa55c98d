#pragma once

#include <QDialog>

#include "ui_UninstallPasswd.h"

/// Asks for the password that uninstalling the client takes, or for the extended password in its place.
class UninstallPasswd : public QDialog
{
    Q_OBJECT

public:
    explicit UninstallPasswd(QWidget* parent = nullptr);

    QString password;           // result: exactly as typed; empty with the extended password
    quint32 extendPassword = 0; // result: 1 for the extended password

public slots:
    void onOkBtnClicked();

private:
    void setWindowText();

    Ui_UninstallPasswd ui;
};
