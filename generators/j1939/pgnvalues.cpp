// The variables of signals that the application leaves to the tool.
#include "generators/abstractgenerator.h"
#include "generators/ctext.h"
#include "generators/j1939/pgnsections.h"
#include "generators/j1939/pgntypes.h"
#include "support/implementation.h"
#include "support/parametergroups.h"

#include <array>

namespace
{

using namespace Pgn;

struct ArrayWords {
    ValueArray array;
    const char *declaration; ///< up to the size
    const char *start;       ///< before a value
    const char *end;         ///< after it
};

// clang-format off
constexpr ArrayWords kArrayWords[kValueArrayCount] = { // order of the file
    {ValueArray::U8,  "static UNSIGNED8\tmv_u8[",   "\t(UNSIGNED8)",  "u"},
    {ValueArray::I8,  "static INTEGER8\tmv_i8[",    "\t(INTEGER8)",   "u"},
    {ValueArray::U16, "static UNSIGNED16\tmv_u16[", "\t(UNSIGNED16)", "u"},
    {ValueArray::I16, "static INTEGER16\tmv_i16[",  "\t(INTEGER16)",  "u"},
    {ValueArray::U32, "static UNSIGNED32\tmv_u32[", "\t(UNSIGNED32)", "UL"},
    {ValueArray::I32, "static INTEGER32\tmv_i32[",  "\t(INTEGER32)",  "UL"},
    {ValueArray::U64, "static UNSIGNED64\tmv_u64[", "\t",             ""},
    {ValueArray::R32, "static REAL32\tmv_r32[",     "\t(REAL32)",     ""},
};
// clang-format on

constexpr bool wordsFollowTheEnum()
{
    for (int i = 0; i < kValueArrayCount; ++i) {
        if (static_cast<int>(kArrayWords[i].array) != i)
            return false;
    }
    return true;
}
static_assert(wordsFollowTheEnum(), "the array is the place in the table");

/// A variable, and the signal that it stands for.
struct Variable {
    quint8 line;
    quint32 frame; ///< parameter group or CAN identifier
    quint32 signal;
    QString value; ///< empty: 0, since variables are not initialised
    bool isName;   ///< part of the NAME of the device
};

struct ArrayContent {
    QVector<Variable> variables;
    bool isReferenced = false; ///< by some mapping of the file
    bool hasName = false;
};
using Contents = std::array<ArrayContent, kValueArrayCount>;

void addVariable(Contents &contents, Signal &signal, ValueArray array, const Variable &variable,
                 bool isReferenced)
{
    ArrayContent &content = contents[static_cast<size_t>(array)];
    signal.place = Place{array, content.variables.size()};
    content.variables << variable;
    content.isReferenced = content.isReferenced || isReferenced;
    content.hasName = content.hasName || variable.isName;
}

QString textOf64(quint64 value)
{
    return AbstractGenerator::convertValue(CAN::CANopenDataType::Unsigned64, value, 0);
}

/// The text of \a value as the array holds it.
QString valueText(ValueArray array, const QString &value)
{
    if (array == ValueArray::R32)
        return CText::realNumber(value);
    return array == ValueArray::U64 ? textOf64(Numbers::toULongLongByPrefix(value))
                                    : QString::number(Numbers::toLongLongByPrefix(value));
}

QString valueOf(const Group &group, ValueArray array, const SignalData &data)
{
    if (group.data.number == ParameterGroup::kAddressClaimed)
        return valueText(array, data.defaultValue);
    // Deliberate: signed parameters and reals have variables too, since their mappings refer to
    // them; held by tst_pgngenerator.
    const std::optional<quint64> unknown = notAvailable(data.dataType);
    if (!unknown)
        return valueText(array, data.defaultValue);
    return array == ValueArray::U64 ? textOf64(*unknown) : QString::number(*unknown);
}

QString valueOf(const Identifier &, ValueArray array, const SignalData &data)
{
    return valueText(array, data.defaultValue);
}

/// What groups and identifiers differ in.
struct FrameFacts {
    quint32 number;
    bool isReferenced; ///< has a mapping in the file
    bool isName;       ///< carries the NAME of the device
};

FrameFacts factsOf(const Context &context, const Line &line, const Group &group)
{
    return {group.data.number, hasMapping(context, line, group),
            group.data.number == ParameterGroup::kAddressClaimed};
}

FrameFacts factsOf(const Context &, const Line &line, const Identifier &identifier)
{
    return {identifier.data.id, line.type == LineType::RawCan, false};
}

template <class Frame>
void collectVariables(const Context &context, Contents &contents, const Line &line,
                      QVector<Frame> &frames)
{
    for (Frame &frame : frames) {
        const FrameFacts facts = factsOf(context, line, frame);
        for (Signal &signal : frame.mapping) {
            const auto array = arrayOf(signal.data.dataType);
            if (signal.data.implementation != Implementation::kManagedVariable || !array)
                continue;
            const bool hasValue = context.form.initialiseValues || facts.isName;
            addVariable(contents, signal, *array,
                        {line.number, facts.number, signal.data.number,
                         hasValue ? valueOf(frame, *array, signal.data) : QString(), facts.isName},
                        facts.isReferenced);
        }
    }
}

void writeIndex(Context &context, const Variable &variable)
{
    context.out.raw(" /* ");
    if (context.form.multiLine)
        context.out.parts(quint32(variable.line), "-");
    context.out.parts(variable.frame, ":", variable.signal, " */");
}

void writeArray(Context &context, const ArrayWords &words, const ArrayContent &content)
{
    TextWriter &out = context.out;
    out.parts(words.declaration, quint32(content.variables.size()), "]");
    // Deliberate: a device has its NAME whether or not variables are initialised, held by
    // tst_pgngenerator.
    if (!context.form.initialiseValues && !content.hasName) {
        out.raw(";\n");
        return;
    }
    out.raw("= {\n");
    const QString zero = valueText(words.array, QStringLiteral("0"));
    const char *separator = "";
    for (const Variable &variable : content.variables) {
        out.parts(separator, words.start, variable.value.isEmpty() ? zero : variable.value,
                  words.end);
        writeIndex(context, variable);
        separator = ",\n";
    }
    out.raw("};\n");
}

} // namespace

void Pgn::defineManagedVariables(Context &context)
{
    Contents contents;
    for (Line &line : context.lines) {
        for (Traffic *traffic : {&line.received, &line.transmitted}) {
            collectVariables(context, contents, line, traffic->groups);
            collectVariables(context, contents, line, traffic->identifiers);
        }
    }
    context.out.raw("\n/* definition of managed variables */\n");
    for (const ArrayWords &words : kArrayWords) {
        const ArrayContent &content = contents[static_cast<size_t>(words.array)];
        // Deliberate: the compiler warns of an array that nothing refers to, such as one of safe
        // signals only; held by tst_pgngenerator.
        if (content.isReferenced)
            writeArray(context, words, content);
    }
}
