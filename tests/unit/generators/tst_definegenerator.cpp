// What gen_define.h never does, and what goes over from one generation to the next.
#include "generators/defines/codefinegenerator.h"
#include "generators/defines/gendefinegenerator.h"
#include "generators/oldfile.h"
#include "tests/fixtures/problemrecorder.h"
#include "tests/unit/generators/definefixture.h"

#include <QRandomGenerator>
#include <QRegularExpression>

#include <sys/stat.h>

namespace
{

const QByteArray kStart = "/* user-specific section: start */\n";
const QByteArray kEnd = "/* user-specific section: end */\n";

/// Lists by line as projects have them, with and without enough elements.
constexpr const char *kValues[] = {"0", "1", "1", "2", "3,1", ",2", "1,%20,4"};

/// What sections share, and what switches them.
const QStringList kMixedSettings =
    QString("canfd_supported enable_dynamic event_can event_sdo_server_read event_sdo_client_write "
            "isotp_supported isotp_connection_cnt isotp_client_con isotp_server_con "
            "isotp_client_event isotp_dyn_split_ind udsserver_supported udsclient_supported "
            "uds_client_cnt uds_server_active uds_seedkey_length rxindication_cnt "
            "txindication_cnt changedindication_cnt limit_check bitwise_mapping bootup_manager "
            "nmtmaster lss_supported sdo_routing usdo_server_enabled usdo_client_enabled "
            "sleep_mode_selection user_tx_cob receivebuffersize co_node_id "
            "additional_cob_count co_timer_interval co_srdo_interval sorted_coblist "
            "j1939:cia510serversupport j1939:cia510clientsupport j1939:safetysupport "
            "j1939:dynsupport j1939:canindication_cnt j1939:rxindication_cnt "
            "j1939:txindication_cnt j1939:bamsupport j1939:cmdtsupport j1939:diagsupport "
            "j1939:diagtoolsupport j1939:bitwisemapping j1939:requestsupport "
            "j1939:j1939fd_multipgbuffer")
        .split(' ');
constexpr const char *kMixedRows[] = {"1000:0 U32 ro 0 0", "1200 rec ro 0,0", "1280 rec ro 0,0,0",
                                      "1800 rec ro 5*0",   "1a00 rec ro 0,0", "1301 rec ro 6*0",
                                      "1010 arr ro 0,0",   "1f2c arr ro 0,0", "2000:0 U32 ro 3 0",
                                      "txid 5 0 3",        "rxid 6",          "tx 60928",
                                      "tx 7 0 3",          "rx 8 safe",       "uds 49",
                                      "uds 16 off"};

} // namespace

class tst_DefineGenerator : public QObject
{
    Q_OBJECT

private slots:
    void init() { project = std::make_unique<DefineProject>(); }

    /// A second definition of a name, even an equal one, would be a second opinion.
    void anyMixOfLines()
    {
        static const QRegularExpression define("^#define (\\w+)\\s*(.*)$",
                                               QRegularExpression::MultilineOption);
        static const QRegularExpression crowded("[^\n]\n/\\* (Raw CAN|ISO-TP|UDS) Defines");
        static const QRegularExpression emptyElement("^,|,\\s*,|, *$");
        const quint32 first = testSeed(1);
        for (quint32 seed = first; seed < first + 40; ++seed) {
            makeMix(seed);
            CoDefineGenerator classic;
            GenDefineGenerator v4;
            for (DefineGenerator *generator :
                 {static_cast<DefineGenerator *>(&classic), static_cast<DefineGenerator *>(&v4)}) {
                generator->j1939Present = carried.contains('2') || carried.contains('5');
                const bool hasCANopen = carried.contains('1') || carried.contains('5');
                generator->multiProtocol =
                    (generator->j1939Present && hasCANopen) || carried.contains('4');
                const QString header = QString::fromUtf8(generate(*generator));
                const QByteArray place = QByteArray::number(seed) + ": " + header.toUtf8();
                QVERIFY2(!crowded.match(header).hasMatch(), place);
                QHash<QString, QString> values;
                for (auto match = define.globalMatch(header); match.hasNext();) {
                    const QRegularExpressionMatch found = match.next();
                    const QString name = found.captured(1);
                    QVERIFY2(!values.contains(name), name.toUtf8() + " twice in " + place);
                    values.insert(name, found.captured(2));
                    QVERIFY2(!name.endsWith("_COUNTS") ||
                                 !emptyElement.match(found.captured(2)).hasMatch(),
                             name.toUtf8() + " has a gap in " + place);
                }
                QVERIFY2(values.contains("J1939_SUPPORTED") == generator->j1939Present, place);
                QVERIFY2(values.contains("RAWCAN_SUPPORTED") == carried.contains('4'), place);
                QVERIFY2(values.contains("CANOPEN_SUPPORTED") == hasCANopen, place);
                const QString core = generator == &v4 ? "CORE" : "CO";
                for (const char *list : {"_REC_BUFFER_COUNTS", "_TR_BUFFER_COUNTS", "_COB_COUNTS"})
                    QVERIFY2(values.contains(core + list), list + (" not in " + place));
                QCOMPARE(values.contains(generator == &v4 ? "CAN_MULTI_LINE" : "CO_MULTI_LINE"),
                         carried.size() > 1);
            }
        }
    }

