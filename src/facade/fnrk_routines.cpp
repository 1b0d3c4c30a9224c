#include "facade/fnrk_routines.hpp"

#include "company/shared_company.hpp"
#include "einvoice/cls_ubl.hpp"
#include "einvoice/table_invoice_lookups.hpp"
#include "facade/user_object.hpp"
#include "intake/intake_folders.hpp"
#include "platform/network_state.hpp"
#include "platform/text.hpp"
#include "session/session_user.hpp"
#include "tables/shared_tables.hpp"
#include "users/shared_user.hpp"
#include "users/user_password.hpp"

namespace fnrk::facade {

FnrkRoutines::FnrkRoutines() = default;
FnrkRoutines::~FnrkRoutines() = default;

tables::AdsClass& FnrkRoutines::Tables() {
    return tables::SharedAdsClass();
}

void FnrkRoutines::language(std::string value) {
    language_ = std::move(value);
    session::SetMessageLanguage(language_);
}

void FnrkRoutines::ScreenFont(const Variant& value) {
    std::shared_ptr<VariantObject> font = value.ToObject();
    if (!IsFont(*font)) ThrowTypeMismatch(std::string(font->ClassName()) + " is not a font");
    screenFont_ = std::move(font);
}

void FnrkRoutines::ProtectedBy(std::string value) {
    protectedBy_ = std::move(value);
    company::SharedSocParamColClassApi().ProtectedBy(protectedBy_);
}

void FnrkRoutines::USER_Class(const Variant& value) {
    const std::shared_ptr<VariantObject> given = value.ToObject();
    // Read one by one, in this order, so that the first missing property is the one named. A
    // user object of the library's own keeps its password to itself.
    auto user = std::make_shared<UserObject>();
    user->person.language(given->GetProperty("language").ToString());
    user->person.Name(given->GetProperty("Name").ToString());
    if (const auto* own = dynamic_cast<const UserObject*>(given.get())) {
        users::SetUserPassword(user->person, users::UserPassword(own->person));
    } else {
        users::SetUserPassword(user->person, given->GetProperty("Password").ToString());
    }
    user->person.Rights(given->GetProperty("Rights").ToString());
    users::MakeCurrentUser(user->person);
    user_ = std::move(user);
}

bool FnrkRoutines::ConnexionInternetActive() {
    return platform::NetworkConnectionPresent();
}

std::int16_t FnrkRoutines::CurrentBYNum() {
    return company::SharedSocParamColClassApi().CurrentBYNum();
}

void FnrkRoutines::CurrentBYNum(std::int16_t value) {
    company::SharedSocParamColClassApi().CurrentBYNum(value);
}

std::string FnrkRoutines::pathName() {
    return company::SharedSocParamColClassApi().pathName();
}

void FnrkRoutines::pathName(std::string value) {
    company::SharedSocParamColClassApi().pathName(value);
    ApplyCompanyToTables();
}

std::string FnrkRoutines::socShortName() {
    return company::SharedSocParamColClassApi().socShortName();
}

void FnrkRoutines::socShortName(std::string value) {
    company::SharedSocParamColClassApi().socShortName(platform::Trim(value));
    ApplyCompanyToTables();
}

void FnrkRoutines::RestoreAlias(const std::string& alias) {
    if (!alias.empty() && Tables().IsAlias(alias)) Tables().ActivateAlias(alias);
}

einvoice::clsUBL& FnrkRoutines::UblWriter() {
    if (!ubl_) {
        ublLookups_ = std::make_unique<einvoice::TableInvoiceLookups>(Tables());
        ubl_ = std::make_unique<einvoice::clsUBL>(*ublLookups_);
    }
    return *ubl_;
}

VariantCollection& FnrkRoutines::Assets() {
    if (!assets_) {
        throw FacadeError(91,
                          "Object variable or With block variable not set: the asset "
                          "collection is made by AssetClass_Init");
    }
    return *assets_;
}

void FnrkRoutines::NewAssets() {
    assets_ = std::make_shared<VariantCollection>();
}

intake::IntakeFolders& FnrkRoutines::IntakeFoldersOf(intake::IntakeKind kind) {
    std::unique_ptr<intake::IntakeFolders>& folders =
        intakeFolders_.at(static_cast<std::size_t>(kind));
    if (!folders) folders = std::make_unique<intake::IntakeFolders>(kind);
    return *folders;
}

}  // namespace fnrk::facade
