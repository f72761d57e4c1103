#pragma once

#include <cstdlib>
#include <optional>
#include <string>

// An environment variable for the time of a test; null: not set.
class Variable {
public:
    Variable(const char* name, const char* value) : m_name(name) {
        if (const char* const before = getenv(name)) {
            m_before = before;
        }
        value ? setenv(name, value, 1) : unsetenv(name);
    }
    ~Variable() { m_before ? setenv(m_name, m_before->c_str(), 1) : unsetenv(m_name); }
    Variable(const Variable&) = delete;
    Variable& operator=(const Variable&) = delete;

private:
    const char* m_name;
    std::optional<std::string> m_before;
};
