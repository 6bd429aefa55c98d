#pragma once

#include <QByteArray>
#include <QString>

#include <functional>

/// Makes packages beside the test executable by the program's own generators, and broken copies of them by the real
/// archivers. Everything lies below work/.
namespace workshop {

constexpr long long stamp = 1789000000;

enum Kind
{
    Setup,
    Update,
    CusUpdate
};

/// A client template with links and odd modes, a stored customisation with icons and the three packages of it.
void makeInstallation();

/// The package as the generator made it.
QString package(Kind kind);

/// Unpacks the package, lets `edit` change what lies there and packs it again under the same name below work/.
/// `edit` gets the directory with the members of the client archive, and that with the members of the ZIP.
QString remade(Kind kind, const std::function<void(const QString& client, const QString& zip)>& edit);

/// The customisation within the unpacked client archive of the kind.
QString customIn(Kind kind, const QString& client);

/// Writes bytes to work/<name> and returns the path.
QString written(const QString& name, const QByteArray& bytes);

/// A member of a tar archive (POSIX.1-1988), with its data and their padding.
QByteArray tarMember(const QByteArray& name, const QByteArray& content, char type = '0', const QByteArray& target = {},
                     long long size = -1);

/// The two blocks behind the last member.
QByteArray tarEnd();

/// By the real gzip.
QByteArray gzipped(const QByteArray& bytes);

} // namespace workshop
