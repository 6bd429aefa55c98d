#include "house/Layers.h"

#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>

QStringList Layer::formHeaders() const
{
    QStringList made;
    for (const QString& source : sources)
        if (source.endsWith(QLatin1String(".ui")))
            made << QStringLiteral("ui_%1.h").arg(QFileInfo(source).completeBaseName());
    return made;
}

Layers Layers::ofBuild(const QString& buildDir)
{
    Layers layers;
    QFile file(buildDir + QLatin1String("/layers.txt"));
    if (!file.open(QIODevice::ReadOnly))
        return layers;
    const QStringList lines = QString::fromUtf8(file.readAll()).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    for (const QString& line : lines) {
        const QString key = line.section(QLatin1Char(' '), 0, 0);
        const QString value = line.section(QLatin1Char(' '), 1);
        if (key == QLatin1String("target")) {
            layers.m_layers.append(Layer());
            layers.m_layers.last().target = value;
            continue;
        }
        if (layers.m_layers.isEmpty())
            continue;
        Layer& layer = layers.m_layers.last();
        if (key == QLatin1String("kind"))
            layer.kind = value;
        else if (key == QLatin1String("room"))
            layer.room = value;
        else if (key == QLatin1String("uses"))
            layer.uses << value;
        else if (key == QLatin1String("header"))
            layer.headers << value;
        else if (key == QLatin1String("private"))
            layer.ownHeaders << value;
        else if (key == QLatin1String("source"))
            layer.sources << value;
        else if (key == QLatin1String("includes"))
            layer.searchedDirs << value;
    }
    return layers;
}

QStringList Layers::rooms() const
{
    QStringList rooms;
    for (const Layer& layer : m_layers)
        if (!rooms.contains(layer.room))
            rooms << layer.room;
    return rooms;
}

QSet<QString> Layers::closure(const QString& target) const
{
    QSet<QString> reached;
    QStringList waiting{target};
    while (!waiting.isEmpty()) {
        const QString next = waiting.takeLast();
        if (reached.contains(next))
            continue;
        reached << next;
        for (const Layer& layer : m_layers)
            if (layer.target == next)
                waiting << layer.uses;
    }
    return reached;
}

QSet<QString> Layers::allowedFor(const Layer& user) const
{
    QSet<QString> allowed;
    const QSet<QString> reached = closure(user.target);
    for (const Layer& layer : m_layers) {
        if (!reached.contains(layer.target))
            continue;
        for (const QString& header : layer.headers)
            allowed << layer.room + QLatin1Char('/') + header;
        for (const QString& header : layer.formHeaders())
            allowed << header;
        if (layer.target == user.target)
            for (const QString& header : layer.ownHeaders)
                allowed << layer.room + QLatin1Char('/') + header;
    }
    return allowed;
}

QStringList Layers::everyHeader() const
{
    QStringList headers;
    for (const Layer& layer : m_layers) {
        for (const QString& header : layer.headers + layer.ownHeaders)
            headers << layer.room + QLatin1Char('/') + header;
        headers << layer.formHeaders();
    }
    return headers;
}

QStringList quotedIncludes(const QString& path)
{
    QStringList includes;
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return includes;
    static const QRegularExpression include(QStringLiteral("^\\s*#\\s*include\\s*\"([^\"]+)\""),
                                            QRegularExpression::MultilineOption);
    for (auto match = include.globalMatch(QString::fromUtf8(file.readAll())); match.hasNext();)
        includes << match.next().captured(1);
    return includes;
}

static QString unitOf(const QString& file, const QHash<QString, QStringList>& includes)
{
    const QString stem = file.left(file.lastIndexOf(QLatin1Char('.')));
    if (file.endsWith(QLatin1String(".h")))
        return stem;
    const QString whole = stem.left(stem.indexOf(QLatin1Char('_'), stem.lastIndexOf(QLatin1Char('/')) + 1));
    return includes.contains(whole + QLatin1String(".h")) ? whole : stem;
}

QVector<QSet<QString>> circles(const QHash<QString, QStringList>& includes)
{
    QHash<QString, QSet<QString>> reached;
    for (auto file = includes.begin(); file != includes.end(); ++file)
        for (const QString& included : file.value())
            if (includes.contains(included) && unitOf(included, includes) != unitOf(file.key(), includes))
                reached[unitOf(file.key(), includes)] << unitOf(included, includes);
    // Until nothing new is reached: whom a unit reaches, it reaches with all that those reach.
    for (bool grown = true; grown;) {
        grown = false;
        for (auto unit = reached.begin(); unit != reached.end(); ++unit) {
            const QSet<QString> before = unit.value();
            for (const QString& other : before)
                unit.value() += reached.value(other);
            grown = grown || unit.value().size() != before.size();
        }
    }
    QVector<QSet<QString>> found;
    for (auto unit = reached.begin(); unit != reached.end(); ++unit) {
        QSet<QString> circle;
        for (const QString& other : unit.value())
            if (reached.value(other).contains(unit.key()))
                circle << other;
        if (!circle.isEmpty() && !found.contains(circle))
            found << circle;
    }
    return found;
}
