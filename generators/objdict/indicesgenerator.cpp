// Names of objects, parameter groups and identifiers, and of what they hold.
#include "generators/objdict/indicesgenerator.h"

#include "generators/ctext.h"
#include "generators/textwriter.h"
#include "support/helper.h"
#include "support/numbers.h"

#include <QStringBuilder>

#include <array>
#include <charconv>

namespace
{

/// What becomes of an ASCII character in a name: letters of upper case, "_" for what cannot stand
/// there, blanks among them.
constexpr auto kNameCharacters = [] {
    std::array<char, 0x80> characters{};
    for (size_t code = 0; code < characters.size(); ++code) {
        const auto letter = static_cast<char>(code);
        const bool isLower = letter >= 'a' && letter <= 'z';
        const bool isFit = (letter >= 'A' && letter <= 'Z') || (letter >= '0' && letter <= '9');
        characters[code] = isLower ? static_cast<char>(letter - 'a' + 'A') : isFit ? letter : '_';
    }
    return characters;
}();

/// Of a text in upper case.
QString onlyNameCharacters(QString text)
{
    for (QChar &character : text) {
        const ushort code = character.unicode();
        character = QLatin1Char(code < kNameCharacters.size() ? kNameCharacters[code] : '_');
    }
    return text;
}

/// One "_" for a run of them.
QString withoutRuns(QString name)
{
    constexpr int kLongestRun = 7;
    static const QString shortestRun = QStringLiteral("__");
    if (!name.contains(shortestRun))
        return name;
    for (int length = kLongestRun; length > 1; --length)
        name.replace(QString(length, QLatin1Char('_')), QStringLiteral("_"));
    return name;
}

/// \a text after one of the prefixes that tell kinds of names apart, all of which end with "_".
QString prefixedName(const char *kind, const QString &text)
{
    QString name(static_cast<int>(qstrlen(kind)) + text.size(), Qt::Uninitialized);
    QChar *place = name.data();
    for (const char *letter = kind; *letter != '\0'; ++letter)
        *place++ = QLatin1Char(*letter);
    char former = '_';
    bool hasRun = false;
    for (const QChar character : text) {
        const ushort code = character.unicode();
        // Upper case comes first: that of a sharp s is two letters.
        if (code >= kNameCharacters.size())
            return withoutRuns(onlyNameCharacters(QLatin1String(kind) + text.toUpper()));
        const char fit = kNameCharacters[code];
        hasRun |= fit == '_' && former == '_';
        *place++ = QLatin1Char(fit);
        former = fit;
    }
    return hasRun ? withoutRuns(name) : name;
}

/// An attribute that only few records have.
QString givenName(const Metadata &metadata, const char *key)
{
    return metadata.isEmpty() ? QString() : metadata.value(QLatin1String(key));
}

QString objectName(const IndexData &data, quint16 index)
{
    // Deliberate: the user's own name keeps its runs of "_", and has no "I_" before it unless a
    // digit begins it, which no name of C can; held by tst_golden.
    const QString given = onlyNameCharacters(givenName(data.metadata, "objectdefine").toUpper());
    if (!given.isEmpty())
        return given.at(0).isDigit() ? QStringLiteral("I_") + given : given;
    const QString name = data.name.isEmpty() ? IndexData().name : data.name;
    return prefixedName("I_", Helper::substituteVariables(name, index, 0));
}

QString subIndexName(const SubIndexData &data, quint16 index, quint8 sub)
{
    const QString given = givenName(data.metadata, "subdefine");
    const QString name =
        given.isEmpty() ? Helper::substituteVariables(data.name, index, sub) : given;
    return prefixedName("S_", name);
}

std::optional<QString> claimObject(DefineNames &names, const QString &name, quint16 index)
{
    return names.claimCounted(name, index, "");
}

/// Communication objects of a kind have the same subindices.
std::optional<QString> claimSubIndex(DefineNames &names, const QString &name, quint16 index,
                                     quint8 sub)
{
    return index > ObjectRanges::kCommunication.last ? names.claimCounted(name, sub, "")
                                                     : names.claimShared(name, sub);
}

QString prefixOf(quint8 line, bool isMultiLine)
{
    return isMultiLine ? QStringLiteral("L%1_").arg(line) : QString();
}

/// Up to the column of the values.
const char *blanksAfter(const QString &name)
{
    static constexpr char kBlanks[] = "                         ";
    constexpr int kNameWidth = sizeof kBlanks - 1;
    return kBlanks + qMin(name.size(), kNameWidth);
}

/// Placeholders take the low 16 bits of a number.
QString frameName(const char *kind, const QString &name, quint32 number)
{
    return prefixedName(kind, Helper::substituteVariables(name, static_cast<quint16>(number), 0));
}

QString withCount(const QString &name, const char *separator, quint32 count)
{
    char digits[10];
    const char *end = std::to_chars(digits, digits + sizeof digits, count).ptr;
    return name % QLatin1String(separator) % QLatin1String(digits, int(end - digits));
}

} // namespace

