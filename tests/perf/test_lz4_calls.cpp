// What the LZ4 tests ask of the library: which calls, in which order, with which buffers and
// lengths. The functions below stand in front of the library's own and pass every call on.

#include "family.h"

#include <dlfcn.h>

#include <type_traits>
#include <utility>

#include "p_dclz4.h"

using namespace dclz4;

namespace {

bool g_isNoting;
std::string g_calls;

std::string where(const Ntk8u* p) {
    const std::pair<const char*, kxVector*> buffers[] = {
        {"file", &fileBuf}, {"compressed", &comprBuf}, {"dict", &dictBuf}};
    for (const auto& [name, buffer] : buffers) {
        const auto* const start = static_cast<const Ntk8u*>(buffer->data());
        if (start && p >= start && p < start + buffer->size()) {
            return std::string(name) + "+" + std::to_string(p - start);
        }
    }
    return p ? "elsewhere" : "none";
}

// Capacities as a fraction of the whole destination, less what the call before wrote.
int g_written;
std::string room(int capacity) {
    const std::string whole = capacity == comprBuf.size() ? "whole" : std::to_string(capacity);
    return g_written && capacity == comprBuf.size() - g_written ? "rest" : whole;
}

template <class... Arguments>
NtkStatus passOn(const char* name, NtkStatus (*)(Arguments...),
                 std::type_identity_t<Arguments>... arguments) {
    using Function = NtkStatus(Arguments...);
    return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name))(arguments...);
}

void note(const std::string& call) {
    g_calls += g_isNoting ? call + "\n" : "";
}

// Notes a call of an encoder with a dictionary; `before` is its text, lengths as on entry.
NtkStatus noted(const std::string& before, NtkStatus status, int dstLen) {
    note(before);
    g_written = dstLen;
    return status;
}

std::string encoding(const char* name, const Ntk8u* src, int srcIdx, int srcLen, const Ntk8u* dst,
                     int dstLen, const Ntk8u* dict, int length) {
    return std::string(name) + " " + where(src) + " at " + std::to_string(srcIdx) + " of " +
           std::to_string(srcLen) + " to " + where(dst) + " " + room(dstLen) + " dict " +
           where(dict) + " of " + std::to_string(length);
}

} // namespace

#define PASS_ON(function, ...) passOn(#function, function, __VA_ARGS__)

NtkStatus ntksEncodeLZ4DictHashTableInit_8u(Ntk8u* table, int srcLen) {
    note("Init " + std::to_string(srcLen));
    return PASS_ON(ntksEncodeLZ4DictHashTableInit_8u, table, srcLen);
}
NtkStatus ntksEncodeLZ4HCHashTableInit_8u(Ntk8u** tables) {
    note(tables[0] == pHashTableHC && tables[1] == pChainTableHC ? "Init" : "Init of other tables");
    return PASS_ON(ntksEncodeLZ4HCHashTableInit_8u, tables);
}
NtkStatus ntksEncodeLZ4Dict_8u(const Ntk8u* src, int index, int srcLen, Ntk8u* dst, int* dstLen,
                               Ntk8u* table, const Ntk8u* dict, int length) {
    const std::string call = encoding("", src, index, srcLen, dst, *dstLen, dict, length);
    const NtkStatus status =
        PASS_ON(ntksEncodeLZ4Dict_8u, src, index, srcLen, dst, dstLen, table, dict, length);
    return noted(call, status, *dstLen);
}
NtkStatus ntksEncodeLZ4DictSafe_8u(const Ntk8u* src, int index, int* srcLen, Ntk8u* dst,
                                   int* dstLen, Ntk8u* table, const Ntk8u* dict, int length) {
    const std::string call = encoding("", src, index, *srcLen, dst, *dstLen, dict, length);
    const NtkStatus status =
        PASS_ON(ntksEncodeLZ4DictSafe_8u, src, index, srcLen, dst, dstLen, table, dict, length);
    return noted(call, status, *dstLen);
}
NtkStatus ntksEncodeLZ4HC_8u(const Ntk8u* src, int index, int* srcLen, Ntk8u* dst, int* dstLen,
                             Ntk8u** tables, const Ntk8u* dict, int length, int level) {
    const std::string call =
        encoding(level ? "level" : "", src, index, *srcLen, dst, *dstLen, dict, length);
    const NtkStatus status =
        PASS_ON(ntksEncodeLZ4HC_8u, src, index, srcLen, dst, dstLen, tables, dict, length, level);
    return noted(call, status, *dstLen);
}

namespace {
class Lz4Calls : public FamilyTest {
protected:
    void TearDown() override {
        g_isNoting = false;
        FamilyTest::TearDown();
    }
    const std::string file = makeFile("calls", sampleText(30001));
};
} // namespace

// An init body and its call, twice: untimed and timed. The first part is the larger half.
TEST_F(Lz4Calls, SecondPartAfterTheFirst) {
    const std::string first = " file+0 at 0 of 15001 to compressed+0 whole dict none of 0\n";
    const std::string second = " file+15001 at 15001 of 15000 to compressed+0 rest dict ";
    const std::string whole = " file+0 at 0 of 30001 to compressed+0 whole dict none of 0\n";
    const struct {
        const char *function, *dict;
        std::string calls;
    } cases[] = {
        {"ntksEncodeLZ4Dict_8u", "N", "Init 30001\n" + first + second + "none of 0\n"},
        {"ntksEncodeLZ4Dict_8u", "I", "Init 30001\n" + first + second + "file+0 of 15001\n"},
        {"ntksEncodeLZ4Dict_8u", "E", "Init 30001\n" + first + second + "dict+0 of 15001\n"},
        {"ntksEncodeLZ4DictSafe_8u", "N", "Init 30001\n" + first + second + "none of 0\n"},
        {"ntksEncodeLZ4DictSafe_8u", "I", "Init 30001\n" + first + second + "file+0 of 15001\n"},
        {"ntksEncodeLZ4DictSafe_8u", "E", "Init 30001\n" + first + second + "dict+0 of 15001\n"},
        {"ntksEncodeLZ4HC_8u", "N", "Init\n" + whole},
        {"ntksEncodeLZ4HC_8u", "I", "Init\n" + first + second + "file+0 of 15001\n"},
        {"ntksEncodeLZ4HC_8u", "E", "Init\n" + first + second + "dict+0 of 15001\n"},
    };
    choose("65536", file);
    for (const auto& c : cases) {
        psTest& test = started(c.function);
        set(dictType, c.dict);
        ASSERT_TRUE(test.initData());
        for (const kxVector* buffer : {&fileBuf, &comprBuf, &decomprBuf, &dictBuf}) {
            EXPECT_EQ(buffer->size(), 2 * 65536);
        }
        g_calls.clear();
        g_isNoting = true;
        EXPECT_EQ(test.runTiming(), PS_OK);
        g_isNoting = false;
        EXPECT_EQ(g_calls, c.calls + c.calls) << c.function << " " << c.dict;
        test.flushData();
    }
}
