// The tables and variables that C sources define.
#pragma once

#include <QByteArray>
#include <QHash>

#include <string_view>
#include <vector>

/// What a source of generated C defines, read from its text: what is counted is what is compiled.
namespace CArrays
{

/// Macros by name, with the text that they stand for.
using Macros = QHash<QByteArray, QByteArray>;

/// An element of an initializer.
struct Row {
    int line = -1;        ///< of the device, as its comment says; -1: the comment says none
    int index = -1;       ///< of the object, likewise, or as a row that assigns begins
    int position = -1;    ///< of a row that describes a subindex: of its value in the array of
    std::string_view tag; ///< this type of values; lives as long as the source
    qint64 textBytes = 0; ///< of the texts that it leads to, with their ends
};

/// What takes memory: a variable, constant or array with static storage.
struct Definition {
    QByteArray name;
    QByteArray type; ///< of an element, or of what it leads to if that is a pointer
    bool isPointer = false;
    bool isConst = false;  ///< it cannot be written, so that it need not be in RAM
    qint64 count = 1;      ///< of elements
    int depth = 0;         ///< of the braces in its initializer
    std::vector<Row> rows; ///< those that are initialized one by one
};

/// Adds the macros that a header or source defines.
void readMacros(const QByteArray &text, Macros *macros);

/// All definitions of a source, in their order, as far as its conditions hold with \a macros.
std::vector<Definition> definitionsIn(const QByteArray &text, const Macros &macros);

/// A number, or a macro that stands for one; -1 if it is none.
qint64 numberOf(const QByteArray &text, const Macros &macros);

} // namespace CArrays
