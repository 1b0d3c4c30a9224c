#include "intake/intake_kind.hpp"

#include "platform/text.hpp"

namespace fnrk::intake {

namespace {

constexpr IntakeKindKeys kSoda{
    "SODA",         "SODA_PATH",   "SODA_LASTFILE", "SODA_WAITIMPUT",
    "SODA_ANATYPE", "SODA_SOCIAL", "PAYROLMO",      WaitingPlace::SodaFromFolders};
constexpr IntakeKindKeys kEfff{
    "EFFF",         "EFFF_PATH", "EFFF_LASTFILE", "EFFF_WAITIMPUT",
    "EFFF_ANATYPE", "",          "PAYROLMO",      WaitingPlace::YearFolder};
constexpr IntakeKindKeys kCaro{"CARO", "CARO_PATH", "CARO_LASTFILE", "CARO_WAITIMPUT",
                               "",     "",          "CAROMO",        WaitingPlace::CaroFolder};

}  // namespace

const IntakeKindKeys& KeysOf(IntakeKind kind) {
    switch (kind) {
        case IntakeKind::Soda:
            return kSoda;
        case IntakeKind::Efff:
            return kEfff;
        case IntakeKind::Caro:
            return kCaro;
    }
    return kSoda;
}

bool IntakeKindNamed(std::string_view name, IntakeKind& kind) {
    for (const IntakeKind candidate : {IntakeKind::Soda, IntakeKind::Efff, IntakeKind::Caro}) {
        if (platform::EqualsNoCase(name, KeysOf(candidate).word)) {
            kind = candidate;
            return true;
        }
    }
    return false;
}

}  // namespace fnrk::intake
