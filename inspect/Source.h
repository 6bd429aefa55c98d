#pragma once

#include "inspect/Command.h"
#include "inspect/PackageReader.h"
#include "inspect/StoreReader.h"
#include "inspect/Verification.h"
#include "xml/CustomInfo.h"

#include <array>
#include <memory>

/// One customisation, wherever it was found.
struct Source
{
    QString text;     // as the administrator named it
    QByteArray entry; // the directory's name below UpdateCustom/; empty when it is none
    Reason reason = Reason::None;
    QByteArray document;
    QByteArray verification;
    CustomInfo record; // what the manager would load, on a new record
    std::array<PackageIcon, ICON_COUNT> icons;

    bool isVerified() const { return reason == Reason::None; }
};

/// Finds what the administrator means: an entry of the store (a directory name, "latest", "latest~N", a time as the
/// history shows it), of several stores in the first that has it; else a package, a directory with a document, or a
/// document file.
///
/// @return  null after a complaint: there is no such thing, it cannot be read, or its verification does not hold and
///          the call does not take that
std::unique_ptr<Source> openSource(const Invocation& call, const QString& text);

/// An entry that a scan has found.
std::unique_ptr<Source> openEntry(const QByteArray& storeDirectory, const QByteArray& entry);
