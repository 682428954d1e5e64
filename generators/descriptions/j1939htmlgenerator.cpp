// The HTML page of a J1939 line.
#include "generators/descriptions/j1939htmlgenerator.h"

#include "generators/descriptions/htmlpage.h"
#include "generators/textwriter.h"
#include "support/cohelper.h"
#include "support/implementation.h"
#include "support/numbers.h"

namespace
{

/// What the contents and the heading of a group show.
QString groupTitle(quint32 pgn, const QString &name)
{
    return QStringLiteral("0x") + Numbers::toHex(pgn, 4) + QLatin1Char(' ') +
           HtmlText::escaped(name);
}

} // namespace

void J1939HtmlDoc::writeTitleTable(TextWriter &out, const QString &projectName)
{
    out.block(R"(
  <div class="center">
  <table width="600">
   <tr class="head">
    <td width="250" colspan="2" align="center">  PGN/SPN Documenation of $project$</td>
   </tr>
  </table>
  </div>
)",
              {{"project", HtmlText::escaped(projectName)}});
}

void J1939HtmlDoc::createTOC(const Context &context, quint8 direction, quint32 pgn)
{
    ObjectDataBase::PGN group;
    if (!context.store.getPGNData(context.line, pgn, direction, group))
        return;
    context.out.parts("<a href=\"#", pgn, "\">", groupTitle(pgn, group.name), "</a><br>\n");
}

void J1939HtmlDoc::describePGN(const Context &context, quint8 direction, quint32 pgn)
{
    ObjectDataBase::PGN group;
    if (!context.store.getPGNData(context.line, pgn, direction, group))
        return;
    TextWriter &out = context.out;
    // Deliberate: the link that ends here begins nowhere, browsers pass over it; held by
    // tst_j1939documents.
    out.block(R"(
 <p>
  <table border="1" width="600">
   <tr>
    <th colspan="2" id="$pgn$"> PGN: $title$</a></th>
   </tr>
   <tr>
   </tr>
)",
              {{"pgn", pgn}, {"title", groupTitle(pgn, group.name)}});
    if (!group.description.isEmpty())
        context.page.row("    <td>Description</td>\n", HtmlText::stringConvert(group.description));
    out.raw("  </table>\n");
    const QVector<ObjectDataBase::SPN> spns =
        context.store.getSPNRecords(context.line, pgn, direction);
    for (const ObjectDataBase::SPN &spn : spns) {
        out.raw(" <br/>\n");
        describeSPN(context, spn);
    }
    out.raw(" </p>\n"
            "  <hr noshade width=\"600\" align=\"left\"/>\n");
}

void J1939HtmlDoc::describeSPN(const Context &context, const ObjectDataBase::SPN &spn)
{
    HtmlPage &page = context.page;
    context.out.raw("  <table border=\"1\" width=\"600\">\n");
    page.row("    <td style=\"font-weight:bold\">SPN </td>\n", QString::number(spn.number),
             "    <td style=\"font-weight:bold\">");
    page.row("    <td>Name </td>\n", HtmlText::escaped(spn.name));
    page.row("    <td width=\"250\">Data Type</td>\n",
             COHelper::index2DataTypeString(static_cast<quint16>(spn.dataType)));
    page.emptyRow();
    if (context.implementationInfo) {
        page.row("    <td>Implementation Type</td>\n",
                 COHelper::implementation2String(static_cast<quint8>(spn.implementation)));
        if (spn.implementation == Implementation::kApplicationVariable)
            page.row("    <td>Variable Name</td>\n", HtmlText::escaped(spn.varName));
    }
    context.out.raw("  </table>\n");
}

J1939HTMLGenerator::J1939HTMLGenerator()
    : LineDocGenerator(QStringLiteral("HTML documentation"), ".html", ".html")
{
}

void J1939HTMLGenerator::resetJob()
{
    implementationInfo = wantsImplementationInfo();
}

template <class Section>
void J1939HTMLGenerator::forEachGroup(const Section &section) const
{
    for (const quint8 direction : {Direction::kTransmitted, Direction::kReceived})
        forEach(database->getPGNs(activeLine, direction, false),
                [&](quint32 pgn) { section(direction, pgn); });
}

void J1939HTMLGenerator::write(TextWriter &out)
{
    HtmlPage page(out);
    database->cacheAllSpnDataForLine(activeLine);
    const J1939HtmlDoc::Context context{*database, out, page, activeLine, implementationInfo};

    page.begin("  <title>PGN/SPN Documenation of ", projectName, toolVersion);
    J1939HtmlDoc::writeTitleTable(out, projectName);
    out.raw(" <div class=\"toc\">\n");
    forEachGroup(
        [&](quint8 direction, quint32 pgn) { J1939HtmlDoc::createTOC(context, direction, pgn); });
    out.raw("  </div>\n"
            "  <div class=\"center\">\n");
    forEachGroup(
        [&](quint8 direction, quint32 pgn) { J1939HtmlDoc::describePGN(context, direction, pgn); });
    out.raw("  </div>\n");
    page.end();
}
