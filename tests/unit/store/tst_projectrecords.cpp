// The whole project as plain records: what is read is what was put, also from a saved file.
#include "store/columns.h"
#include "store/projectlosses.h"
#include "tests/fixtures/projectcompare.h"
#include "tests/fixtures/randomproject.h"
#include "tests/fixtures/storefixture.h"

namespace
{

ProjectRecord recordsOf(const ObjectDataBase &store)
{
    ProjectRecord project;
    if (!store.readRecords(&project))
        qFatal("not read");
    return project;
}

/// The objects of the standards in a real project.
std::map<quint16, ObjectRecord> standardObjects()
{
    ObjectDataBase store;
    store.openDataBase(TESSARINE_EXAMPLES "/pump/pump.tsrt");
    std::map<quint16, ObjectRecord> objects = recordsOf(store).lines[0].objects;
    objects.erase(objects.lower_bound(0x2000), objects.end());
    return objects;
}

constexpr Settings ProjectRecord::*kTextStores[] = {
    &ProjectRecord::general, &ProjectRecord::description, &ProjectRecord::misc};

/// What the text form has no place for.
void removeLosses(ProjectRecord &project, const ProjectRecord &fresh)
{
    ProjectRecord rest;
    for (const auto store : kTextStores)
        rest.*store = project.*store;
    for (auto &[number, line] : project.lines) {
        line.node.name.clear();
        rest.lines[number] = {line.node, line.objects, {}, {}, {}, {}, fresh.lines.at(0).services};
        for (auto &[index, object] : rest.lines[number].objects) {
            for (auto &[sub, data] : object.subs) {
                data.cyclicRead = data.changedByUser = data.dcfComponent = false;
                data.wizardSource = 0;
                data.signalId = 0;
                data.denotation.clear();
            }
        }
    }
    project = rest;
}

template <class Record, size_t N>
void simplify(Record &record, const Column<Record> (&columns)[N])
{
    for (const Column<Record> &column : columns) {
        if (column.get(record).type() == QVariant::String)
            column.set(record, column.get(record).toString().simplified());
    }
}

/// The text form keeps one of several blanks, and has its rules for empty texts and keys.
void simplify(ProjectRecord &project)
{
    for (auto &[number, line] : project.lines) {
        simplify(line.node, kNodeColumns);
        line.node.prefix += "a";
        line.node.outputPath += "a";
        for (auto &[index, object] : line.objects) {
            simplify(object.data, kIndexColumns);
            for (auto &[sub, data] : object.subs)
                simplify(data, kSubIndexColumns);
        }
    }
    for (const auto store : kTextStores) {
        Settings simple;
        for (auto row = (project.*store).cbegin(); row != (project.*store).cend(); ++row)
            simple.insert("k" + row.key().toUtf8().toHex(),
                          QString(*row).remove('\'').simplified());
        project.*store = simple;
    }
}

} // namespace

class tst_ProjectRecords : public StoreTest
{
    Q_OBJECT

private slots:
    void init() { store = makeStore(); }

    void random()
    {
        RandomProject projects(testSeed(), standardObjects());
        for (int i = 0; i < 60; ++i) {
            const ProjectRecord project = projects.make();
            QVERIFY(store->putRecords(project)); // over the one before
            QCOMPARE(firstDifference(project, recordsOf(*store)), QString());
            fillCaches();
            QCOMPARE(firstDifference(project, recordsOf(*store)), QString());
            QCOMPARE(otherGetter(project), QString());
            if (i % 4 != 0)
                continue;
            const QString file = fixture.path(QString("%1.tsrp").arg(i));
            QVERIFY(store->saveDataBase(file));
            ObjectDataBase opened;
            QVERIFY(opened.openDataBase(file));
            const ProjectRecord repaired = recordsOf(opened);
            QCOMPARE(firstDifference(project, repairedLike(project, repaired)), QString());
            QVERIFY(store->putRecords(repaired) && store->saveDataBase(file));
            QVERIFY(opened.openDataBase(file));
            QCOMPARE(firstDifference(repaired, recordsOf(opened)), QString());
        }
    }

