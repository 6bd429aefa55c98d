#pragma once

#include "ui_FinishDlg.h"

#include <QDialog>

struct CustomInfo;

/// The last question before a commit: the remark on the customisation and the packages to make.
class FinishDlg : public QDialog
{
    Q_OBJECT

public:
    explicit FinishDlg(QWidget* parent);

    /// @param info  the record being committed, not owned; takes the remark when the dialog is accepted
    void initalDialog(CustomInfo* info);

    /// Packages to make, sum of PackageMask values.
    int m_iPackMask = 0;

public slots:
    /// Ok: adds to the mask, stores the remark, accepts.
    void showCompleteDlg();

private:
    Ui_FinishDlg ui;
    CustomInfo* m_pCustomInfo = nullptr;
};
