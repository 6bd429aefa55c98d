#include "common/ProcessPath.h"
#include "support/Installation.h"
#include "support/Interposed.h"
#include "support/TestEntry.h"

#include <QProcess>
#include <QTemporaryDir>
#include <QtTest>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <unistd.h>
#include <vector>

namespace {

bool s_pretending = false;
QByteArray s_target; // null: the link cannot be read
QByteArrayList s_links;

/// The test chooses where the executable seems to lie.
ssize_t pretendingReadlink(interposed::Readlink::Real real, const char* path, char* buffer, size_t size)
{
    if (!s_pretending)
        return real(path, buffer, size);
    s_links.append(QByteArray(path));
    if (s_target.isNull() || size == 0) {
        errno = size == 0 ? EINVAL : EACCES;
        return -1;
    }
    const size_t length = std::min(size, static_cast<size_t>(s_target.size()));
    memcpy(buffer, s_target.constData(), length);
    return static_cast<ssize_t>(length);
}

struct Answer
{
    bool found;
    QByteArray text;
    bool inBounds;
};

Answer answer(unsigned long size, bool keepSlash)
{
    std::vector<char> buffer(size + 64, '\0');
    std::fill(buffer.begin() + static_cast<std::ptrdiff_t>(size), buffer.end(), '#');
    const bool found = utl_GetCurProcessPath(buffer.data(), size, keepSlash);
    const bool inBounds = std::all_of(buffer.begin() + static_cast<std::ptrdiff_t>(size), buffer.end(),
                                      [](char byte) { return byte == '#'; });
    return {found, QByteArray(buffer.data(), static_cast<int>(strnlen(buffer.data(), size))), inBounds};
}

// The answer for an executable at another place.
Answer answerFor(const QByteArray& executable, unsigned long size, bool keepSlash)
{
    s_target = executable;
    s_pretending = true;
    const Answer result = answer(size, keepSlash);
    s_pretending = false;
    return result;
}

QByteArray directoryFor(const QByteArray& executable, bool keepSlash, bool* ok = nullptr)
{
    s_target = executable;
    s_pretending = true;
    const QByteArray result = processDirectory(keepSlash, ok);
    s_pretending = false;
    return result;
}

// An absolute path of the given length: a directory "/d/" and the name of a file.
QByteArray pathOfLength(int length)
{
    return "/d/" + QByteArray(length - 3, 'e');
}

int printOwnDirectory(const char* size)
{
    const unsigned long bytes = strtoul(size, nullptr, 10);
    std::vector<char> buffer(bytes + 1, '\0');
    const bool found = utl_GetCurProcessPath(buffer.data(), bytes, true);
    printf("%d %s\n", found ? 1 : 0, found ? buffer.data() : "");
    return 0;
}

} // namespace

class TstProcessPath : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void directoryIsThatOfTheRunningExecutable();
    void linkOfTheOwnProcessIsRead();
    void slashIsKeptOrCut_data();
    void slashIsKeptOrCut();
    void pathHasToLeaveTwoBytes_data();
    void pathHasToLeaveTwoBytes();
    void tooSmallBufferIsAFailureAndNothingIsWrittenPastIt();
    void unreadableLinkIsAFailure();
    void processDirectoryTakes258Bytes_data();
    void processDirectoryTakes258Bytes();
    void copyFindsItsOwnDirectory_data();
    void copyFindsItsOwnDirectory();
};

void TstProcessPath::init()
{
    s_links.clear();
}

void TstProcessPath::directoryIsThatOfTheRunningExecutable()
{
    const QByteArray root = QFile::encodeName(QFileInfo(QCoreApplication::applicationFilePath()).canonicalPath());
    QVERIFY(root.startsWith('/'));
    const Answer kept = answer(PROCESS_PATH_SIZE, true);
    QVERIFY(kept.found);
    QCOMPARE(kept.text, root + '/');
    const Answer cut = answer(PROCESS_PATH_SIZE, false);
    QVERIFY(cut.found);
    QCOMPARE(cut.text, root);

    QCOMPARE(processDirectory(true), root + '/');
    bool ok = false;
    QCOMPARE(processDirectory(false, &ok), root);
    QVERIFY(ok);
}