    /// What it leaves out is what it is said to leave out.
    void textForm()
    {
        const ProjectRecord fresh = recordsOf(*store);
        RandomProject projects(testSeed(), standardObjects());
        for (int i = 0; i < 20; ++i) {
            ProjectRecord project = projects.make();
            project.lines[0]; // which each text project has
            simplify(project);
            QVERIFY(store->putRecords(project));
            const QString file = fixture.path("p.tsrt");
            QVERIFY2(store->exportProject(file), qPrintable(store->getLastErrorString()));
            ObjectDataBase opened;
            QVERIFY(opened.openDataBase(file));
            ProjectRecord read = recordsOf(opened);
            for (auto &entry : read.lines)
                entry.second.node.name.clear(); // lost; that of a number may come back as some text
            for (const auto list : kTextStores) {
                const QStringList keys = (read.*list).keys();
                for (const QString &key : keys) { // a new line has some
                    if (!(project.*list).contains(key))
                        (read.*list).remove(key);
                }
            }
            removeLosses(project, fresh);
            QCOMPARE(ProjectLosses::ofTextForm(project), QStringList());
            QCOMPARE(firstDifference(project, read), QString());
        }
    }

    void lossesOfTheTextForm()
    {
        ProjectRecord fresh = recordsOf(*store);
        fresh.lines[1] = fresh.lines[0];
        ProjectRecord project = fresh;
        LineRecord &line = project.lines[1];
        line.groups = {{{}, {{}, {}}}};
        line.otherSignals = {{}};
        line.frames = {{}, {}};
        line.otherElements = {{}};
        line.services.erase(16);
        line.services[17].sessions = "7";
        line.services[99] = {};
        project.connections = {{}};
        project.locks[7] = {{0x1800}, {0x1A00, 0x1A01}};
        project.lineSignals[1] = {};
        project.signalGroups[1] = "g";
        project.lineGroups = {{}, {}};
        project.virtualNodes[1] = {};
        project.j1939["a"] = project.energyBus["b"] = "1";
        project.general["c"] = "it's";
        line.node.name = "pump";
        line.node.prefix.clear();
        SubIndexData &sub = line.objects[0x2000].subs[0];
        sub.denotation = "shown";
        sub.signalId = sub.wizardSource = 1;
        QCOMPARE(ProjectLosses::ofTextForm(fresh), QStringList());
        QCOMPARE(
            ProjectLosses::ofTextForm(project).join(", "),
            QString("1 parameter group, 3 signals of parameter groups, 2 CAN identifiers, 1 signal "
                    "of CAN identifiers, 3 diagnostic services other than those of a new line, 1 "
                    "connection of PDOs, 3 locks of PDOs, 1 signal of a line, 1 group of such "
                    "signals, 2 groups of lines, 1 virtual node, 1 J1939 setting, 1 EnergyBus "
                    "setting, 1 name of a line, 1 empty prefix of a line, 1 general setting with "
                    "an apostrophe, 1 display name of a subindex, 1 tie of a subindex to a signal, "
                    "1 mark of an editor at a subindex"));
    }

