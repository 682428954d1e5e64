// From names of sections to objects.
#include "formats/edsobjects.h"

#include "support/objectranges.h"

#include <algorithm>
#include <utility>

namespace
{

using Kind = EdsAddress::Kind;

struct SuffixRow {
    const char *suffix;
    Kind kind;
};

constexpr SuffixRow kSuffixes[] = {
    {"", Kind::Object},           {"name", Kind::Names},
    {"value", Kind::Values},      {"denotation", Kind::Denotations},
    {"objectlinks", Kind::Links},
};

quint32 listKey(quint16 index, Kind kind)
{
    return quint32(index) << 8 | static_cast<quint32>(kind);
}

bool isSame(const EdsSection &one, const EdsSection &other)
{
    const auto isSameEntry = [](const EdsEntry &a, const EdsEntry &b) {
        return a.key == b.key && a.value == b.value;
    };
    return std::equal(one.entries.begin(), one.entries.end(), other.entries.begin(),
                      other.entries.end(), isSameEntry);
}

} // namespace

EdsAddress EdsAddress::of(const QString &name)
{
    const int start = name.startsWith(QLatin1String("0x")) ? 2 : 0;
    const QStringRef digits = name.midRef(start, 4);
    const QStringRef suffix = name.midRef(start + 4);
    bool ok = digits.size() == 4 && digits[0] != QLatin1Char('+') && digits[0] != QLatin1Char('-');
    EdsAddress address;
    if (ok)
        address.index = digits.toUShort(&ok, 16);
    if (!ok || digits.contains(QLatin1Char('x')))
        return EdsAddress();
    for (const SuffixRow &row : kSuffixes) {
        if (suffix == QLatin1String(row.suffix))
            address.kind = row.kind;
    }
    if (suffix.startsWith(QLatin1String("sub"))) {
        const uint number = suffix.mid(3).toUInt(&ok, 16);
        address.kind = ok && number <= 0xFF ? Kind::Subindex : Kind::Other;
        address.subindex = static_cast<quint8>(number);
    }
    return address;
}

EdsObjects::EdsObjects(const EdsReader &reader)
{
    for (int i = 0; i < reader.sections().size(); ++i)
        add(reader, i);
}

int EdsObjects::listOf(quint16 index, Kind kind) const
{
    return lists.value(listKey(index, kind), -1);
}

EdsObject &EdsObjects::object(quint16 index)
{
    const auto found = byIndex.constFind(index);
    if (found != byIndex.constEnd())
        return objects[*found];
    byIndex.insert(index, objects.size());
    objects.append(EdsObject());
    objects.last().index = index;
    return objects.last();
}

void EdsObjects::add(const EdsReader &reader, int position)
{
    const EdsSection &section = reader.sections()[position];
    const EdsAddress address = EdsAddress::of(section.name);
    const int former = address.kind == Kind::Other ? -1 : place(address, position);
    if (address.kind == Kind::Other)
        otherSections.append(position);
    if (address.kind == Kind::Other && !section.name.isEmpty() && section.name[0].isDigit())
        reader.note("eds-section", section.line, [&] {
            return QStringLiteral("the section [%1] is passed over: it is none of an object, of a "
                                  "subindex up to FF, or of a list")
                .arg(section.name.left(60));
        });
    if (former >= 0 && !isSame(reader.sections()[former], section))
        reader.note("eds-twice", section.line, [&] {
            return QStringLiteral("the section [%1] takes the place of the one in line %2, which "
                                  "has other entries: remove one of them")
                .arg(section.name)
                .arg(reader.sections()[former].line);
        });
    if (address.kind == Kind::Object && address.index > ObjectRanges::kAssigned.last)
        reader.note("eds-section", section.line, [&] {
            return QStringLiteral("the object [%1] is passed over: indices above BFFF are reserved")
                .arg(section.name);
        });
}

int EdsObjects::place(const EdsAddress &address, int position)
{
    switch (address.kind) {
    case Kind::Object:
        return std::exchange(object(address.index).section, position);
    case Kind::Subindex: {
        QVector<EdsObject::Sub> &subs = object(address.index).subs;
        const quint32 key = quint32(address.index) << 8 | address.subindex;
        const auto found = subPlaces.constFind(key);
        if (found != subPlaces.constEnd())
            return std::exchange(subs[*found].section, position);
        subPlaces.insert(key, subs.size());
        subs.append({address.subindex, position});
        return -1;
    }
    default: {
        const quint32 key = listKey(address.index, address.kind);
        const int former = lists.value(key, -1);
        lists.insert(key, position);
        return former;
    }
    }
}
