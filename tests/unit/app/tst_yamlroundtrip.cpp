// Random projects through the YAML form: nothing changes on the way, neither in the project nor in
// what is generated of it.
#include "formats/yamlreader.h"
#include "generators/descriptions/edsgenerator.h"
#include "store/yaml/yamlproject.h"
#include "tests/fixtures/generatorrun.h"
#include "tests/fixtures/projectcompare.h"
#include "tests/fixtures/randomproject.h"
#include "tests/fixtures/storefixture.h"

#include <QLoggingCategory>

namespace
{

/// What is wrong with it, a line each; empty if nothing.
QString readYaml(const QByteArray &text, ProjectRecord *project)
{
    YamlProblems problems("project.yaml");
    YamlDocument document;
    if (YamlReader::read(text, &document, &problems))
        YamlProject::read(document, project, &problems);
    return problems.lines().join('\n');
}

QString whyNotRead(const QByteArray &text)
{
    ProjectRecord project;
    return readYaml(text, &project);
}

/// All short forms.
std::map<quint16, ObjectRecord> standardObjects()
{
    ProjectRecord project;
    const QString fault = readYaml(R"(tessarine: 1
lines:
  0:
    device-type: 0x191
    error-register: 0
    sync: {cob-id: 0x80, cycle: 1000, window: 500}
    manufacturer: {device-name: pump, hardware: "1", software: 2.0}
    emcy: {cob-id: $NODEID+0x80, inhibit: 10}
    heartbeat: 1000
    heartbeat-consumers: {1: 0x10064, 3: 0}
    identity: {vendor: 0x319, product: 0x40, revision: 0x10002, serial: 0}
    sdo-server: {1: {request: $NODEID+0x600, response: $NODEID+0x580}, 2: {node: 3}}
    sdo-client: {1: {request: 0x601, response: 0x581, node: 1}}
    rpdo:
      1: {cob-id: $NODEID+0x200, transmission: 255, map: [0x2011, 0x2012:1]}
      2: {cob-id: 0x80000000, inhibit: 5, event-timer: 100, map: []}
    tpdo:
      1: {cob-id: $NODEID+0x180, transmission: 1, map: [0x2010, "0x2002:2", 0x20110008]}
      512: {cob-id: 0x80000000, inhibit: 5, event-timer: 100, sync-start: 3, map: [0x2000]}
)",
                                   &project);
    if (!fault.isEmpty())
        qFatal("%s", qPrintable(fault));
    return project.lines[0].objects;
}

} // namespace

class tst_YamlRoundTrip : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        qputenv("SOURCE_DATE_EPOCH", "0");                     // the same dates
        QLoggingCategory::setFilterRules("tessarine.*=false"); // odd projects make generators talk
    }

    void random()
    {
        constexpr int kProjects = 500;
        constexpr int kGenerated = 60; // which takes longer
        RandomProject projects(testSeed(), standardObjects());
        for (int i = 0; i < kProjects; ++i) {
            ObjectDataBase opened;
            ObjectDataBase back;
            QString fault = faultOf(projects.make(), opened, back);
            if (fault.isEmpty() && i % (kProjects / kGenerated) == 0)
                fault = differentFile(generatedFiles(opened), generatedFiles(back));
            if (!fault.isEmpty())
                qInfo("%s", readFile(fixture.path("a.yaml")).left(20000).constData());
            QVERIFY2(fault.isEmpty(), qPrintable(QString("project %1: %2").arg(i).arg(fault)));
        }
    }

private:
    /// By name; the first error of the generators is one of them.
    QMap<QString, QByteArray> generatedFiles(ObjectDataBase &store)
    {
        QTemporaryDir folder;
        QMap<QString, QByteArray> files;
        files["error"] = runGenerators(store, folder.path(), "random").toUtf8();
        const QList<quint8> lines = store.getNodes();
        for (const quint8 line : lines) {
            EDSGenerator description(EdsVariants(store, line), QString(), false, false);
            files["error"] += runJob(description, store, folder.path(), "random", line).toUtf8();
        }
        for (const QString &file : QDir(folder.path()).entryList(QDir::Files))
            files[file] = readFile(folder.filePath(file));
        files["error"].replace(folder.path().toUtf8(), "");
        return files;
    }

    static QString differentFile(const QMap<QString, QByteArray> &one,
                                 const QMap<QString, QByteArray> &other)
    {
        if (one.keys() != other.keys() || one.size() < 3)
            return "other files: " + one.keys().join(' ') + " and " + other.keys().join(' ');
        for (auto file = one.begin(); file != one.end(); ++file) {
            if (*file != other[file.key()])
                return file.key() + " differs";
        }
        return {};
    }

    /// What changes on the way from a database to YAML and back; empty if nothing. \a opened is the
    /// database, so without what opening repairs, \a back what was read again.
    QString faultOf(const ProjectRecord &made, ObjectDataBase &opened, ObjectDataBase &back)
    {
        const QString database = fixture.path("a.tsrp");
        const QString file = fixture.path("a.yaml");
        const QString copy = fixture.path("b.yaml");
        const auto store = makeStore();
        if (!store->putRecords(made) || !store->saveDataBase(database) ||
            !opened.openDataBase(database) || !opened.saveDataBase(file))
            return "no YAML: " + opened.getLastErrorString();
        if (!back.openDataBase(file))
            return "not read: " + whyNotRead(readFile(file));
        ProjectRecord before;
        ProjectRecord after;
        if (!opened.readRecords(&before) || !back.readRecords(&after) || !back.toYaml(copy))
            return "no records";
        const QString difference = firstDifference(before, after);
        if (difference.isEmpty() && readFile(file) != readFile(copy))
            return "other bytes";
        return difference;
    }

    StoreFixture fixture;
};

QTEST_GUILESS_MAIN(tst_YamlRoundTrip)
#include "tst_yamlroundtrip.moc"
