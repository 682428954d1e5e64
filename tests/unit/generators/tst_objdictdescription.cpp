// Description and assignment tables: rows, references, runs of like subindices, shared lines.
#include "generators/objdict/objdictdescription.h"
#include "generators/objdict/objdictvalues.h"
#include "tests/fixtures/objdictsections.h"

using namespace ObjDict;
using Code = CANopen::ObjectCode;

class tst_ObjDictDescription : public StoreTest
{
    Q_OBJECT

private slots:
    void init() { store = makeStore(); }

    void runsOfLikeSubindices_data()
    {
        columns<int, QString, QString, int>("index", "subs", "values", "start");
        // clang-format off
        QTest::newRow("two like ones") << 0x2000 << "0 1 2" << "3 7 7" << 1;
        QTest::newRow("run at the end") << 0x2000 << "0 1 2 3" << "3 1 7 7" << 2;
        QTest::newRow("no run") << 0x2000 << "0 1 2" << "3 6 7" << -1;
        QTest::newRow("two subindices are too few") << 0x2000 << "0 1" << "7 7" << -1;
        QTest::newRow("gap before the last") << 0x2000 << "0 1 3" << "3 7 7" << -1;
        QTest::newRow("gap after a run") << 0x2000 << "0 1 2 3 5 6" << "6 1 1 7 7 7" << -1;
        QTest::newRow("communication object") << 0x11FF << "0 1 2" << "3 7 7" << -1;
        // clang-format on
    }

    void runsOfLikeSubindices()
    {
        QFETCH(int, index);
        QFETCH(QString, subs);
        QFETCH(QString, values);
        QFETCH(int, start);
        addSubs(0, quint16(index), subs, values);
        Sections sections(*store, classicDialect());
        QCOMPARE(getSameStartSub(sections.context, 0, quint16(index)), -1);
        sections.context.form.compactArrays = true;
        QCOMPARE(getSameStartSub(sections.context, 0, quint16(index)), start);
    }

    void runHasOneRow()
    {
        addSubs(0, 0x2000, "0 1 2 3", "3 7 7 7");
        addSub(*store, 0, 0x2001, 0, 5, "1", "ro", 3);
        addSub(*store, 0, 0x2001, 1, 5, "1", "ro", 3);
        addSub(*store, 0, 0x2002, 0, 5, "9", "rwr");
        Sections sections(*store, classicDialect());
        sections.context.form.compactArrays = true;
        const QString rows = tables(sections);
        QCOMPARE(
            rows,
            QString(
                "\n/* description of the objects */\n"
                "CO_CONST CO_OBJECT_DESC_T CO_CONST_STORAGE_CLASS od_description[CO_OBJ_DESC_CNT] "
                "= {\n"
                "\t{ (UNSIGNED8)0u, CO_DTYPE_U8_VAR   , (UNSIGNED16)0u, CO_ATTR_NUM | CO_ATTR_READ "
                "| CO_ATTR_WRITE | CO_ATTR_DEFVAL,  (UNSIGNED16)0u},/* 0x2000:0*/ \n"
                "\t{ (UNSIGNED8)1u, CO_DTYPE_U8_VAR   , (UNSIGNED16)1u, CO_ATTR_NUM | CO_ATTR_READ "
                "| CO_ATTR_WRITE | CO_ATTR_DEFVAL | CO_ATTR_COMPACT,  (UNSIGNED16)1u},/* "
                "0x2000:1*/ \n"
                "\t{ (UNSIGNED8)0u, CO_DTYPE_U8_VAR   , (UNSIGNED16)4u, CO_ATTR_NUM | CO_ATTR_READ "
                "| CO_ATTR_WRITE | CO_ATTR_DEFVAL,  (UNSIGNED16)3u},/* 0x2002:0*/ \n"
                "};\n"
                "\n/* object dictionary assignment */\n"
                "CO_CONST CO_OD_ASSIGN_T CO_CONST_STORAGE_CLASS od_assign[CO_OD_ASSIGN_CNT] = {\n"
                "\t{ 0x2000u, 2u, 3u, CO_ODTYPE_VAR, 0u },\n"
                "\t{ 0x2002u, 1u, 0u, CO_ODTYPE_VAR, 2u },\n"
                "};\n"));
        QCOMPARE(counts(sections), QString("2/3"));
    }

