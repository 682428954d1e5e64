// The text documentation of a CANopen line.
#include "generators/descriptions/textdocgenerator.h"
#include "tests/fixtures/storefixture.h"

class tst_TextDocGenerator : public StoreTest
{
    Q_OBJECT

private slots:
    void init()
    {
        store = makeStore();
        QFile::remove(fixture.path("demo_doc.txt"));
    }

    void writesTheWholeLine()
    {
        Object motor;
        motor.name = "Mötor ${index}";
        motor.dataType = 6;
        motor.objectCode = CANopen::ObjectCode::Record;
        motor.description = "all of it";
        store->addIndex(0, 0x2A00, motor);
        store->addSubIndex(0, 0x2A00, 0, makeSub("Count", 5, QString()));
        auto speed = makeSub("Speed ${sub} %1", 4, "-5");
        speed.accessType = "rww";
        speed.pdoMapping = PDOMappingType::Optional;
        speed.description = "rounds";
        store->addSubIndex(0, 0x2A00, 0x1F, speed);
        store->addIndex(0, 0x0FFF, Object());
        store->addIndex(0, 0xFFFF, Object());
        store->cacheAllSubs(0, 0);
        const QByteArray expected = "CANopen Object Dictionary Documenation for demo\n\n\n"
                                    "Index:       0x2a00 - M\xC3\xB6tor 2a00\n"
                                    "DataType:    UNSIGNED16\n"
                                    "ObjectCode:  RECORD\n"
                                    "Description: all of it\n"
                                    "  Sub:          0x00 - Count\n"
                                    "  DataType:     UNSIGNED8\n"
                                    "  AccessType:   ro\n"
                                    "  PDOMapping:   0\n"
                                    "  Sub:          0x1f - Speed 31 %1\n"
                                    "  DataType:     INTEGER32\n"
                                    "  DefaultValue: -5\n"
                                    "  AccessType:   rww\n"
                                    "  PDOMapping:   2\n"
                                    "  Description: rounds\n"
                                    "\n"
                                    "Index:       0xffff - unnamed object\n"
                                    "DataType:    UNSIGNED8\n"
                                    "ObjectCode:  VAR\n";
        QCOMPARE(generate("demo_doc.txt"), expected);
    }

    void lineWithoutObjectsHasTitleOnly()
    {
        QCOMPARE(generate("demo_doc.txt"),
                 QByteArray("CANopen Object Dictionary Documenation for demo\n\n"));
    }

    void multiLineFileTellsTheLine()
    {
        store->addNode(3, Node());
        QVERIFY(!generate("demo_3.txt", 3, true).isEmpty());
        QVERIFY(!QFile::exists(fixture.path("demo_doc.txt")));
    }

private:
    QByteArray generate(const char *fileName, quint8 line = 0, bool isMultiLine = false)
    {
        TextDocGenerator generator;
        return generateWith(generator, "demo", fileName, line, isMultiLine).toUtf8();
    }
};

QTEST_GUILESS_MAIN(tst_TextDocGenerator)
#include "tst_textdocgenerator.moc"
