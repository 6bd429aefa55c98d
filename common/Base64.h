#pragma once

/// Writes bytes as base64 (RFC 4648 section 4): the standard alphabet, "=" padding, no line breaks, and a terminating
/// zero byte.
///
/// @param out     room for 4 * ceil(length / 3) + 1 bytes
/// @param length  of `in` in bytes; a length below 1 gives the empty string
/// @return        always 0
int base64_encode(unsigned char* in, unsigned char* out, int length);

/// Writes the bytes that a base64 text stands for, and a zero byte behind them. Differs from RFC 4648 in that an "=" is
/// taken in the third and fourth place of any group, not only of the last, and in that surplus bits are not checked.
///
/// @param in         a C string
/// @param out        for n characters room for n / 4 * 3 + 1 bytes
/// @param outLength  receives the number of bytes without the zero byte; may be null
/// @return           0; -1, with `out` and `outLength` untouched, for a text whose length is no multiple of 4, a
///                   character outside the alphabet (line breaks included), or an "=" in the first or second place of a
///                   group
int base64_decode(unsigned char* in, unsigned char* out, int* outLength);

/// The same as base64_encode.
int utl_base64_encode(unsigned char* in, unsigned char* out, int length);

/// The same as base64_decode.
int utl_base64_decode(unsigned char* in, unsigned char* out, int* outLength);
