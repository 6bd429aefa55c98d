#include "app/widgets/WarningBox.h"
#include "mainwindow/MainWindowFixture.h"
#include "support/EveryWindow.h"
#include "support/TestEntry.h"
#include "view/AboutInfoDlg.h"

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

std::shared_ptr<QWidget> opened(const QString& name)
{
    static Contents contents;
    contents = {storedRecord(1700000000, QStringLiteral("2023-11-15 06:13:20"), QString(), 63, 5), {}};
    const std::shared_ptr<QWidget> window = openWindow(name, contents);
    window->show();
    QCoreApplication::processEvents();
    return window;
}

/// The font that the forms are laid out for.
constexpr int formPoints = 9;

} // namespace

void TstOpenedWindows::windowsOpenInTheSizesOfTheirForms_data()
{
    QTest::addColumn<QString>("language");
    QTest::addColumn<QString>("window");
    QTest::addColumn<QSize>("size");
    for (const char* language : {"en", "zh"}) {
        const auto row = [language](const char* name, int width, int height) {
            QTest::addRow("%s, %s", name, language)
                << QString::fromLatin1(language) << QString::fromLatin1(name) << QSize(width, height);
        };
        row("main", 694, 551);
        row("route", 260, 114);
        row("finish", 418, 535);
        row("progress", 283, 179);
    }
    // In Chinese its row of tabs is wider.
    QTest::newRow("advanced, en") << QStringLiteral("en") << QStringLiteral("advanced") << QSize(726, 991);
}

void TstOpenedWindows::windowsOpenInTheSizesOfTheirForms()
{
    QFETCH(QString, language);
    QFETCH(QString, window);
    windowplay::useLanguage(language);
    const ApplicationFont font(formPoints);
    QTEST(opened(window)->size(), "size");
}

void TstOpenedWindows::windowsGrowFromTheirFormsForTheirTextsAlone_data()
{
    QTest::addColumn<QString>("language");
    QTest::addColumn<QString>("window");
    QTest::addColumn<QSize>("form");
    QTest::addColumn<bool>("showsWrappedTexts"); // in full, whatever their lines take
    for (const char* language : {"en", "zh"}) {
        const auto row = [language](const char* name, int width, int height, bool wrapped = false) {
            QTest::addRow("%s, %s", name, language)
                << QString::fromLatin1(language) << QString::fromLatin1(name) << QSize(width, height) << wrapped;
        };
        row("vpn", 423, 360);
        row("report-7", 370, 456, true);
        row("details", 435, 503);
        row("vpn-details", 409, 370);
        row("about-tqm", 316, 276);
    }
}

void TstOpenedWindows::windowsGrowFromTheirFormsForTheirTextsAlone()
{
    QFETCH(QString, language);
    QFETCH(QString, window);
    QFETCH(QSize, form);
    QFETCH(bool, showsWrappedTexts);
    windowplay::useLanguage(language);
    const ApplicationFont font(formPoints);
    const std::shared_ptr<QWidget> shown = opened(window);
    const QLayout* layout = shown->layout();
    QSize needed = form.expandedTo(layout->totalMinimumSize());
    if (showsWrappedTexts)
        needed.setHeight(qMax(needed.height(), layout->totalHeightForWidth(needed.width())));
    QCOMPARE(shown->size(), needed);
}

void TstOpenedWindows::windowsWithoutSlotsSayWhatTheyDeriveFrom()
{
    QCOMPARE(WarningBox("manager_title").metaObject()->className(), "QMessageBox");
    QCOMPARE(AboutInfoDlg(nullptr).metaObject()->className(), "QDialog");
}

TEST_ENTRY(openedwindows, playTest<TstOpenedWindows>)

#include "tst_openedwindows.moc"
