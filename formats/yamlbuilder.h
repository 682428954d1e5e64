// Makes a document of the events of the YAML parser. Used by YamlReader.
#pragma once

#include "formats/yamldocument.h"

#include <QHash>

#include <yaml.h>

/// Takes one event after the other and holds what comes to the bounds of a document: an alias
/// counts with all that it stands for, although nothing is copied.
class YamlBuilder
{
public:
    YamlBuilder(const QByteArray &text, YamlDocument *result, YamlProblems *collected);

    /// False if the document is refused, or problems are enough: it takes no more events.
    bool take(const yaml_event_t &event);

    /// After the last event. False if there is no document.
    bool finish();

    /// The document is half made, and holds nothing from now on. Gives false, for callers to pass
    /// on.
    bool drop();
    bool fail(const char *rule, YamlPlace place, const QString &text);

    static YamlPlace placeOf(const yaml_mark_t &mark);
    /// The last character before the end if there is none.
    char characterAt(const yaml_mark_t &mark);

private:
    using Type = YamlDocument::Type;

    /// A list or map that has begun.
    struct Open {
        quint32 cell;
        quint32 nodesBefore; ///< counted when it began
        int height = 0;      ///< of what it holds
        bool isKeyNext = false;
        QByteArray anchor;
    };

    /// What an anchor names.
    struct Anchor {
        quint32 cell = 0;
        quint32 nodes = 0; ///< 0 as long as it is open
        int height = 0;
    };

    bool begin(Type type, const yaml_event_t &event, const uchar *anchor, const uchar *tag);
    bool end();
    bool takeScalar(const yaml_event_t &event);
    bool takeAlias(const yaml_event_t &event);
    bool count(quint32 nodes, YamlPlace place);
    quint32 addCell(Type type, YamlPlace place);
    void placeText(const yaml_event_t &event, YamlDocument::Cell *cell);
    /// After a value that lies in an open list or map.
    void close(quint32 cell, int height);
    void checkTag(const uchar *tag, bool isPlainText, YamlPlace place);
    void checkKeys(quint32 map);
    void checkMerge(quint32 value);
    void lookForComment(const char *from, const char *to, int line);
    void lookBetween(const yaml_event_t &event);
    const char *placeInText(const yaml_mark_t &mark);
    bool add(const char *rule, YamlPlace place, const QString &text);

    YamlDocument *document;
    YamlProblems *problems;
    QVector<Open> open;
    QHash<QByteArray, Anchor> anchors;
    quint32 nodes = 0; ///< after aliases
    int documents = 0;

    // Marks count characters; these go through the text with them.
    const char *at;
    size_t atIndex = 0;
    bool isAscii;        ///< then that is no way to go
    const char *covered; ///< the end of the last event
    int coveredLine = 1;
};
