// What is wrong in the text form of a project, for the user.
#include "store/databasetextconverter.h"
#include "store/databasetextconverter_p.h"
#include "store/objectdatabase_p.h"
#include "store/textrowwriter.h"
#include "support/editdistance.h"
#include "support/printable.h"
#include "support/problems.h"

#include <QHash>

#include <algorithm>

using Effect = TextProjectProblems::Effect;

namespace
{

/// A key as the file has it.
QString keyIn(const IniText::Entry &entry)
{
    return QString::fromUtf8(entry.keyText().begin, std::min(entry.keyText().size(), 400));
}

/// A name of the file as people read it: the dialect takes each of its bytes for a character.
QString readable(const QString &name)
{
    const QString text = QString::fromUtf8(name.toLatin1());
    return text.contains(QChar::ReplacementCharacter) ? name : text;
}

/// A key whose first \a numbers are in decimal, however the file has them.
QString plainKey(const IniText::Entry &entry, int numbers)
{
    QStringList parts = entry.key().split(QLatin1Char('/'));
    for (int i = 0; i < numbers && i < parts.size(); ++i) {
        bool ok = false;
        const quint32 number = Numbers::toUIntByPrefix(parts.at(i), &ok);
        if (ok)
            parts[i] = QString::number(number);
    }
    return parts.join(QLatin1Char('/'));
}

bool isSameValue(const IniText::Entry &one, const IniText::Entry &other)
{
    return IniText::isSame(one.valueText().trimmed(), other.valueText().trimmed());
}

/// Blanks beside the commas of a value without quotation marks are no part of it.
bool losesBlanks(IniText::Span value)
{
    const QByteArray text = QByteArray::fromRawData(value.begin, value.size());
    return !text.contains('"') && (text.contains(", ") || text.contains(" ,"));
}

/// A number without 0x, which might have been meant as a hexadecimal one.
bool isDecimal(const QString &number)
{
    return number.size() > 1 && !number.startsWith(QLatin1String("0x"), Qt::CaseInsensitive);
}

QString inHex(const QString &number)
{
    return QLatin1String("0x") + Numbers::toHex(Numbers::toUIntByPrefix(number), 1);
}

/// A line of the device whose table of objects or subindices \a group is named like; -1 if it is
/// none.
int lineOfGroup(const QString &group)
{
    return std::max(Schema::lineOfTable(group, "Objects"),
                    Schema::lineOfTable(group, "SubObjects"));
}

bool isNumberUpTo(const QString &text, quint32 highest)
{
    bool ok = false;
    return Numbers::toUIntByPrefix(text, &ok) <= highest && ok;
}

/// What a file is whose bytes are no text that this form could be in; empty if they may be.
QString otherForm(const QByteArray &bytes, bool isProject)
{
    if (bytes.startsWith("SQLite format 3"))
        return QStringLiteral("is a database and no text project, and is read as an empty one: let "
                              "its name end in .tsrp");
    if (bytes.startsWith("\xFF\xFE") || bytes.startsWith("\xFE\xFF"))
        return QStringLiteral("is UTF-16 text, and is read as an empty project: save it as UTF-8");
    if (!isProject && bytes.contains('\0'))
        return QStringLiteral("is no text, or one in UTF-16, and is read as an empty project: save "
                              "it as UTF-8");
    return QString();
}

/// What is wrong with a cell, for the user.
QString textOfFault(const TextFault &fault, const TextCell &cell, const QStringList &columns)
{
    const QString column = quotedWord(cell.column);
    const QString value = quotedWord(cell.value.toString());
    switch (fault.kind) {
    case TextFault::Kind::NoColumn:
        return QStringLiteral("there is no column %1, and its value is passed over").arg(column) +
               didYouMean(cell.column, columns);
    case TextFault::Kind::NoNumber:
        return QStringLiteral("%1 is no number for the column %2, and is read as %3: write a "
                              "decimal number")
            .arg(value, column, fault.read.toString());
    case TextFault::Kind::CutNumber:
        return QStringLiteral("%1 is out of the range of the column %2, and is read as %3: write a "
                              "number that fits")
            .arg(value, column, fault.read.toString());
    case TextFault::Kind::NoObjectType:
        return QStringLiteral("%1 is no type of object for the column %2, and is kept as it is: "
                              "write 7 for a variable, 8 for an array, or 9 for a record")
            .arg(value, column);
    case TextFault::Kind::List:
    case TextFault::Kind::NoMetadata:
    case TextFault::Kind::Doubled:
        break;
    }
    return QStringLiteral("the column %1 holds no list of texts in the form in which it is saved, "
                          "and is left empty")
        .arg(column);
}

const char *ruleOfFault(TextFault::Kind kind)
{
    switch (kind) {
    case TextFault::Kind::NoColumn:
        return "unknown-column";
    case TextFault::Kind::NoNumber:
        return "no-number";
    case TextFault::Kind::CutNumber:
        return "number-cut";
    case TextFault::Kind::NoObjectType:
        return "no-object-type";
    case TextFault::Kind::List:
    case TextFault::Kind::NoMetadata:
    case TextFault::Kind::Doubled:
        break;
    }
    return "no-metadata";
}

} // namespace

