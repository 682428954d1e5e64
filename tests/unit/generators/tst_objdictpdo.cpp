// Tests of the mapping tables of static PDOs and of the calls that name them.
#include "generators/objdict/objdictpdo.h"
#include "tests/fixtures/objdictsections.h"

using namespace ObjDict;

class tst_ObjDictPdo : public StoreTest
{
    Q_OBJECT

private slots:
    void init();
    void writesTpdoTables_data();
    void writesTpdoTables();
    void padsTablesToTheLongest();
    void sharesEqualRpdoMappings();
    void passesOverReceivedConstants();
    void namesTablesByLine_data();
    void namesTablesByLine();
    void routesRpdos();
    void takesParametersFromTheirPlaces_data();
    void takesParametersFromTheirPlaces();
    void tellsStaticMappings();

private:
    /// A mapping of \a count entries, those given; \a values are hexadecimal.
    void addMapping(quint8 line, quint16 index, const QString &count, const QStringList &values,
                    const QString &access = "ro");
    void addPdo(quint8 line, quint16 index, const QStringList &values);
};

void tst_ObjDictPdo::init()
{
    store = makeStore();
    addSub(*store, 0, 0x2000, 0, 5, "0", "rww");
    addSub(*store, 0, 0x2001, 0, 9, "", "ro", 2);
    addSub(*store, 0, 0x2002, 0, 7, "0", "ro", 1);
}

void tst_ObjDictPdo::addMapping(quint8 line, quint16 index, const QString &count,
                                const QStringList &values, const QString &access)
{
    addSub(*store, line, index, 0, 5, count, access);
    for (int i = 0; i < values.size(); ++i)
        addSub(*store, line, index, quint8(i + 1), 7, "0x" + values[i], "ro");
}

void tst_ObjDictPdo::addPdo(quint8 line, quint16 index, const QStringList &values)
{
    addSub(*store, line, index, 2, 5, "255");
    addMapping(line, index + 0x200, QString::number(values.size()), values);
}

void tst_ObjDictPdo::writesTpdoTables_data()
{
    columns<QString, QString, QString, QString>("count", "entries", "bitwise", "table");
    const QString head = "static CO_CONST PDO_TR_MAP_TABLE_T CO_CONST_STORAGE_CLASS\t"
                         "mapTableTPDO2 = {\n\t(UNSIGNED8)%1u,\n\t{\n%2\t}\n};\n";
    const auto table = [&](int count, const QString &rows) { return head.arg(count).arg(rows); };
    // clang-format off
    QTest::newRow("bytes")         << "1"    << "20000008"          << "0" << table(1, "\t\t{&od_u8[3], 1u, CO_TRUE, 0x20000008UL },\n");
    QTest::newRow("bits")          << "1"    << "20000008"          << "1" << table(1, "\t\t{&od_u8[3], 8u, CO_TRUE, 0x20000008UL },\n");
    QTest::newRow("string")        << "1"    << "200100FF"          << "0" << table(1, "\t\t{&(s), 31u, CO_FALSE, 0x200100ffUL },\n");
    QTest::newRow("dummy")         << "1"    << "00050008"          << "0" << table(1, "\t\t{NULL, 1u, CO_TRUE, 0x00050008UL },\n");
    QTest::newRow("padded")        << "1"    << "20000008,20000008" << "0" << table(1, "\t\t{&od_u8[3], 1u, CO_TRUE, 0x20000008UL },\n\t\t{NULL, (UNSIGNED8)0u, CO_FALSE, 0ul}\n");
    QTest::newRow("empty")         << "0"    << "20000008"          << "0" << QString();
    QTest::newRow("no_mapping")    << ""     << ""                  << "0" << QString();
    QTest::newRow("multiplexed")   << "0xFE" << "20000008"          << "0" << table(254, "\t\t{&od_u8[3], 1u, CO_TRUE, 0x20000008UL },\n");
    QTest::newRow("count_too_big") << "3"    << "20000008"          << "0" << table(1, "\t\t{&od_u8[3], 1u, CO_TRUE, 0x20000008UL },\n");
    QTest::newRow("count_above_64")<< "65"   << "20000008"          << "0" << table(65, "\t\t{&od_u8[3], 1u, CO_TRUE, 0x20000008UL },\n");
    QTest::newRow("only_a_count")  << "2"    << ""                  << "0" << table(1, "\t\t{NULL, 0u, CO_TRUE, 0x00000000UL },\n");
    // clang-format on
}

