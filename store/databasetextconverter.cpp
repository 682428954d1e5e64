// The text form of a project.
#include "store/databasetextconverter.h"

#include "store/objectdatabase_p.h"
#include "support/editdistance.h"
#include "support/logging.h"
#include "support/numbers.h"
#include "support/printable.h"
#include "support/problems.h"

#include <QFile>
#include <QSet>

#include <algorithm>

using Effect = TextProjectProblems::Effect;

/// A row as the text form has it.
struct TextRow {
    QStringList numbers; ///< of its key
    QVector<ObjectDataBase::ColumnValue> cells;
    const IniText::Entry *first = nullptr; ///< the entry of the first cell; the others follow it
};

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

bool isExcludedTable(const QString &table)
{
    return std::any_of(std::begin(kExcludedTables), std::end(kExcludedTables),
                       [&table](const char *word) { return table.contains(QLatin1String(word)); });
}

/// Groups whose keys are settings. A name that holds more is read as well.
bool isSettings(const QString &group)
{
    return group.contains(QLatin1String("DescriptionSettings")) ||
           group.contains(QLatin1String("GeneralSettings")) ||
           group.contains(QLatin1String("MiscSettings"));
}

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

/// A value as text. One with commas that stands without quotes is a list in the file.
QString textOf(const QVariant &value)
{
    return value.type() == QVariant::StringList ? value.toStringList().join(QLatin1Char(','))
                                                : value.toString();
}

/// A key as the file has it.
QString keyIn(const IniText::Entry &entry)
{
    return QString::fromUtf8(entry.keyText.begin, std::min(entry.keyText.size(), 400));
}

/// Calls \a apply with each row, whose keys are "number/column", or have two numbers; and \a skip
/// with what has more or fewer. Cells of a row that stand apart in the file come as two rows.
template <class Apply, class Skip>
void forEachRow(const QVector<IniText::Entry> &entries, int numbers, Apply apply, Skip skip)
{
    QString place; // "0x1018/0x1"
    TextRow row;
    const auto finishRow = [&]() {
        row.numbers = place.split(QLatin1Char('/'));
        if (!row.cells.isEmpty() && row.numbers.size() == numbers)
            apply(row);
        else if (!row.cells.isEmpty())
            skip(row);
        row.cells.clear();
    };
    for (const IniText::Entry &entry : entries) {
        const QString key = entry.key();
        const int slash = key.lastIndexOf(QLatin1Char('/'));
        const QStringRef prefix = key.leftRef(qMax(slash, 0));
        if (prefix != place) {
            finishRow();
            place = prefix.toString();
        }
        if (row.cells.isEmpty())
            row.first = &entry;
        const QVariant value = entry.value();
        const bool isBytes = value.type() == QVariant::ByteArray;
        row.cells.append({key.mid(slash + 1), isBytes ? value : QVariant(textOf(value))});
    }
    finishRow();
}

quint32 objectKey(int line, const QString &index)
{
    return quint32(line) << 16 | Numbers::toUIntByPrefix(index);
}

/// A line of the device whose table of objects or subindices \a group is named like; -1 if it is
/// none.
int lineOfGroup(const QString &group)
{
    return std::max(Schema::lineOfTable(group, "Objects"),
                    Schema::lineOfTable(group, "SubObjects"));
}

bool isNumberUpTo(const QString &text, quint32 highest)
{
    bool ok = false;
    return Numbers::toUIntByPrefix(text, &ok) <= highest && ok;
}

/// What a file is whose bytes are no text that this form could be in; empty if they may be.
QString otherForm(const QByteArray &bytes)
{
    if (bytes.startsWith("SQLite format 3"))
        return QStringLiteral("is a database and no text project, and is read as an empty one: let "
                              "its name end in .tsrp");
    if (bytes.startsWith("\xFF\xFE") || bytes.startsWith("\xFE\xFF"))
        return QStringLiteral("is UTF-16 text, and is read as an empty project: save it as UTF-8");
    return QString();
}

