#include "mainwindow/MainWindowFixture.h"

#include "app/language/LangText.h"
#include "view/ShowDetailDlg.h"
#include "xml/CustomInfo.h"

#include <QCheckBox>
#include <QDialogButtonBox>
#include <QListWidget>
#include <QPushButton>
#include <QTextDocument>

using windowplay::click;

void prepareInstallation()
{
    installation::clear();
    installation::installLanguageFiles();
    writeSettings("Area=tqm\nLangCode=1033\n");
    g_ucAreaCode = 0;
    frozenTime = 0;
    isFrozenTimeTicking = false;
}

void writeSettings(const QByteArray& lines)
{
    installation::writeFile(installation::path(QStringLiteral("config.ini")), "[config]\n" + lines);
}

void pressOk(QWidget& dialog, const char* boxName)
{
    QTest::mouseClick(child<QDialogButtonBox>(dialog, boxName)->button(QDialogButtonBox::Ok), Qt::LeftButton);
}

void pressCancel(QWidget& dialog, const char* boxName)
{
    QTest::mouseClick(child<QDialogButtonBox>(dialog, boxName)->button(QDialogButtonBox::Cancel), Qt::LeftButton);
}

QStringList tickedBoxes(const QWidget& window)
{
    const char* const names[] = {"checkBox_8021xPro", "checkBox_portalPro",   "checkBox_sslvpnPro",
                                 "checkBox_wlanPro",  "checkBox_ipsecvpnPro", "checkBox_zoaPro",
                                 "checkBox_zoafunc",  "checkBox_keffunc"};
    QStringList ticked;
    for (const char* name : names) {
        if (child<QCheckBox>(window, name)->isChecked())
            ticked.append(QString::fromLatin1(name).mid(9));
    }
    return ticked;
}

std::function<void(QMessageBox&)> answer(ShownBox& shown, QMessageBox::StandardButton button)
{
    return [&shown, button](QMessageBox& box) {
        shown = windowplay::shown(box);
        QTest::mouseClick(box.button(button), Qt::LeftButton);
    };
}

bool isWarning(const ShownBox& shown, const OrvexManager& window, const char* textKey)
{
    return shown.parent == &window && shown.title == langText("manager_title") && shown.text == langText(textKey) &&
           shown.text != QLatin1String("NULL") && shown.icon == QMessageBox::Warning &&
           shown.buttons == QMessageBox::Ok && shown.defaultButton == QMessageBox::Ok;
}

bool pressWarns(const OrvexManager& window, const char* buttonName, const char* textKey)
{
    ShownBox shown;
    ModalScript script;
    script.expect<QMessageBox>(answer(shown));
    click(window, buttonName);
    return script.complaints().isEmpty() && isWarning(shown, window, textKey);
}

QString inHistory(const QString& relative)
{
    return installation::path(QLatin1String("UpdateCustom/") + relative);
}

void storeRow(quint64 timeStamp, const char* timeString, const char* remark, const QString& name)
{
    storeCustomisation(installation::root(),
                       storedRecord(timeStamp, QString::fromLatin1(timeString), QString::fromUtf8(remark)), name);
}

QTreeWidget* historyTree(const OrvexManager& window)
{
    return child<QTreeWidget>(window, "treeWidget_cusHis");
}

QStringList shownTimes(const OrvexManager& window)
{
    QStringList times;
    for (int row = 0; row < historyTree(window)->topLevelItemCount(); ++row)
        times.append(historyTree(window)->topLevelItem(row)->text(0));
    return times;
}

int rowOf(const OrvexManager& window, const char* timeString)
{
    return shownTimes(window).indexOf(QString::fromLatin1(timeString));
}

void clickRow(const OrvexManager& window, int row)
{
    child<QListWidget>(window, "listWidget")->setCurrentRow(1);
    QTreeWidget* tree = historyTree(window);
    QTest::mouseClick(tree->viewport(), Qt::LeftButton, Qt::NoModifier,
                      tree->visualItemRect(tree->topLevelItem(row)).center());
}

QString readToolTip(const QString& toolTip)
{
    if (!Qt::mightBeRichText(toolTip))
        return toolTip;
    QTextDocument document;
    document.setHtml(toolTip);
    return document.toPlainText();
}

QString titleOfDetails(const OrvexManager& window)
{
    QString title;
    ModalScript script;
    script.expect<ShowDetailDlg>([&](ShowDetailDlg& dialog) {
        if (dialog.parent() == &window)
            title = dialog.windowTitle();
        click(dialog, "toolButton");
    });
    click(window, "toolButton_detail");
    return script.complaints().isEmpty() ? title : QString();
}
