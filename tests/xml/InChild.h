#pragma once

#include <QByteArray>

#include <functional>

/// Runs the work in a child process and returns what it gives. A work that crashes, or that takes longer than the
/// limit, gives a text in brackets instead, such as "[ended by signal 11]" or "[not done after 10 s]".
QByteArray inChild(const std::function<QByteArray()>& work, int limitSeconds = 10);
