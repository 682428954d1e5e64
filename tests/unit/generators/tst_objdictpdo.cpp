// Tests of the mapping tables of static PDOs and of the calls that name them: what C does not
// notice in their texts. What they mean is told by tst_generatedc, which reads them back.
#include "generators/objdict/objdictpdo.h"
#include "tests/fixtures/objdictsections.h"

using namespace ObjDict;

class tst_ObjDictPdo : public StoreTest
{
    Q_OBJECT

private slots:
    void init();
    void writesEntries_data();
    void writesEntries();
    void padsTablesToTheLongest();
    void sharesEqualRpdoMappings();
    void namesTablesByLine();
    void routesRpdos();
    void takesParametersOfOtherTypes();

private:
    /// A PDO with a mapping of these entries, as many as \a count tells; values are hexadecimal.
    void addPdo(quint8 line, quint16 index, const QStringList &values, const QString &count = {});
};

void tst_ObjDictPdo::init()
{
    store = makeStore();
    addSub(*store, 0, 0x2000, 0, 5, "0", "rww");
    addSub(*store, 0, 0x2001, 0, 9, "", "ro", 2);
    Sub text = subOf(*store, 0, 0x2001, 0);
    text.varName = "s";
    store->addSubIndex(0, 0x2001, 0, text);
}

void tst_ObjDictPdo::addPdo(quint8 line, quint16 index, const QStringList &values,
                            const QString &count)
{
    addSub(*store, line, index, 2, 5, "255");
    const QString size = count.isEmpty() ? QString::number(values.size()) : count;
    addSub(*store, line, index + 0x200, 0, 5, size, "ro");
    for (int i = 0; i < values.size(); ++i)
        addSub(*store, line, index + 0x200, quint8(i + 1), 7, "0x" + values[i], "ro");
}

void tst_ObjDictPdo::writesEntries_data()
{
    columns<QString, QString, QString, QString>("count", "entry", "bitwise", "table");
    // clang-format off
    QTest::newRow("bits")         << "1"    << "20000008" << "1" << "\t(UNSIGNED8)1u,\n\t{\n\t\t{&od_u8[3], 8u, CO_TRUE, 0x20000008UL },\n\t}\n};\n\n";
    QTest::newRow("string")       << "1"    << "200100FF" << "0" << "\t(UNSIGNED8)1u,\n\t{\n\t\t{&(s), 31u, CO_FALSE, 0x200100ffUL },\n\t}\n};\n\n";
    QTest::newRow("multiplexed")  << "0xFE" << "00050008" << "0" << "\t(UNSIGNED8)254u,\n\t{\n\t\t{NULL, 1u, CO_TRUE, 0x00050008UL },\n\t}\n};\n\n";
    QTest::newRow("only_a_count") << "2"    << ""         << "0" << "\t(UNSIGNED8)1u,\n\t{\n\t\t{NULL, 0u, CO_TRUE, 0x00000000UL },\n\t}\n};\n\n";
    QTest::newRow("empty")        << "0"    << "20000008" << "0" << "\n/* static PDO mapping tables */\n/* Mapping table TPDO 2*/\n\n";
    // clang-format on
}

void tst_ObjDictPdo::writesEntries()
{
    QFETCH(QString, count);
    QFETCH(QString, entry);
    QFETCH(QString, bitwise);
    QFETCH(QString, table);
    addPdo(0, 0x1801, entry.split(',', Qt::SkipEmptyParts), count);
    store->setGeneralSettingsValue("bitwise_mapping", bitwise);
    Sections sections(*store, classicDialect());
    sections.context.positions.managed.insert(keyOf(0, 0x2000, 0), 3);
    createMappingTables(sections.context);
    const QString text = sections.text();
    QVERIFY2(text.endsWith(table), qPrintable(text));
}

