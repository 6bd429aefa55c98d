#include "support/Installation.h"

#include "support/CommandRecorder.h"

#include <QCoreApplication>
#include <QCryptographicHash>
#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QMap>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

#include <cstdio>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace installation {

QString root()
{
    return QFileInfo(QStringLiteral("/proc/self/exe")).canonicalPath() + QLatin1Char('/');
}

QString path(const QString& relative)
{
    return root() + relative;
}

void clear()
{
    const QStringList names = {QStringLiteral("Log"),          QStringLiteral("custom"),
                               QStringLiteral("UpdateCustom"), QStringLiteral("template"),
                               QStringLiteral("OrvexSetup"),   QStringLiteral("OrvexUpdate"),
                               QStringLiteral("OrvexCusUpd"),  QStringLiteral("config.ini"),
                               QStringLiteral("7za"),          QStringLiteral("Orvex.vif")};
    for (const QString& name : names) {
        const QFileInfo info(path(name));
        if (info.isDir() && !info.isSymLink())
            QDir(info.filePath()).removeRecursively();
        else
            QFile::remove(info.filePath());
    }
}

void installLanguageFiles()
{
    QDir().mkpath(path(QStringLiteral("Resources")));
    for (const QString& name : {QStringLiteral("Language_en.xml"), QStringLiteral("Language_zh.xml")}) {
        const QString target = path(QLatin1String("Resources/") + name);
        QFile::remove(target);
        QVERIFY(QFile::copy(QStringLiteral(ORVEX_SOURCE_DIR "/Resources/") + name, target));
    }
}

void installArchiver()
{
    const QString target = path(QStringLiteral("7za"));
    QFile::remove(target);
    QVERIFY(QFile::copy(QStringLiteral(ORVEX_ARCHIVER), target));
}

void makeSmallTemplate(const QString& name, const QString& topLevel)
{
    const QString work = path(QStringLiteral("template/making"));
    QDir(work).removeRecursively();
    writeFile(work + QLatin1Char('/') + topLevel + QLatin1String("/bin/client"), "#!/bin/sh\necho client\n");
    writeFile(work + QLatin1Char('/') + topLevel + QStringLiteral("/share/说明 文档.txt"), "read me\n");
    if (topLevel.endsWith(QLatin1String(".pkg")))
        writeFile(work + QLatin1Char('/') + topLevel + QLatin1String("/Contents/Info.plist"), "<plist/>\n");
    run(QStringLiteral("tar"),
        {QStringLiteral("-czf"), path(QLatin1String("template/") + name + QLatin1String(".tar.gz")),
         QStringLiteral("-C"), work, topLevel});
    QDir(work).removeRecursively();
}

void writeFile(const QString& absolutePath, const QByteArray& content)
{
    QDir().mkpath(QFileInfo(absolutePath).path());
    QFile file(absolutePath);
    QVERIFY2(file.open(QIODevice::WriteOnly | QIODevice::Truncate), qPrintable(absolutePath));
    QCOMPARE(file.write(content), qint64(content.size()));
}

