// XML device descriptions.
#include "generators/descriptions/xddgenerator.h"
#include "tests/fixtures/storefixture.h"

#include <QXmlStreamReader>

class tst_XDDGenerator : public StoreTest
{
    Q_OBJECT

private slots:
    void init() { store = makeStore(); }

    void wholeFile()
    {
        store->addNode(3, Node());
        store->setDescriptionSettingsLine(3);
        for (const char *key :
             {"CreatedBy", "ModifiedBy", "FileVersion", "VendorName", "ProductName"})
            setDescription(key, QString(key).left(4));
        store->setDescriptionSettingsLine(0);
        store->addIndex(3, 0x1018, makeObject("Identity", CANopen::ObjectCode::Record));
        store->addSubIndex(3, 0x1018, 1, makeSub("Vendor", 7, "0x5F"));
        store->addIndex(3, 0x2A00, makeObject("O ${index}", CANopen::ObjectCode::Array));
        Sub sub = makeSub("S ${sub}", 0x1B, "|x5");
        sub.accessType = "wo";
        sub.pdoMapping = PDOMappingType::Rpdo;
        store->addSubIndex(3, 0x2A00, 0, sub);
        sub.accessType = "const";
        sub.defaultInEds = false;
        store->addSubIndex(3, 0x2A00, 0x0A, sub);
        sub.accessType = "rwr";
        sub.writeDefaultToEds = 2;
        store->addSubIndex(3, 0x2A00, 0xFE, sub);
        store->addIndex(3, 0xC000, Object());
        XDDGenerator generator;
        QString text = generateWith(generator, "demo", "demo_0000005f_3.xdd", 3, true);
        text.replace(QRegularExpression("2 \\(\\w+ \\w+ \\d+ [0-9:]+ \\d+ GMT\\)"), "2 (time)");
        text.replace(QRegularExpression("\"\\d\\d-\\d\\d-\\d\\d\""), "\"MM-dd-yy\"");
        QCOMPARE(text, QString::fromUtf8(
                           readFile(TESSARINE_FIXTURES "/descriptions/device.xdd.expected")));
    }

    void textsKeepTheStructure()
    {
        const QString text = QString::fromUtf8("<\"&'> --->]]>\n\t\xF0\x9F\x98\x80");
        const QString broken = text + QChar(1) + QChar(0xD800); // no such characters in XML
        setDescription("VendorName", broken);
        setDescription("CreatedBy", broken);
        store->addIndex(0, 0x2000, makeObject(broken, CANopen::ObjectCode::Var));
        store->addSubIndex(0, 0x2000, 0, makeSub(broken, 9, broken));
        const QString file = "a--\"&<b-_00000000.xdd";
        XDDGenerator generator;
        QXmlStreamReader reader(generateWith(generator, "a--\"&<b-", file));
        QStringList found;
        while (!reader.atEnd()) {
            reader.readNext();
            for (const char *name : {"fileName", "fileCreator", "name", "defaultValue"}) {
                if (reader.isStartElement() && reader.attributes().hasAttribute(name))
                    found << reader.attributes().value(name).toString();
            }
            if (reader.isStartElement() && reader.name() == "vendorName")
                found << reader.readElementText();
        }
        QVERIFY2(!reader.hasError(), qUtf8Printable(reader.errorString()));
        const QString shown = text + ' ' + QChar(0xFFFD);
        QCOMPARE(found, QStringList({file, shown, shown, file, shown, shown, shown, shown}));
    }
};

QTEST_GUILESS_MAIN(tst_XDDGenerator)
#include "tst_xddgenerator.moc"
