// Members whose work is not part of this build: each is listed so that a caller gets a clear
// error naming it instead of "no such member". A family's own work replaces its list here by
// wired members as it lands.

#include "facade/member_table.hpp"

namespace fnrk::facade {

void AddUnavailableMembers(MemberTable& table) {
    // vehicles ("Desciption" is the public spelling)
    table.Unavailable({"CarsOpen",
                       "CarsClose",
                       "CarsPackClose",
                       "CarsCreate",
                       "CarsCreateIndex",
                       "CarsOpenAliasRef",
                       "CarsActivateAliasRef",
                       "CarsMoveTop",
                       "CarsMoveBottom",
                       "CarsSkip",
                       "CarsGo",
                       "CarsBof",
                       "CarsEof",
                       "CarsSeekkey",
                       "CarsGetFieldValue",
                       "CarsSelectionRecCount",
                       "CarsRecno",
                       "CarsCheckFiles",
                       "CarsUpdate",
                       "CarsUpdateNewYear",
                       "CarsUpdateTable",
                       "CarsGetInfo",
                       "CarsGetFirstAndLast",
                       "CarsGetInfoByBookmark",
                       "CarsRefFromInfo",
                       "CarsDesciptionFromInfo"});
    // customer e-mail list
    table.Unavailable({"CsfEmailOpen", "CsfEmailCreate", "CsfEmailCreateIndex", "CsfEmailClose",
                       "CsfEmailPackClose", "CsfEmailGetList", "CsfEmailUpdateList",
                       "CsfEmailIsEmpty"});
    // distribution
    table.Unavailable({"DistribCreate",
                       "DistribCreateIndex",
                       "DistribOpen",
                       "DistribClose",
                       "DistribPackClose",
                       "DistribUpdate",
                       "DistribDelete",
                       "DistribAlready",
                       "DistribGetOrder",
                       "DistribReadingInitList",
                       "DistribReadingNextList",
                       "DistribReadingInit",
                       "DistribReadingNext",
                       "ACTDISTRIBReadingNext",
                       "DistribMoveWaiting",
                       "DistribGenerateWaiting",
                       "DistribClean",
                       "ACTDISTRCreate",
                       "ACTDISTRCreateIndex",
                       "ACTDISTROpen",
                       "ACTDISTRClose",
                       "ACTDISTRPackClose",
                       "ACTDISTRUpdate",
                       "ACTDISTRDelete",
                       "ACTDISTRGenerateWaiting",
                       "ACTDISTRGetLastDocNumber",
                       "ANTDISTRCreate",
                       "ANTDISTRCreateIndex",
                       "ANTDISTROpen",
                       "ANTDISTRClose",
                       "ANTDISTRPackClose",
                       "ANTDISTRUpdate",
                       "ANTDISTRDelete",
                       "ANTDISTRUpdateTable",
                       "ANTDISTRGenerateWaiting"});
    // sales documents
    table.Unavailable({"CWCreatedSalesDocs", "CWOpenSalesDocs"});
    // miscellaneous
    table.Unavailable({"DonorGetReport", "AdaptDocHead"});
}

}  // namespace fnrk::facade
