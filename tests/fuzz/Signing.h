#pragma once

#include <QByteArray>

namespace fuzz {

/// The bytes that go behind every signed content before its digest is taken.
QByteArray keyBlock();

/// The MD5 digest (RFC 1321) of a document under these 240 bytes, as a verification file has it, by Qt.
QByteArray verificationDigest(const QByteArray& document, const QByteArray& random);

} // namespace fuzz
