// The process: application object, logging, one run of the command line, exit code.
#include "app/climainapp.h"
#include "app/clioutputhandler.h"
#include "support/cohelper.h"
#include "support/helper.h"

#include <QCoreApplication>
#include <QLoggingCategory>
#include <QTextCodec>
#include <QTimer>

#include <csignal>
#include <cstdio>
#include <fcntl.h>
#include <malloc.h>
#include <unistd.h>

namespace
{

/// All that a user is to see goes through the output handler.
void noMessageOutput(QtMsgType, const QMessageLogContext &, const QString &) {}

const char *levelName(QtMsgType type)
{
    switch (type) {
    case QtDebugMsg:
        return "debug";
    case QtInfoMsg:
        return "info";
    case QtWarningMsg:
        return "warning";
    case QtCriticalMsg:
        return "critical";
    case QtFatalMsg:
        return "fatal";
    }
    return "unknown";
}

void messageToStandardError(QtMsgType type, const QMessageLogContext &context, const QString &text)
{
    std::fprintf(stderr, "%s %s: %s\n", levelName(type), context.category, qUtf8Printable(text));
}

/// 1 shows what a run passes over, 2 also what it does and how long that takes.
void installLogging()
{
    const QByteArray level = qgetenv("TESSARINE_LOG");
    const bool isShown = level == "1" || level == "2";
    qInstallMessageHandler(isShown ? messageToStandardError : noMessageOutput);
    const QString rules = level == "2" ? QStringLiteral("tessarine.*=true")
                          : isShown    ? QStringLiteral("tessarine.*.debug=false")
                                       : QStringLiteral("tessarine.*=false");
    QLoggingCategory::setFilterRules(rules);
}

/// Arguments and file names are UTF-8 even where a build system runs the tool in the "C" locale,
/// in which Qt would read their bytes one by one and print other names than the files have.
void useUtf8()
{
    QTextCodec::setCodecForLocale(QTextCodec::codecForName("UTF-8"));
}

/// A standard stream that the caller closed is given to nobody: else the next file that is opened
/// would get its number, and the report would go into it.
void holdStandardStreams()
{
    while (true) {
        const int descriptor = ::open("/dev/null", O_RDWR);
        if (descriptor < 0)
            return;
        if (descriptor > STDERR_FILENO) {
            ::close(descriptor);
            return;
        }
    }
}

/// A reader that ends early, such as "head", must not end the run before all files are written.
/// Unlike an ignored signal, one that is handled is back at its default in programs that the run
/// starts.
void surviveClosedPipes()
{
    struct sigaction action = {};
    action.sa_handler = [](int) {};
    action.sa_flags = SA_RESTART;
    ::sigaction(SIGPIPE, &action, nullptr);
}

/// Jobs run one at a time on threads of their own and leave large records to the main thread. One
/// arena that grows in large steps serves that better than one a thread that grows page by page.
void tuneAllocator()
{
#ifdef __GLIBC__
    mallopt(M_ARENA_MAX, 1);
    mallopt(M_TOP_PAD, 8 * 1024 * 1024);
    mallopt(M_TRIM_THRESHOLD, 64 * 1024 * 1024);
#endif
}

} // namespace

int main(int argc, char *argv[])
{
    holdStandardStreams();
    surviveClosedPipes();
    tuneAllocator();
    installLogging();
    useUtf8();
    QCoreApplication application(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("CANopen Tessarine"));
    [[maybe_unused]] const Helper helper(3);
    [[maybe_unused]] const COHelper coHelper;
    QCoreApplication::setApplicationVersion(QStringLiteral(TESSARINE_VERSION));
    QCoreApplication::setOrganizationName(QStringLiteral("Korvel"));

    CLIOutputHandler outputHandler;
    CLIMainApp mainApp(QCoreApplication::arguments(), &outputHandler);
    QObject::connect(&mainApp, &CLIMainApp::finished, &application, &QCoreApplication::quit);
    QTimer::singleShot(0, &mainApp, &CLIMainApp::start);
    QCoreApplication::exec();
    const auto returnCode = static_cast<int>(mainApp.getReturnCode());
    mainApp.abandonProject();
    return returnCode;
}
