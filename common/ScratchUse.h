#pragma once

#include <QByteArray>

#include <sys/types.h>

namespace packing {

/// A process of this user that still works for an earlier run of a generator, or 0. A command outlives the program that
/// gave it, when that is killed or closed: it is known by a working directory or an open file below `template/Temp`, or
/// by a file of a package directory that it has open for writing. Neither a process of this program counts, nor what
/// somebody has started in a terminal, to look into these directories.
///
/// @param processPath  directory of the executable, with a trailing slash
pid_t processAtWork(const QByteArray& processPath);

} // namespace packing
