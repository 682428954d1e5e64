// The CANopen vocabulary and the small value helpers.
#include "support/cohelper.h"
#include "support/helper.h"
#include "support/numbers.h"

#include <QtTest>

#include <limits>

class TestCOHelper : public QObject
{
    Q_OBJECT

private slots:
    void types_data();
    void types();
    void typeNames_data();
    void typeNames();
    void objectCodes();
    void accessTypes_data();
    void accessTypes();
    void mappings_data();
    void mappings();
    void substituteVariables_data();
    void substituteVariables();
    void lineEndings_data();
    void lineEndings();
    void byteArrays();
    void numbers_data();
    void numbers();
};

void TestCOHelper::types_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<int>("bits");
    QTest::addColumn<QString>("limits");
    QTest::addColumn<QString>("names");

    QTest::newRow("boolean") << 1 << 1 << "0..1"
                             << "BOOLEAN B";
    QTest::newRow("u8") << 5 << 8 << "0..255"
                        << "UNSIGNED8 U8";
    QTest::newRow("real32") << 8 << 32 << ".."
                            << "REAL32 R32";
    QTest::newRow("visible_string") << 9 << 0 << ".."
                                    << "VISIBLE_STRING VS";
    QTest::newRow("time_of_day") << 12 << 48 << ".."
                                 << "TIME_OF_DAY U48";
    QTest::newRow("i64") << 21 << 64 << "-9223372036854775808..9223372036854775807"
                         << "INTEGER64 I64";
    QTest::newRow("u64") << 27 << 64 << "0..18446744073709551615"
                         << "UNSIGNED64 U64";
    QTest::newRow("u15") << 112 << 15 << "0..32767"
                         << "UNSIGNED15 U15";
    QTest::newRow("string_asterisk") << 121 << 0 << ".."
                                     << "STRING_ASTERISK STRING_ASTERIKS";
    QTest::newRow("unknown") << 64 << 0 << ".."
                             << " ";
}

void TestCOHelper::types()
{
    QFETCH(int, type);
    QFETCH(QString, names);
    const auto number = static_cast<quint16>(type);
    const auto dataType = static_cast<CAN::CANopenDataType>(type);
    QString low = QStringLiteral("old");
    QString high = low;
    COHelper::getDefaultLimits(dataType, low, high);
    QTEST(int(COHelper::getDataLengthBits(dataType)), "bits");
    QTEST(low + QLatin1String("..") + high, "limits");
    QCOMPARE(COHelper::index2DataTypeString(number) + QLatin1Char(' ') +
                 COHelper::index2DataTypeShortString(number),
             names);
    const QString longName = COHelper::index2DataTypeString(number);
    if (!longName.isEmpty())
        QCOMPARE(COHelper::mapDataTypeString(longName.toLower()), number);
}

void TestCOHelper::typeNames_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("type");

    QTest::newRow("short") << " i16 " << 3;
    QTest::newRow("u48_is_the_number") << "U48" << 25;
    QTest::newRow("u8s") << "u8s" << 124;
    QTest::newRow("decimal") << "7" << 7;
    QTest::newRow("hex") << "0x1B" << 27;
    QTest::newRow("unknown") << "U33" << 0;
    QTest::newRow("empty") << "" << 0;
}

void TestCOHelper::typeNames()
{
    QFETCH(QString, text);
    QTEST(int(COHelper::mapDataTypeString(text)), "type");
}

void TestCOHelper::objectCodes()
{
    using CANopen::ObjectCode;
    for (const auto code :
         {ObjectCode::Null, ObjectCode::Domain, ObjectCode::DefType, ObjectCode::DefStruct,
          ObjectCode::Var, ObjectCode::Array, ObjectCode::Record})
        QVERIFY(COHelper::string2objectCode(COHelper::objectCode2String(code)) == code);
    QCOMPARE(COHelper::objectCode2String(ObjectCode::Var), QStringLiteral("VAR"));
    QVERIFY(COHelper::string2objectCode(QStringLiteral(" Variable ")) == ObjectCode::Var);
    QVERIFY(COHelper::string2objectCode(QStringLiteral("LIST")) == ObjectCode::Null);
    QVERIFY(COHelper::objectCode2String(static_cast<ObjectCode>(1)).isEmpty());
}

void TestCOHelper::accessTypes_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("word");

    for (const char *word : {"const", "ro", "rw", "wo", "rww", "rwr"})
        QTest::newRow(word) << QString::fromLatin1(word).toUpper() << QString::fromLatin1(word);
    QTest::newRow("blanks") << " rw "
                            << "rw";
    QTest::newRow("w") << "W"
                       << "wo";
    QTest::newRow("r") << "r"
                       << "ro";
    QTest::newRow("empty") << ""
                           << "ro";
    QTest::newRow("unknown") << "readwrite"
                             << "ro";
}

void TestCOHelper::accessTypes()
{
    QFETCH(QString, text);
    QTEST(COHelper::normalizeAccessType(text), "word");
}

