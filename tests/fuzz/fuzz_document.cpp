#include "fuzz/FuzzTarget.h"
#include "fuzz/Records.h"
#include "xml/Catalogue.h"
#include "xml/CustomInfo.h"
#include "xml/CustomInfoLoad.h"
#include "xml/CustomXmlParser.h"

#include <QString>

#include <algorithm>
#include <limits>

namespace {

/// Whether XML carries the text: no control characters but tab and line feed, no half of a pair, no character without
/// meaning, and not nothing but spaces, which the parser drops.
bool isCarried(const QString& text)
{
    bool isBlank = true;
    for (int i = 0; i < text.size(); ++i) {
        const QChar character = text.at(i);
        if (character.isHighSurrogate()) {
            if (++i == text.size() || !text.at(i).isLowSurrogate())
                return false;
            isBlank = false;
            continue;
        }
        const ushort code = character.unicode();
        if (character.isLowSurrogate() || (code < ' ' && code != '\t' && code != '\n') || code >= 0xFFFE)
            return false;
        isBlank = isBlank && character.isSpace();
    }
    return text.isEmpty() || !isBlank;
}

/// Numbers are written as 32 bits with a sign and read without one.
quint64 carried(quint64 number)
{
    const quint32 low = static_cast<quint32>(number);
    return low > quint32(std::numeric_limits<qint32>::max()) ? 0 : low;
}

/// What is left of a record that has gone into a document and out of it again; false when one of its texts is not
/// carried unharmed.
bool throughDocument(CustomInfo& info)
{
    bool isWhole = true;
    for (const Field& field : catalogue::fields()) {
        const int rows = field.list ? field.list->size(info) : 1;
        for (int row = 0; row < rows; ++row) {
            const QString value = field.value(info, row);
            if (field.type == Field::Number)
                field.setValue(info, row, QString::number(carried(value.toULongLong())));
            else if (field.type == Field::Text)
                isWhole = isWhole && isCarried(value);
        }
    }
    // What each secret has room for.
    isWhole = isWhole && info.function.uninstallPassword.toUtf8().size() < 16 &&
              info.vpn.basecfg.preSharedKey.toUtf8().size() <= 128 &&
              info.vpn.l2tpcfg.L2TPTunnelPwd.toUtf8().size() <= 64;
    if (info.sslvpn.getSmsVryCountdownValue == 0)
        info.sslvpn.getSmsVryCountdownValue = 60;
    return isWhole;
}

/// The flags that open other fields are numbers of any size; those that the document shrinks to 0 close them again.
bool closesAGate(const CustomInfo& before, const CustomInfo& after)
{
    const auto closes = [&](auto part, auto flag) { return before.*part.*flag != 0 && after.*part.*flag == 0; };
    return closes(&CustomInfo::function, &BasicFunctionInfo::msgAuthOpt) ||
           closes(&CustomInfo::function, &BasicFunctionInfo::passwordProtection) ||
           closes(&CustomInfo::function, &BasicFunctionInfo::wanControlEscape) ||
           closes(&CustomInfo::x1, &X1OptionsInfo::advancedAuth) ||
           closes(&CustomInfo::portal, &PortalOptionsInfo::advancedAuth);
}

} // namespace

// A document is read the same from memory and from a file, and what was read goes into a document and out of it.
FUZZ_TARGET("document")
{
    const QString directory = QString::fromUtf8(fuzz::directory()) + QLatin1Char('/');
    CustomInfo read;
    const bool isRead = loadCustomInfo(bytes, directory, read);
    CustomInfo parsed;
    HOLDS(fuzz::byParser(bytes, directory, parsed) == isRead);
    HOLDS_TOLD(fuzz::difference(read, parsed).isEmpty(), fuzz::difference(read, parsed));

    // Eleven times as much work, so only for some.
    if (std::count(bytes.begin(), bytes.end(), 'e') % 8 == 0) {
        const QByteArray path = fuzz::written("OrvexCustom.xml", bytes);
        CustomInfo fromFile;
        HOLDS(utl_LoadCustomInfo(path.constData(), fromFile));
        HOLDS_TOLD(fuzz::difference(fromFile, read).isEmpty(), fuzz::difference(fromFile, read));
    }
    if (!isRead)
        return;

    CustomXmlParser parser;
    CustomInfo record = read;
    formatCustomInfo(parser, record);
    const QByteArray path = fuzz::directory() + "/OrvexCustom.xml";
    parser.SaveFile(QString::fromUtf8(path));
    const QByteArray again = fuzz::contentOf(path);

    CustomInfo expected = read;
    const bool isWhole = throughDocument(expected) && !closesAGate(read, expected);
    if ((read.common.funcomVal & funcom::kef) == 0)
        expected.kef = KEFOptionsInfo();
    CustomInfo second;
    const bool isSecondRead = loadCustomInfo(again, directory, second);
    if (!isWhole)
        return;
    HOLDS_TOLD(isSecondRead, again);
    HOLDS_TOLD(fuzz::difference(second, expected).isEmpty(), fuzz::difference(second, expected));
}