    void lastPossibleSubindexIsItsOwnRun()
    {
        addSubs(0, 0x2000, "0 254 255", "3 6 7");
        Sections sections(*store, classicDialect());
        QCOMPARE(tables(sections).count("CO_ATTR_COMPACT"), 1);
        QVERIFY(tables(sections).contains(" | CO_ATTR_COMPACT,  (UNSIGNED16)2u},/* 0x2000:255*/"));
    }

    void rowsAreCountedAsTheyStand()
    {
        addSub(*store, 0, 0x2000, 1, 5, "1"); // no subindex 0
        addSubs(0, 0x2001, "0 1 2", "2 7 7");
        Sub data = subOf(*store, 0, 0x2001, 1);
        data.implementation = 3;
        store->addSubIndex(0, 0x2001, 1, data);
        Sections sections(*store, classicDialect());
        QCOMPARE(assignments(sections), QStringList({"2000 1 1 0", "2001 2 2 1"}));
        QCOMPARE(counts(sections), QString("2/3"));
    }

    void sharedObjectHasTheRowsOfLineZero()
    {
        for (const quint8 line : {quint8(0), quint8(2)}) {
            addLine(*store, line);
            addSubs(line, 0x2000, "0 1", "1 7");
            addSubs(line, 0x2001, "0 1", "1 8");
            addSubs(line, 0x2002, "0", "4");
            share(line, 0x2000, {0, 1});
            share(line, 0x2001, {0});
        }
        share(2, 0x2002, {0}); // line 0 does not share it
        Sections sections(*store, classicDialect());
        const QString rows = tables(sections);
        // The half shared object has rows of its own, one of them with the value of line 0.
        QCOMPARE(rows.count("/* 2-0x2000"), 0);
        QVERIFY(rows.contains(
            "{ (UNSIGNED8)0u, CO_DTYPE_U8_VAR   , (UNSIGNED16)2u, CO_ATTR_NUM | CO_ATTR_READ | "
            "CO_ATTR_WRITE | CO_ATTR_DEFVAL,  (UNSIGNED16)0u},/* 2-0x2001:0*/ \n"));
        QVERIFY(rows.contains(
            "{ (UNSIGNED8)1u, CO_DTYPE_U8_VAR   , (UNSIGNED16)5u, CO_ATTR_NUM | CO_ATTR_READ | "
            "CO_ATTR_WRITE | CO_ATTR_DEFVAL,  (UNSIGNED16)2u},/* 2-0x2001:1*/ \n"));
        QVERIFY(rows.contains("(UNSIGNED16)6u, CO_ATTR_NUM | CO_ATTR_READ | CO_ATTR_WRITE | "
                              "CO_ATTR_DEFVAL,  (UNSIGNED16)3u},/* 2-0x2002:0*/ \n"));
        QCOMPARE(assignmentsOf(rows), QStringList({"2000 2 1 0", "2001 2 1 2", "2002 1 0 4",
                                                   "2000 2 1 0", "2001 2 1 5", "2002 1 0 7"}));
        QCOMPARE(counts(sections), QString("6/10"));
    }

