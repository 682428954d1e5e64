// The check of the model: each rule with a case that fires and its nearest neighbour that is
// silent. The cases change a project without findings, and tell all texts that follow.
#include "tests/fixtures/problemrecorder.h"
#include "tests/unit/check/modelfixture.h"

#include <QLoggingCategory>
#include <QSet>
#include <QTest>

namespace
{

const QString E = "<strong>Error: </strong>";
const QString R = "<strong><font color='red'>Error: </font></strong>";
const QString W = "Warning: ";
const QString S = "<strong>Warning: </strong>";
const QString H = "<strong>Hint: </strong>";
const QString C = "<i>Corrected: ";

const QString kDynamicGranularity =
    E + "Dynamic mapping cannot be used with a granularity of 0. Correct device description "
        "settings or PDO mapping.";

void addColumns()
{
    QTest::addColumn<QStringList>("changes");
    QTest::addColumn<QStringList>("texts");
}

/// Without texts: nothing may be reported.
void row(const char *name, const QStringList &changes, const QStringList &texts = {})
{
    QTest::newRow(name) << changes << texts;
}

int countErrors(const QStringList &texts)
{
    return texts.filter("Error: ").size() - texts.count(kDynamicGranularity);
}

/// An application variable 0x2002 with a default value, and limits if given.
QStringList limited(const QString &type, const QString &value, const QString &low = QString(),
                    const QString &high = QString())
{
    QStringList changes = {"variable 2002 " + type + " rw", "put 2002:0 implementation 2",
                           "put 2002:0 varname v", "put 2002:0 value " + value,
                           "put 2002:0 high " + high};
    if (!low.isEmpty())
        changes << "put 2002:0 low " + low;
    return changes;
}

/// An entry of a mapping object, for an object 0x2001 of that access and 16 bits.
QStringList mapped(const QString &mapping, const QString &entry, const QString &access)
{
    return {"variable 2001 6 " + access, "put " + mapping + ":1 value " + entry};
}

/// A dynamic mapping object of \a count entries of one byte.
QStringList entries(const QString &mapping, int count, const QString &active)
{
    return {"record " + mapping + " rw" + QString(" 0x20000008").repeated(count),
            "put " + mapping + ":0 value " + active};
}

} // namespace

