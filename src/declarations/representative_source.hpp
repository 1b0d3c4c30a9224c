#pragma once

// Where the representative of a declaration comes from: one record of a table, read field by
// field. The table layer's record satisfies it; anything else that can answer a field's text
// by name will do.

#include <string>
#include <string_view>

namespace fnrk::declarations {

// Field names of the representative's record ("Adress" is the table's own spelling).
inline constexpr std::string_view kRepresentativeVatField = "NTVA";
inline constexpr std::string_view kRepresentativeNameField = "Name";
inline constexpr std::string_view kRepresentativeStreetField = "Adress";
inline constexpr std::string_view kRepresentativePostCodeField = "PostCode";
inline constexpr std::string_view kRepresentativeCityField = "Locality";
inline constexpr std::string_view kRepresentativeCountryField = "Country";
inline constexpr std::string_view kRepresentativeEmailField = "Email";

class RepresentativeSource {
  public:
    virtual ~RepresentativeSource() = default;

    // The field's text as stored (blank-padded, UTF-8); empty for an unknown field.
    virtual std::string FieldText(std::string_view field) const = 0;
};

}  // namespace fnrk::declarations
