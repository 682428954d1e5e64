// Targets.
#include "generators/defines/hardwaredefines.h"

#include "generators/ctext.h"

namespace
{

/// A count of targets is whatever the project says; beyond this no project has any.
constexpr quint32 kMostTargets = 256;

constexpr Word kTimerInterval{"#define CO_TIMER_INTERVAL\t", "#define CORE_TIMER_INTERVAL\t"};

struct Target {
    qint32 number = 0;
    QString macro; ///< guards the block if all targets are written
    QString name;
    QString timer; ///< as C text; empty if there is none
    bool isBigEndian = false;
    bool hasFilter = false;
    bool hasGroupFilter = false;
    QString defines; ///< free text of the project
};

/// A number gets its "u"; any other text, such as a macro, stands as it is.
QString intervalText(const QString &setting)
{
    const QString interval = setting.trimmed();
    return Numbers::toIntDecimal(interval) == 0 ? interval : interval + QLatin1Char('u');
}

Target readMainTarget(const GeneralSettings &settings, const ProjectFeatures &features)
{
    Target target;
    target.macro = settings.text("target_id");
    target.name = settings.freeText("targetsettings_0_name");
    target.timer = intervalText(settings.text("co_timer_interval"));
    target.isBigEndian = settings.decimal("endian") == 1;
    target.hasFilter = settings.decimal("drv_filter") == 1;
    target.hasGroupFilter = features.hasGroupFilter();
    target.defines = settings.freeText("hw_defines");
    return target;
}

Target readTarget(const GeneralSettings &settings, qint32 number)
{
    const auto freeText = [&settings, number](const char *keyFormat) {
        return settings.freeText(QString::fromLatin1(keyFormat).arg(number).toLatin1());
    };
    const auto text = [&freeText](const char *keyFormat) {
        return CText::line(freeText(keyFormat));
    };
    const auto isOne = [&text](const char *keyFormat) {
        return static_cast<quint8>(Numbers::toUIntByPrefix(text(keyFormat))) == 1;
    };
    Target target;
    target.number = number;
    target.macro = text("targetsettings_%1_targetid");
    target.name = freeText("targetsettings_%1_name");
    target.timer =
        QStringLiteral("%1u").arg(Numbers::toUIntByPrefix(text("targetsettings_%1_timer")));
    target.isBigEndian = isOne("targetsettings_%1_endianess");
    target.hasFilter = isOne("targetsettings_%1_fullcan");
    target.hasGroupFilter = isOne("targetsettings_%1_groupfilter");
    target.defines = freeText("targetsettings_%1_defines");
    return target;
}

void writeTarget(DefineContext &context, const Target &target)
{
    context.out.fill("/* $name$ */\n", {{"name", CText::comment(target.name)}});
    if (!target.timer.isEmpty()) {
        context.raw(kTimerInterval);
        context.out.parts(target.timer, "\n");
    }
    if (target.isBigEndian)
        context.raw({"#define CO_BIG_ENDIAN\t1u\n", "#define CORE_BIG_ENDIAN\t1u\n"});
    if (target.hasFilter)
        context.raw({"#define CO_DRV_FILTER\t1u\n", "#define CORE_DRV_FILTER\t1u\n"});
    if (target.hasGroupFilter)
        context.raw({"#define CO_DRV_GROUP_FILTER\t1u\n", "#define CORE_DRV_GROUP_FILTER\t1u\n"});
    if (!target.defines.isEmpty()) {
        context.raw({"\n/* target-specific defines */\n"});
        context.out.raw(CText::freeLines(target.defines));
    }
}

void writeGuardedTarget(DefineContext &context, const Target &target, bool isActive)
{
    const QString macro =
        target.macro.isEmpty() ? QStringLiteral("TARGET_%1").arg(target.number) : target.macro;
    if (isActive)
        context.out.fill("#define $macro$ 1u\n", {{"macro", macro}});
    context.out.fill("#ifdef $macro$\n", {{"macro", macro}});
    writeTarget(context, target);
    context.out.fill("#endif /* $comment$*/ \n"
                     "\n",
                     {{"comment", CText::comment(macro)}});
}

} // namespace

void Defines::generateHardwareDefines(DefineContext &context)
{
    const GeneralSettings &settings = context.settings;
    const quint32 count = Numbers::toUIntDecimal(settings.text("targetsettings_cnt"));
    const qint32 active = settings.decimal("targetsettings_active");

    context.raw({"/* Hardware settings */\n"});
    if (settings.decimal("all_targets") != 0) {
        writeGuardedTarget(context, readMainTarget(settings, context.features), active == 0);
        for (qint32 n = 1; n < qint32(qMin(count, kMostTargets)); ++n)
            writeGuardedTarget(context, readTarget(settings, n), active == n);
    } else if (active == -1 || active == 0 || count < 2) {
        writeTarget(context, readMainTarget(settings, context.features));
    } else {
        writeTarget(context, readTarget(settings, active));
    }
    const QString srdoTimer = intervalText(settings.text("co_srdo_interval"));
    if (!srdoTimer.isEmpty())
        context.out.fill("#define CO_SRDO_TIMER_INTERVAL\t$srdoTimer$\n",
                         {{"srdoTimer", srdoTimer}});
    context.raw({"\n"});
}
