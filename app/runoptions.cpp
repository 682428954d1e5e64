// The options of the command line.
#include "app/runoptions.h"

#include "store/projectfile.h"
#include "support/editdistance.h"
#include "support/printable.h"
#include "support/problems.h"

#include <algorithm>

namespace
{

constexpr int kLongestMeant = 80; // characters of a word that is compared with others

// clang-format off
const QVector<OptionRow> kOptions = {
    {"-check", nullptr, false, "Checks the project and writes nothing but a report."},
    {"-compare", "project", false, "Tells what differs from an older project."},
    {"-dbmod", "file", true, "Apply a db modification. Only for internal use."},
    {"-depfile", "file", false,
     "Writes which files were read and written, as a rule of make."},
    {"-export", "file", false, "Writes the project to another file, in the form of its name."},
    {"-help", nullptr, false, "Prints a list of options."},
    {"-import", "file", true, "Sets an importfile. This argument is optional."},
    {"-import-node", "name", false, "Names the node that the device is, for the DBC files imported after it."},
    {"-keep-unchanged", nullptr, false, "Leaves files as they are that would differ in their date only."},
    {"-no-commands", nullptr, false, "Starts no program after the generation."},
    {"-output", "folder", false, "Sets the folder for the files."},
    {"-overview", "file", false, "Writes a page that shows the project."},
    {"-problems", nullptr, false, "Tells the findings of the check on standard error too, with their places."},
    {"-project", "file", true, "Sets the project file to use. This argument is mandatory."},
    {"-report", "file", false, "Writes the findings for machines."},
    {"-s", nullptr, true, "Saves the project file. Could be helpful in combination with import option."},
    {"-save", nullptr, true, "Saves the project file. Could be helpful in combination with import option."},
    {"-schema", nullptr, false, "Prints the JSON Schema of projects in YAML."},
    {"-set", "setting", false, "Sets a value of the project for this run."},
    {"-version", nullptr, false, "Prints name and version."},
};
// clang-format on

/// Does it count as often as it is given?
bool isRepeatable(const OptionRow &option)
{
    for (const char *name : {"-import", "-import-node", "-set"}) {
        if (qstrcmp(option.name, name) == 0)
            return true;
    }
    return false;
}

const OptionRow *findOption(const QString &word)
{
    const auto row =
        std::find_if(kOptions.cbegin(), kOptions.cend(), [&word](const OptionRow &option) {
            return word == QLatin1String(option.name);
        });
    return row == kOptions.cend() ? nullptr : row;
}

/// The option that \a word may stand for: one letter in four is wrong, it is cut short, or written
/// as other tools have their options. Of those that begin alike one of the help is the likelier.
/// Null if none is near.
const OptionRow *nearestOption(QString word)
{
    word = word.section(QLatin1Char('='), 0, 0);
    while (word.startsWith(QLatin1String("--")))
        word.remove(0, 1);
    if (word.size() < 2 || word.size() > kLongestMeant || !word.startsWith(QLatin1Char('-')))
        return nullptr;
    const OptionRow *nearest = nullptr;
    int least = word.size() / 4 + 1;
    for (const OptionRow &option : kOptions) {
        const QString name = QLatin1String(option.name);
        const int distance = name.startsWith(word) ? 0 : editDistance(word, name);
        const bool isLikelier = nearest && option.isInHelp && !nearest->isInHelp;
        if (distance < least || (distance == least && isLikelier)) {
            least = distance;
            nearest = &option;
        }
    }
    return nearest;
}

} // namespace

const QVector<OptionRow> &optionRows()
{
    return kOptions;
}

bool RunOptions::has(const char *option) const
{
    return arguments.contains(QLatin1String(option));
}

QString RunOptions::value(const char *option) const
{
    QString text;
    (void)value(option, text); // then it stays null
    return text;
}

bool RunOptions::value(const char *option, QString &text) const
{
    const int position = arguments.indexOf(QLatin1String(option));
    if (position < 0 || position + 1 >= arguments.size())
        return false;
    text = arguments.at(position + 1);
    return true;
}

