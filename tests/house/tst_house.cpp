#include "house/Layers.h"
#include "support/TestEntry.h"

#include <QDir>
#include <QDirIterator>
#include <QDomDocument>
#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QtTest>

#include <algorithm>

static const QString sourceDir = QStringLiteral(ORVEX_SOURCE_DIR);
static const QString buildDir = QStringLiteral(ORVEX_BINARY_DIR);

struct Outcome
{
    int exitCode = -1;
    QString output;
    QString errors;
};

static Outcome run(const QString& program, const QStringList& arguments, const QString& directory,
                   const QByteArray& input = QByteArray())
{
    QProcess process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("LC_ALL"), QStringLiteral("C"));
    process.setProcessEnvironment(environment);
    process.setWorkingDirectory(directory);
    process.start(program, arguments);
    process.write(input);
    process.closeWriteChannel();
    Outcome outcome;
    if (process.waitForFinished(60000) && process.exitStatus() == QProcess::NormalExit)
        outcome.exitCode = process.exitCode();
    outcome.output = QString::fromUtf8(process.readAllStandardOutput());
    outcome.errors = QString::fromUtf8(process.readAllStandardError());
    return outcome;
}

/// Preprocesses the text as a source of the layer: it stands in the layer's room, where a quoted include looks first.
static Outcome preprocess(const Layer& layer, const QString& text)
{
    QStringList arguments{QStringLiteral("-E"), QStringLiteral("-P"), QStringLiteral("-std=c++17"),
                          QStringLiteral("-fPIC")};
    for (const QString& directory : layer.searchedDirs)
        arguments << QStringLiteral("-I") + directory;
    arguments << QStringLiteral("-x") << QStringLiteral("c++") << QStringLiteral("-");
    return run(QStringLiteral(ORVEX_COMPILER), arguments, sourceDir + QLatin1Char('/') + layer.room, text.toUtf8());
}

static QStringList sorted(QStringList list)
{
    list.sort();
    return list;
}

static QStringList sorted(const QSet<QString>& set)
{
    return sorted(QStringList(set.begin(), set.end()));
}

