// From the messages of a DBC file to the frames of a line.
#pragma once

#include "formats/dbcfile.h"
#include "import/dbclayout.h"
#include "import/dbcspns.h"
#include "import/dbctally.h"
#include "import/dbctext.h"
#include "import/dbcvariables.h"
#include "store/projectrecords.h"

#include <QHash>
#include <QString>
#include <QVector>

#include <vector>

/// Chooses the messages that a line can have when it is made, and makes their records when asked.
/// Knows no store: what names and numbers a project has already is told by avoid(). Lives for one
/// import.
class DbcFrames
{
public:
    enum class Protocol { J1939, RawCan };

    struct Choice {
        const DbcMessage *message;
        quint32 number; ///< of the parameter group, or the CAN identifier
        quint8 direction;
    };

    /// What \a ownNode sends is transmitted, all else is received; an empty one sends nothing. All
    /// three must outlive the object.
    DbcFrames(const DbcFile &content, Protocol protocol, const QString &ownNode, DbcTally *counts);

    const QVector<Choice> &choices() const { return chosen; }

    /// The variable and the number of a signal that stays in the project.
    void avoid(const SignalData &signal);
    /// A variable of the project.
    void avoid(const QString &variable) { variables.avoid(variable); }

    /// What descriptions need not say; nothing at first.
    void setDevice(const DbcText::Device &known) { device = known; }

    /// In the order of the file; of the choices those that there is room for.
    std::vector<GroupRecord> groups();
    std::vector<CanFrameRecord> canFrames();

    /// The name by which the file knows a node, by that or by its long name; empty if it has none
    /// such.
    static QString findNode(const DbcFile &file, const QString &name);

    /// Elements of all frames that one import takes, some ten times those of large networks.
    static constexpr int kMostElements = 500000;

private:
    void chooseGroup(const DbcMessage &message);
    void chooseIdentifier(const DbcMessage &message);
    bool isChoice(const DbcMessage &message);
    quint8 directionOf(const DbcMessage &message) const;

    bool hasRoom(const DbcMessage &message, int elements);
    template <class Record>
    void fillFrame(Record *record, const DbcMessage &message, quint8 direction,
                   const QVector<DbcElement> &layout);
    void fillSignal(SignalData *signal, const DbcMessage &message, const DbcElement &element);
    void setVariable(SignalData *signal, const DbcMessage &message, const DbcElement &element);
    void setNumber(SpnData *spn, const DbcMessage &message, const DbcElement &element);
    void setNumber(DataElementData *data, const DbcMessage &message, const DbcElement &element);
    void tellOfSignal(const DbcMessage &message, const DbcElement &element);

    const DbcFile &file;
    bool isJ1939;
    QString own; ///< by the name in the file
    DbcText::Device device;
    DbcTally &tally;
    QVector<Choice> chosen;
    DbcVariables variables;
    DbcSpns spns;
    int elementCount = 0;
    // Of the frame that is being made.
    QHash<const DbcSignal *, QString> variableNames;
    QVector<const DbcSignal *> leftOut;
};
