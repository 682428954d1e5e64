// The imports of a run.
#include "app/imports.h"

#include "app/generatorsteps.h"
#include "import/csvimporter.h"
#include "import/dbcimporter.h"
#include "import/edsimporter.h"
#include "import/tsrpimporter.h"
#include "store/objectdatabase.h"
#include "support/filereasons.h"
#include "support/helper.h"
#include "support/printable.h"
#include "support/problems.h"
#include "support/runfiles.h"

#include <QFileInfo>

#include <limits>
#include <memory>

namespace
{

constexpr quint32 kHighestNumber = std::numeric_limits<quint32>::max(); // of objects and groups

/// What the bare name of a file does to line 0 where it is not as the file needs it.
enum class BareName {
    Adapts, ///< adds it, or gives it the protocol that it lacks, as a named line
    Leaves, ///< what such imports have always done
};

/// The importer of a kind of file; the suffix is in lower case.
struct ImporterRow {
    const char *suffix;
    std::unique_ptr<BaseDataImporter> (*create)(const ImportRequest &);
    BareName bareName = BareName::Adapts;
    bool bringsLine = false; ///< as a whole: all indices, and a line that is added
};

template <typename Importer>
std::unique_ptr<BaseDataImporter> make(const ImportRequest &)
{
    return std::make_unique<Importer>();
}

std::unique_ptr<BaseDataImporter> makeTable(const ImportRequest &request)
{
    auto importer = std::make_unique<CsvImporter>();
    importer->setLineNamed(request.line.has_value());
    return importer;
}

std::unique_ptr<BaseDataImporter> makeProject(const ImportRequest &request)
{
    auto importer = std::make_unique<TSRPImporter>();
    importer->setLineOfFile(request.lineOfFile.value_or(0));
    return importer;
}

// clang-format off
constexpr ImporterRow kImporters[] = {
    {"csv", makeTable, BareName::Leaves},
    {"dbc", make<DbcImporter>},
    {"dcf", make<EDSImporter>, BareName::Leaves},
    {"eds", make<EDSImporter>, BareName::Leaves},
    {"icsv", makeTable},
    {"tsrp", makeProject, BareName::Adapts, true},
    {"tsrt", makeProject, BareName::Adapts, true},
    {"xdc", make<EDSImporter>},
    {"xdd", make<EDSImporter>},
    {"yaml", makeProject, BareName::Adapts, true},
    {"yml", makeProject, BareName::Adapts, true},
};
// clang-format on

const ImporterRow *findImporter(const QString &file)
{
    const QString suffix = QFileInfo(file).suffix().toLower();
    for (const ImporterRow &row : kImporters) {
        if (suffix == QLatin1String(row.suffix))
            return &row;
    }
    return nullptr;
}

QString importedSuffixes()
{
    QStringList suffixes;
    for (const ImporterRow &row : kImporters)
        suffixes << QLatin1Char('.') + QLatin1String(row.suffix);
    return suffixes.join(QLatin1String(", "));
}

/// Empty if it can be.
QString whyNotImported(const ImportRequest &request)
{
    if (!request.fault.isEmpty())
        return request.fault;
    const QString reason = FileReasons::whyNotReadable(request.file);
    if (!reason.isEmpty())
        return reason;
    if (!findImporter(request.file))
        return QStringLiteral("its name has none of the endings %1").arg(importedSuffixes());
    const bool isBounded = !findImporter(request.file)->bringsLine; // as a project that is opened
    return isBounded && QFileInfo(request.file).size() > Helper::kMaxFileBytes
               ? QStringLiteral("it is larger than %1 MiB").arg(Helper::kMaxFileBytes >> 20)
               : QString();
}

void tellNotImported(const ImportRequest &request, const QString &reason)
{
    const QString subject = request.file.isEmpty() && !request.given.isEmpty()
                                ? quotedWord(request.given) + QLatin1Char(' ')
                                : QString();
    Problems::error("not-imported", request.file,
                    QStringLiteral("%1could not be imported: %2").arg(subject, reason));
}

bool leavesLine(const ImportRequest &request)
{
    return !request.line && findImporter(request.file)->bareName == BareName::Leaves;
}

QString typeKey(quint8 line)
{
    return QStringLiteral("line%1type").arg(line);
}

QString nameOf(LineType type)
{
    switch (type) {
    case LineType::CANopen:
        return QStringLiteral("CANopen");
    case LineType::J1939:
        return QStringLiteral("J1939");
    case LineType::RawCan:
        return QStringLiteral("raw CAN");
    case LineType::CANopenAndJ1939:
        return QStringLiteral("CANopen and J1939");
    }
    return QString();
}

/// May what the file holds stand in a line of that type?
bool holds(LineType line, LineType file)
{
    if (!isKnown(line) || !isKnown(file) || line == file)
        return true;
    return line == LineType::CANopenAndJ1939 && file != LineType::RawCan;
}

} // namespace