/// What is wrong with a cell, for the user.
QString textOfFault(const TextFault &fault, const ObjectDataBase::ColumnValue &cell,
                    const QStringList &columns)
{
    const QString column = quotedWord(cell.column);
    const QString value = quotedWord(cell.value.toString());
    switch (fault.kind) {
    case TextFault::Kind::NoColumn:
        return QStringLiteral("there is no column %1, and its value is passed over").arg(column) +
               didYouMean(cell.column, columns);
    case TextFault::Kind::NoNumber:
        return QStringLiteral("%1 is no number for the column %2, and is read as %3: write a "
                              "decimal number")
            .arg(value, column, fault.read.toString());
    case TextFault::Kind::CutNumber:
        return QStringLiteral("%1 is out of the range of the column %2, and is read as %3: write a "
                              "number that fits")
            .arg(value, column, fault.read.toString());
    case TextFault::Kind::NoObjectType:
        return QStringLiteral("%1 is no type of object for the column %2, and is kept as it is: "
                              "write 7 for a variable, 8 for an array, or 9 for a record")
            .arg(value, column);
    case TextFault::Kind::NoMetadata:
        break;
    }
    return QStringLiteral("the column %1 holds no list of texts in the form in which it is saved, "
                          "and is left empty")
        .arg(column);
}

const char *ruleOfFault(TextFault::Kind kind)
{
    switch (kind) {
    case TextFault::Kind::NoColumn:
        return "unknown-column";
    case TextFault::Kind::NoNumber:
        return "no-number";
    case TextFault::Kind::CutNumber:
        return "number-cut";
    case TextFault::Kind::NoObjectType:
        return "no-object-type";
    case TextFault::Kind::NoMetadata:
        break;
    }
    return "no-metadata";
}

} // namespace

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
        if (isExcludedTable(table))
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
    tellAll(found, otherForm(text), isProject);
    return understood && isProject && isComplete;
}

/// Of bytes in another form each line would be wrong; \a form says it once.
void DatabaseTextConverter::tellAll(TextProjectProblems &found, const QString &form, bool isProject)
{
    if (form.isEmpty()) {
        found.tell();
        lostPart = found.linesToMend();
    }
    const QString none = QStringLiteral("holds no group of a text project, and is read as an empty "
                                        "one");
    if (!isProject)
        Problems::warning("no-project", inputFile, form.isEmpty() ? none : form);
}

bool DatabaseTextConverter::importGroup(const QString &group,
                                        const QVector<IniText::Entry> &entries)
{
    if (isSettings(group))
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
        for (const ObjectDataBase::ColumnValue &cell : row.cells)
            store->setNodeSqlValue(cell.column, cell.value.toString(), row.numbers.first());
        d->findNodeFaults(row.cells);
        tellCells(row, columns);
    };
    forEachRow(entries, 1, apply, [this](const TextRow &row) { tellShape(row, "line\\column"); });
}

void DatabaseTextConverter::importObjects(const QString &group,
                                          const QVector<IniText::Entry> &entries)
{
    static const QStringList columns = namesInOrder(kIndexColumns);
    const int line = Schema::lineOfTable(group, "Objects");
    const auto apply = [&](const TextRow &row) {
        const QString &index = row.numbers.first();
        if (!store->setObjectIndexSqlValues(group, index, row.cells)) {
            isComplete = false;
            return tellLostRow(row, group);
        }
        objects.insert(objectKey(line, index));
        tellCells(row, columns);
    };
    forEachRow(entries, 1, apply, [this](const TextRow &row) { tellShape(row, "object\\column"); });
}

void DatabaseTextConverter::importSubObjects(const QString &group,
                                             const QVector<IniText::Entry> &entries)
{
    static const QStringList columns = namesInOrder(kSubIndexColumns);
    const int line = Schema::lineOfTable(group, "SubObjects");
    const auto apply = [&](const TextRow &row) {
        const QString &index = row.numbers.first();
        if (!store->setSubindexSqlValues(group, index, row.numbers.at(1), row.cells)) {
            isComplete = false;
            return tellLostRow(row, group);
        }
        tellCells(row, columns);
        if (!objects.contains(objectKey(line, index)))
            tellUnowned(row, line);
    };
    forEachRow(entries, 2, apply,
               [this](const TextRow &row) { tellShape(row, "object\\subindex\\column"); });
}

void DatabaseTextConverter::importSettings(const QString &group,
                                           const QVector<IniText::Entry> &entries)
{
    store->setDescriptionSettingsLine(0); // the keys carry their lines' suffixes
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
            tell("setting-not-read", entry, Effect::Lost, [&] {
                const bool isQuoted = value.contains(QLatin1Char('\''));
                return QStringLiteral("the value of %1 %2")
                    .arg(quotedWord(key),
                         isQuoted ? QStringLiteral("has an apostrophe, which a general setting "
                                                   "cannot hold, and is not read: remove it")
                                  : QStringLiteral("could not be taken over"));
            });
    }
}

// --- what is wrong in a text ---

