// Opens a project in any form, and saves it: what the store alone costs.
//
// Usage: bench_openproject <project> [<file to save to>]
#include "store/objectdatabase.h"

#include <QCoreApplication>
#include <QLoggingCategory>

#include <cstdio>

int main(int argc, char *argv[])
{
    QCoreApplication application(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("CANopen Tessarine"));
    QCoreApplication::setApplicationVersion(QStringLiteral("3.11.2"));
    QLoggingCategory::setFilterRules(QStringLiteral("tessarine.*=false"));
    const QStringList arguments = application.arguments();
    if (arguments.size() != 2 && arguments.size() != 3) {
        std::fprintf(stderr, "usage: bench_openproject <project> [<file to save to>]\n");
        return 2;
    }
    ObjectDataBase store;
    const bool done = store.openDataBase(arguments.at(1)) &&
                      (arguments.size() < 3 || store.saveDataBase(arguments.at(2)));
    return done ? 0 : 1;
}
