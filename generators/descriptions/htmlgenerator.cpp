// The HTML page of a CANopen line.
#include "generators/descriptions/htmlgenerator.h"

#include "generators/ctext.h"
#include "generators/descriptions/htmlpage.h"
#include "generators/textwriter.h"
#include "store/projectfeatures.h"
#include "store/settingdefaults.h"
#include "support/cohelper.h"
#include "support/helper.h"
#include "support/implementation.h"
#include "support/numbers.h"

namespace
{

/// A line of the table of what the page was made from.
struct SettingRow {
    FormWord cell;       ///< up to the value
    const char *setting; ///< key in the description settings
};

// clang-format off
constexpr SettingRow kFileInfo[] = {            // row order is file order
    {{"   <td>Vendor name:", "    <th scope=\"row\">Vendor name</th>\n    <td>"}, "VendorName"},
    {{"   <td>Product name: ", "    <th scope=\"row\">Product name</th>\n    <td>"}, "ProductName"},
    {{"   <td>File version:", "    <th scope=\"row\">File version</th>\n    <td>"}, "FileVersion"},
    {{"   <td>File Revision: ", "    <th scope=\"row\">File revision</th>\n    <td>"}, "FileRevision"},
    {{"   <td>Order Code:", "    <th scope=\"row\">Order code</th>\n    <td>"}, "OrderCode"},
    {{"   <td>Created by: ", "    <th scope=\"row\">Created by</th>\n    <td>"}, "CreatedBy"},
    {{"   <td>Modified by: ", "    <th scope=\"row\">Modified by</th>\n    <td>"}, "ModifiedBy"},
};
// clang-format on

/// All that the rows of a subindex are made from.
struct SubFacts {
    quint16 index;
    quint8 subIndex;
    bool implementationInfo;
    const ObjectDataBase::SUBINDEX_DATA_T &data;
    const HtmlForm &form;
};

QString filled(const SubFacts &facts, const QString &text)
{
    return facts.form.text(Helper::substituteVariables(text, facts.index, facts.subIndex));
}

bool always(const SubFacts &)
{
    return true;
}

bool showsDefault(const SubFacts &facts)
{
    return facts.data.defaultInEds || facts.data.implementation == Implementation::kManagedConst;
}

bool showsLimits(const SubFacts &facts)
{
    return facts.data.limitInEds;
}

struct SubRow {
    FormWord labelCell;
    bool (*when)(const SubFacts &);
    QString (*value)(const SubFacts &); ///< as HTML
};

// clang-format off
constexpr SubRow kSubRows[] = {                 // row order is file order
    {{"    <td>Name </td>\n", "    <th scope=\"row\">Name</th>\n"}, always,
     [](const SubFacts &f) { return filled(f, f.data.name); }},
    {{"    <td>Data Type</td>\n", "    <th scope=\"row\">Data type</th>\n"}, always,
     [](const SubFacts &f) { return COHelper::index2DataTypeString(f.data.dataType); }},
    {{"    <td>Access </td>\n", "    <th scope=\"row\">Access</th>\n"}, always,
     [](const SubFacts &f) { return filled(f, f.data.accessType); }},
    {{"    <td>Defaultvalue </td>\n", "    <th scope=\"row\">Default value</th>\n"}, showsDefault,
     [](const SubFacts &f) { return filled(f, f.data.defaultValue); }},
    {{"    <td>Low Limit </td>\n", "    <th scope=\"row\">Low limit</th>\n"}, showsLimits,
     [](const SubFacts &f) { return filled(f, f.data.lowLimit); }},
    {{"    <td>High Limit </td>\n", "    <th scope=\"row\">High limit</th>\n"}, showsLimits,
     [](const SubFacts &f) { return filled(f, f.data.upLimit); }},
    {kDescriptionLabel,
     [](const SubFacts &f) { return !f.data.description.isEmpty(); },
     [](const SubFacts &f) {
         return f.form.description(
             Helper::substituteVariables(f.data.description, f.index, f.subIndex));
     }},
    {{"    <td>PDO Mapping</td>\n", "    <th scope=\"row\">PDO mapping</th>\n"}, always,
     [](const SubFacts &f) { return COHelper::pdoMapping2String(f.data.pdoMapping); }},
    {{"    <td>Implementation Type</td>\n", "    <th scope=\"row\">Implementation type</th>\n"},
     [](const SubFacts &f) { return f.implementationInfo; },
     [](const SubFacts &f) { return COHelper::implementation2String(f.data.implementation); }},
    {{"    <td>Variable Name</td>\n", "    <th scope=\"row\">Variable name</th>\n"},
     [](const SubFacts &f) {
         return f.implementationInfo &&
                f.data.implementation == Implementation::kApplicationVariable;
     },
     [](const SubFacts &f) { return filled(f, f.data.varName); }},
    {{"    <td>Size in bytes </td>\n", "    <th scope=\"row\">Size in bytes</th>\n"},
     [](const SubFacts &f) { return f.implementationInfo && f.data.size != 0; },
     [](const SubFacts &f) { return QString::number(f.data.size); }},
};
// clang-format on

QString hexIndex(quint16 index)
{
    return QStringLiteral("0x") + Numbers::toHex(index, 4);
}

QString objectName(const HtmlDoc::Context &context, quint16 index, const QString &name)
{
    return context.text(Helper::substituteVariables(name, index, 0));
}

/// Projects have an order code from the start; it says that nobody gave them one.
bool isUnknown(const QString &fact)
{
    return fact.trimmed().isEmpty() || fact == QLatin1String(kMadeUpOrderCode);
}

QString commentOf(const HtmlDoc::Context &context)
{
    return context.store.getDescriptionSettingsValue(QStringLiteral("Comment")).trimmed();
}

/// A row of the table of what the page was made from, in a colour of its own.
void writeFact(const HtmlDoc::Context &context, bool isAlternate, const FormWord &cell,
               const QString &value)
{
    context.page.write({HtmlPage::rowTag(isAlternate), HtmlPage::rowTag(false)});
    context.out.parts(context.page.form.of(cell), value, "</td>\n   </tr>\n");
}

constexpr FormWord kEndOfTableAndGap = {"  </table>\n"
                                        "  </div>\n"
                                        "<br />\n"
                                        "<br />\n",
                                        "  </table>\n"
                                        "  </section>\n"};

void describeSubIndex(const HtmlDoc::Context &context, const SubFacts &facts)
{
    context.page.startTable("  <table border=\"1\">\n", QStringLiteral("Subindex "),
                            "    <td style=\"font-weight:bold\">Sub </td>\n",
                            QStringLiteral("0x") + Numbers::toHex(facts.subIndex, 2));
    for (const SubRow &row : kSubRows) {
        if (row.when(facts))
            context.page.row(row.labelCell, row.value(facts));
    }
    context.out.raw("  </table>\n");
}

} // namespace

