// Elements of XML descriptions.
#include "formats/xddreader.h"

#include "formats/edskeys.h"
#include "support/accesstype.h"
#include "support/candatatype.h"
#include "support/helper.h"
#include "support/objectranges.h"
#include "support/printable.h"

namespace
{

using Type = CAN::CANopenDataType;

struct Word {
    const char *theirs;
    const char *ours;
};

/// Access to a parameter, and to an object where files have such words there too.
const struct {
    const char *word;
    QLatin1String access;
} kAccess[] = {
    {"const", AccessType::kConst},
    {"read", AccessType::kReadOnly},
    {"write", AccessType::kWriteOnly},
    {"readWrite", AccessType::kReadWrite},
    {"readWriteInput", AccessType::kReadWriteRead},
    {"readWriteOutput", AccessType::kReadWriteWrite},
};

QString accessOf(const QString &word)
{
    for (const auto &row : kAccess) {
        if (word == QLatin1String(row.word))
            return row.access;
    }
    return word;
}

constexpr Word kBodyAttributes[] = {
    {"fileVersion", EdsKeys::kFileVersion},
    {"fileCreator", EdsKeys::kCreatedBy},
    {"fileModifiedBy", EdsKeys::kModifiedBy},
};

constexpr Word kGeneralFeatures[] = {
    {"granularity", EdsKeys::kGranularity},
    {"nrOfRxPDO", EdsKeys::kNrOfRxPdo},
    {"nrOfTxPDO", EdsKeys::kNrOfTxPdo},
    {"bootUpSlave", EdsKeys::kSimpleBootupSlave},
    {"groupMessaging", EdsKeys::kGroupMessaging},
    {"layerSettingServiceSlave", EdsKeys::kLssSupported},
    {"selfStartingDevice", EdsKeys::kSelfStarting},
    {"dynamicChannels", EdsKeys::kDynamicChannelsSupported},
};

constexpr Word kMasterFeatures[] = {{"bootUpMaster", EdsKeys::kSimpleBootupMaster}};

constexpr Word kCommissioning[] = {
    {"nodeID", EdsKeys::kNodeId},           {"NodeID", EdsKeys::kNodeId},
    {"nodeName", EdsKeys::kNodeName},       {"actualBaudRate", EdsKeys::kBaudrate},
    {"networkNumber", EdsKeys::kNetNumber}, {"networkName", EdsKeys::kNetworkName},
};

QStringRef localName(const QStringRef &qualifiedName)
{
    return qualifiedName.mid(qualifiedName.lastIndexOf(QLatin1Char(':')) + 1);
}

QString withoutFullStop(const QString &sentence)
{
    return sentence.endsWith(QLatin1Char('.')) ? sentence.chopped(1) : sentence;
}

/// The most quotation marks of a tag, which are two for each attribute. The stream reader compares
/// each attribute with all others, which a file of nothing else would keep it at for days.
int mostQuotes(const QString &content)
{
    int most = 0;
    int count = 0;
    QChar open;
    bool isTag = false;
    for (int at = 0; at < content.size(); ++at) {
        const QChar character = content.at(at);
        if (character == QLatin1Char('<')) { // not even an attribute may hold it
            const QChar next = at + 1 < content.size() ? content.at(at + 1) : QChar();
            isTag = next != QLatin1Char('!') && next != QLatin1Char('?');
            count = 0;
            open = QChar();
        } else if (character == QLatin1Char('>') && open.isNull()) {
            isTag = false;
        } else if (isTag &&
                   (character == open || (open.isNull() && (character == QLatin1Char('"') ||
                                                            character == QLatin1Char('\''))))) {
            most = qMax(most, ++count);
            open = open.isNull() ? character : QChar();
        }
    }
    return most;
}

/// A number of an attribute or value; false if it is none.
bool toReal(const QString &value, double *number)
{
    bool ok = false;
    const bool isHex = value.startsWith(QLatin1String("0x"), Qt::CaseInsensitive);
    *number = isHex ? double(value.midRef(2).toULongLong(&ok, 16)) : value.toDouble(&ok);
    return ok;
}

} // namespace

