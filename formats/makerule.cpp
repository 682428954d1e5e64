// Rules of make.
#include "formats/makerule.h"

#include <QFile>

namespace
{

/// As GNU make, ninja and CMake read it. A backslash is one of the name, unless those before a
/// blank are doubled.
QByteArray escaped(const QString &path)
{
    QByteArray result;
    int backslashes = 0; // at the end of the result
    const QByteArray name = QFile::encodeName(path);
    for (const char sign : name) {
        if (sign == ' ' || sign == '\t')
            result += QByteArray(backslashes + 1, '\\');
        else if (sign == '#' || sign == ':')
            result += '\\';
        else if (sign == '$')
            result += '$';
        result += sign;
        backslashes = sign == '\\' ? backslashes + 1 : 0;
    }
    return result;
}

/// A "%" would make the rule a pattern; in an input it stands for itself.
QByteArray escapedTarget(const QString &path)
{
    return escaped(path).replace('%', "\\%");
}

} // namespace

bool MakeRule::canName(const QString &path)
{
    return !path.contains(QLatin1Char('\n')) && !path.contains(QLatin1Char('\r'));
}

QByteArray MakeRule::text(const QStringList &targets, const QStringList &inputs)
{
    constexpr char kNextLine[] = " \\\n  ";
    QByteArray rule;
    for (const QString &target : targets)
        rule += (rule.isEmpty() ? QByteArray() : QByteArray(kNextLine)) + escapedTarget(target);
    rule += ':';
    for (const QString &input : inputs)
        rule += kNextLine + escaped(input);
    return rule + '\n';
}
