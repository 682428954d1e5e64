// The facts of a project's page, and the page around them.
#include "generators/overview/factsjson.h"
#include "generators/overview/factsreader.h"
#include "generators/overview/overviewpage.h"
#include "support/framebits.h"
#include "tests/fixtures/casefile.h"
#include "tests/fixtures/projecttext.h"
#include "tests/fixtures/storefixture.h"

#include <QCryptographicHash>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace
{

/// The data that a page has of the project, as browsers read it.
QJsonObject dataOf(const Overview::Facts &facts)
{
    QByteArray json;
    Overview::writeJson(facts, json);
    return QJsonDocument::fromJson(json).object();
}

QJsonObject dataOf(ObjectDataBase &store)
{
    return dataOf(Overview::readFacts(store, readObjectNames(store)));
}

QJsonObject dataOf(const QString &project)
{
    const auto store = makeStore();
    buildProject(*store, project);
    return dataOf(*store);
}

QString wordOf(const QJsonValue &value)
{
    if (value.isObject() || value.isArray()) {
        const QJsonDocument part =
            value.isObject() ? QJsonDocument(value.toObject()) : QJsonDocument(value.toArray());
        return part.toJson(QJsonDocument::Compact);
    }
    return value.isNull() ? "-" : value.toVariant().toString();
}

/// The members but for lists of records, in one line.
QString row(const QJsonObject &record)
{
    QStringList words;
    for (auto it = record.begin(); it != record.end(); ++it) {
        const bool isList = it->isArray() && it->toArray().first().isObject();
        if (it.key() == "bits" && it->isObject())
            words << QString("bits=%1").arg((*it)["max"].toInt());
        else if (!isList && it.key() != "objects" && wordOf(*it) != "[]")
            words << it.key() + '=' + wordOf(*it);
    }
    return words.join(' ') + '\n';
}

QString rows(const QJsonValue &records, const QString &inner = QString())
{
    QString text;
    const QJsonArray list = records.toArray();
    for (const QJsonValue &record : list) {
        text += row(record.toObject());
        if (!inner.isEmpty())
            text += rows(record.toObject().value(inner)).replace(QRegExp("(^|\n)(?=.)"), "\\1  ");
    }
    return text;
}

/// With the texts that their columns stand for.
QString objectRows(const QJsonObject &data, const QJsonObject &line)
{
    const QJsonArray texts = data["texts"].toArray();
    const QJsonArray columns = line["objects"].toObject()["columns"].toArray();
    const QJsonArray list = line["objects"].toObject()["rows"].toArray();
    QString text;
    for (const QJsonValue &each : list) {
        const QJsonArray cells = each.toArray();
        text += QString::number(cells[0].toInt(), 16) + ':' + wordOf(cells[1]);
        for (int i = 2; i < cells.size(); ++i) {
            const QString cell = texts[cells[i].toInt()].toString();
            if (!cell.isEmpty())
                text += ' ' + columns[i].toString() + '=' + cell;
        }
        text += '\n';
    }
    return text;
}

} // namespace

class tst_Overview : public StoreTest
{
    Q_OBJECT

private slots:
    void facts_data() { addCases(TEST_CASES "/overview.txt"); }
    /// What the group of a case names.
    void facts()
    {
        QFETCH(QString, project);
        QFETCH(QString, expected);
        const QJsonObject data = dataOf(project);
        const QString part = caseGroup();
        QString told;
        const QJsonArray lines = data["lines"].toArray();
        for (const QJsonValue &each : lines) {
            const QJsonObject line = each.toObject();
            if (part == "lines")
                told += row(line);
            else if (part == "objects")
                told += objectRows(data, line);
            else if (part == "frames")
                told += rows(line["frames"], "cells");
            else if (part == "identifiers")
                told += rows(line["identifiers"]);
        }
        const QByteArray wrong = mismatch(told, expected);
        QVERIFY2(wrong.isEmpty(), wrong);
    }

