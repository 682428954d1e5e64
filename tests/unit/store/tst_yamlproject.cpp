// The YAML form of a project as a whole: its order, what stands beside the lines, and its file.
#include "store/yaml/yamlproject.h"
#include "tests/fixtures/problemrecorder.h"
#include "tests/fixtures/storefixture.h"
#include "tests/fixtures/yamlkit.h"

class TestYamlProject : public QObject
{
    Q_OBJECT

private slots:
    void writesOneForm()
    {
        YamlText text(
            "connections:\n- {to: 200/0x2011, from: 1/8208:0xff, priority: 3}\n"
            "locks: {0x7: {pdos: [6145, 0x1800, 0x1801]}, 1: {mappings: [0x1A00]}}\n"
            "signals: {4: {line: 1, name: b}, -1: {line: 9}}\n"
            "lines:\n  0x10: {}\n  1: {locks: {pdos: [1]}, signals: {3: {routing: 2}}, master: "
            "yes}\n"
            "line-groups: [{name: A, lines: [0, 1]}, {lines: x}, {}]\n"
            "virtual-nodes: {9223372036854775807: {line: -9223372036854775808, name: far, node: "
            "5}}\n"
            "signal-groups: {2: b, 1: \"\"}\ntessarine: 0x1\n");
        ProjectRecord project;
        QVERIFY2(YamlProject::read(text.document, &project, &text.problems),
                 qPrintable(text.errors().join('\n')));
        QBuffer written;
        QVERIFY(written.open(QIODevice::WriteOnly) && YamlProject::write(project, &written));
        const QByteArray expected = R"(tessarine: 1
signal-groups:
  1: ""
  2: b
virtual-nodes:
  9223372036854775807: {line: -9223372036854775808, node: 5, name: far}
line-groups:
  - {name: A, lines: [0, 1]}
  - {lines: x}
  - {}
lines:
  1:
    master: true
    signals:
      3: {routing: 2}
      4: {name: b}
    locks: {pdos: [0x0001], mappings: [0x1A00]}
  16: {}
signals:
  -1: {line: 9}
connections:
  - {from: 1/0x2010:255, to: 200/0x2011:0, priority: 3}
locks:
  7: {pdos: [0x1800, 0x1801]}
)";
        QCOMPARE(written.data(), expected);
    }

    void tellsWhatIsWrong_data()
    {
        // clang-format off
        columns<QByteArray, QString>("text", "told"); // told: line, column and what tells it from others
        const QByteArray sound = "tessarine: 1\nlines: {0: {}}\n";
        const auto row = [sound](const char *name, const QByteArray &text, const QString &told) {
            QTest::newRow(name) << sound + text << told; };
        QTest::newRow("list") << QByteArray("[1]\n") << "1:1: a project is a map";
        QTest::newRow("no_project") << QByteArray("on: push\n") << "1:1: a project begins with";
        QTest::newRow("no_version") << QByteArray("a: 1\nlines: {x: {}}\n")
            << "1:1: a project begins with|1:1: there is no key \"a\"|2:9: line is a number from 0 to 253";
        QTest::newRow("version") << QByteArray("tessarine: 2\na: 1\n") << "1:12: this file has form 2, this tool";
        QTest::newRow("odd_version") << QByteArray("tessarine: one\nlines: {}\n") << "1:12: the version of the form";
        QTest::newRow("no_line") << QByteArray("tessarine: 1\n") << "1:1: a project has a line at least";
        row("key", "conections: []\n", "3:1: there is no key \"conections\" in a project; did you mean \"con");
        row("kinds", "connections: {}\nsignals: []\nlocks: 1\nline-groups: {}\nvirtual-nodes:\nsignal-groups: x\n",
            "3:14: connections are a list|4:10: signals|5:8: locks|6:14: the groups of lines|7:15: virtual nodes|"
            "8:16: the groups of signals");
        row("items", "connections: [1]\nsignals: {1: x}\nlocks: {1: [1]}\nline-groups: [a]\nvirtual-nodes: {1: 2}\n",
            "3:15: a connection is a map|4:14: a signal is|5:12: the locks of a line|6:15: a group of lines|"
            "7:20: a virtual node");
        row("connection", "connections:\n- {from: 0/0x2010:1}\n- {from: 0/0x2010:x, to: 0:0x2010}\n"
            "- {from: 256/0x2010:1, to: 1/0x10000:1, priorty: 1}\n- {to: 0/1:256, priority: 256}\n",
            "4:3: a connection has no key \"to\"|5:10: from is <line>|5:26: to is <line>|6:10: from|6:28: to is|"
            "6:41: there is no key \"priorty\" in a connection; did you mean \"priority\"|"
            "7:3: a connection has no key \"from\"|"
            "7:8: to is|7:27: priority is a number from 0 to 255");
        row("locks", "locks: {0: {pdo: [1]}, 256: {}, 1: {pdos: 1, mappings: [0x10000, x]}}\n",
            "3:13: there is no key \"pdo\" in locks; did you mean \"pdos\"|3:24: line is|3:43: what is locked|"
            "3:57: an index|3:66: an index");
        row("signals", "signals:\n  1: {line: 256, nme: a}\n  x: {}\n  2147483648: {}\n  0x1: {}\n  2: {type: bool}\n",
            "4:13: line is|4:18: there is no key \"nme\" in a signal|5:3: signal is|6:3: signal is|"
            "7:3: signal 0x1 stands here a second time; line 4 has it first|"
            "8:13: there is no type \"bool\"; did you mean \"BOOLEAN\"");
        QTest::newRow("lines")
            << QByteArray("tessarine: 1\nlines:\n  254: {}\n  1: x\n  2:\n  3: {access: ro, mastr: true}\n"
                          "  4: {signals: {7: {line: 1}}}\n  5: {signals: {7: {}}}\n")
            << "3:3: line is a number from 0 to 253|4:6: a line is a map|5:5: a line is a map, but here is nothing|"
               "6:7: there is no key \"access\" in a line; it belongs to an object|"
               "6:19: there is no key \"mastr\" in a line; did you mean \"master\"|"
               "7:21: there is no key \"line\" in a signal|"
               "8:17: signal 7 stands here a second time; line 7 has it first";
        QByteArray arrays; // few bytes each, which must not fill the memory
        for (int index = 2; index < 0x10000; ++index)
            arrays += "      " + QByteArray::number(index) + ": *a\n";
        QTest::newRow("too_many_members")
            << "tessarine: 1\nlines:\n  0:\n    objects:\n      1: &a {array: 254}\n" + arrays
            << "4117:7: from here on the project has more than 1048576 subindices, frames and signals";
        QTest::newRow("too_many_signals")
            << "tessarine: 1\nlines:\n  0:\n    groups:\n      transmit:\n        1:\n          signals:\n" +
                   QByteArray("            - {skip: 14280}\n").repeated(9000)
            << "4689:15: from here on the project has more than 1048576";
        // clang-format on
    }
    void tellsWhatIsWrong()
    {
        const auto [input, told] = fetchRow<QByteArray, QString>();
        YamlText text(input);
        QVERIFY(text.isRead);
        ProjectRecord project;
        QVERIFY(!YamlProject::read(text.document, &project, &text.problems));
        const QStringList errors = text.errors();
        const QStringList starts = told.split('|');
        QVERIFY2(errors.size() == starts.size(), qPrintable(errors.join('\n')));
        for (int i = 0; i < errors.size(); ++i)
            QVERIFY2(errors.at(i).startsWith(starts.at(i)), qPrintable(errors.at(i)));
    }

    void warnsOfDecimalIndices()
    {
        ProblemRecorder problems;
        YamlText text("tessarine: 1\nlines: {0: {objects: {0x2010: {},\n2010: {}, 16: {}}}}\n");
        ProjectRecord project;
        QVERIFY(YamlProject::read(text.document, &project, &text.problems));
        QCOMPARE(problems.lines.size(), 1);
        QVERIFY(problems.lines.first().contains(":3: warning: the index 2010 is decimal, and means "
                                                "object 0x07DA: write it so, or 0x2010"));
    }

    void fileIsReplacedOnlyAsItWasRead()
    {
        const QByteArray text = "tessarine: 1 # of the form\nlines: {0: {prefix: a}}\n";
        QVERIFY(writeFile(file, text));
        ObjectDataBase store;
        QVERIFY(store.openDataBase(file));
        QCOMPARE(store.firstCommentLine(), 1);
        QVERIFY(writeFile(file, text + "# somebody else\n"));
        QVERIFY(!store.saveDataBase(QString()));
        QVERIFY(store.getLastErrorString().startsWith("it was changed after this run had read it"));
        QCOMPARE(readFile(file), text + "# somebody else\n");
        QVERIFY(writeFile(file, text)); // not the file that was read, but what this run would lose
        QVERIFY(!store.saveDataBase(QString()));

        const QString other = fixture.path("other.YML");
        QVERIFY(store.saveDataBase(other));
        Node node;
        ObjectDataBase again;
        QVERIFY(again.openDataBase(other));
        QVERIFY(again.getNodeData(0, node));
        QCOMPARE(node.prefix, "a");
        QVERIFY(again.saveDataBase(QString())); // the second time the same
        QCOMPARE(again.firstCommentLine(), 0);
    }

    void whatHasErrorsIsNotOpened()
    {
        const QByteArray text = "tessarine: 1\nlines: {0: {perfix: a}, 300: {}}\n";
        QVERIFY(writeFile(file, text));
        ProblemRecorder problems;
        ObjectDataBase store;
        QVERIFY(store.createNewDataBase());
        QVERIFY(!store.openDataBase(file));
        QCOMPARE(problems.lines.value(0),
                 file + ":2:13: error: there is no key \"perfix\" in a line; did you "
                        "mean \"prefix\" [yaml-unknown-key]");
        QCOMPARE(problems.lines.size(), 2);
        QVERIFY(!store.saveDataBase(QString()));
        QCOMPARE(readFile(file), text);
    }

private:
    StoreFixture fixture;
    const QString file = fixture.path("p.yaml");
};

QTEST_GUILESS_MAIN(TestYamlProject)
#include "tst_yamlproject.moc"
