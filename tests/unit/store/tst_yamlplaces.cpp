// Where in a project in YAML stands what a finding is about.
#include "store/projectplaces.h"
#include "tests/fixtures/storefixture.h"

namespace
{

/// Each line that is asked for ends in a comment with its name.
const QByteArray kText = R"(
tessarine: 1
description: {VendorName: Someone} # vendor
settings: # settings
  limit_check: 1 # limit check
lines: # lines
  0: # line 0
    protocol: CANopen # type 0
    node-id: 5 # node 0
    heartbeat: 100 # heartbeat
    identity: # identity
      vendor: 1 # vendor-ID
      product: {name: My code, # product
        default: 2} # product default
    tpdo: # tpdo
      1: # tpdo 1
        cob-id: 0x181 # cob-id
        map: # map
          - 0x2000 # map 1
          - 0x2001:1 # map 2
    objects: # objects
      8192: # 2000
        name: Speed # name
        type: &type U16 # type
        limits: [0, 9] # limits
      0x2001: # 2001
        name: Motor
        members: # members
          1: # 2001:1
            type: *type
            access: ro # access
      0x2002: # 2002
        array: 2
        type: U8 # type of array
        members: {2: {default: 1}} # member 2
  0x1: # line 1
    protocol: J1939
    description: # description 1
      VendorName: Other # vendor 1
    groups: # groups
      receive:
        0xFEEE: # FEEE received
          signals: [{spn: 7}] # 7
      transmit:
        65262: # FEEE
          name: Temperatures # group name
          signals:
            - {spn: 110, name: Coolant, # 110
               type: U8} # 110 type
    frames: {transmit: {0x10: # frame 10
      {elements: [{name: a}, # element 1
        {name: b}]}}} # element 2
)";

int lineWith(const QByteArray &comment)
{
    if (comment.isEmpty())
        return 0;
    const int place = kText.indexOf(" # " + comment + '\n');
    return place < 0 ? -1 : kText.left(place).count('\n') + 1;
}

} // namespace

class tst_YamlPlaces : public QObject
{
    Q_OBJECT

private slots:
    void places_data()
    {
        // clang-format off
        columns<int, int, int, QString, QByteArray>("line", "index", "subindex", "column", "expected");
        const auto row = [](const QByteArray &expected, int line, int index = -1, int subindex = -1,
            const char *column = "") { QTest::addRow("%s, %s", expected.constData(), column)
            << line << index << subindex << column << expected; };
        row("name", 0, 0x2000, -1, "name");
        row("name", 0, 0x2000, 0, "name");
        row("type", 0, 0x2000, 0, "datatype");
        row("limits", 0, 0x2000, 0, "uplimit");
        row("2000", 0, 0x2000, 0, "accesstype");
        row("2000", 0, 0x2000, 3);
        row("access", 0, 0x2001, 1, "accesstype");
        row("type", 0, 0x2001, 1, "datatype");
        row("2001:1", 0, 0x2001, 1, "defaultvalue");
        row("2001", 0, 0x2001, 2, "name");
        row("2001", 0, 0x2001, 0, "name");
        row("type of array", 0, 0x2002, 1, "datatype");
        row("member 2", 0, 0x2002, 2, "defaultvalue");
        row("heartbeat", 0, 0x1017, 0, "defaultvalue");
        row("identity", 0, 0x1018);
        row("vendor-ID", 0, 0x1018, 1, "datatype");
        row("product default", 0, 0x1018, 2, "defaultvalue");
        row("identity", 0, 0x1018, 4, "datatype");
        row("cob-id", 0, 0x1800, 1, "defaultvalue");
        row("tpdo 1", 0, 0x1800, 5);
        row("map 2", 0, 0x1A00, 2, "defaultvalue");
        row("map", 0, 0x1A00, 0);
        row("tpdo", 0, 0x1801, 1);
        row("objects", 0, 0x1400, 1);
        row("objects", 0, 0x3000, 1);
        row("line 0", 0);
        row("line 1", 1, 0x2000);
        row("lines", 2);
        row("", -1);
        // clang-format on
    }
    void places()
    {
        ProjectPlace place;
        QFETCH(QByteArray, expected);
        std::tie(place.line, place.index, place.subindex, place.column) =
            fetchRow<int, int, int, QString>();
        QCOMPARE(lineOf(place), lineWith(expected));
    }

    void placesOfFrames_data()
    {
        // clang-format off
        columns<int, int, QString, QByteArray>("group", "signal", "column", "expected");
        QTest::newRow("group") << 0xFEEE << -1 << "name" << QByteArray("group name");
        QTest::newRow("signal") << 0xFEEE << 110 << "name" << QByteArray("110");
        QTest::newRow("column") << 0xFEEE << 110 << "datatype" << QByteArray("110 type");
        QTest::newRow("other_direction") << 0xFEEE << 7 << "" << QByteArray("7");
        QTest::newRow("element_without_number") << 0x10 << 2 << "" << QByteArray("element 2");
        QTest::newRow("no_such_element") << 0x10 << 3 << "" << QByteArray("frame 10");
        QTest::newRow("no_such_group") << 1 << 2 << "" << QByteArray("line 1");
        // clang-format on
    }
    void placesOfFrames()
    {
        ProjectPlace place;
        QFETCH(QByteArray, expected);
        place.line = 1;
        std::tie(place.group, place.signal, place.column) = fetchRow<int, int, QString>();
        QCOMPARE(lineOf(place), lineWith(expected));
    }

    void placesOfSettings_data()
    {
        // clang-format off
        columns<int, QString, QString, QByteArray>("line", "store", "setting", "expected");
        const QString general = "GeneralSettings";
        QTest::newRow("of_the_project") << -1 << general << "limit_check" << QByteArray("limit check");
        QTest::newRow("of_a_line") << 0 << general << "co_node_id" << QByteArray("node 0");
        QTest::newRow("of_any_line") << -1 << general << "co_node_id" << QByteArray("node 0");
        QTest::newRow("not_in_the_line") << 1 << general << "co_node_id" << QByteArray("line 1");
        QTest::newRow("not_there") << 0 << general << "endian" << QByteArray("settings");
        QTest::newRow("protocol") << 0 << general << "line0type" << QByteArray("type 0");
        QTest::newRow("description") << 0 << "DescriptionSettings" << "VendorName" << QByteArray("vendor");
        QTest::newRow("description_1") << 1 << "DescriptionSettings" << "VendorName" << QByteArray("vendor 1");
        QTest::newRow("no_such_store") << 0 << "MiscSettings" << "generateML" << QByteArray("line 0");
        // clang-format on
    }
    void placesOfSettings()
    {
        ProjectPlace place;
        QFETCH(QByteArray, expected);
        std::tie(place.line, place.store, place.setting) = fetchRow<int, QString, QString>();
        QCOMPARE(lineOf(place), lineWith(expected));
    }

private:
    int lineOf(const ProjectPlace &place)
    {
        const QString file = fixture.path("p.yaml");
        return writeFile(file, kText) ? ProjectPlaces::ofFile(file)->lineOf(place) : -2;
    }

    StoreFixture fixture;
};

QTEST_GUILESS_MAIN(tst_YamlPlaces)
#include "tst_yamlplaces.moc"