void tst_ObjDictPdo::padsTablesToTheLongest()
{
    addPdo(0, 0x1801, {"20000008", "20000008", "20000008"});
    addPdo(0, 0x1400, {"20000008"});
    Sections sections(*store, v4Dialect());
    sections.context.positions.managed.insert(keyOf(0, 0x2000, 0), 0);
    createMappingTables(sections.context);
    const QString row = "\t\t{&od_u8[0], 1u, CO_TRUE, 0x20000008UL },\n";
    const QString empty = "\t\t{NULL, (UNSIGNED8)0u, CO_FALSE, 0ul}";
    QCOMPARE(sections.text(),
             "\n/* static PDO mapping tables */\n/* Mapping table TPDO 2*/\n"
             "static CORE_CONST PDO_TR_MAP_TABLE_T CORE_CONST_STORAGE_CLASS\tmapTableTPDO2 = {\n"
             "\t(UNSIGNED8)3u,\n\t{\n" +
                 row.repeated(3) +
                 "\t}\n};\n/* unique rpdo defintion */\n"
                 "static CORE_CONST PDO_REC_MAP_TABLE_T CORE_CONST_STORAGE_CLASS\tmapTableRPDO0 = "
                 "{\n\t(UNSIGNED8)1u,\n\t{\n" +
                 row + empty + ",\n" + empty + "\n\t}\n};\n\n");
}

void tst_ObjDictPdo::sharesEqualRpdoMappings()
{
    addPdo(0, 0x1400, {"20000008"});
    addPdo(0, 0x1401, {"00050008"});
    addPdo(0, 0x1405, {"20000008"});
    Sections sections(*store, classicDialect());
    createMappingTables(sections.context);
    QCOMPARE(sections.text().count("unique rpdo"), 2);
    initRpdo(sections.context, 0, 0x1405);
    QVERIFY(sections.text().endsWith(", &mapTableRPDO0);\n"));
}

void tst_ObjDictPdo::namesTablesByLine()
{
    const QMap<quint8, QString> suffixes = {{0, "a"}, {25, "z"}, {26, "A"}, {31, "F"}};
    for (const quint8 line : suffixes.keys()) {
        addLine(*store, line);
        addPdo(line, 0x1800, {"00050008"});
        addPdo(line, 0x1402, {"00050008"});
    }
    Sections sections(*store, classicDialect());
    createMappingTables(sections.context);
    const QString tables = sections.text();
    for (const QString &suffix : suffixes) {
        QVERIFY(tables.contains("mapTableTPDO" + suffix + "1 = {"));
        QVERIFY(tables.contains("mapTableRPDO" + suffix + "0 = {"));
    }
}

void tst_ObjDictPdo::routesRpdos()
{
    addLine(*store, 7);
    addLine(*store, 5); // without tables, but with a column
    addSub(*store, 5, 0x1000, 0, 7, "0");
    addSub(*store, 0, 0x1F2C, 1, 7, "0");
    addPdo(7, 0x1800, {"00050008", "00050008"});
    addPdo(0, 0x1402, {"20000008"});
    addSub(*store, 0, 0x1403, 2, 5, "255");
    Sections sections(*store, v4Dialect());
    sections.context.positions.managed.insert(keyOf(0, 0x2000, 0), 0);
    createMappingTables(sections.context);
    QVERIFY(sections.text().contains(
        "/* Mapping table RPDO 3*/\n"
        "static CORE_CONST PDO_REC_MAP_TABLE_T CORE_CONST_STORAGE_CLASS\tmapTableRPDOa3 = {\n"
        "\t(UNSIGNED8)1u,\n\t{\n\t\t{&od_u8[0], 1u, CO_TRUE, 0x20000008UL, {0,0,0} },\n"
        "\t\t{NULL, (UNSIGNED8)0u, CO_FALSE, 0ul,{0,0,0}}\n\t}\n};\n/* Mapping table RPDO 4*/\n"));
}

void tst_ObjDictPdo::takesParametersOfOtherTypes()
{
    addSub(*store, 0, 0x1900, 2, 7, "0x101"); // cut to the width of the argument
    addSub(*store, 0, 0x1900, 3, 7, "70000");
    addSub(*store, 0, 0x1900, 5, 5, "9");
    addSub(*store, 0, 0x1900, 6, 9, "x");
    Sections sections(*store, classicDialect());
    initTpdo(sections.context, 0, 0x1900);
    QCOMPARE(sections.text(),
             QString("    /* initialize TPDO 257 */\n"
                     "    retVal = coPdoTransmitInit(257u, 1u, 4464u, 9u, 0u, NULL);\n"));
}

QTEST_GUILESS_MAIN(tst_ObjDictPdo)
#include "tst_objdictpdo.moc"