QByteArray readFile(const QString& absolutePath)
{
    QFile file(absolutePath);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QByteArray log()
{
    QByteArray all;
    const QDir directory(path(QStringLiteral("Log")));
    for (const QString& name : directory.entryList({QStringLiteral("MainUI*.log")}, QDir::Files, QDir::Name))
        all += readFile(directory.filePath(name));
    return all;
}

void clearLog()
{
    QDir(path(QStringLiteral("Log"))).removeRecursively();
}

QStringList logMessages(const QString& tag)
{
    QStringList messages;
    const QString marker = QLatin1Char(' ') + tag;
    for (const QString& line : QString::fromLocal8Bit(log()).split(QLatin1Char('\n'))) {
        // The time takes 19 columns, the tag stands right behind it.
        if (line.midRef(19, marker.size()) == marker)
            messages.append(line.mid(19 + marker.size()));
    }
    return messages;
}

QByteArray run(const QString& program, const QStringList& arguments, const QString& workingDirectory)
{
    QProcess process;
    if (!workingDirectory.isEmpty())
        process.setWorkingDirectory(workingDirectory);
    process.start(program, arguments);
    if (!process.waitForFinished(120000) || process.exitStatus() != QProcess::NormalExit || process.exitCode() != 0) {
        const QByteArray problem = program.toLocal8Bit() + ": " + process.readAllStandardError();
        QTest::qFail(problem.constData(), __FILE__, __LINE__);
    }
    return process.readAllStandardOutput();
}

void makeMixedTemplate(const QString& name, const QString& topLevel)
{
    // Packed once in a process, since most tests of the generators begin with two.
    static QMap<QString, QByteArray> made;
    const QString archive = path(QLatin1String("template/") + name + QLatin1String(".tar.gz"));
    if (made.contains(topLevel)) {
        writeFile(archive, made.value(topLevel));
        return;
    }
    const QString work = path(QStringLiteral("template/making"));
    const QString top = work + QLatin1Char('/') + topLevel;
    QDir(work).removeRecursively();
    QByteArray allBytes;
    for (int value = 0; value < 256; ++value)
        allBytes.append(static_cast<char>(value));
    writeFile(top + QStringLiteral("/bin/client"), "#!/bin/sh\necho client\n");
    writeFile(top + QStringLiteral("/bin/helper"), allBytes);
    writeFile(top + QStringLiteral("/etc/client.conf"), "[client]\n");
    writeFile(top + QStringLiteral("/share/说明 文档 (一).txt"), "read me\n");
    writeFile(top + QStringLiteral("/share/$HOME `name'.txt"), "odd name\n");
    writeFile(top + QStringLiteral("/.release"), "7.2\n");
    writeFile(top + QStringLiteral("/empty.dat"), QByteArray());
    writeFile(top + QStringLiteral("/Contents/Info.plist"), "<plist/>\n");
    QVERIFY(QDir().mkpath(top + QStringLiteral("/var/log")));
    QVERIFY(QFile::link(QStringLiteral("client"), top + QStringLiteral("/bin/orvex")));
    QVERIFY(QFile::link(QStringLiteral("sessions/none"), top + QStringLiteral("/var/last")));
    const auto setMode = [&top](const char* file, mode_t mode) {
        QCOMPARE(chmod(QFile::encodeName(top + QLatin1String(file)).constData(), mode), 0);
    };
    setMode("/bin/client", 0755);
    setMode("/bin/helper", 0700);
    setMode("/etc/client.conf", 0444);
    run(QStringLiteral("tar"), {QStringLiteral("-czf"), archive, QStringLiteral("-C"), work, topLevel});
    QDir(work).removeRecursively();
    made.insert(topLevel, readFile(archive));
}

void makeSampleTemplates()
{
    // Made once in a process. Their names, links and modes are those of the template of the demonstration; its size is
    // left to the test of the whole road.
    static const QTemporaryDir made;
    if (namesIn(made.path()).isEmpty())
        run(QStringLiteral("env"), {QStringLiteral("ORVEX_TEMPLATE_MIB=2"),
                                    QStringLiteral(ORVEX_SOURCE_DIR "/scripts/make-sample-template.sh"), made.path()});
    for (const QString& name : namesIn(made.path()))
        writeFile(path(QLatin1String("template/") + name), readFile(made.filePath(name)));
}

void makeCustomisation(const QByteArray& edition)
{
    const QString custom = path(QStringLiteral("custom"));
    QDir(custom).removeRecursively();
    QByteArray bytes;
    for (int value = 0; value < 256; ++value)
        bytes.append(static_cast<char>(255 - value));
    writeFile(custom + QLatin1String("/OrvexCustom.xml"),
              "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<msg>\n <content>" + edition + "</content>\n</msg>\n");
    writeFile(custom + QLatin1String("/OrvexCustomXml.vrf"), bytes);
    writeFile(custom + QLatin1String("/DeskIconLinux.png"), "\x89PNG\r\n\x1a\n" + bytes.repeated(40));
    writeFile(custom + QLatin1String("/DeskIconMacos.icns"), "icns" + bytes.repeated(70));
    writeFile(custom + QLatin1String("/MainIcon.ico"), QByteArray("\0\0\1\0", 4) + bytes.repeated(20));
    writeFile(custom + QStringLiteral("/备注 1"), edition);
}

QStringList describeTree(const QString& directory)
{
    QStringList lines;
    QDirIterator entries(directory, QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot,
                         QDirIterator::Subdirectories);
    while (entries.hasNext()) {
        const QString entry = entries.next();
        struct stat status = {};
        if (lstat(QFile::encodeName(entry).constData(), &status) != 0)
            QTest::qFail(qPrintable(entry), __FILE__, __LINE__);
        const QString mode = QStringLiteral("%1").arg(status.st_mode & 07777, 4, 8, QLatin1Char('0'));
        QString line = entry.mid(directory.size() + 1);
        if (S_ISLNK(status.st_mode)) {
            char target[4096];
            const ssize_t length = readlink(QFile::encodeName(entry).constData(), target, sizeof target);
            line += QLatin1String(" link ") + QFile::decodeName(QByteArray(target, qMax(0, int(length))));
        } else if (S_ISDIR(status.st_mode)) {
            line += QLatin1String(" directory ") + mode;
        } else {
            const QByteArray digest = QCryptographicHash::hash(readFile(entry), QCryptographicHash::Sha1).toHex();
            line += QLatin1String(" file ") + mode + QLatin1Char(' ') + QString::fromLatin1(digest);
        }
        lines.append(line);
    }
    lines.sort();
    return lines;
}

QStringList namesIn(const QString& directory)
{
    return QDir(directory).entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot, QDir::Name);
}

