#pragma once

class QByteArray;

/// Length in bytes of the verification file: 240 random bytes and an MD5 digest (RFC 1321).
constexpr unsigned long VRF_TOTAL_LEN = 256;

/// The longest document in bytes that can be verified.
constexpr unsigned long uiCustomInfoLen = 40588;

/// Writes `custom/OrvexCustomXml.vrf` below the directory of the executable. The digest runs over the document, the
/// random bytes, the byte 0xFF with 31 zero bytes, and 30 key bytes.
///
/// Not for two threads at once, together with utl_CusXmlVerify: both use one buffer.
///
/// @param out      set after a failure: 301 no size, 302 document larger than uiCustomInfoLen, 303 document not
///                 readable, 306 no key. A verification file that cannot be opened, or not written whole, sets
///                 nothing.
/// @param xmlPath  path of the document, local 8-bit encoding
/// @return         true when the file was written; one that could not be written whole is removed
bool utl_GenCustomInfoVerify(unsigned long* out, char* xmlPath);

/// Tests the document in `dir` (without trailing "/") against the verification file beside it. Each failure is logged.
bool utl_CusXmlVerify(const char* dir);

/// Tests a document against the content of a verification file, both in memory; logs nothing. False for a document of
/// more than uiCustomInfoLen bytes and for a verification of another length than VRF_TOTAL_LEN. For any thread.
bool customInfoDigestHolds(const QByteArray& document, const QByteArray& verification);
