// The PDF members of a build without qpdf and cairo (the Windows build): they answer false with
// the reason, so that a caller sees why nothing was written.

#include "documents/pdf_documents.hpp"

namespace fnrk::documents {

namespace {

const char* const kNotAvailable =
    "PDF duplicates and merging are not available in this build (built without qpdf and cairo)";

}  // namespace

bool CreateDuplicata(const std::string&, const std::string&, std::string& errorMessage) {
    errorMessage = kNotAvailable;
    return false;
}

bool MergePDFFile(const std::vector<std::string>&, const std::string&, std::string& errorMessage) {
    errorMessage = kNotAvailable;
    return false;
}

}  // namespace fnrk::documents
