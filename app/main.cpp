#include "app/mainwindow/orvexmanager.h"
#include "app/myapplication.h"
#include "common/Log.h"
#include "common/PackageGenerators.h"

#include <QDesktopWidget>

#include <algorithm>
#include <fcntl.h>
#include <sys/resource.h>
#include <unistd.h>

namespace {

// Every log line and every look at a directory holds a descriptor for the life of the process, some 2,700 of them for
// a full history.
void makeRoomForDescriptors()
{
    rlimit limit = {};
    if (getrlimit(RLIMIT_NOFILE, &limit) != 0)
        return;
    limit.rlim_cur = std::min<rlim_t>(limit.rlim_max, 1048576);
    setrlimit(RLIMIT_NOFILE, &limit);

    // The kernel's table of them has room for a full history from now on. Were it to grow while there are threads, each
    // time would take 10 ms.
    const rlim_t last = std::min<rlim_t>(limit.rlim_cur, 4096) - 1;
    const int there = fcntl(STDIN_FILENO, F_DUPFD_CLOEXEC, static_cast<int>(last));
    if (there >= 0)
        close(there);
}

} // namespace

int main(int argc, char** argv)
{
    makeRoomForDescriptors();
    CMyApplication application(argc, argv);
    if (application.m_bAlreadyRunning) {
        logX(2, "main:----OrvexManager has already started----");
        return 0;
    }
    removeScratchLeftOver();
    OrvexManager window(nullptr);
    application.m_pMainWindow = &window;
    window.show();
    const QWidget* desktop = QApplication::desktop();
    window.move((desktop->width() - window.width()) / 2, (desktop->height() - window.height()) / 2);
    return QApplication::exec();
}
