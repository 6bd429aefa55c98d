#pragma once

#include "ui_QShowVpnAdv.h"

#include <QDialog>

struct CustomInfo;

/// The read-only twin of the VPN advanced settings. It shows the record of its parent, a CustomInfoHolder; without one
/// the pages stay as the form has them.
class QShowVpnAdv : public QDialog
{
    Q_OBJECT

public:
    explicit QShowVpnAdv(QWidget* parent);
    ~QShowVpnAdv() override;

    /// Fills everything. Called once, before exec().
    void setInital();

protected:
    /// Return presses the button that has the focus and does nothing elsewhere.
    void keyPressEvent(QKeyEvent* event) override;

public slots:
    void OnTunnelAuthChk() { undoClick(ui.checkBox_TunnelAuthOn); }
    void OnAVPHidChk() { undoClick(ui.checkBox_AVPHidden); }
    void OnUsePFSChk() { undoClick(ui.checkBox_UsePFS); }
    void OnUseNATChk() { undoClick(ui.checkBox_UseNAT); }
    void OnKeepAliveOnChk() { undoClick(ui.checkBox_KeepAliveOn); }
    void OnKeepAliveTimeoutChk() { undoClick(ui.checkBox_KeepAliveTimeout); }

private:
    void setWindowText();
    void setL2tpInit();
    void setIPsecInit();
    void setIkeInit();
    void setRouteInit();

    const CustomInfo* record() const;
    void undoClick(QCheckBox* box);

    Ui_QShowVpnAdv ui;
};
