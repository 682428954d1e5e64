// Setting assignments from a text file.
#include "store/databasemodifier.h"

#include "store/objectdatabase.h"
#include "support/editdistance.h"
#include "support/printable.h"
#include "support/settingscatalogue.h"

#include <QFile>
#include <QFileInfo>
#include <QStringList>
#include <QTextStream>

namespace
{

/// In characters; a line that holds more is no setting, and is not held in memory.
constexpr int kLongestLine = 1024 * 1024;

using SetValue = bool (ObjectDataBase::*)(const QString &key, const QString &value);

struct GroupRow {
    SettingStore store;
    SetValue set;
};

constexpr GroupRow kGroups[] = {
    {SettingStore::General, &ObjectDataBase::setGeneralSettingsValue},
    {SettingStore::J1939, &ObjectDataBase::setJ1939SettingsValue},
};

QString nameOf(const GroupRow &row)
{
    return QLatin1String(SettingsCatalogue::nameOf(row.store));
}

QString adviceOn(const QString &word)
{
    QStringList names;
    for (const GroupRow &row : kGroups)
        names << nameOf(row);
    return QStringLiteral("a modifier file sets %1, and nothing else")
               .arg(names.join(QLatin1String(" and "))) +
           didYouMean(word, names);
}

enum class LineResult { Complete, TooLong, End };

/// Reads the next line; one that is too long is read to its end in pieces.
LineResult readLine(QTextStream &stream, QString &line)
{
    const int piece = kLongestLine + 1; // so much of a line is too much
    if (!stream.readLineInto(&line, piece))
        return LineResult::End;
    if (line.size() < piece)
        return LineResult::Complete;
    while (line.size() == piece && stream.readLineInto(&line, piece)) {
    }
    return LineResult::TooLong;
}

} // namespace

DatabaseModifier::DatabaseModifier(ObjectDataBase *store) : database(store) {}

bool DatabaseModifier::setModifierFile(const QString &path)
{
    modifierFile = path;
    const QFileInfo info(path);
    if (info.isFile() && info.isReadable())
        return true;
    lastError = QStringLiteral("Could not read %1").arg(path);
    return false;
}

bool DatabaseModifier::applyModifierFile()
{
    database->setLockWriteAccess(false);
    QFile file(modifierFile);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text)) {
        lastError = QStringLiteral("Could not open %1").arg(modifierFile);
        return false;
    }
    QTextStream stream(&file);
    stream.setCodec("UTF-8");
    database->beginBatch();
    problems.begin(modifierFile);
    QString line;
    int number = 0;
    for (auto result = readLine(stream, line); result != LineResult::End;
         result = readLine(stream, line)) {
        ++number;
        if (result == LineResult::Complete)
            applyLine(line, number);
        else
            passOver("line-too-long", number,
                     QStringLiteral("the line is longer than 1 MiB and is passed over"));
    }
    database->commitBatch();
    problems.tell();
    return true;
}

void DatabaseModifier::applyLine(const QString &line, int number)
{
    const QString words = line.trimmed();
    if (words.isEmpty() || words.startsWith(QLatin1Char('#')))
        return;
    const int colons = line.count(QLatin1Char(':'));
    if (colons == 2)
        return assign(line.split(QLatin1Char(':')), number);
    passOver("modifier-line", number,
             quotedWord(line) +
                 (colons > 2
                      ? QStringLiteral(" has more than two colons and is passed over: neither a "
                                       "key nor a value can hold one")
                      : QStringLiteral(" sets nothing and is passed over: write "
                                       "<group>:<key>:<value>, or begin the line with # to make "
                                       "it a comment")));
}

void DatabaseModifier::assign(const QStringList &fields, int number)
{
    for (const GroupRow &row : kGroups) {
        if (fields[0] != nameOf(row))
            continue;
        assigned.insert(fields[0] + QLatin1Char(':') + fields[1], number);
        if (!(database->*row.set)(fields[1], fields[2]))
            passOver("modifier-line", number,
                     quotedWord(fields[2]) + QStringLiteral(" cannot be stored, and %1 stays as it "
                                                            "is: a value of %2 cannot hold an "
                                                            "apostrophe")
                                                 .arg(quotedWord(fields[1]), fields[0]));
        return;
    }
    passOver("modifier-line", number,
             quotedWord(fields[0]) +
                 QStringLiteral(" is no group of settings here, and the line is passed over: ") +
                 adviceOn(fields[0]));
}

void DatabaseModifier::passOver(const char *rule, int number, const QString &reason)
{
    problems.add(rule, number, [&reason] { return reason; });
}
