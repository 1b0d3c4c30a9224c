// The online services: the cloud connector, the document-exchange platform, the bank-statement
// service, the dashboard and its message queue, the FennRick view, the news feed, the release-note
// feed and the upload log. Their endpoints and credentials are deployment settings this library is
// not given, so every member answers at once with error kErrServiceNotConfigured, naming itself and
// the service, whatever its arguments: nothing is sent anywhere and nothing waits. The news
// preferences and release-note marks, which live in a local table, are members of their own.

#include <initializer_list>

#include "facade/facade_error.hpp"
#include "facade/member_table.hpp"

namespace fnrk::facade {
namespace {

void NotConfigured(MemberTable& table, const std::string& service,
                   std::initializer_list<const char*> names) {
    for (const char* name : names) {
        const std::string message = "FnrkRoutines." + std::string(name) +
                                    ": service not configured (" + service +
                                    ": no endpoint or credentials in this installation)";
        table.Add(Member{name, MemberKind::Method, {}, true, [message](FnrkRoutines&, CallArgs&) {
                             throw FacadeError(kErrServiceNotConfigured, message);
                             return Variant();
                         }});
    }
}

}  // namespace

void AddOnlineServiceMembers(MemberTable& table) {
    NotConfigured(table, "news feed",
                  {"NewsNumberOfNews", "NewsMsgT", "ViewOldNews", "NewsToDisplay", "UpdateNews",
                   "GetNewsLabels", "NumberOfNews"});
    NotConfigured(table, "release-note feed",
                  {"RNGetReleaseNote", "RNGetReleaseNoteVersions", "RNGetNbrReleaseNotes"});
    NotConfigured(
        table, "document-exchange platform",
        {"DEPInit", "DEPGetFolderModuleSetting", "DEPGetFolderDefaultProcessingMode",
         "DEPActivateModuleFolderSetting", "DEPIsModuleExist", "DEPIsModuleExistOptionalMessage",
         "DEPClose", "DEPCloseBatch", "DEPUploadDocument", "DEPChangeHashMethod",
         "DEPGetHashMethod", "DEPInvokeMethod", "DEPInvokeMethodOptionalMessage",
         "DEPGetJournalList", "DEPDeleteJournal", "DEPGetAllCartrige", "DEPCreateJournal",
         "DEPGetOffloadDataTransfertPath", "DEPGetVICustomType"});
    NotConfigured(table, "cloud connector",
                  {"ConnectCreateCOT",
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
    NotConfigured(table, "bank-statement service",
                  {"CodaBoxCreateClient", "CodaBoxCreateMandate", "CodaBoxGetLoginPwdAndId",
                   "CodaBoxGetLoginPwdAndIdMandates", "CodaBoxCheckState", "CodaBoxGetCredentials",
                   "CodaBoxGetCredentialsMandates", "CodaFindGross", "CodaFindCommission"});
    NotConfigured(
        table, "dashboard",
        {"DashboardGetSubscribeFolders", "DashboardDownloadVIDocument", "DashboardGetLogin",
         "DashboardMsgt", "DashboardLockMsgFromWebsocket", "SendMessageCodaOnDemand"});
    NotConfigured(table, "message queue",
                  {"MessageQueueInit", "MessageQueueInitWebSocket",
                   "MessageQueueSetTimeCheckingServiceStatus",
                   "MessageQueueGetTimeCheckingServiceStatus", "MessageQueueDisconnectWebSocket"});
    NotConfigured(table, "FennRick view", {"FennRickViewGetRequest"});
    NotConfigured(table, "upload log",
                  {"LogCreate", "LogUploadFiles", "LogOcrRanking", "LogSendMessageUpload"});
}

}  // namespace fnrk::facade
