// What of a project's model no generated file can hold as it is meant.
#include "app/modelwarnings.h"

#include "generators/j1939/extdeclgenerator.h"
#include "generators/outputname.h"
#include "generators/projectlines.h"
#include "store/fillers.h"
#include "support/cohelper.h"
#include "support/direction.h"
#include "support/implementation.h"
#include "support/numbers.h"
#include "support/objectranges.h"
#include "support/printable.h"
#include "support/problems.h"

#include <QDir>
#include <QFileInfo>

#include <algorithm>
#include <utility>

namespace
{

using Type = CAN::CANopenDataType;

/// How the two kinds of frames are read and spoken of.
template <class Frame>
struct FrameWords;

template <>
struct FrameWords<PgnData> {
    static constexpr const char *kName = "group";
    static constexpr auto kNumbers = [](const ObjectDataBase &store, quint8 line,
                                        quint8 direction) {
        return store.getPGNs(line, direction, false);
    };
    static constexpr auto kSignals = &ObjectDataBase::getSPNRecords;
    static constexpr auto kStray = &ObjectDataBase::getSPNsWithoutGroup;
    static constexpr auto kFrameOf = &SpnData::pgn;
};

template <>
struct FrameWords<CanIdData> {
    static constexpr const char *kName = "CAN identifier";
    static constexpr auto kNumbers = [](const ObjectDataBase &store, quint8 line,
                                        quint8 direction) {
        return store.getCANIDs(line, direction);
    };
    static constexpr auto kSignals = &ObjectDataBase::getDataElementRecords;
    static constexpr auto kStray = &ObjectDataBase::getDataElementsWithoutId;
    static constexpr auto kFrameOf = &DataElementData::canid;
};

/// A text whose end its bytes tell, and a gap, which is not a signal, need no size.
bool needsBits(const SignalData &signal)
{
    const auto type = Type(signal.dataType);
    return type != Type::StringAsterisk && type != Type::StringNull && !Fillers::isFiller(signal);
}

bool hasBits(const SignalData &signal)
{
    return signal.bitSize != 0 || COHelper::getDataLengthBits(Type(signal.dataType)) != 0;
}

QString typeName(quint32 dataType)
{
    const QString name = COHelper::index2DataTypeString(quint16(dataType));
    return name.isEmpty() ? QString::number(dataType) : name;
}

/// "group 61444 that line 0 receives"
QString frameText(const char *name, quint32 number, quint32 direction, quint8 line)
{
    const bool isReceived = direction == Direction::kReceived;
    const bool isKnown = isReceived || direction == Direction::kTransmitted;
    return QStringLiteral("%1 %2 that line %3 %4")
        .arg(QLatin1String(name), QString::number(number), QString::number(line),
             isReceived ? QStringLiteral("receives")
             : isKnown  ? QStringLiteral("sends")
                        : QStringLiteral("has in direction %1").arg(direction));
}

ProjectPlace placeOf(quint8 line, quint32 frame)
{
    ProjectPlace place;
    place.line = line;
    place.group = int(frame);
    return place;
}

ProjectPlace placeOf(const ExtDecl::Misfit &misfit)
{
    ProjectPlace place;
    place.line = misfit.line;
    place.index = misfit.index;
    place.subindex = misfit.subindex;
    place.column = QStringLiteral("varname");
    return place;
}

/// "the variable "level" of the object 0x2000:1 on line 0, and 2 more, are"
QString variableText(const QVector<ExtDecl::Misfit> &misfits)
{
    const ExtDecl::Misfit &first = misfits.first();
    const QString others = misfits.size() == 1
                               ? QStringLiteral(" is")
                               : QStringLiteral(", and %1 more, are").arg(misfits.size() - 1);
    return QStringLiteral("the variable %1 of the object 0x%2:%3 on line %4")
               .arg(quotedWord(first.name), Numbers::toHex(first.index, 4),
                    QString::number(first.subindex), QString::number(first.line)) +
           others;
}

} // namespace

ModelWarnings::ModelWarnings(const ObjectDataBase &database, const ProjectFacts &project,
                             Locate locator, const QStringList &headerFolders)
    : store(database), facts(project), locate(std::move(locator)), folders(headerFolders),
      generatedLines(readProjectLines(database).numbers),
      virtualValues(VobjDict::readCounted(database))
{
}

