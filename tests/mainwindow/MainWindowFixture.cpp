#include "mainwindow/MainWindowFixture.h"

#include "app/LangText.h"
#include "xml/CustomInfo.h"

#include <QAbstractButton>
#include <QCheckBox>
#include <QDialogButtonBox>
#include <QPushButton>

#include <ctime>

time_t frozenTime = 0;

extern "C" time_t time(time_t* out) noexcept
{
    timespec now = {};
    clock_gettime(CLOCK_REALTIME, &now);
    const time_t seconds = frozenTime != 0 ? frozenTime : now.tv_sec;
    if (out)
        *out = seconds;
    return seconds;
}

void prepareInstallation()
{
    installation::clear();
    installation::installLanguageFiles();
    writeSettings("Area=tqm\nLangCode=1033\n");
    g_ucAreaCode = 0;
    frozenTime = 0;
}

void writeSettings(const QByteArray& lines)
{
    installation::writeFile(installation::path(QStringLiteral("config.ini")), "[config]\n" + lines);
}

void press(const QWidget& window, const char* buttonName)
{
    QTest::mouseClick(child<QAbstractButton>(window, buttonName), Qt::LeftButton);
}

void setTicked(const QWidget& window, const char* boxName, bool ticked)
{
    QCheckBox* box = child<QCheckBox>(window, boxName);
    if (box->isChecked() != ticked)
        QTest::mouseClick(box, Qt::LeftButton, Qt::NoModifier, QPoint(8, box->height() / 2));
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
    const char* const names[] = {"checkBox_8021xPro",    "checkBox_portalPro", "checkBox_sslvpnPro",
                                 "checkBox_wlanPro",     "checkBox_ipsecvpnPro", "checkBox_zoaPro",
                                 "checkBox_zoafunc",     "checkBox_keffunc"};
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
        shown.title = box.windowTitle();
        shown.text = box.text();
        shown.icon = box.icon();
        shown.buttons = box.standardButtons();
        shown.defaultButton = box.standardButton(box.defaultButton());
        QTest::mouseClick(box.button(button), Qt::LeftButton);
    };
}

bool isWarning(const ShownBox& shown, const char* textKey, const char* titleKey)
{
    return shown.title == langText(titleKey) && shown.text == langText(textKey) && shown.text != QLatin1String("NULL") &&
           shown.icon == QMessageBox::Warning && shown.buttons == QMessageBox::Ok &&
           shown.defaultButton == QMessageBox::Ok;
}

CustomInfo storedRecord(quint64 timeStamp, const QString& timeString, const QString& remark, quint64 procomVal,
                        quint64 funcomVal)
{
    CustomInfo record;
    record.common.cusTimeStamp = timeStamp;
    record.common.cusTimeString = timeString;
    record.common.cusAddInfo = remark;
    record.common.procomVal = procomVal;
    record.common.funcomVal = funcomVal;
    return record;
}
