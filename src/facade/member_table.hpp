#pragma once

// The member table of FnrkRoutines: every public member by name (matched without regard to
// case, as late-bound callers match), its kind, the kinds of its arguments (by-reference and
// optional positions marked) and its invoker. The command line, the COM server and the Python
// module all call the library through it. A member whose work is not part of this build has no
// invoker: calling it raises "FnrkRoutines.<name> is not available in this build".

#include <functional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "facade/variant.hpp"

namespace fnrk::facade {

class FnrkRoutines;

enum class MemberKind { Method, PropertyGet, PropertyPut };

enum class ArgKind { Variant, Boolean, Integer, Long, Double, Date, String, Object, Bytes };

struct ArgSpec {
    ArgKind kind = ArgKind::Variant;
    bool byRef = false;
    bool optional = false;
};

// The arguments of one call, converted on demand to the kinds a member wants. A conversion that
// fails names the member and the argument's position.
class CallArgs {
  public:
    CallArgs(std::string_view member, std::vector<Variant>& values)
        : member_(member), values_(values) {}

    std::size_t Count() const { return values_.size(); }
    bool Has(std::size_t index) const;
    // The value as given (Empty for an optional argument left out).
    const Variant& Value(std::size_t index) const;
    std::string String(std::size_t index) const;
    bool Boolean(std::size_t index) const;
    std::int16_t Integer(std::size_t index) const;
    std::int32_t Long(std::size_t index) const;
    double Double(std::size_t index) const;
    // A by-reference argument, written back to the caller.
    Variant& Ref(std::size_t index);
    std::span<const Variant> All() const { return values_; }

  private:
    template <typename Convert>
    auto Converted(std::size_t index, Convert convert) const;

    std::string_view member_;
    std::vector<Variant>& values_;
    Variant missing_;
};

using Invoker = std::function<Variant(FnrkRoutines&, CallArgs&)>;

struct Member {
    std::string name;
    MemberKind kind = MemberKind::Method;
    std::vector<ArgSpec> args;
    bool variableArgs = false;  // any number of values (Initialize)
    Invoker invoke;             // empty: not available in this build

    bool Available() const { return static_cast<bool>(invoke); }
    std::size_t RequiredCount() const;
};

class MemberTable {
  public:
    // The table of this build, made once.
    static const MemberTable& Instance();

    const std::vector<Member>& Members() const { return members_; }
    const Member* Find(std::string_view name, MemberKind kind) const;
    // Calls the member; by-reference arguments are updated in `args`. FacadeError for an
    // unknown member, a wrong argument count, a failed conversion, a member not available, or
    // the member's own error.
    Variant Invoke(FnrkRoutines& routines, std::string_view name, MemberKind kind,
                   std::vector<Variant>& args) const;

    // Building the table: a member of that name and kind already present is a programming
    // fault (std::logic_error).
    void Add(Member member);
    void Method(std::string name, std::vector<ArgSpec> args, Invoker invoke);
    void Property(std::string name, ArgKind kind, Invoker get, Invoker put);
    // Members of a family whose work is not part of this build.
    void Unavailable(std::initializer_list<const char*> names);

  private:
    std::vector<Member> members_;
};

// One line of `fennrick run --list`: name, kind, argument kinds (by-reference marked).
std::string DescribeMember(const Member& member);
std::string_view MemberKindName(MemberKind kind);

// Argument specifications, short for the family files.
namespace args {
inline constexpr ArgSpec kVariant{ArgKind::Variant};
inline constexpr ArgSpec kBoolean{ArgKind::Boolean};
inline constexpr ArgSpec kInteger{ArgKind::Integer};
inline constexpr ArgSpec kLong{ArgKind::Long};
inline constexpr ArgSpec kDouble{ArgKind::Double};
inline constexpr ArgSpec kString{ArgKind::String};
inline constexpr ArgSpec kObject{ArgKind::Object};
inline constexpr ArgSpec kBytes{ArgKind::Bytes};
// The caller's table registry, first argument of every wrapped service.
inline constexpr ArgSpec kRegistry{ArgKind::Object};
constexpr ArgSpec ByRef(ArgSpec spec) {
    spec.byRef = true;
    return spec;
}
constexpr ArgSpec Optional(ArgSpec spec) {
    spec.optional = true;
    return spec;
}
// `head` followed by `tail`.
inline std::vector<ArgSpec> Concat(std::vector<ArgSpec> head, const std::vector<ArgSpec>& tail) {
    head.insert(head.end(), tail.begin(), tail.end());
    return head;
}
}  // namespace args

// The family files' contributions (one file each).
void AddLifecycleMembers(MemberTable& table);
void AddUblMembers(MemberTable& table);
void AddUblFormatMembers(MemberTable& table);
void AddPeppolMembers(MemberTable& table);
void AddDeclarationMembers(MemberTable& table);
void AddTableAccessMembers(MemberTable& table);
void AddAssetMembers(MemberTable& table);
void AddHelperMembers(MemberTable& table);
void AddAccountingMembers(MemberTable& table);
void AddDocumentMembers(MemberTable& table);
void AddUsersExtMembers(MemberTable& table);
void AddIntakeSettingMembers(MemberTable& table);
void AddIntakeFolderMembers(MemberTable& table);
void AddPayrollMappingMembers(MemberTable& table);
void AddCardMappingMembers(MemberTable& table);
void AddArchiveTableMembers(MemberTable& table);
void AddDesktopFormMembers(MemberTable& table);
void AddNewsMarkMembers(MemberTable& table);
void AddOnlineServiceMembers(MemberTable& table);
void AddUnavailableMembers(MemberTable& table);

}  // namespace fnrk::facade
