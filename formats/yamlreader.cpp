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
    {"did not find expected <document start>", "the file goes on after the end of its map"},
    {"mapping values are not allowed in this context",
     "a second \": \" in the line: put a text that holds one in quotes"},
    {"block sequence entries are not allowed in this context", "a list cannot begin here"},
    {"could not find expected ':'", "a key without \": \" after it"},
    {"found unexpected end of stream", "the quotes that open here are never closed"},
    {"found unknown escape character",
     "a backslash in double quotes that begins no escape: write \"\\\\\" for one"},
    {"found a tab character where an indentation space is expected", "indent with spaces, not tabs"},
    {"found a tab character that violates indentation", "indent with spaces, not tabs"},
    {"control characters are not allowed", "this is no text"},
};
// clang-format on

QString reasonOf(const yaml_parser_t &parser, char character)
{
    const QByteArray problem = parser.problem ? parser.problem : "not understood";
    if (problem.contains("cannot start any token")) {
        if (character == '\t')
            return QStringLiteral("indent with spaces, not tabs");
        return QStringLiteral("no value begins with \"%1\": put the text in quotes")
            .arg(QLatin1Char(character));
    }
    for (const Reason &reason : kReasons) {
        if (problem == reason.theirs)
            return QString::fromLatin1(reason.ours);
    }
    return QString::fromLatin1(problem);
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
        if (!yaml_parser_parse(&parser.c, &event)) {
            // Of a text in quotes that never ends, what counts is where it begins.
            const bool isOpen = parser.c.context &&
                                qstrcmp(parser.c.problem, "found unexpected end of stream") == 0;
            const yaml_mark_t &mark = isOpen ? parser.c.context_mark : parser.c.problem_mark;
            return builder->fail("yaml-syntax", YamlBuilder::placeOf(mark),
                                 reasonOf(parser.c, builder->characterAt(mark)));
        }
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
