// Rows of the text form.
#include "store/textrows.h"

#include <algorithm>

namespace
{

using IniText::Entry;
using IniText::Span;

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

Span start(Span text, int size)
{
    return {text.begin, text.begin + size};
}

Span behind(Span text, int size)
{
    return {text.begin + size, text.end};
}

/// The bytes before the column, if they say all of the place; else none.
Span prefixOf(const Entry &entry)
{
    const Span key = entry.keyText();
    const auto isSeparator = [](char ch) { return ch == '\\' || ch == '/'; };
    if (std::find(key.begin, key.end, '%') != key.end)
        return {};
    const auto separator = std::find_if(std::make_reverse_iterator(key.end),
                                        std::make_reverse_iterator(key.begin), isSeparator);
    return {key.begin, separator.base()};
}

} // namespace

QString textOf(const QVariant &value)
{
    return value.type() == QVariant::StringList ? value.toStringList().join(QLatin1Char(','))
                                                : value.toString();
}

TextCell TextRow::cell(int number) const
{
    const QString key = first[number].key();
    const QVariant value = first[number].value();
    return {key.mid(key.lastIndexOf(QLatin1Char('/')) + 1),
            value.type() == QVariant::StringList ? textOf(value) : value};
}

TextRows::TextRows(const QVector<Entry> &entries) : at(entries.begin()), end(entries.end()) {}

bool TextRows::next()
{
    if (at == end)
        return false;
    prefix = prefixOf(*at);
    current.first = at;
    current.count = 0;
    place = placeOf(at->key());
    current.numbers = place.split(QLatin1Char('/'));
    bool isRepeated = repeatsColumn(*at);
    do {
        takeCell(*at, isRepeated);
        if (++at == end)
            break;
        isRepeated = repeatsColumn(*at);
    } while (isRepeated || continuesRow(*at));
    return true;
}

bool TextRows::repeatsColumn(const Entry &entry) const
{
    if (current.count >= current.columns.size() || prefix.size() == 0)
        return false;
    const Span column = current.columns.at(current.count);
    const int size = prefix.size();
    const Span key = entry.keyText();
    return column.size() > 0 && key.size() == size + column.size() &&
           IniText::isSame(start(key, size), prefix) && IniText::isSame(behind(key, size), column);
}

bool TextRows::continuesRow(const Entry &entry)
{
    const Span key = entry.keyText();
    if (prefix.size() > 0 && key.size() >= prefix.size() &&
        IniText::isSame(start(key, prefix.size()), prefix) &&
        std::none_of(key.begin + prefix.size(), key.end, isSeparatorOrEscape))
        return true;
    if (placeOf(entry.key()) != place)
        return false;
    prefix = {}; // the cells of this row differ in more than their columns
    return true;
}

void TextRows::takeCell(const Entry &entry, bool isRepeated)
{
    const int number = current.count++;
    if (isRepeated)
        return;
    current.columns.resize(std::max(current.columns.size(), current.count));
    current.columns[number] =
        prefix.size() > 0 ? behind(entry.keyText(), prefix.size()) : Span{nullptr, nullptr};
}
