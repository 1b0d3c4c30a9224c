// The keystream layout is part of the file format: tables encrypted once must read forever.

#include <gtest/gtest.h>

#include <fmt/format.h>

#include <string>

#include "engine/crypt/encryption_mark.hpp"
#include "engine/crypt/file_cipher.hpp"
#include "engine/crypt/password_hash.hpp"

namespace fnrk::engine::crypt {
namespace {

TableKey SampleKey() {
    TableKey key{};
    for (std::size_t i = 0; i < key.size(); ++i) key[i] = static_cast<unsigned char>(i * 7 + 3);
    return key;
}

// AES-256 of one block (the block cipher is checked against the standard's vectors in the
// platform tests).
std::string EncryptBlock(const TableKey& key, const unsigned char (&block)[16]) {
    unsigned char out[16];
    platform::crypto::Aes256(key).EncryptBlocks(block, out, 1);
    return std::string(reinterpret_cast<char*>(out), 16);
}

TEST(FileCipher, KeystreamIsAesOfStreamAndBlockNumber) {
    const FileCipher cipher(SampleKey());
    // Block 0x0102 of the memo stream: counter block 02 00.. 00 01 02.
    std::string zeros(16, '\0');
    cipher.Apply(CipherStream::Memos, 0x0102 * 16, zeros.data(), zeros.size());
    const unsigned char counter[16] = {2, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0x01, 0x02};
    EXPECT_EQ(zeros, EncryptBlock(SampleKey(), counter));
}

TEST(FileCipher, KeyFromPasswordAndKeystreamAreTheSameInEveryBuild) {
    // Bytes made apart from this code (Python's PBKDF2, `openssl enc -aes-256-ctr`): the OpenSSL
    // and the CNG build must both give them, or tables encrypted by one would not open with the
    // other.
    const unsigned char salt[8] = {1, 2, 3, 4, 5, 6, 7, 8};
    TableKey key{};
    DeriveBytes("s3cret", salt, sizeof salt, key.data(), key.size());
    std::string bytes(40, '\0');
    FileCipher(key).Apply(CipherStream::Records, 1000, bytes.data(), bytes.size());
    std::string hex;
    for (const char c : bytes) hex += fmt::format("{:02x}", static_cast<unsigned char>(c));
    EXPECT_EQ(hex,
              "e53e3160cdb5ea9a4156f7e6c880996f4e7db8576fac93523d1c4c59f4467f19b9eac69ac875d59f");
}

TEST(FileCipher, PiecesAtAnyOffsetMatchOneRunAndStreamsDiffer) {
    const FileCipher cipher(SampleKey());
    const std::string plain = "The quick brown fox jumps over the lazy dog, twice over: 0123456789";
    std::string whole = plain;
    cipher.Apply(CipherStream::Records, 1000, whole.data(), whole.size());
    EXPECT_NE(whole, plain);
    // Cut at places inside and on block boundaries: each piece finds its own keystream.
    for (std::size_t cut : {1u, 5u, 15u, 16u, 17u, 24u, 40u}) {
        std::string pieces = plain;
        cipher.Apply(CipherStream::Records, 1000, pieces.data(), cut);
        cipher.Apply(CipherStream::Records, 1000 + cut, pieces.data() + cut, plain.size() - cut);
        EXPECT_EQ(pieces, whole) << cut;
    }
    std::string again = whole;
    cipher.Apply(CipherStream::Records, 1000, again.data(), again.size());
    EXPECT_EQ(again, plain);

    std::string memo = plain;
    cipher.Apply(CipherStream::Memos, 1000, memo.data(), memo.size());
    EXPECT_NE(memo, whole);
    std::string moved = plain;
    cipher.Apply(CipherStream::Records, 1016, moved.data(), moved.size());
    EXPECT_NE(moved, whole);
}

TEST(EncryptionMark, RoundTripsThroughTheHeaderBytesAndChecksThePassword) {
    const ReservedBytes plain{};
    EXPECT_FALSE(IsEncrypted(plain));
    const NewKey made = MakeKey("s3cret");
    const ReservedBytes marked = WithMark(plain, &made.mark);
    EXPECT_TRUE(IsEncrypted(marked));
    EXPECT_EQ(ReadMark(marked).salt, made.mark.salt);
    EXPECT_EQ(ReadMark(marked).verifier, made.mark.verifier);
    EXPECT_NE(MakeKey("s3cret").mark.salt, made.mark.salt);  // a fresh salt each time
    EXPECT_EQ(WithMark(marked, nullptr), plain);

    EXPECT_EQ(Unlock(ReadMark(marked), "S3cret"), nullptr);
    EXPECT_EQ(Unlock(ReadMark(marked), ""), nullptr);
    const auto cipher = Unlock(ReadMark(marked), "s3cret");
    ASSERT_NE(cipher, nullptr);
    std::string a(40, 'a');
    std::string b(40, 'a');
    cipher->Apply(CipherStream::Index, 4096, a.data(), a.size());
    made.cipher->Apply(CipherStream::Index, 4096, b.data(), b.size());
    EXPECT_EQ(a, b);
}

}  // namespace
}  // namespace fnrk::engine::crypt
