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
#include "tests/unit/generators/definefixture.h"

using namespace Defines;

using Section = void (*)(DefineContext &);
Q_DECLARE_METATYPE(Section)

namespace
{

/// A classic text as the V4 generation has it.
QString inV4(QString text)
{
    static const QRegularExpression renamed(
        "#define CO_(?=REC_BUFFER_|TR_BUFFER_|COB_C|INHIBIT|EVENT_DYNAMIC_CAN\t|CONFIG_REC_|"
        "CONFIG_TRANS_|TIMER_INTERVAL|BIG_ENDIAN|DRV_)");
    text.replace("#define CO_MULTI_LINE", "#define CAN_MULTI_LINE");
    return text.replace(renamed, "#define CORE_");
}

} // namespace

class tst_DefineSections : public QObject
{
    Q_OBJECT

private slots:
    void services_data()
    {
        columns<QString, QString, QString>("changes", "present", "absent");
        // clang-format off
        QTest::newRow("one line") << "" << "/* Line Settings */\n#define CANOPEN_SUPPORTED\t1u\n" << "MULTI_LINE";
        QTest::newRow("two lines") << "line 2 5; var 1000 0; var 2000 1; var 2/1000 0x191; record 1200 2; record 2/1800 3; record 2/1a00 3; array 2/1016 2; set co_node_id=5,,7; set receivebuffersize=10,20,30; set transmitbuffersize=; set co_network_id=3u"
            << "/* Line Settings */\n#define CO_MULTI_LINE\t1u\n#define CO_MULTI_LINE_CNT\t2u\n#define CO_REC_BUFFER_COUNTS\t10,30u\n#define CO_TR_BUFFER_COUNTS\t5u\n#define CO_OBJECTS_LINE_2_CNT\t4u\n#define CO_OBJECT_COUNTS\t3u, 4u\n#define CO_COB_COUNTS\t4u, 7u\n#define CO_TXPDO_COUNTS\t0u, 1u\n#define CO_SSDO_COUNTS\t1u, 1u\n#define CO_ERR_CTRL_COUNTS\t0u, 2u\n"
               "#define CO_NODE_IDS\t5,7\n#define CO_NETWORK_ID\t3u\n#define CO_SDO_SERVER_CNT\t2u\n#define CO_HB_CONSUMER_CNT 2u\n#define CO_INHIBIT_SUPPORTED\t1u\n#define CO_COB_CNT\t11u\n\n\n" << "";
        QTest::newRow("forced multi-line") << "misc generateML=true" << "#define CO_MULTI_LINE_CNT\t1u\n" << "";
        QTest::newRow("buffers with unit") << "set receivebuffersize=7u; set transmitbuffersize=0x8 " << "COUNTS\t7u\n#define CO_TR_BUFFER_COUNTS\t0x8u\n" << "";
        QTest::newRow("FD lines have no default SDO server") << "set canfd_supported=1; line 1 2; j1939 cia510serversupport=0x1" << "#define CO_SSDO_COUNTS\t0u, 1u\n" << "CO_SDO_SERVER_CNT";
        QTest::newRow("J1939 line as SDO server and client") << "line 1 2; j1939 cia510serversupport=1; j1939 cia510clientsupport=1; record 1280 3" << "#define CO_SDO_SERVER_CNT\t2u\n#define CO_SDO_CLIENT_CNT\t2u\n" << "";
        QTest::newRow("clients by list") << "line 1 2; line 2 2; j1939 cia510clientsupport=1; record 2/1280 3; record 2/1281 3" << "#define CO_CSDO_COUNTS\t0u, 1u, 2u\n" << "";
        QTest::newRow("store groups: the highest") << "line 1 1; array 1010 1; array 1/1010 4" << "#define CO_STORE_CNT_MAX\t4u\n" << "";
        QTest::newRow("error lists") << "array 1003 2; array 1032 3; array 1028 4" << "#define CO_ERR_HIST_COUNTS\t2u\n#define CO_ACT_ERR_HIST_COUNTS\t3u\n#define CO_EMCY_CONSUMER_CNT 4u\n#define CO_EMCY_ERROR_HISTORY 2u\n" << "CO_EMCY_ACTIVE_ERROR_LIST";
        QTest::newRow("active errors of FD") << "array 1032 3; set canfd_supported=1" << "#define CO_EMCY_ACTIVE_ERROR_LIST\t3u\n" << "";

        QTest::newRow("no node id") << "set co_node_id=,," << "#define CO_NODE_IDS\t0u\n" << "";
        QTest::newRow("first node id empty") << "line 1 1; set co_node_id=,33" << "#define CO_NODE_IDS\t0u,33\n" << "";
        QTest::newRow("node id function of the second line") << "line 1 1; set co_node_id_fct=,readDip" << "#define CO_NODE_ID_FUNCTIONS\tNULL,readDip\n\n" << "";
        QTest::newRow("short function list") << "line 1 1; set co_node_id_fct=a," << "#define CO_NODE_ID_FUNCTIONS NULL, NULL\n" << "";

        QTest::newRow("profile of a variable") << "var 1000 0x00020191" << "services */\n#define CO_PROFILE_401\t1u\n" << "VDFG";
        QTest::newRow("profile of a record") << "record 1000 1; put 1000:1 value 454" << "#define CO_PROFILE_454\t1u\n#define CO_EVENT_PROFILE_STORE\t1u\n" << "";
        QTest::newRow("profile of the active line alone") << "line 1 1; var 1/1000 401" << "" << "CO_PROFILE";
        QTest::newRow("function groups") << "var 1000 447; record 6000 2; put 6000:1 value 0x80000001; put 6000:2 value 2" << "#define CO_P447_VDFG_1 \t1u\n#define CO_P447_VDFG_32 \t1u\n#define CO_P447_VDFG_34 \t1u\n" << "";

        QTest::newRow("master") << "set nmtmaster=2; set lss_supported=1; set lss_inquiry_supported=1" << "#define CO_NMT_MASTER\t1u\n#define CO_LSS_MASTER_SUPPORTED\t1u\n#define CO_LSS_SUPPORTED\t1u\n#define CO_LSS_INQUIRY_SERVICES\t1u\n" << "";
        QTest::newRow("master on one of two lines") << "line 1 1; set nmtmaster=0,1; set lss_supported=1" << "#define CO_LSS_MASTER_SUPPORTED\t1u\n" << "CO_LSS_SUPPORTED";
        QTest::newRow("flying master") << "line 1 1; var 1/1f80 0x20" << "#define CO_FLYING_MASTER_SUPPORTED\t1u\n" << "";
        QTest::newRow("SDO routing without routes") << "line 1 1; set sdo_routing=1" << "#define CO_NETWORK_ROUTING_COUNTS\t1u, 1u\n#define CO_NETWORK_ROUTING_CNT\t2u\n" << "";
        QTest::newRow("routes with SDO routing") << "line 1 1; set sdo_routing=1; array 1/1f2c 3" << "#define CO_NETWORK_ROUTING_COUNTS\t0u, 3u\n#define CO_NETWORK_ROUTING_CNT\t3u\n" << "";

        QTest::newRow("USDO needs FD") << "set usdo_server_enabled=1" << "" << "USDO";

        QTest::newRow("RPDO timer, SRDOs") << "record 1400 5; record 1301 6; record 1302 6" << "#define CO_PDO_REC_TIMER_SUPPORTED\t1u\n#define CO_SRDO_SUPPORTED\t1u\n#define CO_SRDO_COUNTS\t2u\n#define CO_SRDO_CNT\t2u\n" << "";
        QTest::newRow("sent MPDO") << "record 1a00 1; put 1a00:0 value 0xFE" << "#define CO_MPDO_PRODUCER\t1u\n#define CO_MPDO_SAM\t1u\n" << "CO_MPDO_CONSUMER";
        QTest::newRow("received MPDO") << "record 1600 1; put 1600:0 value 255" << "#define CO_MPDO_CONSUMER\t1u\n#define CO_MPDO_DAM\t1u\n" << "CO_MPDO_PRODUCER";
        QTest::newRow("dynamic mappings") << "record 1600 2; put 1600:0 access rw; record 1a00 3; put 1a00:0 access rw; record 1a01 8; set bitwise_mapping=1"
            << "#define CO_MAX_MAP_ENTRIES\t8u\n#define CO_TR_PDO_DYN_MAP_ENTRIES\t3u\n#define CO_REC_PDO_DYN_MAP_ENTRIES\t2u\n#define CO_PDO_BIT_MAPPING\t1u\n" << "";
        QTest::newRow("managers") << "set bootup_manager=1; set config_manager=1; var 1014 0; line 1 1; array 1f81 2; array 1/1f81 3; set max_slave_assignment=8; var 1f22 0"
            << "#define CO_BOOTUP_MANAGER\t1u\n#define CO_SLAVE_ASSIGNMENT_CNT\t5u\n#define CO_MAX_SLAVE_ASSIGNMENT_CNT\t16u\n#define CO_GUARDING_CNT CO_MAX_SLAVE_ASSIGNMENT_CNT\n#define CO_CFG_MANAGER\t1u\n#define CO_EMCY_PRODUCER\t1u\n#define CO_CFG_MANAGER\t1u\n" << "";
        QTest::newRow("no slaves to guard") << "set bootup_manager=1" << "CO_MAX_SLAVE_ASSIGNMENT_CNT\t0u\n" << "CO_GUARDING_CNT";
        QTest::newRow("SDO block") << "set sdo_blocktransfer_supported=1; set sdo_blocktransfer_block_size=32; set sdo_blocktransfer_min_data=0; set sdo_blocktransfer_crc_supported=1"
            << "#define CO_SDO_BLOCK\t\t1u\n#define CO_SDO_BLOCK_SIZE\t32u\n#define CO_SDO_BLOCK_MIN_SIZE\t64u\n#define CO_SDO_BLOCK_CRC\t1u\n" << "";
        QTest::newRow("types of any line") << "line 1 1; var 1/2000 0; put 1/2000:0 type 27; var 1008 0; put 1008:0 type 124; var 1015 0" << "#define CO_EXTENDED_DATA_TYPES\t\t1u\n#define CO_UTF8_DATA_TYPE\t\t1u\n#define CO_INHIBIT_SUPPORTED\t1u\n" << "";
        QTest::newRow("no TPDO inhibit time") << "record 1800 2" << "" << "INHIBIT";
        // clang-format on
    }

