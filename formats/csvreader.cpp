// Lines and fields of a table.
#include "formats/csvreader.h"

namespace
{

/// More than any table has; a line of separators alone would take far more memory than the file.
constexpr int kMaxFields = 1000;

} // namespace

bool CsvReader::next()
{
    while (position < text.size()) {
        const int found = text.indexOf(QLatin1Char('\n'), position);
        const int end = found < 0 ? text.size() : found;
        const bool isBlank = text.midRef(position, end - position).trimmed().isEmpty();
        first = text.at(position);
        currentLine = nextLine;
        if (isBlank || first == QLatin1Char('#')) {
            position = end + 1;
            ++nextLine;
            continue;
        }
        if (!hasHeader)
            chooseSeparator(end);
        currentFields.clear();
        currentFields << readField();
        while (isSeparator(position)) {
            ++position;
            const QString field = readField();
            if (currentFields.size() < kMaxFields)
                currentFields << field;
        }
        ++position;
        ++nextLine;
        return true;
    }
    return false;
}

void CsvReader::chooseSeparator(int end)
{
    hasHeader = true;
    const QStringRef header = text.midRef(position, end - position);
    for (const QChar candidate : {QLatin1Char(','), QLatin1Char(';')}) {
        if (separator.isNull() && header.contains(candidate))
            separator = candidate;
    }
}

QString CsvReader::readField()
{
    const bool isQuoted = position < text.size() && text.at(position) == QLatin1Char('"');
    const int closing = isQuoted ? closingQuote(position) : -1;
    if (closing < 0)
        return readPlainField();
    QString field = text.mid(position + 1, closing - position - 1);
    nextLine += field.count(QLatin1Char('\n'));
    position = closing + 1;
    if (position < text.size() && text.at(position) == QLatin1Char('\r'))
        ++position;
    return field.replace(QLatin1String("\"\""), QLatin1String("\""));
}

QString CsvReader::readPlainField()
{
    const int start = position;
    while (position < text.size() && !isSeparator(position) &&
           text.at(position) != QLatin1Char('\n'))
        ++position;
    QString field = text.mid(start, position - start);
    field.remove(QLatin1Char('\r')); // of a line that ends in CR LF
    return field.isEmpty() ? QString() : field;
}

int CsvReader::closingQuote(int opening) const
{
    // The search ends at the first run of quotes of odd length, and a field that begins with such a
    // run cannot stand before it: no stretch of text is searched twice in vain.
    int place = text.indexOf(QLatin1Char('"'), opening + 1);
    while (place >= 0 && place + 1 < text.size() && text.at(place + 1) == QLatin1Char('"'))
        place = text.indexOf(QLatin1Char('"'), place + 2);
    return place >= 0 && endsField(place + 1) ? place : -1;
}

bool CsvReader::endsField(int place) const
{
    const bool isCr = place < text.size() && text.at(place) == QLatin1Char('\r');
    return isSeparator(place) || isLineEnd(isCr ? place + 1 : place);
}

bool CsvReader::isLineEnd(int place) const
{
    return place >= text.size() || text.at(place) == QLatin1Char('\n');
}

bool CsvReader::isSeparator(int place) const
{
    return !separator.isNull() && place < text.size() && text.at(place) == separator;
}
