#include "utilities/cls_log.hpp"

#include <algorithm>
#include <charconv>
#include <chrono>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <system_error>

#include <fmt/format.h>

#include "platform/local_time.hpp"
#include "platform/paths.hpp"
#include "platform/processes.hpp"

namespace fnrk::utilities {

namespace {

bool MakeParentFolder(const std::filesystem::path& file) {
    std::error_code error;
    if (file.has_parent_path()) std::filesystem::create_directories(file.parent_path(), error);
    return !error;
}

std::string LocalTimeStamp() {
    const std::time_t now = std::chrono::system_clock::to_time_t(std::chrono::system_clock::now());
    const std::tm local = platform::LocalTime(now);
    return fmt::format("{:02}/{:02}/{:04} {:02}:{:02}:{:02}", local.tm_mday, local.tm_mon + 1,
                       local.tm_year + 1900, local.tm_hour, local.tm_min, local.tm_sec);
}

std::vector<std::int64_t> ReadProcessIds(const std::filesystem::path& file) {
    std::vector<std::int64_t> ids;
    std::ifstream in(file);
    std::string line;
    while (std::getline(in, line)) {
        std::int64_t id = 0;
        const auto [end, error] = std::from_chars(line.data(), line.data() + line.size(), id);
        if (error == std::errc{} && id > 0) ids.push_back(id);
    }
    return ids;
}

bool WriteProcessIds(const std::filesystem::path& file, const std::vector<std::int64_t>& ids) {
    if (!MakeParentFolder(file)) return false;
    std::ofstream out(file, std::ios::binary | std::ios::trunc);
    for (const std::int64_t id : ids) out << id << '\n';
    out.close();
    return !out.fail();
}

}  // namespace

bool clsLog::FileReset(std::string_view path) const {
    const std::filesystem::path file = platform::FileSystemPath(path);
    if (!MakeParentFolder(file)) return false;
    std::ofstream out(file, std::ios::binary | std::ios::trunc);
    out.close();
    return !out.fail();
}

bool clsLog::FileInfoAdd(std::string_view path, std::string_view text) const {
    const std::filesystem::path file = platform::FileSystemPath(path);
    if (!MakeParentFolder(file)) return false;
    std::string line = LocalTimeStamp() + " " + std::string(text);
    std::replace_if(
        line.begin(), line.end(), [](char c) { return c == '\r' || c == '\n'; }, ' ');
    std::ofstream out(file, std::ios::binary | std::ios::app);
    out << line << "\r\n";
    out.close();
    return !out.fail();
}

bool clsLog::ExcelAndFennrickProcessCreated(std::string_view path, std::int64_t processId) const {
    const std::filesystem::path file = platform::FileSystemPath(path);
    std::vector<std::int64_t> ids = ReadProcessIds(file);
    if (std::find(ids.begin(), ids.end(), processId) == ids.end()) ids.push_back(processId);
    return WriteProcessIds(file, ids);
}

bool clsLog::ExcelAndFennrickProcessDeleted(std::string_view path, std::int64_t processId) const {
    const std::filesystem::path file = platform::FileSystemPath(path);
    std::vector<std::int64_t> ids = ReadProcessIds(file);
    ids.erase(std::remove(ids.begin(), ids.end(), processId), ids.end());
    return WriteProcessIds(file, ids);
}

std::vector<std::int64_t> clsLog::ExcelAndFennrickProcessManage(std::string_view path) const {
    const std::filesystem::path file = platform::FileSystemPath(path);
    std::vector<std::int64_t> ids = ReadProcessIds(file);
    ids.erase(std::remove_if(ids.begin(), ids.end(),
                             [](std::int64_t id) { return !platform::ProcessIsRunning(id); }),
              ids.end());
    WriteProcessIds(file, ids);
    return ids;
}

}  // namespace fnrk::utilities
