// The asset collection: AssetClass_Init makes it, the others read and grow it.

#include "facade/fnrk_routines.hpp"
#include "facade/member_table.hpp"

namespace fnrk::facade {

void AddAssetMembers(MemberTable& table) {
    using namespace args;
    table.Method("AssetClass_Init", {kRegistry}, [](FnrkRoutines& r, CallArgs& a) {
        r.Wrapped(a.Value(0), [&] { r.NewAssets(); });
        return Variant();
    });
    table.Method("AssetClass_Add", {kRegistry, kVariant}, [](FnrkRoutines& r, CallArgs& a) {
        r.Wrapped(a.Value(0), [&] { r.Assets().Add(a.Value(1)); });
        return Variant();
    });
    table.Method("AssetClass_Count", {kRegistry}, [](FnrkRoutines& r, CallArgs& a) {
        return r.Wrapped(a.Value(0),
                         [&] { return Variant(static_cast<std::int32_t>(r.Assets().Count())); });
    });
    // An index past the count, or any index of an empty collection, answers nothing.
    table.Method("AssetClass_Get", {kRegistry, kLong}, [](FnrkRoutines& r, CallArgs& a) {
        const std::int32_t index = a.Long(1);
        return r.Wrapped(a.Value(0), [&] {
            const VariantCollection& assets = r.Assets();
            if (assets.Count() == 0 || index < 1 ||
                static_cast<std::size_t>(index) > assets.Count()) {
                return Variant();
            }
            return assets.Item(static_cast<std::size_t>(index));
        });
    });
}

}  // namespace fnrk::facade
