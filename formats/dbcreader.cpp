// From the bytes of a DBC file to its records.
#include "formats/dbcreader.h"

#include "formats/dbclinker.h"
#include "formats/dbcparser.h"
#include "support/filereasons.h"
#include "support/helper.h"
#include "support/runfiles.h"

#include <QFile>

namespace
{

/// With "\n" as line ends, and blanks in place of all other control characters.
QString plainText(const QByteArray &bytes)
{
    QString text = Helper::decodeText(bytes);
    QChar *const characters = text.data();
    int size = 0;
    for (int at = 0; at < text.size(); ++at) {
        const QChar character = characters[at];
        const bool isReturn = character == QLatin1Char('\r');
        if (isReturn && at + 1 < text.size() && characters[at + 1] == QLatin1Char('\n'))
            continue;
        const bool isLineEnd = isReturn || character == QLatin1Char('\n');
        const bool isControl = character.unicode() < 0x20;
        characters[size++] = isLineEnd   ? QLatin1Char('\n')
                             : isControl ? QLatin1Char(' ')
                                         : character;
    }
    text.truncate(size);
    return text;
}

} // namespace

bool DbcReader::read(const QString &fileName)
{
    content = DbcFile();
    problems.begin(fileName);
    reason = FileReasons::whyNotReadable(fileName);
    QFile file(fileName);
    if (reason.isEmpty() && !file.open(QIODevice::ReadOnly))
        reason = file.errorString();
    if (!reason.isEmpty())
        return false;
    RunFiles::noteRead(fileName);
    return parse(file.read(kMostBytes + 1), fileName);
}

bool DbcReader::parse(const QByteArray &bytes, const QString &origin)
{
    content = DbcFile();
    problems.begin(origin);
    reason.clear();
    if (bytes.size() > kMostBytes) {
        reason = QStringLiteral("it is larger than %1 MiB").arg(kMostBytes >> 20);
        return false;
    }
    const QString text = plainText(bytes);
    DbcParser parser(text, &content, &problems);
    parser.read();
    DbcLinker(&content, &problems).link(parser.remarks());
    if (!parser.hasStatements())
        reason = QStringLiteral("it holds no statement of a DBC file");
    return parser.hasStatements();
}

void DbcReader::note(const char *rule, const DbcPlace &place,
                     const std::function<QString()> &words) const
{
    problems.add(rule, place.line, place.column, words);
}

void DbcReader::tellProblems() const
{
    problems.tell();
}
