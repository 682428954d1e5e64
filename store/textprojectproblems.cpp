// What is wrong in the text form of a project.
#include "store/textprojectproblems.h"

#include "support/printable.h"

#include <QStringList>

#include <algorithm>

namespace
{

using IniText::LineFault;

constexpr int kMostLinesToMend = 10;

struct FaultRow {
    LineFault fault;
    const char *rule;
    const char *text; ///< after the line in quotation marks
};

// clang-format off
constexpr FaultRow kFaults[] = {
    {LineFault::TooLong, "long-line", ""}, // has a text of its own
    {LineFault::ConflictMarker, "conflict-marker",
     " was left by a merge, and both of its sides are read: take one of them, and remove the marker"},
    {LineFault::NoKey, "no-key",
     " is neither [group] nor key=value, and is passed over: mend it, or begin it with ; to make it "
     "a comment"},
    {LineFault::EmptyKey, "no-key",
     " has no key before its =, and nothing reads it: give it one, or remove the line"},
    {LineFault::BeforeSections, "no-group",
     " stands before the first group, and is passed over: move it below the line [...] of its group"},
    {LineFault::OpenSection, "open-group",
     " begins a group and has no ], and is read as if it had one at its end"},
    {LineFault::AfterSection, "no-key",
     " has more than a comment after its ], which is passed over: give it a line of its own"},
    {LineFault::CutValue, "cut-value",
     " ends at its ;, after which all is a comment: put the value in quotation marks if the rest "
     "belongs to it, or else a blank before the ;"},
    {LineFault::NoEscape, "no-escape",
     " has a \\ before a character with which it means nothing, and both are passed over: write "
     "\\\\ for each \\ of the value"},
    {LineFault::SwallowedLines, "open-quote",
     " has a quotation mark without partner, and the lines after it, up to the next one, are read "
     "as its value: close it, or write \\\" for one that belongs to the value"},
};
// clang-format on

QString textOf(const FaultRow &row, IniText::Span line)
{
    if (row.fault == LineFault::TooLong)
        return QStringLiteral("a line of more than 1 MiB, or an open quotation mark in it, is "
                              "passed over");
    const char *most = line.begin + std::min(line.size(), 400); // quotedWord() cuts again
    const char *end = std::find_if(line.begin, most, [](char c) { return c == '\n' || c == '\r'; });
    return quotedWord(QString::fromUtf8(line.begin, int(end - line.begin))) +
           QLatin1String(row.text);
}

} // namespace

TextProjectProblems::TextProjectProblems(const QString &file, const QByteArray &text) : lines(text)
{
    told.begin(file);
}

void TextProjectProblems::add(const char *rule, const char *place, Effect effect,
                              const std::function<QString()> &words)
{
    if (effect == Effect::Lost)
        addLost(place);
    told.add(rule, lines.at(place), words);
}

void TextProjectProblems::addLost(const char *place)
{
    if (lost.size() < IniText::Outline::kMostFaults)
        lost.append(place);
}

void TextProjectProblems::addFaults(const IniText::Outline &outline)
{
    for (const IniText::Outline::FaultyLine &faulty : outline.faults) {
        const auto row =
            std::find_if(std::begin(kFaults), std::end(kFaults),
                         [&faulty](const FaultRow &entry) { return entry.fault == faulty.fault; });
        // A save takes the "=======" between the sides for a key, but no merge ends with it.
        const bool isToMend = faulty.isLost || faulty.fault == LineFault::ConflictMarker;
        add(row->rule, faulty.line.begin, isToMend ? Effect::Lost : Effect::Saved,
            [&] { return textOf(*row, faulty.line); });
    }
    for (const FaultRow &row : kFaults) {
        const int untold = outline.faultCounts.value(row.fault) - IniText::Outline::kMostFaults;
        if (untold > 0)
            told.addUntold(row.rule, untold);
    }
}

void TextProjectProblems::tell()
{
    told.tell();
}

QString TextProjectProblems::linesToMend() const
{
    QVector<int> numbers;
    for (const char *place : lost)
        numbers.append(lines.at(place));
    std::sort(numbers.begin(), numbers.end());
    numbers.erase(std::unique(numbers.begin(), numbers.end()), numbers.end());
    if (numbers.isEmpty())
        return QString();
    QStringList shown;
    for (int i = 0; i < numbers.size() && i < kMostLinesToMend; ++i)
        shown << QString::number(numbers.at(i));
    if (numbers.size() == 1)
        return QStringLiteral("line ") + shown.first();
    const QString last =
        numbers.size() > kMostLinesToMend ? QStringLiteral("more of them") : shown.takeLast();
    return QStringLiteral("lines %1 and %2").arg(shown.join(QStringLiteral(", ")), last);
}
