// From the rows of a table to the records of a project.
#include "import/csvimporter.h"

#include "support/accesstype.h"
#include "support/cohelper.h"
#include "support/helper.h"
#include "support/implementation.h"
#include "support/logging.h"
#include "support/numbers.h"
#include "support/printable.h"
#include "support/problems.h"

namespace
{

using CAN::CANopenDataType;

/// Subindices that are held in memory before they are written.
constexpr int kGroupSize = 8192;

constexpr int kLeastFields = 4;

/// False, and \a result as it was, if one of the two is no number of its range.
bool readAddress(const QString &index, const QString &sub, BaseDataImporter::SubAddress &result)
{
    const qint64 indexNumber = Numbers::toLongLongByPrefix(index);
    const qint64 subNumber = Numbers::toLongLongByPrefix(sub);
    if (indexNumber < 0 || indexNumber > 0xFFFF || subNumber < 0 || subNumber > 0xFF)
        return false;
    result.index = static_cast<quint16>(indexNumber);
    result.subindex = static_cast<quint8>(subNumber);
    return true;
}

QString defaultName(quint16 index)
{
    return QStringLiteral("Object_%1").arg(QString::number(index, 16));
}

} // namespace

void CsvImporter::getDeleteList(QList<BaseDataImporter::SubAddress> &list) const
{
    list = deleteList;
}

void CsvImporter::getCopyList(QList<BaseDataImporter::SubAddress> &list) const
{
    list = copyList;
}

void CsvImporter::doImport()
{
    const Job job(*this);
    if (abortRequested || !database)
        return;
    QByteArray bytes;
    if (!Helper::readWholeFile(importFileName, bytes)) {
        failToOpen();
        return;
    }
    QString text = Helper::decodeText(bytes);
    bytes.clear();
    text.replace(QChar(QChar::Null), QLatin1Char(' ')); // ends a text for many readers
    CsvReader reader(text);
    text.clear();
    problems.begin(importFileName);
    const bool hasHeader = reader.next();
    const CsvColumns columns(reader.fields());
    if (hasHeader)
        columns.tellOfHeader(reader.line(), problems);
    lookForForeignLine(reader, columns);
    while (reader.next())
        readRow(reader, columns);
    flush();
    addMissingCounts();
    forgetCaches();
    problems.tell();
    if (!hasTakenRow)
        Problems::error("nothing-imported", importFileName,
                        QStringLiteral("has no row that could be taken, and the project stays as "
                                       "it is"));
}

void CsvImporter::readRow(const CsvReader &reader, const CsvColumns &columns)
{
    const QStringList &fields = reader.fields();
    const QChar first = reader.firstCharacter();
    QString reason;
    if (first == QLatin1Char('d') || first == QLatin1Char('c')) {
        first == QLatin1Char('d') ? handleDeleteLine(fields) : handleCopyLine(fields);
        reason = QStringLiteral("its small %1 makes it a request to %2 objects, which a run does "
                                "not follow; begin it with something else")
                     .arg(first, first == QLatin1Char('d') ? QStringLiteral("delete")
                                                           : QStringLiteral("copy"));
    } else if (!columns.has(CsvTable::Column::Index)) {
        return; // told of the header
    } else if (fields.size() < kLeastFields) {
        reason = QStringLiteral("it has fewer than %1 fields").arg(kLeastFields);
    } else {
        reason = handleImportLine(columns.read(fields), reader, columns);
    }
    if (!reason.isEmpty())
        problems.add("csv-row", reader.line(),
                     [&reason] { return QLatin1String("the row is passed over: ") + reason; });
}

void CsvImporter::handleDeleteLine(const QStringList &fields)
{
    qCDebug(lcImport) << "mdl" << fields;
    SubAddress address;
    if ((fields.size() == 2 || fields.size() == 3) &&
        readAddress(fields.at(1), fields.value(2), address))
        deleteList << address;
}

void CsvImporter::handleCopyLine(const QStringList &fields)
{
    qCDebug(lcImport) << "mcl" << fields;
    SubAddress source;
    SubAddress target;
    if ((fields.size() == 3 || fields.size() == 4) &&
        readAddress(fields.at(1), fields.value(3), source) &&
        readAddress(fields.at(2), fields.value(3), target))
        copyList << source << target;
}

