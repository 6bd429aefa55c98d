#pragma once

#include "inspect/PackageReader.h"

#include <QHash>
#include <QVector>

#include <future>

/// The members of a client template, to be found again in packages. Read once, however many packages follow, and in a
/// thread of its own, beside the first package.
class TemplateDigest
{
public:
    /// @param path  of the template, local 8-bit encoding
    explicit TemplateDigest(const QByteArray& path);
    TemplateDigest(const TemplateDigest&) = delete;
    TemplateDigest& operator=(const TemplateDigest&) = delete;

    /// The template is there, and whole.
    bool isSound();

    /// Begins a new package.
    void begin();
    /// Takes note of a member of the package.
    void take(const PackageMember& member);
    /// A member of the template that the package has, but of another kind, mode or content.
    bool anyDiffers();
    /// A member of the template that the package has not.
    bool anyMissing();

private:
    struct Row
    {
        PackageMember::Type type;
        quint32 mode;
        QByteArray content; // digest of a file, target of a symbolic link
        quint32 package;    // the last package that had it
    };
    void read(const QByteArray& path);
    /// Waits for the template and compares what has come meanwhile.
    void catchUp();
    void compare(const PackageMember& member);
    /// A member's type, mode and content; a hard link has those of the member it leads to.
    bool describe(const PackageMember& member, Row& row) const;

    QHash<QByteArray, Row> m_rows;
    bool m_isSound = false;
    bool m_anyDiffers = false;
    quint32 m_package = 0;
    int m_seen = 0;
    QVector<PackageMember> m_waiting; // members that came before the template was read
    std::future<void> m_reading;      // last, so that it ends before what it fills; invalid once it has been waited for
};
