#pragma once

#include <QIcon>

/// A large picture of the program. A thread of its own reads it; whoever needs it before it is there waits for it. For
/// the thread of the windows.
///
/// @param file  name below ":/OrvexManager/Resources/"
QIcon picture(const char* file);
