# The header-only libraries of the Windows build (copied from their Debian packages into
# FNRK_WINDOWS_PREFIX by scripts/windows-deps.sh) as the targets the Linux build finds, and
# libxml2 as the static library it is there.
set(windows_include "${FNRK_WINDOWS_PREFIX}/include")

add_library(fmt::fmt INTERFACE IMPORTED)
target_include_directories(fmt::fmt INTERFACE "${windows_include}")
target_compile_definitions(fmt::fmt INTERFACE FMT_HEADER_ONLY)

add_library(CLI11::CLI11 INTERFACE IMPORTED)
target_include_directories(CLI11::CLI11 INTERFACE "${windows_include}")

add_library(nlohmann_json::nlohmann_json INTERFACE IMPORTED)
target_include_directories(nlohmann_json::nlohmann_json INTERFACE "${windows_include}")

find_package(LibXml2 REQUIRED)
set_property(TARGET LibXml2::LibXml2 APPEND PROPERTY INTERFACE_COMPILE_DEFINITIONS LIBXML_STATIC)
set_property(TARGET LibXml2::LibXml2 APPEND PROPERTY INTERFACE_LINK_LIBRARIES ws2_32)
