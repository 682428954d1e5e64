// Places in the text form of a project.
#include "store/textprojectplaces.h"

#include "store/projectfile.h"
#include "store/schema.h"
#include "store/yaml/yamlprojectplaces.h"
#include "support/helper.h"
#include "support/numbers.h"

#include <QStringList>

namespace
{

/// The last one counts, as it does for the store.
template <class IsIt>
const char *lastKey(const QVector<IniText::Entry> &entries, IsIt isIt)
{
    for (int i = entries.size() - 1; i >= 0; --i) {
        if (isIt(entries.at(i).key()))
            return entries.at(i).keyText().begin;
    }
    return nullptr;
}

class NoPlaces : public ProjectPlaces
{
public:
    int lineOf(const ProjectPlace &) override { return 0; }
};

} // namespace

std::unique_ptr<ProjectPlaces> ProjectPlaces::ofFile(const QString &file)
{
    switch (ProjectFile::formOf(file)) {
    case ProjectFile::Form::Text:
        return std::make_unique<TextProjectPlaces>(file);
    case ProjectFile::Form::Yaml:
        return std::make_unique<YamlProjectPlaces>(file);
    case ProjectFile::Form::Database:
    case ProjectFile::Form::Other:
        break;
    }
    return std::make_unique<NoPlaces>();
}

TextProjectPlaces::Row TextProjectPlaces::row(int line, int index, int subindex)
{
    return Row(line) << 32 | Row(index) << 16 | Row(subindex);
}

int TextProjectPlaces::lineOf(const ProjectPlace &place)
{
    if (!isRead)
        read();
    isRead = true;
    if (!hasRows && place.index >= 0)
        readRows();
    const char *found = find(place);
    return found ? lines.at(found) : 0;
}

void TextProjectPlaces::read()
{
    (void)Helper::readWholeFile(fileName, text); // else nothing is found
    (void)IniText::read(text, &groups, &outline);
}

void TextProjectPlaces::readRows()
{
    hasRows = true;
    for (auto group = groups.constBegin(); group != groups.constEnd(); ++group)
        readRows(group.key(), *group);
}

void TextProjectPlaces::readRows(const QString &group, const QVector<IniText::Entry> &entries)
{
    const int lineOfSubs = Schema::lineOfTable(group, "SubObjects");
    const int line = lineOfSubs >= 0 ? lineOfSubs : Schema::lineOfTable(group, "Objects");
    const int numbers = lineOfSubs >= 0 ? 2 : 1;
    if (line < 0)
        return;
    for (const IniText::Entry &entry : entries) {
        const QStringList parts = entry.key().split(QLatin1Char('/'));
        if (parts.size() != numbers + 1)
            continue;
        const quint32 index = Numbers::toUIntByPrefix(parts.at(0));
        const quint32 sub = numbers == 2 ? Numbers::toUIntByPrefix(parts.at(1)) : kObject;
        if (index <= 0xFFFF && sub <= kObject)
            rows[row(line, int(index), int(sub))].append(entry);
    }
}

const char *TextProjectPlaces::find(const ProjectPlace &place) const
{
    const char *found = findSetting(place);
    if (!found && place.index >= 0 && place.subindex >= 0)
        found = findInRow(row(place.line, place.index, place.subindex), place.column);
    if (!found && place.index >= 0)
        found = findInRow(row(place.line, place.index, kObject), place.column);
    if (!found && !place.setting.isEmpty())
        found = outline.heads.value(place.store);
    return found || place.line < 0 ? found : findLine(place.line);
}

const char *TextProjectPlaces::findSetting(const ProjectPlace &place) const
{
    if (place.setting.isEmpty())
        return nullptr;
    const QVector<IniText::Entry> entries = groups.value(place.store);
    const QString ofLine = place.setting + QLatin1Char('_') + QString::number(place.line);
    const bool isOfLine = place.line > 0 && place.store == QLatin1String("DescriptionSettings");
    const QString &key = isOfLine ? ofLine : place.setting;
    return lastKey(entries, [&key](const QString &name) { return name == key; });
}

const char *TextProjectPlaces::findInRow(Row key, const QString &column) const
{
    const auto entries = rows.constFind(key);
    if (entries == rows.constEnd())
        return nullptr;
    const QString end = QLatin1Char('/') + column;
    const char *found =
        lastKey(*entries, [&end](const QString &name) { return name.endsWith(end); });
    return found ? found : entries->first().keyText().begin;
}

const char *TextProjectPlaces::findLine(int line) const
{
    if (const char *objects = outline.heads.value(Schema::table("Objects", line)))
        return objects;
    const QString start = QString::number(line) + QLatin1Char('/');
    for (const IniText::Entry &entry : groups.value(QStringLiteral("Nodes"))) {
        if (entry.key().startsWith(start))
            return entry.keyText().begin;
    }
    return outline.heads.value(QStringLiteral("Nodes"));
}