void ModelWarnings::run() const
{
    for (const ProjectLine &line : facts.lines) {
        checkStart(line.number);
        if (carriesJ1939(line.type))
            checkSignals<PgnData>(line.number);
        else
            checkNoFrames<PgnData>(line.number, QStringLiteral("J1939"));
        if (line.type == LineType::RawCan)
            checkSignals<CanIdData>(line.number);
        else
            checkNoFrames<CanIdData>(line.number, QStringLiteral("raw CAN"));
        if (generatedLines.contains(line.number) && hasDictionary(facts))
            checkVirtualObjects(line.number);
    }
    checkHeaders();
    if (facts.features.hasGeneratedVariables() && facts.hasCANopen)
        checkVariables();
}

template <class Frame>
void ModelWarnings::checkSignals(quint8 line) const
{
    using Words = FrameWords<Frame>;
    const auto stray = (store.*Words::kStray)(line);
    for (const auto &signal : stray) {
        const quint32 frame = signal.*Words::kFrameOf;
        ProjectPlace place = placeOf(line, frame);
        place.signal = int(signal.number);
        tell("signal-without-group", place,
             QStringLiteral("the signal %1 stands in no file, since there is no %2: add the %3, or "
                            "remove the signal")
                 .arg(QString::number(signal.number),
                      frameText(Words::kName, frame, signal.direction, line),
                      QLatin1String(Words::kName)));
    }
    for (const quint8 direction : {Direction::kReceived, Direction::kTransmitted}) {
        const QList<quint32> frames = Words::kNumbers(store, line, direction);
        for (const quint32 frame : frames)
            checkMembers<Frame>(line, frame, direction);
    }
}

template <class Frame>
void ModelWarnings::checkNoFrames(quint8 line, const QString &protocol) const
{
    using Words = FrameWords<Frame>;
    for (const quint8 direction : {Direction::kReceived, Direction::kTransmitted}) {
        const QList<quint32> frames = Words::kNumbers(store, line, direction);
        if (!frames.isEmpty())
            return tell(
                "frame-of-other-protocol", placeOf(line, frames.first()),
                QStringLiteral("the %1 stands in no file, since only lines of %2 have such: "
                               "give the line that protocol, or remove what it has of this "
                               "kind")
                    .arg(frameText(Words::kName, frames.first(), direction, line), protocol));
    }
}

template <class Frame>
void ModelWarnings::checkMembers(quint8 line, quint32 frame, quint8 direction) const
{
    using Words = FrameWords<Frame>;
    const auto tellOf = [&](const char *rule, quint32 number, const QString &fault) {
        ProjectPlace place = placeOf(line, frame);
        place.signal = int(number);
        tell(rule, place,
             QStringLiteral("the signal %1 in the %2 %3")
                 .arg(QString::number(number), frameText(Words::kName, frame, direction, line),
                      fault));
    };
    const auto members = (store.*Words::kSignals)(line, frame, direction);
    QVector<quint32> numbers;
    numbers.reserve(members.size());
    for (const auto &signal : members) {
        if (!needsBits(signal))
            continue;
        numbers << signal.number;
        if (!hasBits(signal))
            tellOf("signal-without-bits", signal.number,
                   QStringLiteral("has no bits, since its type %1 has no size of its own: give it "
                                  "a bit size, or another type")
                       .arg(typeName(signal.dataType)));
    }
    std::sort(numbers.begin(), numbers.end());
    auto doubled = numbers.cbegin();
    while ((doubled = std::adjacent_find(doubled, numbers.cend())) != numbers.cend()) {
        tellOf("doubled-signal", *doubled,
               QStringLiteral("stands there more than once, each time with bits of its own: "
                              "remove all but one"));
        doubled = std::upper_bound(doubled, numbers.cend(), *doubled);
    }
}

