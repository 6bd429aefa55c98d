#include "xml/CBasedQtXmlParser.h"

#include "common/Log.h"

#include <QFile>
#include <QFileInfo>
#include <QTextStream>
#include <QXmlDefaultHandler>
#include <QXmlInputSource>
#include <QXmlSimpleReader>

#include <cstdio>
#include <cstring>

namespace {

// Contract: the number is formatted with "%I64d". The C library reads that as the flag I, the width 64 and a plain int
// conversion, so the text is the low 32 bits, set right in 64 columns, of which 63 fit the buffer.
QByteArray wideNumber(unsigned long long value)
{
    char text[64] = {};
    snprintf(text, sizeof text, "%I64d", static_cast<int>(value));
    return QByteArray(text);
}

QT_WARNING_PUSH
QT_WARNING_DISABLE_DEPRECATED

// The library's parser calls itself once a level, and a text whose entities hold markup grows beyond all bounds. A
// document of this system has six levels and declares no entities.
constexpr int s_maxDepth = 1000;

/// Reads a document for nothing but its bounds. What does not parse is within them.
class Bounds : public QXmlDefaultHandler
{
public:
    bool hold(const QXmlInputSource& source)
    {
        QXmlSimpleReader reader;
        // Without namespaces the reader takes whatever it takes with them.
        reader.setFeature(QStringLiteral("http://xml.org/sax/features/namespaces"), false);
        reader.setContentHandler(this);
        reader.setDeclHandler(this);
        reader.parse(&source, false);
        return m_within;
    }

    bool startElement(const QString&, const QString&, const QString&, const QXmlAttributes&) override
    {
        m_within = ++m_depth <= s_maxDepth;
        return m_within;
    }
    bool endElement(const QString&, const QString&, const QString&) override
    {
        --m_depth;
        return true;
    }
    bool internalEntityDecl(const QString&, const QString&) override
    {
        m_within = false;
        return false;
    }

private:
    int m_depth = 0;
    bool m_within = true;
};

bool readWithinBounds(const QXmlInputSource& source)
{
    return Bounds().hold(source);
}

/// Whether the mere characters prove that a text keeps to its bounds: nothing in it declares anything, so it has no
/// entities of its own, and no more elements begin than may stand in one another. What it does not prove has to be
/// read.
bool plainlyWithinBounds(const QByteArray& utf8)
{
    int begun = 0;
    for (int place = utf8.indexOf('<'); place >= 0; place = utf8.indexOf('<', place + 1)) {
        const char* const next = utf8.constData() + place + 1; // a zero byte ends the array
        if (*next == '!' ? qstrncmp(next, "!--", 3) != 0 : *next != '/' && ++begun > s_maxDepth)
            return false;
    }
    return true;
}

bool withinBounds(const QString& text)
{
    if (plainlyWithinBounds(text.toUtf8()))
        return true;
    QXmlInputSource source;
    source.setData(text);
    return readWithinBounds(source);
}

bool withinBounds(const QByteArray& data)
{
    // In another encoding the characters that are looked for could be hidden.
    static const QByteArray utf8("<?xml version=\"1.0\" encoding=\"utf-8\"?>");
    if (qstrnicmp(data.constData(), utf8.constData(), uint(utf8.size())) == 0 && plainlyWithinBounds(data))
        return true;
    QXmlInputSource source;
    source.setData(data);
    return readWithinBounds(source);
}

QT_WARNING_POP

bool readBool(const QString& text, bool& out)
{
    const auto is = [&text](const char* word) { return text.compare(QLatin1String(word), Qt::CaseInsensitive) == 0; };
    if (is("true") || is("1"))
        out = true;
    else if (is("false") || is("0"))
        out = false;
    else
        return false;
    return true;
}

} // namespace

CBasedQtXmlParser::~CBasedQtXmlParser() = default;

bool CBasedQtXmlParser::LoadXml(const QString& text)
{
    if (!withinBounds(text) || !m_qoXmlDoc.setContent(text)) {
        logX(1, "CBasedQtXmlParser::LoadXml: Load XML str[%s].", text.toLocal8Bit().constData());
        return false;
    }
    m_qoRootElement = m_qoXmlDoc.documentElement();
    m_qoCurElement = m_qoRootElement;
    return true;
}

bool CBasedQtXmlParser::LoadXmlFile(const QString& path)
{
    QByteArray bytes;
    return readFile(path, bytes) && LoadXmlBytes(bytes, path.toLocal8Bit().constData());
}

bool CBasedQtXmlParser::LoadXmlBytes(const QByteArray& bytes, const char* path)
{
    if (!withinBounds(bytes) || !m_qoXmlDoc.setContent(bytes, true)) {
        if (path)
            logX(1, "CBasedQtXmlParser::LoadXmlFile:Load XML File[%s].", path);
        else
            logX(1, "CBasedQtXmlParser::LoadXmlBytes: Load XML bytes.");
        return false;
    }
    m_qoRootElement = m_qoXmlDoc.documentElement();
    m_qoCurElement = m_qoRootElement;
    return true;
}

