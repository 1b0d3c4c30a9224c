#include "tables/standard_tables.hpp"

#include <cctype>

namespace fnrk::tables {
namespace {

struct Row {
    const char* alias;
    const char* table;
    const char* index;  // "" when the table has no index
};

// In the order FileOpen tests them; file names keep their letter case.
constexpr Row kRows[] = {
    {"ACT", "act.dbf", "act.cdx"},
    {"ACF", "ACF.dbf", "ACF.cdx"},
    {"CSF", "csf.dbf", "csf.cdx"},
    {"ZIPCODE", "zipcode.dbf", "zipcode.cdx"},
    {"CURRENCY", "currency.dbf", "currency.cdx"},
    {"COUNTRY", "country.dbf", "country.cdx"},
    {"PARAM", "param.dbf", "param.cdx"},
    {"MEMO", "memo.dbf", "memo.cdx"},
    {"ART", "iart.dbf", "iart.cdx"},
    {"HDC", "ihdc.dbf", "ihdc.cdx"},
    {"LDC", "ildc.dbf", "ildc.cdx"},
    {"TARIF", "TARIF.DBF", "TARIF.CDX"},
    {"LAY", "ilayout.dbf", "ilayout.cdx"},
    {"MEMOINV", "memoinv.dbf", "memoinv.cdx"},
    {"TABLE", "table.dbf", "table.cdx"},
    {"CODEVAT", "CodeVat.dbf", "CodeVat.cdx"},
    {"RAPCL", "RAPCL.dbf", "RAPCL.cdx"},
    {"RAPCLHIST", "RAPCLHIST.dbf", "RAPCLHIST.cdx"},
    {"ANF", "anf.dbf", "anf.cdx"},
    {"ANT", "ant.dbf", "ant.cdx"},
    {"ANMEMO", "anmemo.dbf", "anmemo.cdx"},
    {"ASF", "asf.dbf", "asf.cdx"},
    {"LOGBOOK", "logbook.dbf", ""},
    {"AST", "ast.dbf", "ast.cdx"},
    {"ASMEMO", "asmemo.dbf", "asmemo.cdx"},
    {"ASACC", "ASACC.dbf", "ASACC.cdx"},
    {"DICO", "dic.dbf", "dic.cdx"},
    {"DICOTREE", "dictree.dbf", "dictree.cdx"},
    {"DICANA", "dicana.dbf", "dicana.cdx"},
    {"HSUB", "IHSUB.dbf", "IHSUB.cdx"},
    {"LSUB", "ILSUB.dbf", "ILSUB.cdx"},
    {"OPERCODA", "OPCODA.DBF", "OPCODA.CDX"},
    {"BNKCODA", "BNKCODA.DBF", "BNKCODA.CDX"},
    {"BNKCARDS", "BNKCARDS.DBF", "BNKCARDS.CDX"},
    {"BNKSKEY", "BNKSKEY.DBF", "BNKSKEY.CDX"},
    {"BPAYBENEF", "BPAYBENEF.DBF", "BPAYBENEF.CDX"},
    {"CODENAE", "CODENAE.DBF", "CODENAE.CDX"},
    {"CODFOR", "CODFOR.DBF", "CODFOR.CDX"},
    {"ASSUB", "ASSUB.DBF", "ASSUB.CDX"},
    {"LUXTREE", "LUXTREE.DBF", "LUXTREE.CDX"},
    {"ALTACF", "ALTACF.DBF", "ALTACF.CDX"},
    {"ALTREF", "ALTREF.DBF", "ALTREF.CDX"},
    {"FORFAIT", "TABSETPR.DBF", "TABSETPR.CDX"},
    {"RISTOU", "TABSETPR2.DBF", "TABSETPR2.CDX"},
    {"CSFINV", "CSFINV.DBF", ""},
    {"DISTRIB", "DISTRIB.DBF", ""},
    {"ACTDISTR", "ACTDISTR.DBF", ""},
    {"ANTDISTR", "ANTDISTR.DBF", ""},
    {"CARS", "CARS.DBF", ""},
    {"CSFMAIL", "CSFMAIL.DBF", ""},
    {"CCD", "CCD.DBF", ""},
    {"CCDDETAIL", "CCDDETAIL.DBF", ""},
    // The period totals are the entries seen through their "TOTPER0" order.
    {"ACTTOT", "act.dbf", "act.cdx"},
};

// The journal number of a "DBK_nn" or "DBKnn" alias; empty when the alias is not one.
std::string JournalNumber(std::string_view alias) {
    if (!alias.starts_with("DBK")) return {};
    std::string_view number = alias.substr(3);
    if (number.starts_with("_")) number.remove_prefix(1);
    if (number.empty()) return {};
    for (char c : number) {
        if (!std::isdigit(static_cast<unsigned char>(c))) return {};
    }
    return std::string(number);
}

std::vector<std::string> Split(std::string_view list) {
    std::vector<std::string> names;
    while (!list.empty()) {
        const std::size_t comma = list.find(',');
        names.emplace_back(list.substr(0, comma));
        list = comma == std::string_view::npos ? std::string_view{} : list.substr(comma + 1);
    }
    return names;
}

}  // namespace

std::optional<StandardTable> StandardTableOf(std::string_view alias) {
    // The journal row comes second in the table's order, but no other alias starts with "DBK".
    if (const std::string number = JournalNumber(alias); !number.empty()) {
        return StandardTable{"dbk_" + number + ".dbf", "dbk_" + number + ".cdx"};
    }
    for (const Row& row : kRows) {
        if (alias == row.alias) return StandardTable{row.table, row.index};
    }
    return std::nullopt;
}

const std::vector<std::string>& DossierTableNames() {
    static const std::vector<std::string> names = Split(
        "COUNTRY,TABLE,CURRENCY,ZIPCODE,CSF,ACF,CODEVAT,DBK_01,DBK_02,DBK_03,DBK_04,DBK_05,DBK_"
        "06,DBK_07,DBK_08,DBK_09,ACT,MEMO,HDC,ART,LDC,MEMOINV,LAY,ANF,ANT,ANMEMO,ASF,ASSTMP,AST,"
        "ASMEMO,ASACC,HSUB,LSUB,DICO,DICOTREE,DICANA,PAY,RAPCL,TARIF");
    return names;
}

const std::vector<std::string>& OpenAllTableNames() {
    static const std::vector<std::string> names = Split(
        "ZIPCODE,CURRENCY,TABLE,COUNTRY,CODEVAT,MEMO,MEMOINV,TARIF,HSUB,LSUB,ANMEMO,DICANA,"
        "ASMEMO,ASACC,OPERCODA");
    return names;
}

const std::vector<std::string>& DictionaryTableNames() {
    static const std::vector<std::string> names = Split(
        "PARAM,COUNTRY,TABLE,CURRENCY,ZIPCODE,CSF,ACF,LOGBOOK,DICANA,CODEVAT,DBK,ACT,MEMO,HDC,"
        "ART,LDC,MEMOINV,LAY,ANF,ANT,ANMEMO,ASF,AST,ASMEMO,ASACC,HSUB,LSUB,DICO,DICOTREE,PAY,"
        "RAPCL,TARIF");
    return names;
}

}  // namespace fnrk::tables
