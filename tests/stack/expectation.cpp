// The object dictionary of a project, told in the words of the test program.
#include "tests/stack/expectation.h"

#include "support/helper.h"
#include "tests/stack/meaning.h"

using namespace Meaning;

namespace
{

/// The row of service_objects.txt that tells of a subindex; empty if there is none.
QStringList serviceOf(quint16 index, quint8 sub)
{
    static const QVector<QStringList> rows = table("service_objects.txt");
    for (const QStringList &row : rows) {
        const QString &subs = row.at(2);
        const bool isSub =
            subs == "all" || (subs == "entries" && sub > 0) || subs == QString::number(sub);
        if (isSub && index >= row.at(0).toUShort(nullptr, 16) &&
            index <= row.at(1).toUShort(nullptr, 16))
            return row;
    }
    return {};
}

/// \a tellsLimits: the tables have columns for limits, which only those that are written fill.
QString attributes(const SubIndexData &sub, bool tellsLimits)
{
    QStringList words;
    if (sub.dataType <= 8 || sub.dataType == 22)
        words << "NUM";
    const bool isMapped = sub.pdoMapping != PDOMapping();
    const bool isRead = sub.accessType != QLatin1String("wo");
    if (isRead)
        words << "READ";
    if (isWritten(sub))
        words << "WRITE";
    if (isMapped && isRead && sub.accessType != QLatin1String("rww"))
        words << "MAP_TR";
    if (isMapped && isWritten(sub) && sub.accessType != QLatin1String("rwr"))
        words << "MAP_REC";
    if (sub.defaultInEds && hasDefault(sub))
        words << "DEFVAL";
    if (sub.limitInEds && hasLimits(sub.dataType) && (isWritten(sub) || !tellsLimits))
        words << "LIMIT";
    if (sub.nvStorage)
        words << "STORE";
    return words.join('|');
}

/// A text as the test program prints it.
QString printable(const QByteArray &text)
{
    QString result;
    for (const char c : text) {
        if (c > ' ' && c <= '~' && c != '%')
            result += QLatin1Char(c);
        else
            result += QStringLiteral("%%1").arg(static_cast<quint8>(c), 2, 16, QLatin1Char('0'));
    }
    return result;
}

} // namespace

Expectation::Expectation(ObjectDataBase &database) : store(database), lines(database.getNodes())
{
    for (const quint8 line : lines) {
        if (store.getIndices(line, 0x1000, 0xFFFF).size() > 1)
            served << line;
    }
    multiLine =
        lines.size() > 1 || store.getMiscSettingsValue("generateML") == QLatin1String("true");
}

int Expectation::typeOf(quint8 line) const
{
    return store.getGeneralSettingsValue(QStringLiteral("line%1type").arg(line)).toInt();
}

quint32 Expectation::protocolsOf(quint8 line) const
{
    static const QMap<int, quint32> protocols = {{1, 1}, {2, 2}, {4, 4}, {5, 3}};
    return protocols.value(typeOf(line)) | (hasUds() ? 8 : 0);
}

int Expectation::number(const char *setting) const
{
    return store.getGeneralSettingsValue(setting).toInt();
}

int Expectation::number(const char *setting, quint8 line) const
{
    return store.getGeneralSettingsValueLine(setting, line).toInt();
}

quint32 Expectation::value(quint8 line, quint16 index, quint8 sub) const
{
    return static_cast<quint32>(numberOf(withoutNodeId(store.getSubIndexValue(line, index, sub))));
}

int Expectation::entries(quint8 line, quint16 index) const
{
    return store.getSubIndices(line, index, 1).size();
}

SubIndexData Expectation::subOf(const Place &place) const
{
    SubIndexData data;
    if (!store.getSubIndexData(place.line, place.index, place.sub, data))
        qWarning("no subindex");
    return data;
}

bool Expectation::hasType(quint16 dataType) const
{
    return std::any_of(lines.begin(), lines.end(), [this, dataType](quint8 line) {
        return !store.getSubsByProperty(line, "datatype", QString::number(dataType)).isEmpty();
    });
}

bool Expectation::choosesMaster() const
{
    return multiLine ? store.getGeneralSettingsValue("nmtmaster").contains('2')
                     : number("nmtmaster") == 2;
}

