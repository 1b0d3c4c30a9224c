// Initialize, init, InitializeProperty, InitializeDLL, ParamActivate, ReinitializeColAdsTable
// and DBDisconnect: how a caller hands its session to the library and keeps the registries level.

#include <cmath>

#include "company/shared_company.hpp"
#include "facade/fnrk_routines.hpp"
#include "platform/ini_file.hpp"
#include "platform/messages.hpp"
#include "platform/paths.hpp"
#include "platform/text.hpp"
#include "session/app_class.hpp"

namespace fnrk::facade {
namespace {

constexpr std::size_t kFewestInitializeValues = 11;
constexpr std::size_t kLastInitializePosition = 26;
constexpr std::size_t kRegistryPosition = 2;

// The classic Val: the number at the start of the text ("12.7 kB" is 12.7), 0 when none.
double LeadingNumber(std::string_view text) {
    const std::string trimmed = platform::Trim(text);
    std::size_t end = 0;
    if (end < trimmed.size() && (trimmed[end] == '-' || trimmed[end] == '+')) ++end;
    bool point = false;
    while (end < trimmed.size() && (std::isdigit(static_cast<unsigned char>(trimmed[end])) ||
                                    (!point && trimmed[end] == '.'))) {
        point = point || trimmed[end] == '.';
        ++end;
    }
    double value = 0.0;
    return ParseNumberText(trimmed.substr(0, end), value) ? value : 0.0;
}

// An object reference handed on to the backend dispatch: an object, or none.
std::shared_ptr<VariantObject> OptionalObject(const Variant& value) {
    return value.IsObject() ? value.ToObject() : nullptr;
}

std::int32_t LongFromText(const Variant& value) {
    return Variant(value.ToString()).ToLong();
}

}  // namespace

void FnrkRoutines::Initialize(std::span<const Variant> values) {
    if (values.size() < kFewestInitializeValues) return;
    for (std::size_t position = 0; position < values.size(); ++position) {
        if (position > kLastInitializePosition) break;
        ApplyInitializePosition(position, values[position]);
    }
    RefillRegistry(ReadCallerRegistry(values[kRegistryPosition]));
}

void FnrkRoutines::ApplyInitializePosition(std::size_t position, const Variant& value) {
    FacadeSession& session = SharedSession();
    BackendSettings& backend = session.backend;
    switch (position) {
        case 0:
        case 1:
            initializedByCaller_ = true;
            session.connectionHandles[position] = value.ToLong();
            init();
            break;
        case kRegistryPosition:
            break;  // after the loop
        case 3:
            TestMode(value.ToBoolean());
            break;
        case 4:
            CurrentBYNum(value.ToInteger());
            break;
        case 5:
            language(value.ToString());
            break;
        case 6:
            TempPath(value.ToString());
            break;
        case 7:
            OrgPath(value.ToString());
            break;
        case 8:
            UserDbfPath(value.ToString());
            break;
        case 9:
            INIfile(value.ToString());
            break;
        case 10:
            ScreenFont(value);
            break;
        case 11:
            IsFiduc(value.ToBoolean());
            break;
        case 12:
            backend.position12Text = value.ToString();
            break;
        case 13:
            ProtectedBy(platform::Trim(value.ToString()));
            break;
        case 14:
            backend.backendSetting = Variant(value.ToString()).ToInteger();
            break;
        case 15:
        case 16:
        case 17:
        case 18:
            backend.objects[position - 15] = OptionalObject(value);
            break;
        case 19:
        case 20:
        case 21:
            backend.openSettings[position - 19] = LongFromText(value);
            break;
        case 22:
        case 23:
        case 24:
        case 25:
            backend.dispatchFlags[position - 22] = value.ToBoolean();
            break;
        case 26:
            backend.lastSetting = Variant(LeadingNumber(value.ToString())).ToLong();
            break;
        default:
            break;
    }
}

void FnrkRoutines::RefillRegistry(const std::vector<AdsPropertyClass>& entries) {
    TableRegistry& registry = Registry();
    while (registry.Count() > 0) registry.RemoveFirst();
    for (const AdsPropertyClass& entry : entries) AddRegistryEntry(entry);
}

void FnrkRoutines::AddRegistryEntry(const AdsPropertyClass& entry) {
    if (Registry().Add(entry) && platform::EqualsNoCase(entry.Alias, "PARAM")) ParamActivate();
}

bool FnrkRoutines::init(const Variant&) {
    if (!initialized_) {
        // Without a caller's connection the library looks for one of its own; none is fine,
        // the tables connect when they open.
        if (!initializedByCaller_) static_cast<void>(Tables().FindConnection());
        initialized_ = true;
    }
    return true;
}

void FnrkRoutines::InitializeProperty(std::string_view name, const Variant& value) {
    const std::string key = platform::UpperCase(name);
    FnrkRoutines& shared = SharedFnrkRoutines();
    // Each accepted value goes to this instance and to the shared façade alike.
    auto both = [&](auto set) {
        set(*this);
        if (&shared != this) set(shared);
    };
    // The key is "TEMPATH" with one P: "TEMPPATH" is not one of the names.
    if (key == "TEMPATH") {
        const std::string text = platform::Trim(value.ToString());
        both([&](FnrkRoutines& r) { r.TempPath(text); });
    } else if (key == "ORGPATH") {
        const std::string text = platform::Trim(value.ToString());
        both([&](FnrkRoutines& r) { r.OrgPath(text); });
    } else if (key == "USERDBFPATH") {
        const std::string text = platform::Trim(value.ToString());
        both([&](FnrkRoutines& r) { r.UserDbfPath(text); });
    } else if (key == "LANGUAGE") {
        const std::string text = platform::Trim(value.ToString());
        both([&](FnrkRoutines& r) { r.language(text); });
    } else if (key == "TESTMODE") {
        const bool flag = value.ToBoolean();
        both([&](FnrkRoutines& r) { r.TestMode(flag); });
    } else if (key == "INIFILE") {
        const std::string text = platform::Trim(value.ToString());
        both([&](FnrkRoutines& r) { r.INIfile(text); });
    } else if (key == "SCREENFONT") {
        both([&](FnrkRoutines& r) { r.ScreenFont(value); });
    } else if (key == "ISFIDUC") {
        const bool flag = value.ToBoolean();
        both([&](FnrkRoutines& r) { r.IsFiduc(flag); });
    } else if (key == "PROTECTEDBY") {
        const std::string text = platform::Trim(value.ToString());
        both([&](FnrkRoutines& r) { r.ProtectedBy(text); });
    }
}

void FnrkRoutines::InitializeDLL() {
    FnrkRoutines& shared = SharedFnrkRoutines();
    if (&shared == this) return;
    shared.TempPath(tempPath_);
    shared.OrgPath(orgPath_);
    shared.UserDbfPath(userDbfPath_);
    shared.language(language_);
    shared.TestMode(testMode_);
    shared.INIfile(iniFile_);
    shared.screenFont_ = screenFont_;
    shared.IsFiduc(isFiduc_);
    shared.ProtectedBy(protectedBy_);
}

void FnrkRoutines::ParamActivate() {
    tables::AdsClass& tables = Tables();
    if (!tables.IsAlias("PARAM") || !tables.IsAlias("CSF")) return;
    if (tables.GetCurrentAlias() == "PARAM") static_cast<void>(tables.ActivateAlias("CSF"));
    if (tables.AddQuery("SEEKPARAM", 0, "PARAM", "ID", "", 0, "") == 0) {
        static_cast<void>(tables.ActivateQuery("SEEKPARAM", 0));
    }
    static_cast<void>(tables.ActivateAlias("PARAM"));
    if (company::SharedSocParamColClassApi().BookYearCount() < 1) WarnOfDamagedParamTable();
}

void FnrkRoutines::WarnOfDamagedParamTable() {
    // Installations that test their parameter tables ask for the warning in their shared
    // configuration file. The text exists in French only.
    const std::string file =
        session::SharedAppClass().RootPath() + platform::kPathSep + "FennRick.ini";
    if (platform::GetPrivateProfileString("Param", "Test", "", 256, file) == "TRUE") {
        platform::ShowMessage(
            "Attention, nous avons détecté un problème potentiel d'accès au fichier param",
            platform::message_style::kCritical, platform::kErrorTitle);
    }
}

void FnrkRoutines::ReinitializeColAdsTable(const Variant& callerRegistry) {
    const std::vector<AdsPropertyClass> entries = ReadCallerRegistry(callerRegistry);
    TableRegistry& registry = Registry();
    if (entries.size() == registry.Count()) {
        bool same = true;
        for (std::size_t i = 0; i < entries.size() && same; ++i) {
            same = entries[i] == *registry.Entries()[i];
        }
        if (same) return;
    }
    RefillRegistry(entries);

    tables::AdsClass& tables = Tables();
    savedAlias_ = tables.GetCurrentAlias();
    // Moving to another work area and back makes the engine read the active one again.
    if (savedAlias_ == "CSF") {
        if (tables.IsAlias("ACF")) static_cast<void>(tables.ActivateAlias("ACF"));
    } else if (tables.IsAlias("CSF")) {
        static_cast<void>(tables.ActivateAlias("CSF"));
    }
    const std::string recorded = platform::Trim(savedAlias_);
    if (!recorded.empty() && recorded != "USERSNEWS" && tables.IsAlias(recorded)) {
        static_cast<void>(tables.ActivateAlias(recorded));
    }
}

void FnrkRoutines::DBDisconnect() {
    static_cast<void>(Tables().disconnect());
}

}  // namespace fnrk::facade
