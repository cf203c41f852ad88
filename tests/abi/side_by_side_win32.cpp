#include <thread>

#include "abi/side_by_side.h"

namespace tabrin_test {

// A copy of the library is to another as if it were in another process, and so are the files that they open.
std::vector<int> RunSideBySide(const std::vector<std::function<int()>>& works) {
    std::vector<int> results(works.size());
    std::vector<std::thread> threads;
    for (size_t i = 0; i < works.size(); ++i) {
        threads.emplace_back([&, i] { results[i] = works[i](); });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    return results;
}

}  // namespace tabrin_test