QStringList Expectation::stackFeatures() const
{
    QStringList flags;
    if (store.getGeneralSettingsValue("use_core_headers") == QLatin1String("V4"))
        flags << "-DSTACK_V4";
    if (isSet("new_init_structure"))
        flags << "-DSTACK_NEW_INIT";
    if (choosesMaster())
        flags << "-DSTACK_PARA";
    if (isRouted())
        flags << "-DSTACK_ROUTES";
    if (isSet("udsserver_supported") || isSet("udsclient_supported"))
        flags << "-DSTACK_UDS";
    if (number("generate_variables") == 1)
        flags << "-DSTACK_DEFINES_VARIABLES=1";
    // Signed values of 24 bits have arrays, but no place in the structure that the stack reads.
    if (hasType(16))
        flags << "-Wno-unused-variable"
              << "-Wno-unused-const-variable";
    return flags;
}

QMap<QString, quint16> Expectation::appVariables() const
{
    QMap<QString, quint16> variables;
    for (const quint8 line : lines) {
        for (const auto &place : store.getSubsByProperty(line, "implementation", "2")) {
            const SubIndexData sub = subOf({line, place.index, place.subindex});
            const bool isMapped = number("generate_variables") == 1 &&
                                  !sub.pdoMapping.isEqualToType(PDOMappingType::No);
            if (sub.dataType != 15 || isMapped)
                variables.insert(
                    Helper::substituteVariables(sub.varName, place.index, place.subindex),
                    sub.dataType);
        }
    }
    return variables;
}

/// A shared subindex of a line is that of line 0, if that has one.
quint8 Expectation::homeOf(const Place &place) const
{
    SubIndexData first;
    const bool isShared = place.line != 0 && subOf(place).sharedLines &&
                          store.getSubIndexData(0, place.index, place.sub, first) &&
                          first.sharedLines;
    return isShared ? 0 : place.line;
}

// --- Dictionary ---

QStringList Expectation::dictionary() const
{
    static const QMap<int, QString> kinds = {{2, "DOM"}, {7, "VAR"}, {8, "ARRAY"}, {9, "STRUCT"}};
    QStringList rows;
    for (const quint8 line : multiLine ? served : lines) {
        for (const quint16 index : store.getIndices(line, 0x1000, 0xFFFF)) {
            const QList<quint8> subs = store.getSubIndices(line, index, 0);
            SubIndexData first;
            if (store.getSubIndexData(line, index, 0, first) && first.implementation == 3)
                continue;
            IndexData object;
            (void)store.getIndexData(line, index, object); // it was listed
            const int code = static_cast<int>(object.objectCode);
            rows << QStringLiteral("object %1 %2 highest=%3 %4")
                        .arg(shown(line))
                        .arg(index, 4, 16, QLatin1Char('0'))
                        .arg(subs.isEmpty() ? 0 : subs.last())
                        .arg(kinds.value(code, subs.size() > 1 ? "STRUCT" : "VAR"));
            for (const quint8 sub : subs) {
                if (subOf({line, index, sub}).implementation != 3)
                    rows << subRow({line, index, sub});
            }
        }
    }
    return rows;
}

QString Expectation::subRow(const Place &place) const
{
    const SubIndexData sub = subOf({homeOf(place), place.index, place.sub});
    const QStringList service = serviceOf(place.index, place.sub);
    QString type = typeName(sub.dataType);
    QString storage;
    if (sub.implementation == 1)
        storage = QStringLiteral("_CONST");
    else if (!service.isEmpty())
        storage = '_' + service.at(3);
    else if (sub.dataType != 15)
        storage = sub.implementation == 2 ? QStringLiteral("_PTR") : QStringLiteral("_VAR");
    if (storage == QLatin1String("_CONST") && type == QLatin1String("OS"))
        type = QStringLiteral("VS");
    return QStringLiteral("sub %1 %2:%3 %4%5 ")
               .arg(shown(place.line))
               .arg(place.index, 4, 16, QLatin1Char('0'))
               .arg(place.sub)
               .arg(type, storage) +
           attributes(sub, numberOf(store.getGeneralSettingsValue("limit_check")) > 0) +
           valueText(place, sub, storage) + boundsText(sub);
}

