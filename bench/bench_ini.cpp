// Configuration reads: one key of a sizeable INI file, and ApiIni's read with its file choice
// (settings store, users folder, preference file), which touches several files per call.

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

#include <benchmark/benchmark.h>

#include "platform/ini_file.hpp"
#include "platform/paths.hpp"
#include "session/api_ini.hpp"
#include "session/session_user.hpp"

namespace {

namespace fs = std::filesystem;

// A sample installation with a shared file of `sections` sections of 20 keys each.
struct SampleInstallation {
    fs::path root;

    explicit SampleInstallation(int sections) {
        root = fs::temp_directory_path() / ("fnrk-bench-ini-" + std::to_string(::getpid()));
        fs::create_directories(root / "PRG");
        fs::create_directories(root / "USERS" / "UsersPrefs");
        std::ofstream shared(root / "FennRick.ini", std::ios::binary);
        shared << "[Install]\r\nUserPath=" << (root / "USERS").string() << "\r\n";
        for (int s = 0; s < sections; ++s) {
            shared << "; section " << s << "\r\n[Section" << s << "]\r\n";
            for (int k = 0; k < 20; ++k)
                shared << "Key" << k << "=value " << s << "." << k << "\r\n";
        }
        std::ofstream(root / "USERS" / "UsersPrefs" / "BENCH.ini", std::ios::binary)
            << "[General]\r\nLanguage=N\r\n";
        ::setenv("FNRK_SETTINGS_FILE", (root / "settings.ini").c_str(), 1);
        ::setenv("FNRK_MAIN_PATH", root.c_str(), 1);
        fnrk::platform::SetProgramFolder((root / "PRG").string());
        fnrk::session::CurrentUser().Name = "BENCH";
    }
    ~SampleInstallation() {
        std::error_code ignored;
        fs::remove_all(root, ignored);
    }
};

void BM_GetPrivateProfileString(benchmark::State& state) {
    const SampleInstallation sample(static_cast<int>(state.range(0)));
    const std::string file = (sample.root / "FennRick.ini").string();
    const std::string section = "Section" + std::to_string(state.range(0) - 1);
    for (auto _ : state) {
        benchmark::DoNotOptimize(
            fnrk::platform::GetPrivateProfileString(section, "Key19", "", 255, file));
    }
    state.SetItemsProcessed(state.iterations());
}
BENCHMARK(BM_GetPrivateProfileString)->Arg(5)->Arg(50);

void BM_ApiIniReadWithPreferenceFile(benchmark::State& state) {
    const SampleInstallation sample(5);
    fnrk::session::ApiIni ini;
    ini.INIfile((sample.root / "FennRick.ini").string());
    for (auto _ : state) benchmark::DoNotOptimize(ini.ReadINI("General", "Language"));
    state.SetItemsProcessed(state.iterations());
}
BENCHMARK(BM_ApiIniReadWithPreferenceFile);

}  // namespace

BENCHMARK_MAIN();
