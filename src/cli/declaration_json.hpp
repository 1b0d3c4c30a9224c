#pragma once

// OSS and MOSS consignments described in JSON (the shapes are in the README), turned into
// documents through the declaration writers. A description that does not fit is a
// CommandFailure naming the offending member, e.g. "memberStates[0].rows[1].vatAmount".

#include <nlohmann/json.hpp>

#include "declarations/declaration_document.hpp"

namespace fnrk::cli {

void WriteOssConsignment(const nlohmann::json& description,
                         declarations::DeclarationDocument& document);

void WriteMossConsignment(const nlohmann::json& description,
                          declarations::DeclarationDocument& document);

}  // namespace fnrk::cli