    void connections()
    {
        store = makeStore();
        buildProject(*store, "2000 var name=out; 2000:0 U8 rw 0 1; line 1 1; 2100 arr name=in; "
                             "2100:1 U8 rw 0 1 name=first");
        Sub tied = makeSub("second", 5, "1");
        LineSignalData signal;
        signal.name = "speed";
        signal.ref = store->addSignal({});
        signal.line = 1;
        tied.signalId = store->addSignal(signal);
        QVERIFY(store->addSubIndex(1, 0x2100, 2, tied));
        QVERIFY(store->addConnection(0, 0x2000, 0, 1, 0x2100, 1, 0));
        QVERIFY(store->addGroup("drives") && store->addNodeToGroup("drives", 1));
        QStringList told;
        const QJsonArray list = dataOf(*store)["connections"].toArray();
        for (const QJsonValue &each : list)
            told << joined(each["kind"].toString(), each["from"]["link"].toString(),
                           each["from"]["name"].toString(), each["from"]["line"].toInt(),
                           each["to"]["link"].toString(), each["to"]["name"].toString());
        QCOMPARE(told, QStringList({"PDO/#0/0x2000:0/out/0/#1/0x2100:1/in first",
                                    "signal///0/#1/0x2100:2/in second", "group///1//drives"}));
    }

    /// The stack tests compare the sizes of all tables; this is what they are put down to.
    void footprint()
    {
        const QByteArray source =
            "#include <gen_define.h>\n"
            "#ifdef OTHER\n"
            "UNSIGNED8 left_out[1000];\n"
            "#else\n"
            "static CO_CONST VIS_STRING CO_CONST_STORAGE_CLASS od_const_vis_string[2] = {\n"
            "    \"a\\x5a\\132\\\"\", \"b\" /* ; */ \"c\"};\n"
            "#endif\n"
            "static UNSIGNED16 od_u16[TWO];\n"
            "static UNSIGNED8 CO_CONST_STORAGE_CLASS * CO_CONST od_ptr_u8[] = { &(x[1]) /* "
            "1-0x6000:0 */ };\n"
            "CO_CONST CO_OBJECT_DESC_T od_description[DESC] = {\n"
            "    { (UNSIGNED8)0u, CO_DTYPE_U16_VAR, (UNSIGNED16)1u, CO_ATTR_NUM, "
            "(UNSIGNED16)0u},/* 0-0x1001:0*/\n"
            "    { (UNSIGNED8)0u, CO_DTYPE_U16_VAR, (UNSIGNED16)0u, CO_ATTR_NUM, "
            "(UNSIGNED16)0u},/* 0-0x2001:0*/\n"
            "};\n"
            "static UNKNOWN_T unknown;\n"
            "RET_T start(void)\n"
            "{\n"
            "    UNSIGNED8 i = 0, onStack[9] = { 0 };\n"
            "    static const UNSIGNED8 kept[] = { 1, 2, 3 };\n"
            "    if (i == 1) { return RET_OK; }\n"
            "    return run(kept);\n"
            "}\n";
        const Overview::Footprint footprint = Overview::footprintOf(
            {{"gen_define.h", "#define TWO 2u\n#define DESC\t2u /* rows */\n"},
             {"gen_mp.c", source}});
        QStringList told;
        for (const Overview::FootprintArray &array : footprint.arrays)
            told << joined(array.name, array.count, array.ram, array.rom, array.area);
        for (const Overview::FootprintArea &area : footprint.areas)
            told << joined(area.line.value_or(-1), area.area, area.ram, area.rom);
        QCOMPARE(
            told,
            QStringList({"od_const_vis_string/2/0/8/constants of several objects",
                         "texts of od_const_vis_string/2/0/8/constants of several objects",
                         "od_u16/2/4/0/several", "od_ptr_u8/1/0/4/0x6000-0x9FFF device profile",
                         "od_description/2/0/32/several", "kept/3/0/3/start of the stack",
                         "-1/constants of several objects/0/16", "-1/start of the stack/0/3",
                         "0/0x1000-0x1FFF communication/2/16", "0/0x2000-0x5FFF manufacturer/2/16",
                         "1/0x6000-0x9FFF device profile/0/4"}));
        QVERIFY2(footprint.note.contains("UNKNOWN_T"), qPrintable(footprint.note));
    }

    void comparison()
    {
        Overview::Facts facts;
        facts.comparison = ProjectComparison();
        ProjectChange change{ChangeKind::Subindex, ProjectChange::Change::Changed, 0, 0x2010, 1,
                             "0x2010:1 <b>",       {{"default", "0", "\"\""}}};
        facts.comparison->changes.push_back(change);
        change = {ChangeKind::Signal, ProjectChange::Change::Added, 1, 65262, -1, "s",
                  {{"", "", "5"}}};
        facts.comparison->changes.push_back(change);
        change.change = ProjectChange::Change::Removed;
        change.line = -1;
        facts.comparison->changes.push_back(change);
        const QJsonArray changes = dataOf(facts)["comparison"].toObject()["changes"].toArray();
        QStringList told;
        for (const QJsonValue &each : changes)
            told << QString::fromUtf8(QJsonDocument(each.toObject()).toJson(QJsonDocument::Compact))
                        .replace('"', '\'');
        QCOMPARE(
            told,
            QStringList({"{'change':'changed','fields':[['default','0','\\'\\'']],"
                         "'kind':'subindex','line':0,'link':'#0/0x2010:1','what':'0x2010:1 <b>'}",
                         "{'change':'added','fields':[['',null,'5']],"
                         "'kind':'signal','line':1,'link':'#1/pgn/0xFEEE','what':'s'}",
                         "{'change':'removed','fields':[['',null,'5']],"
                         "'kind':'signal','line':null,'what':'s'}"}));
    }

