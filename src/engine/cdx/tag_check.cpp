#include "engine/cdx/tag_check.hpp"

#include <set>
#include <unordered_set>

namespace fnrk::engine::cdx {

namespace {

constexpr std::size_t kMaxProblems = 20;

class StructureChecker {
  public:
    explicit StructureChecker(IndexTag& tag) : tag_(tag) {}

    std::vector<std::string> Run(std::uint64_t* keyCount) {
        try {
            Visit(tag_.header().root, 0, true);
            CheckLevelLinks();
        } catch (const IndexCorrupt& e) {
            Report(e.what());
        }
        if (keyCount != nullptr && problems_.empty()) *keyCount = keys_;
        return problems_;
    }

  private:
    // Returns the last entry of the subtree, if it has one.
    std::optional<IndexEntry> Visit(std::uint32_t offset, std::size_t depth, bool isRoot) {
        if (problems_.size() >= kMaxProblems) return std::nullopt;
        if (!seen_.insert(offset).second) {
            Report("node " + std::to_string(offset) + " is reached twice");
            return std::nullopt;
        }
        const IndexNode node = tag_.Node(offset);
        if (node.isRoot() != isRoot)
            Report("node " + std::to_string(offset) + " has a wrong root flag");
        if (levels_.size() <= depth) levels_.resize(depth + 1);
        levels_[depth].push_back(offset);
        if (node.isLeaf()) return VisitLeaf(offset, node, depth);
        std::optional<IndexEntry> last;
        for (const auto& entry : node.entries) {
            const auto childLast = Visit(entry.child, depth + 1, false);
            if (!childLast) {
                Report("node " + std::to_string(offset) + " has an empty or bad child");
                continue;
            }
            if (childLast->key != entry.key || childLast->record != entry.record)
                Report("node " + std::to_string(offset) +
                       ": interior key differs from its child's last key");
            last = entry;
        }
        return last;
    }

    std::optional<IndexEntry> VisitLeaf(std::uint32_t offset, const IndexNode& node,
                                        std::size_t depth) {
        if (leafDepth_ && *leafDepth_ != depth)
            Report("leaf " + std::to_string(offset) + " is not on the level of the others");
        leafDepth_ = depth;
        for (const auto& entry : node.entries) {
            if (previous_) {
                const int c = CompareEntry(*previous_, entry.key, entry.record);
                if (c >= 0 || (tag_.header().unique() && previous_->key == entry.key))
                    Report("leaf " + std::to_string(offset) + ": keys out of order at record " +
                           std::to_string(entry.record));
            }
            previous_ = entry;
            ++keys_;
        }
        if (node.entries.empty() && !node.isRoot())
            Report("leaf " + std::to_string(offset) + " is empty");
        return node.entries.empty() ? std::nullopt : std::optional<IndexEntry>(node.entries.back());
    }

    // Each level, read left to right, must be one chain of sibling links.
    void CheckLevelLinks() {
        for (const auto& level : levels_) {
            for (std::size_t i = 0; i < level.size(); ++i) {
                const IndexNode& node = tag_.Node(level[i]);
                const std::uint32_t left = i == 0 ? kNoNode : level[i - 1];
                const std::uint32_t right = i + 1 == level.size() ? kNoNode : level[i + 1];
                if (node.left != left || node.right != right)
                    Report("node " + std::to_string(level[i]) + " has wrong sibling links");
            }
        }
    }

    void Report(std::string problem) {
        if (problems_.size() < kMaxProblems)
            problems_.push_back("tag " + tag_.name() + ": " + std::move(problem));
    }

    IndexTag& tag_;
    std::vector<std::string> problems_;
    std::unordered_set<std::uint32_t> seen_;
    std::vector<std::vector<std::uint32_t>> levels_;
    std::optional<std::size_t> leafDepth_;
    std::optional<IndexEntry> previous_;
    std::uint64_t keys_ = 0;
};

}  // namespace

std::vector<std::string> CheckTagStructure(IndexTag& tag, std::uint64_t* keyCount) {
    return StructureChecker(tag).Run(keyCount);
}

std::vector<std::string> CheckTagContents(IndexTag& tag, std::uint32_t recordCount,
                                          const ExpectedKey& expected) {
    std::vector<std::string> problems;
    auto report = [&](std::string text) {
        if (problems.size() < kMaxProblems) problems.push_back("tag " + tag.name() + ": " + text);
    };
    std::vector<bool> present(std::size_t{recordCount} + 1, false);
    std::set<std::string> keys;
    std::uint64_t steps = 0;
    for (TagPosition at = tag.First(); at.valid(); at = tag.Next(at)) {
        if (++steps > tag.WalkLimit()) throw IndexCorrupt("tag " + tag.name() + ": leaves loop");
        const IndexEntry entry = tag.EntryAt(at);
        const std::string where = "record " + std::to_string(entry.record);
        if (entry.record == 0 || entry.record > recordCount) {
            report(where + " does not exist");
            continue;
        }
        if (present[entry.record]) report(where + " is present twice");
        present[entry.record] = true;
        keys.emplace(entry.key);
        const auto key = expected(entry.record);
        if (!key)
            report(where + " does not qualify for the tag");
        else if (entry.key != *key)
            report(where + " has a stale key");
    }
    for (std::uint32_t record = 1; record <= recordCount; ++record) {
        if (present[record]) continue;
        const auto key = expected(record);
        if (key && !(tag.header().unique() && keys.count(*key) != 0))
            report("record " + std::to_string(record) + " is missing");
    }
    return problems;
}

}  // namespace fnrk::engine::cdx
