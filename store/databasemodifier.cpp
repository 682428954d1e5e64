// Setting assignments from a text file.
#include "store/databasemodifier.h"

#include "store/objectdatabase.h"
#include "support/logging.h"

#include <QFile>
#include <QFileInfo>
#include <QStringList>
#include <QTextStream>

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
    while (stream.readLineInto(&line))
        applyLine(line);
    database->commitBatch();
    return true;
}

void DatabaseModifier::applyLine(const QString &line)
{
    if (line.isEmpty() || line.startsWith(QLatin1Char('#')))
        return;
    const QStringList fields = line.split(QLatin1Char(':'));
    const bool isAssignment = fields.size() == 3;
    if (isAssignment && fields[0] == QLatin1String("GeneralSettings"))
        (void)database->setGeneralSettingsValue(fields[1], fields[2]); // a bad line stops nothing
    else if (isAssignment && fields[0] == QLatin1String("J1939Settings"))
        (void)database->setJ1939SettingsValue(fields[1], fields[2]); // likewise
    else
        qCDebug(lcStore) << "modifier line passed over:" << line;
}
