#pragma once

#include "common/Des.h"

// Secret texts of the customisation document and of the version file: DES in ECB mode with the padding of PKCS #5,
// written as base64. The two functions are for any thread.

/// Results of utl_encrpt and utl_decrpt. Code 1, and 3 and 5 from utl_encrpt, do not occur, since the functions below
/// the two do not fail in that way.
enum FieldCipherResult
{
    FieldCipherSuccess = 0,
    FieldCipherNoKey = 1,        ///< the key could not be set up
    FieldCipherTooSmall = 2,     ///< the output is too small for the enciphered text
    FieldCipherNotEncrypted = 3, ///< the encryption failed
    FieldCipherNoMemory = 4,     ///< an allocation failed, or the text to decipher is empty
    FieldCipherBadEncoding = 5,  ///< the encoding failed, or the text to decipher is no base64
    FieldCipherBadLength = 6     ///< the bytes do not fit the capacity, or the text is damaged
};

/// The key of the enciphered texts. Whatever reads them holds the same 8 bytes.
extern const unsigned char DES_SECRET_KEY[8];

/// The round keys of DES_SECRET_KEY. The first call of utl_encrpt or utl_decrpt makes them.
extern Symmetric_key g_symmKey;

/// True once g_symmKey has been made.
extern bool g_bDesSetuped;

/// Enciphers bytes into a text, base64 with a terminating zero byte.
///
/// @param outCapacity  of `out` in bytes. With `size` for `inLength` rounded down to a multiple of 8, plus 8, the value
///                     size / 3 * 4 + 4 has to be below it: a capacity of 32 takes up to 15 bytes
/// @param inLength     in bytes
/// @return             a FieldCipherResult: 0; 2 or 4 with `out` untouched
unsigned int utl_encrpt(unsigned char* out, unsigned int outCapacity, const unsigned char* in, unsigned int inLength);

/// Deciphers a text of utl_encrpt. A text that was enciphered otherwise is not always told apart and can give
/// meaningless bytes.
///
/// @param length  capacity of `out` in bytes on entry, number of plain bytes on success; they may fill the whole
///                buffer, and no zero byte follows them
/// @param in      a C string
/// @return        a FieldCipherResult: 0; 4, 5 or 6 with `out` and `length` untouched
int utl_decrpt(unsigned char* out, unsigned int* length, const unsigned char* in);
