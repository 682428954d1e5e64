// The file of several protocols: its name, its head, its own tables, and what each mix of lines
// asks for. What the C means is told by running it, see tests/stack.
#include "generators/multiproto/multiprogenerator.h"
#include "tests/fixtures/casefile.h"
#include "tests/fixtures/projecttext.h"
#include "tests/fixtures/storefixture.h"

class tst_MultiProGenerator : public StoreTest
{
    Q_OBJECT

private slots:
    void init()
    {
        store = makeStore();
        store->setGeneralSettingsValue("new_init_structure", "1");
        QDir(fixture.path()).removeRecursively();
        QDir().mkpath(fixture.path());
    }

    void files_data() { addCases(TEST_CASES "/multiprogenerator.txt"); }
    void files()
    {
        const auto [project, expected] = fetchRow<QString, QString>();
        buildProject(*store, project);

        const QByteArray difference = mismatch(generated(caseGroup()), expected);
        QVERIFY2(difference.isEmpty(), difference);
    }

    void headersOfTheApplication()
    {
        buildProject(*store, "line 0; line 1 4; set udsclient_supported=1 overwrite_predef=1\n"
                             "j1939:cia510serversupport=1");
        store->setGeneralSettingsValue("applicationheader",
                                       QString("a%1.h  b.h\x1b \n").arg(QChar(0)));
        const QString text = generated("gen_mp.c");
        QVERIFY(text.contains("#include <mp_mp.h>\n#include <iso_tp.h>\n#include <uds_uds.h>\n"
                              "#include <gen_indication.h>\n"));
        QVERIFY(text.contains("#include <j1939_cam11_cam21.h>\n#include <ico_odaccess.h>\n\n"
                              "/* application header file(s) */\n#include <a.h>\n#include <b.h>\n"
                              "\n\n/* definition of watchdog handle during initialization */\n"));
        QVERIFY(text.contains("#include <gen_user.h>\n/* these functions"));
        QVERIFY(QFile::exists(fixture.path("gen_user.h")));
    }

private:
    QString generated(const QString &file)
    {
        MultiProGenerator classic;
        MultiProGeneratorV4 v4;
        const bool isV4 = store->getGeneralSettingsValue("use_core_headers") == "V4";
        return generateWith(isV4 ? v4 : classic, "p", file);
    }
};

QTEST_GUILESS_MAIN(tst_MultiProGenerator)
#include "tst_multiprogenerator.moc"
