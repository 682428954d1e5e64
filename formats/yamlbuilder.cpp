// Makes a document of the events of the YAML parser.
#include "formats/yamlbuilder.h"

#include "support/editdistance.h"
#include "support/printable.h"

#include <QStringList>

#include <algorithm>
#include <cstring>

namespace
{

const char *asText(const uchar *text)
{
    return reinterpret_cast<const char *>(text);
}

constexpr int kBytesOfValue = 32;    // of a text, from which it counts as several values
constexpr int kMostSuggested = 1000; // words that are compared with one that is not there
constexpr int kLongestSuggested = 100;

} // namespace

YamlBuilder::YamlBuilder(const QByteArray &text, YamlDocument *result, YamlProblems *collected)
    : document(result), problems(collected)
{
    *document = YamlDocument();
    document->source = text;
    at = document->source.constData();
    covered = at;
    isAscii = std::all_of(text.begin(), text.end(), [](char byte) { return uchar(byte) < 0x80; });
}

YamlPlace YamlBuilder::placeOf(const yaml_mark_t &mark)
{
    return {int(mark.line) + 1, int(mark.column) + 1};
}

bool YamlBuilder::fail(const char *rule, YamlPlace place, const QString &text)
{
    problems->add(rule, place, text);
    return drop();
}

bool YamlBuilder::drop()
{
    document->cells.clear();
    return false;
}

bool YamlBuilder::add(const char *rule, YamlPlace place, const QString &text)
{
    problems->add(rule, place, text);
    return !problems->isFull();
}

const char *YamlBuilder::placeInText(const yaml_mark_t &mark)
{
    const char *const begin = document->source.constData();
    const char *const end = begin + document->source.size();
    if (isAscii)
        return begin + std::min(mark.index, size_t(document->source.size()));
    const auto isInside = [](char byte) { return (uchar(byte) & 0xC0) == 0x80; };
    for (; atIndex < mark.index && at < end; ++atIndex) {
        do {
            ++at;
        } while (at < end && isInside(*at));
    }
    // From the end of an event back to its begin: the way to and fro is as long as the text.
    for (; atIndex > mark.index && at > begin; --atIndex) {
        do {
            --at;
        } while (at > begin && isInside(*at));
    }
    return at;
}

char YamlBuilder::characterAt(const yaml_mark_t &mark)
{
    const char *place = placeInText(mark);
    return place < document->source.constData() + document->source.size() ? *place : '\0';
}

void YamlBuilder::lookForComment(const char *from, const char *to, int line)
{
    const char *const begin = document->source.constData();
    for (const char *ch = from; ch < to && document->commentLine == 0; ++ch) {
        if (*ch == '#' && (ch == begin || std::strchr(" \t\r\n", ch[-1])))
            document->commentLine = line;
        else if (*ch == '\n' || (*ch == '\r' && ch + 1 < to && ch[1] != '\n'))
            ++line;
    }
}

void YamlBuilder::lookBetween(const yaml_event_t &event)
{
    if (document->commentLine != 0)
        return;
    const char *const begin = placeInText(event.start_mark);
    if (begin > covered)
        lookForComment(covered, begin, coveredLine);
    const bool isBlock =
        event.type == YAML_SCALAR_EVENT && (event.data.scalar.style == YAML_LITERAL_SCALAR_STYLE ||
                                            event.data.scalar.style == YAML_FOLDED_SCALAR_STYLE);
    if (isBlock) { // a comment may stand after "|"
        const char *head = begin;
        while (*head != '\0' && *head != '\n' && *head != '\r')
            ++head;
        lookForComment(begin, head, placeOf(event.start_mark).line);
    }
    const char *const last = placeInText(event.end_mark);
    if (last > covered) {
        covered = last;
        coveredLine = placeOf(event.end_mark).line;
    }
}

bool YamlBuilder::take(const yaml_event_t &event)
{
    lookBetween(event);
    switch (event.type) {
    case YAML_DOCUMENT_START_EVENT:
        if (++documents > 1)
            return fail("yaml-syntax", placeOf(event.start_mark),
                        QStringLiteral("a second document begins here; a project is a single one"));
        return true;
    case YAML_MAPPING_START_EVENT:
        return begin(Type::Map, event, event.data.mapping_start.anchor,
                     event.data.mapping_start.tag);
    case YAML_SEQUENCE_START_EVENT:
        return begin(Type::List, event, event.data.sequence_start.anchor,
                     event.data.sequence_start.tag);
    case YAML_MAPPING_END_EVENT:
    case YAML_SEQUENCE_END_EVENT:
        return end();
    case YAML_SCALAR_EVENT:
        return takeScalar(event);
    case YAML_ALIAS_EVENT:
        return takeAlias(event);
    default:
        return true;
    }
}

