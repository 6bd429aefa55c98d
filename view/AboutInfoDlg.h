#pragma once

#include "ui_AboutInfoDlg.h"

#include <QDialog>

/// The About box. Its look depends on the brand of the installation.
class AboutInfoDlg : public QDialog
{
public:
    explicit AboutInfoDlg(QWidget* parent);
    ~AboutInfoDlg() override;

protected:
    /// Control+I shows the internal version. All other keys are dropped, Escape too: the button and the window's close
    /// control end the box.
    void keyPressEvent(QKeyEvent* event) override;

private:
    void setWindowText();
    void showBrand();

    Ui_AboutInfoDlg ui;
};
