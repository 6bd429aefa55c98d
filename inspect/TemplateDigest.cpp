#include "inspect/TemplateDigest.h"

#include "common/StorePaths.h"

#include <chrono>
#include <utility>

namespace {

/// The generator packs the names at the top that its shell's "*" finds, and writes the customisation over what the
/// template has in its place.
bool isTakenOver(const QByteArray& name)
{
    if (name.startsWith('.'))
        return false;
    for (const char* place : {"OrvexClient/custom/", "OrvexClient.pkg/Contents/custom/"}) {
        if (!name.startsWith(place))
            continue;
        const QByteArray file = name.mid(int(qstrlen(place)));
        for (int icon = 0; icon < ICON_COUNT; ++icon) {
            if (file == iconName(icon))
                return false;
        }
        return file != store::document && file != store::verification;
    }
    return true;
}

} // namespace

TemplateDigest::TemplateDigest(const QByteArray& path)
    : m_reading(std::async(std::launch::async, [this, path] { read(path); }))
{
}

void TemplateDigest::read(const QByteArray& path)
{
    const PackageContent content = readPackage(path, [this](PackageKind, const PackageMember& member) {
        Row row = {};
        if (isTakenOver(member.name) && describe(member, row))
            m_rows.insert(member.name, row);
    });
    m_isSound = content.damage.isEmpty() && content.kind == PackageKind::Setup && !m_rows.isEmpty();
}

bool TemplateDigest::describe(const PackageMember& member, Row& row) const
{
    if (member.type == PackageMember::HardLink) {
        const auto found = m_rows.constFind(member.target);
        if (found == m_rows.constEnd())
            return false;
        row.type = found->type;
        row.mode = found->mode;
        row.content = found->content;
        return true;
    }
    row.type = member.type;
    // The mode of a symbolic link means nothing and is not kept by every system.
    row.mode = member.type == PackageMember::SymbolicLink ? 0 : member.mode;
    row.content = member.type == PackageMember::SymbolicLink ? member.target : member.digest;
    return true;
}

bool TemplateDigest::isSound()
{
    catchUp();
    return m_isSound;
}

bool TemplateDigest::anyDiffers()
{
    catchUp();
    return m_anyDiffers;
}

bool TemplateDigest::anyMissing()
{
    catchUp();
    return m_isSound && m_seen < m_rows.size();
}

void TemplateDigest::catchUp()
{
    if (m_reading.valid())
        m_reading.get();
    const QVector<PackageMember> waiting = std::exchange(m_waiting, {});
    for (const PackageMember& member : waiting)
        compare(member);
}

void TemplateDigest::begin()
{
    m_waiting.clear();
    ++m_package;
    m_seen = 0;
    m_anyDiffers = false;
}

void TemplateDigest::take(const PackageMember& member)
{
    if (m_reading.valid() && m_reading.wait_for(std::chrono::seconds(0)) != std::future_status::ready) {
        m_waiting.append(member);
        return;
    }
    catchUp();
    compare(member);
}

void TemplateDigest::compare(const PackageMember& member)
{
    const auto row = m_rows.find(member.name);
    if (row == m_rows.end())
        return;
    if (row->package != m_package) {
        row->package = m_package;
        ++m_seen;
    }
    // A hard link leads to a member that is compared for itself, so that its content is that of the template.
    Row here = {};
    if (!describe(member, here) || here.type != row->type || here.mode != row->mode || here.content != row->content)
        m_anyDiffers = true;
}
