#include "advanced/CustomAdvProperty.h"
#include "app/widgets/WarningBox.h"
#include "mainwindow/MainWindowFixture.h"
#include "pack/CustomCompleteDlg.h"
#include "pack/FinishDlg.h"
#include "pack/PackingWait.h"
#include "pack/WorkThread.h"
#include "support/TestEntry.h"
#include "view/AboutInfoDlg.h"
#include "view/QShowVpnAdv.h"
#include "view/ShowDetailDlg.h"
#include "vpn/IpInfo.h"
#include "vpn/QVPNAdvProperty.h"

#include <QLayout>
#include <QScreen>

#include <memory>

// Stands before the library's: the advanced dialog is told of a screen on which it fits.
QSize QScreen::availableSize() const
{
    return {1280, 1024};
}

// The windows as they open, with their texts.
class TstOpenedWindows : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { prepareInstallation(); }
    void cleanup() { windowplay::useLanguage(QStringLiteral("en")); }

    void windowsOpenInTheSizesOfTheirForms_data();
    void windowsOpenInTheSizesOfTheirForms();
    void windowsGrowFromTheirFormsForTheirTextsAlone_data();
    void windowsGrowFromTheirFormsForTheirTextsAlone();
    void windowsWithoutSlotsSayWhatTheyDeriveFrom();
};

namespace {

/// The record that opens every page.
CustomInfo& fullRecord()
{
    static CustomInfo record = storedRecord(1700000000, QStringLiteral("2023-11-15 06:13:20"), QString(), 63, 5);
    return record;
}

/// Opener of the VPN dialogs.
QWidget* opener()
{
    static windowplay::RecordHolder holder;
    holder.info = fullRecord();
    return &holder;
}

using Opened = std::shared_ptr<QWidget>;
using Open = Opened (*)();

Opened openMainWindow()
{
    return std::make_shared<OrvexManager>(nullptr);
}

Opened openAdvanced()
{
    const auto dialog = std::make_shared<CustomAdvProperty>(nullptr);
    dialog->initalDialog(&fullRecord());
    return dialog;
}

Opened openVpn()
{
    const auto dialog = std::make_shared<QVPNAdvProperty>(opener());
    dialog->setInital();
    return dialog;
}

Opened openRoute()
{
    return std::make_shared<IpInfo>(nullptr);
}

Opened openFinish()
{
    const auto dialog = std::make_shared<FinishDlg>(nullptr);
    dialog->initalDialog(&fullRecord());
    return dialog;
}

Opened openProgress()
{
    return std::make_shared<PackingWait>(0, 0, nullptr);
}

Opened openReport()
{
    const auto dialog = std::make_shared<CustomCompleteDlg>(nullptr);
    dialog->initalDialog(PackageSetup + PackageUpdate + PackageCusUpd, true);
    return dialog;
}

Opened openDetails()
{
    const auto dialog = std::make_shared<ShowDetailDlg>(nullptr);
    dialog->onInitDialog(fullRecord());
    return dialog;
}

Opened openVpnDetails()
{
    const auto dialog = std::make_shared<QShowVpnAdv>(opener());
    dialog->setInital();
    return dialog;
}

Opened openAbout()
{
    return std::make_shared<AboutInfoDlg>(nullptr);
}

Opened opened(Open open)
{
    const Opened window = open();
    window->show();
    QCoreApplication::processEvents();
    return window;
}

/// The font that the forms are laid out for.
constexpr int formPoints = 9;

} // namespace

Q_DECLARE_METATYPE(Open)

void TstOpenedWindows::windowsOpenInTheSizesOfTheirForms_data()
{
    QTest::addColumn<QString>("language");
    QTest::addColumn<Open>("open");
    QTest::addColumn<QSize>("size");
    for (const char* language : {"en", "zh"}) {
        const auto row = [language](const char* name, Open open, int width, int height) {
            QTest::addRow("%s, %s", name, language) << QString::fromLatin1(language) << open << QSize(width, height);
        };
        row("main window", openMainWindow, 694, 551);
        row("route", openRoute, 260, 114);
        row("finish", openFinish, 418, 535);
        row("progress", openProgress, 283, 179);
    }
    // In Chinese its row of tabs is wider.
    QTest::newRow("advanced, en") << QStringLiteral("en") << Open(openAdvanced) << QSize(726, 991);
}

void TstOpenedWindows::windowsOpenInTheSizesOfTheirForms()
{
    QFETCH(QString, language);
    QFETCH(Open, open);
    windowplay::useLanguage(language);
    const ApplicationFont font(formPoints);
    QTEST(opened(open)->size(), "size");
}

void TstOpenedWindows::windowsGrowFromTheirFormsForTheirTextsAlone_data()
{
    QTest::addColumn<QString>("language");
    QTest::addColumn<Open>("open");
    QTest::addColumn<QSize>("form");
    QTest::addColumn<bool>("showsWrappedTexts"); // in full, whatever their lines take
    for (const char* language : {"en", "zh"}) {
        const auto row = [language](const char* name, Open open, int width, int height, bool wrapped = false) {
            QTest::addRow("%s, %s", name, language)
                << QString::fromLatin1(language) << open << QSize(width, height) << wrapped;
        };
        row("VPN", openVpn, 423, 360);
        row("report", openReport, 370, 456, true);
        row("details", openDetails, 435, 503);
        row("VPN details", openVpnDetails, 409, 370);
        row("about", openAbout, 316, 276);
    }
}

void TstOpenedWindows::windowsGrowFromTheirFormsForTheirTextsAlone()
{
    QFETCH(QString, language);
    QFETCH(Open, open);
    QFETCH(QSize, form);
    QFETCH(bool, showsWrappedTexts);
    windowplay::useLanguage(language);
    const ApplicationFont font(formPoints);
    const Opened window = opened(open);
    const QLayout* layout = window->layout();
    QSize needed = form.expandedTo(layout->totalMinimumSize());
    if (showsWrappedTexts)
        needed.setHeight(qMax(needed.height(), layout->totalHeightForWidth(needed.width())));
    QCOMPARE(window->size(), needed);
}

void TstOpenedWindows::windowsWithoutSlotsSayWhatTheyDeriveFrom()
{
    QCOMPARE(WarningBox("manager_title").metaObject()->className(), "QMessageBox");
    QCOMPARE(AboutInfoDlg(nullptr).metaObject()->className(), "QDialog");
}

TEST_ENTRY(openedwindows, playTest<TstOpenedWindows>)

#include "tst_openedwindows.moc"
