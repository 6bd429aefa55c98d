#pragma once

#include "inspect/PackageReader.h"

#include <QHash>

/// The members of a client template, to be found again in packages. Read once, however many packages follow.
class TemplateDigest
{
public:
    /// @param path  of the template, local 8-bit encoding
    explicit TemplateDigest(const QByteArray& path);

    bool isSound() const { return m_isSound; }

    /// Begins a new package.
    void begin();
    /// Takes note of a member of the package.
    void take(const PackageMember& member);
    /// A member of the template that the package has, but of another kind, mode or content.
    bool anyDiffers() const { return m_anyDiffers; }
    /// A member of the template that the package has not.
    bool anyMissing() const { return m_isSound && m_seen < m_rows.size(); }

private:
    struct Row
    {
        PackageMember::Type type;
        quint32 mode;
        QByteArray content; // digest of a file, target of a symbolic link
        quint32 package;    // the last package that had it
    };
    /// A member's type, mode and content; a hard link has those of the member it leads to.
    bool describe(const PackageMember& member, Row& row) const;

    QHash<QByteArray, Row> m_rows;
    bool m_isSound = false;
    bool m_anyDiffers = false;
    quint32 m_package = 0;
    int m_seen = 0;
};
