#pragma once

// Namespaces of the Belgian administration's OSS and MOSS upload schemas.

#include <string_view>

namespace fnrk::declarations {

// The administration's common input schema (representative blocks), shared by OSS and MOSS.
inline constexpr std::string_view kInputCommonNamespace = "http://www.minfin.fgov.be/InputCommon";

inline constexpr std::string_view kOssDeclarationNamespace =
    "http://www.minfin.fgov.be/OSSDeclaration";
// Rows, periods, VAT numbers and fixed establishments of an OSS declaration.
inline constexpr std::string_view kOssCommonNamespace = "urn:minfin.fgov.be:oss:common";

inline constexpr std::string_view kMossConsignmentNamespace =
    "http://www.minfin.fgov.be/MossConsignment";
// The European MOSS common types (VAT numbers, periods).
inline constexpr std::string_view kMossCommonNamespace =
    "urn:ec.europa.eu:taxud:fiscalis:moss:common:v1";

}  // namespace fnrk::declarations
