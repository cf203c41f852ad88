#include "library_calls.h"

#include <tabrin.h>

#include <cstdio>
#include <cstdlib>

namespace tabrin::bench {

namespace {

void Require(bool done, const char* function) {
    if (!done) {
        GiveUp(std::string(function) + " failed");
    }
}

uint32_t BufferSize(const std::string& path) {
    return static_cast<uint32_t>(path.size() + 1);
}

void WalkValueDescriptions(uint32_t message, uint32_t signal, Counts& counts) {
    uint32_t number = 0;
    Require(TabrinGetNumEnumsInCanSignal(message, signal, &number), "TabrinGetNumEnumsInCanSignal");
    CanSignalEnumData record;
    for (uint32_t i = 0; i < number; ++i) {
        Require(TabrinGetCanSignalEnumData(message, signal, i, &record), "TabrinGetCanSignalEnumData");
    }
    counts.valueDescriptions += number;
}

void WalkSignals(uint32_t message, Counts& counts) {
    uint32_t number = 0;
    Require(TabrinGetNumCanSignalsInCanMessage(message, &number), "TabrinGetNumCanSignalsInCanMessage");
    CanSignalData record;
    for (uint32_t i = 0; i < number; ++i) {
        Require(TabrinGetCanSignalData(message, i, &record), "TabrinGetCanSignalData");
        WalkValueDescriptions(message, i, counts);
    }
    counts.signals += number;
}

}  // namespace

void Read(const std::string& path) {
    uint32_t status = 0;
    Require(TabrinReadDbcFile(path.c_str(), BufferSize(path), &status), "TabrinReadDbcFile");
}

Counts Walk() {
    Counts counts;
    DatabaseInfo information;
    Require(TabrinGetDatabaseInfo(&information, sizeof information), "TabrinGetDatabaseInfo");
    counts.messages = static_cast<uint64_t>(TabrinGetNumCanMessages());
    CanMessageData record;
    for (uint32_t i = 0; i < counts.messages; ++i) {
        Require(TabrinGetCanMessageData(i, &record), "TabrinGetCanMessageData");
        WalkSignals(i, counts);
    }
    const auto errors = static_cast<uint64_t>(TabrinGetNumCanErrors());
    CanErrorData error;
    for (uint32_t i = 0; i < errors; ++i) {
        Require(TabrinGetErrorData(i, &error), "TabrinGetErrorData");
    }
    return counts;
}

void Clear() {
    Require(TabrinClearData(), "TabrinClearData");
}

void Write(const std::string& path) {
    uint32_t status = 0;
    const bool done = TabrinWriteDbcFile(path.c_str(), BufferSize(path), TABRIN_ORDER_DATABASE, &status);
    Require(done && status == TABRIN_STATUS_CLOSED, "TabrinWriteDbcFile");
}

void GiveUp(const std::string& reason) {
    std::fprintf(stderr, "%s\n", reason.c_str());
    std::exit(1);
}

}  // namespace tabrin::bench
