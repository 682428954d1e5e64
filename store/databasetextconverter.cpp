// The text form of a project: writing and reading. databasetextconverter_problems.cpp tells what is
// wrong in one.
#include "store/databasetextconverter.h"

#include "store/databasetextconverter_p.h"
#include "store/objectdatabase_p.h"
#include "store/textrowwriter.h"
#include "support/logging.h"
#include "support/printable.h"

#include <QFile>
#include <QSet>

#include <algorithm>

namespace
{

// Tables whose name holds one of these are no part of the text form.
constexpr const char *kExcludedTables[] = {
    "CANIDs",  "Connections",   "DataElements",   "EnergyBusSettings",
    "Groups",  "J1939Settings", "LockedMappings", "LockedPDOs",
    "PGNs",    "SPNs",          "SignalGroups",   "Signals",
    "Strings", "VirtualNodes"};

constexpr const char *kExcludedSubColumns[] = {"cyclicread",   "changedbyuser", "dcfcomponent",
                                               "wizardsource", "signalid",      "denotation"};

bool isSettingsTable(const QString &table)
{
    return table == QLatin1String("DescriptionSettings") ||
           table == QLatin1String("GeneralSettings") || table == QLatin1String("MiscSettings");
}

QString hexNumber(const QVariant &cell)
{
    return QStringLiteral("0x%1").arg(cell.toUInt(), 0, 16);
}

/// Rows stand in the order of their keys as text, where 0x10 comes before 0x2.
QString hexOrder(const char *column)
{
    return QStringLiteral("printf('0x%x',%1)").arg(QLatin1String(column));
}

/// A name as it stands in a statement; names of tables in a project are data.
QString quoted(QString name)
{
    return QLatin1Char('"') + name.replace(QLatin1Char('"'), QLatin1String("\"\"")) +
           QLatin1Char('"');
}

/// All characters that QChar counts as white space, for SQL's trim().
QString whiteSpace()
{
    QString characters;
    for (ushort code = 1; code < 0xFFFF; ++code) {
        if (QChar(code).isSpace())
            characters += QChar(code);
    }
    return characters;
}

template <class Record, size_t N>
QStringList namesInOrder(const Column<Record> (&columns)[N])
{
    QStringList names;
    for (const Column<Record> &field : columns)
        names << QString::fromLatin1(field.name);
    names.sort();
    return names;
}

/// A section that is written when it gets its first row; a table without rows has none.
class RowSection
{
public:
    RowSection(IniText::Writer &output, const QString &sectionName)
        : writer(output), name(sectionName)
    {
    }
    IniText::Writer &start()
    {
        if (!started)
            writer.section(name);
        started = true;
        return writer;
    }

private:
    IniText::Writer &writer;
    QString name;
    bool started = false;
};

/// Calls \a apply with each row whose key has so many \a numbers, and \a skip with the others.
template <class Apply, class Skip>
void forEachRow(const QVector<IniText::Entry> &entries, int numbers, Apply apply, Skip skip)
{
    TextRows rows(entries);
    while (rows.next()) {
        if (rows.row().numbers.size() == numbers)
            apply(rows.row());
        else
            skip(rows.row());
    }
}

} // namespace

bool TextForm::isExcludedTable(const QString &table)
{
    return std::any_of(std::begin(kExcludedTables), std::end(kExcludedTables),
                       [&table](const char *word) { return table.contains(QLatin1String(word)); });
}

bool TextForm::isSettings(const QString &group)
{
    return group.contains(QLatin1String("DescriptionSettings")) ||
           group.contains(QLatin1String("GeneralSettings")) ||
           group.contains(QLatin1String("MiscSettings"));
}

DatabaseTextConverter::DatabaseTextConverter(QObject *parent) : QObject(parent) {}

DatabaseTextConverter::~DatabaseTextConverter() = default;

void DatabaseTextConverter::setObjectDatabase(ObjectDataBase *database)
{
    store = database;
    source = database;
    d = database->d.get();
}

void DatabaseTextConverter::setSqlDatabaseFile(const QSqlDatabase &database)
{
    guest = std::make_unique<ObjectDataBase>();
    source = guest.get();
    d = guest->d.get();
    d->borrowConnection(database);
}

void DatabaseTextConverter::setTextOutputFile(const QString &file)
{
    outputFile = file;
}

void DatabaseTextConverter::setTextInputfile(const QString &file)
{
    inputFile = file;
}

// --- to text ---

