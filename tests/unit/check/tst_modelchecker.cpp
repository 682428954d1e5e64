// The check of the model: each rule with a case that fires and its nearest neighbour that is
// silent. The cases change a project without findings, and tell all texts that follow.
#include "tests/unit/check/modelfixture.h"

#include <QLoggingCategory>
#include <QSet>
#include <QTest>

using Sub = Model::Sub;
using Code = Model::ObjectCode;
using Setup = std::function<void(Model &)>;
Q_DECLARE_METATYPE(Setup)

namespace
{

const QString E = "<strong>Error: </strong>";
const QString R = "<strong><font color='red'>Error: </font></strong>";
const QString W = "Warning: ";
const QString S = "<strong>Warning: </strong>";
const QString H = "<strong>Hint: </strong>";
const QStringList kSilent;

const QString kDynamicGranularity =
    E + "Dynamic mapping cannot be used with a granularity of 0. Correct device description "
        "settings or PDO mapping.";
const QString kCobAdvice =
    "Enable CANopen Stack Settings -> Overwrite pre-defined connection set and call "
    "userOverwriteCobIdSettings() to use these COB-ID settings.\n\n";

void addColumns()
{
    QTest::addColumn<Setup>("setup");
    QTest::addColumn<QStringList>("texts");
}

void row(const char *name, const Setup &setup, const QStringList &texts)
{
    QTest::newRow(name) << setup << texts;
}

/// A mapping object's only entry, and the object behind it.
Setup mapped(quint16 mapping, const QString &entry, quint16 type, const QString &access)
{
    return [=](Model &m) {
        m.variable(0x2001, type, access);
        m.value(mapping, 1, entry);
        m.general("bitwise_mapping=1");
        m.granularity(0, "1");
    };
}

/// A value of object 0x2000 with its limits.
Setup limited(quint16 type, const QString &low, const QString &value, const QString &high)
{
    return [=](Model &m) {
        Sub sub = makeSub("Value", type, value);
        sub.accessType = "rw";
        sub.pdoMapping = PDOMapping(PDOMappingType::Optional);
        sub.implementation = 2;
        sub.varName = "v";
        sub.limitInEds = !low.isEmpty();
        sub.lowLimit = low;
        sub.upLimit = high;
        m.object(0x2002, Code::Var);
        m.store.addSubIndex(0, 0x2002, 0, sub);
    };
}

} // namespace

