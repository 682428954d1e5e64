// The tables of a J1939 project, told in the words of the test program.
#include "tests/stack/expectation_j1939.h"

#include "support/cohelper.h"
#include "tests/stack/meaning.h"

using namespace Meaning;

namespace
{

constexpr quint32 kAddressClaimed = 0xEE00;

/// A field of the NAME (SAE J1939-81), the lowest bits first.
struct NameField {
    quint32 spn;
    int bits;
    const char *setting;
};

// clang-format off
constexpr NameField kName[] = {
    {2837, 21, "identitynumber"}, {2838, 11, "manufacturercode"}, {2840, 3, "ecuinstance"},
    {2839, 5, "functioninstance"}, {2841, 8, "function"}, {0, 1, nullptr}, {2842, 7, "vehiclesystem"},
    {2843, 4, "vehicleinstance"}, {2846, 3, "industrygroup"}, {2844, 1, "addresscapable"},
};
// clang-format on

/// Width of an unsigned number, 0 for any other type.
int unsignedBits(quint32 dataType)
{
    const QString name = COHelper::index2DataTypeShortString(quint16(dataType)).toUpper();
    if (name == "B")
        return 1;
    return name.startsWith('U') && dataType != 12 ? name.mid(1).toInt() : 0;
}

/// Numbers below a byte keep their width in the tag, wider ones take the next that C has.
QString unsignedTag(int bits)
{
    return QStringLiteral("U%1").arg(bits <= 8 || bits > 32 ? bits : bits <= 16 ? 16 : 32);
}

QString textTag(quint32 dataType)
{
    static const QMap<quint32, QString> tags = {
        {10, "NON_NUMERIC"}, {15, "NON_NUMERIC"}, {120, "STRING_NULL"}, {121, "STRING_ASTERIKS"}};
    return tags.value(dataType);
}

} // namespace

J1939Expectation::J1939Expectation(ObjectDataBase &database)
    : store(database), shared(database), lines(database.getNodes())
{
    for (const quint8 line : qAsConst(lines)) {
        if (shared.typeOf(line) == 2 || shared.typeOf(line) == 5)
            speakers << line;
    }
}

int J1939Expectation::j1939(const char *setting) const
{
    return store.getJ1939SettingsValue(setting).toInt(nullptr, 0);
}

bool J1939Expectation::isMapped(quint8 line, const PgnData &group) const
{
    return speakers.contains(line) && group.number != kAddressClaimed &&
           !(group.isSafe && j1939("safetysupport") > 0);
}

QVector<PgnData> J1939Expectation::groups(quint8 line, quint8 direction) const
{
    QVector<PgnData> found;
    for (const quint32 pgn : store.getPGNs(line, direction, false)) {
        PgnData group;
        (void)store.getPGNData(line, pgn, direction, group); // it was listed
        found << group;
    }
    return found;
}

QMap<QString, bool> J1939Expectation::appVariables() const
{
    QMap<QString, bool> variables;
    for (const quint8 line : speakers) {
        for (const quint8 direction : {kSent, kReceived}) {
            for (const PgnData &group : groups(line, direction)) {
                for (const SpnData &spn : store.getSPNRecords(line, group.number, direction)) {
                    const QString name = spn.varName.trimmed();
                    if (spn.implementation != 0 && !name.isEmpty())
                        variables.insert(name, !textTag(spn.dataType).isEmpty() ||
                                                   name.contains('&') || name.contains('*'));
                }
            }
        }
    }
    if (j1939("cia510serversupport") == 1) {
        const QMap<QString, quint16> ofObjects = shared.appVariables();
        for (auto it = ofObjects.begin(); it != ofObjects.end(); ++it)
            variables.insert(it.key(),
                             it.key().contains('(') || it.value() == 9 || it.value() == 10);
    }
    return variables;
}

// --- Groups ---

QString J1939Expectation::groupRow(const char *kind, const PgnData &group) const
{
    QString row = QStringLiteral("  %1 %2 cycle=%3 inhibit=%4 priority=%5")
                      .arg(QLatin1String(kind))
                      .arg(group.number)
                      .arg(group.cycleTimeMs)
                      .arg(group.inhibitTimeMs)
                      .arg(group.priority);
    if (shared.isSet("canfd_supported")) {
        const auto known = [](quint32 value, quint32 most) { return value <= most ? value : 0xFF; };
        row += QStringLiteral(" trailer=%1 assurance=%2,%3")
                   .arg(known(group.fdTrailerFormat, 5))
                   .arg(known(group.fdAssuranceType, 3))
                   .arg(group.fdAssuranceDataSize);
    }
    return row;
}