    void services()
    {
        QFETCH(QString, changes);
        QFETCH(QString, present);
        QFETCH(QString, absent);
        DefineProject project(changes);
        const QString text = project.text(generateServiceDefines);
        // What lies between two lines of another kind is of no interest here.
        int from = 0;
        for (const QString &line : present.split("#", Qt::SkipEmptyParts)) {
            from = text.indexOf(line, from);
            QVERIFY2(from >= 0, qPrintable(line + "is not in\n" + text));
        }
        QVERIFY2(absent.isEmpty() || !text.contains(absent), qPrintable(text));
        QCOMPARE(project.text(generateServiceDefines, DefineProject::v4), inV4(text));
    }

    void servicesNeedCANopen()
    {
        DefineProject project;
        project.change("set line0type=2; line 1 4; var 1000 0");
        QCOMPARE(project.text(generateServiceDefines), QString());
        project.change("set line0type=5");
        const QString text = project.text(generateServiceDefines, DefineProject::classic, true);
        QVERIFY(!text.contains("_COB_"));
        QVERIFY(text.endsWith("CO_MAX_MAP_ENTRIES\t0u\n\n"));
    }

    void selfStartingIsOfTheActiveLine()
    {
        DefineProject project;
        project.change("line 1 1");
        project.store.setDescriptionSettingsLine(1);
        project.change("describe SelfStarting=1");
        const auto ofSecondLine = [](DefineContext &context) {
            context.activeLine = 1;
            generateServiceDefines(context);
        };
        QVERIFY(project.text(ofSecondLine).contains("#define CO_SELF_STARTING_DEVICE\t1u\n"));
        QVERIFY(!project.text(generateServiceDefines).contains("CO_SELF_STARTING_DEVICE"));
    }

