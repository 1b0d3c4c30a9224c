#pragma once

// SocParamColClassApi: the one reader and writer of a company's parameter table "PARAM", whose
// rows are keys ("ID", upper case, 25 characters) with a value split over "VALUE" and
// "VALUEEXT". Typed members build a key, read its value and convert it; a missing key or a
// closed parameter table gives empty text, zero or false, never an error.
//
// Split over several files by concern:
//   soc_param_col_class_api.cpp  settings, GetParamValue and the plain company keys
//   book_years.cpp               book years, periods, archives and currencies
//   param_writes.cpp             SaveParamNewsoc, EraseParamValue, GetNewMatchNumber
//   analytical.cpp               the analytical zones ("ZONANA") and accounts ("ACF")
//
// Book years are numbered from 1 to BookYearCount; a book-year key is "BOOKYEAR", the number
// in decimal and a suffix beginning with a dot ("BOOKYEAR3.Status"). Where a member takes a
// book year, 0 stands for the current one (CurrentBYNum).
//
// Values kept in the parameter table:
// - switches (IsInvoice, Is2Language, ...) are true when the value, trimmed and in upper case,
//   is "TRUE", "T", ".T.", "Y", "YES" or "1";
// - numbers are read as far as the text is a decimal number ("12abc" is 12, "abc" is 0) and
//   rounded half to even;
// - period labels are consecutive 8-character slots: slot 1 is the opening period, slots 2 to
//   n + 1 the n ordinary periods, the last slot the closing period;
// - period dates (".PerDate") hold one date "DDMMYYYY" per label slot, the first day of that
//   slot's period, in the same order.

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace fnrk::tables {
class AdsClass;
}

namespace fnrk::company {

class SocParamColClassApi {
  public:
    // `tables` must outlive this object; the parameter table is read through it.
    explicit SocParamColClassApi(tables::AdsClass& tables) : tables_(tables) {}

    // ===== settings kept in the object (no table access)
    std::int16_t CurrentBYNum() const { return currentBookYear_; }
    void CurrentBYNum(std::int16_t number) { currentBookYear_ = number; }
    const std::string& socShortName() const { return shortName_; }
    void socShortName(std::string name) { shortName_ = std::move(name); }
    // The accounting office that protects the company file, as the session names it.
    const std::string& ProtectedBy() const { return protectedBy_; }
    void ProtectedBy(std::string office) { protectedBy_ = std::move(office); }
    // The company folder. Setting trims the text and drops one trailing separator ("\" or the
    // native one); reading removes every "<SQL>" marker of a SQL-kept company.
    std::string pathName() const;
    void pathName(std::string_view folder);
    // The folder as the connection to the company's tables takes it: the stored text as it is
    // for a SQL-kept company (its marker routes the connection), else the folder ending with
    // the native separator. Empty when no folder is set.
    std::string GetConnect26Path() const;
    // The company folder is a network path ("\\server\share\..." or "//server/share/...").
    bool IsNetwork() const;

    // ===== reading keys
    // The full value of a key: "VALUE" then "VALUEEXT", each without trailing blanks. The key
    // is trimmed, put in upper case and cut to 25 characters. Empty when "PARAM" is not open or
    // the key is missing. The caller's current alias is kept.
    std::string GetParamValue(std::string_view key);

    std::string socname();
    std::string SocAdr();
    std::string SocVatNo();
    std::string SocZip();
    std::string SocCity();
    std::string SocCountry();
    std::string CompanyCurrency();
    std::string Vatparam();
    std::string Langofcreation();
    // Revision number of the company file structure ("FileRevision").
    std::int32_t FileRevisionNumber();
    bool Is2Language();
    bool Inv_DescUse();
    bool IsInvoice();
    bool IsScanModule();
    bool IsAsset();
    bool IsAutomate();
    bool IsCoda();
    bool IsSoda();
    bool IsAnalytical();
    // Another office protects the company file: its "PROTECTEDBY" is not blank and differs
    // (trimmed, any case) from the session's ProtectedBy.
    bool IsDossierLocked();

    // Number of user zones of each kind of record (the keys are spelled "SigGLStdZoneCount"
    // and "SigAsParamZoneCount" on purpose).
    std::int16_t SigCSParamZoneCount();
    std::int16_t SigGlStdZoneCount();
    std::int16_t SigGlParamZoneCount();
    std::int16_t SigArStdZoneCount();
    std::int16_t SigArParamZoneCount();
    std::int16_t SigAssetParamZoneCount();
    // Description of user zone `item` of the file "CLIFOU", "GEN", "ART" or "ASSET" (any case);
    // empty for another file.
    std::string GetSigParamItemValue(std::string_view file, std::int16_t item);

