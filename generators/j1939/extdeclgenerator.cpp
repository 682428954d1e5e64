// Variables of the application, declared and defined.
#include "generators/j1939/extdeclgenerator.h"

#include "generators/codefeatures.h"
#include "generators/ctext.h"
#include "generators/generalsettings.h"
#include "generators/outputname.h"
#include "generators/projectlines.h"
#include "generators/textwriter.h"
#include "store/linetype.h"
#include "support/helper.h"
#include "support/implementation.h"
#include "support/numbers.h"

#include <QRegularExpression>
#include <QSet>
#include <QStringBuilder>

#include <algorithm>
#include <optional>

namespace
{

using Type = CAN::CANopenDataType;

enum class Form {
    Unsigned,
    Signed,
    Bytewise, ///< initialised by a macro of the stack
    Real,
    Chars, ///< an array whose size is a property of the signal or object, as is the next one's
    Bytes,
    Opaque, ///< the stack has no macro for a value
};

} // namespace

/// A type of the stack.
struct ExtDecl::CType {
    const char *name;
    Form form;
    int bytes;
    Type byteMacro = Type::Unknown; ///< of Form::Bytewise
};

namespace
{

using ExtDecl::CType;
using ExtDecl::Variable;
using ExtDecl::Variables;

constexpr quint32 kHighestElement = 0xFFFF;

constexpr CType kU8 = {"UNSIGNED8", Form::Unsigned, 1};
constexpr CType kU16 = {"UNSIGNED16", Form::Unsigned, 2};
constexpr CType kU24 = {"UNSIGNED24", Form::Bytewise, 3, Type::Unsigned24};
constexpr CType kU32 = {"UNSIGNED32", Form::Unsigned, 4};
constexpr CType kU40 = {"UNSIGNED40", Form::Bytewise, 5, Type::Unsigned40};
constexpr CType kU48 = {"UNSIGNED48", Form::Bytewise, 6, Type::Unsigned48};
constexpr CType kU64 = {"UNSIGNED64", Form::Bytewise, 8, Type::Unsigned64};
constexpr CType kI8 = {"INTEGER8", Form::Signed, 1};
constexpr CType kI16 = {"INTEGER16", Form::Signed, 2};
constexpr CType kI24 = {"INTEGER24", Form::Bytewise, 3, Type::Integer24};
constexpr CType kI32 = {"INTEGER32", Form::Signed, 4};
constexpr CType kI64 = {"INTEGER64", Form::Opaque, 8};
constexpr CType kR32 = {"REAL32", Form::Real, 4};
constexpr CType kR64 = {"REAL64", Form::Opaque, 8};
constexpr CType kChars = {"char", Form::Chars, 1};
constexpr CType kBytes = {"UNSIGNED8", Form::Bytes, 1};
constexpr CType kOctets = {"OCTET_STRING", Form::Bytes, 1};

/// Signals of frames live in the next wider number; objects keep their width.
struct TypeRow {
    Type type;
    const CType *ofSignal;
    const CType *ofObject;
};

// clang-format off
constexpr TypeRow kTypes[] = {
    {Type::Boolean,        &kU8,    &kU8},
    {Type::Integer8,       &kI8,    &kI8},
    {Type::Integer16,      &kI16,   &kI16},
    {Type::Integer24,      &kI32,   &kI24},
    {Type::Integer32,      &kI32,   &kI32},
    {Type::Integer40,      &kI64,   &kI64},
    {Type::Integer48,      &kI64,   &kI64},
    {Type::Integer56,      &kI64,   &kI64},
    {Type::Integer64,      &kI64,   &kI64},
    {Type::Unsigned2,      &kU8,    &kU8},
    {Type::Unsigned3,      &kU8,    &kU8},
    {Type::Unsigned4,      &kU8,    &kU8},
    {Type::Unsigned5,      &kU8,    &kU8},
    {Type::Unsigned6,      &kU8,    &kU8},
    {Type::Unsigned7,      &kU8,    &kU8},
    {Type::Unsigned8,      &kU8,    &kU8},
    {Type::Unsigned9,      &kU16,   &kU16},
    {Type::Unsigned10,     &kU16,   &kU16},
    {Type::Unsigned11,     &kU16,   &kU16},
    {Type::Unsigned12,     &kU16,   &kU16},
    {Type::Unsigned13,     &kU16,   &kU16},
    {Type::Unsigned14,     &kU16,   &kU16},
    {Type::Unsigned15,     &kU16,   &kU16},
    {Type::Unsigned16,     &kU16,   &kU16},
    {Type::Unsigned18,     &kU32,   &kU32},
    {Type::Unsigned19,     &kU32,   &kU32},
    {Type::Unsigned21,     &kU32,   &kU32},
    {Type::Unsigned24,     &kU32,   &kU24},
    {Type::Unsigned29,     &kU32,   &kU32},
    {Type::Unsigned32,     &kU32,   &kU32},
    {Type::Unsigned40,     &kU64,   &kU40},
    {Type::Unsigned48,     &kU64,   &kU48},
    {Type::Unsigned56,     &kU64,   &kU64},
    {Type::Unsigned64,     &kU64,   &kU64},
    {Type::TimeOfDay,      &kU64,   &kU48},
    {Type::TimeDifference, &kU64,   &kU48},
    {Type::Real32,         &kR32,   &kR32},
    {Type::Real64,         &kR64,   &kR64},
    {Type::VisibleString,  &kChars, &kChars},
    {Type::Utf8String,     &kChars, &kChars},
    {Type::StringNull,     &kChars, &kChars},
    {Type::StringAsterisk, &kChars, &kChars},
    {Type::OctetString,    &kBytes, &kOctets},
    {Type::UnicodeString,  &kBytes, &kBytes},
    {Type::Domain,         &kBytes, &kBytes},
};
// clang-format on

bool isSized(const CType &type)
{
    return type.form == Form::Chars || type.form == Form::Bytes;
}

const CType *typeOf(quint32 dataType, const CType *TypeRow::*use)
{
    for (const TypeRow &row : kTypes) {
        if (static_cast<quint32>(row.type) == dataType)
            return row.*use;
    }
    return nullptr;
}

/// Words that are not names of variables though they look like some (ISO C99, 6.4.1).
bool isReserved(const QString &name)
{
    static const QSet<QString> words = [] {
        const char *const text =
            "auto break case char const continue default do double else enum extern float for goto "
            "if inline int long register restrict return short signed sizeof static struct switch "
            "typedef union unsigned void volatile while _Bool _Complex _Imaginary NULL";
        const QStringList list = QString::fromLatin1(text).split(QLatin1Char(' '));
        return QSet<QString>(list.begin(), list.end());
    }();
    return words.contains(name);
}

/// A variable, or an element of an array, by its name.
struct Name {
    QString name; ///< empty for any other expression
    bool isElement = false;
    quint32 index = 0;
};

bool isPlainName(const QString &text)
{
    const bool hasOnlyNameCharacters = std::all_of(text.begin(), text.end(), [](QChar character) {
        const ushort code = character.unicode();
        return (code >= 'A' && code <= 'Z') || (code >= 'a' && code <= 'z') ||
               (code >= '0' && code <= '9') || code == '_';
    });
    return hasOnlyNameCharacters && !text.isEmpty() && !text.at(0).isDigit();
}

Name parseName(const QString &expression)
{
    if (isPlainName(expression)) // most are, and need no pattern
        return {isReserved(expression) ? QString() : expression, false, 0};
    if (expression.contains(QLatin1Char('.'))) // a member, which is not declared by itself
        return {};
    static const QRegularExpression pattern(
        QStringLiteral("^\\s*([A-Za-z_][A-Za-z0-9_]*)\\s*"
                       "(?:\\[\\s*(0|[1-9][0-9]*|0[xX][0-9A-Fa-f]+)[uUlL]{0,3}\\s*\\]\\s*)?$"));
    const QRegularExpressionMatch match = pattern.match(expression);
    Name found;
    found.isElement = !match.captured(2).isEmpty();
    bool isIndex = true;
    if (found.isElement)
        found.index = Numbers::toUIntByPrefix(match.captured(2), &isIndex);
    if (match.hasMatch() && isIndex && found.index <= kHighestElement &&
        !isReserved(match.captured(1)))
        found.name = match.captured(1);
    return found;
}

/// The object whose table names a variable.
struct ObjectPlace {
    quint8 line;
    quint16 index;
    quint8 subindex;
};

/// Where a table names a variable.
struct Use {
    QString expression;
    const CType *type = nullptr;
    quint32 bytes = 0; ///< of a string
    QString defaultValue;
    std::optional<ObjectPlace> object = std::nullopt; ///< takes pointers of this type only
};

/// What a pointer to it points to.
QString typeText(const CType &type, bool isElement)
{
    return QLatin1String(type.name) + QLatin1String(isSized(type) ? "[]" : "") +
           QLatin1String(isElement ? " in an array" : "");
}

/// Gathers uses to variables.
class Collector
{
public:
    void add(const Use &use)
    {
        if (use.expression.trimmed().isEmpty())
            return;
        const Name target = parseName(use.expression);
        if (target.name.isEmpty() || !use.type) {
            addOther(use);
            return;
        }
        Variable &variable = variableOf(target.name);
        compare(variable, target, use);
        if (decidesType(variable, use)) {
            variable.type = use.type;
            variable.bytes = bytesOf(use);
        }
        if (target.isElement)
            variable.elements = std::max(variable.elements, target.index + 1);
        variable.defaultValues.emplace(target.index, use.defaultValue); // the first one stays
    }

