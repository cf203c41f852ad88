#include "fuzz_corpus.h"

#include <functional>

#include "abi/interface_test.h"
#include "fuzz/abi/calls_check.h"
#include "fuzz/abi/file_check.h"

namespace tabrin_test {
namespace {

using tabrin_fuzz::FunctionsOf;
using tabrin_fuzz::ReplayPath;
using tabrin_fuzz::ReplaySavedInputs;

class FuzzCorpus : public InterfaceTest {};

TEST_F(FuzzCorpus, AnyBytesAsAFile) {
    const std::string path = ReplayPath("fuzz_file");
    ReplaySavedInputs("fuzz_file", [&](std::string_view bytes) { CheckFile(FunctionsOf(Library()), bytes, path); });
}

TEST_F(FuzzCorpus, AnySequenceOfCalls) {
    const std::string path = ReplayPath("fuzz_calls");
    ReplaySavedInputs("fuzz_calls", [&](std::string_view bytes) { CheckCalls(FunctionsOf(Library()), bytes, path); });
}

// The checks themselves: a library that answers wrongly is noticed.

bool OneMessageMore(const CanMessageData* data) {
    return Library().AppendCanMessage(data) && (data == nullptr || Library().AppendCanMessage(data));
}

bool NameWithoutEnd(uint32_t message, CanMessageData* data) {
    const bool done = Library().GetCanMessageData(message, data);
    if (done) {
        std::memset(data->name, 'x', sizeof data->name);
    }
    return done;
}

bool ReservedByteTouched(uint32_t message, uint32_t signal, CanSignalData* data) {
    const bool done = Library().GetCanSignalData(message, signal, data);
    if (done) {
        data->reserved860[3] = 0;
    }
    return done;
}

bool ErrorBeyondTheLast(uint32_t index, CanErrorData* data) {
    return Library().GetErrorData(index == 0 ? 0 : index - 1, data);
}

bool WrittenInTextMode(const char* path, uint32_t size, uint32_t order, uint32_t* status) {
    const bool done = Library().WriteDbcFile(path, size, order, status);
    if (done) {
        std::string bytes = ReadBytes(path);
        std::erase(bytes, '\r');
        WriteBytes(path, bytes);
    }
    return done;
}

bool WrittenLongerEachTime(const char* path, uint32_t size, uint32_t order, uint32_t* status) {
    static int times = 0;
    const bool done = Library().WriteDbcFile(path, size, order, status);
    if (done) {
        WriteBytes(path, ReadBytes(path) + "BU_ : " + std::to_string(++times) + "\r\n");
    }
    return done;
}

bool WrittenWithAnotherName(const char* path, uint32_t size, uint32_t order, uint32_t* status) {
    const bool done = Library().WriteDbcFile(path, size, order, status);
    if (done) {
        std::string bytes = ReadBytes(path);
        WriteBytes(path, bytes.replace(bytes.find("SG_ S "), 6, "SG_ T "));
    }
    return done;
}

std::string FindingOf(const tabrin_fuzz::LibraryFunctions& functions) {
    constexpr std::string_view kFile =
        "BO_ 1 A: 8 X\r\n SG_ S : 0|8@1+ (1,0) [0|1] \"\" X\r\nBO_ 2 B: 8 X\r\n SG_ S\r\n";
    try {
        CheckFile(functions, kFile, ReplayPath("finding"));
    } catch (const tabrin_fuzz::Failure& failure) {
        return failure.what();
    }
    return "nothing";
}

TEST_F(FuzzCorpus, ChecksNoticeALibraryThatAnswersWrongly) {
    const tabrin_fuzz::LibraryFunctions right = FunctionsOf(Library());
    EXPECT_EQ(FindingOf(right), "nothing");
    const struct {
        std::function<void(tabrin_fuzz::LibraryFunctions&)> breakIt;
        const char* finding;
    } rows[] = {
        {[](auto& functions) { functions.GetCanMessageData = NameWithoutEnd; }, "a text without NUL"},
        {[](auto& functions) { functions.GetCanSignalData = ReservedByteTouched; },
         "a byte changed that no text and no number covers"},
        {[](auto& functions) { functions.GetErrorData = ErrorBeyondTheLast; },
         "a getter accepts an index that is not below the count"},
        {[](auto& functions) { functions.WriteDbcFile = WrittenInTextMode; }, "a written file does not end in CR LF"},
        {[](auto& functions) { functions.WriteDbcFile = WrittenLongerEachTime; },
         "the orders do not write the same lines"},
        {[](auto& functions) { functions.WriteDbcFile = WrittenWithAnotherName; },
         "another signal name after reading back"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.finding);
        auto wrong = right;
        row.breakIt(wrong);
        EXPECT_EQ(FindingOf(wrong), row.finding);
    }
}

TEST_F(FuzzCorpus, ModelNoticesALibraryThatAnswersWrongly) {
    auto wrong = FunctionsOf(Library());
    wrong.AppendCanMessage = OneMessageMore;
    EXPECT_THROW(CheckCalls(wrong,
                            std::string("\x07\x01\x01\x08\x01"
                                        "A",
                                        6),
                            ReplayPath("finding")),
                 tabrin_fuzz::Failure);
}

}  // namespace
}  // namespace tabrin_test
