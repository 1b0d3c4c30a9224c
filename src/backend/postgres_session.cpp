#include "backend/postgres_session.hpp"

#include <libpq-fe.h>

#include <charconv>
#include <cstdlib>

namespace fnrk::backend {

namespace {

// Type numbers of the server's built-in types (pg_type.oid).
constexpr Oid kBool = 16;
constexpr Oid kBytea = 17;
constexpr Oid kInt8 = 20;
constexpr Oid kInt2 = 21;
constexpr Oid kInt4 = 23;
constexpr Oid kFloat4 = 700;
constexpr Oid kFloat8 = 701;
constexpr Oid kNumeric = 1700;

struct ResultFree {
    void operator()(PGresult* result) const { PQclear(result); }
};
using Result = std::unique_ptr<PGresult, ResultFree>;

// A name for keys of locks: the same text gives the same number on every workstation.
std::uint32_t Fnv1a(std::string_view text) {
    std::uint32_t hash = 2166136261u;
    for (unsigned char c : text) {
        hash ^= c;
        hash *= 16777619u;
    }
    return hash;
}

// "?" placeholders become "$1", "$2", ...; quoted text and names are left alone.
std::string Numbered(std::string_view sql, int& count) {
    std::string out;
    out.reserve(sql.size() + 16);
    char quote = 0;
    count = 0;
    for (char c : sql) {
        if (quote) {
            if (c == quote) quote = 0;
        } else if (c == '\'' || c == '"') {
            quote = c;
        } else if (c == '?') {
            out += "$" + std::to_string(++count);
            continue;
        }
        out += c;
    }
    return out;
}

bool ChangesTables(std::string_view sql) {
    for (std::string_view verb : {"CREATE TABLE", "DROP TABLE", "ALTER TABLE"}) {
        if (sql.starts_with(verb)) return true;
    }
    return false;
}

std::string NumberText(double value) {
    char buffer[32];
    auto end = std::to_chars(buffer, buffer + sizeof buffer, value).ptr;
    return std::string(buffer, end);
}

SqlValue Column(const PGresult* result, int row, int column) {
    if (PQgetisnull(result, row, column)) return std::monostate{};
    const char* text = PQgetvalue(result, row, column);
    const auto length = static_cast<std::size_t>(PQgetlength(result, row, column));
    switch (PQftype(result, column)) {
        case kBool:
            return std::int64_t{text[0] == 't' ? 1 : 0};
        case kInt2:
        case kInt4:
        case kInt8:
            return static_cast<std::int64_t>(std::strtoll(text, nullptr, 10));
        case kFloat4:
        case kFloat8:
        case kNumeric:
            return std::strtod(text, nullptr);
        case kBytea: {
            std::size_t size = 0;
            unsigned char* bytes =
                PQunescapeBytea(reinterpret_cast<const unsigned char*>(text), &size);
            if (!bytes) throw SqlFailure("out of memory reading a binary value");
            Blob blob{std::string(reinterpret_cast<const char*>(bytes), size)};
            PQfreemem(bytes);
            return blob;
        }
        default:
            return std::string(text, length);
    }
}

}  // namespace

std::string QuotedName(std::string_view name) {
    std::string quoted = "\"";
    for (char c : name) {
        if (c == '"') quoted += '"';
        quoted += c;
    }
    return quoted + "\"";
}

PostgresSession::PostgresSession(const ConnectionTarget& target)
    : schema_(target.schema.empty() ? "public" : target.schema) {
    // The database item may itself be a full connection string or URI (expand_dbname).
    std::vector<const char*> keys;
    std::vector<const char*> values;
    auto add = [&](const char* key, const std::string& value) {
        if (value.empty()) return;
        keys.push_back(key);
        values.push_back(value.c_str());
    };
    add("dbname", target.database);
    add("host", target.server);
    add("port", target.port);
    add("user", target.user);
    add("password", target.password);
    const std::string application = "fennrick";
    const std::string encoding = "UTF8";
    const std::string options = "-c client_min_messages=warning";  // no "already exists" notes
    add("application_name", application);
    add("client_encoding", encoding);
    add("options", options);
    keys.push_back(nullptr);
    values.push_back(nullptr);
    connection_ = PQconnectdbParams(keys.data(), values.data(), 1);
    if (!connection_ || PQstatus(connection_) != CONNECTION_OK) {
        std::string message = connection_ ? PQerrorMessage(connection_) : "out of memory";
        PQfinish(connection_);
        connection_ = nullptr;
        while (!message.empty() && message.back() == '\n') message.pop_back();
        throw SqlFailure("cannot connect to PostgreSQL: " + message);
    }
    writerKey_ = static_cast<std::int64_t>(Fnv1a(schema_));
    locks_ = std::make_unique<AdvisoryLockBook>(*this);
    Execute("SET search_path TO " + QuotedName(schema_));
    if (schema_ != "public") {
        SqlTransaction transaction(*this);
        Execute("CREATE SCHEMA IF NOT EXISTS " + QuotedName(schema_));
        transaction.Commit();
    }
}

PostgresSession::~PostgresSession() {
    locks_.reset();
    PQfinish(connection_);
}

std::int32_t PostgresSession::TableLockKey(const std::string& table) const {
    return static_cast<std::int32_t>(Fnv1a(schema_ + '.' + table));
}

void PostgresSession::Fail(std::string_view what, const char* message) {
    std::string text = message ? message : "";
    while (!text.empty() && text.back() == '\n') text.pop_back();
    throw SqlFailure(std::string(what) + ": " + text);
}

const std::string& PostgresSession::Prepared(std::string_view sql, int parameterCount) {
    std::string key(sql);
    if (auto found = statements_.find(key); found != statements_.end()) return found->second;
    int count = 0;
    std::string numbered = Numbered(sql, count);
    if (count != parameterCount) {
        throw SqlFailure(std::string(sql) + ": " + std::to_string(parameterCount) + " values for " +
                         std::to_string(count) + " parameters");
    }
    std::string name = "fnrk_" + std::to_string(statements_.size() + 1);
    Result result(PQprepare(connection_, name.c_str(), numbered.c_str(), count, nullptr));
    if (!result || PQresultStatus(result.get()) != PGRES_COMMAND_OK) {
        Fail(sql, PQerrorMessage(connection_));
    }
    return statements_.emplace(std::move(key), std::move(name)).first->second;
}

std::vector<SqlRow> PostgresSession::Run(std::string_view sql,
                                         std::span<const SqlValue> parameters) {
    const int count = static_cast<int>(parameters.size());
    const std::string& name = Prepared(sql, count);
    std::vector<std::string> texts(parameters.size());
    std::vector<const char*> values(parameters.size(), nullptr);
    std::vector<int> lengths(parameters.size(), 0);
    std::vector<int> formats(parameters.size(), 0);
    for (std::size_t i = 0; i < parameters.size(); ++i) {
        const SqlValue& value = parameters[i];
        if (const auto* number = std::get_if<std::int64_t>(&value)) {
            texts[i] = std::to_string(*number);
        } else if (const auto* real = std::get_if<double>(&value)) {
            texts[i] = NumberText(*real);
        } else if (const auto* text = std::get_if<std::string>(&value)) {
            texts[i] = *text;
        } else if (const auto* blob = std::get_if<Blob>(&value)) {
            texts[i] = blob->bytes;
            formats[i] = 1;  // binary: the bytes as they are
        } else {
            continue;  // NULL
        }
        values[i] = texts[i].c_str();
        lengths[i] = static_cast<int>(texts[i].size());
    }
    Result result(PQexecPrepared(connection_, name.c_str(), count, values.data(), lengths.data(),
                                 formats.data(), 0));
    const ExecStatusType status = result ? PQresultStatus(result.get()) : PGRES_FATAL_ERROR;
    if (status != PGRES_COMMAND_OK && status != PGRES_TUPLES_OK) {
        Fail(sql, PQerrorMessage(connection_));
    }
    if (ChangesTables(sql)) {
        // Statements prepared against the old shape of a table would refuse to run (a changed
        // result type): they are prepared afresh.
        Result cleared(PQexec(connection_, "DEALLOCATE ALL"));
        statements_.clear();
    }
    const char* changed = PQcmdTuples(result.get());
    changes_ = changed && *changed ? std::strtoll(changed, nullptr, 10) : 0;
    std::vector<SqlRow> rows;
    const int rowCount = PQntuples(result.get());
    const int columns = PQnfields(result.get());
    rows.reserve(static_cast<std::size_t>(rowCount));
    for (int row = 0; row < rowCount; ++row) {
        SqlRow values;
        values.reserve(static_cast<std::size_t>(columns));
        for (int column = 0; column < columns; ++column) {
            values.push_back(Column(result.get(), row, column));
        }
        rows.push_back(std::move(values));
    }
    return rows;
}

void PostgresSession::Execute(std::string_view sql, std::span<const SqlValue> parameters) {
    Run(sql, parameters);
}

std::vector<SqlRow> PostgresSession::Query(std::string_view sql,
                                           std::span<const SqlValue> parameters) {
    return Run(sql, parameters);
}

std::int64_t PostgresSession::Changes() {
    return changes_;
}

// Transactions nest: only the outermost Begin / Commit reach the server.
void PostgresSession::Begin() {
    if (depth_ == 0) {
        Execute("BEGIN");
        SqlValue parameters[] = {writerKey_};
        Execute("SELECT pg_advisory_xact_lock(?)", parameters);
    }
    ++depth_;
}
void PostgresSession::Commit() {
    if (depth_ > 0 && --depth_ == 0) Execute("COMMIT");
}
void PostgresSession::Rollback() {
    depth_ = 0;
    if (PQtransactionStatus(connection_) != PQTRANS_IDLE) Execute("ROLLBACK");
}

}  // namespace fnrk::backend
