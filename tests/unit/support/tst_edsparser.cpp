// The parser of device descriptions: which records a file gives, and their values.
#include "support/edsparser.h"

#include <QtTest>

#include <random>

class TestEdsParser : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void objects_data();
    void objects();
    void entries_data();
    void entries();
    void numbers_data();
    void numbers();
    void limits_data();
    void limits();
    void compactObject();
    void listsReachExplicitMembers();
    void commentOfAVariableIsTakenOnce();
    void odditiesAreLoggedWithTheirLine();
    void randomBytes();

private:
    /// Parses \a text from a file and keeps the records.
    bool load(const QByteArray &text);
    CANopenSubindex onlySub(const QByteArray &section);
    /// "1000:7 1000.0" for the records in their order: index:code and index.sub.
    QString shape() const { return order.join(QLatin1Char(' ')); }

    QTemporaryDir folder;
    QStringList order;
    QVector<CANopen::CANopenIndex> indices;
    QVector<CANopenSubindex> subs;
};

void TestEdsParser::initTestCase()
{
    QLoggingCategory::setFilterRules(QStringLiteral("tessarine.*.debug=false"));
}

bool TestEdsParser::load(const QByteArray &text)
{
    order.clear();
    indices.clear();
    subs.clear();
    QFile file(folder.filePath(QStringLiteral("test.eds")));
    if (!file.open(QIODevice::WriteOnly) || file.write(text) != text.size())
        return false;
    file.close();
    EdsParser parser;
    connect(&parser, &EdsParser::newIndex, this, [this](const CANopen::CANopenIndex &record) {
        order << QStringLiteral("%1:%2").arg(record.index, 0, 16).arg(int(record.objectCode));
        indices << record;
    });
    connect(&parser, &EdsParser::newSubIndex, this, [this](const CANopenSubindex &record) {
        order << QStringLiteral("%1.%2").arg(record.index, 0, 16).arg(record.subindex);
        subs << record;
    });
    return parser.LoadEds(file.fileName());
}

CANopenSubindex TestEdsParser::onlySub(const QByteArray &section)
{
    return load("[2000]\n" + section + "\n") && subs.size() == 1 ? subs.first() : CANopenSubindex();
}

void TestEdsParser::objects_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QString>("expected"); ///< empty: loading fails

    QTest::newRow("variable") << QByteArray("[2000]\nObjectType=0x7\n") << "2000:7 2000.0";
    QTest::newRow("domain_has_its_own_value")
        << QByteArray("[2000]\nObjectType=2\n") << "2000:2 2000.0";
    QTest::newRow("hex_code") << QByteArray("[2000]\nobjecttype = 0x09\n[2000sub1]\n")
                              << "2000:9 2000.1";
    QTest::newRow("word_as_code") << QByteArray("[2000]\nObjectType=array\n") << "2000:8";
    QTest::newRow("no_code_is_variable") << QByteArray("[2000]\nDataType=5\n") << "2000:7 2000.0";
    QTest::newRow("odd_code_is_variable")
        << QByteArray("[2000]\nObjectType=0x77\n") << "2000:7 2000.0";
    QTest::newRow("no_code_with_subs")
        << QByteArray("[2000]\n[2000sub0]\n[2000sub1]\n") << "2000:9 2000.0 2000.1";
    QTest::newRow("no_code_compact") << QByteArray("[2000]\nCompactSubObj=2\n") << "2000:8";
    QTest::newRow("sub_0_of_a_variable")
        << QByteArray("[2000]\nObjectType=7\n[2000sub0]\n") << "2000:7 2000.0";
    QTest::newRow("order_of_the_file")
        << QByteArray("[3000]\n[2001sub2]\n[2000]\n[2001]\nObjectType=8\n[2001sub1]\n")
        << "3000:7 3000.0 2001:8 2001.2 2001.1 2000:7 2000.0";
    QTest::newRow("sub_without_object")
        << QByteArray("[2000sub0]\n[2000sub3]\n") << "2000:9 2000.0 2000.3";
    QTest::newRow("forms_of_names")
        << QByteArray("[0x1A00]\nObjectType=9\n[1a00Sub00] x\n[ 1A00 SUB 0a ]\n[0X1a00sub1F]\n")
        << "1a00:9 1a00.0 1a00.10 1a00.31";
    QTest::newRow("repeated_sections_count_once")
        << QByteArray("[2000]\nObjectType=9\n[2000sub1]\n[2000]\n[2000Sub01]\n") << "2000:9 2000.1";
    QTest::newRow("names_that_are_no_objects")
        << QByteArray("[2000]\n[100]\n[10000]\n[20g0]\n[2000sub]\n[2000sub100]\n[2000subx]\n"
                      "[2000sub99999999999]\n[2000ObjectLinks]\n[+200]\n[0x12]\n")
        << "2000:7 2000.0";
    QTest::newRow("lists_alone_make_no_object") << QByteArray("[2000Value]\n1=1\n") << "";
    QTest::newRow("no_object") << QByteArray("[FileInfo]\nFileName=x\n") << "";
    QTest::newRow("empty_file") << QByteArray() << "";
}

