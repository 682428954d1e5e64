// gen_srdo.c: parameters and mappings of the safety-relevant data objects (CiA 304).
#pragma once

#include "generators/objdict/objdictcontext.h"
#include "generators/textfilegenerator.h"

#include <QVector>

#include <array>

/// Writes one source for all lines of a project that have SRDOs.
class SrdoGenerator : public TextFileGenerator
{
    Q_OBJECT

public:
    SrdoGenerator();

private:
    QString targetFile() const override { return inOutputDirectory("gen_srdo.c"); }
    void write(TextWriter &out) override;
};

namespace Srdo
{

/// A COB-ID that may depend on the node-ID: base + nodeIdFactor * node-ID.
struct CobId {
    quint32 base = 0;
    quint8 nodeIdFactor = 0;
};

/// The sum of numbers and "$NODEID" that \a value is; what is neither counts as 0.
CobId parseCobId(const QString &value);

/// One entry of a mapping object. Entries with odd subindices are the plain data, each with its
/// inverse after it.
struct MapEntry {
    QString address; ///< C expression, "NULL" for what is no application variable
    quint32 mapping = 0;
    bool isInverted = false;
};

/// One SRDO as its communication object 0x1301 to 0x137F and the mapping object 0x80 above it
/// describe it.
struct Parameters {
    quint8 line = 0;
    quint8 number = 0;    ///< from 1
    quint8 direction = 0; ///< 0 invalid, 1 transmitted, 2 received
    quint16 refreshTimeMs = 0;
    quint8 srvtMs = 0; ///< safety-relevant object validation time
    std::array<CobId, 2> cobIds;
    QVector<MapEntry> mapping;
};

/// By line and number, as many as the definitions header counts.
QVector<Parameters> readSrdos(const ObjDict::Context &context);

// The sections, in file order. The table refers to the mappings.
void writePreamble(ObjDict::Context &context);
void writeMappings(ObjDict::Context &context, const QVector<Parameters> &srdos);
void writeTable(ObjDict::Context &context, const QVector<Parameters> &srdos);

} // namespace Srdo
