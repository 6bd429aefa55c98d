#pragma once

#include <QByteArray>

/// The fields of the manifest `comment.txt` of an update package, each empty when its line is missing.
struct Manifest
{
    QByteArray setup;        // name of the client archive, without the quotes
    QByteArray system;       // "Linux32", "Linux64" or "MacOS"
    QByteArray version;      // "@ver: "
    QByteArray display;      // "@new_ver: "
    QByteArray cusTimeStamp; // of an update
    QByteArray time;         // "@time: " of a customised update, decimal seconds
    QByteArray timeFormat;   // "@timeFmt: " of a customised update
};

/// Reads a manifest, lines ended by CR LF. Of several lines of one field the first counts.
Manifest parseManifest(const QByteArray& text);

/// The texts that the manifests of an installation carry.
struct ManifestVersion
{
    QByteArray version;
    QByteArray display;
};

/// Takes the version from the English language file of the installation (path with trailing "/"), or from the one
/// beside the executable when the installation has none. Sets the version strings of the process.
ManifestVersion manifestVersionOf(const QByteArray& installation);
