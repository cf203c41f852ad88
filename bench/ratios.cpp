// Times of the library as ratios to yardsticks that are measured in turn with it, in the same process.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdio>
#include <functional>
#include <string>
#include <vector>

#include "dbc_generator.h"
#include "files.h"
#include "library_calls.h"
#include "measure.h"
#include "yardsticks.h"

namespace tabrin::bench {

namespace {

constexpr size_t kKilobyte = 1000;
constexpr size_t kLargeFile = 10000 * kKilobyte;

// Seconds of the two that are compared.
struct Pair {
    double work;
    double yardstick;
};

// Now one first, now the other: what the first leaves in the caches must not always help the second.
Pair InTurn(bool yardstickFirst, const std::function<double()>& work, const std::function<double()>& yardstick) {
    Pair pair{};
    if (yardstickFirst) {
        pair.yardstick = yardstick();
        pair.work = work();
    } else {
        pair.work = work();
        pair.yardstick = yardstick();
    }
    return pair;
}

// The median of the ratios, and not the ratio of medians: both halves of a pair see the same disturbance.
void Compare(benchmark::State& state, size_t bytes, double goal, const std::function<Pair(bool)>& measure) {
    std::vector<double> works;
    std::vector<double> yardsticks;
    std::vector<double> ratios;
    bool yardstickFirst = false;
    measure(yardstickFirst);  // page cache and allocator are warm from here on
    for ([[maybe_unused]] auto _ : state) {
        const Pair pair = measure(yardstickFirst);
        state.SetIterationTime(pair.work);
        works.push_back(pair.work);
        yardsticks.push_back(pair.yardstick);
        ratios.push_back(pair.work / pair.yardstick);
        yardstickFirst = !yardstickFirst;
    }
    const double median = Quantile(works, 0.5);
    state.counters["ms"] = 1e3 * median;
    state.counters["MB/s"] = 1e-6 * static_cast<double>(bytes) / median;
    state.counters["yardstick ms"] = 1e3 * Quantile(yardsticks, 0.5);
    state.counters["ratio"] = Quantile(ratios, 0.5);
    state.counters["ratio lower quartile"] = Quantile(ratios, 0.25);
    state.counters["ratio upper quartile"] = Quantile(ratios, 0.75);
    state.counters["goal"] = goal;
}

std::string SavedMix(size_t size, bool crLf) {
    const std::string path = "mix_" + std::to_string(size) + (crLf ? "_crlf.dbc" : ".dbc");
    const std::string text = UsualMix(size);
    Save(path, crLf ? WithCrLf(text) : text);
    return path;
}

double ReadingSeconds(const std::string& path) {
    Clear();
    return WallSeconds([&] { Read(path); });
}

void BenchmarkReading(benchmark::State& state, size_t size, bool crLf) {
    const std::string path = SavedMix(size, crLf);
    Compare(state, std::filesystem::file_size(path), 1.6, [&](bool yardstickFirst) {
        return InTurn(
            yardstickFirst, [&] { return ReadingSeconds(path); },
            [&] { return WallSeconds([&] { benchmark::DoNotOptimize(CheckLines(path)); }); });
    });
    Clear();
}

// Here reading is the yardstick, and it has to come first.
void BenchmarkAfterReading(benchmark::State& state, const std::function<void()>& work) {
    const std::string path = SavedMix(kLargeFile, false);
    Compare(state, std::filesystem::file_size(path), 0.1, [&](bool) {
        Pair pair{};
        pair.yardstick = ReadingSeconds(path);
        pair.work = WallSeconds(work);
        return pair;
    });
    Clear();
}

void BenchmarkWriting(benchmark::State& state, size_t size) {
    Read(SavedMix(size, false));
    Write("written.dbc");
    const std::string output = Load("written.dbc");
    const std::vector<std::string_view> lines = LinesOf(output);
    Compare(state, output.size(), 1.2, [&](bool yardstickFirst) {
        return InTurn(
            yardstickFirst, [&] { return WallSeconds([] { Write("written.dbc"); }); },
            [&] { return WallSeconds([&] { WriteLines("yardstick.dbc", lines); }); });
    });
    if (Load("written.dbc") != Load("yardstick.dbc")) {
        GiveUp("the writing yardstick has not written the same file");
    }
    Clear();
}

// As many pairs as make a steady median, in a few seconds.
int64_t Pairs(size_t size) {
    return std::clamp<int64_t>(static_cast<int64_t>(200 * kKilobyte * kKilobyte / size), 21, 2001);
}

void Register() {
    const auto add = [](const std::string& name, size_t size, const std::function<void(benchmark::State&)>& function) {
        // Entered for each benchmark alone: the path of --benchmark_out belongs to the folder outside.
        const auto inFolder = [=](benchmark::State& state) {
            const FilesFolder folder("ratio_files");
            function(state);
        };
        benchmark::RegisterBenchmark(name.c_str(), inFolder)
            ->Iterations(Pairs(size))
            ->UseManualTime()
            ->Unit(benchmark::kMillisecond);
    };
    for (const size_t size : {kLargeFile, 500 * kKilobyte, 100 * kKilobyte, 10 * kKilobyte}) {
        for (const bool crLf : {false, true}) {
            add("read/" + std::to_string(size / kKilobyte) + "KB/" + (crLf ? "CRLF" : "LF"), size,
                [=](benchmark::State& state) { BenchmarkReading(state, size, crLf); });
        }
    }
    add("walk/10000KB", kLargeFile, [](benchmark::State& state) { BenchmarkAfterReading(state, [] { Walk(); }); });
    add("clear/10000KB", kLargeFile, [](benchmark::State& state) { BenchmarkAfterReading(state, Clear); });
    for (const size_t size : {kLargeFile, 100 * kKilobyte}) {
        add("write/" + std::to_string(size / kKilobyte) + "KB", size,
            [=](benchmark::State& state) { BenchmarkWriting(state, size); });
    }
}

class TableReporter : public benchmark::BenchmarkReporter {
public:
    bool ReportContext(const Context& context) override {
        std::printf(
            "Yardsticks: read   std::getline and utf8::find_invalid over the same file\n"
            "            walk   reading the same file; clear as well\n"
            "            write  one write of the system for each line of the same output\n"
            "Medians of times on the wall; a ratio is the median of those of all pairs, measured in turn.\n\n");
        // Other programs slow the yardstick and the library down by different factors.
        if (!context.cpu_info.load_avg.empty()) {
            std::printf("Load of the machine: %.1f. Only a quiet one gives figures to go by; a busy one misleads.\n\n",
                        context.cpu_info.load_avg.front());
        }
        std::printf("%-20s %9s %9s %12s %7s %15s %6s\n", "", "ms", "MB/s", "yardstick ms", "ratio", "(quartiles)",
                    "goal");
        return true;
    }

    void ReportRuns(const std::vector<Run>& runs) override {
        for (const Run& run : runs) {
            if (run.run_type != Run::RT_Iteration) {
                continue;
            }
            const auto counter = [&](const char* name) { return run.counters.at(name).value; };
            const bool missed = counter("ratio") > counter("goal");
            std::printf("%-20s %9.3f %9.1f %12.3f %7.3f  (%5.3f, %5.3f) %6.2f%s\n", run.run_name.function_name.c_str(),
                        counter("ms"), counter("MB/s"), counter("yardstick ms"), counter("ratio"),
                        counter("ratio lower quartile"), counter("ratio upper quartile"), counter("goal"),
                        missed ? "  missed" : "");
        }
        std::fflush(stdout);
    }
};

int Main(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) {
        return 1;
    }
    Register();
    TableReporter table;
    benchmark::RunSpecifiedBenchmarks(&table);
    benchmark::Shutdown();
    return 0;
}

}  // namespace

}  // namespace tabrin::bench

int main(int argc, char** argv) {
    return tabrin::bench::Main(argc, argv);
}
