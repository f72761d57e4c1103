#pragma once

#include <dlfcn.h>
#include <sys/mman.h>

#include <cerrno>
#include <cstdint>
#include <cstring>
#include <stdexcept>
#include <string>
#include <system_error>
#include <vector>

// The first bytes of a function of the library are other code while this lives, so that any
// function can misbehave without a stand-in library.
class PatchedFunction {
public:
    PatchedFunction(const char* name, const std::vector<unsigned char>& code)
        : m_code(static_cast<unsigned char*>(dlsym(RTLD_DEFAULT, name))) {
        if (!m_code) {
            throw std::invalid_argument(std::string("the library has no ") + name);
        }
        m_kept.assign(m_code, m_code + code.size());
        write(code);
    }
    ~PatchedFunction() { write(m_kept); }
    PatchedFunction(const PatchedFunction&) = delete;
    PatchedFunction& operator=(const PatchedFunction&) = delete;

private:
    void write(const std::vector<unsigned char>& code) const {
        constexpr uintptr_t pageBytes = 4096;
        auto* const page =
            reinterpret_cast<void*>(reinterpret_cast<uintptr_t>(m_code) / pageBytes * pageBytes);
        constexpr size_t bytes = 2 * pageBytes; // the code may reach into the next page
        if (mprotect(page, bytes, PROT_READ | PROT_WRITE | PROT_EXEC) != 0) {
            throw std::system_error(errno, std::generic_category(), "mprotect");
        }
        memcpy(m_code, code.data(), code.size());
        mprotect(page, bytes, PROT_READ | PROT_EXEC);
    }

    unsigned char* const m_code;
    std::vector<unsigned char> m_kept;
};
