// Reporting of the check, the user's settings, and short ways to read the project.
#include "check/modelchecker.h"

#include "check/modelchecker_p.h"
#include "support/linelist.h"
#include "support/logging.h"
#include "support/numbers.h"
#include "support/objectindex.h"
#include "support/problems.h"
#include "support/usersettings.h"

#include <QCoreApplication>

using Check::Msg;
using PdoParameter::kCobId;

namespace
{

constexpr ObjectRange kRpdos = ObjectRanges::kRpdoParameters;
constexpr ObjectRange kTpdos = ObjectRanges::kTpdoParameters;

} // namespace

ModelChecker::ModelChecker(QObject *parent)
    : QObject(parent), predefinedConnections{
                           {kRpdos.at(1), kCobId, QStringLiteral("$nodeid+0x200")},
                           {kRpdos.at(2), kCobId, QStringLiteral("$nodeid+0x300")},
                           {kRpdos.at(3), kCobId, QStringLiteral("$nodeid+0x400")},
                           {kRpdos.at(4), kCobId, QStringLiteral("$nodeid+0x500")},
                           {kTpdos.at(1), kCobId, QStringLiteral("$nodeid+0x180")},
                           {kTpdos.at(2), kCobId, QStringLiteral("$nodeid+0x280")},
                           {kTpdos.at(3), kCobId, QStringLiteral("$nodeid+0x380")},
                           {kTpdos.at(4), kCobId, QStringLiteral("$nodeid+0x480")},
                       }
{
}

void ModelChecker::report(Msg id, const Place &place, const QStringList &arguments)
{
    const Check::MessageRow &row = Check::messageRow(id);
    if (row.counted)
        ++errorCount;
    found.append({id, arguments, place.line == kLineUnderCheck ? line : place.line, place.index,
                  place.subindex, place.group, place.signal});
    emit newError(Check::markedUpText(row, arguments));
}

void ModelChecker::correct(bool &corrected, Msg id, const Place &place,
                           const QStringList &arguments, const std::function<void()> &change)
{
    if (autoCorrectionDisabled)
        return;
    report(id, place, arguments);
    corrected = true;
    change();
}

void ModelChecker::reportObject(Msg id, quint16 index)
{
    report(id, {index}, {hex4(index)});
}

void ModelChecker::reportSub(Msg id, quint16 index, quint8 subIndex)
{
    report(id, {index, subIndex}, {hex4(index), hex2(subIndex)});
}

void ModelChecker::setProject(ObjectDataBase *store)
{
    project = store;
    features = readProjectFeatures(*store);
}

void ModelChecker::startLine(quint8 lineNumber, ObjectDataBase *store)
{
    line = lineNumber;
    setProject(store);
    errorCount = 0;
}

void ModelChecker::readUserSettings(const QStringList &siblings)
{
    const UserSettings settings;
    autoCorrectionDisabled = settings.value("General", "disableautocorrection").toBool();
    stackPath = settings.value("General", "costackpath").toString();
    for (const QString &sibling : siblings) {
        if (stackPath.isEmpty())
            stackPath = UserSettings(sibling).value("General", "costackpath").toString();
    }
    qCDebug(lcCheck) << "stack" << stackPath << "corrections" << !autoCorrectionDisabled;
}

qint32 ModelChecker::decimalSetting(const char *key) const
{
    return Numbers::toIntDecimal(project->getGeneralSettingsValue(QLatin1String(key)));
}

qint32 ModelChecker::decimalJ1939Setting(const char *key) const
{
    return Numbers::toIntDecimal(project->getJ1939SettingsValue(QLatin1String(key)));
}

quint32 ModelChecker::numberSetting(const char *key) const
{
    return Numbers::toUIntByPrefix(project->getGeneralSettingsValue(QLatin1String(key)));
}

QString ModelChecker::lineEntry(const char *key) const
{
    const QString list = project->getGeneralSettingsValue(QLatin1String(key));
    return LineList::element(list, line);
}

void ModelChecker::warnOfShortList(const QString &setting, const QString &list, quint8 number,
                                   const QString &otherAdvice)
{
    if (!LineList::isList(list) || LineList::reaches(list, number))
        return;
    const QString line = QString::number(number);
    Problems::warning(
        "short-list", QString(),
        QStringLiteral("the %1 lists %2 values and none for line %3: list one for "
                       "each line number up to %3%4")
            .arg(setting, QString::number(list.count(QLatin1Char(',')) + 1), line, otherAdvice));
}

bool ModelChecker::hasIndex(quint16 index) const
{
    return project->existIndex(line, index);
}

bool ModelChecker::hasSub(quint16 index, quint8 subIndex) const
{
    return project->existSubIndex(line, index, subIndex);
}

QString ModelChecker::textOf(quint16 index, quint8 subIndex) const
{
    return project->getSubIndexValue(line, index, subIndex);
}

quint32 ModelChecker::valueOf(quint16 index, quint8 subIndex) const
{
    return Numbers::toUIntByPrefix(textOf(index, subIndex));
}

SubIndexData ModelChecker::recordOf(quint16 index, quint8 subIndex) const
{
    SubIndexData data;
    (void)project->getSubIndexData(line, index, subIndex, data); // then the defaults stand
    return data;
}

int ModelChecker::countEntries(quint16 index) const
{
    return project->getSubIndices(line, index, 1).size();
}

QList<quint16> ModelChecker::indicesOf(ObjectRange range) const
{
    return project->getIndices(line, range);
}

QList<quint16> ModelChecker::mappingObjects() const
{
    return indicesOf(ObjectRanges::kRpdoMappings) + indicesOf(ObjectRanges::kTpdoMappings);
}
