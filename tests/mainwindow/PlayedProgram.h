#pragma once

#include <QString>

class OrvexManager;

/// The program inside a test executable that is built with it (app/main.cpp, its main() named programMain).
namespace playedprogram {

/// Makes an installation of its own below `root`, which ends in a slash, from that of the test, with this executable as
/// OrvexManager: the program there has a lock, a log and a history of its own.
void install(const QString& root);

/// Runs the program in the place of the test. Once it stands, `play` gets its main window; it ends when that returns.
///
/// @return the exit status of the program
int run(int argc, char** argv, void (*play)(const OrvexManager& window));

} // namespace playedprogram
