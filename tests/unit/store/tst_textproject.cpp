// The text form of a project.
#include "store/projectplaces.h"
#include "tests/fixtures/problemrecorder.h"
#include "tests/fixtures/storefixture.h"

#include <QRegularExpression>

class TestTextProject : public QObject
{
    Q_OBJECT

private slots:
    void roundTrip()
    {
        const auto store = makeStore();
        store->addNode(1, {});
        const Object object = fullObject();
        Sub sub = fullSub();
        store->addIndex(1, 0x2000, object);
        store->addSubIndex(1, 0x2000, 0x10, sub);
        store->setGeneralSettingsValue("nmtmaster", "1,0");
        store->setDescriptionSettingsLine(1);
        store->setDescriptionSettingsValue("Comment", "x\ny");
        QVERIFY(store->saveDataBase(file));
        QVERIFY(readFile(file).contains("\n0x2000\\0x10\\pdomapping=3\n"));

        ObjectDataBase opened;
        QVERIFY(opened.openDataBase(file));
        QCOMPARE(opened.getNodes(), (QList<quint8>{0, 1}));
        QVERIFY(objectOf(opened, 1, 0x2000) == object);
        sub.cyclicRead = sub.changedByUser = sub.dcfComponent = false; // the form leaves these out
        sub.wizardSource = 0;
        sub.denotation.clear();
        QVERIFY(subOf(opened, 1, 0x2000, 0x10) == sub);
        QCOMPARE(opened.getGeneralSettingsValue("nmtmaster"), "1,0");
        opened.setDescriptionSettingsLine(1);
        QCOMPARE(opened.getDescriptionSettingsValue("Comment"), "x\ny");
    }

    void whatTheFormLeavesOut()
    {
        const auto store = makeStore();
        Node node;
        node.name = "pump";
        node.edsPath = "pump.eds";
        store->addNode(0, node);
        store->setJ1939SettingsValue("function", "1");
        store->executeSql("insert into Connections values(0,8192,0,1,8192,0,0)");
        store->executeSql("insert into PGNs0 (number,direction) values(100,85)");
        QVERIFY(store->saveDataBase(file));

        ObjectDataBase opened;
        QVERIFY(opened.openDataBase(file));
        QVERIFY(opened.getNodeData(0, node));
        QCOMPARE(node.name, "");
        QCOMPARE(node.edsPath, "pump.eds");
        QVERIFY(!opened.existJ1939SettingsValue("function"));
        QVERIFY(opened.getPGNs(0, 0, false).isEmpty());
        opened.executeSql("select * from Connections");
        QVERIFY(opened.getSqlResultLines().isEmpty());
    }

    void secondSaveChangesNothing()
    {
        QVERIFY(writeFile(file, "[Nodes]\n0\\prefix=_\n[Objects0]\n0x2000\\name=a\n[SubObjects0]\n"
                                "0x2000\\0x0\\name=b\n0x2000\\0x0\\accesstype=\n"));
        ObjectDataBase store;
        QVERIFY(store.openDataBase(file));
        QVERIFY(store.saveDataBase(QString()));
        const QByteArray saved = readFile(file);
        ObjectDataBase again;
        QVERIFY(again.openDataBase(file));
        QVERIFY(again.saveDataBase(QString()));
        QCOMPARE(readFile(file), saved);
        for (const char *cell : {"allowedaccesstypes=\n", "size=0\n", "metadata=0\n"})
            QVERIFY(saved.contains(QByteArray("0x2000\\0x0\\") + cell)); // empty cells are explicit
    }