class tst_ModelChecker : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { QLoggingCategory::setFilterRules("tessarine.*=false"); }

    void init()
    {
        QCoreApplication::setApplicationName("CANopen Tessarine");
        QCoreApplication::setApplicationVersion("3.11.2");
    }

    void object_data()
    {
        addColumns();
        row(
            "sound", [](Model &) {}, kSilent);
        row("empty_array", [](Model &m) { m.object(0x2001, Code::Array); },
            {E + "Object 0x2001: This array does not contain any sub-indices"});
        row(
            "empty_variable", [](Model &m) { m.object(0x2001, Code::Var); }, kSilent);
        row("count_wrong", [](Model &m) { m.value(0x1018, 0, "2"); },
            {"<i>Corrected: Object 0x1018</i>: The value of subindex 0 does not fit to the "
             "highest subindex."});
        row("count_cut_to_a_byte", [](Model &m) { m.value(0x1018, 0, "0x103"); },
            {E + "Object 0x1018-0x00: The values of the limits or defaultvalue does to fit to the "
                 "datatype."});
        row("count_and_constant",
            [](Model &m) {
                m.value(0x1018, 0, "2");
                m.set(0x1018, 0, &Sub::implementation, 0);
            },
            {"<i>Corrected: Object 0x1018</i>: The value of subindex 0 does not fit to the "
             "highest subindex.",
             "<i>Corrected: Object 0x1018-0</i>:'Managed Const' is used as implementation type "
             "for this subindex."});
        row(
            "corrections_off",
            [](Model &m) {
                m.value(0x1018, 0, "2");
                m.set(0x1018, 0, &Sub::implementation, 0);
                m.user("disableautocorrection", true);
            },
            kSilent);
        row(
            "virtual_constant", [](Model &m) { m.set(0x1018, 0, &Sub::implementation, 3); },
            kSilent);
        row(
            "error_list",
            [](Model &m) {
                m.variable(0x1014, 7, "ro");
                m.record(0x1003, {"0"});
                m.value(0x1003, 0, "0");
                m.set(0x1003, 0, &Sub::implementation, 0);
            },
            kSilent);
        row(
            "multiplexed_mapping", [](Model &m) { m.value(0x1600, 0, "254"); }, kSilent);
        row(
            "dynamic_mapping",
            [](Model &m) {
                m.record(0x1600, {"0x20000008", "0x20000008"}, "rw");
                m.value(0x1600, 0, "1");
            },
            kSilent);
        row("count_not_in_eds", [](Model &m) { m.set(0x1018, 0, &Sub::defaultInEds, false); },
            {E + "Object 0x1018-0:The 'default value' flag must be set for this subindex.",
             W + "Object 0x1018-0:The defaultvalue of this subindex should be written into the "
                 "EDS/XDD file."});
        row("count_always_in_eds",
            [](Model &m) {
                m.set(0x1018, 0, &Sub::defaultInEds, false);
                m.set(0x1018, 0, &Sub::writeDefaultToEds, 2);
            },
            {E + "Object 0x1018-0:The 'default value' flag must be set for this subindex."});
        row("nameless", [](Model &m) { m.store.setIndexName(0, 0x2000, ""); },
            {E + "Object 0x2000: The object does not have a name. (Required for EDS)"});
        row("variable_with_members",
            [](Model &m) { m.store.addSubIndex(0, 0x2000, 1, makeSub("", 5, "0")); },
            {E + "Object 0x2000: The object is a VARIABLE but has multiple subindices."});
        row(
            "below_communication_area", [](Model &m) { m.object(0x0FFF, Code::Array); }, kSilent);
    }
    void object() { checkLine(); }

    void subindex_data()
    {
        addColumns();
        row("limits_unchecked",
            [](Model &m) {
                limited(5, "0", "1", "2")(m);
                m.general("limit_check=2");
            },
            {W + "Object 0x2002-0x00: Limit Check is activated, but it is deactivated in the "
                 "global settings."});
        row(
            "no_limits",
            [](Model &m) {
                limited(5, "", "1", "")(m);
                m.general("limit_check=0");
            },
            kSilent);
        row("nameless_member", [](Model &m) { m.set(0x1018, 3, &Sub::name, QString()); },
            {E + "Object 0x1018-0x03: The object does not have a name. (Required for EDS)"});
        row(
            "nameless_variable", [](Model &m) { m.set(0x2000, 0, &Sub::name, QString()); },
            kSilent);
        for (const auto &name : {"a b", "a,b", "a;b"})
            row(name, variableNamed(name),
                {E + "Object 0x2000-0x00: The variable name contains invalid characters like "
                     "spaces or commas."});
        row("no_variable_name", variableNamed(""),
            {E + "Object 0x2000-0x00: The variable name is missing."});
        row("array_element", variableNamed("a[1].b"), kSilent);
        row("access_case", [](Model &m) { m.set(0x2000, 0, &Sub::accessType, QString("Rw")); },
            {E + "Object 0x2000-0x00: The access type 'Rw' is invalid. Use ro, rw, const, wo, "
                 "rww or rwr instead."});
        row("access_with_place_holder",
            [](Model &m) { m.set(0x1017, 0, &Sub::accessType, QString("%2")); },
            {E + "Object 0x1017-0x00: The access type '%2' is invalid. Use ro, rw, const, wo, "
                 "rww or rwr instead."});
        row("writable_constant", [](Model &m) { m.set(0x1017, 0, &Sub::implementation, 1); },
            {E + "Object 0x1017-0x00: The implementation type is Managed Const, but the access "
                 "type allows write access."});
        row(
            "read_only_constant", [](Model &m) { m.set(0x1001, 0, &Sub::implementation, 1); },
            kSilent);
        row("octet_string", [](Model &m) { m.variable(0x2001, 10, "ro"); },
            {E + "Object 0x2001-0x00: The implementation type 'Managed Variable' is not possible "
                 "for octet strings."});
        row("visible_string", [](Model &m) { m.variable(0x2001, 9, "ro"); },
            {E + "Object 0x2001-0x00: The implementation type 'Managed Variable' is not possible "
                 "for visible strings. Use 'Managed Const' or 'Variable' instead."});
        row("utf8_string", [](Model &m) { m.variable(0x2001, 124, "ro"); },
            {E + "Object 0x2001-0x00: The implementation type 'Managed Variable' is not possible "
                 "for UTF8 strings. Use 'Managed Const' or 'Variable' instead."});
        row("constant_string", limited(9, "5", "text", "1"), kSilent);
        const QString unfit =
            E + "Object 0x2002-0x00: The values of the limits or defaultvalue does to fit to the "
                "datatype.";
        const QString outside =
            E + "Object 0x2002-0x00: The defaultvalue is not in the range of the limits.";
        row("default_unfit", limited(5, "", "256", ""), {unfit});
        row("default_fits", limited(5, "", "0xFF", ""), kSilent);
        row("limit_unfit", limited(2, "-129", "0", "127"), {unfit});
        row("limit_unused", limited(2, "", "-128", "300"), kSilent);
        row("domain", limited(15, "5", "-1", "1"), kSilent);
        row("unknown_type", limited(0, "", "1", ""),
            {E + "Object 0x2002-0x00: Unknown or unsupported datatype."});
        row("default_below", limited(3, "-5", "-6", "5"), {outside});
        row("default_at_limits", limited(3, "-0x5", "-5", "-5"), kSilent);
        row("default_above", limited(124, "0", "6", "5"), {outside});
        row("default_no_number", limited(124, "1", "text", "5"), kSilent);
        row("open_upper_end", limited(5, "1", "0", QString(QChar(0xFFFF))), kSilent);
    }
    void subindex() { checkLine(); }

    void ranges()
    {
        struct Range {
            int type;
            const char *below, *lowest, *highest, *above;
        };
        for (const Range &r : {Range{1, "-1", "0", "1", "2"},
                               {2, "-129", "-128", "127", "128"},
                               {3, "-32769", "-0x8000", "32767", "0x8000"},
                               {4, "-2147483649", "-2147483648", "2147483647", "2147483648"},
                               {6, "-1", "0", "65535", "65536"},
                               {7, "-1", "0", "0xffffffff", "0x100000000"},
                               {8, "-2147483649", "-2147483648", "1e9", nullptr},
                               {16, "-1", "0", "9223372036854775807", nullptr},
                               {21, nullptr, "-9223372036854775808", "0xffffffffffffffff", nullptr},
                               {22, "-1", "0", "16777215", "16777216"},
                               {24, "-1", "0", "1099511627775", "1099511627776"},
                               {25, "-1", "0", "281474976710655", "281474976710656"},
                               {200, "-1", "0", "text", nullptr}}) {
            const auto type = static_cast<CAN::CANopenDataType>(r.type);
            QVERIFY(ModelChecker::checkValues(type, {r.lowest, r.highest}));
            QVERIFY(!r.below || !ModelChecker::checkValues(type, {r.lowest, r.below}));
            QVERIFY(!r.above || !ModelChecker::checkValues(type, {r.above, r.lowest}));
        }
        QVERIFY(ModelChecker::checkValues(CAN::CANopenDataType::Boolean, {}));
    }

    void helpers()
    {
        qint64 low = 0;
        qint64 high = 0;
        const auto limits = [&](quint8 bits, bool isUnsigned) {
            return ModelChecker::getLimitsByBits(bits, isUnsigned, low, high)
                       ? QString("%1..%2").arg(low).arg(high)
                       : QString();
        };
        QCOMPARE(limits(8, false), QString("-128..127"));
        QCOMPARE(limits(5, true), QString("0..31"));
        QCOMPARE(limits(64, false), QString("-9223372036854775808..9223372036854775807"));
        QCOMPARE(limits(64, true), QString("0..9223372036854775807"));
        QCOMPARE(limits(0, false), QString("0..0"));

        const QMap<QString, QString> cobIds = {{"$NodeId+0x180", "$NodeId+0x80000180"},
                                               {"0xC0000180", "0xC0000180"},
                                               {" 0x1aB ", "0x800001ab"},
                                               {"384", "384"},
                                               {"$nodeid+$nodeid+0x1", "$nodeid+0x80000001"}};
        for (auto it = cobIds.cbegin(); it != cobIds.cend(); ++it)
            QCOMPARE(ModelChecker::disableCob(it.key()), it.value());
    }

    void project_data()
    {
        addColumns();
        const QString uds = R + "UDS server and UDS client together on one line is not possible.";
        const QString block = R + "CANopen SDO block size may not exceed 127.";
        const QString timer = R + "Timer interval not set in Common Settings -> Hardware/Target.";
        const auto settings = [](const QStringList &list, int lines = 1) {
            return [=](Model &m) {
                for (int line = 1; line < lines; ++line)
                    m.store.addNode(quint8(line), ObjectDataBase::NODE_DATA_T());
                m.store.addNode(32, ObjectDataBase::NODE_DATA_T());
                for (const QString &setting : list)
                    m.general(setting);
            };
        };
        const QString server = "udsserver_supported=1";
        const QString client = "udsclient_supported=2";
        row("uds_single", settings({server, client}), {uds});
        row("uds_server_only", settings({server, "udsclient_supported=0"}), kSilent);
        row("uds_apart",
            settings({server, client, "uds_server_active=1,0", "uds_client_cnt=0,1"}, 2), kSilent);
        row("uds_together",
            settings({server, client, "uds_server_active=0,1", "uds_client_cnt=0,0x2"}, 2), {uds});
        row("block_size", settings({"sdo_blocktransfer_block_size=0x80"}), {block});
        row("block_size_127", settings({"sdo_blocktransfer_block_size=127"}), kSilent);
        row("block_size_byte", settings({"sdo_blocktransfer_block_size=256"}), kSilent);
        row("all",
            settings({server, client, "sdo_blocktransfer_block_size=255", "co_timer_interval="}),
            {uds, block, timer});
    }
    void project()
    {
        QFETCH(Setup, setup);
        QFETCH(QStringList, texts);
        Model model;
        setup(model);
        const Outcome outcome =
            run([&](ModelChecker &c) { return c.startGlobalCheck(&model.store); });
        QCOMPARE(outcome.texts, texts);
        QCOMPARE(outcome.errors, texts.size());
        QCOMPARE(outcome.lines, QSet<int>(texts.isEmpty() ? QSet<int>() : QSet<int>{-1}));
    }

    void upgrade_data()
    {
        QTest::addColumn<QString>("version");
        QTest::addColumn<QString>("application");
        QTest::addColumn<QStringList>("texts");
        const QString add = H + "Add <font color='red'>";
        const QString end = "</font> to your project or Makefile.";
        const QString canopen = "CANopen Tessarine";
        const QString other = "CAN Tessarine";
        const QStringList init = {add + "uds_init.c" + end};
        QTest::newRow("3.0") << "3.0" << canopen
                             << QStringList{add + "co_common.c and co_memcpy.c" + end};
        QTest::newRow("3.6_other")
            << "3.6.9" << other
            << QStringList{add + "co_common.c, co_memcpy.c and co_mapping.c" + end};
        QTest::newRow("3.7") << "3.7" << canopen << QStringList{add + "co_memcpy.c" + end} + init;
        QTest::newRow("3.8_other")
            << "3.8" << other << QStringList{add + "co_memcpy.c and co_mapping.c" + end} + init;
        for (const char *version : {"", "3.9", "2.5"})
            QTest::newRow(version) << version << canopen << kSilent;
    }
    void upgrade()
    {
        QFETCH(QString, version);
        QFETCH(QString, application);
        Model model;
        model.general("udsclient_supported=1");
        model.store.setMiscSettingsValue("PreviousToolVersion", version);
        QCoreApplication::setApplicationName(application);
        const Outcome outcome =
            run([&](ModelChecker &c) { return c.startGlobalCheck(&model.store); });
        QTEST(outcome.texts, "texts");
        QCOMPARE(outcome.errors, 0);
        QCOMPARE(model.store.getMiscSettingsValue("PreviousToolVersion"),
                 outcome.texts.isEmpty() ? version : QString());
    }

    void stack_data()
    {
        addColumns();
        const QString cannot = "Cannot check if generated code fits to installed stack/framework.";
        row("no_path", [](Model &m) { m.user("costackpath", ""); },
            {"Info: Path to protocol stack not specified. " + cannot,
             "Specify path to protocol stack at Options -> Settings."});
        row("path_of_sibling",
            [](Model &m) {
                m.user("costackpath", "");
                m.user("costackpath", "/none", "CANopen Olvenmark 2.3");
                m.user("costackpath", "/else", "CANopen Olvenmark 2.4");
            },
            {"Info: No *_featureinfo_*.xml file found in protocol stack folder /none. " + cannot});
        row("hand_written_setting",
            [](Model &m) {
                m.user("costackpath", "");
                QFile file(QSettings("Korvel", "CANopen Tessarine").fileName());
                file.open(QIODevice::WriteOnly);
                file.write("[General]\ncostackpath=/hand\n");
            },
            {"Info: No *_featureinfo_*.xml file found in protocol stack folder /hand. " + cannot});
        row("no_version", [](Model &m) { m.feature("a", ""); },
            {R + "Version of installed stack does not fit. It requires an older version of the "
                 "tool. Cannot generate files."});
        row("first_misfit",
            [](Model &m) {
                m.feature("b", "<required_tool_version> 3.11 </required_tool_version>");
                m.feature("c", "<required_tool_version>3.12</required_tool_version>");
                m.feature("d", "");
            },
            {R + "Version of installed stack does not fit. It requires tool version 3.12. Cannot "
                 "generate files."});
        row(
            "four_parts", [](Model &) { QCoreApplication::setApplicationVersion("3.11.2.7"); },
            kSilent);
        row(
            "two_parts", [](Model &) { QCoreApplication::setApplicationVersion("3.11"); }, kSilent);
    }
    void stack() { checkLine(); }

    void lineSettings_data()
    {
        addColumns();
        const auto setting = [](const QString &text) { return [=](Model &m) { m.general(text); }; };
        const QString function = E +
                                 "CANopen basic Stack Settings: The name of the NodeId function "
                                 "may not include a ";
        row("no_node_id", setting("co_node_id="),
            {E + "CANopen basic Stack Settings: No Node-Id specified for line 0: Specify a number "
                 "between 1 and 127, or 255 for LSS or a function name like e.g. readDipSwitch in "
                 "the line below."});
        row(
            "node_id_function",
            [](Model &m) {
                m.general("co_node_id=,1");
                m.general("co_node_id_fct=readSwitch,");
            },
            kSilent);
        row("function_call", setting("co_node_id_fct=readSwitch()"),
            {function + "(.", function + ")."});
        row("call_of_other_line", setting("co_node_id_fct=readSwitch,other()"), kSilent);
        row("receive_buffer", setting("receivebuffersize=,10"),
            {E + "Common Settings: CAN receive buffer size must be specified individually for each "
                 "line."});
        row("transmit_buffer", setting("transmitbuffersize=0x10"),
            {E + "Common Settings: CAN transmit buffer size must be specified individually for "
                 "each line."});
        row("flying_master_first_line", setting("nmtmaster=2"), kSilent);
    }
    void lineSettings() { checkLine(); }

    void secondLine_data()
    {
        QTest::addColumn<QString>("masters");
        QTest::addColumn<QStringList>("texts");
        QTest::newRow("one") << "1"
                             << QStringList{E + "General Settings: The ML master/slave settings "
                                                "size must be specified individually for each "
                                                "line. (e.g 0,1)"};
        QTest::newRow("list") << "1,0" << kSilent;
    }
    void secondLine()
    {
        QFETCH(QString, masters);
        Model model;
        model.store.addNode(1, ObjectDataBase::NODE_DATA_T());
        model.identify(1);
        model.granularity(1, "8");
        for (const QString &setting :
             {QString("co_node_id=1,2"), QString("receivebuffersize=1,2"),
              QString("transmitbuffersize=1,2"), QString("nmtmaster=2"), "co_ml_ms=" + masters})
            model.general(setting);
        bool corrected = false;
        const Outcome outcome =
            run([&](ModelChecker &c) { return c.startCANopenCheck(1, &model.store, corrected); });
        QTEST(outcome.texts, "texts");
        QCOMPARE(outcome.errors, outcome.texts.size());
    }

    void communication_data()
    {
        addColumns();
        const auto without = [](quint16 index) {
            return [=](Model &m) { m.store.delIndex(0, index, true); };
        };
        const QString noArray = E + "Object 0x1000 (Device Type) must be an ARRAY according to the "
                                    "CANopen FD specification.";
        row("no_device_type", without(0x1000),
            {E + "Object 0x1000 (Device Type) must be a VARIABLE according to the CANopen "
                 "specification.",
             E + "Object 0x1000 (Device Type) does not exist, but it is mandatory according to "
                 "CANopen specification."});
        row("fd_variable", [](Model &m) { m.general("canfd_supported=1"); }, {noArray});
        row(
            "fd_array",
            [](Model &m) {
                m.general("canfd_supported=1");
                m.record(0x1000, {"0"});
                m.object(0x1000, Code::Array);
            },
            kSilent);
        row("no_error_register", without(0x1001),
            {E + "Object 0x1001 (Error Register) does not exist, but it is mandatory according to "
                 "CANopen specification."});
        row("no_error_control", without(0x1017),
            {E + "Object 0x1017 (Producer Heartbeat) and 0x100C (Guard Time) do not exist, but one "
                 "of them is mandatory."});
        row(
            "guard_time",
            [](Model &m) {
                m.store.delIndex(0, 0x1017, true);
                m.variable(0x100C, 6, "rw");
            },
            kSilent);
        const auto slaves = [](const QString &count, bool withObject = true) {
            return [=](Model &m) {
                m.general("max_slave_assignment=" + count);
                if (withObject)
                    m.record(0x1F81, {"0", "0"});
            };
        };
        row("too_many_slaves", slaves(" 3 "),
            {E + "Object 0x1f81: Value of 'max slave Assigment count' may not exceed number of "
                 "subindices of object 0x1f81."});
        row("slaves_fit", slaves("2"), kSilent);
        row("slaves_without_object", slaves("3", false), kSilent);
        for (const quint16 index : {0x1016, 0x1028, 0x1F81})
            row(QByteArray("gap_" + QByteArray::number(index, 16)).constData(),
                [=](Model &m) {
                    m.record(index, {"1", "1", "1"});
                    m.store.delSubIndex(0, index, 2, true);
                },
                {E + "Object 0x" + QString::number(index, 16) + " may not have gaps."});
        row(
            "gap_elsewhere", [](Model &m) { m.store.delSubIndex(0, 0x1018, 2, true); }, kSilent);
        row("store_values",
            [](Model &m) {
                m.record(0x1010, {"1", "2", "", "2"});
                m.record(0x1011, {"0x2"});
            },
            {storeText("1010:2", "0 and 1"), storeText("1011:1", "0 and 1")});
        row("store_values_by_application",
            [](Model &m) {
                m.general("1010autostore_by_application=1");
                m.record(0x1010, {"3", "4"});
            },
            {storeText("1010:2", "0 and 3")});
        row("master", [](Model &m) { m.general("nmtmaster=1"); },
            {W + "Object 0x102a: The object 0x102A (NMT inhibit time) is highly recommended for "
                 "masters. It may be added via 'Add Communication Service'."});
        row(
            "master_with_inhibit_time",
            [](Model &m) {
                m.general("nmtmaster=1");
                m.variable(0x102A, 6, "rw");
            },
            kSilent);
        const QString noVendor =
            E + "Object 0x1018-0x01: The value of subindex 1 (vendor-ID) is empty.";
        row("no_identity", without(0x1018), {noVendor});
        row("empty_identity",
            [](Model &m) {
                m.record(0x1018, {"", "", ""});
            },
            {noVendor, E + "Object 0x1018: The value of subindex 2 (product code) is empty.",
             E + "Object 0x1018: The value of subindex 3 (revision number) is empty."});
        row(
            "identity_of_zeros",
            [](Model &m) {
                m.record(0x1018, {"0", "0", "0", "0"});
            },
            kSilent);
        row("makers_vendor_id", [](Model &m) { m.value(0x1018, 1, "793"); },
            {"<strong>Warning: Object 0x1018-0x01: The vendor-ID 0x319 (Korvel) may not be used "
             "for production. </strong>"});
        row("constant_serial_number",
            [](Model &m) {
                m.record(0x1018, {"1", "1", "1", "1"});
                m.set(0x1018, 4, &Sub::implementation, 1);
            },
            {"<strong>Warning</strong>: Object 0x1018: The implementation type of subindex 4 "
             "(serial number) is 'Managed Const'. This is not useful in most cases."});
        row("errors_without_emergency", [](Model &m) { m.record(0x1003, {"0"}); },
            {E + "Object 0x1003: This object can only be used, if object 0x1014 exists as well."});
        row("emergency_consumers",
            [](Model &m) {
                m.record(0x1028, {"0x81", "0x0"});
            },
            {E + "Object 0x1028-2: The value of this sub index may not be 0x00000000."});
    }
    void communication() { checkLine(); }

    void mapping_data()
    {
        addColumns();
        const QString m1600 = E + "Object 0x1600: ";
        const QString m1a00 = E + "Object 0x1a00: ";
        row("no_parameters",
            [](Model &m) {
                m.store.delIndex(0, 0x1400, true);
                m.store.delIndex(0, 0x1800, true);
            },
            {m1600 + "The corresponding PDO communication parameter object 0x1400 does not exist.",
             m1a00 +
                 "The corresponding PDO communication parameter object 0x1800 does not exist."});
        row("no_entry", [](Model &m) { m.store.delSubIndex(0, 0x1600, 1, true); },
            {"<i>Corrected: Object 0x1600</i>: The value of subindex 0 does not fit to the highest "
             "subindex.",
             E + "Object 0x1600 of line 0: The PDO mapping table does not contain any mapped "
                 "object."});
        row("mixed_access", [](Model &m) { m.set(0x1600, 1, &Sub::accessType, QString("ro")); },
            {m1600 +
             "All subindices of a PDO mapping object must have the same access type. (const "
             "for static mapping or rw for dynamic mapping"});
        row("rpdo_of_nothing", [](Model &m) { m.value(0x1600, 1, "0x20010008"); },
            {m1600 + "The mapped object 0x2001:00 does not exist.",
             m1600 + "The access right of the mapped object 0x2001:00 does not fit for an RPDO."});
        row("tpdo_of_nothing", [](Model &m) { m.value(0x1A00, 1, "0x2000ff08"); },
            {m1a00 + "The mapped object 0x2000:ff does not exist."});
        row(
            "dummies", [](Model &m) { m.value(0x1600, 1, "0x00070020"); }, kSilent);
        row("above_dummies", [](Model &m) { m.value(0x1A00, 1, "0x00080020"); },
            {m1a00 + "The mapped object 0x0008:00 does not exist."});
        row("not_mappable", [](Model &m) { m.set(0x2000, 0, &Sub::pdoMapping, PDOMapping()); },
            {m1600 + "PDO mapping is not allowed for object 0x2000:00.",
             m1a00 + "PDO mapping is not allowed for object 0x2000:00."});
        row("size_too_small", mapped(0x1600, "0x20010008", 6, "rw"),
            {W + "Object 0x1600: The size of the mapped object 0x2001:00 is too small."});
        row("size_too_large", mapped(0x1600, "0x20010011", 6, "rw"),
            {m1600 + "The size of the mapped object 0x2001:00 is too large."});
        for (const char *access : {"ro", "const", "rwr"}) {
            row(QByteArray("rpdo_") + access, mapped(0x1600, "0x20010010", 6, access),
                {m1600 +
                 "The access right of the mapped object 0x2001:00 does not fit for an RPDO."});
            row(QByteArray("tpdo_") + access, mapped(0x1A00, "0x20010010", 6, access), kSilent);
        }
        for (const char *access : {"wo", "rww"}) {
            row(QByteArray("tpdo_") + access, mapped(0x1A00, "0x20010010", 6, access),
                {m1a00 +
                 "The access right of the mapped object 0x2001:00 does not fit for a TPDO."});
            row(QByteArray("rpdo_") + access, mapped(0x1600, "0x20010010", 6, access), kSilent);
        }
        const auto entries = [](const QString &entry, int count, const QString &active) {
            return [=](Model &m) {
                QStringList list;
                for (int i = 0; i < count; ++i)
                    list << entry;
                m.record(0x1600, list, "rw");
                m.value(0x1600, 0, active);
            };
        };
        row("full", entries("0x20000008", 8, "8"), kSilent);
        row("too_long", entries("0x20000008", 9, "9"), {m1600 + "Size of PDO exceeds the limit. "});
        row("inactive_entries", entries("0x20000008", 9, "8"), kSilent);
        row(
            "fd_full",
            [=](Model &m) {
                entries("0x20000008", 64, "64")(m);
                m.general("canfd_supported=1");
                m.record(0x1000, {"0"});
                m.object(0x1000, Code::Array);
            },
            kSilent);
        row("count_too_high", entries("0x20000008", 1, "2"),
            {m1600 + " Invalid number of mapping entries."});
        row("count_is_marker", entries("0x20000008", 1, "254"), kSilent);
        const auto unused = [](quint16 mapping, const QString &access) {
            return [=](Model &m) {
                m.general("overwrite_predef=1");
                m.pdo(mapping - 0x200, "$nodeid+0x180");
                m.record(mapping, {"0x20000008"}, access);
                m.value(mapping, 0, access == "rw" ? "0" : "1");
            };
        };
        row("unused_pdo", unused(0x1A03, "rw"),
            {"<i>Corrected: Object 0x1803</i>: The COB-ID of this PDO has been disabled "
             "($nodeid+0x80000180), because it does not contain active mapping entries."});
        row("unused_fifth_pdo", unused(0x1A04, "rw"), kSilent);
        row("unused_receive_pdo", unused(0x1600, "rw"), kSilent);
        row("used_pdo", unused(0x1A03, "const"), kSilent);
        row(
            "unused_pdo_corrections_off",
            [=](Model &m) {
                unused(0x1A03, "rw")(m);
                m.user("disableautocorrection", true);
            },
            kSilent);
        row("bitwise", [](Model &m) { m.value(0x1600, 1, "0x20000005"); },
            {W + "Object 0x1600: The size of the mapped object 0x2000:00 is too small.",
             S + "Bitwise mapping cannot be used with a granularity of 8. Correct device "
                 "description settings or PDO mapping.",
             E + "Bitwise mapping not enabled in general settings. Correct general settings or PDO "
                 "mapping."});
        row("dynamic_granularity",
            [=](Model &m) {
                entries("0x20000008", 1, "1")(m);
                m.granularity(0, "0");
            },
            {kDynamicGranularity});
        row(
            "static_granularity", [](Model &m) { m.granularity(0, "0"); }, kSilent);
    }
    void mapping() { checkLine(); }

    void pdo_data()
    {
        addColumns();
        row("no_mapping", [](Model &m) { m.store.delIndex(0, 0x1600, true); },
            {E + "Object 0x1400: The corresponding PDO mapping object 0x1600 does not exist."});
        row("not_in_eds",
            [](Model &m) {
                m.set(0x1400, 1, &Sub::writeDefaultToEds, 0);
                m.set(0x1400, 2, &Sub::defaultInEds, false);
                m.set(0x1800, 1, &Sub::defaultInEds, false);
                m.set(0x1800, 1, &Sub::writeDefaultToEds, 2);
            },
            {H + "Subindex 1 of 0x1400 should have its default value in the EDS file.",
             H + "Subindex 2 of 0x1400 should have its default value in the EDS file."});
        const auto timers = [](const QString &inhibit, const QString &event) {
            return [=](Model &m) {
                m.record(0x1800, {"$nodeid+0x180", "255", inhibit, "0", event});
            };
        };
        row("event_timer", timers("100", "10"),
            {S + "Subindex 3 and 5 of 0x1800: Event timer value should be greater than inhibit "
                 "time value."});
        row("event_timer_longer", timers("109", "11"), kSilent);
        row("event_timer_off", timers("100", "0"), kSilent);
        row("srdo_parameters",
            [](Model &m) {
                m.record(0x1301, {"1"});
                m.record(0x1340, {"1"});
                m.record(0x1341, {"1"});
            },
            {E + "Object 0x1301: The corresponding SRDO mapping object 0x1381 does not exist.",
             E + "Object 0x1340: The corresponding SRDO mapping object 0x13c0 does not exist."});
        row("srdo_mapping",
            [](Model &m) {
                m.record(0x1381, {"0x20000008", "0x10180120", "0"});
            },
            {E + "Object 0x1381: The object 0x2000:00 mapped into an SRDO must be an application "
                 "variable.",
             E + "Object 0x1381: The object 0x1018:01 mapped into an SRDO must be an application "
                 "variable.",
             E + "Object 0x1381: The PDO mapping must be enabled for object 0x1018:01 to use it in "
                 "an SRDO.",
             E + "Object 0x1381: The object 0x0000:00 mapped into an SRDO does not exist."});
        row(
            "srdo_mapping_fits",
            [](Model &m) {
                limited(5, "", "0", "")(m);
                m.record(0x13BF, {"0x20020008"});
            },
            kSilent);
        row(
            "srdo_last_mapping", [](Model &m) { m.record(0x13C0, {"0x20030008"}); }, kSilent);
        const auto cobId = [](const QString &text, const QString &overwrite = "0") {
            return [=](Model &m) {
                m.value(0x1400, 1, text);
                m.general("overwrite_predef=" + overwrite);
            };
        };
        const QString other = "-0x01: The COB-ID for this PDO does not follow the pre-defined "
                              "connection set.";
        row("cob_id_number", cobId("0x200"), {W + "Object 0x1400" + other, kCobAdvice});
        row("cob_id_case", cobId("$NODEID+0X200"), kSilent);
        row("cob_id_allowed", cobId("0x200", "1"), kSilent);
        row("cob_id_just_disabled",
            [](Model &m) {
                m.record(0x1A00, {"0x20000008"}, "rw");
                m.value(0x1A00, 0, "0");
            },
            {"<i>Corrected: Object 0x1800</i>: The COB-ID of this PDO has been disabled "
             "($NODEID+0x80000180), because it does not contain active mapping entries.",
             W + "Object 0x1800" + other, kCobAdvice});
    }
    void pdo() { checkLine(); }

    void features_data()
    {
        addColumns();
        const QString unsupported = " not supported by stack version.";
        const QString limit = " in project exceed limit (1) of stack version.";
        row(
            "offered", [](Model &) {}, kSilent);
        row("no_path", [](Model &m) { m.user("costackpath", ""); },
            {"\n<strong><font color='red'>Error: Path to protocol stack not specified. "
             "</font></strong>Cannot check if generated code fits to installed stack/framework.",
             "Info: Specify path to protocol stack at Options -> Settings."});
        row("no_file",
            [](Model &m) {
                m.user("costackpath", "");
                m.user("costackpath", "/3", "CANopen Olvenmark 2.3");
                m.user("costackpath", "/4", "CANopen Olvenmark 2.4");
            },
            {"<strong><font color='red'>Error: No *_featureinfo_*.xml file found in protocol stack "
             "folder /4.</font></strong> Cannot check if generated code fits to installed "
             "stack/framework."});
        row("version", [](Model &m) { m.feature("z", ""); },
            {R + "Version of installed stack does not fit. It requires an older version of the "
                 "tool. Cannot generate files."});
        row("counts",
            [](Model &m) {
                for (const quint16 index : {0x1200, 0x127F, 0x1280, 0x12FF, 0x1401, 0x1801})
                    m.record(index, {"0"});
                m.record(0x1028, {"1", "1"});
                m.record(0x1016, {"1", "1"});
            },
            {R + "Number of SDO servers" + limit, R + "Number of SDO clients" + limit,
             R + "Number of Transmit-PDOs" + limit, R + "Number of Recieve-PDOs" + limit,
             R + "Number of Emergency consumers" + limit,
             R + "Number of Heartbeat consumers" + limit});
        row(
            "second_file",
            [](Model &m) {
                m.record(0x1200, {"0"});
                m.record(0x1201, {"0"});
                m.feature("more", "<required_tool_version>3.11</required_tool_version>"
                                  "<sdo_server>2</sdo_server>");
            },
            kSilent);
        row("slave",
            [](Model &m) {
                bare(m);
                m.general("lss_supported=1");
                m.variable(0x1005, 7, "rw");
                m.value(0x1005, 0, "0x80000080");
            },
            {R + "NMT slave functionality is" + unsupported,
             R + "LSS slave functionality is" + unsupported,
             R + "SYNC consumer functionality is" + unsupported});
        row("master",
            [](Model &m) {
                bare(m);
                m.general("nmtmaster=1");
                m.general("lss_supported=1");
                m.variable(0x1005, 7, "rw");
                m.value(0x1005, 0, "0x40000080");
            },
            {R + "NMT master functionality is" + unsupported,
             R + "LSS master functionality is" + unsupported,
             R + "SYNC producer functionality is" + unsupported});
        row("services",
            [](Model &m) {
                bare(m);
                m.general("nmtmaster=2");
                m.general("bootup_manager=1");
                m.general("config_manager=1");
                m.record(0x13FF, {"0"});
                m.record(0x1600, {"0x20000008"}, "rw");
                m.record(0x1A00, {"0x20000008"}, "rw");
                m.value(0x1A00, 0, "254");
            },
            {R + "SRDO functionality is" + unsupported, R + "Dynamic PDO mapping is" + unsupported,
             R + "MPDOs are" + unsupported,
             R + "CANopen Bootup Manager functionality is" + unsupported,
             R + "CANopen Configuration Manager functionality is" + unsupported});
    }
    void features()
    {
        QFETCH(Setup, setup);
        QFETCH(QStringList, texts);
        Model model;
        model.feature("base", "<required_tool_version>3.11</required_tool_version>"
                              "<sdo_server>1</sdo_server><sdo_client>1</sdo_client>"
                              "<pdo_producer>1</pdo_producer><pdo_consumer>1</pdo_consumer>"
                              "<emcy_consumer>1</emcy_consumer>"
                              "<heartbeat_consumer>1</heartbeat_consumer><nmt_slave>1</nmt_slave>");
        setup(model);
        const Outcome outcome =
            run([&](ModelChecker &c) { return c.startCANopenFeatureCheck(0, &model.store); });
        QCOMPARE(outcome.texts, texts);
        QCOMPARE(outcome.errors, countErrors(texts));
    }

    /// What one step has repaired, a later step that writes the same record keeps.
    void correctionsStay()
    {
        for (const bool withCache : {false, true}) {
            Model model;
            model.value(0x1018, 0, "2");
            model.set(0x1018, 0, &Sub::implementation, 0);
            model.set(0x1018, 0, &Sub::denotation, QString("it's"));
            if (withCache)
                model.store.cacheAllSubs(0, 0);
            bool corrected = false;
            run([&](ModelChecker &c) { return c.startCANopenCheck(0, &model.store, corrected); });
            QVERIFY(corrected);
            model.store.clearAllCachedSubs(); // the rows count, not what is known of them
            QCOMPARE(model.get(0x1018, 0).defaultValue, QString("3"));
            QCOMPARE(int(model.get(0x1018, 0).implementation), 1);
            QCOMPARE(model.get(0x1018, 0).denotation, QString("it's"));
        }
    }

    void findingsTellThePlace()
    {
        Model model;
        model.set(0x1018, 0, &Sub::implementation, 0);
        model.set(0x1018, 3, &Sub::accessType, QString("<b>"));
        ModelChecker checker;
        bool corrected = false;
        checker.startCANopenCheck(0, &model.store, corrected);
        QCOMPARE(checker.findings().size(), 2);
        const Finding first = checker.findings().first();
        QCOMPARE(first.text, QString("Corrected: Object 0x1018-0:'Managed Const' is used as "
                                     "implementation type for this subindex."));
        const Finding second = checker.findings().last();
        QCOMPARE(second.text,
                 QString("Error: Object 0x1018-0x03: The access type '<b>' is invalid. "
                         "Use ro, rw, const, wo, rww or rwr instead."));
        QCOMPARE(QString("%1 %2 %3").arg(second.line).arg(second.index).arg(second.subindex),
                 QString("0 4120 3"));
    }

    /// Runs last: no row of the table is without a case above.
    void everyMessageIsSent()
    {
        if (sent.size() < 20)
            QSKIP("only some of the cases have run");
        QStringList silent;
        for (const Check::MessageRow &message : Check::messages()) {
            if (!sent.contains(static_cast<int>(message.id)))
                silent << Check::ruleName(message.id);
        }
        QCOMPARE(silent, QStringList());
    }