    void userSectionAndCounterStay()
    {
        project->change("generate_generation_counter=1");
        // Text of an editor that writes Latin-1, whose bytes a string of C must keep.
        const QByteArray section = "#define T\xFCr\t1u\n\n  /* %1 */\n";
        QByteArray header = "#define GEN_GENERATION_COUNT\t41ul\n" + kStart + section + kEnd;
        int count = 41;
        for (const QByteArray lineEnd : {"\n", "\r\n", "\r", "\n"}) {
            writeFile(target(), header.replace('\n', lineEnd));
            CoDefineGenerator generator;
            header = generate(generator);
            const QByteArray counter =
                "#define GEN_GENERATION_COUNT\t" + QByteArray::number(++count);
            QVERIFY2(header.contains(counter + "ul\n"), header);
            QVERIFY2(header.contains(kStart + section + kEnd), header);
            QCOMPARE(generator.getUserSection(), QString::fromLatin1(section));
        }
        QCOMPARE(QDir(project->files.path()).entryList({"gen_define*"}),
                 QStringList("gen_define.h"));
    }

    void counterStartsAnew()
    {
        writeFile(target(), "#define GEN_GENERATION_COUNT\t41ul\n");
        CoDefineGenerator generator;
        QVERIFY(!generate(generator).contains("GENERATION_COUNT"));
        project->change("generate_generation_counter=1");
        QVERIFY(generate(generator).contains("GENERATION_COUNT\t1ul\n"));
        generator.counterFromSetting = true;
        QVERIFY(!generate(generator).contains("GENERATION_COUNT"));
        project->change("set olm_generation_count=7 user_defines=x");
        QVERIFY(generate(generator).contains("GENERATION_COUNT\t7ul\n"));
        QVERIFY(!generate(generator).contains("application-specific"));
    }

    void sections_data()
    {
        columns<QByteArray, QByteArray>("header", "section");
        // clang-format off
        QTest::newRow("any case") << kStart.toUpper() + "a\n" + kEnd.toUpper() + "b\n" << QByteArray("a\n");
        QTest::newRow("indented") << "\t " + kStart + "\ta \n  /*\tUser-specific section:  end */\t\nb\n"
            << QByteArray("\ta \n");
        QTest::newRow("no blanks") << kStart.simplified().replace(' ', "") + "\na\n/*User-specific section:end*/\n"
            << QByteArray("a\n");
        QTest::newRow("behind code") << "x; " + kStart + "a\n" + kEnd << QByteArray();
        QTest::newRow("no end") << kStart + "a\n\n#endif" << QByteArray("a\n\n#endif\n");
        QTest::newRow("two are joined") << kStart + "a\n" + kEnd + "b\n" + kStart + "c\n" + kEnd
            << QByteArray("a\nc\n");
        QTest::newRow("binary") << QByteArray("\0\xFF\r\0", 4) + "\n" + kStart + QByteArray("\0\xFF\n", 3)
            << QByteArray("\0\xFF\n", 3);
        // clang-format on
    }

    void sections()
    {
        QFETCH(QByteArray, header);
        writeFile(target(), header);
        QByteArray text;
        QVERIFY(OldFile::read(target(), &text));
        QTEST(OldFile::extractUserSection(text), "section");
    }

