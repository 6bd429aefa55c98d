#include "mainwindow/CommitPlay.h"

#include "pack/CustomCompleteDlg.h"
#include "pack/FinishDlg.h"
#include "pack/PackingWait.h"
#include "pack/WorkThread.h"

#include <QLabel>
#include <QLineEdit>

using windowplay::click;

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
        tick(dialog, "checkBox_cusSetup", packages & PackageSetup);
        tick(dialog, "checkBox_cusUpdate", packages & PackageUpdate);
        tick(dialog, "checkBox_cusCusUpd", packages & PackageCusUpd);
        pressOk(dialog);
    });
}

void expectReport(ModalScript& script, QString* line)
{
    script.expect<CustomCompleteDlg>([line](CustomCompleteDlg& dialog) {
        if (line)
            *line = child<QLabel>(dialog, "label_customSuccHint")->text();
        click(dialog, "pushButton_exit");
    });
}

QStringList commit(const OrvexManager& window, const QString& remark, int packages)
{
    ModalScript script;
    expectFinish(script, remark, packages);
    expectReport(script);
    script.tolerate<PackingWait>();
    click(window, "toolButton_finish");
    return script.complaints();
}

QStringList commitInVain(const OrvexManager& window, ShownBox& shown, const QString& remark)
{
    ModalScript script;
    expectFinish(script, remark);
    script.expect<QMessageBox>(answer(shown));
    click(window, "toolButton_finish");
    return script.complaints();
}