static QByteArray contentOf(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

static void write(const QString& path, const QByteArray& content)
{
    QDir().mkpath(QFileInfo(path).path());
    QFile file(path);
    QVERIFY2(file.open(QIODevice::WriteOnly), qPrintable(path));
    file.write(content);
}

/// The files below a directory, relative to it.
static QStringList filesBelow(const QString& directory)
{
    QStringList files;
    QDirIterator walk(directory, QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
    while (walk.hasNext())
        files << QDir(directory).relativeFilePath(walk.next());
    return sorted(files);
}

class TstHouse : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void everyLayerFindsWhatItMayInclude_data() { eachTarget(); }
    void everyLayerFindsWhatItMayInclude();
    void noLayerFindsWhatItMayNotInclude_data() { eachTarget(); }
    void noLayerFindsWhatItMayNotInclude();
    void aForbiddenIncludeEndsTheBuild_data();
    void aForbiddenIncludeEndsTheBuild();
    void theBuildRefusesAnIncludeWithoutItsRoom_data();
    void theBuildRefusesAnIncludeWithoutItsRoom();
    void theBuildTakesAnIncludeWithItsRoom();
    void theBuildChecksTheIncludesOfEveryRoom();
    void onlyLogAndFileLayerIncludeEachOther();
    void circlesAreFoundThroughSources();
    void theTableOfLayersSaysWhatIsBuilt();
    void everyFileOfARoomIsInItsList();
    void theListsOfFilesAreSorted_data() { eachTarget(); }
    void theListsOfFilesAreSorted();
    void findingsInHeadersOfEveryRoomCount();
    void theDiagramShowsWhatIsBuilt();
    void theDrawingShowsTheDiagram();
    void anInstallationIsComplete();
    void anInstallationOverAnotherKeepsItsData();

private:
    void eachTarget();

    const Layers layers = Layers::ofBuild(buildDir);
};

void TstHouse::eachTarget()
{
    QTest::addColumn<Layer>("layer");
    for (const Layer& layer : layers.all())
        QTest::newRow(qPrintable(layer.target)) << layer;
}

void TstHouse::initTestCase()
{
    QVERIFY(layers.all().size() > 10);
}

// Of each header the preprocessor says whether either form of include finds it.
static QString questions(const QStringList& headers)
{
    QString text;
    for (const QString& header : headers)
        text += QStringLiteral("#if __has_include(\"%1\")\nquoted %1\n#endif\n"
                               "#if __has_include(<%1>)\nangled %1\n#endif\n")
                    .arg(header);
    return text;
}

static QStringList answers(const QStringList& headers)
{
    QStringList lines;
    for (const QString& header : headers)
        lines << QStringLiteral("quoted ") + header << QStringLiteral("angled ") + header;
    return sorted(lines);
}

void TstHouse::everyLayerFindsWhatItMayInclude()
{
    QFETCH(Layer, layer);
    const QStringList allowed = sorted(layers.allowedFor(layer));
    QVERIFY(!allowed.isEmpty());
    const Outcome outcome = preprocess(layer, questions(allowed));
    QCOMPARE(outcome.exitCode, 0);
    QCOMPARE(sorted(outcome.output.split(QLatin1Char('\n'), Qt::SkipEmptyParts)), answers(allowed));
}

void TstHouse::noLayerFindsWhatItMayNotInclude()
{
    QFETCH(Layer, layer);
    const QSet<QString> allowed = layers.allowedFor(layer);
    QStringList forbidden;
    for (const QString& header : layers.everyHeader())
        if (!allowed.contains(header))
            forbidden << header;
    QVERIFY(!forbidden.isEmpty());
    const Outcome outcome = preprocess(layer, questions(forbidden));
    QCOMPARE(outcome.exitCode, 0);
    QCOMPARE(outcome.output.trimmed(), QString());
}

void TstHouse::aForbiddenIncludeEndsTheBuild_data()
{
    QTest::addColumn<Layer>("layer");
    QTest::addColumn<QString>("header");
    for (const Layer& layer : layers.all()) {
        const QSet<QString> reached = layers.closure(layer.target);
        for (const Layer& other : layers.all()) {
            if (!reached.contains(other.target) && !other.headers.isEmpty())
                QTest::addRow("%s to %s", qPrintable(layer.target), qPrintable(other.target))
                    << layer << other.room + QLatin1Char('/') + other.headers.first();
            if (other.target != layer.target && !other.ownHeaders.isEmpty())
                QTest::addRow("%s into %s", qPrintable(layer.target), qPrintable(other.target))
                    << layer << other.room + QLatin1Char('/') + other.ownHeaders.first();
        }
    }
}

void TstHouse::aForbiddenIncludeEndsTheBuild()
{
    QFETCH(Layer, layer);
    QFETCH(QString, header);
    const Outcome outcome = preprocess(layer, QStringLiteral("#include \"%1\"\n").arg(header));
    QCOMPARE(outcome.exitCode, 1);
    QVERIFY2(outcome.errors.contains(QStringLiteral("%1: No such file or directory").arg(header)),
             qPrintable(outcome.errors));
}

static Outcome checkIncludes(const QStringList& rooms, const QString& directory)
{
    return run(QStringLiteral(ORVEX_CMAKE),
               {QStringLiteral("-DROOMS=") + rooms.join(QLatin1Char(';')), QStringLiteral("-DSOURCE_DIR=") + directory,
                QStringLiteral("-P"), sourceDir + QStringLiteral("/cmake/CheckIncludes.cmake")},
               directory);
}

void TstHouse::theBuildRefusesAnIncludeWithoutItsRoom_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<QString>("line");
    const auto row = [](const char* name, const char* file, const char* line) {
        QTest::newRow(name) << QString::fromLatin1(file) << QString::fromLatin1(line);
    };
    row("upward", "common/Log.cpp", "#include \"../xml/CustomInfo.h\"");
    row("upward in angle brackets", "common/Log.cpp", "#include <../xml/CustomInfo.h>");
    row("upward on a detour", "common/Log.cpp", "#include \"common/../xml/CustomInfo.h\"");
    row("bare sibling", "common/Log.cpp", "#include \"ProcessPath.h\"");
    row("bare sibling in a header", "common/Log.h", "#include \"ProcessPath.h\"");
    row("room below", "app/main.cpp", "#include \"widgets/Tables.h\"");
    row("room below, from here", "app/main.cpp", "#include \"./widgets/Tables.h\"");
    row("from here in angle brackets", "app/main.cpp", "#include <./widgets/Tables.h>");
    row("in a room below", "app/widgets/Tables.cpp", "#include \"WarningBox.h\"");
    row("absolute", "common/Log.cpp", "#include \"/srv/xml/CustomInfo.h\"");
    row("absolute in angle brackets", "common/Log.cpp", "#include </srv/xml/CustomInfo.h>");
    row("spread out", "common/Log.cpp", "  #  include \"ProcessPath.h\"");
    row("hidden by a macro", "common/Log.cpp", "#include HEADER");
    row("next one", "common/Log.cpp", "#include_next \"ProcessPath.h\"");
}

