// The HTML page of a CANopen line.
#include "generators/descriptions/htmlgenerator.h"

#include "generators/ctext.h"
#include "generators/descriptions/htmlpage.h"
#include "generators/textwriter.h"
#include "support/cohelper.h"
#include "support/helper.h"
#include "support/implementation.h"
#include "support/numbers.h"

namespace
{

/// A line of the table of what the page was made from.
struct SettingRow {
    const char *cell;
    const char *setting; ///< key in the description settings
};

// clang-format off
constexpr SettingRow kFileInfo[] = {            // row order is file order
    {"   <td>Vendor name:",   "VendorName"},
    {"   <td>Product name: ", "ProductName"},
    {"   <td>File version:",  "FileVersion"},
    {"   <td>File Revision: ", "FileRevision"},
    {"   <td>Order Code:",    "OrderCode"},
    {"   <td>Created by: ",   "CreatedBy"},
    {"   <td>Modified by: ",  "ModifiedBy"},
};
// clang-format on

/// All that the rows of a subindex are made from.
struct SubFacts {
    quint16 index;
    quint8 subIndex;
    bool implementationInfo;
    const ObjectDataBase::SUBINDEX_DATA_T &data;
};

QString filled(const SubFacts &facts, const QString &text)
{
    return HtmlText::escaped(Helper::substituteVariables(text, facts.index, facts.subIndex));
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
    const char *labelCell;
    bool (*when)(const SubFacts &);
    QString (*value)(const SubFacts &); ///< as HTML
};

// clang-format off
constexpr SubRow kSubRows[] = {                 // row order is file order
    {"    <td>Name </td>\n", always,
     [](const SubFacts &f) { return filled(f, f.data.name); }},
    {"    <td>Data Type</td>\n", always,
     [](const SubFacts &f) { return COHelper::index2DataTypeString(f.data.dataType); }},
    {"    <td>Access </td>\n", always,
     [](const SubFacts &f) { return filled(f, f.data.accessType); }},
    {"    <td>Defaultvalue </td>\n", showsDefault,
     [](const SubFacts &f) { return filled(f, f.data.defaultValue); }},
    {"    <td>Low Limit </td>\n", showsLimits,
     [](const SubFacts &f) { return filled(f, f.data.lowLimit); }},
    {"    <td>High Limit </td>\n", showsLimits,
     [](const SubFacts &f) { return filled(f, f.data.upLimit); }},
    {"    <td>Description</td>\n",
     [](const SubFacts &f) { return !f.data.description.isEmpty(); },
     [](const SubFacts &f) {
         return HtmlText::stringConvert(
             Helper::substituteVariables(f.data.description, f.index, f.subIndex));
     }},
    {"    <td>PDO Mapping</td>\n", always,
     [](const SubFacts &f) { return COHelper::pdoMapping2String(f.data.pdoMapping); }},
    {"    <td>Implementation Type</td>\n",
     [](const SubFacts &f) { return f.implementationInfo; },
     [](const SubFacts &f) { return COHelper::implementation2String(f.data.implementation); }},
    {"    <td>Variable Name</td>\n",
     [](const SubFacts &f) {
         return f.implementationInfo &&
                f.data.implementation == Implementation::kApplicationVariable;
     },
     [](const SubFacts &f) { return filled(f, f.data.varName); }},
    {"    <td>Size in bytes </td>\n",
     [](const SubFacts &f) { return f.implementationInfo && f.data.size != 0; },
     [](const SubFacts &f) { return QString::number(f.data.size); }},
};
// clang-format on

QString hexIndex(quint16 index)
{
    return QStringLiteral("0x") + Numbers::toHex(index, 4);
}

QString objectName(quint16 index, const QString &name)
{
    return HtmlText::escaped(Helper::substituteVariables(name, index, 0));
}

/// A row of one cell, in a colour of its own.
void writeSingleCell(TextWriter &out, bool isAlternate, const char *cell, const QString &value)
{
    out.parts(HtmlPage::rowTag(isAlternate), cell, value, "</td>\n   </tr>\n");
}

constexpr const char *kEndOfTableAndGap = R"(
  </table>
  </div>
<br />
<br />
)";

void describeSubIndex(const HtmlDoc::Context &context, const SubFacts &facts)
{
    context.out.raw("  <table border=\"1\">\n");
    context.page.row("    <td style=\"font-weight:bold\">Sub </td>\n",
                     QStringLiteral("0x") + Numbers::toHex(facts.subIndex, 2),
                     "    <td style=\"font-weight:bold\">");
    for (const SubRow &row : kSubRows) {
        if (row.when(facts))
            context.page.row(row.labelCell, row.value(facts));
    }
    context.out.raw("  </table>\n");
}

} // namespace

