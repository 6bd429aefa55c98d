#pragma once

class QString;

/// The wide rule, for the ZOA servers: four parts between dots, each taken by QString::toInt in base 10 and within 0
/// to 255. Signs, blanks around a part and leading zeros pass as far as toInt takes them; a dot behind the fourth part
/// does not. Differs from isDottedAddress: the two are not interchangeable.
bool isIPAddrLegal(const QString& address);

/// The pattern of the narrow rule: four decimal numbers from 0 to 255 without leading zeros. A dot behind the fourth
/// number passes, because each number may end in a dot or at the end of the text.
extern const char dottedAddressPattern[];

/// The narrow rule: `dottedAddressPattern` under QRegExp::exactMatch, with case. Differs from isIPAddrLegal.
bool isDottedAddress(const QString& address);
