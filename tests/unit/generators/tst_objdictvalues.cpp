// Values of the object dictionary source: what C does not notice in the texts of arrays, positions
// and strings. Their meaning is told by tst_generatedc, which reads them back.
#include "generators/objdict/objdictarrays.h"
#include "generators/objdict/objdictvalues.h"
#include "tests/fixtures/objdictsections.h"

using namespace ObjDict;

Q_DECLARE_METATYPE(ObjDict::ValueClass)

class tst_ObjDictValues : public StoreTest
{
    Q_OBJECT

private slots:
    void init() { store = makeStore(); }

    void valuesAreElements_data()
    {
        columns<ValueClass, QString, QString>("valueClass", "text", "element");
        // clang-format off
        QTest::newRow("cut to its width") << ValueClass::U8 << "300" << "\t(UNSIGNED8)44u";
        QTest::newRow("no sign") << ValueClass::U16 << "-1" << "\t(UNSIGNED16)0u";
        QTest::newRow("no number") << ValueClass::U32 << "$NODEID+0x180" << "\t(UNSIGNED32)0UL";
        QTest::newRow("signed 24 bits") << ValueClass::I24 << "-2" << "\tI24_SET(0xff,0xff,0xfe)";
        QTest::newRow("real") << ValueClass::R32 << "-1.5" << "\t(REAL32)-1.5000000f";
        QTest::newRow("real below the places") << ValueClass::R32 << "0.123456789" << "\t(REAL32)0.1234568f";
        // clang-format on
    }

    void valuesAreElements()
    {
        QFETCH(ValueClass, valueClass);
        QFETCH(QString, text);
        QTEST(elementText(valueClass, parseValue(valueClass, text), kVariableDigits), "element");
    }

    void equalConstantsShareAPlace()
    {
        ValueArray reals;
        QCOMPARE(reals.find(ValueClass::R32, parseValue(ValueClass::R32, "1.0")), 0);
        QCOMPARE(reals.find(ValueClass::R32, parseValue(ValueClass::R32, "-0.0")), 1);
        QCOMPARE(reals.find(ValueClass::R32, parseValue(ValueClass::R32, "0")), 1);
        ValueArray narrow; // compared in the width of the type
        QCOMPARE(narrow.find(ValueClass::U24, parseValue(ValueClass::U24, "0x1000005")), 0);
        QCOMPARE(narrow.find(ValueClass::U24, parseValue(ValueClass::U24, "5")), 0);
    }

    void managedVariables()
    {
        store->setGeneralSettingsValue("init_static_variables", "1");
        store->setGeneralSettingsValue("static_memory_specifier", "NEAR");
        addSub(*store, 0, 0x1016, 0, 5, "3");
        addSub(*store, 0, 0x1016, 1, 7, "0x10020"); // the stack keeps it
        addSub(*store, 0, 0x2000, 0, 5, "5");
        addSub(*store, 0, 0x2002, 0, 4, "1");
        addSub(*store, 0, 0x2002, 1, 4, "-1");
        Sections sections(*store, v4Dialect());
        defineManagedVariables(sections.context);
        QCOMPARE(sections.text(),
                 QString("\n/* definition of managed variables */\n"
                         "static UNSIGNED8 CORE_STORAGE_CLASS\tod_u8[2] NEAR = {\n"
                         "\t(UNSIGNED8)3u /* 0x1016:0 */,\n"
                         "\t(UNSIGNED8)5u /* 0x2000:0 */};\n"
                         "static INTEGER32 CORE_STORAGE_CLASS\tod_i32[2] NEAR = {\n"
                         "\t(INTEGER32)1L /* 0x2002:0 */,\n"
                         " \t(INTEGER32)-1L /* 0x2002:1 */};\n"));
        store->setGeneralSettingsValue("init_static_variables", "0");
        store->setGeneralSettingsValue("static_memory_specifier", "");
        defineManagedVariables(sections.context);
        QVERIFY(sections.text().contains(
            "\tod_u8[2];\nstatic INTEGER32 CORE_STORAGE_CLASS\tod_i32[2];\n"));
    }

