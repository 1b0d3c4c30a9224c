#include "intake/intake_folders.hpp"

#include <filesystem>
#include <vector>

#include "intake/file_period.hpp"
#include "intake/intake_settings.hpp"
#include "intake/period_mapping.hpp"
#include "intake/replacing_move.hpp"
#include "platform/file_system.hpp"
#include "platform/paths.hpp"
#include "platform/settings_store.hpp"
#include "platform/text.hpp"

namespace fnrk::intake {

namespace fs = std::filesystem;
using platform::kPathSep;

namespace {

constexpr std::string_view kSodaFromMark = "SODA_FROM_";
constexpr std::string_view kXmlMark = ".XML";
constexpr std::string_view kCaroFolder = "CARO";
constexpr std::string_view kPdfFolder = "pdf";
constexpr std::size_t kYearNameLength = 4;

bool Contains(std::string_view name, std::string_view upperMark) {
    return platform::UpperCase(name).find(upperMark) != std::string::npos;
}

// The status folder a status files into; empty for a status that leaves the file in place.
std::string_view StatusFolder(std::int16_t status) {
    switch (status) {
        case kStatusProcessed:
            return "PROCESSED";
        case kStatusError:
            return "ERROR";
        case kStatusErrorAna:
        case kStatusWarning:
            return "WARNING";
        default:
            return {};
    }
}

// The name of the PDF of a file: every "." + extension (any case) becomes ".pdf"; a name
// without an extension gets ".pdf" added.
std::string PdfName(const std::string& name) {
    const std::string extension = fs::path(name).extension().string();
    if (extension.size() <= 1) return name + ".pdf";
    const std::string upperName = platform::UpperCase(name);
    const std::string upperExtension = platform::UpperCase(extension);
    std::string result;
    std::size_t from = 0;
    for (std::size_t at = upperName.find(upperExtension); at != std::string::npos;
         at = upperName.find(upperExtension, from)) {
        result += name.substr(from, at - from) + ".pdf";
        from = at + extension.size();
    }
    return result + name.substr(from);
}

bool IsYearName(const std::string& name) {
    return name.size() == kYearNameLength &&
           name.find_first_not_of("0123456789") == std::string::npos;
}

// The year folder a waiting file belongs to and the folders between it and the file: the
// nearest folder above the file named by four digits; without one, the folder where the kind's
// files wait is taken to lie directly in the year folder.
void SplitAtYearFolder(const fs::path& folder, WaitingPlace waits, fs::path& yearFolder,
                       fs::path& between) {
    for (fs::path up = folder; up.has_relative_path(); up = up.parent_path()) {
        if (IsYearName(up.filename().string())) {
            yearFolder = up;
            between = folder.lexically_relative(up);
            if (between == ".") between.clear();
            return;
        }
        if (up == up.parent_path()) break;
    }
    if (waits == WaitingPlace::YearFolder) {
        yearFolder = folder;
        between.clear();
    } else {
        yearFolder = folder.parent_path();
        between = folder.filename();
    }
}

bool MoveInto(const std::string& source, const fs::path& targetFolder) {
    std::error_code error;
    fs::create_directories(platform::FileSystemPath(targetFolder.string()), error);
    if (error) return false;
    return ReplacingMove(source, (targetFolder / fs::path(source).filename()).string());
}

}  // namespace

void IntakeFolders::Init() {
    yearFolder_.clear();
    files_.Reset();
}

std::string IntakeFolders::YearFolder(CompanyFacts& company, std::int32_t Year) const {
    IntakeSettings settings(company, kind_);
    return platform::NativePath(settings.GetPath() + company.ShortName() + kPathSep +
                                std::to_string(Year) + kPathSep);
}

std::string IntakeFolders::GetFile(CompanyFacts& company, std::int32_t Year) {
    const std::string yearFolder = YearFolder(company, Year);
    if (yearFolder != yearFolder_) {
        yearFolder_ = yearFolder;
        Scan(company);
    } else if (files_.IsFresh()) {
        Scan(company);
    }
    for (const FileEntry& entry : files_.Entries()) {
        if (!entry.name.empty() && !entry.done) return entry.path;
    }
    return {};
}

void IntakeFolders::Scan(CompanyFacts& company) {
    files_.Reset();
    IntakeSettings settings(company, kind_);
    const bool moving = settings.GetMoveFile();
    const std::string lastFile = platform::NativePath(platform::Trim(settings.GetLastMovedFile()));
    // The folders where files wait, each as the part of its path after the year folder.
    std::vector<std::string> waitingFolders;
    switch (KeysOf(kind_).waits) {
        case WaitingPlace::SodaFromFolders:
            for (const std::string& folder : platform::SubFolderNames(yearFolder_)) {
                if (Contains(folder, kSodaFromMark)) waitingFolders.push_back(folder + kPathSep);
            }
            break;
        case WaitingPlace::YearFolder:
            waitingFolders.emplace_back();
            break;
        case WaitingPlace::CaroFolder:
            waitingFolders.push_back(std::string(kCaroFolder) + kPathSep);
            break;
    }
    for (const std::string& folder : waitingFolders) {
        const std::string prefix = yearFolder_ + folder;
        for (const std::string& name : platform::FileNames(prefix)) {
            if (Contains(name, kXmlMark)) files_.Add(name, prefix + name);
        }
        files_.SortByName();
        if (!moving && !lastFile.empty()) files_.MarkDoneUpTo(prefix, lastFile);
    }
}

bool IntakeFolders::FileInTheGoodBookyear(CompanyFacts& company, std::string_view FilePath,
                                          std::int32_t Year) const {
    IntakeSettings settings(company, kind_);
    const auto period =
        ReadFilePeriod(platform::NativePath(FilePath), kind_, settings.GetSocialPeriod());
    if (!period) return false;
    std::string periodNumber;
    std::string bookYear;
    return DateToPeriode(company, std::to_string(period->month), std::to_string(period->year),
                         periodNumber, bookYear) &&
           bookYear == std::to_string(Year);
}

bool IntakeFolders::UpdateFile(CompanyFacts& company, std::string_view FilePath,
                               std::int16_t Status, std::string_view pdfPath) {
    IntakeSettings settings(company, kind_);
    if (!settings.SetLastMovedFile(FilePath)) return false;
    const std::string file = platform::NativePath(FilePath);
    const std::string_view statusFolder = StatusFolder(Status);
    if (!platform::FileExists(file) || !settings.GetMoveFile() || statusFolder.empty()) return true;
    const fs::path folder = fs::path(file).parent_path();
    fs::path yearFolder;
    fs::path between;
    SplitAtYearFolder(folder, KeysOf(kind_).waits, yearFolder, between);
    const fs::path targetFolder = yearFolder / statusFolder / between;
    if (!MoveInto(file, targetFolder)) return false;
    if (platform::Trim(pdfPath).empty()) return true;
    const std::string pdf =
        (folder / kPdfFolder / PdfName(fs::path(file).filename().string())).string();
    return !platform::FileExists(pdf) || MoveInto(pdf, targetFolder / kPdfFolder);
}

std::string IntakeFolders::GetPdfFile(std::string_view fileName) {
    const fs::path file(platform::NativePath(fileName));
    const std::string pdf =
        (file.parent_path() / kPdfFolder / PdfName(file.filename().string())).string();
    return platform::FileExists(pdf) ? pdf : std::string();
}

std::string IntakeFolders::GetWarningPath() const {
    return yearFolder_ + "WARNING" + kPathSep;
}

std::string IntakeFolders::GetErrorPath() const {
    return yearFolder_ + "ERROR" + kPathSep;
}

std::string IntakeFolders::GetProcessedPath() const {
    return yearFolder_ + "PROCESSED" + kPathSep;
}

bool IntakeFolders::DownloadFiles(std::string& errorMessage) {
    if (kind_ != IntakeKind::Efff) {
        errorMessage = "Only EFFF files are downloaded";
        return false;
    }
    const std::string dropFolder = platform::Trim(platform::GetSetting("EFFF", "DownloadFolder"));
    if (dropFolder.empty()) {
        errorMessage =
            "No EFFF download is configured: set DownloadFolder in the EFFF section of the "
            "settings";
        return false;
    }
    if (yearFolder_.empty()) {
        errorMessage = "No EFFF year folder is known yet: look for the waiting files first";
        return false;
    }
    if (!platform::FolderExists(dropFolder)) {
        errorMessage = "The EFFF download folder " + dropFolder + " does not exist";
        return false;
    }
    const std::string source = platform::NativePath(dropFolder) + kPathSep;
    std::string failed;
    for (const std::string& name : platform::FileNames(source)) {
        if (Contains(name, kXmlMark) && !MoveInto(source + name, yearFolder_))
            failed += (failed.empty() ? "" : ", ") + name;
    }
    // The next look for a file scans again and finds what came in.
    files_.Reset();
    if (!failed.empty()) {
        errorMessage = "These EFFF files could not be fetched: " + failed;
        return false;
    }
    return true;
}

}  // namespace fnrk::intake