bool Imports::run(const QVector<ImportRequest> &requests)
{
    bool areTriable = true;
    for (const ImportRequest &request : requests)
        areTriable = isTriable(request) && areTriable;
    if (!areTriable)
        return false;
    for (const ImportRequest &request : requests) {
        if (!runOne(request))
            return false;
    }
    return true;
}

bool Imports::isTriable(const ImportRequest &request) const
{
    const QString reason = whyNotImported(request);
    if (!reason.isEmpty())
        tellNotImported(request, reason);
    return reason.isEmpty();
}

bool Imports::runOne(const ImportRequest &request)
{
    const ImporterRow &row = *findImporter(request.file);
    const std::unique_ptr<BaseDataImporter> importer = row.create(request);
    importer->setActiveLine(request.targetLine());
    importer->setDatabase(&database);
    importer->setIndexRange(row.bringsLine ? 0 : ObjectRanges::kAssigned.first,
                            row.bringsLine ? kHighestNumber : ObjectRanges::kAssigned.last);
    importer->setOwnNode(request.ownNode);
    importer->setImportFileName(request.file);
    RunFiles::noteRead(request.file);
    const LineType type = importer->lineTypeOfFile();
    if (!importer->getLastError().isEmpty() || !provideLine(request, type))
        return false;
    if (row.bringsLine)
        tellOfItself(request);
    importer->startImport();
    importer->wait();
    database.setDescriptionSettingsLine(0); // as when the project was opened
    return importer->getLastError().isEmpty();
}

bool Imports::provideLine(const ImportRequest &request, LineType typeOfFile)
{
    const quint8 line = request.targetLine();
    const bool bringsLine = findImporter(request.file)->bringsLine;
    if (database.existNode(line)) {
        if (!isFitting(request, typeOfFile))
            return false;
        const bool hasType = !database.getGeneralSettingsValue(typeKey(line)).isEmpty();
        if (!hasType && !bringsLine && !leavesLine(request))
            setType(line, typeOfFile);
    } else if (leavesLine(request)) {
        Problems::warning("import-without-line", request.file,
                          QStringLiteral("has no effect, since it is imported into line 0, which "
                                         "the project does not have: add that line to it, as "
                                         "\"-import 0:<file>\" does"));
    } else if (!bringsLine) {
        addLine(line);
        setType(line, typeOfFile);
    }
    return true;
}

/// One between others finds blanks where a line above them gets the values of the highest one.
void Imports::addLine(quint8 line)
{
    const QList<quint8> others = database.getNodes();
    database.addNode(line, ObjectDataBase::NODE_DATA_T());
    if (others.isEmpty())
        return;
    const QStringList keys = ObjectDataBase::getGeneralLineDependentSettings();
    for (const QString &key : keys) {
        if (database.getGeneralSettingsValueLine(key, line) == QLatin1String(" "))
            database.setGeneralSettingsValueLine(
                key, database.getGeneralSettingsValueLine(key, others.first()), line);
    }
}

void Imports::setType(quint8 line, LineType type)
{
    database.setGeneralSettingsValue(typeKey(line), QString::number(int(type)));
}

bool Imports::isFitting(const ImportRequest &request, LineType typeOfFile) const
{
    const quint8 line = request.targetLine();
    const LineType type = readLineType(database, line);
    if (holds(type, typeOfFile))
        return true;
    const QString reason = QStringLiteral("it is for a %1 line, and line %2 of the project is a "
                                          "%3 line")
                               .arg(nameOf(typeOfFile), QString::number(line), nameOf(type));
    if (!leavesLine(request)) {
        const int free = database.getNodes().last() + 1;
        const QString source =
            request.lineOfFile ? QStringLiteral("#%1").arg(*request.lineOfFile) : QString();
        const QString advice = QStringLiteral("; \"-import %1:%2%3\" adds a line for it")
                                   .arg(QString::number(free), printableLine(request.file), source);
        tellNotImported(request, free > kHighestImportLine ? reason : reason + advice);
        return false;
    }
    if (!hasDictionary(readProjectFacts(database)))
        Problems::warning("import-of-other-type", request.file,
                          QStringLiteral("is of no use there: ") + reason);
    return true;
}

/// It is no slip where a device has a second line like another one.
void Imports::tellOfItself(const ImportRequest &request) const
{
    const QString path = QFileInfo(request.file).canonicalFilePath();
    if (path != QFileInfo(database.getProjectFileName()).canonicalFilePath())
        return;
    const QString lines = QStringLiteral("is the project that is open: its line %1, as the file "
                                         "holds it, is copied into line %2")
                              .arg(QString::number(request.lineOfFile.value_or(0)),
                                   QString::number(request.targetLine()));
    if (request.lineOfFile.value_or(0) == request.targetLine())
        Problems::warning("import-of-itself", request.file, lines + QStringLiteral(" again"));
    else
        Problems::note("import-of-itself", request.file, lines);
}
