#include "facade/member_table.hpp"

#include <algorithm>
#include <stdexcept>

#include "facade/facade_error.hpp"
#include "facade/fnrk_routines.hpp"
#include "platform/text.hpp"

namespace fnrk::facade {
namespace {

std::string_view ArgKindName(ArgKind kind) {
    switch (kind) {
        case ArgKind::Variant:
            return "Variant";
        case ArgKind::Boolean:
            return "Boolean";
        case ArgKind::Integer:
            return "Integer";
        case ArgKind::Long:
            return "Long";
        case ArgKind::Double:
            return "Double";
        case ArgKind::Date:
            return "Date";
        case ArgKind::String:
            return "String";
        case ArgKind::Object:
            return "Object";
        case ArgKind::Bytes:
            return "Byte()";
    }
    return "Variant";
}

std::string Qualified(std::string_view member) {
    return "FnrkRoutines." + std::string(member);
}

}  // namespace

bool CallArgs::Has(std::size_t index) const {
    return index < values_.size() && !values_[index].IsEmpty();
}

const Variant& CallArgs::Value(std::size_t index) const {
    return index < values_.size() ? values_[index] : missing_;
}

template <typename Convert>
auto CallArgs::Converted(std::size_t index, Convert convert) const {
    try {
        return convert(Value(index));
    } catch (const FacadeError& error) {
        throw FacadeError(error.number(), std::string(error.what()) + " (argument " +
                                              std::to_string(index + 1) + " of " +
                                              Qualified(member_) + ")");
    }
}

std::string CallArgs::String(std::size_t index) const {
    return Converted(index, [](const Variant& v) { return v.ToString(); });
}

bool CallArgs::Boolean(std::size_t index) const {
    return Converted(index, [](const Variant& v) { return v.ToBoolean(); });
}

std::int16_t CallArgs::Integer(std::size_t index) const {
    return Converted(index, [](const Variant& v) { return v.ToInteger(); });
}

std::int32_t CallArgs::Long(std::size_t index) const {
    return Converted(index, [](const Variant& v) { return v.ToLong(); });
}

double CallArgs::Double(std::size_t index) const {
    return Converted(index, [](const Variant& v) { return v.ToDouble(); });
}

Variant& CallArgs::Ref(std::size_t index) {
    if (index >= values_.size()) values_.resize(index + 1);
    return values_[index];
}

std::size_t Member::RequiredCount() const {
    std::size_t count = 0;
    for (std::size_t i = 0; i < args.size(); ++i) {
        if (!args[i].optional) count = i + 1;
    }
    return count;
}

const MemberTable& MemberTable::Instance() {
    static const MemberTable table = [] {
        MemberTable built;
        AddLifecycleMembers(built);
        AddTableAccessMembers(built);
        AddAssetMembers(built);
        AddHelperMembers(built);
        AddAccountingMembers(built);
        AddDocumentMembers(built);
        AddUsersExtMembers(built);
        AddIntakeSettingMembers(built);
        AddIntakeFolderMembers(built);
        AddPayrollMappingMembers(built);
        AddCardMappingMembers(built);
        AddUblMembers(built);
        AddUblFormatMembers(built);
        AddPeppolMembers(built);
        AddDeclarationMembers(built);
        AddArchiveTableMembers(built);
        AddDesktopFormMembers(built);
        AddNewsMarkMembers(built);
        AddOnlineServiceMembers(built);
        AddUnavailableMembers(built);
        return built;
    }();
    return table;
}

const Member* MemberTable::Find(std::string_view name, MemberKind kind) const {
    const auto found = std::find_if(members_.begin(), members_.end(), [&](const Member& member) {
        return member.kind == kind && platform::EqualsNoCase(member.name, name);
    });
    return found == members_.end() ? nullptr : &*found;
}

Variant MemberTable::Invoke(FnrkRoutines& routines, std::string_view name, MemberKind kind,
                            std::vector<Variant>& args) const {
    const Member* member = Find(name, kind);
    if (member == nullptr) {
        throw FacadeError(
            kErrNoSuchMember,
            "Object doesn't support this property or method: " + Qualified(name) +
                (kind == MemberKind::Method ? "" : " (" + std::string(MemberKindName(kind)) + ")"));
    }
    if (!member->Available()) {
        throw FacadeError(kErrNotAvailable,
                          Qualified(member->name) + " is not available in this build");
    }
    if (!member->variableArgs) {
        if (args.size() > member->args.size()) {
            throw FacadeError(kErrWrongArgumentCount,
                              "Wrong number of arguments: " + Qualified(member->name) + " takes " +
                                  std::to_string(member->args.size()) + ", not " +
                                  std::to_string(args.size()));
        }
        if (args.size() < member->RequiredCount()) {
            throw FacadeError(kErrArgumentNotOptional, "Argument not optional: argument " +
                                                           std::to_string(args.size() + 1) +
                                                           " of " + Qualified(member->name));
        }
    }
    CallArgs call(member->name, args);
    return member->invoke(routines, call);
}

void MemberTable::Add(Member member) {
    if (Find(member.name, member.kind) != nullptr) {
        throw std::logic_error("member listed twice: " + member.name);
    }
    members_.push_back(std::move(member));
}

void MemberTable::Method(std::string name, std::vector<ArgSpec> args, Invoker invoke) {
    Add(Member{std::move(name), MemberKind::Method, std::move(args), false, std::move(invoke)});
}

void MemberTable::Property(std::string name, ArgKind kind, Invoker get, Invoker put) {
    if (get) Add(Member{name, MemberKind::PropertyGet, {}, false, std::move(get)});
    if (put) {
        Add(Member{
            std::move(name), MemberKind::PropertyPut, {ArgSpec{kind}}, false, std::move(put)});
    }
}

void MemberTable::Unavailable(std::initializer_list<const char*> names) {
    for (const char* name : names) Add(Member{name, MemberKind::Method, {}, true, nullptr});
}

std::string_view MemberKindName(MemberKind kind) {
    switch (kind) {
        case MemberKind::Method:
            return "method";
        case MemberKind::PropertyGet:
            return "property get";
        case MemberKind::PropertyPut:
            return "property put";
    }
    return "method";
}

std::string DescribeMember(const Member& member) {
    std::string line = member.name + "\t" + std::string(MemberKindName(member.kind)) + "\t";
    if (member.variableArgs) {
        line += "ParamArray Variant()";
    } else {
        for (std::size_t i = 0; i < member.args.size(); ++i) {
            const ArgSpec& arg = member.args[i];
            if (i > 0) line += ", ";
            if (arg.optional) line += "[";
            if (arg.byRef) line += "ByRef ";
            line += ArgKindName(arg.kind);
            if (arg.optional) line += "]";
        }
    }
    if (!member.Available()) line += "\tnot available in this build";
    return line;
}

}  // namespace fnrk::facade
