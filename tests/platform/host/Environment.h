#pragma once

#include <QByteArray>

#include <string>

namespace lamina::test {

/// A variable of the environment that is put back at the end. An empty value takes it away.
class Variable {
public:
    Variable(const char* name, const std::string& value)
        : m_name(name)
        , m_before(qgetenv(name))
    {
        set(value);
    }
    ~Variable() { set(m_before.toStdString()); }
    Variable(const Variable&) = delete;
    Variable& operator=(const Variable&) = delete;

    void set(const std::string& value)
    {
        if (value.empty())
            qunsetenv(m_name);
        else
            qputenv(m_name, QByteArray::fromStdString(value));
    }

private:
    const char* m_name;
    QByteArray m_before;
};

} // namespace lamina::test
