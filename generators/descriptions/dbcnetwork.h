// A database of messages, made of the frames of a line.
#pragma once

#include "formats/kvadblib.h"
#include "generators/descriptions/dbcform.h"

#include <QHash>
#include <QString>
#include <QVector>

namespace Dbc
{

using Frames::Frame;
using Frames::FrameFormat;
using Frames::Signal;

/// Logs a call that failed; the file is then written without what the call would have added.
bool succeeded(KvaDbStatus status, const char *call);

/// A number of the device that is an attribute of its node.
struct NodeNumber {
    const char *attribute;
    int initial; ///< of nodes of which it is not told
    int highest;
    qint64 value; ///< beyond the highest or below 0: not told
};

/// What a file is about, besides its frames.
struct Bus {
    QString device;
    QString comment;
    bool isJ1939 = false;
    bool isCanFd = false;
    bool withImplementation = false; ///< the user wants to see how values are stored
    QVector<NodeNumber> numbers;     ///< of J1939
};

/// Fills a database that is empty. Frames come in the order of the file.
class Network
{
public:
    Network(KvaDbHnd database, const DbcForm &form, const Bus &bus);

    /// In a form that has each identifier once, the first frame stands for all, but that one that
    /// the device sends comes before those that it receives.
    void add(const QVector<Frame> &frames);

    /// How many texts have letters that the file has not.
    int changedTexts() const { return lossyTexts; }
    /// How many frames are left out whose identifier another one has, with other signals.
    int clashingFrames() const { return clashes; }

private:
    using Definition = KvaDbAttributeDefHnd;

    Definition define(const char *name, KvaDbAttributeOwner owner, KvaDbAttributeType type);
    Definition defineNumber(const char *name, KvaDbAttributeOwner owner, int defaultValue,
                            int maximum);
    template <size_t N>
    Definition defineWords(const char *name, KvaDbAttributeOwner owner,
                           const char *const (&words)[N], int defaultValue);
    void defineText(const char *name, const QString &value);
    void defineAttributes(const Bus &bus);
    void defineMore(const Bus &bus);
    void addNode(const Bus &bus);
    void addFrame(const Frame &frame);
    void addSignal(KvaDbMessageHnd message, const Frame &frame, const Signal &signal);
    void addValues(KvaDbSignalHnd handle, const Signal &signal);
    QVector<Frame> onceEach(const QVector<Frame> &frames);
    QString text(const QString &text);

    KvaDbHnd database;
    const DbcForm &form;
    KvaDbNodeHnd device = nullptr; ///< null: not told

    // Null: not in this file.
    Definition cycleTime = nullptr;
    Definition sendType = nullptr;
    Definition sigType = nullptr;
    Definition frameFormat = nullptr;
    Definition spn = nullptr;
    Definition implementation = nullptr;
    Definition variable = nullptr;
    Definition bitSize = nullptr;
    Definition startValue = nullptr;
    Definition variableLength = nullptr;

    int lossyTexts = 0;
    int clashes = 0;
};

} // namespace Dbc
