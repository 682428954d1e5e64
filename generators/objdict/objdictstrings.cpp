// Texts of string objects.
#include "generators/objdict/objdictstrings.h"

#include "generators/ctext.h"

namespace
{

constexpr quint32 kLargestFilled = 0xFFFF;

bool isInBytes(const QString &value)
{
    return value.startsWith(QLatin1String("|x"));
}

} // namespace

QByteArray ObjDict::stringBytes(const QString &value)
{
    if (!isInBytes(value))
        return value.toUtf8();
    QByteArray bytes;
    for (int i = 2; i < value.size(); i += 2)
        bytes += static_cast<char>(value.midRef(i, 2).toUShort(nullptr, 16));
    return bytes;
}

QString ObjDict::toByteValues(const QString &value)
{
    QString escapes;
    for (const char byte : stringBytes(value))
        escapes += QStringLiteral("\\x%1").arg(quint8(byte), 2, 16, QLatin1Char('0'));
    return escapes;
}

QString ObjDict::literalOfSize(const QString &value, quint32 size)
{
    QString content;
    quint32 held = 0;
    if (isInBytes(value)) {
        content = toByteValues(value);
        held = static_cast<quint32>(stringBytes(value).size());
    } else {
        content = CText::stringContent(value);
        held = CText::literalBytes(content);
    }
    // Deliberate: the stack reads as many bytes as the size says, also of a shorter text; held by
    // tst_golden. C adds one zero itself.
    if (size <= kLargestFilled && size > held + 1)
        content += QStringLiteral("\\000").repeated(static_cast<int>(size - held - 1));
    return content;
}
