// Temporary database files.
#include "store/temporaryfiles.h"

#include "support/logging.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>

#include <cstdlib>
#include <fcntl.h>
#include <mutex>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace
{

constexpr int kNameTries = 1000;

/// SQLite may put files of its own beside a database that was made with another journal mode.
constexpr const char *kCompanions[] = {"", "-journal", "-wal", "-shm"};

/// The folder of the temporary copies. A build account without a writable home gets the folder for
/// temporary files instead.
QString folder()
{
    const QString own = QStandardPaths::writableLocation(QStandardPaths::DataLocation);
    if (!own.isEmpty() && QDir().mkpath(own) && ::access(QFile::encodeName(own), W_OK) == 0)
        return own;
    // Where the variable names no folder, Qt has no path, and a file would be made in the root.
    const QString temp = QDir::tempPath();
    return temp.isEmpty() ? QFile::decodeName(qgetenv("TMPDIR")) : temp;
}

void removeWithCompanions(const QString &name)
{
    for (const char *suffix : kCompanions)
        QFile::remove(name + QLatin1String(suffix));
}

void removeLeftover(const QFileInfo &file)
{
    const int descriptor = ::open(QFile::encodeName(file.filePath()), O_RDWR | O_CLOEXEC);
    if (descriptor < 0)
        return;
    if (::flock(descriptor, LOCK_EX | LOCK_NB) == 0) {
        qCDebug(lcStore) << "removing the copy of a killed run" << file.filePath();
        removeWithCompanions(file.filePath());
    }
    ::close(descriptor);
}

/// The database that a companion belongs to.
QString databaseOf(const QFileInfo &companion)
{
    const QString path = companion.filePath();
    return path.left(path.lastIndexOf(QLatin1Char('-')));
}

void sweep(const QString &path)
{
    const QStringList pattern{QStringLiteral("tsedatatemp_*")};
    const QFileInfoList files = QDir(path).entryInfoList(pattern, QDir::Files | QDir::NoSymLinks);
    for (const QFileInfo &file : files) {
        // Whoever holds the database holds what lies beside it.
        if (!file.fileName().contains(QLatin1Char('-')) || !QFile::exists(databaseOf(file)))
            removeLeftover(file);
    }
}

/// False if a sweep of another run has taken the new file for a leftover.
bool hold(int descriptor)
{
    if (::flock(descriptor, LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK)
        return false;
    struct stat status;
    return ::fstat(descriptor, &status) == 0 && status.st_nlink > 0;
}

} // namespace

TemporaryFiles::~TemporaryFiles()
{
    removeAll();
}

void TemporaryFiles::removeAll()
{
    for (const auto &[name, descriptor] : descriptors) {
        removeWithCompanions(name);
        ::close(descriptor);
    }
    descriptors.clear();
}

QString TemporaryFiles::create()
{
    const QString path = folder();
    reason.clear();
    static std::once_flag swept;
    std::call_once(swept, sweep, path);

    for (int i = 0; i < kNameTries; ++i) {
        const QString name = QStringLiteral("%1/tsedatatemp_%2_%3")
                                 .arg(path, QString::number(rand()), QString::number(rand()));
        // Exclusive, because several runs of one build may draw names at the same moment.
        const int descriptor = ::open(QFile::encodeName(name),
                                      O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, S_IRUSR | S_IWUSR);
        if (descriptor < 0 && errno != EEXIST)
            break;
        if (descriptor < 0)
            continue;
        if (hold(descriptor)) {
            descriptors.emplace(name, descriptor);
            return name;
        }
        ::close(descriptor);
    }
    reason = QStringLiteral("no file can be made in %1 (%2)").arg(path, qt_error_string(errno));
    qCWarning(lcStore) << reason;
    return QString();
}