QString CsvImporter::handleImportLine(const CsvRow &row, const CsvReader &reader,
                                      const CsvColumns &columns)
{
    const QStringList &fields = reader.fields();
    const qint64 line = row.line < 0 || row.line == foreignLine ? activeLine : row.line;
    if (row.index < 0 || row.index > 0xFFFF || !isInRange(static_cast<quint32>(row.index)))
        return QStringLiteral("its index %1 is not between 0x%2 and 0x%3")
            .arg(quotedWord(columns.cell(fields, CsvTable::Column::Index)),
                 Numbers::toHex(lowIndex, 4).toUpper(), Numbers::toHex(highIndex, 4).toUpper());
    if (row.sub < 0 || row.sub > 0xFF)
        return QStringLiteral("its subindex %1 is not between 0 and 255")
            .arg(quotedWord(columns.cell(fields, CsvTable::Column::Sub)));
    if (!isUsableLine(line))
        return QStringLiteral("the project has no line %1").arg(line);
    hasTakenRow = true;
    tellOfDoubts(row, reader, columns);
    const ObjectKey key(static_cast<quint8>(line), static_cast<quint16>(row.index));
    if (row.isObject)
        importObject(key, row);
    else
        importSubIndex(key, row);
    return QString();
}

void CsvImporter::tellOfDoubts(const CsvRow &row, const CsvReader &reader,
                               const CsvColumns &columns)
{
    const QStringList &fields = reader.fields();
    if (row.replaced != 0)
        columns.tellOfWords(row, fields, reader.line(), problems);
    for (int i = columns.count(); i < fields.size(); ++i) {
        if (fields.at(i).trimmed().isEmpty())
            continue;
        problems.add("csv-row", reader.line(), [&] {
            return QStringLiteral("the row has more fields than the header, and %1 is passed over: "
                                  "put a text that holds the separator in double quotes")
                .arg(quotedWord(fields.at(i)));
        });
        return;
    }
}

void CsvImporter::lookForForeignLine(CsvReader reader, const CsvColumns &columns)
{
    // Rows of several lines must not be mixed in one, so all of them are looked at; mostly the
    // first one decides.
    qint64 found = -1;
    while (reader.next()) {
        const QChar first = reader.firstCharacter();
        if (first == QLatin1Char('d') || first == QLatin1Char('c') ||
            reader.fields().size() < kLeastFields)
            continue;
        const qint64 line = columns.read(reader.fields()).line;
        const bool isOther = found >= 0 && line != found;
        if (isOther && isLineNamed)
            problems.add("csv-lines", reader.line(), [this] {
                return QStringLiteral(
                           "the table has rows of several lines, which go to these lines "
                           "and not to line %1")
                    .arg(activeLine);
            });
        if (line < 0 || line > 0xFF || isOther || (!isLineNamed && isUsableLine(line)))
            return;
        found = line;
    }
    foreignLine = found;
}

bool CsvImporter::isUsableLine(qint64 number)
{
    if (number > 0xFF)
        return false;
    const auto line = static_cast<quint8>(number);
    const auto known = usableLines.constFind(line);
    if (known != usableLines.constEnd())
        return *known;
    const bool isUsable = database->existNode(line);
    // What is written goes into the cache as well, so that no row needs a query.
    if (isUsable)
        database->cacheAllSubs(line, 0);
    usableLines.insert(line, isUsable);
    return isUsable;
}

void CsvImporter::importObject(const ObjectKey &key, const CsvRow &row)
{
    ObjectData data;
    data.name = defaultName(key.second);
    (void)database->getIndexData(key.first, key.second, data); // a new object has the defaults
    if (row.hasName)
        data.name = row.data.name;
    data.objectCode = COHelper::string2objectCode(row.objectCode);
    data.dataType = row.data.dataType;
    data.description = row.data.description;
    data.metadata = row.data.metadata;
    (void)database->addIndex(key.first, key.second, data); // the store logs a failure
    madeObjects.remove(key);
}

void CsvImporter::importSubIndex(const ObjectKey &key, CsvRow row)
{
    provideObject(key, row);
    applyLimits(row);
    applyStorage(key, row);
    ObjectDataBase::SubEntry entry;
    entry.line = key.first;
    entry.index = key.second;
    entry.subindex = static_cast<quint8>(row.sub);
    entry.data = row.data;
    collected.append(entry);
    if (collected.size() >= kGroupSize)
        flush();
}