bool CBasedQtXmlParser::readFile(const QString& path, QByteArray& bytes)
{
    QFile file(path);
    // A pipe in the place of the file must not block the program.
    if (!QFileInfo(path).isFile() || !file.open(QIODevice::ReadOnly)) {
        logX(1, "CBasedQtXmlParser::LoadXmlFile:Open XML File[%s].", path.toLocal8Bit().constData());
        return false;
    }
    bytes = file.readAll();
    return true;
}

bool CBasedQtXmlParser::SaveXmlFile(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate)) {
        logX(1, "SaveXmlFile: can not open file!");
        return false;
    }
    if (!GetValue(false))
        return false;
    QTextStream stream(&file);
    stream.setCodec("UTF-8");
    stream << m_qstrXML;
    stream.flush();
    const bool isFlushed = stream.status() == QTextStream::Ok && file.flush();
    file.close(); // some file systems refuse what was written only now
    if (isFlushed && file.error() == QFileDevice::NoError)
        return true;
    // What is cut short must not pass for a document. A device stays where it is.
    if (QFileInfo(path).isFile() && !file.remove())
        logX(1, "SaveXmlFile: can not remove file!");
    logX(1, "SaveXmlFile: can not write file!");
    return false;
}

bool CBasedQtXmlParser::GetValue(bool compact)
{
    m_qstrXML = QStringLiteral("");
    QTextStream stream(&m_qstrXML, QIODevice::ReadWrite);
    if (m_qoXmlDoc.isNull()) {
        logX(1, "GetValue:m_qoXmlDoc is NULL");
        return false;
    }
    m_qoXmlDoc.save(stream, compact ? -1 : 4, QDomNode::EncodingFromDocument);
    stream.seek(0);
    if (stream.atEnd()) {
        logX(1, "GetValue:stream is NULL");
        return false;
    }
    m_qstrXML = stream.readAll();
    if (m_qstrXML.isNull()) {
        logX(1, "GetValue:m_qstrXML is NULL");
        return false;
    }
    if (compact) {
        const int lineFeed = m_qstrXML.indexOf(QLatin1Char('\n'));
        if (lineFeed >= 0)
            m_qstrXML.remove(lineFeed, 1);
    }
    return true;
}

void CBasedQtXmlParser::ClearPraserData()
{
    m_qoXmlDoc.clear();
    m_qoRootElement.clear();
    m_qoCurElement.clear();
    m_qstrXML = QStringLiteral("");
}

void CBasedQtXmlParser::AddItem(const char* name, const QString& value)
{
    if (!name || m_qoCurElement.isNull())
        return;
    m_qoCurElement.appendChild(m_qoXmlDoc.createElement(QString::fromLocal8Bit(name)));
    // Contract: the text goes to the first child of this name, which need not be the one just added.
    QDomElement target = m_qoCurElement.firstChildElement(QString::fromUtf8(name));
    if (!target.isNull())
        target.appendChild(m_qoXmlDoc.createTextNode(value));
}

void CBasedQtXmlParser::AddItem(const char* name, const char* value)
{
    if (!name || m_qoCurElement.isNull())
        return;
    QDomElement element = m_qoXmlDoc.createElement(QString::fromLocal8Bit(name));
    if (value)
        element.appendChild(m_qoXmlDoc.createTextNode(QString::fromLocal8Bit(value)));
    m_qoCurElement.appendChild(element);
}

void CBasedQtXmlParser::AddItem(const char* name, bool value)
{
    AddItem(name, value ? "true" : "false");
}

void CBasedQtXmlParser::AddItem(const char* name, unsigned int value)
{
    char text[16];
    snprintf(text, sizeof text, "%d", static_cast<int>(value));
    AddItem(name, static_cast<const char*>(text));
}

void CBasedQtXmlParser::AddItem(const char* name, unsigned long long value)
{
    AddItem(name, wideNumber(value).constData());
}

void CBasedQtXmlParser::AddUtf8Item(const char* name, const QString& value)
{
    AddItem(name, value.toUtf8().constData());
}

void CBasedQtXmlParser::RemoveItem(const char* name)
{
    if (!name || m_qoCurElement.isNull())
        return;
    const QDomNode child = m_qoCurElement.namedItem(QString::fromLocal8Bit(name));
    if (!child.isNull())
        m_qoCurElement.removeChild(child);
}

bool CBasedQtXmlParser::ModifyXMLValue(QDomNode& parent, const QString& name, const QString& value)
{
    QDomElement element = parent.firstChildElement(name);
    if (element.isNull()) {
        // Contract: the new element goes under the current element, not under `parent`.
        AddItem(name.toLocal8Bit().constData(), value);
        return true;
    }
    if (element.text() == value)
        return true;
    QDomNode first = element.firstChild();
    if (first.isNull())
        element.appendChild(m_qoXmlDoc.createTextNode(value));
    else if (first.isText())
        first.setNodeValue(value);
    return true;
}

