#include "engine/cdx/compound_index.hpp"

#include <algorithm>
#include <stdexcept>

#include "engine/cdx/tag_header.hpp"

namespace fnrk::engine::cdx {

using namespace std::string_view_literals;

namespace {

std::string UpperAscii(std::string_view text) {
    std::string upper(text);
    for (char& c : upper)
        if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
    return upper;
}

std::string TrimmedName(std::string_view key) {
    const auto end = key.find_last_not_of(" \0"sv);
    return end == std::string_view::npos ? std::string{} : std::string(key.substr(0, end + 1));
}

}  // namespace

CompoundIndex::CompoundIndex(std::unique_ptr<IndexFile> file, KeyKindOf kindOf)
    : file_(std::move(file)), kindOf_(std::move(kindOf)) {}

std::unique_ptr<CompoundIndex> CompoundIndex::Create(const std::filesystem::path& path,
                                                     const crypt::FileCipher* cipher) {
    auto file = IndexFile::Create(path, cipher);
    TagHeader header;
    header.root = kHeaderSize;
    header.keyLength = kTagNameLength;
    header.options = kOptionTagDirectory | kOptionCompound | kOptionCompact;
    const std::string headerBytes = header.Serialize();
    file->Write(0, headerBytes.data(), headerBytes.size());
    IndexNode root;
    root.attributes = kNodeRoot | kNodeLeaf;
    char node[kNodeSize];
    EncodeLeaf(root, KeyShape{kTagNameLength, ' '}, 0, node);
    file->Write(kHeaderSize, node, kNodeSize);
    std::unique_ptr<CompoundIndex> index(new CompoundIndex(std::move(file), {}));
    index->directory_ = std::make_unique<IndexTag>(*index->file_, 0, "", KeyKind::Character);
    return index;
}

std::unique_ptr<CompoundIndex> CompoundIndex::Open(const std::filesystem::path& path,
                                                   IndexOpenMode mode, KeyKindOf kindOf) {
    std::unique_ptr<CompoundIndex> index(new CompoundIndex(IndexFile::Open(path, mode), kindOf));
    IndexFile::ReadGuard guard(*index->file_);
    index->directory_ = std::make_unique<IndexTag>(*index->file_, 0, "", KeyKind::Character);
    if (!index->directory_->header().isDirectory())
        throw IndexCorrupt("index: " + path.filename().string() + " has no tag directory");
    index->LoadTags();
    return index;
}

void CompoundIndex::LoadTags() {
    tags_.clear();
    AddTagsNotKnown();
    std::sort(tags_.begin(), tags_.end(),
              [](const auto& a, const auto& b) { return a->headerOffset() < b->headerOffset(); });
}

std::vector<IndexTag*> CompoundIndex::AddTagsNotKnown() {
    tagsGeneration_ = file_->generation();
    // Every tag needs at least a header and a node, which bounds an honest directory.
    const std::uint64_t limit = file_->size() / kNodeSize;
    std::uint64_t steps = 0;
    std::vector<IndexTag*> added;
    for (TagPosition at = directory_->First(); at.valid(); at = directory_->Next(at)) {
        if (++steps > limit) throw IndexCorrupt("index: tag directory loops");
        const IndexEntry entry = directory_->EntryAt(at);
        if (entry.record % kNodeSize != 0 || entry.record < kHeaderSize ||
            entry.record + kHeaderSize > file_->size())
            throw IndexCorrupt("index: tag " + TrimmedName(entry.key) + " header outside the file");
        const bool known = std::any_of(tags_.begin(), tags_.end(), [&](const auto& tag) {
            return tag->headerOffset() == entry.record;
        });
        if (known) continue;
        char bytes[kHeaderSize];
        file_->Read(entry.record, bytes, kHeaderSize);
        const TagHeader header = TagHeader::Parse(bytes, file_->size());
        const KeyKind kind = kindOf_ ? kindOf_(header.keyExpression) : KeyKind::Character;
        tags_.push_back(
            std::make_unique<IndexTag>(*file_, entry.record, TrimmedName(entry.key), kind));
        added.push_back(tags_.back().get());
    }
    return added;
}

std::vector<IndexTag*> CompoundIndex::TagsAddedElsewhere() {
    if (file_->generation() == tagsGeneration_) return {};
    return AddTagsNotKnown();
}

IndexTag* CompoundIndex::FindTag(std::string_view name) const {
    const std::string wanted = UpperAscii(name);
    for (const auto& tag : tags_)
        if (UpperAscii(tag->name()) == wanted) return tag.get();
    return nullptr;
}

IndexTag& CompoundIndex::AddTag(const TagDefinition& definition, const TagEntries& sorted,
                                std::uint32_t recordHint, LeafFill fill) {
    const std::string name = UpperAscii(definition.name);
    if (name.empty() || name.size() > kTagNameLength || name.find(' ') != std::string::npos)
        throw std::invalid_argument("bad tag name \"" + definition.name + "\"");
    if (FindTag(name) != nullptr) throw std::invalid_argument("tag " + name + " exists");
    if (definition.keyLength == 0 || definition.keyLength > kMaxKeyLength)
        throw std::invalid_argument("key length " + std::to_string(definition.keyLength) +
                                    " out of range");
    if (!sorted.empty() && sorted.keyLength() != definition.keyLength)
        throw std::invalid_argument("keys of " + std::to_string(sorted.keyLength()) +
                                    " bytes for a tag of " + std::to_string(definition.keyLength));
    const KeyShape shape{definition.keyLength, PadByteOf(definition.kind)};
    TagHeader header;
    header.keyLength = static_cast<std::uint16_t>(definition.keyLength);
    header.options = kOptionCompound | kOptionCompact;
    if (definition.unique) header.options |= kOptionUnique;
    if (!definition.forExpression.empty()) header.options |= kOptionForClause;
    header.descending = definition.descending;
    header.keyExpression = definition.keyExpression;
    header.forExpression = definition.forExpression;
    const std::uint32_t headerOffset = file_->AllocateHeader();
    header.root = BuildTree(*file_, shape, recordHint, sorted, fill);
    const std::string bytes = header.Serialize();
    file_->Write(headerOffset, bytes.data(), bytes.size());
    directory_->Insert(EncodeCharacterKey(name, kTagNameLength), headerOffset);
    tags_.push_back(std::make_unique<IndexTag>(*file_, headerOffset, name, definition.kind));
    return *tags_.back();
}

}  // namespace fnrk::engine::cdx
