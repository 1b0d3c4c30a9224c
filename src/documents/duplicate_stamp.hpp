#pragma once

// The duplicate stamp drawn as a one-page PDF in memory, to be laid over other pages.

#include <string>
#include <string_view>

namespace fnrk::documents {

// One A4 page, transparent but for `text` in large outlined red capitals across its middle.
std::string DrawStampPage(std::string_view text);

}  // namespace fnrk::documents
