// The frame of a generator's job.
#include "generators/abstractgenerator.h"

#include "store/projectfeatures.h"
#include "support/numbers.h"
#include "support/outputguard.h"
#include "support/runfiles.h"
#include "support/usersettings.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QScopedValueRollback>
#include <QStringList>

#include <algorithm>

namespace
{

/// A macro of the stack that takes a value byte by byte, the highest first.
struct ByteMacroRow {
    CAN::CANopenDataType type;
    const char *macro;
    int bytes;
    bool takesSigned;
};

// clang-format off
constexpr ByteMacroRow kByteMacros[] = {
    {CAN::CANopenDataType::TimeOfDay,  "U48_SET", 6, false},
    {CAN::CANopenDataType::Integer24,  "I24_SET", 3, true},
    {CAN::CANopenDataType::Unsigned24, "U24_SET", 3, false},
    {CAN::CANopenDataType::Unsigned40, "U40_SET", 5, false},
    {CAN::CANopenDataType::Unsigned48, "U48_SET", 6, false},
    {CAN::CANopenDataType::Unsigned64, "U64_SET", 8, false},
};
// clang-format on

} // namespace

/// Stands around a job: locks the store against writers, and at the end clears `running`,
/// unlocks, and reports 100 as the very last act.
class AbstractGenerator::JobBracket
{
public:
    explicit JobBracket(AbstractGenerator &job);
    ~JobBracket();
    JobBracket(const JobBracket &) = delete;
    JobBracket &operator=(const JobBracket &) = delete;

private:
    AbstractGenerator &generator;
};

AbstractGenerator::JobBracket::JobBracket(AbstractGenerator &job) : generator(job)
{
    generator.running = true;
    if (generator.database)
        generator.database->setLockWriteAccess(true);
}

AbstractGenerator::JobBracket::~JobBracket()
{
    generator.running = false;
    if (generator.database)
        generator.database->setLockWriteAccess(false);
    emit generator.progress(100);
}

AbstractGenerator::AbstractGenerator(const QString &jobNameText)
    : toolVersion(QCoreApplication::applicationVersion()), jobName(jobNameText)
{
}

AbstractGenerator::ResultCode AbstractGenerator::startGeneration()
{
    if (running)
        return ResultCode::Running;
    if (!database)
        return ResultCode::NoStore;
    // A former job clears the flag shortly before its thread ends.
    workerThread.wait();
    abortRequested = false;
    wasError = false;
    lastErrorString.clear();
    resetJob();
    setObjectName(jobName);
    // Set before the start: a short job may be over before start() returns.
    running = true;
    workerThread.start([this] { doJob(); });
    return ResultCode::Success;
}

AbstractGenerator::ResultCode AbstractGenerator::abortGeneration()
{
    if (!running)
        return ResultCode::NotRunning;
    abortRequested = true;
    return ResultCode::Success;
}

AbstractGenerator::ResultCode AbstractGenerator::setOutputDirectory(const QString &directory)
{
    if (running)
        return ResultCode::Running;
    outputDirectory = directory;
    const QFileInfo info(directory);
    if (!info.isDir())
        return ResultCode::DirectoryMissing;
    return info.isReadable() ? ResultCode::Success : ResultCode::DirectoryUnreadable;
}

AbstractGenerator::ResultCode AbstractGenerator::setProjectName(const QString &name)
{
    if (running)
        return ResultCode::Running;
    projectName = name;
    return ResultCode::Success;
}

AbstractGenerator::ResultCode AbstractGenerator::setDataBase(ObjectDataBase *store)
{
    if (running)
        return ResultCode::Running;
    database = store;
    if (!database || database->getNodes().isEmpty())
        return ResultCode::NoStore;
    return ResultCode::Success;
}

AbstractGenerator::ResultCode AbstractGenerator::setActiveLine(quint8 line)
{
    if (running)
        return ResultCode::Running;
    activeLine = line;
    if (database && !database->existNode(line))
        return ResultCode::NoSuchLine;
    return ResultCode::Success;
}

void AbstractGenerator::doJob()
{
    const JobBracket bracket(*this);
    checkForceMLFlag();
    writeFiles();
}

void AbstractGenerator::wait()
{
    workerThread.wait();
}

void AbstractGenerator::checkForceMLFlag()
{
    if (readProjectFeatures(*database).forcesMultiLine())
        forceML = true;
}

QString AbstractGenerator::convertValue(CAN::CANopenDataType type, quint64 unsignedValue,
                                        qint64 signedValue)
{
    for (const ByteMacroRow &row : kByteMacros) {
        if (row.type != type)
            continue;
        const quint64 value = row.takesSigned ? static_cast<quint64>(signedValue) : unsignedValue;
        QString text = QLatin1String(row.macro);
        char before = '(';
        for (int byte = row.bytes - 1; byte >= 0; --byte) {
            text += QLatin1Char(before);
            text += QLatin1String("0x");
            text += Numbers::toHex((value >> (8 * byte)) & 0xFF, 2);
            before = ',';
        }
        return text + QLatin1Char(')');
    }
    return QStringLiteral("0");
}

bool AbstractGenerator::isOutputAdmitted()
{
    if (!outputGuard)
        return true;
    const QScopedValueRollback<bool> keptFlag(forceML);
    if (database)
        checkForceMLFlag();
    const QStringList files = outputFiles();
    return std::all_of(files.cbegin(), files.cend(),
                       [this](const QString &file) { return outputGuard->admits(file); });
}

bool AbstractGenerator::wantsImplementationInfo()
{
    return UserSettings().value("General", "implinfo").toInt() == 1;
}

bool AbstractGenerator::hasStandardLibrary() const
{
    const QString &folder = projectDirectory.isEmpty() ? outputDirectory : projectDirectory;
    const QString mark = folder + QLatin1String("/no_stdlib_include.txt");
    RunFiles::noteRead(mark);
    return !QFileInfo::exists(mark);
}

void AbstractGenerator::fail(const QString &error)
{
    wasError = true;
    lastErrorString = error;
}
