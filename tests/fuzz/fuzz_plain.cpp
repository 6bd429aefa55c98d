#include "fuzz/FuzzTarget.h"
#include "fuzz/Records.h"
#include "xml/CustomInfo.h"
#include "xml/PlainDocument.h"

#include <QString>

// Of a document that the reader of plain ones takes, the parser makes the same record; one that it does not take leaves
// the record alone.
FUZZ_TARGET("plain")
{
    const QString directory = QStringLiteral("/store/1700000000/");
    CustomInfo read;
    CommonInfo common;
    common.cusTimeStamp = 17;
    const bool isTaken = readPlainDocument(bytes, directory, read);
    HOLDS(readPlainCommon(bytes, common) == isTaken);
    if (!isTaken) {
        HOLDS(common.cusTimeStamp == 17);
        const CustomInfo untouched;
        HOLDS_TOLD(fuzz::difference(read, untouched).isEmpty(), fuzz::difference(read, untouched));
        return;
    }
    CustomInfo parsed;
    HOLDS(fuzz::byParser(bytes, directory, parsed));
    HOLDS_TOLD(fuzz::difference(read, parsed).isEmpty(), fuzz::difference(read, parsed));
    CustomInfo commonOnly = parsed;
    commonOnly.common = common;
    HOLDS_TOLD(fuzz::difference(commonOnly, parsed).isEmpty(), fuzz::difference(commonOnly, parsed));
}
