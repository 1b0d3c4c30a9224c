#include "documents/pdf_documents.hpp"

#include <filesystem>
#include <memory>
#include <system_error>

#include <qpdf/QPDF.hh>
#include <qpdf/QPDFExc.hh>
#include <qpdf/QPDFPageDocumentHelper.hh>
#include <qpdf/QPDFPageObjectHelper.hh>
#include <qpdf/QPDFWriter.hh>

#include "documents/duplicate_stamp.hpp"
#include "platform/paths.hpp"

namespace fnrk::documents {

namespace {

namespace fs = std::filesystem;

std::unique_ptr<QPDF> OpenPdf(const std::string& path) {
    const fs::path file = platform::FileSystemPath(path);
    std::error_code error;
    if (!fs::is_regular_file(file, error)) throw std::runtime_error("PDF file not found: " + path);
    auto pdf = std::make_unique<QPDF>();
    pdf->setSuppressWarnings(true);
    pdf->setAttemptRecovery(false);
    try {
        pdf->processFile(file.string().c_str());
        // Reading every page's objects finds damage the trailer alone does not show.
        for (auto& page : QPDFPageDocumentHelper(*pdf).getAllPages()) page.getPageImages();
    } catch (const std::exception& e) {
        throw std::runtime_error("damaged PDF file " + path + ": " + e.what());
    }
    return pdf;
}

// Writes through a temporary file beside the target, renamed over it once complete.
void WriteAtomically(QPDF& pdf, const std::string& target) {
    const fs::path file = platform::FileSystemPath(target);
    const fs::path partial = file.string() + ".partial";
    // The writer keeps the file name it is given while it writes.
    const std::string partialName = partial.string();
    try {
        QPDFWriter writer(pdf, partialName.c_str());
        writer.setStaticID(false);
        writer.write();
    } catch (const std::exception& e) {
        std::error_code ignored;
        fs::remove(partial, ignored);
        throw std::runtime_error("the PDF file " + target + " could not be written: " + e.what());
    }
    std::error_code error;
    fs::rename(partial, file, error);
    if (error) {
        fs::remove(partial, error);
        throw std::runtime_error("the PDF file " + target + " could not be written");
    }
}

void StampEveryPage(QPDF& pdf, QPDF& stamp) {
    auto stampPages = QPDFPageDocumentHelper(stamp).getAllPages();
    const QPDFObjectHandle stampForm =
        pdf.copyForeignObject(stampPages.at(0).getFormXObjectForPage());
    for (auto& page : QPDFPageDocumentHelper(pdf).getAllPages()) {
        QPDFObjectHandle resources = page.getAttribute("/Resources", true);
        int suffix = 1;
        const std::string name = resources.getUniqueResourceName("/Fx", suffix);
        const std::string placement = page.placeFormXObject(
            stampForm, name, page.getTrimBox().getArrayAsRectangle(), true, true, true);
        if (placement.empty()) continue;
        resources.mergeResources(QPDFObjectHandle::parse("<< /XObject << >> >>"));
        resources.getKey("/XObject").replaceKey(name, stampForm);
        // The page's own drawing is enclosed so that its graphics state cannot move the stamp.
        page.addPageContents(QPDFObjectHandle::newStream(&pdf, "q\n"), true);
        page.addPageContents(QPDFObjectHandle::newStream(&pdf, "\nQ\n" + placement), false);
    }
}

bool SamePath(const std::string& a, const std::string& b) {
    std::error_code error;
    return fs::weakly_canonical(platform::FileSystemPath(a), error) ==
           fs::weakly_canonical(platform::FileSystemPath(b), error);
}

}  // namespace

bool CreateDuplicata(const std::string& source, const std::string& target,
                     std::string& errorMessage) {
    errorMessage.clear();
    try {
        if (SamePath(source, target))
            throw std::runtime_error("the duplicate cannot replace its source " + source);
        const auto pdf = OpenPdf(source);
        const std::string stampBytes = DrawStampPage(DuplicateStampText());
        QPDF stamp;
        stamp.processMemoryFile("duplicate stamp", stampBytes.data(), stampBytes.size());
        StampEveryPage(*pdf, stamp);
        WriteAtomically(*pdf, target);
        return true;
    } catch (const std::exception& e) {
        errorMessage = e.what();
        return false;
    }
}

bool MergePDFFile(const std::vector<std::string>& sources, const std::string& target,
                  std::string& errorMessage) {
    errorMessage.clear();
    try {
        if (sources.empty()) throw std::runtime_error("no PDF file to merge");
        for (const auto& source : sources)
            if (SamePath(source, target))
                throw std::runtime_error("the merged file cannot replace its source " + source);
        // The sources stay open until the result is written: their pages are copied lazily.
        std::vector<std::unique_ptr<QPDF>> inputs;
        for (const auto& source : sources) inputs.push_back(OpenPdf(source));
        QPDF merged;
        merged.emptyPDF();
        QPDFPageDocumentHelper mergedPages(merged);
        for (const auto& input : inputs)
            for (auto& page : QPDFPageDocumentHelper(*input).getAllPages())
                mergedPages.addPage(page, false);
        WriteAtomically(merged, target);
        return true;
    } catch (const std::exception& e) {
        errorMessage = e.what();
        return false;
    }
}

}  // namespace fnrk::documents
