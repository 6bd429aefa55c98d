#pragma once

#include "inspect/Verification.h"

#include <QByteArray>

/// An open descriptor, closed with the object. -1 is none.
class Descriptor
{
public:
    explicit Descriptor(int number = -1) : m_number(number) {}
    ~Descriptor();
    Descriptor(Descriptor&& other) noexcept : m_number(other.take()) {}
    Descriptor& operator=(Descriptor&& other) noexcept;
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;

    int number() const { return m_number; }
    bool isOpen() const { return m_number >= 0; }
    /// Hands the descriptor over to the caller.
    int take();

private:
    int m_number;
};

// Files below a directory that is already open, so that a name that is exchanged meanwhile does not matter. Symbolic
// links are followed. Nothing but a regular file is opened for its bytes: neither a pipe nor a device notices. Where
// the owner of the process may ask for it, not even the time of access changes.

/// A directory by its path (local 8-bit encoding), from the directory `at` or from the working directory.
Descriptor openDirectory(const QByteArray& path, int at = -1);

/// A regular file.
///
/// @param state  receives whether there is such a file, when given; a symbolic link that leads nowhere is NotRegular
Descriptor openRegularFile(int directory, const QByteArray& name, FileBytes::State* state = nullptr);

/// The first `limit` + 1 bytes of a regular file.
FileBytes readRegularFile(int directory, const QByteArray& name, qint64 limit);

/// The SHA-256 (FIPS 180-4) of a regular file, 32 bytes; empty when there is none or it cannot be read.
QByteArray digestOfRegularFile(int directory, const QByteArray& name);
