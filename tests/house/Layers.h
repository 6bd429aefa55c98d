#ifndef ORVEX_TESTS_HOUSE_LAYERS_H
#define ORVEX_TESTS_HOUSE_LAYERS_H

#include <QHash>
#include <QMetaType>
#include <QSet>
#include <QString>
#include <QStringList>
#include <QVector>

/// One layer or program as CMake knows it.
struct Layer
{
    QString target;
    QString kind; ///< "layer" or "program"
    QString room; ///< folder below the source directory, such as "app/widgets"
    QStringList uses;
    QStringList headers;      ///< published, without the room
    QStringList ownHeaders;   ///< private, without the room
    QStringList sources;      ///< forms included, without the room
    QStringList searchedDirs; ///< in which the compiler looks for headers

    /// Headers that the build makes from the forms, such as "ui_IpInfo.h".
    QStringList formHeaders() const;
};
Q_DECLARE_METATYPE(Layer)

/// All layers and programs, from the lowest to the highest.
class Layers
{
public:
    /// Reads layers.txt of the build; empty where there is none.
    static Layers ofBuild(const QString& buildDir);

    const QVector<Layer>& all() const { return m_layers; }
    QStringList rooms() const;
    /// The target itself and all that it uses, directly or not.
    QSet<QString> closure(const QString& target) const;
    /// The headers that the sources of `user` may include, as they are written there.
    QSet<QString> allowedFor(const Layer& user) const;
    /// All headers of all layers.
    QStringList everyHeader() const;

private:
    QVector<Layer> m_layers;
};

/// The quoted includes of a source, in their order.
QStringList quotedIncludes(const QString& file);

/// The units (a header with its sources) of each include circle: units that reach each other. A source "X_part.cpp"
/// belongs to the unit of "X.h" beside it.
/// @param includes  per source or header, with its room, what it includes
QVector<QSet<QString>> circles(const QHash<QString, QStringList>& includes);

#endif
