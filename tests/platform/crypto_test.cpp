// Published test vectors: the Linux (OpenSSL) and the Windows (CNG) builds run the same cases,
// so both give the same bytes.

#include "platform/crypto.hpp"

#include <fmt/format.h>
#include <gtest/gtest.h>

#include <string>
#include <string_view>

#include "platform/base64.hpp"

namespace fnrk::platform::crypto {
namespace {

std::string Hex(const unsigned char* bytes, std::size_t length) {
    return fmt::format("{:02x}", fmt::join(bytes, bytes + length, ""));
}

std::string Pbkdf2Hex(std::string_view password, std::string_view salt, std::uint32_t iterations,
                      std::size_t length) {
    std::string out(length, '\0');
    auto* bytes = reinterpret_cast<unsigned char*>(out.data());
    Pbkdf2Sha256(password, reinterpret_cast<const unsigned char*>(salt.data()), salt.size(),
                 iterations, bytes, length);
    return Hex(bytes, length);
}

std::string Md5Hex(std::string_view text) {
    const Md5Digest digest = Md5(text.data(), text.size());
    return Hex(digest.data(), digest.size());
}

TEST(Crypto, Aes256EncryptsTheStandardsVectorBlockByBlock) {
    // FIPS-197, appendix C.3, twice over: blocks are encrypted each on its own, in place too.
    Aes256Key key{};
    for (std::size_t i = 0; i < key.size(); ++i) key[i] = static_cast<unsigned char>(i);
    unsigned char blocks[32];
    for (std::size_t i = 0; i < 16; ++i)
        blocks[i] = blocks[16 + i] = static_cast<unsigned char>(i * 0x11);
    const Aes256 aes(key);
    aes.EncryptBlocks(blocks, blocks, 2);
    EXPECT_EQ(Hex(blocks, 32),
              "8ea2b7ca516745bfeafc49904b496089"
              "8ea2b7ca516745bfeafc49904b496089");
    unsigned char zero[16] = {};
    unsigned char out[16];
    aes.EncryptBlocks(zero, out, 1);
    EXPECT_NE(Hex(out, 16), Hex(blocks, 16));
}

TEST(Crypto, Pbkdf2Sha256GivesThePublishedKeys) {
    EXPECT_EQ(Pbkdf2Hex("password", "salt", 1, 32),
              "120fb6cffcf8b32c43e7225256c4f837a86548c92ccc35480805987cb70be17b");
    EXPECT_EQ(Pbkdf2Hex("password", "salt", 2, 32),
              "ae4d0c95af6b46d32d0adff928f06dd02a303f8ef3c251dfd6e2d85a95474c43");
    EXPECT_EQ(Pbkdf2Hex("password", "salt", 4096, 32),
              "c5e478d59288c841aa530db6845c4c8d962893a001ce4e11a4963873aa98134a");
    // Longer than one hash: the second block of output follows the first.
    EXPECT_EQ(
        Pbkdf2Hex("passwordPASSWORDpassword", "saltSALTsaltSALTsaltSALTsaltSALTsalt", 4096, 40),
        "348c89dbcbd32b2f32d814b8116e84cf2b17347ebc1800181c4e2a1fb8dd53e1c635518c7dac47e9");
}

TEST(Crypto, Md5GivesThePublishedDigests) {
    EXPECT_EQ(Md5Hex(""), "d41d8cd98f00b204e9800998ecf8427e");
    EXPECT_EQ(Md5Hex("abc"), "900150983cd24fb0d6963f7d28e17f72");
    EXPECT_EQ(Md5Hex("message digest"), "f96b697d7cb7938d525a2f31aaf161d0");
}

TEST(Crypto, RandomBytesDifferEachTimeAndSecretsCompareAndClear) {
    unsigned char a[32] = {};
    unsigned char b[32] = {};
    RandomBytes(a, sizeof a);
    RandomBytes(b, sizeof b);
    EXPECT_NE(Hex(a, sizeof a), Hex(b, sizeof b));
    EXPECT_FALSE(EqualInConstantTime(a, b, sizeof a));
    EXPECT_TRUE(EqualInConstantTime(a, a, sizeof a));
    b[31] = a[31];
    std::copy_n(a, 31, b);
    EXPECT_TRUE(EqualInConstantTime(a, b, sizeof a));
    b[0] ^= 1;
    EXPECT_FALSE(EqualInConstantTime(a, b, sizeof a));
    Cleanse(a, sizeof a);
    EXPECT_EQ(Hex(a, sizeof a), std::string(64, '0'));
}

TEST(Base64, EncodesAndDecodesThePublishedVectorsAndRefusesOtherText) {
    const std::pair<std::string, std::string> vectors[] = {{"", ""},
                                                           {"f", "Zg=="},
                                                           {"fo", "Zm8="},
                                                           {"foo", "Zm9v"},
                                                           {"foob", "Zm9vYg=="},
                                                           {"fooba", "Zm9vYmE="},
                                                           {"foobar", "Zm9vYmFy"}};
    for (const auto& [bytes, text] : vectors) {
        EXPECT_EQ(platform::Base64Encode(bytes), text);
        EXPECT_EQ(platform::Base64Decode(text), bytes) << text;
    }
    const std::string binary("\x00\xff\xfe\x80\x7f", 5);
    EXPECT_EQ(platform::Base64Decode(platform::Base64Encode(binary)), binary);
    for (const char* bad : {"Zg=", "Z===", "Zm9v!A==", "=Zm9", "Zg==Zg==", "Zm=v"})
        EXPECT_EQ(platform::Base64Decode(bad), std::nullopt) << bad;
}

}  // namespace
}  // namespace fnrk::platform::crypto
