// The page of a project in a browser, as a reader meets it: those of the examples, and one with odd
// data.
#include "tests/fixtures/browser.h"
#include "tests/fixtures/toolfixture.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QUrl>

using Texts = QStringList;

constexpr const char *kHostile = "</script><img src=x onerror=hit()>";

class TestOverviewPage : public ToolTest
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        if (Browser::program().isEmpty())
            QSKIP("There is no browser: install chromium, or name one in TESSARINE_BROWSER");
        makeFolder();
        const QByteArray quoted = "name=\"" + QByteArray(kHostile) + '"';
        QVERIFY(write("hostile.tsrt", QByteArray(kProject).replace("name=vendor", quoted)));
        for (const QString name : {"pump.tsrt", "gateway.yaml", "excavator.yaml"}) {
            const QString folderOfExample = TESSARINE_EXAMPLES "/" + name.section('.', 0, 0) + '/';
            QVERIFY(QFile::copy(folderOfExample + name, folder + '/' + name));
        }
        for (const QString name : {"pump.tsrt", "gateway.yaml", "excavator.yaml", "hostile.tsrt"}) {
            const QString page = name.section('.', 0, 0) + ".html";
            const QByteArray output = run("-project " + name + " -overview " + page);
            QVERIFY2(!read(page).isEmpty(), output);
        }
        QVERIFY(write("odd.html", pageWith(readFile(TEST_CASES "/odd.json"))));
        QVERIFY(browser.start());
    }

    void init() { browser.resize(1300, 900); }

    // Opens without a message or a request, and nobody stumbles, whatever the width and the
    // colours.
    void opens_data()
    {
        columns<QString, QString>("page", "contents");
        QTest::newRow("CANopen") << "pump"
                                 << "Summary,Frames,Identifiers,Bus load,Objects";
        QTest::newRow("three lines") << "gateway"
                                     << "Summary,Frames,Identifiers,Bus load,Objects";
        QTest::newRow("J1939") << "excavator"
                               << "Summary,Frames,Identifiers,Bus load";
        QTest::newRow("odd")
            << "odd"
            << "Summary,Comparison,Frames,Identifiers,Bus load,Objects,Connections,Footprint";
    }
    void opens()
    {
        const auto [page, contents] = fetchRow<QString, QString>();
        for (const int width : {360, 1000, 1920}) {
            for (const QString scheme : {"light", "dark"}) {
                browser.resize(width, 800);
                browser.setScheme(scheme);
                QVERIFY(browser.open(address(page)));
                QVERIFY(browser.value("document.querySelector('nav').innerText.split('\\n').join()")
                            .toString()
                            .startsWith(contents)); // sections without content are left out
                QVERIFY(browser.waitFor(
                    "document.querySelectorAll('.frame-card svg, .frame-card .fine').length === "
                    "document.querySelectorAll('.frame-card').length"));
                QCOMPARE(list(readFile(TEST_CASES "/audit.js")), Texts());
                QCOMPARE(browser.problems, Texts());
            }
        }
    }

    void filters_data()
    {
        columns<QString, QString>("typed", "places");
        QTest::newRow("nothing") << ""
                                 << "0x2000 0x2001 0x2001:0 0x2001:1 0x2001:2 0x2010 0x2011 0x6000";
        QTest::newRow("access and type") << "rw u32"
                                         << "0x2000 0x2001:1";
        QTest::newRow("access is a whole word") << "ro u32"
                                                << "0x2010";
        QTest::newRow("the type's name") << "Unsigned16"
                                         << "0x2001:2 0x2011 0x6000";
        QTest::newRow("name of the object") << "ramps u16"
                                            << "0x2001:2";
        QTest::newRow("part of a name, and a place") << "20 time"
                                                     << "0x2010";
        QTest::newRow("letters that are digits, too") << "fa"
                                                      << "0x2001:2";
        QTest::newRow("index") << "0x201"
                               << "0x2010 0x2011";
        QTest::newRow("subindex") << "2001:2"
                                  << "0x2001:2";
        QTest::newRow("variable") << "PUMPSP"
                                  << "0x2000";
        QTest::newRow("name in gen_indices.h") << "i_speed"
                                               << "0x2000";
        QTest::newRow("one column") << "default:42"
                                    << "0x2000";
        QTest::newRow("in no row") << "rise fall"
                                   << "";
    }
    void filters()
    {
        const auto [typed, places] = fetchRow<QString, QString>();
        open("odd");
        click("input[value=table]");
        type("#objects-filter", typed);
        const QString expected = QString(places).isEmpty() ? "8 rows" : QString();
        QVERIFY(
            waitForText("#objects-count",
                        QString("%1 of 8 rows").arg(places.split(' ', Qt::SkipEmptyParts).size()),
                        typed.isEmpty() ? "8 rows" : QString()));
        QCOMPARE(
            list("[...document.querySelectorAll('#objects-body code')].map((c) => c.textContent)")
                .join(' '),
            places);
    }

    void treeShowsWhatWasFoundInside()
    {
        open("odd");
        click("#objects-collapse");
        type("#objects-filter", "fall");
        QVERIFY(waitForText("#objects-count", "1 of 8 rows"));
        QCOMPARE(
            list("[...document.querySelectorAll('#objects-body th')].map((c) => c.textContent)"),
            Texts({"Manufacturer", "\u25be0x2001", ":2"}));
    }

    void sorts()
    {
        open("odd");
        click("input[value=table]");
        click(".column-name button");
        click(".column-name button");
        QCOMPARE(text("#objects-body tr[data-at] code"), QString("0x2000"));
        QCOMPARE(text("[aria-sort=descending]").left(4), QString("Name"));
    }

    /// Only the rows in view are elements.
    void scrollsManyRows()
    {
        QJsonObject data = QJsonDocument::fromJson(readFile(TEST_CASES "/odd.json")).object();
        QJsonArray lines = data["lines"].toArray();
        QJsonObject line = lines[0].toObject();
        QJsonObject objects = line["objects"].toObject();
        QJsonArray rows;
        for (int index = 0x2000; index < 0x2000 + 5000; ++index)
            rows.append(QJsonArray{index, 0, 1, 2, 3, 4, 5, 0});
        objects["rows"] = rows;
        line["objects"] = objects;
        lines[0] = line;
        data["lines"] = lines;
        QVERIFY(write("many.html", pageWith(QJsonDocument(data).toJson().replace('<', "\\u003C"))));
        QVERIFY(browser.open(address("many") + "#0/0x3000"));
        QCOMPARE(text("tr[aria-selected=true] code"), QString("0x3000"));
        QVERIFY(browser.value("document.querySelectorAll('#objects-body tr').length").toInt() <
                200);
        (void)browser.value("document.getElementById('objects-rows').scrollTop = 1e9");
        QVERIFY(browser.waitFor(
            "[...document.querySelectorAll('#objects-body code')].pop().textContent === '0x3387'"));
    }

    // A link leads to its place, on load, by a click, and when something hides the place.
    void links_data()
    {
        columns<QString, QString>("link", "shown");
        QTest::newRow("object") << "#0/0x2000"
                                << "0x2000 Speed";
        QTest::newRow("subindex") << "#0/0x2001:2"
                                  << "0x2001:2 Fall";
        QTest::newRow("identifier") << "#1/can/0x123"
                                    << "1/can/0x123";
        QTest::newRow("frame") << "#0/frame/tpdo1"
                               << "0/frame/tpdo1";
    }
    void links()
    {
        const auto [link, shown] = fetchRow<QString, QString>();
        const QString place = shown.contains(' ')
                                  ? "document.querySelector('#objects-details h3').textContent"
                                  : "document.activeElement.id";
        QVERIFY(browser.open(address("odd") + link));
        QCOMPARE(browser.value(place).toString(), shown);
        open("odd");
        click("#objects-collapse");
        type("#objects-filter", "profile");
        type("#frames-filter", "sync");
        QVERIFY(waitForText("#objects-count", "1 of 8 rows") &&
                waitForText("#frames-count", "1 of 6 frames"));
        (void)browser.value("location.hash = '" + link + "'");
        QVERIFY(browser.waitFor(place + " === '" + shown + "'"));
    }

    void followsFindings()
    {
        open("odd");
        QCOMPARE(list("[...document.querySelectorAll('.finding')].map((f) => (f.querySelector('a') "
                      "|| {hash: ''}).hash)"),
                 Texts({"#0/0x2001:2", "#1/can/0x123", ""}));
        click(".finding a");
        QVERIFY(browser.waitFor(
            "document.querySelector('tr[aria-selected=true]').dataset.link === '#0/0x2001:2'"));
        QCOMPARE(browser.value("document.activeElement.id").toString(), QString("objects-table"));
    }

    void movesByKeyboard()
    {
        QVERIFY(browser.open(address("odd") + "#0/0x2001"));
        for (const QString key :
             {"ArrowLeft", "ArrowDown", "ArrowUp", "ArrowRight", "ArrowDown", "ArrowDown"})
            press(key);
        QCOMPARE(browser.value("location.hash").toString(), QString("#0/0x2001:1"));
        (void)browser.value("document.querySelector('.id-map').focus()");
        press("n");
        QCOMPARE(text(".readout"),
                 QString("0x185: collision: TPDO1, transmit, node 5; RPDO1, receive, node 5"));
        press("ArrowRight");
        QCOMPARE(text(".readout"), QString("0x186: not used, by default TPDO 1 of node 6"));
    }

    // Each name stands over the bits of its value, by the numbers at the edges of the drawing.
    void drawsBits_data()
    {
        columns<QString, QString, Texts>("page", "frame", "cells");
        QTest::newRow("nibbles and a gap")
            << "odd"
            << "0/frame/tpdo1"
            << Texts({"Speed 0:76543210 1:76543210 2:76543210 3:76543210", "Gear 4:3210",
                      "Turns 4:7654 5:76543210", " 6:76543210 7:76543210"});
        QTest::newRow("overlap") << "odd"
                                 << "1/can/0x123"
                                 << Texts({"Level 0:76543210 1:3210", "Mode[U+202E] 1:76543210"});
        QTest::newRow("mapping of a project")
            << "pump"
            << "0/frame/tpdo1"
            << Texts({"Status word 0:76543210 1:76543210", "Actual speed 2:76543210 3:76543210",
                      "Active alarms 4:76543210 5:76543210 6:76543210 7:76543210"});
    }
    void drawsBits()
    {
        const auto [page, frame, cells] = fetchRow<QString, QString, Texts>();
        QVERIFY(browser.open(address(page) + '#' + frame));
        QCOMPARE(list(QString(readFile(TEST_CASES "/bits.js")).replace("%FRAME%", frame)), cells);
    }

    void marksOverlapsAndGaps()
    {
        open("odd");
        const QString marks = "[...document.getElementById('%1').querySelectorAll('.%2')].map((r) "
                              "=> r.getAttribute('width'))";
        QCOMPARE(list(marks.arg("1/can/0x123", "matrix .clash")),
                 Texts({"160"})); // four bits of 40
        QCOMPARE(list(marks.arg("1/can/0x123", "matrix .free")), Texts({"320"}));
        QCOMPARE(text("[id='1/can/0x123'] header .error"), QString("overlap"));
        QCOMPARE(browser.value("document.querySelectorAll('.id-map .collision').length").toInt(),
                 1);
    }

    // Foreign texts are texts, and what turns or hides is visible.
    void showsForeignTexts_data()
    {
        columns<QString, QString, QString>("page", "place", "text");
        QTest::newRow("project") << "odd"
                                 << "#project-name"
                                 << "odd </title><script>hit()</script>";
        QTest::newRow("product") << "odd"
                                 << "#project-product"
                                 << "U+202ErolyatU+0000 \u00b7 '\"&amp;$script$ \u00b7 version 2";
        QTest::newRow("frame") << "odd"
                               << "[id='1/can/0x123'] h4"
                               << "</script><img src=x onerror=hit()>";
        QTest::newRow("object") << "odd"
                                << "tr[data-link='#0/0x2011'] .column-name"
                                << "</script><b>x</b> U+202Eb";
        QTest::newRow("of a run") << "hostile"
                                  << "tr[data-link='#0/0x1018:1'] .column-name" << kHostile;
    }
    void showsForeignTexts()
    {
        const auto [page, place, expected] = fetchRow<QString, QString, QString>();
        open(page);
        QCOMPARE(text(place), expected);
        QCOMPARE(
            browser
                .value("document.scripts.length + document.querySelectorAll('img, bdi b').length")
                .toInt(),
            2);
        QCOMPARE(
            list("[...document.querySelectorAll('bdi')].map((b) => b.textContent).filter((t) => "
                 "/[\\0\\u202e]/.test(t))"),
            Texts());
        QCOMPARE(browser.problems, Texts());
    }

    void computesLoad_data()
    {
        columns<Texts, Texts>("steps", "average, worst");
        // 114 and 135 bits each 10 ms; 50/500 + 203/2000 ms and 56/500 + 240/2000 ms each 20 ms
        QTest::newRow("as the project says")
            << Texts() << Texts({"2.3 %", "2.7 %", "1.0 %", "1.2 %"});
        QTest::newRow("other bit rate")
            << Texts({"select: 125"}) << Texts({"9.1 %", "10.8 %", "1.0 %", "1.2 %"});
        QTest::newRow("other data bit rate")
            << Texts({"article:last-of-type .rate:last-of-type select: 1000"})
            << Texts({"2.3 %", "2.7 %", "1.5 %", "1.8 %"});
        // 48 and 55 bits each 5 ms, and with them 114 and 135 bits each 10 ms, as the PDO comes
        // with each second SYNC
        QTest::newRow("period of SYNC") << Texts({"[aria-label$=\"SYNC in ms\"]: 5"})
                                        << Texts({"6.5 %", "7.6 %", "1.0 %", "1.2 %"});
        QTest::newRow("at the inhibit time")
            << Texts({"[type=checkbox]: on"}) << Texts({"9.1 %", "10.8 %", "1.0 %", "1.2 %"});
        QTest::newRow("not a period") << Texts({"[aria-label$=\"SYNC in ms\"]: 0"})
                                      << Texts({"2.3 %", "2.7 %", "1.0 %", "1.2 %"});
        QTest::newRow("too much") << Texts({"select: 10", "[aria-label$=\"SYNC in ms\"]: 1"})
                                  << Texts({"1164.0 %", "1360.0 %"});
    }
    void computesLoad()
    {
        const auto [steps, shares] = fetchRow<Texts, Texts>();
        open("odd");
        for (const QString &step : steps) {
            const QString change =
                "(() => { const f = document.querySelector('#load %1'); "
                "if (f.type === 'checkbox') { f.click(); return; } f.value = '%2'; "
                "f.dispatchEvent(new Event('input')); f.dispatchEvent(new Event('change')); })()";
            (void)browser.value(
                QString(change).arg(step.section(": ", 0, 0), step.section(": ", 1)));
        }
        const Texts found =
            list("[...document.querySelectorAll('#load .gauge strong')].map((s) => s.textContent)");
        QCOMPARE(found.mid(0, shares.size()), shares);
    }

    void tellsOfComparisonAndFootprint()
    {
        open("odd");
        QCOMPARE(list("[...document.querySelectorAll('.change')].map((c) => c.textContent)"),
                 Texts({"~changed: 0x2001:2 Falldefault 1 \u2192 2variable fall",
                        "\u2212removed: endian1"}));
        QCOMPARE(list("[...document.querySelectorAll('#footprint .gauge strong')].map((s) => "
                      "s.textContent)"),
                 Texts({"12 B", "3,000 B"}));
        QCOMPARE(browser.value("document.querySelectorAll('.wire').length").toInt(), 1);
    }

    void copiesNames()
    {
        QVERIFY(browser.open(address("odd") + "#0/0x2000"));
        click("#objects-details .copy");
        QVERIFY(waitForText("#said", "Copied I_SPEED"));
    }

    // On paper there is all of it.
    void printsAllRows()
    {
        open("odd");
        click("#objects-collapse");
        (void)browser.value("window.dispatchEvent(new Event('beforeprint'))");
        QCOMPARE(browser.value("document.querySelectorAll('details:not([open])').length").toInt(),
                 0);
        QVERIFY(!browser.command("Page.printToPDF")["data"].toString().isEmpty());
    }

