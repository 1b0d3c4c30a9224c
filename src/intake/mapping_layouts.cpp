#include "intake/mapping_layouts.hpp"

#include "platform/text.hpp"

namespace fnrk::intake {

const MappingLayout& MsodaLayout() {
    static const MappingLayout layout{
        "MSODA",
        "SOURCE,C,10,0;DEST,C,10,0",
        {{"SOURCE", "IIf(.not.deleted(),'X' + SOURCE,'X' + space(10))"},
         {"DEST", "IIf(.not.deleted(),'X' + DEST,'X' + space(10))"}}};
    return layout;
}

const MappingLayout& MsodaAnaLayout() {
    static const MappingLayout layout{"MSODAANA", MsodaLayout().fields, MsodaLayout().tags};
    return layout;
}

const MappingLayout& MefffsocLayout() {
    static const MappingLayout layout{
        "MEFFFSOC",
        "",
        {{"TYPE", "IIf(.not.deleted(),'X' + LINETYPE + TYPE,'X' + space(41))"},
         {"DEST", "IIf(.not.deleted(),'X' + DEST,'X' + space(10))"},
         {"INSS", "IIf(.not.deleted(),'X' + INSS,'X' + space(12))"},
         {"DETAIL", "IIf(.not.deleted(),'X' + LINETYPE + TYPE + INSS,'X' + space(53))"},
         {"LIST", "IIf(.not.deleted(),'X' + TYPE,'X' + space(40))"}}};
    return layout;
}

const MappingLayout& ActcomLayout() {
    static const MappingLayout layout{
        "ACTCOM",
        "DBKCODE,C,6,0;BOOKYEAR,C,1,0;PERIOD,C,2,0;DOCNUMBER,C,8,0;DOCORDER,C,3,0;"
        "TYPEEFFF,C,40,0;INSS,C,15,0;PAYROLL,C,20,0;PAYROLLN,C,40,0",
        {{"JNL",
          "iif(.not. deleted(),dbkcode+bookyear+period+str(val(docnumber),8)+docorder,"
          "space(20))"}}};
    return layout;
}

const MappingLayout& CcdLayout() {
    static const MappingLayout layout{
        "CCD",
        "CARDID,C,20,0;CARDNUMBER,C,20,0;GLACCOUNT,C,8,0",
        {{"CARDID", "IIf(.not.deleted(),'X' + CARDID,'X' + space(20))"},
         {"CARDNUMBER", "IIf(.not.deleted(),'X' + CARDNUMBER,'X' + space(20))"},
         {"GLACCOUNT", "IIf(.not.deleted(),'X' + GLACCOUNT,'X' + space(8))"}}};
    return layout;
}

const MappingLayout& CcdKeyLayout() {
    static const MappingLayout layout{
        "CCDKEY",
        "MERCHANT,C,40,0;GLACCOUNT,C,8,0;SUPPLIER,C,10,0",
        {{"MERCHANT", "IIf(.not.deleted(),'X' + MERCHANT,'X' + space(40))"},
         {"GLACCOUNT", "IIf(.not.deleted(),'X' + GLACCOUNT,'X' + space(8))"},
         {"SUPPLIER", "IIf(.not.deleted(),'X' + SUPPLIER,'X' + space(10))"}}};
    return layout;
}

const MappingLayout& CcdDetailLayout() {
    static const MappingLayout layout{
        "CCDDETAIL",
        "DBKCODE,C,6,0;DOCNUMBER,C,8,0;DOCORDER,C,3,0;BOOKYEAR,C,1,0;PERIOD,C,2,0;"
        "CARDID,C,20,0;CATEGORY,C,10,0;TRANSDATE,D,8,0;TRANSNAME,C,40,0;AMOUNT,N,17,2;"
        "CURRENCY,C,3,0;CURRAMOUNT,C,17,0;CURRCODE,C,3,0;CURRRATE,N,5,2;MERCHANT,C,40,0;"
        "CARDNUM,C,20,0;EMBOSS,C,40,0;MASTER,C,3,0",
        {{"REF",
          "IIf(.not.deleted(),'X' + DBKCODE+BOOKYEAR+PERIOD+str(val(DOCNUMBER),8)+"
          "DOCORDER,'X' + space(20))"}}};
    return layout;
}

const MappingLayout* MappingLayoutNamed(std::string_view name) {
    for (const MappingLayout* layout :
         {&MsodaLayout(), &MsodaAnaLayout(), &MefffsocLayout(), &ActcomLayout(), &CcdLayout(),
          &CcdKeyLayout(), &CcdDetailLayout()}) {
        if (platform::EqualsNoCase(name, layout->name)) return layout;
    }
    return nullptr;
}

}  // namespace fnrk::intake
