// Rows of the text form.
#include "store/textrows.h"

#include <algorithm>
#include <cstring>
#include <utility>

namespace
{

using IniText::Entry;
using IniText::Span;

bool isSame(Span one, Span other)
{
    return one.size() == other.size() &&
           std::memcmp(one.begin, other.begin, size_t(one.size())) == 0;
}

/// What a key needs to be taken apart for.
bool isSeparatorOrEscape(char ch)
{
    return ch == '\\' || ch == '/' || ch == '%';
}

/// "0x1018/0x1" of "0x1018/0x1/name".
QString placeOf(const QString &key)
{
    return key.left(qMax(key.lastIndexOf(QLatin1Char('/')), 0));
}

Span behind(Span text, Span prefix)
{
    return {text.begin + prefix.size(), text.end};
}

} // namespace

QString textOf(const QVariant &value)
{
    return value.type() == QVariant::StringList ? value.toStringList().join(QLatin1Char(','))
                                                : value.toString();
}

TextRows::TextRows(const QVector<Entry> &entries) : at(entries.begin()), end(entries.end()) {}

bool TextRows::next()
{
    if (at == end)
        return false;
    last.first = current.first;
    last.lists.swap(current.lists);
    current.lists.clear();
    lastPrefix = prefix;
    prefix = prefixOf(*at);
    current.first = at;
    count = 0;
    place = placeOf(at->key());
    current.numbers = place.split(QLatin1Char('/'));
    takeCell(*at);
    for (++at; at != end; ++at) {
        if (!continuesRow(*at)) {
            if (placeOf(at->key()) != place)
                break;
            prefix = {}; // the cells of this row differ in more than their columns
        }
        takeCell(*at);
    }
    current.cells.resize(count);
    return true;
}

Span TextRows::prefixOf(const Entry &entry)
{
    const Span key = entry.keyText;
    const auto isSeparator = [](char ch) { return ch == '\\' || ch == '/'; };
    if (std::find(key.begin, key.end, '%') != key.end)
        return {};
    const auto separator = std::find_if(std::make_reverse_iterator(key.end),
                                        std::make_reverse_iterator(key.begin), isSeparator);
    return {key.begin, separator.base()};
}

bool TextRows::continuesRow(const Entry &entry) const
{
    const Span key = entry.keyText;
    return prefix.size() > 0 && key.size() >= prefix.size() &&
           isSame({key.begin, key.begin + prefix.size()}, prefix) &&
           std::none_of(key.begin + prefix.size(), key.end, isSeparatorOrEscape);
}

void TextRows::takeCell(const Entry &entry)
{
    const int number = count++;
    const bool isSameColumn = hasSameColumn(entry, number);
    if (isSameColumn && isSame(entry.valueText, last.first[number].valueText) &&
        !last.lists.contains(number))
        return;
    if (number == current.cells.size())
        current.cells.append(ObjectDataBase::ColumnValue());
    ObjectDataBase::ColumnValue &cell = current.cells[number];
    if (!isSameColumn) {
        const QString key = entry.key();
        cell.column = key.mid(key.lastIndexOf(QLatin1Char('/')) + 1);
    }
    cell.value = entry.value();
    if (cell.value.type() == QVariant::StringList) {
        current.lists.append(number);
        cell.value = textOf(cell.value);
    }
}

bool TextRows::hasSameColumn(const Entry &entry, int number) const
{
    return prefix.size() > 0 && lastPrefix.size() > 0 && number < current.cells.size() &&
           isSame(behind(entry.keyText, prefix), behind(last.first[number].keyText, lastPrefix));
}
