// The CANopen vocabulary and the small value helpers.
#include "support/cohelper.h"
#include "support/helper.h"
#include "support/numbers.h"
#include "tests/fixtures/testkit.h"

class TestCOHelper : public QObject
{
    Q_OBJECT

private slots:
    void types_data()
    {
        // clang-format off
        columns<int, QString>("type", "expected"); // bits, limits, names
        QTest::newRow("boolean") << 1 << "1/0/1/BOOLEAN/B";
        QTest::newRow("u8") << 5 << "8/0/255/UNSIGNED8/U8";
        QTest::newRow("real32") << 8 << "32///REAL32/R32";
        QTest::newRow("visible_string") << 9 << "0///VISIBLE_STRING/VS";
        QTest::newRow("time_of_day") << 12 << "48///TIME_OF_DAY/U48";
        QTest::newRow("i64") << 21 << "64/-9223372036854775808/9223372036854775807/INTEGER64/I64";
        QTest::newRow("u64") << 27 << "64/0/18446744073709551615/UNSIGNED64/U64";
        QTest::newRow("u15") << 112 << "15/0/32767/UNSIGNED15/U15";
        QTest::newRow("string_asterisk") << 121 << "0///STRING_ASTERISK/STRING_ASTERIKS";
        QTest::newRow("unknown") << 64 << "0////";
        // clang-format on
    }
    void types()
    {
        QFETCH(int, type);
        const auto number = static_cast<quint16>(type);
        const auto dataType = static_cast<CAN::CANopenDataType>(type);
        const QString name = COHelper::index2DataTypeString(number);
        QString low = "old";
        QString high = "old";
        COHelper::getDefaultLimits(dataType, low, high);
        const int bits = COHelper::getDataLengthBits(dataType);
        const QString shortName = COHelper::index2DataTypeShortString(number);
        QTEST(joined(bits, low, high, name, shortName), "expected");
        if (!name.isEmpty())
            QCOMPARE(COHelper::mapDataTypeString(name.toLower()), number);
    }

    void typeNames()
    {
        const auto typeOf = [](const char *text) { return int(COHelper::mapDataTypeString(text)); };
        QCOMPARE(typeOf(" i16 "), 3);
        QCOMPARE(typeOf("U48"), 25); // the number, not the time of day
        QCOMPARE(typeOf("u8s"), 124);
        QCOMPARE(typeOf("7"), 7);
        QCOMPARE(typeOf("0x1B"), 27);
        QCOMPARE(typeOf("U33"), 0);
        QCOMPARE(typeOf(""), 0);
    }

    void objectCodes()
    {
        using CANopen::ObjectCode;
        QVERIFY(COHelper::string2objectCode(" Variable ") == ObjectCode::Var);
        QVERIFY(COHelper::string2objectCode("defstruct") == ObjectCode::DefStruct);
        QVERIFY(COHelper::string2objectCode("LIST") == ObjectCode::Null);
    }

    void mappings()
    {
        quint32 number = 0;
        for (const QString word : {"no", "default", "optional", "RPDO", "TPDO"}) {
            const PDOMapping mapping = PDOMapping::fromUInt(number);
            QCOMPARE(mapping.toUInt(), number);
            QCOMPARE(mapping.getCSVStringValue(), word);
            QCOMPARE(COHelper::pdoMapping2String(mapping), word);
            QCOMPARE(mapping.toBinary(), number == 0 ? 0u : 1u);
            PDOMapping read(PDOMappingType::Tpdo);
            read.fromCSVString(word.toLower());
            QVERIFY(read == mapping);
            read.fromCSVString("sometimes");
            QVERIFY(read == PDOMapping());
            ++number;
        }
        QVERIFY(PDOMapping::fromUInt(number) == PDOMapping());
    }

    void substituteVariables()
    {
        const auto filled = [](const char *text) {
            return Helper::substituteVariables(text, 0x19FF, 7);
        };
        QCOMPARE(filled("a${number}b${index}c${sub}"), "a6655b19ffc7");
        QCOMPARE(filled("${sub}${sub}"), "77");
        QCOMPARE(filled("${Sub}${other}$sub{sub}"), "${Sub}${other}$sub{sub}");
        QCOMPARE(filled("x ${sub"), "x ${sub");
        QCOMPARE(filled("${${sub}"), "${7");
        QCOMPARE(filled("%1 ${sub}"), "%1 7");
    }

    void lineEndings()
    {
        QTemporaryDir folder;
        const QString file = folder.filePath("text");
        for (const QByteArray ending : {"\n", "\r\n", "\r"}) {
            QVERIFY(writeFile(file, "a\nb\r\nc\rd\n\n"));
            QVERIFY(Helper::modifyLineEnding(file, ending));
            QCOMPARE(readFile(file), QByteArray("a@b@c@d@@").replace("@", ending));
        }
        QVERIFY(Helper::modifyLineEnding(folder.filePath("none"), "\n"));
        QVERIFY(!Helper::modifyLineEnding(folder.path(), "\n"));
    }

    void numbers()
    {
        const auto read = [](const char *text) {
            return joined(Numbers::toUIntDecimal(text), Numbers::toUIntByPrefix(text),
                          Numbers::toLongLongByPrefix(text));
        };
        QCOMPARE(read(" 42 "), "42/42/42");
        QCOMPARE(read(" 0X1f "), "0/31/31");
        QCOMPARE(read("+0x7"), "0/7/7");
        QCOMPARE(read("010"), "10/10/10"); // not octal
        QCOMPARE(read("-5"), "0/0/-5");
        QCOMPARE(read("4294967295"), "4294967295/4294967295/4294967295");
        QCOMPARE(read("0x1Fa"), "0/506/506");
        QCOMPARE(read("0x1g"), "0/0/0");
        QCOMPARE(read("0x"), "0/0/0");
        QCOMPARE(read("7A"), "0/0/0");
        QCOMPARE(read("4294967296"), "0/0/4294967296");
        QCOMPARE(read("0xFFFFFFFFFFFFFFFF"), "0/0/0");
        QCOMPARE(read("1x"), "0/0/0");
        QCOMPARE(Numbers::toULongLongByPrefix("0xFFFFFFFFFFFFFFFF"), ~quint64(0));
    }
};

QTEST_GUILESS_MAIN(TestCOHelper)
#include "tst_cohelper.moc"
