#include "screenshots/Complaints.h"
#include "screenshots/Look.h"
#include "screenshots/Visit.h"
#include "support/Installation.h"
#include "support/TestEntry.h"
#include "support/WindowPlay.h"

#include <QDirIterator>
#include <QRegularExpression>
#include <QSet>
#include <QWidget>

using windowplay::runTest;

/// Every window in the outermost looks that desktops give it. scripts/gallery.sh tries those between, and the scales.
class TstWindowsLook : public QObject
{
    Q_OBJECT

private slots:
    void everyWindowLooksRight_data();
    void everyWindowLooksRight();
    void longStoredTextsAreToldWhole_data();
    void longStoredTextsAreToldWhole();
};

namespace {

void prepare()
{
    installation::clear();
    installation::installLanguageFiles();
}

/// The names of the windows whose forms stand in the source tree.
QSet<QString> windowsOfForms()
{
    QSet<QString> names;
    for (const char* room : {"app", "advanced", "pack", "view", "vpn"}) {
        QDirIterator forms(QLatin1String(ORVEX_SOURCE_DIR "/") + QLatin1String(room), {QStringLiteral("*.ui")},
                           QDir::Files, QDirIterator::Subdirectories);
        while (forms.hasNext()) {
            const QString form = QString::fromUtf8(installation::readFile(forms.next()));
            const QRegularExpression widget(QStringLiteral("<widget class=\"\\w+\" name=\"(\\w+)\">"));
            names.insert(widget.match(form).captured(1));
        }
    }
    // The main window has a name of its own.
    if (names.remove(QStringLiteral("OrvexManagerClass")))
        names.insert(QStringLiteral("MainWindow"));
    return names;
}

} // namespace

void TstWindowsLook::everyWindowLooksRight_data()
{
    QTest::addColumn<QString>("language");
    QTest::addColumn<bool>("isDark");
    QTest::addColumn<int>("pointSize");
    for (const char* language : {"en", "zh"}) {
        for (bool isDark : {false, true}) {
            for (int pointSize : {9, 14}) {
                const Look look = {QLatin1String(language), isDark, pointSize};
                QTest::newRow(qPrintable(look.name())) << look.language << isDark << pointSize;
            }
        }
    }
}

void TstWindowsLook::everyWindowLooksRight()
{
    QFETCH(QString, language);
    QFETCH(bool, isDark);
    QFETCH(int, pointSize);
    const LookOfTheDesktop desktop({language, isDark, pointSize});
    QSet<QString> pages;
    QSet<QString> missing = windowsOfForms();
    QVERIFY(missing.size() > 15);
    QStringList complaints;
    visitEveryWindow(language, [&](const QString& page, QWidget& window) {
        pages.insert(page);
        missing.remove(window.objectName());
        for (const QString& complaint : complaintsAbout(window))
            complaints.append(page + QLatin1String(": ") + complaint);
    });
    QVERIFY2(missing.isEmpty(), qPrintable(QStringList(missing.values()).join(QLatin1Char(' '))));
    QVERIFY(pages.size() > 70);
    QVERIFY2(complaints.isEmpty(), complaints.join(QLatin1Char('\n')).toUtf8().constData());
}

void TstWindowsLook::longStoredTextsAreToldWhole_data()
{
    QTest::addColumn<QString>("language");
    QTest::newRow("English") << "en";
    QTest::newRow("Chinese") << "zh";
}

void TstWindowsLook::longStoredTextsAreToldWhole()
{
    QFETCH(QString, language);
    QStringList complaints;
    visitEveryWindowWithLongTexts(language, [&](const QString& page, QWidget& window) {
        for (const QString& complaint : complaintsAbout(window))
            complaints.append(page + QLatin1String(": ") + complaint);
    });
    QVERIFY2(complaints.isEmpty(), complaints.join(QLatin1Char('\n')).toUtf8().constData());
}

TEST_ENTRY(windowslook, runTest<TstWindowsLook, prepare>)

#include "tst_windowslook.moc"
