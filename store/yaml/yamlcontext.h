// What all readers of the YAML form share: what is wrong is told in the same words.
#pragma once

#include "formats/yamldocument.h"
#include "store/yaml/yamlforms.h"

#include <QStringList>
#include <QVector>

#include <optional>

/// Errors go to the problems, each with its place, and reading goes on to find more. Nodes of the
/// kind None were told already and are passed over in silence.
class YamlContext
{
public:
    /// An entry of a map whose keys are numbers.
    struct Numbered {
        qint64 number = 0;
        YamlNode key;
        YamlNode value;
    };

    explicit YamlContext(YamlProblems *target) : problems(target) {}

    /// "yaml-value": \a text is a sentence without full stop.
    void wrongValue(YamlNode node, const QString &text);
    /// "yaml-wrong-kind": there is a map, a list or a value, where \a wanted should stand, such as
    /// "the objects of a line are a map".
    void wrongKind(YamlNode node, const QString &wanted, const char *hint = "");
    /// "yaml-unknown-key", with the key that is most like it; \a where is "an object", say.
    void unknownKey(YamlNode key, const QString &where, const QStringList &known);

    /// The same for a key of something else; \a home is "an object", say.
    void misplacedKey(YamlNode key, const QString &where, const QString &home);
    /// "yaml-doubled-number": \a what, such as "signal", has that number on line \a first already.
    void doubledNumber(YamlNode key, const QString &what, int first);

    /// Is it a map, or a list? Else tells what is \a wanted, as wrongKind() does.
    bool isMap(YamlNode node, const QString &wanted);
    bool isList(YamlNode node, const QString &wanted);

    /// A whole number, decimal or hexadecimal after "0x". Tells of all else; \a what is "the index
    /// of an object", say.
    std::optional<qint64> number(YamlNode node, qint64 low, qint64 high, const QString &what);
    /// One of the words, or a number; \a what is "direction", say.
    std::optional<qint64> word(YamlNode node, const YamlWords &words, qint64 low, qint64 high,
                               const QString &what);
    /// "there is no <what> <text>", with the word that is most like it, or all words if they are
    /// few.
    void noSuchWord(YamlNode node, const QString &what, const QString &text,
                    const QStringList &words);
    /// The text of a scalar; none, and told, for all else, also if there is nothing.
    std::optional<QString> text(YamlNode node, const QString &what);

    /// The entries of a map whose keys are numbers, in the order of the file. A number that stands
    /// twice in different spelling, such as 16 and 0x10, is an error ("yaml-doubled-number"). Keys
    /// may be \a words as well, if there are any.
    QVector<Numbered> numbered(YamlNode map, qint64 low, qint64 high, const QString &what,
                               const YamlWords &words = {});
    QVector<Numbered> numbered(const QVector<YamlNode::Entry> &entries, qint64 low, qint64 high,
                               const QString &what, const YamlWords &words = {});

    /// May a project have so many subindices, frames or signals more? An array of 254 members is
    /// just a few bytes of a file, which must not fill the memory. Tells it once.
    bool hasRoomFor(int records, YamlNode node);
    /// There is no such room, or errors are enough: nothing that is read from here on counts.
    bool isOver() const { return problems->isFull() || recordCount > kMostRecords; }

    /// A word of the file for a message: none is long.
    static QString cut(const QString &word);
    static QString quoted(const QString &word); ///< cut as well

    YamlProblems *const problems;

    /// Subindices, frames and signals of a project; they take some 400 MiB.
    static constexpr qint64 kMostRecords = 1024 * 1024;

private:
    qint64 recordCount = 0;
};

namespace YamlNumber
{

/// A whole number with or without sign, decimal or hexadecimal after "0x"; no blanks.
std::optional<qint64> parse(const QString &text);
/// A number, or one to which the node-ID is added: "$NODEID+0x180".
bool isValue(const QString &text);

} // namespace YamlNumber