void HtmlDoc::writeGenerationTable(const Context &context, const QString &projectName)
{
    TextWriter &out = context.out;
    out.block(R"(
  <div class="left">
  <table>
   <tr class="head">
    <td colspan="2" id="gen">Generation information $project$</td>
   </tr>
)",
              {{"project", HtmlText::escaped(projectName)}});
    writeSingleCell(out, true, "   <td>Generation time: ", CText::generationTime());
    bool isAlternate = false;
    for (const SettingRow &row : kFileInfo) {
        const QString value = context.store.getDescriptionSettingsValue(QLatin1String(row.setting));
        writeSingleCell(out, isAlternate, row.cell, HtmlText::escaped(value));
        isAlternate = !isAlternate;
    }
    out.block(kEndOfTableAndGap);
}

void HtmlDoc::writeCommentTable(const Context &context)
{
    TextWriter &out = context.out;
    out.block(R"(
  <div class="left">
  <table>
   <tr class="head">
    <td colspan="2" id="com">Comment</td>
   </tr>
)");
    const QStringList lines = context.store.getDescriptionSettingsValue(QStringLiteral("Comment"))
                                  .trimmed()
                                  .split(QLatin1Char('\n'));
    for (const QString &line : lines)
        writeSingleCell(out, false, "   <td>", HtmlText::escaped(line));
    out.block(kEndOfTableAndGap);
}

void HtmlDoc::writeTitleTable(const Context &context, const QString &projectName)
{
    context.out.block(R"(
  <div class="left">
  <table>
   <tr class="head">
    <td  colspan="2">  Object Dictionary Documenation of $project$</td>
   </tr>
  </table>
  </div>
)",
                      {{"project", HtmlText::escaped(projectName)}});
}

void HtmlDoc::createTOC(const Context &context, quint16 index, TocGaps &gaps)
{
    ObjectDataBase::INDEX_DATA_T data;
    (void)context.store.getIndexData(context.line, index, data); // the defaults stand for it
    bool &isGapDue = index >= ObjectRanges::kProfile.first ? gaps.firstProfileObject
                                                           : gaps.firstManufacturerObject;
    if (index >= ObjectRanges::kManufacturer.first && isGapDue) {
        context.out.raw("<br>\n");
        isGapDue = false;
    }
    context.out.parts("<a href=\"#", quint32(index), "\">", hexIndex(index), " ",
                      objectName(index, data.name), "</a><br>\n");
}

void HtmlDoc::describeIndex(const Context &context, quint16 index)
{
    ObjectDataBase::INDEX_DATA_T data;
    if (!context.store.getIndexData(context.line, index, data))
        return;
    TextWriter &out = context.out;
    out.block(R"(
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
              {{"index", index},
               {"hexIndex", hexIndex(index)},
               {"name", objectName(index, data.name)},
               {"code", COHelper::objectCode2String(data.objectCode)}});
    if (!data.description.isEmpty())
        context.page.row("    <td>Description</td>\n", HtmlText::stringConvert(data.description));
    out.raw("  </table>\n");
    const auto describe = [&](quint8 subIndex, const ObjectDataBase::SUBINDEX_DATA_T &sub) {
        out.raw(" <br/>\n");
        describeSubIndex(context, {index, subIndex, context.implementationInfo, sub});
    };
    context.store.visitSubIndices(context.line, index, 0, describe);
    out.raw(" </p>\n"
            "  <hr />\n");
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
    HtmlPage page(out);
    database->setDescriptionSettingsLine(activeLine);
    const HtmlDoc::Context context{*database, out, page, activeLine, implementationInfo};

    page.begin("  <title>Object Dictionary Documenation of ", projectName, toolVersion);
    HtmlDoc::writeGenerationTable(context, projectName);
    HtmlDoc::writeCommentTable(context);
    HtmlDoc::writeTitleTable(context, projectName);

    const QList<quint16> indices = database->getIndices(activeLine, ObjectRanges::kAll);
    out.block(R"(
 <div class="toc">
<a href="#gen">Generation Information</a><br />
<a href="#com">Comment</a><br />
)");
    HtmlDoc::TocGaps gaps;
    forEach(indices, [&](quint16 index) { HtmlDoc::createTOC(context, index, gaps); });
    out.raw("  </div>\n"
            "  <div class=\"center\">\n");
    forEach(indices, [&](quint16 index) { HtmlDoc::describeIndex(context, index); });
    out.raw("  </div>\n");
    page.end();
}
