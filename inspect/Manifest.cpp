#include "inspect/Manifest.h"

#include "app/language/CLanguageParser.h"
#include "common/ProcessPath.h"
#include "common/Version.h"

#include <QFile>

Manifest parseManifest(const QByteArray& text)
{
    Manifest manifest;
    const struct
    {
        const char* label;
        QByteArray* field;
    } rows[] = {
        {"Setup=", &manifest.setup},          {"ostype=", &manifest.system}, {"@ver: ", &manifest.version},
        {"@new_ver: ", &manifest.display},    {"@time: ", &manifest.time},   {"cusTimeStamp:", &manifest.cusTimeStamp},
        {"@timeFmt: ", &manifest.timeFormat},
    };
    const QByteArrayList lines = text.split('\n');
    for (const QByteArray& whole : lines) {
        const QByteArray line = whole.endsWith('\r') ? whole.chopped(1) : whole;
        for (const auto& row : rows) {
            if (row.field->isNull() && line.startsWith(row.label))
                *row.field = line.mid(int(qstrlen(row.label)));
        }
    }
    if (manifest.setup.size() >= 2 && manifest.setup.startsWith('"') && manifest.setup.endsWith('"'))
        manifest.setup = manifest.setup.mid(1, manifest.setup.size() - 2);
    return manifest;
}

ManifestVersion manifestVersionOf(const QByteArray& installation)
{
    const QString name = QStringLiteral("Resources/Language_en.xml");
    QString path = QFile::decodeName(installation) + name;
    if (!QFile::exists(path))
        path = QFile::decodeName(processDirectory(true)) + name;
    CLanguageParser english;
    english.LoadLanguage(path);
    utl_SetVersionStrings(english.GetKey("version").toLocal8Bit(), english.GetKey("internalVersion").toLocal8Bit());
    return {utl_InnerVersion(), utl_OrvexVerDisplay()};
}
