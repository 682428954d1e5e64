// Description and assignment tables: which subindices make a run, and what C does not notice in the
// texts of rows. What rows mean is told by tst_generatedc, which reads them back.
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
                "};\n"
                "\n/* object dictionary assignment */\n"
                "CO_CONST CO_OD_ASSIGN_T CO_CONST_STORAGE_CLASS od_assign[CO_OD_ASSIGN_CNT] = {\n"
                "\t{ 0x2000u, 2u, 3u, CO_ODTYPE_VAR, 0u },\n"
                "};\n"));
    }

    void lastPossibleSubindexIsItsOwnRun()
    {
        addSubs(0, 0x2000, "0 254 255", "3 6 7");
        Sections sections(*store, classicDialect());
        QCOMPARE(tables(sections).count("CO_ATTR_COMPACT"), 1);
        QVERIFY(tables(sections).contains(" | CO_ATTR_COMPACT,  (UNSIGNED16)2u},/* 0x2000:255*/"));
    }

    void limitsAreToldWhereRecorded_data()
    {
        columns<QString, int, QString, QString>("limitCheck", "dataType", "access", "end");
        // clang-format off
        QTest::newRow("recorded") << "1" << 6 << "rw" << "CO_ATTR_DEFVAL | CO_ATTR_LIMIT,  (UNSIGNED16)0u, (UNSIGNED16)1u, (UNSIGNED16)2u},";
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
    }

private:
    /// Bytes at the subindices; both lists are parted by blanks.
    void addSubs(quint8 line, quint16 index, const QString &subs, const QString &values)
    {
        const QStringList numbers = subs.split(' ');
        for (int i = 0; i < numbers.size(); ++i)
            addSub(*store, line, index, quint8(numbers.at(i).toUInt()), 5, values.split(' ').at(i));
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
};

QTEST_GUILESS_MAIN(tst_ObjDictDescription)
#include "tst_objdictdescription.moc"