bool YamlBuilder::finish()
{
    const bool isEmpty =
        document->cells.empty() || (open.isEmpty() && document->root().isMissing());
    return !isEmpty || fail("yaml-syntax", {1, 1}, QStringLiteral("the file is empty"));
}

bool YamlBuilder::count(quint32 more, YamlPlace place)
{
    if (more <= YamlDocument::kMostNodes - nodes) {
        nodes += more;
        return true;
    }
    return fail("yaml-bounds", place,
                QStringLiteral("more than %1 values up to here, aliases counted as what they stand "
                               "for, and long texts as several")
                    .arg(YamlDocument::kMostNodes));
}

quint32 YamlBuilder::addCell(Type type, YamlPlace place)
{
    YamlDocument::Cell cell;
    cell.type = type;
    cell.line = quint32(place.line);
    cell.column = quint32(place.column) & 0xFFFFFF;
    const quint32 number = quint32(document->cells.size());
    cell.next = number + 1;
    document->cells.push_back(cell);
    return number;
}

bool YamlBuilder::begin(Type type, const yaml_event_t &event, const uchar *anchor, const uchar *tag)
{
    const YamlPlace place = placeOf(event.start_mark);
    if (open.size() >= YamlDocument::kMostDepth)
        return fail("yaml-bounds", place,
                    QStringLiteral("lists and maps deeper in each other than %1")
                        .arg(YamlDocument::kMostDepth));
    checkTag(tag, false, place);
    Open opened;
    opened.nodesBefore = nodes;
    opened.isKeyNext = type == Type::Map;
    opened.anchor = asText(anchor);
    if (!count(1, place))
        return false;
    opened.cell = addCell(type, place);
    if (!opened.anchor.isEmpty())
        anchors.insert(opened.anchor, {opened.cell, 0, 0});
    open.append(opened);
    return !problems->isFull();
}

bool YamlBuilder::end()
{
    const Open ended = open.takeLast();
    document->cells[ended.cell].next = quint32(document->cells.size());
    if (document->cells[ended.cell].type == Type::Map)
        checkKeys(ended.cell);
    const auto anchor = anchors.find(ended.anchor);
    if (anchor != anchors.end() && anchor->cell == ended.cell)
        *anchor = {ended.cell, nodes - ended.nodesBefore, ended.height + 1};
    close(ended.cell, ended.height + 1);
    return !problems->isFull();
}

void YamlBuilder::close(quint32 cell, int height)
{
    if (open.isEmpty())
        return;
    Open &parent = open.last();
    parent.height = qMax(parent.height, height);
    if (document->cells[parent.cell].type != Type::Map)
        return;
    YamlDocument::Cell &own = document->cells[cell];
    const bool isWord = own.type == Type::Plain || own.type == Type::Quoted;
    if (parent.isKeyNext && !isWord) {
        own.isDropped = true;
        add("yaml-key", {int(own.line), int(own.column)},
            QStringLiteral("a key has to be a word or a number"));
    }
    parent.isKeyNext = !parent.isKeyNext;
}

void YamlBuilder::placeText(const yaml_event_t &event, YamlDocument::Cell *cell)
{
    const char *const value = asText(event.data.scalar.value);
    const size_t size = event.data.scalar.length;
    const QByteArray &source = document->source;
    const char *inFile = placeInText(event.start_mark) + (cell->type == Type::Quoted ? 1 : 0);
    const bool isThere = inFile + size <= source.constData() + source.size() &&
                         std::memcmp(inFile, value, size) == 0;
    cell->size = quint32(size);
    if (isThere) {
        cell->begin = quint32(inFile - source.constData());
    } else {
        cell->begin = quint32(source.size() + document->unescaped.size());
        document->unescaped.append(value, int(size));
    }
}