DefineNames::DefineNames()
{
    // What the file itself defines.
    claimShared(QStringLiteral("S_NUMBER_OF_ENTRIES"), 0);
    claimShared(QStringLiteral("GEN_INDICES_H"), 1);
}

void DefineNames::startLine(const QString &linePrefix)
{
    if (linePrefix != prefix)
        names.clear();
    prefix = linePrefix;
    ++run;
}

bool DefineNames::isTaken(const QString &name, quint32 value) const
{
    return isTaken(names.value(name), value);
}

std::optional<QString> DefineNames::claimCounted(const QString &text, quint32 value,
                                                 const char *separator)
{
    Name &name = names[text];
    const bool isNew = !isTaken(name, value);
    if (name.usedIn != run)
        name.repeats = 0;
    name.usedIn = run;
    if (isNew && name.isWritten)
        return std::nullopt;
    if (isNew) {
        name.isWritten = true;
        name.value = value;
        return text;
    }
    // Deliberate: the count goes on until the name is new, since a name that was given with its
    // digits would lose its define otherwise; held by tst_golden.
    while (true) {
        const QString counted = withCount(text, separator, ++name.repeats);
        Name &next = names[counted]; // leaves the others where they are
        if (next.isWritten)
            continue;
        next.isWritten = true;
        next.value = value;
        return counted;
    }
}

std::optional<QString> DefineNames::claimShared(const QString &text, quint32 value)
{
    Name &name = names[text];
    if (name.isWritten)
        return std::nullopt;
    name.isWritten = true;
    name.value = value;
    return text;
}

bool DefineNames::isDefined(const QString &name, quint32 value) const
{
    const Name known = names.value(name);
    return known.isWritten && known.value == value;
}

void ObjectNames::startLine(quint8 line)
{
    prefix = prefixOf(line, multiLine);
    names.startLine(prefix);
}

QString ObjectNames::ofObject(quint16 index, const IndexData &data)
{
    const QString name = objectName(data, index);
    return prefix + claimObject(names, name, index).value_or(name);
}

QString ObjectNames::ofSubIndex(quint16 index, quint8 sub, const SubIndexData &data)
{
    const QString name = subIndexName(data, index, sub);
    const auto claimed = claimSubIndex(names, name, index, sub);
    if (claimed)
        return prefix + *claimed;
    return names.isDefined(name, sub) ? prefix + name : QString();
}

void IndexDefines::startLine(quint8 number)
{
    line = number;
    prefix = prefixOf(line, multiLine);
    names.startLine(prefix);
}

bool IndexDefines::namesSubIndices(const IndexData &data)
{
    return data.objectCode == CANopen::ObjectCode::Array ||
           data.objectCode == CANopen::ObjectCode::Record;
}

void IndexDefines::generateIndexDefine(quint16 index)
{
    IndexData data;
    if (!store.getIndexData(line, index, data))
        return;
    writeHexDefine("#define ", claimObject(names, objectName(data, index), index), index);
    if (!namesSubIndices(data))
        return;
    store.visitSubIndices(line, index, 1, [&](quint8 sub, const SubIndexData &member) {
        generateSubDefine(index, sub, member);
    });
}

void IndexDefines::generateSubDefine(quint16 index, quint8 sub, const SubIndexData &data)
{
    writeHexDefine("#define  ", claimSubIndex(names, subIndexName(data, index, sub), index, sub),
                   sub);
}