private:
    struct Outcome {
        QStringList texts;
        int errors = 0;
        QSet<int> lines;
    };

    static QString storeText(const QString &place, const QString &range)
    {
        const QString end = range.endsWith('1') ? " Enable CO_AUTO_STORE_HANDLED_BY_APPLICATION to "
                                                  "support other values"
                                                : "";
        return E + "Object 0x" + place + " only default values between " + range +
               " are supported." + end;
    }

    static Setup variableNamed(const QString &name)
    {
        return [=](Model &m) {
            m.set(0x2000, 0, &Sub::implementation, 2);
            m.set(0x2000, 0, &Sub::varName, name);
        };
    }

    /// A stack that knows PDOs, and nothing else.
    static void bare(Model &m)
    {
        m.feature("base", "<required_tool_version>3.11</required_tool_version>"
                          "<pdo_producer>1</pdo_producer><pdo_consumer>1</pdo_consumer>");
    }

    static int countErrors(const QStringList &texts)
    {
        return texts.filter("Error: ").size() - texts.count(kDynamicGranularity);
    }

    Outcome run(const std::function<qint32(ModelChecker &)> &check)
    {
        ModelChecker checker;
        Outcome outcome;
        connect(&checker, &ModelChecker::newError,
                [&outcome](const QString &text) { outcome.texts << text; });
        outcome.errors = check(checker);
        for (const Finding &finding : checker.findings()) {
            sent.insert(static_cast<int>(finding.rule));
            outcome.lines.insert(finding.line);
        }
        return outcome;
    }

    void checkLine()
    {
        QFETCH(Setup, setup);
        QFETCH(QStringList, texts);
        Model model;
        setup(model);
        model.store.cacheAllSubs(0, 0);
        bool corrected = false;
        const Outcome outcome =
            run([&](ModelChecker &c) { return c.startCANopenCheck(0, &model.store, corrected); });
        QCOMPARE(outcome.texts, texts);
        QCOMPARE(outcome.errors, countErrors(texts));
        QCOMPARE(corrected, !texts.filter("Corrected: ").isEmpty());
    }

    QSet<int> sent;
};

QTEST_GUILESS_MAIN(tst_ModelChecker)
#include "tst_modelchecker.moc"
