// The comparison with an older project as the page of the overview takes it.
#include "generators/overview/comparisonjson.h"

#include "generators/overview/links.h"

namespace Overview
{
namespace
{

const char *wordOf(ChangeKind kind)
{
    switch (kind) {
    case ChangeKind::Line:
        return "line";
    case ChangeKind::Setting:
        return "setting";
    case ChangeKind::Object:
        return "object";
    case ChangeKind::Subindex:
        return "subindex";
    case ChangeKind::Group:
        return "group";
    case ChangeKind::Signal:
        return "signal";
    case ChangeKind::Frame:
        return "frame";
    case ChangeKind::Element:
        return "element";
    case ChangeKind::Service:
        return "service";
    case ChangeKind::Lock:
        return "lock";
    case ChangeKind::LineSignal:
        return "line signal";
    case ChangeKind::SignalGroup:
        return "signal group";
    case ChangeKind::Connection:
        return "connection";
    case ChangeKind::VirtualNode:
        return "node";
    case ChangeKind::LineGroup:
        return "line group";
    }
    return "";
}

const char *wordOf(ProjectChange::Change change)
{
    switch (change) {
    case ProjectChange::Change::Added:
        return "added";
    case ProjectChange::Change::Removed:
        return "removed";
    case ProjectChange::Change::Changed:
        break;
    }
    return "changed";
}

/// To what is there: what was removed is nowhere.
std::optional<QString> linkOf(const ProjectChange &change)
{
    if (change.change == ProjectChange::Change::Removed)
        return std::nullopt;
    const auto line = quint8(change.line);
    switch (change.kind) {
    case ChangeKind::Object:
        return linkTo(line, quint16(change.number));
    case ChangeKind::Subindex:
        return linkTo(line, quint16(change.number), quint8(change.subindex));
    case ChangeKind::Group:
    case ChangeKind::Signal:
        return linkToGroup(line, quint32(change.number));
    case ChangeKind::Frame:
    case ChangeKind::Element:
        return linkToIdentifier(line, quint32(change.number));
    default:
        return std::nullopt;
    }
}

void writeText(JsonWriter &json, const QString &text)
{
    if (text.isEmpty())
        json.null();
    else
        json.value(text);
}

void writeChange(JsonWriter &json, const ProjectChange &change)
{
    json.startObject();
    json.member("line", change.line < 0 ? std::nullopt : std::optional<int>(change.line));
    json.member("kind", wordOf(change.kind));
    json.member("change", wordOf(change.change));
    json.member("what", change.what);
    json.memberIf("link", linkOf(change));
    json.key("fields");
    json.startArray();
    for (const ChangedField &field : change.fields) {
        json.startArray();
        json.value(field.name);
        writeText(json, field.before);
        writeText(json, field.after);
        json.endArray();
    }
    json.endArray();
    json.endObject();
}

} // namespace

void writeComparison(JsonWriter &json, const ProjectComparison &comparison)
{
    json.startObject();
    json.member("with", comparison.with);
    json.key("changes");
    json.startArray();
    for (const ProjectChange &change : comparison.changes)
        writeChange(json, change);
    json.endArray();
    json.endObject();
}

} // namespace Overview
