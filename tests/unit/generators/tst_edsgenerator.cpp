// Electronic data sheets, and their way back through the import.
#include "generators/descriptions/edsgenerator.h"
#include "generators/descriptions/edssections.h"
#include "generators/descriptions/edsvariants.h"
#include "generators/textwriter.h"
#include "import/edsimporter.h"
#include "tests/fixtures/storefixture.h"

#include <QBuffer>

using Code = CANopen::ObjectCode;

class tst_EDSGenerator : public StoreTest
{
    Q_OBJECT

private slots:
    void init()
    {
        store = makeStore();
        for (const QString &name : QDir(fixture.path()).entryList({"*.eds"}))
            QFile::remove(fixture.path(name));
    }

    void wholeFile()
    {
        store->addNode(2, Node());
        store->setDescriptionSettingsLine(2);
        set("VendorName", "M & \"Co\"=[1]");
        set("BaudRate_500", "1");
        set("Dummy0004", "1");
        set("Granularity", "");
        set("Comment", " one\r\n\ntwo [x]=1\rthree\n");
        set("AdditionalSections", "[Tools]\nItems=0\n");
        store->setDescriptionSettingsLine(0);
        addObject(0x1000, Code::Var, {makeSub("Device type ${index}", 7, "|x0x191")}, "type", 2);
        addObject(0x1018, Code::Record,
                  {makeSub("Highest", 5, "3"), makeSub("Vendor", 7, "0x5F"), makeSub("", 7, "7")},
                  "who\n\nwe are", 2);
        addObject(0x1400, Code::Record, {}, "", 2);
        addObject(0x1A00, Code::Record, {makeSub("Count", 5, "0xFE")}, "", 2);
        addObject(0x2000, Code::Array, {makeSub("Highest", 5, "9"), makeSub("No ${sub}", 3, "-1")},
                  "", 2);
        addObject(0x6000, Code::DefType, {}, "not told", 2);
        addObject(0xD0AB, Code::Var, {}, "", 2);
        QCOMPARE(
            generate("demo_2.eds", {}, false, false, true, 2),
            QString::fromUtf8(readFile(TESSARINE_FIXTURES "/descriptions/device.eds.expected")));
    }

    void fileNames()
    {
        bool isMultiLine = false;
        const auto nameOf = [&](const QString &define, bool isClassical) {
            init();
            // The setting has the same effect as several lines.
            store->setMiscSettingsValue("generateML", isMultiLine ? "true" : "True");
            (void)generate("", define, false, isClassical);
            return QDir(fixture.path()).entryList({"*.eds"}).join('/');
        };
        QCOMPARE(nameOf("", false), "demo.eds");
        QCOMPARE(nameOf("", true), "demo_classical.eds");
        QCOMPARE(nameOf("A B", false), "demo_A B.eds");
        QCOMPARE(nameOf("A", true), "demo_A.eds");
        QCOMPARE(nameOf("../A", false), "demo_.._A.eds"); // not in another folder
        isMultiLine = true;
        QCOMPARE(nameOf("", false), "demo_0.eds");
        QCOMPARE(nameOf("", true), "demo_0_classical.eds");
        QCOMPARE(nameOf("A", true), "demo_0_A.eds");
    }

    void descriptionLines()
    {
        // Lengths of the lines that come of lines of these lengths.
        const auto piecesOf = [](const QVector<int> &lengths) {
            QStringList lines;
            for (const int length : lengths)
                lines << QString(length, 'x');
            Sub sub;
            sub.description = lines.join('\n');
            QVector<int> pieces;
            for (const QString &line : valuesOf(sub).split('\n')) {
                if (line.startsWith(";;"))
                    pieces << line.size() - 2;
            }
            return pieces;
        };
        QCOMPARE(piecesOf({249}), (QVector<int>{249}));
        QCOMPARE(piecesOf({250}), (QVector<int>{250}));
        QCOMPARE(piecesOf({251}), (QVector<int>{250, 1}));
        QCOMPARE(piecesOf({500}), (QVector<int>{250}));
        QCOMPARE(piecesOf({501}), (QVector<int>{250, 250, 1}));
        QCOMPARE(piecesOf({251, 0, 3}), (QVector<int>{250, 1, 0, 3}));

        Sub sub; // a wide character is not torn apart
        sub.description = QString(249, 'x') + QString::fromUtf8("\xF0\x9F\x98\x80") + "y";
        QVERIFY(valuesOf(sub).endsWith(QString::fromUtf8("x\n;;\xF0\x9F\x98\x80y\n")));
    }

