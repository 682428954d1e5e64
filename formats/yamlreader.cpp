// Reading of YAML files with libyaml, event by event.
#include "formats/yamlreader.h"

#include "formats/yamlbuilder.h"
#include "support/filereasons.h"
#include "support/runfiles.h"

#include <QFile>

#include <yaml.h>

namespace
{

struct Parser {
    Parser() { isReady = yaml_parser_initialize(&c) != 0; }
    ~Parser()
    {
        if (isReady)
            yaml_parser_delete(&c);
    }
    Parser(const Parser &) = delete;
    Parser &operator=(const Parser &) = delete;

    yaml_parser_t c;
    bool isReady;
};

/// What the parser says, and what a user can make of it.
struct Reason {
    const char *theirs;
    const char *ours;
    bool isOfContext = false; ///< what counts is where that begins which the parser was in
};

// clang-format off
constexpr Reason kReasons[] = {
    {"did not find expected key",
     "neither a key nor the end of the map: is the line indented as those of its map, and the one "
     "before it complete"},
    {"did not find expected '-' indicator",
     "neither an item of the list nor its end: is the line indented as the others of its list"},
    {"did not find expected ',' or '}'", "the map in braces needs a \",\" or \"}\" here"},
    {"did not find expected ',' or ']'", "the list in brackets needs a \",\" or \"]\" here"},
    {"did not find expected node content", "a value is missing here"},
    {"did not find expected <document start>", "the file goes on after the end of what it begins with"},
    {"mapping values are not allowed in this context",
     "a \": \" where none can be: does the line before lack one, or is this one not indented as those of its map; a "
     "text that holds one stands in quotes"},
    {"block sequence entries are not allowed in this context", "a list cannot begin here"},
    {"could not find expected ':'", "a key without \": \" after it", true},
    {"found unexpected end of stream", "the quotes that open here are never closed", true},
    {"found unknown escape character",
     "a backslash in double quotes that begins no escape: write \"\\\\\" for one"},
    {"found a tab character where an indentation space is expected", "indent with spaces, not tabs"},
    {"found a tab character that violates indentation", "indent with spaces, not tabs"},
    {"did not find expected alphabetic or numeric character",
     "a name has to follow: put a text that begins with \"*\" or \"&\" in quotes"},
    {"control characters are not allowed", "this is no text"},
};
// clang-format on

/// A list in brackets or a map in braces that the parser was in.
QString whereItBegins(const yaml_parser_t &parser)
{
    const bool isFlow = parser.context && QByteArray(parser.context).contains("a flow ");
    const YamlPlace begin = YamlBuilder::placeOf(parser.context_mark);
    const bool isFar = begin.line < YamlBuilder::placeOf(parser.problem_mark).line;
    return isFlow && isFar ? QStringLiteral("; it begins on line %1").arg(begin.line) : QString();
}

bool tellFault(const yaml_parser_t &parser, YamlBuilder *builder)
{
    const QByteArray problem = parser.problem ? parser.problem : "not understood";
    const yaml_mark_t *mark = &parser.problem_mark;
    QString text = QString::fromLatin1(problem);
    for (const Reason &reason : kReasons) {
        if (problem != reason.theirs)
            continue;
        if (reason.isOfContext && parser.context)
            mark = &parser.context_mark;
        text = QString::fromLatin1(reason.ours) + whereItBegins(parser);
    }
    if (problem.contains("cannot start any token")) {
        const char first = builder->characterAt(*mark);
        text = first == '\t' ? QStringLiteral("indent with spaces, not tabs")
                             : QStringLiteral("no value begins with \"%1\": put the text in quotes")
                                   .arg(QLatin1Char(first));
    }
    return builder->fail("yaml-syntax", YamlBuilder::placeOf(*mark), text);
}

bool parse(const QByteArray &text, YamlBuilder *builder)
{
    Parser parser;
    if (!parser.isReady)
        return builder->fail("yaml-syntax", {1, 1}, QStringLiteral("there is no memory left"));
    yaml_parser_set_encoding(&parser.c, YAML_UTF8_ENCODING);
    yaml_parser_set_input_string(&parser.c, reinterpret_cast<const uchar *>(text.constData()),
                                 size_t(text.size()));
    for (bool isDone = false; !isDone;) {
        yaml_event_t event;
        if (!yaml_parser_parse(&parser.c, &event))
            return tellFault(parser.c, builder);
        isDone = event.type == YAML_STREAM_END_EVENT;
        const bool goesOn = builder->take(event);
        yaml_event_delete(&event);
        if (!goesOn)
            return false;
    }
    return true;
}

} // namespace

bool YamlReader::readFile(const QString &fileName, YamlDocument *document, YamlProblems *problems)
{
    const auto refuse = [problems](const QString &reason) {
        problems->add("yaml-not-read", {}, QStringLiteral("could not be read: ") + reason);
        return false;
    };
    const QString reason = FileReasons::whyNotReadable(fileName);
    if (!reason.isEmpty())
        return refuse(reason);
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly))
        return refuse(file.errorString());
    RunFiles::noteRead(fileName);
    return read(file.read(qMin(file.size(), YamlDocument::kMostBytes + 1)), document, problems);
}

bool YamlReader::read(const QByteArray &text, YamlDocument *document, YamlProblems *problems)
{
    const bool hasMark = text.startsWith("\xEF\xBB\xBF");
    const QByteArray content = hasMark ? text.mid(3) : text;
    if (!checkText(content, problems))
        return false;
    YamlBuilder builder(content, document, problems);
    return (parse(content, &builder) && builder.finish()) || builder.drop();
}
