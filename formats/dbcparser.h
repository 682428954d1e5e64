// From the text of a DBC file to records, statement by statement.
#pragma once

#include "formats/dbcfile.h"
#include "formats/dbclexer.h"
#include "formats/dbcremarks.h"
#include "support/fileproblems.h"

#include <QSet>

/// Reads each statement as far as it is understood, notes what is not, and goes on at the next
/// keyword that starts a line. Lives for one file.
class DbcParser
{
public:
    /// \a content has "\n" as its line ends. All three must outlive the parser.
    DbcParser(const QString &content, DbcFile *result, FileProblems *collector);

    /// Fills in the file, but what its statements say of things that stand elsewhere.
    void read();

    /// That, for DbcLinker.
    const DbcRemarks &remarks() const { return found; }

    /// Was anything understood at all?
    bool hasStatements() const { return understood > 0; }

private:
    /// Far more than networks have: a file of nothing else must not fill the memory.
    static constexpr int kMostNodes = 65536;

    using Reader = bool (DbcParser::*)();
    struct Statement {
        const char *keyword;
        Reader read;
    };
    static const Statement kStatements[];

    void readStatement();
    void passOver(const QStringRef &keyword);

    // Each takes what follows its keyword. False if something else is there than there should be.
    bool readVersion();
    bool readNewSymbols();
    bool readBitTiming();
    bool readNodes();
    bool readMessage();
    bool readSignal();
    bool readTransmitters();
    bool readVariable();
    bool readValueTable();
    bool readValues();
    bool readValueType();
    bool readSwitch();
    bool readComment();
    bool readDefinition();
    bool readDefault();
    bool readAttribute();
    bool readUnused();
    bool readStray();

    bool passOverSignal();
    bool readMultiplexing(DbcMultiplexing *multiplexing);
    bool readLayout(DbcSignal *signal);
    bool readScaling(DbcSignal *signal);
    void readReceivers(DbcSignal *signal);
    bool readSubject(DbcSubject *subject);
    bool readSignalSubject(DbcSubject *subject);
    bool readValueList(QVector<DbcValue> *values);
    bool readRanges(QVector<DbcRange> *ranges);
    bool readType(DbcAttributeDefinition *definition);
    bool readAttributeText(QString *text);

    bool expect(char symbol);
    bool expectName(QString *name);
    bool expectText(QString *text);
    bool expectNumber(quint32 *number);
    bool expectNumber(quint64 *number);
    bool expectReal(double *number);
    bool expectEnd();
    void endLine();
    bool miss(const char *what);

    DbcSubject subjectHere(DbcOwner owner) const { return {owner, 0, QString(), begin}; }
    bool isOnlyNames();
    QString shared(const QStringRef &name);
    void setIdentifier(DbcMessage *message);
    void define(const DbcAttributeDefinition &definition);
    void note(const char *rule, const DbcPlace &place, const std::function<QString()> &words);

    DbcLexer lexer;
    DbcFile &file;
    FileProblems &problems;
    DbcRemarks found;
    QSet<QString> names;     ///< of nodes, so that each is in memory once
    QSet<QString> nodeNames; ///< those that are declared
    DbcPlace begin;          ///< of the statement that is read
    QString missing;         ///< what it lacks
    int understood = 0;
    bool isInMessage = false; ///< signals belong to the last message of the file
};