void HtmlDoc::writeGenerationTable(const Context &context, const QString &projectName)
{
    context.out.block(context.page.form.of({R"(
  <div class="left">
  <table>
   <tr class="head">
    <td colspan="2" id="gen">Generation information $project$</td>
   </tr>
)",
                                            R"(
  <section>
  <h2 id="gen">Generation information</h2>
  <table>
   <caption>Project $project$</caption>
)"}),
                      {{"project", context.text(projectName)}});
    writeFact(context, true,
              {"   <td>Generation time: ",
               "    <th scope=\"row\">Generation time</th>\n    <td class=\"time\">"},
              CText::generationTime());
    bool isAlternate = false;
    for (const SettingRow &row : kFileInfo) {
        const QString value = context.store.getDescriptionSettingsValue(QLatin1String(row.setting));
        if (!context.page.form.hasUnknownFacts && isUnknown(value))
            continue;
        writeFact(context, isAlternate, row.cell, context.text(value));
        isAlternate = !isAlternate;
    }
    context.page.write(kEndOfTableAndGap);
}

bool HtmlDoc::hasComment(const Context &context)
{
    return context.page.form.hasUnknownFacts || !commentOf(context).isEmpty();
}

void HtmlDoc::writeCommentTable(const Context &context)
{
    if (!hasComment(context))
        return;
    HtmlPage &page = context.page;
    page.write({"  <div class=\"left\">\n"
                "  <table>\n"
                "   <tr class=\"head\">\n"
                "    <td colspan=\"2\" id=\"com\">Comment</td>\n"
                "   </tr>\n",
                "  <section>\n"
                "  <h2 id=\"com\">Comment</h2>\n"
                "  <p>\n"});
    const QStringList lines = commentOf(context).split(QLatin1Char('\n'));
    for (const QString &line : lines) {
        page.write({"   <tr>\n"
                    "   <td>",
                    "   "});
        context.out.raw(context.text(line));
        page.write({"</td>\n"
                    "   </tr>\n",
                    "<br>\n"});
    }
    page.write({"  </table>\n"
                "  </div>\n"
                "<br />\n"
                "<br />\n",
                "  </p>\n"
                "  </section>\n"});
}

