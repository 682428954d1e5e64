// What a YAML file holds, with the place of each value.
//
// The values stand one after the other in one array of small cells, and their texts mostly in the
// file itself. An alias is a cell that refers to another one: it costs nothing, however much it
// stands for.
#pragma once

#include "formats/yamlproblems.h"

#include <QByteArray>
#include <QString>
#include <QVector>

#include <vector>

class YamlDocument;

/// A value of a document, which must outlive it. Aliases are followed, so that a node has the place
/// where its value stands.
class YamlNode
{
public:
    /// None is what is not there, or what was told already not to be understood.
    enum class Kind { None, Scalar, List, Map };
    struct Entry;

    YamlNode() = default;

    Kind kind() const;
    bool isScalar() const { return kind() == Kind::Scalar; }
    bool isList() const { return kind() == Kind::List; }
    bool isMap() const { return kind() == Kind::Map; }
    explicit operator bool() const { return document != nullptr; }
    YamlPlace place() const;

    /// Of a scalar; empty for all others.
    QString text() const;
    bool is(const char *word) const;
    /// Neither in quotes nor a block: may mean something else than a text.
    bool isPlain() const;
    /// Nothing stands where a value should.
    bool isMissing() const;

    /// Of a list.
    QVector<YamlNode> items() const;
    /// Of a map, in the order of the file, those of merged maps at the end. Each key stands once:
    /// the map's own before merged ones, and of several merged maps that of the first.
    QVector<Entry> entries() const;
    /// Of a map: the value of that key; none if it is not there. Looks at all keys.
    YamlNode value(const char *key) const;

private:
    friend class YamlDocument;
    friend class YamlBuilder;
    YamlNode(const YamlDocument *owner, quint32 number);
    void addMerged(YamlNode merged, QVector<Entry> *result) const;

    const YamlDocument *document = nullptr;
    quint32 cell = 0;
};

struct YamlNode::Entry {
    YamlNode key; ///< a scalar
    YamlNode value;
};

class YamlDocument
{
public:
    /// The bounds of a file, which YamlReader holds it to.
    static constexpr qint64 kMostBytes = 64 * 1024 * 1024;
    static constexpr int kMostBytesOfLine = 64 * 1024;
    static constexpr int kMostDepth = 64; ///< of lists and maps in each other, after aliases
    static constexpr quint32 kMostNodes = 4 * 1024 * 1024; ///< after aliases; long texts as several

    YamlNode root() const { return cells.empty() ? YamlNode() : YamlNode(this, 0); }
    /// 0 if there is no comment, which writing the file anew would lose.
    int firstCommentLine() const { return commentLine; }

private:
    friend class YamlNode;
    friend class YamlBuilder;

    enum class Type : quint8 { Plain, Quoted, List, Map, Alias };

    struct Cell {
        quint32 begin = 0; ///< of its text; of an alias, the cell it stands for
        quint32 size = 0;  ///< of its text
        quint32 next = 0;  ///< the cell after it and all that it holds
        quint32 line = 0;
        quint32 column : 24;
        Type type : 7;
        bool isDropped : 1; ///< cannot be used, and was told: a key that stands twice

        Cell() : column(0), type(Type::Plain), isDropped(false) {}
    };
    static_assert(sizeof(Cell) == 20, "files at the bounds take millions of them");

    const char *begin(const Cell &cell) const;
    QByteArray bytes(const Cell &cell) const; ///< lives no longer than the document
    bool isMerge(const Cell &key) const { return key.type == Type::Plain && bytes(key) == "<<"; }

    QByteArray source;
    QByteArray unescaped; ///< texts that the file does not have as they are; numbered after it
    std::vector<Cell> cells;
    int commentLine = 0;
};
