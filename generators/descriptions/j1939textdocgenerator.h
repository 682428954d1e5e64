// The parameter groups and signals of a J1939 line as plain text, one group a paragraph of
// tab-separated labels and values.
#pragma once

#include "generators/descriptions/linedocgenerator.h"

/// Writes "<project>_doc.txt", or "<project>_<line>.txt" where a project has several lines.
class J1939TextDocGenerator : public LineDocGenerator
{
    Q_OBJECT

public:
    J1939TextDocGenerator();

private:
    /// Runs to its end even if the job is aborted.
    void write(TextWriter &out) override;
};

/// The sections of the file. A group that the store does not hold writes nothing.
namespace J1939TextDoc
{

void writeTitle(TextWriter &out, const QString &projectName, const QString &toolVersion);
/// A group with its signals.
void documentPGN(TextWriter &out, const ObjectDataBase &store, quint8 line, quint8 direction,
                 quint32 pgn);
void documentSPN(TextWriter &out, const ObjectDataBase::SPN &spn);

} // namespace J1939TextDoc
