#pragma once

#include <type_traits>

// Sets a process-wide pointer to null and restores it at the end of its life. An object that it
// then points to is deleted.
template <class T> class Aside {
public:
    explicit Aside(T*& pointer) : m_pointer(pointer), m_saved(pointer) { pointer = nullptr; }
    ~Aside() {
        if constexpr (!std::is_function_v<T>) {
            delete m_pointer;
        }
        m_pointer = m_saved;
    }
    Aside(const Aside&) = delete;
    Aside& operator=(const Aside&) = delete;

private:
    T*& m_pointer;
    T* const m_saved;
};