    void values()
    {
        Sub sub = makeSub("x", 7, "$NODEID+0x180");
        const auto found = [&sub] { // type, default value, flags
            const QString text = valuesOf(sub);
            return entry(text, "DataType") + ' ' + entry(text, "DefaultValue") + ' ' +
                   entry(text, "ObjFlags");
        };
        QCOMPARE(found(), "7 $NODEID+0x180 -");
        sub.refuseWrite = true;
        QCOMPARE(found(), "7 $NODEID+0x180 1");
        sub.refuseRead = true;
        QCOMPARE(found(), "7 $NODEID+0x180 3");
        sub.refuseWrite = false;
        sub.defaultInEds = false;
        QCOMPARE(found(), "7 - 2");
        sub.writeDefaultToEds = 2;
        sub.dataType = 99;
        QCOMPARE(found(), "99 $NODEID+0x180 2");
        sub.writeDefaultToEds = 0;
        sub.defaultInEds = true;
        sub.dataType = 100;
        QCOMPARE(found(), "5 - 2");
        sub.metadata.insert("eds_datatype", "0x1001F");
        QCOMPARE(found(), "31 - 2");
    }

    void variants()
    {
        Sub ofA = makeSub("a", 5, "1");
        ofA.metadata = {{"eds_define", "A"}};
        Sub ofB = makeSub("b", 5, "1");
        ofB.metadata = {{"eds_define", "B"}};
        const Sub count = makeSub("n", 5, "9");
        addObject(0x1010, Code::Array, {count, ofA, makeSub("c", 5, "1"), ofB});
        addObject(0x2000, Code::Array, {count, makeSub("c", 5, "1"), ofB, ofA});
        addObject(0x2001, Code::Var, {ofA}, "", 0, "A");
        addObject(0x2002, Code::Array, {count, ofB}, "", 0, "B");
        QCOMPARE(edsDefines(*store, 0), QStringList({"", "A", "B"}));
        QCOMPARE(getSubIndicesEDSDefines(*store, 0, 0x2000), QStringList({"B", "A"}));

        const auto outlineOf = [](const QString &text) {
            QStringList list;
            for (const char *head : {"1010", "1010sub0", "1010sub1", "1010sub2", "1010sub3", "2000",
                                     "2000sub0", "2000sub2", "2000sub3", "2001", "2002"}) {
                const QString part = section(text, head);
                QString number = entry(part, "SubNumber") + entry(part, "DefaultValue");
                list << (part.isEmpty() ? "" : number.remove('-'));
            }
            return list.join('/') + ' ' + section(text, "ManufacturerObjects").replace('\n', ' ');
        };
        QCOMPARE(outlineOf(generate("demo.eds")), "2/9//1//2/1//// SupportedObjects=1 1=0x2000");
        QCOMPARE(outlineOf(generate("demo_A.eds", "A")),
                 "3/9/1/1//3/3//1/1/ SupportedObjects=2 1=0x2000 2=0x2001");
        QCOMPARE(outlineOf(generate("demo_B.eds", "B")),
                 "3/9//1/1/3/2/1///2 SupportedObjects=2 1=0x2000 2=0x2002");
    }

    void classicalCompanion()
    {
        Sub first = makeSub("first", 7, "0x20191");
        first.description = "told";
        addObject(0x1000, Code::Array, {makeSub("n", 5, "1"), first}, "not told");
        for (const quint16 index : {0x1030, 0x1031, 0x1032})
            addObject(index, Code::Array, {});
        const QString fd = generate("demo.eds", {}, true, false);
        QCOMPARE(entry(section(fd, "1000"), "SubNumber"), "2");
        QCOMPARE(section(fd, "OptionalObjects"),
                 "SupportedObjects=3\n1=0x1030\n2=0x1031\n3=0x1032");
        QVERIFY(fd.contains("[1030]") && fd.contains("[1032]"));
        const QString classical = generate("demo_classical.eds", {}, false, true);
        QCOMPARE(section(classical, "1000"),
                 "ParameterName=object\nObjectType=7\nDataType=7\nAccessType=ro\nPDOMapping=0\n"
                 "DefaultValue=0x20191\n;;told");
        QCOMPARE(section(classical, "Comments"),
                 "Lines=1\nLine1=generated by CANopen Tessarine by Korvel");
        QCOMPARE(section(classical, "OptionalObjects"), "SupportedObjects=1\n1=0x1031");
        for (const char *head : {"[1030]", "[1032]", "[1000sub"})
            QVERIFY2(!classical.contains(head), head);
    }