    const Variables &all() const { return variables; }

private:
    Variable &variableOf(const QString &name)
    {
        const auto known = variables.places.constFind(name);
        if (known != variables.places.constEnd())
            return variables.declared[*known];
        variables.places.insert(name, variables.declared.size());
        Variable variable;
        variable.name = name;
        variables.declared << std::move(variable);
        return variables.declared.last();
    }

    void addOther(const Use &use)
    {
        const bool isKnown = knownOthers.contains(use.expression);
        const QString expression = isKnown ? use.expression : use.expression.simplified();
        if (!isKnown && !knownOthers.contains(expression)) {
            variables.others << expression;
            knownOthers.insert(expression);
        }
        addMisfit(use, expression, {}, {});
    }

    /// Does the object take the variable as those before it do? Signals take it as it is declared.
    void compare(const Variable &variable, const Name &target, const Use &use)
    {
        const bool isElement = variable.elements > 0;
        const bool isFirstObject = use.object && !ofObjects.contains(target.name);
        if (use.object)
            ofObjects.insert(target.name);
        if (!variable.type ||
            (isFirstObject && decidesType(variable, use) && (target.isElement || !isElement)))
            return;
        if (variable.type != use.type || isElement != target.isElement)
            addMisfit(use, target.name, typeText(*use.type, target.isElement),
                      typeText(*variable.type, isElement));
    }

