#include "mainwindow/PlayedProgram.h"

#include "app/mainwindow/orvexmanager.h"
#include "support/Installation.h"

#include <QApplication>
#include <QDir>
#include <QTest>
#include <QTimer>

#include <cstdio>

/// The main() of the program, which the build gives this name.
int programMain(int argc, char** argv);

namespace {

void (*s_play)(const OrvexManager& window) = nullptr;

void playOnce()
{
    for (QWidget* widget : QApplication::topLevelWidgets()) {
        if (const OrvexManager* window = qobject_cast<OrvexManager*>(widget)) {
            s_play(*window);
            fflush(stdout);
            QApplication::exit(0);
            return;
        }
    }
    qFatal("no main window");
}

void playWhenItStands()
{
    if (s_play)
        QTimer::singleShot(0, qApp, playOnce);
}
Q_COREAPP_STARTUP_FUNCTION(playWhenItStands)

} // namespace

void playedprogram::install(const QString& root)
{
    QVERIFY(QDir().mkpath(root));
    installation::run(QStringLiteral("sh"),
                      {QStringLiteral("-c"),
                       QStringLiteral("cp -r Resources config.ini 7za template \"$0\"; "
                                      "cp /proc/%1/exe \"$0/OrvexManager\"")
                           .arg(QCoreApplication::applicationPid()),
                       root},
                      installation::root());
}

int playedprogram::run(int argc, char** argv, void (*play)(const OrvexManager& window))
{
    s_play = play;
    return programMain(argc, argv);
}