bool DatabaseTextConverter::convertSqlToText()
{
    QFile file(outputFile);
    if (!source || !file.open(QIODevice::WriteOnly | QIODevice::Truncate)) {
        error = file.errorString();
        return false;
    }
    IniText::Writer output(&file);
    writer = &output;
    isComplete = true;
    fixAllDefaultValues();
    const QVector<QStringList> tables = d->allRows(
        QStringLiteral("SELECT name FROM sqlite_master WHERE type='table' ORDER BY name"));
    for (const QStringList &row : tables) {
        const QString &table = row.first();
        if (TextForm::isExcludedTable(table))
            continue;
        if (isSettingsTable(table))
            handleSettings(table);
        else if (table.contains(QLatin1String("SubObjects")))
            handleSubObjects(table);
        else if (table.contains(QLatin1String("Objects")))
            handleObjects(table);
        else if (table.contains(QLatin1String("Nodes")))
            handleNodes(table);
        else
            printTable(table);
    }
    writer = nullptr;
    // A store that lost its tables, to a full disk say, must not pass for an empty project.
    isComplete = isComplete && !source->getNodes().isEmpty();
    if (!output.finish() || !file.flush())
        error = file.errorString();
    else if (!isComplete)
        error = QStringLiteral("the project could not be read as a whole");
    return error.isEmpty();
}

void DatabaseTextConverter::fixAllDefaultValues()
{
    // Empty cells become explicit, so that a text project has the same lines whatever wrote the
    // rows.
    static const QString blanks = whiteSpace();
    const QVector<QStringList> columns = d->allRows(
        QStringLiteral("SELECT m.name, c.name, lower(c.type) FROM sqlite_master m, "
                       "PRAGMA_TABLE_INFO(m.name) c WHERE m.type='table' ORDER BY m.name"));
    source->beginBatch();
    // One pass over each table, which rewrites only rows that have an empty cell.
    for (int i = 0; i < columns.size();) {
        const QString table = columns.at(i).at(0);
        QStringList fixes;
        QStringList conditions;
        for (; i < columns.size() && columns.at(i).at(0) == table; ++i) {
            const QString column = quoted(columns.at(i).at(1));
            const QString &type = columns.at(i).at(2);
            if (type.contains(QLatin1String("integer"))) {
                fixes << QStringLiteral("%1=ifnull(nullif(%1,''),0)").arg(column);
                conditions << QStringLiteral("%1 is NULL or %1=''").arg(column);
            } else if (type.contains(QLatin1String("text"))) {
                const QString trimmed = QStringLiteral("trim(%1,'%2')").arg(column, blanks);
                fixes << QStringLiteral("%1=iif(%2!='',%1,'')").arg(column, trimmed);
                conditions
                    << QStringLiteral("%1 is NULL or (%1!='' and %2='')").arg(column, trimmed);
            }
        }
        if (!fixes.isEmpty())
            d->exec(QStringLiteral("update or ignore %1 set %2 where %3")
                        .arg(quoted(table), fixes.join(QLatin1Char(',')),
                             conditions.join(QStringLiteral(" or "))));
    }
    source->commitBatch();
    d->forgetSettings();
    d->forgetServicesAndSignals();
    source->clearAllCachedSubs();
    source->clearAllCachedSpnData();
    source->clearCachedSubNames();
}

void DatabaseTextConverter::handleSettings(const QString &table)
{
    Statement rows(*d, QStringLiteral("SELECT item, value FROM %1 ORDER BY item").arg(table));
    RowSection section(*writer, table);
    while (rows.next())
        section.start().value(rows.value(0).toString(), rows.value(1).toString());
}

void DatabaseTextConverter::writeCell(const QString &key, const QString &column,
                                      const QVariant &cell)
{
    static const QSet<QString> texts{QStringLiteral("name"), QStringLiteral("description"),
                                     QStringLiteral("device_class")};
    const QString path = key + QLatin1Char('/') + column;
    if (texts.contains(column))
        writer->value(path, source->getString(cell.toInt()));
    else if (column != QLatin1String("metadata"))
        writer->value(path, cell.toString());
    else if (unpackMetadata(cell.toByteArray()).isEmpty())
        writer->value(path, QStringLiteral("0"));
    else
        writer->value(path, cell.toByteArray());
}