    /// Without its partner a marker does not tell which text is the user's.
    void markersWithoutPartner_data()
    {
        columns<QByteArray, QString>("header", "told");
        // clang-format off
        const QString told = ":%1: error: this %2 of a user-specific section has no %3, so the file is not "
            "replaced; put the line \"%4\" %5 your text [user-section]";
        QTest::newRow("no end") << "a\n " + kStart + "b\n#endif\n"
            << told.arg("2", "start", "end", kEnd.trimmed(), "after");
        QTest::newRow("no second end") << kStart + kEnd + kStart + kStart
            << told.arg("3", "start", "end", kEnd.trimmed(), "after");
        QTest::newRow("no start") << "a\n\n" + kEnd.toUpper()
            << told.arg("3", "end", "start", kStart.trimmed(), "before");
        QTest::newRow("start in a section") << kStart + kStart + kEnd << QString();
        // clang-format on
    }

    void markersWithoutPartner()
    {
        const auto [header, told] = fetchRow<QByteArray, QString>();
        writeFile(target(), header);
        ProblemRecorder problems;
        CoDefineGenerator generator;
        QCOMPARE(generate(generator) == header, !told.isEmpty());
        QCOMPARE(generator.getWasError(), !told.isEmpty());
        QCOMPARE(problems.lines.join('|').remove(target()), told);
    }

    void counters()
    {
        const QByteArray start = "#define GEN_GENERATION_COUNT\t";
        QCOMPARE(OldFile::extractGenerationCounter("x\n" + start + "0x10ul\n"), 16u);
        QCOMPARE(OldFile::extractGenerationCounter(start + "3ul\n" + start + "4ul\n"), 3u);
        QCOMPARE(OldFile::extractGenerationCounter(start + "\n"), 0u);
    }

    void unusualOldFiles()
    {
        // Too long to be looked through: whatever the user wrote into it stays.
        writeFile(target(), kStart);
        QVERIFY(QFile::resize(target(), qint64(1) << 40)); // a hole, no data
        ProblemRecorder problems;
        CoDefineGenerator generator;
        start(generator);
        QCOMPARE(generator.getLastErrorString(), "Could not read " + target());
        QVERIFY(problems.lines.join('|').startsWith(target() + ": error: is larger than 16 MiB"));
        QCOMPARE(QFileInfo(target()).size(), qint64(1) << 40);

        QFile::remove(target());
        QDir().mkpath(target());
        generate(generator);
        QVERIFY(generator.getWasError());
        QCOMPARE(generator.getLastErrorString(), "Could not write " + target());
        QDir().rmdir(target());

        QCOMPARE(::mkfifo(QFile::encodeName(target()), 0600), 0);
        QVERIFY(!generator.checkWritability());
        start(generator);
        QVERIFY(generator.getWasError());
        QVERIFY(!QFileInfo(target()).isFile());
    }

    void failureLeavesTheOldFile()
    {
        writeFile(target(), kStart + "a\n" + kEnd);
        QDir().mkpath(target() + ".tessarine-new/x"); // where the new file would be made
        CoDefineGenerator generator;
        QCOMPARE(generate(generator), kStart + "a\n" + kEnd);
        QVERIFY(generator.getWasError());
    }

private:
    /// A project of one to four lines, at least one of a known type.
    void makeMix(quint32 seed)
    {
        QRandomGenerator random(seed);
        QString rows;
        carried.clear();
        const int lines = int(random.bounded(4)) + 1;
        for (int line = 0; line < lines; ++line) {
            const QChar type = QString("12459").at(random.bounded(line == 0 ? 4 : 5));
            carried += type;
            rows += QString("line %1 %2\n").arg(line).arg(type);
            for (const char *row : kMixedRows)
                rows += random.bounded(2) ? row + QString('\n') : QString();
        }
        for (const QString &key : kMixedSettings)
            rows += key + '=' + kValues[random.bounded(int(std::size(kValues)))] + '\n';
        project = std::make_unique<DefineProject>(rows);
    }

    QString target() const { return project->files.path("gen_define.h"); }

    void start(DefineGenerator &generator)
    {
        (void)runJob(generator, project->store, project->files.path(), "a*/b");
    }

    /// The header with its date masked.
    QByteArray generate(DefineGenerator &generator)
    {
        start(generator);
        QByteArrayList lines = readFile(target()).split('\n');
        if (lines.value(0) == "/*")
            lines[2] = " * DATE";
        return lines.join('\n');
    }

    std::unique_ptr<DefineProject> project;
    QString carried; ///< types of the lines that makeMix() has made
};

QTEST_GUILESS_MAIN(tst_DefineGenerator)
#include "tst_definegenerator.moc"
