// The tests that the program has, in the order of their registration: the one list of them all.
#pragma once

#include <cstddef>
#include <ostream>
#include <string>
#include <vector>

enum class Data {
    doubling, // of a file, at five lengths
    block,    // of a file, at one length
    random,   // at five lengths
    field     // of ZFP
};

struct RegisteredTest {
    const char* function;
    const char* className;
    const char* macro; // that registers it
    Data data;
    std::size_t combinations; // with a corpus of the real sizes
    std::vector<std::string> variants = {"-"};
};

// For the messages of parameterised tests.
inline void PrintTo(const RegisteredTest& test, std::ostream* out) {
    *out << test.function;
}

inline std::vector<RegisteredTest> registeredTests() {
    using Texts = std::vector<std::string>;
    const Texts dictionaries = {"N", "I", "E"}, levels = {"1", "6", "9"},
                methods = {"ST", "ST1X", "MT"}, rates = {"4", "8", "16"},
                hints = {"ntkBWTItohTanakaLimSort", "ntkBWTItohTanakaUnlimSort", "ntkBWTSuffixSort",
                         " ntkBWTAutoSort"};
    return {
        {"ntksEncodeRLE_BZ2_8u", "Timdc_BZ2", "KX_REG_I", Data::block, 14},
        {"ntksReduceDictionary_8u_I", "Timdc_BZ2", "KX_REG_I", Data::block, 14},
        {"ntksExpandDictionary_8u_I", "Timdc_BZ2", "KX_REG_I", Data::block, 14},
        {"ntksBWTFwd_8u", "Timdc_BZ2", "KX_REG_I", Data::block, 14},
        {"ntksBWTInv_8u", "Timdc_BZ2", "KX_REG_I", Data::block, 14},
        {"ntksMTFFwd_8u", "Timdc_BZ2", "KX_REG_I", Data::block, 14},
        {"ntksMTFInv_8u", "Timdc_BZ2", "KX_REG_I", Data::block, 14},
        {"ntksEncodeZ1Z2_BZ2_8u16u", "Timdc_BZ2", "KX_REG_I", Data::block, 14},
        {"ntksDecodeZ1Z2_BZ2_16u8u", "Timdc_BZ2", "KX_REG_I", Data::block, 14},
        {"ntksDecodeBlock_BZ2_16u8u", "Timdc_BZ2", "KX_REG_I", Data::block, 14},
        {"ntksDecodeRLEState_BZ2_8u", "Timdc_BZ2", "KX_REG_I", Data::block, 14},
        {"ntksBWTFwd_SelectSort_8u", "Timdc_BZ2", "KX_REG_I", Data::block, 56, hints},
        {"ntksEncodeHuffInit_BZ2_16u8u", "Timdc_BZ2", "KX_REG", Data::block, 14},
        {"ntksEncodeHuff_BZ2_16u8u", "Timdcbz2Huff", "KX_REG_I", Data::block, 14},
        {"ntksDecodeHuff_BZ2_8u16u", "Timdcbz2Huff", "KX_REG_I", Data::block, 14},
        {"ntksAdler32_8u", "TimdcChecksum", "KX_REG", Data::random, 5},
        {"ntksCRC32_8u", "TimdcChecksum", "KX_REG", Data::random, 5},
        {"ntksCRC32C_8u", "TimdcChecksum", "KX_REG", Data::random, 5},
        {"ntksCRC32_BZ2_8u", "TimdcChecksum", "KX_REG", Data::random, 5},
        {"ntksEncodeLZ4_8u", "TimdcLZ4", "KX_REG_I", Data::doubling, 56},
        {"ntksEncodeLZ4Safe_8u", "TimdcLZ4", "KX_REG_I", Data::doubling, 56},
        {"ntksEncodeLZ4Dict_8u", "TimdcLZ4Dict", "KX_REG_I", Data::doubling, 168, dictionaries},
        {"ntksEncodeLZ4DictSafe_8u", "TimdcLZ4Dict", "KX_REG_I", Data::doubling, 168, dictionaries},
        {"ntksEncodeLZ4HC_8u", "TimdcLZ4Dict", "KX_REG_I", Data::doubling, 168, dictionaries},
        {"ntksDecodeLZ4_8u", "TimdcLZ4", "KX_REG_I", Data::doubling, 56},
        {"ntksDeflateLZ77_8u", "Timdc_Deflate", "KX_REG_I", Data::block, 42, levels},
        {"ntksDeflateHuff_8u", "Timdc_Deflate", "KX_REG_I", Data::block, 42, levels},
        {"ntksInflate_8u", "Timdc_Deflate", "KX_REG_I", Data::block, 42, levels},
        {"ntksEncodeLZO_8u", "TimdcLZO", "KX_REG_I", Data::doubling, 168, methods},
        {"ntksDecodeLZO_8u", "TimdcLZO", "KX_REG_I", Data::doubling, 168, methods},
        {"ntksDecodeLZOSafe_8u", "TimdcLZO", "KX_REG_I", Data::doubling, 168, methods},
        {"ntksEncodeLZSS_8u", "TimdcLZSS", "KX_REG_I", Data::doubling, 56},
        {"ntksDecodeLZSS_8u", "TimdcLZSS", "KX_REG_I", Data::doubling, 56},
        {"ntksEncodeZfp444_32f", "TimdcZfpEncode444", "KX_REG_Ibs_X", Data::field, 3, rates},
        {"ntksDecodeZfp444_32f", "TimdcZfpDecode444", "KX_REG_Ibs_X", Data::field, 3, rates},
    };
}
