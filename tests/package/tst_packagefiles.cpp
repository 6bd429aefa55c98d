#include "package/ProductBuild.h"
#include "support/TestEntry.h"

#include <QDir>
#include <QImage>
#include <QTemporaryDir>
#include <QtTest>

using product::Outcome;

static const QString place = QStringLiteral("opt/apps/com.manager.orvex.amd/files/");

class TstPackageFiles : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void lintianFindsNoError();
    void oneOverrideIsThereAndSaysWhy();
    void thePackageStatesItsVersionAndWhatItNeeds();
    void thePackageHoldsWhatADesktopLooksFor();
    void theCommandsAreTheProgramsOfTheirPlace();
    void neitherPackageHoldsClientTemplates();
    void theArchiveIsAnInstallationOfItsOwn();
    void theDocumentsOfBothPackagesLeadNowhereElse();

private:
    product::Packages m_packages;
    QTemporaryDir m_work;
    QString unpacked(const QString& relative) const { return m_work.filePath(QLatin1String("debian/") + relative); }
};

void TstPackageFiles::initTestCase()
{
    m_packages = product::makePackages();
    QVERIFY(!m_packages.debian.isEmpty());
    QVERIFY(!m_packages.archive.isEmpty());
    QCOMPARE(
        product::run(QStringLiteral("dpkg-deb"), {QStringLiteral("-x"), m_packages.debian, unpacked(QString())}).status,
        0);
}

void TstPackageFiles::lintianFindsNoError()
{
    const Outcome outcome =
        product::run(QStringLiteral("lintian"), {QStringLiteral("--fail-on"), QStringLiteral("error"),
                                                 QStringLiteral("--allow-root"), m_packages.debian});
    QVERIFY2(outcome.status == 0, qPrintable(outcome.output + outcome.errors));
    QVERIFY(!outcome.output.contains(QLatin1String("unused-override")));
}

void TstPackageFiles::oneOverrideIsThereAndSaysWhy()
{
    QStringList lines = product::textOf(unpacked(QStringLiteral("usr/share/lintian/overrides/orvex-manager")))
                            .split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    QCOMPARE(lines.takeLast(), QStringLiteral("orvex-manager: dir-or-file-in-opt"));
    QVERIFY(!lines.isEmpty());
    QCOMPARE(lines.filter(QRegularExpression(QStringLiteral("^# "))), lines);
}

void TstPackageFiles::thePackageStatesItsVersionAndWhatItNeeds()
{
    const auto field = [this](const char* name) {
        return product::run(QStringLiteral("dpkg-deb"), {QStringLiteral("-f"), m_packages.debian, QLatin1String(name)})
            .output.trimmed();
    };
    QCOMPARE(field("Package"), QStringLiteral("orvex-manager"));
    QCOMPARE(field("Version"), product::version());
    for (const char* library : {"libqt5widgets5", "libqt5xml5", "libqt5network5", "libarchive13", "libc6"})
        QVERIFY2(field("Depends").contains(QLatin1String(library)), library);
    for (const char* recommended : {"p7zip-full", "qttranslations5-l10n", "fonts-noto-cjk"})
        QVERIFY2(field("Recommends").contains(QLatin1String(recommended)), recommended);
}

void TstPackageFiles::thePackageHoldsWhatADesktopLooksFor()
{
    for (const char* file :
         {"usr/share/applications/com.manager.orvex.amd.desktop",
          "usr/share/metainfo/com.manager.orvex.amd.metainfo.xml", "usr/share/man/man1/orvex-manager.1.gz",
          "usr/share/man/man1/orvex-inspect.1.gz", "usr/share/bash-completion/completions/orvex-inspect",
          "usr/share/icons/hicolor/scalable/apps/com.manager.orvex.amd.svg", "usr/share/doc/orvex-manager/changelog.gz",
          "usr/share/doc/orvex-manager/copyright"})
        QVERIFY2(QFile::exists(unpacked(QLatin1String(file))), file);
    for (const int size : {16, 24, 32, 48, 64, 128, 256}) {
        const QImage icon(
            unpacked(QStringLiteral("usr/share/icons/hicolor/%1x%1/apps/com.manager.orvex.amd.png").arg(size)));
        QCOMPARE(icon.size(), QSize(size, size));
    }
}

void TstPackageFiles::theCommandsAreTheProgramsOfTheirPlace()
{
    for (const char* command : {"orvex-manager", "orvex-inspect"}) {
        const QString script = unpacked(QLatin1String("usr/bin/") + QLatin1String(command));
        QVERIFY(QFileInfo(script).isExecutable());
        QVERIFY(product::textOf(script).contains(QLatin1String("=/") + place.chopped(1)));
    }
    for (const char* file : {"OrvexManager", "orvex-inspect", "Resources/Language_en.xml", "Resources/Language_zh.xml"})
        QVERIFY2(QFile::exists(unpacked(place + QLatin1String(file))), file);
    // The program changes them; the package brings their first form elsewhere.
    QVERIFY(!QFile::exists(unpacked(place + QLatin1String("config.ini"))));
    QVERIFY(QFile::exists(unpacked(QStringLiteral("usr/share/orvex-manager/config.ini"))));
}

