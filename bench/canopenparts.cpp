// Synthetic CANopen objects, in a store and as a device description.
#include "bench/canopenparts.h"

#include "support/cohelper.h"

#include <QFile>
#include <QTextStream>

#include <algorithm>

namespace
{

using Bench::Object;

constexpr quint16 kFirstIndex = 0x2000;
constexpr quint8 kMembers = 4; // and subindex 0
constexpr int kMostPdos = 100;

struct ValueKind {
    CAN::CANopenDataType type;
    const char *access;
    const char *defaultValue;
    const char *lowLimit; ///< empty: the subindex has no limits
    const char *highLimit;
    PDOMappingType mapping;
    quint8 implementation;
};

// clang-format off
constexpr ValueKind kKinds[] = {
    {CAN::CANopenDataType::Unsigned8,     "rw",    "17",     "0",    "200",   PDOMappingType::No,      0},
    {CAN::CANopenDataType::Unsigned16,    "ro",    "0x1234", "",     "",      PDOMappingType::Tpdo,    2},
    {CAN::CANopenDataType::Integer16,     "rw",    "-250",   "-999", "999",   PDOMappingType::Default, 0},
    {CAN::CANopenDataType::Unsigned32,    "rww",   "70000",  "",     "",      PDOMappingType::Rpdo,    2},
    {CAN::CANopenDataType::VisibleString, "const", "sensor", "",     "",      PDOMappingType::No,      1},
    {CAN::CANopenDataType::Real32,        "rw",    "2.5",    "",     "",      PDOMappingType::Default, 0},
    {CAN::CANopenDataType::Integer32,     "wo",    "0",      "",     "",      PDOMappingType::Rpdo,    2},
    {CAN::CANopenDataType::Boolean,       "rw",    "1",      "",     "",      PDOMappingType::No,      0},
    {CAN::CANopenDataType::Integer8,      "ro",    "-5",     "-40",  "85",    PDOMappingType::Tpdo,    0},
};
// clang-format on
constexpr int kKindCount = sizeof kKinds / sizeof kKinds[0];

constexpr const char *kThings[] = {"Motor", "Valve",  "Tank",  "Boiler", "Conveyor",
                                   "Axis",  "Filter", "Mixer", "Fan",    "Gripper"};
constexpr const char *kValues[] = {"temperature", "speed",   "pressure", "position", "current",
                                   "flow",        "voltage", "counter",  "state"};

SubIndexData countOfMembers(int count)
{
    SubIndexData sub;
    sub.name = QStringLiteral("Highest subindex supported");
    sub.accessType = QStringLiteral("ro"); // as most device descriptions have it
    sub.defaultValue = QString::number(count);
    sub.implementation = 1;
    return sub;
}

SubIndexData variable(const QString &name, CAN::CANopenDataType type, const QString &access,
                      const QString &defaultValue)
{
    SubIndexData sub;
    sub.name = name;
    sub.dataType = static_cast<quint16>(type);
    sub.accessType = access;
    sub.defaultValue = defaultValue;
    return sub;
}

SubIndexData member(int number, quint8 position, const ValueKind &kind)
{
    const QString place = QString::number(position);
    const QString name =
        QStringLiteral("%1 %2").arg(QLatin1String(kValues[(number + position) % 9]), place);
    SubIndexData sub =
        variable(name, kind.type, QLatin1String(kind.access), QLatin1String(kind.defaultValue));
    sub.pdoMapping = PDOMapping(kind.mapping);
    sub.implementation = kind.implementation;
    sub.limitInEds = *kind.lowLimit != '\0';
    if (sub.limitInEds) {
        sub.lowLimit = QLatin1String(kind.lowLimit);
        sub.upLimit = QLatin1String(kind.highLimit);
    }
    if (kind.type == CAN::CANopenDataType::VisibleString) {
        sub.defaultValue += QString::number(number);
        sub.size = static_cast<quint32>(sub.defaultValue.size());
    }
    if (kind.implementation == 2)
        sub.varName = QStringLiteral("plant[%1].value%2").arg(QString::number(number), place);
    if ((number + position) % 3 == 0)
        sub.description =
            QStringLiteral("Member %1 of object %2.").arg(place, QString::number(number));
    return sub;
}

/// A RECORD of mixed types, or an ARRAY of one type at every third number.
Object makeObject(int number)
{
    Object object;
    object.index = static_cast<quint16>(kFirstIndex + number);
    const bool isArray = number % 3 == 0;
    object.data.name = QStringLiteral("%1 %2 %3")
                           .arg(QLatin1String(kThings[number % 10]), QString::number(number / 10),
                                QLatin1String(kValues[number % 9]));
    object.data.objectCode = isArray ? CANopen::ObjectCode::Array : CANopen::ObjectCode::Record;
    if (number % 2 == 0)
        object.data.description = QStringLiteral("Values of part %1, sampled each %2 ms.")
                                      .arg(QString::number(number), QString::number(number % 50));
    object.subs.append(countOfMembers(kMembers));
    for (quint8 position = 1; position <= kMembers; ++position) {
        const int kind = isArray ? number : number + position;
        object.subs.append(member(number, position, kKinds[kind % kKindCount]));
    }
    object.data.dataType = isArray ? object.subs.at(1).dataType : 5;
    return object;
}

Object makeVariable(quint16 index, CAN::CANopenDataType type, const QString &name,
                    const QString &access, const QString &defaultValue)
{
    Object object;
    object.index = index;
    object.data.name = name;
    object.data.dataType = static_cast<quint16>(type);
    object.subs.append(variable(name, type, access, defaultValue));
    return object;
}

/// What CiA 301 asks of every device.
QVector<Object> mandatoryObjects()
{
    Object identity;
    identity.index = 0x1018;
    identity.data.name = QStringLiteral("Identity object");
    identity.data.objectCode = CANopen::ObjectCode::Record;
    identity.subs = {countOfMembers(3)};
    for (const char *name : {"Vendor-ID", "Product code", "Revision number"})
        identity.subs.append(variable(QLatin1String(name), CAN::CANopenDataType::Unsigned32,
                                      QStringLiteral("ro"), QStringLiteral("0x00f0e1d2")));
    return {makeVariable(0x1000, CAN::CANopenDataType::Unsigned32, QStringLiteral("Device type"),
                         QStringLiteral("ro"), QStringLiteral("0x0")),
            makeVariable(0x1001, CAN::CANopenDataType::Unsigned8, QStringLiteral("Error register"),
                         QStringLiteral("ro"), QStringLiteral("0")),
            makeVariable(0x1017, CAN::CANopenDataType::Unsigned16,
                         QStringLiteral("Producer heartbeat time"), QStringLiteral("rw"),
                         QStringLiteral("1000")),
            identity};
}

/// Mapping entries of all members that may be sent or received (CiA 301, 7.4.8.2).
QVector<quint32> mappableMembers(const QVector<Object> &objects, PDOMappingType direction)
{
    QVector<quint32> entries;
    for (const Object &object : objects) {
        for (int sub = 1; sub < object.subs.size(); ++sub) {
            const SubIndexData &data = object.subs.at(sub);
            if (object.index >= kFirstIndex && data.pdoMapping == PDOMapping(direction))
                entries << (quint32(object.index) << 16 | quint32(sub) << 8 |
                            COHelper::getDataLengthBits(CAN::CANopenDataType(data.dataType)));
        }
    }
    return entries;
}

/// A PDO of two entries: its communication object and its mapping object.
QVector<Object> makePdo(quint16 index, const QString &name, quint32 cobId, const quint32 *entries)
{
    Object communication;
    communication.index = index;
    communication.data.name = name + QStringLiteral(" communication parameter");
    communication.data.objectCode = CANopen::ObjectCode::Record;
    communication.subs = {
        countOfMembers(2),
        variable(QStringLiteral("COB-ID"), CAN::CANopenDataType::Unsigned32, QStringLiteral("rw"),
                 QStringLiteral("0x%1").arg(QString::number(cobId, 16))),
        variable(QStringLiteral("Transmission type"), CAN::CANopenDataType::Unsigned8,
                 QStringLiteral("rw"), QStringLiteral("255"))};
    Object mapping;
    mapping.index = quint16(index + 0x200);
    mapping.data.name = name + QStringLiteral(" mapping parameter");
    mapping.data.objectCode = CANopen::ObjectCode::Record;
    mapping.subs = {countOfMembers(2)};
    mapping.subs.first().accessType = QStringLiteral("const");
    for (int entry = 0; entry < 2; ++entry)
        mapping.subs.append(
            variable(QStringLiteral("Entry %1").arg(entry + 1), CAN::CANopenDataType::Unsigned32,
                     QStringLiteral("const"),
                     QStringLiteral("0x%1").arg(entries[entry], 8, 16, QLatin1Char('0'))));
    return {communication, mapping};
}

/// Half of them sent, half received.
QVector<Object> makePdos(const QVector<Object> &objects)
{
    const int each = qMin(kMostPdos, objects.size() / 50) / 2;
    const QVector<quint32> sent = mappableMembers(objects, PDOMappingType::Tpdo);
    const QVector<quint32> received = mappableMembers(objects, PDOMappingType::Rpdo);
    QVector<Object> pdos;
    for (int pdo = 0; pdo < each; ++pdo) {
        const QString number = QString::number(pdo + 1);
        pdos += makePdo(quint16(0x1400 + pdo), QStringLiteral("RPDO ") + number,
                        quint32(0x201 + pdo), received.constData() + 2 * pdo);
        pdos += makePdo(quint16(0x1800 + pdo), QStringLiteral("TPDO ") + number,
                        quint32(0x301 + pdo), sent.constData() + 2 * pdo);
    }
    return pdos;
}

void writeComment(QTextStream &out, const QString &description)
{
    if (!description.isEmpty())
        out << ";;" << description << "\n";
}

void writeValueLines(QTextStream &out, const SubIndexData &sub)
{
    out << "DataType=" << sub.dataType << "\n"
        << "AccessType=" << sub.accessType << "\n"
        << "PDOMapping=" << sub.pdoMapping.toBinary() << "\n"
        << "DefaultValue=" << sub.defaultValue << "\n";
    if (sub.limitInEds)
        out << "LowLimit=" << sub.lowLimit << "\n"
            << "HighLimit=" << sub.upLimit << "\n";
    writeComment(out, sub.description);
}

void writeEdsObject(QTextStream &out, const Object &object)
{
    const QString index = QString::number(object.index, 16);
    out << "\n[" << index << "]\n"
        << "ParameterName=" << object.data.name << "\n"
        << "ObjectType=0x" << static_cast<int>(object.data.objectCode) << "\n";
    if (object.data.objectCode == CANopen::ObjectCode::Var) {
        writeValueLines(out, object.subs.first());
        return;
    }
    out << "SubNumber=" << object.subs.size() << "\n";
    writeComment(out, object.data.description);
    for (int sub = 0; sub < object.subs.size(); ++sub) {
        out << "\n[" << index << "sub" << QString::number(sub, 16) << "]\n"
            << "ParameterName=" << object.subs.at(sub).name << "\n"
            << "ObjectType=0x7\n";
        writeValueLines(out, object.subs.at(sub));
    }
}

void writeEdsList(QTextStream &out, const char *section, const QVector<Object> &objects,
                  bool (*isListed)(quint16 index))
{
    QStringList lines;
    for (const Object &object : objects) {
        if (isListed(object.index))
            lines.append(QStringLiteral("%1=0x%2").arg(QString::number(lines.size() + 1),
                                                       QString::number(object.index, 16)));
    }
    out << "\n[" << section << "]\n"
        << "SupportedObjects=" << lines.size() << "\n";
    for (const QString &line : qAsConst(lines))
        out << line << "\n";
}

} // namespace

