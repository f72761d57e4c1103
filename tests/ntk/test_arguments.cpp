// Null pointers and bad lengths in the calls of all families. What else is an error of an argument
// depends on states and is tested with the family.
#include <gtest/gtest.h>

#include <climits>

#include "fixedcodes.h"
#include "lz4calls.h"

namespace {

class Arguments : public testing::Test {
protected:
    // Good arguments of every call; the blocks are too small for those that go on.
    Ntk8u bytes[256] = {};
    Ntk16u symbols[4] = {};
    int numbers[258] = {};
    Ntk32u words[286] = {};
    Ntk8u* p = bytes;
    Ntk16u* s = symbols;
    int n = 4;
    Ntk32u un = 4;
    Ntk32u code = 0;
    int codeLen = 0;
    int mode = ntkInflateBlockHeader;
    NtksInflateState inflate = {};
    Ntk32f block[64] = {};
    // Bad ones.
    Ntk8u* none = nullptr;
    const Ntk8u* constNone = nullptr;
    int less = -1;

    const Ntk8u* from = bytes;

    void TearDown() override {
        EXPECT_EQ(n, 4);
        EXPECT_EQ(un, 4U);
        EXPECT_EQ(p, bytes);
        EXPECT_EQ(from, bytes);
        EXPECT_EQ(mode, ntkInflateBlockHeader);
        for (const Ntk8u byte : bytes) {
            EXPECT_EQ(byte, 0);
        }
    }
    // The match search on n bytes at `from`, at a position.
    NtkStatus search(const Ntk8u** src, Ntk16u* dist, int* srcLen, int position, int* room,
                     int winSize = 256, int hashSize = 256) {
        return ntksDeflateLZ77_8u(src, srcLen, &position, bytes, winSize, numbers, numbers,
                                  hashSize, words, words, bytes, dist, room, 1, 0);
    }
    NtkStatus inflated(const Ntk8u** src, int* srcLen, Ntk8u** dst, int* dstLen, int historyLen,
                       const Ntk8u* history = nullptr) {
        return ntksInflate_8u(src, srcLen, &code, &codeLen, history, dst, dstLen, historyLen, &mode,
                              &inflate);
    }
};

TEST_F(Arguments, NullPointersOfBz2) {
    EXPECT_EQ(ntksEncodeRLEInit_BZ2_8u(nullptr), ntkStsNullPtr);
    EXPECT_EQ(ntksEncodeRLE_BZ2_8u(&p, &n, nullptr, &n, p), ntkStsNullPtr);
    EXPECT_EQ(ntksEncodeRLE_BZ2_8u(&none, &n, p, &n, p), ntkStsNullPtr);
    EXPECT_EQ(ntksEncodeRLEFlush_BZ2_8u(p, nullptr, p), ntkStsNullPtr);
    EXPECT_EQ(ntksRLEGetInUseTable_8u(nullptr, p), ntkStsNullPtr);
    EXPECT_EQ(ntksDecodeRLEState_BZ2_8u(&p, nullptr, &p, &n, p), ntkStsNullPtr);
    EXPECT_EQ(ntksDecodeRLEState_BZ2_8u(&p, &n, &none, &n, p), ntkStsNullPtr);
    EXPECT_EQ(ntksReduceDictionary_8u_I(p, p, 4, nullptr), ntkStsNullPtr);
    EXPECT_EQ(ntksExpandDictionary_8u_I(p, nullptr, 4, 1), ntkStsNullPtr);
    EXPECT_EQ(ntksMTFGetSize_8u(nullptr), ntkStsNullPtr);
    EXPECT_EQ(ntksMTFInit_8u(nullptr), ntkStsNullPtr);
    EXPECT_EQ(ntksMTFInv_8u(p, nullptr, 1, p), ntkStsNullPtr);
    EXPECT_EQ(ntksEncodeZ1Z2_BZ2_8u16u(&p, &n, s, &n, nullptr), ntkStsNullPtr);
    EXPECT_EQ(ntksEncodeZ1Z2_BZ2_8u16u(&none, &n, s, &n, numbers), ntkStsNullPtr);
    EXPECT_EQ(ntksDecodeZ1Z2_BZ2_16u8u(&s, &n, p, nullptr), ntkStsNullPtr);
    EXPECT_EQ(ntksDecodeBlock_BZ2_16u8u(s, 4, p, &n, 0, 0, p, nullptr), ntkStsNullPtr);
    EXPECT_EQ(ntksBWTFwdGetSize_8u(4, nullptr), ntkStsNullPtr);
    EXPECT_EQ(ntksBWTInvGetSize_8u(4, nullptr), ntkStsNullPtr);
    EXPECT_EQ(ntksBWTFwd_8u(p, p, 4, nullptr, p), ntkStsNullPtr);
    EXPECT_EQ(ntksBWTInv_8u(p, p, 4, 0, nullptr), ntkStsNullPtr);
}

TEST_F(Arguments, NullPointersOfBz2Huff) {
    EXPECT_EQ(ntksEncodeHuffGetSize_BZ2_16u8u(1, nullptr), ntkStsNullPtr);
    EXPECT_EQ(ntksEncodeHuffInit_BZ2_16u8u(3, nullptr, nullptr, 0, p), ntkStsNullPtr);
    EXPECT_EQ(ntksPackHuffContext_BZ2_16u8u(&code, &codeLen, p, &n, nullptr), ntkStsNullPtr);
    EXPECT_EQ(ntksEncodeHuff_BZ2_16u8u(&code, &codeLen, nullptr, &n, p, &n, p), ntkStsNullPtr);
    EXPECT_EQ(ntksDecodeHuffInit_BZ2_8u16u(3, nullptr), ntkStsNullPtr);
    EXPECT_EQ(ntksUnpackHuffContext_BZ2_8u16u(&code, &codeLen, &none, &n, p), ntkStsNullPtr);
    EXPECT_EQ(ntksDecodeHuff_BZ2_8u16u(&code, &codeLen, &none, &n, s, &n, p), ntkStsNullPtr);
}

TEST_F(Arguments, NullPointersOfDeflate) {
    EXPECT_EQ(search(nullptr, s, &n, 0, &n), ntkStsNullPtr);
    EXPECT_EQ(search(&constNone, s, &n, 0, &n), ntkStsNullPtr);
    EXPECT_EQ(search(&from, nullptr, &n, 0, &n), ntkStsNullPtr);
    EXPECT_EQ(ntksDeflateHuff_8u(p, s, 1, &code, &codeLen, nullptr, fixedCodes.dist, p, &n),
              ntkStsNullPtr);
    EXPECT_EQ(inflated(nullptr, &n, &p, &n, 0), ntkStsNullPtr);
    EXPECT_EQ(inflated(&constNone, &n, &p, &n, 0), ntkStsNullPtr);
    EXPECT_EQ(inflated(&from, &n, &p, &n, 1), ntkStsNullPtr);
    EXPECT_EQ(ntksInflateGetSize_8u(nullptr), ntkStsNullPtr);
    EXPECT_EQ(ntksInflateInit_8u(&inflate, nullptr), ntkStsNullPtr);
}

TEST_F(Arguments, NullPointersOfTheOthers) {
    Ntk8u* oneTable[2] = {p, nullptr};
    EXPECT_EQ(ntksEncodeLZ4HCHashTableGetSize_8u(&n, nullptr), ntkStsNullPtr);
    EXPECT_EQ(ntksEncodeLZ4HCHashTableInit_8u(nullptr), ntkStsNullPtr);
    EXPECT_EQ(ntksEncodeLZ4HCHashTableInit_8u(oneTable), ntkStsNullPtr);
    EXPECT_EQ(ntksEncodeLZ4HC_8u(p, 0, &n, p, &n, oneTable, nullptr, 0, 0), ntkStsNullPtr);
    EXPECT_EQ(ntksEncodeLZ4HashTableInit_8u(nullptr, 0), ntkStsNullPtr);
    EXPECT_EQ(ntksDecodeLZ4_8u(p, 2, p, nullptr), ntkStsNullPtr);
    EXPECT_EQ(ntksEncodeLZOGetSize(ntkLZOST, 1, nullptr), ntkStsNullPtr);
    EXPECT_EQ(ntksEncodeLZOInit_8u(ntkLZOST, 1, nullptr), ntkStsNullPtr);
    EXPECT_EQ(ntksEncodeLZO_8u(p, 4, p, &un, nullptr), ntkStsNullPtr);
    EXPECT_EQ(ntksDecodeLZO_8u(p, 4, p, nullptr), ntkStsNullPtr);
    EXPECT_EQ(ntksDecodeLZOSafe_8u(p, 4, p, nullptr), ntkStsNullPtr);
    EXPECT_EQ(ntksEncodeLZSSInit_8u(nullptr), ntkStsNullPtr);
    EXPECT_EQ(ntksEncodeLZSS_8u(&p, &n, &p, nullptr, p), ntkStsNullPtr);
    EXPECT_EQ(ntksEncodeLZSS_8u(&none, &n, &p, &n, p), ntkStsNullPtr);
    EXPECT_EQ(ntksEncodeLZSSFlush_8u(&p, nullptr, p), ntkStsNullPtr);
    EXPECT_EQ(ntksEncodeLZSSFlush_8u(&none, &n, p), ntkStsNullPtr);
    EXPECT_EQ(ntksDecodeLZSSInit_8u(nullptr), ntkStsNullPtr);
    EXPECT_EQ(ntksDecodeLZSS_8u(&p, &n, &p, nullptr, p), ntkStsNullPtr);
    EXPECT_EQ(ntksDecodeLZSS_8u(&p, &n, &none, &n, p), ntkStsNullPtr);
    EXPECT_EQ(ntksEncodeZfpInit_32f(nullptr, 1, p), ntkStsNullPtr);
    EXPECT_EQ(ntksZfpSetRate_32f(8, nullptr), ntkStsNullPtr);
    EXPECT_EQ(ntksEncodeZfp444_32f(block, 4, 16, nullptr), ntkStsNullPtr);
    EXPECT_EQ(ntksDecodeZfp444_32f(nullptr, 4, 16, p), ntkStsNullPtr);
    EXPECT_EQ(ntksEncodeZfpFlush_32f(nullptr), ntkStsNullPtr);
    EXPECT_EQ(ntksZfpGetLength_32f(nullptr, p), ntkStsNullPtr);
}

TEST_F(Arguments, BadLengthsOfBz2) {
    constexpr int tooLong = (1 << 24) + 1;
    EXPECT_EQ(ntksEncodeRLE_BZ2_8u(&p, &less, p, &n, p), ntkStsBadSize);
    EXPECT_EQ(ntksEncodeRLE_BZ2_8u(&p, &n, p, &less, p), ntkStsBadSize);
    EXPECT_EQ(ntksDecodeRLEState_BZ2_8u(&p, &n, &p, &less, p), ntkStsBadSize);
    EXPECT_EQ(ntksReduceDictionary_8u_I(p, p, -1, &n), ntkStsBadSize);
    EXPECT_EQ(ntksExpandDictionary_8u_I(p, p, -1, 1), ntkStsBadSize);
    EXPECT_EQ(ntksMTFFwd_8u(p, p, -1, p), ntkStsBadSize);
    EXPECT_EQ(ntksEncodeZ1Z2_BZ2_8u16u(&p, &n, s, &less, numbers), ntkStsBadSize);
    EXPECT_EQ(ntksDecodeZ1Z2_BZ2_16u8u(&s, &less, p, &n), ntkStsBadSize);
    EXPECT_EQ(ntksDecodeBlock_BZ2_16u8u(s, -1, p, &n, 0, 0, p, p), ntkStsBadSize);
    EXPECT_EQ(ntksEncodeHuffGetSize_BZ2_16u8u(-1, &n), ntkStsBadSize);
    EXPECT_EQ(ntksDecodeHuffGetSize_BZ2_8u16u(900001, &n), ntkStsBadSize);
    EXPECT_EQ(ntksEncodeHuffInit_BZ2_16u8u(3, nullptr, s, 0, p), ntkStsBadSize);
    for (const int length : {-1, tooLong}) {
        EXPECT_EQ(ntksBWTFwdGetSize_8u(length, &n), ntkStsBadSize);
        EXPECT_EQ(ntksBWTInvGetSize_8u(length, &n), ntkStsBadSize);
        EXPECT_EQ(ntksBWTFwd_8u(p, p, length, &n, p), ntkStsBadSize);
        EXPECT_EQ(ntksBWTInv_8u(p, p, length, 0, p), ntkStsBadSize);
    }
}

TEST_F(Arguments, BadLengthsOfTheOthers) {
    EXPECT_EQ(search(&from, s, &less, 0, &n), ntkStsBadSize);
    EXPECT_EQ(search(&from, s, &n, -1, &n), ntkStsBadSize);
    EXPECT_EQ(search(&from, s, &n, INT_MAX - 3, &n), ntkStsBadSize);
    EXPECT_EQ(search(&from, s, &n, 0, &less), ntkStsBadSize);
    for (const int size : {128, 300, 131072}) {
        EXPECT_EQ(search(&from, s, &n, 0, &n, size), ntkStsBadSize) << size;
        EXPECT_EQ(search(&from, s, &n, 0, &n, 256, size), ntkStsBadSize) << size;
    }
    EXPECT_EQ(search(&from, s, &n, 0, &n, 65536), ntkStsBadSize);
    EXPECT_EQ(ntksDeflateHuff_8u(p, s, -1, &code, &codeLen, fixedCodes.lit, fixedCodes.dist, p, &n),
              ntkStsBadSize);
    EXPECT_EQ(inflated(&from, &less, &p, &n, 0), ntkStsBadSize);
    EXPECT_EQ(inflated(&from, &n, &p, &less, 0), ntkStsBadSize);
    EXPECT_EQ(inflated(&from, &n, &p, &n, -1, p), ntkStsBadSize);
    EXPECT_EQ(ntksEncodeLZ4HashTableInit_8u(p, -1), ntkStsBadSize);
    EXPECT_EQ(ntksDecodeLZ4_8u(p, -1, p, &n), ntkStsBadSize);
    EXPECT_EQ(ntksDecodeLZ4_8u(p, 2, p, &less), ntkStsBadSize);
    EXPECT_EQ(ntksEncodeLZOGetSize(ntkLZOST, 0x7e000001, &un), ntkStsBadSize);
    EXPECT_EQ(ntksEncodeLZO_8u(p, 0x7e000001, p, &un, p), ntkStsBadSize);
    EXPECT_EQ(ntksEncodeLZSS_8u(&p, &less, &p, &n, p), ntkStsBadSize);
    EXPECT_EQ(ntksEncodeLZSS_8u(&p, &n, &p, &less, p), ntkStsBadSize);
    EXPECT_EQ(ntksEncodeLZSSFlush_8u(&p, &less, p), ntkStsBadSize);
    EXPECT_EQ(ntksDecodeLZSS_8u(&p, &less, &p, &n, p), ntkStsBadSize);
    EXPECT_EQ(ntksDecodeLZSS_8u(&p, &n, &p, &less, p), ntkStsBadSize);
    EXPECT_EQ(ntksEncodeZfpInit_32f(p, -1, p), ntkStsBadSize);
}

} // namespace
