// What all targets share: the entry that libFuzzer and the replay program call, the input taken
// apart, memory of exact sizes, and checks that end the process.
#pragma once

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <memory>

#include "samples.h"

// Runs the target on one input; always returns 0. What it checks and finds broken aborts.
extern "C" int LLVMFuzzerTestOneInput(const Ntk8u* data, std::size_t size);

#define FUZZ_CHECK(condition) ((condition) ? void() : fuzz::fail(#condition, __FILE__, __LINE__))

namespace fuzz {

[[noreturn]] inline void fail(const char* condition, const char* file, int line) {
    std::fprintf(stderr, "%s:%d: not so: %s\n", file, line, condition);
    std::abort();
}

// Decisions are taken from the front of an input, what is left is data. Behind its end it is zeros.
class Input {
public:
    Input(const Ntk8u* data, std::size_t size) : m_at(data), m_end(data + size) {}

    unsigned byte() { return m_at == m_end ? 0 : *m_at++; }
    unsigned word() {
        const unsigned low = byte();
        return low | byte() << 8;
    }
    template <class Number> Number number() { // any value
        Number value = 0;
        for (std::size_t i = 0; i < sizeof value; ++i) {
            value = static_cast<Number>(value | static_cast<Number>(byte()) << 8 * i);
        }
        return value;
    }
    unsigned below(unsigned limit) { return (limit <= 256 ? byte() : word()) % limit; }
    bool flip() { return byte() % 2 == 1; }
    Bytes take(std::size_t most) {
        const auto count = std::min(most, static_cast<std::size_t>(m_end - m_at));
        m_at += count;
        return Bytes(m_at - count, m_at);
    }
    Bytes rest() { return take(static_cast<std::size_t>(m_end - m_at)); }
    bool empty() const { return m_at == m_end; }

private:
    const Ntk8u* m_at;
    const Ntk8u* m_end;
};

// Memory on the heap of just this size, at an address also for nothing: the sanitizer finds the
// first byte before and behind it. (Code that is not compiled with it needs a GuardedBlock.)
class Block {
public:
    explicit Block(std::size_t size, Ntk8u filler = 0)
        : m_size(size), m_data(std::make_unique<Ntk8u[]>(size)) {
        std::fill_n(data(), size, filler);
    }
    explicit Block(const Bytes& bytes) : Block(bytes.size()) {
        std::copy(bytes.begin(), bytes.end(), data());
    }

    Ntk8u* data() const { return m_data.get(); }
    int size() const { return static_cast<int>(m_size); }
    Bytes first(int count) const { return Bytes(data(), data() + count); }

private:
    std::size_t m_size;
    std::unique_ptr<Ntk8u[]> m_data;
};

// Changes a few bytes where the input says so.
inline void damage(Bytes& bytes, Input& in) {
    for (unsigned count = in.below(4); count > 0 && !bytes.empty(); --count) {
        const std::size_t at = in.word() % bytes.size();
        bytes[at] = static_cast<Ntk8u>(bytes[at] ^ in.byte());
    }
}

} // namespace fuzz
