// The object dictionary of a line as a page for the browser and for printing.
#pragma once

#include "generators/descriptions/htmlpage.h"
#include "generators/descriptions/linedocgenerator.h"

/// Writes "<project>.html", or "<project>_<line>.html" where a project has several lines.
class HTMLGenerator : public LineDocGenerator
{
    Q_OBJECT

public:
    HTMLGenerator();

protected:
    /// Reads the user's choices, on the driver's thread.
    void resetJob() override;

private:
    void write(TextWriter &out) override;

    bool implementationInfo = false; ///< the user wants to see how values are stored
};

/// The sections of the page. A record that the store does not hold writes nothing, but the contents
/// name it.
namespace HtmlDoc
{

using Context = PageContext; ///< with the line's description settings selected

/// Which blank lines of the contents are still to come.
struct TocGaps {
    bool firstManufacturerObject = true; ///< ahead of the first index of the manufacturer
    bool firstProfileObject = true;      ///< ahead of the first index of a profile
};

void writeGenerationTable(const Context &context, const QString &projectName);
/// Is there one to show, or a place for it?
bool hasComment(const Context &context);
void writeCommentTable(const Context &context);
void writeTitleTable(const Context &context, const QString &projectName);
void createTOC(const Context &context, quint16 index, TocGaps &gaps);
void describeIndex(const Context &context, quint16 index);

} // namespace HtmlDoc
