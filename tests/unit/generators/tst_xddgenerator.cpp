// XML device descriptions.
#include "generators/descriptions/xddgenerator.h"
#include "import/edsimporter.h"
#include "tests/fixtures/storefixture.h"

#include <QXmlStreamReader>

class tst_XDDGenerator : public StoreTest
{
    Q_OBJECT

private slots:
    void init() { store = makeStore(); }

    /// What the import takes of it, "index.sub name/type/access/default/mapping".
    void isReadBack()
    {
        const auto told = [](ObjectDataBase &database) {
            QStringList rows;
            for (const quint16 index : database.getIndices(0, 0x2000, 0x5FFF)) {
                const Object object = objectOf(database, 0, index);
                rows << joined(object.name, int(object.objectCode), object.dataType);
                for (const quint8 number : database.getSubIndices(0, index, 0)) {
                    const Sub sub = subOf(database, 0, index, number);
                    rows << QString("%1.%2 ").arg(index, 0, 16).arg(number) +
                                joined(sub.name, sub.dataType, sub.accessType, sub.defaultValue,
                                       sub.pdoMapping.toUInt());
                }
            }
            return rows;
        };
        Object object = makeObject("Speed <1>", CANopen::ObjectCode::Var);
        object.dataType = 6;
        store->addIndex(0, 0x2000, object);
        Sub speed = makeSub("Speed <1>", 6, "0x10");
        speed.accessType = "rww";
        speed.pdoMapping = PDOMapping(PDOMappingType::Rpdo);
        store->addSubIndex(0, 0x2000, 0, speed);
        object = makeObject("Texts", CANopen::ObjectCode::Array);
        object.dataType = 9;
        store->addIndex(0, 0x2001, object);
        store->addSubIndex(0, 0x2001, 0, makeSub("Count", 5, "1"));
        store->addSubIndex(0, 0x2001, 1, makeSub("Text", 9, "a \"b\""));
        XDDGenerator generator;
        const QString file = fixture.path("back.xdd");
        QVERIFY(writeFile(file, generateWith(generator, "d", "d_00000000.xdd").toUtf8()));
        const auto other = makeStore();
        EDSImporter importer;
        importer.setDatabase(other.get());
        QVERIFY(importer.setImportFileName(file));
        importer.startImport();
        importer.wait();
        QCOMPARE(told(*other), told(*store));
        QCOMPARE(told(*other).size(), 5);
    }

    void textsKeepTheStructure()
    {
        const QString text = QString::fromUtf8("<\"&'> --->]]>\n\t\xF0\x9F\x98\x80");
        const QString broken = text + QChar(1) + QChar(0xD800); // no such characters in XML
        setDescription("VendorName", broken);
        setDescription("CreatedBy", QChar(0xFFFE) + broken);
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
        QCOMPARE(found,
                 QStringList({file, ' ' + shown, shown, file, ' ' + shown, shown, shown, shown}));
    }
};

QTEST_GUILESS_MAIN(tst_XDDGenerator)
#include "tst_xddgenerator.moc"
