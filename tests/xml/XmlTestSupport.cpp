#include "xml/XmlTestSupport.h"

#include "common/FieldCipher.h"
#include "support/Installation.h"

#include <QTextCodec>

#include <memory>

#include <openssl/evp.h>

namespace {

// DES is triple DES with three equal keys.
QByteArray cipher(const QByteArray& in, bool encrypt)
{
    const QByteArray key = QByteArray(reinterpret_cast<const char*>(DES_SECRET_KEY), sizeof DES_SECRET_KEY).repeated(3);
    const std::unique_ptr<EVP_CIPHER_CTX, void (*)(EVP_CIPHER_CTX*)> context(EVP_CIPHER_CTX_new(), EVP_CIPHER_CTX_free);
    QByteArray out(in.size() + 8, '\0');
    unsigned char* room = reinterpret_cast<unsigned char*>(out.data());
    int length = 0;
    int lastLength = 0;
    const bool done =
        EVP_CipherInit_ex(context.get(), EVP_des_ede3_ecb(), nullptr,
                          reinterpret_cast<const unsigned char*>(key.constData()), nullptr, encrypt ? 1 : 0) == 1 &&
        EVP_CipherUpdate(context.get(), room, &length, reinterpret_cast<const unsigned char*>(in.constData()),
                         in.size()) == 1 &&
        EVP_CipherFinal_ex(context.get(), room + length, &lastLength) == 1;
    return done ? out.left(length + lastLength) : QByteArray("damaged");
}

} // namespace

LocaleCodec::LocaleCodec(const char* name) : m_former(QTextCodec::codecForLocale())
{
    QTextCodec::setCodecForLocale(QTextCodec::codecForName(name));
}

LocaleCodec::~LocaleCodec()
{
    QTextCodec::setCodecForLocale(m_former);
}

QString documentPath()
{
    return installation::path(QStringLiteral("document.xml"));
}

QString documentOf(const QByteArray& content)
{
    installation::writeFile(documentPath(), content);
    return documentPath();
}

QString documentWith(const QByteArray& sections)
{
    return documentOf(frame(sections));
}

QByteArray frame(const QByteArray& sections)
{
    return "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n"
           "<msg>\n"
           "    <content>\n" +
           sections +
           "    </content>\n"
           "</msg>\n";
}

QByteArray written(const std::function<void(CustomXmlParser&)>& format)
{
    CustomXmlParser parser;
    parser.FormatXMLInit();
    format(parser);
    parser.SaveFile(documentPath());
    return installation::readFile(documentPath());
}

QByteArray enciphered(const QByteArray& plain)
{
    return cipher(plain, true).toBase64();
}

QByteArray deciphered(const QByteArray& text)
{
    const auto bytes = QByteArray::fromBase64Encoding(text, QByteArray::AbortOnBase64DecodingErrors);
    return bytes ? cipher(*bytes, false) : QByteArray("damaged");
}
