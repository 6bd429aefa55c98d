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
    QString text = translated("Usage: orvex-inspect [--store DIR] [--lang en|zh] [--json] COMMAND ...\n\n"
                              "Reads stored customisations and packages of the Orvex customisation manager and "
                              "changes nothing.\n\nCommands:\n");
    for (const Command& command : commands())
        text += QStringLiteral("  %1 %2\n").arg(QLatin1String(command.name), -8).arg(translated(command.purpose));
    return text +
           translated("\n`orvex-inspect COMMAND --help` tells more of each.\n"
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
                      translated("The installation with UpdateCustom/; default: that of this program."),
                      QStringLiteral("DIR")});
    parser.addOption(
        {QStringLiteral("lang"), translated("Language of labels and words: en or zh."), QStringLiteral("CODE")});
    parser.addOption({QStringLiteral("json"), translated("One JSON value instead of text.")});
    parser.addOption({QStringLiteral("help"), translated("This help.")});
}

QString helpFor(const Command& command)
{
    QCommandLineParser parser;
    addCommonOptions(parser);
    command.addOptions(parser);
    QString text = translated("Usage: orvex-inspect %1 %2\n\n%3.\n\nOptions:\n")
                       .arg(QLatin1String(command.name), QLatin1String(command.synopsis), translated(command.purpose));
    // Qt's own help names its own options too; only the list of options is wanted.
    const QString whole = parser.helpText();
    const int options = whole.indexOf(QLatin1String("Options:\n"));
    const int arguments = whole.indexOf(QLatin1String("\nArguments:"));
    if (options >= 0)
        text += whole.mid(options + 9, arguments < 0 ? -1 : arguments - options - 9);
    return text + translated("\nExample:\n  orvex-inspect %1\n").arg(QLatin1String(command.example));
}

/// What Qt complains of in the call, which it does in English.
QString wordsOf(const QString& complaint)
{
    for (const char* form : {"Unknown option '%1'.", "Unknown options: %1.", "Missing value after '%1'.",
                             "Unexpected value after '%1'."}) {
        const QStringList around = QString::fromLatin1(form).split(QStringLiteral("%1"));
        if (complaint.startsWith(around.first()) && complaint.endsWith(around.last()))
            return translated(form).arg(
                complaint.mid(around.first().size(), complaint.size() - around.first().size() - around.last().size()));
    }
    return complaint;
}

/// 1033 or 2052: the language that is wanted, or else that of the installation `store`, or else that of LANG.
unsigned long languageOf(const QString& store, const QString& wanted)
{
    unsigned long code = wanted == QLatin1String("zh") ? LANGUAGE_CHINESE : LANGUAGE_ENGLISH;
    if (wanted.isEmpty()) {
        code = 0;
        chooseLanguage(store + QLatin1String("config.ini"), code);
    }
    return code;
}

/// The values that the bare words give an option.
QStringList bareValues(const QStringList& words, const QString& option)
{
    QStringList values;
    for (int at = 1; at < words.size() && words.at(at) != QLatin1String("--"); ++at) {
        if (words.at(at) == option)
            values.append(words.value(at + 1));
        else if (words.at(at).startsWith(option + QLatin1Char('=')))
            values.append(words.at(at).mid(option.size() + 1));
    }
    return values;
}

/// Help and complaints about the call come before its options are understood, so they take the language from its bare
/// words.
void speakAsAsked(const QStringList& words)
{
    const QStringList stores = bareValues(words, QStringLiteral("--store"));
    const QString store =
        stores.isEmpty() ? QString::fromLocal8Bit(processDirectory(true)) : stores.first() + QLatin1Char('/');
    const QStringList languages = bareValues(words, QStringLiteral("--lang"));
    if (languageOf(store, languages.isEmpty() ? QString() : languages.last()) == LANGUAGE_CHINESE)
        translateToChinese();
}

/// Has texts come from the language files of the store, or from those beside the executable when it has none. Answers
/// "en" or "zh".
QString chooseTexts(CLanguageParser& table, const QString& store, const QString& wanted)
{
    const unsigned long code = languageOf(store, wanted);
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
            speakAsAsked(arguments);
            output::write(usage());
            return Fine;
        }
        at += takesValue ? 2 : 1;
    }
    const QStringList words = arguments;
    const auto spoken = [&words](const char* english) {
        speakAsAsked(words);
        return translated(english);
    };
    if (at >= arguments.size())
        return Invocation::wrong(spoken("no command given; `orvex-inspect --help` lists them"));
    const QString name = arguments.takeAt(at);
    const Command* command = commandOf(name);
    if (!command)
        return Invocation::wrong(spoken("%1: no such command; `orvex-inspect --help` lists them").arg(name));

    QCommandLineParser parser;
    addCommonOptions(parser);
    command->addOptions(parser);
    const bool isParsed = parser.parse(arguments);
    if (parser.isSet(QStringLiteral("help"))) {
        speakAsAsked(words);
        output::write(helpFor(*command));
        return Fine;
    }
    const auto advice = [&] { return spoken("; see `orvex-inspect %1 --help`").arg(name); };
    if (!isParsed) {
        speakAsAsked(words);
        return Invocation::wrong(name + QLatin1String(": ") + wordsOf(parser.errorText()) + advice());
    }
    const QStringList given = parser.positionalArguments();
    if (given.size() < command->leastArguments ||
        (command->mostArguments >= 0 && given.size() > command->mostArguments))
        return Invocation::wrong(spoken("%1 takes %2").arg(name, QLatin1String(command->synopsis)) + advice());
    const QString language = parser.value(QStringLiteral("lang"));
    if (parser.isSet(QStringLiteral("lang")) && language != QLatin1String("en") && language != QLatin1String("zh"))
        return Invocation::wrong(spoken("--lang %1: give en or zh").arg(language));

    QStringList stores;
    for (const QString& directory : parser.values(QStringLiteral("store"))) {
        const QFileInfo info(directory);
        if (!info.isDir())
            return Invocation::wrong(spoken("--store %1: there is no such directory").arg(directory));
        stores.append(QDir::cleanPath(info.absoluteFilePath()) + QLatin1Char('/'));
    }
    if (stores.isEmpty())
        stores.append(QString::fromLocal8Bit(processDirectory(true)));
    if (stores.size() > 1 && !command->takesStores)
        return Invocation::wrong(spoken("%1 takes one --store").arg(name) + advice());

    CLanguageParser table;
    const QString chosen = chooseTexts(table, stores.first(), language);
    if (chosen == QLatin1String("zh") && !parser.isSet(QStringLiteral("json")))
        translateToChinese();
    return command->run(Invocation(parser, given, stores, chosen));
}
