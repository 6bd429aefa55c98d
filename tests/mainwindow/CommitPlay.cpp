#include "mainwindow/CommitPlay.h"

#include "pack/CustomCompleteDlg.h"
#include "pack/FinishDlg.h"
#include "pack/PackingWait.h"
#include "pack/WorkThread.h"

#include <QLabel>
#include <QLineEdit>

QString inWorking(const QString& relative)
{
    return installation::path(QLatin1String("custom/") + relative);
}

QString inStored(const QString& relative)
{
    return inHistory(QString::number(commitMoment) + QLatin1Char('/') + relative);
}

QStringList documentFiles()
{
    return {QStringLiteral("OrvexCustom.xml"), QStringLiteral("OrvexCustomXml.vrf")};
}

void expectFinish(ModalScript& script, const QString& remark, int packages)
{
    script.expect<FinishDlg>([remark, packages](FinishDlg& dialog) {
        child<QLineEdit>(dialog, "lineEdit_addinfo")->setText(remark);
        setTicked(dialog, "checkBox_cusSetup", packages & PackageSetup);
        setTicked(dialog, "checkBox_cusUpdate", packages & PackageUpdate);
        setTicked(dialog, "checkBox_cusCusUpd", packages & PackageCusUpd);
        pressOk(dialog);
    });
}

void expectReport(ModalScript& script, QString* line)
{
    script.expect<CustomCompleteDlg>([line](CustomCompleteDlg& dialog) {
        if (line)
            *line = child<QLabel>(dialog, "label_customSuccHint")->text();
        press(dialog, "pushButton_exit");
    });
}

QStringList commit(const OrvexManager& window, const QString& remark, int packages)
{
    ModalScript script;
    expectFinish(script, remark, packages);
    expectReport(script);
    script.tolerate<PackingWait>();
    press(window, "toolButton_finish");
    return script.complaints();
}

QStringList commitInVain(const OrvexManager& window, ShownBox& shown, const QString& remark)
{
    ModalScript script;
    expectFinish(script, remark);
    script.expect<QMessageBox>(answer(shown));
    press(window, "toolButton_finish");
    return script.complaints();
}
