// The text form of a project: an INI file beside the database form, made for version control.
#pragma once

#include "formats/initext.h"
#include "store/objectdatabase.h"
#include "store/textprojectproblems.h"

#include <QObject>
#include <QSet>

#include <functional>
#include <memory>

class QSqlDatabase;
class StorePrivate;
struct TextFault;
struct TextRow;

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

    /// Where in the file stands what the store could not take over, such as "line 3"; empty if that
    /// is not known.
    QString unreadPart() const { return lostPart; }

private:
    void fixAllDefaultValues();
    void handleSettings(const QString &table);
    void handleNodes(const QString &table);
    void handleObjects(const QString &table);
    void handleSubObjects(const QString &table);
    void printTable(const QString &table);
    void writeCell(const QString &key, const QString &column, const QVariant &cell);

    bool importGroup(const QString &group, const QVector<IniText::Entry> &entries);
    void importNodes(const QVector<IniText::Entry> &entries);
    void importObjects(const QString &group, const QVector<IniText::Entry> &entries);
    void importSubObjects(const QString &group, const QVector<IniText::Entry> &entries);
    void importSettings(const QString &group, const QVector<IniText::Entry> &entries);
    void tellAll(TextProjectProblems &found, const QByteArray &text, bool isProject);
    void tell(const char *rule, const IniText::Entry &entry, TextProjectProblems::Effect effect,
              const std::function<QString()> &words);
    QStringList knownGroups() const;
    /// Of keys that stand more than once with different values; they begin with so many \a numbers.
    void tellDoubled(const QVector<IniText::Entry> &entries, int numbers);
    void tellGroup(const QString &group, const char *head, bool hasRows);
    /// Of cells that do not fit, or lose something; the row's table has \a columns.
    void tellCells(const TextRow &row, const QVector<TextFault> &faults,
                   const QStringList &columns);
    /// Of a row whose key begins with more or fewer numbers than \a form says.
    void tellShape(const TextRow &row, const char *form);
    /// Of a row that the store did not take.
    void tellLostRow(const TextRow &row, const QString &group);
    /// Of a row whose numbers do not begin with 0x, and are read in decimal.
    void tellDecimal(const TextRow &row);
    /// Of the first subindex of an object that the line does not have, or of the first one of a
    /// line that has no object at all.
    void tellUnowned(const TextRow &row, int line);

    ObjectDataBase *store = nullptr;       ///< to write into
    ObjectDataBase *source = nullptr;      ///< to read from
    StorePrivate *d = nullptr;             ///< of the source
    std::unique_ptr<ObjectDataBase> guest; ///< over the connection of setSqlDatabaseFile()
    QString outputFile;
    QString inputFile;
    QString readError;
    QString lostPart;
    QString error;
    bool isComplete = true;                  ///< all that was there has been written, or taken over
    TextProjectProblems *problems = nullptr; ///< while convertTextToSql runs
    QSet<uint> deviceLines;                  ///< of the file, and line 0, which each project has
    QSet<quint32> objects;                   ///< of the file: the line above 16 bits of the index
    QSet<int> linesWithObjects;              ///< of the file
    int lineWithoutObjects = -1;             ///< the last one that was told of
    bool isDoubled = false;                  ///< a key of the group may stand more than once
    bool isMerge = false;                    ///< both sides of an unfinished one are in the file
    IniText::Writer *writer = nullptr;       ///< while convertSqlToText runs
};
