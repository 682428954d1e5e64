// The base of generators that write one text file and nothing else.
#pragma once

#include "generators/filegenerator.h"

/// A subclass says its target file and writes the text of it.
class TextFileGenerator : public FileGenerator
{
    Q_OBJECT

public:
    using FileGenerator::FileGenerator;

protected:
    /// All that the file holds, on the worker thread. What fails the job is reported by fail().
    virtual void write(TextWriter &out) = 0;

private:
    void writeFiles() final
    {
        writeText(targetFile(), [this](TextWriter &out) { write(out); });
    }
};