bool YamlBuilder::takeScalar(const yaml_event_t &event)
{
    const YamlPlace place = placeOf(event.start_mark);
    const bool isPlain = event.data.scalar.style == YAML_PLAIN_SCALAR_STYLE;
    // An alias of a long text costs nothing here, but each reader of it makes a copy.
    const quint32 weight = 1 + quint32(event.data.scalar.length / kBytesOfValue);
    if (!count(weight, place))
        return false;
    checkTag(event.data.scalar.tag, isPlain, place);
    const quint32 cell = addCell(isPlain ? Type::Plain : Type::Quoted, place);
    placeText(event, &document->cells[cell]);
    if (event.data.scalar.anchor)
        anchors.insert(asText(event.data.scalar.anchor), {cell, weight, 0});
    close(cell, 0);
    return !problems->isFull();
}

bool YamlBuilder::takeAlias(const yaml_event_t &event)
{
    const YamlPlace place = placeOf(event.start_mark);
    const QByteArray name = asText(event.data.alias.anchor);
    const Anchor target = anchors.value(name);
    if (target.nodes == 0) {
        const bool isOpen = anchors.contains(name);
        const QString word = QString::fromUtf8(name);
        QStringList others;
        for (auto anchor = anchors.constBegin();
             anchor != anchors.constEnd() && word.size() <= kLongestSuggested &&
             others.size() < kMostSuggested;
             ++anchor) {
            if (anchor.key().size() <= kLongestSuggested)
                others << QString::fromUtf8(anchor.key());
        }
        others.sort(); // equally near words must not change from run to run
        add("yaml-alias", place,
            isOpen ? QStringLiteral("%1 stands within what it names").arg(quotedWord(word))
                   : QStringLiteral("there is no anchor %1 before this line%2")
                         .arg(quotedWord(word), didYouMean(word, others)));
    }
    if (open.size() + target.height > YamlDocument::kMostDepth)
        return fail("yaml-bounds", place,
                    QStringLiteral("with this alias, lists and maps are deeper in each other than "
                                   "%1")
                        .arg(YamlDocument::kMostDepth));
    if (!count(qMax(1u, target.nodes), place))
        return false;
    const quint32 cell = addCell(target.nodes != 0 ? Type::Alias : Type::Plain, place);
    document->cells[cell].begin = target.cell;
    document->cells[cell].isDropped = target.nodes == 0;
    close(cell, target.height);
    return !problems->isFull();
}

void YamlBuilder::checkTag(const uchar *tag, bool isPlainText, YamlPlace place)
{
    const QString name = QString::fromUtf8(asText(tag));
    if (!name.isEmpty() && (name != QLatin1String("!") || isPlainText))
        add("yaml-tag", place,
            QStringLiteral("a tag such as %1 says nothing here: remove it").arg(quotedWord(name)));
}

void YamlBuilder::checkKeys(quint32 map)
{
    auto &cells = document->cells;
    QHash<QByteArray, quint32> known;
    for (quint32 key = map + 1; key < cells[map].next && !problems->isFull();) {
        YamlDocument::Cell &own = cells[key];
        const quint32 value = own.next;
        const QByteArray name = own.isDropped ? QByteArray() : document->bytes(own);
        const auto first = own.isDropped ? known.end() : known.find(name);
        if (first != known.end()) {
            own.isDropped = true;
            add("yaml-doubled-key", {int(own.line), int(own.column)},
                QStringLiteral("%1 stands twice in this map; line %2 has it first")
                    .arg(quotedWord(QString::fromUtf8(name)))
                    .arg(cells[*first].line));
        } else if (!own.isDropped) {
            known.insert(name, key);
            if (document->isMerge(own))
                checkMerge(value);
        }
        key = cells[value].next;
    }
}

void YamlBuilder::checkMerge(quint32 value)
{
    const auto &cells = document->cells;
    const YamlNode node(document, value);
    bool isSound = node.isMap() || node.kind() == YamlNode::Kind::None;
    if (node.isList()) {
        const QVector<YamlNode> items = node.items();
        isSound = std::all_of(items.cbegin(), items.cend(),
                              [](const YamlNode &item) { return item.isMap(); });
    }
    if (!isSound)
        add("yaml-merge", {int(cells[value].line), int(cells[value].column)},
            QStringLiteral("\"<<\" takes a map, as \"*name\", or a list of maps"));
}
