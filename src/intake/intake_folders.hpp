#pragma once

// IntakeFolders: the files of one kind (SODA, EFFF or CARO) waiting in a company's intake tree,
// and their filing into the status folders once handled.
//
// The tree: the kind's base folder + the company's short name + the year + the separator is the
// year folder. SODA files wait in its sub-folders whose names contain "SODA_FROM_" (any case),
// EFFF files in the year folder itself, CARO files in its "CARO" sub-folder; a file is any whose
// upper-cased name contains ".XML". Handled files go to "PROCESSED", "ERROR" or "WARNING" under
// the year folder, keeping the part of their path between the year folder and their name; the PDF
// of a file lies in the "pdf" sub-folder of the file's folder and travels with it.
//
// The object keeps the year folder last scanned and the files found there, and lives as long as
// the caller's session (the façade keeps one per kind). Each method is the façade member of the
// same name after the kind word (SODAGetFile -> GetFile).

#include <cstdint>
#include <string>
#include <string_view>

#include "intake/company_facts.hpp"
#include "intake/file_list.hpp"
#include "intake/intake_kind.hpp"

namespace fnrk::intake {

class IntakeFolders {
  public:
    explicit IntakeFolders(IntakeKind kind) : kind_(kind) {}

    IntakeKind Kind() const { return kind_; }
    // Forgets the year folder and the files found.
    void Init();
    // The full path of the next waiting file of `Year` (a calendar year: the year folder's
    // name), or "". The year folder is scanned when it differs from the last one, or when the
    // last scan found nothing; a missing or unreadable folder finds nothing.
    std::string GetFile(CompanyFacts& company, std::int32_t Year);
    // The files found by the last scan.
    const FileList& Files() const { return files_; }
    // The year folder of `Year` for this kind, native, ending with the separator.
    std::string YearFolder(CompanyFacts& company, std::int32_t Year) const;

    // Whether the period of the file belongs to book year `Year` (a book-year number, as
    // DateToPeriode answers it). False when the file has no readable period.
    bool FileInTheGoodBookyear(CompanyFacts& company, std::string_view FilePath,
                               std::int32_t Year) const;

    // Records the file as the last moved one, then, when moving is on and the file exists,
    // moves it (and its PDF when `pdfPath` is not blank) to the status folder of `Status`:
    // 1 PROCESSED, 2 ERROR, 3 and 5 WARNING; other statuses leave it in place. A file already at
    // the target is replaced. False when the last file could not be recorded or a move failed;
    // a failed move leaves the file (and anything it would have replaced) where it was.
    [[nodiscard]] bool UpdateFile(CompanyFacts& company, std::string_view FilePath,
                                  std::int16_t Status, std::string_view pdfPath);

    // The PDF of an XML file (its folder + "pdf" + its name with ".pdf" for its extension) when
    // that file exists, else "".
    static std::string GetPdfFile(std::string_view fileName);

    // The remembered year folder followed by the status folder ("WARNING" + separator ...); the
    // bare status folder before any scan.
    std::string GetWarningPath() const;
    std::string GetErrorPath() const;
    std::string GetProcessedPath() const;

    // EFFF: moves the files that the configured transport holds into the year folder last
    // scanned. The transport is a deployment setting: a drop folder named by "DownloadFolder"
    // of the "EFFF" section of the settings store. False with `errorMessage` set when none is
    // configured, no year folder is known yet, or a file could not be moved.
    bool DownloadFiles(std::string& errorMessage);

  private:
    void Scan(CompanyFacts& company);

    IntakeKind kind_;
    std::string yearFolder_;
    FileList files_;
};

}  // namespace fnrk::intake
