#pragma once

// The index files open on one table and their tags, kept up to date as records change: each
// write, append, delete and recall moves the record's keys; pack and zap rebuild the files.

#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "engine/cdx/compound_index.hpp"
#include "engine/cursor/table_cursor.hpp"
#include "engine/dbf/upkeep_observer.hpp"
#include "engine/errors.hpp"
#include "engine/order/tag_keys.hpp"

namespace fnrk::engine::order {

// One tag as the engine uses it. Objects stay put while the table is open, even when their file
// is rebuilt.
struct OpenTag {
    cdx::CompoundIndex* file = nullptr;
    cdx::IndexTag* tag = nullptr;
    std::unique_ptr<TagKeys> keys;
};

struct TagRequest {
    std::string name;
    std::string keyExpression;
    std::string forExpression;
    bool unique = false;
    bool descending = false;
};

// Called with the records done and the records in all while a tag is built.
using BuildProgress = std::function<void(std::uint32_t done, std::uint32_t total)>;

class TableIndexes final : public dbf::UpkeepObserver {
  public:
    TableIndexes(cursor::TableCursor& table, const expr::DateSettings& dates);
    ~TableIndexes() override;
    TableIndexes(const TableIndexes&) = delete;
    TableIndexes& operator=(const TableIndexes&) = delete;

    // The index file that the table's header flag names: same stem, ".cdx".
    std::filesystem::path StructuralPath() const;
    // Opens the structural index when the table's header says it has one.
    [[nodiscard]] Status OpenStructural(std::string& message);
    // Opens an index file; its tags join tags(). AE_INDEX_ALREADY_OPEN when it is open.
    [[nodiscard]] Status OpenFile(const std::filesystem::path& path, std::string& message);
    // Closes the file that holds `tag`, and with it all of that file's tags.
    void CloseFileOf(const OpenTag* tag);
    // Builds a tag (replacing one of the same name) in an index file, opening or creating it.
    // An empty path means the structural index, whose flag is then set in the table header.
    [[nodiscard]] Status CreateTag(std::filesystem::path path, const TagRequest& request,
                                   std::string& message, OpenTag*& created);
    // Rebuilds every open index file from the records.
    [[nodiscard]] Status Reindex(std::string& message);
    void SetProgress(BuildProgress progress) { progress_ = std::move(progress); }

    cursor::TableCursor& table() { return table_; }
    const std::vector<std::unique_ptr<OpenTag>>& tags() const { return tags_; }
    // Told of every record write after the tags are kept up to date (the optimized filter).
    using WriteListener = std::function<void(std::uint32_t record, std::string_view bytes)>;
    void SetWriteListener(WriteListener listener) { listener_ = std::move(listener); }
    OpenTag* FindTag(std::string_view name) const;
    // Joins tags that other processes added to a shared index file since it was last read.
    void RefreshTags();
    // Moves when another process changed a shared index file (looked at without the lock), or
    // when index files were opened, closed or rebuilt here.
    struct ChangeStampValue {
        std::uint64_t files = 0;
        std::uint64_t generations = 0;
        bool operator==(const ChangeStampValue&) const = default;
    };
    ChangeStampValue ChangeStamp();

    // Structure and contents of every tag; one sentence per problem.
    std::vector<std::string> Check();

    void RecordWritten(std::uint32_t record, dbf::RecordChange change, std::string_view oldRecord,
                       std::string_view newRecord) override;
    void BlankAppended(std::uint32_t record) override;
    [[nodiscard]] Status WritePending() override;
    [[nodiscard]] Status BuildBeside(const std::string& suffix, std::string& message) override;
    [[nodiscard]] Status PlaceBeside(std::string& message) override;
    void DropBeside() override;
    void TableZapped() override;

  private:
    struct File {
        std::unique_ptr<cdx::CompoundIndex> index;
        std::filesystem::path path;
        // The file as this process knew it when the blank record `record` was appended.
        struct BlankStamp {
            std::uint32_t record = 0;
            const cdx::IndexFile* file = nullptr;
            std::uint64_t generation = 0;
        } blank;
        // No other process changed the file since the blank record `record` was appended, so no
        // tag can hold that blank's keys. Asked under the file's lock, which looked for changes.
        bool UnchangedSinceBlank(std::uint32_t record) const {
            return blank.record == record && blank.file == &index->file() &&
                   blank.generation == index->file().generation();
        }
    };
    File* FileAt(const std::filesystem::path& path);
    // The tags of one index file (in this order) and their compiled keys.
    struct Build {
        std::vector<TagRequest> requests;
        std::vector<std::unique_ptr<TagKeys>> keys;
    };
    // Writes `file` anew with these tags (in this order) built from the records.
    void Rebuild(File& file, const std::vector<TagRequest>& requests);
    std::vector<std::unique_ptr<TagKeys>> CompileKeys(
        const std::vector<TagRequest>& requests) const;
    // Writes an index file at `path` holding the tags of `build`, built from the records.
    void WriteIndex(const std::filesystem::path& path, const Build& build);
    // Closes `file` and takes its tags out of tags(), by name, to be given back by Reopen.
    std::vector<std::pair<std::string, std::unique_ptr<OpenTag>>> CloseForRebuild(File& file);
    void Reopen(File& file, Build& build,
                std::vector<std::pair<std::string, std::unique_ptr<OpenTag>>>& kept);
    cdx::TagEntries CollectEntries(TagKeys& keys, bool unique);
    std::vector<TagRequest> RequestsOf(const File& file) const;
    void AdoptTags(File& file);
    void AdoptTags(File& file, const std::vector<cdx::IndexTag*>& tags);
    void SetStructuralFlag();

    cursor::TableCursor& table_;
    const expr::DateSettings& dates_;
    std::vector<std::unique_ptr<File>> files_;
    std::vector<std::unique_ptr<OpenTag>> tags_;
    BuildProgress progress_;
    WriteListener listener_;
    std::string oldKey_, newKey_;    // scratch of RecordWritten, kept to spare allocations
    std::uint64_t fileChanges_ = 0;  // files opened, closed or rebuilt
    // Index files written beside their own (name + suffix) and waiting to take its place.
    std::vector<std::pair<File*, Build>> beside_;
    std::string besideSuffix_;
};

}  // namespace fnrk::engine::order