void ModelWarnings::checkVirtualObjects(quint8 line) const
{
    store.visitLine(line, [&](quint16 index, quint8 sub, const SubIndexData &data) {
        if (data.implementation != Implementation::kVirtualObject ||
            !ObjectRanges::kAll.contains(index))
            return;
        const QString reason = whyWithoutValue(line, index, data.dataType);
        if (reason.isEmpty())
            return;
        ProjectPlace place;
        place.line = line;
        place.index = index;
        place.subindex = sub;
        place.column = QStringLiteral("implementation");
        tell("virtual-object", place,
             QStringLiteral("the virtual object 0x%1:%2 of line %3 has no place among the values "
                            "of gen_vobjdict.c, since %4: choose another implementation")
                 .arg(Numbers::toHex(index, 4), QString::number(sub), QString::number(line),
                      reason));
    });
}

QString ModelWarnings::whyWithoutValue(quint8 line, quint16 index, quint16 dataType) const
{
    if (facts.isMixed() && facts.isForV4)
        return QStringLiteral("a V4 project of several protocols has no virtual objects");
    if (!ObjectRanges::kAssigned.contains(index))
        return QStringLiteral("their indices end at 0x%1")
            .arg(Numbers::toHex(ObjectRanges::kAssigned.last, 4));
    if (!virtualValues.lines.contains(line))
        return QStringLiteral("a V4 project has them on line %1 alone")
            .arg(virtualValues.lines.value(0));
    if (!VobjDict::hasValues(dataType, virtualValues))
        return QStringLiteral("none of them can be of type %1").arg(typeName(dataType));
    return QString();
}

void ModelWarnings::checkStart(quint8 line) const
{
    if (!facts.isMixed() || generatedLines.contains(line) || !isKnown(readLineType(store, line)))
        return;
    ProjectPlace place;
    place.line = line;
    place.store = QStringLiteral("GeneralSettings");
    place.setting = QStringLiteral("line%1type").arg(line);
    tell("line-without-start", place,
         QStringLiteral("no generated function starts line %1, since a project of several "
                        "protocols has lines 0 to 31: give it a lower number")
             .arg(line));
}

/// Only those that are named as the project's own: <name> is for the compiler to find.
void ModelWarnings::checkHeaders() const
{
    const QString key = QStringLiteral("applicationheader");
    const QStringList words =
        store.getGeneralSettingsValue(key).simplified().split(QLatin1Char(' '));
    for (const QString &word : words) {
        const QString name = OutputName::headers(word).value(0);
        if (name.isEmpty() || word.contains(QLatin1Char('<')))
            continue;
        bool exists = false;
        for (const QString &folder : folders)
            exists = exists || QFileInfo::exists(QDir(folder).filePath(name));
        if (exists)
            continue;
        ProjectPlace place;
        place.store = QStringLiteral("GeneralSettings");
        place.setting = key;
        tell("missing-header", place,
             QStringLiteral("the header %1 of \"%2\" is not in the folder of the project: mend its "
                            "name, or write <%3> if the compiler finds it in another folder")
                 .arg(quotedWord(name), key, name.left(60)));
    }
}

/// Those of objects whose C does not compile with the declarations alone: the first of each kind.
void ModelWarnings::checkVariables() const
{
    QVector<ExtDecl::Misfit> unknown;
    QVector<ExtDecl::Misfit> mixed;
    const ExtDecl::Variables variables = ExtDecl::readVariables(store);
    for (const ExtDecl::Misfit &misfit : variables.misfits)
        (misfit.type.isEmpty() ? unknown : mixed) << misfit;
    if (!unknown.isEmpty()) {
        tell("variable-not-declared", placeOf(unknown.first()),
             variableText(unknown) +
                 QStringLiteral(" not declared in gen_extern_decl.h, which has plain names and "
                                "elements of arrays of a known type: declare what it is in a "
                                "header of \"applicationheader\""));
    }
    if (!mixed.isEmpty()) {
        tell("variable-types", placeOf(mixed.first()),
             variableText(mixed) +
                 QStringLiteral(" of several types, here %1 and elsewhere %2, which a C compiler "
                                "does not take: give each of the objects a variable of its own")
                     .arg(mixed.first().type, mixed.first().otherType));
    }
}

void ModelWarnings::tell(const char *rule, const ProjectPlace &place, const QString &text) const
{
    const Place found = locate(place);
    Problems::warning(rule, found.file, text, found.line);
}