void unpackTar(const QString& archive, const QString& directory)
{
    QDir(directory).removeRecursively();
    QVERIFY(QDir().mkpath(directory));
    run(QStringLiteral("tar"), {QStringLiteral("-xzf"), archive, QStringLiteral("-C"), directory});
}

void unpackZip(const QString& archive, const QString& directory)
{
    QDir(directory).removeRecursively();
    QVERIFY(QDir().mkpath(directory));
    run(QStringLiteral(ORVEX_ARCHIVER), {QStringLiteral("x"), QStringLiteral("-y"), archive}, directory);
}

void comparePackage(const QString& package, const QString& archiveOfTemplate, const QString& client)
{
    const QTemporaryDir work(path(QStringLiteral("compare-XXXXXX")));
    QVERIFY(work.isValid());
    const QString unpackedTemplate = work.filePath(QStringLiteral("template"));
    const QString unpackedPackage = work.filePath(QStringLiteral("package"));
    unpackTar(archiveOfTemplate, unpackedTemplate);
    unpackTar(package, unpackedPackage);
    const QString custom = unpackedPackage + QLatin1Char('/') + client + QLatin1String("/custom");
    const QStringList customisation = describeTree(custom);
    QVERIFY(!customisation.isEmpty());
    QCOMPARE(customisation, describeTree(path(QStringLiteral("custom"))));
    QVERIFY(QDir(custom).removeRecursively());
    const QStringList rest = describeTree(unpackedPackage);
    QVERIFY(rest.size() > 10);
    QCOMPARE(rest, describeTree(unpackedTemplate));
}

QStringList tarMembers(const QString& archive)
{
    const QByteArray listing =
        run(QStringLiteral("tar"), {QStringLiteral("--quoting-style=literal"), QStringLiteral("-tzf"), archive});
    return QFile::decodeName(listing).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
}

QStringList zipMembers(const QString& archive)
{
    const QByteArray listing = run(QStringLiteral(ORVEX_ARCHIVER),
                                   {QStringLiteral("l"), QStringLiteral("-ba"), QStringLiteral("-slt"), archive});
    QStringList members;
    for (const QString& line : QFile::decodeName(listing).split(QLatin1Char('\n'))) {
        if (line.startsWith(QLatin1String("Path = ")))
            members.append(line.mid(7));
    }
    return members;
}