void TestEdsParser::objects()
{
    QFETCH(QByteArray, text);
    QFETCH(QString, expected);
    QCOMPARE(load(text), !expected.isEmpty());
    QCOMPARE(shape(), expected);
}

void TestEdsParser::entries_data()
{
    QTest::addColumn<QByteArray>("section");
    QTest::addColumn<QString>("expected"); ///< name/type/access/pdo/refuse write/read/denotation

    QTest::newRow("all") << QByteArray("PARAMETERNAME=Speed; rpm\nDataType=0x0003\nAccessType=RWW\n"
                                       "PDOMapping=0x1\nObjFlags=3\nDenotation=Fan\nUploadFile=x")
                         << "Speed; rpm/3/rww/1/1/1/Fan";
    QTest::newRow("none") << QByteArray() << "unnamed object/5/ro/0/0/0/";
    QTest::newRow("comments_behind_numbers")
        << QByteArray("ParameterName=a\nDataType=7 ; long\nAccessType=rw ;x\nPDOMapping=1;y")
        << "a/7/rw/1/0/0/";
    QTest::newRow("flag_refuse_write")
        << QByteArray("ParameterName=a\nObjFlags=1") << "a/5/ro/0/1/0/";
    QTest::newRow("flag_refuse_read")
        << QByteArray("ParameterName=a\nObjFlags=0x2") << "a/5/ro/0/0/1/";
    QTest::newRow("type_0") << QByteArray("ParameterName=a\nDataType=0x0") << "a/5/ro/0/0/0/";
    QTest::newRow("type_001") << QByteArray("ParameterName=a\nDataType=001") << "a/1/ro/0/0/0/";
    QTest::newRow("type_in_bare_hex")
        << QByteArray("ParameterName=a\nDataType=1B") << "a/27/ro/0/0/0/";
    QTest::newRow("type_by_name") << QByteArray("ParameterName=a\nDataType=Integer32")
                                  << "a/4/ro/0/0/0/";
    QTest::newRow("type_too_large")
        << QByteArray("ParameterName=a\nDataType=0x10005") << "a/5/ro/0/0/0/";
    QTest::newRow("complex_type") << QByteArray("ParameterName=a\nDataType=0x40")
                                  << "a/64/ro/0/0/0/";
    QTest::newRow("domain_without_type")
        << QByteArray("ParameterName=a\nObjectType=2") << "a/15/ro/0/0/0/";
    QTest::newRow("domain_with_type")
        << QByteArray("ParameterName=a\nObjectType=2\nDataType=7") << "a/7/ro/0/0/0/";
    QTest::newRow("odd_access") << QByteArray("ParameterName=a\nAccessType=W\nPDOMapping=yes")
                                << "a/5/wo/0/0/0/";
    QTest::newRow("repeated_key") << QByteArray("ParameterName=a\nParameterName=b")
                                  << "b/5/ro/0/0/0/";
}

