// The text format of generated files.
#include "generators/textwriter.h"

TextWriter::TextWriter(QIODevice *device) : stream(device)
{
    stream.setCodec("UTF-8");
}

bool TextWriter::finish()
{
    stream.flush();
    return stream.status() == QTextStream::Ok;
}