void DatabaseTextConverter::handleNodes(const QString &table)
{
    static const QStringList columns = namesInOrder(kNodeColumns);
    Statement rows(*d, QStringLiteral("SELECT nodeId,%1 FROM %2 ORDER BY CAST(nodeId AS TEXT)")
                           .arg(columns.join(QLatin1Char(',')), quoted(table)));
    isComplete = isComplete && rows.ok();
    RowSection section(*writer, table);
    while (rows.next()) {
        section.start();
        const QString key = rows.value(0).toString();
        // Deliberate: the node's name goes through the table of texts as an object's does, although
        // it is plain text, and so is lost in this form; held by tst_textproject.
        for (int i = 0; i < columns.size(); ++i)
            writeCell(key, columns.at(i), rows.value(i + 1));
    }
}

void DatabaseTextConverter::handleObjects(const QString &table)
{
    static const QStringList columns = namesInOrder(kIndexColumns);
    Statement rows(*d, QStringLiteral("SELECT objectindex,%1 FROM %2 WHERE %4 ORDER BY %3")
                           .arg(columns.join(QLatin1Char(',')), quoted(table),
                                hexOrder("objectindex"), QLatin1String(Schema::kIndexInRange)));
    isComplete = isComplete && rows.ok();
    RowSection section(*writer, table);
    while (rows.next()) {
        section.start();
        const QString key = hexNumber(rows.value(0));
        for (int i = 0; i < columns.size(); ++i)
            writeCell(key, columns.at(i), rows.value(i + 1));
    }
}

void DatabaseTextConverter::handleSubObjects(const QString &table)
{
    QStringList columns = namesInOrder(kSubIndexColumns);
    for (const char *column : kExcludedSubColumns)
        columns.removeAll(QLatin1String(column));
    Statement rows(*d,
                   QStringLiteral("SELECT objectindex,subindex,%1 FROM %2 WHERE %5 ORDER BY %3, %4")
                       .arg(columns.join(QLatin1Char(',')), quoted(table), hexOrder("objectindex"),
                            hexOrder("subindex"), QLatin1String(Schema::kSubIndexInRange)));
    isComplete = isComplete && rows.ok();
    RowSection section(*writer, table);
    while (rows.next()) {
        section.start();
        const QString key = hexNumber(rows.value(0)) + QLatin1Char('/') + hexNumber(rows.value(1));
        for (int i = 0; i < columns.size(); ++i)
            writeCell(key, columns.at(i), rows.value(i + 2));
    }
}

void DatabaseTextConverter::printTable(const QString &table)
{
    qCDebug(lcStore) << "unhandled table" << table;
    const QStringList columns = d->columnNames(table);
    const QVector<QStringList> rows =
        d->allRows(QStringLiteral("SELECT * FROM %1").arg(quoted(table)));
    if (rows.isEmpty())
        return;
    // One key a column, so that only the last row is left to see.
    QMap<QString, QString> cells;
    for (int i = 0; i < rows.last().size() && i < columns.size(); ++i)
        cells.insert(columns.at(i), rows.last().at(i));
    writer->section(table);
    for (auto cell = cells.constBegin(); cell != cells.constEnd(); ++cell)
        writer->value(cell.key(), cell.value());
}

// --- from text ---

bool DatabaseTextConverter::convertTextToSql()
{
    QFile file(inputFile);
    if (!store)
        return false;
    if (!file.open(QIODevice::ReadOnly)) {
        readError = file.errorString();
        return false;
    }
    IniText::Sections groups;
    IniText::Outline outline;
    const QByteArray text = file.readAll(); // the entries of the groups stand in it
    TextProjectProblems found(inputFile, text);
    problems = &found;
    const bool understood = IniText::read(text, &groups, &outline);
    found.addFaults(outline);
    isComplete = true;
    deviceLines = {0};
    objects.clear();
    linesWithObjects.clear();
    lineWithoutObjects = -1;
    isMerge = outline.faultCounts.contains(IniText::LineFault::ConflictMarker);
    store->beginBatch();
    importNodes(groups.value(QStringLiteral("Nodes")));
    bool isProject = groups.contains(QStringLiteral("Nodes"));
    for (auto group = groups.constBegin(); group != groups.constEnd(); ++group) {
        const bool known = importGroup(group.key(), *group);
        tellGroup(group.key(), outline.heads.value(group.key()), !group->isEmpty());
        isProject = isProject || known;
    }
    store->commitBatch();
    problems = nullptr;
    tellAll(found, text, isProject);
    return understood && isProject && isComplete;
}

bool DatabaseTextConverter::importGroup(const QString &group,
                                        const QVector<IniText::Entry> &entries)
{
    isDoubled = false;
    if (TextForm::isSettings(group))
        importSettings(group, entries);
    else if (group.contains(QLatin1String("SubObjects")))
        importSubObjects(group, entries);
    else if (group.contains(QLatin1String("Objects")))
        importObjects(group, entries);
    else
        return false;
    return true;
}

