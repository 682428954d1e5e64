// The parser of device descriptions: which records a file gives, and their values.
#include "formats/edsparser.h"
#include "tests/fixtures/testkit.h"

#include <random>

class TestEdsParser : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { QLoggingCategory::setFilterRules("tessarine.*.debug=false"); }

    void objects_data()
    {
        columns<QString, QString>("text", "expected"); // nothing expected: loading fails
        // clang-format off
        QTest::newRow("variable") << "[2000]\nObjectType=0x7\n" << "2000:7 2000.0";
        QTest::newRow("domain_has_its_own_value") << "[2000]\nObjectType=2\n" << "2000:2 2000.0";
        QTest::newRow("hex_code") << "[2000]\nobjecttype = 0x09\n[2000sub1]\n" << "2000:9 2000.1";
        QTest::newRow("word_as_code") << "[2000]\nObjectType=array\n" << "2000:8";
        QTest::newRow("no_code_is_variable") << "[2000]\nDataType=5\n" << "2000:7 2000.0";
        QTest::newRow("odd_code_is_variable") << "[2000]\nObjectType=0x77\n" << "2000:7 2000.0";
        QTest::newRow("no_code_with_subs") << "[2000]\n[2000sub0]\n[2000sub1]\n" << "2000:9 2000.0 2000.1";
        QTest::newRow("no_code_compact") << "[2000]\nCompactSubObj=2\n" << "2000:8";
        QTest::newRow("sub_0_of_a_variable") << "[2000]\nObjectType=7\n[2000sub0]\n" << "2000:7 2000.0";
        QTest::newRow("order_of_the_file") << "[3000]\n[2001sub2]\n[2000]\n[2001]\nObjectType=8\n[2001sub1]\n" << "3000:7 3000.0 2001:8 2001.2 2001.1 2000:7 2000.0";
        QTest::newRow("sub_without_object") << "[2000sub0]\n[2000sub3]\n" << "2000:9 2000.0 2000.3";
        QTest::newRow("forms_of_names") << "[0x1A00]\nObjectType=9\n[1a00Sub00] x\n[ 1A00 SUB 0a ]\n[0X1a00sub1F]\n" << "1a00:9 1a00.0 1a00.10 1a00.31";
        QTest::newRow("repeated_sections_count_once") << "[2000]\nObjectType=9\n[2000sub1]\n[2000]\n[2000Sub01]\n" << "2000:9 2000.1";
        QTest::newRow("names_that_are_no_objects") << "[2000]\n[100]\n[10000]\n[20g0]\n[2000sub]\n[2000sub100]\n[2000subx]\n[2000sub99999999999]\n[2000ObjectLinks]\n[+200]\n[0x12]\n" << "2000:7 2000.0";
        QTest::newRow("lists_alone_make_no_object") << "[2000Value]\n1=1\n" << "";
        QTest::newRow("empty_file") << "" << "";
        // clang-format on
    }
    void objects()
    {
        QFETCH(QString, text);
        QFETCH(QString, expected);
        QCOMPARE(load(text), !expected.isEmpty());
        QCOMPARE(order.join(' '), expected);
    }

    void entries_data()
    {
        columns<QString, QString>("section", "expected"); // name/type/access/pdo/denotation, flags
        // clang-format off
        QTest::newRow("all") << "PARAMETERNAME=Speed; rpm\nDataType=0x0003\nAccessType=RWW\nPDOMapping=0x1\nObjFlags=3\nDenotation=Fan\nUploadFile=x" << "Speed; rpm/3/rww/1/Fan/1/1";
        QTest::newRow("none") << "" << "unnamed object/5/ro/0//0/0";
        QTest::newRow("comments_behind_numbers") << "ParameterName=a\nDataType=7 ; long\nAccessType=rw ;x\nPDOMapping=1;y" << "a/7/rw/1//0/0";
        QTest::newRow("type_0") << "ParameterName=a\nDataType=0x0" << "a/5/ro/0//0/0";
        QTest::newRow("type_001") << "ParameterName=a\nDataType=001" << "a/1/ro/0//0/0";
        QTest::newRow("type_in_bare_hex") << "ParameterName=a\nDataType=1B" << "a/27/ro/0//0/0";
        QTest::newRow("type_by_name") << "ParameterName=a\nDataType=Integer32" << "a/4/ro/0//0/0";
        QTest::newRow("type_too_large") << "ParameterName=a\nDataType=0x10005" << "a/5/ro/0//0/0";
        QTest::newRow("complex_type") << "ParameterName=a\nDataType=0x40" << "a/64/ro/0//0/0";
        QTest::newRow("domain_without_type") << "ParameterName=a\nObjectType=2" << "a/15/ro/0//0/0";
        QTest::newRow("domain_with_type") << "ParameterName=a\nObjectType=2\nDataType=7" << "a/7/ro/0//0/0";
        QTest::newRow("odd_access") << "ParameterName=a\nAccessType=W\nPDOMapping=yes" << "a/5/wo/0//0/0";
        const QString own = "ParameterName=a\nDataType=7\nAccessType=rw\n[2000sub0]\n";
        QTest::newRow("bare_sub_0") << own + "SubNumber=0" << "a/7/rw/0//0/0";
        QTest::newRow("sub_0_with_a_denotation") << own + "Denotation=Fan\nObjFlags=1" << "a/7/rw/0/Fan/1/0";
        QTest::newRow("sub_0_with_data") << own + "ParameterName=a\nDataType=7" << "a/7/ro/0//0/0";
        QTest::newRow("repeated_key") << "ParameterName=a\nParameterName=b" << "b/5/ro/0//0/0";
        // clang-format on
    }
    void entries()
    {
        QFETCH(QString, section);
        const CANopenSubindex sub = onlySub(section);
        QTEST(joined(sub.name, sub.dataType, sub.accessType, int(sub.pdoMapping), sub.denotation,
                     int(sub.refuseWrite), int(sub.refuseRead)),
              "expected");
        QCOMPARE(indices.first().name, sub.name);
        QCOMPARE(indices.first().dataType, sub.dataType);
    }

    void numbers_data()
    {
        columns<int, QString, QString>("type", "given", "stored");
        // clang-format off
        QTest::newRow("decimal") << 6 << "1000  " << "1000";
        QTest::newRow("comment_behind") << 6 << "12 ; twelve" << "12";
        QTest::newRow("bare_hex") << 5 << "1A" << "0x1A";
        QTest::newRow("node_id_first") << 7 << "$NodeID + 0x80" << "$NODEID+0x80";
        QTest::newRow("node_id_last") << 7 << "1280+$nodeid" << "$NODEID+1280";
        QTest::newRow("node_id_alone") << 5 << "$nodeId" << "$NODEID";
        QTest::newRow("node_id_with_nonsense") << 7 << "$NODEID+x" << "$NODEID+x";
        QTest::newRow("i8_negative") << 2 << "0xFF" << "-1";
        QTest::newRow("i24_negative") << 16 << "0x800000" << "-8388608";
        QTest::newRow("i64_negative") << 21 << "0xFFFFFFFFFFFFFFF6" << "-10";
        QTest::newRow("i64_lowest") << 21 << "0x8000000000000000" << "-9223372036854775808";
        QTest::newRow("i8_too_wide") << 2 << "0x100" << "0x100";
        QTest::newRow("u8_is_never_signed") << 5 << "0xFF" << "0xFF";
        QTest::newRow("string_keeps_all") << 9 << "1+$nodeid ; 'x'" << "1+$nodeid ; 'x'";
        QTest::newRow("huge_number") << 7 << QString(300, '9') << QString(300, '9');
        QTest::newRow("empty") << 5 << "" << "";
        // clang-format on
    }
    void numbers()
    {
        QFETCH(int, type);
        QFETCH(QString, given);
        QFETCH(QString, stored);
        const CANopenSubindex sub = onlySub(
            QString("DataType=%1\nDefaultValue=%2\nParameterValue=%2").arg(type).arg(given));
        QCOMPARE(sub.defaultValue.toString(), stored);
        QCOMPARE(sub.writeDefault, !stored.isEmpty());
        QCOMPARE(sub.currentValue, stored);
    }

    void limits()
    {
        const auto limitsOf = [this](const QString &section) {
            const CANopenSubindex sub = onlySub(section);
            return sub.hasLimits ? sub.lowLimit + ".." + sub.upLimit : "none";
        };
        QCOMPARE(limitsOf("DataType=6\nLowLimit=0x2\nHighLimit=100 ;x"), "0x2..100");
        QCOMPARE(limitsOf("DataType=6\nLowLimit=\nHighLimit="), "none");
        QCOMPARE(limitsOf("DataType=3\nLowLimit=0xFFF6\nHighLimit=0x7F"), "-10..127");
        QCOMPARE(limitsOf("DataType=8\nLowLimit=4.5"), "4.5..");
    }

    void compactObject()
    {
        QVERIFY(load("[2000]\nParameterName=Gain\nObjectType=9\nDataType=2\nAccessType=rw\n"
                     "PDOMapping=1\nDefaultValue=3\nHighLimit=9\nCompactSubObj=255\n"
                     "[2000Name]\nNrOfEntries=1\n2=Second\n[2000VALUE]\n1=0xFF;x\n300=1\nx=1\n"
                     "[2000Denotation]\n254=Last\n"));
        QCOMPARE(order.join(' '), "2000:9");
        const CANopen::CANopenIndex object = indices.first();
        QCOMPARE(joined(object.compactSubObj, object.defaultValue, object.flag,
                        object.member.accessType, object.member.upLimit, object.member.pdoMapping),
                 "254/3/true/rw/9/true");
        QCOMPARE(object.memberNames, (QMap<quint8, QString>{{2, "Second"}}));
        QCOMPARE(object.memberValues, (QMap<quint8, QString>{{1, "-1"}}));
        QCOMPARE(object.memberDenotations, (QMap<quint8, QString>{{254, "Last"}}));

        QVERIFY(load("[2000]\nObjectType=7\nCompactSubObj=4\n"));
        QCOMPARE(indices.first().compactSubObj, quint8(0)); // a variable has no members
    }

    void listsReachExplicitMembers()
    {
        QVERIFY(load("[2000]\nObjectType=8\nCompactSubObj=2\n[2000sub1]\nParameterName=Own\n"
                     "[2000sub2]\nParameterValue=7\n[2000Name]\n1=Listed\n2=Second\n"
                     "[2000Value]\n1=1A\n2=9\n[2000Denotation]\n1=One\n"));
        QStringList found;
        for (const CANopenSubindex &sub : subs)
            found << sub.name << sub.currentValue << sub.denotation;
        QCOMPARE(found.join('|'), "Own|0x1A|One|Second|7|");
    }

    void commentOfAVariableIsTakenOnce()
    {
        QVERIFY(
            load("[2000]\nObjectType=7\n;;a\n;;b\n;;a\n;;b\n\n[2001]\nObjectType=9\n;;a\n;;a\n"));
        QCOMPARE(indices[0].description, "a\nb");
        QCOMPARE(subs[0].description, "a\nb");
        QCOMPARE(indices[1].description, "a\na"); // its subindex 0 has its own section
    }

    void odditiesAreLoggedWithTheirLine()
    {
        QLoggingCategory::setFilterRules(QString());
        const QByteArray name = file.toUtf8();
        QTest::ignoreMessage(QtDebugMsg, name + ":4: AccessType cannot be maybe");
        QTest::ignoreMessage(QtDebugMsg, name + ":5: section [1000sub100] is passed over");
        QVERIFY(load("\r\n[1000]\r\n\r\nAccessType=maybe\r\n[1000sub100]\n"));
        initTestCase();
    }

    void randomBytes()
    {
        // Bytes that make up descriptions, so that the noise gets behind the first checks.
        const QByteArray alphabet = QByteArrayLiteral("[]=\n\r;\"$0x12sub3NODEID+-\0\xFF\xC3 ") +
                                    QByteArrayLiteral("CompactSubObj=DataType=ObjectType=");
        std::mt19937 generator(testSeed(4711));
        for (int run = 0; run < 200; ++run) {
            QByteArray text;
            for (int i = 0; i < 2000; ++i)
                text += alphabet[static_cast<int>(generator() % quint32(alphabet.size()))];
            (void)loadBytes(text); // any answer will do, it must come
        }
    }