void TstHouse::theBuildRefusesAnIncludeWithoutItsRoom()
{
    QFETCH(QString, file);
    QFETCH(QString, line);
    QTemporaryDir tree;
    write(tree.filePath(file), "#include <QString>\n" + line.toUtf8() + "\nint main();\n");
    const Outcome outcome = checkIncludes(layers.rooms(), tree.path());
    QCOMPARE(outcome.exitCode, 1);
    QVERIFY2(outcome.errors.contains(QLatin1String("These includes do not name a room in full:")) &&
                 outcome.errors.contains(file + QLatin1String(": ") + line),
             qPrintable(outcome.errors));
}

void TstHouse::theBuildTakesAnIncludeWithItsRoom()
{
    QTemporaryDir tree;
    write(tree.filePath(QStringLiteral("app/main.cpp")), "#include \"app/widgets/Tables.h\"\n"
                                                         "#include \"common/Log.h\"\n"
                                                         "#include \"ui_orvexmanager.h\"\n"
                                                         "#include <QString>\n"
                                                         "#include <sys/stat.h>\n"
                                                         "// #include \"Tables.h\"\n");
    const Outcome outcome = checkIncludes(layers.rooms(), tree.path());
    QVERIFY2(outcome.exitCode == 0, qPrintable(outcome.errors));
}

void TstHouse::theBuildChecksTheIncludesOfEveryRoom()
{
    const QString rules = QString::fromUtf8(contentOf(buildDir + QStringLiteral("/build.ninja")));
    const QRegularExpression command(QStringLiteral("-DROOMS=([^\" ]+)\"? .*CheckIncludes\\.cmake"));
    const QRegularExpressionMatch match = command.match(rules);
    QVERIFY(match.hasMatch());
    QCOMPARE(match.captured(1).split(QLatin1Char(';')), layers.rooms());
    for (const Layer& layer : layers.all()) {
        const QRegularExpression waiting(
            QStringLiteral("^build cmake_object_order_depends_target_%1: phony .* orvex_includes\\b").arg(layer.target),
            QRegularExpression::MultilineOption);
        QVERIFY2(waiting.match(rules).hasMatch(), qPrintable(layer.target));
    }
}

void TstHouse::onlyLogAndFileLayerIncludeEachOther()
{
    QHash<QString, QStringList> includes;
    for (const Layer& layer : layers.all())
        for (const QString& file : layer.headers + layer.ownHeaders + layer.sources)
            if (!file.endsWith(QLatin1String(".ui"))) {
                const QString path = layer.room + QLatin1Char('/') + file;
                includes[path] = quotedIncludes(sourceDir + QLatin1Char('/') + path);
            }
    QVERIFY(includes.value(QStringLiteral("common/Log.cpp")).contains(QStringLiteral("common/Log.h")));
    QStringList found;
    for (const QSet<QString>& circle : circles(includes))
        found << sorted(circle).join(QLatin1String(" with "));
    // The log makes its directory by the file layer, and the file layer writes down its commands.
    QCOMPARE(found, QStringList{QStringLiteral("common/Log with common/UtilityFunc")});
}

