#pragma once

#include <QDialog>

#include "ui_KEFCusOpt.h"

/// Asks for the KEF proxy server and the option of USB monitoring.
class KEFCusOpt : public QDialog
{
    Q_OBJECT

public:
    explicit KEFCusOpt(QWidget* parent = nullptr);

    /// Sets all texts from the language table, the port to start with and the focus.
    void setWindowText();

    QString address;        // result: the proxy server
    QString port;           // result: its port, as text and unchecked
    bool customize = false; // result: USB monitoring starts before the registration

public slots:
    void onOk();

private:
    Ui_KEFCusOpt ui;
};
