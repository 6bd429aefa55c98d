#include "mainwindow/PlayedProgram.h"

#include "app/mainwindow/orvexmanager.h"
#include "support/Installation.h"

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTest>
#include <QTimer>

#include <cstdio>
#include <unistd.h>

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
    // Links, to what a program only reads; copies where links do not reach, in another file system.
    const auto place = [&root](const QString& source, const QString& name) {
        const QByteArray target = QFile::encodeName(root + name);
        if (link(QFile::encodeName(source).constData(), target.constData()) != 0)
            QVERIFY2(QFile::copy(source, root + name), target.constData());
    };
    QVERIFY(QDir().mkpath(root));
    for (const QString& directory : {QStringLiteral("Resources/"), QStringLiteral("template/")}) {
        QVERIFY(QDir().mkpath(root + directory));
        for (const QString& name : QDir(installation::path(directory)).entryList(QDir::Files))
            place(installation::path(directory + name), directory + name);
    }
    place(installation::path(QStringLiteral("7za")), QStringLiteral("7za"));
    place(QFileInfo(QStringLiteral("/proc/self/exe")).canonicalFilePath(), QStringLiteral("OrvexManager"));
    QVERIFY(QFile::copy(installation::path(QStringLiteral("config.ini")), root + QLatin1String("config.ini")));
}

int playedprogram::run(int argc, char** argv, void (*play)(const OrvexManager& window))
{
    s_play = play;
    return programMain(argc, argv);
}
