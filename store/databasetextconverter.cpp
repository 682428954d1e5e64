// The text form of a project.
#include "store/databasetextconverter.h"

#include "store/objectdatabase_p.h"
#include "support/logging.h"

#include <QFile>
#include <QFileInfo>

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

bool isSettingsTable(const QString &table)
{
    return table == QLatin1String("DescriptionSettings") ||
           table == QLatin1String("GeneralSettings") || table == QLatin1String("MiscSettings");
}

QString hexNumber(const QVariant &cell)
{
    return QStringLiteral("0x%1").arg(cell.toUInt(), 0, 16);
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

/// The cells of one row, which stand together in the sorted list of keys: "group/number/column", or
/// with two numbers. Calls \a apply with the numbers and the keys of each row.
template <class Apply>
void forEachRow(const QStringList &keys, int numbers, Apply apply)
{
    QStringList place;
    QStringList rowKeys;
    for (const QString &key : keys) {
        const QStringList parts = key.split(QLatin1Char('/'));
        if (parts.size() != numbers + 2) {
            qCDebug(lcStore) << "no cell of a row:" << key;
            continue;
        }
        const QStringList here = parts.mid(1, numbers);
        if (here != place && !rowKeys.isEmpty()) {
            apply(place, rowKeys);
            rowKeys.clear();
        }
        place = here;
        rowKeys << key;
    }
    if (!rowKeys.isEmpty())
        apply(place, rowKeys);
}

QString lastPart(const QString &key)
{
    return key.mid(key.lastIndexOf(QLatin1Char('/')) + 1);
}

} // namespace

DatabaseTextConverter::DatabaseTextConverter(QObject *parent) : QObject(parent) {}

DatabaseTextConverter::~DatabaseTextConverter() = default;

void DatabaseTextConverter::setObjectDatabase(ObjectDataBase *database)
{
    store = database;
    d = database->d.get();
}

void DatabaseTextConverter::setTextOutputFile(const QString &file)
{
    QFile::remove(file);
    setTextInputfile(file);
}

void DatabaseTextConverter::setTextInputfile(const QString &file)
{
    inputFile = file;
    settings = std::make_shared<QSettings>(file, QSettings::IniFormat);
    settings->setIniCodec("UTF-8");
}

// --- to text ---

bool DatabaseTextConverter::convertSqlToText()
{
    if (!settings || !store)
        return false;
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
            handleNodes();
        else
            printTable(table);
    }
    settings->sync();
    return settings->status() == QSettings::NoError;
}

void DatabaseTextConverter::fixAllDefaultValues()
{
    // Empty cells become explicit, so that a text project has the same lines whatever wrote the
    // rows.
    static const QString blanks = whiteSpace();
    const QVector<QStringList> columns =
        d->allRows(QStringLiteral("SELECT m.name, c.name, lower(c.type) FROM sqlite_master m, "
                                  "PRAGMA_TABLE_INFO(m.name) c WHERE m.type='table'"));
    store->beginBatch();
    for (const QStringList &row : columns) {
        const QString table = QString(row.at(0)).replace(QLatin1Char('"'), QLatin1String("\"\""));
        const QString column = QString(row.at(1)).replace(QLatin1Char('"'), QLatin1String("\"\""));
        if (row.at(2).contains(QLatin1String("integer"))) {
            d->exec(QStringLiteral("update \"%1\" set \"%2\"=0 where \"%2\" is NULL or \"%2\"=''")
                        .arg(table, column));
        } else if (row.at(2).contains(QLatin1String("text"))) {
            d->exec(QStringLiteral("update \"%1\" set \"%2\"='' where \"%2\" is NULL or "
                                   "(\"%2\"!='' and trim(\"%2\",?)='')")
                        .arg(table, column),
                    {blanks});
        }
    }
    store->commitBatch();
    d->forgetSettings();
    store->clearAllCachedSubs();
    store->clearCachedSubNames();
}

void DatabaseTextConverter::handleSettings(const QString &table)
{
    Statement rows(*d, QStringLiteral("SELECT item, value FROM %1 ORDER BY item").arg(table));
    while (rows.next()) {
        settings->setValue(table + QLatin1Char('/') + rows.value(0).toString(),
                           rows.value(1).toString());
    }
}

void DatabaseTextConverter::writeCell(const QString &key, const QString &column,
                                      const QVariant &cell)
{
    static const QSet<QString> texts{QStringLiteral("name"), QStringLiteral("description"),
                                     QStringLiteral("device_class")};
    const QString path = key + QLatin1Char('/') + column;
    if (texts.contains(column))
        settings->setValue(path, store->getString(cell.toInt()));
    else if (column != QLatin1String("metadata"))
        settings->setValue(path, cell.toString());
    else if (unpackMetadata(cell.toByteArray()).isEmpty())
        settings->setValue(path, QStringLiteral("0"));
    else
        settings->setValue(path, cell.toByteArray());
}

void DatabaseTextConverter::handleNodes()
{
    Statement rows(*d, QStringLiteral("SELECT nodeId,%1 FROM Nodes").arg(columnList(kNodeColumns)));
    while (rows.next()) {
        const QString key = QStringLiteral("Nodes/%1").arg(rows.value(0).toString());
        int i = 1;
        // Deliberate: the node's name goes through the table of texts as an object's does, although
        // it is plain text, and so is lost in this form.
        for (const Column<NodeData> &field : kNodeColumns)
            writeCell(key, QString::fromLatin1(field.name), rows.value(i++));
    }
}