    // ===== book years and periods (book_years.cpp)
    std::int16_t BookYearCount();
    std::string BookYearStatus(std::int16_t bookYear);
    // True when the status in upper case is not "OPEN" (a missing status counts as closed).
    bool IsBookYearClosed(std::int16_t bookYear);
    std::string LongLabel(std::int16_t bookYear);
    std::string ShortLabel(std::int16_t bookYear);
    // Short label of the current book year; empty when there is none.
    std::string CurrentBookYearName();
    // The current book year, else 1 when the company has book years, else 0.
    std::int16_t CurrentbookYearNum1();
    // The period-label text of a book year in the session language.
    std::string perlib(std::int16_t bookYear);
    // The text of `perlib` cut into its 8-character slots, each without trailing blanks.
    std::vector<std::string> PeriodLabels(std::int16_t bookYear);
    std::string PerDate(std::int16_t bookYear);
    // The dates of `PerDate`, one "DDMMYYYY" per slot.
    std::vector<std::string> PeriodDates(std::int16_t bookYear);
    // Number of ordinary periods: the length of ".Perlib1" divided by 8, minus 2, rounded half
    // to even; 0 when the labels are missing. An empty (or blank) `bookYear` stands for the
    // current one, whose number is written back into it.
    std::int16_t NbrPerByYear(std::string& bookYear);
    // The book year has twelve ordinary periods.
    bool IsSocMensuel(std::int16_t bookYear);
    // The book year's currency (".Currency").
    std::string SocCurrency(std::int16_t bookYear);
    bool IsBookYearInEuro(std::int16_t bookYear);
    // The first book year is kept in another currency than euro and the second in euro.
    bool IsYear1BEFYear2EUR(std::int16_t firstBookYear, std::int16_t secondBookYear);
    // ".ReopenMode" is "FULL" (any case) and the book year is kept in euro.
    bool IsFullBookyearReport(std::int16_t bookYear);
    // Archive name of a book year (".NAMEARCH") and whether it has one.
    std::string SocArchiveWithYear(std::int16_t bookYear);
    bool IsBookyearArchive(std::int16_t bookYear);
    // Folder of an archived book year (".PATHARCH").
    std::string IsPathBookYearArchive(std::int16_t bookYear);
    // The book year the company's archive is named after ("SigIndiceOfYear"); 0 when none.
    std::int16_t SigIndiceOfYear();
    // Archive name of the company: the archive name of book year SigIndiceOfYear; empty when
    // that is 0.
    std::string SocArchive();
    // The company file is an archive: SocArchive is not empty.
    bool IsDossierArchive();

    // ===== writes (param_writes.cpp)
    // Writes the parameters of a newly created company, in order: a key present gets the new
    // value, a missing one a new row. A value longer than "VALUE" continues in "VALUEEXT",
    // split so that GetParamValue gives it back whole (see SplitParamValue). Nothing is written
    // and false is returned when a key is blank, a value (after trailing blanks) does not fit
    // the two fields, or the parameter table is not open; a failed write stops there.
    bool SaveParamNewsoc(const std::vector<std::pair<std::string, std::string>>& parameters);
    // Removes a key: its row is deleted under its record lock, so the key reads empty and a
    // later save adds it afresh. False when the key is missing or the row cannot be locked.
    bool EraseParamValue(std::string_view key);
    // Takes the next matching number of a book year: the row "BOOKYEAR" n ".MatchNumber" is
    // locked, its number increased by 1 and written back, and the row unlocked. A missing row
    // is added under a table lock (so that two workstations never both add it) and starts
    // from 0. An empty `bookYear` stands for the current one, written back into it. 0 when the
    // lock is refused or the parameter table is not open.
    std::int32_t GetNewMatchNumber(std::string& bookYear);

    // ===== analytical plans (analytical.cpp)
    // The rows of "ZONANA" (deleted ones left out) in natural order are the sections,
    // numbered from 1; a section's plan is its "GEN". Out-of-range sections give empty text
    // and zero; a closed "ZONANA" counts as no sections.
    std::int16_t AnalyticalPlansCount();  // distinct non-blank plans
    std::int16_t AnalyticalSectionsCount();
    std::int16_t AnalyticalSectionLength(std::int16_t section);
    std::string AnalyticalSectionName(std::int16_t section);
    std::string AnalyticalSectionMask(std::int16_t section);
    std::string AnalyticalSectionType(std::int16_t section);
    // The general-ledger account (its "GLNUMBER", trimmed, in "ACF") is analytical, and the
    // analytical plan it uses; false / empty for an unknown account or a closed "ACF".
    bool IsAccountAnalytical(std::string_view account);
    std::string AccountAnalyticalPlan(std::string_view account);
    // The account is a live row of "ACF"; false for a closed "ACF".
    bool AccountExists(std::string_view account);

  private:
    // The book-year key of `bookYear` (0: the current one) with its suffix.
    std::string BookYearKey(std::int16_t bookYear, std::string_view suffix) const;
    std::string BookYearValue(std::int16_t bookYear, std::string_view suffix);
    // Opens the keyed view on "PARAM" when needed and makes "PARAM" current; false when the
    // table is not open. The caller keeps its own alias.
    bool ActivateKeyedParam();
    // Positions "PARAM" on the key's row (keyed view made current first); false when missing.
    bool SeekParam(std::string_view key);
    // One "ZONANA" section's field; empty when out of range.
    std::string SectionField(std::int16_t section, std::string_view field);
    // Positions "ACF" on the account's row; false when not found.
    bool SeekAccount(std::string_view account);

    tables::AdsClass& tables_;
    std::int16_t currentBookYear_ = 0;
    std::string shortName_;
    std::string protectedBy_;
    std::string pathName_;
};

// How a value is stored: the longest start of it that fits `valueWidth` and does not end in a
// blank goes to "VALUE", the rest to "VALUEEXT", so that "VALUE" without its trailing blanks
// followed by "VALUEEXT" gives the value back. Trailing blanks of the value are dropped. False
// when the rest does not fit `extensionWidth`.
bool SplitParamValue(std::string_view value, std::size_t valueWidth, std::size_t extensionWidth,
                     std::string& stored, std::string& extension);

// Cuts a text into 8-character slots (the last one may be shorter), each without trailing
// blanks.
std::vector<std::string> EightCharacterSlots(std::string_view text);

// The number a parameter text starts with, as a decimal number (0 when none).
double ParamNumber(std::string_view text);

// The parameter key as the table keeps it: trimmed, upper case, blank-padded and cut to 25.
std::string ParamKey(std::string_view key);

}  // namespace fnrk::company