QStringList RunOptions::values(const char *option) const
{
    QStringList found;
    const OptionRow *row = findOption(QLatin1String(option));
    const QVector<int> positions = row ? positionsOf(*row) : QVector<int>();
    for (const int position : positions)
        found << arguments.mid(position + 1, 1); // none after the last word
    return found;
}

QVector<QPair<QString, QString>> RunOptions::valuesInOrder(const QStringList &names) const
{
    QVector<QPair<QString, QString>> found;
    for (int position = 1; position + 1 < arguments.size(); ++position) {
        if (!names.contains(arguments.at(position)))
            continue;
        found.append({arguments.at(position), arguments.at(position + 1)});
        ++position;
    }
    return found;
}

QVector<int> RunOptions::positionsOf(const OptionRow &option) const
{
    QVector<int> positions;
    const QString name = QLatin1String(option.name);
    for (int position = arguments.indexOf(name); position >= 0;
         position = arguments.indexOf(name, position + 2)) { // the next word is its value
        positions << position;
        if (!isRepeatable(option))
            break;
    }
    return positions;
}

void RunOptions::reportSlips() const
{
    const QSet<int> known = reportValues();
    for (int position = 1; position < arguments.size(); ++position) {
        const QString &word = arguments.at(position);
        if (known.contains(position))
            continue;
        const OptionRow *meant = nearestOption(word);
        reportUnknown(word, meant);
        if (meant && meant->value && !known.contains(position + 1) &&
            !arguments.value(position + 1).startsWith(QLatin1Char('-')))
            ++position; // what was to be its value
    }
}

/// Gives the positions of all words that are options or their values.
QSet<int> RunOptions::reportValues() const
{
    QSet<int> known;
    QSet<int> values;
    for (const OptionRow &option : kOptions) {
        const QVector<int> positions = option.value ? positionsOf(option) : QVector<int>();
        for (const int position : positions) {
            reportValue(option, position);
            known << position;
            values << position + 1;
        }
    }
    for (int position = 1; position < arguments.size(); ++position) {
        const OptionRow *option = findOption(arguments.at(position));
        if (!option || known.contains(position) || values.contains(position))
            continue;
        known << position;
        if (!option->value)
            continue;
        reportRepeated(*option, position);
        if (!findOption(arguments.value(position + 1)))
            known << position + 1;
    }
    return known + values;
}

void RunOptions::reportValue(const OptionRow &option, int position) const
{
    const QString name = quotedWord(QLatin1String(option.name));
    const QString value = arguments.value(position + 1);
    if (position + 1 == arguments.size())
        Problems::warning("option-without-value", {},
                          QStringLiteral("%1 stands last, without its %2, and has no effect")
                              .arg(name, QLatin1String(option.value)));
    else if (value.isEmpty())
        Problems::warning("option-without-value", {},
                          QStringLiteral("the %1 of %2 is an empty text, as that of a variable "
                                         "that is not set")
                              .arg(QLatin1String(option.value), name));
    else if (findOption(value))
        Problems::warning("option-as-value", {},
                          QStringLiteral("the option %1 is taken for the %2 of %3; put the %2 "
                                         "between them")
                              .arg(quotedWord(value), QLatin1String(option.value), name));
}

void RunOptions::reportRepeated(const OptionRow &option, int position) const
{
    const QString value = arguments.value(position + 1);
    const QString rest = QStringLiteral(", and %1 has no effect").arg(quotedWord(value));
    Problems::warning(
        "option-twice", {},
        QStringLiteral("%1 is given more than once; the first one counts%2")
            .arg(quotedWord(QLatin1String(option.name)), value.isNull() ? QString() : rest));
}

void RunOptions::reportUnknown(const QString &word, const OptionRow *meant) const
{
    const bool isProject = ProjectFile::formOf(word) != ProjectFile::Form::Other;
    QString text = QStringLiteral("%1 is no option and has no effect").arg(quotedWord(word));
    if (meant)
        text += QStringLiteral("; did you mean %1").arg(quotedWord(QLatin1String(meant->name)));
    else if (isProject && !has("-project"))
        text += QStringLiteral("; put \"-project\" before it");
    Problems::warning("unknown-option", {}, text);
}