void HtmlDoc::writeTitleTable(const Context &context, const QString &projectName)
{
    if (context.page.form.hasHeading)
        return;
    context.out.block(R"(
  <div class="left">
  <table>
   <tr class="head">
    <td  colspan="2">  Object Dictionary Documenation of $project$</td>
   </tr>
  </table>
  </div>
)",
                      {{"project", context.text(projectName)}});
}

void HtmlDoc::createTOC(const Context &context, quint16 index, TocGaps &gaps)
{
    ObjectDataBase::INDEX_DATA_T data;
    (void)context.store.getIndexData(context.line, index, data); // the defaults stand for it
    bool &isGapDue = index >= ObjectRanges::kProfile.first ? gaps.firstProfileObject
                                                           : gaps.firstManufacturerObject;
    if (index >= ObjectRanges::kManufacturer.first && isGapDue) {
        context.page.write({"<br>\n", "   </ul>\n"
                                      "   <ul>\n"});
        isGapDue = false;
    }
    context.page.tocEntry(QString::number(index), hexIndex(index) + QLatin1Char(' ') +
                                                      objectName(context, index, data.name));
}

void HtmlDoc::describeIndex(const Context &context, quint16 index)
{
    ObjectDataBase::INDEX_DATA_T data;
    if (!context.store.getIndexData(context.line, index, data))
        return;
    TextWriter &out = context.out;
    HtmlPage &page = context.page;
    out.block(page.form.of({R"(
 <p>
  <table border="1">
   <tr>
    <th colspan="2" id="$index$"> Object: $hexIndex$ $name$</th>
   </tr>
   <tr>
    <td>Object Code</td>
    <td>$code$</td>
   </tr>
)",
                            R"(
  <h3 id="$index$">$hexIndex$ $name$</h3>
  <table>
   <caption>Object</caption>
   <tr>
    <th scope="row">Object code</th>
    <td>$code$</td>
   </tr>
)"}),
              {{"index", index},
               {"hexIndex", hexIndex(index)},
               {"name", objectName(context, index, data.name)},
               {"code", COHelper::objectCode2String(data.objectCode)}});
    if (!data.description.isEmpty())
        page.row(kDescriptionLabel, page.form.description(data.description));
    out.raw("  </table>\n");
    const auto describe = [&](quint8 subIndex, const ObjectDataBase::SUBINDEX_DATA_T &sub) {
        page.write({" <br/>\n", ""});
        describeSubIndex(context, {index, subIndex, context.implementationInfo, sub, page.form});
    };
    context.store.visitSubIndices(context.line, index, 0, describe);
    page.write({" </p>\n"
                "  <hr />\n",
                ""});
}

HTMLGenerator::HTMLGenerator()
    : LineDocGenerator(QStringLiteral("HTML documentation"), ".html", ".html")
{
}

void HTMLGenerator::resetJob()
{
    implementationInfo = wantsImplementationInfo();
}

void HTMLGenerator::write(TextWriter &out)
{
    const bool isPortable = readProjectFeatures(*database).hasPortableDescriptions();
    HtmlPage page(out, isPortable ? portableHtml() : classicHtml());
    database->setDescriptionSettingsLine(activeLine);
    const HtmlDoc::Context context{*database, out, page, activeLine, implementationInfo};

    page.begin({"Object Dictionary Documenation of ", "Object dictionary of "}, projectName,
               toolVersion);
    HtmlDoc::writeGenerationTable(context, projectName);
    HtmlDoc::writeCommentTable(context);
    HtmlDoc::writeTitleTable(context, projectName);

    const QList<quint16> indices = database->getIndices(activeLine, ObjectRanges::kAll);
    page.startToc();
    page.write(kTocListStart);
    page.tocEntry(QStringLiteral("gen"),
                  QLatin1String(page.form.of({"Generation Information", "Generation information"})),
                  "<br />\n");
    if (HtmlDoc::hasComment(context))
        page.tocEntry(QStringLiteral("com"), QStringLiteral("Comment"), "<br />\n");
    HtmlDoc::TocGaps gaps;
    forEach(indices, [&](quint16 index) { HtmlDoc::createTOC(context, index, gaps); });
    page.write(kTocListEnd);
    page.endToc();
    page.write({"  <div class=\"center\">\n", "  <section>\n"
                                              "  <h2>Objects</h2>\n"});
    forEach(indices, [&](quint16 index) { HtmlDoc::describeIndex(context, index); });
    page.write({"  </div>\n", "  </section>\n"});
    page.end();
}
