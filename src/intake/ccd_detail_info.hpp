#pragma once

// The text forms of a card transaction's details (a CCDDETAIL record without its document-line
// key), as CAROGetInfoCCDDETAIL answers them and CAROUpdateCCDDETAIL takes them.
//
// Info: items "FIELD=value" joined by "|", in the table's field order: CARDID, CATEGORY,
// TRANSDATE ("DD/MM/YYYY", blank when empty), TRANSNAME, AMOUNT (digits with "." and two
// decimals), CURRENCY, CURRAMOUNT, CURRCODE, CURRRATE (two decimals), MERCHANT, CARDNUM,
// EMBOSS, MASTER. Values are trimmed; a "|" or "\" inside a value is written "\|" or "\\". The
// update takes the same items in any order and any subset: fields not named keep their value.
//
// Pretty: one line per non-blank field, "Label: value", lines ended by CR LF, for showing to a
// user; it is not read back.
//
// Comment: the one line a booked line carries as its comment: the transaction date, the
// merchant (the transaction's name when the merchant is blank), and the amount in foreign
// currency with its code when the transaction was made in another currency than the card's;
// blank items left out, items joined by one blank.

#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace fnrk::intake {

// The detail fields in order, with the labels of the pretty form.
const std::vector<std::pair<std::string_view, std::string_view>>& DetailFields();

// (field, value) pairs in the order given.
using DetailValues = std::vector<std::pair<std::string, std::string>>;

std::string FormatDetailInfo(const DetailValues& values);
// The items of an info text; nothing when an item has no "=", names a field that is not a
// detail field, or ends in a lone "\".
std::optional<DetailValues> ParseDetailInfo(std::string_view info);
std::string FormatDetailPretty(const DetailValues& values);
std::string FormatDetailComment(const DetailValues& values);

}  // namespace fnrk::intake
