#pragma once

#include "view/QShowVpnAdv.h"
#include "view/ShowDetailDlg.h"
#include "view/ViewPlayer.h"

#include <QLineEdit>

/// What the tests ask of an opened view.
template <class Dialog> class OpenView
{
public:
    QString field(const char* name) const { return viewplay::child<QLineEdit>(view(), name)->text(); }
    bool isOn(const char* name) const { return viewplay::child<QAbstractButton>(view(), name)->isChecked(); }
    /// The names among these whose widgets are enabled.
    QString enabledOf(const char* names) const
    {
        QStringList enabled;
        for (const QByteArray& name : QByteArray(names).split(' ')) {
            if (viewplay::child<QWidget>(view(), name.constData())->isEnabled())
                enabled.append(QString::fromLatin1(name));
        }
        return enabled.join(QLatin1Char(' '));
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
