#pragma once

#include <type_traits>

// Takes a process-wide pointer aside: it is null from then on, and has its old value again when
// this is gone. An object that it points to in the end is deleted.
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