void TestEdsParser::entries()
{
    QFETCH(QByteArray, section);
    const CANopenSubindex sub = onlySub(section);
    const QStringList found = {sub.name,
                               QString::number(sub.dataType),
                               sub.accessType,
                               QString::number(sub.pdoMapping),
                               QString::number(sub.refuseWrite),
                               QString::number(sub.refuseRead),
                               sub.denotation};
    QTEST(found.join(QLatin1Char('/')), "expected");
    QCOMPARE(indices.first().name, sub.name);
    QCOMPARE(indices.first().dataType, sub.dataType);
}

void TestEdsParser::numbers_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<QByteArray>("given");
    QTest::addColumn<QString>("stored");

    QTest::newRow("decimal") << 6 << QByteArray("1000  ") << "1000";
    QTest::newRow("hex") << 7 << QByteArray("0x1F") << "0x1F";
    QTest::newRow("comment_behind") << 6 << QByteArray("12 ; twelve") << "12";
    QTest::newRow("bare_hex") << 5 << QByteArray("1A") << "0x1A";
    QTest::newRow("node_id_first") << 7 << QByteArray("$NodeID + 0x80") << "$NODEID+0x80";
    QTest::newRow("node_id_last") << 7 << QByteArray("1280+$nodeid") << "$NODEID+1280";
    QTest::newRow("node_id_alone") << 5 << QByteArray("$nodeId") << "$NODEID";
    QTest::newRow("node_id_with_nonsense") << 7 << QByteArray("$NODEID+x") << "$NODEID+x";
    QTest::newRow("i8_negative") << 2 << QByteArray("0xFF") << "-1";
    QTest::newRow("i8_positive") << 2 << QByteArray("0x7F") << "0x7F";
    QTest::newRow("i24_negative") << 16 << QByteArray("0x800000") << "-8388608";
    QTest::newRow("i64_negative") << 21 << QByteArray("0xFFFFFFFFFFFFFFF6") << "-10";
    QTest::newRow("i64_lowest") << 21 << QByteArray("0x8000000000000000") << "-9223372036854775808";
    QTest::newRow("i8_too_wide") << 2 << QByteArray("0x100") << "0x100";
    QTest::newRow("u8_is_never_signed") << 5 << QByteArray("0xFF") << "0xFF";
    QTest::newRow("real") << 8 << QByteArray("1e5 ; x") << "1e5";
    QTest::newRow("string_keeps_all") << 9 << QByteArray("1+$nodeid ; 'x'") << "1+$nodeid ; 'x'";
    QTest::newRow("huge_number") << 7 << QByteArray(300, '9') << QString(300, QLatin1Char('9'));
    QTest::newRow("empty") << 5 << QByteArray() << "";
}

void TestEdsParser::numbers()
{
    QFETCH(int, type);
    QFETCH(QByteArray, given);
    QFETCH(QString, stored);
    const CANopenSubindex sub = onlySub("DataType=" + QByteArray::number(type) +
                                        "\nDefaultValue=" + given + "\nParameterValue=" + given);
    QCOMPARE(sub.defaultValue.toString(), stored);
    QCOMPARE(sub.writeDefault, !stored.isEmpty());
    QCOMPARE(sub.currentValue, stored);
}

void TestEdsParser::limits_data()
{
    QTest::addColumn<QByteArray>("section");
    QTest::addColumn<QString>("expected");

    QTest::newRow("both") << QByteArray("DataType=6\nLowLimit=0x2\nHighLimit=100 ;x") << "0x2..100";
    QTest::newRow("one") << QByteArray("DataType=6\nHighLimit=100") << "..100";
    QTest::newRow("blank_is_none") << QByteArray("DataType=6\nLowLimit=\nHighLimit=") << "none";
    QTest::newRow("signed_in_hex")
        << QByteArray("DataType=3\nLowLimit=0xFFF6\nHighLimit=0x7F") << "-10..127";
    QTest::newRow("real") << QByteArray("DataType=8\nLowLimit=4.5") << "4.5..";
}

void TestEdsParser::limits()
{
    QFETCH(QByteArray, section);
    const CANopenSubindex sub = onlySub(section);
    QTEST(sub.hasLimits ? sub.lowLimit + QLatin1String("..") + sub.upLimit : QStringLiteral("none"),
          "expected");
}

