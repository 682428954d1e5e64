// The object dictionary of a line as plain text, to look something up without opening the project.
#pragma once

#include "generators/descriptions/linedocgenerator.h"

/// Writes "<project>_doc.txt", or "<project>_<line>.txt" where a project has several lines.
class TextDocGenerator : public LineDocGenerator
{
    Q_OBJECT

public:
    TextDocGenerator();

private:
    void write(TextWriter &out) override;
};

/// The sections of the file. A record that the store does not hold writes nothing.
namespace TextDoc
{

void writeTitle(TextWriter &out, const QString &projectName);
void documentIndex(TextWriter &out, const ObjectDataBase &store, quint8 line, quint16 index);
void documentSubIndex(TextWriter &out, quint16 index, quint8 subIndex,
                      const ObjectDataBase::SUBINDEX_DATA_T &data);

} // namespace TextDoc
