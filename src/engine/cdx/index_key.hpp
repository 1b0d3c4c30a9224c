#pragma once

// Index keys as stored: character keys are the Windows-1252 bytes padded with blanks; numbers and
// dates are 8-byte doubles arranged so that byte order is numeric order; logicals are "T" / "F".
// Keys compare as plain bytes (machine collation).

#include <cstddef>
#include <string>
#include <string_view>

namespace fnrk::engine::cdx {

enum class KeyKind { Character, Numeric, Date, Logical };

// The byte that trailing-count compression removes: blanks for text, zero bytes for binary keys.
char PadByteOf(KeyKind kind);

std::size_t KeyLengthOf(KeyKind kind, std::size_t characterLength);

std::string EncodeNumberKey(double value);
// The same key written into 8 bytes at `out`.
void WriteNumberKey(double value, char* out);
double DecodeNumberKey(std::string_view key);
std::string EncodeLogicalKey(bool value);
// Pads with blanks or cuts to the key length.
std::string EncodeCharacterKey(std::string_view windows1252, std::size_t keyLength);
// The same key written into keyLength bytes at `out`.
void WriteCharacterKey(std::string_view windows1252, std::size_t keyLength, char* out);

// Machine collation of two keys of the same tag.
inline int CompareKeys(std::string_view a, std::string_view b) {
    return a.compare(b);
}

// Compares only the first probe.size() bytes of a stored key: a shorter probe is a partial key.
int ComparePrefix(std::string_view stored, std::string_view probe);

}  // namespace fnrk::engine::cdx
