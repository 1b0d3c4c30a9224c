#pragma once

// CodaFolders: the company's CODA (bank statement) folders, in network form, as handed to
// other programs. Settings are items of the group value "CODA_PARAMFILE": a switch item
// ("TRUE" in any case turns it on) and a folder item per folder. With `escape`, every "\" of
// the answer is doubled so that it can stand inside a JSON string.

#include <string>

#include "intake/company_facts.hpp"

namespace fnrk::intake {

class CodaFolders {
  public:
    explicit CodaFolders(CompanyFacts& company) : company_(company) {}

    // "WITHDEFAULT" / "DEFAULT"; the company folder + "CODA" when not configured.
    std::string DefaultFolder(bool escape);
    // "PROCESSCAN" / "PROCESPDF"; the company folder + "CODA" + "PDF" when not configured.
    std::string PdfFolder(bool escape);
    // "PROCES" / "PROCESPATH"; empty when not configured.
    std::string ProcessedFolder(bool escape);

  private:
    std::string Folder(std::string_view switchKey, std::string_view folderKey,
                       const std::string& fallback, bool escape);

    CompanyFacts& company_;
};

}  // namespace fnrk::intake