    static quint32 bytesOf(const Use &use)
    {
        return isSized(*use.type) ? std::max(use.bytes, 1U) : quint32(use.type->bytes);
    }

    static bool decidesType(const Variable &variable, const Use &use)
    {
        const quint32 bytes = bytesOf(use);
        return bytes > variable.bytes || (use.object && bytes == variable.bytes);
    }

    void addMisfit(const Use &use, const QString &name, const QString &type,
                   const QString &otherType)
    {
        if (!use.object || knownMisfits.contains(name))
            return;
        knownMisfits.insert(name);
        variables.misfits << ExtDecl::Misfit{
            name, use.object->line, use.object->index, use.object->subindex, type, otherType};
    }

    Variables variables;
    QSet<QString> ofObjects;
    QSet<QString> knownOthers;
    QSet<QString> knownMisfits;
};

/// Of a string.
quint32 bytesOf(const SignalData &signal)
{
    return (signal.bitSize + 7U) / 8;
}

template <class Signal>
void addSignals(Collector &collector, const QVector<Signal> &list)
{
    for (const Signal &signal : list) {
        // A mapping names the variable of all others.
        if (signal.implementation != Implementation::kManagedVariable)
            collector.add({signal.varName, typeOf(signal.dataType, &TypeRow::ofSignal),
                           bytesOf(signal), signal.defaultValue});
    }
}

bool carriesFrames(LineType type)
{
    return carriesJ1939(type) || type == LineType::RawCan;
}

void addFrames(Collector &collector, const ObjectDataBase &store, quint8 line)
{
    const LineType type = readLineType(store, line);
    if (!carriesFrames(type))
        return;
    for (const quint8 direction : {Direction::kReceived, Direction::kTransmitted}) {
        const QList<quint32> frames = carriesJ1939(type) ? store.getPGNs(line, direction, false)
                                                         : store.getCANIDs(line, direction);
        for (const quint32 frame : frames) {
            if (carriesJ1939(type))
                addSignals(collector, store.getSPNRecords(line, frame, direction));
            else
                addSignals(collector, store.getDataElementRecords(line, frame, direction));
        }
    }
}

/// Is a table of objects written at all? Lines of other protocols may have stale ones.
bool hasDictionary(const ObjectDataBase &store, const QList<quint8> &lines)
{
    return readCodeFeatures(store).hasSdoServer() ||
           std::any_of(lines.begin(), lines.end(),
                       [&](quint8 line) { return carriesCANopen(readLineType(store, line)); });
}

bool isDomain(const SubIndexData &data)
{
    return data.dataType == CAN::typeNumber(Type::Domain);
}

/// The application hands domains to the stack at run time: no table but that of a PDO names one.
bool isNamedByTables(const SubIndexData &data, const ProjectFeatures &features)
{
    return data.implementation == Implementation::kApplicationVariable &&
           (!isDomain(data) || (features.hasGeneratedVariables() &&
                                !data.pdoMapping.isEqualToType(PDOMappingType::No)));
}

/// What a PDO takes of a domain is told by the PDO alone, so that there is room for a whole frame.
quint32 bytesOf(const SubIndexData &data, const ProjectFeatures &features)
{
    const quint32 frame = features.hasCanFd() ? 64 : 8;
    return isDomain(data) ? std::max(data.size, frame) : data.size;
}

void addObjects(Collector &collector, const ObjectDataBase &store, quint8 line)
{
    const ProjectFeatures features = readCodeFeatures(store);
    store.visitLine(line, [&](quint16 index, quint8 sub, const SubIndexData &data) {
        if (isNamedByTables(data, features))
            collector.add({Helper::substituteVariables(data.varName, index, sub),
                           typeOf(data.dataType, &TypeRow::ofObject), bytesOf(data, features),
                           data.defaultValue, ObjectPlace{line, index, sub}});
    });
}

void addObjects(Collector &collector, const ObjectDataBase &store, const QList<quint8> &lines)
{
    if (!hasDictionary(store, lines))
        return;
    for (const quint8 line : lines)
        addObjects(collector, store, line);
}

/// \a value cut to the width of the type.
QString signedText(const CType &type, qint64 value)
{
    const int unused = 64 - 8 * type.bytes;
    const auto cut = static_cast<qint64>(static_cast<quint64>(value) << unused) >> unused;
    return QString::number(cut) % QLatin1String(type.bytes == 4 ? "L" : "");
}

QString unsignedText(const CType &type, quint64 value)
{
    return QString::number(value & (~quint64(0) >> (64 - 8 * type.bytes))) %
           QLatin1String(type.bytes == 4 ? "UL" : "u");
}

/// Bytes in braces. After "|x" the project gives them in hexadecimal. \a pattern is that of one
/// byte: a char may be signed and would not take a number above 127.
QString bytesText(const QString &text, quint32 size, const QString &pattern)
{
    QByteArray bytes = text.startsWith(QLatin1String("|x"))
                           ? QByteArray::fromHex(text.mid(2).toLatin1())
                           : text.toUtf8();
    if (quint32(bytes.size()) > size)
        bytes.truncate(int(size));
    QStringList list;
    for (const char byte : qAsConst(bytes))
        list << pattern.arg(Numbers::toHex(quint8(byte), 2));
    return list.isEmpty() ? QString()
                          : QStringLiteral("{ %1 }").arg(list.join(QLatin1String(", ")));
}

/// Initialiser of one element; empty where C's zeros are the value.
QString valueText(const Variable &variable, const QString &text)
{
    const CType &type = *variable.type;
    switch (type.form) {
    case Form::Unsigned:
        return unsignedText(type, Numbers::toULongLongByPrefix(text));
    case Form::Signed:
        return signedText(type, Numbers::toLongLongByPrefix(text));
    case Form::Bytewise:
        return AbstractGenerator::convertValue(type.byteMacro, Numbers::toULongLongByPrefix(text),
                                               Numbers::toLongLongByPrefix(text));
    case Form::Real:
        return CText::realNumber(text);
    case Form::Chars:
        return bytesText(text, variable.bytes, QStringLiteral("'\\x%1'"));
    case Form::Bytes:
        return bytesText(text, variable.bytes, QStringLiteral("0x%1"));
    case Form::Opaque:
        break;
    }
    return QString();
}

/// Type, name and dimensions; \a elements is the text of an array's first dimension.
QString declarator(const Variable &variable, const QString &elements)
{
    constexpr int kUsualLength = 80; // with a value
    QString text;
    text.reserve(kUsualLength);
    text += QLatin1String(variable.type->name);
    text += QLatin1Char(' ');
    text += variable.name;
    if (variable.elements > 0)
        text += QLatin1Char('[') + elements + QLatin1Char(']');
    if (isSized(*variable.type))
        text += QStringLiteral("[%1]").arg(variable.bytes);
    return text;
}

constexpr Dialect v4Words()
{
    Dialect words;
    words.preferV4 = true;
    return words;
}

constexpr Word kTitle = {
    " * External declarations for $project$ - generated by $tool$ $version$\n",
    " * External declarations for $project$ - generated by $tool$ $version$ (V4)\n"};
constexpr Word kSourceTitle = {" * Variables for $project$ - generated by $tool$ $version$\n",
                               " * Variables for $project$ - generated by $tool$ $version$ (V4)\n"};
constexpr Word kDataTypes = {"#include <co_datatype.h>\n", "#include <core_datatype.h>\n"};

void writeOthers(TextWriter &out, const QStringList &others)
{
    if (others.isEmpty())
        return;
    out.raw("/* Not declared here, since they are no plain names or have no known type:\n");
    for (const QString &other : others)
        out.parts(" *   ", CText::comment(other), "\n");
    out.raw(" */\n\n");
}

/// The headers that know the types of the application. A project may name this one as well, for
/// its object dictionary.
void writeApplicationHeaders(TextWriter &out, const ObjectDataBase &store)
{
    QStringList headers = OutputName::headers(GeneralSettings(store).freeText("applicationheader"));
    headers.removeAll(QStringLiteral("gen_extern_decl.h"));
    if (headers.isEmpty())
        return;
    out.raw("/* application header file(s) */\n");
    for (const QString &header : qAsConst(headers))
        out.parts("#include \"", header, "\"\n");
    out.raw("\n");
}

void writeHeader(TextWriter &out, const Variables &variables, const ObjectDataBase &store,
                 const Dialect &dialect)
{
    out.block(R"(
#ifndef GEN_EXTERN_DECL_H
#define GEN_EXTERN_DECL_H 1

#include <gen_define.h>
)");
    out.raw(dialect.of(kDataTypes));
    out.raw("\n");
    writeApplicationHeaders(out, store);
    for (const Variable &variable : variables.declared)
        out.parts("extern ", ExtDecl::declaration(variable), ";\n");
    out.raw("\n");
    writeOthers(out, variables.others);
    out.raw("#endif /* GEN_EXTERN_DECL_H */\n");
}

void writeSource(TextWriter &out, const Variables &variables)
{
    out.block(R"(
#include <gen_define.h>
#include <gen_extern_decl.h>

)");
    for (const Variable &variable : variables.declared)
        out.parts(ExtDecl::definition(variable), ";\n");
}

} // namespace

