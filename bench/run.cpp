// Runs the tool on synthetic projects of all kinds of lines and prints what a run costs.
//
// Usage: bench_run <folder> <runs of each kind>
// The folder is a build folder whose bin/ holds the tool and the other benchmark programs; all that
// the benchmark writes goes to its folder "bench-work".
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <map>
#include <string>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace fs = std::filesystem;

namespace
{

struct Cost {
    double elapsedMs = 0;
    double processorMs = 0; ///< of all threads; other programs hardly change it
    double megabytes = 0;   ///< peak of the resident memory
};

constexpr double Cost::*kFigures[] = {&Cost::elapsedMs, &Cost::processorMs, &Cost::megabytes};

/// One kind of run. Each run starts in a fresh folder that holds copies of the named files.
struct Kind {
    const char *title;
    std::vector<std::string> files;
    std::vector<std::string> arguments;
    const char *comparedTo; ///< title of the kind that the ratios are told to
    const char *program = "tessarine";
};

constexpr const char *kFloor = "floor"; ///< reads the same rows and writes the same bytes
constexpr const char *kFull = "check and generate";
constexpr const char *kStore = "bench_openproject"; ///< neither check nor files

const std::vector<Kind> kFullRun = {
    {kFull, {"project.tsrp"}, {"-project", "project.tsrp"}, kFloor}};

const std::vector<Kind> kAllRuns = {
    kFullRun.front(),
    {"import EDS and save",
     {"blank.tsrp", "device.eds"},
     {"-project", "blank.tsrp", "-import", "device.eds", "-save"},
     kFull},
    {"import XDD and save",
     {"blank.tsrp", "device.xdd"},
     {"-project", "blank.tsrp", "-import", "device.xdd", "-save"},
     kFull},
    {"the text form", {"project.tsrt"}, {"-project", "project.tsrt"}, kFull},
    {"save the text form", {"project.tsrt"}, {"-project", "project.tsrt", "-save"}, kFull},
    {"the YAML form", {"project.yaml"}, {"-project", "project.yaml"}, "the text form"},
    {"save the YAML form",
     {"project.yaml"},
     {"-project", "project.yaml", "-save"},
     "save the text form"},
    {"open text", {"project.tsrt"}, {"project.tsrt"}, kFull, kStore},
    {"open YAML", {"project.yaml"}, {"project.yaml"}, "open text", kStore},
    {"open and write text", {"project.tsrt"}, {"project.tsrt", "new.tsrt"}, kFull, kStore},
    {"open and write YAML",
     {"project.yaml"},
     {"project.yaml", "new.yaml"},
     "open and write text",
     kStore},
};

const std::vector<Kind> kGroupRuns = {
    kFullRun.front(),
    {"import DBC and save",
     {"blank.tsrp", "device.dbc"},
     {"-project", "blank.tsrp", "-import-node", "Unit", "-import", "device.dbc", "-save"},
     kFull},
};

struct Project {
    const char *title;
    int parts;         ///< objects, groups or identifiers of each line
    const char *types; ///< of the lines: 1 CANopen, 2 J1939, 4 raw CAN, 5 CANopen and J1939
    const std::vector<Kind> &kinds;

