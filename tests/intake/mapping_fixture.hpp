#pragma once

// A company with the application's template folder (holding the shipped EFFFSOC.ORG), for the
// mapping tables, and readers that look at those tables from outside the intake classes.

#include <filesystem>
#include <string>
#include <vector>

#include "intake_fixture.hpp"
#include "platform/paths.hpp"

namespace fnrk::intake::testing {

class MappingTest : public IntakeTest {
  protected:
    void SetUp() override {
        IntakeTest::SetUp();
        const std::filesystem::path templates = folder / "RESOURCES" / "ORG";
        std::filesystem::create_directories(templates);
        std::filesystem::copy_file(std::filesystem::path(FNRK_TEMPLATE_FOLDER) / "EFFFSOC.ORG",
                                   templates / "EFFFSOC.ORG");
        previousProgramFolder = platform::ProgramFolder();
        platform::SetProgramFolder((folder / "PRG").string());
    }
    void TearDown() override {
        platform::SetProgramFolder(previousProgramFolder);
        IntakeTest::TearDown();
    }

    // The values of `field` in the order of tag `tag` of the open table `alias`, deleted
    // records hidden; the caller's current table is left current.
    std::vector<std::string> InTagOrder(const std::string& alias, const std::string& tag,
                                        const std::string& field) {
        const std::string caller = ads.GetCurrentAlias();
        std::vector<std::string> values;
        EXPECT_EQ(ads.ActivateAlias(alias), engine::AE_SUCCESS);
        EXPECT_TRUE(ads.SetIndex(tag));
        for (ads.MoveTop(); !ads.SelectionEof(); ads.moveNext()) {
            values.push_back(ads.GetStringValue(field));
        }
        if (!caller.empty()) ads.ActivateAlias(caller);
        return values;
    }
    std::string TagExpression(const std::string& alias, const std::string& tag) {
        EXPECT_EQ(ads.ActivateAlias(alias), engine::AE_SUCCESS);
        EXPECT_TRUE(ads.SetIndex(tag));
        return ads.CurrentIndexKeyExpr();
    }

    std::string previousProgramFolder;
};

}  // namespace fnrk::intake::testing
