// The text documentation of a CANopen line.
#include "generators/descriptions/textdocgenerator.h"
#include "generators/textwriter.h"
#include "tests/unit/store/storefixture.h"

#include <QBuffer>
#include <QFile>
#include <QTest>

#include <functional>

class tst_TextDocGenerator : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        store = std::make_unique<ObjectDataBase>();
        QVERIFY(store->createNewDataBase());
        QFile::remove(fixture.path(QStringLiteral("demo_doc.txt")));
    }

    void writesTheWholeLine()
    {
        addMotor();
        store->addIndex(0, 0x0FFF, ObjectDataBase::INDEX_DATA_T());
        store->addIndex(0, 0xFFFF, ObjectDataBase::INDEX_DATA_T());
        store->cacheAllSubs(0, 0);
        const QByteArray expected = "CANopen Object Dictionary Documenation for demo\n"
                                    "\n"
                                    "\n"
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
        store->addNode(3, ObjectDataBase::NODE_DATA_T());
        const auto configure = [](TextDocGenerator &generator) {
            generator.generateML = true;
            generator.setActiveLine(3);
        };
        QVERIFY(!generate("demo_3.txt", configure).isEmpty());
        QVERIFY(!QFile::exists(fixture.path(QStringLiteral("demo_doc.txt"))));
    }

    void missingRecordsWriteNothing()
    {
        QBuffer buffer;
        QVERIFY(buffer.open(QIODevice::WriteOnly));
        TextWriter out(&buffer);
        TextDoc::documentIndex(out, *store, 0, 0x2000);
        TextDoc::documentSubIndex(out, *store, 9, 0x2000, 1);
        QVERIFY(out.finish());
        QVERIFY(buffer.data().isEmpty());
    }

private:
    void addMotor()
    {
        ObjectDataBase::INDEX_DATA_T motor;
        motor.name = QString::fromUtf8("Mötor ${index}");
        motor.dataType = 6;
        motor.objectCode = CANopen::ObjectCode::Record;
        motor.description = QStringLiteral("all of it");
        store->addIndex(0, 0x2A00, motor);
        store->addSubIndex(0, 0x2A00, 0, makeSub(QStringLiteral("Count"), 5, QString()));
        auto speed = makeSub(QStringLiteral("Speed ${sub} %1"), 4, QStringLiteral("-5"));
        speed.accessType = QStringLiteral("rww");
        speed.pdoMapping = PDOMappingType::Optional;
        speed.description = QStringLiteral("rounds");
        store->addSubIndex(0, 0x2A00, 0x1F, speed);
    }

    QByteArray generate(
        const char *fileName,
        const std::function<void(TextDocGenerator &)> &configure = [](TextDocGenerator &) {})
    {
        TextDocGenerator generator;
        generator.setOutputDirectory(fixture.path(QString()));
        generator.setProjectName(QStringLiteral("demo"));
        generator.setDataBase(store.get());
        configure(generator);
        generator.startGeneration();
        generator.wait();
        QFile file(fixture.path(QLatin1String(fileName)));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    StoreFixture fixture;
    std::unique_ptr<ObjectDataBase> store;
};

QTEST_GUILESS_MAIN(tst_TextDocGenerator)
#include "tst_textdocgenerator.moc"