    void oddRows()
    {
        NodeData node;
        node.name = "two";
        store->addNode(2, node);
        store->addNode(254, node); // a scratch line
        store->addNode(9, node);
        QVERIFY(store->addIndex(0, 0x2000, makeObject("a", CANopen::ObjectCode::Var)));
        QVERIFY(store->executeSql("delete from Nodes where nodeId = 9"));
        QVERIFY(store->executeSql("insert into Nodes (nodeId,name) values(300,'far')"));
        for (const char *row :
             {"Objects0 (objectindex,datatype,objecttype) values(65536,5,7)",
              "Objects0 (objectindex,datatype,objecttype) values(-1,5,7)",
              "SubObjects0 (objectindex,subindex,datatype,accesstype,implementation) "
              "values(8192,256,5,'ro',0)",
              "SubObjects0 (objectindex,subindex,datatype,accesstype,implementation) "
              "values(8193,7,5,'ro',0)",
              "PGNs0 (number,direction,priority) values(7,85,3)",
              "PGNs0 (number,direction,priority) values(7,85,1)",
              "PGNs0 (number,direction,priority) values(5,85,2)",
              "SPNs0 (pgnnumber,spnnumber,direction,pos) values(7,2,85,1)",
              "SPNs0 (pgnnumber,spnnumber,direction,pos) values(7,1,85,0)",
              "SPNs0 (pgnnumber,spnnumber,direction,pos) values(7,3,119,0)",
              "SPNs0 (pgnnumber,spnnumber,direction,pos) values(7,4,341,0)", // 85 in 8 bits
              "LockedPDOs values(0,6145),(0,6144),(0,6145),(77,6144),(254,6144),(-1,1),(0,65536)",
              "LockedMappings values(0,6656),(NULL,1)",
              "Connections (prodnode,connode) values(2,0),(0,2),(2,0),(254,0),(0,255)",
              "Groups (name,nodeidlist) values('b','0'),('a',NULL),('b','2')",
              "VirtualNodes values(-4,NULL,3,'v')",
              "Signals (sigid,nodeid,datatype,accesstype) values(3,50,5,'ro'),(4,254,5,'ro')",
              "GeneralSettings values(NULL,'x'),('n',NULL)"})
            QVERIFY2(store->executeSql(QString("insert into ") + row), row);
        const ProjectRecord project = recordsOf(*store);

        QCOMPARE(project.lines.size(), size_t(2));
        const LineRecord &line = project.lines.at(0);
        QCOMPARE(project.lines.at(2).node.name, QString("two"));
        QCOMPARE(line.objects.size(), size_t(2));
        QVERIFY(line.objects.at(0x2000).exists && line.objects.at(0x2000).subs.empty());
        QVERIFY(!line.objects.at(0x2001).exists && line.objects.at(0x2001).subs.count(7) == 1);
        QString groups;
        for (const GroupRecord &group : line.groups)
            groups +=
                joined(group.frame.number, group.frame.priority, int(group.signalsOf.size())) + ' ';
        QCOMPARE(groups, QString("5/2/0 7/3/2 7/1/0 "));
        QCOMPARE(line.groups.at(1).signalsOf.front().number, 1U);
        QCOMPARE(line.otherSignals.size(), size_t(2));
        QCOMPARE(project.locks.at(0).pdos, QList<quint16>({0x1800, 0x1801}));
        QCOMPARE(project.locks.at(0).mappings, QList<quint16>({0x1A00}));
        QCOMPARE(project.locks.size(), size_t(2));
        QCOMPARE(project.connections.size(), size_t(3));
        QCOMPARE(project.lineGroups.at(2).lines, QString("2"));
        QCOMPARE(project.virtualNodes.at(-4).node, 3);
        QCOMPARE(project.lineSignals.size(), size_t(1));
        QCOMPARE(joined(project.general.value(""), project.general.contains("n")),
                 QString("x/true"));

        const auto other = makeStore();
        QVERIFY(other->putRecords(project));
        QCOMPARE(firstDifference(project, recordsOf(*other)), QString());
    }

    void locked()
    {
        store->setLockWriteAccess(true);
        QVERIFY(!store->putRecords({}));
        store->setLockWriteAccess(false);
    }

private:
    void fillCaches()
    {
        const QList<quint8> lines = store->getNodes();
        for (const quint8 line : lines) {
            store->cacheAllSubs(line, 0);
            store->cacheAllSubNames(line, 0);
            store->cacheAllSpnDataForLine(line);
        }
    }

    /// What the getters, which read the caches, have otherwise; empty if nothing.
    QString otherGetter(const ProjectRecord &project)
    {
        for (const auto &[number, line] : project.lines) {
            for (const auto &[index, object] : line.objects) {
                for (const auto &[sub, data] : object.subs) {
                    if (subOf(*store, number, index, sub) != data ||
                        store->getSubIndexName(number, index, sub, true) !=
                            (data.denotation.isEmpty() ? data.name : data.denotation))
                        return joined("sub", number, index, sub);
                }
            }
            for (const GroupRecord &group : line.groups) {
                const auto direction = group.frame.direction;
                if (!store->existsPGN(number, group.frame.number, direction) ||
                    store->getSPNs(number, group.frame.number, direction).size() <
                        int(group.signalsOf.size()))
                    return joined("group", number, group.frame.number);
            }
            if (store->getUDSServices(number).size() != int(line.services.size()))
                return joined("services", number);
        }
        for (const auto &[id, signal] : project.lineSignals) {
            if (!store->getSignals(signal.line).contains(id))
                return joined("signal", id);
        }
        for (auto setting = project.general.cbegin(); setting != project.general.cend();
             ++setting) {
            if (store->getGeneralSettingsValue(setting.key()) != setting.value())
                return setting.key();
        }
        return {};
    }

    /// \a opened with what opening repairs as \a saved has it.
    static ProjectRecord repairedLike(const ProjectRecord &saved, ProjectRecord opened)
    {
        for (auto &[number, line] : opened.lines) {
            const LineRecord &before = saved.lines.at(number);
            if (before.services.size() < line.services.size())
                line.services = before.services;
            for (size_t i = 0; i < line.groups.size(); ++i)
                line.groups[i].frame.mappingCount = before.groups.at(i).frame.mappingCount;
        }
        opened.general = saved.general;
        opened.description = saved.description;
        opened.misc = saved.misc;
        return opened;
    }
};

QTEST_GUILESS_MAIN(tst_ProjectRecords)
#include "tst_projectrecords.moc"