class tst_ModelChecker : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { QLoggingCategory::setFilterRules("tessarine.*=false"); }

    void object_data()
    {
        // clang-format off
        addColumns();
        const QString count = C + "Object 0x1018</i>: The value of subindex 0 does not fit to the highest subindex.";
        const QString constant = C + "Object 0x1018-0</i>:'Managed Const' is used as implementation type for this subindex.";
        const QString flag = E + "Object 0x1018-0:The 'default value' flag must be set for this subindex.";
        row("sound", {});
        row("empty_array", {"object 2001 8"}, {E + "Object 0x2001: This array does not contain any sub-indices"});
        row("empty_variable", {"object 2001 7"});
        row("count_wrong", {"put 1018:0 value 2"}, {count});
        row("no_subindex_0", {"remove 1018:0"}, {count});
        row("count_cut_to_a_byte", {"put 1018:0 value 0x103"}, {E + "Object 0x1018-0x00: The values of the limits or defaultvalue does to fit to the datatype."});
        row("count_and_constant", {"put 1018:0 value 2", "put 1018:0 implementation 0"}, {count, constant});
        row("corrections_off", {"put 1018:0 value 2", "put 1018:0 implementation 0", "user disableautocorrection true"});
        row("virtual_constant", {"put 1018:0 implementation 3"});
        row("error_list", {"variable 1014 7 ro", "record 1003 ro 0", "put 1003:0 value 0", "put 1003:0 implementation 0"});
        row("multiplexed_mapping", {"put 1600:0 value 254"});
        row("dynamic_mapping", entries("1600", 2, "1"));
        row("count_not_in_eds", {"put 1018:0 in_eds 0"}, {flag, W + "Object 0x1018-0:The defaultvalue of this subindex should be written into the EDS/XDD file."});
        row("count_always_in_eds", {"put 1018:0 in_eds 0", "put 1018:0 write_to_eds 2"}, {flag});
        row("variable_with_members", {"record 2001 ro 0", "object 2001 7"}, {E + "Object 0x2001: The object is a VARIABLE but has multiple subindices."});
        row("below_communication_area", {"object fff 8"});
        // clang-format on
    }
    void object() { checkLine(); }

    void subindex_data()
    {
        // clang-format off
        addColumns();
        const QString invalid = E + "Object 0x2000-0x00: The variable name contains invalid characters like spaces or commas.";
        const QString unfit = E + "Object 0x2002-0x00: The values of the limits or defaultvalue does to fit to the datatype.";
        const QString outside = E + "Object 0x2002-0x00: The defaultvalue is not in the range of the limits.";
        const QString variable = "put 2000:0 implementation 2";
        row("limits_unchecked", limited("5", "1", "0", "2") << "set limit_check=2", {W + "Object 0x2002-0x00: Limit Check is activated, but it is deactivated in the global settings."});
        row("no_limits", limited("5", "1") << "set limit_check=0");
        row("nameless_member", {"put 1018:3 name "}, {E + "Object 0x1018-0x03: The object does not have a name. (Required for EDS)"});
        row("nameless_variable", {"put 2000:0 name "});
        for (const char *name : {"a b", "a,b", "a;b"}) row(name, {variable, QString("put 2000:0 varname ") + name}, {invalid});
        row("no_variable_name", {variable}, {E + "Object 0x2000-0x00: The variable name is missing."});
        row("array_element", {variable, "put 2000:0 varname a[1].b"});
        row("access_case", {"put 1017:0 access Rw"}, {E + "Object 0x1017-0x00: The access type 'Rw' is invalid. Use ro, rw, const, wo, rww or rwr instead."});
        row("access_with_place_holder", {"put 1017:0 access %2"}, {E + "Object 0x1017-0x00: The access type '%2' is invalid. Use ro, rw, const, wo, rww or rwr instead."});
        row("writable_constant", {"put 1017:0 implementation 1"}, {E + "Object 0x1017-0x00: The implementation type is Managed Const, but the access type allows write access."});
        row("read_only_constant", {"put 1001:0 implementation 1"});
        row("octet_string", {"variable 2001 10 ro"}, {E + "Object 0x2001-0x00: The implementation type 'Managed Variable' is not possible for octet strings."});
        row("visible_string", {"variable 2001 9 ro"}, {E + "Object 0x2001-0x00: The implementation type 'Managed Variable' is not possible for visible strings. Use 'Managed Const' or 'Variable' instead."});
        row("utf8_string", {"variable 2001 124 ro"}, {E + "Object 0x2001-0x00: The implementation type 'Managed Variable' is not possible for UTF8 strings. Use 'Managed Const' or 'Variable' instead."});
        row("string_of_application", limited("9", "text", "5", "1"));
        row("default_unfit", limited("5", "256"), {unfit});
        row("limit_unfit", limited("2", "0", "-129", "127"), {unfit});
        row("limit_unused", limited("2", "-128", "", "300"));
        row("domain", limited("15", "-1", "5", "1"));
        row("unknown_type", limited("0", "1"), {E + "Object 0x2002-0x00: Unknown or unsupported datatype."});
        row("structure_type", limited("64", "1"), {E + "Object 0x2002-0x00: Unknown or unsupported datatype."});
        row("structure_type_virtual", limited("64", "1") << "put 2002:0 implementation 3");
        row("unassigned_constant", limited("130", "1") << "put 2002:0 access const" << "put 2002:0 implementation 1", {E + "Object 0x2002-0x00: Unknown or unsupported datatype."});
        row("last_type_of_the_tool", limited("129", "1"));
        row("type_without_array", limited("17", "1"));
        row("default_below", limited("3", "-6", "-5", "5"), {outside});
        row("default_at_limits", limited("3", "-5", "-0x5", "-5"));
        row("default_above", limited("124", "6", "0", "5"), {outside});
        row("default_no_number", limited("124", "text", "1", "5"));
        row("open_upper_end", limited("5", "0", "1", QChar(0xFFFF)));
        // clang-format on
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
                               {25, "-1", "0", "281474976710655", "281474976710656"}}) {
            const auto type = static_cast<CAN::CANopenDataType>(r.type);
            QVERIFY(ModelChecker::checkValues(type, {r.lowest, r.highest}));
            QVERIFY(!r.below || !ModelChecker::checkValues(type, {r.lowest, r.below}));
            QVERIFY(!r.above || !ModelChecker::checkValues(type, {r.above, r.lowest}));
        }
    }

    void limitsByBits()
    {
        qint64 low = 0;
        qint64 high = 0;
        const auto limits = [&](quint8 bits, bool isUnsigned) {
            ModelChecker::getLimitsByBits(bits, isUnsigned, low, high);
            return QString("%1..%2").arg(low).arg(high);
        };
        QCOMPARE(limits(8, false), QString("-128..127"));
        QCOMPARE(limits(5, true), QString("0..31"));
        QCOMPARE(limits(64, false), QString("-9223372036854775808..9223372036854775807"));
        QCOMPARE(limits(64, true), QString("0..9223372036854775807"));
    }

    void safeGroups()
    {
        Model model;
        ModelChecker checker;
        const auto isSafe = [&](const QStringList &types) {
            model.store.executeSql("delete from SPNs0");
            for (int i = 0; i < types.size(); ++i)
                model.store.executeSql(
                    QString("insert into SPNs0 (pgnnumber,spnnumber,direction,pos,"
                            "datatype) values(100,%1,85,%2,%3)")
                        .arg(QString::number(9 - i), QString::number(i), types.at(i)));
            checker.startGlobalCheck(&model.store);
            return checker.checkSafePGNStructure(0, 100, 0x55);
        };
        QVERIFY(isSafe({}));
        QVERIFY(isSafe({"5", "6", "7", "22"}));
        QVERIFY(isSafe({"102", "100", "107"})); // 10 bits from bit 6 on
        QVERIFY(!isSafe({"102", "107"}));
        QVERIFY(!isSafe({"100", "5"}));
        QVERIFY(!isSafe({"4"}));
    }

    void disabledCobIds()
    {
        const QMap<QString, QString> cobIds = {{"$NodeId+0x180", "$NodeId+0x80000180"},
                                               {"0xC0000180", "0xC0000180"},
                                               {" 0x1aB ", "0x800001ab"},
                                               {"384", "384"}};
        for (auto it = cobIds.cbegin(); it != cobIds.cend(); ++it)
            QCOMPARE(ModelChecker::disableCob(it.key()), it.value());
    }

    void project_data()
    {
        // clang-format off
        addColumns();
        const QString uds = R + "UDS server and UDS client together on one line is not possible.";
        const QString block = R + "CANopen SDO block size may not exceed 127.";
        const QString timer = R + "Timer interval not set in Common Settings -> Hardware/Target.";
        const QString server = "set udsserver_supported=1";
        const QString client = "set udsclient_supported=2";
        row("uds_single", {server, client, "node 32"}, {uds});
        row("uds_server_only", {server, "set udsclient_supported=0"});
        row("uds_apart", {server, client, "node 1", "set uds_server_active=1,0", "set uds_client_cnt=0,1"});
        row("uds_together", {server, client, "node 1", "set uds_server_active=0,1", "set uds_client_cnt=0,0x2"}, {uds});
        row("uds_negative", {server, client, "node 1", "set uds_server_active=0,1", "set uds_client_cnt=0,-1"}, {uds});
        row("block_size", {"set sdo_blocktransfer_block_size=0x80"}, {block});
        row("block_size_negative", {"set sdo_blocktransfer_block_size=-1"}, {block});
        row("block_size_below_a_byte", {"set sdo_blocktransfer_block_size=-129"});
        row("block_size_127", {"set sdo_blocktransfer_block_size=127"});
        row("block_size_byte", {"set sdo_blocktransfer_block_size=256"});
        row("all", {server, client, "set sdo_blocktransfer_block_size=255", "set co_timer_interval="}, {uds, block, timer});
        // clang-format on
    }
    void project()
    {
        compare([](ModelChecker &c, Model &m) { return c.startGlobalCheck(&m.store); });
    }

    void upgrade_data()
    {
        // clang-format off
        QTest::addColumn<QString>("version");
        QTest::addColumn<QString>("application");
        QTest::addColumn<QStringList>("texts");
        const QString add = H + "Add <font color='red'>";
        const QString end = "</font> to your project or Makefile.";
        const QString canopen = "CANopen Tessarine";
        const QString other = "CAN Tessarine";
        const QString init = add + "uds_init.c" + end;
        const auto hints = [](const char *name, const QString &application, const QStringList &texts) {
            QTest::newRow(name) << QString(name).section('_', 0, 0) << application << texts;
        };
        hints("3.0", canopen, {add + "co_common.c and co_memcpy.c" + end});
        hints("3.6.9_other", other, {add + "co_common.c, co_memcpy.c and co_mapping.c" + end});
        hints("3.7", canopen, {add + "co_memcpy.c" + end, init});
        hints("3.8_other", other, {add + "co_memcpy.c and co_mapping.c" + end, init});
        for (const char *version : {"", "3.9", "2.5"}) hints(version, canopen, {});
        // clang-format on
    }
    void upgrade()
    {
        QFETCH(QString, version);
        QFETCH(QString, application);
        Model model;
        model.change("set udsclient_supported=1");
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
        // clang-format off
        addColumns();
        const QString cannot = "Cannot check if generated code fits to installed stack/framework.";
        row("no_path", {"user costackpath "}, {"Info: Path to protocol stack not specified. " + cannot, "Specify path to protocol stack at Options -> Settings."});
        row("path_of_sibling", {"user costackpath ", "sibling 2.3 /none", "sibling 2.4 /else"}, {"Info: No *_featureinfo_*.xml file found in protocol stack folder /none. " + cannot});
        row("no_version", {"feature a "}, {R + "Version of installed stack does not fit. It requires an older version of the tool. Cannot generate files."});
        row("first_misfit", {"feature b <required_tool_version> 3.11 </required_tool_version>", "feature c <required_tool_version>3.12</required_tool_version>", "feature d "}, {R + "Version of installed stack does not fit. It requires tool version 3.12. Cannot generate files."});
        // clang-format on
    }
    void stack() { checkLine(); }

    /// A settings file that was edited by hand has no percent sign before the group.
    void readsHandWrittenSettings()
    {
        Model model;
        QFile file(QSettings("Korvel", "CANopen Tessarine").fileName());
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write("[General]\ncostackpath=/hand\n");
        file.close();
        const QString text = run([&](ModelChecker &c) { return line(c, model); }).texts.value(0);
        QVERIFY2(text.contains("stack folder /hand. Cannot"), qPrintable(text));
    }

    void cutsItsVersion()
    {
        for (const char *version : {"3.11", "3.11.2", "3.11.2.7"}) {
            Model model;
            QCoreApplication::setApplicationVersion(version);
            QCOMPARE(run([&](ModelChecker &c) { return line(c, model); }).texts, QStringList());
        }
    }

    void settings_data()
    {
        // clang-format off
        addColumns();
        const QString function = E + "CANopen basic Stack Settings: The name of the NodeId function may not include a ";
        row("no_node_id", {"set co_node_id="}, {E + "CANopen basic Stack Settings: No Node-Id specified for line 0: Specify a number between 1 and 127, or 255 for LSS or a function name like e.g. readDipSwitch in the line below."});
        row("node_id_function", {"set co_node_id=,1", "set co_node_id_fct=readSwitch,"});
        row("function_call", {"set co_node_id_fct=readSwitch()"}, {function + "(.", function + ")."});
        row("call_of_other_line", {"set co_node_id_fct=readSwitch,other()"});
        row("receive_buffer", {"set receivebuffersize=,10"}, {E + "Common Settings: CAN receive buffer size must be specified individually for each line."});
        row("transmit_buffer", {"set transmitbuffersize=0x10"}, {E + "Common Settings: CAN transmit buffer size must be specified individually for each line."});
        row("master_list_of_first_line", {"set nmtmaster=2", "set co_ml_ms=1"});
        // clang-format on
    }
    void settings() { checkLine(); }

    void settingsOfSecondLine()
    {
        Model model;
        model.change("node 1");
        for (const char *setting : {"co_node_id=1,2", "receivebuffersize=1,2", "nmtmaster=2",
                                    "transmitbuffersize=1,2", "co_ml_ms=1"})
            model.change(QString("set ") + setting);
        const auto check = [&](ModelChecker &c) { return line(c, model, 1); };
        const QString text = E + "General Settings: The ML master/slave settings size must be "
                                 "specified individually for each line. (e.g 0,1)";
        QCOMPARE(run(check).texts.first(), text);
        model.change("set co_ml_ms=1,0");
        QVERIFY(!run(check).texts.contains(text));
    }

    void communication_data()
    {
        // clang-format off
        addColumns();
        const QString slaves = E + "Object 0x1f81: Value of 'max slave Assigment count' may not exceed number of subindices of object 0x1f81.";
        const QString noVendor = E + "Object 0x1018-0x01: The value of subindex 1 (vendor-ID) is empty.";
        row("no_device_type", {"remove 1000"}, {E + "Object 0x1000 (Device Type) must be a VARIABLE according to the CANopen specification.", E + "Object 0x1000 (Device Type) does not exist, but it is mandatory according to CANopen specification."});
        row("fd_variable", {"set canfd_supported=1"}, {E + "Object 0x1000 (Device Type) must be an ARRAY according to the CANopen FD specification."});
        row("fd_array", {"set canfd_supported=1", "record 1000 ro 0", "object 1000 8"});
        row("no_error_register", {"remove 1001"}, {E + "Object 0x1001 (Error Register) does not exist, but it is mandatory according to CANopen specification."});
        row("no_error_control", {"remove 1017"}, {E + "Object 0x1017 (Producer Heartbeat) and 0x100C (Guard Time) do not exist, but one of them is mandatory."});
        row("guard_time", {"remove 1017", "variable 100c 6 rw"});
        row("too_many_slaves", {"set max_slave_assignment= 3 ", "record 1f81 ro 0 0"}, {slaves});
        row("slaves_fit", {"set max_slave_assignment=2", "record 1f81 ro 0 0"});
        row("slaves_without_object", {"set max_slave_assignment=3"});
        for (const char *index : {"1016", "1028", "1f81"}) row(index, {QString("record %1 ro 1 1 1").arg(index), QString("remove %1:2").arg(index)}, {E + "Object 0x" + index + " may not have gaps."});
        row("gap_elsewhere", {"remove 1018:2"});
        row("store_values", {"record 1010 rw 1 2  2", "record 1011 rw 0x2"}, {E + "Object 0x1010:2 only default values between 0 and 1 are supported. Enable CO_AUTO_STORE_HANDLED_BY_APPLICATION to support other values", E + "Object 0x1011:1 only default values between 0 and 1 are supported. Enable CO_AUTO_STORE_HANDLED_BY_APPLICATION to support other values"});
        row("store_values_of_application", {"set 1010autostore_by_application=1", "record 1010 rw 3 4"}, {E + "Object 0x1010:2 only default values between 0 and 3 are supported."});
        row("master", {"set nmtmaster=1"}, {W + "Object 0x102a: The object 0x102A (NMT inhibit time) is highly recommended for masters. It may be added via 'Add Communication Service'."});
        row("master_with_inhibit_time", {"set nmtmaster=1", "variable 102a 6 rw"});
        row("no_identity", {"remove 1018"}, {noVendor});
        row("empty_identity", {"record 1018 ro   "}, {noVendor, E + "Object 0x1018: The value of subindex 2 (product code) is empty.", E + "Object 0x1018: The value of subindex 3 (revision number) is empty."});
        row("identity_of_zeros", {"record 1018 ro 0 0 0 0"});
        row("makers_vendor_id", {"put 1018:1 value 793"}, {"<strong>Warning: Object 0x1018-0x01: The vendor-ID 0x319 (Korvel) may not be used for production. </strong>"});
        row("constant_serial_number", {"record 1018 ro 1 1 1 1", "put 1018:4 implementation 1"}, {"<strong>Warning</strong>: Object 0x1018: The implementation type of subindex 4 (serial number) is 'Managed Const'. This is not useful in most cases."});
        row("errors_without_emergency", {"record 1003 ro 0"}, {E + "Object 0x1003: This object can only be used, if object 0x1014 exists as well."});
        row("emergency_consumers", {"record 1028 rw 0x81 0x0"}, {E + "Object 0x1028-2: The value of this sub index may not be 0x00000000."});
        // clang-format on
    }
    void communication() { checkLine(); }

    void mapping_data()
    {
        // clang-format off
        addColumns();
        const QString r = E + "Object 0x1600: ";
        const QString t = E + "Object 0x1a00: ";
        const QString fd = "set canfd_supported=1";
        row("no_parameters", {"remove 1400", "remove 1800"}, {r + "The corresponding PDO communication parameter object 0x1400 does not exist.", t + "The corresponding PDO communication parameter object 0x1800 does not exist."});
        row("no_entry", {"remove 1600:1", "put 1600:0 value 0"}, {E + "Object 0x1600 of line 0: The PDO mapping table does not contain any mapped object."});
        row("mixed_access", {"put 1600:1 access ro"}, {r + "All subindices of a PDO mapping object must have the same access type. (const for static mapping or rw for dynamic mapping"});
        row("rpdo_of_nothing", {"put 1600:1 value 0x20010008"}, {r + "The mapped object 0x2001:00 does not exist.", r + "The access right of the mapped object 0x2001:00 does not fit for an RPDO."});
        row("tpdo_of_nothing", {"put 1a00:1 value 0x2000ff08"}, {t + "The mapped object 0x2000:ff does not exist."});
        row("dummy", {"put 1600:1 value 0x00070020"});
        row("above_dummies", {"put 1a00:1 value 0x00080020"}, {t + "The mapped object 0x0008:00 does not exist."});
        row("not_mappable", {"put 2000:0 mapping 0"}, {r + "PDO mapping is not allowed for object 0x2000:00.", t + "PDO mapping is not allowed for object 0x2000:00."});
        row("size_too_small", mapped("1600", "0x20010008", "rw"), {W + "Object 0x1600: The size of the mapped object 0x2001:00 is too small."});
        row("size_too_large", mapped("1600", "0x20010011", "rw"), {r + "The size of the mapped object 0x2001:00 is too large."});
        for (const char *access : {"ro", "const", "rwr"}) {
            row(QByteArray("rpdo_") + access, mapped("1600", "0x20010010", access), {r + "The access right of the mapped object 0x2001:00 does not fit for an RPDO."});
            row(QByteArray("tpdo_") + access, mapped("1a00", "0x20010010", access));
        }
        for (const char *access : {"wo", "rww"}) {
            row(QByteArray("tpdo_") + access, mapped("1a00", "0x20010010", access), {t + "The access right of the mapped object 0x2001:00 does not fit for a TPDO."});
            row(QByteArray("rpdo_") + access, mapped("1600", "0x20010010", access));
        }
        row("full", entries("1600", 8, "8"));
        row("too_long", entries("1600", 9, "9"), {r + "Size of PDO exceeds the limit. "});
        row("inactive_entries", entries("1600", 9, "8"));
        row("fd_full", entries("1600", 64, "64") << fd << "record 1000 ro 0" << "object 1000 8");
        row("count_too_high", entries("1600", 1, "2"), {E + "Object 0x1600:  Invalid number of mapping entries."});
        row("count_is_marker", entries("1600", 1, "254"));
        const QStringList fourth = {"record 1803 ro 0x200 255", "set overwrite_predef=1"};
        row("unused_pdo", fourth + entries("1a03", 1, "0"), {C + "Object 0x1803</i>: The COB-ID of this PDO has been disabled (0x80000200), because it does not contain active mapping entries."});
        row("unused_fifth_pdo", QStringList("record 1804 ro 0x200 255") + entries("1a04", 1, "0"));
        row("unused_receive_pdo", entries("1600", 1, "0"));
        row("used_pdo", fourth + entries("1a03", 1, "1"));
        row("unused_pdo_corrections_off", fourth + entries("1a03", 1, "0") << "user disableautocorrection true");
        const QString small = W + "Object 0x1600: The size of the mapped object 0x2000:00 is too small.";
        row("bitwise", {"put 1600:1 value 0x20000005"}, {small, S + "Bitwise mapping cannot be used with a granularity of 8. Correct device description settings or PDO mapping.", E + "Bitwise mapping not enabled in general settings. Correct general settings or PDO mapping."});
        row("bitwise_allowed", {"put 1600:1 value 0x20000005", "granularity 1", "set bitwise_mapping=1"}, {small});
        row("dynamic_granularity", entries("1600", 1, "1") << "granularity 0", {kDynamicGranularity});
        row("static_granularity", {"granularity 0"});
        // clang-format on
    }
    void mapping() { checkLine(); }

    void pdo_data()
    {
        // clang-format off
        addColumns();
        const QString other = "-0x01: The COB-ID for this PDO does not follow the pre-defined connection set.";
        const QString advice = "Enable CANopen Stack Settings -> Overwrite pre-defined connection set and call userOverwriteCobIdSettings() to use these COB-ID settings.\n\n";
        row("no_mapping", {"remove 1600"}, {E + "Object 0x1400: The corresponding PDO mapping object 0x1600 does not exist."});
        row("not_in_eds", {"put 1400:1 write_to_eds 0", "put 1400:2 in_eds 0", "put 1800:1 in_eds 0", "put 1800:1 write_to_eds 2"}, {H + "Subindex 1 of 0x1400 should have its default value in the EDS file.", H + "Subindex 2 of 0x1400 should have its default value in the EDS file."});
        row("event_timer", {"record 1800 ro $nodeid+0x180 255 100 0 10"}, {S + "Subindex 3 and 5 of 0x1800: Event timer value should be greater than inhibit time value."});
        row("event_timer_longer", {"record 1800 ro $nodeid+0x180 255 109 0 11"});
        row("event_timer_off", {"record 1800 ro $nodeid+0x180 255 100 0 0"});
        row("srdo_parameters", {"record 1301 ro 1", "record 1340 ro 1", "record 1341 ro 1"}, {E + "Object 0x1301: The corresponding SRDO mapping object 0x1381 does not exist.", E + "Object 0x1340: The corresponding SRDO mapping object 0x13c0 does not exist."});
        row("srdo_mapping", {"record 1381 ro 0x20000008 0x10180120 0"}, {E + "Object 0x1381: The object 0x2000:00 mapped into an SRDO must be an application variable.", E + "Object 0x1381: The object 0x1018:01 mapped into an SRDO must be an application variable.", E + "Object 0x1381: The PDO mapping must be enabled for object 0x1018:01 to use it in an SRDO.", E + "Object 0x1381: The object 0x0000:00 mapped into an SRDO does not exist."});
        row("srdo_mapping_fits", limited("5", "0") << "record 13bf ro 0x20020008");
        row("srdo_last_mapping", {"record 13c0 ro 0x20030008"});
        row("cob_id_number", {"put 1400:1 value 0x200"}, {W + "Object 0x1400" + other, advice});
        row("cob_id_case", {"put 1400:1 value $NODEID+0X200"});
        row("cob_id_allowed", {"put 1400:1 value 0x200", "set overwrite_predef=1"});
        row("cob_id_just_disabled", entries("1a00", 1, "0"), {C + "Object 0x1800</i>: The COB-ID of this PDO has been disabled ($NODEID+0x80000180), because it does not contain active mapping entries.", W + "Object 0x1800" + other, advice});
        // clang-format on
    }
    void pdo() { checkLine(); }

    void features_data()
    {
        // clang-format off
        addColumns();
        const QString unsupported = " not supported by stack version.";
        const QString limit = " in project exceed limit (1) of stack version.";
        const QString version = "<required_tool_version>3.11</required_tool_version>";
        const QString pdos = "feature base " + version + "<pdo_producer>1</pdo_producer><pdo_consumer>1</pdo_consumer>";
        const QString ones = pdos + "<sdo_server>1</sdo_server><sdo_client>1</sdo_client><emcy_consumer>1</emcy_consumer><nmt_slave>1</nmt_slave><heartbeat_consumer>1</heartbeat_consumer>";
        row("offered", {ones, "record 1200 ro 0"});
        row("no_path", {"user costackpath "}, {"\n<strong><font color='red'>Error: Path to protocol stack not specified. </font></strong>Cannot check if generated code fits to installed stack/framework.", "Info: Specify path to protocol stack at Options -> Settings."});
        row("no_file", {"user costackpath ", "sibling 2.3 /3", "sibling 2.4 /4"}, {"<strong><font color='red'>Error: No *_featureinfo_*.xml file found in protocol stack folder /4.</font></strong> Cannot check if generated code fits to installed stack/framework."});
        row("version", {ones, "feature z "}, {R + "Version of installed stack does not fit. It requires an older version of the tool. Cannot generate files."});
        row("counts", {ones, "record 1200 ro 0", "record 127f ro 0", "record 1280 ro 0", "record 12ff ro 0", "record 1401 ro 0", "record 1801 ro 0", "record 1028 ro 1 1", "record 1016 ro 1 1"}, {R + "Number of SDO servers" + limit, R + "Number of SDO clients" + limit, R + "Number of Transmit-PDOs" + limit, R + "Number of Recieve-PDOs" + limit, R + "Number of Emergency consumers" + limit, R + "Number of Heartbeat consumers" + limit});
        row("second_file", {ones, "record 1200 ro 0", "record 1201 ro 0", "feature more " + version + "<sdo_server>2</sdo_server>"});
        row("slave", {pdos, "set lss_supported=1", "variable 1005 7 rw", "put 1005:0 value 0x80000080"}, {R + "NMT slave functionality is" + unsupported, R + "LSS slave functionality is" + unsupported, R + "SYNC consumer functionality is" + unsupported});
        row("master", {pdos, "set nmtmaster=1", "set lss_supported=1", "variable 1005 7 rw", "put 1005:0 value 0x40000080"}, {R + "NMT master functionality is" + unsupported, R + "LSS master functionality is" + unsupported, R + "SYNC producer functionality is" + unsupported});
        row("services", QStringList{pdos, "set nmtmaster=2", "set bootup_manager=1", "set config_manager=1", "record 13ff ro 0"} + entries("1600", 1, "1") + entries("1a00", 1, "254"), {R + "SRDO functionality is" + unsupported, R + "Dynamic PDO mapping is" + unsupported, R + "MPDOs are" + unsupported, R + "CANopen Bootup Manager functionality is" + unsupported, R + "CANopen Configuration Manager functionality is" + unsupported});
        // clang-format on
    }
    void features()
    {
        compare([](ModelChecker &c, Model &m) { return c.startCANopenFeatureCheck(0, &m.store); });
    }

    void j1939_data()
    {
        // clang-format off
        addColumns();
        const QStringList sound = {"j1939 identitynumber=1", "j1939 manufacturercode=2", "j1939 ecuinstance=0", "j1939 functioninstance=0", "j1939 function=1", "j1939 vehiclesystem=1", "j1939 vehicleinstance=0", "j1939 industrygroup=0", "j1939 startaddress=128"};
        const QStringList safety = sound + QStringList{"j1939 safetysupport=1", "j1939 bamsupport=1"};
        const QString noTransport = E + "Neither BAM nor TP.CMDT supported but PGNs with length > 64 bit defined.";
        const QString noPackets = E + "CMDT packet count should not be 0 in J1939 configuration.";
        const QString tooLong = E + "PG (4660/0x1234) transmitted as SDM may not exceed 64 bit.";
        row("sound", sound + QStringList{"group tx 0xf004 plain 5 6", "set sorted_coblist=0", "set drv_group_filter=2", "j1939 dynsupport=1", "set additional_cob_count= 2"});
        row("settings", sound + QStringList{"set sorted_coblist=1", "set drv_group_filter=0x1", "j1939 dynsupport=1", "set additional_cob_count= "}, {E + "Sorted COB list may not used with J1939 projects.", S + "Group filter is only useful for CANopen or mixed projects.", E + "Additional COBs need to be specific with dynamic PGN support."});
        const QString tab = " not defined in J1939 configuration tab for line 0";
        row("nothing_set", {}, {E + "Identity number" + tab + ".", E + "Manufacturer code" + tab + ".", E + "ECU instance" + tab + ".", E + "Function instance" + tab, E + "Function" + tab + ".", E + "Vehicle system" + tab + ".", E + "Vehicle instance" + tab + ".", E + "Industry Group" + tab + ".", E + "An address needs to defined in the J1939 configuration for line 0."});
        row("makers_code", sound + QStringList{"j1939 manufacturercode= 1193 "}, {"<strong>Warning: The manufacturer code 1193 (Korvel) may not be used for production. </strong>"});
        const QString special = E + "Special PGN 3584/0x0e00 is handled by the J1939 stack directly and may not be included in the signal definitions.\n";
        row("special_group_both_ways", sound + QStringList{"group tx 0x0e00 plain", "group rx 0x0e00 plain"}, {special, special});
        row("safe_without_support", sound + QStringList{"group tx 0x123 safe 7 7 7"}, {S + "PG (291/0x0123) shall be transmitted as SDM but SHM support is not activated."});
        row("safe_managed", safety + QStringList{"group tx 0x1234 safe managed 5"}, {E + "PG (4660/0x1234) transmitted as SDM may not contain managed variables."});
        for (const char *type : {"9", "24", "27", "106", "117"}) row(type, safety + QStringList{QString("group tx 0x1234 safe ") + type}, {E + "PG (4660/0x1234) contains unsuppported data types."});
        row("safe_structure", safety + QStringList{"group tx 0x12345 safe 100 5"}, {E + "Structure of PG (74565/0x12345) not supported."});
        row("safe_64_bits", safety + QStringList{"group tx 0x1234 safe 7 7"});
        row("safe_65_bits", safety + QStringList{"group tx 0x1234 safe 7 7 1"}, {E + "Structure of PG (4660/0x1234) not supported.", tooLong});
        row("safe_behind_an_error", safety + QStringList{"set sorted_coblist=1", "group tx 0x1234 safe 7 7 1"}, {E + "Sorted COB list may not used with J1939 projects.", tooLong});
        row("last_group_long", sound + QStringList{"group rx 1 plain 5", "group tx 2 plain 10/72"}, {noTransport});
        row("last_group_short", sound + QStringList{"group tx 1 plain 10/72", "group tx 2 plain 5"});
        row("transport_by_bam", sound + QStringList{"j1939 bamsupport=1", "group tx 2 plain 10/72"});
        row("packets_low_byte", sound + QStringList{"j1939 cmdtsupport=1", "j1939 cmdtpackets=256"}, {noPackets});
        row("packets", sound + QStringList{"j1939 cmdtsupport=1", "j1939 cmdtpackets=257", "group tx 2 plain 10/72"});
        row("nameless_signal", sound + QStringList{"group tx 2 plain nameless 5 managed 5"}, {E + "The SPN 1 in PGN 2 needs a variable name."});
        // clang-format on
    }
    void j1939()
    {
        compare([](ModelChecker &c, Model &m) {
            return c.startJ1939Check(1, 0, &m.store, {0xEA00, 0x0E00});
        });
    }

    /// Told on standard error; the report and the count of errors know nothing of it.
    void shortLists_data()
    {
        addColumns();
        const QString advice = "list one for each line number up to 2";
        const QString orOne = ", or give one value without comma for all lines [short-list]";
        // clang-format off
        row("identity", {"j1939 function=1,2", "j1939 addresscapable=1,1"}, {"warning: the J1939 setting 'function' lists 2 values and none for line 2: " + advice + orOne, "warning: the J1939 setting 'addresscapable' lists 2 values and none for line 2: " + advice + orOne});
        row("one_for_all_lines", {"j1939 function=1", "set receivebuffersize=10"});
        row("long_enough", {"j1939 function=1,2,3", "set receivebuffersize=10,,10"});
        row("buffers", {"set receivebuffersize=10,20"}, {"warning: the setting 'receivebuffersize' lists 2 values and none for line 2: " + advice + " [short-list]"});
        row("buffers_of_canopen", {"set receivebuffersize=10,20", "set line2type=1"});
        // clang-format on
    }
    void shortLists()
    {
        QFETCH(QStringList, changes);
        QFETCH(QStringList, texts);
        Model model;
        for (const QString &words : QStringList{"node 2", "set line2type=2"} + changes)
            model.change(words);
        const ProblemRecorder told;
        run([&](ModelChecker &c) { return c.startGlobalCheck(&model.store); });
        run([&](ModelChecker &c) { return c.startJ1939Check(2, 2, &model.store, {}); });
        QCOMPARE(told.lines, texts);
    }

    void j1939AddsToTheErrorsOfTheLine()
    {
        Model model;
        model.change("put 1017:0 access x");
        ModelChecker checker;
        QCOMPARE(line(checker, model), 1);
        QCOMPARE(checker.startJ1939Check(1, 0, &model.store, {}), 10);
    }

    /// What one step has repaired, a later step that writes the same record keeps.
    void correctionsStay()
    {
        for (const bool withCache : {false, true}) {
            Model model;
            for (const char *field : {"value 2", "implementation 0", "denotation it's"})
                model.change(QString("put 1018:0 ") + field);
            if (withCache)
                model.store.cacheAllSubs(0, 0);
            run([&](ModelChecker &c) { return line(c, model); });
            model.store.clearAllCachedSubs(); // the rows count, not what is known of them
            QCOMPARE(model.get(0x1018, 0).defaultValue, QString("3"));
            QCOMPARE(int(model.get(0x1018, 0).implementation), 1);
            QCOMPARE(model.get(0x1018, 0).denotation, QString("it's"));
        }
    }

    void findingsTellThePlace()
    {
        Model model;
        model.store.setIndexName(0, 0x2000, "");
        for (const char *words :
             {"put 1018:0 implementation 0", "put 1018:3 access <b>", "set co_timer_interval="})
            model.change(words);
        ModelChecker checker;
        checker.startGlobalCheck(&model.store);
        line(checker, model);
        QStringList findings;
        for (const Finding &f : checker.findings())
            findings << QString("%1/%2/%3 ").arg(f.line).arg(f.index).arg(f.subindex) + f.text();
        const QStringList expected = {
            "-1/-1/-1 Error: Timer interval not set in Common Settings -> Hardware/Target.",
            "0/4120/0 Corrected: Object 0x1018-0:'Managed Const' is used as implementation type "
            "for this subindex.",
            "0/4120/3 Error: Object 0x1018-0x03: The access type '<b>' is invalid. Use ro, rw, "
            "const, wo, rww or rwr instead.",
            "0/8192/-1 Error: Object 0x2000: The object does not have a name. (Required for EDS)"};
        QCOMPARE(findings, expected);
        sent.insert(int(checker.findings().last().rule));
    }

    void namesAreNoMessagesOfTheirOwn()
    {
        const QString text = Check::markedUpText(Check::messageRow(Check::Msg::FeatureFileMissing),
                                                 {"a\nError: b\x1b[2J"});
        QVERIFY2(text.contains("a\\x0aError: b\\x1b[2J"), qPrintable(text));
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
    };

    Outcome run(const std::function<qint32(ModelChecker &)> &check)
    {
        ModelChecker checker;
        Outcome outcome;
        connect(&checker, &ModelChecker::newError,
                [&outcome](const QString &text) { outcome.texts << text; });
        outcome.errors = check(checker);
        for (const Finding &finding : checker.findings())
            sent.insert(static_cast<int>(finding.rule));
        return outcome;
    }

    /// The check of a line, with a flag that tells the same as the texts.
    static qint32 line(ModelChecker &checker, Model &model, quint8 number = 0)
    {
        bool corrected = false;
        const qint32 errors = checker.startCANopenCheck(number, &model.store, corrected);
        bool isTold = false;
        for (const Finding &finding : checker.findings())
            isTold |= finding.text().startsWith("Corrected: ");
        return corrected == isTold ? errors : -1;
    }

    void compare(const std::function<qint32(ModelChecker &, Model &)> &check)
    {
        QFETCH(QStringList, changes);
        QFETCH(QStringList, texts);
        Model model;
        for (const QString &words : changes)
            model.change(words);
        model.store.cacheAllSubs(0, 0);
        const Outcome outcome = run([&](ModelChecker &c) { return check(c, model); });
        QCOMPARE(outcome.texts, texts);
        QCOMPARE(outcome.errors, countErrors(texts));
    }

    void checkLine()
    {
        compare([](ModelChecker &c, Model &m) { return line(c, m); });
    }

    QSet<int> sent;
};

QTEST_GUILESS_MAIN(tst_ModelChecker)
#include "tst_modelchecker.moc"
