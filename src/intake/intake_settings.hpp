#pragma once

// IntakeSettings: the company settings of one kind of incoming file (SODA, EFFF or CARO), each
// a company parameter or a sub-key of a group value. Each method is the façade member of the
// same name after the kind word (SODAGetPath -> GetPath). Setters answer false when the
// parameter could not be written.

#include <cstdint>
#include <string>
#include <string_view>

#include "intake/company_facts.hpp"
#include "intake/intake_kind.hpp"

namespace fnrk::intake {

class IntakeSettings {
  public:
    IntakeSettings(CompanyFacts& company, IntakeKind kind) : company_(company), kind_(kind) {}

    // "FORMAT" of "PAYROLMO" chooses between SODA and EFFF. For SODA any value but "EFFF"
    // (empty included) means SODA; for EFFF only "EFFF" does. CARO has no format switch and
    // answers false.
    bool GetIs();
    [[nodiscard]] bool SetIs(bool value);
    // "MOVE": any value but "0" (empty included) means handled files are moved.
    bool GetMoveFile();
    [[nodiscard]] bool SetMoveFile(bool value);
    std::string GetLastMovedFile();
    [[nodiscard]] bool SetLastMovedFile(std::string_view fileName);
    std::string GetWaitingAccount();
    [[nodiscard]] bool SetWaitingAccount(std::string_view value);
    // The base folder; stored trimmed, a non-empty value ending with a separator ("\\" or the
    // native one; the native one is added when it has neither).
    std::string GetPath();
    [[nodiscard]] bool SetPath(std::string_view value);
    // SODA: the social period (true) or the accounting period (false) gives a file's book year.
    bool GetSocialPeriod();
    [[nodiscard]] bool SetSocialPeriod(bool value);
    std::string GetAnaType();
    [[nodiscard]] bool SetAnaType(std::int32_t value);
    // EFFF: "SPLIT" and "DOWNLOAD" of "PAYROLMO".
    std::int32_t GetSplit();
    [[nodiscard]] bool SetSplit(std::int32_t value);
    std::string GetDownloadEFFF();
    [[nodiscard]] bool SetDownloadEFFF(std::string_view value);
    // CARO: the account of a fee type, a sub-key of the group value "CARO_FEE".
    std::string GetFeeAccount(std::string_view typeFee);
    [[nodiscard]] bool SetFeeAccount(std::string_view typeFee, std::string_view GlAccount);

  private:
    std::string GroupItem(std::string_view group, std::string_view key);
    bool SetGroupItem(std::string_view group, std::string_view key, std::string_view value);

    CompanyFacts& company_;
    IntakeKind kind_;
};

}  // namespace fnrk::intake
