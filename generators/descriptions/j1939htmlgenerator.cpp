// The HTML page of a J1939 line.
#include "generators/descriptions/j1939htmlgenerator.h"

#include "generators/descriptions/htmlpage.h"
#include "generators/textwriter.h"
#include "store/projectfeatures.h"
#include "support/cohelper.h"
#include "support/implementation.h"
#include "support/numbers.h"

#include <QSet>

namespace
{

/// What the contents and the heading of a group show.
QString groupTitle(const J1939HtmlDoc::Context &context, quint32 pgn, const QString &name)
{
    return QStringLiteral("0x") + Numbers::toHex(pgn, 4) + QLatin1Char(' ') + context.text(name);
}

/// How the groups of a direction begin.
struct Part {
    FormWord entry; ///< in the contents
    FormWord heading;
};

constexpr Part kSent = {{"", "    <li><a href=\"#sent\">Transmitted parameter groups</a></li>\n"},
                        {"", "  <section>\n  <h2 id=\"sent\">Transmitted parameter groups</h2>\n"}};
constexpr Part kReceived = {
    {"", "    <li><a href=\"#received\">Received parameter groups</a></li>\n"},
    {"", "  <section>\n  <h2 id=\"received\">Received parameter groups</h2>\n"}};

const Part &partOf(quint8 direction)
{
    return direction == Direction::kTransmitted ? kSent : kReceived;
}

/// Deliberate: in the classic form a group that is sent and received has one ID twice; held by
/// tst_j1939documents.
QString idOf(const J1939HtmlDoc::Context &context, quint8 direction, quint32 pgn)
{
    const char *const sent = context.page.form.of({"", "tx"});
    const char *const received = context.page.form.of({"", "rx"});
    return QLatin1String(direction == Direction::kTransmitted ? sent : received) +
           QString::number(pgn);
}

} // namespace

void J1939HtmlDoc::writeTitleTable(const Context &context, const QString &projectName)
{
    if (context.page.form.hasHeading)
        return;
    context.out.block(R"(
  <div class="center">
  <table width="600">
   <tr class="head">
    <td width="250" colspan="2" align="center">  PGN/SPN Documenation of $project$</td>
   </tr>
  </table>
  </div>
)",
                      {{"project", context.text(projectName)}});
}

void J1939HtmlDoc::createTOC(const Context &context, quint8 direction, quint32 pgn)
{
    ObjectDataBase::PGN group;
    if (!context.store.getPGNData(context.line, pgn, direction, group))
        return;
    context.page.tocEntry(idOf(context, direction, pgn), groupTitle(context, pgn, group.name));
}

void J1939HtmlDoc::describePGN(const Context &context, quint8 direction, quint32 pgn)
{
    ObjectDataBase::PGN group;
    if (!context.store.getPGNData(context.line, pgn, direction, group))
        return;
    HtmlPage &page = context.page;
    // Deliberate: the link that ends here in the classic form begins nowhere, browsers pass over
    // it; held by tst_j1939documents.
    context.out.block(
        page.form.of({R"(
 <p>
  <table border="1" width="600">
   <tr>
    <th colspan="2" id="$id$"> PGN: $title$</a></th>
   </tr>
   <tr>
   </tr>
)",
                      R"(
  <h3 id="$id$">$title$</h3>
  <table>
   <caption>Parameter group</caption>
   <tr>
    <th scope="row">Direction</th>
)"}),
        {{"id", idOf(context, direction, pgn)}, {"title", groupTitle(context, pgn, group.name)}});
    if (direction == Direction::kTransmitted)
        page.write({"", "    <td>transmitted</td>\n   </tr>\n"});
    else
        page.write({"", "    <td>received</td>\n   </tr>\n"});
    if (!group.description.isEmpty())
        page.row(kDescriptionLabel, page.form.description(group.description));
    context.out.raw("  </table>\n");
    const QVector<ObjectDataBase::SPN> spns =
        context.store.getSPNRecords(context.line, pgn, direction);
    for (const ObjectDataBase::SPN &spn : spns) {
        page.write({" <br/>\n", ""});
        describeSPN(context, spn);
    }
    page.write({" </p>\n"
                "  <hr noshade width=\"600\" align=\"left\"/>\n",
                ""});
}

void J1939HtmlDoc::describeSPN(const Context &context, const ObjectDataBase::SPN &spn)
{
    HtmlPage &page = context.page;
    page.startTable("  <table border=\"1\" width=\"600\">\n", QStringLiteral("SPN "),
                    "    <td style=\"font-weight:bold\">SPN </td>\n", QString::number(spn.number));
    page.row({"    <td>Name </td>\n", "    <th scope=\"row\">Name</th>\n"}, context.text(spn.name));
    page.row({"    <td width=\"250\">Data Type</td>\n", "    <th scope=\"row\">Data type</th>\n"},
             COHelper::index2DataTypeString(static_cast<quint16>(spn.dataType)));
    page.emptyRow();
    if (context.implementationInfo) {
        page.row({"    <td>Implementation Type</td>\n",
                  "    <th scope=\"row\">Implementation type</th>\n"},
                 COHelper::implementation2String(static_cast<quint8>(spn.implementation)));
        if (spn.implementation == Implementation::kApplicationVariable)
            page.row({"    <td>Variable Name</td>\n", "    <th scope=\"row\">Variable name</th>\n"},
                     context.text(spn.varName));
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

QList<quint32> J1939HTMLGenerator::groupsOf(quint8 direction, const HtmlForm &form) const
{
    const QList<quint32> groups = database->getPGNs(activeLine, direction, false);
    if (form.namesTwice)
        return groups;
    QList<quint32> once;
    QSet<quint32> known;
    for (const quint32 pgn : groups) {
        if (!known.contains(pgn))
            once << pgn;
        known << pgn;
    }
    return once;
}

template <class Start, class Section, class End>
void J1939HTMLGenerator::forEachGroup(const HtmlForm &form, const Start &start,
                                      const Section &section, const End &end) const
{
    for (const quint8 direction : {Direction::kTransmitted, Direction::kReceived}) {
        const QList<quint32> groups = groupsOf(direction, form);
        if (groups.isEmpty())
            continue;
        start(direction);
        forEach(groups, [&](quint32 pgn) { section(direction, pgn); });
        end();
    }
}

void J1939HTMLGenerator::write(TextWriter &out)
{
    const bool isPortable = readProjectFeatures(*database).hasPortableDescriptions();
    const HtmlForm &form = isPortable ? portableHtml() : classicHtml();
    HtmlPage page(out, form);
    database->cacheAllSpnDataForLine(activeLine);
    const J1939HtmlDoc::Context context{*database, out, page, activeLine, implementationInfo};

    page.begin({"PGN/SPN Documenation of ", "Parameter groups and signals of "}, projectName,
               toolVersion);
    J1939HtmlDoc::writeTitleTable(context, projectName);
    page.startToc();
    forEachGroup(
        form,
        [&](quint8 direction) {
            page.write(kTocListStart);
            page.write(partOf(direction).entry);
        },
        [&](quint8 direction, quint32 pgn) { J1939HtmlDoc::createTOC(context, direction, pgn); },
        [&] { page.write(kTocListEnd); });
    page.endToc();
    page.write({"  <div class=\"center\">\n", ""});
    forEachGroup(
        form, [&](quint8 direction) { page.write(partOf(direction).heading); },
        [&](quint8 direction, quint32 pgn) { J1939HtmlDoc::describePGN(context, direction, pgn); },
        [&] {
            page.write({"", "  </section>\n"});
        });
    page.write({"  </div>\n", ""});
    page.end();
}