    void blanksInValues_data()
    {
        // clang-format off
        columns<int, QString, QString>("type", "given", "kept");
        const QString date = "Mon Dec  5";
        QTest::newRow("visible_string") << 9 << date << date;
        QTest::newRow("octet_string") << 10 << "01  02" << "01  02";
        QTest::newRow("unicode_string") << 11 << "\"  \\t\"" + date << "  \t" + date;
        QTest::newRow("utf_8_string") << 124 << date << date;
        QTest::newRow("domain") << 15 << date << "Mon Dec 5";
        QTest::newRow("number") << 5 << "\" 1  +  2\"" << "1 + 2";
        // clang-format on
    }
    void blanksInValues()
    {
        const auto [type, given] = fetchRow<int, QString>();
        const QString text = QString("[SubObjects0]\n0x2000\\0x0\\currentvalue=%1\n"
                                     "0x2000\\0x0\\datatype=%2\n0x2000\\0x0\\lowlimit=1  2\n"
                                     "0x2001\\0x0\\datatype=5\n0x2000\\0x0\\defaultvalue=%1\n");
        QVERIFY(writeFile(file, text.arg(given, QString::number(type)).toUtf8()));
        QByteArray saved;
        for (const char *save : {"first", "second"}) {
            ObjectDataBase store;
            QVERIFY(store.openDataBase(file));
            const Sub sub = subOf(store, 0, 0x2000, 0);
            QTEST(sub.currentValue, "kept");
            QTEST(sub.defaultValue, "kept");
            QCOMPARE(sub.lowLimit, "1 2");
            QVERIFY2(store.saveDataBase(QString()), save);
            QVERIFY(saved.isEmpty() || readFile(file) == saved);
            saved = readFile(file);
        }
    }

    /// They are not read again, unless they mean something else there.
    void cellsAsInTheRowBefore()
    {
        const QByteArray cells = "#datatype=%1\n#defaultvalue=a  b\n#uplimit=1, 2\n#name=it's\n";
        const auto row = [&](const char *key, const char *type) {
            return QByteArray(cells).replace("#", key).replace("%1", type);
        };
        const QByteArray oddKeys = "0x2000\\0x3\\datatype=5\n0x2000/0x3/defaultvalue=a  b\n"
                                   "0x2000\\0x3\\uplimi%74=1, 2\n";
        const QByteArray fewer = "0x2000\\0x5\\datatype=5\n0x2000\\0x5\\name=it's\n";
        const QByteArray twice = "#datatype=5\n#uplimit=1\n#uplimit=%1\n";
        const auto twiceRow = [&](const char *key, const char *limit) {
            return QByteArray(twice).replace("#", key).replace("%1", limit);
        };
        QVERIFY(writeFile(file, "[SubObjects0]\n" + row("0x2000\\0x0\\", "9") +
                                    row("0x2000\\0x1\\", "5") + row("0x2000\\0x2\\", "5") +
                                    oddKeys + row("0x2000\\0x4\\", "5") + fewer +
                                    row("0x2000\\0x6\\", "9") + twiceRow("0x2000\\0x7\\", "2") +
                                    twiceRow("0x2000\\0x8\\", "1")));
        ObjectDataBase store;
        QVERIFY(store.openDataBase(file));
        QStringList rows;
        for (const quint8 number : store.getSubIndices(0, 0x2000, 0)) {
            const Sub sub = subOf(store, 0, 0x2000, number);
            rows << joined(sub.dataType, sub.defaultValue, sub.upLimit, sub.name);
        }
        QCOMPARE(rows,
                 (QStringList{"9/a  b/1,2/it's", "5/a b/1,2/it's", "5/a b/1,2/it's", "5/a b/1,2/",
                              "5/a b/1,2/it's", "5///it's", "9/a  b/1,2/it's", "5//2/", "5//1/"}));
    }

    void handWrittenProject()
    {
        QVERIFY(writeFile(file,
                          "[GeneralSettings]\r\nnmtmaster=1, 0\r\nline0type=1\r\n"
                          "[Objects0]\r\n0x2000\\name=\"it's, one\"\r\n8193\\name=Gr\xF6\xDF"
                          "e\r\n"
                          "0x2000\\nosuchcolumn=1\r\nword\\name=three\r\n0x12345\\name=four\r\n"
                          "[SubObjects0]\r\n0x2000\\0x1\\defaultvalue=  x   y \r\n"
                          "0x2001\\0x0\\name=s\r\n0x2000\\0x1\\size=4\r\n0x2000\\300\\size=4\r\n"));
        ObjectDataBase store;
        QVERIFY(store.openDataBase(file));
        QCOMPARE(store.getGeneralSettingsValue("nmtmaster"), "1,0");
        QCOMPARE(store.getIndices(0, 0, 0xFFFF), (QList<quint16>{0x2000, 0x2001}));
        QCOMPARE(store.getIndexName(0, 0x2000), "it's, one");
        QCOMPARE(store.getIndexName(0, 0x2001), "Gr\u00F6\u00DFe"); // Windows-1252
        QCOMPARE(subOf(store, 0, 0x2000, 1).defaultValue, "x y");
        QCOMPARE(subOf(store, 0, 0x2000, 1).size, 4u); // cells of a row may stand apart
        QCOMPARE(store.getSubIndices(0, 0x2000, 0), QList<quint8>{1});
    }