void TstProcessPath::linkOfTheOwnProcessIsRead()
{
    QVERIFY(answerFor("/opt/orvex", PROCESS_PATH_SIZE, true).found);
    QCOMPARE(s_links, QByteArrayList{"/proc/" + QByteArray::number(getpid()) + "/exe"});
}

void TstProcessPath::slashIsKeptOrCut_data()
{
    QTest::addColumn<QByteArray>("executable");
    QTest::addColumn<QByteArray>("kept");
    QTest::addColumn<QByteArray>("cut");
    QTest::newRow("some levels deep") << QByteArray("/opt/apps/manager") << QByteArray("/opt/apps/")
                                      << QByteArray("/opt/apps");
    QTest::newRow("one level deep") << QByteArray("/opt/manager") << QByteArray("/opt/") << QByteArray("/opt");
    QTest::newRow("in the root directory") << QByteArray("/manager") << QByteArray("/") << QByteArray("");
    QTest::newRow("blanks") << QByteArray("/opt/my apps/the manager") << QByteArray("/opt/my apps/")
                            << QByteArray("/opt/my apps");
    QTest::newRow("bytes beyond ASCII") << QByteArray("/opt/\xb6\xa8\xd6\xc6/manager")
                                        << QByteArray("/opt/\xb6\xa8\xd6\xc6/") << QByteArray("/opt/\xb6\xa8\xd6\xc6");
    QTest::newRow("no slash: the whole text")
        << QByteArray("manager") << QByteArray("manager") << QByteArray("manager");
}

void TstProcessPath::slashIsKeptOrCut()
{
    QFETCH(QByteArray, executable);
    QFETCH(QByteArray, kept);
    QFETCH(QByteArray, cut);
    const Answer withSlash = answerFor(executable, PROCESS_PATH_SIZE, true);
    QVERIFY(withSlash.found);
    QCOMPARE(withSlash.text, kept);
    const Answer withoutSlash = answerFor(executable, PROCESS_PATH_SIZE, false);
    QVERIFY(withoutSlash.found);
    QCOMPARE(withoutSlash.text, cut);
}

void TstProcessPath::pathHasToLeaveTwoBytes_data()
{
    QTest::addColumn<int>("size");
    QTest::addColumn<int>("length");
    QTest::addColumn<bool>("found");
    for (int size : {10, 257, 260}) {
        QTest::addRow("%d bytes in %d", size - 3, size) << size << size - 3 << true;
        QTest::addRow("%d bytes in %d", size - 2, size) << size << size - 2 << true;
        QTest::addRow("%d bytes in %d", size - 1, size) << size << size - 1 << false;
        QTest::addRow("%d bytes in %d", size, size) << size << size << false;
        QTest::addRow("%d bytes in %d", size + 1, size) << size << size + 1 << false;
        QTest::addRow("4000 bytes in %d", size) << size << 4000 << false;
    }
}

void TstProcessPath::pathHasToLeaveTwoBytes()
{
    QFETCH(int, size);
    QFETCH(int, length);
    QFETCH(bool, found);
    for (bool keepSlash : {true, false}) {
        const Answer result = answerFor(pathOfLength(length), static_cast<unsigned long>(size), keepSlash);
        QCOMPARE(result.found, found);
        QVERIFY(result.inBounds);
        if (found)
            QCOMPARE(result.text, QByteArray(keepSlash ? "/d/" : "/d"));
    }
}

