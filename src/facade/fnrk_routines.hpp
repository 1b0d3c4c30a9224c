#pragma once

// FnrkRoutines: the one class the calling applications drive. It holds the caller's session
// settings and hands them to the shared session objects, keeps the library's table registry in
// step with the caller's, and forwards every service through the wrapper protocol (Wrapped).
// The services themselves are reached by name through the member table (member_table.hpp).

#include <array>
#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <type_traits>

#include "facade/facade_error.hpp"
#include "facade/shared_session.hpp"
#include "facade/variant.hpp"
#include "facade/variant_object.hpp"
#include "intake/intake_kind.hpp"
#include "tables/ads_class.hpp"

namespace fnrk::einvoice {
class clsUBL;
class TableInvoiceLookups;
}  // namespace fnrk::einvoice

namespace fnrk::intake {
class IntakeFolders;
}  // namespace fnrk::intake

namespace fnrk::facade {

class FnrkRoutines {
  public:
    FnrkRoutines();
    ~FnrkRoutines();
    FnrkRoutines(const FnrkRoutines&) = delete;
    FnrkRoutines& operator=(const FnrkRoutines&) = delete;

    // ===== session properties
    const std::string& TempPath() const { return tempPath_; }
    void TempPath(std::string value) { tempPath_ = std::move(value); }
    const std::string& OrgPath() const { return orgPath_; }
    void OrgPath(std::string value) { orgPath_ = std::move(value); }
    const std::string& UserDbfPath() const { return userDbfPath_; }
    void UserDbfPath(std::string value) { userDbfPath_ = std::move(value); }
    const std::string& language() const { return language_; }
    // Also sets the process-wide message language.
    void language(std::string value);
    bool TestMode() const { return testMode_; }
    void TestMode(bool value) { testMode_ = value; }
    const std::string& INIfile() const { return iniFile_; }
    void INIfile(std::string value) { iniFile_ = std::move(value); }
    const std::shared_ptr<VariantObject>& ScreenFont() const { return screenFont_; }
    // The value must be a font object (type mismatch otherwise); it is kept by reference.
    void ScreenFont(const Variant& value);
    bool IsFiduc() const { return isFiduc_; }
    void IsFiduc(bool value) { isFiduc_ = value; }
    const std::string& ProtectedBy() const { return protectedBy_; }
    // Also handed to the company-parameter object.
    void ProtectedBy(std::string value);
    bool isNewVoucher() const { return isNewVoucher_; }
    void isNewVoucher(bool value) { isNewVoucher_ = value; }
    const std::string& GetDecimalSpecifier() const { return decimalSpecifier_; }
    void GetDecimalSpecifier(std::string value) { decimalSpecifier_ = std::move(value); }
    const std::string& GetThousandSpecifier() const { return thousandSpecifier_; }
    void GetThousandSpecifier(std::string value) { thousandSpecifier_ = std::move(value); }
    const std::string& LastNewsBrowser() const { return lastNewsBrowser_; }
    void LastNewsBrowser(std::string value) { lastNewsBrowser_ = std::move(value); }

    // The current user. Setting it makes a new `user` from the "language", "Name", "Password"
    // and "Rights" of the object given (read by name) and makes it the shared current user.
    const std::shared_ptr<VariantObject>& USER_Class() const { return user_; }
    void USER_Class(const Variant& value);

    // Whether the host has a network connection up.
    static bool ConnexionInternetActive();

    // Kept by the shared company-parameter object; setting the folder or the short name also
    // points the table access at the company's tables.
    static std::int16_t CurrentBYNum();
    static void CurrentBYNum(std::int16_t value);
    static std::string pathName();
    static void pathName(std::string value);
    static std::string socShortName();
    static void socShortName(std::string value);

    // ===== lifecycle
    // A list of at least eleven values; shorter lists do nothing.
    void Initialize(std::span<const Variant> values);
    bool init(const Variant& unused = Variant());
    // Unknown names are ignored.
    void InitializeProperty(std::string_view name, const Variant& value);
    void InitializeDLL();
    void ParamActivate();
    void ReinitializeColAdsTable(const Variant& callerRegistry);
    void DBDisconnect();

    bool Initialized() const { return initialized_; }
    bool InitializedByCaller() const { return initializedByCaller_; }
    const std::string& SavedAlias() const { return savedAlias_; }
    const std::string& Position12Text() const { return SharedSession().backend.position12Text; }

    // The library's table registry (shared by every instance).
    static TableRegistry& Registry() { return SharedSession().registry; }
    // Adds an entry under the registry's rules; adding "PARAM" runs ParamActivate.
    void AddRegistryEntry(const AdsPropertyClass& entry);

    // ===== wrapper protocol of the services
    // Brings the registry level with the caller's, runs `call`, and makes the alias that was
    // current before it current again when it is still open. An error of `call` reaches the
    // caller as a FacadeError (a helper's own message kept), and the alias is then not restored.
    template <typename Call>
    auto Wrapped(const Variant& callerRegistry, Call&& call) -> std::invoke_result_t<Call> {
        // Taken before the registry is rebuilt: adding "PARAM" makes "PARAM" current.
        const std::string saved = Tables().GetCurrentAlias();
        savedAlias_ = saved;
        ReinitializeColAdsTable(callerRegistry);
        if constexpr (std::is_void_v<std::invoke_result_t<Call>>) {
            RunHelper(call);
            RestoreAlias(saved);
        } else {
            auto result = RunHelper(call);
            RestoreAlias(saved);
            return result;
        }
    }

    // ===== state of the families that keep a document or a collection between calls
    // The invoice under construction: one writer per façade, made on first use; its look-ups
    // read the company's tables through the shared table access.
    einvoice::clsUBL& UblWriter();
    // The asset collection made by AssetClass_Init; error 91 before it.
    VariantCollection& Assets();
    void NewAssets();
    // The incoming files of a kind (SODA, EFFF or CARO): one per kind for the whole session,
    // made on first use, remembering the year folder last scanned and the files found there.
    intake::IntakeFolders& IntakeFoldersOf(intake::IntakeKind kind);

    static tables::AdsClass& Tables();

  private:
    template <typename Call>
    static auto RunHelper(Call& call) -> std::invoke_result_t<Call> {
        try {
            return call();
        } catch (const FacadeError&) {
            throw;
        } catch (const std::exception& error) {
            throw FacadeError(kErrInvalidCall, error.what());
        }
    }
    static void RestoreAlias(const std::string& alias);
    void ApplyInitializePosition(std::size_t position, const Variant& value);
    void RefillRegistry(const std::vector<AdsPropertyClass>& entries);
    // A parameter table without book years, where the configuration asks for it, is shown.
    static void WarnOfDamagedParamTable();

    std::string tempPath_;
    std::string orgPath_;
    std::string userDbfPath_;
    std::string language_;
    bool testMode_ = false;
    std::string iniFile_;
    std::shared_ptr<VariantObject> screenFont_;
    bool isFiduc_ = false;
    std::string protectedBy_;
    bool isNewVoucher_ = false;
    std::string decimalSpecifier_;
    std::string thousandSpecifier_;
    std::shared_ptr<VariantObject> user_;
    bool initialized_ = false;
    bool initializedByCaller_ = false;
    std::string savedAlias_;
    std::string lastNewsBrowser_;

    std::unique_ptr<einvoice::TableInvoiceLookups> ublLookups_;
    std::unique_ptr<einvoice::clsUBL> ubl_;
    std::shared_ptr<VariantCollection> assets_;
    std::array<std::unique_ptr<intake::IntakeFolders>, 3> intakeFolders_;
};

}  // namespace fnrk::facade
