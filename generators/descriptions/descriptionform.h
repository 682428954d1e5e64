// How one code path writes descriptions in two forms: the classic one, which is fixed to the byte,
// and the portable one, which follows the standards to the letter, so that other tools take it.
#pragma once

/// A text that differs between the forms; without a portable text it is the same in both.
struct FormWord {
    const char *classic;
    const char *portable = nullptr;
};

/// The base of a record of differences; each kind of file adds its own words and flags.
struct DescriptionForm {
    bool preferPortable = false; ///< asked in of() and nowhere else

    constexpr const char *of(const FormWord &word) const
    {
        return preferPortable && word.portable ? word.portable : word.classic;
    }
};