    void linesByWholeNumber()
    {
        QVERIFY(writeFile(file, "[Nodes]\n0\\prefix=p_\n12\\prefix=_\n[Objects12]\n0x2000\\name=a\n"
                                "[Objects2]\n0x2001\\name=b\n[Objects012]\n0x2002\\name=c\n"
                                "[Nodes]\n0\\outputpath=out\n"));
        ObjectDataBase store;
        QVERIFY(store.openDataBase(file));
        QCOMPARE(store.getNodes(), (QList<quint8>{0, 12}));
        QCOMPARE(store.getIndices(12, 0, 0xFFFF), QList<quint16>{0x2000});
        Node node;
        QVERIFY(store.getNodeData(0, node));
        QCOMPARE(node.prefix + node.outputPath, "p_out"); // cells of a node may stand apart
        QVERIFY(!store.saveDataBase(QString()));          // two objects have no place in it
        QVERIFY(store.getIndices(0, 0, 0xFFFF).isEmpty());
    }

    void tellsWhatItPassesOver_data()
    {
        // clang-format off
        columns<QByteArray, QString, QString>("text", "told", "mend"); // told: line and rule
        const QByteArray sound = "[Nodes]\n0\\prefix=_\n[Objects0]\n0x1018\\name=Identity\n";
        const auto row = [sound](const char *name, const QByteArray &text, const QString &told, const QString &mend) {
            QTest::newRow(name) << sound + text << told << mend; };
        row("comments", "# a=1\n;b\n#c", "", "");
        row("groups", "[MiscSettings]\na=1\n[SubObjects0]\n[]\n[Colours]\na=1\n[PGNs0]\n[UDSSettings0]\n",
            "8 unknown-group, 9 unknown-group, 11 unknown-group", "");
        row("lines", "[Nodes]\n255\\prefix=_\n[Objects255]\n0x2000\\name=a\n[Objects7]\n0x2000\\name=a\n",
            "9 unknown-line", "line 9");
        row("tables", "[SubObjects256]\n0x1\\1\\name=a\n[Objects01]\n", "5 unknown-group, 7 unknown-group", "line 5");
        row("nodes", "[Nodes]\n1\\issyncproducer=1\n256\\prefix=_\n1\\tpdocnt=x\n1\\color=2\n1\\1\\name=x\n",
            "7 unknown-line, 8 no-number, 9 unknown-column, 10 unknown-object", "line 7");
        row("objects",
            "0xFFFF\\name=a\n65536\\name=a\nx\\name=b\nx\\datatype=7\nname=c\n0x1\\1\\name=d\n0x1\\2\\name=d\n",
            "6 unknown-object, 7 unknown-object, 9 unknown-object, 10 unknown-object, 11 unknown-object",
            "lines 6, 7, 8 and 9");
        row("subindices", "[SubObjects0]\n0x1018\\0xff\\name=a\n0x1018\\256\\name=a\n0x1018\\name=b\n"
            "0x1019\\1\\name=c\n0x1019\\2\\name=c\n", "7 unknown-object, 8 unknown-object, 9 unknown-object", "line 7");
        row("columns", "0x1018\\nam=x\n[SubObjects0]\n0x1018\\1\\signalid=1\n0x1018\\1\\Name=x\n",
            "5 unknown-column, 8 unknown-column", "");
        row("numbers", "0x1\\datatype=65535\n0x2\\datatype=65536\n0x3\\datatype=-1\n0x4\\datatype=0x7\n"
            "0x1\\category=\n0x2\\category=1,2\n0x5\\datatype= 1e1 \n0x6\\datatype=7.5\n"
            "0x7\\datatype=99999999999999999999\n[SubObjects0]\n0x1018\\1\\pdomapping=4\n0x1018\\2\\pdomapping=5\n",
            "6 number-cut, 7 number-cut, 8 no-number, 10 no-number, 12 number-cut, 13 no-number, 16 number-cut", "");
        row("object_types", "0x1018\\objecttype=6\n0x1\\objecttype=1\n0x2\\objecttype=10\n0x1018\\category=1\n",
            "6 no-object-type, 7 no-object-type", "");
        row("metadata", "0x1\\metadata=0\n0x2\\metadata=x\n0x3\\metadata=@ByteArray(x)\n",
            "6 no-metadata, 7 no-metadata", "");
        row("settings", "[GeneralSettings]\na=\"it's\"\n[MiscSettings]\na=it's\n", "6 setting-not-read", "line 6");
        row("merge", "<<<<<<< mine\n0x1000\\name=a\n=======\n0x1000\\name=b\n>>>>>>> theirs\n",
            "5 conflict-marker, 7 conflict-marker, 9 conflict-marker", "lines 5, 7 and 9");
        row("merge_of_settings", "[GeneralSettings]\n<<<<<<< mine\na=1\n=======\na=2\n>>>>>>> theirs\n",
            "6 conflict-marker, 8 conflict-marker, 10 conflict-marker", "lines 6, 8 and 10");
        row("doubled", "0x1018\\name=Id\n0x1018\\category=1\n0x1018\\category=1\n0x1018\\category=2\n[Nodes]\n"
            "0\\prefix=a\n[SubObjects0]\n0x1018\\1\\name=a\n0x1018\\2\\name=a\n0x1018\\0x1\\name=b\n"
            "0x1018\\2\\varname=b\n[MiscSettings]\na=1\na= 1 \na=2\nA=3\n",
            "2 doubled-key, 4 doubled-key, 6 doubled-key, 7 doubled-key, 12 doubled-key, 17 doubled-key, 18 "
            "doubled-key", "");
        row("decimal", "8192\\name=a\n8192\\datatype=7\n[SubObjects0]\n8192\\9\\name=a\n0x1018\\10\\name=b\n",
            "5 decimal-index, 9 decimal-index", "");
        row("commas", "0x1\\name=a, b\n0x2\\name=\"a, b\"\n0x3\\name=a,b\n0x4\\name=a ,b\n", "5 unquoted-comma, 8 "
            "unquoted-comma", "");
        row("commas_without_column", "0x1\\nam=a, b\n0x2\\nam=a, b\n", "5 unquoted-comma, 5 unknown-column, 6 "
            "unquoted-comma, 6 unknown-column", "");
        row("without_objects", "[Nodes]\n1\\prefix=_\n[SubObjects1]\n0x1000\\0\\name=a\n0x1001\\0\\name=a\n",
            "8 unknown-object", "");
        row("empty_key_of_settings", "[GeneralSettings]\n=1\n", "6 no-key", "");
        row("many", QByteArray("x\n").repeated(1002), QString("%1 no-key, ").repeated(1000) + "0 no-key",
            "lines 5, 6, 7, 8, 9, 10, 11, 12, 13, 14 and more of them");
        QTest::newRow("no_project") << QByteArray("[Colours]\nred=1\n") << "1 unknown-group, 0 no-project" << "-";
        QTest::newRow("empty") << QByteArray() << "0 no-project" << "-";
        QTest::newRow("database") << QByteArray("SQLite format 3\0[\n=\nx\n", 22) << "0 no-project" << "-";
        QTest::newRow("bare_utf_16") << QByteArray("[\0N\0\n\0", 6) << "0 no-project" << "-";
        QTest::newRow("utf_16") << QByteArray("\xFF\xFE[\0N\0\n\0", 8) << "0 no-project" << "-";
        // clang-format on
    }
    void tellsWhatItPassesOver()
    {
        QFETCH(QByteArray, text);
        QFETCH(QString, told);
        QFETCH(QString, mend);
        for (int line = 5; told.contains("%1"); ++line)
            told.replace(told.indexOf("%1"), 2, QString::number(line));
        QVERIFY(writeFile(file, text));
        ProblemRecorder problems;
        ObjectDataBase store;
        QVERIFY(store.openDataBase(file));
        const QRegularExpression form("^(.+?):(?:(\\d+):)? warning: [^.].*[^.] \\[([a-z-]+)\\]$");
        QStringList places;
        for (const QString &line : qAsConst(problems.lines)) {
            const QRegularExpressionMatch match = form.match(line);
            QVERIFY2(match.hasMatch() && match.captured(1) == file, qPrintable(line));
            places << QString::number(match.captured(2).toInt()) + ' ' + match.captured(3);
        }
        QCOMPARE(places.join(", "), told);
        const QString reason = "it holds what was not understood, which would be lost";
        QCOMPARE(store.saveDataBase(QString()), mend.isEmpty());
        QCOMPARE(store.getLastErrorString(), mend.isEmpty() ? ""
                                             : mend == "-"  ? reason
                                                            : reason + "; mend " + mend);
    }

