#pragma once

#include <QDialog>

#include <memory>

class Ui_inputDomain;
struct SUIDomainInfo;

/// Asks for one 802.1X domain: its name, its description, and whether it is the default.
class CInput1XDomainDlg : public QDialog
{
    Q_OBJECT

public:
    /// @param info             the list for the duplicate test; must outlive the dialog
    /// @param hasDefault       not 0 when the list has a default already, which disables the box for it
    /// @param shownDomain      the name to start with
    /// @param shownDescription the description to start with
    /// @param startChecked     whether the box for the default starts ticked
    /// @param checkDuplicates  whether an entry that `info` has already is refused
    CInput1XDomainDlg(SUIDomainInfo& info, unsigned long hasDefault, const QString& shownDomain,
                      const QString& shownDescription, bool startChecked, bool checkDuplicates, QWidget* parent);
    ~CInput1XDomainDlg() override;

    unsigned long defaultExists; // at first whether the list has a default; later the result, 1 for the default domain
    QString domain;              // result
    QString description;         // result

public slots:
    void OnBnClickedOk();

private:
    void setWindowText();

    SUIDomainInfo& m_info;
    bool m_bCheckDuplicates;
    std::unique_ptr<Ui_inputDomain> ui;
};
