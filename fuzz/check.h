// How the checks in this folder say that something is wrong: they throw, so that a fuzz target can end the process and
// a test can name the input and go on.
#pragma once

#include <stdexcept>
#include <string>

namespace tabrin_fuzz {

struct Failure : std::runtime_error {
    using std::runtime_error::runtime_error;
};

// Literals only, so that a check that holds costs nothing: some are asked for every byte.
inline void Require(bool holds, const char* what) {
    if (!holds) {
        throw Failure(what);
    }
}

template <typename Detail>
void Require(bool holds, const char* what, Detail detail) {
    if (!holds) {
        throw Failure(std::string(what) + ": " + detail());
    }
}

}  // namespace tabrin_fuzz