private:
    /// A page of the tool with other data. The data are no script, so its policy stays true.
    QByteArray pageWith(const QByteArray &data)
    {
        const QByteArray start = "<script type=\"application/json\" id=\"data\">";
        QByteArray page = read("pump.html");
        const int from = page.indexOf(start) + start.size();
        return page.replace(from, page.indexOf("</script>", from) - from, data);
    }

    QString address(const QString &page) const
    {
        return QString::fromLatin1(QUrl::fromLocalFile(folder + '/' + page + ".html").toEncoded());
    }
    void open(const QString &page) { QVERIFY(browser.open(address(page))); }

    QStringList list(const QString &expression)
    {
        const QJsonValue value = browser.value(expression);
        QStringList texts;
        for (const QJsonValue &each : value.toArray())
            texts.append(each.toString());
        return value.isArray() ? texts : QStringList("no list: " + value.toString());
    }
    QString text(const QString &selector)
    {
        return browser.value("document.querySelector(\"" + selector + "\").textContent").toString();
    }
    bool waitForText(const QString &selector, const QString &text, const QString &orText = {})
    {
        const QString node = "document.querySelector('" + selector + "').textContent";
        return browser.waitFor(
            QString("['%1', '%2'].includes(%3)").arg(text, orText.isEmpty() ? text : orText, node));
    }
    void click(const QString &selector)
    {
        (void)browser.value("document.querySelector('" + selector + "').click()");
    }
    void type(const QString &selector, const QString &text)
    {
        (void)browser.value(
            QString("(() => { const f = document.querySelector('%1'); f.value = '%2'; "
                    "f.dispatchEvent(new Event('input')); })()")
                .arg(selector, text));
    }
    void press(const QString &key)
    {
        QJsonObject event = {{"type", "keyDown"}, {"key", key}};
        (void)browser.command("Input.dispatchKeyEvent", event);
        event["type"] = "keyUp";
        (void)browser.command("Input.dispatchKeyEvent", event);
    }

    Browser browser;
};

QTEST_GUILESS_MAIN(TestOverviewPage)
#include "tst_overviewpage.moc"
