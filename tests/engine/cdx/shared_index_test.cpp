// Four processes change one shared tag at once. Each must see the others' committed changes (its
// cached nodes are dropped when the change counter moves), and afterwards the tag must be sound
// and hold exactly every process's last writes.

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <random>
#include <set>

#include "engine/cdx/compound_index.hpp"
#include "engine/cdx/tag_check.hpp"
#include "support/temp_dir.hpp"

namespace fnrk::engine::cdx {
namespace {

constexpr int kProcesses = 4;
constexpr int kSteps = 400;
constexpr std::size_t kKeyLength = 20;

std::string KeyOf(int process, int serial) {
    return EncodeCharacterKey(
        "P" + std::to_string(process) + "-" + std::to_string(serial * 37 % 1000), kKeyLength);
}

std::uint32_t RecordOf(int process, int serial) {
    return static_cast<std::uint32_t>(process * 100000 + serial + 1);
}

// Runs one process's share and returns what it expects to remain; 0 from the child means all its
// own reads agreed with its writes.
std::set<std::pair<std::string, std::uint32_t>> Work(const std::filesystem::path& path, int process,
                                                     bool* ok) {
    auto index = CompoundIndex::Open(path, {.shared = true});
    IndexTag& tag = *index->FindTag("SHARED");
    std::mt19937 random(static_cast<unsigned>(process));
    std::set<std::pair<std::string, std::uint32_t>> mine;
    for (int serial = 0; serial < kSteps; ++serial) {
        {
            IndexFile::UpdateGuard lock(index->file());
            if (!mine.empty() && random() % 3 == 0) {
                auto victim = std::next(mine.begin(), static_cast<long>(random() % mine.size()));
                if (!tag.Remove(victim->first, victim->second)) *ok = false;
                mine.erase(victim);
            }
            const std::string key = KeyOf(process, serial);
            if (!tag.Insert(key, RecordOf(process, serial))) *ok = false;
            mine.emplace(key, RecordOf(process, serial));
        }
        IndexFile::ReadGuard read(index->file());
        const std::string& last = KeyOf(process, serial);
        bool seen = false;
        for (TagPosition at = tag.LowerBound(last); at.valid() && !seen; at = tag.Next(at)) {
            const IndexEntry& entry = tag.EntryAt(at);
            if (entry.key != last) break;
            seen = entry.record == RecordOf(process, serial);
        }
        if (!seen) *ok = false;
    }
    return mine;
}

TEST(SharedIndex, FourProcessesUpdateOneTagAndEveryLastWriteIsFound) {
    fnrk::testing::TempDir dir;
    const auto path = dir / "shared.cdx";
    {
        auto index = CompoundIndex::Create(path);
        index->AddTag({"SHARED", "K", "", KeyKind::Character, kKeyLength, false, false}, {}, 0);
    }
    std::vector<pid_t> children;
    for (int process = 0; process < kProcesses; ++process) {
        const pid_t child = ::fork();
        ASSERT_GE(child, 0);
        if (child == 0) {
            bool ok = true;
            try {
                Work(path, process, &ok);
            } catch (...) {
                ok = false;
            }
            ::_exit(ok ? 0 : 1);
        }
        children.push_back(child);
    }
    for (const pid_t child : children) {
        int status = 0;
        ASSERT_EQ(::waitpid(child, &status, 0), child);
        EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << "a process lost its writes";
    }
    // Each process's final set is a function of its seed: replay it against a scratch copy.
    std::set<std::pair<std::string, std::uint32_t>> expected;
    for (int process = 0; process < kProcesses; ++process) {
        fnrk::testing::TempDir scratch;
        {
            auto index = CompoundIndex::Create(scratch / "replay.cdx");
            index->AddTag({"SHARED", "K", "", KeyKind::Character, kKeyLength, false, false}, {}, 0);
        }
        bool ok = true;
        const auto mine = Work(scratch / "replay.cdx", process, &ok);
        ASSERT_TRUE(ok);
        expected.insert(mine.begin(), mine.end());
    }
    auto index = CompoundIndex::Open(path, {});
    IndexTag& tag = *index->FindTag("SHARED");
    std::uint64_t keys = 0;
    EXPECT_EQ(CheckTagStructure(tag, &keys), std::vector<std::string>{});
    std::set<std::pair<std::string, std::uint32_t>> found;
    for (TagPosition at = tag.First(); at.valid(); at = tag.Next(at))
        found.emplace(tag.EntryAt(at).key, tag.EntryAt(at).record);
    EXPECT_EQ(found, expected);
    EXPECT_EQ(keys, expected.size());
}

}  // namespace
}  // namespace fnrk::engine::cdx
