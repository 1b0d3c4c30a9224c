// The small helper classes, one per prefix (XLS clsExcel, XML clsXml, DATIM clsDateTime, CLR
// clsColor, PRN clsPrint, COL clsCollection, VBC clsVbControl, FMT clsFormat, PRC clsProcess,
// IO clsIO, LOG clsLog, LST clsList): the member name after the prefix is the method's name.

#include "facade/facade_error.hpp"
#include "facade/helper_call.hpp"
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
namespace util = fnrk::utilities;

// A value list as the caller holds it between the LST members: "Count", and "Items" as pairs
// of text and item data.
class ValueListObject : public VariantObject {
  public:
    std::string_view ClassName() const override { return "ValueList"; }
    std::vector<std::string> PropertyNames() const override { return {"Count", "Items"}; }
    Variant GetProperty(std::string_view name) const override {
        if (name == "Count") return Variant(static_cast<std::int32_t>(list.size()));
        if (name == "Items") {
            VariantArray items;
            for (const util::ValueListItem& item : list) {
                items.emplace_back(VariantArray{Variant(item.text), Variant(item.data)});
            }
            return Variant(std::move(items));
        }
        ThrowNoProperty(name);
    }

    util::ValueList list;
};

// The list of argument 2: the caller's, or a new one left there when it is empty.
util::ValueList& ListOf(CallArgs& a) {
    return HeldObject<ValueListObject>(a, 1, "a value list").list;
}

// The keys of a collection, or the texts of an array standing for them.
std::vector<std::string> KeysOf(const Variant& value) {
    if (value.IsObject()) {
        if (const auto* collection =
                dynamic_cast<const VariantCollection*>(value.ToObject().get())) {
            return collection->Keys();
        }
    }
    return TextsOf(value);
}

// Process ids travel as doubles: late-bound callers have no 64-bit integer.
std::int64_t ProcessId(const CallArgs& a, std::size_t index) {
    return static_cast<std::int64_t>(a.Double(index));
}

void AddTextAndDateHelpers(MemberTable& table) {
    table.Method("XLSTabFormat", {kRegistry, kVariant}, [](R& r, CallArgs& a) {
        return HelperCall(r, a, [&] { return util::clsExcel().TabFormat(TextsOf(a.Value(1))); });
    });
    table.Method("XMLEscaping", {kRegistry, kString}, [](R& r, CallArgs& a) {
        return HelperCall(r, a, [&] { return util::clsXml().Escaping(a.String(1)); });
    });
    table.Method("DATIMDaysInYearCount", {kRegistry, kInteger}, [](R& r, CallArgs& a) {
        return HelperCall(r, a, [&] {
            return static_cast<std::int16_t>(util::clsDateTime().DaysInYearCount(a.Integer(1)));
        });
    });
    table.Method("DATIMPerToDate", {kRegistry, kInteger, kInteger, kInteger, kBoolean},
                 [](R& r, CallArgs& a) {
                     return HelperCall(r, a, [&] {
                         return util::clsDateTime().PerToDate(a.Integer(1), a.Integer(2),
                                                              a.Integer(3), a.Boolean(4));
                     });
                 });
    table.Method("CLRIsColorDark", {kRegistry, kLong}, [](R& r, CallArgs& a) {
        return HelperCall(r, a, [&] {
            return util::clsColor().IsColorDark(static_cast<std::uint32_t>(a.Long(1)));
        });
    });
    table.Method("CLRBrightnessColorGet", {kRegistry, kLong}, [](R& r, CallArgs& a) {
        return HelperCall(r, a, [&] {
            return static_cast<std::int32_t>(
                util::clsColor().BrightnessColorGet(static_cast<std::uint32_t>(a.Long(1))));
        });
    });
    table.Method("COLIsItemExistsInCollection", {kRegistry, kVariant, kString},
                 [](R& r, CallArgs& a) {
                     return HelperCall(r, a, [&] {
                         return util::clsCollection().IsItemExistsInCollection(KeysOf(a.Value(1)),
                                                                               a.String(2));
                     });
                 });
    table.Method("VBCStatusBarOfAFormHeight", {kRegistry}, [](R& r, CallArgs& a) {
        return HelperCall(r, a, [&] {
            return static_cast<std::int32_t>(util::clsVbControl().StatusBarOfAFormHeight());
        });
    });
    table.Method("FMTCCurrency", {kRegistry, kDouble, kString, kString}, [](R& r, CallArgs& a) {
        return HelperCall(r, a, [&] {
            return util::clsFormat().Currency(a.Double(1), a.String(2), a.String(3));
        });
    });
    table.Method("FMTCDateDDMMYYYYWithSlash", {kRegistry, kString}, [](R& r, CallArgs& a) {
        return HelperCall(r, a,
                          [&] { return util::clsFormat().DateDDMMYYYYWithSlash(a.String(1)); });
    });
    table.Method("PRCWindowToProcessId", {kRegistry, kDouble}, [](R& r, CallArgs& a) {
        return HelperCall(r, a, [&] {
            return static_cast<double>(util::clsProcess().WindowToProcessId(ProcessId(a, 1)));
        });
    });
    table.Method("IOIsDirectoryCreated", {kRegistry, kString}, [](R& r, CallArgs& a) {
        return HelperCall(r, a, [&] { return util::clsIO().IsDirectoryCreated(a.String(1)); });
    });
}

