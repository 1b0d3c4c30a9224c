#pragma once

// The cryptography the library uses, behind one interface: OpenSSL's libcrypto on Linux,
// Windows' own CNG (bcrypt) on Windows. Both give the same bytes for the same input, so that a
// table encrypted by one build opens with the other. Failures of the library underneath throw
// std::runtime_error.

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string_view>

namespace fnrk::platform::crypto {

constexpr std::size_t kAesBlockSize = 16;
using Aes256Key = std::array<unsigned char, 32>;

// AES-256 encryption of whole 16-byte blocks, each on its own (the counter modes are built on
// it by its users). The key schedule is kept between calls.
class Aes256 {
  public:
    explicit Aes256(const Aes256Key& key);
    ~Aes256();
    Aes256(const Aes256&) = delete;
    Aes256& operator=(const Aes256&) = delete;

    // Encrypts `blocks` blocks of `in` into `out` (which may be `in`).
    void EncryptBlocks(const unsigned char* in, unsigned char* out, std::size_t blocks) const;

  private:
    struct State;
    std::unique_ptr<State> state_;
};

// PBKDF2 with HMAC-SHA256.
void Pbkdf2Sha256(std::string_view password, const unsigned char* salt, std::size_t saltLength,
                  std::uint32_t iterations, unsigned char* out, std::size_t outLength);

// Bytes from the system's cryptographic random generator.
void RandomBytes(unsigned char* out, std::size_t length);
// A number from the same generator. Used instead of std::random_device, whose MinGW build reads
// the processor's RDSEED/RDRAND and throws when they fail.
std::uint64_t RandomNumber();

using Md5Digest = std::array<unsigned char, 16>;
Md5Digest Md5(const void* data, std::size_t size);

// Equality that takes as long whatever the bytes (for secrets and their verifiers).
bool EqualInConstantTime(const void* a, const void* b, std::size_t length);

// Overwrites a secret with zeros in a way the compiler keeps.
void Cleanse(void* data, std::size_t length);

}  // namespace fnrk::platform::crypto
