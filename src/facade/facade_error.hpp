#pragma once

// The error a façade member raises to its caller: a number and a description, as a late-bound
// caller receives them. The numbers of the conversion and call faults are the ones such callers
// already know (13 type mismatch, 6 overflow, ...).

#include <cstdint>
#include <stdexcept>
#include <string>

namespace fnrk::facade {

inline constexpr std::int32_t kErrInvalidCall = 5;
inline constexpr std::int32_t kErrOverflow = 6;
inline constexpr std::int32_t kErrTypeMismatch = 13;
inline constexpr std::int32_t kErrInvalidUseOfNull = 94;
inline constexpr std::int32_t kErrObjectRequired = 424;
inline constexpr std::int32_t kErrNoSuchMember = 438;
inline constexpr std::int32_t kErrNotAvailable = 445;
inline constexpr std::int32_t kErrArgumentNotOptional = 449;
inline constexpr std::int32_t kErrWrongArgumentCount = 450;
// An online service whose endpoint and credentials this installation does not have.
inline constexpr std::int32_t kErrServiceNotConfigured = 462;

class FacadeError : public std::runtime_error {
  public:
    FacadeError(std::int32_t number, const std::string& description)
        : std::runtime_error(description), number_(number) {}
    std::int32_t number() const { return number_; }

  private:
    std::int32_t number_;
};

[[noreturn]] void ThrowTypeMismatch(const std::string& what);

}  // namespace fnrk::facade