void TstPackageFiles::neitherPackageHoldsClientTemplates()
{
    const Outcome archive = product::run(QStringLiteral("tar"), {QStringLiteral("-tzf"), m_packages.archive});
    const Outcome debian = product::run(QStringLiteral("dpkg-deb"), {QStringLiteral("-c"), m_packages.debian});
    for (const Outcome& outcome : {archive, debian}) {
        QCOMPARE(outcome.status, 0);
        QVERIFY(outcome.output.contains(QLatin1String("OrvexManager")));
        QVERIFY(!outcome.output.contains(QLatin1String("OrvexClient")));
    }
}

void TstPackageFiles::theArchiveIsAnInstallationOfItsOwn()
{
    const QString directory = m_work.filePath(QStringLiteral("my 管理"));
    QVERIFY(QDir().mkpath(directory));
    QCOMPARE(product::run(QStringLiteral("tar"),
                          {QStringLiteral("-xzf"), m_packages.archive, QStringLiteral("-C"), directory})
                 .status,
             0);
    const QStringList top = QDir(directory).entryList(QDir::AllEntries | QDir::NoDotAndDotDot);
    QCOMPARE(top,
             QStringList{QLatin1String("orvex-manager-") + product::version() + QLatin1String("-" ORVEX_PROCESSOR)});
    const QString root = directory + QLatin1Char('/') + top.first() + QLatin1Char('/');
    for (const char* file : {"7za", "config.ini", "qt_zh_CN.qm", "Resources/Language_zh.xml",
                             "man/man1/orvex-manager.1", "completion/orvex-inspect", "template"})
        QVERIFY2(QFile::exists(root + QLatin1String(file)), file);

    const Outcome fields =
        product::run(root + QLatin1String("orvex-inspect"), {QStringLiteral("doctor"), QStringLiteral("--json")});
    QVERIFY(fields.output.contains(root));
    const Outcome told = product::run(root + QLatin1String("orvex-manager"), {QStringLiteral("--version")});
    QCOMPARE(told.output, QStringLiteral("orvex-manager %1\n").arg(product::version()));
}

void TstPackageFiles::theDocumentsOfBothPackagesLeadNowhereElse()
{
    const QDir archive(m_work.filePath(QStringLiteral("archive")));
    QVERIFY(QDir().mkpath(archive.path()));
    QCOMPARE(product::run(QStringLiteral("tar"), {QStringLiteral("-xzf"), m_packages.archive, QStringLiteral("-C"),
                                                  archive.path(), QStringLiteral("--strip-components=1")})
                 .status,
             0);
    for (const QString& root : {archive.path(), unpacked(QStringLiteral("usr/share/doc/orvex-manager"))}) {
        for (const char* name :
             {"README", "CHANGELOG", "docs/administrator", "docs/options", "docs/release-notes-1.0"}) {
            for (const char* tail : {".md", ".zh.md"})
                QVERIFY2(QFile::exists(root + QLatin1Char('/') + QLatin1String(name) + QLatin1String(tail)), name);
        }
        int links = 0;
        QDirIterator documents(root, {QStringLiteral("*.md")}, QDir::Files, QDirIterator::Subdirectories);
        while (documents.hasNext()) {
            const QFileInfo document(documents.next());
            QRegularExpressionMatchIterator targets =
                QRegularExpression(QStringLiteral("\\]\\((?![a-z]+:|#)([^)#]+)(#[^)]*)?\\)"))
                    .globalMatch(product::textOf(document.filePath()));
            for (; targets.hasNext(); ++links) {
                const QFileInfo target(document.dir(), targets.next().captured(1));
                QVERIFY2(target.exists(), qPrintable(document.fileName() + QLatin1String(": ") + target.filePath()));
                QVERIFY2(target.canonicalFilePath().startsWith(QFileInfo(root).canonicalFilePath() + QLatin1Char('/')),
                         qPrintable(target.filePath()));
            }
        }
        QVERIFY(links > 50);
    }
    const QString page = product::textOf(archive.filePath(QStringLiteral("docs/orvex-inspect.1.in")));
    QVERIFY(page.contains(QLatin1String("orvex-inspect ") + product::version()));
}

TEST_ENTRY(packagefiles, runGuilessTest<TstPackageFiles>)
#include "tst_packagefiles.moc"
