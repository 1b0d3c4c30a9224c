#include "intake/intake_settings.hpp"

#include <charconv>

#include "intake/group_value.hpp"
#include "platform/paths.hpp"
#include "platform/text.hpp"

namespace fnrk::intake {

namespace {

constexpr std::string_view kFormatGroup = "PAYROLMO";
constexpr std::string_view kFeeGroup = "CARO_FEE";

bool StoredBoolean(std::string_view text) {
    const std::string value = platform::UpperCase(platform::Trim(text));
    return value == "TRUE" || value == "1" || value == "-1";
}

}  // namespace

std::string IntakeSettings::GroupItem(std::string_view group, std::string_view key) {
    return GroupValueItem(company_.GetParamValue(group), key);
}

bool IntakeSettings::SetGroupItem(std::string_view group, std::string_view key,
                                  std::string_view value) {
    return company_.SaveParamValue(group,
                                   WithGroupValueItem(company_.GetParamValue(group), key, value));
}

bool IntakeSettings::GetIs() {
    const bool efff = GroupItem(kFormatGroup, "FORMAT") == "EFFF";
    switch (kind_) {
        case IntakeKind::Soda:
            return !efff;
        case IntakeKind::Efff:
            return efff;
        case IntakeKind::Caro:
            return false;
    }
    return false;
}

bool IntakeSettings::SetIs(bool value) {
    if (kind_ == IntakeKind::Caro) return false;
    const bool efff = (kind_ == IntakeKind::Efff) == value;
    return SetGroupItem(kFormatGroup, "FORMAT", efff ? "EFFF" : "SODA");
}

bool IntakeSettings::GetMoveFile() {
    return GroupItem(KeysOf(kind_).moveGroup, "MOVE") != "0";
}

bool IntakeSettings::SetMoveFile(bool value) {
    return SetGroupItem(KeysOf(kind_).moveGroup, "MOVE", value ? "1" : "0");
}

std::string IntakeSettings::GetLastMovedFile() {
    return company_.GetParamValue(KeysOf(kind_).lastFileKey);
}

bool IntakeSettings::SetLastMovedFile(std::string_view fileName) {
    return company_.SaveParamValue(KeysOf(kind_).lastFileKey, fileName);
}

std::string IntakeSettings::GetWaitingAccount() {
    return company_.GetParamValue(KeysOf(kind_).waitingKey);
}

bool IntakeSettings::SetWaitingAccount(std::string_view value) {
    return company_.SaveParamValue(KeysOf(kind_).waitingKey, value);
}

std::string IntakeSettings::GetPath() {
    return company_.GetParamValue(KeysOf(kind_).pathKey);
}

bool IntakeSettings::SetPath(std::string_view value) {
    std::string path = platform::Trim(value);
    // A path in Windows form keeps its "\\" ending; a native one ends with the native separator.
    if (!path.empty() && !path.ends_with('\\') && !path.ends_with(platform::kPathSep))
        path += platform::kPathSep;
    return company_.SaveParamValue(KeysOf(kind_).pathKey, path);
}

bool IntakeSettings::GetSocialPeriod() {
    const std::string_view key = KeysOf(kind_).socialKey;
    return !key.empty() && StoredBoolean(company_.GetParamValue(key));
}

bool IntakeSettings::SetSocialPeriod(bool value) {
    const std::string_view key = KeysOf(kind_).socialKey;
    return !key.empty() && company_.SaveParamValue(key, value ? "True" : "False");
}

std::string IntakeSettings::GetAnaType() {
    const std::string_view key = KeysOf(kind_).anaTypeKey;
    return key.empty() ? std::string() : company_.GetParamValue(key);
}

bool IntakeSettings::SetAnaType(std::int32_t value) {
    const std::string_view key = KeysOf(kind_).anaTypeKey;
    return !key.empty() && company_.SaveParamValue(key, std::to_string(value));
}

std::int32_t IntakeSettings::GetSplit() {
    const std::string text = GroupItem(kFormatGroup, "SPLIT");
    std::int32_t value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    return error == std::errc() && end == text.data() + text.size() ? value : 0;
}

bool IntakeSettings::SetSplit(std::int32_t value) {
    return SetGroupItem(kFormatGroup, "SPLIT", std::to_string(value));
}

std::string IntakeSettings::GetDownloadEFFF() {
    return GroupItem(kFormatGroup, "DOWNLOAD");
}

bool IntakeSettings::SetDownloadEFFF(std::string_view value) {
    return SetGroupItem(kFormatGroup, "DOWNLOAD", value);
}

std::string IntakeSettings::GetFeeAccount(std::string_view typeFee) {
    return GroupItem(kFeeGroup, typeFee);
}

bool IntakeSettings::SetFeeAccount(std::string_view typeFee, std::string_view GlAccount) {
    return SetGroupItem(kFeeGroup, typeFee, GlAccount);
}

}  // namespace fnrk::intake