/// Of bytes in another form each line would be wrong; it is said once.
void DatabaseTextConverter::tellAll(TextProjectProblems &found, const QByteArray &text,
                                    bool isProject)
{
    const QString form = otherForm(text, isProject);
    if (form.isEmpty()) {
        found.tell();
        lostPart = found.linesToMend();
    }
    const QString none = QStringLiteral("holds no group of a text project, and is read as an empty "
                                        "one");
    if (!isProject)
        Problems::warning("no-project", inputFile, form.isEmpty() ? none : form);
}

void DatabaseTextConverter::tell(const char *rule, const IniText::Entry &entry,
                                 TextProjectProblems::Effect effect,
                                 const std::function<QString()> &words)
{
    problems->add(rule, entry.keyText().begin, effect, words);
}

void DatabaseTextConverter::tellDoubled(const QVector<IniText::Entry> &entries, int numbers)
{
    if (isMerge)
        return; // the marks of the merge are told of

    QHash<QString, const IniText::Entry *> counting; // the last one of each key
    for (const IniText::Entry &entry : entries)
        counting.insert(plainKey(entry, numbers), &entry);
    if (counting.size() == entries.size())
        return;
    for (const IniText::Entry &entry : entries) {
        const IniText::Entry *last = counting.value(plainKey(entry, numbers));
        if (last != &entry && entry.keyText().size() > 0 && !isSameValue(entry, *last))
            tell("doubled-key", entry, Effect::Saved, [&] {
                return QStringLiteral("the value of %1 is passed over, since line %2 has another "
                                      "one: remove one of the two lines")
                    .arg(quotedWord(keyIn(entry)),
                         QString::number(problems->lineOf(last->keyText().begin)));
            });
    }
}

void DatabaseTextConverter::tellGroup(const QString &group, const char *head, bool hasRows)
{
    const int line = lineOfGroup(group);
    const bool isTable = group.contains(QLatin1String("Objects"));
    // The table of UDS services is written to a text, though nothing reads it there.
    const bool isKnown = isTable ? line >= 0
                                 : group == QLatin1String("Nodes") || TextForm::isSettings(group) ||
                                       Schema::lineOfTable(group, "UDSSettings") >= 0;
    const bool isWithoutLine = line >= 0 && !deviceLines.contains(uint(line));
    if (isKnown && !isWithoutLine)
        return;
    const Effect effect = isTable && hasRows ? Effect::Lost : Effect::Saved;
    const QString name = quotedWord(readable(group));
    if (isWithoutLine)
        return problems->add("unknown-line", head, effect, [&] {
            return QStringLiteral(
                       "the group %1 is that of line %2, which [Nodes] does not have, and "
                       "is passed over: add %2\\prefix=_ there")
                .arg(name, QString::number(line));
        });
    problems->add("unknown-group", head, effect, [&] {
        return TextForm::isExcludedTable(group)
                   ? QStringLiteral("the group %1 is passed over: only a project of the form .tsrp "
                                    "keeps it")
                         .arg(name)
                   : QStringLiteral("the group %1 is no part of a text project, and is passed over")
                             .arg(name) +
                         didYouMean(group, knownGroups());
    });
}

QStringList DatabaseTextConverter::knownGroups() const
{
    QStringList names = {QStringLiteral("Nodes"), QStringLiteral("GeneralSettings"),
                         QStringLiteral("DescriptionSettings"), QStringLiteral("MiscSettings")};
    for (const uint line : deviceLines)
        names << Schema::table("Objects", int(line)) << Schema::table("SubObjects", int(line));
    names.sort(); // a set has no order
    return names;
}