enum class XddReader::Kind : quint8 {
    Other,
    Container,
    Body,
    Identity,
    VendorName,
    VendorId,
    ProductName,
    ProductId,
    OrderNumber,
    Object,
    SubObject,
    Parameter,
    TypeDefinition,
    CompoundType,
    TypeReference,
    SimpleType,
    Label,
    Description,
    Denotation,
    DefaultValue,
    ActualValue,
    AllowedValues,
    AllowedTemplate,
    AllowedValue,
    Range,
    Minimum,
    Maximum,
    GeneralFeatures,
    MasterFeatures,
    Commissioning,
    BaudRates,
    BaudRate,
    Dummy,
};

struct XddReader::Row {
    const char *name;
    Kind kind;
    Type type = Type::Unknown;
};

// clang-format off
const XddReader::Row XddReader::kRows[] = {
    {"ISO15745ProfileContainer", Kind::Container},
    {"ProfileBody", Kind::Body},
    {"DeviceIdentity", Kind::Identity},
    {"vendorName", Kind::VendorName}, {"vendorID", Kind::VendorId}, {"productName", Kind::ProductName},
    {"productID", Kind::ProductId}, {"orderNumber", Kind::OrderNumber},
    {"CANopenObject", Kind::Object}, {"CANopenSubObject", Kind::SubObject},
    {"CANopenFDDataObject", Kind::Object}, {"CANopenFDDataElement", Kind::SubObject},
    {"parameter", Kind::Parameter}, {"parameterTemplate", Kind::Parameter},
    {"derived", Kind::TypeDefinition}, {"enum", Kind::TypeDefinition},
    {"varDeclaration", Kind::TypeDefinition},
    {"array", Kind::CompoundType}, {"struct", Kind::CompoundType},
    {"dataTypeIDRef", Kind::TypeReference},
    {"label", Kind::Label}, {"description", Kind::Description}, {"denotation", Kind::Denotation},
    {"defaultValue", Kind::DefaultValue}, {"actualValue", Kind::ActualValue},
    {"allowedValues", Kind::AllowedValues}, {"allowedValuesTemplate", Kind::AllowedTemplate},
    {"value", Kind::AllowedValue}, {"range", Kind::Range},
    {"minValue", Kind::Minimum}, {"maxValue", Kind::Maximum},
    {"CANopenGeneralFeatures", Kind::GeneralFeatures}, {"CANopenMasterFeatures", Kind::MasterFeatures},
    {"deviceCommissioning", Kind::Commissioning},
    {"baudRate", Kind::BaudRates}, {"supportedBaudRate", Kind::BaudRate}, {"dummy", Kind::Dummy},
    {"BOOL", Kind::SimpleType, Type::Boolean},
    {"SINT", Kind::SimpleType, Type::Integer8}, {"CHAR", Kind::SimpleType, Type::Integer8},
    {"INT", Kind::SimpleType, Type::Integer16}, {"DINT", Kind::SimpleType, Type::Integer32},
    {"LINT", Kind::SimpleType, Type::Integer64},
    {"USINT", Kind::SimpleType, Type::Unsigned8}, {"BYTE", Kind::SimpleType, Type::Unsigned8},
    {"UINT", Kind::SimpleType, Type::Unsigned16}, {"WORD", Kind::SimpleType, Type::Unsigned16},
    {"UDINT", Kind::SimpleType, Type::Unsigned32}, {"DWORD", Kind::SimpleType, Type::Unsigned32},
    {"ULINT", Kind::SimpleType, Type::Unsigned64}, {"LWORD", Kind::SimpleType, Type::Unsigned64},
    {"REAL", Kind::SimpleType, Type::Real32}, {"LREAL", Kind::SimpleType, Type::Real64},
    {"STRING", Kind::SimpleType, Type::VisibleString}, {"WSTRING", Kind::SimpleType, Type::UnicodeString},
    {"BITSTRING", Kind::SimpleType},
};
// clang-format on

