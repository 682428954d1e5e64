// What holds for the project as a whole.
#include "check/modelchecker.h"
#include "store/linetype.h"
#include "support/numbers.h"

#include <QCoreApplication>

#include <algorithm>

using Check::Msg;

namespace
{

constexpr quint8 kMostLines = 32;

/// The low byte of a number, which may be negative.
quint8 byteOf(const QString &text)
{
    return static_cast<quint8>(Numbers::toLongLongByPrefix(text));
}

/// One byte of the setting's entry for the line.
quint8 byteOfLine(const ObjectDataBase &store, const char *key, quint8 line)
{
    return byteOf(store.getGeneralSettingsValueLine(QLatin1String(key), line));
}

} // namespace

qint32 ModelChecker::startGlobalCheck(ObjectDataBase *store)
{
    setProject(store);
    const qint32 lineErrors = errorCount; // the count belongs to the line checks
    errorCount = 0;
    const Place wholeProject = {-1, -1, -1};
    checkUdsExclusion(features.namesUdsServer(), features.namesUdsClient());
    checkBufferLists();
    hintAtUpgrade(features.namesUds());
    // Deliberate: the setting is a byte, so 256 is none; held by tst_modelchecker
    // "block_size_byte".
    if (byteOf(project->getGeneralSettingsValue(QStringLiteral("sdo_blocktransfer_block_size"))) &
        0x80)
        report(Msg::SdoBlockSizeTooLarge, wholeProject);
    if (project->getGeneralSettingsValue(QStringLiteral("co_timer_interval")).isEmpty())
        report(Msg::TimerIntervalMissing, wholeProject);
    const qint32 errors = errorCount;
    errorCount = lineErrors;
    return errors;
}

void ModelChecker::checkUdsExclusion(bool hasServer, bool hasClient)
{
    if (!hasServer || !hasClient)
        return;
    QList<quint8> lines = project->getNodes();
    lines.erase(std::remove_if(lines.begin(), lines.end(),
                               [](quint8 number) { return number >= kMostLines; }),
                lines.end());
    const auto hasBoth = [this, &lines](quint8 number) {
        return lines.size() == 1 || (byteOfLine(*project, "uds_server_active", number) != 0 &&
                                     byteOfLine(*project, "uds_client_cnt", number) != 0);
    };
    const auto served = std::find_if(lines.cbegin(), lines.cend(), hasBoth);
    if (served != lines.cend())
        report(Msg::UdsServerAndClient, {-1, -1, *served});
}

/// CANopen has messages of its own for it.
void ModelChecker::checkBufferLists()
{
    const QList<quint8> lines = project->getNodes();
    for (const quint8 number : lines) {
        const LineType type = readLineType(*project, number);
        if (number >= kMostLines || (type != LineType::J1939 && type != LineType::RawCan))
            continue;
        for (const char *key : {"receivebuffersize", "transmitbuffersize"})
            warnOfShortList(QStringLiteral("setting '%1'").arg(QLatin1String(key)),
                            project->getGeneralSettingsValue(QLatin1String(key)), number);
    }
}

/// Newer versions need sources of the stack that older ones did not.
void ModelChecker::hintAtUpgrade(bool hasUds)
{
    const QString key = QStringLiteral("PreviousToolVersion");
    const QStringList parts = project->getMiscSettingsValue(key).split(QLatin1Char('.'));
    if (Numbers::toUIntDecimal(parts.value(0)) != 3)
        return;
    const auto minor = static_cast<quint8>(Numbers::toUIntDecimal(parts.value(1)));
    const bool isCANopenTool =
        QCoreApplication::applicationName() == QLatin1String("CANopen Tessarine");
    const Place wholeProject = {-1, -1, -1};
    if (minor <= 6) {
        report(isCANopenTool ? Msg::AddCommonMemcpy : Msg::AddCommonMemcpyMapping, wholeProject);
    } else if (minor <= 8) {
        report(isCANopenTool ? Msg::AddMemcpy : Msg::AddMemcpyMapping, wholeProject);
        if (hasUds)
            report(Msg::AddUdsInit, wholeProject);
    } else {
        return;
    }
    project->setMiscSettingsValue(key, QString());
}
