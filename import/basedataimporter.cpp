// Set-up and thread of an import.
#include "import/basedataimporter.h"

#include "store/objectdatabase.h"
#include "support/candatatype.h"
#include "support/filereasons.h"
#include "support/problems.h"

#include <QFileInfo>

namespace
{

using Type = CAN::CANopenDataType;

struct BitsRow {
    quint16 bits;
    Type unsignedType;
    Type signedType;
};

// clang-format off
constexpr BitsRow kTypesByBits[] = {
    {0,  Type::StringAsterisk, Type::StringAsterisk},
    {1,  Type::Boolean,        Type::Boolean},
    {2,  Type::Unsigned2,      Type::Unsigned2},
    {3,  Type::Unsigned3,      Type::Unsigned3},
    {4,  Type::Unsigned4,      Type::Unsigned4},
    {5,  Type::Unsigned5,      Type::Unsigned5},
    {6,  Type::Unsigned6,      Type::Unsigned6},
    {7,  Type::Unsigned7,      Type::Unsigned7},
    {8,  Type::Unsigned8,      Type::Integer8},
    {10, Type::Unsigned10,     Type::Unsigned10},
    {11, Type::Unsigned11,     Type::Unsigned11},
    {12, Type::Unsigned12,     Type::Unsigned12},
    {13, Type::Unsigned13,     Type::Unsigned13},
    {14, Type::Unsigned14,     Type::Unsigned14},
    {16, Type::Unsigned16,     Type::Integer16},
    {18, Type::Unsigned18,     Type::Unsigned18},
    {19, Type::Unsigned19,     Type::Unsigned19},
    {21, Type::Unsigned21,     Type::Unsigned21},
    {24, Type::Unsigned24,     Type::Unsigned24},
    {29, Type::Unsigned29,     Type::Unsigned29},
    {32, Type::Unsigned32,     Type::Integer32},
    {40, Type::Unsigned40,     Type::Unsigned40},
    {48, Type::Unsigned48,     Type::Unsigned48},
    {64, Type::Unsigned64,     Type::Unsigned64},
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
    worker.start([this] { doImport(); });
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
            return CAN::typeNumber(isSigned ? row.signedType : row.unsignedType);
    }
    return CAN::typeNumber(Type::OctetString);
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
    const QString start =
        activeLine == 0 ? QStringLiteral("v_") : QStringLiteral("v%1_").arg(activeLine);
    QString name = start + first + second;
    // 4096 with 11 and 40961 with 1 would share a name.
    const auto found = varNameOwners.constFind(name);
    if (found != varNameOwners.constEnd() && *found != owner)
        name = start + first + QLatin1Char('_') + second;
    varNameOwners.insert(name, owner);
    return name;
}

void BaseDataImporter::fail(const QString &text)
{
    lastError = text;
    emit importError(text);
}

void BaseDataImporter::failToOpen()
{
    QString reason = FileReasons::whyNotReadable(importFileName);
    if (reason.isEmpty())
        reason = QStringLiteral("it could not be read to its end");
    Problems::error("not-imported", importFileName,
                    QStringLiteral("could not be imported: %1").arg(reason));
    fail(QStringLiteral("Could not open %1").arg(importFileName));
}
