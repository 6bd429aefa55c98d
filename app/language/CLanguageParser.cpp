#include "app/language/CLanguageParser.h"

#include "common/Log.h"

#include <mutex>

namespace {

std::mutex s_texts; // held while the texts of any table are looked at or changed

} // namespace

CLanguageParser::CLanguageParser() = default;

CLanguageParser::~CLanguageParser() = default;

int CLanguageParser::LoadLanguage(QString path)
{
    logX(4, "LoadLanguage file path: %s", path.toLocal8Bit().constData());
    QByteArray file;
    if (!readFile(path, file))
        return 1;
    LanguageTexts texts;
    if (!readPlainTexts(file, texts)) {
        if (!LoadXmlBytes(file, path.toLocal8Bit().constData()))
            return 1;
        texts = textsOfTree();
        ClearPraserData();
    }
    const std::lock_guard<std::mutex> lock(s_texts);
    for (const auto& [key, text] : qAsConst(texts)) {
        if (!key.isEmpty() && !text.isEmpty())
            m_mapTexts.insert(key, text);
    }
    return 1;
}

LanguageTexts CLanguageParser::textsOfTree()
{
    LanguageTexts texts;
    // Contract: behind the first `control` every element counts, whatever its name.
    QDomNode node = m_qoRootElement.firstChildElement(QStringLiteral("control"));
    for (; !node.isNull(); node = node.nextSibling()) {
        QDomElement element = node.toElement();
        if (element.isNull())
            continue;
        QString key;
        GetAttributeValue(&element, "key", key);
        texts.append({key, element.text()});
    }
    return texts;
}

QString CLanguageParser::GetKey(const char* key) const
{
    const QString missing = QStringLiteral("NULL");
    const std::lock_guard<std::mutex> lock(s_texts);
    return key ? m_mapTexts.value(QString::fromUtf8(key), missing) : missing;
}
