#pragma once

#include <QDomDocument>
#include <QDomElement>
#include <QString>

#include <string>

/// A QDomDocument with a current element and typed add and read operations by element name on its children. A null
/// name or a null current element makes every add, remove and read by name do nothing but clear its output where it
/// does that. Not thread safe. Failures are told by false and a log line.
class CBasedQtXmlParser
{
public:
    virtual ~CBasedQtXmlParser();

    /// Parses text; sets the root and the current element.
    bool LoadXml(const QString& text);
    /// Parses a file, with namespace processing; sets the root and the current element.
    bool LoadXmlFile(const QString& path);
    /// Parses the content of a file, as LoadXmlFile does. With the path of that file, in the local 8-bit encoding, the
    /// log line of a failure is that of LoadXmlFile.
    bool LoadXmlBytes(const QByteArray& bytes, const char* path = nullptr);
    /// Writes the document as UTF-8 with an indentation of 4. When the document cannot be serialised the file stays
    /// truncated; a file that could not be written whole is removed. False when it is not whole.
    bool SaveXmlFile(const QString& path);
    /// Serialises the document into the text of the last serialisation, with indentation 4, or without any line feed
    /// of its own when `compact` is set, less the first line feed that is there.
    bool GetValue(bool compact);
    void ClearPraserData();

    /// The value as it stands. The text goes to the first child of that name: a second element of one name stays empty
    /// and the first gets a second text.
    void AddItem(const char* name, const QString& value);
    /// The value decoded from the local 8-bit encoding; null gives an element without text.
    void AddItem(const char* name, const char* value);
    /// "true" or "false".
    void AddItem(const char* name, bool value);
    /// Decimal, as a signed number: values from 2147483648 up appear negative.
    void AddItem(const char* name, unsigned int value);
    void AddItem(const char* name, unsigned long long value);
    /// The UTF-8 bytes of the value, decoded with the local 8-bit codec.
    void AddUtf8Item(const char* name, const QString& value);
    void RemoveItem(const char* name);
    /// Sets the text of the child of `parent`; a child that is missing is added to the current element. Always true.
    bool ModifyXMLValue(QDomNode& parent, const QString& name, const QString& value);

    /// Text of the child, cut to `maxLen` characters when that is not 0; empty when there is none.
    void GetNodeValue(const char* name, QString& out, unsigned short maxLen = 0);
    /// In the local 8-bit encoding.
    /// Contract: with `maxLen` not 0 only a text that is longer is stored, cut; one within the limit leaves it empty.
    void GetNodeValue(const char* name, std::string& out, unsigned short maxLen);
    /// 0 when the text is missing or no number.
    void GetNodeValue(const char* name, unsigned int& out);
    void GetNodeValue(const char* name, unsigned short& out);
    void GetNodeValue(const char* name, unsigned long long& out);
    /// True for "true" or "1", false for "false" or "0", without regard to case.
    /// Contract: any other text, and a missing one, keeps the caller's value.
    void GetNodeValue(const char* name, bool& out);
    /// The text by way of UTF-8, cut at its first NUL.
    void GetUtf8NodeValue(const char* name, QString& out);

    void GetNodeValue(QDomElement* element, QString& out);
    /// In the local 8-bit encoding, up to the first NUL.
    void GetNodeValue(QDomElement* element, std::string& out);
    void GetAttributeValue(QDomElement* element, const char* name, QString& out);
    void GetAttributeValue(QDomElement* element, const char* name, std::string& out);
    /// Copies the value's local 8-bit bytes, at most `maxLen` when that is not 0.
    /// Contract: no terminator is added in the room that the value fills.
    void GetAttributeValue(QDomElement* element, const char* name, char* out, unsigned int maxLen);
    void GetAttributeValue(QDomElement* element, const char* name, unsigned int& out);
    /// Contract: by the signed conversion, unlike GetNodeValue.
    void GetAttributeValue(QDomElement* element, const char* name, unsigned long long& out);
    void GetAttributeValue(QDomElement* element, const char* name, bool& out);
    /// The number 1 or 0.
    void SetAttributeValue(QDomElement& element, const char* name, bool value);
    void SetAttributeValue(QDomElement& element, const char* name, unsigned int value);
    void SetAttributeValue(QDomElement& element, const char* name, unsigned long long value);
    /// Null changes nothing.
    void SetAttributeValue(QDomElement& element, const char* name, const char* value);

protected:
    /// The content of a file, as LoadXmlFile takes it; of one that cannot be opened the log tells what LoadXmlFile
    /// does.
    static bool readFile(const QString& path, QByteArray& bytes);

    QDomDocument m_qoXmlDoc;
    QDomElement m_qoRootElement;
    QDomElement m_qoCurElement; // the operations by name work on its children
    QString m_qstrXML;          // text of the last serialisation

private:
    QString childText(const char* name) const;
};
