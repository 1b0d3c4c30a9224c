#pragma once

// A sales document described in JSON (the shape is in the README, section "Electronic
// invoices"), read into the writer's SalesDocument, with the company parameters and table
// answers of its "parameters" and "lookups" members. A description that does not fit is a
// CommandFailure naming the member, e.g. "field lines[1].quantity: must be a number".

#include <filesystem>

#include <nlohmann/json.hpp>

#include "einvoice/fixed_invoice_lookups.hpp"
#include "einvoice/sales_document.hpp"

namespace fnrk::cli {

// A relative attachment path is taken from `baseFolder` (the folder of the JSON file).
einvoice::SalesDocument ReadSalesDocument(const nlohmann::json& description,
                                          const std::filesystem::path& baseFolder,
                                          einvoice::FixedInvoiceLookups& lookups);

}  // namespace fnrk::cli