QVector<Object> Bench::makeObjects(int count)
{
    QVector<Object> objects = mandatoryObjects();
    for (int number = 0; number < count; ++number)
        objects.append(makeObject(number));
    return objects + makePdos(objects);
}

void Bench::addObjects(ObjectDataBase &store, quint8 line, const QVector<Object> &objects)
{
    QList<ObjectDataBase::SubEntry> entries;
    for (const Object &object : objects) {
        store.addIndex(line, object.index, object.data);
        for (int sub = 0; sub < object.subs.size(); ++sub)
            entries.append({line, object.index, static_cast<quint8>(sub), object.subs.at(sub)});
    }
    store.addSubIndices(entries);
}

bool Bench::writeEds(const QVector<Object> &objects, const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        return false;
    const auto pdos = std::count_if(objects.cbegin(), objects.cend(), [](const Object &object) {
        return object.index >= 0x1400 && object.index < 0x1600;
    });
    QTextStream out(&file);
    out.setCodec("UTF-8");
    out << "[FileInfo]\nFileName=device.eds\nFileVersion=1\nFileRevision=1\nEDSVersion=4.0\n"
        << "\n[DeviceInfo]\nVendorName=Benchmark\nProductName=Synthetic device\n"
        << "BaudRate_125=1\nNrOfRXPDO=" << pdos << "\nNrOfTXPDO=" << pdos << "\nGranularity=8\n";
    const auto isMandatory = [](quint16 i) { return i == 0x1000 || i == 0x1001 || i == 0x1018; };
    const auto isOptional = [](quint16 i) {
        return i == 0x1017 || (i >= 0x1400 && i < 0x1C00) || i >= 0x6000;
    };
    const auto isOfMaker = [](quint16 i) { return i >= 0x2000 && i < 0x6000; };
    writeEdsList(out, "MandatoryObjects", objects, isMandatory);
    writeEdsList(out, "OptionalObjects", objects, isOptional);
    writeEdsList(out, "ManufacturerObjects", objects, isOfMaker);
    for (const Object &object : objects)
        writeEdsObject(out, object);
    out.flush();
    return out.status() == QTextStream::Ok;
}
