// Huffman coding, the generic loop and the choice. Method: see huff.cpp.

#include "huffkernels.h"

namespace ntk::deflate {

namespace {

constexpr CodeBits bitsOf(const AnyAddress<NtkHuffCode>& code) {
    const Ntk32u count = code.value.len == 0 ? noCode : code.value.len;
    return code.value.code | count << countShift;
}

// The local copy of the writer stays in registers: byte stores cannot alias it.
int putEntriesGeneric(BitWriter& result, const HuffTables& tables, const HuffEntries& entries) {
    BitWriter writer = result;
    int i = 0;
    for (; i < entries.count - entriesPerStore - 1; i += 2) {
        const EntryBits first = entryBits(tables, entries.lit[i], entries.dist[i].value);
        const EntryBits second = entryBits(tables, entries.lit[i + 1], entries.dist[i + 1].value);
        if (!(first.hasCode && second.hasCode)) [[unlikely]] {
            break;
        }
        if (first.count + second.count > mostBitsAtOnce) [[unlikely]] {
            writer.put(first.value, first.count);
            writer.storeAhead();
            writer.put(second.value, second.count);
        } else {
            writer.put(first.value | second.value << first.count, first.count + second.count);
        }
        writer.storeAhead();
    }
    result = writer;
    return i;
}

constexpr Candidate<PutEntries> candidates[] = {
    {"avx512", NTK_CPU_AVX512F | NTK_CPU_AVX512CD, 0, putEntriesAvx512},
    {"generic", 0, 0, putEntriesGeneric},
};

} // namespace

HuffTables::HuffTables(const AnyAddress<NtkHuffCode>* litCodes,
                       const AnyAddress<NtkHuffCode>* distCodes) {
    for (std::size_t i = 0; i < literalSymbols; ++i) {
        literalsAndLengths[i] = bitsOf(litCodes[i]);
    }
    CodeBits* next = &literalsAndLengths[literalSymbols];
    for (std::size_t symbol = 0; symbol < lengthSymbols; ++symbol) {
        const CodeBits code = bitsOf(litCodes[firstLengthSymbol + symbol]);
        const CodeBits step = 1U << (litCodes[firstLengthSymbol + symbol].value.len & maxCodeBits);
        const unsigned extraBits = lengthExtraBits[symbol];
        // The last length has a symbol of its own, not the last value of the symbol before.
        const unsigned lengths = (1U << extraBits) - (symbol == lengthSymbols - 2 ? 1 : 0);
        for (unsigned extra = 0; extra < lengths; ++extra) {
            *next++ = (code + (extraBits << countShift)) | extra * step;
        }
    }
    distances.fill(noCode << countShift);
    distances[0] = 0;
    for (std::size_t i = 0; i < distanceSymbols; ++i) {
        distances[firstDistance + i] = bitsOf(distCodes[i]);
    }
}

constinit Choice<PutEntries> putEntriesKernel{candidates};

} // namespace ntk::deflate
