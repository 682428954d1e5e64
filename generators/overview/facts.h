// All that the page of a project shows, as plain values.
#pragma once

#include "generators/overview/footprint.h"
#include "store/comparison/projectchange.h"
#include "support/framebits.h"

#include <QString>
#include <QVector>

#include <array>
#include <optional>

namespace Overview
{

/// Texts that stand in many rows, most of them once. The empty one is 0.
class Texts
{
public:
    int numberOf(const QString &text);
    /// The same for a text that hardly stands elsewhere.
    int add(const QString &text);
    const QVector<QString> &all() const { return list; }

private:
    QVector<QString> list{QString()};
    /// Numbers of texts that came last, by some of their characters: most rows hold the same few.
    /// Few of the others come again, so that to look for them costs more than to list them twice.
    std::array<int, 4096> recent{};
};

// --- Objects ---

/// The texts of a row of the object dictionary, in the order of the page's data.
enum class ObjectText {
    Name,
    Code,
    Type,
    Access,
    Default,
    Low,
    High,
    Pdo,
    Storage,
    Variable,
    Description,
    Identifier, ///< its name in gen_indices.h
};
constexpr int kObjectTexts = int(ObjectText::Identifier) + 1;

/// An object of one value, a subindex, or an object that stands above its subindices.
struct ObjectRow {
    quint16 index = 0;
    std::optional<quint8> sub; ///< none: its subindices follow, if it has any
    std::array<int, kObjectTexts> texts{};

    int &operator[](ObjectText text) { return texts[size_t(text)]; }
};

} // namespace Overview

Q_DECLARE_TYPEINFO(Overview::ObjectRow, Q_MOVABLE_TYPE); // there may be very many

namespace Overview
{

// --- Frames ---

enum class Way { Transmit, Receive, Both };

/// A run of bits; bit 0 is the lowest one of the first byte.
struct Cell {
    int start = 0;
    int bits = 0;
    QString name;
    QString link; ///< empty: none, as in all records here
    QString type;
    QString note;
    bool isGap = false;
};

struct Frame {
    QString key; ///< its name in links
    QString kind;
    QString name;
    QString description;
    std::optional<quint32> id;
    bool isExtended = false;
    std::optional<quint32> base; ///< of what the node-ID is added to
    QString idText;              ///< a formula, where there is one
    Way direction = Way::Receive;
    std::optional<int> transmission; ///< type of a PDO (CiA 301, 7.5.2.36)
    QString transmissionText;
    std::optional<double> cycleMs;
    std::optional<double> eventMs;
    std::optional<double> inhibitMs;
    std::optional<double> deadlineMs; ///< in which it is awaited
    std::optional<int> priority;      ///< of groups, as the next two
    std::optional<quint32> pgn;
    std::optional<int> destination;
    int bytes = 0;
    bool isFd = false;
    bool isEnabled = true;
    QString link;
    QVector<Cell> cells;
    std::optional<FrameBits::Count> bits; ///< none: it is not known how it is sent
};

/// Who uses an identifier; two users of one are a collision.
struct Identifier {
    std::optional<quint32> id; ///< none: the node-ID is not known
    std::optional<quint32> base;
    bool isExtended = false;
    QString function;
    Way direction = Way::Receive;
    QString frame; ///< the key of a frame
    std::optional<int> node;
};

// --- The project ---

struct Line {
    quint8 number = 0;
    QString type;
    QString title;
    std::optional<int> nodeId;
    std::optional<int> address;
    QString name;                   ///< the NAME of a J1939 device, in hexadecimal
    std::optional<int> bitRate;     ///< kbit/s
    std::optional<int> dataBitRate; ///< likewise
    bool isCanFd = false;
    int objects = 0;
    int subindices = 0;
    int signalCount = 0;
    QVector<ObjectRow> rows;
    QVector<Frame> frames;
    QVector<Identifier> identifiers;
};

struct End {
    std::optional<int> line;
    QString link;
    QString name;
};

/// A value goes from one place to another.
struct Connection {
    End from;
    End to;
    QString kind;
    QString name;
};

struct Finding {
    QString kind;
    QString rule;
    QString text;
    QString link;
    QString place; ///< "<file>:<line>"
};

struct File {
    QString name;
    qint64 bytes = 0;
};

struct Project {
    QString name;
    QString file;
    QString vendor;
    QString product;
    QString version;
    QString tool;
};

struct Facts {
    Project project;
    QVector<Finding> findings;
    QVector<File> files;
    QVector<Line> lines;
    QVector<Connection> connections;
    std::optional<Footprint> footprint;          ///< of the sources, if any were written
    std::optional<ProjectComparison> comparison; ///< with an older project, if there is one
    Texts texts;
};

} // namespace Overview