    void references_data()
    {
        columns<int, int, int>("index", "sub", "reference");
        // clang-format off
        QTest::newRow("error register history") << 0x1003 << 0 << 0x1003;
        QTest::newRow("count of consumers") << 0x1016 << 0 << 1;
        QTest::newRow("consumer") << 0x1016 << 1 << 0x1016;
        QTest::newRow("server") << 0x1201 << 1 << 2;
        QTest::newRow("client") << 0x1280 << 2 << 1;
        QTest::newRow("count of a safety object") << 0x13F0 << 0 << 1;
        QTest::newRow("safety object") << 0x1301 << 1 << 0x1301;
        QTest::newRow("not answered by the stack") << 0x13F1 << 1 << 1;
        QTest::newRow("configuration of safety") << 0x13FE << 0 << 0x13FE;
        QTest::newRow("receive mapping") << 0x1601 << 0 << 2;
        QTest::newRow("transmit PDO") << 0x1801 << 1 << 2;
        QTest::newRow("count of a transmit PDO") << 0x1801 << 0 << 1;
        QTest::newRow("flying master") << 0x1F90 << 1 << 0x1F90;
        QTest::newRow("any other") << 0x2001 << 3 << 1;
        // clang-format on
    }

    void references()
    {
        QFETCH(int, index);
        QFETCH(int, sub);
        QFETCH(int, reference);
        addSub(*store, 0, 0x1000, 0, 5, "1");
        addSub(*store, 0, quint16(index), quint8(sub), 5, "1");
        Sections sections(*store, classicDialect());
        defineManagedVariables(sections.context);
        QCOMPARE(int(getReferencePosition(sections.context, 0, quint16(index), quint8(sub))),
                 reference);
    }

    void attributes_data()
    {
        columns<int, QString, bool, QString>("dataType", "access", "isMapped", "attributes");
        // clang-format off
        QTest::newRow("constant") << 5 << "const" << true << "CO_ATTR_NUM | CO_ATTR_READ | CO_ATTR_MAP_TR";
        QTest::newRow("write only") << 22 << "wo" << true << "CO_ATTR_NUM | CO_ATTR_WRITE | CO_ATTR_MAP_REC";
        QTest::newRow("rwr, not mapped") << 9 << "rwr" << false << "CO_ATTR_READ | CO_ATTR_WRITE";
        QTest::newRow("rwr") << 9 << "rwr" << true << "CO_ATTR_READ | CO_ATTR_WRITE | CO_ATTR_MAP_TR";
        QTest::newRow("rww") << 25 << "rww" << true << "CO_ATTR_READ | CO_ATTR_WRITE | CO_ATTR_MAP_REC";
        QTest::newRow("rw") << 8 << "rw" << true << "CO_ATTR_NUM | CO_ATTR_READ | CO_ATTR_WRITE | CO_ATTR_MAP_TR | CO_ATTR_MAP_REC";
        // clang-format on
    }

    void attributes()
    {
        QFETCH(int, dataType);
        QFETCH(QString, access);
        QFETCH(bool, isMapped);
        QFETCH(QString, attributes);
        Sub data = makeSub("s", quint16(dataType), "");
        data.accessType = access;
        data.pdoMapping = isMapped ? PDOMappingType::Optional : PDOMappingType::No;
        QCOMPARE(getODAttributes(data, false, false, false), attributes);
        data.nvStorage = true;
        QCOMPARE(getODAttributes(data, true, true, true),
                 attributes +
                     " | CO_ATTR_DEFVAL | CO_ATTR_LIMIT | CO_ATTR_STORE | CO_ATTR_COMPACT");
    }

    void limitsAreToldWhereRecorded_data()
    {
        columns<QString, int, QString, QString>("limitCheck", "dataType", "access", "end");
        // clang-format off
        QTest::newRow("recorded") << "1" << 6 << "rw" << "CO_ATTR_DEFVAL | CO_ATTR_LIMIT,  (UNSIGNED16)0u, (UNSIGNED16)1u, (UNSIGNED16)2u},";
        QTest::newRow("never written") << "1" << 6 << "ro" << "CO_ATTR_DEFVAL,  (UNSIGNED16)0u, (UNSIGNED16)0u, (UNSIGNED16)0u},";
        QTest::newRow("type without limits") << "0" << 24 << "rw" << "CO_ATTR_DEFVAL,  (UNSIGNED16)0u},";
        QTest::newRow("without check") << "0" << 6 << "rw" << "CO_ATTR_DEFVAL | CO_ATTR_LIMIT,  (UNSIGNED16)0u},";
        QTest::newRow("text without default") << "0x1" << 9 << "rw" << "CO_ATTR_WRITE,  (UNSIGNED16)0u, (UNSIGNED16)0u, (UNSIGNED16)0u},";
        // clang-format on
    }