XddReader::XddReader(const QByteArray &bytes, XddFile *result, FileProblems *collector)
    : XddReader(Helper::decodeText(bytes), result, collector)
{
}

XddReader::XddReader(const QString &content, XddFile *result, FileProblems *collector)
    : xml(content), file(*result), problems(*collector)
{
    xml.setNamespaceProcessing(false); // a prefix that is not declared is no fault here
    if (mostQuotes(content) > 2 * kMostAttributes)
        reason =
            QStringLiteral("it has an element with more than %1 attributes").arg(kMostAttributes);
}

bool XddReader::read()
{
    while (!xml.atEnd() && reason.isEmpty()) {
        switch (xml.readNext()) {
        case QXmlStreamReader::StartElement:
            startElement();
            break;
        case QXmlStreamReader::EndElement:
            endElement();
            break;
        case QXmlStreamReader::Characters:
            text += xml.text();
            break;
        case QXmlStreamReader::DTD:
            refuse(QStringLiteral("it declares a document type, which no such file needs"),
                   static_cast<int>(xml.lineNumber()));
            break;
        default:
            break;
        }
    }
    if (xml.hasError() && reason.isEmpty())
        note("xdd-xml", [this] {
            return QStringLiteral("here the file is no XML any more, and what follows is passed "
                                  "over: %1")
                .arg(withoutFullStop(xml.errorString()));
        });
    if (reason.isEmpty() && file.objects.isEmpty())
        refuse(otherNetworkLine > 0 ? QStringLiteral("it describes a device of another network")
                                    : QStringLiteral("it has no object of CANopen"),
               otherNetworkLine);
    return reason.isEmpty();
}

void XddReader::refuse(const QString &words, int line)
{
    reason = words;
    reasonLine = line;
}

const XddReader::Row *XddReader::rowOf(const QStringRef &qualifiedName)
{
    static const QHash<QString, const Row *> rows = [] {
        QHash<QString, const Row *> result;
        for (const Row &row : kRows)
            result.insert(QLatin1String(row.name), &row);
        return result;
    }();
    return rows.value(localName(qualifiedName).toString());
}

void XddReader::startElement()
{
    const Row *const row = rowOf(xml.qualifiedName());
    // Some files hold several devices; what follows the first one is another's.
    const bool isOther = containers > 1 && !open.isEmpty();
    const Kind kind = row && !isOther ? row->kind : Kind::Other;
    if (open.size() >= kMostDepth) {
        refuse(QStringLiteral("its elements are more than %1 deep in each other").arg(kMostDepth),
               static_cast<int>(xml.lineNumber()));
        return;
    }
    text.clear();
    switch (kind) {
    case Kind::Container:
        if (++containers == 2)
            note("xdd-device", [] {
                return QStringLiteral("here a further device begins, and is passed over: put it "
                                      "into a file of its own");
            });
        break;
    case Kind::Body:
        startBody();
        break;
    case Kind::Object:
        startObject();
        break;
    case Kind::SubObject:
        startSubObject();
        break;
    case Kind::Parameter:
        startParameter();
        break;
    case Kind::AllowedValues:
        if (isWithin(Kind::Parameter, 1))
            parameter.limitsId = attribute("templateIDRef");
        break;
    case Kind::AllowedTemplate:
        startParameter();
        break;
    case Kind::TypeDefinition:
    case Kind::CompoundType:
        startType(kind);
        break;
    case Kind::TypeReference:
        takeReference();
        break;
    case Kind::SimpleType:
        takeSimpleType(*row);
        break;
    case Kind::DefaultValue:
    case Kind::ActualValue:
    case Kind::AllowedValue:
    case Kind::Minimum:
    case Kind::Maximum:
        takeValue(kind);
        break;
    case Kind::GeneralFeatures:
    case Kind::MasterFeatures:
    case Kind::Commissioning:
        takeFeatures(kind);
        break;
    case Kind::BaudRate:
        takeBaudRate();
        break;
    case Kind::Dummy:
        takeDummy();
        break;
    case Kind::Label:
    case Kind::Description:
        language = attribute("lang");
        break;
    default:
        break;
    }
    open.append(kind);
}

