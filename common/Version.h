#pragma once

class QByteArray;

// The version texts of the program, taken from the English language file. All are empty until utl_SetVersionStrings
// has run, at the end of the main window's construction, and only read after that.

/// Display form, at most 23 bytes, such as "Orvex PC 7.2 (E0408)".
char* utl_OrvexVerDisplay();

/// Product version, at most 11 bytes: positions 1 to 3 hold the release, 6 to 9 the build, the last the class letter.
char* utl_GetVersion();

/// Internal version, at most 15 bytes.
const char* utl_OrvexInterVerDisplay();

/// The display form less its first 9 bytes ("Orvex PC "). Holds a blank and parentheses; stands in package names.
const char* utl_OrvexShortVersion();

/// The product version less its first and last byte, whatever they are; stands in the manifests of update packages.
QByteArray utl_InnerVersion();

/// Sets the product and internal version, both in the local 8-bit encoding and cut to their limits, and derives the
/// display form from the product version.
void utl_SetVersionStrings(const QByteArray& version, const QByteArray& internalVersion);

/// Reads the binary version file `Orvex.vif` beside the executable: enciphered text, 240 bytes without meaning, and
/// the MD5 digest (RFC 1321) over all before it and a key block. Leaves the version texts above alone.
///
/// @param error  0, or the number of the step that failed: 351 size unknown, 352 size not within 285 to 372 bytes,
///               353 not readable, 354 no key, 355 wrong digest, 356 not decipherable, 357 plain text neither 26 nor
///               29 bytes, 358 no "-" in the version
/// @return       the version in a buffer of this file, or null after a failure
char* GetVifVer(unsigned long* error);