void AddPrintHelpers(MemberTable& table) {
    table.Method("PRNSignTot", {kRegistry, kDouble, kDouble}, [](R& r, CallArgs& a) {
        return HelperCall(r, a, [&] { return util::clsPrint().SignTot(a.Double(1), a.Double(2)); });
    });
    table.Method("PRNCalculCarac", {kRegistry, kDouble, kInteger}, [](R& r, CallArgs& a) {
        return HelperCall(r, a, [&] {
            return static_cast<std::int32_t>(
                util::clsPrint().CalculCarac(a.Double(1), a.Integer(2)));
        });
    });
    table.Method("PRNCalculCaracForAnyZone", {kRegistry, kString, kInteger}, [](R& r, CallArgs& a) {
        return HelperCall(r, a, [&] {
            return static_cast<std::int32_t>(
                util::clsPrint().CalculCaracForAnyZone(a.String(1), a.Integer(2)));
        });
    });
    table.Method("PRNClotureValue", {kRegistry, kDouble, kBoolean}, [](R& r, CallArgs& a) {
        return HelperCall(r, a,
                          [&] { return util::clsPrint().ClotureValue(a.Double(1), a.Boolean(2)); });
    });
    table.Method(
        "PRNClotureValueCentral", {kRegistry, kDouble, kDouble, kBoolean}, [](R& r, CallArgs& a) {
            return HelperCall(r, a, [&] {
                return util::clsPrint().ClotureValueCentral(a.Double(1), a.Double(2), a.Boolean(3));
            });
        });
    table.Method("PRNZoneIsSimulation", {kRegistry, kString}, [](R& r, CallArgs& a) {
        return HelperCall(r, a, [&] { return util::clsPrint().ZoneIsSimulation(a.String(1)); });
    });
    table.Method("PRNGetNumberKeyControl", {kRegistry, kString}, [](R& r, CallArgs& a) {
        return HelperCall(r, a, [&] { return util::clsPrint().GetNumberKeyControl(a.String(1)); });
    });
    table.Method("PRNFormatCheckedNumber", {kRegistry, kString}, [](R& r, CallArgs& a) {
        return HelperCall(r, a, [&] { return util::clsPrint().FormatCheckedNumber(a.String(1)); });
    });
}

void AddLogHelpers(MemberTable& table) {
    table.Method("LOGFileReset", {kRegistry, kString}, [](R& r, CallArgs& a) {
        return HelperCall(r, a, [&] { return util::clsLog().FileReset(a.String(1)); });
    });
    table.Method("LOGFileInfoAdd", {kRegistry, kString, kString}, [](R& r, CallArgs& a) {
        return HelperCall(r, a,
                          [&] { return util::clsLog().FileInfoAdd(a.String(1), a.String(2)); });
    });
    table.Method(
        "LOGExcelAndFennrickProcessCreated", {kRegistry, kString, kDouble}, [](R& r, CallArgs& a) {
            return HelperCall(r, a, [&] {
                return util::clsLog().ExcelAndFennrickProcessCreated(a.String(1), ProcessId(a, 2));
            });
        });
    table.Method(
        "LOGExcelAndFennrickProcessDeleted", {kRegistry, kString, kDouble}, [](R& r, CallArgs& a) {
            return HelperCall(r, a, [&] {
                return util::clsLog().ExcelAndFennrickProcessDeleted(a.String(1), ProcessId(a, 2));
            });
        });
    // The ids of the logged processes still running.
    table.Method("LOGExcelAndFennrickProcessManage", {kRegistry, kString}, [](R& r, CallArgs& a) {
        return HelperCall(r, a, [&] {
            VariantArray running;
            for (std::int64_t id : util::clsLog().ExcelAndFennrickProcessManage(a.String(1))) {
                running.emplace_back(static_cast<double>(id));
            }
            return running;
        });
    });
}

void AddListHelpers(MemberTable& table) {
    table.Method("LSTValuesInit", {kRegistry, ByRef(kObject)}, [](R& r, CallArgs& a) {
        r.Wrapped(a.Value(0), [&] { util::clsList().ValuesInit(ListOf(a)); });
        return Variant();
    });
    table.Method("LSTValuesComplete", {kRegistry, ByRef(kObject), kString, Optional(kString)},
                 [](R& r, CallArgs& a) {
                     return HelperCall(r, a, [&] {
                         return static_cast<std::int32_t>(
                             util::clsList().ValuesComplete(ListOf(a), a.String(2), a.String(3)));
                     });
                 });
    table.Method("LSTValuesAddItem", {kRegistry, ByRef(kObject), kString, kLong},
                 [](R& r, CallArgs& a) {
                     return HelperCall(r, a, [&] {
                         return static_cast<std::int32_t>(
                             util::clsList().ValuesAddItem(ListOf(a), a.String(2), a.Long(3)));
                     });
                 });
    table.Method(
        "LSTIsItemInListValues", {kRegistry, ByRef(kObject), kString}, [](R& r, CallArgs& a) {
            return HelperCall(
                r, a, [&] { return util::clsList().IsItemInListValues(ListOf(a), a.String(2)); });
        });
    table.Method("LSTIndexListByItemListGet", {kRegistry, ByRef(kObject), kString},
                 [](R& r, CallArgs& a) {
                     return HelperCall(r, a, [&] {
                         return static_cast<std::int32_t>(
                             util::clsList().IndexListByItemListGet(ListOf(a), a.String(2)));
                     });
                 });
    table.Method("LSTIndexListByItemDataGet", {kRegistry, ByRef(kObject), kLong},
                 [](R& r, CallArgs& a) {
                     return HelperCall(r, a, [&] {
                         return static_cast<std::int32_t>(
                             util::clsList().IndexListByItemDataGet(ListOf(a), a.Long(2)));
                     });
                 });
}

}  // namespace

void AddHelperMembers(MemberTable& table) {
    AddTextAndDateHelpers(table);
    AddPrintHelpers(table);
    AddLogHelpers(table);
    AddListHelpers(table);
}

}  // namespace fnrk::facade