ExtDecl::Variables ExtDecl::readVariables(ObjectDataBase &store)
{
    const QList<quint8> lines = readProjectLines(store).numbers;
    for (const quint8 line : lines) {
        if (carriesFrames(readLineType(store, line)))
            store.cacheAllSpnDataForLine(line);
    }
    return readVariables(qAsConst(store));
}

ExtDecl::Variables ExtDecl::readVariables(const ObjectDataBase &store)
{
    Collector collector;
    const QList<quint8> lines = readProjectLines(store).numbers;
    for (const quint8 line : lines)
        addFrames(collector, store, line);
    addObjects(collector, store, lines);
    return collector.all();
}

ExtDecl::Access ExtDecl::accessTo(const Variables &variables, const SignalData &signal)
{
    const Name target = parseName(signal.varName);
    const auto place = variables.places.constFind(target.name);
    if (place != variables.places.constEnd()) {
        const Variable &variable = variables.declared.at(*place);
        const QString element =
            QStringLiteral("%1[%2]").arg(target.name, QString::number(target.index));
        return {variable.elements > 0 ? element : target.name, variable.type->name,
                isSized(*variable.type) ? variable.bytes : 0};
    }
    const CType *type = typeOf(signal.dataType, &TypeRow::ofSignal);
    const QString expression = CText::expression(signal.varName.trimmed());
    if (!type || expression.isEmpty())
        return {};
    if (isSized(*type))
        return {expression, type->name, std::max(bytesOf(signal), 1U)};
    const bool isAddress =
        expression.contains(QLatin1Char('&')) || expression.contains(QLatin1Char('*'));
    return {isAddress ? QStringLiteral("*(%1)").arg(expression) : expression, type->name, 0};
}