void TstProcessPath::tooSmallBufferIsAFailureAndNothingIsWrittenPastIt()
{
    for (unsigned long size : {0UL, 1UL, 2UL, 3UL, 4UL, 8UL}) {
        const Answer own = answer(size, true);
        QVERIFY2(!own.found && own.inBounds, qPrintable(QString::number(size)));
        const Answer other = answerFor("/opt/apps/manager", size, false);
        QVERIFY2(!other.found && other.inBounds, qPrintable(QString::number(size)));
    }
}

void TstProcessPath::unreadableLinkIsAFailure()
{
    QVERIFY(!answerFor(QByteArray(), PROCESS_PATH_SIZE, true).found);
    bool ok = true;
    QCOMPARE(directoryFor(QByteArray(), true, &ok), QByteArray());
    QVERIFY(!ok);
}

void TstProcessPath::processDirectoryTakes258Bytes_data()
{
    QTest::addColumn<int>("length");
    QTest::addColumn<bool>("found");
    QTest::newRow("258 bytes") << 258 << true;
    QTest::newRow("259 bytes") << 259 << false;
    QTest::newRow("260 bytes") << 260 << false;
    QTest::newRow("261 bytes") << 261 << false;
    QTest::newRow("4000 bytes") << 4000 << false;
}

// Contract: after a failure the callers go on with whatever the buffer holds, which is never more than the buffer.
void TstProcessPath::processDirectoryTakes258Bytes()
{
    QFETCH(int, length);
    QFETCH(bool, found);
    bool ok = !found;
    const QByteArray directory = directoryFor(pathOfLength(length), true, &ok);
    QCOMPARE(ok, found);
    if (found)
        QCOMPARE(directory, QByteArray("/d/"));
    QVERIFY(directory.size() <= int(PROCESS_PATH_SIZE));
    QVERIFY(pathOfLength(length).startsWith(directory));
}

void TstProcessPath::copyFindsItsOwnDirectory_data()
{
    QTest::addColumn<int>("length");
    QTest::addColumn<int>("size");
    QTest::addColumn<bool>("found");
    QTest::newRow("255 bytes in 257") << 255 << 257 << true;
    QTest::newRow("256 bytes in 257") << 256 << 257 << false;
    QTest::newRow("258 bytes in 260") << 258 << 260 << true;
    QTest::newRow("259 bytes in 260") << 259 << 260 << false;
    QTest::newRow("400 bytes in 260") << 400 << 260 << false;
    QTest::newRow("400 bytes in 402") << 400 << 402 << true;
}

void TstProcessPath::copyFindsItsOwnDirectory()
{
    QFETCH(int, length);
    QFETCH(int, size);
    QFETCH(bool, found);
    const QTemporaryDir temporary;
    const int missing = length - QFile::encodeName(temporary.path()).size() - int(strlen("//e"));
    QVERIFY(missing > 0);
    // Two levels, since a name may have no more than 255 bytes.
    QString name(missing, QLatin1Char('d'));
    if (missing > 200)
        name[missing / 2] = QLatin1Char('/');
    const QString directory = temporary.filePath(name);
    const QString copy = directory + QLatin1String("/e");
    QCOMPARE(QFile::encodeName(copy).size(), length);
    QVERIFY(QDir().mkpath(directory));
    QVERIFY(QFile::copy(QStringLiteral("/proc/self/exe"), copy));
    QVERIFY(QFile::setPermissions(copy, QFile::ReadOwner | QFile::ExeOwner));
    const QByteArray expected = found ? "1 " + QFile::encodeName(directory) + "/\n" : QByteArray("0 \n");
    QCOMPARE(installation::run(copy, {QStringLiteral("--directory"), QString::number(size)}), expected);
}

static int run(int argc, char** argv)
{
    interposed::onReadlink = pretendingReadlink;
    if (argc == 3 && strcmp(argv[1], "--directory") == 0)
        return printOwnDirectory(argv[2]);
    QCoreApplication application(argc, argv);
    TstProcessPath test;
    return QTest::qExec(&test, argc, argv);
}

TEST_ENTRY(processpath, run)

#include "tst_processpath.moc"
