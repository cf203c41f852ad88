#include "frame_picture.h"

#include <algorithm>
#include <array>
#include <optional>

#include "frame_bits.h"
#include "words.h"

namespace tabrin_tool {

namespace {

// A row of the picture: one byte, or several that look the same.
struct Row {
    std::size_t first;
    std::size_t last;
};

// Neighbouring bits of one region, in one row.
struct Run {
    std::size_t row;
    int highest;  // bits of the byte
    int lowest;
    int region;
};

bool IsOneRegion(const FrameBits::Byte& byte) {
    return std::all_of(byte.begin(), byte.end(), [&](int region) { return region == byte.front(); });
}

class Picture {
public:
    Picture(const FrameBits& bits, const std::vector<FrameSignal>& signals);

    std::string Draw(std::size_t indent, const Paint& paint) const;

private:
    bool HasMark(std::size_t byte) const;
    bool LooksLike(std::size_t byte, std::size_t other) const;
    void MakeRows();
    void MakeRuns(std::size_t row);
    void ChooseCellWidth();
    void PlaceNames();

    std::size_t Room(const Run& run) const;
    std::string Keys(int region) const;
    std::string RowLabel(const Row& row) const;
    std::string DrawRun(std::size_t index, const Paint& paint) const;
    std::string DrawRow(std::size_t row, const Paint& paint) const;
    std::string DrawHead() const;

    int RegionAt(std::optional<std::size_t> row, int column) const;
    bool IsEdgeBelow(std::optional<std::size_t> above, std::optional<std::size_t> below, int column) const;
    bool IsEdgeBefore(std::optional<std::size_t> row, int column) const;
    std::string DrawBorder(std::optional<std::size_t> above, std::optional<std::size_t> below) const;