void DatabaseTextConverter::handleObjects(const QString &table)
{
    static const QStringList columns = namesInOrder(kIndexColumns);
    Statement rows(
        *d,
        QStringLiteral("SELECT objectindex,%1 FROM %2").arg(columns.join(QLatin1Char(',')), table));
    while (rows.next()) {
        const QString key = table + QLatin1Char('/') + hexNumber(rows.value(0));
        for (int i = 0; i < columns.size(); ++i)
            writeCell(key, columns.at(i), rows.value(i + 1));
    }
}

void DatabaseTextConverter::handleSubObjects(const QString &table)
{
    QStringList columns = namesInOrder(kSubIndexColumns);
    for (const char *column : kExcludedSubColumns)
        columns.removeAll(QLatin1String(column));
    Statement rows(*d, QStringLiteral("SELECT objectindex,subindex,%1 FROM %2")
                           .arg(columns.join(QLatin1Char(',')), table));
    while (rows.next()) {
        const QString key = table + QLatin1Char('/') + hexNumber(rows.value(0)) + QLatin1Char('/') +
                            hexNumber(rows.value(1));
        for (int i = 0; i < columns.size(); ++i)
            writeCell(key, columns.at(i), rows.value(i + 2));
    }
}

void DatabaseTextConverter::printTable(const QString &table)
{
    qCDebug(lcStore) << "unhandled table" << table;
    const QStringList columns = d->columnNames(table);
    const QVector<QStringList> rows =
        d->allRows(QStringLiteral("SELECT * FROM \"%1\"")
                       .arg(QString(table).replace(QLatin1Char('"'), QLatin1String("\"\""))));
    for (const QStringList &row : rows) {
        for (int i = 0; i < row.size() && i < columns.size(); ++i)
            settings->setValue(table + QLatin1Char('/') + columns.at(i), row.at(i));
    }
}

// --- from text ---

bool DatabaseTextConverter::convertTextToSql()
{
    if (!settings || !store)
        return false;
    QMap<QString, QStringList> groups; // sorted as the groups of the file are
    const QStringList keys = settings->allKeys();
    for (const QString &key : keys) {
        const int slash = key.indexOf(QLatin1Char('/'));
        if (slash > 0)
            groups[key.left(slash)] << key;
    }
    store->beginBatch();
    importNodes(groups.value(QStringLiteral("Nodes")));
    bool understood = groups.contains(QStringLiteral("Nodes"));
    for (auto group = groups.constBegin(); group != groups.constEnd(); ++group) {
        const QString &name = group.key();
        if (name.contains(QLatin1String("DescriptionSettings")) ||
            name.contains(QLatin1String("GeneralSettings")) ||
            name.contains(QLatin1String("MiscSettings")))
            importSettings(name, *group);
        else if (name.contains(QLatin1String("SubObjects")))
            importSubObjects(name, *group);
        else if (name.contains(QLatin1String("Objects")))
            importObjects(name, *group);
        else {
            qCDebug(lcStore) << "unhandled group" << name;
            continue;
        }
        understood = true;
    }
    store->commitBatch();
    return understood && settings->status() == QSettings::NoError &&
           QFileInfo(inputFile).isReadable();
}

QString DatabaseTextConverter::textOf(const QString &key) const
{
    // A value with commas that stands without quotes is a list to QSettings.
    const QVariant value = settings->value(key);
    return value.type() == QVariant::StringList ? value.toStringList().join(QLatin1Char(','))
                                                : value.toString();
}

void DatabaseTextConverter::importNodes(const QStringList &keys)
{
    forEachRow(keys, 1, [this](const QStringList &place, const QStringList &cells) {
        bool ok = false;
        const uint line = place.first().toUInt(&ok);
        if (!ok || line > 0xFF)
            return;
        store->addNode(static_cast<quint8>(line), ObjectDataBase::NODE_DATA_T());
        for (const QString &key : cells)
            store->setNodeSqlValue(lastPart(key), textOf(key), place.first());
    });
}

void DatabaseTextConverter::importObjects(const QString &group, const QStringList &keys)
{
    forEachRow(keys, 1, [&](const QStringList &place, const QStringList &cells) {
        store->setObjectIndexSqlValues(group, place.at(0), cellsOf(cells));
    });
}

void DatabaseTextConverter::importSubObjects(const QString &group, const QStringList &keys)
{
    forEachRow(keys, 2, [&](const QStringList &place, const QStringList &cells) {
        store->setSubindexSqlValues(group, place.at(0), place.at(1), cellsOf(cells));
    });
}

QVector<ObjectDataBase::ColumnValue> DatabaseTextConverter::cellsOf(const QStringList &keys) const
{
    QVector<ObjectDataBase::ColumnValue> cells;
    cells.reserve(keys.size());
    for (const QString &key : keys) {
        const QString column = lastPart(key);
        const QVariant value =
            column == QLatin1String("metadata") ? settings->value(key) : QVariant(textOf(key));
        cells.append({column, value});
    }
    return cells;
}

void DatabaseTextConverter::importSettings(const QString &group, const QStringList &keys)
{
    store->setDescriptionSettingsLine(0); // the keys carry their lines' suffixes
    for (const QString &key : keys) {
        const QString item = key.mid(group.size() + 1);
        const QString value = textOf(key);
        if (group.contains(QLatin1String("DescriptionSettings")))
            store->setDescriptionSettingsValue(item, value);
        else if (group.contains(QLatin1String("GeneralSettings")))
            store->setGeneralSettingsValue(item, value);
        else
            store->setMiscSettingsValue(item, value);
    }
}
