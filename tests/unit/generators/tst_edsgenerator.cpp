// Electronic data sheets, and their way back through the import.
#include "generators/descriptions/edsgenerator.h"
#include "generators/descriptions/edssections.h"
#include "generators/textwriter.h"
#include "import/edsimporter.h"
#include "tests/fixtures/storefixture.h"

#include <QBuffer>
#include <QTextCodec>

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

    void fileNames()
    {
        const auto names = [&](const char *generateML) {
            QStringList found;
            // Never in another folder, and always a data sheet.
            for (const QString &define : {QString(), QString("../A"), QString("c.c") + QChar(0)}) {
                for (const bool isClassical : {false, true}) {
                    init();
                    store->setMiscSettingsValue("generateML", generateML);
                    (void)generate("", define, false, isClassical);
                    found << QDir(fixture.path()).entryList({"*.eds"}).join('/');
                }
            }
            return found.join(' ');
        };
        QCOMPARE(
            names("True"),
            "demo.eds demo_classical.eds demo_.._A.eds demo_.._A.eds demo_c.c.eds demo_c.c.eds");
        // The setting has the same effect as several lines.
        QCOMPARE(names("true"), "demo_0.eds demo_0_classical.eds demo_0_.._A.eds demo_0_.._A.eds "
                                "demo_0_c.c.eds demo_0_c.c.eds");
    }

    void longFileNames_data()
    {
        columns<QString, QString, QString>("project", "define", "file");
        // clang-format off
        const QString p(251, 'p');
        QTest::newRow("longest") << p << QString() << p + ".eds";
        QTest::newRow("project") << p + "p" << "A" << p.left(247) + "_0_A.eds";
        QTest::newRow("variant") << "demo" << QString(1000, 'd') << "demo_0_" + QString(244, 'd') + ".eds";
        QTest::newRow("both") << p << QString(252, 'd') << p.left(124) + "_0_" + QString(124, 'd') + ".eds";
        QTest::newRow("wide") << "demo" << QString::fromUtf8("\xF0\x9F\x98\x80").repeated(62)
            << "demo_0_" + QString::fromUtf8("\xF0\x9F\x98\x80").repeated(61) + ".eds";
        // clang-format on
    }
    void longFileNames()
    {
        const auto [project, define] = fetchRow<QString, QString>();
        QTextCodec::setCodecForLocale(QTextCodec::codecForName("UTF-8"));
        EDSGenerator generator(EdsVariants(*store, 0), define, false, false);
        (void)generateWith(generator, project, {}, 0, !define.isEmpty());
        QTEST(QDir(fixture.path()).entryList({"*.eds"}).join('/'), "file");
    }

    void descriptionLines()
    {
        Sub sub;
        for (const int length : {249, 250, 251, 500, 501, 0, 3})
            sub.description += QString(length, 'x') + '\n';
        // A wide character is not torn apart.
        sub.description += QString(249, 'x') + QString::fromUtf8("\xF0\x9F\x98\x80") + 'y';
        QVector<int> lengths;
        for (const QString &line : linesOf(valuesOf(sub), "^;;.*$"))
            lengths << line.size() - 2;
        QCOMPARE(lengths, (QVector<int>{249, 250, 250, 1, 250, 250, 250, 1, 0, 3, 249, 3}));
    }

    void values()
    {
        Sub sub = makeSub("x", 99, "$NODEID+0x180");
        const auto found = [&sub] {
            return linesOf(valuesOf(sub), "^(DataType|DefaultValue).*$").join(' ');
        };
        QCOMPARE(found(), "DataType=99 DefaultValue=$NODEID+0x180");
        sub.defaultInEds = false;
        QCOMPARE(found(), "DataType=99");
        sub.writeDefaultToEds = 2;
        QCOMPARE(found(), "DataType=99 DefaultValue=$NODEID+0x180");
        sub.writeDefaultToEds = 0;
        sub.defaultInEds = true;
        sub.dataType = 100;
        QCOMPARE(found(), "DataType=5");
        sub.metadata.insert("eds_datatype", "0x1001F");
        QCOMPARE(found(), "DataType=31");
    }

    void variants()
    {
        const Sub count = makeSub("n", 5, "9");
        Sub ofA = makeSub("a", 5, {});
        Sub ofB = ofA;
        ofA.metadata = {{"eds_define", "A"}};
        ofB.metadata = {{"eds_define", "B"}};
        addObject(0x1010, Code::Array, {count, ofA, Sub(), ofB});
        addObject(0x2000, Code::Array, {count, Sub(), ofB, ofA});
        addObject(0x2001, Code::Var, {ofA}, "", "A");
        addObject(0x2002, Code::Array, {count, ofB}, "", "B");
        const EdsVariants found(*store, 0);
        QCOMPARE(found.defines(), QStringList({"", "A", "B"}));
        QCOMPARE(found.objectsOf("A"), (QList<quint16>{0x1010, 0x2000, 0x2001}));

        const auto outlineOf = [](const QString &text) {
            return linesOf(text, "^(\\d+=0x2|\\[[12]|SubNumber|DefaultValue).*$").join(' ');
        };
        QCOMPARE(outlineOf(generate("demo.eds")),
                 "1=0x2000 [1010] SubNumber=2 [1010sub0] DefaultValue=9 [1010sub2] "
                 "[2000] SubNumber=2 [2000sub0] DefaultValue=1 [2000sub1]");
        QCOMPARE(outlineOf(generate("demo_B.eds", "B")),
                 "1=0x2000 2=0x2002 "
                 "[1010] SubNumber=3 [1010sub0] DefaultValue=9 [1010sub2] [1010sub3] "
                 "[2000] SubNumber=3 [2000sub0] DefaultValue=2 [2000sub1] [2000sub2] "
                 "[2002] SubNumber=2 [2002sub0] DefaultValue=1 [2002sub1]");
    }

    void classicalCompanion()
    {
        addObject(0x1000, Code::Array, {makeSub("n", 5, "1"), makeSub("first", 7, "0x20191")});
        for (const quint16 index : {0x1030, 0x1031, 0x1032})
            addObject(index, Code::Array, {});
        const auto objectsIn = [](const QString &text) {
            return linesOf(text, "^(\\d=0x103|\\[1).*$").join(' ');
        };
        QCOMPARE(objectsIn(generate("demo.eds", {}, true, false)),
                 "1=0x1030 2=0x1031 3=0x1032 [1000] [1000sub0] [1000sub1] [1030] [1031] [1032]");
        const QString classical = generate("demo_classical.eds", {}, false, true);
        QCOMPARE(objectsIn(classical), "1=0x1031 [1000] [1031]");
        QVERIFY(classical.contains("AccessType=ro\nPDOMapping=0\nDefaultValue=0x20191\n\n"));
        QVERIFY(classical.contains( // of a project without a comment
            "[Comments]\nLines=1\nLine1=generated by CANopen Tessarine by Korvel\n\n"));
    }

    void objectsComeBack()
    {
        addMandatory();
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
        addMandatory();
        addObject(0x2000, Code::Record, {Sub(), sub}, text);
        setDescription("VendorName", text);
        setDescription("Comment", text);
        (void)generate("demo.eds");
        store = makeStore();
        import(fixture.path("demo.eds"));
        QCOMPARE(store->getIndices(0, 0, 0xFFFF), (QList<quint16>{0x1000, 0x1001, 0x1018, 0x2000}));
        QCOMPARE(objectOf(*store, 0, 0x2000).description, QString(text).replace('\r', '\n'));
        QCOMPARE(subOf(*store, 0, 0x2000, 1).name, "a [2001] ObjectType=9 ;;c");
        QCOMPARE(subOf(*store, 0, 0x2000, 1).defaultValue, "a [2001] ObjectType=9 ;;c");
        store->setDescriptionSettingsLine(0);
        QCOMPARE(store->getDescriptionSettingsValue("VendorName"), "a [2001] ObjectType=9 ;;c");
        QCOMPARE(store->getDescriptionSettingsValue("Comment"), QString(text).replace('\r', '\n'));
    }

