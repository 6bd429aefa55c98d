#include "inspect/Source.h"

#include "common/CustomInfoVerify.h"
#include "common/StorePaths.h"
#include "inspect/PackageLimits.h"
#include "inspect/StoreFile.h"
#include "inspect/Translation.h"
#include "xml/CustomInfoLoad.h"

#include <QCryptographicHash>
#include <QFileInfo>

namespace {

/// Takes documents, verification and icons as they were read. `directory` ends with "/" or is empty.
std::unique_ptr<Source> makeSource(const QString& text, const FileBytes& document, const FileBytes& verification,
                                   const QString& directory)
{
    auto source = std::make_unique<Source>();
    source->text = text;
    source->reason = verifyCustomisation(document, verification);
    source->document = document.bytes;
    source->verification = verification.bytes;
    // Beyond the limit the bytes are cut, so that there is nothing to be loaded.
    if (static_cast<unsigned long>(document.bytes.size()) <= uiCustomInfoLen)
        loadCustomInfo(document.bytes, directory, source->record);
    return source;
}

PackageIcon iconIn(int directory, const QByteArray& name)
{
    PackageIcon icon;
    const FileBytes read = readRegularFile(directory, name, limits::keptIconBytes);
    icon.state = read.state;
    if (read.state != FileBytes::Read)
        return icon;
    if (read.bytes.size() <= limits::keptIconBytes) {
        icon.bytes = read.bytes;
        icon.digest = QCryptographicHash::hash(read.bytes, QCryptographicHash::Sha256);
    } else {
        icon.digest = digestOfRegularFile(directory, name);
    }
    return icon;
}

std::unique_ptr<Source> readDirectory(const QString& text, const QByteArray& path, const QByteArray& documentName)
{
    const Descriptor directory = openDirectory(path);
    auto source = makeSource(text, readRegularFile(directory.number(), documentName, uiCustomInfoLen),
                             readRegularFile(directory.number(), store::verification, VRF_TOTAL_LEN),
                             QString::fromLocal8Bit(path) + QLatin1Char('/'));
    for (int icon = 0; icon < ICON_COUNT; ++icon)
        source->icons[static_cast<std::size_t>(icon)] = iconIn(directory.number(), iconName(icon));
    return source;
}

std::unique_ptr<Source> readPackageSource(const QString& text, const QString& path)
{
    const PackageContent content = readPackage(path.toLocal8Bit());
    const auto refuse = [&](const QString& why) {
        Invocation::wrong(text + QLatin1String(": ") + why);
        return nullptr;
    };
    if (!content.damage.isEmpty())
        return refuse(translated("unreadable: %1; make the package anew or copy it again")
                          .arg(translated(content.damage.constData())));
    if (content.customisations > 1)
        return refuse(translated("two-customisations: the package cannot be trusted; make it anew"));
    if (content.customisations == 0 || !content.isAtItsPlace)
        return refuse(translated("no-customisation: name a package that the manager made"));
    auto source = makeSource(text, content.document, content.verification, QString());
    source->icons = content.icons;
    return source;
}

/// Null when what is there is of no use to anybody.
std::unique_ptr<Source> accepted(const Invocation& call, std::unique_ptr<Source> source)
{
    if (!source || source->isVerified())
        return source;
    const QString code = QString::fromLatin1(reasonCode(source->reason));
    const bool canBeRead = source->reason == Reason::NoVerification || source->reason == Reason::VerificationSize ||
                           source->reason == Reason::Digest;
    if (call.takesUnverified() && canBeRead)
        return source;
    const QString advice = canBeRead ? translated("; add --unverified to read it all the same")
                                     : translated("; name another customisation");
    Invocation::wrong(source->text + QLatin1String(": ") + code + advice);
    return nullptr;
}

} // namespace

std::unique_ptr<Source> openEntry(const QByteArray& storeDirectory, const QByteArray& entry)
{
    const QByteArray path = storeDirectory + store::updateCustom + "/" + entry;
    auto source = readDirectory(QString::fromLocal8Bit(entry), path, store::document);
    source->entry = entry;
    return source;
}

std::unique_ptr<Source> openSource(const Invocation& call, const QString& text)
{
    for (const QString& store : call.stores()) {
        StoreReader reader(store.toLocal8Bit());
        reader.scan();
        if (const StoreRow* row = reader.resolve(text.toLocal8Bit())) {
            auto source = openEntry(store.toLocal8Bit(), row->entry);
            source->text = text;
            return accepted(call, std::move(source));
        }
    }
    const QFileInfo info(text);
    if (info.isDir())
        return accepted(call, readDirectory(text, info.absoluteFilePath().toLocal8Bit(), store::document));
    if (info.isFile() && text.endsWith(QLatin1String(".xml"), Qt::CaseInsensitive))
        return accepted(call, readDirectory(text, info.absolutePath().toLocal8Bit(), info.fileName().toLocal8Bit()));
    if (info.isFile())
        return accepted(call, readPackageSource(text, info.absoluteFilePath()));
    Invocation::wrong(translated("%1: there is no such entry, package, directory or document; "
                                 "`orvex-inspect list` shows the entries")
                          .arg(text));
    return nullptr;
}
