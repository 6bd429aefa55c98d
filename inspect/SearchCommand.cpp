#include "app/language/FieldTexts.h"
#include "inspect/Command.h"
#include "inspect/Output.h"
#include "inspect/Translation.h"
#include "inspect/Values.h"
#include "xml/CustomInfoLoad.h"

#include <QJsonArray>
#include <QJsonObject>
#include <QRegularExpression>

#include <algorithm>
#include <array>
#include <vector>

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

/// Looks through documents, in several threads at once.
class Search
{
public:
    Search(const Invocation& call, const QRegularExpression& expression)
        : m_expression(expression), m_path(call.value("field")), m_withSecrets(call.showsSecrets())
    {
        for (const Field& field : catalogue::fields()) {
            const bool isWhole = m_path.isEmpty() || m_path == field.path();
            m_fields.push_back({isWhole, !isWhole && field.list, matches(labelOf(field))});
        }
        for (Memory& memory : m_memories)
            memory.resize(m_fields.size());
    }

    /// What adds the hits of a document to the others; empty for none.
    StoreReader::Step look(int worker, const QString& store, const StoreRow& row, const QByteArray& document)
    {
        CustomInfo record;
        loadCustomInfo(document, QString(), record);
        QVector<Hit> hits;
        const Field* const first = catalogue::fields().data();
        catalogue::walk(record, [&](const Field& field, int n) {
            const auto position = static_cast<std::size_t>(&field - first);
            const Wanted& wanted = m_fields[position];
            if (!wanted.isWhole && !(wanted.inRows && m_path == field.path(n)))
                return;
            if (wanted.byLabel || holds(m_memories.at(static_cast<std::size_t>(worker))[position], field, n, record))
                hits.append({store, QString::fromLocal8Bit(row.entry), valueOf(field, n, record, m_withSecrets)});
        });
        if (hits.isEmpty())
            return {};
        return [this, hits] { m_hits += hits; };
    }

    const QVector<Hit>& hits() const { return m_hits; }

private:
    struct Wanted
    {
        bool isWhole; // in every row
        bool inRows;  // perhaps in some
        bool byLabel;
    };

    /// Entries are much alike, so that a field's last value and what came of it answer for most.
    struct Remembered
    {
        QString value; // null before the first
        bool isHit = false;
    };
    using Memory = std::vector<Remembered>;

    bool matches(const QString& text) const { return m_expression.match(text).hasMatch(); }

    bool holds(Remembered& last, const Field& field, int row, const CustomInfo& record) const
    {
        const bool isSecret = field.traits.isSecret;
        if (isSecret && !m_withSecrets)
            return false;
        const QString value = field.value(record, row);
        const bool isAlone = !field.traits.viewedBy; // no other field has a say in it
        if (isAlone && !last.value.isNull() && last.value == value)
            return last.isHit;
        const QString viewed = isSecret ? value : viewedText(field.traits, value, record);
        last.isHit = matches(value) || (!viewed.isEmpty() && viewed != value && matches(viewed));
        last.value = value;
        return last.isHit;
    }

    QRegularExpression m_expression;
    QString m_path;
    bool m_withSecrets;
    std::vector<Wanted> m_fields; // in the order of the catalogue
    std::array<Memory, StoreReader::WORKERS> m_memories;
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
            translated("%1: %2; give a regular expression as Perl has them").arg(text, expression.errorString()));
    if (call.has("field") && !isPath(call.value("field")))
        return Invocation::wrong(translated("--field %1: there is no such field; `orvex-inspect fields` lists them")
                                     .arg(call.value("field")));

    Search search(call, expression);
    for (const QString& store : call.stores()) {
        StoreReader reader(store.toLocal8Bit());
        const bool isRead = reader.scanWith([&](int worker, const StoreRow& row, const QByteArray& document) {
            return search.look(worker, store, row, document);
        });
        if (!isRead)
            return Invocation::wrong(translated("%1UpdateCustom: cannot be read; check its permissions").arg(store));
    }

    const auto& hits = search.hits();
    if (call.isJson()) {
        QJsonArray all;
        for (const Hit& hit : hits)
            all.append(QJsonObject{{QStringLiteral("store"), hit.store},
                                   {QStringLiteral("entry"), hit.entry},
                                   {QStringLiteral("path"), hit.value.path},
                                   {QStringLiteral("label"), hit.value.label},
                                   {QStringLiteral("value"), hit.value.value}});
        output::write(all);
    } else if (!hits.isEmpty()) {
        QVector<QStringList> rows;
        for (const Hit& hit : hits)
            rows.append({hit.entry, hit.value.path, hit.value.label, hit.value.shown});
        output::write(
            output::table({translated("Entry"), translated("Field"), translated("Label"), translated("Value")}, rows));
    }
    return hits.isEmpty() ? Finding : Fine;
}
