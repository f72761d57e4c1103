// Every kernel of every checksum against published values, the generic kernel and other libraries.
#include "dc/checksum/kernels.h"

#include <gtest/gtest.h>

#include <isa-l/crc.h>
#include <zlib.h>

#include "guarded.h"
#include "kernels.h"
#include "ntkdc.h"
#include "samples.h"

namespace {

using Reference = Ntk32u (*)(Ntk32u value, const Ntk8u* data, std::size_t length);

// libisal's table-driven functions share no code with its vector kernels, which are candidates.
Ntk32u isalBaseCrc32c(Ntk32u value, const Ntk8u* data, std::size_t length) {
    return ~crc32_iscsi_base(const_cast<Ntk8u*>(data), static_cast<int>(length), ~value);
}

Ntk32u isalBaseCrc32Bz2(Ntk32u value, const Ntk8u* data, std::size_t length) {
    return crc32_ieee_base(value, const_cast<Ntk8u*>(data), length);
}

Ntk32u zlibAdler32(Ntk32u value, const Ntk8u* data, std::size_t length) {
    return static_cast<Ntk32u>(adler32(value, data, static_cast<uInt>(length)));
}

Ntk32u zlibCrc32(Ntk32u value, const Ntk8u* data, std::size_t length) {
    return static_cast<Ntk32u>(crc32(value, data, static_cast<uInt>(length)));
}

struct Checksum {
    const char* name;
    NtkStatus (*call)(const Ntk8u*, int, Ntk32u*);
    ntk::Choice<ntk::ChecksumFunction>& kernel;
    Reference reference;
    Ntk32u start;
    Ntk32u checkValue;  // of "123456789"
    Ntk32u zeroesValue; // of 32 zero bytes
};

const Checksum checksums[] = {
    {"Adler-32", ntksAdler32_8u, ntk::adler32Kernel, zlibAdler32, 1, 0x091e01de, 0x00200001},
    {"CRC-32", ntksCRC32_8u, ntk::crc32Kernel, zlibCrc32, 0, 0xcbf43926, 0x190a55ad},
    {"CRC-32C", ntksCRC32C_8u, ntk::crc32cKernel, isalBaseCrc32c, 0, 0xe3069283, 0x8a9136aa},
    {"BZ2", ntksCRC32_BZ2_8u, ntk::crc32Bz2Kernel, isalBaseCrc32Bz2, 0, 0xfc891918, 0xb5aa5098},
};

TEST(Checksum, KernelsGiveThePublishedValues) {
    const Bytes digits = {'1', '2', '3', '4', '5', '6', '7', '8', '9'};
    const Bytes zeroes(32, 0);
    for (const Checksum& c : checksums) {
        forEachKernel(c.kernel, [&](ntk::ChecksumFunction& run) {
            EXPECT_EQ(run(c.start, digits.data(), digits.size()), c.checkValue);
            EXPECT_EQ(run(c.start, zeroes.data(), zeroes.size()), c.zeroesValue);
            EXPECT_EQ(run(c.checkValue, zeroes.data(), 0), c.checkValue);
        });
    }
}

// The lengths cover every path of a kernel up to its widest step and the steps after it. The data
// end at the guard, so that a kernel that reads beyond them faults.
TEST(Checksum, KernelsAgreeWithTheReferenceAtEveryLengthAndAlignment) {
    const GuardedBlock block(randomBytes(1100));
    const Ntk8u* const end = block.data() + block.size();
    for (const Checksum& c : checksums) {
        forEachKernel(c.kernel, [&](ntk::ChecksumFunction& run) {
            for (std::size_t length = 0; length <= 1100; ++length) {
                ASSERT_EQ(run(0x12345678, end - length, length),
                          c.reference(0x12345678, end - length, length))
                    << length;
            }
            for (std::size_t at = 0; at < 64; ++at) {
                ASSERT_EQ(run(1, block.data() + at, 600), c.reference(1, block.data() + at, 600))
                    << at;
            }
        });
    }
}

// All ones is the worst case for the sums of Adler-32; the data exceed the longest run between
// reductions.
TEST(Checksum, KernelsAgreeOnLongData) {
    for (const Bytes& bytes : {Bytes(300000, 0xff), randomBytes(300001)}) {
        for (const Checksum& c : checksums) {
            for (const Ntk32u value : {c.start, 0xfff0fff0U}) {
                const Ntk32u expected = c.reference(value, bytes.data(), bytes.size());
                forEachKernel(c.kernel, [&](ntk::ChecksumFunction& run) {
                    EXPECT_EQ(run(value, bytes.data(), bytes.size()), expected);
                });
            }
        }
    }
}

TEST(Checksum, CallsContinueTheValueUnderAnyFeatures) {
    const Bytes bytes = textBytes(5000);
    for (const Ntk64u features : {machineFeatures(), Ntk64u{0}}) {
        ntkSetCpuFeatures(features);
        for (const Checksum& c : checksums) {
            Ntk32u value = c.start;
            EXPECT_EQ(c.call(bytes.data(), 3000, &value), ntkStsNoErr);
            EXPECT_EQ(c.call(bytes.data() + 3000, 2000, &value), ntkStsNoErr);
            const Ntk32u whole = c.reference(c.start, bytes.data(), bytes.size());
            EXPECT_EQ(value, whole) << c.name;
            EXPECT_EQ(c.call(nullptr, 0, &value), ntkStsNullPtr);
            EXPECT_EQ(c.call(bytes.data(), 1, nullptr), ntkStsNullPtr);
            EXPECT_EQ(c.call(bytes.data(), -1, &value), ntkStsBadSize);
            EXPECT_EQ(value, whole) << c.name;
        }
        const Ntk8u byte = 7;
        Ntk32u unreduced = 0xffffffff;
        EXPECT_EQ(ntksAdler32_8u(&byte, 0, &unreduced), ntkStsNoErr);
        EXPECT_EQ(unreduced, 0x000e000eU);
        unreduced = 0xffffffff;
        EXPECT_EQ(ntksAdler32_8u(&byte, 1, &unreduced), ntkStsNoErr);
        EXPECT_EQ(unreduced, 0x00230015U);
    }
    ntkInit();
}

TEST(Choice, FollowsTheEnabledFeatures) {
    constexpr Ntk64u sse42 = 0xdf;
    constexpr Ntk64u avx2 = 0x81df | NTK_CPU_CLMUL;
    constexpr Ntk64u avx512 = avx2 | NTK_CPU_AVX512F | NTK_CPU_AVX512BW;
    struct Case {
        ntk::Choice<ntk::ChecksumFunction>& kernel;
        Ntk64u machine;
        Ntk64u enabled;
        const char* expected;
    };
    const Case cases[] = {
        {ntk::crc32Kernel, avx512, avx512, "isal"},
        {ntk::crc32Kernel, avx512, avx2, "clmul"}, // libisal would still use AVX512
        {ntk::crc32Kernel, avx2, avx2, "isal"},
        {ntk::crc32Kernel, avx2, sse42, "generic"},
        {ntk::crc32cKernel, avx512, sse42, "sse42"},
        {ntk::crc32cKernel, avx512, 0, "generic"},
        {ntk::crc32Bz2Kernel, avx512, avx2, "clmul"},
        {ntk::adler32Kernel, avx2, avx2, "libdeflate"},
        {ntk::adler32Kernel, avx2, sse42, "ssse3"},
        {ntk::adler32Kernel, sse42, sse42, "libdeflate"},
        {ntk::adler32Kernel, avx2, NTK_CPU_SSE2, "generic"},
    };
    for (const Case& c : cases) {
        const auto& list = c.kernel.candidates();
        EXPECT_STREQ(list.first[ntk::bestCandidate(list, c.enabled, c.machine)].name, c.expected)
            << std::hex << c.machine << " " << c.enabled;
    }
}

TEST(Choice, ChangesWithTheEnabledFeatures) {
    for (const Checksum& c : checksums) {
        const auto& list = c.kernel.candidates();
        ntkInit();
        EXPECT_EQ(c.kernel.get(),
                  list.first[ntk::bestCandidate(list, machineFeatures(), machineFeatures())].run);
        ntkSetCpuFeatures(0);
        EXPECT_EQ(c.kernel.get(), list.first[list.count - 1].run) << c.name;
        ntkInit();
    }
}

} // namespace
