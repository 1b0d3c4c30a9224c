// RunCommand for Windows: CreateProcessW with pipes for the three standard streams, read and
// written by threads of their own so that no pipe fills while another is waited on.
//
// Under wine a Linux program (an ELF binary, a script) starts as a Unix process of its own that
// takes none of the handles given to it, is not waited for, and leaves no exit code: it runs
// through /bin/sh, which takes its input from a file, writes its output and then its exit code to
// files, and the code's file is waited for.

#include <windows.h>

#include <atomic>
#include <chrono>
#include <fstream>
#include <stdexcept>
#include <string>
#include <thread>

#include "platform/utf8.hpp"
#include "support/run_command.hpp"
#include "support/temp_dir.hpp"

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

// wine's own export for the Unix name of a Windows path (a buffer of the process heap); null on
// Windows itself.
using UnixFileNameFunction = char*(__cdecl*)(const wchar_t*);
UnixFileNameFunction WineUnixFileName() {
    static const auto function =
        reinterpret_cast<UnixFileNameFunction>(reinterpret_cast<void (*)()>(
            GetProcAddress(GetModuleHandleW(L"kernel32.dll"), "wine_get_unix_file_name")));
    return function;
}

// A program file that does not start as every Windows program does (an ELF binary, a script).
// A bare name is left to CreateProcessW's own search.
bool IsLinuxProgram(const std::string& program) {
    std::ifstream file(std::filesystem::path(platform::Utf8ToUtf16(program)), std::ios::binary);
    char magic[2] = {};
    return file.read(magic, sizeof magic) && !(magic[0] == 'M' && magic[1] == 'Z');
}

std::wstring CommandLine(const std::vector<std::string>& argv) {
    std::wstring commandLine;
    for (const std::string& argument : argv)
        commandLine += (commandLine.empty() ? L"" : L" ") + Quoted(argument);
    return commandLine;
}

CommandResult RunProgram(const std::vector<std::string>& argv, const std::string& input,
                         const std::filesystem::path& folder) {
    std::wstring commandLine = CommandLine(argv);
    Pipe in(true), out(false), err(false);
    STARTUPINFOW startup{};
    startup.cb = sizeof startup;
    startup.dwFlags = STARTF_USESTDHANDLES;
    startup.hStdInput = in.read;
    startup.hStdOutput = out.write;
    startup.hStdError = err.write;
    PROCESS_INFORMATION process{};
    const std::wstring workingFolder = folder.wstring();
    const BOOL started =
        CreateProcessW(nullptr, commandLine.data(), nullptr, nullptr, TRUE, 0, nullptr,
                       folder.empty() ? nullptr : workingFolder.c_str(), &startup, &process);
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
    // -1: the code is unknown, never taken for a success.
    result.exitCode =
        GetExitCodeProcess(process.hProcess, &exitCode) ? static_cast<int>(exitCode) : -1;
    CloseHandle(process.hThread);
    CloseHandle(process.hProcess);
    return result;
}

// $0: the folder of the files, $1: the working folder, then the program and its arguments.
constexpr const char* kLinuxRunScript =
    "d=$0; w=$1; shift\n"
    "(cd \"$w\" && exec \"$@\") <\"$d/in\" >\"$d/out\" 2>\"$d/err\"\n"
    "echo $? >\"$d/status.tmp\" && mv \"$d/status.tmp\" \"$d/status\"\n";

// Long enough for the slowest tool the tests run (the invoice rules start a Java machine).
constexpr std::chrono::minutes kLinuxRunLimit{10};

CommandResult RunLinuxProgram(const std::vector<std::string>& argv, const std::string& input,
                              const std::filesystem::path& folder) {
    static std::atomic<unsigned> runs{0};
    const std::filesystem::path files =
        std::filesystem::temp_directory_path() /
        ("fnrk-run-" + std::to_string(GetCurrentProcessId()) + "-" + std::to_string(++runs));
    std::filesystem::create_directories(files);
    WriteFileBytes(files / "in", input);
    std::vector<std::string> wrapped = {"/bin/sh",
                                        "-c",
                                        kLinuxRunScript,
                                        LinuxPath(files),
                                        folder.empty() ? "." : LinuxPath(folder),
                                        LinuxPath(platform::Utf8ToUtf16(argv[0]))};
    wrapped.insert(wrapped.end(), argv.begin() + 1, argv.end());
    std::wstring commandLine = CommandLine(wrapped);
    STARTUPINFOW startup{};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION process{};
    CommandResult result;
    if (!CreateProcessW(nullptr, commandLine.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr,
                        &startup, &process)) {
        result.exitCode = 127;
        result.err = "cannot start /bin/sh for " + argv[0];
    } else {
        CloseHandle(process.hThread);
        CloseHandle(process.hProcess);
        const auto limit = std::chrono::steady_clock::now() + kLinuxRunLimit;
        while (!std::filesystem::exists(files / "status") &&
               std::chrono::steady_clock::now() < limit)
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
        if (std::ifstream status(files / "status"); status >> result.exitCode) {
            result.out = ReadFileBytes(files / "out");
            result.err = ReadFileBytes(files / "err");
        } else {
            result.exitCode = -1;  // unknown, never taken for a success
            result.err = argv[0] + " left no exit code";
        }
    }
    std::error_code ignored;
    std::filesystem::remove_all(files, ignored);
    return result;
}

}  // namespace

CommandResult RunCommand(const std::vector<std::string>& argv, const std::string& input,
                         const std::filesystem::path& folder) {
    if (argv.empty()) throw std::invalid_argument("RunCommand needs a program");
    if (WineUnixFileName() != nullptr && IsLinuxProgram(argv[0]))
        return RunLinuxProgram(argv, input, folder);
    return RunProgram(argv, input, folder);
}

std::string LinuxPath(const std::filesystem::path& path) {
    const UnixFileNameFunction unixFileName = WineUnixFileName();
    if (unixFileName == nullptr) return path.string();
    char* name = unixFileName(path.wstring().c_str());
    if (name == nullptr) return path.string();
    std::string linuxPath(name);
    HeapFree(GetProcessHeap(), 0, name);
    return linuxPath;
}

}  // namespace fnrk::testing