    int lines() const { return static_cast<int>(std::strlen(types) + 1) / 2; }
};

// clang-format off
const Project kProjects[] = {
    {"CANopen",             0, "1",               kFullRun},
    {"CANopen",           100, "1",               kAllRuns},
    {"CANopen",          1000, "1",               kAllRuns},
    {"CANopen",          5000, "1",               kAllRuns},
    {"CANopen",         20000, "1",               kAllRuns},
    {"CANopen",          1000, "1,1",             kFullRun},
    {"CANopen",          1000, "1,1,1,1",         kFullRun},
    {"CANopen",          1000, "1,1,1,1,1,1,1,1", kFullRun},
    {"J1939",             250, "2",               kGroupRuns},
    {"J1939",            1000, "2",               kGroupRuns},
    {"J1939",            5000, "2",               kGroupRuns},
    {"raw CAN",          1000, "4",               kFullRun},
    {"all four types",   1000, "1,2,4,5,1,2,4,5", kFullRun},
};
// clang-format on

[[noreturn]] void fail(const std::string &text)
{
    std::fprintf(stderr, "bench: %s\n", text.c_str());
    std::exit(1);
}

constexpr const char *kNowhere = "/dev/null";

/// Becomes the program, in the folder and with its output in the file; called in the child process.
[[noreturn]] void become(const std::string &program, const std::vector<std::string> &arguments,
                         const fs::path &folder, const char *output)
{
    std::vector<char *> words{const_cast<char *>(program.c_str())};
    for (const std::string &argument : arguments)
        words.push_back(const_cast<char *>(argument.c_str()));
    words.push_back(nullptr);
    const int file = open(output, O_WRONLY | O_CREAT | O_TRUNC, 0644);
    if (file >= 0 && chdir(folder.c_str()) == 0) {
        dup2(file, STDOUT_FILENO);
        if (output != kNowhere)
            dup2(file, STDERR_FILENO);
        execv(program.c_str(), words.data());
    }
    _exit(127);
}

double milliseconds(const timeval &time)
{
    return static_cast<double>(time.tv_sec) * 1000 + static_cast<double>(time.tv_usec) / 1000;
}

/// Runs to the end and measures; a run that does not end with exit code 0 ends the benchmark.
Cost measure(const std::string &program, const std::vector<std::string> &arguments,
             const fs::path &folder, const char *output = kNowhere)
{
    const auto start = std::chrono::steady_clock::now();
    const pid_t child = fork();
    if (child < 0)
        fail("cannot start a process");
    if (child == 0)
        become(program, arguments, folder, output);
    int status = 0;
    rusage usage{};
    if (wait4(child, &status, 0, &usage) != child)
        fail("lost the process of " + program);
    const std::chrono::duration<double, std::milli> time = std::chrono::steady_clock::now() - start;
    if (!WIFEXITED(status) || WEXITSTATUS(status) != 0) {
        std::string command = program;
        for (const std::string &argument : arguments)
            command += " " + argument;
        fail("failed in " + folder.string() + ": " + command);
    }
    return {time.count(), milliseconds(usage.ru_utime) + milliseconds(usage.ru_stime),
            static_cast<double>(usage.ru_maxrss) / 1024};
}

/// The median of each figure by itself.
Cost median(std::vector<Cost> costs)
{
    const auto middle = costs.begin() + static_cast<std::ptrdiff_t>(costs.size() / 2);
    Cost result;
    for (double Cost::*figure : kFigures) {
        std::nth_element(costs.begin(), middle, costs.end(),
                         [=](const Cost &a, const Cost &b) { return a.*figure < b.*figure; });
        result.*figure = (*middle).*figure;
    }
    return result;
}

/// All runs on one project.
class ProjectBench
{
public:
    ProjectBench(const fs::path &buildFolder, const Project &measured, int runCount)
        : project(measured), bin(buildFolder / "bin"), data(buildFolder / "bench-work" / "project"),
          work(buildFolder / "bench-work" / "run"), log(buildFolder / "bench-work" / "log"),
          runs(runCount)
    {
        fs::remove_all(data);
        fs::create_directories(data);
        measure(bin / "bench_makeproject",
                {std::to_string(project.parts), project.types, data.string()}, data);
    }

    /// Medians by title. The kinds take turns, so that a busy moment of the machine hits them
    /// alike.
    std::map<std::string, Cost> run()
    {
        const Kind &first = project.kinds.front();
        const std::string bytes = std::to_string(outputBytes(first));
        std::map<std::string, std::vector<Cost>> costs;
        for (int turn = 0; turn < runs; ++turn) {
            costs[kFloor].push_back(runFloor(bytes));
            for (const Kind &kind : project.kinds)
                costs[kind.title].push_back(runKind(kind));
        }
        std::map<std::string, Cost> medians;
        for (const auto &[title, list] : costs)
            medians[title] = median(list);
        return medians;
    }

    /// Elapsed time by the name of a part of the run, the longest first; from one run more.
    std::vector<std::pair<double, std::string>> phases()
    {
        freshFolder(project.kinds.front().files);
        setenv("TESSARINE_LOG", "2", 1);
        measure(bin / "tessarine", project.kinds.front().arguments, work, log.c_str());
        unsetenv("TESSARINE_LOG");
        std::map<std::string, double> times;
        std::ifstream lines(log);
        for (std::string line; std::getline(lines, line);) {
            const size_t start = line.find(kLogStart);
            const size_t end = line.find(kLogTook);
            if (start == std::string::npos || end == std::string::npos)
                continue;
            const size_t name = start + std::strlen(kLogStart);
            times[line.substr(name, end - name)] +=
                std::stod(line.substr(end + std::strlen(kLogTook)));
        }
        std::vector<std::pair<double, std::string>> sorted;
        for (const auto &[name, time] : times)
            sorted.emplace_back(time, name);
        std::sort(sorted.rbegin(), sorted.rend());
        return sorted;
    }

private:
    static constexpr const char *kLogStart = "tessarine.app: ";
    static constexpr const char *kLogTook = " took ";

