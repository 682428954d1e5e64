// Compile-time checks of tables whose rows are chosen by a setting.
#pragma once

#include <cstddef>

namespace RowTables
{

constexpr bool isSameText(const char *one, const char *other)
{
    while (*one && *one == *other) {
        ++one;
        ++other;
    }
    return *one == *other;
}

/// Does each `setting` stand in one row only?
template <class Row, size_t N>
constexpr bool settingsAreUnique(const Row (&rows)[N])
{
    for (size_t i = 0; i < N; ++i) {
        for (size_t k = 0; k < i; ++k) {
            if (isSameText(rows[i].setting, rows[k].setting))
                return false;
        }
    }
    return true;
}

} // namespace RowTables