void DatabaseTextConverter::tell(const char *rule, const IniText::Entry &entry,
                                 TextProjectProblems::Effect effect,
                                 const std::function<QString()> &words)
{
    problems->add(rule, entry.keyText.begin, effect, words);
}

void DatabaseTextConverter::tellGroup(const QString &group, const char *head, bool hasRows)
{
    const int line = lineOfGroup(group);
    const bool isTable = group.contains(QLatin1String("Objects"));
    // The table of UDS services is written to a text, though nothing reads it there.
    const bool isKnown = isTable ? line >= 0
                                 : group == QLatin1String("Nodes") || isSettings(group) ||
                                       Schema::lineOfTable(group, "UDSSettings") >= 0;
    const bool isWithoutLine = line >= 0 && !deviceLines.contains(uint(line));
    if (isKnown && !isWithoutLine)
        return;
    const Effect effect = isTable && hasRows ? Effect::Lost : Effect::Saved;
    const QString name = quotedWord(group);
    if (isWithoutLine)
        return problems->add("unknown-line", head, effect, [&] {
            return QStringLiteral(
                       "the group %1 is that of line %2, which [Nodes] does not have, and "
                       "is passed over: add %2\\prefix=_ there")
                .arg(name, QString::number(line));
        });
    problems->add("unknown-group", head, effect, [&] {
        return isExcludedTable(group)
                   ? QStringLiteral("the group %1 is passed over: only a project of the form .tsrp "
                                    "keeps it")
                         .arg(name)
                   : QStringLiteral("the group %1 is no part of a text project, and is passed over")
                             .arg(name) +
                         didYouMean(group, knownGroups());
    });
}

QStringList DatabaseTextConverter::knownGroups() const
{
    QStringList names = {QStringLiteral("Nodes"), QStringLiteral("GeneralSettings"),
                         QStringLiteral("DescriptionSettings"), QStringLiteral("MiscSettings")};
    for (const uint line : deviceLines)
        names << Schema::table("Objects", int(line)) << Schema::table("SubObjects", int(line));
    names.sort(); // a set has no order
    return names;
}

void DatabaseTextConverter::tellCells(const TextRow &row, const QStringList &columns)
{
    for (const TextFault &fault : qAsConst(d->textFaults)) {
        const IniText::Entry &entry = row.first[fault.cell];
        const bool isToldAlready = entry.keyText.size() == 0;
        if (!isToldAlready)
            tell(ruleOfFault(fault.kind), entry, Effect::Saved,
                 [&] { return textOfFault(fault, row.cells.at(fault.cell), columns); });
    }
}

void DatabaseTextConverter::tellShape(const TextRow &row, const char *form)
{
    for (int i = 0; i < row.cells.size(); ++i) {
        const IniText::Entry &entry = row.first[i];
        if (entry.keyText.size() > 0) // else it is told already
            tell("unknown-object", entry, Effect::Saved, [&] {
                return QStringLiteral("%1 is not of the form %2, and is passed over")
                    .arg(quotedWord(keyIn(entry)), QLatin1String(form));
            });
    }
}

void DatabaseTextConverter::tellLostRow(const TextRow &row, const QString &group)
{
    const IniText::Entry &entry = *row.first;
    const bool isNode = group == QLatin1String("Nodes");
    const bool isSub = row.numbers.size() > 1;
    const bool isSound = !isNode && isNumberUpTo(row.numbers.first(), 0xFFFF) &&
                         (!isSub || isNumberUpTo(row.numbers.at(1), 0xFF));
    if (isSound)
        return; // the group is told of, whose line does not exist
    if (entry.keyText.size() == 0)
        return problems->addLost(entry.keyText.begin); // the line of the text is told of
    const char *what = isNode  ? "the number of a line, 0 to 255"
                       : isSub ? "the numbers of an object, 0 to 0xFFFF, and a subindex, 0 to 0xFF"
                               : "the number of an object, 0 to 0xFFFF";
    tell(isNode ? "unknown-line" : "unknown-object", entry, Effect::Lost, [&] {
        return QStringLiteral("%1 does not begin with %2, and is passed over")
            .arg(quotedWord(keyIn(entry)), QLatin1String(what));
    });
}

void DatabaseTextConverter::tellUnowned(const TextRow &row, int line)
{
    const QString &index = row.numbers.first();
    tell("unknown-object", *row.first, Effect::Saved, [&] {
        return QStringLiteral("%1 has subindices here and is no object of [Objects%2], so that no "
                              "generated file has it: add it there")
            .arg(quotedWord(index), QString::number(line));
    });
    objects.insert(objectKey(line, index)); // once is enough
}