    void objectsComeBack()
    {
        addAllTypes();
        addProfile();
        const QString first = generate("demo.eds");
        const auto origin = std::move(store);
        store = makeStore();
        import(fixture.path("demo.eds"));
        QCOMPARE(told(*store), told(*origin));
        QCOMPARE(generate("demo.eds"), first);
    }

    void textsKeepTheStructure()
    {
        const QString text = "a\n[2001]\nObjectType=9\r;;c";
        Sub sub = makeSub(text, 9, text);
        sub.accessType = sub.lowLimit = sub.upLimit = sub.description = text;
        sub.limitInEds = true;
        addObject(0x2000, Code::Record, {Sub(), sub}, text);
        set("VendorName", text);
        set("Comment", text);
        (void)generate("demo.eds");
        store = makeStore();
        import(fixture.path("demo.eds"));
        QCOMPARE(store->getIndices(0, 0, 0xFFFF), (QList<quint16>{0x2000}));
        QCOMPARE(objectOf(*store, 0, 0x2000).description, QString(text).replace('\r', '\n'));
        QCOMPARE(subOf(*store, 0, 0x2000, 1).name, "a [2001] ObjectType=9 ;;c");
        QCOMPARE(subOf(*store, 0, 0x2000, 1).defaultValue, "a [2001] ObjectType=9 ;;c");
        store->setDescriptionSettingsLine(0);
        QCOMPARE(store->getDescriptionSettingsValue("VendorName"), "a [2001] ObjectType=9 ;;c");
        QCOMPARE(store->getDescriptionSettingsValue("Comment"), QString(text).replace('\r', '\n'));
    }

private:
    void set(const char *key, const QString &value)
    {
        QVERIFY(store->setDescriptionSettingsValue(key, value));
    }

    void addObject(quint16 index, Code code, const QList<Sub> &subs,
                   const QString &description = {}, quint8 line = 0, const QString &define = {})
    {
        // A variable has name and type of its value, an array the type of its elements.
        const Sub value = subs.value(code == Code::Array ? 1 : 0);
        Object object;
        object.name = index == 0x1000 && code == Code::Var ? value.name : "object";
        object.objectCode = code;
        object.dataType = code == Code::Record || subs.isEmpty() ? 5 : value.dataType;
        object.description = description;
        if (!define.isEmpty())
            object.metadata = {{"eds_define", define}};
        QVERIFY(store->addIndex(line, index, object));
        for (int i = 0; i < subs.size(); ++i)
            QVERIFY(store->addSubIndex(line, index, static_cast<quint8>(i), subs[i]));
    }

    /// Variables and members of each data type that data sheets know, with all marks.
    void addAllTypes()
    {
        Sub count = makeSub("Count", 5, "2");
        count.description = "of all\nlines";
        const QStringList access = {"const", "ro", "rw", "wo", "rww", "rwr"};
        constexpr PDOMappingType mappings[] = {PDOMappingType::Default, PDOMappingType::Tpdo,
                                               PDOMappingType::Default, PDOMappingType::Rpdo,
                                               PDOMappingType::Rpdo,    PDOMappingType::Tpdo};
        quint16 index = 0x2000;
        for (const quint16 type : {1,  2,  3,  4,  5,  6,  7,  8,  9,  10, 11, 12, 13,
                                   15, 16, 17, 18, 19, 20, 21, 22, 24, 25, 26, 27}) {
            Sub sub = makeSub("object", type, type == 9 ? "a=b; [c] \"d\" 'e' ä" : "1");
            sub.accessType = access[type % 6];
            sub.pdoMapping = mappings[type % 6]; // what "mappable" means for the access
            sub.limitInEds = true;
            sub.upLimit = "100";
            sub.refuseRead = type % 2;
            sub.refuseWrite = type % 3;
            sub.description = "first\n\n second";
            addObject(index++, type == 15 ? Code::Domain : Code::Var, {sub}, sub.description);
            sub.name = "Member";
            addObject(index++, Code::Array, {count, sub, sub}, count.description);
        }
    }