    void placesOfFindings()
    {
        const QByteArray text =
            "[Nodes]\n1\\prefix=_\n[Objects0]\n0x1018\\name=a\n4120\\objecttype=9\n8193\\name=b\n"
            "[SubObjects0]\n0x1018\\0x1\\datatype=7\n0x1018\\1\\name=x\n0x2000\\0\\name=y\n"
            "[GeneralSettings]\na=1\n[DescriptionSettings]\nGranularity=8\nGranularity_1=1\n"
            "[SubObjects0]\n0x1018\\0x1\\name=z\n";
        QVERIFY(writeFile(file, text));
        struct Row {
            const char *name;
            int line, index, subindex;
            const char *column, *store, *setting;
            int expected;
        };
        const Row rows[] = {
            {"column", 0, 0x1018, 1, "datatype", "", "", 8},
            {"last of two", 0, 0x1018, 1, "name", "", "", 17},
            {"column not there", 0, 0x1018, 1, "varname", "", "", 8},
            {"subindex not there", 0, 0x1018, 2, "datatype", "", "", 4},
            {"subindex without object", 0, 0x2000, 0, "", "", "", 10},
            {"object", 0, 0x1018, -1, "objecttype", "", "", 5},
            {"object in decimal", 0, 0x2001, -1, "name", "", "", 6},
            {"object not there", 0, 0x1000, -1, "name", "", "", 3},
            {"object of another line", 1, 0x1018, -1, "name", "", "", 2},
            {"line", 0, -1, -1, "", "", "", 3},
            {"line not there", 2, -1, -1, "", "", "", 1},
            {"project", -1, -1, -1, "", "", "", 0},
            {"setting", -1, -1, -1, "", "GeneralSettings", "a", 12},
            {"setting not there", 0, -1, -1, "", "GeneralSettings", "b", 11},
            {"setting of the line", 1, -1, -1, "", "DescriptionSettings", "Granularity", 15},
            {"store not there", 1, -1, -1, "", "J1939Settings", "a", 2},
        };
        const auto places = ProjectPlaces::ofFile(file);
        for (const Row &row : rows) {
            ProjectPlace place;
            place.line = row.line;
            place.index = row.index;
            place.subindex = row.subindex;
            place.column = row.column;
            place.store = row.store;
            place.setting = row.setting;
            QVERIFY2(places->lineOf(place) == row.expected, row.name);
            QCOMPARE(ProjectPlaces::ofFile(fixture.path("p.tsrp"))->lineOf(place), 0);
        }
    }