void tst_ObjDictPdo::writesTpdoTables()
{
    QFETCH(QString, count);
    QFETCH(QString, entries);
    QFETCH(QString, table);
    addSub(*store, 0, 0x1801, 2, 5, "255");
    if (!count.isEmpty())
        addMapping(0, 0x1A01, count, entries.split(',', Qt::SkipEmptyParts));
    Sub text = subOf(*store, 0, 0x2001, 0);
    text.varName = "s";
    store->addSubIndex(0, 0x2001, 0, text);
    QFETCH(QString, bitwise);
    store->setGeneralSettingsValue("bitwise_mapping", bitwise);
    Sections sections(*store, classicDialect());
    sections.context.positions.managed.insert(keyOf(0, 0x2000, 0), 3);
    createMappingTables(sections.context);
    QCOMPARE(sections.text(),
             "\n/* static PDO mapping tables */\n/* Mapping table TPDO 2*/\n" + table + "\n");
    initTpdo(sections.context, 0, 0x1801);
    QCOMPARE(sections.text().contains(", &mapTableTPDO2);\n"), !table.isEmpty());
}

void tst_ObjDictPdo::padsTablesToTheLongest()
{
    addPdo(0, 0x1800, {"20000008", "20000008", "20000008"});
    addPdo(0, 0x1801, {"20000008"});
    addPdo(0, 0x1400, {"20000008"});
    Sections sections(*store, v4Dialect());
    sections.context.positions.managed.insert(keyOf(0, 0x2000, 0), 0);
    createMappingTables(sections.context);
    const QString row = "\t\t{&od_u8[0], 1u, CO_TRUE, 0x20000008UL },\n";
    const QString empty = "\t\t{NULL, (UNSIGNED8)0u, CO_FALSE, 0ul}";
    QCOMPARE(sections.text(),
             "\n/* static PDO mapping tables */\n"
             "/* Mapping table TPDO 1*/\n"
             "static CORE_CONST PDO_TR_MAP_TABLE_T CORE_CONST_STORAGE_CLASS\tmapTableTPDO1 = {\n"
             "\t(UNSIGNED8)3u,\n\t{\n" +
                 row.repeated(3) +
                 "\t}\n};\n"
                 "/* Mapping table TPDO 2*/\n"
                 "static CORE_CONST PDO_TR_MAP_TABLE_T CORE_CONST_STORAGE_CLASS\tmapTableTPDO2 = "
                 "{\n\t(UNSIGNED8)1u,\n\t{\n" +
                 row + empty + ",\n" + empty +
                 "\n\t}\n};\n"
                 "/* unique rpdo defintion */\n"
                 "static CORE_CONST PDO_REC_MAP_TABLE_T CORE_CONST_STORAGE_CLASS\tmapTableRPDO0 = "
                 "{\n\t(UNSIGNED8)1u,\n\t{\n" +
                 row + empty + ",\n" + empty + "\n\t}\n};\n\n");
}

void tst_ObjDictPdo::sharesEqualRpdoMappings()
{
    addPdo(0, 0x1400, {"20000008"});
    addPdo(0, 0x1401, {"00050008"});
    addPdo(0, 0x1405, {"20000008"});
    addSub(*store, 0, 0x1406, 2, 5, "255"); // without mapping
    Sections sections(*store, classicDialect());
    createMappingTables(sections.context);
    const QString tables = sections.text();
    QCOMPARE(tables.count("unique rpdo"), 3);
    QVERIFY(tables.endsWith("mapTableRPDO2 = {\n\t(UNSIGNED8)0u,\n\t{\n"
                            "\t\t{NULL, (UNSIGNED8)0u, CO_FALSE, 0ul}\n\t}\n};\n\n"));
    const QMap<quint16, QString> names = {
        {0x1400, "0"}, {0x1401, "1"}, {0x1405, "0"}, {0x1406, "2"}};
    for (auto name = names.begin(); name != names.end(); ++name) {
        initRpdo(sections.context, 0, name.key());
        QVERIFY(sections.text().endsWith(", &mapTableRPDO" + name.value() + ");\n"));
    }
}

void tst_ObjDictPdo::passesOverReceivedConstants()
{
    addPdo(0, 0x1400, {"20020020"});
    addPdo(0, 0x1800, {"20020020"});
    Sections sections(*store, classicDialect());
    sections.placeConstant(0, 0x2002, 0, 0);
    createMappingTables(sections.context);
    const QString tables = sections.text();
    QVERIFY(tables.contains("{&od_const_u32[0], 4u, CO_TRUE, 0x20020020UL }"));
    QVERIFY(tables.contains("{NULL, 4u, CO_TRUE, 0x20020020UL }"));
}

void tst_ObjDictPdo::namesTablesByLine_data()
{
    columns<int, QString>("line", "suffix");
    QTest::newRow("first") << 0 << "a";
    QTest::newRow("last_small_letter") << 25 << "z";
    QTest::newRow("capital") << 26 << "A";
    QTest::newRow("last") << 31 << "F";
}

