#pragma once

#include "xml/CustomInfo.h"

#include <QByteArray>

/// Why a customisation is not taken for what this system wrote. Of several reasons the first in this order is told:
/// what is missing, then what is of the wrong kind, then the sizes, then the contents.
enum class Reason
{
    None,
    NoDocument,       // no document, or one that may not be read
    NoVerification,   // no verification file, or one that may not be read
    NotRegular,       // one of the two is there but is no regular file
    VerificationSize, // the verification file has not its 256 bytes
    DocumentSize,     // the document has more than uiCustomInfoLen bytes
    Digest,           // the digest does not match
    NotParsed         // the document is no XML within the parser's bounds, or has no element `content`
};

/// "no-document", "no-verification", "not-regular", "verification-size", "document-size", "digest", "not-parsed"; empty
/// for Reason::None.
const char* reasonCode(Reason reason);

/// A file as far as it could be read.
struct FileBytes
{
    enum State
    {
        Missing, // not there, or not to be opened
        NotRegular,
        Read
    };
    State state = Missing;
    /// At most one byte more than the limit it was read with, which shows that the file is longer.
    QByteArray bytes;
};

/// Tests a document against its verification. Neither a file nor the log is touched.
///
/// @param common  takes the section `common` of a document that holds; what the document lacks keeps its default
Reason verifyCustomisation(const FileBytes& document, const FileBytes& verification, CommonInfo* common = nullptr);
