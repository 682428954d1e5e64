// Names of defines: how they are made of texts, and that each is defined once.
#pragma once

#include <QHash>
#include <QString>

#include <optional>

/// The names of a line that have a define in a file. A look-up costs the same however many there
/// are.
class DefineNames
{
public:
    /// \a prefix stands before each name of the line in the file, so that names of lines with
    /// different prefixes do not meet. Without one they might meet those of the file itself.
    explicit DefineNames(const QString &prefix);

    /// Was \a name asked for before, or does it stand for another value?
    bool isTaken(const QString &name, quint32 value) const;

    /// The name to define as \a value: \a name, or if that is taken, with \a separator and the
    /// first count after it that makes it new. None if there is just this define already.
    std::optional<QString> claimCounted(const QString &name, quint32 value, const char *separator);

    /// \a name, or none if it has a define, whatever its value.
    std::optional<QString> claimShared(const QString &name, quint32 value);

    /// Is there a define of \a name as this value?
    bool isDefined(const QString &name, quint32 value) const;

    /// \a text as a name in upper case. \a kind, which ends with "_", tells it from others.
    static QString withKind(const char *kind, const QString &text);
    /// \a text, which is in upper case, with "_" for each character that cannot stand in a name.
    static QString onlyNameCharacters(QString text);

private:
    struct Name {
        bool isWritten = false; ///< there is a define of it
        bool isUsed = false;    ///< it was asked for with a count
        quint32 value = 0;      ///< of the define
        quint32 repeats = 0;
    };

    static bool isTaken(const Name &name, quint32 value)
    {
        return name.isUsed || (name.isWritten && name.value != value);
    }

    QHash<QString, Name> names;
};
