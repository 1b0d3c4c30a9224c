// The member table: every public member of the façade is an entry, found without regard to
// case; calls are checked for their argument count; a member whose work is not in this build
// raises an error that names it.

#include <gtest/gtest.h>

#include <set>

#include "facade_fixture.hpp"

namespace fnrk::facade {
namespace {

using testing::FacadeTest;

// Every service member of the public interface, by family, with the public spellings.
constexpr const char* kServiceMembers[] = {
    "AssetClass_Init",
    "AssetClass_Get",
    "AssetClass_Add",
    "AssetClass_Count",
    "LastNewsBrowser",
    "NewsNumberOfNews",
    "NewsMsgT",
    "ViewOldNews",
    "NewsToDisplay",
    "UpdateNews",
    "GetTypeNews",
    "GetFreqNews",
    "SaveNewsPref",
    "SaveLastNews",
    "SelectLabel",
    "GetNewsLabels",
    "NewsLabelsSelected",
    "NumberOfNews",
    "ConvertToMD5",
    "ConvertTabOfByteToMD5",
    "CreateDuplicata",
    "MergePDFFile",
    "UBLInitFormat",
    "UBLAddAdditionalDocRefFormat",
    "UBLAccountingSupplierPartFormat",
    "UBLAccountingCustomerPartFormat",
    "UBLPaymentMeansFormat",
    "UBLPaymentTermsFormat",
    "UBLOrderReferenceFormat",
    "UBLBillingReferenceFormat",
    "UBLPaymentTermsV2Format",
    "UBLAllowanceChargeFormat",
    "UBLTaxTotalFormat",
    "UBLLegalMonetaryTotalFormat",
    "UBLInvoiceLineFormat",
    "UBLInit",
    "UBLAddAdditionalDocRef",
    "UBLAccountingSupplierPart",
    "UBLAccountingCustomerPart",
    "UBLPaymentMeans",
    "UBLPaymentTerms",
    "UBLAllowanceCharge",
    "UBLInitTableSubTotal",
    "UBLAddSubTotalVATInfo",
    "UBLTaxTotal",
    "UBLLegalMonetaryTotal",
    "UBLInvoiceLine",
    "UBLSavefile",
    "UBLClose",
    "UBLResetLineDescription",
    "UBLAddLineDescription",
    "PEPPOLInitFormat",
    "EfffPEPPOLLInit",
    "PEPPOLLAddAdditionalDocRefFormat",
    "EfffPEPPOLLAddAdditionalDocRef",
    "PEPPOLAccountingSupplierPartFormat",
    "EfffPEPPOLAccountingSupplierPart",
    "SetCustomerPEPPOLID",
    "PEPPOLAccountingCustomerPartFormat",
    "EfffPEPPOLCustomerWithoutVAT",
    "EfffPEPPOLAccountingCustomerPart",
    "PEPPOLPaymentMeansFormat",
    "EfffPEPPOLPaymentMeans",
    "PEPPOLPaymentTermsFormat",
    "EfffPEPPOLPaymentTerms",
    "PEPPOLOrderReferenceFormat",
    "EfffPEPPOLOrderReference",
    "PEPPOLBillingReferenceFormat",
    "EfffPEPPOLBillingReference",
    "EfffPEPPOLPaymentTermsV2",
    "PEPPOLAllowanceChargeFormat",
    "PEPPOLAllowanceChargeFormatVatBase",
    "EfffPEPPOLAllowanceCharge",
    "PEPPOLTaxTotalFormat",
    "EfffPEPPOLTaxTotal",
    "PEPPOLLegalMonetaryTotalFormat",
    "EfffPEPPOLLegalMonetaryTotal",
    "PEPPOLInvoiceLineFormat",
    "EfffPEPPOLInvoiceLine",
    "DEPInit",
    "DEPGetFolderModuleSetting",
    "DEPGetFolderDefaultProcessingMode",
    "DEPActivateModuleFolderSetting",
    "DEPIsModuleExist",
    "DEPIsModuleExistOptionalMessage",
    "DEPClose",
    "DEPCloseBatch",
    "DEPUploadDocument",
    "DEPChangeHashMethod",
    "DEPGetHashMethod",
    "DEPInvokeMethod",
    "DEPInvokeMethodOptionalMessage",
    "DEPGetJournalList",
    "DEPDeleteJournal",
    "DEPGetAllCartrige",
    "DEPCreateJournal",
    "DEPGetOffloadDataTransfertPath",
    "DEPGetVICustomType",
    "XLSTabFormat",
    "XMLEscaping",
    "DATIMDaysInYearCount",
    "DATIMPerToDate",
    "CLRIsColorDark",
    "CLRBrightnessColorGet",
    "ACCReturnPeriode",
    "ACCCheckCentralisateur",
    "ACCGetBankName",
    "ANAGetFormatforSectionQuantity",
    "ANAIsAccountAnalytical",
    "PRNSignTot",
    "PRNCalculCarac",
    "PRNCalculCaracForAnyZone",
    "PRNClotureValueCentral",
    "PRNZoneIsSimulation",
    "PRNClotureValue",
    "PRNFormatCheckedNumber",
    "PRNGetNumberKeyControl",
    "COLIsItemExistsInCollection",
    "VBCStatusBarOfAFormHeight",
    "FMTCCurrency",
    "FMTCDateDDMMYYYYWithSlash",
    "PRCWindowToProcessId",
    "IOIsDirectoryCreated",
    "LOGExcelAndFennrickProcessManage",
    "LOGExcelAndFennrickProcessCreated",
    "LOGExcelAndFennrickProcessDeleted",
    "LOGFileReset",
    "LOGFileInfoAdd",
    "LSTValuesInit",
    "LSTValuesComplete",
    "LSTValuesAddItem",
    "LSTIsItemInListValues",
    "LSTIndexListByItemListGet",
    "LSTIndexListByItemDataGet",
    "CarsOpen",
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
    "CarsDesciptionFromInfo",
    "SODAInit",
    "SODACreateMappingANA",
    "EFFFInit",
    "EFFFDownloadFiles",
    "EFFFCreateACTEFFF",
    "EFFFGetACTEFFF",
    "EFFFUpdateACTEFFF",
    "EFFFDeleteACTEFFF",
    "EfffDeleteAnaSection",
    "EFFFGetINSS",
    "EFFFGetTypeLabel",
    "CAROInit",
    "CAROGetComment",
    "ConnectCreateCOT",
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
    "ConnectCreateTasksMissingInvoices",
    "CodaBoxCreateClient",
    "CodaBoxCreateMandate",
    "CodaBoxGetLoginPwdAndId",
    "CodaBoxGetLoginPwdAndIdMandates",
    "CodaBoxCheckState",
    "CodaBoxGetCredentials",
    "CodaBoxGetCredentialsMandates",
    "CodaFindGross",
    "CodaFindCommission",
    "MossXmlHeader",
    "MossXmlHeaderCheckRepresentative",
    "MossXmlHeaderInfo",
    "MossXmlRow",
    "MossXmlFooterInfo",
    "OssXmlHeader",
    "OssXmlHeaderCheckRepresentative",
    "OssXmlHeaderInfo",
    "OssXmlNil",
    "OssXmlRow",
    "OssXmlRowCorrection",
    "LuxXmlCaseInitialise",
    "LogCreate",
    "LogUploadFiles",
    "LogOcrRanking",
    "LogSendMessageUpload",
    "CsfEmailOpen",
    "CsfEmailCreate",
    "CsfEmailCreateIndex",
    "CsfEmailClose",
    "CsfEmailPackClose",
    "CsfEmailGetList",
    "CsfEmailUpdateList",
    "CsfEmailIsEmpty",
    "DistribCreate",
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
    "ANTDISTRGenerateWaiting",
    "DashboardGetSubscribeFolders",
    "DashboardDownloadVIDocument",
    "MessageQueueInit",
    "MessageQueueInitWebSocket",
    "MessageQueueSetTimeCheckingServiceStatus",
    "MessageQueueGetTimeCheckingServiceStatus",
    "MessageQueueDisconnectWebSocket",
    "DashboardGetLogin",
    "DashboardMsgt",
    "DashboardLockMsgFromWebsocket",
    "SendMessageCodaOnDemand",
    "CWCreatedSalesDocs",
    "CWOpenSalesDocs",
    "UserExtCreateUserExtended",
    "UserExtUpdateUserExtended",
    "UserExtGetValueUserExtented",
    "UserExtDeleteSpecificUser",
    "UserExtDeleteAllUsersExtended",
    "UserExtIsMultiUserExtented",
    "UserExtGetPasswordInString",
    "RNIsUnreadReleaseNote",
    "RNGetReleaseNote",
    "RNGetReleaseNoteVersions",
    "RNGetNbrReleaseNotes",
    "RNSetLastReleaseNote",
    "DonorGetReport",
    "FennRickViewGetRequest",
    "AdaptDocHead",
    "StartForm",
    "ReplaceCharactersReminderFileName",
    "getScreenDPI",
    "OpenFileArchiveACT",
    "OpenFileArchiveACF",
    "OpenFilesALT",
    "OpenFilesArchiveALT",
    "CreateFolderRecursive",
};

// The session properties (ConnexionInternetActive is read-only) and the lifecycle operations.
constexpr const char* kProperties[] = {
    "USER_Class",
    "ScreenFont",
    "language",
    "TestMode",
    "isNewVoucher",
    "OrgPath",
    "TempPath",
    "GetDecimalSpecifier",
    "GetThousandSpecifier",
    "UserDbfPath",
    "INIfile",
    "IsFiduc",
    "ProtectedBy",
    "ConnexionInternetActive",
    "CurrentBYNum",
    "SocPathName",
    "pathName",
    "socShortName",
};
constexpr const char* kLifecycle[] = {
    "Initialize",    "init",          "InitializeProperty",
    "InitializeDLL", "ParamActivate", "ReinitializeColAdsTable",
    "DBDisconnect",
};

const MemberTable& Table() {
    return MemberTable::Instance();
}

bool HasAnyKind(const std::string& name) {
    for (MemberKind kind : {MemberKind::Method, MemberKind::PropertyGet, MemberKind::PropertyPut}) {
        if (Table().Find(name, kind) != nullptr) return true;
    }
    return false;
}

TEST(MemberTableTest, EveryPublicMemberIsAnEntry) {
    for (const char* name : kServiceMembers) EXPECT_TRUE(HasAnyKind(name)) << name;
    for (const char* name : kLifecycle) {
        EXPECT_NE(Table().Find(name, MemberKind::Method), nullptr) << name;
    }
    for (const std::string name : kProperties) {
        EXPECT_NE(Table().Find(name, MemberKind::PropertyGet), nullptr) << name;
        EXPECT_EQ(Table().Find(name, MemberKind::PropertyPut) != nullptr,
                  name != "ConnexionInternetActive")
            << name;
    }
    // No name twice for one kind, whatever the case.
    std::set<std::pair<std::string, MemberKind>> seen;
    for (const Member& member : Table().Members()) {
        std::string upper = member.name;
        for (char& c : upper) c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
        EXPECT_TRUE(seen.emplace(upper, member.kind).second) << member.name;
    }
}

TEST(MemberTableTest, NamesAreMatchedWithoutRegardToCase) {
    const Member* member = Table().Find("efffpeppollinit", MemberKind::Method);
    ASSERT_NE(member, nullptr);
    EXPECT_EQ(member->name, "EfffPEPPOLLInit");
    EXPECT_EQ(Table().Find("EfffPEPPOLInit", MemberKind::Method), nullptr) << "one L is not it";
    EXPECT_NE(Table().Find("CARSDESCIPTIONFROMINFO", MemberKind::Method), nullptr);
    EXPECT_NE(Table().Find("userextgetvalueuserextented", MemberKind::Method), nullptr);
    EXPECT_EQ(Table().Find("TempPath", MemberKind::Method), nullptr) << "a property, not a method";
}

TEST(MemberTableTest, TheListingShowsKindsByReferenceAndOptionalArguments) {
    EXPECT_EQ(DescribeMember(*Table().Find("GetParamValue", MemberKind::Method)),
              "GetParamValue\tmethod\tObject, String, ByRef String");
    EXPECT_EQ(DescribeMember(*Table().Find("init", MemberKind::Method)), "init\tmethod\t[Variant]");
    EXPECT_EQ(DescribeMember(*Table().Find("TestMode", MemberKind::PropertyPut)),
              "TestMode\tproperty put\tBoolean");
    EXPECT_EQ(DescribeMember(*Table().Find("Initialize", MemberKind::Method)),
              "Initialize\tmethod\tParamArray Variant()");
    EXPECT_EQ(DescribeMember(*Table().Find("CarsOpen", MemberKind::Method)),
              "CarsOpen\tmethod\tParamArray Variant()\tnot available in this build");
}

class MemberCallTest : public FacadeTest {
  protected:
    std::int32_t ErrorOf(const std::string& member, std::vector<Variant> args,
                         std::string* description = nullptr) {
        try {
            Call(member, std::move(args));
        } catch (const FacadeError& error) {
            if (description != nullptr) *description = error.what();
            return error.number();
        }
        return 0;
    }
};

TEST_F(MemberCallTest, CallsAreCheckedBeforeTheyRun) {
    std::string description;
    EXPECT_EQ(ErrorOf("CarsOpen", {Variant(1)}, &description), kErrNotAvailable);
    EXPECT_EQ(description, "FnrkRoutines.CarsOpen is not available in this build");
    EXPECT_EQ(ErrorOf("carsopen", {}, &description), kErrNotAvailable);
    EXPECT_EQ(description, "FnrkRoutines.CarsOpen is not available in this build");
    EXPECT_EQ(ErrorOf("NoSuchMember", {}, &description), kErrNoSuchMember);
    EXPECT_NE(description.find("FnrkRoutines.NoSuchMember"), std::string::npos);
    EXPECT_EQ(ErrorOf("InitializeProperty", {Variant("TEMPATH")}), kErrArgumentNotOptional);
    EXPECT_EQ(ErrorOf("DBDisconnect", {Variant(0)}), kErrWrongArgumentCount);
    EXPECT_EQ(ErrorOf("AssetClass_Init", {Variant("not a registry")}), kErrObjectRequired);
    Call("AssetClass_Init", {RegistryOf({})});
    EXPECT_EQ(ErrorOf("AssetClass_Get", {RegistryOf({}), Variant("first")}, &description),
              kErrTypeMismatch);
    EXPECT_NE(description.find("argument 2 of FnrkRoutines.AssetClass_Get"), std::string::npos)
        << description;
    // Optional arguments may be left out.
    EXPECT_EQ(Call("init", {}), Variant(true));
}

TEST_F(MemberCallTest, PropertiesAreReadAndWrittenThroughTheTable) {
    std::vector<Variant> value = {Variant(" 2 ")};
    Table().Invoke(routines, "currentbynum", MemberKind::PropertyPut, value);
    std::vector<Variant> none;
    EXPECT_EQ(Table().Invoke(routines, "CurrentBYNum", MemberKind::PropertyGet, none),
              Variant(std::int16_t{2}));
    value = {Variant(dossier.string())};
    Table().Invoke(routines, "SocPathName", MemberKind::PropertyPut, value);
    EXPECT_EQ(Table().Invoke(routines, "pathName", MemberKind::PropertyGet, none),
              Variant(dossier.string()));
    value = {Variant(true)};
    Table().Invoke(routines, "isNewVoucher", MemberKind::PropertyPut, value);
    EXPECT_EQ(Table().Invoke(routines, "ISNEWVOUCHER", MemberKind::PropertyGet, none),
              Variant(true));
    value = {Variant(false)};
    EXPECT_THROW(
        Table().Invoke(routines, "ConnexionInternetActive", MemberKind::PropertyPut, value),
        FacadeError);
}

}  // namespace
}  // namespace fnrk::facade