void DatabaseTextConverter::tellCells(const TextRow &row, const QVector<TextFault> &faults,
                                      const QStringList &columns)
{
    for (const TextFault &fault : faults) {
        const IniText::Entry &entry = row.first[fault.cell];
        if (fault.kind == TextFault::Kind::Doubled) {
            isDoubled = true;
            continue;
        }
        if (fault.kind == TextFault::Kind::List) {
            if (losesBlanks(entry.valueText()))
                tell("unquoted-comma", entry, Effect::Saved, [&] {
                    return QStringLiteral("the value of %1 has a comma and no quotation marks, and "
                                          "loses the blanks beside it: put it in quotation marks")
                        .arg(quotedWord(keyIn(entry)));
                });
            continue;
        }
        const bool isToldAlready = entry.keyText().size() == 0;
        if (!isToldAlready)
            tell(ruleOfFault(fault.kind), entry, Effect::Saved,
                 [&] { return textOfFault(fault, row.cell(fault.cell), columns); });
    }
}

void DatabaseTextConverter::tellShape(const TextRow &row, const char *form)
{
    for (int i = 0; i < row.count; ++i) {
        const IniText::Entry &entry = row.first[i];
        if (entry.keyText().size() > 0) // else it is told already
            tell("unknown-object", entry, Effect::Saved, [&] {
                return QStringLiteral("%1 is not of the form %2, and is passed over")
                    .arg(quotedWord(keyIn(entry)), QLatin1String(form));
            });
    }
}

void DatabaseTextConverter::tellLostRow(const TextRow &row, const QString &group)
{
    const IniText::Entry &entry = *row.first;
    const bool isNode = group == QLatin1String("Nodes");
    const bool isSub = row.numbers.size() > 1;
    const bool isSound = isNumberUpTo(row.numbers.first(), 0xFFFF) &&
                         (!isSub || isNumberUpTo(row.numbers.at(1), 0xFF));
    if (!isNode && (isSound || lineOfGroup(group) < 0))
        return; // the group is told of: there is no such one, or its line does not exist
    for (int i = 0; i < row.count; ++i)
        problems->addLost(row.first[i].keyText().begin);
    if (entry.keyText().size() == 0)
        return; // the line of the text is told of
    if (row.numbers.first().isEmpty())
        return tellShape(row, isNode  ? "line\\column"
                              : isSub ? "object\\subindex\\column"
                                      : "object\\column");
    const char *what = isNode  ? "the number of a line, 0 to 255"
                       : isSub ? "the numbers of an object, 0 to 0xFFFF, and a subindex, 0 to 0xFF"
                               : "the number of an object, 0 to 0xFFFF";
    tell(isNode ? "unknown-line" : "unknown-object", entry, Effect::Saved, [&] {
        return QStringLiteral("%1 does not begin with %2, and is passed over")
            .arg(quotedWord(keyIn(entry)), QLatin1String(what));
    });
}

void DatabaseTextConverter::tellDecimal(const TextRow &row)
{
    const QString &number = row.numbers.last();
    if (isDecimal(number))
        tell("decimal-index", *row.first, Effect::Saved, [&] {
            return QStringLiteral(
                       "%1 is read as a decimal number, %2: write the numbers of objects "
                       "and subindices in hexadecimal, with 0x")
                .arg(quotedWord(number), inHex(number));
        });
}

void DatabaseTextConverter::tellUnowned(const TextRow &row, int line)
{
    const QString group = quotedWord(Schema::table("Objects", line));
    if (!linesWithObjects.contains(line)) {
        if (line != lineWithoutObjects)
            tell("unknown-object", *row.first, Effect::Saved, [&] {
                return QStringLiteral("the group %1 has no object for the subindices here, so that "
                                      "no generated file has them: add their objects there")
                    .arg(group);
            });
        lineWithoutObjects = line;
        return;
    }
    const QString &index = row.numbers.first();
    tell("unknown-object", *row.first, Effect::Saved, [&] {
        return QStringLiteral("%1 has subindices here and is no object of the group %2, so that no "
                              "generated file has it: add it there")
            .arg(quotedWord(isDecimal(index) ? inHex(index) : index), group);
    });
    objects.insert(TextForm::objectKey(line, index)); // once is enough
}
