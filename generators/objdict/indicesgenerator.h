// gen_indices.h: names for the numbers of a project, for the application's code.
#pragma once

#include "generators/textfilegenerator.h"

#include <QHash>
#include <QList>

#include <optional>

class IndexDefines;

/// Writes one header for the lines of all protocols; the first file of a run.
class IndicesGenerator : public TextFileGenerator
{
    Q_OBJECT

public:
    IndicesGenerator();

    /// The lines of the file, in file order. Set before the start.
    void setLines(const QList<quint8> &projectLines) { lines = projectLines; }

private:
    QString targetFile() const override { return inOutputDirectory("gen_indices.h"); }
    void write(TextWriter &out) override;
    void writeHead(TextWriter &out) const;
    void writeObjects(IndexDefines &defines, quint8 line) const;
    void writeFrames(IndexDefines &defines, quint8 line) const; ///< of J1939 and raw CAN

    QList<quint8> lines;
};

/// The names that have a define in a file. A look-up costs the same however many there are.
class DefineNames
{
public:
    DefineNames();

    /// \a linePrefix stands before each name of the line in the file. Lines with the same prefix
    /// follow each other; names of lines with different prefixes do not meet.
    void startLine(const QString &linePrefix);

    /// Was \a name asked for before on this line, or does it stand for another value?
    bool isTaken(const QString &name, quint32 value) const;

    /// The name to define as \a value: \a name, or if that is taken, with \a separator and the
    /// first count after it that makes it new. None if there is just this define already.
    std::optional<QString> claimCounted(const QString &name, quint32 value, const char *separator);

    /// \a name, or none if it has a define, whatever its value.
    std::optional<QString> claimShared(const QString &name, quint32 value);

    /// Is there a define of \a name as this value?
    bool isDefined(const QString &name, quint32 value) const;

private:
    struct Name {
        bool isWritten = false; ///< there is a define of it
        quint32 value = 0;      ///< of the define
        int usedIn = 0;         ///< the run of startLine() that last asked for it
        quint32 repeats = 0;    ///< in that run
    };

    bool isTaken(const Name &name, quint32 value) const
    {
        return name.usedIn == run || (name.isWritten && name.value != value);
    }

    QString prefix;
    int run = 1;
    QHash<QString, Name> names; ///< of the lines with that prefix, without it
};

/// The names that the file gives to objects, for those who tell of them. Asked in the order of the
/// file: each line once, its objects and their subindices ascending.
class ObjectNames
{
public:
    explicit ObjectNames(bool isMultiLine) : multiLine(isMultiLine) {}

    void startLine(quint8 line);
    QString ofObject(quint16 index, const IndexData &data);
    /// Of subindices from 1 up; empty where the name stands for another number.
    QString ofSubIndex(quint16 index, quint8 sub, const SubIndexData &data);

private:
    bool multiLine;
    QString prefix;
    DefineNames names;
};

/// The defines of a file, line by line.
class IndexDefines
{
public:
    IndexDefines(const ObjectDataBase &database, TextWriter &writer, bool isMultiLine)
        : store(database), out(writer), multiLine(isMultiLine)
    {
    }

    void startLine(quint8 number);

    /// Names of an object of the line and, of arrays and records, of their subindices from 1 up.
    void generateIndexDefine(quint16 index);
    /// Does the object have names of its subindices?
    static bool namesSubIndices(const IndexData &data);

    /// Name of an identifier; one by which its \a number among those of its direction is found; and
    /// names of its data elements.
    void genCANIDDefine(quint32 id, quint8 direction, quint32 number);

    /// Names of a parameter group and its SPNs. A repeated name of an SPN takes the number of its
    /// group.
    void genPGNDefine(quint32 pgn, quint8 direction);

    void writeEnd();

private:
    using PGN = ObjectDataBase::PGN;
    using SPN = ObjectDataBase::SPN;
    using CANID = ObjectDataBase::CANID;
    using DataElement = ObjectDataBase::DataElement;

    void generateSubDefine(quint16 index, quint8 sub, const SubIndexData &data);
    void generateDataElementDefine(const DataElement &element);
    void generateSpnDefine(quint32 pgn, const SPN &spn);
    /// A define with the value in hexadecimal or decimal; nothing is written without a name.
    void writeHexDefine(const char *directive, const std::optional<QString> &name, quint32 value);
    void writeDefine(const std::optional<QString> &name, quint32 value);
    /// Up to the value. False if there is no name.
    bool startDefine(const char *directive, const std::optional<QString> &name);

    const ObjectDataBase &store;
    TextWriter &out;
    bool multiLine;
    quint8 line = 0;
    QString prefix; ///< "L<n>_" in the multi-line form, else empty
    DefineNames names;
};
