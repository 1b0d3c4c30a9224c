#include "engine/order/table_indexes.hpp"

#include <strings.h>
#include <algorithm>
#include <optional>
#include <system_error>

#include "engine/cdx/tag_check.hpp"
#include "engine/io/native_file.hpp"

namespace fnrk::engine::order {

namespace {

constexpr std::uint64_t kStructuralFlagOffset = 28;

// The status of the exception being handled, with its text in `message`.
Status FailureStatus(std::string& message) {
    try {
        throw;
    } catch (const expr::ExpressionError& error) {
        message = error.what();
        return AE_INVALID_EXPRESSION;
    } catch (const std::invalid_argument& error) {
        message = error.what();
        return AE_INVALID_INDEX_NAME;
    } catch (const std::system_error& error) {
        message = error.what();
        return AE_PERMISSION_DENIED;
    } catch (const std::exception& error) {
        message = error.what();
        return AE_CORRUPT_INDEX;
    }
}

bool SameName(std::string_view a, std::string_view b) {
    return a.size() == b.size() && strncasecmp(a.data(), b.data(), a.size()) == 0;
}

}  // namespace

TableIndexes::TableIndexes(cursor::TableCursor& table, const expr::DateSettings& dates)
    : table_(table), dates_(dates) {
    table_.file().SetObserver(this);
}

TableIndexes::~TableIndexes() {
    table_.file().SetObserver(nullptr);
}

std::filesystem::path TableIndexes::StructuralPath() const {
    std::filesystem::path path = table_.file().path();
    const std::string extension = path.extension().string();
    const bool lower = !extension.empty() && extension[1] >= 'a' && extension[1] <= 'z';
    return path.replace_extension(lower ? ".cdx" : ".CDX");
}

Status TableIndexes::OpenStructural(std::string& message) {
    if ((table_.header().flags & dbf::kFlagStructuralIndex) == 0) return AE_SUCCESS;
    return OpenFile(StructuralPath(), message);
}

TableIndexes::File* TableIndexes::FileAt(const std::filesystem::path& path) {
    for (auto& file : files_)
        if (std::filesystem::equivalent(file->path, path)) return file.get();
    return nullptr;
}

Status TableIndexes::OpenFile(const std::filesystem::path& path, std::string& message) {
    if (!std::filesystem::exists(path)) {
        message = "index file " + path.string() + " not found";
        return AE_FILE_NOT_FOUND;
    }
    if (FileAt(path) != nullptr) return AE_INDEX_ALREADY_OPEN;
    const dbf::TableFile& table = table_.file();
    try {
        auto file = std::make_unique<File>();
        file->path = path;
        file->index = cdx::CompoundIndex::Open(
            path,
            {.readOnly = table.readOnly(), .shared = !table.exclusive(), .cipher = table.cipher()},
            [&](const std::string& expression) {
                return KeyKindOfExpression(expression, table.header());
            });
        AdoptTags(*file);
        files_.push_back(std::move(file));
        ++fileChanges_;
        return AE_SUCCESS;
    } catch (const std::exception&) {
        const Status status = FailureStatus(message);
        message = path.string() + ": " + message;
        return status;
    }
}

void TableIndexes::AdoptTags(File& file) {
    std::vector<cdx::IndexTag*> tags;
    for (const auto& tag : file.index->tags()) tags.push_back(tag.get());
    AdoptTags(file, tags);
}

void TableIndexes::AdoptTags(File& file, const std::vector<cdx::IndexTag*>& tags) {
    for (cdx::IndexTag* tag : tags) {
        auto open = std::make_unique<OpenTag>();
        open->file = file.index.get();
        open->tag = tag;
        try {
            open->keys = std::make_unique<TagKeys>(
                tag->header().keyExpression, tag->header().forExpression, table_.header(), dates_);
        } catch (const std::exception&) {
            // A tag whose expression we cannot evaluate still reads; it is not kept up to date
            // and Check reports it.
        }
        tags_.push_back(std::move(open));
    }
}

void TableIndexes::CloseFileOf(const OpenTag* tag) {
    if (tag == nullptr) return;
    cdx::CompoundIndex* index = tag->file;
    std::erase_if(tags_, [&](const auto& open) { return open->file == index; });
    std::erase_if(files_, [&](const auto& file) { return file->index.get() == index; });
    ++fileChanges_;
}

OpenTag* TableIndexes::FindTag(std::string_view name) const {
    for (const auto& open : tags_)
        if (SameName(open->tag->name(), name)) return open.get();
    return nullptr;
}

cdx::TagEntries TableIndexes::CollectEntries(TagKeys& keys, bool unique) {
    dbf::TableFile& table = table_.file();
    table.RefreshRecordCount();
    const std::uint32_t count = table.recordCount();
    const std::size_t recordLength = table.header().recordLength;
    cdx::TagEntries entries(keys.keyLength());
    entries.Reserve(count);
    std::string key(keys.keyLength(), '\0');
    for (std::uint32_t record = 1; record <= count; ++record) {
        const char* bytes = table.ReadRecord(record);
        if (bytes == nullptr)
            throw std::runtime_error("cannot read record " + std::to_string(record));
        if (keys.WriteKey({bytes, recordLength}, record, key.data())) entries.Add(key, record);
        if (progress_ && record % 65536 == 0) progress_(record, count);
    }
    if (progress_) progress_(count, count);
    entries.Sort(unique);
    return entries;
}

std::vector<TagRequest> TableIndexes::RequestsOf(const File& file) const {
    std::vector<TagRequest> requests;
    for (const auto& tag : file.index->tags()) {
        const cdx::TagHeader& header = tag->header();
        requests.push_back({tag->name(), header.keyExpression, header.forExpression,
                            header.unique(), header.descending});
    }
    return requests;
}

std::vector<std::unique_ptr<TagKeys>> TableIndexes::CompileKeys(
    const std::vector<TagRequest>& requests) const {
    std::vector<std::unique_ptr<TagKeys>> keys;
    for (const auto& request : requests)
        keys.push_back(std::make_unique<TagKeys>(request.keyExpression, request.forExpression,
                                                 table_.header(), dates_));
    return keys;
}

void TableIndexes::WriteIndex(const std::filesystem::path& path, const Build& build) {
    auto rebuilt = cdx::CompoundIndex::Create(path, table_.file().cipher());
    const std::uint32_t records = table_.file().recordCount();
    {
        // Under a guard the new file's pages go out in a few large writes.
        cdx::IndexFile::UpdateGuard guard(rebuilt->file());
        for (std::size_t i = 0; i < build.requests.size(); ++i) {
            const TagRequest& request = build.requests[i];
            TagKeys& keys = *build.keys[i];
            const cdx::TagDefinition definition{
                request.name,     request.keyExpression, request.forExpression, keys.kind(),
                keys.keyLength(), request.unique,        request.descending};
            rebuilt->AddTag(definition, CollectEntries(keys, request.unique), records);
        }
    }
    rebuilt->file().WritePending();
}

std::vector<std::pair<std::string, std::unique_ptr<OpenTag>>> TableIndexes::CloseForRebuild(
    File& file) {
    // Names are taken now: the old tags go with the old file.
    std::vector<std::pair<std::string, std::unique_ptr<OpenTag>>> kept;
    for (auto& open : tags_)
        if (open->file == file.index.get()) kept.emplace_back(open->tag->name(), std::move(open));
    std::erase(tags_, nullptr);
    ++fileChanges_;
    file.index.reset();
    return kept;
}

void TableIndexes::Reopen(File& file, Build& build,
                          std::vector<std::pair<std::string, std::unique_ptr<OpenTag>>>& kept) {
    const bool shared = !table_.file().exclusive();
    file.index = cdx::CompoundIndex::Open(
        file.path, {.readOnly = false, .shared = shared, .cipher = table_.file().cipher()},
        [&](const std::string& expression) {
            return KeyKindOfExpression(expression, table_.header());
        });
    // Tags keep their OpenTag objects (orders point at them); new tags get new ones.
    for (std::size_t i = 0; i < build.requests.size(); ++i) {
        cdx::IndexTag* tag = file.index->FindTag(build.requests[i].name);
        auto same = std::find_if(kept.begin(), kept.end(), [&](const auto& entry) {
            return entry.second && SameName(entry.first, build.requests[i].name);
        });
        std::unique_ptr<OpenTag> open =
            same != kept.end() ? std::move(same->second) : std::make_unique<OpenTag>();
        open->file = file.index.get();
        open->tag = tag;
        open->keys = std::move(build.keys[i]);
        tags_.push_back(std::move(open));
    }
}

void TableIndexes::Rebuild(File& file, const std::vector<TagRequest>& requests) {
    // Compile everything first: a bad expression must leave the file as it was.
    Build build{requests, CompileKeys(requests)};
    auto kept = CloseForRebuild(file);
    WriteIndex(file.path, build);
    Reopen(file, build, kept);
}

Status TableIndexes::CreateTag(std::filesystem::path path, const TagRequest& request,
                               std::string& message, OpenTag*& created) {
    created = nullptr;
    const bool structural = path.empty();
    if (structural) path = StructuralPath();
    if (table_.file().readOnly()) return AE_TABLE_READONLY;
    // The current record's pending changes belong in the keys built now.
    if (Status status = table_.Commit(); status != AE_SUCCESS) return status;
    try {
        File* file = FileAt(path);
        if (file == nullptr && std::filesystem::exists(path)) {
            if (Status status = OpenFile(path, message); status != AE_SUCCESS) return status;
            file = FileAt(path);
        }
        if (file == nullptr) {
            auto fresh = std::make_unique<File>();
            fresh->path = path;
            const crypt::FileCipher* cipher = table_.file().cipher();
            cdx::CompoundIndex::Create(path, cipher);
            fresh->index = cdx::CompoundIndex::Open(
                path, {.shared = !table_.file().exclusive(), .cipher = cipher});
            files_.push_back(std::move(fresh));
            ++fileChanges_;
            file = files_.back().get();
        }
        std::vector<TagRequest> requests = RequestsOf(*file);
        auto same = std::find_if(requests.begin(), requests.end(), [&](const TagRequest& r) {
            return SameName(r.name, request.name);
        });
        if (same != requests.end()) {
            *same = request;
            Rebuild(*file, requests);
        } else {
            // A new tag goes at the end of the file without touching the others.
            TagKeys keys(request.keyExpression, request.forExpression, table_.header(), dates_);
            const cdx::TagDefinition definition{
                request.name,     request.keyExpression, request.forExpression, keys.kind(),
                keys.keyLength(), request.unique,        request.descending};
            auto entries = CollectEntries(keys, request.unique);
            cdx::IndexFile::UpdateGuard guard(file->index->file());
            cdx::IndexTag& tag =
                file->index->AddTag(definition, entries, table_.file().recordCount());
            auto open = std::make_unique<OpenTag>();
            open->file = file->index.get();
            open->tag = &tag;
            open->keys = std::make_unique<TagKeys>(std::move(keys));
            tags_.push_back(std::move(open));
        }
        if (structural) SetStructuralFlag();
        created = FindTag(request.name);
        return AE_SUCCESS;
    } catch (const std::exception&) {
        return FailureStatus(message);
    }
}

void TableIndexes::SetStructuralFlag() {
    if (table_.header().flags & dbf::kFlagStructuralIndex) return;
    // Only this byte changes; the table file writes its header prefix without it.
    io::NativeFile dbf = io::NativeFile::Open(table_.file().path(), false);
    char flags = 0;
    if (dbf.ReadAt(kStructuralFlagOffset, &flags, 1) != 1) return;
    flags = static_cast<char>(flags | dbf::kFlagStructuralIndex);
    dbf.WriteAt(kStructuralFlagOffset, &flags, 1);
}

Status TableIndexes::Reindex(std::string& message) {
    if (Status status = table_.Commit(); status != AE_SUCCESS) return status;
    try {
        for (auto& file : files_) Rebuild(*file, RequestsOf(*file));
        return AE_SUCCESS;
    } catch (const std::exception&) {
        return FailureStatus(message);
    }
}

std::vector<std::string> TableIndexes::Check() {
    std::vector<std::string> problems;
    dbf::TableFile& table = table_.file();
    table.RefreshRecordCount();
    const std::size_t recordLength = table.header().recordLength;
    for (const auto& file : files_) {
        const std::string where = "index " + file->path.filename().string() + ": ";
        try {
            cdx::IndexFile::ReadGuard guard(file->index->file());
            // The directory is a tag without a name: its problems read "tag : ...".
            for (const std::string& problem : cdx::CheckTagStructure(file->index->directory()))
                problems.push_back(where + "tag directory" + problem.substr(problem.find(':')));
            // A new file is its directory's header and root; tags add at least as much again.
            const std::uint64_t size = file->index->file().size();
            if (file->index->tags().empty() && size > cdx::kHeaderSize + cdx::kNodeSize)
                problems.push_back(where + "the tag directory lists no tag, but the file holds " +
                                   std::to_string(size) + " bytes");
        } catch (const std::exception& error) {
            problems.push_back(where + error.what());
        }
    }
    for (const auto& open : tags_) {
        try {
            cdx::IndexFile::ReadGuard guard(open->file->file());
            auto structure = cdx::CheckTagStructure(*open->tag);
            problems.insert(problems.end(), structure.begin(), structure.end());
            if (!structure.empty()) continue;
            if (!open->keys) {
                problems.push_back("tag " + open->tag->name() + ": key expression \"" +
                                   open->tag->header().keyExpression + "\" cannot be evaluated");
                continue;
            }
            auto contents =
                cdx::CheckTagContents(*open->tag, table.recordCount(), [&](std::uint32_t record) {
                    const char* bytes = table.ReadRecord(record);
                    return bytes == nullptr ? std::nullopt
                                            : open->keys->KeyOf({bytes, recordLength}, record);
                });
            problems.insert(problems.end(), contents.begin(), contents.end());
        } catch (const std::exception& error) {
            problems.push_back("tag " + open->tag->name() + ": " + error.what());
        }
    }
    return problems;
}

TableIndexes::ChangeStampValue TableIndexes::ChangeStamp() {
    ChangeStampValue stamp{fileChanges_, 0};
    for (const auto& file : files_) {
        try {
            file->index->file().NoticeChanges();
        } catch (const std::exception&) {
            // The next guarded read of the file reports what is wrong with it.
        }
        stamp.generations += file->index->file().generation();
    }
    return stamp;
}

void TableIndexes::RefreshTags() {
    for (const auto& file : files_) {
        if (!file->index->file().shared()) continue;
        try {
            cdx::IndexFile::ReadGuard guard(file->index->file());
            AdoptTags(*file, file->index->TagsAddedElsewhere());
        } catch (const std::exception&) {
            // A directory that cannot be read now leaves the known tags as they are.
        }
    }
}

void TableIndexes::RecordWritten(std::uint32_t record, dbf::RecordChange change,
                                 std::string_view oldRecord, std::string_view newRecord) {
    // One lock per index file for all of its tags: other processes see the whole change at once.
    for (const auto& file : files_) {
        std::optional<cdx::IndexFile::UpdateGuard> guard;
        if (file->index->file().shared()) {
            // A tag that another process added is kept up to date from now on.
            guard.emplace(file->index->file());
            AdoptTags(*file, file->index->TagsAddedElsewhere());
        }
        const bool blankKeysPossible =
            change == dbf::RecordChange::BlankFilled && !file->UnchangedSinceBlank(record);
        for (const auto& open : tags_) {
            if (open->file != file->index.get() || !open->keys) continue;
            oldKey_.resize(open->keys->keyLength());
            newKey_.resize(open->keys->keyLength());
            // A filled blank's keys are only in a tag that another process built meanwhile.
            const bool hadKey = (change == dbf::RecordChange::Rewritten || blankKeysPossible) &&
                                open->keys->WriteKey(oldRecord, record, oldKey_.data());
            const bool hasKey = open->keys->WriteKey(newRecord, record, newKey_.data());
            const bool sameKey = hadKey == hasKey && (!hasKey || oldKey_ == newKey_);
            // A filled blank's keys are inserted even when unchanged: most tags never had them.
            // Removing a key that is not there, or inserting one that is, changes nothing.
            const bool removeOld = hadKey && !sameKey;
            const bool insertNew = hasKey && (change != dbf::RecordChange::Rewritten || !sameKey);
            if (!removeOld && !insertNew) continue;
            if (!guard) guard.emplace(file->index->file());
            if (removeOld) open->tag->Remove(oldKey_, record);
            if (insertNew) open->tag->Insert(newKey_, record);
        }
    }
    if (listener_) listener_(record, newRecord);
}

Status TableIndexes::WritePending() {
    try {
        for (const auto& file : files_) file->index->file().WritePending();
        return AE_SUCCESS;
    } catch (const std::exception&) {
        std::string message;
        return FailureStatus(message);
    }
}

void TableIndexes::BlankAppended(std::uint32_t record) {
    // The generation known now, without looking for changes: one made since is seen as a change.
    for (const auto& file : files_)
        file->blank = {record, &file->index->file(), file->index->file().generation()};
}

// The upkeep notices cannot answer: a tag that fails to rebuild after a pack or zap is found
// damaged by the next navigation, which reports AE_CORRUPT_INDEX.
Status TableIndexes::BuildBeside(const std::string& suffix, std::string& message) {
    besideSuffix_ = suffix;
    try {
        for (auto& file : files_) {
            Build build{RequestsOf(*file), {}};
            build.keys = CompileKeys(build.requests);
            beside_.emplace_back(file.get(), std::move(build));
            WriteIndex(file->path.string() + suffix, beside_.back().second);
        }
        return AE_SUCCESS;
    } catch (const std::exception&) {
        const Status status = FailureStatus(message);
        DropBeside();
        return status;
    }
}

Status TableIndexes::PlaceBeside(std::string& message) {
    try {
        for (auto& [file, build] : beside_) {
            const std::filesystem::path built = file->path.string() + besideSuffix_;
            std::filesystem::permissions(built, std::filesystem::status(file->path).permissions());
            // Closed first: Windows does not rename over a file that is open.
            auto kept = CloseForRebuild(*file);
            std::error_code error;
            std::filesystem::rename(built, file->path, error);
            Reopen(*file, build, kept);  // the new file, or the old one that could not be replaced
            if (error)
                throw std::filesystem::filesystem_error("cannot replace", built, file->path, error);
        }
        beside_.clear();
        return AE_SUCCESS;
    } catch (const std::exception&) {
        const Status status = FailureStatus(message);
        DropBeside();
        return status;
    }
}

void TableIndexes::DropBeside() {
    for (auto& entry : beside_) {
        std::error_code ignored;
        std::filesystem::remove(entry.first->path.string() + besideSuffix_, ignored);
    }
    beside_.clear();
}

void TableIndexes::TableZapped() {
    std::string message;
    IgnoreStatus(Reindex(message));
}

}  // namespace fnrk::engine::order