void DatabaseTextConverter::importNodes(const QVector<IniText::Entry> &entries)
{
    static const QStringList columns = namesInOrder(kNodeColumns);
    QSet<uint> added; // cells of a node may stand apart; adding it again would reset it
    const auto apply = [&](const TextRow &row) {
        bool ok = false;
        const uint line = row.numbers.first().toUInt(&ok);
        isComplete = isComplete && ok && line <= 0xFF;
        if (!ok || line > 0xFF)
            return tellLostRow(row, QStringLiteral("Nodes"));
        deviceLines.insert(line);
        if (!added.contains(line))
            store->addNode(static_cast<quint8>(line), ObjectDataBase::NODE_DATA_T());
        added.insert(line);
        for (int i = 0; i < row.count; ++i) {
            const TextCell cell = row.cell(i);
            store->setNodeSqlValue(cell.column, cell.value.toString(), row.numbers.first());
        }
        tellCells(row, faultsOfNode(row), columns);
    };
    forEachRow(entries, 1, apply, [this](const TextRow &row) { tellShape(row, "line\\column"); });
    tellDoubled(entries, 1);
}

void DatabaseTextConverter::importObjects(const QString &group,
                                          const QVector<IniText::Entry> &entries)
{
    static const QStringList columns = namesInOrder(kIndexColumns);
    const int line = Schema::lineOfTable(group, "Objects");
    TextRowWriter<IndexData> table(*d, quint8(line));
    const auto apply = [&](const TextRow &row) {
        const QString &index = row.numbers.first();
        if (line < 0 || !table.write(row)) {
            isComplete = false;
            return tellLostRow(row, group);
        }
        const quint32 key = TextForm::objectKey(line, index);
        isDoubled = isDoubled || objects.contains(key);
        if (!objects.contains(key))
            tellDecimal(row);
        objects.insert(key);
        linesWithObjects.insert(line);
        tellCells(row, table.faults(), columns);
    };
    forEachRow(entries, 1, apply, [this](const TextRow &row) { tellShape(row, "object\\column"); });
    if (isDoubled)
        tellDoubled(entries, 1);
}

void DatabaseTextConverter::importSubObjects(const QString &group,
                                             const QVector<IniText::Entry> &entries)
{
    static const QStringList columns = namesInOrder(kSubIndexColumns);
    const int line = Schema::lineOfTable(group, "SubObjects");
    QSet<quint32> added; // the index above 8 bits of the subindex
    TextRowWriter<SubIndexData> table(*d, quint8(line));
    const auto apply = [&](const TextRow &row) {
        const QString &index = row.numbers.first();
        if (line < 0 || !table.write(row)) {
            isComplete = false;
            return tellLostRow(row, group);
        }
        const quint32 key = TextForm::subKey(row);
        isDoubled = isDoubled || added.contains(key);
        if (!added.contains(key))
            tellDecimal(row);
        added.insert(key);
        tellCells(row, table.faults(), columns);
        if (!objects.contains(TextForm::objectKey(line, index)))
            tellUnowned(row, line);
    };
    forEachRow(entries, 2, apply,
               [this](const TextRow &row) { tellShape(row, "object\\subindex\\column"); });
    if (isDoubled)
        tellDoubled(entries, 2);
}

void DatabaseTextConverter::importSettings(const QString &group,
                                           const QVector<IniText::Entry> &entries)
{
    store->setDescriptionSettingsLine(0); // the keys carry their lines' suffixes
    tellDoubled(entries, 0);
    for (const IniText::Entry &entry : entries) {
        const QString key = entry.key();
        const QString value = textOf(entry.value());
        bool done = false;
        if (group.contains(QLatin1String("DescriptionSettings")))
            done = store->setDescriptionSettingsValue(key, value);
        else if (group.contains(QLatin1String("GeneralSettings")))
            done = store->setGeneralSettingsValue(key, value);
        else
            done = store->setMiscSettingsValue(key, value);
        isComplete = isComplete && done;
        if (!done)
            tell("setting-not-read", entry, TextProjectProblems::Effect::Lost, [&] {
                const bool isQuoted = value.contains(QLatin1Char('\''));
                return QStringLiteral("the value of %1 %2")
                    .arg(quotedWord(key),
                         isQuoted ? QStringLiteral("has an apostrophe, which a general setting "
                                                   "cannot hold, and is not read: remove it")
                                  : QStringLiteral("could not be taken over"));
            });
    }
}
