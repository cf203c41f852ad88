#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "text.h"

namespace tabrin_tool {

// A signal as the picture of a frame needs it.
struct FrameSignal {
    std::string key;         // short, for places where the name does not fit
    std::string name;        // one line
    std::size_t colour;      // for Paint::Numbered
    std::uint32_t startBit;  // as in the file: the least significant bit, or for big endian the most significant one
    std::uint32_t length;
    bool bigEndian;
};

// Draws a frame: a row for each byte, its bits 7 to 0 from left to right, and in them the signals. "[" stands in front
// of a signal's most significant bit and "]" behind its least significant one; bits of several signals carry all their
// keys. Rows that would only repeat what stands above them are drawn once. Below are notes on what overlaps or lies
// outside.
std::string DrawFrame(std::uint32_t bytes, const std::vector<FrameSignal>& signals, std::size_t indent,
                      const Paint& paint);

}  // namespace tabrin_tool
