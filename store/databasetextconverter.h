// The text form of a project: an INI file beside the database form, made for version control.
#pragma once

#include "formats/initext.h"
#include "store/objectdatabase.h"

#include <QObject>

#include <memory>

class QSqlDatabase;
class StorePrivate;

/// Turns a store into its text form and back. The text holds the object dictionaries and three of
/// the settings stores; PDO links, J1939 and raw CAN records and signals are not part of it.
class DatabaseTextConverter : public QObject
{
    Q_OBJECT

public:
    explicit DatabaseTextConverter(QObject *parent = nullptr);
    ~DatabaseTextConverter() override;

    /// The store to read from, or to write into.
    void setObjectDatabase(ObjectDataBase *database);
    /// A connection to read a project from, in place of that of the store; it has to be open, and
    /// stays so. Cells that are empty there become explicit, as they do in a store.
    void setSqlDatabaseFile(const QSqlDatabase &database);

    /// The file to write; one of that name is replaced.
    void setTextOutputFile(const QString &file);
    /// The file to read.
    void setTextInputfile(const QString &file);

    /// False if the text could not be written.
    bool convertSqlToText();

    /// Why it could not be written.
    QString outputError() const { return error; }

    /// Reads into a store that createNewDataBase() has just made. False if the file could not be
    /// read is no text project, or holds what a store cannot take over; the rest is in the store
    /// all the same.
    bool convertTextToSql();

    /// Why the file could not be read at all; empty if it was.
    QString inputError() const { return readError; }

private:
    void fixAllDefaultValues();
    void handleSettings(const QString &table);
    void handleNodes(const QString &table);
    void handleObjects(const QString &table);
    void handleSubObjects(const QString &table);
    void printTable(const QString &table);
    void writeCell(const QString &key, const QString &column, const QVariant &cell);

    void importNodes(const QVector<IniText::Entry> &entries);
    void importObjects(const QString &group, const QVector<IniText::Entry> &entries);
    void importSubObjects(const QString &group, const QVector<IniText::Entry> &entries);
    void importSettings(const QString &group, const QVector<IniText::Entry> &entries);

    ObjectDataBase *store = nullptr;       ///< to write into
    ObjectDataBase *source = nullptr;      ///< to read from
    StorePrivate *d = nullptr;             ///< of the source
    std::unique_ptr<ObjectDataBase> guest; ///< over the connection of setSqlDatabaseFile()
    QString outputFile;
    QString inputFile;
    QString readError;
    QString error;
    bool isComplete = true;            ///< all that was there has been written, or taken over
    IniText::Writer *writer = nullptr; ///< while convertSqlToText runs
};