    void constants()
    {
        store->setGeneralSettingsValue("limit_check", "1");
        addSub(*store, 0, 0x2000, 0, 7, "1");
        addSub(*store, 0, 0x2001, 0, 22, "2");
        addLimited(0x2002, 3, "0x5", "4"); // a signed limit is decimal
        addLimited(0x2003, 6, "0x5", "4");
        addString(0x2005, 9, "a\"b", 3);
        addString(0x2006, 10, "|x410", 4);
        addString(0x2007, 124, QString::fromUtf8("\xC3\xA4"), 2);
        addString(0x2008, 124, "", 0);
        Sections sections(*store, classicDialect());
        defineAllConsts(sections.context);
        const QString start = "static CO_CONST %1 CO_CONST_STORAGE_CLASS\tod_const_%2] = {\n";
        QCOMPARE(sections.text(),
                 "\n/* definition of constants */\n" + start.arg("UNSIGNED16", "u16[3") +
                     "\t(UNSIGNED16)0u,\n\t(UNSIGNED16)5u,\n\t(UNSIGNED16)4u};\n" +
                     start.arg("UNSIGNED32", "u32[1") + "\t(UNSIGNED32)1UL};\n" +
                     start.arg("UNSIGNED24", "u24[1") + "\tU24_SET(0x00,0x00,0x02)};\n" +
                     start.arg("INTEGER16", "i16[2") + "\t(INTEGER16)0,\n\t(INTEGER16)4};\n" +
                     start.arg("VIS_STRING", "vis_string[2") +
                     "\t\"a\\\"b\",\n\t\"\\x41\\x00\\000\"};\n" +
                     start.arg("UNSIGNED32", "vis_string_len[2") + "\t3,\n\t4};\n" +
                     start.arg("UTF8_STRING", "utf8_string[2") + "\t{0xc3,0xa4},\n\t{0x00}};\n" +
                     start.arg("UNSIGNED32", "utf8_string_len[2") + "\t2,\n\t0};\n");
    }

    void applicationVariables()
    {
        addVariable(0x2000, 2, "state${sub}");
        addVariable(0x2001, 3, "GET(%2)");
        addVariable(0x2002, 9, "text", 8);
        addVariable(0x2003, 10, "bytes", 4);
        addVariable(0x2004, 15, "v_1", 4);
        Sections sections(*store, classicDialect());
        defineApplicationVariables(sections.context);
        QCOMPARE(
            sections.text(),
            QString("\n/* definition of application variables */\n"
                    "static INTEGER8  CO_CONST_STORAGE_CLASS * CO_CONST \tod_ptr_i8[1] = {\n"
                    "\t&(state0) /* 0x2000:0 */};\n"
                    "static INTEGER16 CO_CONST_STORAGE_CLASS * CO_CONST \tod_ptr_i16[1] = {\n"
                    "\tGET(%2) /* 0x2001:0 */};\n"
                    "static VIS_STRING\tod_vis_string[1] = {\n\t&(text[0])};\n"
                    "static UNSIGNED32\tod_vis_string_len[1] = {\n\t8ul};\n"
                    "static UNSIGNED32\tod_vis_string_actLen[1] = {\n\t8ul};\n"
                    "static OCTET_STRING\t*od_octet_string[1] = {\n\t&(bytes[0])};\n"
                    "static UNSIGNED32 CO_STORAGE_CLASS\tod_octet_string_len[1] = {\n\t4ul};\n"
                    "static UNSIGNED32 CO_STORAGE_CLASS\tod_octet_string_actLen[1] = {\n\t4ul};\n"
                    "static CO_DOMAIN_PTR\tod_domain[1] = {\n\tNULL};\n"
                    "static UNSIGNED32 CO_STORAGE_CLASS\tod_domain_len[1] = {\n\t0ul};\n"
                    "static UNSIGNED32 CO_STORAGE_CLASS\tod_domain_actLen[1] = {\n\t0ul};\n"));
        initDataTypeStructure(sections.context);
        QVERIFY(sections.text().contains("od_data_variables = {\n   NULL\n    , NULL\n"));
    }