    void suggestsWhatWasMeant()
    {
        QVERIFY(writeFile(file, "[Nodes]\n12\\prefx=_\n[subobjects12]\n[Object12]\n[Objects13]\n"
                                "[Objects12]\n0x2000\\Name=a\n0x2000\\defaultvalue=1\n"));
        ProblemRecorder problems;
        ObjectDataBase store;
        QVERIFY(store.openDataBase(file));
        QStringList meant;
        for (const QString &line : qAsConst(problems.lines))
            meant << line.section("; did you mean ", 1, 1).section(' ', 0, 0);
        QCOMPARE(meant, (QStringList{"\"prefix\"", "\"SubObjects12\"", "\"Objects12\"", "",
                                     "\"name\"", ""}));
    }

    void whatIsNoProjectIsNotOverwritten()
    {
        const QByteArray text("\x00\xff noise \n[[[\n=\n", 16);
        QVERIFY(writeFile(file, text));
        ObjectDataBase store;
        QVERIFY(store.openDataBase(file)); // and goes on with what was understood
        QVERIFY(!store.saveDataBase(QString()));
        QCOMPARE(readFile(file), text);
        QVERIFY(store.saveDataBase(fixture.path("other.tsrp")));
    }

private:
    StoreFixture fixture;
    const QString file = fixture.path("p.tsrt");
};

QTEST_GUILESS_MAIN(TestTextProject)
#include "tst_textproject.moc"
