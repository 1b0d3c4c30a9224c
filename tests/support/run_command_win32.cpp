// RunCommand for Windows: CreateProcessW with pipes for the three standard streams, read and
// written by threads of their own so that no pipe fills while another is waited on.

#include <windows.h>

#include <stdexcept>
#include <string>
#include <thread>

#include "platform/utf8.hpp"
#include "support/run_command.hpp"

namespace fnrk::testing {
namespace {

// One argument quoted the way the C runtime splits a command line back into arguments.
std::wstring Quoted(const std::string& argument) {
    const std::wstring wide = platform::Utf8ToUtf16(argument);
    if (!wide.empty() && wide.find_first_of(L" \t\n\v\"") == std::wstring::npos) return wide;
    std::wstring quoted = L"\"";
    std::size_t backslashes = 0;
    for (const wchar_t c : wide) {
        if (c == L'\\') {
            ++backslashes;
            continue;
        }
        // Backslashes before a quote are doubled, and the quote escaped.
        quoted.append(c == L'"' ? backslashes * 2 + 1 : backslashes, L'\\');
        backslashes = 0;
        quoted += c;
    }
    quoted.append(backslashes * 2, L'\\');
    quoted += L'"';
    return quoted;
}

// A pipe whose one end the child inherits.
struct Pipe {
    HANDLE read = nullptr;
    HANDLE write = nullptr;
    explicit Pipe(bool childReads) {
        SECURITY_ATTRIBUTES inherit{sizeof inherit, nullptr, TRUE};
        if (!CreatePipe(&read, &write, &inherit, 0)) throw std::runtime_error("pipe failed");
        SetHandleInformation(childReads ? write : read, HANDLE_FLAG_INHERIT, 0);
    }
};

void Close(HANDLE& handle) {
    if (handle != nullptr) CloseHandle(handle);
    handle = nullptr;
}

void Drain(HANDLE from, std::string& into) {
    char buffer[65536];
    DWORD got = 0;
    while (ReadFile(from, buffer, sizeof buffer, &got, nullptr) && got > 0)
        into.append(buffer, got);
}

}  // namespace

CommandResult RunCommand(const std::vector<std::string>& argv, const std::string& input) {
    if (argv.empty()) throw std::invalid_argument("RunCommand needs a program");
    std::wstring commandLine;
    for (const std::string& argument : argv)
        commandLine += (commandLine.empty() ? L"" : L" ") + Quoted(argument);
    Pipe in(true), out(false), err(false);
    STARTUPINFOW startup{};
    startup.cb = sizeof startup;
    startup.dwFlags = STARTF_USESTDHANDLES;
    startup.hStdInput = in.read;
    startup.hStdOutput = out.write;
    startup.hStdError = err.write;
    PROCESS_INFORMATION process{};
    const BOOL started = CreateProcessW(nullptr, commandLine.data(), nullptr, nullptr, TRUE, 0,
                                        nullptr, nullptr, &startup, &process);
    Close(in.read);
    Close(out.write);
    Close(err.write);
    CommandResult result;
    if (!started) {
        // As a shell answers for a program it cannot start.
        Close(in.write);
        Close(out.read);
        Close(err.read);
        result.exitCode = 127;
        result.err = "cannot start " + argv[0];
        return result;
    }
    std::thread writer([&] {
        DWORD put = 0;
        for (std::size_t done = 0; done < input.size(); done += put) {
            if (!WriteFile(in.write, input.data() + done, static_cast<DWORD>(input.size() - done),
                           &put, nullptr) ||
                put == 0)
                break;
        }
        Close(in.write);
    });
    std::thread errors([&] { Drain(err.read, result.err); });
    Drain(out.read, result.out);
    errors.join();
    writer.join();
    Close(out.read);
    Close(err.read);
    WaitForSingleObject(process.hProcess, INFINITE);
    DWORD exitCode = 0;
    GetExitCodeProcess(process.hProcess, &exitCode);
    result.exitCode = static_cast<int>(exitCode);
    CloseHandle(process.hThread);
    CloseHandle(process.hProcess);
    return result;
}

}  // namespace fnrk::testing
