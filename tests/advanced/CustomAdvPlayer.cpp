#include "advanced/CustomAdvPlayer.h"

#include "support/DistinctRecord.h"

namespace advplay {

QString describe(const QMessageBox& box)
{
    const bool okIsDefault = box.defaultButton() && box.standardButton(box.defaultButton()) == QMessageBox::Ok;
    return QStringLiteral("[%1] %2 (icon %3, buttons %4, default %5)")
        .arg(box.windowTitle(), box.text(), QString::number(box.icon()),
             QString::number(int(box.standardButtons()), 16),
             okIsDefault ? QStringLiteral("ok") : QStringLiteral("other"));
}

QString warning(const char* titleKey, const char* textKey)
{
    const QString title = titleKey ? langText(titleKey) : QString();
    const QString text = langText(textKey);
    if (title == QLatin1String("NULL") || text == QLatin1String("NULL"))
        qFatal("no such key: %s or %s", titleKey ? titleKey : "", textKey);
    return QStringLiteral("[%1] %2 (icon %3, buttons %4, default ok)")
        .arg(title, text, QString::number(QMessageBox::Warning), QString::number(int(QMessageBox::Ok), 16));
}

CustomInfo recordFor(quint64 procomVal, quint64 funcomVal)
{
    CustomInfo info;
    info.common.procomVal = procomVal;
    info.common.funcomVal = funcomVal;
    return info;
}

CustomInfo settledRecord()
{
    CustomInfo record = distinctRecord();
    PortalOptionsInfo& portal = record.portal;
    for (quint32* flag : {&portal.keepConnPasswd, &portal.autoAuth, &portal.upVer, &portal.resumeConn,
                          &portal.advancedAuth, &portal.advancedAuthType})
        *flag = 1;
    X1OptionsInfo& x1 = record.x1;
    for (quint32* flag : {&x1.keepConnPasswd, &x1.autoAuth, &x1.upVer, &x1.upIp, &x1.broadLogOff, &x1.x1ResumeConn,
                          &x1.refreshIPAftCut, &x1.advancedAuth, &x1.advancedAuthType})
        *flag = 1;
    x1.unicastType = 0;
    BasicFunctionInfo& function = record.function;
    for (quint32* flag : {&function.acl, &function.drvErr, &function.msgAuthOpt, &function.passwordProtection,
                          &function.wanControlEscape})
        *flag = 1;
    function.dynamicPwdVerify = 0;
    record.sslvpn.defaultAddress = 2;
    record.sslvpn.authDefaultMode = 1;
    record.sslvpn.TLSVersion = 1;
    record.domain.domainForce = 1;
    IPSECVPNBASECFG& base = record.vpn.basecfg;
    for (quint64* flag : {&base.useIPSEC, &base.upVersion, &base.resumConn})
        *flag = 1;
    base.LNSAsIPSECServer = 0;
    base.preSharedKey = QStringLiteral("pre-shared key");
    record.vpn.ikecfg.IKEAuthMethod = QStringLiteral("PRE-SHARE");
    record.vpn.ipseccfg.IPSECEncapsulationMode = QStringLiteral("Tunnel");
    record.zoa.useZOA = 1;
    return record;
}

QStringList changes(const CustomInfo& before, const CustomInfo& after)
{
    return differences(before, after);
}

OpenDialog::OpenDialog(const CustomInfo& start) : info(start), dialog(nullptr)
{
    dialog.initalDialog(&info);
    dialog.show();
    QCoreApplication::processEvents();
}

void OpenDialog::expectBox()
{
    script.expect<QMessageBox>([this](QMessageBox& box) {
        m_boxes.append(describe(box));
        QTest::mouseClick(box.button(QMessageBox::Ok), Qt::LeftButton);
    });
}

QStringList OpenDialog::shown() const
{
    return m_boxes + script.complaints();
}

// By keys, as a user would: from the first item downwards.
void OpenDialog::choose(const char* name, int index)
{
    QComboBox* combo = widget<QComboBox>(name);
    bringToFront(combo);
    combo->setFocus();
    QTest::keyClick(combo, Qt::Key_Home);
    for (int step = 0; step < index; ++step)
        QTest::keyClick(combo, Qt::Key_Down);
}

void OpenDialog::selectRow(const char* name, int row)
{
    QTreeWidget* tree = widget<QTreeWidget>(name);
    bringToFront(tree);
    QTreeWidgetItem* item = tree->topLevelItem(row);
    tree->scrollToItem(item);
    QTest::mouseClick(tree->viewport(), Qt::LeftButton, Qt::NoModifier, tree->visualItemRect(item).center());
}

QStringList OpenDialog::rowsOf(const char* name) const
{
    const QTreeWidget* tree = widget<QTreeWidget>(name);
    QStringList rows;
    for (int row = 0; row < tree->topLevelItemCount(); ++row) {
        QStringList texts;
        for (int column = 0; column < tree->columnCount(); ++column)
            texts.append(tree->topLevelItem(row)->text(column));
        rows.append(texts.join(QLatin1Char('|')));
    }
    return rows;
}

QStringList OpenDialog::tickedOf(const QStringList& names) const
{
    QStringList ticked;
    for (const QString& name : names) {
        if (isOn(name.toLatin1().constData()))
            ticked.append(name);
    }
    return ticked;
}

QStringList OpenDialog::tabs() const
{
    const QTabWidget* tabWidget = widget<QTabWidget>("tabWidget");
    QStringList names;
    for (int index = 0; index < tabWidget->count(); ++index)
        names.append(tabWidget->widget(index)->objectName());
    return names;
}

} // namespace advplay
