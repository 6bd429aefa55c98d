#pragma once

/// Length in bytes of an MD5 digest.
constexpr unsigned int MD5_DIGEST_LEN = 16;

/// State of an MD5 digest in the making (RFC 1321).
struct MD5_CTX
{
    unsigned int state[4];    ///< the words A, B, C, D
    unsigned int count[2];    ///< bits taken so far, modulo 2^64; the low word first
    unsigned char buffer[64]; ///< bytes of the block that is not complete yet
};

/// Starts a new digest.
void MD5Init(MD5_CTX* context);

/// Takes `length` further bytes of the message. `data` may be null when `length` is 0.
void MD5Update(MD5_CTX* context, unsigned char* data, unsigned int length);

/// Ends the message, writes the 16 bytes of its digest and clears the context, which holds the end of the message.
void MD5Final(unsigned char* digest, MD5_CTX* context);

/// The compression function: mixes one block of 64 bytes into the four words of `state`.
void MD5Transform(unsigned int* state, unsigned char* block);

/// Writes to `digest` the 16 bytes of the digest over `length` bytes at `data`.
void MD5Calc(unsigned char* digest, unsigned char* data, unsigned int length);

/// Digest over a file. The file's size is asked once, at the start, and that many bytes count.
///
/// @param digest      receives 16 bytes
/// @param digestSize  capacity of `digest` in bytes
/// @param path        in the local 8-bit encoding
/// @return            1; 0, with `digest` untouched, for a null path or digest, a capacity below 16, or a file that is
///                    missing, cannot be opened or yields fewer bytes than its size told
int CalcMD5FromFile(unsigned char* digest, unsigned int digestSize, const char* path);