void XddReader::endElement()
{
    const Kind kind = open.isEmpty() ? Kind::Other : open.takeLast();
    if (kind == Kind::Object)
        isInObject = false;
    else if (kind == Kind::Parameter)
        endParameter();
    else if (kind == Kind::AllowedTemplate)
        endAllowedTemplate();
    else if (kind == Kind::TypeDefinition)
        endType();
    else if (kind == Kind::BaudRates)
        endBaudRates();
    else
        endText(kind);
}

/// Is that the element so many levels above the one that begins or has ended?
bool XddReader::isWithin(Kind kind, int levels) const
{
    return open.size() >= levels && open[open.size() - levels] == kind;
}

void XddReader::startBody()
{
    if (attribute("type").contains(QLatin1String("Powerlink"), Qt::CaseInsensitive))
        otherNetworkLine = static_cast<int>(xml.lineNumber());
    for (const Word &word : kBodyAttributes)
        inform(word.ours, attribute(word.theirs));
}

void XddReader::startObject()
{
    XddObject object;
    uint index = 0;
    isInObject = false;
    if (!readHex("index", 0xFFFF, &index))
        return;
    object.index = static_cast<quint16>(index);
    readEntry(&object);
    object.objectType = attribute("objectType");
    object.subNumber = attribute("subNumber");
    if (object.index > ObjectRanges::kAssigned.last)
        note("xdd-object", [&] {
            return QStringLiteral("the object %1 is passed over: indices above BFFF are reserved")
                .arg(attribute("index"));
        });
    else
        placeObject(object);
}

void XddReader::placeObject(const XddObject &object)
{
    isInObject = true;
    const auto former = objectNumbers.constFind(object.index);
    if (former == objectNumbers.constEnd()) {
        objectNumbers.insert(object.index, file.objects.size());
        file.objects.append(object);
        return;
    }
    isInObject = false;
    note("xdd-twice", [&] {
        return QStringLiteral("the object %1 is passed over, since it stands in line %2 already: "
                              "remove one of them")
            .arg(attribute("index"))
            .arg(file.objects[*former].line);
    });
}

void XddReader::startSubObject()
{
    XddEntry entry;
    uint number = 0;
    if (!isInObject || !isWithin(Kind::Object, 1) || !readHex("subIndex", 0xFF, &number))
        return;
    entry.index = file.objects.last().index;
    entry.subindex = static_cast<quint8>(number);
    readEntry(&entry);
    placeSubObject(entry);
}

void XddReader::placeSubObject(const XddEntry &entry)
{
    QVector<XddEntry> &subs = file.objects.last().subs;
    const quint32 key = quint32(entry.index) << 8 | entry.subindex;
    const auto former = subNumbers.constFind(key);
    if (former == subNumbers.constEnd()) {
        subNumbers.insert(key, subs.size());
        subs.append(entry);
        return;
    }
    note("xdd-twice", [&] {
        return QStringLiteral("the subobject %1 is passed over, since it stands in line %2 "
                              "already: remove one of them")
            .arg(attribute("subIndex"))
            .arg(subs[*former].line);
    });
}

void XddReader::startParameter()
{
    parameter = XddParameter();
    parameter.line = static_cast<int>(xml.lineNumber());
    parameter.access = accessOf(attribute("access"));
    parameter.templateId = attribute("templateIDRef");
    parameterId = attribute("uniqueID");
    name = description = denotation = Label();
    limits = Limits();
}

void XddReader::endParameter()
{
    parameter.name = name.text;
    parameter.description = description.text;
    parameter.denotation = denotation.text;
    parameter.lowLimit = limits.lowest;
    parameter.highLimit = limits.highest;
    if (parameterId.isEmpty())
        return;
    const auto former = file.parameters.constFind(parameterId);
    if (former != file.parameters.constEnd())
        note("xdd-twice", [&] {
            return QStringLiteral("the parameter %1 takes the place of the one of line %2")
                .arg(quotedWord(parameterId))
                .arg(former->line);
        });
    file.parameters.insert(parameterId, parameter);
}

