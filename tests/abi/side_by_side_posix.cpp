#include <sys/wait.h>
#include <unistd.h>

#include "abi/side_by_side.h"

namespace tabrin_test {

std::vector<int> RunSideBySide(const std::vector<std::function<int()>>& works) {
    std::vector<pid_t> processes;
    for (const std::function<int()>& work : works) {
        processes.push_back(fork());
        if (processes.back() == 0) {
            alarm(300);
            _exit(work());
        }
    }
    std::vector<int> results;
    for (const pid_t process : processes) {
        int state = -1;
        const bool ended = waitpid(process, &state, 0) == process && WIFEXITED(state);
        results.push_back(ended ? WEXITSTATUS(state) : -1);
    }
    return results;
}

}  // namespace tabrin_test
