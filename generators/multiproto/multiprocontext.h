// What the sections of the source of several protocols share: the form of the file, and the
// contexts of the object dictionary's and of the J1939 sections, which write into the same file.
#pragma once

#include "generators/j1939/pgncontext.h"
#include "generators/objdict/objdictcontext.h"

namespace MultiPro
{

/// The words of one generation of the stack.
struct Dialect {
    ObjDict::Dialect objDict;
    Pgn::Dialect pgn;
};

constexpr Dialect classicDialect()
{
    return {ObjDict::classicDialect(), Pgn::classicDialect()};
}

constexpr Dialect v4Dialect()
{
    return {ObjDict::v4Dialect(), Pgn::v4Dialect()};
}

/// What the project needs, decided before the file is opened, since its name depends on it.
struct Facts {
    bool hasCANopen = false; ///< some line speaks it, as below; one of both protocols counts twice
    bool hasJ1939 = false;
    bool hasRaw = false;
    bool hasUds = false;       ///< server or client
    bool hasCiA510 = false;    ///< SDO server of the J1939 lines
    bool multiLine = false;    ///< see ProjectLines
    bool takesOptions = false; ///< the start-up is told whether the device is master

    /// Raw CAN alone: the start-up has no protocols to choose from.
    bool isRawOnly() const { return hasRaw && !hasCANopen && !hasJ1939; }
};
Facts readFacts(const ObjectDataBase &store);

/// Handed to each section. The sections of a file share one context.
struct Context {
    Facts facts;
    TextWriter &out;
    ObjDict::Context objDict;
    Pgn::Context pgn; ///< also the lines of the project

    /// A text in the words of the stack.
    const char *of(const Word &word) const { return objDict.dialect.of(word); }
};

/// Both contexts take the form of the file. \a dialect outlives the context.
Context makeContext(ObjectDataBase &store, TextWriter &out, const Dialect &dialect,
                    quint8 activeLine);

/// Lines that are started, ascending. The stack counts the others as well, but gives them nothing
/// to do.
QList<quint8> startedLines(const Context &context);

} // namespace MultiPro