void XddReader::endAllowedTemplate()
{
    parameter.lowLimit = limits.lowest;
    parameter.highLimit = limits.highest;
    file.limits.insert(parameterId, parameter);
}

void XddReader::startType(Kind kind)
{
    type = XddType();
    typeId = attribute("uniqueID");
    if (kind == Kind::CompoundType)
        file.types.insert(typeId, type); // without type, which is that of the elements
}

void XddReader::endType()
{
    file.types.insert(typeId, type);
}

void XddReader::takeSimpleType(const Row &row)
{
    XddType simple;
    simple.type = CAN::typeNumber(row.type);
    simple.isBitString = row.type == Type::Unknown;
    if (isWithin(Kind::Parameter, 1))
        parameter.type = simple;
    else if (isWithin(Kind::TypeDefinition, 1))
        type = simple;
}

void XddReader::takeReference()
{
    XddType referred;
    referred.reference = attribute("uniqueIDRef");
    if (isWithin(Kind::Parameter, 1))
        parameter.type = referred;
    else if (isWithin(Kind::TypeDefinition, 1))
        type = referred;
}

void XddReader::takeValue(Kind kind)
{
    const QString value = attribute("value");
    if (kind == Kind::DefaultValue && isWithin(Kind::Parameter, 1))
        parameter.defaultValue = value;
    else if (kind == Kind::ActualValue && isWithin(Kind::Parameter, 1))
        parameter.actualValue = value;
    else if (kind == Kind::AllowedValue && isAllowed(1))
        limits.add(value, true, true);
    else if (isWithin(Kind::Range, 1) && isAllowed(2))
        limits.add(value, kind == Kind::Minimum, kind == Kind::Maximum);
}

/// Is the element so many levels above one with the values of a parameter, or of a template?
bool XddReader::isAllowed(int levels) const
{
    return isWithin(Kind::AllowedTemplate, levels) ||
           (isWithin(Kind::AllowedValues, levels) && isWithin(Kind::Parameter, levels + 1));
}

void XddReader::Limits::add(const QString &value, bool isLow, bool isHigh)
{
    double number = 0;
    double other = 0;
    if (value.isEmpty())
        return;
    const bool isNumber = toReal(value, &number);
    if (isLow && (lowest.isEmpty() || (isNumber && toReal(lowest, &other) && number < other)))
        lowest = value;
    if (isHigh && (highest.isEmpty() || (isNumber && toReal(highest, &other) && number > other)))
        highest = value;
}

void XddReader::takeFeatures(Kind kind)
{
    const auto take = [this](const auto &words) {
        for (const Word &word : words) {
            const QString value = attribute(word.theirs);
            const bool isFlag = value == QLatin1String("true") || value == QLatin1String("false");
            inform(word.ours, isFlag ? QString::number(value == QLatin1String("true")) : value);
        }
    };
    if (kind == Kind::GeneralFeatures)
        take(kGeneralFeatures);
    else if (kind == Kind::MasterFeatures)
        take(kMasterFeatures);
    else
        take(kCommissioning);
}

/// "250 Kbps" sets the key of that rate.
void XddReader::takeBaudRate()
{
    hasBaudRates = true;
    const QString rate = attribute("value").section(QLatin1Char(' '), 0, 0);
    for (const char *key : EdsKeys::kBaudRates) {
        if (QLatin1String(key).mid(int(qstrlen("BaudRate_"))) == rate)
            inform(key, QStringLiteral("1"));
    }
}

/// Where rates are listed, no other one is supported.
void XddReader::endBaudRates()
{
    for (const char *key : EdsKeys::kBaudRates) {
        if (hasBaudRates)
            inform(key, QStringLiteral("0"));
    }
}

