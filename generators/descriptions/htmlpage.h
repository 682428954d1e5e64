// What the HTML pages of all protocols share: head, style sheet, alternating rows, texts made fit.
#pragma once

#include <QString>

class ObjectDataBase;
class TextWriter;

/// Texts of a project inside a page.
namespace HtmlText
{

/// \a text for a cell or a heading: what would be markup is shown as it stands.
QString escaped(const QString &text);

/// A description, which may hold HTML of its own: only umlauts become entities, and line feeds
/// "<br>".
QString stringConvert(const QString &text);

/// \a text for the inside of a comment, which ends at "--": hyphens in a row are set apart.
QString comment(const QString &text);

} // namespace HtmlText

/// The frame of one page. Made once a page, since its rows alternate through all of its tables.
class HtmlPage
{
public:
    explicit HtmlPage(TextWriter &writer) : out(writer) {}

    /// All up to the body's tag. \a title is the line up to the project's name.
    void begin(const char *title, const QString &projectName, const QString &toolVersion);
    void end();

    /// A row of two cells in the next colour. \a value is HTML; \a valueCell is the opening tag of
    /// its cell.
    void row(const char *labelCell, const QString &value, const char *valueCell = "    <td>");

    /// A row without cells, which takes its turn of the colours all the same.
    void emptyRow();

    /// Opening tag of a row, for rows that are not in turn.
    static const char *rowTag(bool isAlternate);

private:
    void openRow();

    TextWriter &out;
    quint8 rowCount = 1; ///< even ones are plain
};

/// Handed to each section of a page.
struct PageContext {
    const ObjectDataBase &store;
    TextWriter &out;
    HtmlPage &page;
    quint8 line;
    bool implementationInfo; ///< tell how values are stored
};