QString withoutRoot(const QByteArray& text)
{
    return QString::fromLocal8Bit(text).replace(root(), QLatin1String("{root}"));
}

QStringList withoutRoot(const QByteArrayList& lines)
{
    QStringList all;
    for (const QByteArray& text : lines)
        all.append(withoutRoot(text));
    return all;
}

QStringList logLines()
{
    QStringList lines;
    // The time takes 19 columns and a blank follows it.
    for (const QString& line : withoutRoot(log()).split(QLatin1Char('\n'), Qt::SkipEmptyParts))
        lines.append(line.mid(20));
    return lines;
}

QStringList texts(std::initializer_list<const char*> literals)
{
    QStringList all;
    for (const char* literal : literals)
        all.append(QString::fromUtf8(literal));
    return all;
}

Outcome runCopy(const QString& executable, const QStringList& arguments)
{
    Outcome outcome;
    QDir().mkpath(QFileInfo(executable).path());
    QFile::remove(executable);
    if (!QFile::copy(QStringLiteral("/proc/self/exe"), executable)) {
        outcome.errors = "cannot copy to " + QFile::encodeName(executable);
        return outcome;
    }
    QProcess process;
    process.setWorkingDirectory(QFileInfo(executable).path());
    process.start(executable, arguments);
    const bool finished = process.waitForFinished(120000);
    outcome.output = process.readAllStandardOutput();
    outcome.errors = process.readAllStandardError();
    if (!finished)
        process.kill();
    else if (process.exitStatus() == QProcess::NormalExit)
        outcome.exitCode = process.exitCode();
    return outcome;
}

int reportCall(const std::function<bool()>& call)
{
    // The command that would make it is not run.
    QDir().mkpath(path(QStringLiteral("template/Temp")));
    CommandRecorder recorder(CommandRecorder::RecordOnly);
    const bool result = call();
    printf("%s\n", result ? "true" : "false");
    for (const QByteArray& command : recorder.commands())
        printf("%s\n", withoutRoot(command).toLocal8Bit().constData());
    return 0;
}

QStringList callFromPathOfLength(int pathLength, const QString& function)
{
    const QTemporaryDir directory(path(QStringLiteral("long-XXXXXX")));
    QString executable = directory.path() + QLatin1Char('/');
    // A name has at most 255 bytes.
    while (pathLength - QFile::encodeName(executable).size() > 255)
        executable += QString(99, QLatin1Char('d')) + QLatin1Char('/');
    const int nameLength = pathLength - QFile::encodeName(executable).size();
    if (!directory.isValid() || nameLength < 1) {
        QTest::qFail("the directory of the test is too deep", __FILE__, __LINE__);
        return {};
    }
    executable += QString(nameLength, QLatin1Char('x'));
    const Outcome outcome = runCopy(executable, {QStringLiteral("call"), function});
    if (outcome.exitCode != 0)
        QTest::qFail(outcome.errors.constData(), __FILE__, __LINE__);
    return QString::fromLocal8Bit(outcome.output).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
}

QuietOutput::QuietOutput()
{
    fflush(stdout);
    m_saved = fcntl(STDOUT_FILENO, F_DUPFD_CLOEXEC, 0);
    const int nowhere = open("/dev/null", O_WRONLY | O_CLOEXEC);
    dup2(nowhere, STDOUT_FILENO);
    close(nowhere);
}

QuietOutput::~QuietOutput()
{
    fflush(stdout);
    dup2(m_saved, STDOUT_FILENO);
    close(m_saved);
}

FailingTool::FailingTool(const QString& name) : m_path(qgetenv("PATH"))
{
    const QString tool = m_directory.filePath(name);
    writeFile(tool, "#!/bin/sh\nexit 1\n");
    QFile::setPermissions(tool, QFile::ReadOwner | QFile::ExeOwner);
    qputenv("PATH", QFile::encodeName(m_directory.path()) + ':' + m_path);
}

FailingTool::~FailingTool()
{
    qputenv("PATH", m_path);
}

} // namespace installation