void TestEdsParser::compactObject()
{
    QVERIFY(
        load("[2000]\nParameterName=Gain\nObjectType=9\nDataType=2\nAccessType=rw\nPDOMapping=1\n"
             "DefaultValue=3\nHighLimit=9\nCompactSubObj=255\n[2000Name]\nNrOfEntries=1\n2=Second\n"
             "[2000VALUE]\n1=0xFF;x\n300=1\nx=1\n[2000Denotation]\n254=Last\n"));
    QCOMPARE(shape(), QStringLiteral("2000:9"));
    const CANopen::CANopenIndex object = indices.first();
    QCOMPARE(object.compactSubObj, quint8(254));
    QCOMPARE(object.defaultValue, QStringLiteral("3"));
    QVERIFY(object.flag);
    QCOMPARE(object.member.accessType, QStringLiteral("rw"));
    QCOMPARE(object.member.upLimit, QStringLiteral("9"));
    QVERIFY(object.member.pdoMapping);
    QCOMPARE(object.memberNames, (QMap<quint8, QString>{{2, QStringLiteral("Second")}}));
    QCOMPARE(object.memberValues, (QMap<quint8, QString>{{1, QStringLiteral("-1")}}));
    QCOMPARE(object.memberDenotations, (QMap<quint8, QString>{{254, QStringLiteral("Last")}}));

    QVERIFY(load("[2000]\nObjectType=7\nCompactSubObj=4\n"));
    QCOMPARE(indices.first().compactSubObj, quint8(0)); // a variable has no members
}

void TestEdsParser::listsReachExplicitMembers()
{
    QVERIFY(load("[2000]\nObjectType=8\nCompactSubObj=2\n[2000sub1]\nParameterName=Own\n"
                 "[2000sub2]\nParameterValue=7\n[2000Name]\n1=Listed\n2=Second\n"
                 "[2000Value]\n1=1A\n2=9\n[2000Denotation]\n1=One\n"));
    QCOMPARE(subs[0].name, QStringLiteral("Own"));
    QCOMPARE(subs[0].currentValue, QStringLiteral("0x1A"));
    QCOMPARE(subs[0].denotation, QStringLiteral("One"));
    QCOMPARE(subs[1].name, QStringLiteral("Second"));
    QCOMPARE(subs[1].currentValue, QStringLiteral("7"));
}

void TestEdsParser::commentOfAVariableIsTakenOnce()
{
    QVERIFY(load("[2000]\nObjectType=7\n;;a\n;;b\n;;a\n;;b\n\n[2001]\nObjectType=9\n;;a\n;;a\n"));
    QCOMPARE(indices[0].description, QStringLiteral("a\nb"));
    QCOMPARE(subs[0].description, QStringLiteral("a\nb"));
    QCOMPARE(indices[1].description, QStringLiteral("a\na")); // its subindex 0 has its own section
}

void TestEdsParser::odditiesAreLoggedWithTheirLine()
{
    QLoggingCategory::setFilterRules(QString());
    const QByteArray file = folder.filePath(QStringLiteral("test.eds")).toUtf8();
    QTest::ignoreMessage(QtDebugMsg, file + ":3: AccessType cannot be maybe");
    QTest::ignoreMessage(QtDebugMsg, file + ":4: section [1000sub100] is passed over");
    QVERIFY(load("[1000]\nParameterName=x\nAccessType=maybe\n[1000sub100]\n"));
    initTestCase();
}

void TestEdsParser::randomBytes()
{
    // Bytes that make up descriptions, so that the noise gets behind the first checks.
    const QByteArray alphabet = QByteArrayLiteral("[]=\n\r;\"$0x12sub3NODEID+-\0\xFF\xC3 ") +
                                QByteArrayLiteral("CompactSubObj=DataType=ObjectType=");
    std::mt19937 generator(4711);
    for (int run = 0; run < 200; ++run) {
        QByteArray text;
        for (int i = 0; i < 2000; ++i)
            text += alphabet[static_cast<int>(generator() % quint32(alphabet.size()))];
        (void)load(text); // any answer will do, it must come
    }
}

QTEST_GUILESS_MAIN(TestEdsParser)
#include "tst_edsparser.moc"
