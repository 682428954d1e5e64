// Runs the tool on synthetic projects of four sizes, and on J1939 projects of two, and prints what
// a run costs.
//
// Usage: bench_run <folder> <runs of each kind>
// The folder is a build folder whose bin/ holds the tool and the other benchmark programs; all that
// the benchmark writes goes to its folder "bench-work".
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <map>
#include <string>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace fs = std::filesystem;

namespace
{

constexpr int kSizes[] = {100, 1000, 5000, 20000};
constexpr int kGrowthFrom = 5000;
constexpr int kGrowthTo = 20000;
constexpr int kGroups[] = {250, 1000}; // of a J1939 line, with eight signals each

struct Cost {
    double milliseconds = 0;
    double megabytes = 0; ///< peak of the resident memory
};

/// One kind of run. Each run starts in a fresh folder that holds copies of the named files.
struct Kind {
    const char *title;
    std::vector<std::string> files;
    std::vector<std::string> arguments;
    const char *comparedTo; ///< title of the kind that the ratio is told to
};

constexpr const char *kFloor = "floor";
constexpr const char *kFull = "check and generate";

[[noreturn]] void fail(const std::string &text)
{
    std::fprintf(stderr, "bench: %s\n", text.c_str());
    std::exit(1);
}

/// Becomes the program, in the folder and without output; called in the child process.
[[noreturn]] void become(const std::string &program, const std::vector<std::string> &arguments,
                         const fs::path &folder)
{
    std::vector<char *> words{const_cast<char *>(program.c_str())};
    for (const std::string &argument : arguments)
        words.push_back(const_cast<char *>(argument.c_str()));
    words.push_back(nullptr);
    const int nowhere = open("/dev/null", O_WRONLY);
    if (nowhere >= 0 && chdir(folder.c_str()) == 0) {
        dup2(nowhere, STDOUT_FILENO);
        execv(program.c_str(), words.data());
    }
    _exit(127);
}

/// Runs to the end and measures; a run that does not end with exit code 0 ends the benchmark.
Cost measure(const std::string &program, const std::vector<std::string> &arguments,
             const fs::path &folder)
{
    const auto start = std::chrono::steady_clock::now();
    const pid_t child = fork();
    if (child < 0)
        fail("cannot start a process");
    if (child == 0)
        become(program, arguments, folder);
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
    return {time.count(), static_cast<double>(usage.ru_maxrss) / 1024};
}

/// The median of each figure by itself.
Cost median(std::vector<Cost> costs)
{
    const auto middle = costs.begin() + static_cast<std::ptrdiff_t>(costs.size() / 2);
    const auto faster = [](const Cost &a, const Cost &b) {
        return a.milliseconds < b.milliseconds;
    };
    const auto smaller = [](const Cost &a, const Cost &b) { return a.megabytes < b.megabytes; };
    Cost result;
    std::nth_element(costs.begin(), middle, costs.end(), faster);
    result.milliseconds = middle->milliseconds;
    std::nth_element(costs.begin(), middle, costs.end(), smaller);
    result.megabytes = middle->megabytes;
    return result;
}

/// All runs on projects of one size.
class SizeBench
{
public:
    /// \a maker is the program that makes projects of that many parts.
    SizeBench(const fs::path &buildFolder, const char *maker, int partCount, int runCount)
        : bin(buildFolder / "bin"),
          data(buildFolder / "bench-work" / (maker + std::to_string(partCount))),
          work(buildFolder / "bench-work" / "run"), runs(runCount)
    {
        fs::remove_all(data);
        fs::create_directories(data);
        measure(bin / maker, {std::to_string(partCount), data.string()}, data);
    }

    /// Medians by title. The kinds take turns, so that a busy moment of the machine hits them
    /// alike.
    std::map<std::string, Cost> run(const std::vector<Kind> &kinds)
    {
        const std::string bytes = std::to_string(outputBytes(kinds.front()));
        std::map<std::string, std::vector<Cost>> costs;
        for (int turn = 0; turn < runs; ++turn) {
            costs[kFloor].push_back(runFloor(bytes));
            for (const Kind &kind : kinds)
                costs[kind.title].push_back(runKind(kind));
        }
        std::map<std::string, Cost> medians;
        for (const auto &[title, list] : costs)
            medians[title] = median(list);
        return medians;
    }

private:
    fs::path bin;
    fs::path data;
    fs::path work;
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
        return measure(bin / "tessarine", kind.arguments, work);
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

void printHead(const char *parts)
{
    std::printf("%8s  %-24s %10s %9s %11s   %s\n", parts, "run", "time [ms]", "peak [MB]",
                "us each", "ratio");
}

void printRow(int objects, const char *title, const Cost &cost, const char *comparedTo,
              double ratio)
{
    std::printf("%8d  %-24s %10.1f %9.1f %11.1f", objects, title, cost.milliseconds, cost.megabytes,
                cost.milliseconds * 1000 / objects);
    if (comparedTo)
        std::printf("   %5.2f x %s", ratio, comparedTo);
    std::printf("\n");
}

void printTable(int objects, const std::vector<Kind> &kinds,
                const std::map<std::string, Cost> &costs)
{
    printRow(objects, kFloor, costs.at(kFloor), nullptr, 0);
    for (const Kind &kind : kinds) {
        const Cost &cost = costs.at(kind.title);
        printRow(objects, kind.title, cost, kind.comparedTo,
                 cost.milliseconds / costs.at(kind.comparedTo).milliseconds);
    }
    std::printf("\n");
    std::fflush(stdout);
}

} // namespace

int main(int argc, char *argv[])
{
    const int runs = argc == 3 ? std::atoi(argv[2]) : 0;
    if (runs < 1 || !fs::exists(fs::path(argv[1]) / "bin" / "tessarine")) {
        std::fprintf(stderr, "usage: bench_run <build folder> <runs of each kind>\n");
        return 2;
    }
    const std::vector<Kind> kinds = {
        {kFull, {"project.tsrp"}, {"-project", "project.tsrp"}, kFloor},
        {"import EDS and save",
         {"empty.tsrp", "device.eds"},
         {"-project", "empty.tsrp", "-import", "device.eds", "-save"},
         kFull},
        {"the text form", {"project.tsrt"}, {"-project", "project.tsrt"}, kFull},
        {"save the text form", {"project.tsrt"}, {"-project", "project.tsrt", "-save"}, kFull},
    };

    std::printf("Medians of %d runs.\n\n", runs);
    printHead("objects");
    std::map<int, std::map<std::string, Cost>> costs;
    for (const int objects : kSizes) {
        costs[objects] = SizeBench(argv[1], "bench_makeproject", objects, runs).run(kinds);
        printTable(objects, kinds, costs[objects]);
    }

    printHead("groups");
    const std::vector<Kind> j1939Kinds = {kinds.front()};
    for (const int groups : kGroups)
        printTable(groups, j1939Kinds,
                   SizeBench(argv[1], "bench_makej1939", groups, runs).run(j1939Kinds));

    std::printf("Growth of the time from %d to %d objects:\n", kGrowthFrom, kGrowthTo);
    for (const Kind &kind : kinds)
        std::printf("%10s%-24s %5.2f times\n", "", kind.title,
                    costs[kGrowthTo][kind.title].milliseconds /
                        costs[kGrowthFrom][kind.title].milliseconds);
    return 0;
}