    const Project &project;
    fs::path bin;
    fs::path data;
    fs::path work;
    fs::path log;
    int runs;

    void freshFolder(const std::vector<std::string> &files)
    {
        fs::remove_all(work);
        fs::create_directories(work);
        for (const std::string &file : files)
            fs::copy_file(data / file, work / file);
    }

    Cost runKind(const Kind &kind)
    {
        freshFolder(kind.files);
        return measure(bin / kind.program, kind.arguments, work);
    }

    Cost runFloor(const std::string &bytes)
    {
        freshFolder({"project.tsrp"});
        return measure(bin / "bench_floor", {"project.tsrp", bytes, "output"}, work);
    }

    /// Bytes that a run adds to its folder; the run also warms up the machine.
    std::uintmax_t outputBytes(const Kind &kind)
    {
        runKind(kind);
        std::uintmax_t bytes = 0;
        for (const auto &entry : fs::directory_iterator(work)) {
            const std::string name = entry.path().filename().string();
            if (std::find(kind.files.begin(), kind.files.end(), name) == kind.files.end())
                bytes += entry.file_size();
        }
        return bytes;
    }
};

void printHead()
{
    std::printf("%-14s %5s %6s  %-20s %9s %9s %8s %8s  %s\n", "lines", "count", "parts", "run",
                "time [ms]", "CPU [ms]", "CPU us", "peak", "times (CPU times)");
    std::printf("%-14s %5s %6s  %-20s %9s %9s %8s %8s\n", "", "", "each", "", "", "", "a part",
                "[MiB]");
}

void printRow(const Project &project, const char *title, const Cost &cost)
{
    const int parts = std::max(project.lines() * project.parts, 1);
    std::printf("%-14s %5d %6d  %-20s %9.1f %9.1f %8.1f %8.1f", project.title, project.lines(),
                project.parts, title, cost.elapsedMs, cost.processorMs,
                cost.processorMs * 1000 / parts, cost.megabytes);
}

void printTable(const Project &project, std::map<std::string, Cost> &costs)
{
    printRow(project, kFloor, costs[kFloor]);
    std::printf("\n");
    for (const Kind &kind : project.kinds) {
        const Cost &cost = costs[kind.title];
        const Cost &other = costs[kind.comparedTo];
        printRow(project, kind.title, cost);
        std::printf("  %5.2f (%5.2f) x %s\n", cost.elapsedMs / other.elapsedMs,
                    cost.processorMs / other.processorMs, kind.comparedTo);
    }
}

void printPhases(const std::vector<std::pair<double, std::string>> &phases)
{
    constexpr size_t kMost = 8;
    std::printf("    longest parts [ms]:");
    for (size_t i = 0; i < std::min(phases.size(), kMost); ++i)
        std::printf("%s %s %.0f", i == 0 ? "" : ",", phases[i].second.c_str(), phases[i].first);
    std::printf("\n\n");
    std::fflush(stdout);
}

void printGrowth(const std::map<int, std::map<std::string, Cost>> &canopenCosts)
{
    constexpr int kFrom = 5000;
    constexpr int kTo = 20000;
    std::printf("Growth of the processor time from %d to %d objects:\n", kFrom, kTo);
    for (const Kind &kind : kAllRuns)
        std::printf("    %-20s %5.2f times\n", kind.title,
                    canopenCosts.at(kTo).at(kind.title).processorMs /
                        canopenCosts.at(kFrom).at(kind.title).processorMs);
}

} // namespace

int main(int argc, char *argv[])
{
    const int runs = argc == 3 ? std::atoi(argv[2]) : 0;
    if (runs < 1 || !fs::exists(fs::path(argv[1]) / "bin" / "tessarine")) {
        std::fprintf(stderr, "usage: bench_run <build folder> <runs of each kind>\n");
        return 2;
    }
    std::printf("Medians of %d runs.\n\n", runs);
    printHead();
    std::map<int, std::map<std::string, Cost>> canopenCosts; // of one line, by its objects
    for (const Project &project : kProjects) {
        ProjectBench bench(argv[1], project, runs);
        std::map<std::string, Cost> costs = bench.run();
        printTable(project, costs);
        printPhases(bench.phases());
        if (&project.kinds == &kAllRuns)
            canopenCosts[project.parts] = costs;
    }
    printGrowth(canopenCosts);
    return 0;
}
