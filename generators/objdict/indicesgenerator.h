// gen_indices.h: names for the numbers of a project, for the application's code.
#pragma once

#include "generators/objdict/objectnames.h"
#include "generators/textfilegenerator.h"

#include <QList>

#include <memory>
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

    /// Names of objects that are made already, of all lines or some; the job takes them out. Set
    /// before the start.
    void setNames(std::shared_ptr<ObjectNamesByLine> names) { knownNames = std::move(names); }

private:
    QString targetFile() const override { return inOutputDirectory("gen_indices.h"); }
    void write(TextWriter &out) override;
    void writeHead(TextWriter &out) const;
    ObjectNames namesOf(quint8 line) const;
    void writeFrames(IndexDefines &defines, quint8 line) const; ///< of J1939 and raw CAN

    QList<quint8> lines;
    std::shared_ptr<ObjectNamesByLine> knownNames;
};

/// The defines of a line.
class IndexDefines
{
public:
    IndexDefines(const ObjectDataBase &database, TextWriter &writer, quint8 number,
                 ObjectNames objectNames)
        : store(database), out(writer), line(number), names(std::move(objectNames))
    {
    }

    void writeObjects();

    /// Name of an identifier; one by which its \a number among those of its direction is found; and
    /// names of its data elements.
    void genCANIDDefine(quint32 id, quint8 direction, quint32 number);

    /// Names of a parameter group and its SPNs. A repeated name of an SPN takes the number of its
    /// group.
    void genPGNDefine(quint32 pgn, quint8 direction);

private:
    using PGN = ObjectDataBase::PGN;
    using SPN = ObjectDataBase::SPN;
    using CANID = ObjectDataBase::CANID;
    using DataElement = ObjectDataBase::DataElement;

    void generateDataElementDefine(const DataElement &element);
    void generateSpnDefine(quint32 pgn, const SPN &spn);
    /// The name, with that separator and a count if it is taken, with the value in decimal. Nothing
    /// is written if there is just this define already.
    void claim(const QString &name, quint32 value, const char *separator);
    /// Up to the value.
    void startDefine(const char *directive, const QString &name);

    const ObjectDataBase &store;
    TextWriter &out;
    quint8 line;
    ObjectNames names; ///< and those of frames
};
