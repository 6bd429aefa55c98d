#pragma once

class OrvexManager;

/// The program inside a test executable that is built with it (app/main.cpp, its main() named programMain).
namespace playedprogram {

/// Runs the program in the place of the test. Once it stands, `play` gets its main window; it ends when that returns.
///
/// @return the exit status of the program
int run(int argc, char** argv, void (*play)(const OrvexManager& window));

} // namespace playedprogram