    void sections_data()
    {
        columns<Section, QString, QString>("section", "changes", "text");
        const Section events = generateEventDefines;
        const Section buffers = generateBufferDefines;
        const Section hardware = generateHardwareDefines;
        const QString calls = "/* Definition of number of call-back functions for each service*/\n";
        const QString queues = "/* Definition of CAN queue sizes */\n";
        const QString target = "/* Hardware settings */\n";
        // clang-format off
        QTest::newRow("blank function") << events << "set fct_nmt=  ; set enable_dynamic=0" << "";
        QTest::newRow("another name of the PDO function") << events << "set fct_pdo_receive=c; set enable_dynamic=0" << "";
        QTest::newRow("sleep mode 1") << events << "set sleep_mode_selection=1; set sleep_wait_time=20; set enable_dynamic=0" << "#define CO_EVENT_DYNAMIC_SLEEP\t1u\n#define CO_SLEEP_447\t1u\n#define CO_SLEEP_WAITTIME\t20u\n";
        QTest::newRow("sleep mode 3") << events << "set sleep_mode_selection=3; set enable_dynamic=0" << "#define CO_EVENT_DYNAMIC_SLEEP\t1u\n#define CO_SLEEP_WAITTIME\t0u\n";
        QTest::newRow("enabled by any text") << events << "set enable_dynamic=off; set event_nmt=2" << calls + "#define CO_EVENT_DYNAMIC_NMT\t2u\n\n";
        QTest::newRow("slots in order") << events << "set event_lss=1; set event_can=3; set event_pdo=2; set event_flyma=0; set isotp_client_event=0x102"
            << calls + "#define CO_EVENT_DYNAMIC_PDO\t2u\n#define CO_EVENT_DYNAMIC_CAN\t3u\n#define CO_EVENT_DYNAMIC_LSS\t1u\n#define ISOTP_EVENT_DYNAMIC_CLIENT\t2u\n\n";
        QTest::newRow("domains are decimal") << events << "set event_ssdo_domain_write=0x10; set event_ssdo_domain_read=16" << calls + "#define CO_EVENT_DYNAMIC_SSDO_DOMAIN_READ\t16u\n\n";
        QTest::newRow("USDO slots need FD") << events << "set usdo_client_ind_read_cnt=1" << calls + "\n";

        QTest::newRow("empty counts as none") << buffers << "set receivebuffersize=; set transmitbuffersize= " << queues + "#define CO_CONFIG_REC_BUFFER_CNT\t10u\n#define CO_CONFIG_TRANS_BUFFER_CNT\t5u\n\n";
        QTest::newRow("one pool of all lines") << buffers << "line 1 1; set receivebuffersize=10u, 0x20; set transmitbuffersize=,7; set canfd_supported=1"
            << queues + "#define CO_CONFIG_REC_BUFFER_CNT\t42u\n#define CO_CONFIG_TRANS_BUFFER_CNT\t12u\n#define CO_CANFD_SUPPORTED\t1u\n\n";

        QTest::newRow("plain settings") << hardware << "set targetsettings_0_name=a*/b; set co_timer_interval=1000; set endian=1; set drv_filter=1; set drv_group_filter=1; set hw_defines=#define\tX; set co_srdo_interval=500"
            << target + "/* a* /b */\n#define CO_TIMER_INTERVAL\t1000u\n#define CO_BIG_ENDIAN\t1u\n#define CO_DRV_FILTER\t1u\n#define CO_DRV_GROUP_FILTER\t1u\n\n/* target-specific defines */\n#define\tX\n#define CO_SRDO_TIMER_INTERVAL\t500u\n\n";
        QTest::newRow("timer by macro") << hardware << "set co_timer_interval=TICK; set co_srdo_interval=0" << target + "/*  */\n#define CO_TIMER_INTERVAL\tTICK\n#define CO_SRDO_TIMER_INTERVAL\t0\n\n";
        QTest::newRow("second target active") << hardware << "set targetsettings_cnt=2; set targetsettings_active=1; set co_timer_interval=1; set targetsettings_1_name=B; set targetsettings_1_timer=2000; set targetsettings_1_endianess=0x101; set targetsettings_1_fullcan=1; set targetsettings_1_groupfilter=2; set targetsettings_1_defines=d"
            << target + "/* B */\n#define CO_TIMER_INTERVAL\t2000u\n#define CO_BIG_ENDIAN\t1u\n#define CO_DRV_FILTER\t1u\n\n/* target-specific defines */\nd\n\n";
        QTest::newRow("none chosen") << hardware << "set targetsettings_cnt=2; set targetsettings_active=-1; set targetsettings_0_name=A" << target + "/* A */\n\n";
        QTest::newRow("one target counts as active") << hardware << "set targetsettings_cnt=1; set targetsettings_active=1; set targetsettings_0_name=A" << target + "/* A */\n\n";
        QTest::newRow("all targets") << hardware << "set all_targets=1; set targetsettings_cnt=2; set targetsettings_active=1; set target_id=BOARD_A"
            << target + "#ifdef BOARD_A\n/*  */\n#endif /* BOARD_A*/ \n\n#define TARGET_1 1u\n#ifdef TARGET_1\n/*  */\n#define CO_TIMER_INTERVAL\t0u\n#endif /* TARGET_1*/ \n\n\n";
        // clang-format on
    }

