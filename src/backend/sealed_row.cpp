#include "backend/sealed_row.hpp"

#include <cstring>
#include <stdexcept>

#include "platform/crypto.hpp"

namespace fnrk::backend {

namespace {

using engine::crypt::CipherStream;
using engine::crypt::EncryptionMark;

constexpr std::size_t kPlaceBytes = 8;
constexpr std::size_t kLengthBytes = 4;

void PutNumber(std::string& out, std::uint64_t value, std::size_t bytes) {
    for (std::size_t i = 0; i < bytes; ++i) out += static_cast<char>((value >> (8 * i)) & 0xFF);
}

std::uint64_t TakeNumber(std::string_view bytes, std::size_t& at, std::size_t count) {
    if (bytes.size() - at < count) throw SqlFailure("an encrypted row is damaged");
    std::uint64_t value = 0;
    for (std::size_t i = 0; i < count; ++i)
        value |= std::uint64_t{static_cast<unsigned char>(bytes[at + i])} << (8 * i);
    at += count;
    return value;
}

// A random place in the lower half of the key stream, so that a row's bytes never run past
// its end; two rows overlap only by a chance of their lengths in 2^63.
std::uint64_t RandomPlace() {
    unsigned char bytes[kPlaceBytes];
    try {
        platform::crypto::RandomBytes(bytes, sizeof bytes);
    } catch (const std::runtime_error&) {
        throw SqlFailure("no random bytes for encryption");
    }
    std::uint64_t place = 0;
    std::memcpy(&place, bytes, sizeof place);
    return place & 0x7FFF'FFFF'FFFF'FFF0ULL;
}

}  // namespace

std::string SealRow(const engine::crypt::FileCipher& cipher, std::string_view record,
                    const std::vector<std::string>& memos) {
    std::string payload(record.substr(1));
    for (const std::string& memo : memos) {
        PutNumber(payload, memo.size(), kLengthBytes);
        payload += memo;
    }
    const std::uint64_t place = RandomPlace();
    cipher.Apply(CipherStream::Records, place, payload.data(), payload.size());
    std::string sealed;
    PutNumber(sealed, place, kPlaceBytes);
    return sealed + payload;
}

void OpenRow(const engine::crypt::FileCipher& cipher, std::string_view sealed, std::string& record,
             std::vector<std::string>& memos) {
    std::size_t at = 0;
    const std::uint64_t place = TakeNumber(sealed, at, kPlaceBytes);
    std::string payload(sealed.substr(at));
    cipher.Apply(CipherStream::Records, place, payload.data(), payload.size());
    const std::size_t recordBytes = record.size() - 1;
    if (payload.size() < recordBytes) throw SqlFailure("an encrypted row is damaged");
    payload.copy(record.data() + 1, recordBytes);
    at = recordBytes;
    for (std::string& memo : memos) {
        const auto length = static_cast<std::size_t>(TakeNumber(payload, at, kLengthBytes));
        if (payload.size() - at < length) throw SqlFailure("an encrypted row is damaged");
        memo = payload.substr(at, length);
        at += length;
    }
}

std::optional<EncryptionMark> ReadMark(SqlSession& session, const std::string& table) {
    SqlValue parameters[] = {table};
    const auto rows = session.Query("SELECT mark FROM fnrk_crypt WHERE table_name = ?", parameters);
    if (rows.empty()) return std::nullopt;
    const auto* blob = std::get_if<Blob>(&rows[0][0]);
    EncryptionMark mark;
    if (blob == nullptr || blob->bytes.size() != mark.salt.size() + mark.verifier.size())
        throw SqlFailure("the encryption mark of " + table + " is damaged");
    std::memcpy(mark.salt.data(), blob->bytes.data(), mark.salt.size());
    std::memcpy(mark.verifier.data(), blob->bytes.data() + mark.salt.size(), mark.verifier.size());
    return mark;
}

void WriteMark(SqlSession& session, const std::string& table, const EncryptionMark* mark) {
    SqlValue name[] = {table};
    session.Execute("DELETE FROM fnrk_crypt WHERE table_name = ?", name);
    if (mark == nullptr) return;
    Blob bytes;
    bytes.bytes.append(reinterpret_cast<const char*>(mark->salt.data()), mark->salt.size());
    bytes.bytes.append(reinterpret_cast<const char*>(mark->verifier.data()), mark->verifier.size());
    SqlValue parameters[] = {table, std::move(bytes)};
    session.Execute("INSERT INTO fnrk_crypt(table_name, mark) VALUES (?, ?)", parameters);
}

}  // namespace fnrk::backend
