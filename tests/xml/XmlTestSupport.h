#pragma once

#include "xml/CustomXmlParser.h"

#include <QByteArray>
#include <QString>

#include <functional>

QT_BEGIN_NAMESPACE
class QTextCodec;
QT_END_NAMESPACE

/// The codec of the locale for the life of the object.
class LocaleCodec
{
public:
    explicit LocaleCodec(const char* name);
    ~LocaleCodec();
    LocaleCodec(const LocaleCodec&) = delete;
    LocaleCodec& operator=(const LocaleCodec&) = delete;

private:
    QTextCodec* m_former;
};

constexpr char s_latin1[] = "ISO 8859-1";

/// Shows what CustomXmlParser sees of its base.
class OpenXmlParser : public CustomXmlParser
{
public:
    using CustomXmlParser::m_qoCurElement;
    using CustomXmlParser::m_qoRootElement;
    using CustomXmlParser::m_qoXmlDoc;
    using CustomXmlParser::m_qstrXML;
};

/// Path of the scratch document of the test.
QString documentPath();

/// Writes a scratch document with the content and returns its path.
QString documentOf(const QByteArray& content);

/// Writes a scratch document whose `content` element holds the sections, and returns its path.
QString documentWith(const QByteArray& sections);

/// The bytes of a document whose `content` element holds the sections, which are indented by eight.
QByteArray frame(const QByteArray& sections);

/// The bytes of the file after FormatXMLInit, what `format` does, and SaveFile.
QByteArray written(const std::function<void(CustomXmlParser&)>& format);

/// What OpenSSL makes of the bytes: DES under the key of the document's fields with the padding of PKCS #5, as base64.
QByteArray enciphered(const QByteArray& plain);

/// What OpenSSL makes of such a text; "damaged" when it is none.
QByteArray deciphered(const QByteArray& text);
