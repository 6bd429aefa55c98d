#include "app/language/CLanguageParser.h"

#include "common/Log.h"

CLanguageParser::CLanguageParser() = default;

CLanguageParser::~CLanguageParser() = default;

int CLanguageParser::LoadLanguage(QString path)
{
    logX(4, "LoadLanguage file path: %s", path.toLocal8Bit().constData());
    if (!LoadXmlFile(path))
        return 1;
    // Contract: behind the first `control` every element counts, whatever its name.
    QDomNode node = m_qoRootElement.firstChildElement(QStringLiteral("control"));
    for (; !node.isNull(); node = node.nextSibling()) {
        QDomElement element = node.toElement();
        if (element.isNull())
            continue;
        QString key;
        GetAttributeValue(&element, "key", key);
        const QString text = element.text();
        if (!key.isEmpty() && !text.isEmpty())
            m_mapTexts.insert(key, text);
    }
    return 1;
}

QString CLanguageParser::GetKey(const char* key) const
{
    const QString missing = QStringLiteral("NULL");
    return key ? m_mapTexts.value(QString::fromUtf8(key), missing) : missing;
}
