#include "common/PackageGenerators.h"
#include "common/Version.h"

#include <QByteArray>

// Makes the three packages of the installation in which it stands.
//
//   bench_packages <version> <internal version> <time> <time stamp>
int main(int argc, char** argv)
{
    if (argc != 5)
        return 2;
    utl_SetVersionStrings(QByteArray(argv[1]), QByteArray(argv[2]));
    const bool done =
        utl_GenLinuxSetup() && utl_GenLinuxUpdate(argv[3], argv[4]) && utl_GenLinuxCusUpd(argv[3], argv[4]);
    return done ? 0 : 1;
}
