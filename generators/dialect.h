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

/// Words that several families of generated C share.
struct StackDialect : Dialect {
    const char *constMacro = "";     ///< before constant data
    const char *watchdogMacro = "";  ///< called between the steps of the start-up
    const char *lineCountMacro = ""; ///< number of lines, as the definitions header names it
};

constexpr StackDialect classicStack()
{
    StackDialect d;
    d.constMacro = "CO_CONST";
    d.watchdogMacro = "CO_HANDLE_WATCHDOG";
    d.lineCountMacro = "CO_MULTI_LINE_CNT";
    return d;
}

constexpr StackDialect v4Stack()
{
    StackDialect d = classicStack();
    d.preferV4 = true;
    d.constMacro = "CORE_CONST";
    d.watchdogMacro = "CORE_HANDLE_WATCHDOG";
    // Deliberate: the name that the definitions header of this generation has, held by
    // tst_pgngenerator.
    d.lineCountMacro = "CAN_MULTI_LINE_CNT";
    return d;
}