    void bits_data()
    {
        columns<QString, int, bool, QList<int>>("kind", "bytes", "isExtended", "expected");
        // least and most at the nominal and at the data rate
        QTest::newRow("empty") << "classical" << 0 << false << QList<int>{47, 55, 0, 0};
        QTest::newRow("classical_11") << "classical" << 8 << false << QList<int>{111, 135, 0, 0};
        QTest::newRow("classical_29") << "classical" << 8 << true << QList<int>{131, 160, 0, 0};
        QTest::newRow("fd_short_crc") << "fd" << 16 << false << QList<int>{29, 33, 161, 194};
        QTest::newRow("fd_long_crc") << "fd" << 20 << true << QList<int>{48, 56, 198, 240};
        QTest::newRow("fd_longest") << "fd" << 64 << false << QList<int>{29, 33, 550, 679};
        QTest::newRow("fd_padded") << "fd" << 49 << false << QList<int>{29, 33, 550, 679};
        QTest::newRow("group_of_one") << "broadcast" << 8 << true << QList<int>{131, 160, 0, 0};
        QTest::newRow("broadcast") << "broadcast" << 9 << true << QList<int>{393, 480, 0, 0};
        QTest::newRow("connection") << "connection" << 15 << true << QList<int>{786, 960, 0, 0};
    }
    void bits()
    {
        QFETCH(QString, kind);
        QFETCH(int, bytes);
        QFETCH(bool, isExtended);
        const FrameBits::Count count = kind == "classical" ? FrameBits::classical(bytes, isExtended)
                                       : kind == "fd"
                                           ? FrameBits::canFd(bytes, isExtended)
                                           : FrameBits::group(bytes, kind == "broadcast");
        QTEST(QList<int>(
                  {count.arbitration.min, count.arbitration.max, count.data.min, count.data.max}),
              "expected");
        QVERIFY(count.average() > count.min() && count.average() < count.max());
    }

    /// Whatever a project is called, it stays in the page's title and data.
    void page()
    {
        const QString name = "</script></title>$data$\"\\<!-- &amp;\u2028\u202e\r\n" +
                             QString(QChar(0xD800)) + "\U0001F600";
        Overview::Facts facts;
        facts.project.name = name;
        const QByteArray page = Overview::pageOf(facts);
        const auto inside = [&](const QByteArray &start, const QByteArray &end) {
            const int from = page.indexOf(start) + start.size();
            return page.mid(from, page.indexOf(end, from) - from);
        };
        const QByteArray data = inside("id=\"data\">", "</script>");
        for (const char *word : {"<", ">", "&", "\u2028"})
            QVERIFY2(!data.contains(word), word);
        const QJsonObject project = QJsonDocument::fromJson(data)["project"].toObject();
        QCOMPARE(project["name"].toString().mid(0, 30), name.mid(0, 30));
        QVERIFY(project["name"].toString().endsWith("\U0001F600"));
        QCOMPARE(inside("<title>", "</title>").count('<'), 0);
        const auto hash = [](const QByteArray &text) {
            return QCryptographicHash::hash(text, QCryptographicHash::Sha256).toBase64();
        };
        const QByteArray policy = inside("Content-Security-Policy\" content=\"", "\"");
        QVERIFY(policy.startsWith("default-src 'none';"));
        QVERIFY(policy.contains("'sha256-" + hash(inside("<style>", "</style>")) + '\''));
        const int last = page.lastIndexOf("<script");
        const int from = page.indexOf('>', last) + 1;
        const QByteArray script = page.mid(from, page.lastIndexOf("</script>") - from);
        QVERIFY(script.size() > 50 && policy.contains("'sha256-" + hash(script) + '\''));
    }
};

QTEST_GUILESS_MAIN(tst_Overview)
#include "tst_overview.moc"