void IndexDefines::genCANIDDefine(quint32 id, quint8 direction, quint32 number)
{
    CANID data;
    if (!store.getCANIDData(line, id, direction, data))
        return;
    writeDefine(names.claimCounted(frameName("ID_", data.name, id), id, "_"), id);
    writeDefine(names.claimCounted(QStringLiteral("ID_%1").arg(id), number, "_"), number);
    const QVector<DataElement> elements = store.getDataElementRecords(line, id, direction);
    for (const DataElement &element : elements)
        generateDataElementDefine(element);
    out.raw("\n");
}

void IndexDefines::generateDataElementDefine(const DataElement &element)
{
    writeDefine(names.claimCounted(prefixedName("S_", element.name), element.number, "_"),
                element.number);
}

void IndexDefines::genPGNDefine(quint32 pgn, quint8 direction)
{
    PGN data;
    if (!store.getPGNData(line, pgn, direction, data))
        return;
    const auto name = names.claimCounted(frameName("PGN_", data.name, pgn), pgn, "");
    if (startDefine("#define ", name))
        out.parts(pgn, "u /* 0x", HexNumber{pgn, 1}, " */\n");
    const QVector<SPN> spns = store.getSPNRecords(line, pgn, direction);
    for (const SPN &spn : spns)
        generateSpnDefine(pgn, spn);
    out.raw("\n");
}

void IndexDefines::generateSpnDefine(quint32 pgn, const SPN &spn)
{
    QString name = prefixedName("SPN_", spn.name);
    if (names.isTaken(name, spn.number))
        name += QStringLiteral("_%1").arg(pgn, 4, 16, QLatin1Char('0'));
    writeDefine(names.claimCounted(name, spn.number, "_"), spn.number);
}

bool IndexDefines::startDefine(const char *directive, const std::optional<QString> &name)
{
    if (name)
        out.parts(directive, prefix, *name, blanksAfter(*name), "\t");
    return name.has_value();
}

void IndexDefines::writeHexDefine(const char *directive, const std::optional<QString> &name,
                                  quint32 value)
{
    if (startDefine(directive, name))
        out.parts("0x", HexNumber{value, 1}, "u\n");
}

void IndexDefines::writeDefine(const std::optional<QString> &name, quint32 value)
{
    if (startDefine("#define ", name))
        out.parts(value, "u\n");
}

void IndexDefines::writeEnd()
{
    const QString name = QStringLiteral("S_NUMBER_OF_ENTRIES");
    out.parts("#define  ", name, blanksAfter(name));
    out.block(R"(
	0x0u

#endif /* GEN_INDICES_H */
)");
}

IndicesGenerator::IndicesGenerator() : TextFileGenerator(QStringLiteral("gen_indices.h generator"))
{
}

void IndicesGenerator::writeHead(TextWriter &out) const
{
    CText::writeHead(out,
                     " *  CO index/J1939 PGN/raw CAN-ID  defines for $project$ - generated by "
                     "$tool$ $version$\n",
                     projectName, toolVersion);
    out.block(R"(

/* protect against multiple inclusion of the file */
#ifndef GEN_INDICES_H
#define GEN_INDICES_H 1

)");
}

void IndicesGenerator::write(TextWriter &out)
{
    writeHead(out);
    IndexDefines defines(*database, out, isMultiLine());
    for (const quint8 line : qAsConst(lines)) {
        defines.startLine(line);
        writeObjects(defines, line);
        writeFrames(defines, line);
    }
    defines.writeEnd();
}

void IndicesGenerator::writeObjects(IndexDefines &defines, quint8 line) const
{
    forEach(database->getIndices(line, ObjectRanges::kAll),
            [&](quint16 index) { defines.generateIndexDefine(index); });
}

void IndicesGenerator::writeFrames(IndexDefines &defines, quint8 line) const
{
    database->cacheAllSpnDataForLine(line);
    for (const quint8 direction : {Direction::kReceived, Direction::kTransmitted}) {
        quint32 number = 0;
        const QList<quint32> ids = database->getCANIDs(line, direction);
        for (const quint32 id : ids)
            defines.genCANIDDefine(id, direction, number++);
    }
    for (const quint8 direction : {Direction::kReceived, Direction::kTransmitted}) {
        const QList<quint32> pgns = database->getPGNs(line, direction, false);
        for (const quint32 pgn : pgns)
            defines.genPGNDefine(pgn, direction);
    }
}