/// Type, width and variable.
QString J1939Expectation::signalText(const SignalData &signal, const QString &value)
{
    const int bits = unsignedBits(signal.dataType);
    QString tag = textTag(signal.dataType);
    int length = signal.bitSize;
    if (tag.isEmpty()) {
        tag = bits > 0 ? unsignedTag(bits)
                       : COHelper::index2DataTypeShortString(quint16(signal.dataType)).toUpper();
        length = bits > 0 ? bits : tag.mid(1).toInt();
    }
    static const QList<quint32> signedTypes = {2, 3, 4, 16, 8}; // and the real number
    const bool hasVariable = (bits > 0 && bits != 56) || signedTypes.contains(signal.dataType);
    QString target = QStringLiteral("NULL");
    if (signal.implementation != 0 && !signal.varName.trimmed().isEmpty())
        target = "->" + signal.varName.trimmed();
    else if (signal.implementation == 0 && hasVariable)
        target = QStringLiteral("managed %1=%2").arg(QString::number(managedCount++), value);
    return QStringLiteral("%1 bits=%2 %3").arg(tag, QString::number(length), target);
}

QString J1939Expectation::mappingRow(const SpnData &spn, const QString &value)
{
    const QString unchanged = j1939("dynsupport") > 0 ? QStringLiteral(" 0") : QString();
    return QStringLiteral("   map %1 %2%3")
        .arg(QString::number(spn.number), signalText(spn, value), unchanged);
}

QString J1939Expectation::itemRow(const DataElementData &item)
{
    SignalData signal = item;
    if (signal.dataType == 10) { // raw CAN knows no text: its bytes have no width
        signal.bitSize = 0;
        return "   map " + signalText(signal, {}).replace("NON_NUMERIC", "OS");
    }
    return "   map " + signalText(signal, startValue(signal, false));
}

/// What a variable holds, as the test program prints the bytes of it.
QString J1939Expectation::startValue(const SignalData &signal, bool isGroup) const
{
    if (shared.number("init_static_variables") != 1)
        return QStringLiteral("0");
    if (signal.dataType == 8) {
        const float real = signal.defaultValue.toFloat();
        quint32 bytes = 0;
        memcpy(&bytes, &real, sizeof bytes);
        return QString::number(bytes);
    }
    // All ones tell that a value is not available; of seven bits the stack takes six.
    const int bits = signal.dataType == 105 ? 6 : unsignedBits(signal.dataType);
    if (bits > 0 && isGroup)
        return QString::number(~quint64(0) >> (64 - bits));
    static const QMap<quint32, int> widths = {{2, 8}, {3, 16}, {4, 32}, {16, 32}};
    const auto value = quint64(numberOf(signal.defaultValue));
    return QString::number(value & ~quint64(0) >> (64 - widths.value(signal.dataType, 64)));
}

QStringList J1939Expectation::claim(quint8 line)
{
    PgnData group;
    group.number = kAddressClaimed;
    group.inhibitTimeMs = 250;
    group.priority = 6;
    QStringList rows = {groupRow("claim", group)};
    for (const NameField &field : kName) {
        const QStringList values =
            field.setting ? store.getJ1939SettingsValue(field.setting).split(',') : QStringList();
        // One value is that of all lines.
        qint64 value = numberOf(values.size() == 1 ? values.first() : values.value(line));
        if (field.bits == 1)
            value = value != 0;
        SpnData spn;
        spn.number = field.spn;
        spn.implementation = 0;
        spn.dataType = COHelper::mapDataTypeString(
            field.bits == 1 ? QStringLiteral("B") : QStringLiteral("U%1").arg(field.bits));
        rows << mappingRow(spn, QString::number(value));
    }
    return rows;
}

QStringList J1939Expectation::table(quint8 line, const char *kind, quint8 direction)
{
    QStringList rows;
    for (const PgnData &group : groups(line, direction)) {
        if (!isMapped(line, group))
            continue;
        rows << groupRow(kind, group);
        for (const SpnData &spn : store.getSPNRecords(line, group.number, direction)) {
            rows << mappingRow(spn, startValue(spn, true));
        }
    }
    return rows;
}

// --- Start ---

QString J1939Expectation::startAddress(quint8 line) const
{
    const QString setting = store.getJ1939SettingsValue("startaddress");
    const QStringList list = setting.split(',');
    const QString element =
        list.value(line, lines.size() == 1 || list.size() == 1 ? list.first() : QString());
    return element.trimmed().isEmpty() ? QStringLiteral("254")
                                       : QString::number(numberOf(element.trimmed().remove('u')));
}

