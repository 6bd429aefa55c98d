#include "inspect/Verification.h"

#include "common/CustomInfoVerify.h"
#include "xml/CustomXmlParser.h"
#include "xml/PlainDocument.h"

const char* reasonCode(Reason reason)
{
    switch (reason) {
    case Reason::None:
        break;
    case Reason::NoDocument:
        return "no-document";
    case Reason::NoVerification:
        return "no-verification";
    case Reason::NotRegular:
        return "not-regular";
    case Reason::VerificationSize:
        return "verification-size";
    case Reason::DocumentSize:
        return "document-size";
    case Reason::Digest:
        return "digest";
    case Reason::NotParsed:
        return "not-parsed";
    }
    return "";
}

Reason verifyCustomisation(const FileBytes& document, const FileBytes& verification, CommonInfo* common)
{
    if (document.state == FileBytes::Missing)
        return Reason::NoDocument;
    if (verification.state == FileBytes::Missing)
        return Reason::NoVerification;
    if (document.state == FileBytes::NotRegular || verification.state == FileBytes::NotRegular)
        return Reason::NotRegular;
    if (verification.bytes.size() != int(VRF_TOTAL_LEN))
        return Reason::VerificationSize;
    if (document.bytes.size() > int(uiCustomInfoLen))
        return Reason::DocumentSize;
    if (!customInfoDigestHolds(document.bytes, verification.bytes))
        return Reason::Digest;
    CommonInfo plain;
    if (readPlainCommon(document.bytes, common ? *common : plain))
        return Reason::None;
    CustomXmlParser parser;
    if (!parser.loadDocument(document.bytes))
        return Reason::NotParsed;
    if (common)
        parser.GetXMLCommonInfo(QString(), *common);
    return Reason::None;
}
