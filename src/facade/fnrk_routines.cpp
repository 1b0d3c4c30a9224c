#include "facade/fnrk_routines.hpp"

#include "einvoice/cls_ubl.hpp"
#include "einvoice/table_invoice_lookups.hpp"
#include "platform/network_state.hpp"
#include "platform/text.hpp"
#include "session/session_user.hpp"
#include "tables/shared_tables.hpp"

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
    SharedSession().company.ProtectedBy = protectedBy_;
}

void FnrkRoutines::USER_Class(const Variant& value) {
    const std::shared_ptr<VariantObject> given = value.ToObject();
    // Read one by one, in this order, so that the first missing property is the one named.
    std::string language = given->GetProperty("language").ToString();
    std::string name = given->GetProperty("Name").ToString();
    std::string password = given->GetProperty("Password").ToString();
    std::string rights = given->GetProperty("Rights").ToString();
    session::SessionUser& current = session::CurrentUser();
    current.Name = name;
    current.Password = password;
    current.Rights = rights;
    current.language = language;
    user_ = MakeUserObject(std::move(name), std::move(password), std::move(rights),
                           std::move(language));
}

bool FnrkRoutines::ConnexionInternetActive() {
    return platform::NetworkConnectionPresent();
}

std::int32_t FnrkRoutines::CurrentBYNum() {
    return SharedSession().company.CurrentBYNum;
}

void FnrkRoutines::CurrentBYNum(std::int32_t value) {
    SharedSession().company.CurrentBYNum = value;
}

std::string FnrkRoutines::pathName() {
    return SharedSession().company.pathName;
}

void FnrkRoutines::pathName(std::string value) {
    CompanySession& company = SharedSession().company;
    company.pathName = platform::Trim(value);
    ApplyCompanyToTables(company);
}

std::string FnrkRoutines::socShortName() {
    return SharedSession().company.socShortName;
}

void FnrkRoutines::socShortName(std::string value) {
    CompanySession& company = SharedSession().company;
    company.socShortName = platform::Trim(value);
    ApplyCompanyToTables(company);
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

}  // namespace fnrk::facade
