#include "support/temp_dir.hpp"

#include <fstream>
#include <sstream>
#include <stdexcept>

#include "platform/crypto.hpp"

namespace fnrk::testing {

TempDir::TempDir() {
    const auto base = std::filesystem::temp_directory_path();
    for (int attempt = 0; attempt < 100; ++attempt) {
        auto candidate = base / ("fnrk-test-" + std::to_string(platform::crypto::RandomNumber()));
        if (std::filesystem::create_directory(candidate)) {
            path_ = candidate;
            return;
        }
    }
    throw std::runtime_error("cannot create a temporary folder");
}

TempDir::~TempDir() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
}

std::string ReadFileBytes(const std::filesystem::path& file) {
    std::ifstream in(file, std::ios::binary);
    if (!in) throw std::runtime_error("cannot read " + file.string());
    std::ostringstream content;
    content << in.rdbuf();
    return content.str();
}

void WriteFileBytes(const std::filesystem::path& file, const std::string& bytes) {
    std::ofstream out(file, std::ios::binary | std::ios::trunc);
    if (!out) throw std::runtime_error("cannot write " + file.string());
    out << bytes;
}

std::filesystem::path SharedDir() {
    return FNRK_SHARED_DIR_PATH;
}

}  // namespace fnrk::testing
