// Time per byte or object over growing sizes and many shapes: work in proportion shows as a row of equal numbers.
#include <algorithm>
#include <array>
#include <cstdint>
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

constexpr double kBend = 1.3;
constexpr size_t kRounds = 5;
constexpr double kSecondsOfOneSize = 0.02;
constexpr int kMostRepetitions = 200;

using Sizes = std::array<size_t, 4>;
using Action = std::function<double(const std::string& path)>;  // ProcessorSeconds of what is looked at

// To compare with: reading that keeps nothing, so that it needs no more memory for a large file than for a small one.
double YardstickTime(const std::string& path) {
    Clear();
    return ProcessorSeconds([&] { CheckLines(path); });
}

double ReadingTime(const std::string& path) {
    Clear();
    return ProcessorSeconds([&] { Read(path); });
}

double WalkingTime(const std::string& path) {
    Read(path);
    return ProcessorSeconds([] { Walk(); });
}

double ClearingTime(const std::string& path) {
    Read(path);
    return ProcessorSeconds(Clear);
}

// Reads first every time: writing names signals anew, and the next writing would have nothing left to do.
double WritingTime(const std::string& path) {
    Read(path);
    return ProcessorSeconds([] { Write("written.dbc"); });
}

struct Row {
    const char* name;
    std::function<std::string(size_t)> generate;
    Action action;
};

// The mean of so many repetitions that the grain of the clock does not matter. The first run is not counted: the
// allocator uses it to sort what the size before has freed. What a large database leaves behind beyond that does count:
// all is measured in one process, and a library that keeps something of a large file makes the small ones dear.
double SecondsOf(const Action& action, const std::string& path) {
    action(path);
    double sum = 0;
    int repetitions = 0;
    while (repetitions == 0 || (sum < kSecondsOfOneSize && repetitions < kMostRepetitions)) {
        sum += action(path);
        ++repetitions;
    }
    return sum / repetitions;
}

// How far the curve rises anywhere on its way, whatever fixed cost the small sizes have.
double Growth(const std::vector<double>& values) {
    double least = values.front();
    double growth = 1;
    for (const double value : values) {
        least = std::min(least, value);
        growth = std::max(growth, value / least);
    }
    return growth;
}

// Goes through the sizes again and again instead of finishing one after the other: a machine that slows down for a
// while would bend the curve.
void Measure(const Row& row, const Sizes& sizes, bool perByte) {
    std::array<std::string, std::tuple_size_v<Sizes>> paths;
    std::array<double, std::tuple_size_v<Sizes>> objects{};
    for (size_t i = 0; i < sizes.size(); ++i) {
        paths[i] = "size_" + std::to_string(i) + ".dbc";
        const std::string text = row.generate(sizes[i]);
        objects[i] = static_cast<double>(perByte ? text.size() : sizes[i]);
        Save(paths[i], text);
    }
    std::array<std::vector<double>, std::tuple_size_v<Sizes>> times;
    for (size_t round = 0; round < kRounds; ++round) {
        for (size_t i = 0; i < sizes.size(); ++i) {
            times[i].push_back(1e9 * SecondsOf(row.action, paths[i]) / objects[i]);
        }
    }
    Clear();

    std::printf("%-52s", row.name);
    std::vector<double> medians;
    for (const std::vector<double>& values : times) {
        medians.push_back(Quantile(values, 0.5));
        std::printf(" %9.*f", perByte ? 3 : 1, medians.back());
    }
    const auto [least, most] = std::minmax_element(medians.begin(), medians.end());
    const double spread = *most / *least;
    const double growth = Growth(medians);
    std::printf(" %8.2f %8.2f%s\n", growth, spread, growth > kBend ? "  BENDS" : spread > kBend ? "  falls" : "");
    std::fflush(stdout);
}

void MeasureFiles() {
    constexpr Sizes kSizes = {100'000, 1'000'000, 10'000'000, 100'000'000};
    std::printf("%-52s %9s %9s %9s %9s %8s %8s\n", "nanoseconds per byte of file", "100 KB", "1 MB", "10 MB", "100 MB",
                "growth", "spread");
    const auto crLf = [](size_t size) { return WithCrLf(UsualMix(size)); };
    const std::vector<Row> rows = {{"usual mix, LF: reading", UsualMix, ReadingTime},
                                   {"usual mix, CR LF: reading", crLf, ReadingTime},
                                   {"usual mix: walking", UsualMix, WalkingTime},
                                   {"usual mix: clearing", UsualMix, ClearingTime},
                                   {"usual mix: writing", UsualMix, WritingTime},
                                   {"usual mix: yardstick of reading", UsualMix, YardstickTime},
                                   {"one single line: reading", SingleLine, ReadingTime},
                                   {"no keyword: reading", NoKeyword, ReadingTime}};
    for (const Row& row : rows) {
        Measure(row, kSizes, true);
    }
}

struct CountedRow {
    size_t count;
    Row row;
};

void MeasureCounts() {
    std::printf("\n%-52s %9s %9s %9s %9s %8s %8s\n", "nanoseconds per object (of the number named)", "1/64", "1/16",
                "1/4", "all", "growth", "spread");
    const auto number = [](size_t size) { return static_cast<uint32_t>(size); };
    const auto values = [&](ValueOrder order) {
        return [=](size_t size) { return ManyValueDescriptions(number(size), order); };
    };
    const auto small = [&](size_t size) { return ManySmallMessages(number(size)); };
    const auto large = [&](size_t size) { return OneLargeMessage(number(size)); };
    const auto equal = [&](size_t size) { return EqualSignalNames(number(size)); };
    const auto pieces = [&](size_t size) { return CommentInPieces(number(size)); };
    const std::vector<CountedRow> rows = {
        {200'000, {"200,000 messages of one signal: reading", small, ReadingTime}},
        {200'000, {"200,000 messages of one signal: writing", small, WritingTime}},
        {10'000, {"10,000 signals of a message, with details: reading", large, ReadingTime}},
        {10'000, {"10,000 signals of a message, with details: writing", large, WritingTime}},
        {65'536, {"65,536 value descriptions, ascending: reading", values(ValueOrder::Ascending), ReadingTime}},
        {65'536, {"65,536 value descriptions, descending: reading", values(ValueOrder::Descending), ReadingTime}},
        {65'536, {"65,536 value descriptions, random: reading", values(ValueOrder::Random), ReadingTime}},
        {65'536, {"65,536 value descriptions, random: walking", values(ValueOrder::Random), WalkingTime}},
        {10'000, {"10,000 signals of one name, made unique: writing", equal, WritingTime}},
        {100'000, {"comment of 100,000 statements: reading", pieces, ReadingTime}}};
    for (const CountedRow& counted : rows) {
        Measure(counted.row, {counted.count / 64, counted.count / 16, counted.count / 4, counted.count}, false);
    }
}

void Main() {
    const FilesFolder folder("linearity_files");
    std::printf(
        "Medians of %s. A row of equal numbers is linear.\n"
        "growth: how far the numbers rise towards larger sizes; BENDS: by more than %.1f\n"
        "spread: the largest through the smallest; falls: more than %.1f, but not rising: small sizes pay a fixed "
        "cost,\n"
        "        or one that the large sizes measured before them in the same process have left behind\n\n",
        kProcessorTimes, kBend, kBend);
    MeasureFiles();
    MeasureCounts();
}

}  // namespace

}  // namespace tabrin::bench

int main() {
    tabrin::bench::Main();
}
