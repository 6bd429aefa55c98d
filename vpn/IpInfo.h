#pragma once

#include "ui_IpInfo.h"

#include <QDialog>

/// Asks for one route. On failure it stays open.
class IpInfo : public QDialog
{
    Q_OBJECT

public:
    explicit IpInfo(QWidget* parent);

    bool IsIPFormat(const QString& address) const;

    QString m_strIp;   // as typed; set by each press of Ok, refused texts included
    QString m_strMask; // likewise

public slots:
    void onOk();

private:
    Ui_IpInfo ui;
};
