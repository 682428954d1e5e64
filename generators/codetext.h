// Text of a project that is C on purpose, read as a compiler reads it.
#pragma once

#include <QString>
#include <QStringRef>

/// Copies a text of C so that it ends where it seems to: literals and comments that are left open
/// are closed, and trigraphs are split. Used once.
class CodeText
{
public:
    enum class Kind {
        Line,       ///< the rest of a line, such as the value of a define
        Expression, ///< one expression with more text after it on the line
    };

    /// \a source is one line.
    CodeText(const QString &source, Kind use) : text(source), kind(use) {}

    QString closed();

private:
    void copyToken();
    void copyLiteral();
    void copyBlockComment();
    void copyLineComment();
    void copyBracket(QChar character);
    void copyPlain(int length);
    bool startsWith(const char *token) const;
    bool startsTrigraph() const;

    const QString &text;
    Kind kind;
    int place = 0;
    QString result;
    QString closers; ///< of the brackets that are open
};