    void sections()
    {
        QFETCH(Section, section);
        QFETCH(QString, changes);
        QFETCH(QString, text);
        DefineProject project(changes);
        QCOMPARE(project.text(section), text);
        QCOMPARE(project.text(section, DefineProject::v4), inV4(text));
    }

    void protocols_data()
    {
        columns<Section, QString, QString>("section", "changes", "text");
        const Section raw = generateCANRAWDefines;
        const Section diagnostics = generateISOTP_UDS_Defines;
        const Section energyBus = generateEnergyBusDefines;
        const QString buffers = "/* Number of receive/transmit buffer entries per line */\n#define "
                                "CO_REC_BUFFER_CNT\t10u\n#define CO_TR_BUFFER_CNT\t5u\n#define "
                                "CO_REC_BUFFER_COUNTS\t10u\n#define CO_TR_BUFFER_COUNTS\t5u\n\n";
        // clang-format off
        QTest::newRow("identifiers of another protocol") << raw << "canid 0 tx 5" << "";
        QTest::newRow("raw lines among others") << raw << "canid 0 tx 5; line 2 4; canid 2 tx 5; canid 2 tx 6 inhibit=20; canid 2 rx 5; line 3 9; line 4 4; canid 4 rx 1; canid 4 rx 2; set rxindication_cnt=1; set txindication_cnt=2; set changedindication_cnt=3; set event_can=4; set receivebuffersize=10; set transmitbuffersize=5"
            << "/* Raw CAN Defines */\n#define CO_MULTI_LINE\t1u\n#define CO_MULTI_LINE_CNT\t4u\n#define RAWCAN_SUPPORTED\t1u\n#define RAWCAN_RECEIVE_CNT\t3u\n#define RAWCAN_TRANSMIT_CNT\t2u\n"
               "#define RAWCAN_RECEIVE_COUNTS\t0u, 1u, 0u, 2u\n#define RAWCAN_TRANSMIT_COUNTS\t0u, 2u, 0u, 0u\n#define CO_INHIBIT_SUPPORTED\t1u\n"
               "#define RAWCAN_REC_INDICATION_CNT\t1u\n#define RAWCAN_TR_INDICATION_CNT\t2u\n#define RAWCAN_CHANGED_INDICATION_CNT\t3u\n#define CO_EVENT_DYNAMIC_CAN\t4u\n\n" + buffers;
        QTest::newRow("no ISO-TP") << diagnostics << "set isotp_client_con=1; set isotp_dyn_server_ind=1; set uds_seedkey_length=4" << "";
        QTest::newRow("connections alone") << diagnostics << "set isotp_connection_cnt=0x103; set isotp_server_event=1; set enable_dynamic=0"
            << "/* ISO-TP Defines */\n#define ISOTP_SUPPORTED\t1u\n#define ISOTP_CONNECTION_CNT\t3u\n#define ISOTP_CLIENT_COUNTS\t0u\n#define ISOTP_SERVER_COUNTS\t0u\n#define ISOTP_CLIENT_CONNECTION_CNT\t0u\n#define ISOTP_SERVER_CONNECTION_CNT\t0u\n\n";
        QTest::newRow("ISO-TP by line") << diagnostics << "set isotp_supported=1; line 2 2; line 3 4; set isotp_client_con=0x2,9, ; set isotp_server_con=1; set isotp_server_event=0x102; set isotp_dyn_client_ind=1; set isotp_dyn_client_txack_ind=1; set isotp_dyn_server_ind=2; set isotp_dyn_split_ind=1"
            << "/* ISO-TP Defines */\n#define ISOTP_SUPPORTED\t1u\n#define ISOTP_CLIENT_COUNTS\t2u, 0u, 0u\n#define ISOTP_SERVER_COUNTS\t1u, 1u, 1u\n#define ISOTP_CLIENT_CONNECTION_CNT\t2u\n#define ISOTP_SERVER_CONNECTION_CNT\t3u\n"
               "#define ISOTP_DYN_CLIENT_IND\t1u\n#define ISOTP_DYN_CLIENT_TXACK_IND\t1u\n#define ISOTP_DYN_SERVER_IND\t1u\n#define ISOTP_DYN_SPLIT_IND\t1u\n#define ISOTP_EVENT_DYNAMIC_SERVER\t2u\n\n";
        const QString noConnections = "/* ISO-TP Defines */\n#define ISOTP_SUPPORTED\t1u\n#define ISOTP_CLIENT_COUNTS\t0u, 0u\n#define ISOTP_SERVER_COUNTS\t0u, 0u\n#define ISOTP_CLIENT_CONNECTION_CNT\t0u\n#define ISOTP_SERVER_CONNECTION_CNT\t0u\n\n";
        QTest::newRow("services of any line") << diagnostics << "line 1 4; set udsclient_supported=1; set uds_client_cnt=,0x3; set udsserver_version=7; set uds_seedkey_length=0x10; set uds_session_timeout=5000; set uds_only_appl_session_check=1; set uds_only_appl_security_check=1; "
               "uds 0 16 off; uds 0 17 off; uds 0 34 off; uds 0 46 off; uds 0 62 off; uds 1 17 off; uds 1 34 off; uds 1 46 off; uds 1 62 off; uds 0 49 on; uds 1 99 on"
            << noConnections + "/* UDS Defines */\n#define UDS_CLIENT_SUPPORTED\t1u\n#define UDS_CLIENT_COUNTS\t0u, 3u\n#define UDS_SEEDKEY_LENGTH\t16u\n#define UDS_SESSION_TIMEOUT\t5000u\n#define UDS_ONLY_APPL_SESSION_CHECK\t1u\n#define UDS_ONLY_APPL_SECURITY_CHECK\t1u\n#define UDS_SERVICE_DIAGNOSTIC_SESSION_CONTROL\t1u\n#define UDS_SERVICE_ROUTINE_CONTROL\t1u\n\n";
        QTest::newRow("another edition") << energyBus << "eb device_cnt=3" << "";
        QTest::newRow("EnergyBus") << energyBus << "edition EnergyBus Morvane; eb device_cnt=003; eb ext_start_pos_bat=0x1F; eb int_offset_bat=-2; eb sec_0_kind=a \"b\"; eb ebc_tool_supported= ; eb a-b=1; eb a_b=2"
            << "/* EnergyBus Defines */\n#define EB_A_B\t1u\n#define EB_DEVICE_CNT\t3u\n#define EB_EXT_START_POS_BAT\t0x1Fu\n#define EB_INT_OFFSET_BAT\t(-2)\n#define EB_SEC_0_KIND\t\"a \\\"b\\\"\"\n\n";
        // clang-format on
    }

