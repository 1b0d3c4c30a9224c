#include "support/run_command.hpp"

#include <fcntl.h>
#include <poll.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <stdexcept>

namespace fnrk::testing {
namespace {

void CloseIfOpen(int& fd) {
    if (fd >= 0) close(fd);
    fd = -1;
}

}  // namespace

CommandResult RunCommand(const std::vector<std::string>& argv, const std::string& input,
                         const std::filesystem::path& folder) {
    if (argv.empty()) throw std::invalid_argument("RunCommand needs a program");
    // A child that exits before reading its input must not kill the test with SIGPIPE.
    std::signal(SIGPIPE, SIG_IGN);
    int inPipe[2], outPipe[2], errPipe[2];
    if (pipe(inPipe) != 0 || pipe(outPipe) != 0 || pipe(errPipe) != 0)
        throw std::runtime_error("pipe failed");
    const pid_t pid = fork();
    if (pid < 0) throw std::runtime_error("fork failed");
    if (pid == 0) {
        dup2(inPipe[0], 0);
        dup2(outPipe[1], 1);
        dup2(errPipe[1], 2);
        for (int fd : {inPipe[0], inPipe[1], outPipe[0], outPipe[1], errPipe[0], errPipe[1]})
            close(fd);
        if (!folder.empty() && chdir(folder.c_str()) != 0) _exit(127);
        std::vector<char*> args;
        for (const auto& arg : argv) args.push_back(const_cast<char*>(arg.c_str()));
        args.push_back(nullptr);
        execvp(args[0], args.data());
        _exit(127);
    }
    close(inPipe[0]);
    close(outPipe[1]);
    close(errPipe[1]);
    int toChild = inPipe[1];
    int fromOut = outPipe[0];
    int fromErr = errPipe[0];
    fcntl(toChild, F_SETFL, O_NONBLOCK);
    if (input.empty()) CloseIfOpen(toChild);

    CommandResult result;
    std::size_t written = 0;
    char buffer[65536];
    while (fromOut >= 0 || fromErr >= 0) {
        pollfd fds[3];
        int count = 0;
        if (fromOut >= 0) fds[count++] = {fromOut, POLLIN, 0};
        if (fromErr >= 0) fds[count++] = {fromErr, POLLIN, 0};
        if (toChild >= 0) fds[count++] = {toChild, POLLOUT, 0};
        if (poll(fds, count, -1) < 0) {
            if (errno == EINTR) continue;
            break;
        }
        for (int i = 0; i < count; ++i) {
            if (fds[i].revents == 0) continue;
            if (fds[i].fd == toChild) {
                const ssize_t n = write(toChild, input.data() + written, input.size() - written);
                if (n > 0) written += static_cast<std::size_t>(n);
                if (n < 0 || written == input.size()) CloseIfOpen(toChild);
                continue;
            }
            const ssize_t n = read(fds[i].fd, buffer, sizeof buffer);
            std::string& sink = fds[i].fd == fromOut ? result.out : result.err;
            if (n > 0) {
                sink.append(buffer, static_cast<std::size_t>(n));
            } else {
                CloseIfOpen(fds[i].fd == fromOut ? fromOut : fromErr);
            }
        }
    }
    CloseIfOpen(toChild);
    int status = 0;
    while (waitpid(pid, &status, 0) < 0 && errno == EINTR) {
    }
    result.exitCode = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
    return result;
}

std::string LinuxPath(const std::filesystem::path& path) {
    return path.string();
}

}  // namespace fnrk::testing
