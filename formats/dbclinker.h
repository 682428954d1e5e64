// Gives what the statements of a DBC file say to the things that they say it of.
#pragma once

#include "formats/dbcfile.h"
#include "formats/dbcremarks.h"
#include "support/fileproblems.h"

#include <QHash>
#include <QPair>
#include <QSet>
#include <QString>

/// Works once, when all of a file is read, and notes what does not fit together: names that nobody
/// has, things that stand twice, signals beyond their message.
class DbcLinker
{
public:
    /// Both must outlive the linker.
    DbcLinker(DbcFile *result, FileProblems *collector);

    void link(const DbcRemarks &remarks);

private:
    void indexMessages();
    void indexSignals(int messageNumber);
    void indexNames();

    void setDefaults(const QVector<DbcRemarks::Default> &defaults);
    void setAttribute(const DbcRemarks::Attribute &attribute);
    void setComment(const DbcRemarks::Comment &comment);
    void setValues(const DbcRemarks::Values &values);
    void setValueType(const DbcRemarks::ValueType &entry);
    void setTransmitters(const DbcRemarks::Transmitters &transmitters);
    void setSwitch(const DbcRemarks::Switch &entry);
    void setLongNames();
    void setLongName(DbcOwner owner, DbcItem *item, const char *attribute);

    void check(DbcMessage *message);
    void checkSize(const DbcMessage &message, const DbcSignal &signal);
    void checkSwitches(DbcMessage *message);
    void checkNode(const QString &name, const DbcPlace &place);

    // Null, and told, if there is none.
    DbcMessage *message(const DbcSubject &subject);
    DbcSignal *signal(const DbcSubject &subject);
    DbcItem *item(const DbcSubject &subject);

    int definitionNumber(const DbcRemarks::Attribute &attribute);
    QString attributeText(const DbcAttributeDefinition &definition, const QString &text,
                          const DbcPlace &place);
    void note(const char *rule, const DbcPlace &place, const std::function<QString()> &words);

    DbcFile &file;
    FileProblems &problems;
    QHash<quint32, int> messageNumbers; ///< of the last one by its reference
    QHash<QPair<int, QString>, int> signalNumbers;
    QHash<QString, int> nodeNumbers;
    QHash<QString, int> variableNumbers;
    QSet<QString> undeclared; ///< nodes that were told already
};