    void protocols()
    {
        sections();
        QCoreApplication::setApplicationName("CANopen Tessarine");
    }

    void everyServiceHasASwitch()
    {
        DefineProject project("set udsserver_supported=1");
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
        DefineProject project;
        project.change("line 2 2; line 3 4; line 4 5; line 5 9; var 1000 0; canid 3 tx 5; "
                       "canid 3 rx 6; canid 3 rx 7; set isotp_supported=1; set isotp_client_con=1; "
                       "set udsserver_supported=1; set uds_server_active=1,0,0; "
                       "set udsclient_supported=1; set uds_client_cnt=0,0,0,2,0");
        const auto text = [&project](const DefineDialect &dialect) {
            return project.text(generateMultiCOBs, dialect, true);
        };
        QCOMPARE(text(DefineProject::classic),
                 "/* COB Definitions */\n#define CO_COB_COUNTS 12, 5, 11, 5, 0\n"
                 "#define CO_COB_CNT \t33\n");
        project.change("set additional_cob_count=1; unline 3; unline 4; unline 5");
        // The CANopen line, and the J1939 line, count the addition themselves as well.
        QCOMPARE(text(DefineProject::v4), "/* COB Definitions */\n#define CORE_COB_COUNTS 14, 7\n"
                                          "#define CORE_COB_CNT \t21\n");
    }

    void countsOfTargetsAreBounded()
    {
        DefineProject project;
        project.change("set all_targets=1; set targetsettings_cnt=4294967295");
        QVERIFY(project.text(generateHardwareDefines).size() < 100000);
    }

    void virtualObjects()
    {
        DefineProject project;
        project.change("line 2 1; var 2000 0; put 2000:0 kind 3; put 2000:0 type 5; "
                       "array 2001 4; put 2001:1 kind 3; put 2001:2 kind 3; put 2001:3 kind 3; "
                       "put 2001:4 kind 3; var 2002 x; put 2002:0 kind 3; put 2002:0 type 9; "
                       "var c000 0; put c000:0 kind 3; var 2/2000 0; put 2/2000:0 kind 3; "
                       "put 2/2000:0 type 22; var 2/2001 0");
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
