// What the HTML pages of all protocols share: head, style sheet, alternating rows, texts made fit.
#pragma once

#include "generators/descriptions/htmlform.h"

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

/// The label of a description, in all kinds of tables.
constexpr FormWord kDescriptionLabel = {"    <td>Description</td>\n",
                                        "    <th scope=\"row\">Description</th>\n"};

constexpr FormWord kTocListStart = {"", "   <ul>\n"};
constexpr FormWord kTocListEnd = {"", "   </ul>\n"};

/// The frame of one page. Made once a page, since its rows alternate through all of its tables.
class HtmlPage
{
public:
    HtmlPage(TextWriter &writer, const HtmlForm &htmlForm) : form(htmlForm), out(writer) {}

    /// All up to the body's content. \a title is the line up to the project's name.
    void begin(const FormWord &title, const QString &projectName, const QString &toolVersion);
    void end();

    /// The text that the form has for a place.
    void write(const FormWord &word);

    /// The contents, by entries that link to an ID, in lists that kTocListStart and
    /// kTocListEnd enclose. \a end is what follows an entry in the classic
    /// form.
    void startToc();
    void tocEntry(const QString &id, const QString &html, const char *end = "<br>\n");
    void endToc();

    /// The beginning of a table, which \a caption tells the subject of; its rows follow. \a tag is
    /// that of the classic form, where the first row tells the subject.
    void startTable(const char *tag, const QString &caption, const char *labelCell,
                    const QString &subject);

    /// A row of two cells in the next colour. \a value is HTML; \a valueCell is the opening tag of
    /// its cell.
    void row(const FormWord &labelCell, const QString &value, const char *valueCell = "    <td>");

    /// A row without cells, which takes its turn of the colours all the same.
    void emptyRow();

    /// Opening tag of a row, for rows that are not in turn.
    static const char *rowTag(bool isAlternate);

    const HtmlForm &form;

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

    QString text(const QString &raw) const { return page.form.text(raw); }
};
