// How the cells of a project's columns are spelled in its YAML form. yamlcolumns.h holds the tables
// made of it, a row for each column of columns.h.
#pragma once

#include "store/rowmapping.h"

/// How the cells of a column are spelled.
enum class YamlForm {
    Text,    ///< a text
    Written, ///< a text that mostly holds a number, and keeps its spelling
    Number,  ///< decimal; hexadecimal is read, too
    Hex,     ///< hexadecimal; decimal is read, too
    Flag,    ///< true or false; 0 and 1, yes and no, on and off are read, too
    Word, ///< a word of a list; its number is read as well, and stands for numbers without a word
    Type, ///< a data type by its short name; its long name and its number are read as well
    WordText,   ///< a text, mostly a word of a list
    NumberList, ///< a text of decimal numbers parted by commas, as a list; any other text as it is
    Map,        ///< a map of texts (metadata)
};

struct YamlWord {
    qint64 number;
    const char *word;
};

/// The words of a column; the first one of a number is written, the others are read.
struct YamlWords {
    const YamlWord *first = nullptr;
    int count = 0;

    constexpr YamlWords() = default;
    template <int N>
    constexpr YamlWords(const YamlWord (&words)[N]) : first(words), count(N)
    {
    }
    const YamlWord *begin() const { return first; }
    const YamlWord *end() const { return first + count; }
};

/// Stands beside the column of the same place in its table.
struct YamlColumn {
    const char *column;
    const char *word; ///< key of the file; null: the place in the file says it
    YamlForm form = YamlForm::Text;
    YamlWords words = {};
    const char *help = nullptr; ///< one line for a person who writes the key
};

constexpr bool isSameText(const char *a, const char *b)
{
    for (; *a && *a == *b; ++a, ++b) {
    }
    return *a == *b;
}

/// A row for each column, in the order on disk, no word twice, and none without help.
template <class Record, size_t N, size_t M>
constexpr bool belongTogether(const YamlColumn (&words)[N], const Column<Record> (&columns)[M])
{
    if (N != M)
        return false;
    for (size_t i = 0; i < N; ++i) {
        if (!isSameText(words[i].column, columns[i].name))
            return false;
        if (words[i].word && !words[i].help)
            return false;
        for (size_t k = 0; k < i && words[i].word; ++k) {
            if (words[k].word && isSameText(words[i].word, words[k].word))
                return false;
        }
    }
    return true;
}

/// The columns of a record with their words.
template <class Record>
struct YamlTable {
    const Column<Record> *columns;
    const YamlColumn *words;
    int count;

    template <size_t N>
    constexpr YamlTable(const Column<Record> (&fields)[N], const YamlColumn (&keys)[N])
        : columns(fields), words(keys), count(int(N))
    {
    }
};
