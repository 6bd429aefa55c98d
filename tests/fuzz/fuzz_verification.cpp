#include "common/CustomInfoVerify.h"
#include "fuzz/FuzzTarget.h"
#include "fuzz/Records.h"
#include "fuzz/Signing.h"
#include "inspect/Verification.h"
#include "xml/CustomInfo.h"

#include <QHash>
#include <QString>

#include <sys/stat.h>
#include <unistd.h>

namespace {

constexpr int s_randomLength = 240;

/// The manager's answer, from files.
bool heldByFiles(const QByteArray& document, const QByteArray& verification)
{
    fuzz::written("OrvexCustom.xml", document);
    fuzz::written("OrvexCustomXml.vrf", verification);
    return utl_CusXmlVerify(fuzz::directory().constData());
}

/// The three ways agree with each other and with the rule.
void verify(const QByteArray& document, const QByteArray& verification, bool isExpected)
{
    HOLDS(customInfoDigestHolds(document, verification) == isExpected);
    HOLDS(heldByFiles(document, verification) == isExpected);

    CommonInfo common;
    common.cusTimeStamp = 17;
    const Reason reason = verifyCustomisation({FileBytes::Read, document}, {FileBytes::Read, verification}, &common);
    CustomInfo parsed;
    const bool isParsed = isExpected && fuzz::byParser(document, QString(), parsed);
    Reason expected = Reason::None;
    if (verification.size() != int(VRF_TOTAL_LEN))
        expected = Reason::VerificationSize;
    else if (document.size() > int(uiCustomInfoLen))
        expected = Reason::DocumentSize;
    else if (!isExpected)
        expected = Reason::Digest;
    else if (!isParsed)
        expected = Reason::NotParsed;
    HOLDS_TOLD(reason == expected, QByteArray(reasonCode(reason)) + " for " + reasonCode(expected));
    if (!isParsed)
        HOLDS(common.cusTimeStamp == 17);
    else if (!document.contains("<common/>") && document.contains("<common>") && parsed.common.cusTimeStamp != 0)
        HOLDS(common.cusTimeStamp == parsed.common.cusTimeStamp && common.cusAddInfo == parsed.common.cusAddInfo &&
              common.procomVal == parsed.common.procomVal && common.funcomVal == parsed.common.funcomVal);
}

/// The verification file that the manager makes of the document holds.
void sign(const QByteArray& document)
{
    const QByteArray path = fuzz::written("OrvexCustom.xml", document);
    const QByteArray custom = fuzz::directory() + "/custom";
    mkdir(custom.constData(), 0700);
    const QByteArray target = custom + "/OrvexCustomXml.vrf";
    unlink(target.constData()); // else the manager calls the shell for it
    unsigned long error = 0;
    const bool isSigned = utl_GenCustomInfoVerify(&error, QByteArray(path).data());
    HOLDS(isSigned == (document.size() <= int(uiCustomInfoLen)) && error == (isSigned ? 0UL : 302UL));
    if (isSigned)
        verify(document, fuzz::contentOf(target), true);
}

} // namespace

// The first byte chooses the way: a verification file as it is given, one that is right for the document, the same with
// one bit turned in it or in the document, or the manager's own.
FUZZ_TARGET("verification")
{
    QByteArray input = bytes;
    const int way = fuzz::takeByte(input) % 4;
    if (way == 3) {
        sign(input);
        return;
    }
    if (way == 0) {
        const int length = fuzz::takeByte(input) + fuzz::takeByte(input) % 2 * 256;
        const QByteArray verification = input.left(length);
        const QByteArray document = input.mid(length);
        const QByteArray random = verification.left(s_randomLength);
        verify(document, verification,
               verification.size() == int(VRF_TOTAL_LEN) && document.size() <= int(uiCustomInfoLen) &&
                   fuzz::verificationDigest(document, random) == verification.mid(s_randomLength));
        return;
    }
    const int place = int(qHash(input) & 0x00FFFFFF); // elsewhere after any change
    QByteArray random;
    for (int i = 0; i < s_randomLength; ++i)
        random.append(char(i * 37 + place));
    QByteArray document = input;
    QByteArray verification = random + fuzz::verificationDigest(document, random);
    const bool isShort = document.size() <= int(uiCustomInfoLen);
    if (way == 2) {
        QByteArray& turned = place % 2 == 0 || document.isEmpty() ? verification : document;
        const int at = place / 16 % turned.size();
        turned[at] = char(turned.at(at) ^ (1 << (place / 2 % 8)));
    }
    verify(document, verification, isShort && way == 1);
}
