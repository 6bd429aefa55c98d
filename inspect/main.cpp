#include "app/language/CLanguageParser.h"
#include "app/language/LangText.h"
#include "app/language/LanguageChoice.h"
#include "common/Log.h"
#include "common/ProcessPath.h"
#include "inspect/Command.h"
#include "inspect/Output.h"
#include "inspect/Translation.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>

#include <algorithm>

namespace {

QString usage()
{
    QString text = QStringLiteral("Usage: orvex-inspect [--store DIR] [--lang en|zh] [--json] COMMAND ...\n\n"
                                  "Reads stored customisations and packages of the Orvex customisation manager and "
                                  "changes nothing.\n\nCommands:\n");
    for (const Command& command : commands())
        text += QStringLiteral("  %1 %2\n").arg(QLatin1String(command.name), -8).arg(QLatin1String(command.purpose));
    return text +
           QStringLiteral("\n`orvex-inspect COMMAND --help` tells more of each.\n"
                          "Exit status: 0 nothing to complain of, 1 a finding, 2 wrong usage or unreadable input.\n");
}

const Command* commandOf(const QString& name)
{
    const QVector<Command>& all = commands();
    const auto found = std::find_if(all.begin(), all.end(),
                                    [&](const Command& command) { return name == QLatin1String(command.name); });
    return found == all.end() ? nullptr : found;
}

void addCommonOptions(QCommandLineParser& parser)
{
    parser.addOption({QStringLiteral("store"),
                      QStringLiteral("The installation with UpdateCustom/; default: that of this program."),
                      QStringLiteral("DIR")});
    parser.addOption(
        {QStringLiteral("lang"), QStringLiteral("Language of labels and words: en or zh."), QStringLiteral("CODE")});
    parser.addOption({QStringLiteral("json"), QStringLiteral("One JSON value instead of text.")});
    parser.addOption({QStringLiteral("help"), QStringLiteral("This help.")});
}

QString helpFor(const Command& command, const QCommandLineParser& parser)
{
    QString text =
        QStringLiteral("Usage: orvex-inspect %1 %2\n\n%3.\n\nOptions:\n")
            .arg(QLatin1String(command.name), QLatin1String(command.synopsis), QString::fromLatin1(command.purpose));
    // Qt's own help names its own options too; only the list of options is wanted.
    const QString whole = parser.helpText();
    const int options = whole.indexOf(QLatin1String("Options:\n"));
    const int arguments = whole.indexOf(QLatin1String("\nArguments:"));
    if (options >= 0)
        text += whole.mid(options + 9, arguments < 0 ? -1 : arguments - options - 9);
    return text + QStringLiteral("\nExample:\n  orvex-inspect %1\n").arg(QLatin1String(command.example));
}

/// Has texts come from the language files of the store, or from those beside the executable when it has none. Answers
/// "en" or "zh".
QString chooseTexts(CLanguageParser& table, const QString& store, const QString& wanted)
{
    unsigned long code = wanted == QLatin1String("zh") ? LANGUAGE_CHINESE : LANGUAGE_ENGLISH;
    if (wanted.isEmpty()) {
        code = 0;
        chooseLanguage(store + QLatin1String("config.ini"), code);
    }
    const QString file = code == LANGUAGE_CHINESE ? QStringLiteral("Resources/Language_zh.xml")
                                                  : QStringLiteral("Resources/Language_en.xml");
    setLanguageLoader([&table, store, file] {
        const QString own = QString::fromLocal8Bit(processDirectory(true)) + file;
        table.LoadLanguage(QFileInfo::exists(store + file) ? store + file : own);
        setLanguageTable(&table);
    });
    return code == LANGUAGE_CHINESE ? QStringLiteral("zh") : QStringLiteral("en");
}

} // namespace

int main(int argc, char** argv)
{
    setLogging(false);
    QCoreApplication application(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("orvex-inspect"));
    QCoreApplication::setApplicationVersion(QStringLiteral(ORVEX_VERSION));

    // The first argument that is no option names the command; options may stand before it, with their values.
    QStringList arguments = QCoreApplication::arguments();
    int at = 1;
    while (at < arguments.size() && arguments.at(at).startsWith(QLatin1Char('-'))) {
        const bool takesValue =
            arguments.at(at) == QLatin1String("--store") || arguments.at(at) == QLatin1String("--lang");
        if (arguments.at(at) == QLatin1String("--version")) {
            output::write(QStringLiteral("orvex-inspect %1\n").arg(QCoreApplication::applicationVersion()));
            return Fine;
        }
        if (arguments.at(at) == QLatin1String("--help") || arguments.at(at) == QLatin1String("-h")) {
            output::write(usage());
            return Fine;
        }
        at += takesValue ? 2 : 1;
    }
    if (at >= arguments.size())
        return Invocation::wrong(QStringLiteral("no command given; `orvex-inspect --help` lists them"));
    const QString name = arguments.takeAt(at);
    const Command* command = commandOf(name);
    if (!command)
        return Invocation::wrong(QStringLiteral("%1: no such command; `orvex-inspect --help` lists them").arg(name));

    QCommandLineParser parser;
    addCommonOptions(parser);
    command->addOptions(parser);
    const bool isParsed = parser.parse(arguments);
    if (parser.isSet(QStringLiteral("help"))) {
        output::write(helpFor(*command, parser));
        return Fine;
    }
    const auto advice = QStringLiteral("; see `orvex-inspect %1 --help`").arg(name);
    if (!isParsed)
        return Invocation::wrong(name + QLatin1String(": ") + parser.errorText() + advice);
    const QStringList given = parser.positionalArguments();
    if (given.size() < command->leastArguments ||
        (command->mostArguments >= 0 && given.size() > command->mostArguments))
        return Invocation::wrong(QStringLiteral("%1 takes %2").arg(name, QLatin1String(command->synopsis)) + advice);
    const QString language = parser.value(QStringLiteral("lang"));
    if (parser.isSet(QStringLiteral("lang")) && language != QLatin1String("en") && language != QLatin1String("zh"))
        return Invocation::wrong(QStringLiteral("--lang %1: give en or zh").arg(language));

    QStringList stores;
    for (const QString& directory : parser.values(QStringLiteral("store"))) {
        const QFileInfo info(directory);
        if (!info.isDir())
            return Invocation::wrong(QStringLiteral("--store %1: there is no such directory").arg(directory));
        stores.append(QDir::cleanPath(info.absoluteFilePath()) + QLatin1Char('/'));
    }
    if (stores.isEmpty())
        stores.append(QString::fromLocal8Bit(processDirectory(true)));
    if (stores.size() > 1 && !command->takesStores)
        return Invocation::wrong(QStringLiteral("%1 takes one --store").arg(name) + advice);

    CLanguageParser table;
    const QString chosen = chooseTexts(table, stores.first(), language);
    if (chosen == QLatin1String("zh") && !parser.isSet(QStringLiteral("json")))
        translateToChinese();
    return command->run(Invocation(parser, given, stores, chosen));
}
