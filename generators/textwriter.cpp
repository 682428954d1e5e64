// The text format of generated files.
#include "generators/textwriter.h"

TextWriter::TextWriter(QIODevice *device) : stream(device)
{
    stream.setCodec("UTF-8");
}

void TextWriter::define(const char *start, quint32 value)
{
    raw(start);
    stream << value << "u\n";
}

void TextWriter::defineList(const char *start, const QVector<quint32> &perLine)
{
    raw(start);
    for (int i = 0; i < perLine.size(); ++i)
        stream << (i ? ", " : "") << perLine.at(i) << 'u';
    stream << '\n';
}

bool TextWriter::finish()
{
    stream.flush();
    return stream.status() == QTextStream::Ok;
}
