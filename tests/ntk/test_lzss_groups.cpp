// The kernels that decode whole LZSS groups, against a reference decoder.
#include <gtest/gtest.h>

#include "dc/lzss/copymatch.h"
#include "dc/lzss/groups.h"
#include "guarded.h"
#include "kernels.h"
#include "oracles/lzss.h"
#include "samples.h"

namespace {

using ntk::lzss::Match;

// Collects tokens in groups.
class Groups {
public:
    void literal(Ntk8u byte) { add(0, &byte, 1); }
    void match(Match m) {
        Ntk8u token[ntk::lzss::maxTokenBytes];
        add(1, token, ntk::lzss::writeToken(m, token));
    }
    void endGroup() {
        const Ntk8u token[] = {0, 0};
        add(1, token, sizeof token);
        m_tokens = 0;
    }
    const Bytes& stream() const { return m_stream; }

private:
    void add(unsigned flag, const Ntk8u* token, Ntk32u bytes) {
        if (m_tokens == 0) {
            m_flagsAt = m_stream.size();
            m_stream.push_back(0);
        }
        m_stream[m_flagsAt] = static_cast<Ntk8u>(m_stream[m_flagsAt] | flag << m_tokens);
        m_stream.insert(m_stream.end(), token, token + bytes);
        m_tokens = (m_tokens + 1) % ntk::lzss::tokensPerGroup;
    }

    Bytes m_stream;
    std::size_t m_flagsAt = 0;
    unsigned m_tokens = 0;
};

// After a window of literals: matches at the distances and of the lengths at which the token or the
// way to copy changes, in all places of a group, with 0 to 9 literals between them.
Bytes matchesOfAllKinds() {
    Groups groups;
    Bytes literals = randomBytes(20000);
    const auto add = [&](std::size_t count) {
        for (; count > 0; --count) {
            groups.literal(literals.back());
            literals.pop_back();
        }
    };
    add(16400);
    unsigned number = 0;
    for (const Ntk32u distance : {1,  2,  3,  4,  5,  6,  7,  8,   9,    15,   16,   17,
                                  31, 32, 33, 63, 64, 65, 99, 999, 8191, 8192, 16383}) {
        for (const Ntk32u length :
             {3, 4, 9, 10, 15, 16, 17, 31, 32, 33, 63, 64, 65, 130, 131, 386}) {
            if (length > 3 || distance <= ntk::lzss::maxShortDistance) {
                groups.match({length, distance});
                add(++number % 97 == 0 ? 9 : number * 7 % 11 % 4);
            }
            if (number % 13 == 0) {
                groups.endGroup();
            }
        }
    }
    add(100);
    return groups.stream();
}

// The source ends at a page that must not be read, the room for the data at one that must not be
// written to.
void expectGroups(ntk::lzss::DecodeGroups& decode, const Bytes& stream, std::size_t room) {
    const GuardedBlock src(stream);
    const GuardedBlock dst(room + ntk::lzss::maxGroupData + ntk::lzss::copySlack);
    ntk::lzss::Data data{dst.data(), dst.data(), dst.data() + room};
    const Ntk8u* const last = src.data() + stream.size() - ntk::lzss::groupReadBytes;
    const Ntk8u* const next = decode(data, src.data(), last);
    if (next == nullptr) {
        EXPECT_THROW(oracle::lzssDecoded(stream), std::domain_error);
        return;
    }
    EXPECT_TRUE(next > last || data.end >= data.full);
    const Bytes taken(stream.begin(), stream.begin() + (next - src.data()));
    EXPECT_TRUE(oracle::lzssDecoded(taken) == Bytes(dst.data(), data.end));
}

TEST(LzssGroups, TheReferenceDecoderGivesTheSameData) {
    const Bytes stream = matchesOfAllKinds();
    const std::size_t size = oracle::lzssDecoded(stream).size();
    forEachKernel(ntk::lzss::decodeGroupsKernel, [&](ntk::lzss::DecodeGroups& decode) {
        for (const std::size_t room : {std::size_t{1}, std::size_t{16500}, size / 2, size}) {
            expectGroups(decode, stream, room);
        }
    });
}

// The group begins where the last one may, in the source and in the room.
TEST(LzssGroups, TheLongestGroupStaysWithinItsBuffers) {
    for (const Ntk32u distance : {1, 3, 5, 7, 8, 15, 16, 24}) {
        Groups groups;
        for (int i = 0; i < 24; ++i) {
            groups.literal(static_cast<Ntk8u>(i));
        }
        for (int i = 0; i < 8; ++i) {
            groups.match({ntk::lzss::maxMatch, distance});
        }
        Bytes stream = groups.stream();
        stream.resize(stream.size() + ntk::lzss::groupReadBytes - ntk::lzss::maxGroupBytes);
        forEachKernel(ntk::lzss::decodeGroupsKernel,
                      [&](ntk::lzss::DecodeGroups& decode) { expectGroups(decode, stream, 25); });
    }
}

TEST(LzssGroups, DamagedStreamsAreDecodedOrRejected) {
    const Bytes valid = matchesOfAllKinds();
    forEachKernel(ntk::lzss::decodeGroupsKernel, [&](ntk::lzss::DecodeGroups& decode) {
        std::mt19937 generator(5);
        for (int round = 0; round < 300; ++round) {
            Bytes stream = valid;
            for (int damage = 0; damage <= round % 9; ++damage) {
                stream[generator() % stream.size()] = static_cast<Ntk8u>(generator());
            }
            stream.resize(stream.size() - generator() % 1000);
            expectGroups(decode, stream, 40000);
        }
        for (unsigned seed = 0; seed < 1000; ++seed) { // soon a match before the start
            Bytes stream = randomBytes(100, seed);
            stream[0] = 0;
            expectGroups(decode, stream, 4000);
        }
    });
}

} // namespace
