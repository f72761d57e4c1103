// bzip2's Huffman decoder on arbitrary sources, in pieces as in one; blocks of the encoder, whole
// and damaged.
#include "bz2huffcalls.h"
#include "pieces.h"

namespace {

constexpr std::size_t mostSymbols = 20000;

struct Decoded {
    NtkStatus status = ntkStsNoErr; // of the context if it is none, else of the last call
    bool hasContext = false;
    std::size_t taken = 0;
    Symbols symbols;

    bool operator==(const Decoded&) const = default;
};

void checkBits(const PendingBits& bits) {
    FUZZ_CHECK(0 <= bits.count && bits.count <= 32);
    FUZZ_CHECK(bits.count == 32 || bits.code << bits.count == 0);
}

// The context needs its whole source, the symbols do not.
Decoded decoded(HuffDecoder& decoder, const Bytes& bytes, fuzz::PieceLengths srcLengths,
                fuzz::PieceLengths dstLengths) {
    const fuzz::Block src(bytes);
    Ntk8u* at = src.data();
    int left = src.size();
    const PendingBits before = decoder.bits;
    Decoded result;
    result.status = decoder.unpack(at, left);
    if (result.status != ntkStsNoErr) {
        FUZZ_CHECK(result.status == ntkStsBadSrcData && at == src.data() && left == src.size());
        FUZZ_CHECK(decoder.bits.code == before.code && decoder.bits.count == before.count);
        FUZZ_CHECK(decoder.decode(at, left, result.symbols, 10) == ntkStsBadSrcData);
        return result;
    }
    checkBits(decoder.bits);
    result.hasContext = true;
    Ntk8u* const end = src.data() + src.size();
    do {
        const auto rest = static_cast<std::size_t>(end - at);
        const fuzz::Block piece(Bytes(at, at + std::min(srcLengths.next(), rest)));
        Ntk8u* from = piece.data();
        int srcLeft = piece.size();
        const std::size_t room = std::min(dstLengths.next(), mostSymbols - result.symbols.size());
        result.status = decoder.decode(from, srcLeft, result.symbols, static_cast<int>(room));
        if (result.status >= 0) {
            checkBits(decoder.bits);
        }
        FUZZ_CHECK(0 <= srcLeft && from + srcLeft == piece.data() + piece.size());
        FUZZ_CHECK(result.status != ntkStsSrcEnd || srcLeft == 0);
        FUZZ_CHECK(result.status >= 0 || from == piece.data());
        at += from - piece.data();
    } while ((result.status == ntkStsSrcEnd && at < end) ||
             (result.status == ntkStsDstFull && result.symbols.size() < mostSymbols));
    result.taken = static_cast<std::size_t>(at - src.data());
    return result;
}

void judge(int alphabet, const Bytes& bytes, PendingBits bits, const fuzz::PieceLengths& src,
           const fuzz::PieceLengths& dst) {
    static HuffDecoder one(1), other(1);
    for (HuffDecoder* decoder : {&one, &other}) {
        FUZZ_CHECK(ntksDecodeHuffInit_BZ2_8u16u(alphabet, decoder->state.data()) == ntkStsNoErr);
        decoder->bits = bits;
    }
    const Decoded whole = decoded(one, bytes, {}, {});
    const Decoded cut = decoded(other, bytes, src, dst);
    FUZZ_CHECK(whole.status == cut.status && whole.hasContext == cut.hasContext);
    FUZZ_CHECK(whole.status < 0 || whole == cut);
    for (const Ntk16u symbol : cut.symbols) {
        FUZZ_CHECK(symbol < alphabet);
    }
    // The next block begins where this one ended: the decoder takes it, whatever came before.
    if (whole.hasContext && whole.status == ntkStsNoErr) {
        FUZZ_CHECK(whole.symbols.back() == alphabet - 1);
    }
}

Bytes roundTripped(int alphabet, const Symbols& block, PendingBits bits) {
    const Bytes bytes = encodedBlock(block, alphabet, bits);
    HuffDecoder decoder(alphabet);
    Ntk8u skipped = static_cast<Ntk8u>(8 - bits.count);
    Bytes source = bytes;
    decoder.bits = {skipped == 8 ? 0 : static_cast<Ntk32u>(source[0]) << (24 + bits.count),
                    skipped == 8 ? 0 : skipped};
    source.erase(source.begin(), source.begin() + (skipped == 8 ? 0 : 1));
    const Decoded found = decoded(decoder, source, {}, {});
    FUZZ_CHECK(found.status == ntkStsNoErr && found.symbols == block);
    FUZZ_CHECK(found.taken == source.size());
    return bytes;
}

} // namespace

int LLVMFuzzerTestOneInput(const Ntk8u* data, std::size_t size) {
    fuzz::Input in(data, size);
    const int alphabet = 1 + static_cast<int>(in.below(258));
    const fuzz::PieceLengths src(in);
    const fuzz::PieceLengths dst(in);
    const PendingBits bits{in.number<Ntk32u>(), static_cast<int>(in.below(33))};
    if (in.flip()) {
        judge(alphabet, in.rest(), bits, src, dst);
        return 0;
    }
    const Bytes marks = in.take(16);
    const unsigned step = 1 + in.byte();
    Symbols block;
    while (!in.empty() && alphabet > 1) {
        block.push_back(
            static_cast<Ntk16u>(in.byte() * step % static_cast<unsigned>(alphabet - 1)));
    }
    block.push_back(static_cast<Ntk16u>(alphabet - 1));
    Bytes bytes = roundTripped(alphabet, block, {0, bits.count % 8});
    bytes = roundTripped(alphabet, block, {});
    fuzz::Input places(marks.data(), marks.size());
    fuzz::damage(bytes, places);
    judge(alphabet, bytes, {}, src, dst);
    return 0;
}
