// Table of the objects that the stack keeps by itself.
#include "generators/objdict/objdictservices.h"

#include <iterator>

namespace
{

using ObjDict::Reference;
using ObjDict::ServiceRow;

// Deliberate: 0x1016 and 0x1301 to 0x13F0 begin with subindex 1, and 0x13F1 to 0x13FD are not rows:
// what the stack does not answer needs a variable and its position. Held by tst_generatedc.
// clang-format off
constexpr ServiceRow kServices[] = { // ascending
    {{0x1003, 0x1003},              0, 255, "_EMCY",       true,  Reference::Index},
    {{0x1005, 0x1006},              0, 255, "_SYNC",       false, Reference::Index},
    {{0x100C, 0x100D},              0, 255, "_ERRCTRL",    false, Reference::Index},
    {{0x1010, 0x1011},              1, 255, "_STORE",      false, Reference::Index},
    {{0x1012, 0x1012},              0, 255, "_TIME",       false, Reference::Position},
    {{0x1014, 0x1015},              0, 255, "_EMCY",       true,  Reference::Index},
    {{0x1016, 0x1016},              1, 255, "_ERRCTRL",    false, Reference::Index},
    {{0x1017, 0x1017},              0, 255, "_ERRCTRL",    false, Reference::Index},
    {{0x1019, 0x1019},              0, 255, "_SYNC",       false, Reference::Index},
    {{0x1028, 0x1028},              1, 255, "_EMCY",       false, Reference::Index},
    {{0x1029, 0x1029},              1, 1,   "_ERRCTRL",    false, Reference::Index},
    {{0x102A, 0x102A},              0, 255, "_NMT",        false, Reference::Index},
    {{0x1032, 0x1032},              0, 255, "_EMCY",       true,  Reference::Index},
    {ObjectRanges::kSdoServers,     1, 255, "_SDO_SERVER", false, Reference::Number},
    {ObjectRanges::kSdoClients,     1, 255, "_SDO_CLIENT", false, Reference::Number},
    {{0x1300, 0x1300},              0, 255, "_GFC",        false, Reference::Position},
    {{0x1301, 0x13F0},              1, 255, "_SRDO",       false, Reference::Index},
    {{0x13FE, 0x13FF},              0, 0,   "_SRDO",       true,  Reference::Index},
    {{0x13FE, 0x13FF},              1, 255, "_SRDO",       false, Reference::Index},
    {ObjectRanges::kRpdoParameters, 1, 255, "_RPDO",       false, Reference::Number},
    {ObjectRanges::kRpdoMappings,   0, 0,   "_RMAP",       true,  Reference::Number},
    {ObjectRanges::kRpdoMappings,   1, 255, "_RMAP",       false, Reference::Number},
    {ObjectRanges::kTpdoParameters, 1, 255, "_TPDO",       false, Reference::Number},
    {ObjectRanges::kTpdoMappings,   0, 0,   "_TMAP",       true,  Reference::Number},
    {ObjectRanges::kTpdoMappings,   1, 255, "_TMAP",       false, Reference::Number},
    {{0x1F10, 0x1F11},              0, 255, "_SRD",        false, Reference::Position},
    {{0x1F2C, 0x1F2C},              1, 255, "_NETWORK",    true,  Reference::Index},
    {{0x1F80, 0x1F80},              0, 255, "_NMT",        true,  Reference::Index},
    {{0x1F81, 0x1F82},              0, 0,   "_NMT",        true,  Reference::Index},
    {{0x1F81, 0x1F82},              1, 255, "_NMT",        false, Reference::Index},
    {{0x1F90, 0x1F90},              0, 0,   "_FLYMA",      true,  Reference::Position},
    {{0x1F90, 0x1F90},              1, 255, "_FLYMA",      true,  Reference::Index},
};
// clang-format on

} // namespace

const ObjDict::ServiceRow *ObjDict::serviceOf(quint16 index, quint8 sub)
{
    if (index > std::rbegin(kServices)->objects.last) // as most are
        return nullptr;
    for (const ServiceRow &row : kServices) {
        if (index < row.objects.first)
            return nullptr;
        if (index <= row.objects.last && sub >= row.firstSub && sub <= row.lastSub)
            return &row;
    }
    return nullptr;
}
