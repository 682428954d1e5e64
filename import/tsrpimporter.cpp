// From another project into this one.
#include "import/tsrpimporter.h"

#include "store/projectconverter.h"
#include "support/printable.h"
#include "support/problems.h"
#include "support/settingscatalogue.h"

namespace
{

constexpr int kNamed = 3; // settings that a sentence names, of any number

/// "0", "0 and 1", "0, 1 and 2"
QString enumeration(QStringList words)
{
    const QString last = words.takeLast();
    return words.isEmpty() ? last
                           : words.join(QLatin1String(", ")) + QStringLiteral(" and ") + last;
}

QString namesOf(const QList<quint8> &lines)
{
    QStringList names;
    for (const quint8 line : lines)
        names << QString::number(line);
    const bool isOne = names.size() == 1;
    return (isOne ? QStringLiteral("line ") : QStringLiteral("the lines ")) + enumeration(names);
}

/// Settings that generated code hangs on.
struct SettingsRow {
    SettingStore store;
    const char *prefix; ///< as "-set" takes it
    QStringList (ObjectDataBase::*keys)() const;
    QString (ObjectDataBase::*value)(const QString &) const;
};

constexpr SettingsRow kSettings[] = {
    {SettingStore::General, "", &ObjectDataBase::getGeneralSettingsKeys,
     &ObjectDataBase::getGeneralSettingsValue},
    {SettingStore::J1939, "J1939:", &ObjectDataBase::getJ1939SettingsKeys,
     &ObjectDataBase::getJ1939SettingsValue},
};

bool isOfWholeProject(const SettingsRow &row, const QString &key)
{
    const Setting *setting = SettingsCatalogue::find(row.store, key);
    return setting && !setting->isNumbered() && setting->span == Setting::Span::Project;
}

/// An empty value counts as 0, as it does for most readers.
bool isAlike(const QString &one, const QString &other)
{
    const QLatin1String zero("0");
    return one == other || ((one.isEmpty() || one == zero) && (other.isEmpty() || other == zero));
}

} // namespace

std::unique_ptr<ObjectDataBase> TSRPImporter::openFile()
{
    auto other = std::make_unique<ObjectDataBase>();
    if (importFileName.isEmpty() || !other->openDataBase(importFileName, false)) {
        fail(QStringLiteral("Could not open %1").arg(importFileName));
        return nullptr;
    }
    ProjectConverter converter; // as any project that is opened
    converter.setDatabase(other.get());
    converter.doGenericCorrection();
    converter.doCANopenCorrection();
    return other;
}

LineType TSRPImporter::lineTypeOfFile()
{
    source = openFile();
    if (!source)
        return LineType();
    const QList<quint8> lines = source->getNodes();
    if (lineOfFile == ObjectDataBase::kFirstLine && !lines.isEmpty())
        return readLineType(*source, lines.first());
    if (lines.contains(lineOfFile))
        return readLineType(*source, lineOfFile);
    QString missing = QStringLiteral("it has no line %1").arg(lineOfFile);
    if (!lines.isEmpty())
        missing += QStringLiteral(", but %1; name one, as in %2")
                       .arg(namesOf(lines), quotedWord(QStringLiteral("%1#%2").arg(
                                                importFileName, QString::number(lines.first()))));
    Problems::error("not-imported", importFileName,
                    QStringLiteral("could not be imported: ") + missing);
    fail(missing);
    return LineType();
}

void TSRPImporter::doImport()
{
    const Job job(*this);
    if (abortRequested || !database)
        return;
    const std::unique_ptr<ObjectDataBase> opened = source ? nullptr : openFile();
    ObjectDataBase *other = source ? source.get() : opened.get();
    if (!other)
        return;
    emit progress(20);
    if (copyLine(*other))
        return;
    Problems::error("not-imported", importFileName,
                    QStringLiteral("could not be imported: not all of its line could be copied"));
    fail(QStringLiteral("Could not copy all of %1").arg(importFileName));
}

bool TSRPImporter::copyLine(ObjectDataBase &other)
{
    const bool done =
        database->copyLineFromDatabase(other, activeLine, lineOfFile, lowIndex, highIndex) &&
        database->copyPGNsFromDatabase(other, activeLine, lineOfFile, lowIndex, highIndex,
                                       Direction::kBoth) &&
        database->copyRestOfLineFromDatabase(other, activeLine, lineOfFile);
    if (!done)
        return false;
    tellLinks(other);
    tellSettings(other);
    return true;
}

void TSRPImporter::tellLinks(const ObjectDataBase &other) const
{
    const quint8 line =
        lineOfFile == ObjectDataBase::kFirstLine ? other.getNodes().first() : lineOfFile;
    int count = 0;
    const QList<ObjectDataBase::Connection> links = other.getPDOConnections(true);
    for (const ObjectDataBase::Connection &link : links)
        count += (link.prodNode == line) != (link.conNode == line) ? 1 : 0;
    if (count > 0)
        Problems::warning("import-leaves", importFileName,
                          QStringLiteral("was imported without the connections between its line "
                                         "%1 and other lines, %2 in number")
                              .arg(QString::number(line), QString::number(count)));
}

void TSRPImporter::tellSettings(const ObjectDataBase &other) const
{
    QStringList differing;
    int more = 0;
    for (const SettingsRow &row : kSettings) {
        const QStringList keys = (other.*row.keys)();
        for (const QString &key : keys) {
            const QString value = (other.*row.value)(key);
            if (!isOfWholeProject(row, key) || isAlike(value, (*database.*row.value)(key)))
                continue;
            if (differing.size() < kNamed)
                differing << quotedWord(QLatin1String(row.prefix) + key);
            else
                ++more;
        }
    }
    if (differing.isEmpty())
        return;
    if (more > 0)
        differing << QStringLiteral("%1 more").arg(more);
    Problems::note("import-leaves", importFileName,
                   QStringLiteral("has other values of settings that its lines share, which stay "
                                  "as they are in the project: %1")
                       .arg(enumeration(differing)));
}