void tst_ObjDictPdo::namesTablesByLine()
{
    QFETCH(int, line);
    QFETCH(QString, suffix);
    store->setMiscSettingsValue("generateML", "true");
    addLine(*store, quint8(line));
    addPdo(quint8(line), 0x1800, {"00050008"});
    addPdo(quint8(line), 0x1402, {"00050008"});
    Sections sections(*store, classicDialect());
    createMappingTables(sections.context);
    const QString tables = sections.text();
    QVERIFY(tables.contains("mapTableTPDO" + suffix + "1 = {"));
    QVERIFY(tables.contains("mapTableRPDO" + suffix + "0 = {"));
    initTpdo(sections.context, quint8(line), 0x1800);
    initRpdo(sections.context, quint8(line), 0x1402);
    const QString calls = sections.text();
    QVERIFY(calls.contains(QString("coPdoTransmitInit(%1, 1u, ").arg(line)));
    QVERIFY(calls.contains(", &mapTableTPDO" + suffix + "1);"));
    QVERIFY(calls.contains(", &mapTableRPDO" + suffix + "0);"));
}

// Line 5 has too few objects for tables and keeps its column nevertheless.
void tst_ObjDictPdo::routesRpdos()
{
    addLine(*store, 5);
    addLine(*store, 7);
    addSub(*store, 5, 0x1000, 0, 7, "0");
    addSub(*store, 0, 0x1F2C, 1, 7, "0");
    Sub shared = subOf(*store, 0, 0x2000, 0);
    shared.sharedLines = true;
    store->addIndex(7, 0x2000, Object());
    store->addSubIndex(7, 0x2000, 0, shared);
    addPdo(7, 0x1800, {"20000008"});
    addPdo(7, 0x1810, {"00050008", "20000008"});
    addPdo(0, 0x1402, {"20000008"});
    addSub(*store, 0, 0x1403, 2, 5, "255");
    Sections sections(*store, v4Dialect());
    sections.context.positions.managed.insert(keyOf(0, 0x2000, 0), 0);
    createMappingTables(sections.context);
    QVERIFY(sections.text().contains(
        "/* Mapping table RPDO 3*/\n"
        "static CORE_CONST PDO_REC_MAP_TABLE_T CORE_CONST_STORAGE_CLASS\tmapTableRPDOa3 = {\n"
        "\t(UNSIGNED8)1u,\n\t{\n"
        "\t\t{&od_u8[0], 1u, CO_TRUE, 0x20000008UL, {0,0,17} },\n"
        "\t\t{NULL, (UNSIGNED8)0u, CO_FALSE, 0ul,{0,0,0}}\n\t}\n};\n"
        "/* Mapping table RPDO 4*/\n"));
    initRpdo(sections.context, 0, 0x1402);
    initRpdo(sections.context, 0, 0x1403);
    const QString calls = sections.text();
    QVERIFY(calls.contains("coPdoReceiveInit(0, 3u, 255u, 0u, 0u, &mapTableRPDOa3);\n"));
    QVERIFY(calls.contains("coPdoReceiveInit(0, 4u, 255u, 0u, 0u, NULL);\n"));
}

void tst_ObjDictPdo::takesParametersFromTheirPlaces_data()
{
    columns<QString, QString>("subs", "arguments");
    // Elements are subindex, data type, default value; the place is the subindex.
    // clang-format off
    QTest::newRow("all")             << "2 5 1,3 6 20,5 6 30,6 5 4" << "od_const_u8[2], od_const_u16[3], od_const_u16[5], od_const_u8[6], NULL";
    QTest::newRow("missing")         << "2 5 1"                     << "od_const_u8[2], 0u, 0u, 0u, NULL";
    QTest::newRow("no_type")         << "3 6 20"                    << "0u, od_const_u16[3], 0u, 0u, NULL";
    QTest::newRow("of_another_type") << "2 7 0x101,3 7 70000,5 5 9" << "1u, 4464u, 9u, 0u, NULL";
    QTest::newRow("string")          << "2 9 x"                     << "0u, 0u, 0u, 0u, NULL";
    // clang-format on
}

void tst_ObjDictPdo::takesParametersFromTheirPlaces()
{
    QFETCH(QString, subs);
    QFETCH(QString, arguments);
    const QStringList all = subs.split(',');
    for (const QString &text : all) {
        const QStringList sub = text.split(' ');
        addSub(*store, 0, 0x1900, quint8(sub[0].toInt()), quint16(sub[1].toInt()), sub[2]);
    }
    addMapping(0, 0x1B00, "0", {}, "rw");
    Sections sections(*store, classicDialect());
    for (const quint8 sub : {2, 3, 5, 6})
        sections.placeConstant(0, 0x1900, sub, sub);
    initTpdo(sections.context, 0, 0x1900);
    QCOMPARE(sections.text(),
             "    /* initialize TPDO 257 */\n    retVal = coPdoTransmitInit(257u, " + arguments +
                 ");\n");
}

void tst_ObjDictPdo::tellsStaticMappings()
{
    addMapping(0, 0x1A00, "0", {}, "rw");
    addMapping(0, 0x1A01, "0", {}, "const");
    Sections sections(*store, classicDialect());
    QVERIFY(!isStaticMapping(sections.context, 0, 0x1800));
    QVERIFY(isStaticMapping(sections.context, 0, 0x1801));
    QVERIFY(isStaticMapping(sections.context, 0, 0x1802));
}

QTEST_GUILESS_MAIN(tst_ObjDictPdo)
#include "tst_objdictpdo.moc"
