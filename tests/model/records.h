// Records of the interface, filled and examined byte by byte.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <ostream>
#include <string>
#include <string_view>

#include "tabrin.h"

namespace tabrin {

// What stands in records before they are filled, to see which bytes are touched.
inline constexpr char kUntouched = '\x5A';

// Puts a text into a field with a NUL behind it, where there is room for one.
template <size_t Size>
void SetField(char (&field)[Size], std::string_view text) {
    ASSERT_LE(text.size(), Size);
    std::copy(text.begin(), text.end(), field);
    if (text.size() < Size) {
        field[text.size()] = '\0';
    }
}

// The bytes that a record is expected to have: untouched, but for what is put at an offset.
template <typename Record>
class RecordImage {
public:
    RecordImage() : bytes_(sizeof(Record), kUntouched) {}

    // A text and its NUL.
    RecordImage& Text(size_t offset, std::string_view text) {
        return Bytes(offset, text.data(), text.size()).Bytes(offset + text.size(), "", 1);
    }

    template <typename Value>
    RecordImage& Number(size_t offset, Value value) {
        return Bytes(offset, &value, sizeof value);
    }

    // The offset of the first byte that differs, the size of the record when none does.
    [[nodiscard]] size_t FirstDifference(const Record& record) const {
        const std::string actual(reinterpret_cast<const char*>(&record), sizeof record);
        const auto difference = std::mismatch(bytes_.begin(), bytes_.end(), actual.begin());
        return static_cast<size_t>(difference.first - bytes_.begin());
    }

private:
    RecordImage& Bytes(size_t offset, const void* bytes, size_t size) {
        bytes_.replace(offset, size, static_cast<const char*>(bytes), size);
        return *this;
    }

    std::string bytes_;
};

template <typename Record>
Record UntouchedRecord() {
    Record record;
    std::memset(&record, kUntouched, sizeof record);
    return record;
}

template <typename Record>
Record EmptyRecord() {
    Record record;
    std::memset(&record, 0, sizeof record);
    return record;
}

}  // namespace tabrin
