// The two forms of HTML pages: styles and texts. Their elements stand with those who write them.
#include "generators/descriptions/htmlform.h"

#include "generators/descriptions/htmlpage.h"

#include <QRegularExpression>
#include <QStringList>
#include <QVector>

namespace
{

// --- Classic ---

// Deliberate: the last rules are our own. Without them a long text runs below the contents, or off
// the paper; held by tst_golden.
constexpr const char *kClassicStyles = R"(
html *
{
   font-size: 1em;
   font-family: Arial !important;
}
table, td, th
{
border-collapse:collapse;
border:0px solid black;
padding: 5px 10px 5px 10px;
font-family: Arial, Helvetica, Verdana, sans-serif;
page-break-inside: avoid;
}
tr.head td
{
color:#000000;
background-color: #ffffff;
text-align:center;
font-size: 1.5em;
}
th
{
background-color:#a5a5a5;
color:#ffffff;
font-weight: bold;
font-size: 1.2em;
}
tr td
{
color:#000000;
background-color: #f0f0f0;
text-align:justify;
}
tr.alt td
{
color:#000000;
background-color: #d5d5d5;
text-align:justify;
}
a:link {color:#000000; text-decoration:none; }
a:visited {color:#000000; text-decoration:none;}
a:hover {color:#bbbbbb; text-decoration:none;}
a:active {color:#dddddd; text-decoration:none;}
div.toc
{
position:fixed; left:620px; top:10px;
max-height:95%; overflow-y: scroll;
padding:10px;
background-color: #f0f0f0;
font-size: 0.8em;
page-break-after: always;
}
@media print
{
div.toc
{
position:static; overflow:hidden;
background-color: #ffffff;
font-size: 0.8em;
}
a:link 
{
text-decoration:underline; color:#000000;
}
table tr 
{
border:1px solid black; color:#000000;
}
th 
{
color:#000000;
}
tr.head 
{
border:0px solid black; color:#000000;
}
div.center 
{
margin: 0 auto; width:600px;
}
}
@media screen
{
div.left, div.center
{
max-width:600px;
}
}
td + td, th, div.left td
{
overflow-wrap: anywhere;
}
)";

// --- Portable ---

// Wide screens have the contents at the right, small ones above the objects and by a link that
// stays in sight. All colours have a contrast of at least 7 to 1, but for borders.
constexpr const char *kPortableStyles = R"(
html { font-family: Arial, Helvetica, Verdana, sans-serif; line-height: 1.4; }
body { margin: 0; padding: 0 1rem 4rem 1rem; color: #1b1f24; background-color: #ffffff; }
header, main { max-width: 48rem; margin: 0 auto; }
h1 { font-size: 1.6rem; line-height: 1.2; }
h2 { font-size: 1.3rem; margin: 2rem 0 0.5rem 0; }
h3 { font-size: 1.1rem; margin: 2rem 0 0.5rem 0; }
h1, h2, h3, p, caption, th, td, nav { overflow-wrap: break-word; }
a { color: #0a4584; }
table { width: 100%; margin: 0 0 1rem 0; border-collapse: collapse; table-layout: fixed; }
caption { padding: 0.3rem 0; font-weight: bold; text-align: left; }
th, td { padding: 0.3rem 0.6rem; border: 1px solid #b4bcc6; text-align: left; vertical-align: top; }
th { width: 11rem; font-weight: normal; background-color: #eef1f5; }
nav ul { margin: 0 0 1rem 0; padding: 0; list-style: none; }
nav li { padding: 0.15rem 0; }
nav a { text-decoration: none; }
a:hover, a:focus { text-decoration: underline; }
a.contents { padding: 0.6rem 1rem; color: #ffffff; background-color: #0a4584; }
@media screen
{
nav { max-height: 60vh; overflow: auto; padding: 0 1rem; border: 1px solid #b4bcc6; }
a.contents { position: fixed; right: 0; bottom: 0; z-index: 1; }
}
@media screen and (max-width: 30rem)
{
th { width: 8rem; }
}
@media screen and (min-width: 64rem)
{
body { margin-right: 22rem; }
nav { position: fixed; top: 0; right: 0; bottom: 0; width: 20rem; max-height: none; }
nav { border-width: 0 0 0 1px; background-color: #f7f8fa; }
a.contents { display: none; }
}
@media screen and (prefers-color-scheme: dark)
{
body { color: #e4e8ed; background-color: #15181c; }
a { color: #93c1f5; }
th { background-color: #242a31; }
th, td, nav { border-color: #4a535e; }
nav { background-color: #1b1f24; }
a.contents { color: #10141a; background-color: #93c1f5; }
}
@media print
{
body { padding: 0; }
header, main { max-width: none; }
nav { font-size: 0.8rem; page-break-after: always; }
nav ul { columns: 2; }
nav li { break-inside: avoid; }
a { color: #000000; }
a.contents { display: none; }
h1, h2, h3, caption { page-break-after: avoid; break-after: avoid; }
table, tr { page-break-inside: avoid; break-inside: avoid; }
}
)";

/// \a text without characters that no page holds: they become blanks, half of a surrogate pair a
/// replacement.
QString shown(const QString &text)
{
    QVector<uint> whole = text.toUcs4(); // replaces the halves
    for (uint &code : whole) {
        const bool isControl =
            (code < 0x20 && code != '\t' && code != '\n') || (code >= 0x7F && code < 0xA0);
        if (isControl || (code & 0xFFFE) == 0xFFFE || (code >= 0xFDD0 && code < 0xFDF0))
            code = ' ';
    }
    return QString::fromUcs4(whole.constData(), whole.size());
}

/// As the classic form has it: "A & B" stays as it is. Here also what no browser takes for markup,
/// but a checker does.
QString portableText(const QString &text)
{
    static const QRegularExpression reference(QStringLiteral("&(?=[A-Za-z0-9#])"));
    return shown(text)
        .replace(reference, QStringLiteral("&amp;"))
        .replace(QLatin1Char('<'), QLatin1String("&lt;"));
}

/// Does \a text hold nothing but text, references, and elements within a line that are closed in
/// their order?
bool isSoundMarkup(const QString &text)
{
    static const QRegularExpression markup(
        QStringLiteral("<(/?)(b|code|em|i|kbd|s|samp|small|strong|sub|sup|u|var)>|<br ?/?>|"
                       "&(?:amp|lt|gt|quot|nbsp|deg|micro|plusmn|[aouAOU]uml|szlig);|"
                       "(<|&(?=[A-Za-z0-9#]))"));
    QStringList open;
    for (auto match = markup.globalMatch(text); match.hasNext();) {
        const QRegularExpressionMatch found = match.next();
        const QString name = found.captured(2);
        if (!found.captured(3).isEmpty())
            return false;
        if (!name.isEmpty() && found.captured(1).isEmpty())
            open << name;
        else if (!name.isEmpty() && (open.isEmpty() || open.takeLast() != name))
            return false;
    }
    return open.isEmpty();
}

/// HTML of its own stays if no checker rejects it; else it is shown as it stands.
QString portableDescription(const QString &text)
{
    const QString plain = shown(text);
    return HtmlText::stringConvert(isSoundMarkup(plain) ? plain : portableText(plain));
}

HtmlForm makeClassic()
{
    HtmlForm form;
    form.hasUnknownFacts = true;
    form.namesTwice = true;
    form.styles = kClassicStyles;
    form.text = HtmlText::escaped;
    form.description = HtmlText::stringConvert;
    form.comment = HtmlText::comment;
    return form;
}

HtmlForm makePortable()
{
    HtmlForm form;
    form.preferPortable = true;
    form.hasCaptions = true;
    form.hasHeading = true;
    form.styles = kPortableStyles;
    form.text = portableText;
    form.description = portableDescription;
    form.comment = [](const QString &text) { return HtmlText::comment(shown(text)); };
    return form;
}

} // namespace

const HtmlForm &classicHtml()
{
    static const HtmlForm form = makeClassic();
    return form;
}

const HtmlForm &portableHtml()
{
    static const HtmlForm form = makePortable();
    return form;
}
