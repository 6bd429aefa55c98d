#include "inspect/PackageVerifier.h"

#include "common/StorePaths.h"

#include <QDir>
#include <QFile>

namespace {

constexpr char s_macosTop[] = "OrvexClient.pkg/";
constexpr int s_digestLength = 16;

/// Whether the manifest tells the time of the customisation, in the lines of its kind.
bool timeAgrees(const PackageContent& content, const CommonInfo& common)
{
    const Manifest& manifest = content.manifest;
    const QByteArray stamp = QByteArray::number(common.cusTimeStamp);
    if (content.kind == PackageKind::Update)
        return manifest.cusTimeStamp == stamp;
    return manifest.time == stamp && manifest.timeFormat == common.cusTimeString.toLocal8Bit();
}

} // namespace

PackageVerifier::PackageVerifier(const QByteArray& installation, const StoreReader& store)
    : m_installation(installation.endsWith('/') ? installation : installation + '/'), m_store(store),
      m_version(manifestVersionOf(m_installation))
{
}

QByteArray PackageVerifier::entryOf(const PackageContent& content, bool& iconsAgree) const
{
    iconsAgree = false;
    QByteArray entry;
    const QByteArray digest = content.verification.bytes.right(s_digestLength);
    for (const StoreRow& row : m_store.rows()) {
        if (row.digest != digest)
            continue;
        const StoredCustomisation stored = readCustomisation(m_store.pathOf(row.entry));
        if (stored.document.bytes != content.document.bytes || stored.verification.bytes != content.verification.bytes)
            continue;
        bool agree = true;
        for (size_t icon = 0; icon < ICON_COUNT; ++icon) {
            agree = agree && content.icons[icon].state != FileBytes::NotRegular &&
                    content.icons[icon].digest == stored.icons[icon];
        }
        // Of several the one with the same icons, and of those the one that bears the stamp's name.
        if (entry.isEmpty() || (agree && !iconsAgree) || (agree && !row.hasOtherStamp))
            entry = row.entry;
        iconsAgree = iconsAgree || agree;
    }
    return entry;
}

PackageAnswer PackageVerifier::answerFor(const PackageContent& content) const
{
    PackageAnswer answer;
    answer.isThere = content.isThere;
    answer.kind = content.kind;
    answer.damage = content.damage;
    if (!content.damage.isEmpty()) {
        answer.problems.append("unreadable");
        return answer;
    }
    if (content.customisations > 1) {
        answer.problems.append("two-customisations");
        return answer;
    }
    if (!content.isAtItsPlace) {
        answer.problems.append("no-customisation");
        return answer;
    }
    const Reason reason = verifyCustomisation(content.document, content.verification, &answer.common);
    if (reason != Reason::None) {
        answer.problems.append(reasonCode(reason));
        return answer;
    }
    bool iconsAgree = false;
    answer.entry = entryOf(content, iconsAgree);
    if (answer.entry.isEmpty())
        answer.problems.append("not-in-store");
    else if (!iconsAgree)
        answer.problems.append("icon-differs");
    return answer;
}

PackageAnswer PackageVerifier::identify(const QByteArray& package) const
{
    return answerFor(readPackage(package));
}

TemplateDigest* PackageVerifier::templateFor(PackageKind kind, const QByteArray& firstMember)
{
    const bool isMacos = (firstMember + '/').startsWith(s_macosTop);
    if (kind == PackageKind::CustomisedUpdate && !isMacos)
        return nullptr;
    std::unique_ptr<TemplateDigest>& digest = isMacos ? m_macos : m_linux;
    if (!digest) {
        const char* name = isMacos ? "OrvexClient_MacOS.tar.gz" : "OrvexClient_Linux64.tar.gz";
        digest = std::make_unique<TemplateDigest>(m_installation + store::templates + "/" + name);
    }
    return digest.get();
}

PackageAnswer PackageVerifier::verify(const QByteArray& package)
{
    TemplateDigest* digest = nullptr;
    bool isFirst = true;
    const PackageContent content = readPackage(package, [&](PackageKind kind, const PackageMember& member) {
        if (isFirst) {
            isFirst = false;
            digest = templateFor(kind, member.name);
            if (digest)
                digest->begin();
        }
        if (digest)
            digest->take(member);
    });
    PackageAnswer answer = answerFor(content);
    if (!answer.problems.isEmpty() && answer.problems.first() != "not-in-store" &&
        answer.problems.first() != "icon-differs")
        return answer;

    if (content.kind != PackageKind::Setup) {
        const Manifest& manifest = content.manifest;
        if (!content.hasManifest) {
            answer.problems.append("manifest-missing");
        } else {
            if (manifest.version != m_version.version || manifest.display != m_version.display)
                answer.problems.append("manifest-version");
            if (!timeAgrees(content, answer.common))
                answer.problems.append("manifest-time");
            if (manifest.setup != content.archiveName)
                answer.problems.append("manifest-name");
        }
    }
    // Without a sound template it cannot be shown that the members are there.
    if (digest && (!digest->isSound() || digest->anyMissing()))
        answer.problems.append("member-missing");
    if (digest && digest->anyDiffers())
        answer.problems.append("member-differs");
    const StoreRow* newest = m_store.newest();
    if (newest && answer.common.cusTimeStamp < newest->row.cusTimeStamp)
        answer.problems.append("stale");
    return answer;
}

QByteArrayList PackageVerifier::packages() const
{
    QByteArrayList found;
    const struct
    {
        const char* directory;
        const char* pattern;
    } rows[] = {{store::setup, "*.tar.gz"}, {store::update, "*.zip"}, {store::cusUpdate, "*.zip"}};
    for (const auto& row : rows) {
        const QByteArray directory = m_installation + row.directory + "/";
        const QStringList names =
            QDir(QFile::decodeName(directory))
                .entryList({QString::fromLatin1(row.pattern)}, QDir::Files | QDir::System, QDir::Name);
        for (const QString& name : names)
            found.append(directory + QFile::encodeName(name));
    }
    std::sort(found.begin(), found.end());
    return found;
}
