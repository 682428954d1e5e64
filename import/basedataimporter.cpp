// Set-up and thread of an import.
#include "import/basedataimporter.h"

#include "store/objectdatabase.h"

#include <QFileInfo>

namespace
{

struct BitsRow {
    quint16 bits;
    quint16 unsignedType;
    quint16 signedType;
};

// clang-format off
constexpr BitsRow kTypesByBits[] = {
    {0,  121, 121},
    {1,    1,   1},
    {2,  100, 100}, {3, 101, 101}, {4, 102, 102}, {5, 103, 103}, {6, 104, 104}, {7, 105, 105},
    {8,    5,   2},
    {10, 107, 107}, {11, 108, 108}, {12, 109, 109}, {13, 110, 110}, {14, 111, 111},
    {16,   6,   3},
    {18, 118, 118}, {19, 117, 117}, {21, 119, 119},
    {24,  22,  22},
    {29, 129, 129},
    {32,   7,   4},
    {40,  24,  24},
    {48,  25,  25},
    {64,  27,  27},
};
// clang-format on

} // namespace

BaseDataImporter::Job::Job(BaseDataImporter &dataImporter) : importer(dataImporter)
{
    if (importer.database) {
        importer.database->setLockWriteAccess(false);
        importer.database->setBlockUpdates(true);
        importer.database->beginBatch();
    }
}

BaseDataImporter::Job::~Job()
{
    if (importer.database) {
        importer.database->commitBatch();
        importer.database->setBlockUpdates(false);
    }
    importer.worker.quit();
    emit importer.progress(100);
}

bool BaseDataImporter::setActiveLine(quint8 line)
{
    activeLine = line;
    return true;
}

bool BaseDataImporter::setDatabase(ObjectDataBase *store)
{
    database = store;
    return true;
}

bool BaseDataImporter::setIndexRange(quint32 low, quint32 high)
{
    lowIndex = low;
    highIndex = high;
    return true;
}

bool BaseDataImporter::setImportFileName(const QString &file)
{
    const QFileInfo info(file);
    const bool isUsable = info.isFile() && info.isReadable();
    importFileName = isUsable ? file : QString();
    return isUsable;
}

bool BaseDataImporter::startImport()
{
    if (started)
        return false;
    started = true;
    worker.start(this, "doImport");
    return true;
}

void BaseDataImporter::abortImport()
{
    abortRequested = true;
}

bool BaseDataImporter::isFinished() const
{
    return worker.isFinished();
}

void BaseDataImporter::wait()
{
    worker.wait();
}

quint16 BaseDataImporter::getDataTypeFromBitLength(quint16 bits, bool isSigned)
{
    for (const BitsRow &row : kTypesByBits) {
        if (row.bits == bits)
            return isSigned ? row.signedType : row.unsignedType;
    }
    return 10;
}

QString BaseDataImporter::proposeVarname(quint32 index, const QString &text)
{
    static const QString dropped = QStringLiteral(" -#().,/");
    QString name;
    for (const QChar character : text) {
        if (!dropped.contains(character))
            name += character.toLower();
    }
    if (usedNames.contains(name))
        name += QLatin1Char('_') + QString::number(index, 16);
    usedNames.insert(name);
    return name;
}

QString BaseDataImporter::makeVarName(quint16 index, quint8 sub)
{
    const quint32 owner = quint32(index) << 8 | sub;
    const QString first = QString::number(index);
    const QString second = QString::number(sub);
    QString name = QLatin1String("v_") + first + second;
    // 4096 with 11 and 40961 with 1 would share a name.
    const auto found = varNameOwners.constFind(name);
    if (found != varNameOwners.constEnd() && *found != owner)
        name = QLatin1String("v_") + first + QLatin1Char('_') + second;
    varNameOwners.insert(name, owner);
    return name;
}

void BaseDataImporter::fail(const QString &text)
{
    lastError = text;
    emit importError(text);
}
