#pragma once

#include <filesystem>
#include <string>

namespace fnrk::testing {

// A fresh folder under the system temporary folder, removed with everything in it on destruction.
class TempDir {
  public:
    TempDir();
    ~TempDir();
    TempDir(const TempDir&) = delete;
    TempDir& operator=(const TempDir&) = delete;

    const std::filesystem::path& path() const { return path_; }
    std::filesystem::path operator/(const std::string& name) const { return path_ / name; }

  private:
    std::filesystem::path path_;
};

// Whole-file helpers for tests that build or inspect files byte for byte.
std::string ReadFileBytes(const std::filesystem::path& file);
void WriteFileBytes(const std::filesystem::path& file, const std::string& bytes);

// The shared fixtures folder (../shared next to the checkout).
std::filesystem::path SharedDir();

}  // namespace fnrk::testing
