// The sections of gen_define.h, by what they write for a setting or an object.
#include "generators/defines/bufferdefines.h"
#include "generators/defines/diagnosticdefines.h"
#include "generators/defines/energybusdefines.h"
#include "generators/defines/eventdefines.h"
#include "generators/defines/hardwaredefines.h"
#include "generators/defines/rawcandefines.h"
#include "generators/defines/servicedefines.h"
#include "generators/defines/virtualobjectdefines.h"
#include "support/udssiddefinitions.h"
#include "tests/fixtures/casefile.h"
#include "tests/unit/generators/definefixture.h"

using namespace Defines;

class tst_DefineSections : public QObject
{
    Q_OBJECT

private slots:
    void services_data() { addCases(TEST_CASES "/defineservices.txt"); }
    void services()
    {
        const auto [project, expected] = fetchRow<QString, QString>();
        DefineProject device(project);
        const QString text = device.text(generateServiceDefines);
        const QStringList lines = ('\n' + expected).split("\nno ");
        int from = 0; // what lies between two lines is of no interest here
        const QString present = lines.first().mid(1) + (lines.size() > 1 ? "\n" : "");
        for (const QString &line : present.split('#', Qt::SkipEmptyParts)) {
            from = text.indexOf(line, from);
            QVERIFY2(from >= 0, qPrintable(line + "is not in\n" + text));
        }
        for (const QString &absent : lines.mid(1))
            QVERIFY2(!text.contains(absent.trimmed()), qPrintable(text));
        QCOMPARE(device.text(generateServiceDefines, DefineProject::v4), inV4(text));
    }

    void servicesNeedCANopen()
    {
        DefineProject project("line 0 2; 1000:0 U32 ro 0 0; line 1 4");
        QCOMPARE(project.text(generateServiceDefines), QString());
        project.change("line 0 5");
        const QString text = project.text(generateServiceDefines, DefineProject::classic, true);
        QVERIFY(!text.contains("_COB_"));
        QVERIFY(text.endsWith("CO_MAX_MAP_ENTRIES\t0u\n\n"));
    }

    void selfStartingIsOfTheActiveLine()
    {
        DefineProject project("line 1; text:SelfStarting=1");
        const auto ofSecondLine = [](DefineContext &context) {
            context.activeLine = 1;
            generateServiceDefines(context);
        };
        QVERIFY(project.text(ofSecondLine).contains("#define CO_SELF_STARTING_DEVICE\t1u\n"));
        QVERIFY(!project.text(generateServiceDefines).contains("CO_SELF_STARTING_DEVICE"));
    }

    void sections_data() { addCases(TEST_CASES "/definesections.txt"); }
    void sections()
    {
        const auto [project, expected] = fetchRow<QString, QString>();
        const QMap<QString, void (*)(DefineContext &)> writers = {
            {"events", generateEventDefines},           {"buffers", generateBufferDefines},
            {"hardware", generateHardwareDefines},      {"raw", generateCANRAWDefines},
            {"diagnostics", generateISOTP_UDS_Defines}, {"energybus", generateEnergyBusDefines}};
        const QString group = caseGroup();
        const auto writer = writers.value(group);
        DefineProject device(project);
        if (group == "energybus") {
            QCOMPARE(device.text(writer), QString()); // another edition of the tool
            QCoreApplication::setApplicationName("EnergyBus Morvane");
        }
        QCOMPARE(device.text(writer), expected);
        QCOMPARE(device.text(writer, DefineProject::v4), inV4(expected));
    }

    void everyServiceHasASwitch()
    {
        DefineProject project("udsserver_supported=1");
        const QMap<quint8, QString> names = UDSSIDDefinitions::getSIDNames();
        for (auto name = names.begin(); name != names.end(); ++name) {
            project.store.setUDSServiceActive(0, name.key(), true);
            QString words = name.value();
            words.replace(QRegularExpression("(?<=[a-z])(?=[A-Z])|(?<=[A-Z])(?=[A-Z][a-z])"), "_");
            QVERIFY(project.text(generateISOTP_UDS_Defines)
                        .contains("#define UDS_SERVICE_" + words.toUpper() + "\t1u\n"));
        }
    }

    void cobsOfSeveralProtocols()
    {
        DefineProject project(
            "1000:0 U32 ro 0 0; set isotp_supported=1 isotp_client_con=1 udsserver_supported=1 "
            "uds_server_active=1,0,0; set udsclient_supported=1 uds_client_cnt=0,0,0,2,0; line 2 "
            "2; line 3 4; txid 5; rxid 6; rxid 7; line 4 5; line 5 9");
        const auto text = [&project](const DefineDialect &dialect) {
            return project.text(generateMultiCOBs, dialect, true);
        };
        QCOMPARE(text(DefineProject::classic),
                 "/* COB Definitions */\n#define CO_COB_COUNTS 12, 5, 11, 5, 0\n"
                 "#define CO_COB_CNT \t33\n");
        project.change("additional_cob_count=1; remove line 3; remove line 4; remove line 5");
        // The CANopen line, and the J1939 line, count the addition themselves as well.
        QCOMPARE(text(DefineProject::v4), "/* COB Definitions */\n#define CORE_COB_COUNTS 14, 7\n"
                                          "#define CORE_COB_CNT \t21\n");
    }

    void countsOfTargetsAreBounded()
    {
        DefineProject project("set all_targets=1 targetsettings_cnt=4294967295");
        QVERIFY(project.text(generateHardwareDefines).size() < 100000);
    }

    void virtualObjects()
    {
        DefineProject project("2000:0 U8 ro 3 0; 2001 arr ro 0; 2001:1..4 U32 ro 3 0,0,0,0; "
                              "2002:0 VS ro 3 x; c000:0 U32 ro 3 0; "
                              "line 2; 2000:0 U24 ro 3 0; 2001:0 U32 ro 0 0");
        const auto counts = [&project](const DefineDialect &dialect, bool isMulti) {
            QString text = project.text(generateVODDefines, dialect, isMulti).simplified();
            return text.remove(QRegularExpression("#define CO_(VIRTUAL_\\w+_CNT 0u )?"));
        };
        QCOMPARE(counts(DefineProject::classic, true),
                 "VIRTUAL_INDEX_CNT 4u /* number of virtual objects */ VIRTUAL_U8_CNT 1u "
                 "VIRTUAL_U32_CNT 4u VIRTUAL_U24_CNT 1u VIRTUAL_VS_CNT 1u VOD_ASSIGN_CNT 5u "
                 "VOBJ_DESC_CNT 5u VIRTUAL_OBJECT_CNT 4u, 1u");
        QCOMPARE(counts(DefineProject::v4, false),
                 "VIRTUAL_INDEX_CNT 3u /* number of virtual objects */ VIRTUAL_U8_CNT 1u "
                 "VIRTUAL_U32_CNT 4u VOD_ASSIGN_CNT 5u VOBJ_DESC_CNT 5u");
        QCOMPARE(project.text(generateVODDefines, DefineProject::v4, true), QString());
    }
};

QTEST_GUILESS_MAIN(tst_DefineSections)
#include "tst_definesections.moc"