    /// Objects below 0x2000 and above, with PDOs and with texts that need care.
    void addProfile()
    {
        const Sub mapping = makeSub("Entry", 7, "0x20000008");
        addObject(0x1000, Code::Var, {makeSub("Type", 7, "0x00020192")});
        addObject(0x1018, Code::Record, {makeSub("n", 5, "2"), makeSub("v", 7, "0x5F"), mapping});
        addObject(
            0x1400, Code::Record,
            {makeSub("n", 5, "2"), makeSub("COB", 7, "$NODEID+0x200"), makeSub("t", 5, "255")});
        addObject(0x1600, Code::Record, {makeSub("n", 5, "2"), mapping, mapping});
        addObject(0x1801, Code::Record, {makeSub("n", 5, "1"), makeSub("COB", 7, "$NODEID+0x180")});
        addObject(0x1A01, Code::Record, {makeSub("n", 5, "254"), makeSub("e", 7, "")});
        addObject(0xBFFF, Code::Record, {});
        QVERIFY(store->addSubIndex(0, 0xBFFF, 0xFE, makeSub("100 % \"x\"; =y", 2, "-128")));
        QVERIFY(store->addSubIndex(0, 0xBFFF, 0x1B, makeSub("x", 4, "0x7FFFFFFF")));
        for (const char *key :
             {"VendorName", "ProductName", "CreatedBy", "OrderCode", "FileVersion"})
            set(key, QString("%1; a, \"b\" = [c] & <d>").arg(key));
        set("Comment", "two; [lines]\nof = text");
        set("LSS_Supported", "1");
    }

    QString generate(const QString &fileName, const QString &define = {}, bool canFd = false,
                     bool classical = false, bool isMultiLine = false, quint8 line = 0)
    {
        EDSGenerator generator(define, canFd, classical);
        generator.setOutputDirectory(fixture.path());
        generator.setProjectName("demo");
        generator.setDataBase(store.get());
        generator.generateML = isMultiLine;
        generator.setActiveLine(line);
        generator.startGeneration();
        generator.wait();
        QString text = QString::fromUtf8(readFile(fixture.path(fileName)));
        text.replace(QRegularExpression("Time=\\d\\d:\\d\\dPM\n"), "Time=hh:mmPM\n");
        text.replace(QRegularExpression("Date=\\d\\d-\\d\\d-\\d\\d\n"), "Date=MM-dd-yy\n");
        return text;
    }

    void import(const QString &file)
    {
        EDSImporter importer;
        importer.setDatabase(store.get());
        QVERIFY(importer.setImportFileName(file) && importer.startImport());
        importer.wait();
        store->cacheAllSubs(0, 0); // as a run does
    }

    static QString valuesOf(const Sub &sub)
    {
        QBuffer buffer;
        buffer.open(QIODevice::WriteOnly);
        TextWriter out(&buffer);
        EdsSections::generateSubInfo(out, sub);
        return out.finish() ? QString::fromUtf8(buffer.data()) : QString();
    }

    /// The lines between a section's head and the next empty line.
    static QString section(const QString &text, const QString &name)
    {
        return text.section('[' + name + "]\n", 1, 1).section("\n\n", 0, 0);
    }

    /// The value of an entry; "-" if there is none.
    static QString entry(const QString &section, const QString &key)
    {
        const auto match =
            QRegularExpression('^' + key + "=(.*)$", QRegularExpression::MultilineOption)
                .match(section);
        return match.hasMatch() ? match.captured(1) : "-";
    }

    /// What a data sheet tells of objects and subindices, a text each.
    static QStringList told(ObjectDataBase &from)
    {
        QStringList list;
        for (const quint16 index : from.getIndices(0, 0, 0xFFFF)) {
            const Object object = objectOf(from, 0, index);
            const bool hasType = object.objectCode != Code::Record;
            list << joined(index, object.name, static_cast<int>(object.objectCode),
                           hasType ? object.dataType : 0, object.description);
            for (const quint8 number : from.getSubIndices(0, index, 0)) {
                const Sub sub = subOf(from, 0, index, number);
                const QString limits = sub.limitInEds ? joined(sub.lowLimit, sub.upLimit) : "-";
                list << joined(index, number, sub.name, sub.dataType, sub.accessType,
                               sub.defaultValue, sub.pdoMapping.toUInt(), limits, sub.refuseRead,
                               sub.refuseWrite, sub.description);
            }
        }
        return list;
    }
};

QTEST_GUILESS_MAIN(tst_EDSGenerator)
#include "tst_edsgenerator.moc"
