// The table layer's message catalogue, word for word in its three languages.

#include <gtest/gtest.h>

#include <chrono>
#include <thread>

#include "support/cpu_time.hpp"
#include "support/temp_dir.hpp"
#include "tables/ads_class.hpp"

namespace fnrk::tables {
namespace {

TEST(AdsMessageCatalogue, TextsAreKeptWordForWordInTheirLanguage) {
    EXPECT_EQ(AdsClass::ConvertADSErrNumToString(400, "F"),
              "Le fichier de données n'a pas pu être mis à jour car il est en cours "
              "d'utilisaton.");
    EXPECT_EQ(AdsClass::ConvertADSErrNumToString(400, "N"),
              "Het gegevensbestand werd niet geüpdatet omdat het in gebruik is.");
    EXPECT_EQ(AdsClass::ConvertADSErrNumToString(190, "E"), "The user file  (");
    EXPECT_EQ(AdsClass::ConvertADSErrNumToString(340, "E"), "The user file (");
    EXPECT_EQ(AdsClass::ConvertADSErrNumToString(100, "N"),
              "Het instellingenbestand kan niet exclusief geopend worden ( ");
    // Codes shared by two numbers.
    EXPECT_EQ(AdsClass::ConvertADSErrNumToString(60, "E"), "Network error");
    EXPECT_EQ(AdsClass::ConvertADSErrNumToString(110, "E"), "Impossible to access this option ");
    EXPECT_EQ(AdsClass::ConvertADSErrNumToString(310, "F"), ") introuvable !");
    // One text in every language; line breaks are CR LF.
    EXPECT_EQ(AdsClass::ConvertADSErrNumToString(260, "N"), "Failed to connect to local server");
    EXPECT_EQ(AdsClass::ConvertADSErrNumToString(370, "E"),
              "Connection failed in mode Client/Server !\r\nDo you want to connect in mode "
              "local server ?");
    // Any language letter other than N and E is French.
    EXPECT_EQ(AdsClass::ConvertADSErrNumToString(90, "X"), "Attention");
    EXPECT_EQ(AdsClass::ConvertADSErrNumToString(90, ""), "Attention");
    for (int undefined : {0, 5, 15, 215, 405, 410, -10}) {
        EXPECT_EQ(AdsClass::ConvertADSErrNumToString(undefined, "E"), "") << undefined;
    }
    // Every multiple of ten from 10 to 400 has a text.
    for (int code = 10; code <= 400; code += 10) {
        EXPECT_NE(AdsClass::ConvertADSErrNumToString(code, "N"), "") << code;
    }
}

TEST(AdsFileWait, WaitsForAFileWithoutSpinning) {
    fnrk::testing::TempDir folder;
    const std::string file = (folder / "ready.flag").string();
    EXPECT_TRUE(AdsClass::waitFileExist(file, false, 0));
    EXPECT_FALSE(AdsClass::waitFileExist(file, true, 0));

    std::thread writer([&] {
        std::this_thread::sleep_for(std::chrono::milliseconds(150));
        fnrk::testing::WriteFileBytes(file, "x");
    });
    EXPECT_TRUE(AdsClass::waitFileExist(file, true, 10));
    writer.join();

    // A wait that runs out has waited its time, sleeping rather than burning a core.
    const double cpuBefore = fnrk::testing::ProcessCpuSeconds();
    const auto before = std::chrono::steady_clock::now();
    EXPECT_FALSE(AdsClass::waitFileExist(file, false, 0.4));
    const double waited =
        std::chrono::duration<double>(std::chrono::steady_clock::now() - before).count();
    const double busy = fnrk::testing::ProcessCpuSeconds() - cpuBefore;
    EXPECT_GE(waited, 0.4);
    EXPECT_LT(busy, waited / 2);
}

}  // namespace
}  // namespace fnrk::tables