    const FrameBits& bits_;
    const std::vector<FrameSignal>& signals_;
    std::vector<Row> rows_;
    std::vector<Run> runs_;
    std::vector<std::optional<std::size_t>> nameRuns_;  // by region: the run that carries the name
    std::size_t cellWidth_ = 4;
    std::size_t labelWidth_ = 0;
};

Picture::Picture(const FrameBits& bits, const std::vector<FrameSignal>& signals) : bits_(bits), signals_(signals) {
    MakeRows();
    for (std::size_t row = 0; row < rows_.size(); ++row) {
        MakeRuns(row);
    }
    ChooseCellWidth();
    PlaceNames();
}

bool Picture::HasMark(std::size_t byte) const {
    const FrameBit bit = FrameBit{byte} * kBitsInByte;
    for (FrameBit i = 0; i < kBitsInByte; ++i) {
        if (bits_.IsMost(bit + i) || bits_.IsLeast(bit + i)) {
            return true;
        }
    }
    return false;
}

bool Picture::LooksLike(std::size_t byte, std::size_t other) const {
    const auto& bytes = bits_.Bytes();
    return IsOneRegion(bytes[byte]) && bytes[byte] == bytes[other] && !HasMark(byte) && !HasMark(other);
}

// Up to three bytes that look the same get a row each: joining them would save nothing.
void Picture::MakeRows() {
    constexpr std::size_t kWorthJoining = 4;
    const std::size_t count = bits_.Bytes().size();
    for (std::size_t first = 0; first < count;) {
        std::size_t last = first;
        while (last + 1 < count && LooksLike(first, last + 1)) {
            ++last;
        }
        if (last - first + 1 >= kWorthJoining) {
            rows_.push_back({first, last});
        } else {
            for (std::size_t byte = first; byte <= last; ++byte) {
                rows_.push_back({byte, byte});
            }
        }
        first = last + 1;
    }
}

void Picture::MakeRuns(std::size_t row) {
    const FrameBits::Byte& byte = bits_.Bytes()[rows_[row].first];
    for (int highest = kBitsInByte - 1; highest >= 0;) {
        int lowest = highest;
        while (lowest > 0 && byte[static_cast<std::size_t>(lowest) - 1] == byte[static_cast<std::size_t>(highest)]) {
            --lowest;
        }
        runs_.push_back({row, highest, lowest, byte[static_cast<std::size_t>(highest)]});
        highest = lowest - 1;
    }
}

void Picture::ChooseCellWidth() {
    for (const FrameSignal& signal : signals_) {
        cellWidth_ = std::max(cellWidth_, signal.key.size() + 2);
    }
    labelWidth_ = DisplayWidth("byte");
    for (const Row& row : rows_) {
        labelWidth_ = std::max(labelWidth_, DisplayWidth(RowLabel(row)));
    }
}

// The first place with room for the whole name, else the widest one.
void Picture::PlaceNames() {
    nameRuns_.resize(bits_.Regions().size());
    for (std::size_t i = 0; i < runs_.size(); ++i) {
        if (runs_[i].region == FrameBits::kUnused) {
            continue;
        }
        const auto region = static_cast<std::size_t>(runs_[i].region);
        const std::vector<std::size_t>& owners = bits_.Regions()[region].signals;
        std::optional<std::size_t>& chosen = nameRuns_[region];
        const std::size_t needed = owners.size() > 1 ? 0 : DisplayWidth(signals_[owners[0]].name);
        const auto fits = [&](std::size_t run) {
            return Room(runs_[run]) >= Keys(runs_[run].region).size() + 1 + needed;
        };
        if (!chosen || (!fits(*chosen) && (fits(i) || Room(runs_[i]) > Room(runs_[*chosen])))) {
            chosen = i;
        }
    }
}

// Columns for text between the two marks.
std::size_t Picture::Room(const Run& run) const {
    const std::size_t cells = static_cast<std::size_t>(run.highest) - static_cast<std::size_t>(run.lowest) + 1;
    return cells * (cellWidth_ + 1) - 1 - 2;
}

std::string Picture::Keys(int region) const {
    std::string keys;
    for (const std::size_t signal : bits_.Regions()[static_cast<std::size_t>(region)].signals) {
        keys += (keys.empty() ? "" : "+") + signals_[signal].key;
    }
    return keys;
}

std::string Picture::RowLabel(const Row& row) const {
    return row.first == row.last ? std::to_string(row.first)
                                 : std::to_string(row.first) + ".." + std::to_string(row.last);
}

std::string Picture::DrawRun(std::size_t index, const Paint& paint) const {
    const Run& run = runs_[index];
    const std::size_t room = Room(run);
    if (run.region == FrameBits::kUnused) {
        return PaddedRight("", room + 2);
    }
    const auto region = static_cast<std::size_t>(run.region);
    const FrameSignal& signal = signals_[bits_.Regions()[region].signals[0]];
    const bool shared = bits_.Regions()[region].signals.size() > 1;
    std::string text = Shortened(Keys(run.region), room);
    // Fewer characters of a name than these tell nothing.
    constexpr std::size_t kShortest = 4;
    if (!shared && nameRuns_[region] == index &&
        room >= text.size() + 1 + std::min(kShortest, DisplayWidth(signal.name))) {
        text += " " + Shortened(signal.name, room - text.size() - 1);
    }
    text = PaddedRight(text, room);
    const FrameBit base = FrameBit{rows_[run.row].first} * kBitsInByte;
    const char* open = !shared && bits_.IsMost(base + static_cast<FrameBit>(run.highest)) ? "[" : " ";
    const char* close = !shared && bits_.IsLeast(base + static_cast<FrameBit>(run.lowest)) ? "]" : " ";
    text = open + text + close;
    return shared ? paint.Red(text) : paint.Numbered(signal.colour, text);
}

std::string Picture::DrawRow(std::size_t row, const Paint& paint) const {
    std::string line = PaddedLeft(RowLabel(rows_[row]), labelWidth_) + " ";
    for (std::size_t i = 0; i < runs_.size(); ++i) {
        if (runs_[i].row == row) {
            line += "│" + DrawRun(i, paint);
        }
    }
    return line + "│";
}

std::string Picture::DrawHead() const {
    std::string line = PaddedLeft("byte", labelWidth_) + " ";
    for (int bit = kBitsInByte - 1; bit >= 0; --bit) {
        line += std::string(cellWidth_ / 2 + 1, ' ') + std::to_string(bit) + std::string((cellWidth_ - 1) / 2, ' ');
    }
    line.erase(line.find_last_not_of(' ') + 1);
    return line;
}

// Columns count from the left, so column 0 is bit 7. Outside of the frame there is a region of its own.
int Picture::RegionAt(std::optional<std::size_t> row, int column) const {
    constexpr int kOutside = FrameBits::kUnused - 1;
    if (!row || column < 0 || column >= kBitsInByte) {
        return kOutside;
    }
    return bits_.Bytes()[rows_[*row].first][static_cast<std::size_t>(kBitsInByte - 1 - column)];
}

bool Picture::IsEdgeBelow(std::optional<std::size_t> above, std::optional<std::size_t> below, int column) const {
    return RegionAt(above, column) != RegionAt(below, column);
}

bool Picture::IsEdgeBefore(std::optional<std::size_t> row, int column) const {
    return RegionAt(row, column - 1) != RegionAt(row, column);
}

// Returns an empty text where nothing separates the two rows.
std::string Picture::DrawBorder(std::optional<std::size_t> above, std::optional<std::size_t> below) const {
    // By the lines that meet: 1 from above, 2 from below, 4 from the left, 8 from the right.
    static constexpr std::array<const char*, 16> kCrossings = {" ", "│", "│", "│", "─", "┘", "┐", "┤",
                                                               "─", "└", "┌", "├", "─", "┴", "┬", "┼"};
    std::string line(labelWidth_ + 1, ' ');
    bool any = false;
    for (int column = 0; column <= kBitsInByte; ++column) {
        const bool left = IsEdgeBelow(above, below, column - 1);
        const bool right = IsEdgeBelow(above, below, column);
        line += kCrossings[(IsEdgeBefore(above, column) ? 1U : 0U) + (IsEdgeBefore(below, column) ? 2U : 0U) +
                           (left ? 4U : 0U) + (right ? 8U : 0U)];
        for (std::size_t i = 0; column < kBitsInByte && i < cellWidth_; ++i) {
            line += right ? "─" : " ";
        }
        any = any || right;
    }
    return any ? line : "";
}

std::string Picture::Draw(std::size_t indent, const Paint& paint) const {
    const std::string margin(indent, ' ');
    std::string text = margin + paint.Faint(DrawHead()) + "\n";
    std::optional<std::size_t> above;
    for (std::size_t row = 0; row < rows_.size(); ++row) {
        const std::string border = DrawBorder(above, row);
        text += border.empty() ? "" : margin + border + "\n";
        text += margin + DrawRow(row, paint) + "\n";
        above = row;
    }
    return text + margin + DrawBorder(above, std::nullopt) + "\n";
}

std::string NameOf(const FrameSignal& signal) {
    return signal.key + " " + signal.name;
}

std::string OverlapNotes(const FrameBits& bits, const std::vector<FrameSignal>& signals, const std::string& margin) {
    std::string notes;
    for (const FrameBits::Region& region : bits.Regions()) {
        if (region.signals.size() < 2) {
            continue;
        }
        notes += margin + "overlap: ";
        for (std::size_t i = 0; i < region.signals.size(); ++i) {
            notes += (i == 0 ? "" : ", ") + NameOf(signals[region.signals[i]]);
        }
        notes += "\n";
    }
    return notes;
}

std::string OutsideNotes(const FrameBits& bits, const std::vector<FrameSignal>& signals, const std::string& margin) {
    std::string notes;
    for (std::size_t i = 0; i < signals.size(); ++i) {
        const std::uint64_t outside = bits.OutsideBits()[i];
        if (outside != 0) {
            notes += margin + "outside of the frame: " + Count(static_cast<std::int64_t>(outside), "bit") + " of " +
                     NameOf(signals[i]) + "\n";
        }
    }
    return notes;
}

}  // namespace

std::string DrawFrame(std::uint32_t bytes, const std::vector<FrameSignal>& signals, std::size_t indent,
                      const Paint& paint) {
    const std::string margin(indent, ' ');
    if (bytes > kLargestFrame) {
        return margin + "(no picture: the frame is longer than " + std::to_string(kLargestFrame) + " bytes)\n";
    }
    const FrameBits bits(bytes, signals);
    std::string text = bytes == 0 ? "" : Picture(bits, signals).Draw(indent, paint);
    return text + OverlapNotes(bits, signals, margin) + OutsideNotes(bits, signals, margin);
}

}  // namespace tabrin_tool
