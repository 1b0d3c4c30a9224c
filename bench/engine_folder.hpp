#pragma once

// A temporary folder of the benchmark's own, with an engine connected to it; the tables and the
// folder go when it does.

#include <unistd.h>

#include <filesystem>
#include <string>

#include "engine/engine.hpp"
#include "must_succeed.hpp"

struct EngineFolder {
    explicit EngineFolder(const std::string& name)
        : folder(std::filesystem::temp_directory_path() /
                 ("fnrk-bench-" + name + "-" + std::to_string(::getpid()))) {
        std::filesystem::create_directories(folder);
        Must(engine.Connect26(folder.string(), fnrk::engine::ADS_LOCAL_SERVER, connection));
    }
    ~EngineFolder() {
        Must(engine.CloseAllTables());
        std::error_code ignored;
        std::filesystem::remove_all(folder, ignored);
    }
    EngineFolder(const EngineFolder&) = delete;
    EngineFolder& operator=(const EngineFolder&) = delete;

    std::filesystem::path folder;
    fnrk::engine::Engine engine;
    fnrk::engine::Handle connection = 0;
};
