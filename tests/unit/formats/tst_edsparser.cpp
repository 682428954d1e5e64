// The parser of device descriptions: which records a file gives, and their values.
#include "formats/edsparser.h"
#include "tests/fixtures/casefile.h"
#include "tests/fixtures/problemrecorder.h"

#include <random>

class TestEdsParser : public QObject
{
    Q_OBJECT

private slots:
    void cases_data() { addCases(TEST_CASES "/edsparser.txt"); }
    void cases()
    {
        const auto [project, expected] = fetchRow<QString, QString>();
        if (caseGroup() == "objects") {
            QCOMPARE(load(project), expected != "\n");
            QCOMPARE(order.join(' ') + '\n', expected);
            return;
        }
        if (caseGroup() == "problems") {
            const ProblemRecorder problems;
            (void)load(project); // the objects are looked at elsewhere
            QCOMPARE(problems.lines.join('\n').remove(file) + '\n', expected);
            return;
        }
        const CANopenSubindex sub = onlySub(project);
        QCOMPARE(joined(sub.name, sub.dataType, sub.accessType, int(sub.pdoMapping), sub.denotation,
                        int(sub.refuseWrite), int(sub.refuseRead)) +
                     '\n',
                 expected);
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
        const auto [type, given, stored] = fetchRow<int, QString, QString>();
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
        QCOMPARE(limitsOf("DataType=3\nLowLimit=0xFFF6\nHighLimit=0x7FFF"), "-10..32767");
        QCOMPARE(limitsOf("DataType=3\nLowLimit=0x8000\nHighLimit=7999"), "-32768..7999");
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
        const bool hasObjects = writeFile(file, text) && parser.LoadEds(file);
        parser.sections().tellProblems();
        return hasObjects;
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