void CsvImporter::provideObject(const ObjectKey &key, const CsvRow &row)
{
    const auto code = COHelper::string2objectCode(row.objectCode);
    const bool isArray = code == CANopen::ObjectCode::Array;
    if (isArray)
        arrays.insert(key);
    const bool isNew = !database->existIndex(key.first, key.second);
    ObjectData data = madeObjects.value(key);
    if (isNew) {
        data.name = row.hasName ? row.data.name : defaultName(key.second);
        data.objectCode = code;
        data.description = row.data.description;
    } else if (!isArray || row.sub != 1 || !madeObjects.contains(key) ||
               data.dataType == row.data.dataType) {
        return;
    }
    // The first row of an array is its count of elements; the type is that of the elements.
    data.dataType = row.data.dataType;
    (void)database->addIndex(key.first, key.second, data); // the store logs a failure
    madeObjects.insert(key, data);
}

void CsvImporter::applyLimits(CsvRow &row)
{
    if (row.data.dataType == CAN::typeNumber(CANopenDataType::Unknown))
        return;
    QString low;
    QString high;
    COHelper::getDefaultLimits(static_cast<CANopenDataType>(row.data.dataType), low, high);
    const bool isLowGiven = row.hasLowLimit && !row.data.lowLimit.isNull();
    const bool isUpGiven = row.hasUpLimit && !row.data.upLimit.isNull();
    const bool isAnyGiven = isLowGiven || isUpGiven;
    // Beside the other limit, an empty cell stands for no limit on its side.
    if (!row.hasLowLimit || !isAnyGiven)
        row.data.lowLimit = low;
    if (!row.hasUpLimit || !isAnyGiven)
        row.data.upLimit = high;
}

void CsvImporter::applyStorage(const ObjectKey &key, CsvRow &row)
{
    SubIndexData &data = row.data;
    const auto type = static_cast<CANopenDataType>(data.dataType);
    const bool isString = COHelper::isStringLike(type);
    const int named = COHelper::word2Implementation(row.implementation);
    const bool isConstant = type == CANopenDataType::Utf8String ||
                            data.accessType == AccessType::kConst ||
                            (isString && data.accessType == AccessType::kReadOnly);
    if (named >= 0) {
        data.implementation = static_cast<quint8>(named);
    } else if (type == CANopenDataType::Domain) {
        // Deliberate: not a constant with access "const" either, since there are no constant
        // domains in the target; held by tst_csvimporter "domain_const".
        data.implementation = Implementation::kApplicationVariable;
        data.varName.clear();
    } else if (isConstant) {
        data.implementation = Implementation::kManagedConst;
    } else if (isString) {
        data.implementation = Implementation::kApplicationVariable;
    }
    const bool needsName = named < 0 || type == CANopenDataType::Domain;
    if (isString && needsName && data.implementation == Implementation::kApplicationVariable &&
        data.varName.isEmpty())
        data.varName = makeVarName(key.second, static_cast<quint8>(row.sub));
    if (isString && named < 0 && data.size == 0)
        data.size = static_cast<quint32>(qMax(1, data.defaultValue.toUtf8().size()));
}

void CsvImporter::flush()
{
    if (!collected.isEmpty())
        (void)database->addSubIndices(collected); // the store logs a failure
    collected.clear();
}

void CsvImporter::addMissingCounts()
{
    for (const ObjectKey &key : arrays) {
        const QList<quint8> subs = database->getSubIndices(key.first, key.second, 0);
        if (subs.isEmpty() || subs.first() == 0)
            continue;
        CsvRow row;
        row.data.name = QStringLiteral("Highest Subindex supported");
        row.data.accessType = AccessType::kConst;
        row.data.defaultValue = QString::number(subs.last());
        row.data.implementation = Implementation::kManagedConst;
        applyLimits(row);
        ObjectDataBase::SubEntry entry;
        entry.line = key.first;
        entry.index = key.second;
        entry.data = row.data;
        collected.append(entry);
    }
    flush();
}

void CsvImporter::forgetCaches()
{
    // Values of strings may stand there with doubled apostrophes; whoever copies them would store
    // those.
    for (auto it = usableLines.constBegin(); it != usableLines.constEnd(); ++it) {
        if (it.value())
            database->clearCachedSubs(it.key());
    }
}