/// "Dummy0001=1".
void XddReader::takeDummy()
{
    const QString entry = attribute("entry");
    for (const char *key : EdsKeys::kDummies) {
        if (entry.section(QLatin1Char('='), 0, 0).trimmed() == QLatin1String(key))
            inform(key, entry.section(QLatin1Char('='), 1).trimmed());
    }
}

void XddReader::endText(Kind kind)
{
    const auto take = [this](Label *label) {
        const bool isEnglish = language.startsWith(QLatin1String("en"), Qt::CaseInsensitive);
        const QString words = text.trimmed();
        if (!words.isEmpty() && (label->text.isEmpty() || (isEnglish && !label->isEnglish)))
            *label = {words, isEnglish};
    };
    const bool isOfParameter = isWithin(Kind::Parameter, 1);
    if (kind == Kind::Label && isOfParameter)
        take(&name);
    else if (kind == Kind::Description && isOfParameter)
        take(&description);
    else if (kind == Kind::Label && isWithin(Kind::Denotation, 1) && isWithin(Kind::Parameter, 2))
        take(&denotation);
    else if (kind == Kind::VendorName && isWithin(Kind::Identity, 1))
        inform(EdsKeys::kVendorName, text.trimmed());
    else if (kind == Kind::VendorId && isWithin(Kind::Identity, 1))
        inform(EdsKeys::kVendorNumber, text.trimmed());
    else if (kind == Kind::ProductName && isWithin(Kind::Identity, 1))
        inform(EdsKeys::kProductName, text.trimmed());
    else if (kind == Kind::ProductId && isWithin(Kind::Identity, 1))
        inform(EdsKeys::kProductNumber, text.trimmed());
    else if (kind == Kind::OrderNumber && isWithin(Kind::Identity, 1))
        inform(EdsKeys::kOrderCode, text.trimmed());
    text.clear();
}

/// By its name, whatever its prefix is.
QString XddReader::attribute(const char *word) const
{
    const QXmlStreamAttributes all = xml.attributes();
    for (const QXmlStreamAttribute &one : all) {
        if (localName(one.qualifiedName()) == QLatin1String(word))
            return one.value().toString();
    }
    return QString();
}

void XddReader::readEntry(XddEntry *entry) const
{
    entry->line = static_cast<int>(xml.lineNumber());
    entry->name = attribute("name");
    entry->dataType = attribute("dataType");
    entry->access = accessOf(attribute("accessType"));
    entry->lowLimit = attribute("lowLimit");
    entry->highLimit = attribute("highLimit");
    entry->defaultValue = attribute("defaultValue");
    entry->actualValue = attribute("actualValue");
    entry->denotation = attribute("denotation");
    entry->mapping = attribute("PDOmapping");
    entry->flags = attribute("objFlags");
    entry->parameterId = attribute("uniqueIDRef");
    if (entry->access.isEmpty()) // CANopen FD, which says apart that a value is constant
        entry->access = attribute("modification") == QLatin1String("false")
                            ? QString(AccessType::kConst)
                            : attribute("accessUSDO");
    if (entry->mapping.isEmpty())
        entry->mapping = attribute("accessPDO");
}

/// Tells if it is none, or above \a most.
bool XddReader::readHex(const char *word, uint most, uint *number)
{
    const QString digits = attribute(word);
    bool ok = false;
    *number = digits.toUInt(&ok, 16);
    ok = ok && *number <= most;
    if (!ok)
        note("xdd-object", [&] {
            return QStringLiteral("the %1 %2 is none, and what has it is passed over")
                .arg(QLatin1String(word), quotedWord(digits));
        });
    return ok;
}

/// The first of several that is there.
void XddReader::inform(const char *key, const QString &value)
{
    const QString word = QLatin1String(key);
    if (!value.isEmpty() && !file.information.contains(word))
        file.information.insert(word, {value, static_cast<int>(xml.lineNumber())});
}

void XddReader::note(const char *rule, const std::function<QString()> &words)
{
    problems.add(rule, static_cast<int>(xml.lineNumber()), words);
}
