// Names of C variables for the signals of a DBC file.
#include "import/dbcvariables.h"

#include <algorithm>
#include <iterator>

namespace
{

constexpr int kLongestPart = 60; ///< compilers may take fewer characters than a file has

/// Names with "_" inside that C, C++ or their libraries have for something else.
constexpr const char *kForeignNames[] = {
    "aligned_alloc", "and_eq",           "at_quick_exit", "co_await",    "co_return",    "co_yield",
    "const_cast",    "dynamic_cast",     "not_eq",        "or_eq",       "quick_exit",   "random_r",
    "rand_r",        "reinterpret_cast", "static_assert", "static_cast", "thread_local", "xor_eq",
};

/// Beginnings of names that generated sources have for their own.
constexpr const char *kGeneratedNames[] = {"mv_", "rx_mapping_", "tx_mapping_"};

bool canStand(QChar character)
{
    const ushort code = character.unicode();
    return (code >= 'a' && code <= 'z') || (code >= '0' && code <= '9') || code == '_';
}

/// In small letters. What cannot stand in a name parts words.
QString plainName(const QString &text)
{
    QString name;
    for (const QChar character : text) {
        const QChar small =
            character.unicode() < 0x80 ? character.toLower() : QChar(QLatin1Char('_'));
        const bool isGap = !canStand(small) || small == QLatin1Char('_');
        if (isGap && (name.isEmpty() || name.endsWith(QLatin1Char('_'))))
            continue;
        name += isGap ? QLatin1Char('_') : small;
        if (name.size() == kLongestPart)
            break;
    }
    while (name.endsWith(QLatin1Char('_')))
        name.chop(1);
    return name;
}

bool isForeign(const QString &name)
{
    return name.endsWith(QLatin1String("_t")) || // a type
           std::any_of(std::begin(kForeignNames), std::end(kForeignNames),
                       [&](const char *word) { return name == QLatin1String(word); }) ||
           std::any_of(std::begin(kGeneratedNames), std::end(kGeneratedNames),
                       [&](const char *begin) { return name.startsWith(QLatin1String(begin)); });
}

} // namespace

void DbcVariables::avoid(const QString &expression)
{
    int begin = 0;
    for (int end = 0; end <= expression.size(); ++end) {
        if (end < expression.size() && canStand(expression.at(end).toLower()))
            continue;
        if (end > begin)
            taken.insert(expression.mid(begin, end - begin));
        begin = end + 1;
    }
}

QString DbcVariables::claim(const QString &message, const QString &signal)
{
    QString stem = plainName(message);
    if (stem.isEmpty() || stem.at(0).isDigit())
        stem.prepend(QLatin1String(stem.isEmpty() ? "msg" : "msg_"));
    QString name = plainName(signal);
    if (name.isEmpty())
        name = QStringLiteral("signal");
    if (!name.startsWith(stem + QLatin1Char('_')))
        name.prepend(stem + QLatin1Char('_'));
    return claim(isForeign(name) ? name + QLatin1String("_value") : name);
}

QString DbcVariables::claim(const QString &name)
{
    QString free = name;
    int &count = counts[name];
    while (taken.contains(free))
        free = QStringLiteral("%1_%2").arg(name).arg(++count + 1);
    taken.insert(free);
    return free;
}
