#include "intake/file_period.hpp"

#include <libxml/parser.h>
#include <libxml/tree.h>

#include <charconv>
#include <memory>
#include <regex>

#include "platform/paths.hpp"

namespace fnrk::intake {

namespace {

struct DocumentFree {
    void operator()(xmlDoc* document) const { xmlFreeDoc(document); }
};

bool NameIs(const xmlNode* node, std::string_view name) {
    return node->type == XML_ELEMENT_NODE &&
           std::string_view(reinterpret_cast<const char*>(node->name)) == name;
}

// The first element named `name` in document order below `node`, inside an element named
// `within` when that is not empty.
const xmlNode* FindElement(const xmlNode* node, std::string_view name, std::string_view within,
                           bool inside) {
    for (; node != nullptr; node = node->next) {
        if (NameIs(node, name) && (within.empty() || inside)) return node;
        const bool childrenInside = inside || (!within.empty() && NameIs(node, within));
        if (const xmlNode* found = FindElement(node->children, name, within, childrenInside))
            return found;
    }
    return nullptr;
}

int Number(const std::string& text) {
    int value = 0;
    std::from_chars(text.data(), text.data() + text.size(), value);
    return value;
}

}  // namespace

std::optional<MonthOfYear> ParsePeriodText(std::string_view text) {
    static const std::regex isoDate(R"((\d{4})-(\d{2})(-\d{2})?([T ].*)?)");
    static const std::regex compact(R"((\d{4})(\d{2})(\d{2})?)");
    static const std::regex dayMonthYear(R"((\d{2}/)?(\d{2})/(\d{4}))");
    // XML text often sits on lines of its own.
    const std::size_t first = text.find_first_not_of(" \t\r\n");
    const std::string trimmed(
        first == std::string_view::npos
            ? std::string_view()
            : text.substr(first, text.find_last_not_of(" \t\r\n") - first + 1));
    std::smatch match;
    MonthOfYear period;
    if (std::regex_match(trimmed, match, isoDate) || std::regex_match(trimmed, match, compact)) {
        period = {Number(match[2].str()), Number(match[1].str())};
    } else if (std::regex_match(trimmed, match, dayMonthYear)) {
        period = {Number(match[2].str()), Number(match[3].str())};
    } else {
        return std::nullopt;
    }
    if (period.month < 1 || period.month > 12 || period.year < 1) return std::nullopt;
    return period;
}

std::optional<MonthOfYear> ReadFilePeriod(std::string_view path, IntakeKind kind,
                                          bool socialPeriod) {
    const std::string file = platform::FileSystemPath(path).string();
    const std::unique_ptr<xmlDoc, DocumentFree> document(xmlReadFile(
        file.c_str(), nullptr, XML_PARSE_NONET | XML_PARSE_NOERROR | XML_PARSE_NOWARNING));
    if (!document) return std::nullopt;
    std::string_view name;
    std::string_view within;
    switch (kind) {
        case IntakeKind::Soda:
            name = socialPeriod ? "SocialPeriod" : "AccountPeriod";
            break;
        case IntakeKind::Efff:
            name = "startDaySocialPayPeriod";
            within = "employerDeclaration";
            break;
        case IntakeKind::Caro:
            name = "EndDate";
            break;
    }
    const xmlNode* element = FindElement(xmlDocGetRootElement(document.get()), name, within, false);
    if (element == nullptr) return std::nullopt;
    xmlChar* content = xmlNodeGetContent(element);
    const std::string text = content ? reinterpret_cast<const char*>(content) : "";
    xmlFree(content);
    return ParsePeriodText(text);
}

}  // namespace fnrk::intake
