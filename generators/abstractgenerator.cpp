// The frame of a generator's job.
#include "generators/abstractgenerator.h"

#include "generators/textwriter.h"
#include "generators/unchangedfiles.h"
#include "support/filereasons.h"
#include "support/outputguard.h"
#include "support/problems.h"
#include "support/usersettings.h"

#include <QCoreApplication>
#include <QFile>
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

/// The report on standard output has no room for reasons.
void tellNotWritten(const QString &path, const QString &reason)
{
    Problems::error("output-not-written", path,
                    QStringLiteral("could not be written: %1").arg(reason));
}

} // namespace

AbstractGenerator::JobBracket::JobBracket(AbstractGenerator &job) : generator(job)
{
    generator.running = true;
    if (generator.database)
        generator.database->setLockWriteAccess(true);
}

AbstractGenerator::JobBracket::~JobBracket()
{
    generator.running = false;
    generator.workerThread.quit();
    if (generator.database)
        generator.database->setLockWriteAccess(false);
    // Only the thread that an object lives on may move it: left here, it could not start again.
    if (generator.homeThread)
        generator.moveToThread(generator.homeThread);
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
    homeThread = thread();
    // Set before the start: a short job may be over before start() returns.
    running = true;
    workerThread.start(this, "doJob");
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

void AbstractGenerator::wait()
{
    workerThread.wait();
}

void AbstractGenerator::checkForceMLFlag()
{
    if (database->getMiscSettingsValue(QStringLiteral("generateML")) == QLatin1String("true"))
        forceML = true;
}

QString AbstractGenerator::convertValue(CAN::CANopenDataType type, quint64 unsignedValue,
                                        qint64 signedValue)
{
    for (const ByteMacroRow &row : kByteMacros) {
        if (row.type != type)
            continue;
        const quint64 value = row.takesSigned ? static_cast<quint64>(signedValue) : unsignedValue;
        QStringList bytes;
        for (int byte = row.bytes - 1; byte >= 0; --byte)
            bytes << QStringLiteral("0x%1").arg((value >> (8 * byte)) & 0xFF, 2, 16,
                                                QLatin1Char('0'));
        return QStringLiteral("%1(%2)").arg(QLatin1String(row.macro), bytes.join(QLatin1Char(',')));
    }
    return QStringLiteral("0");
}

bool AbstractGenerator::isNewOrWritable(const QString &path)
{
    const QFileInfo info(path);
    // A pipe or a device is no place for a file: opening it might never end.
    if (!info.exists() || ((info.isFile() || info.isDir()) && info.isWritable()))
        return true;
    tellNotWritten(path, FileReasons::whyNotWritable(path));
    return false;
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

bool AbstractGenerator::openOutputFile(QFile &file)
{
    const QString path = file.fileName();
    constexpr auto kMode = QIODevice::WriteOnly | QIODevice::Truncate | QIODevice::Text;
    const QString text = QStringLiteral("Could not open ") + path;
    if (!isNewOrWritable(path) || (outputGuard && !outputGuard->admits(path))) {
        fail(text);
        return false;
    }
    if (unchangedFiles ? unchangedFiles->open(file) : file.open(kMode))
        return true;
    const QString reason = FileReasons::whyNotWritable(path);
    fail(text, path,
         reason.isEmpty() ? (unchangedFiles ? unchangedFiles->errorString() : file.errorString())
                          : reason);
    return false;
}

void AbstractGenerator::closeOutputFile(TextWriter &out, QFile &file)
{
    closeOutputFile(out.finish(), file);
}

void AbstractGenerator::closeOutputFile(bool isWritten, QFile &file)
{
    const QString path = unchangedFiles ? unchangedFiles->targetOf(file) : file.fileName();
    QString reason;
    if (!isWritten || !file.flush())
        reason = file.errorString();
    else if (unchangedFiles && !unchangedFiles->commit(file))
        reason = unchangedFiles->errorString();
    file.close();
    if (!reason.isEmpty())
        fail(QStringLiteral("Could not write ") + path, path, reason);
}

bool AbstractGenerator::isUnchanged(const QString &path, const QByteArray &content)
{
    return unchangedFiles && unchangedFiles->keep(path, content);
}

void AbstractGenerator::fail(const QString &error)
{
    wasError = true;
    lastErrorString = error;
}

void AbstractGenerator::fail(const QString &error, const QString &path, const QString &reason)
{
    fail(error);
    tellNotWritten(path, reason);
}

void AbstractGenerator::removeOutputFile(const QString &path)
{
    if (outputGuard)
        outputGuard->remove(path);
    else
        QFile::remove(path);
}
