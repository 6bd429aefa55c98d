#pragma once

#include "view/QShowVpnAdv.h"
#include "view/ShowDetailDlg.h"
#include "view/ViewPlayer.h"

#include <QLineEdit>

/// What the tests ask of an opened view.
template <class Dialog> class OpenView
{
public:
    QString field(const char* name) const { return windowplay::textOf(view(), name); }
    bool isOn(const char* name) const { return windowplay::isOn(view(), name); }
    /// The names among these whose widgets are enabled.
    QString enabledOf(const char* names) const
    {
        return windowplay::enabledOf(view(), viewplay::words(names)).join(QLatin1Char(' '));
    }

protected:
    ~OpenView() = default;
    virtual const Dialog& view() const = 0;
};

/// The detail view as its caller opens it, with the caller's record.
class OpenDetailView : public OpenView<ShowDetailDlg>
{
public:
    explicit OpenDetailView(const CustomInfo& info) : record(info), dialog(nullptr)
    {
        dialog.onInitDialog(record);
        dialog.show();
    }

    CustomInfo record;
    ShowDetailDlg dialog;

protected:
    const ShowDetailDlg& view() const override { return dialog; }
};

/// The VPN detail view as its caller opens it.
class OpenVpnView : public OpenView<QShowVpnAdv>
{
public:
    explicit OpenVpnView(const CustomInfo& info) : dialog(&holder)
    {
        holder.info = info;
        dialog.setInital();
        dialog.show();
    }

    windowplay::RecordHolder holder;
    QShowVpnAdv dialog;

protected:
    const QShowVpnAdv& view() const override { return dialog; }
};