private:
    /// Parses \a text from a file and keeps the records; their order as "1000:7 1000.0", which is
    /// index:code and index.sub.
    bool loadBytes(const QByteArray &text)
    {
        order.clear();
        indices.clear();
        subs.clear();
        EdsParser parser;
        connect(&parser, &EdsParser::newIndex, this, [this](const CANopen::CANopenIndex &record) {
            order << QString("%1:%2").arg(record.index, 0, 16).arg(int(record.objectCode));
            indices << record;
        });
        connect(&parser, &EdsParser::newSubIndex, this, [this](const CANopenSubindex &record) {
            order << QString("%1.%2").arg(record.index, 0, 16).arg(record.subindex);
            subs << record;
        });
        return writeFile(file, text) && parser.LoadEds(file);
    }
    bool load(const QString &text) { return loadBytes(text.toUtf8()); }
    CANopenSubindex onlySub(const QString &section)
    {
        return load("[2000]\n" + section + "\n") && subs.size() == 1 ? subs.first()
                                                                     : CANopenSubindex();
    }

    QTemporaryDir folder;
    const QString file = folder.filePath("test.eds");
    QStringList order;
    QVector<CANopen::CANopenIndex> indices;
    QVector<CANopenSubindex> subs;
};

QTEST_GUILESS_MAIN(TestEdsParser)
#include "tst_edsparser.moc"
