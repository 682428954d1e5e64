// How much memory the types of generated C take.
#include "generators/overview/structsizes.h"

#include <algorithm>

namespace
{

/// The members of a type: a number is a value of that many bytes, "e" an enumeration, "p" a
/// pointer, any other word a type. "*" and a count stand behind an array, and a macro with "?"
/// before a member that is there with that macro only.
struct TypeRow {
    const char *name;
    const char *members;
};

// clang-format off
constexpr TypeRow kTypes[] = {
    // Values
    {"UNSIGNED8", "1"}, {"UNSIGNED16", "2"}, {"UNSIGNED32", "4"}, {"INTEGER8", "1"}, {"INTEGER16", "2"},
    {"INTEGER32", "4"}, {"REAL32", "4"}, {"REAL64", "8"}, {"BOOL_T", "1"}, {"char", "1"}, {"OCTET_STRING", "1"},
    {"UNSIGNED24", "1*3"}, {"UNSIGNED40", "1*5"}, {"UNSIGNED48", "1*6"}, {"UNSIGNED64", "1*8"}, {"INTEGER24", "1*3"},
    {"INTEGER64", "1*8"}, {"VIS_STRING", "p"}, {"CO_DOMAIN_PTR", "p"}, {"UTF8_STRING", "1*256"},
    // Object dictionary
    {"CO_OBJECT_DESC_T", "1 e 2 2 2 CO_CONFIG_LIMIT_CHECK?2 CO_CONFIG_LIMIT_CHECK?2"},
    {"CO_OD_ASSIGN_T", "2 2 1 e 2"},
    {"CO_VOBJ_DESC_T", "1 e 2 2 2"},
    {"CO_VOD_ASSIGN_T", "CO_OD_ASSIGN_T"},
    {"CO_OD_DATA_VARIABLES_T", "p*32 CO_EXTENDED_DATA_TYPES?p*12 CO_UTF8_DATA_TYPE?p*5"},
    // PDOs
    {"PDO_TR_MAP_ENTRY_T", "p 1 1 4"},
    {"PDO_TR_MAP_TABLE_T", "1 PDO_TR_MAP_ENTRY_T*ENTRIES"},
    {"PDO_REC_MAP_ENTRY_T", "p 1 1 4 ROUTING?2*LINES"},
    {"PDO_REC_MAP_TABLE_T", "1 PDO_REC_MAP_ENTRY_T*ENTRIES"},
    {"SRDO_COB_ID", "4 1"},
    {"CO_SRDO_MAP_ENTRY_T", "p 1 1"},
    {"CO_SRDO_TABLE_T", "1 1 1 2 1 SRDO_COB_ID*2 1 p"},
    // J1939
    {"J1939_MAPPING_T", "p 2 4 e J1939_DYNAMIC_PGN?1"},
    {"J1939_PGN_CONFIG_T", "4 p 2 2 1 2 CO_CANFD_SUPPORTED?e CO_CANFD_SUPPORTED?e CO_CANFD_SUPPORTED?1"},
    {"J1939_CONFIG_T", "p 2 p 2 p 1"},
    {"J1939_SERVICE_INIT_VAL_T", "1 2*LINES 2*LINES 1*LINES 1*LINES J1939_SDG_SUPPORTED?1*LINES "
                                 "J1939_SDG_SUPPORTED?1*LINES CO_CANFD_SUPPORTED?1*LINES"},
    {"J1939_SDG_MAPPING_T", "p 2"},
    {"J1939_SDG_GROUP_T", "4 p 2 4 1 2"},
    {"J1939_SDG_CONFIG_T", "p 2 p 2"},
    // Raw CAN and diagnostic services
    {"CORE_MAPPING_T", "p 1 e"},
    {"RAWCAN_TR_CONFIG_T", "4 p 2 2 2"},
    {"RAWCAN_REC_CONFIG_T", "4 4 p 2"},
    {"RAWCAN_CONFIG_T", "p 2 p 2"},
    {"RAWCAN_SERVICE_INIT_VAL_T", "1 2*LINES 2*LINES"},
    {"UDS_SERVICE_INIT_VAL_T", "1 1*LINES"},
    {"UDS_CONFIG_INIT_VAL_T", "4 4 4 1 1 1 e p 2 p 2 1"},
    {"UDS_REQ_SESSION_TYPE_TABLE_T", "1 1 1*16 1"},
    {"UDS_SECURITY_LEVEL_TABLE_T", "1 1 1*16 1"},
};
// clang-format on

const TypeRow *rowOf(const QByteArray &type)
{
    const auto row = std::find_if(std::begin(kTypes), std::end(kTypes),
                                  [&type](const TypeRow &known) { return type == known.name; });
    return row == std::end(kTypes) ? nullptr : row;
}

qint64 aligned(qint64 size, qint64 alignment)
{
    return (size + alignment - 1) / alignment * alignment;
}

} // namespace

qint64 StructSizes::sizeOf(const QByteArray &type) const
{
    // Functions that are called for events.
    if (type.startsWith("CO_EVENT_") || type.startsWith("CORE_EVENT_"))
        return target.pointer;
    return rowOf(type) ? layoutOf(type).size : -1;
}

StructSizes::Layout StructSizes::layoutOf(const QByteArray &type) const
{
    Layout all;
    const TypeRow *row = rowOf(type);
    if (!row)
        return all;
    const QList<QByteArray> members = QByteArray(row->members).split(' ');
    for (const QByteArray &member : members) {
        const int condition = member.indexOf('?');
        if (condition >= 0 && !isDefined(member.left(condition)))
            continue;
        const Layout one = layoutOfMember(member.mid(condition + 1));
        all.alignment = std::max(all.alignment, one.alignment);
        all.size = aligned(all.size, one.alignment) + one.size;
    }
    all.size = aligned(all.size, all.alignment);
    return all;
}

StructSizes::Layout StructSizes::layoutOfMember(const QByteArray &member) const
{
    const int star = member.indexOf('*');
    const QByteArray word = member.mid(0, star);
    const qint64 count = star < 0 ? 1 : countOf(member.mid(star + 1));
    Layout one;
    if (word == "e" || word == "p")
        one.size = one.alignment = word == "e" ? 4 : target.pointer;
    else if (const qint64 bytes = word.toLongLong(); bytes > 0)
        one.size = one.alignment = bytes;
    else
        one = layoutOf(word);
    one.size *= count;
    return one;
}

qint64 StructSizes::countOf(const QByteArray &name) const
{
    const auto macro = [this](const char *key) {
        return std::max<qint64>(1, CArrays::numberOf(key, target.macros));
    };
    if (name == "ENTRIES")
        return macro("CO_MAX_MAP_ENTRIES");
    if (name == "LINES") // of which only one generation of the stack has each
        return macro("CO_MULTI_LINE_CNT") * macro("CAN_MULTI_LINE_CNT");
    return name.toLongLong();
}

bool StructSizes::isDefined(const QByteArray &name) const
{
    return name == "ROUTING" ? target.isRouting : target.macros.contains(name);
}
