// The YAML form of a project: its file as plain records, and back.
#include "formats/yamlreader.h"
#include "store/linetype.h"
#include "store/objectdatabase_p.h"
#include "store/yaml/yamlcontext.h"
#include "store/yaml/yamlproject.h"

#include <QFile>

namespace
{

constexpr const char *kTooLarge = "the project is too large for the YAML form: ";

/// A value has two bytes at least: a file that is no larger breaks no bound of the reader.
constexpr qint64 kBytesWithinBounds = 2 * qint64(YamlDocument::kMostNodes);

/// Why the next run could not read what was written.
QString whyBeyondBounds(const QString &file)
{
    QFile written(file);
    if (written.size() <= kBytesWithinBounds)
        return QString();
    YamlProblems problems(file);
    YamlDocument document;
    if (!written.open(QIODevice::ReadOnly))
        return written.errorString();
    const QByteArray text = written.read(YamlDocument::kMostBytes + 1);
    if (YamlReader::read(text, &document, &problems) && problems.isEmpty())
        return QString();
    return QLatin1String(kTooLarge) + problems.lines().value(0);
}

/// A line is one of CANopen where the file does not say it: most are, and one without objects, into
/// which a description shall be imported, has nothing else to tell it. Of lines with groups the
/// store decides.
void setMissingTypes(ObjectDataBase &store)
{
    const QList<quint8> lines = store.getNodes();
    for (const quint8 line : lines) {
        const QString key = QStringLiteral("line%1type").arg(line);
        if (store.getGeneralSettingsValue(key).isEmpty() &&
            store.getPGNs(line, Direction::kBoth, false).isEmpty())
            store.setGeneralSettingsValue(key, QString::number(int(LineType::CANopen)));
    }
}

} // namespace

bool ObjectDataBase::saveDatabaseAsYaml(const QString &file)
{
    return saveReadable(file, &ObjectDataBase::toYaml);
}

bool ObjectDataBase::toYaml(const QString &file)
{
    return d->replaceReadable(file, [this](const QString &fresh) { return d->writeYaml(fresh); });
}

bool StorePrivate::writeYaml(const QString &file)
{
    ProjectRecord project;
    if (!owner->readRecords(&project) || damaged) {
        lastError = QStringLiteral("the temporary copy of it failed (%1)").arg(failure);
        return false;
    }
    if (countOfRecords(project) > YamlContext::kMostRecords) {
        lastError = QLatin1String(kTooLarge) +
                    QStringLiteral("it has more than %1 subindices, frames and signals")
                        .arg(YamlContext::kMostRecords);
        return false;
    }
    QFile target(file);
    const bool isWritten = target.open(QIODevice::WriteOnly | QIODevice::Truncate) &&
                           YamlProject::write(project, &target) && target.flush();
    target.close();
    lastError = isWritten ? whyBeyondBounds(file) : target.errorString();
    return lastError.isEmpty();
}

bool ObjectDataBase::fromYaml(const QString &file)
{
    d->lastError.clear();
    d->projectFile = file;
    d->sourceState = ProjectFile::State::of(file);
    d->sourceUnreadable = true; // until it has been read
    ProjectRecord project;
    if (!d->readYaml(&project))
        return false;
    const bool created = createNewDataBase();
    d->sourceUnreadable = true; // until it is held
    if (!created) {
        const QString reason = d->temporaryFiles.failure();
        return d->refuseWorkingCopy(reason.isEmpty() ? d->failure : reason);
    }
    beginBatch();
    const bool held = putRecords(project);
    const bool rightTool = held && checkTool();
    if (rightTool) {
        setMissingTypes(*this);
        repairLines();
        completeProject();
    }
    commitBatch();
    if (!held || d->damaged)
        return d->refuseWorkingCopy(d->failure);
    if (!rightTool)
        return d->refuseTool();
    d->sourceUnreadable = false;
    emit updateNotify(ChangeSet());
    return true;
}

/// Tells all that is wrong in the project file.
bool StorePrivate::readYaml(ProjectRecord *project)
{
    const ProjectFile::Refusal refusal = ProjectFile::whyNoYaml(projectFile);
    if (refusal.rule)
        return refuse(refusal.rule, refusal.text);
    YamlProblems problems(projectFile);
    YamlDocument document;
    const bool isRead = YamlReader::readFile(projectFile, &document, &problems) &&
                        YamlProject::read(document, project, &problems) && problems.isEmpty();
    problems.tell();
    firstCommentLine = document.firstCommentLine();
    return isRead;
}
