// SPDX-License-Identifier: Apache-2.0
#include "tests/model/Processes.h"

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <exception>
#include <iostream>
#include <system_error>

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>
#ifdef __linux__
#include <sys/prctl.h>
#endif

namespace zeltest {

namespace {

void hideOutput() {
    const int nowhere = open("/dev/null", O_WRONLY | O_CLOEXEC);
    dup2(nowhere, STDOUT_FILENO);
    dup2(nowhere, STDERR_FILENO);
}

[[noreturn]] void runAsTheChild(const std::function<int()>& action, Output output) {
    int status = 70; // of no other end
#ifdef __linux__
    prctl(PR_SET_PDEATHSIG, SIGKILL); // nobody is left to tell
#endif
    if (output == Output::Hidden) {
        constexpr unsigned patience = 60; // seconds
        hideOutput();
        alarm(patience);
    }
    try {
        status = action();
    } catch (const std::exception& problem) {
        std::cerr << problem.what() << '\n';
    }
    std::cout.flush();
    std::_Exit(status); // a thread may be stuck
}

} // namespace

End runInAProcess(const std::function<int()>& action, Output output) {
    std::cout.flush(); // or both would write what waits
    const pid_t child = fork();
    if (child == 0) {
        runAsTheChild(action, output);
    }
    int status = 0;
    pid_t ended = -1;
    do {
        ended = child < 0 ? -1 : waitpid(child, &status, 0);
    } while (child > 0 && ended < 0 && errno == EINTR);
    if (ended < 0) {
        throw std::system_error(errno, std::generic_category(), "no process");
    }
    return WIFSIGNALED(status) ? -WTERMSIG(status) : WEXITSTATUS(status);
}

bool isStopped(End end) {
    return end == -SIGKILL || end == -SIGTERM || end == -SIGINT || end == -SIGXCPU;
}

std::string describe(End end) {
    return end < 0 ? "signal " + std::to_string(-end) + ", " + strsignal(-end)
                   : "status " + std::to_string(end);
}

} // namespace zeltest
