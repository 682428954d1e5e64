// Setting assignments from a text file.
#include "store/databasemodifier.h"

#include "store/objectdatabase.h"
#include "support/logging.h"
#include "support/problems.h"

#include <QFile>
#include <QFileInfo>
#include <QStringList>
#include <QTextStream>

namespace
{

/// In characters; a line that holds more is no setting, and is not held in memory.
constexpr int kLongestLine = 1024 * 1024;

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
    QString line;
    int number = 0;
    for (auto result = readLine(stream, line); result != LineResult::End;
         result = readLine(stream, line)) {
        ++number;
        if (result == LineResult::Complete)
            applyLine(line);
        else
            Problems::warning("line-too-long", modifierFile,
                              QStringLiteral("the line is longer than 1 MiB and is passed over"),
                              number);
    }
    database->commitBatch();
    return true;
}

void DatabaseModifier::applyLine(const QString &line)
{
    if (line.isEmpty() || line.startsWith(QLatin1Char('#')))
        return;
    const bool isAssignment = line.count(QLatin1Char(':')) == 2;
    const QStringList fields = isAssignment ? line.split(QLatin1Char(':')) : QStringList();
    if (isAssignment && fields[0] == QLatin1String("GeneralSettings"))
        (void)database->setGeneralSettingsValue(fields[1], fields[2]); // a bad line stops nothing
    else if (isAssignment && fields[0] == QLatin1String("J1939Settings"))
        (void)database->setJ1939SettingsValue(fields[1], fields[2]); // likewise
    else
        qCDebug(lcStore) << "modifier line passed over:" << line;
}
