#include "xml/CustomXmlParser.h"

CustomXmlParser::~CustomXmlParser() = default;

int CustomXmlParser::FormatXMLInit()
{
    FormatFoundXML();
    return 1;
}

void CustomXmlParser::FormatFoundXML()
{
    Clear();
    LoadXml(QStringLiteral("<msg><content></content></msg>"));
    const QDomProcessingInstruction instruction = m_qoXmlDoc.createProcessingInstruction(
        QStringLiteral("xml"), QStringLiteral("version=\"1.0\" encoding=\"utf-8\""));
    m_qoXmlDoc.insertBefore(instruction, m_qoXmlDoc.firstChild());
    m_qoCurElement = m_qoXmlDoc.documentElement().firstChildElement(QStringLiteral("content"));
}

int CustomXmlParser::SaveFile(const QString& path)
{
    m_isSaved = SaveXmlFile(path);
    return 1;
}

int CustomXmlParser::LoadFile(const QString& path)
{
    if (path.isEmpty())
        return 0;
    if (path.compare(m_strFilePath, Qt::CaseInsensitive) == 0)
        return 1;
    Clear();
    m_strFilePath = path;
    return LoadXmlFile(path) ? 1 : 0;
}

bool CustomXmlParser::loadDocument(const QByteArray& bytes, const char* path)
{
    Clear();
    m_documentLoaded =
        LoadXmlBytes(bytes, path) && !m_qoRootElement.firstChildElement(QStringLiteral("content")).isNull();
    return m_documentLoaded;
}

void CustomXmlParser::Clear()
{
    ClearPraserData();
    m_documentLoaded = false;
}

void CustomXmlParser::formatSection(const char* name, const std::function<void()>& addChildren, bool compact)
{
    m_qoCurElement = m_qoRootElement.firstChildElement(QStringLiteral("content"));
    if (!m_qoCurElement.isNull())
        addGroup(name, addChildren);
    GetValue(compact);
}

int CustomXmlParser::getSection(const QString& path, const char* name, const std::function<void()>& readChildren)
{
    if (!m_documentLoaded && !LoadXmlFile(path))
        return 0;
    m_qoCurElement =
        m_qoRootElement.firstChildElement(QStringLiteral("content")).firstChildElement(QString::fromLatin1(name));
    if (!m_qoCurElement.isNull())
        readChildren();
    return 1;
}

void CustomXmlParser::addGroup(const char* name, const std::function<void()>& addChildren)
{
    const QDomElement group = m_qoXmlDoc.createElement(QString::fromLatin1(name));
    QDomElement outer = m_qoCurElement;
    m_qoCurElement = group;
    addChildren();
    m_qoCurElement = outer;
    outer.appendChild(group);
}

void CustomXmlParser::forEachItem(const QDomElement& list, const char* name, const std::function<void()>& readItem)
{
    const QString tag = QString::fromLatin1(name);
    for (QDomElement item = list.firstChildElement(tag); !item.isNull(); item = item.nextSiblingElement(tag)) {
        m_qoCurElement = item;
        readItem();
    }
}