QStringList J1939Expectation::line(quint8 number)
{
    // Variables are numbered in this order.
    QStringList rows = {
        shared.call("j1939StackInit_line", number, {startAddress(number).toUInt()})};
    rows << claim(number) << table(number, "rx", kReceived) << table(number, "tx", kSent);
    return rows;
}

QStringList J1939Expectation::start()
{
    restart();
    const bool isNew = shared.number("new_init_structure") == 1;
    QStringList rows;
    if (isNew)
        rows << shared.call("commonStackInit", Expectation::kNoLine, {quint32(lines.size())});
    rows << shared.call("j1939StackInit_common", Expectation::kNoLine, {isNew ? 5U : 3U});
    if (shared.hasUds())
        rows << shared.call("udsStackInit_common", Expectation::kNoLine,
                            {quint32(shared.number("udsserver_version"))});
    for (const quint8 line : qAsConst(speakers)) {
        rows << this->line(line);
        if (shared.hasUds())
            rows << shared.uds(line);
    }
    if (j1939("cia510serversupport") == 1) {
        for (const quint8 line : qAsConst(speakers))
            rows << shared.call("coOdInitOdPtr", line, {0});
    }
    return rows;
}

/// The last element of the list stands for the lines after it.
quint32 J1939Expectation::destinationBuffers(quint8 line) const
{
    const QStringList list = store.getJ1939SettingsValue("j1939fd_multipgbuffer").split(',');
    const QString element = list.value(qMin<int>(line, list.size() - 1));
    return element.isEmpty() ? 1 : element.toUInt();
}

QString J1939Expectation::countRow(const char *name,
                                   quint32 (*count)(const J1939Expectation &, quint8 line)) const
{
    QVector<quint32> numbers;
    for (const quint8 line : lines)
        numbers << count(*this, line);
    return QStringLiteral("  %1 %2").arg(QLatin1String(name), joinNumbers(numbers));
}

QStringList J1939Expectation::counts(int variant) const
{
    struct Row {
        const char *name;
        bool isWritten;
        quint32 (*count)(const J1939Expectation &, quint8 line);
    };
    using E = J1939Expectation;
    const bool isNew = shared.number("new_init_structure") == 1;
    const bool isFd = shared.isSet("canfd_supported");
    static const auto countGroups = [](const E &e, quint8 line, quint8 direction, bool safe) {
        const QVector<PgnData> all = e.groups(line, direction);
        return quint32(std::count_if(all.begin(), all.end(), [&](const PgnData &group) {
            return safe ? group.isSafe != 0 && e.speakers.contains(line) : e.isMapped(line, group);
        }));
    };
    static const auto countSdos = [](const E &e, quint8 line, const char *setting, quint16 low) {
        // A line of both protocols beside others has servers of CANopen.
        const bool isSpeaker =
            e.speakers.contains(line) && (e.lines.size() == 1 || e.shared.typeOf(line) == 2);
        const auto objects = quint32(e.store.getIndices(line, low, low + 0x7F).size());
        return isSpeaker ? quint32(e.j1939(setting) == 1) : objects;
    };
    // clang-format off
    const Row rows[] = {
        {"receivePgns", true, [](const E &e, quint8 line) { return countGroups(e, line, kReceived, false); }},
        {"transmitPgns", true, [](const E &e, quint8 line) { return countGroups(e, line, kSent, false); }},
        {"sdoServers", isNew,
         [](const E &e, quint8 line) { return countSdos(e, line, "cia510serversupport", 0x1200); }},
        {"sdoClients", isNew,
         [](const E &e, quint8 line) { return countSdos(e, line, "cia510clientsupport", 0x1280); }},
        {"destinationBuffers", isNew && isFd, [](const E &e, quint8 line) { return e.destinationBuffers(line); }},
        {"safeReceive", isNew && j1939("safetysupport") > 0,
         [](const E &e, quint8 line) { return countGroups(e, line, kReceived, true); }},
        {"safeTransmit", isNew && j1939("safetysupport") > 0,
         [](const E &e, quint8 line) { return countGroups(e, line, kSent, true); }},
    };
    // clang-format on
    QStringList texts = shared.commonCounts();
    for (const Row &row : rows) {
        if (row.isWritten)
            texts << countRow(row.name, row.count);
    }
    if (isNew && isFd)
        texts << "  fdMode " + joinNumbers(QVector<quint32>(lines.size(), quint32(variant)));
    return texts;
}
