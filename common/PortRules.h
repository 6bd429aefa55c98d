#pragma once

#include <QtGlobal>

#include <optional>

class QString;

// The rules of ports, one for each kind of field. Each reads the text by QString in base 10: signs, blanks around the
// number and leading zeros pass as far as that takes them, and a text that it does not take reads as 0. The rules
// differ in the lowest port, in what becomes of negative and of large numbers, and in whether the field keeps the text
// or the number: they are not interchangeable. The port of the KEF proxy has no rule at all.

constexpr int highestPort = 65535;

/// A ZOA server: from 1, read as a signed 32-bit number. The field keeps the text, and may also be empty.
bool isSignedPortFromOne(const QString& port);

/// A gateway of SSL VPN: from 1, read as an unsigned number. Unlike a ZOA server it must have a port; the field keeps
/// the text.
bool isUnsignedPortFromOne(const QString& port);

/// The server of SMS authentication: the same numbers as for a gateway of SSL VPN, but the field keeps the number.
///
/// @return  the port, or nothing for a text that is refused
std::optional<quint32> unsignedPortNumberFromOne(const QString& port);

/// The escape proxy: from 0, read as a signed 32-bit number and compared as an unsigned one. So a text that is no
/// number passes, as does a number beyond 32 bits, and a negative number is refused. The field keeps the text.
bool isSignedPortFromZero(const QString& port);

/// L2TP: from 0, read as a signed 64-bit number and compared as an unsigned one. Unlike the escape proxy's, a number
/// beyond 32 bits is refused; unlike that of IKE, so is a negative number.
///
/// @return  the port, 0 for a text that is no number, or nothing for a text that is refused
std::optional<quint32> signedPortNumberFromZero(const QString& port);

/// IKE: from 0, read as an unsigned 64-bit number. Unlike that of L2TP, a negative number is none, reads as 0 and
/// passes.
///
/// @return  the port, 0 for a text that is no unsigned number, or nothing for a text that is refused
std::optional<quint32> unsignedPortNumberFromZero(const QString& port);
