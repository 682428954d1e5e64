// Leaves files alone that would be rewritten with only another date.
#include "generators/unchangedfiles.h"

#include "generators/lineends.h"
#include "support/filereasons.h"
#include "support/helper.h"

#include <QFile>
#include <QRegularExpression>
#include <QVector>

#include <cerrno>
#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>

namespace
{

// clang-format off
/// The lines that say when a file was generated; %1 is the date with its time, and the brackets
/// are around what may differ.
constexpr const char *kDateLines[] = {
    "^ \\* (%1)$",                                            // C
    "^  <title>.* - (%1)</title>$",                           // HTML
    "^   <td>Generation time: (%1)</td>$",
    "^    <td class=\"time\">(%1)</td>$",
    "^PGN/SPN Documenation for .* (%1)$",                     // text
    "^(?:Creation|Modification)Date=(\\d\\d-\\d\\d-(?:\\d\\d)?\\d\\d)$", // EDS
    "^(?:Creation|Modification)Time=(\\d\\d:\\d\\d[AP]M)$",
    "^<!--XDD file for .* \\((%1) GMT\\)$",                   // XDD
    "^ *<ProfileBody .* fileCreationDate=\"([-\\d]+(?:\" file\\w+(?:Date|Time)=\"[-:\\d]+)*)\"",
};
constexpr const char *kDate = "[A-Z][a-z]{2} [A-Z][a-z]{2} \\d{1,2} \\d\\d:\\d\\d:\\d\\d \\d{4}";
// clang-format on

QVector<QRegularExpression> dateLines()
{
    QVector<QRegularExpression> patterns;
    for (const char *line : kDateLines)
        patterns << QRegularExpression(
            QString::fromLatin1(line).replace(QLatin1String("%1"), QLatin1String(kDate)));
    return patterns;
}

/// \a line without its date; unchanged if it is not a line that has one.
QString withoutDate(const QByteArray &line)
{
    static const QVector<QRegularExpression> patterns = dateLines();
    QString text = QString::fromUtf8(line);
    for (const QRegularExpression &pattern : patterns) {
        const QRegularExpressionMatch match = pattern.match(text);
        if (match.hasMatch())
            return text.remove(match.capturedStart(1), match.capturedLength(1));
    }
    return text;
}

/// The bytes from \a start up to the next line feed or carriage return.
QByteArray lineAt(const QByteArray &text, int start)
{
    int end = start;
    while (end < text.size() && text.at(end) != '\n' && text.at(end) != '\r')
        ++end;
    return QByteArray::fromRawData(text.constData() + start, end - start);
}

bool differInDatesOnly(const QByteArray &one, const QByteArray &other)
{
    int inOne = 0;
    int inOther = 0;
    while (inOne < one.size() && inOther < other.size()) {
        const QByteArray line = lineAt(one, inOne);
        const QByteArray otherLine = lineAt(other, inOther);
        if (line != otherLine && withoutDate(line) != withoutDate(otherLine))
            return false;
        inOne += line.size();
        inOther += otherLine.size();
        if (one.mid(inOne++, 1) != other.mid(inOther++, 1)) // the line's end
            return false;
    }
    return inOne >= one.size() && inOther >= other.size();
}

timespec modificationTime(const QString &path)
{
    struct stat status = {};
    (void)::stat(QFile::encodeName(path), &status); // the file was read just now
    return status.st_mtim;
}

bool writeTo(const QString &path, const QByteArray &content, QString &error)
{
    QFile file(path);
    const bool isDone = file.open(QIODevice::WriteOnly | QIODevice::Truncate) &&
                        file.write(content) == content.size() && file.flush();
    error = file.errorString();
    return isDone;
}

bool setModificationTime(const QString &path, const timespec &modified, QString &error)
{
    const timespec times[] = {{0, UTIME_OMIT}, modified};
    const bool isDone = ::utimensat(AT_FDCWD, QFile::encodeName(path), times, 0) == 0;
    error = FileReasons::ofSystem(errno);
    return isDone;
}

/// All that was written to \a file.
bool readBack(QFile &file, QByteArray &content)
{
    file.setTextModeEnabled(false);
    if (!file.seek(0))
        return false;
    content = file.readAll();
    return content.size() == file.size();
}

} // namespace

bool UnchangedFiles::open(QFile &file)
{
    const QString path = file.fileName();
    QByteArray content;
    if (!formerFiles.contains(path) && Helper::readWholeFile(path, content))
        formerFiles.insert(path, {content, modificationTime(path)});
    QFile target(path);
    if (QFile::exists(path) && !target.open(QIODevice::ReadWrite)) {
        error = target.errorString();
        return false;
    }
    targets.insert(&file, path);
    const int memory = ::memfd_create("tessarine", MFD_CLOEXEC);
    error = FileReasons::ofSystem(errno);
    return memory >= 0 &&
           file.open(memory, QIODevice::ReadWrite | QIODevice::Text, QFileDevice::AutoCloseHandle);
}

QString UnchangedFiles::targetOf(const QFile &file) const
{
    return targets.value(&file);
}

bool UnchangedFiles::commit(QFile &file)
{
    const QString path = targets.value(&file);
    QByteArray content;
    if (!readBack(file, content)) {
        error = file.errorString();
        return false;
    }
    const auto former = formerFiles.find(path);
    const bool isKept = former != formerFiles.end() &&
                        differInDatesOnly(former->content, LineEnds::adjusted(path, content));
    if (!isKept) {
        if (former != formerFiles.end())
            former->isOverwritten = true;
        return writeTo(path, content, error);
    }
    return !former->isOverwritten || (writeTo(path, former->content, error) &&
                                      setModificationTime(path, former->modified, error));
}

bool UnchangedFiles::keep(const QString &path, const QByteArray &content) const
{
    QByteArray present;
    return Helper::readWholeFile(path, present) &&
           differInDatesOnly(present, LineEnds::adjusted(path, content));
}
