#pragma once

/// Round keys of DES (FIPS 46-3) or triple DES (SP 800-67): six schedules of 32 words, as deskey makes them.
/// des_setup fills the first two, for encryption and decryption. des3_setup fills all six: encryption with key 1,
/// decryption with key 2, encryption with key 3, then decryption with key 3, encryption with key 2, decryption with
/// key 1. Either direction of triple DES thus applies three schedules in the order in which they stand.
struct Symmetric_key
{
    unsigned long schedules[6][32];
};

/// Makes a key schedule. Each pair of words is the key of one round, its bits 1 to 24 and 25 to 48; the rounds stand in
/// the order in which desfunc takes them.
///
/// @param key        8 bytes, whose parity bits do not count
/// @param direction  0 for encryption, 1 for decryption
/// @param schedule   receives 32 words
void deskey(const unsigned char* key, short direction, unsigned long* schedule);

/// One DES operation in place, in the direction of the schedule.
///
/// @param block  the left and the right half; bits above the low 32 do not count and are 0 in the result
void desfunc(unsigned long* block, const unsigned long* schedule);

/// Makes the schedules of DES from a key of 8 bytes. Always returns 0.
int des_setup(const unsigned char* key, Symmetric_key* symmetricKey);

/// Makes the schedules of triple DES from a key of 24 bytes: key 1, key 2, key 3. Always returns 0.
int des3_setup(const unsigned char* key, Symmetric_key* symmetricKey);

/// One block of 8 bytes from `in` to `out`, which may be the same. Each half is read and written in big-endian order.
/// Triple DES encrypts with key 1, decrypts with key 2 and encrypts with key 3.
void des_ecb_encrypt(const unsigned char* in, unsigned char* out, Symmetric_key* symmetricKey);
void des_ecb_decrypt(const unsigned char* in, unsigned char* out, Symmetric_key* symmetricKey);
void des3_ecb_encrypt(const unsigned char* in, unsigned char* out, Symmetric_key* symmetricKey);
void des3_ecb_decrypt(const unsigned char* in, unsigned char* out, Symmetric_key* symmetricKey);

/// Enciphers in ECB mode with the padding of PKCS #5 (RFC 8018).
///
/// @param inLength     in bytes
/// @param outCapacity  of `out` in bytes; the output has `inLength` rounded down to a multiple of 8, plus 8 bytes
/// @return             the length of the output; -1, with `out` untouched, when it exceeds the capacity
int des_encrypt(const unsigned char* in, unsigned int inLength, unsigned char* out, unsigned int outCapacity,
                Symmetric_key* symmetricKey);
int des3_encrypt(const unsigned char* in, unsigned int inLength, unsigned char* out, unsigned int outCapacity,
                 Symmetric_key* symmetricKey);

/// Deciphers what des_encrypt or des3_encrypt gave. All `inLength` bytes are written, the padding among them.
///
/// @param inLength     in bytes
/// @param outCapacity  of `out` in bytes. The limit of des_decrypt is this rounded down to a multiple of 8, plus 8, and
///                     the caller provides 8 bytes beyond the capacity; the limit of des3_decrypt is the capacity
/// @return             `inLength` less the value of the last byte written; -1, with `out` untouched, for an `inLength`
///                     that is no multiple of 8 or exceeds the limit; 0 for no input. The padding is not checked in any
///                     other way: damaged input gives an arbitrary length, and one that wrapped around as an unsigned
///                     number when the byte exceeds `inLength`
int des_decrypt(const unsigned char* in, unsigned int inLength, unsigned char* out, unsigned int outCapacity,
                Symmetric_key* symmetricKey);
int des3_decrypt(const unsigned char* in, unsigned int inLength, unsigned char* out, unsigned int outCapacity,
                 Symmetric_key* symmetricKey);
