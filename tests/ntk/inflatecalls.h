// Shared by the tests of the inflater: streams written by hand, and the call in pieces.
#pragma once

#include <algorithm>
#include <cstdint>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "guarded.h"
#include "ntkdc.h"
#include "samples.h"
#include "zlibcalls.h"

// A stream being decoded.
class Inflater {
public:
    Inflater() {
        int size = 0;
        ntksInflateGetSize_8u(&size);
        m_work.resize(64 + static_cast<std::size_t>(size) + behindWork, filler);
        Ntk8u* work = m_work.data();
        // One after a multiple of 64, the worst alignment: the buffer is used up to its last byte.
        while (reinterpret_cast<std::uintptr_t>(work) % 64 != 1) {
            ++work;
        }
        m_workEnd = work + size;
        ntksInflateInit_8u(&state, work);
    }
    Inflater(const Inflater&) = delete;
    Inflater& operator=(const Inflater&) = delete;

    // Advances both pointers; the lengths are those of a piece.
    NtkStatus call(const Ntk8u*& src, std::size_t srcLen, Ntk8u*& dst, std::size_t dstLen,
                   const Bytes* history = nullptr) {
        int srcLeft = static_cast<int>(srcLen);
        int dstLeft = static_cast<int>(dstLen);
        return ntksInflate_8u(
            &src, &srcLeft, &code, &codeLen, history == nullptr ? nullptr : history->data(), &dst,
            &dstLeft, history == nullptr ? 0 : static_cast<int>(history->size()), &mode, &state);
    }
    bool isFinished() const { return mode == ntkInflateFinished; }
    bool keptToWorkBuffer() const {
        return std::all_of(m_workEnd, m_workEnd + behindWork,
                           [](Ntk8u byte) { return byte == filler; });
    }

    NtksInflateState state{};
    Ntk32u code = 0;
    int codeLen = 0;
    int mode = ntkInflateBlockHeader;

private:
    static constexpr std::size_t behindWork = 2048;
    static constexpr Ntk8u filler = 0xa5;

    Bytes m_work;
    const Ntk8u* m_workEnd;
};

inline Verdict verdictOf(NtkStatus status, const Inflater& inflater) {
    return status == ntkStsDstFull ? Verdict::destinationFull
           : status < 0            ? Verdict::malformed
           : inflater.isFinished() ? Verdict::valid
                                   : Verdict::unfinished;
}

// Decodes in pieces of at most these lengths. Every piece of the source has a block of its own, and
// there are guards around the destination.
inline Inflated inflatedInPieces(const Bytes& stream, std::size_t capacity, std::size_t srcPiece,
                                 std::size_t dstPiece) {
    Inflater inflater;
    const GuardedBlock data(capacity);
    Ntk8u* dst = data.data();
    Ntk8u* const dstEnd = dst + capacity;
    std::size_t taken = 0;
    NtkStatus status = ntkStsNoErr;
    for (;;) {
        const std::size_t n = std::min(srcPiece, stream.size() - taken);
        const auto piece = std::make_unique<Ntk8u[]>(n);
        std::copy_n(stream.data() + taken, n, piece.get());
        const Ntk8u* src = piece.get();
        const std::size_t room = std::min(dstPiece, static_cast<std::size_t>(dstEnd - dst));
        status = inflater.call(src, n, dst, room);
        taken += static_cast<std::size_t>(src - piece.get());
        const bool isAtEnd = status == ntkStsDstFull ? dst == dstEnd : taken == stream.size();
        if (status < 0 || inflater.isFinished() || isAtEnd) {
            break;
        }
    }
    return {verdictOf(status, inflater), taken, Bytes(data.data(), dst)};
}

inline Inflated inflated(const Bytes& stream, std::size_t capacity) {
    return inflatedInPieces(stream, capacity, stream.size(), capacity);
}

// Writes bits, least significant first. A code is passed as a text, first bit first.
class BitWriter {
public:
    BitWriter& bits(unsigned value, unsigned count) {
        for (unsigned i = 0; i < count; ++i) {
            bit((value >> i) & 1);
        }
        return *this;
    }
    BitWriter& code(const char* text) {
        for (; *text != '\0'; ++text) {
            bit(*text == '1');
        }
        return *this;
    }
    Bytes done() const { return m_bytes; }

private:
    void bit(unsigned value) {
        if (m_count++ % 8 == 0) {
            m_bytes.push_back(0);
        }
        m_bytes.back() = static_cast<Ntk8u>(m_bytes.back() | value << ((m_count - 1) % 8));
    }

    Bytes m_bytes;
    unsigned m_count = 0;
};
