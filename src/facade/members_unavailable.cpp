// Members whose work is not part of this build: each is listed so that a caller gets a clear
// error naming it instead of "no such member". A family's own work replaces its list here by
// wired members as it lands.

#include "facade/member_table.hpp"

namespace fnrk::facade {

void AddUnavailableMembers(MemberTable& table) {
    // news
    table.Unavailable({"NewsNumberOfNews", "NewsMsgT", "ViewOldNews", "NewsToDisplay", "UpdateNews",
                       "GetTypeNews", "GetFreqNews", "SaveNewsPref", "SaveLastNews", "SelectLabel",
                       "GetNewsLabels", "NewsLabelsSelected", "NumberOfNews"});
    // document service
    table.Unavailable({"DEPInit", "DEPGetFolderModuleSetting", "DEPGetFolderDefaultProcessingMode",
                       "DEPActivateModuleFolderSetting", "DEPIsModuleExist",
                       "DEPIsModuleExistOptionalMessage", "DEPClose", "DEPCloseBatch",
                       "DEPUploadDocument", "DEPChangeHashMethod", "DEPGetHashMethod",
                       "DEPInvokeMethod", "DEPInvokeMethodOptionalMessage", "DEPGetJournalList",
                       "DEPDeleteJournal", "DEPGetAllCartrige", "DEPCreateJournal",
                       "DEPGetOffloadDataTransfertPath", "DEPGetVICustomType"});
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
    // cloud connector
    table.Unavailable({"ConnectCreateCOT",
                       "ConnectUpdateCOT",
                       "ConnectSetInvoiceValue",
                       "ConnectUpdateFileCOT",
                       "ConnectUpdateCOTFileAsync",
                       "ConnectUpdateToConnect",
                       "ConnectUploadFile",
                       "ConnectUploadDashboard",
                       "ConnectGetDocumentId",
                       "ConnectUpdateAllData",
                       "UpdateConnectData",
                       "ConnectSynchroCOTData",
                       "ConnectGetUser",
                       "ConnectLogin",
                       "ConnectLoginWithoutCompany",
                       "ConnectGetLoginPwd",
                       "ConnectLogout",
                       "ConnectCreateBankAccountList",
                       "ConnectGetFennRickConnectInfo",
                       "ConnectGetTasks",
                       "ConnectUpdateTask",
                       "ConnectGetUserId",
                       "ConnectGetCompanyWithUsers",
                       "ConnectSelectCompany",
                       "ConnectInitializeDLL",
                       "ConnectUnInitializeDLL",
                       "ConnectGetFolders",
                       "ConnectCreateTasks",
                       "ConnectCreateTasksMissingInvoices"});
    // bank statements
    table.Unavailable({"CodaBoxCreateClient", "CodaBoxCreateMandate", "CodaBoxGetLoginPwdAndId",
                       "CodaBoxGetLoginPwdAndIdMandates", "CodaBoxCheckState",
                       "CodaBoxGetCredentials", "CodaBoxGetCredentialsMandates", "CodaFindGross",
                       "CodaFindCommission"});
    // upload log, e-mail list
    table.Unavailable({"LogCreate", "LogUploadFiles", "LogOcrRanking", "LogSendMessageUpload",
                       "CsfEmailOpen", "CsfEmailCreate", "CsfEmailCreateIndex", "CsfEmailClose",
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
    // dashboard and messages (the dashboard members named one by one)
    table.Unavailable({"DashboardGetSubscribeFolders", "DashboardDownloadVIDocument",
                       "MessageQueueInit", "MessageQueueInitWebSocket",
                       "MessageQueueSetTimeCheckingServiceStatus",
                       "MessageQueueGetTimeCheckingServiceStatus",
                       "MessageQueueDisconnectWebSocket", "DashboardGetLogin", "DashboardMsgt",
                       "DashboardLockMsgFromWebsocket", "SendMessageCodaOnDemand"});
    // sales documents, release notes
    table.Unavailable({"CWCreatedSalesDocs", "CWOpenSalesDocs", "RNIsUnreadReleaseNote",
                       "RNGetReleaseNote", "RNGetReleaseNoteVersions", "RNGetNbrReleaseNotes",
                       "RNSetLastReleaseNote"});
    // miscellaneous
    table.Unavailable({"DonorGetReport", "FennRickViewGetRequest", "AdaptDocHead", "StartForm",
                       "OpenFileArchiveACT", "OpenFileArchiveACF", "OpenFilesALT",
                       "OpenFilesArchiveALT"});
}

}  // namespace fnrk::facade