private:
    void addObject(quint16 index, Code code, const QList<Sub> &subs,
                   const QString &description = {}, const QString &define = {})
    {
        // A variable has name and type of its value, an array the type of its elements.
        const Sub value = subs.value(code == Code::Array ? 1 : 0);
        const bool isNamed = index == 0x1000 && code == Code::Var;
        Object object = makeObject(isNamed ? value.name : "object", code);
        object.dataType = code == Code::Record || subs.isEmpty() ? 5 : value.dataType;
        object.description = description;
        if (!define.isEmpty())
            object.metadata = {{"eds_define", define}};
        QVERIFY(store->addIndex(0, index, object));
        for (int i = 0; i < subs.size(); ++i)
            QVERIFY(store->addSubIndex(0, index, static_cast<quint8>(i), subs[i]));
    }

    /// Objects that an import adds where a file lacks them.
    void addMandatory()
    {
        for (const quint16 index : {0x1000, 0x1001})
            addObject(index, Code::Var, {makeSub("object", index == 0x1000 ? 7 : 5, "0")});
        addObject(0x1018, Code::Record, {makeSub("n", 5, "1"), makeSub("Vendor", 7, "95")});
    }

    /// Variables and members of each data type that data sheets know, with all marks.
    void addAllTypes()
    {
        Sub count = makeSub("Count", 5, "2");
        count.description = "of all\nlines";
        quint16 index = 0x2000;
        for (const quint16 type : {1,  2,  3,  4,  5,  6,  7,  8,  9,  10, 11, 12, 13,
                                   15, 16, 17, 18, 19, 20, 21, 22, 24, 25, 26, 27}) {
            Sub sub = makeSub("object", type, type == 9 ? "a=b; [c] \"d\" 'e' ä" : "1");
            sub.accessType = type % 2 ? "rwr" : "rw";
            sub.pdoMapping = type % 2 ? PDOMappingType::Tpdo : PDOMappingType::Default;
            sub.limitInEds = true;
            sub.upLimit = type == 1 ? "1" : "100";
            sub.refuseRead = type % 2;
            sub.refuseWrite = type % 3;
            sub.description = "first\n\n second";
            addObject(index++, type == 15 ? Code::Domain : Code::Var, {sub}, sub.description);
            sub.name = "Member";
            addObject(index++, Code::Array, {count, sub, sub}, count.description);
        }
    }

    /// PDOs, whose counts the file tells, and texts that need care.
    void addProfile()
    {
        addObject(0x1801, Code::Record, {makeSub("n", 5, "1"), makeSub("C", 7, "$NODEID+0x180")});
        addObject(0x1A01, Code::Record, {makeSub("n", 5, "254"), makeSub("e", 7, "")});
        addObject(0xBFFF, Code::Record, {makeSub("n", 5, "254")});
        QVERIFY(store->addSubIndex(0, 0xBFFF, 0xFE, makeSub("100 % \"x\"; =y", 2, "-128")));
        for (const char *key : {"VendorName", "FileVersion", "Comment"})
            setDescription(key, QString("%1; a, \"b\" = [c] & <d>").arg(key));
    }

    QString generate(const QString &fileName, const QString &define = {}, bool canFd = false,
                     bool classical = false)
    {
        EDSGenerator generator(EdsVariants(*store, 0), define, canFd, classical);
        static const QRegularExpression time("(Time=\\d\\d:\\d\\dPM|Date=[0-9-]+)\n");
        return generateWith(generator, "demo", fileName).replace(time, "(time)\n");
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

    /// What matches in each line that does.
    static QStringList linesOf(const QString &text, const QString &pattern)
    {
        QStringList found;
        const QRegularExpression line(pattern, QRegularExpression::MultilineOption);
        for (auto match = line.globalMatch(text); match.hasNext();)
            found << match.next().captured();
        return found;
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
