#pragma once

#include "inspect/PackageReader.h"
#include "inspect/StoreReader.h"
#include "inspect/TemplateDigest.h"

#include <QByteArray>
#include <QByteArrayList>

#include <memory>

/// What there is to say about a package.
struct PackageAnswer
{
    bool isThere = false;
    PackageKind kind = PackageKind::Setup;
    /// Codes in this order: "unreadable", "no-customisation", "two-customisations" or the code of a Reason, each of
    /// which stands alone; then, each for itself, "not-in-store" or "icon-differs", "manifest-missing",
    /// "manifest-version", "manifest-time", "manifest-name", "member-missing", "member-differs", "stale".
    QByteArrayList problems;
    /// What is wrong with an archive that is unreadable, in English.
    QByteArray damage;
    /// The entry that has the same document and verification file; empty when there is none.
    QByteArray entry;
    /// What the package tells of its customisation, when that holds.
    CommonInfo common;

    bool isOk() const { return problems.isEmpty(); }
};

/// Tests packages against the store, the version and the templates of an installation. Nothing is written.
class PackageVerifier
{
public:
    /// @param installation  path in the local 8-bit encoding, with or without trailing "/"
    /// @param store         scanned; must outlive the verifier
    PackageVerifier(const QByteArray& installation, const StoreReader& store);

    /// All that there is to test. Each template is read when a package first needs it.
    PackageAnswer verify(const QByteArray& package);

    /// Only which entry the package came from: neither its manifest nor its members are tested.
    PackageAnswer identify(const QByteArray& package) const;

    /// The packages of the installation's three directories, sorted by path.
    QByteArrayList packages() const;

private:
    PackageAnswer answerFor(const PackageContent& content) const;
    QByteArray entryOf(const PackageContent& content, bool& iconsAgree) const;
    /// The template that the archive is made from, by its first member; null for none.
    TemplateDigest* templateFor(PackageKind kind, const QByteArray& firstMember);

    QByteArray m_installation;
    const StoreReader& m_store;
    ManifestVersion m_version;
    std::unique_ptr<TemplateDigest> m_linux;
    std::unique_ptr<TemplateDigest> m_macos;
};