QString CBasedQtXmlParser::childText(const char* name) const
{
    if (!name || m_qoCurElement.isNull())
        return QStringLiteral("");
    const QString text = m_qoCurElement.firstChildElement(QString::fromLocal8Bit(name)).text();
    return text.isEmpty() ? QStringLiteral("") : text;
}

void CBasedQtXmlParser::GetNodeValue(const char* name, QString& out, unsigned short maxLen)
{
    out = childText(name);
    if (maxLen != 0 && out.size() > maxLen) {
        logX(3, "CBasedQtXmlParser::GetNodeValue: Node:%s len too long!", name);
        out = out.left(maxLen);
    }
}

void CBasedQtXmlParser::GetNodeValue(const char* name, std::string& out, unsigned short maxLen)
{
    out.clear();
    const QByteArray text = childText(name).toLocal8Bit();
    if (maxLen == 0) {
        out.assign(text.constData(), size_t(text.size()));
    } else if (text.size() > maxLen) {
        logX(3, "CBasedQtXmlParser::GetNodeValue1:Node:%s len too long!", name);
        out.assign(text.constData(), maxLen);
    }
}

void CBasedQtXmlParser::GetNodeValue(const char* name, unsigned int& out)
{
    out = childText(name).toUInt();
}

void CBasedQtXmlParser::GetNodeValue(const char* name, unsigned short& out)
{
    out = childText(name).toUShort();
}

void CBasedQtXmlParser::GetNodeValue(const char* name, unsigned long long& out)
{
    out = childText(name).toULongLong();
}

void CBasedQtXmlParser::GetNodeValue(const char* name, bool& out)
{
    readBool(childText(name), out);
}

void CBasedQtXmlParser::GetUtf8NodeValue(const char* name, QString& out)
{
    out = QString::fromUtf8(childText(name).toUtf8().constData());
}

void CBasedQtXmlParser::GetNodeValue(QDomElement* element, QString& out)
{
    if (!element)
        return;
    out = element->text();
    if (out.isEmpty())
        out = QStringLiteral("");
}

void CBasedQtXmlParser::GetNodeValue(QDomElement* element, std::string& out)
{
    if (element)
        out = element->text().toLocal8Bit().constData();
}

void CBasedQtXmlParser::GetAttributeValue(QDomElement* element, const char* name, QString& out)
{
    out = element && name ? element->attribute(QString::fromLocal8Bit(name)) : QString();
    if (out.isEmpty())
        out = QStringLiteral("");
}

void CBasedQtXmlParser::GetAttributeValue(QDomElement* element, const char* name, std::string& out)
{
    QString text;
    GetAttributeValue(element, name, text);
    out = text.toLocal8Bit().constData();
}

void CBasedQtXmlParser::GetAttributeValue(QDomElement* element, const char* name, char* out, unsigned int maxLen)
{
    if (!out || !element)
        return;
    QString text;
    GetAttributeValue(element, name, text);
    const QByteArray bytes = text.toLocal8Bit();
    if (bytes.isEmpty())
        return;
    const size_t length = size_t(bytes.size());
    if (maxLen == 0) {
        memcpy(out, bytes.constData(), length);
        return;
    }
    // As strncpy does: the rest of the room is zeroed, and a value that fills it has no terminator.
    const size_t taken = qMin(size_t(maxLen), length);
    memcpy(out, bytes.constData(), taken);
    memset(out + taken, 0, maxLen - taken);
}

void CBasedQtXmlParser::GetAttributeValue(QDomElement* element, const char* name, unsigned int& out)
{
    QString text;
    GetAttributeValue(element, name, text);
    out = text.toUInt();
}

void CBasedQtXmlParser::GetAttributeValue(QDomElement* element, const char* name, unsigned long long& out)
{
    QString text;
    GetAttributeValue(element, name, text);
    out = static_cast<unsigned long long>(text.toLongLong());
}

void CBasedQtXmlParser::GetAttributeValue(QDomElement* element, const char* name, bool& out)
{
    QString text;
    GetAttributeValue(element, name, text);
    out = false;
    readBool(text, out);
}

void CBasedQtXmlParser::SetAttributeValue(QDomElement& element, const char* name, bool value)
{
    element.setAttribute(QString::fromLocal8Bit(name), value ? 1 : 0);
}

void CBasedQtXmlParser::SetAttributeValue(QDomElement& element, const char* name, unsigned int value)
{
    element.setAttribute(QString::fromLocal8Bit(name), value);
}

void CBasedQtXmlParser::SetAttributeValue(QDomElement& element, const char* name, unsigned long long value)
{
    element.setAttribute(QString::fromLocal8Bit(name), QString::fromLatin1(wideNumber(value)));
}

void CBasedQtXmlParser::SetAttributeValue(QDomElement& element, const char* name, const char* value)
{
    if (value)
        element.setAttribute(QString::fromLocal8Bit(name), QString::fromLocal8Bit(value));
}
