// The changes of an object dictionary.
#include "store/comparison/objectchanges.h"

#include "store/comparison/changedfields.h"
#include "store/sidebyside.h"

namespace
{

using Change = ProjectChange::Change;

/// The columns that the operator of the record leaves out, or takes less exactly.
bool isSame(const SubIndexData &one, const SubIndexData &other)
{
    return one == other && one.varName == other.varName && one.managedByOlm == other.managedByOlm &&
           one.signalId == other.signalId;
}

bool isPlainVariable(const ObjectRecord &object)
{
    using CANopen::ObjectCode;
    const bool isSingle = object.subs.size() == 1 && object.subs.begin()->first == 0;
    return object.exists && isSingle && object.data.objectCode != ObjectCode::Array &&
           object.data.objectCode != ObjectCode::Record;
}

class ObjectChanges
{
public:
    ObjectChanges(int lineNumber, std::vector<ProjectChange> *result)
        : line(lineNumber), changes(result)
    {
    }

    void add(quint16 objectIndex, const ObjectRecord *before, const ObjectRecord *after)
    {
        index = objectIndex;
        const IndexData *one = before && before->exists ? &before->data : nullptr;
        const IndexData *other = after && after->exists ? &after->data : nullptr;
        QVector<ChangedField> fields;
        if (one || other)
            // The type of a new object is that of its subindices.
            fields = ChangedFields::of(kIndexYaml, one, other, {one && other ? "" : "type"});
        const bool isPlain =
            (!before || isPlainVariable(*before)) && (!after || isPlainVariable(*after));
        if (isPlain)
            addFields(subFields(before ? &before->subs.at(0) : nullptr,
                                after ? &after->subs.at(0) : nullptr),
                      &fields);
        const QString name = other ? other->name : one ? one->name : QString();
        if (one || other)
            addChange(-1, one, other, name, fields);
        if (!isPlain)
            addSubs(before, after);
    }

private:
    /// \a more are those of subindex 0, which mostly has the name and type of its object.
    static void addFields(const QVector<ChangedField> &more, QVector<ChangedField> *fields)
    {
        const QVector<ChangedField> present = *fields;
        for (ChangedField field : more) {
            bool isThere = false;
            for (const ChangedField &other : present) {
                if (other.name != field.name)
                    continue;
                isThere = other.before == field.before && other.after == field.after;
                field.name = QStringLiteral(":0 ") + field.name;
                break;
            }
            if (!isThere)
                *fields << field;
        }
    }

    static QVector<ChangedField> subFields(const SubIndexData *before, const SubIndexData *after)
    {
        const bool isUnchanged = before && after && isSame(*before, *after);
        return isUnchanged ? QVector<ChangedField>()
                           : ChangedFields::of(kSubIndexYaml, before, after);
    }

    void addSubs(const ObjectRecord *before, const ObjectRecord *after)
    {
        static const ObjectRecord kNone;
        SideBySide::walk((before ? before : &kNone)->subs, (after ? after : &kNone)->subs,
                         [this](quint8 sub, const SubIndexData *one, const SubIndexData *other) {
                             addChange(sub, one, other, other ? other->name : one->name,
                                       subFields(one, other));
                         });
    }

    void addChange(int sub, const void *before, const void *after, const QString &name,
                   const QVector<ChangedField> &fields)
    {
        if (before && after && fields.isEmpty())
            return;
        const Change change = !before ? Change::Added : !after ? Change::Removed : Change::Changed;
        QString what = QStringLiteral("0x%1").arg(index, 4, 16, QLatin1Char('0')).toUpper();
        what[1] = QLatin1Char('x');
        if (sub >= 0)
            what += QLatin1Char(':') + QString::number(sub);
        if (!name.isEmpty())
            what += QLatin1Char(' ') + name;
        const ChangeKind kind = sub < 0 ? ChangeKind::Object : ChangeKind::Subindex;
        changes->push_back({kind, change, line, index, sub, what, fields});
    }

    int line;
    std::vector<ProjectChange> *changes;
    quint16 index = 0; ///< of the object that is looked at
};

} // namespace

void addObjectChanges(int line, const LineRecord &older, const LineRecord &newer,
                      std::vector<ProjectChange> *changes)
{
    ObjectChanges objects(line, changes);
    SideBySide::walk(older.objects, newer.objects,
                     [&](quint16 index, const ObjectRecord *before, const ObjectRecord *after) {
                         objects.add(index, before, after);
                     });
}
