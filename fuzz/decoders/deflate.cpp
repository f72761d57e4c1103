// Deflate's match search and coding with any parameters, tables, flushes and room, with zlib and
// the library's own Inflate as the decoders.
#include "deflatecalls.h"
#include "fuzz.h"
#include "inflatecalls.h"

namespace {

// What the tables hold must not matter.
void fillTables(MatchSearch& search, fuzz::Input& in) {
    search.winSize = 256 << in.below(8);
    search.heads.assign(std::size_t{256} << in.below(9), -search.winSize);
    search.previous.assign(static_cast<std::size_t>(search.winSize), in.number<Ntk32s>());
    if (in.flip()) {
        for (Ntk32s& position : search.heads) {
            position = static_cast<Ntk32s>(in.empty() ? 0x7fffffff : in.word() % 1024);
        }
    }
}

// The calls that take one part of the data, up to `room` entries each.
void searchPart(MatchSearch& search, const Ntk8u* window, const Ntk8u*& at, int length, int room,
                int flush) {
    int left = length;
    NtkStatus status = ntkStsDstFull;
    while (status == ntkStsDstFull) {
        const int before = left;
        const auto entries = search.entries.lit.size();
        status = search.call(&at, &left, window, room, flush);
        FUZZ_CHECK(status == ntkStsNoErr || status == ntkStsDstFull);
        FUZZ_CHECK(status != ntkStsDstFull || search.entries.lit.size() > entries);
        FUZZ_CHECK(0 <= left && left <= before);
    }
    FUZZ_CHECK(flush == ntkDeflateNoFlush ? left <= 262 : left == 0);
}

// The entries decode to the data, and the counters counted them.
void checkEntries(const MatchSearch& search, const Bytes& text) {
    Ntk32u lit = 0;
    Ntk32u dist = 0;
    for (const Ntk32u count : search.litFreq) {
        lit += count;
    }
    for (const Ntk32u count : search.distFreq) {
        dist += count;
    }
    const std::vector<Ntk16u>& dists = search.entries.dist;
    FUZZ_CHECK(lit == dists.size());
    FUZZ_CHECK(static_cast<std::ptrdiff_t>(dist) ==
               std::count_if(dists.begin(), dists.end(), [](Ntk16u d) { return d != 0; }));
    FUZZ_CHECK(dists.empty() || *std::max_element(dists.begin(), dists.end()) <= search.winSize);
    const Bytes stream = blockOf(search.entries);
    FUZZ_CHECK(inflatedByZlib(stream, text.size()) == text);
    const Inflated found = inflated(stream, text.size());
    FUZZ_CHECK(found.verdict == Verdict::valid && found.data == text);
}

} // namespace

int LLVMFuzzerTestOneInput(const Ntk8u* data, std::size_t size) {
    fuzz::Input in(data, size);
    MatchSearch search;
    search.level = 1 + static_cast<int>(in.below(9));
    const int room = 1 + static_cast<int>(in.word());
    const unsigned repeats = 1 + in.below(8);
    const std::size_t cut = in.word();
    const int flush = static_cast<int>(in.below(4));
    fillTables(search, in);
    Bytes text;
    for (const Bytes part = in.rest(); text.size() < repeats * part.size();) {
        text.insert(text.end(), part.begin(), part.end());
    }

    const fuzz::Block block(text);
    const Ntk8u* at = block.data();
    searchPart(search, block.data(), at, static_cast<int>(std::min(cut, text.size())), room, flush);
    searchPart(search, block.data(), at, static_cast<int>(block.data() + text.size() - at), room,
               ntkDeflateFinish);
    checkEntries(search, text);
    return 0;
}
