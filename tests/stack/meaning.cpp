// Values of a project's texts.
#include "tests/stack/meaning.h"

#include "support/cohelper.h"
#include "tests/fixtures/testkit.h"

#include <QRegularExpression>

#include <cmath>

QVector<QStringList> Meaning::table(const QString &name)
{
    QVector<QStringList> rows;
    for (const QString &row : QString(readFile(TEST_STACK "/" + name)).split('\n')) {
        if (!row.isEmpty() && !row.startsWith("# "))
            rows << row.split(' ', Qt::SkipEmptyParts);
    }
    return rows;
}

qint64 Meaning::numberOf(const QString &text)
{
    const QString digits = text.trimmed();
    if (digits.startsWith(QLatin1String("0x"), Qt::CaseInsensitive))
        return static_cast<qint64>(digits.mid(2).toULongLong(nullptr, 16));
    return digits.startsWith(QLatin1Char('-')) ? digits.toLongLong()
                                               : static_cast<qint64>(digits.toULongLong());
}

QString Meaning::withoutNodeId(const QString &text)
{
    return QString(text).remove(QStringLiteral("$NODEID+"), Qt::CaseInsensitive);
}

bool Meaning::hasNodeId(const QString &text)
{
    return text.contains(QLatin1String("$NODEID+"), Qt::CaseInsensitive);
}

QString Meaning::typeName(quint16 dataType)
{
    const QString name = COHelper::index2DataTypeShortString(dataType).toUpper();
    static const QRegularExpression belowByte(QStringLiteral("^U[2-7]$"));
    if (name == QLatin1String("B"))
        return QStringLiteral("BOOL");
    if (name == QLatin1String("D"))
        return QStringLiteral("DOMAIN");
    return belowByte.match(name).hasMatch() ? QStringLiteral("U8") : name;
}

bool Meaning::hasArray(quint16 dataType)
{
    static const QStringList names = {"BOOL", "U8",  "U16", "U24", "U32", "U40",
                                      "U48",  "U64", "I8",  "I16", "I32", "R32"};
    return names.contains(typeName(dataType));
}

bool Meaning::hasLimits(quint16 dataType)
{
    static const QStringList names = {"BOOL", "U8", "U16", "U32", "I8", "I16", "I32", "R32"};
    return names.contains(typeName(dataType));
}

bool Meaning::hasDefault(const SubIndexData &sub)
{
    const bool isText = sub.dataType == 9 || sub.dataType == 10 || sub.dataType == 124;
    return hasArray(sub.dataType) || sub.dataType == 16 || (isText && sub.implementation == 1);
}

bool Meaning::isWritten(const SubIndexData &sub)
{
    return sub.accessType.contains(QLatin1Char('w'));
}

QString Meaning::numberText(quint16 dataType, const QString &value)
{
    const QString type = typeName(dataType);
    if (type == QLatin1String("R32")) {
        const double real = static_cast<double>(value.toFloat()); // C has no literal for infinity
        return QString::number(std::isfinite(real) ? real : 0.0, 'g', 6);
    }
    const quint64 bits = static_cast<quint64>(numberOf(value));
    const int width = type == QLatin1String("BOOL") ? 8 : type.mid(1).toInt();
    if (type.startsWith(QLatin1Char('I')))
        return QString::number(static_cast<qint64>(bits << (64 - width)) >> (64 - width));
    return QString::number(bits << (64 - width) >> (64 - width));
}

QByteArray Meaning::textBytes(const QString &value)
{
    if (value.startsWith(QLatin1String("|x")))
        return QByteArray::fromHex(value.mid(2).toLatin1());
    return QString(value).replace("\\\"", "\"").replace("\\x41", "A").toUtf8();
}

QString Meaning::joinNumbers(const QVector<quint32> &numbers)
{
    QStringList texts;
    for (const quint32 number : numbers)
        texts << QString::number(number);
    return texts.join(',');
}
