// How one code path writes for two generations of the protocol stack.
#pragma once

/// A text that differs between the generations; without a V4 text it is the same in both.
struct Word {
    const char *classic;
    const char *v4 = nullptr;
};

/// The base of a record of differences; each family of files adds its own words and flags.
struct Dialect {
    bool preferV4 = false; ///< asked in of() and nowhere else

    constexpr const char *of(const Word &word) const
    {
        return preferV4 && word.v4 ? word.v4 : word.classic;
    }
};