    void limitsAreToldWhereRecorded()
    {
        QFETCH(QString, limitCheck);
        QFETCH(int, dataType);
        QFETCH(QString, access);
        QFETCH(QString, end);
        store->setGeneralSettingsValue("limit_check", limitCheck);
        Sub data = makeSub("s", quint16(dataType), "3");
        data.accessType = access;
        data.implementation = 2;
        data.limitInEds = true;
        data.lowLimit = "1";
        data.upLimit = "9";
        store->addIndex(0, 0x2000, Object());
        store->addSubIndex(0, 0x2000, 0, data);
        Sections sections(*store, classicDialect());
        const QString rows = tables(sections);
        QVERIFY2(rows.contains(end), qPrintable(rows));
    }

    void objectsWithoutTypeWordHaveOne()
    {
        QCOMPARE(objectTypeWord(Code::DefType, 1), "CO_ODTYPE_VAR");
        QCOMPARE(objectTypeWord(Code::DefStruct, 2), "CO_ODTYPE_STRUCT");
    }

    void tablesWithoutRowsAreC()
    {
        Sections sections(*store, v4Dialect());
        const QString rows = tables(sections);
        QVERIFY(rows.contains("CORE_CONST CO_OBJECT_DESC_T CORE_CONST_STORAGE_CLASS "
                              "od_description[1] = {\n\t{ 0 }\n};\n"));
        QVERIFY(rows.contains(
            "CORE_CONST CO_OD_ASSIGN_T CORE_CONST_STORAGE_CLASS od_assign[1] = {\n\t{ 0 }\n};\n"));
        QCOMPARE(counts(sections), QString("0/0"));
    }

private:
    /// Bytes at the subindices; both lists are parted by blanks.
    void addSubs(quint8 line, quint16 index, const QString &subs, const QString &values)
    {
        const QStringList numbers = subs.split(' ');
        for (int i = 0; i < numbers.size(); ++i)
            addSub(*store, line, index, quint8(numbers.at(i).toUInt()), 5, values.split(' ').at(i));
    }

    void share(quint8 line, quint16 index, std::initializer_list<quint8> subs)
    {
        for (const quint8 sub : subs) {
            Sub data = subOf(*store, line, index, sub);
            data.sharedLines = true;
            store->addSubIndex(line, index, sub, data);
        }
    }

    QString tables(Sections &sections)
    {
        Context &context = sections.context;
        defineManagedVariables(context);
        defineAllConsts(context);
        defineApplicationVariables(context);
        (void)sections.text(); // the tables alone count
        describeObjects(context);
        assignObjects(context);
        return sections.text();
    }

    /// "2000 2 1 0": index, rows, highest subindex, first row.
    QStringList assignmentsOf(const QString &rows)
    {
        static const QRegularExpression row("\\{ 0x(....)u, (\\d+)u, (\\d+)u, \\w+, +(\\d+)u \\}");
        QStringList found;
        auto matches = row.globalMatch(rows);
        while (matches.hasNext())
            found << matches.next().capturedTexts().mid(1).join(' ');
        return found;
    }

    QStringList assignments(Sections &sections) { return assignmentsOf(tables(sections)); }

    QString counts(const Sections &sections)
    {
        const TableRows rows = countRows(sections.context);
        return joined(rows.assignments, rows.descriptions);
    }
};

QTEST_GUILESS_MAIN(tst_ObjDictDescription)
#include "tst_objdictdescription.moc"
