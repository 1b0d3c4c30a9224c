#pragma once

// The installation's folders, derived from the folder of the running program, and a few
// file-system helpers.

#include <cstdint>
#include <string>
#include <string_view>

namespace fnrk::session {

class AppClass {
  public:
    const std::string& ComputerName() const { return computerName_; }
    void ComputerName(std::string name) { computerName_ = std::move(name); }

    std::string ResourcePath() const;  // root + "\RESOURCES"
    std::string RootPath() const;
    std::string UserPrivatePath() const;  // always empty
    std::string OrgPath() const;          // root + "\RESOURCES\ORG"
    std::string TempPath() const;         // the shared façade's TempPath

    // Creates every missing folder of the path; true when a creation was attempted, or when the
    // path is the root of an existing drive.
    bool MakeAnyDir(std::string_view path) const;
    std::string StrSwap(std::string_view text, std::string_view searched,
                        std::string_view replacement) const;
    std::string GetWinDir() const;
    std::string TransfertInPath() const;   // root + "\Import", created when needed
    std::string TransfertOutPath() const;  // root + "\Export", created when needed
    std::string GetSpecialFolder(std::int32_t identifier) const;

  private:
    std::string FolderMadeOnDemand(std::string_view name) const;

    std::string computerName_;
};

// The process-wide instance.
AppClass& SharedAppClass();

}  // namespace fnrk::session
