// The small helper classes, one per prefix: the member name after the prefix is the class's
// method. Value lists live in a by-reference argument the caller keeps: an array of
// [text, data] pairs.

#include "facade/facade_error.hpp"
#include "facade/table_registry.hpp"
#include "facade/variant_object.hpp"
#include "facade/wrapped_member.hpp"
#include "utilities/cls_collection.hpp"
#include "utilities/cls_color.hpp"
#include "utilities/cls_date_time.hpp"
#include "utilities/cls_format.hpp"
#include "utilities/cls_list.hpp"
#include "utilities/cls_log.hpp"
#include "utilities/cls_print.hpp"
#include "utilities/cls_small_controls.hpp"
#include "utilities/cls_xml.hpp"

namespace fnrk::facade {
namespace {

using R = FnrkRoutines;
using namespace args;
namespace u = fnrk::utilities;

std::vector<std::string> Texts(const Variant& value) {
    std::vector<std::string> texts;
    for (const Variant& item : value.ToArray()) texts.push_back(item.ToString());
    return texts;
}

// The keys of a keyed collection, the aliases of a table registry, or the texts of an array.
std::vector<std::string> KeysOf(const Variant& value) {
    if (!value.IsObject()) return Texts(value);
    const auto object = value.ToObject();
    if (const auto* collection = dynamic_cast<const VariantCollection*>(object.get()))
        return collection->Keys();
    if (const auto* registry = dynamic_cast<const TableRegistry*>(object.get())) {
        std::vector<std::string> aliases;
        for (const auto& entry : registry->Entries()) aliases.push_back(entry->Alias);
        return aliases;
    }
    ThrowTypeMismatch("a keyed collection is required");
}

u::ValueList ListOf(const Variant& value) {
    u::ValueList list;
    if (value.IsEmpty()) return list;
    for (const Variant& item : value.ToArray()) {
        const VariantArray& pair = item.ToArray();
        if (pair.size() != 2) ThrowTypeMismatch("a value list item is a pair [text, data]");
        list.push_back({pair[0].ToString(), pair[1].ToLong()});
    }
    return list;
}

Variant ListValue(const u::ValueList& list) {
    VariantArray items;
    for (const auto& item : list)
        items.push_back(VariantArray{Variant(item.text), Variant(item.data)});
    return Variant(std::move(items));
}

// Runs a change of the caller's value list (argument 1, by reference) and writes it back.
template <typename Change>
auto ChangeList(CallArgs& a, Change change) {
    u::ValueList list = ListOf(a.Ref(1));
    auto result = change(list);
    a.Ref(1) = ListValue(list);
    return result;
}

std::int32_t Int(std::int64_t value) {
    return static_cast<std::int32_t>(value);
}

void AddDateAndColourMembers(MemberTable& table) {
    AddWrapped(table, "DATIMDaysInYearCount", {kLong},
               [](R&, CallArgs& a) { return Int(u::clsDateTime().DaysInYearCount(a.Long(1))); });
    AddWrapped(table, "DATIMPerToDate", {kLong, kLong, kLong, Optional(kBoolean)},
               [](R&, CallArgs& a) {
                   return u::clsDateTime().PerToDate(a.Long(1), a.Long(2), a.Long(3),
                                                     a.Has(4) && a.Boolean(4));
               });
    AddWrapped(table, "CLRIsColorDark", {kLong}, [](R&, CallArgs& a) {
        return u::clsColor().IsColorDark(static_cast<std::uint32_t>(a.Long(1)));
    });
    AddWrapped(table, "CLRBrightnessColorGet", {kLong}, [](R&, CallArgs& a) {
        return Int(u::clsColor().BrightnessColorGet(static_cast<std::uint32_t>(a.Long(1))));
    });
}

void AddFormatMembers(MemberTable& table) {
    // The separators default to the session's own (GetDecimalSpecifier, GetThousandSpecifier).
    AddWrapped(table, "FMTCCurrency", {kDouble, Optional(kString), Optional(kString)},
               [](R& r, CallArgs& a) {
                   return u::clsFormat().Currency(
                       a.Double(1), a.Has(2) ? a.String(2) : r.GetDecimalSpecifier(),
                       a.Has(3) ? a.String(3) : r.GetThousandSpecifier());
               });
    AddWrapped(table, "FMTCDateDDMMYYYYWithSlash", {kVariant}, [](R&, CallArgs& a) {
        const Variant& date = a.Value(1);
        if (date.Type() == VariantType::Date) return DateText(date.ToDate());
        return u::clsFormat().DateDDMMYYYYWithSlash(date.ToString());
    });
    AddWrapped(table, "XLSTabFormat", {kVariant},
               [](R&, CallArgs& a) { return u::clsExcel().TabFormat(Texts(a.Value(1))); });
    AddWrapped(table, "XMLEscaping", {kString},
               [](R&, CallArgs& a) { return u::clsXml().Escaping(a.String(1)); });
}

void AddPrintMembers(MemberTable& table) {
    AddWrapped(table, "PRNSignTot", {kDouble, kDouble},
               [](R&, CallArgs& a) { return u::clsPrint().SignTot(a.Double(1), a.Double(2)); });
    AddWrapped(table, "PRNCalculCarac", {kDouble, kLong}, [](R&, CallArgs& a) {
        return Int(u::clsPrint().CalculCarac(a.Double(1), a.Long(2)));
    });
    AddWrapped(table, "PRNCalculCaracForAnyZone", {kString, Optional(kLong)}, [](R&, CallArgs& a) {
        return Int(u::clsPrint().CalculCaracForAnyZone(a.String(1), a.Has(2) ? a.Long(2) : 0));
    });
    AddWrapped(table, "PRNClotureValue", {kDouble, kBoolean}, [](R&, CallArgs& a) {
        return u::clsPrint().ClotureValue(a.Double(1), a.Boolean(2));
    });
    AddWrapped(table, "PRNClotureValueCentral", {kDouble, kDouble, kBoolean}, [](R&, CallArgs& a) {
        return u::clsPrint().ClotureValueCentral(a.Double(1), a.Double(2), a.Boolean(3));
    });
    AddWrapped(table, "PRNZoneIsSimulation", {kString},
               [](R&, CallArgs& a) { return u::clsPrint().ZoneIsSimulation(a.String(1)); });
    AddWrapped(table, "PRNFormatCheckedNumber", {kString},
               [](R&, CallArgs& a) { return u::clsPrint().FormatCheckedNumber(a.String(1)); });
    AddWrapped(table, "PRNGetNumberKeyControl", {kString},
               [](R&, CallArgs& a) { return u::clsPrint().GetNumberKeyControl(a.String(1)); });
}

void AddListMembers(MemberTable& table) {
    AddWrapped(table, "LSTValuesInit", {ByRef(kVariant)}, [](R&, CallArgs& a) {
        return ChangeList(a, [](u::ValueList& list) {
            u::clsList().ValuesInit(list);
            return true;
        });
    });
    AddWrapped(table, "LSTValuesComplete", {ByRef(kVariant), kString, Optional(kString)},
               [](R&, CallArgs& a) {
                   const std::string items = a.String(2);
                   const std::string separator = a.Has(3) ? a.String(3) : "";
                   return Int(ChangeList(a, [&](u::ValueList& list) {
                       return u::clsList().ValuesComplete(list, items, separator);
                   }));
               });
    AddWrapped(table, "LSTValuesAddItem", {ByRef(kVariant), kString, Optional(kLong)},
               [](R&, CallArgs& a) {
                   const std::string text = a.String(2);
                   const std::int32_t data = a.Has(3) ? a.Long(3) : 0;
                   return Int(ChangeList(a, [&](u::ValueList& list) {
                       return u::clsList().ValuesAddItem(list, text, data);
                   }));
               });
    AddWrapped(table, "LSTIsItemInListValues", {kVariant, kString}, [](R&, CallArgs& a) {
        return u::clsList().IsItemInListValues(ListOf(a.Value(1)), a.String(2));
    });
    AddWrapped(table, "LSTIndexListByItemListGet", {kVariant, kString}, [](R&, CallArgs& a) {
        return Int(u::clsList().IndexListByItemListGet(ListOf(a.Value(1)), a.String(2)));
    });
    AddWrapped(table, "LSTIndexListByItemDataGet", {kVariant, kLong}, [](R&, CallArgs& a) {
        return Int(u::clsList().IndexListByItemDataGet(ListOf(a.Value(1)), a.Long(2)));
    });
    AddWrapped(table, "COLIsItemExistsInCollection", {kVariant, kString}, [](R&, CallArgs& a) {
        return u::clsCollection().IsItemExistsInCollection(KeysOf(a.Value(1)), a.String(2));
    });
}

void AddHostMembers(MemberTable& table) {
    AddWrapped(table, "IOIsDirectoryCreated", {kString},
               [](R&, CallArgs& a) { return u::clsIO().IsDirectoryCreated(a.String(1)); });
    AddWrapped(table, "PRCWindowToProcessId", {kLong},
               [](R&, CallArgs& a) { return Int(u::clsProcess().WindowToProcessId(a.Long(1))); });
    AddWrapped(table, "VBCStatusBarOfAFormHeight", {},
               [](R&, CallArgs&) { return Int(u::clsVbControl().StatusBarOfAFormHeight()); });
    AddWrapped(table, "LOGFileReset", {kString},
               [](R&, CallArgs& a) { return u::clsLog().FileReset(a.String(1)); });
    AddWrapped(table, "LOGFileInfoAdd", {kString, kString},
               [](R&, CallArgs& a) { return u::clsLog().FileInfoAdd(a.String(1), a.String(2)); });
    AddWrapped(table, "LOGExcelAndFennrickProcessCreated", {kString, kLong}, [](R&, CallArgs& a) {
        return u::clsLog().ExcelAndFennrickProcessCreated(a.String(1), a.Long(2));
    });
    AddWrapped(table, "LOGExcelAndFennrickProcessDeleted", {kString, kLong}, [](R&, CallArgs& a) {
        return u::clsLog().ExcelAndFennrickProcessDeleted(a.String(1), a.Long(2));
    });
    // The ids of the recorded processes that still run.
    AddWrapped(table, "LOGExcelAndFennrickProcessManage", {kString}, [](R&, CallArgs& a) {
        VariantArray running;
        for (const std::int64_t id : u::clsLog().ExcelAndFennrickProcessManage(a.String(1)))
            running.push_back(Variant(Int(id)));
        return running;
    });
}

}  // namespace

void AddHelperMembers(MemberTable& table) {
    AddDateAndColourMembers(table);
    AddFormatMembers(table);
    AddPrintMembers(table);
    AddListMembers(table);
    AddHostMembers(table);
}

}  // namespace fnrk::facade
