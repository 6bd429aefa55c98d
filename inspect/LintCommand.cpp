#include "inspect/Command.h"
#include "inspect/Lint.h"
#include "inspect/Output.h"
#include "inspect/Translation.h"

#include <QJsonArray>
#include <QJsonObject>

namespace {

/// The answers on all customisations together.
class Answer
{
public:
    void add(const Source& source)
    {
        const QString entry = QString::fromLocal8Bit(source.entry);
        for (const Advice& advice : adviceOn(source)) {
            const QString code = QLatin1String(advice.code);
            const QString level = translated(levelName(advice.level));
            m_all.append(QJsonObject{{QStringLiteral("entry"), entry.isEmpty() ? QJsonValue() : QJsonValue(entry)},
                                     {QStringLiteral("code"), code},
                                     {QStringLiteral("level"), level},
                                     {QStringLiteral("path"), advice.path},
                                     {QStringLiteral("message"), advice.message}});
            m_rows.append({entry.isEmpty() ? source.text : entry, level, code, advice.path, advice.message});
            m_isFinding = m_isFinding || advice.level != Advice::Note;
        }
    }

    ExitStatus tell(bool asJson) const
    {
        if (asJson)
            output::write(m_all);
        else if (!m_rows.isEmpty())
            output::write(output::table({translated("Entry"), translated("Level"), translated("Code"),
                                         translated("Field"), translated("Message")},
                                        m_rows));
        return m_isFinding ? Finding : Fine;
    }

private:
    QJsonArray m_all;
    QVector<QStringList> m_rows;
    bool m_isFinding = false;
};

} // namespace

ExitStatus runLint(const Invocation& call)
{
    if (call.has("all") == !call.arguments().isEmpty())
        return Invocation::wrong(translated("lint takes SOURCE... or --all; see `orvex-inspect lint --help`"));
    Answer answer;
    for (const QString& text : call.arguments()) {
        const std::unique_ptr<Source> source = openSource(call, text);
        if (!source)
            return Wrong;
        answer.add(*source);
    }
    if (!call.has("all"))
        return answer.tell(call.isJson());

    for (const QString& store : call.stores()) {
        StoreReader reader(store.toLocal8Bit());
        if (!reader.scan())
            return Invocation::wrong(translated("%1UpdateCustom: cannot be read; check its permissions").arg(store));
        for (const StoreRow& row : reader.rows()) {
            if (!row.isVerified())
                continue;
            const std::unique_ptr<Source> source = openEntry(store.toLocal8Bit(), row.entry);
            if (source->isVerified())
                answer.add(*source);
        }
    }
    return answer.tell(call.isJson());
}