    void addressesAreOfTheObject_data()
    {
        columns<int, int, QString>("dataType", "implementation", "address");
        // clang-format off
        QTest::newRow("virtual") << 5 << 3 << "0";
        QTest::newRow("string has no array of its type") << 9 << 1 << "NULL";
        QTest::newRow("type without array") << 21 << 0 << "NULL";
        // clang-format on
    }

    void addressesAreOfTheObject()
    {
        QFETCH(int, dataType);
        QFETCH(int, implementation);
        addSub(*store, 0, 0x1017, 0, 6, "100");
        addSub(*store, 0, 0x2000, 0, 5, "1");
        addSub(*store, 0, 0x2001, 0, quint16(dataType), "1", "ro", quint8(implementation));
        Sections sections(*store, classicDialect());
        defineManagedVariables(sections.context);
        defineAllConsts(sections.context);
        QTEST(getObjectAddress(sections.context, 0, 0x2001, 0), "address");
        QCOMPARE(getObjectAddress(sections.context, 0, 0x1017, 0), QString("NULL"));
        QCOMPARE(getObjectAddress(sections.context, 0, 0x3000, 0), QString("NULL"));
    }

    void stringDefaultsBeginAtTheirOffsets()
    {
        addVariable(0x2001, 9, "longer${sub}", 2, "ab*/c");
        addVariable(0x2002, 10, "filled", 4, "|xff1");
        addVariable(0x2003, 9, "large", 0x20000, "x");
        addVariable(0x2004, 9, "blank", 0x20000, "");
        Sections sections(*store, classicDialect());
        generateStringDefaultValues(sections.context);
        QCOMPARE(sections.text(),
                 QString("\n/* definition of string default values for variables */\n"
                         "static CO_CONST char stringDefaultValues[] = {\n"
                         "/* ab* /c */ \n0x61, 0x62, \n"
                         "/* |xff1 */ \n0xff, 0x01, 0x00, 0x00, \n"
                         "/* x */ \n0x78, \n[131077] = 0x00, \n"
                         "/*  */ \n\n[262149] = 0x00, \n0x00}; \n\n"));
        generateStringDefaultValueFunction(sections.context);
        const QString calls = sections.text();
        QVERIFY(calls.startsWith("\n\nRET_T userOverwriteStringDefaultvalues(void)\n{\n"
                                 "    /* 0: 2001 - 0 */\n"
                                 "    memcpy(longer0, &stringDefaultValues[0], 2);\n"));
        QVERIFY(calls.endsWith("    memcpy(blank, &stringDefaultValues[131078], 131072);\n"
                               "\n    return(RET_OK);\n}\n"));
    }

private:
    void addLimited(quint16 index, quint16 dataType, const QString &low, const QString &high)
    {
        addSub(*store, 0, index, 0, dataType, "0");
        Sub data = subOf(*store, 0, index, 0);
        data.limitInEds = true;
        data.lowLimit = low;
        data.upLimit = high;
        store->addSubIndex(0, index, 0, data);
    }

    void addString(quint16 index, quint16 dataType, const QString &value, quint32 size)
    {
        addSub(*store, 0, index, 0, dataType, value, "const", 1);
        Sub data = subOf(*store, 0, index, 0);
        data.size = size;
        store->addSubIndex(0, index, 0, data);
    }

    void addVariable(quint16 index, quint16 dataType, const QString &name, quint32 size = 0,
                     const QString &value = "")
    {
        addSub(*store, 0, index, 0, dataType, value, "rw", 2);
        Sub data = subOf(*store, 0, index, 0);
        data.varName = name;
        data.size = size;
        store->addSubIndex(0, index, 0, data);
    }
};

QTEST_GUILESS_MAIN(tst_ObjDictValues)
#include "tst_objdictvalues.moc"
