// XML device descriptions.
#include "generators/descriptions/xddgenerator.h"
#include "tests/fixtures/storefixture.h"

#include <QXmlStreamReader>

class tst_XDDGenerator : public StoreTest
{
    Q_OBJECT

private slots:
    void init() { store = makeStore(); }

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
