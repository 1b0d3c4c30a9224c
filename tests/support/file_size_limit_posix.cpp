#include "support/file_size_limit.hpp"

#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>

namespace fnrk::testing {

int RunWithFileSizeLimit(std::uint64_t bytes, const std::function<int()>& work) {
    const pid_t pid = fork();
    if (pid == 0) {
        std::signal(SIGXFSZ, SIG_IGN);
        const rlimit limit{bytes, bytes};
        if (setrlimit(RLIMIT_FSIZE, &limit) != 0) _exit(125);
        _exit(work());
    }
    int status = 0;
    if (pid < 0 || waitpid(pid, &status, 0) != pid || !WIFEXITED(status)) return -1;
    return WEXITSTATUS(status);
}

}  // namespace fnrk::testing
