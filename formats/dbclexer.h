// The things that a DBC file is made of: names, numbers, texts in quotes and single characters.
#pragma once

#include "formats/dbcfile.h"

#include <QString>
#include <QStringRef>

/// Takes one thing after the other from a text, and knows where it is in it. It stands always at
/// the next thing: blanks, line ends and comments before it are passed over. A thing is looked at
/// a few times at most, whatever the text.
class DbcLexer
{
public:
    /// \a content has "\n" as its line ends, and must outlive the lexer.
    explicit DbcLexer(const QString &content);

    bool atEnd() const { return here.position >= text.size(); }
    /// Of the next thing; of the end of the file, where that is.
    DbcPlace place() const { return placeOf(here); }
    /// Is the next thing the first on its line?
    bool startsLine() const { return here.startsLine; }
    /// Null at the end.
    QChar peek() const { return atEnd() ? QChar() : text.at(here.position); }
    /// The name that comes next; empty if it is something else.
    QStringRef peekName() const;
    /// Some words of what comes next, for those who look for the fault.
    QString shown() const;

    /// Takes that character if it comes next.
    bool accept(char symbol);
    /// Takes what peekName() gives. Besides letters, digits and "_" it may have others that some
    /// files have in names.
    QStringRef takeName();
    /// Takes digits and what else may be in a number, a sign before them included. May be a word
    /// such as "nan"; empty if it is neither.
    QStringRef takeNumber();
    /// Takes a text in quotes, \" and \\ being escapes. False, and nothing is taken, if there is
    /// none or it never ends.
    bool takeText(QString *result);
    /// After takeText(): takes what follows on the line as well, up to a quotation mark before ";",
    /// which was meant to be the last one. False, and nothing is taken, if there is none.
    bool takeRestOfText(QString *result);
    /// Takes what stands up to the end of the line.
    QStringRef takeLine();

    /// Takes all up to that character, outside of texts, and it. False if the end or a keyword that
    /// starts a line comes before, which is the next thing then.
    bool takeUpTo(char symbol);
    /// Takes all up to the next keyword that starts a line. If a text of several lines was taken
    /// right before, that may be a line of it: it may have begun with the end of another.
    void takeUpToKeyword();
    /// Where that text begins; no place if there is none.
    DbcPlace longTextPlace() const { return hasLongText ? placeOf(longText) : DbcPlace(); }

    /// To come back to a place.
    struct State {
        int position = 0;
        int line = 1;
        int lineStart = 0;
        bool startsLine = true;
    };
    State state() const { return here; }
    void goTo(const State &state) { here = state; }

    /// Decimal digits, or hexadecimal ones after "0x", as some files have it.
    static quint64 toUnsigned(const QStringRef &digits, bool *ok);

    /// A word with which a statement may begin, or that is part of one.
    static bool isKeyword(const QStringRef &name);
    /// Is the next thing a keyword that begins a statement? On a line that others began, those that
    /// a name could be count as names.
    bool atKeyword() const;

private:
    static DbcPlace placeOf(const State &state)
    {
        return {state.line, state.position - state.lineStart + 1};
    }
    void skipBlanks();
    bool skipComment();
    void beginLine(int position);
    void countLines(int begin, int end);
    void take(int end);
    int endOfName(int begin) const;
    int endOfText();
    QString textBetween(int begin, int end) const;

    const QString &text;
    State here;
    State longText; ///< where it begins
    bool hasLongText = false;
    int lastCommentEnd; ///< the last "*/"; a "/*" after it begins no comment
    int neverClosed;    ///< quotation marks from here on have no other to close them
};