void TstHouse::circlesAreFoundThroughSources()
{
    const auto lists = [](std::initializer_list<std::pair<const char*, const char*>> rows) {
        QHash<QString, QStringList> includes;
        for (const auto& row : rows)
            includes[QLatin1String(row.first)] =
                QString::fromLatin1(row.second).split(QLatin1Char(' '), Qt::SkipEmptyParts);
        return includes;
    };
    QVERIFY(circles(lists({{"a/A.h", ""}, {"a/A.cpp", "a/A.h a/B.h"}, {"a/B.h", "a/C.h"}, {"a/C.h", ""}})).isEmpty());
    const QVector<QSet<QString>> direct = circles(lists({{"a/A.h", "a/B.h"}, {"a/B.h", "a/A.h"}}));
    QCOMPARE(direct, (QVector<QSet<QString>>{{QStringLiteral("a/A"), QStringLiteral("a/B")}}));
    const QVector<QSet<QString>> through = circles(
        lists({{"a/A.h", ""}, {"a/A_x.cpp", "a/A.h a/B.h"}, {"a/B.h", "a/C.h"}, {"a/C.h", ""}, {"a/C.cpp", "a/A.h"}}));
    QCOMPARE(through, (QVector<QSet<QString>>{{QStringLiteral("a/A"), QStringLiteral("a/B"), QStringLiteral("a/C")}}));
}

void TstHouse::theTableOfLayersSaysWhatIsBuilt()
{
    QStringList built;
    for (const Layer& layer : layers.all()) {
        QStringList uses;
        for (QString used : layer.uses)
            uses << used.replace(QLatin1String("Qt5::"), QLatin1String("Qt ")).remove(QLatin1String("orvex_"));
        built << QStringLiteral("%1 in %2/ uses %3")
                     .arg(layer.target, layer.room, sorted(uses).join(QLatin1String(", ")));
    }
    QStringList told;
    static const QRegularExpression row(QStringLiteral("^\\| `([\\w-]+)` \\| `([^`]+)` \\|[^|]*\\| ([^|]+) \\|$"),
                                        QRegularExpression::MultilineOption);
    const QString readme = QString::fromUtf8(contentOf(sourceDir + QStringLiteral("/README.md")));
    for (auto match = row.globalMatch(readme); match.hasNext();) {
        const QRegularExpressionMatch line = match.next();
        told << QStringLiteral("%1 in %2 uses %3")
                    .arg(line.captured(1), line.captured(2),
                         sorted(line.captured(3).split(QLatin1String(", "))).join(QLatin1String(", ")));
    }
    QCOMPARE(sorted(told), sorted(built));
}

void TstHouse::everyFileOfARoomIsInItsList()
{
    for (const QString& room : layers.rooms()) {
        QStringList listed;
        for (const Layer& layer : layers.all())
            if (layer.room == room)
                listed << layer.headers << layer.ownHeaders << layer.sources;
        const QStringList standing =
            QDir(sourceDir + QLatin1Char('/') + room)
                .entryList({QStringLiteral("*.h"), QStringLiteral("*.cpp"), QStringLiteral("*.ui")}, QDir::Files);
        QCOMPARE(sorted(listed), sorted(standing));
    }
}

void TstHouse::theListsOfFilesAreSorted()
{
    QFETCH(Layer, layer);
    QCOMPARE(layer.headers, sorted(layer.headers));
    QCOMPARE(layer.ownHeaders, sorted(layer.ownHeaders));
    QCOMPARE(layer.sources, sorted(layer.sources));
}

void TstHouse::findingsInHeadersOfEveryRoomCount()
{
    const QString settings = QString::fromUtf8(contentOf(sourceDir + QStringLiteral("/.clang-tidy")));
    const QRegularExpressionMatch filter =
        QRegularExpression(QStringLiteral("^HeaderFilterRegex: '(.*)'$"), QRegularExpression::MultilineOption)
            .match(settings);
    QVERIFY(filter.hasMatch());
    const QRegularExpression counted(filter.captured(1));
    QVERIFY(counted.isValid());
    for (const QString& room : layers.rooms())
        QVERIFY2(counted.match(sourceDir + QLatin1Char('/') + room + QLatin1String("/Some.h")).hasMatch(),
                 qPrintable(room));
}

