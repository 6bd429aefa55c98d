#pragma once

#include "ui_CustomCompleteDlg.h"

#include <QDialog>

/// The closing report: what was asked for, and for each kind of package a button that opens its directory. The main
/// window's view commands show one of its rows alone.
class CustomCompleteDlg : public QDialog
{
    Q_OBJECT

public:
    explicit CustomCompleteDlg(QWidget* parent);

    /// @param mask             rows to show, sum of PackageMask values
    /// @param showSuccessLine  whether the line that tells what was made stands above the rows
    void initalDialog(int mask, bool showSuccessLine);

public slots:
    void onViewSetup();
    void onViewUpdate();
    void onViewCusUpd();

private:
    void openDirectory(const char* name);

    Ui_CustomCompleteDlg ui;
};
