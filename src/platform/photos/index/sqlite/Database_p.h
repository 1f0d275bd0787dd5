#pragma once

#include "platform/base/Result.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <sqlite3.h>
#include <string>
#include <string_view>

namespace lamina {

/// A connection to a file. It remembers the first failure of all that is done with it, so that a sequence of statements
/// is asked once, at its end. For one thread at a time.
class Database {
public:
    /// How long it waits for another process that is writing.
    static constexpr int kPatienceMilliseconds = 5000;

    /// With `SQLITE_OPEN_...` flags; a connection that could not be made has that as its failure. `path` may be a URI.
    Database(const std::string& path, int flags);

    sqlite3* handle() const { return m_connection.get(); }

    /// A statement without values; its rows are passed over. False when it, or something before it, has failed.
    bool run(const char* sql);

    bool hasFailed() const { return m_code != SQLITE_OK; }
    /// Whether what has failed was the file itself: its bytes, or its tables, are not what was written.
    bool isDamaged() const;
    /// Whether somebody else who uses the file may have been in the way: the same may succeed a moment later.
    bool isHindered() const;
    Outcome outcome() const;
    /// Takes a result in; "row" and "done" are none.
    void note(int code);
    /// The next sequence begins.
    void forgive() { m_code = SQLITE_OK; }

private:
    struct Closer {
        void operator()(sqlite3* connection) const { sqlite3_close_v2(connection); }
    };

    std::unique_ptr<sqlite3, Closer> m_connection;
    int m_code = SQLITE_OK;
};

/// The rows of a running statement, which is reset at its end.
class Rows {
public:
    Rows(Database& database, sqlite3_stmt* statement)
        : m_database(database)
        , m_statement(statement)
    {
    }
    Rows(const Rows&) = delete;
    Rows& operator=(const Rows&) = delete;
    ~Rows() { sqlite3_reset(m_statement); }

    /// Whether there is another row; false after a failure.
    bool next();

    std::int64_t integer(int column) const { return sqlite3_column_int64(m_statement, column); }
    /// At least 0: a damaged file may hold anything.
    int size(int column) const;
    double real(int column) const { return sqlite3_column_double(m_statement, column); }
    bool isNull(int column) const { return sqlite3_column_type(m_statement, column) == SQLITE_NULL; }
    std::string text(int column) const;

private:
    Database& m_database;
    sqlite3_stmt* m_statement;
};

/// A statement of a connection, compiled when it first runs and kept.
class Statement {
public:
    Statement(Database& database, const char* sql)
        : m_database(database)
        , m_sql(sql)
    {
    }

    /// Runs it with these values for its question marks, in their order. The rows must go before it runs again; texts
    /// must outlive them.
    template <class... Values>
    Rows query(const Values&... values)
    {
        sqlite3_stmt* const statement = compiled();
        int place = 0;
        (m_database.note(bind(statement, ++place, values)), ...);
        return {m_database, statement};
    }
    /// The same for one without rows. False after a failure, also of something before it.
    template <class... Values>
    bool execute(const Values&... values)
    {
        query(values...).next();
        return !m_database.hasFailed();
    }

private:
    struct Finalizer {
        void operator()(sqlite3_stmt* statement) const { sqlite3_finalize(statement); }
    };

    sqlite3_stmt* compiled();
    static int bind(sqlite3_stmt* statement, int place, std::int64_t value)
    {
        return sqlite3_bind_int64(statement, place, value);
    }
    static int bind(sqlite3_stmt* statement, int place, double value)
    {
        return sqlite3_bind_double(statement, place, value);
    }
    static int bind(sqlite3_stmt* statement, int place, const std::string& value)
    {
        return sqlite3_bind_text64(statement, place, value.data(), value.size(), SQLITE_STATIC, SQLITE_UTF8);
    }
    /// Nothing is NULL.
    static int bind(sqlite3_stmt* statement, int place, const std::optional<std::int64_t>& value)
    {
        return value ? sqlite3_bind_int64(statement, place, *value) : sqlite3_bind_null(statement, place);
    }

    Database& m_database;
    const char* m_sql;
    std::unique_ptr<sqlite3_stmt, Finalizer> m_statement;
};

} // namespace lamina
