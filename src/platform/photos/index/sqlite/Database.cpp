#include "platform/photos/index/sqlite/Database_p.h"

#include <algorithm>
#include <cstddef>
#include <limits>

namespace lamina {

Database::Database(const std::string& path, int flags)
{
    sqlite3* connection = nullptr;
    const int code = sqlite3_open_v2(path.c_str(), &connection, flags | SQLITE_OPEN_NOMUTEX, nullptr);
    m_connection.reset(connection);
    note(code);
    if (code == SQLITE_OK)
        sqlite3_busy_timeout(connection, kPatienceMilliseconds);
}

bool Database::run(const char* sql)
{
    if (!hasFailed())
        note(sqlite3_exec(handle(), sql, nullptr, nullptr, nullptr));
    return !hasFailed();
}

bool Database::isDamaged() const
{
    const int primary = m_code & 0xFF;
    return primary == SQLITE_CORRUPT || primary == SQLITE_NOTADB || primary == SQLITE_ERROR;
}

bool Database::isHindered() const
{
    const int primary = m_code & 0xFF;
    return primary == SQLITE_BUSY || primary == SQLITE_IOERR;
}

Outcome Database::outcome() const
{
    if (hasFailed())
        return Error{{}, sqlite3_errstr(m_code)};
    return success();
}

void Database::note(int code)
{
    if (m_code == SQLITE_OK && code != SQLITE_ROW && code != SQLITE_DONE)
        m_code = code;
}

bool Rows::next()
{
    if (m_database.hasFailed())
        return false;
    const int code = sqlite3_step(m_statement);
    m_database.note(code);
    return code == SQLITE_ROW;
}

int Rows::size(int column) const
{
    return static_cast<int>(std::clamp<std::int64_t>(integer(column), 0, std::numeric_limits<int>::max()));
}

std::string Rows::text(int column) const
{
    const void* const bytes = sqlite3_column_text(m_statement, column);
    const auto count = static_cast<std::size_t>(sqlite3_column_bytes(m_statement, column));
    return bytes == nullptr ? std::string() : std::string(static_cast<const char*>(bytes), count);
}

sqlite3_stmt* Statement::compiled()
{
    if (!m_statement && !m_database.hasFailed()) {
        sqlite3_stmt* statement = nullptr;
        m_database.note(
            sqlite3_prepare_v3(m_database.handle(), m_sql, -1, SQLITE_PREPARE_PERSISTENT, &statement, nullptr));
        m_statement.reset(statement);
    }
    return m_statement.get();
}

} // namespace lamina
