// The targets, and the run that they share.
#include "fuzz/harness.h"

#include "app/generatormainhandler.h"
#include "app/outputhandlerbase.h"
#include "formats/dbcj1939.h"
#include "formats/dbcreader.h"
#include "formats/yamlreader.h"
#include "fuzz/recordfile.h"
#include "import/dbcidentity.h"
#include "store/yaml/yamlproject.h"
#include "support/cohelper.h"
#include "support/helper.h"
#include "tests/fixtures/storefixture.h"

#include <QBuffer>
#include <QLoggingCategory>
#include <QTextCodec>

#include <cerrno>
#include <unistd.h>

// A project can name a command that runs after the generation. Here none does: these functions
// take the place of those of the C library, also for QProcess.

extern "C" int execv(const char *, char *const[]) noexcept
{
    errno = EACCES;
    return -1;
}

extern "C" int execve(const char *, char *const[], char *const[]) noexcept
{
    errno = EACCES;
    return -1;
}

namespace
{

class SilentOutput : public OutputHandlerBase
{
public:
    void printLine(const QVariant &line) override { log += line.toString(); }
    QString getLogging() override { return log; }

private:
    QString log;
};

/// One run of the tool in folders of its own.
class ToolRun
{
public:
    explicit ToolRun(const StoreFixture &fixture) : home(fixture.path("run")), handler(&output)
    {
        QDir().mkpath(home + "/project");
    }
    ~ToolRun() { QDir(home).removeRecursively(); }

    bool open(const char *name, const QByteArray &project)
    {
        const QString path = home + "/project/" + name;
        writeFile(path, project);
        return handler.openProject(path);
    }

    bool openRecords(const QByteArray &records)
    {
        const QString path = home + "/project/project.tsrp";
        writeRecordFile(records, path);
        return handler.openProject(path);
    }

    void import(const char *name, const QByteArray &description)
    {
        writeFile(home + "/" + name, description);
        handler.setImportFile(home + "/" + name);
    }

    void modify(const QByteArray &modifier)
    {
        writeFile(home + "/modifier", modifier);
        handler.applyDbModifier(home + "/modifier");
    }

    void finish()
    {
        handler.generateOutput(true);
        handler.saveProject();
    }

private:
    QString home;
    SilentOutput output;
    GeneratorMainHandler handler;
};

/// Its temporary folder lasts until the process ends.
const StoreFixture &fixture()
{
    static const StoreFixture instance;
    return instance;
}

void runImport(const char *name, const QByteArray &description)
{
    static const QByteArray empty = readFile(TESSARINE_EXAMPLES "/empty/empty.tsrt");
    ToolRun run(fixture());
    run.open("project.tsrt", empty);
    run.import(name, description);
    run.finish();
}

void runText(const QByteArray &project)
{
    ToolRun run(fixture());
    if (run.open("project.tsrt", project))
        run.finish();
}

void runDatabase(const QByteArray &project)
{
    ToolRun run(fixture());
    if (run.open("project.tsrp", project))
        run.finish();
}

void runRecords(const QByteArray &records)
{
    ToolRun run(fixture());
    if (run.openRecords(records))
        run.finish();
}

/// On a project that has something for every setting to work on.
void runModifier(const QByteArray &modifier)
{
    static const QByteArray project = readFile(FUZZ_FOLDER "/seeds/records/mixed");
    ToolRun run(fixture());
    run.openRecords(project);
    run.modify(modifier);
    run.finish();
}

bool readYaml(const QByteArray &text, ProjectRecord *project)
{
    YamlProblems problems("project.yaml");
    YamlDocument document;
    return YamlReader::read(text, &document, &problems) &&
           YamlProject::read(document, project, &problems) && problems.isEmpty();
}

QByteArray yamlOf(const ProjectRecord &project)
{
    QBuffer buffer;
    (void)buffer.open(QIODevice::WriteOnly); // memory
    if (!YamlProject::write(project, &buffer))
        qFatal("a project that was read cannot be written");
    return buffer.data();
}

/// No store, which would take most of the time: what was read is written, and has to be read as the
/// same.
void runYaml(const QByteArray &input)
{
    ProjectRecord project;
    if (!readYaml(input, &project))
        return;
    const QByteArray written = yamlOf(project);
    ProjectRecord again;
    if (!readYaml(written, &again) || yamlOf(again) != written)
        qFatal("a project that was written is not read as the same");
}

/// To the records of a line of each protocol, without the project; all that is odd is put in words.
void runDbc(const QByteArray &input)
{
    const QString name = QStringLiteral("network.dbc");
    DbcReader reader;
    (void)reader.parse(input, name); // any bytes will do
    const DbcFile &file = reader.file();
    (void)DbcJ1939::isJ1939(file);
    reader.tellProblems();
    const QString node = file.nodes.isEmpty() ? QString() : file.nodes.first().name;
    for (const auto protocol : {DbcFrames::Protocol::J1939, DbcFrames::Protocol::RawCan}) {
        DbcTally tally;
        DbcFrames frames(file, protocol, node, &tally);
        (void)frames.groups();
        (void)frames.canFrames();
        (void)DbcIdentity::of(file, node, frames.choices(), &tally);
        tally.tell(name);
    }
}

// clang-format off
constexpr Fuzz::Target kTargets[] = {
    {"csv",      [](const QByteArray &input) { runImport("table.csv", input); }},
    {"database", runDatabase},
    {"dbc",      runDbc},
    {"eds",      [](const QByteArray &input) { runImport("device.eds", input); }},
    {"modifier", runModifier},
    {"records",  runRecords},
    {"text",     runText},
    {"xdd",      [](const QByteArray &input) { runImport("device.xdd", input); }},
    {"yaml",     runYaml},
};
// clang-format on

} // namespace

const Fuzz::Target *Fuzz::findTarget(const QByteArray &name)
{
    for (const Target &target : kTargets) {
        if (name == target.name)
            return &target;
    }
    return nullptr;
}

void Fuzz::prepare()
{
    // What is logged is made of the input as well.
    QLoggingCategory::setFilterRules("tessarine.*=true");
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext &, const QString &) {});
    QTextCodec::setCodecForLocale(QTextCodec::codecForName("UTF-8"));
    [[maybe_unused]] static const Helper helper(3);
    [[maybe_unused]] static const COHelper coHelper;
    (void)fixture();
}
