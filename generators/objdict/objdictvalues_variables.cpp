// Pointers to the variables of the application.
#include "generators/objdict/objdictarrays.h"
#include "generators/objdict/objdictvalues.h"
#include "support/implementation.h"

namespace
{

using namespace ObjDict;
using Type = CAN::CANopenDataType;

struct Pointer {
    Key key;
    QString name;
    quint32 size;
};

using Pointers = QVector<Pointer>;

struct ApplicationVariables {
    std::array<Pointers, kValueClassCount> numbers;
    Pointers visStrings;
    Pointers utf8Strings;
    Pointers octetStrings;
    Pointers domains;

    Pointers *listOf(quint16 dataType)
    {
        if (const std::optional<ValueClass> valueClass = valueClassOf(dataType))
            return &numbers[numberOf(*valueClass)];
        switch (static_cast<Type>(dataType)) {
        case Type::VisibleString:
            return &visStrings;
        case Type::Utf8String:
            return &utf8Strings;
        case Type::OctetString:
            return &octetStrings;
        case Type::Domain:
            return &domains;
        default:
            return nullptr;
        }
    }
};

/// The three arrays of a kind of strings.
struct StringRow {
    const char *pointers;
    const char *lengths;
    const char *actualLengths;
    bool hasStorage = false; ///< lengths are declared with $storage$
};

constexpr StringRow kVisRow = {"static VIS_STRING\tod_vis_string[",
                               "static UNSIGNED32\tod_vis_string_len[",
                               "static UNSIGNED32\tod_vis_string_actLen["};
// Deliberate: the stack takes pointers to UTF-8 as visible strings, held by tst_generatedc.
constexpr StringRow kUtf8Row = {"static VIS_STRING\tod_utf8_string[",
                                "static UNSIGNED32\tod_utf8_string_len[",
                                "static UNSIGNED32\tod_utf8_string_actLen["};
constexpr StringRow kOctetRow = {"static OCTET_STRING\t*od_octet_string[",
                                 "static UNSIGNED32 $storage$\tod_octet_string_len[",
                                 "static UNSIGNED32 $storage$\tod_octet_string_actLen[", true};
constexpr StringRow kDomainRow = {"static CO_DOMAIN_PTR\tod_domain[",
                                  "static UNSIGNED32 $storage$\tod_domain_len[",
                                  "static UNSIGNED32 $storage$\tod_domain_actLen[", true};

/// Domains get their place also as managed objects: their tag makes no difference.
bool isPointedTo(const ObjectDataBase::SUBINDEX_DATA_T &data)
{
    return data.implementation == Implementation::kApplicationVariable ||
           (data.implementation == Implementation::kManagedVariable &&
            data.dataType == CAN::typeNumber(Type::Domain));
}

ApplicationVariables collect(Context &context)
{
    ApplicationVariables variables;
    forEachSub(context, [&](const Place &place, const ObjectDataBase::SUBINDEX_DATA_T &data) {
        Pointers *list = isPointedTo(data) ? variables.listOf(data.dataType) : nullptr;
        if (!list)
            return;
        note(context.positions, &Positions::managed, place.key(), list->size());
        *list << Pointer{place.key(), variableName(data, place.index, place.sub), data.size};
    });
    return variables;
}

/// From the size of an array to its end; the declaration stands already.
template <typename Write>
void writeElements(TextWriter &out, const Pointers &pointers, const Write &write)
{
    out.parts(quint32(pointers.size()), "] = {\n");
    writeEntries(out, pointers, kSeparator, write);
}

void writeNumbers(Context &context, ValueClass valueClass, const Pointers &pointers)
{
    TextWriter &out = context.out;
    out.fill(rowOf(valueClass).pointers, {{"const", context.dialect.constMacro},
                                          {"storage", context.dialect.constStorageMacro}});
    writeElements(out, pointers, [&](const Pointer &pointer) {
        // A macro or a cast gives an address itself.
        const bool isAddress = pointer.name.contains(QLatin1Char('('));
        out.parts(isAddress ? "\t" : "\t&(", pointer.name, isAddress ? "" : ")");
        writeEntryComment(context, pointer.key);
    });
}

/// Both arrays of lengths; the application changes the second one.
template <typename Write>
void writeLengths(Context &context, const StringRow &row, const Pointers &pointers,
                  const Write &write)
{
    for (const char *declaration : {row.lengths, row.actualLengths}) {
        if (row.hasStorage)
            context.out.fill(declaration, {{"storage", context.dialect.storageMacro}});
        else
            context.out.raw(declaration);
        writeElements(context.out, pointers, write);
    }
}

void writeStrings(Context &context, const StringRow &row, const Pointers &pointers)
{
    TextWriter &out = context.out;
    out.raw(row.pointers);
    writeElements(out, pointers,
                  [&](const Pointer &pointer) { out.parts("\t&(", pointer.name, "[0])"); });
    writeLengths(context, row, pointers,
                 [&](const Pointer &pointer) { out.parts("\t", pointer.size, "ul"); });
}

/// The application hands its domains to the stack at run time.
void writeDomains(Context &context, const Pointers &domains)
{
    context.out.raw(kDomainRow.pointers);
    writeElements(context.out, domains, [&](const Pointer &) { context.out.raw("\tNULL"); });
    writeLengths(context, kDomainRow, domains, [&](const Pointer &) { context.out.raw("\t0ul"); });
}

} // namespace

void ObjDict::defineApplicationVariables(Context &context)
{
    context.out.raw("\n/* definition of application variables */\n");
    const ApplicationVariables variables = collect(context);
    Positions &positions = context.positions;
    for (std::size_t i = 0; i < variables.numbers.size(); ++i) {
        positions.pointerArrays[i] = !variables.numbers[i].isEmpty();
        if (positions.pointerArrays[i])
            writeNumbers(context, static_cast<ValueClass>(i), variables.numbers[i]);
    }
    positions.hasVisString = !variables.visStrings.isEmpty();
    if (positions.hasVisString)
        writeStrings(context, kVisRow, variables.visStrings);
    positions.hasUtf8String = !variables.utf8Strings.isEmpty();
    if (positions.hasUtf8String)
        writeStrings(context, kUtf8Row, variables.utf8Strings);
    positions.hasOctetString = !variables.octetStrings.isEmpty();
    if (positions.hasOctetString)
        writeStrings(context, kOctetRow, variables.octetStrings);
    positions.hasDomain = !variables.domains.isEmpty();
    if (positions.hasDomain)
        writeDomains(context, variables.domains);
}
