// Deflate's Huffman coder with arbitrary entries and codes, sound or not, against a writer of
// single bits, with every kernel.
#include "fuzz.h"
#include "ntkcore.h"
#include "ntkdc.h"

namespace {

struct Call {
    Bytes lit;
    std::vector<Ntk16u> dist;
    NtkHuffCode litCodes[288];
    NtkHuffCode distCodes[30];
    Ntk32u code;
    int codeLen;
};

// The codes are mostly of 1 to 15 bits, without bits above them, but need not fit each other.
void fill(NtkHuffCode* codes, std::size_t count, fuzz::Input& in) {
    const unsigned len = in.byte();
    const unsigned step = in.byte();
    for (std::size_t i = 0; i < count; ++i) {
        const unsigned bits = (len + i * step) % 256;
        codes[i].len = static_cast<Ntk16u>(len < 128 ? 1 + bits % 15 : bits % 18);
        codes[i].code = static_cast<Ntk16u>((i * 40503U + step) & ((1U << codes[i].len) - 1));
    }
}

// RFC 1951, 3.2.5: symbol, number of extra bits, their value.
struct Parts {
    std::size_t symbol;
    unsigned extraBits;
    unsigned extra;
};

Parts partsOfLength(unsigned length) {
    if (length == 258) {
        return {285, 0, 0};
    }
    unsigned base = 3;
    for (std::size_t symbol = 257;; ++symbol) {
        const unsigned bits = symbol < 265 ? 0 : static_cast<unsigned>(symbol - 261) / 4;
        if (length < base + (1U << bits)) {
            return {symbol, bits, length - base};
        }
        base += 1U << bits;
    }
}

Parts partsOfDistance(unsigned distance) {
    unsigned base = 1;
    for (std::size_t symbol = 0;; ++symbol) {
        const unsigned bits = symbol < 4 ? 0 : static_cast<unsigned>(symbol - 2) / 2;
        if (distance < base + (1U << bits)) {
            return {symbol, bits, distance - base};
        }
        base += 1U << bits;
    }
}

class Writer {
public:
    void put(unsigned value, unsigned count) {
        for (unsigned i = 0; i < count; ++i) {
            m_bits.push_back((value >> i & 1) != 0);
        }
    }
    bool putSymbol(const NtkHuffCode* codes, std::size_t symbol) {
        put(codes[symbol].code, codes[symbol].len);
        return codes[symbol].len > 0;
    }
    bool putParts(const NtkHuffCode* codes, const Parts& parts) {
        const bool hasCode = putSymbol(codes, parts.symbol);
        put(parts.extra, parts.extraBits);
        return hasCode;
    }
    Bytes wholeBytes() const {
        Bytes bytes(m_bits.size() / 8);
        for (std::size_t i = 0; i < 8 * bytes.size(); ++i) {
            bytes[i / 8] = static_cast<Ntk8u>(bytes[i / 8] | m_bits[i] << i % 8);
        }
        return bytes;
    }
    Ntk32u rest() const {
        Ntk32u code = 0;
        for (std::size_t i = m_bits.size() / 8 * 8; i < m_bits.size(); ++i) {
            code |= static_cast<Ntk32u>(m_bits[i]) << i % 8;
        }
        return code;
    }
    int restBits() const { return static_cast<int>(m_bits.size() % 8); }

private:
    std::vector<bool> m_bits;
};

bool areCodes(const Call& call) {
    const auto isCode = [](const NtkHuffCode& code) { return code.len <= 15; };
    return std::all_of(std::begin(call.litCodes), std::end(call.litCodes), isCode) &&
           std::all_of(std::begin(call.distCodes), std::end(call.distCodes), isCode);
}

// False if an entry cannot be coded.
bool write(const Call& call, Writer& writer) {
    writer.put(call.code, static_cast<unsigned>(call.codeLen));
    for (std::size_t i = 0; i < call.lit.size(); ++i) {
        if (call.dist[i] > 32768) {
            return false;
        }
        const bool hasCode =
            call.dist[i] == 0 ? writer.putSymbol(call.litCodes, call.lit[i])
                              : writer.putParts(call.litCodes, partsOfLength(call.lit[i] + 3U)) &&
                                    writer.putParts(call.distCodes, partsOfDistance(call.dist[i]));
        if (!hasCode) {
            return false;
        }
    }
    return true;
}

Call callFrom(fuzz::Input& in) {
    Call call{};
    fill(call.litCodes, 288, in);
    fill(call.distCodes, 30, in);
    call.code = in.number<Ntk32u>();
    call.codeLen = static_cast<int>(in.below(33));
    while (!in.empty()) {
        call.lit.push_back(static_cast<Ntk8u>(in.byte()));
        call.dist.push_back(static_cast<Ntk16u>(in.flip() ? in.word() : 0));
    }
    return call;
}

// Codes the entries with the kernel for these features of the processor.
void check(const Call& call, const Writer& expected, bool isCodable, Ntk64u features) {
    ntkSetCpuFeatures(features);
    // Just the whole bytes; of what fails up to 48 bits an entry, and the pending ones.
    const fuzz::Block dst(isCodable ? expected.wholeBytes().size() : 6 * call.lit.size() + 4);
    const fuzz::Block lit(call.lit);
    Ntk32u code = call.code;
    int codeLen = call.codeLen;
    int length = 0;
    const NtkStatus status =
        ntksDeflateHuff_8u(lit.data(), call.dist.data(), static_cast<int>(call.lit.size()), &code,
                           &codeLen, call.litCodes, call.distCodes, dst.data(), &length);
    if (status != ntkStsNoErr) {
        FUZZ_CHECK(!isCodable && length == 0 && code == call.code && codeLen == call.codeLen);
        return;
    }
    FUZZ_CHECK(dst.first(length) == expected.wholeBytes());
    FUZZ_CHECK(codeLen == expected.restBits() && code == expected.rest());
}

} // namespace

int LLVMFuzzerTestOneInput(const Ntk8u* data, std::size_t size) {
    fuzz::Input in(data, size);
    Call call = callFrom(in);
    Writer expected;
    const bool isCodable = write(call, expected) && areCodes(call);
    call.dist.reserve(1); // no null
    for (const Ntk64u features : {Ntk64u{0}, ~Ntk64u{0}}) {
        check(call, expected, isCodable, features);
    }
    return 0;
}
