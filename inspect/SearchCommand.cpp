#include "inspect/Command.h"
#include "inspect/Output.h"
#include "inspect/Values.h"
#include "xml/CustomInfoLoad.h"

#include <QJsonArray>
#include <QJsonObject>
#include <QRegularExpression>

#include <algorithm>

namespace {

struct Hit
{
    QString store;
    QString entry;
    FieldValue value;
};

/// A path as it stands or with a position in place of its "*".
bool isPath(const QString& text)
{
    static const QRegularExpression position(QStringLiteral("/(\\d+)/"));
    QString pattern = text;
    pattern.replace(position, QStringLiteral("/*/"));
    const auto& fields = catalogue::fields();
    return std::any_of(fields.begin(), fields.end(), [&](const Field& field) { return field.path() == pattern; });
}

class Search
{
public:
    Search(const Invocation& call, const QRegularExpression& expression)
        : m_expression(expression), m_path(call.value("field")), m_withSecrets(call.showsSecrets())
    {
    }

    void look(const QString& store, const StoreRow& row, const QByteArray& document)
    {
        CustomInfo record;
        loadCustomInfo(document, QString(), record);
        for (const FieldValue& value : valuesOf(record, m_withSecrets)) {
            const bool isWanted = m_path.isEmpty() || m_path == value.path || m_path == value.field->path();
            if (isWanted && matches(value))
                m_hits.append({store, QString::fromLocal8Bit(row.entry), value});
        }
    }

    const QVector<Hit>& hits() const { return m_hits; }

private:
    bool matches(const FieldValue& value) const
    {
        if (m_expression.match(value.label).hasMatch())
            return true;
        const bool isHidden = value.field->traits.isSecret && !m_withSecrets;
        return !isHidden && (m_expression.match(value.value).hasMatch() || m_expression.match(value.shown).hasMatch());
    }

    QRegularExpression m_expression;
    QString m_path;
    bool m_withSecrets;
    QVector<Hit> m_hits;
};

} // namespace

ExitStatus runSearch(const Invocation& call)
{
    const QString text = call.arguments().first();
    const QRegularExpression expression(call.has("regex") ? text : QRegularExpression::escape(text),
                                        QRegularExpression::CaseInsensitiveOption);
    if (!expression.isValid())
        return Invocation::wrong(
            QStringLiteral("%1: %2; give a regular expression as Perl has them").arg(text, expression.errorString()));
    if (call.has("field") && !isPath(call.value("field")))
        return Invocation::wrong(QStringLiteral("--field %1: there is no such field; `orvex-inspect fields` lists them")
                                     .arg(call.value("field")));

    Search search(call, expression);
    for (const QString& store : call.stores()) {
        StoreReader reader(store.toLocal8Bit());
        const bool isRead = reader.scan([&](const StoreRow& row, const QByteArray& document) {
            if (row.isVerified())
                search.look(store, row, document);
        });
        if (!isRead)
            return Invocation::wrong(store + QLatin1String("UpdateCustom: cannot be read; check its permissions"));
    }

    QJsonArray all;
    QVector<QStringList> rows;
    for (const Hit& hit : search.hits()) {
        all.append(QJsonObject{{QStringLiteral("store"), hit.store},
                               {QStringLiteral("entry"), hit.entry},
                               {QStringLiteral("path"), hit.value.path},
                               {QStringLiteral("label"), hit.value.label},
                               {QStringLiteral("value"), hit.value.value}});
        rows.append({hit.entry, hit.value.path, hit.value.label, hit.value.shown});
    }
    if (call.isJson())
        output::write(all);
    else if (!rows.isEmpty())
        output::write(output::table(
            {QStringLiteral("Entry"), QStringLiteral("Field"), QStringLiteral("Label"), QStringLiteral("Value")},
            rows));
    return rows.isEmpty() ? Finding : Fine;
}
