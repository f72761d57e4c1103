// Memory that faults on the first byte outside it.
#pragma once

#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <new>
#include <vector>

#include "ntkdefs.h"

// A block that ends where an inaccessible page begins; another one comes before its first page.
class GuardedBlock {
public:
    explicit GuardedBlock(std::size_t size) : m_size(size) {
        const auto page = static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
        m_mappedBytes = (size + page - 1) / page * page + 2 * page;
        void* const mapped = mmap(nullptr, m_mappedBytes, PROT_READ | PROT_WRITE,
                                  MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
        if (mapped == MAP_FAILED) {
            throw std::bad_alloc();
        }
        m_mapped = static_cast<Ntk8u*>(mapped);
        mprotect(m_mapped, page, PROT_NONE);
        mprotect(m_mapped + m_mappedBytes - page, page, PROT_NONE);
        m_data = m_mapped + m_mappedBytes - page - size;
    }
    explicit GuardedBlock(const std::vector<Ntk8u>& bytes) : GuardedBlock(bytes.size()) {
        std::copy(bytes.begin(), bytes.end(), m_data);
    }
    GuardedBlock(const GuardedBlock&) = delete;
    GuardedBlock& operator=(const GuardedBlock&) = delete;
    ~GuardedBlock() { munmap(m_mapped, m_mappedBytes); }

    Ntk8u* data() const { return m_data; }
    int size() const { return static_cast<int>(m_size); }

    // From now on any access faults.
    void forbid() { mprotect(m_mapped, m_mappedBytes, PROT_NONE); }

private:
    std::size_t m_size;
    std::size_t m_mappedBytes = 0;
    Ntk8u* m_mapped = nullptr;
    Ntk8u* m_data = nullptr;
};
