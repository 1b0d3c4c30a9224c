#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <memory>
#include <sstream>

#include <cairo-pdf.h>
#include <cairo.h>

#include "documents/pdf_documents.hpp"
#include "session/session_user.hpp"
#include "support/run_command.hpp"
#include "support/temp_dir.hpp"

namespace fnrk::documents {
namespace {

namespace fs = std::filesystem;

class PdfDocumentsTest : public ::testing::Test {
  protected:
    void TearDown() override { session::SetMessageLanguage("F"); }

    // A real PDF of `pages` pages reading "<label> page N", drawn with cairo.
    std::string MakePdf(const std::string& name, const std::string& label, int pages) {
        const std::string path = (temp_ / name).string();
        cairo_surface_t* surface = cairo_pdf_surface_create(path.c_str(), 595, 842);
        cairo_t* cr = cairo_create(surface);
        cairo_select_font_face(cr, "DejaVu Sans", CAIRO_FONT_SLANT_NORMAL,
                               CAIRO_FONT_WEIGHT_NORMAL);
        cairo_set_font_size(cr, 14);
        for (int page = 1; page <= pages; ++page) {
            cairo_move_to(cr, 50, 60);
            cairo_show_text(cr, (label + " page " + std::to_string(page)).c_str());
            cairo_show_page(cr);
        }
        cairo_destroy(cr);
        cairo_surface_destroy(surface);
        return path;
    }

    static int PageCount(const std::string& path) {
        const auto result = testing::RunCommand({"qpdf", "--show-npages", path});
        return result.exitCode == 0 ? std::stoi(result.out) : -1;
    }

    // The text of each page, as pdftotext extracts it.
    static std::vector<std::string> PageTexts(const std::string& path) {
        const auto result = testing::RunCommand({"pdftotext", "-layout", path, "-"});
        EXPECT_EQ(result.exitCode, 0) << result.err;
        const std::string& output = result.out;
        std::vector<std::string> pages;
        std::stringstream stream(output);
        std::string page;
        while (std::getline(stream, page, '\f'))
            if (!page.empty() && page != "\n") pages.push_back(page);
        return pages;
    }

    testing::TempDir temp_;
};

TEST_F(PdfDocumentsTest, MergedFileHoldsEveryPageInOrderAndPassesQpdfCheck) {
    const std::string first = MakePdf("first.pdf", "Invoice", 2);
    const std::string second = MakePdf("second.pdf", "Annex", 3);
    const std::string merged = (temp_.path() / "merged.pdf").string();
    std::string error;
    ASSERT_TRUE(MergePDFFile({first, second, first}, merged, error)) << error;
    EXPECT_EQ(error, "");
    EXPECT_EQ(PageCount(merged), 7);
    const auto check = testing::RunCommand({"qpdf", "--check", merged});
    EXPECT_EQ(check.exitCode, 0) << check.out << check.err;
    const auto pages = PageTexts(merged);
    ASSERT_EQ(pages.size(), 7u);
    EXPECT_NE(pages[1].find("Invoice page 2"), std::string::npos);
    EXPECT_NE(pages[2].find("Annex page 1"), std::string::npos);
    EXPECT_NE(pages[6].find("Invoice page 2"), std::string::npos);
    EXPECT_FALSE(fs::exists(merged + ".partial"));
}

TEST_F(PdfDocumentsTest, DuplicateCarriesTheStampOfTheSessionLanguageOnEveryPage) {
    const std::string source = MakePdf("invoice.pdf", "Invoice", 3);
    const std::string sourceBytes = testing::ReadFileBytes(source);
    for (const auto& [language, word] : std::vector<std::pair<std::string, std::string>>{
             {"F", "DUPLICATA"}, {"N", "DUPLICAAT"}, {"E", "DUPLICATE"}}) {
        session::SetMessageLanguage(language);
        const std::string duplicate = (temp_.path() / ("copy_" + language + ".pdf")).string();
        std::string error;
        ASSERT_TRUE(CreateDuplicata(source, duplicate, error)) << error;
        const auto check = testing::RunCommand({"qpdf", "--check", duplicate});
        EXPECT_EQ(check.exitCode, 0) << check.out << check.err;
        const auto pages = PageTexts(duplicate);
        ASSERT_EQ(pages.size(), 3u) << language;
        for (std::size_t i = 0; i < pages.size(); ++i) {
            EXPECT_NE(pages[i].find(word), std::string::npos) << language << " page " << i + 1;
            EXPECT_NE(pages[i].find("Invoice page " + std::to_string(i + 1)), std::string::npos);
        }
    }
    EXPECT_EQ(testing::ReadFileBytes(source), sourceBytes);
}

TEST_F(PdfDocumentsTest, DamagedOrMissingFilesAreNamedAndLeaveNoOutput) {
    const std::string good = MakePdf("good.pdf", "Good", 2);
    const std::string bytes = testing::ReadFileBytes(good);
    const std::string truncated = (temp_.path() / "truncated.pdf").string();
    testing::WriteFileBytes(truncated, bytes.substr(0, bytes.size() / 2));
    const std::string garbage = (temp_.path() / "garbage.pdf").string();
    testing::WriteFileBytes(garbage, "%PDF-1.4\nthis is not a PDF at all\n");
    const std::string target = (temp_.path() / "out.pdf").string();
    std::string error;

    EXPECT_FALSE(MergePDFFile({good, truncated}, target, error));
    EXPECT_NE(error.find("truncated.pdf"), std::string::npos) << error;
    EXPECT_FALSE(CreateDuplicata(garbage, target, error));
    EXPECT_NE(error.find("garbage.pdf"), std::string::npos) << error;
    EXPECT_FALSE(CreateDuplicata((temp_.path() / "missing.pdf").string(), target, error));
    EXPECT_NE(error.find("missing.pdf"), std::string::npos) << error;
    EXPECT_FALSE(MergePDFFile({}, target, error));
    EXPECT_FALSE(fs::exists(target));
    EXPECT_FALSE(fs::exists(target + ".partial"));

    // A source is never overwritten by its own result, and an existing target survives a failure.
    EXPECT_FALSE(MergePDFFile({good}, good, error));
    EXPECT_EQ(PageCount(good), 2);
    testing::WriteFileBytes(target, "keep");
    EXPECT_FALSE(MergePDFFile({good, garbage}, target, error));
    EXPECT_EQ(testing::ReadFileBytes(target), "keep");
}

}  // namespace
}  // namespace fnrk::documents
