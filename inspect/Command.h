#pragma once

#include <QByteArray>
#include <QCommandLineParser>
#include <QString>
#include <QStringList>

class CLanguageParser;

/// How a command ends.
enum ExitStatus
{
    Fine = 0,
    Finding = 1, // the answer is something to complain of
    Wrong = 2    // wrong usage or unreadable input; one line on standard error has told it
};

/// One call of the program, after its options.
class Invocation
{
public:
    Invocation(const QCommandLineParser& options, const QStringList& arguments, const QStringList& stores,
               const QString& language = QStringLiteral("en"))
        : m_options(options), m_arguments(arguments), m_stores(stores), m_language(language)
    {
    }

    /// The arguments behind the command's name.
    const QStringList& arguments() const { return m_arguments; }
    /// The installations, each with a trailing "/"; at least one.
    const QStringList& stores() const { return m_stores; }
    /// The first of them, in the local 8-bit encoding.
    QByteArray store() const { return m_stores.first().toLocal8Bit(); }

    /// Of labels and words: "en" or "zh".
    const QString& language() const { return m_language; }

    bool isJson() const { return has("json"); }
    bool showsSecrets() const { return has("secrets"); }
    bool takesUnverified() const { return has("unverified"); }

    bool has(const char* option) const { return m_options.isSet(QLatin1String(option)); }
    QString value(const char* option) const { return m_options.value(QLatin1String(option)); }
    QStringList values(const char* option) const { return m_options.values(QLatin1String(option)); }

    /// Complains and answers Wrong.
    static ExitStatus wrong(const QString& message);

private:
    const QCommandLineParser& m_options;
    QStringList m_arguments;
    QStringList m_stores;
    QString m_language;
};

/// A command of the program.
struct Command
{
    const char* name;
    const char* synopsis; // its arguments and options
    const char* purpose;
    const char* example;
    int leastArguments;
    int mostArguments; // -1: any number
    bool takesStores;  // several --store
    void (*addOptions)(QCommandLineParser& parser);
    ExitStatus (*run)(const Invocation& call);
};

/// All commands, in the order of the help.
const QVector<Command>& commands();

ExitStatus runList(const Invocation& call);
ExitStatus runShow(const Invocation& call);
ExitStatus runDiff(const Invocation& call);
ExitStatus runReport(const Invocation& call);
ExitStatus runVerify(const Invocation& call);
ExitStatus runWhich(const Invocation& call);
ExitStatus runSearch(const Invocation& call);
ExitStatus runLint(const Invocation& call);
ExitStatus runDoctor(const Invocation& call);
ExitStatus runErrors(const Invocation& call);
ExitStatus runExport(const Invocation& call);
ExitStatus runFields(const Invocation& call);