void TestCOHelper::mappings_data()
{
    QTest::addColumn<quint32>("number");
    QTest::addColumn<QString>("word");
    QTest::addColumn<quint32>("binary");

    QTest::newRow("no") << 0u << "no" << 0u;
    QTest::newRow("default") << 1u << "default" << 1u;
    QTest::newRow("optional") << 2u << "optional" << 1u;
    QTest::newRow("rpdo") << 3u << "RPDO" << 1u;
    QTest::newRow("tpdo") << 4u << "TPDO" << 1u;
}

void TestCOHelper::mappings()
{
    QFETCH(quint32, number);
    QFETCH(QString, word);
    const PDOMapping mapping = PDOMapping::fromUInt(number);
    QCOMPARE(mapping.toUInt(), number);
    QCOMPARE(mapping.getCSVStringValue(), word);
    QCOMPARE(COHelper::pdoMapping2String(mapping), word);
    QTEST(mapping.toBinary(), "binary");
    PDOMapping read(PDOMappingType::Tpdo);
    read.fromCSVString(word.toLower());
    QVERIFY(read == mapping);
    read.fromCSVString(QStringLiteral("sometimes"));
    QVERIFY(read == PDOMapping());
    QVERIFY(PDOMapping::fromUInt(5) == PDOMapping());
}

void TestCOHelper::substituteVariables_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("expected");

    QTest::newRow("all") << "a${number}b${index}c${sub}"
                         << "a6655b19ffc7";
    QTest::newRow("twice") << "${sub}${sub}"
                           << "77";
    QTest::newRow("unknown_stays") << "${Sub}${other}$sub{sub}"
                                   << "${Sub}${other}$sub{sub}";
    QTest::newRow("open_stays") << "x ${sub"
                                << "x ${sub";
    QTest::newRow("inner_one_is_found") << "${${sub}"
                                        << "${7";
    QTest::newRow("per_cent_stays") << "%1 ${sub}"
                                    << "%1 7";
}

void TestCOHelper::substituteVariables()
{
    QFETCH(QString, text);
    QTEST(Helper::substituteVariables(text, 0x19FF, 7), "expected");
}

void TestCOHelper::lineEndings_data()
{
    QTest::addColumn<QByteArray>("ending");
    QTest::newRow("lf") << QByteArray("\n");
    QTest::newRow("crlf") << QByteArray("\r\n");
    QTest::newRow("cr") << QByteArray("\r");
}

void TestCOHelper::lineEndings()
{
    QFETCH(QByteArray, ending);
    QTemporaryDir folder;
    QFile file(folder.filePath(QStringLiteral("text")));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("a\nb\r\nc\rd\n\n");
    file.close();
    QVERIFY(Helper::modifyLineEnding(file.fileName(), QString::fromLatin1(ending)));
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(file.readAll(), QByteArray("a@b@c@d@@").replace("@", ending));
    QVERIFY(
        Helper::modifyLineEnding(folder.filePath(QStringLiteral("none")), QStringLiteral("\n")));
    QVERIFY(!Helper::modifyLineEnding(folder.path(), QStringLiteral("\n")));
}

void TestCOHelper::byteArrays()
{
    QCOMPARE(Helper::UTF8String2ArrayString(QStringLiteral(u"A\u00B5")),
             QStringLiteral("{0x41,0xc2,0xb5}"));
}

void TestCOHelper::numbers_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<quint32>("decimal");
    QTest::addColumn<quint32>("byPrefix");
    QTest::addColumn<qint64>("wide");

    QTest::newRow("decimal") << "42" << 42u << 42u << qint64(42);
    QTest::newRow("blanks") << " 42 " << 42u << 42u << qint64(42);
    QTest::newRow("hex") << "0x1F" << 0u << 0x1Fu << qint64(0x1F);
    QTest::newRow("hex_upper_prefix") << "0X1f" << 0u << 0x1Fu << qint64(0x1F);
    QTest::newRow("leading_zeros_are_decimal") << "010" << 10u << 10u << qint64(10);
    QTest::newRow("negative") << "-5" << 0u << 0u << qint64(-5);
    QTest::newRow("too_large") << "4294967296" << 0u << 0u << qint64(4294967296);
    QTest::newRow("no_number") << "1x" << 0u << 0u << qint64(0);
    QTest::newRow("empty") << "" << 0u << 0u << qint64(0);
}

void TestCOHelper::numbers()
{
    QFETCH(QString, text);
    QTEST(Numbers::toUIntDecimal(text), "decimal");
    QTEST(Numbers::toUIntByPrefix(text), "byPrefix");
    QTEST(Numbers::toLongLongByPrefix(text), "wide");
    QCOMPARE(Numbers::toULongLongByPrefix(QStringLiteral("0xFFFFFFFFFFFFFFFF")),
             std::numeric_limits<quint64>::max());
}

QTEST_GUILESS_MAIN(TestCOHelper)
#include "tst_cohelper.moc"
