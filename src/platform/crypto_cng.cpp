// The crypto interface over Windows' Cryptography API: Next Generation (the Windows build).

#include <windows.h>

#include <bcrypt.h>

#include <climits>
#include <stdexcept>
#include <string>

#include "platform/crypto.hpp"

namespace fnrk::platform::crypto {

namespace {

void Check(NTSTATUS status, const char* what) {
    if (!BCRYPT_SUCCESS(status))
        throw std::runtime_error(std::string(what) + " failed (CNG status " +
                                 std::to_string(static_cast<unsigned long>(status)) + ")");
}

// An algorithm provider, closed when it goes.
class Provider {
  public:
    Provider(const wchar_t* algorithm, ULONG flags) {
        Check(BCryptOpenAlgorithmProvider(&handle_, algorithm, nullptr, flags), "CNG provider");
    }
    ~Provider() { BCryptCloseAlgorithmProvider(handle_, 0); }
    Provider(const Provider&) = delete;
    Provider& operator=(const Provider&) = delete;
    BCRYPT_ALG_HANDLE get() const { return handle_; }

  private:
    BCRYPT_ALG_HANDLE handle_ = nullptr;
};

ULONG Length(std::size_t size) {
    if (size > ULONG_MAX) throw std::runtime_error("too many bytes for CNG at once");
    return static_cast<ULONG>(size);
}

}  // namespace

struct Aes256::State {
    Provider provider{BCRYPT_AES_ALGORITHM, 0};
    BCRYPT_KEY_HANDLE key = nullptr;
    ~State() {
        if (key != nullptr) BCryptDestroyKey(key);
    }
};

Aes256::Aes256(const Aes256Key& key) : state_(std::make_unique<State>()) {
    auto* mode = const_cast<wchar_t*>(BCRYPT_CHAIN_MODE_ECB);
    Check(BCryptSetProperty(state_->provider.get(), BCRYPT_CHAINING_MODE,
                            reinterpret_cast<PUCHAR>(mode),
                            Length((wcslen(mode) + 1) * sizeof(wchar_t)), 0),
          "AES-256 mode");
    Check(BCryptGenerateSymmetricKey(state_->provider.get(), &state_->key, nullptr, 0,
                                     const_cast<PUCHAR>(key.data()), Length(key.size()), 0),
          "AES-256 key");
}

Aes256::~Aes256() = default;

void Aes256::EncryptBlocks(const unsigned char* in, unsigned char* out, std::size_t blocks) const {
    constexpr std::size_t kMaxBlocks = (ULONG_MAX / kAesBlockSize) / 2;
    for (std::size_t done = 0; done < blocks;) {
        const std::size_t part = std::min(kMaxBlocks, blocks - done);
        const ULONG bytes = Length(part * kAesBlockSize);
        ULONG written = 0;
        Check(BCryptEncrypt(state_->key, const_cast<PUCHAR>(in + done * kAesBlockSize), bytes,
                            nullptr, nullptr, 0, out + done * kAesBlockSize, bytes, &written, 0),
              "AES-256");
        if (written != bytes) throw std::runtime_error("AES-256 wrote a short block");
        done += part;
    }
}

void Pbkdf2Sha256(std::string_view password, const unsigned char* salt, std::size_t saltLength,
                  std::uint32_t iterations, unsigned char* out, std::size_t outLength) {
    const Provider hmac(BCRYPT_SHA256_ALGORITHM, BCRYPT_ALG_HANDLE_HMAC_FLAG);
    Check(BCryptDeriveKeyPBKDF2(hmac.get(),
                                reinterpret_cast<PUCHAR>(const_cast<char*>(password.data())),
                                Length(password.size()), const_cast<PUCHAR>(salt),
                                Length(saltLength), iterations, out, Length(outLength), 0),
          "PBKDF2");
}

void RandomBytes(unsigned char* out, std::size_t length) {
    Check(BCryptGenRandom(nullptr, out, Length(length), BCRYPT_USE_SYSTEM_PREFERRED_RNG),
          "random bytes");
}

Md5Digest Md5(const void* data, std::size_t size) {
    const Provider md5(BCRYPT_MD5_ALGORITHM, 0);
    BCRYPT_HASH_HANDLE hash = nullptr;
    Check(BCryptCreateHash(md5.get(), &hash, nullptr, 0, nullptr, 0, 0), "MD5");
    Md5Digest digest{};
    const NTSTATUS hashed =
        BCryptHashData(hash, static_cast<PUCHAR>(const_cast<void*>(data)), Length(size), 0);
    const NTSTATUS finished = BCRYPT_SUCCESS(hashed)
                                  ? BCryptFinishHash(hash, digest.data(), Length(digest.size()), 0)
                                  : hashed;
    BCryptDestroyHash(hash);
    Check(finished, "MD5");
    return digest;
}

}  // namespace fnrk::platform::crypto
