// From a run to the page of its project.
#include "app/overviewfile.h"

#include "check/subjects.h"
#include "generators/overview/factsreader.h"
#include "generators/overview/links.h"
#include "generators/overview/overviewpage.h"
#include "support/filereasons.h"
#include "support/helper.h"
#include "support/replacefile.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <atomic>

namespace
{

/// Where a search for leaks finds it.
std::atomic<Overview::Facts *> abandonedFacts{nullptr};

QString kindOf(const LocatedFinding &located)
{
    if (located.level() == Problems::Level::Error)
        return QStringLiteral("error");
    if (Check::messageRow(located.finding.rule).kind == Check::Kind::Correction)
        return QStringLiteral("corrected");
    return located.level() == Problems::Level::Note ? QStringLiteral("note")
                                                    : QStringLiteral("warning");
}

/// What is to be looked at; empty if it is the project as a whole.
QString linkOf(const Finding &finding)
{
    const auto line = quint8(qMax(0, finding.line));
    if (finding.group >= 0)
        return Overview::linkToGroup(line, quint32(finding.group));
    if (finding.index >= 0)
        return finding.subindex >= 0
                   ? Overview::linkTo(line, quint16(finding.index), quint8(finding.subindex))
                   : Overview::linkTo(line, quint16(finding.index));
    const QLatin1String setting(Check::subjectOf(finding.rule).setting);
    return setting.size() == 0 ? QString() : QStringLiteral("#settings/") + setting;
}

QString placeIn(const QString &file, int line)
{
    return line > 0 ? file + QLatin1Char(':') + QString::number(line) : file;
}

/// An empty file holds nothing that could be lost, and a former page is made again.
bool mayBeReplaced(const QString &path)
{
    QFile file(path);
    if (!QFileInfo::exists(path))
        return true;
    const QByteArray start = Overview::startOfPages();
    return file.open(QIODevice::ReadOnly) && (file.size() == 0 || file.read(start.size()) == start);
}

} // namespace

void OverviewFile::readProject(ObjectDataBase &store, const ObjectNamesByLine &names,
                               const QString &file)
{
    facts = std::make_unique<Overview::Facts>(Overview::readFacts(store, names));
    facts->project.file = file;
    facts->project.name = QFileInfo(file).completeBaseName();
}

void OverviewFile::addFindings(const QVector<LocatedFinding> &findings)
{
    for (const LocatedFinding &located : findings)
        facts->findings.append(
            {kindOf(located), Check::ruleName(located.finding.rule), located.text(),
             linkOf(located.finding),
             located.fileLine > 0 ? placeIn(facts->project.file, located.fileLine) : QString()});
}

void OverviewFile::addProblems(const QVector<Problems::Problem> &problems)
{
    for (const Problems::Problem &problem : problems)
        facts->findings.append({problem.level == Problems::Level::Note ? QStringLiteral("note")
                                                                       : QStringLiteral("warning"),
                                problem.rule, problem.text, QString(),
                                placeIn(problem.file, problem.line)});
}

void OverviewFile::addFiles(const QStringList &paths, const QString &folder)
{
    const QDir base(folder);
    for (const QString &path : paths) {
        const QFileInfo info(path);
        if (!info.isFile())
            continue; // removed again
        const QString name = base.relativeFilePath(info.absoluteFilePath());
        facts->files.append({name.startsWith(QLatin1String("..")) ? path : name, info.size()});
    }
}

void OverviewFile::addFootprint(const QStringList &paths)
{
    const Overview::Footprint footprint = Overview::footprintOfFiles(paths);
    if (!footprint.arrays.empty())
        facts->footprint = footprint;
}

QString OverviewFile::write(const QString &path, bool keepsUnchanged) const
{
    QString reason = FileReasons::whyNotWritable(path);
    if (!reason.isEmpty())
        return reason;
    if (!mayBeReplaced(path))
        return QStringLiteral("it holds something else than such a page; remove it, or give the "
                              "page another name");
    const QByteArray page = Overview::pageOf(*facts);
    QByteArray former;
    if (keepsUnchanged && Helper::readWholeFile(path, former) && former == page)
        return QString();
    (void)ReplaceFile::write(path, page, &reason); // the reason says
    return reason;
}

void OverviewFile::abandon()
{
    abandonedFacts = facts.release();
}
