#pragma once

// A compound index file: the tag directory (a tag whose keys are tag names and whose record
// numbers are the offsets of the tags' headers) and the tags themselves.

#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "engine/cdx/index_file.hpp"
#include "engine/cdx/index_key.hpp"
#include "engine/cdx/index_tag.hpp"
#include "engine/cdx/tag_builder.hpp"
#include "engine/cdx/tag_entries.hpp"

namespace fnrk::engine::cdx {

struct TagDefinition {
    std::string name;  // at most 10 characters, stored upper-cased
    std::string keyExpression;
    std::string forExpression;
    KeyKind kind = KeyKind::Character;
    std::size_t keyLength = 0;
    bool unique = false;
    bool descending = false;
};

// Tells the kind of key a stored key expression yields (character unless told otherwise).
using KeyKindOf = std::function<KeyKind(const std::string& keyExpression)>;

class CompoundIndex {
  public:
    // A new file holding an empty directory (encrypted under `cipher` when one is given).
    static std::unique_ptr<CompoundIndex> Create(const std::filesystem::path& path,
                                                 const crypt::FileCipher* cipher = nullptr);
    // Throws IndexCorrupt when the directory cannot be read.
    static std::unique_ptr<CompoundIndex> Open(const std::filesystem::path& path,
                                               IndexOpenMode mode, KeyKindOf kindOf = {});

    IndexFile& file() { return *file_; }
    IndexTag& directory() { return *directory_; }
    // In the order they were created.
    const std::vector<std::unique_ptr<IndexTag>>& tags() const { return tags_; }
    // Case-insensitive; nullptr when absent.
    IndexTag* FindTag(std::string_view name) const;
    // Tags that another process added since this one last looked (the change counter moved),
    // now joined to tags(); the caller holds a guard. Throws IndexCorrupt for a bad directory.
    std::vector<IndexTag*> TagsAddedElsewhere();

    // Writes a new tag from entries in tag order (see TagEntries::Sort); the caller holds the
    // update guard. Throws std::invalid_argument for a bad or taken name, a bad key length, or
    // entries of another key length.
    IndexTag& AddTag(const TagDefinition& definition, const TagEntries& sorted,
                     std::uint32_t recordHint, LeafFill fill = LeafFill::WithRoom);

  private:
    CompoundIndex(std::unique_ptr<IndexFile> file, KeyKindOf kindOf);
    void LoadTags();
    // Joins the directory's tags that tags() lacks; returns them.
    std::vector<IndexTag*> AddTagsNotKnown();

    std::unique_ptr<IndexFile> file_;
    KeyKindOf kindOf_;
    std::unique_ptr<IndexTag> directory_;
    std::vector<std::unique_ptr<IndexTag>> tags_;
    std::uint64_t tagsGeneration_ = 0;  // the file's generation when the directory was read
};

}  // namespace fnrk::engine::cdx