void TstHouse::theDiagramShowsWhatIsBuilt()
{
    const QByteArray built = contentOf(buildDir + QStringLiteral("/layers.dot"));
    QVERIFY(built.contains("\"orvex_xml\" -> \"orvex_common\""));
    QVERIFY2(contentOf(sourceDir + QStringLiteral("/docs/layers.dot")) == built,
             "docs/layers.dot is not what is built; scripts/draw-layers.sh draws it");
}

void TstHouse::theDrawingShowsTheDiagram()
{
    QDomDocument drawing;
    QVERIFY(drawing.setContent(contentOf(sourceDir + QStringLiteral("/docs/layers.svg"))));
    QStringList drawn;
    const QDomNodeList titles = drawing.elementsByTagName(QStringLiteral("title"));
    for (int i = 0; i < titles.count(); ++i)
        drawn << titles.at(i).toElement().text();
    QStringList wanted{QStringLiteral("layers")};
    for (const Layer& layer : layers.all()) {
        wanted << layer.target;
        for (const QString& used : layer.uses)
            if (used.startsWith(QLatin1String("orvex_")))
                wanted << layer.target + QLatin1String("->") + used;
    }
    QVERIFY2(sorted(drawn) == sorted(wanted), "docs/layers.svg is not what is built; scripts/draw-layers.sh draws it");
}

static Outcome install(const QString& directory)
{
    return run(QStringLiteral(ORVEX_CMAKE),
               {QStringLiteral("--install"), buildDir, QStringLiteral("--prefix"), directory}, buildDir);
}

void TstHouse::anInstallationIsComplete()
{
    QTemporaryDir place;
    const Outcome outcome = install(place.path());
    QVERIFY2(outcome.exitCode == 0, qPrintable(outcome.errors));
    const QStringList files = filesBelow(place.path());
    for (const char* name :
         {"OrvexManager", "7za", "Resources/Language_en.xml", "Resources/Language_zh.xml", "qt_zh_CN.qm", "config.ini",
          "orvex-inspect", "completion/orvex-inspect", "man/man1/orvex-inspect.1"})
        QVERIFY2(files.contains(QLatin1String(name)), name);
    QVERIFY(QFileInfo(place.filePath(QStringLiteral("template"))).isDir());
    for (const char* name : {"OrvexManager", "7za"})
        QVERIFY2(QFileInfo(place.filePath(QLatin1String(name))).isExecutable(), name);
    QCOMPARE(contentOf(place.filePath(QStringLiteral("config.ini"))),
             contentOf(sourceDir + QStringLiteral("/packaging/config.ini")));
    for (const char* name : {"Resources/Language_en.xml", "Resources/Language_zh.xml"})
        QCOMPARE(contentOf(place.filePath(QLatin1String(name))),
                 contentOf(sourceDir + QLatin1Char('/') + QLatin1String(name)));
}

void TstHouse::anInstallationOverAnotherKeepsItsData()
{
    QTemporaryDir place;
    const QStringList data{QStringLiteral("config.ini"),
                           QStringLiteral("custom/customInfo.xml"),
                           QStringLiteral("UpdateCustom/1/custom/customInfo.xml"),
                           QStringLiteral("OrvexSetup/setup.tar.gz"),
                           QStringLiteral("OrvexUpdate/update.tar.gz"),
                           QStringLiteral("OrvexCusUpd/update.tar.gz"),
                           QStringLiteral("Log/program.log"),
                           QStringLiteral("template/OrvexClient_MacOS.tar.gz.own")};
    for (const QString& file : data)
        write(place.filePath(file), "own " + file.toUtf8());
    write(place.filePath(QStringLiteral("Resources/Language_en.xml")), "old texts");
    const Outcome outcome = install(place.path());
    QVERIFY2(outcome.exitCode == 0, qPrintable(outcome.errors));
    for (const QString& file : data)
        QCOMPARE(contentOf(place.filePath(file)), "own " + file.toUtf8());
    QCOMPARE(contentOf(place.filePath(QStringLiteral("Resources/Language_en.xml"))),
             contentOf(sourceDir + QStringLiteral("/Resources/Language_en.xml")));
}

TEST_ENTRY(house, runGuilessTest<TstHouse>)

#include "tst_house.moc"