QString Expectation::valueText(const Place &place, const SubIndexData &sub,
                               const QString &storage) const
{
    const bool isText = sub.dataType == 9 || sub.dataType == 10 || sub.dataType == 124;
    const QString size = isText ? QStringLiteral(" size=%1").arg(sub.size) : QString();
    if (storage == QLatin1String("_CONST") && isText) {
        const int bytes = static_cast<int>(sub.size);
        return QStringLiteral(" value=") +
               printable(textBytes(sub.defaultValue).leftJustified(bytes, 0, true)) + size;
    }
    if (storage == QLatin1String("_PTR") && (isText || hasArray(sub.dataType))) {
        const QString name = Helper::substituteVariables(sub.varName, place.index, place.sub);
        return QStringLiteral(" value=->") + name + definedValue(sub, name) + size;
    }
    if (storage == QLatin1String("_PTR") || storage == QLatin1String("_VAR") ||
        storage == QLatin1String("_CONST")) {
        if (!hasArray(sub.dataType))
            return QStringLiteral(" value=none");
        const bool isZero = storage == QLatin1String("_VAR") &&
                            (number("init_static_variables") != 1 || hasNodeId(sub.defaultValue));
        return QStringLiteral(" value=") +
               (isZero ? QStringLiteral("0")
                       : numberText(sub.dataType, withoutNodeId(sub.defaultValue)));
    }
    const QString reference = serviceOf(place.index, place.sub).value(4, "-");
    if (reference == "-")
        return storage.isEmpty() ? QStringLiteral(" domain=%1").arg(domainNumber(place))
                                 : QString();
    const int first = reference == "index" ? 0 : reference.toInt(nullptr, 16);
    return QStringLiteral(" ref=%1").arg(place.index - first);
}

/// With what a variable starts that generated code defines.
QString Expectation::definedValue(const SubIndexData &sub, const QString &name) const
{
    if (number("generate_variables") != 1)
        return QString();
    if (!hasArray(sub.dataType))
        return '=' +
               printable(
                   textBytes(sub.defaultValue).leftJustified(static_cast<int>(sub.size), 0, true));
    const bool isZero = name.contains('(') || hasNodeId(sub.defaultValue);
    return '=' + (isZero ? QStringLiteral("0") : numberText(sub.dataType, sub.defaultValue));
}

/// Each domain has a place of its own.
int Expectation::domainNumber(const Place &place) const
{
    int number = 0;
    for (const quint8 line : lines) {
        if (line > homeOf(place))
            break;
        for (const auto &each : store.getSubsByProperty(line, "datatype", "15")) {
            const bool isBefore = line < homeOf(place) || each.index < place.index ||
                                  (each.index == place.index && each.subindex < place.sub);
            const quint8 implementation = subOf({line, each.index, each.subindex}).implementation;
            number += isBefore && implementation != 1 && implementation != 3 ? 1 : 0;
        }
    }
    return number;
}

QString Expectation::boundsText(const SubIndexData &sub) const
{
    QString text;
    if (hasArray(sub.dataType))
        text =
            QStringLiteral(" default=") + numberText(sub.dataType, withoutNodeId(sub.defaultValue));
    if (numberOf(store.getGeneralSettingsValue("limit_check")) > 0 && sub.limitInEds &&
        hasLimits(sub.dataType) && isWritten(sub))
        text +=
            QStringLiteral(" limits=%1..%2")
                .arg(numberText(sub.dataType, sub.lowLimit), numberText(sub.dataType, sub.upLimit));
    return text;
}

QStringList Expectation::virtualObjects() const
{
    QStringList rows;
    // Without a value of a type that the definitions count there are no tables.
    const bool isV4 = store.getGeneralSettingsValue("use_core_headers") == "V4";
    QList<quint16> counted = {2, 3, 4, 5, 6, 7, 8, 22};
    if (!isV4)
        counted << 9 << 10 << 15;
    bool hasValues = false;
    for (const quint8 line : isV4 ? lines.mid(0, 1) : lines) {
        for (const auto &place : store.getSubsByProperty(line, "implementation", "3"))
            hasValues |=
                place.index <= 0xBFFF &&
                counted.contains(store.getSubIndexDatatype(line, place.index, place.subindex));
    }
    if (!hasValues)
        return rows;
    for (const quint8 line : served) {
        for (const quint16 index : store.getIndices(line, 0x1000, 0xFFFF)) {
            const QList<quint8> subs = store.getSubIndices(line, index, 0);
            QStringList entries;
            IndexData object;
            (void)store.getIndexData(line, index, object); // it was listed
            const bool hasSubs = object.objectCode == CANopen::ObjectCode::Array ||
                                 object.objectCode == CANopen::ObjectCode::Record;
            for (const quint8 each : subs) {
                SubIndexData sub = subOf({line, index, each});
                sub.limitInEds = false; // there are no columns for limits
                if (sub.implementation == 3 && (hasSubs || each == 0))
                    entries << QStringLiteral("virtual  %1 %2 %3")
                                   .arg(each)
                                   .arg(typeName(sub.dataType), attributes(sub, false));
            }
            if (!entries.isEmpty())
                rows << QStringLiteral("virtual %1 highest=%2")
                            .arg(index, 4, 16, QLatin1Char('0'))
                            .arg(subs.last())
                     << entries;
        }
    }
    return rows;
}
