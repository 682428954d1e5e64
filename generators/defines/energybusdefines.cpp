// EnergyBus.
#include "generators/defines/energybusdefines.h"

#include "generators/ctext.h"

#include <QCoreApplication>
#include <QMap>
#include <QRegularExpression>

namespace
{

/// "ext_start_pos_bat" is EB_EXT_START_POS_BAT. The settings are those of the project, which may
/// have others than this tool knows.
QString macroOf(const QString &key)
{
    static const QRegularExpression noNameCharacter(QStringLiteral("[^A-Za-z0-9_]"));
    QString name = key;
    return QStringLiteral("EB_") + name.replace(noNameCharacter, QStringLiteral("_")).toUpper();
}

/// A number in the base of the setting, or a string literal.
QString valueText(const QString &setting)
{
    const QString text = setting.trimmed();
    bool isNumber = false;
    const quint32 number = Numbers::toUIntByPrefix(text, &isNumber);
    if (isNumber && text.startsWith(QLatin1String("0x"), Qt::CaseInsensitive))
        return text + QLatin1Char('u');
    if (isNumber)
        return QString::number(number) + QLatin1Char('u');
    const qint32 offset = Numbers::toIntDecimal(text, &isNumber);
    if (isNumber)
        return QStringLiteral("(%1)").arg(offset);
    return QStringLiteral("\"%1\"").arg(CText::stringContent(text));
}

/// Values by macro. Of settings that give one macro, the first counts.
QMap<QString, QString> readFacts(const ObjectDataBase &store)
{
    QMap<QString, QString> values;
    const QStringList keys = store.getEnergyBusKeys();
    for (const QString &key : keys) {
        const QString value = store.getEnergyBusSettingsValue(key);
        const QString macro = macroOf(key);
        if (!value.trimmed().isEmpty() && !values.contains(macro))
            values.insert(macro, valueText(value));
    }
    return values;
}

} // namespace

void Defines::generateEnergyBusDefines(DefineContext &context)
{
    if (QCoreApplication::applicationName() != QLatin1String("EnergyBus Morvane"))
        return;
    const QMap<QString, QString> values = readFacts(context.store);
    if (values.isEmpty())
        return;
    context.raw({"/* EnergyBus Defines */\n"});
    for (auto value = values.begin(); value != values.end(); ++value)
        context.out.parts("#define ", value.key(), "\t", value.value(), "\n");
    context.raw({"\n"});
}