QString ExtDecl::declaration(const Variable &variable)
{
    // Deliberate: no number of elements, since the application may have an array with more of them
    // than the tables name; held by tst_extdeclgenerator.
    return declarator(variable, QString());
}

QString ExtDecl::definition(const Variable &variable)
{
    if (variable.elements == 0) {
        const QString value = valueText(variable, variable.defaultValues.at(0));
        QString text = declarator(variable, QString());
        if (!value.isEmpty()) {
            text += QLatin1String(" = ");
            text += value;
        }
        return text;
    }
    const QString start = declarator(variable, QString::number(variable.elements));
    QStringList values;
    for (const auto &[index, text] : variable.defaultValues) {
        const QString value = valueText(variable, text);
        if (!value.isEmpty())
            values << QStringLiteral("[%1] = ").arg(index) + value;
    }
    return values.isEmpty()
               ? start
               : start + QStringLiteral(" = { %1 }").arg(values.join(QLatin1String(", ")));
}

ExtDeclGenerator::ExtDeclGenerator(const Dialect &words)
    : FileGenerator(QStringLiteral("gen_extern_decl.h")), dialect(words)
{
}

ExtDeclGeneratorV4::ExtDeclGeneratorV4() : ExtDeclGenerator(v4Words()) {}

bool ExtDeclGenerator::checkWritability()
{
    return FileGenerator::checkWritability() && isNewOrWritable(sourceFile());
}

void ExtDeclGenerator::writeFiles()
{
    const ExtDecl::Variables variables = ExtDecl::readVariables(*database);
    const bool isOpen = writeText(targetFile(), [&](TextWriter &out) {
        CText::writeHead(out, dialect.of(kTitle), projectName, toolVersion);
        writeHeader(out, variables, *database, dialect);
    });
    if (!isOpen)
        return;
    writeText(sourceFile(), [&](TextWriter &out) {
        CText::writeHead(out, dialect.of(kSourceTitle), projectName, toolVersion);
        writeSource(out, variables);
    });
}
