#pragma once

#include <QByteArray>

/// DES under the key of the document's fields with the padding of PKCS #5, by OpenSSL.
namespace openssldes {

QByteArray enciphered(const QByteArray& plain);

/// What stands in the blocks, the padding among them; empty for bytes that are no whole blocks.
QByteArray decipheredBlocks(const QByteArray& blocks);

} // namespace openssldes
