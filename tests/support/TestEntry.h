#pragma once

#include <QApplication>
#include <QTest>

/// A test class of an executable that holds several. The executable finds the one to run by the name under which it was
/// started, `tst_<unit>`, and tells it to the processes that the test starts by the environment, so that a copy of the
/// executable under any name runs the same one.
class TestEntry
{
public:
    using Run = int (*)(int argc, char** argv);

    TestEntry(const char* unit, Run run);

    const char* const unit;
    const Run run;
    const TestEntry* const next; // in the list of all
};

/// Stands at the end of the source file of a test class; `run` takes the place of its main().
#define TEST_ENTRY(unit, ...) static const TestEntry s_testEntry(#unit, __VA_ARGS__);

/// The test without an application object.
template <class Test> int runApplessTest(int argc, char** argv)
{
    Test test;
    return QTest::qExec(&test, argc, argv);
}

/// The test within an application without windows.
template <class Test> int runGuilessTest(int argc, char** argv)
{
    QCoreApplication application(argc, argv);
    return runApplessTest<Test>(argc, argv);
}

/// The test within a plain application with windows.
template <class Test> int runWindowTest(int argc, char** argv)
{
    QApplication application(argc, argv);
    return runApplessTest<Test>(argc, argv);
}
