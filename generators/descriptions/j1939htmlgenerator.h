// The parameter groups and signals of a J1939 line as a page for the browser and for printing.
#pragma once

#include "generators/descriptions/htmlpage.h"
#include "generators/descriptions/linedocgenerator.h"

/// Writes "<project>.html", or "<project>_<line>.html" where a project has several lines.
class J1939HTMLGenerator : public LineDocGenerator
{
    Q_OBJECT

public:
    J1939HTMLGenerator();

protected:
    /// Reads the user's choices, on the driver's thread.
    void resetJob() override;

private:
    void write(TextWriter &out) override;

    QList<quint32> groupsOf(quint8 direction, const HtmlForm &form) const;

    /// Calls \a section for each group, the transmitted ones first, until the job is aborted; and
    /// \a start before the first one of a direction, \a end after its last one.
    template <class Start, class Section, class End>
    void forEachGroup(const HtmlForm &form, const Start &start, const Section &section,
                      const End &end) const;

    bool implementationInfo = false; ///< the user wants to see how values are stored
};

/// The sections of the page. A group that the store does not hold writes nothing.
namespace J1939HtmlDoc
{

using Context = PageContext;

void writeTitleTable(const Context &context, const QString &projectName);
void createTOC(const Context &context, quint8 direction, quint32 pgn);
/// A group with its signals.
void describePGN(const Context &context, quint8 direction, quint32 pgn);
void describeSPN(const Context &context, const ObjectDataBase::SPN &spn);

} // namespace J1939HtmlDoc
