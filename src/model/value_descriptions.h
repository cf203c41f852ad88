// The texts of a signal's raw values.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <string_view>

namespace tabrin {

// Ordered by the signed value. Nothing in it is ever replaced: a value described again gets the texts joined by " - ".
class ValueDescriptions {
public:
    using Map = std::map<int32_t, std::string>;

    ValueDescriptions() = default;
    ~ValueDescriptions() = default;
    ValueDescriptions(const ValueDescriptions&) = delete;
    ValueDescriptions& operator=(const ValueDescriptions&) = delete;
    ValueDescriptions(ValueDescriptions&&) = delete;
    ValueDescriptions& operator=(ValueDescriptions&&) = delete;

    void Add(int32_t value, std::string_view text);
    void Clear();

    [[nodiscard]] const Map& Entries() const { return entries_; }
    [[nodiscard]] size_t Size() const { return entries_.size(); }

    // Entry number `index` in order; `index` must be below Size. Asking for one after the other takes constant time each,
    // because the place of the last one asked for is remembered.
    [[nodiscard]] const Map::value_type& At(size_t index) const;

private:
    Map entries_;
    mutable size_t lastIndex_ = 0;
    mutable Map::const_iterator last_ = entries_.end();
};

}  // namespace tabrin
