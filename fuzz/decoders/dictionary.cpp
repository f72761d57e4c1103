// bzip2's dictionary, both ways, against a reference.
#include "cpufeatures.h"
#include "ntkdc.h"
#include "oracles/bz2_dictionary.h"

int LLVMFuzzerTestOneInput(const Ntk8u* data, std::size_t size) {
    fuzz::Input in(data, size);
    fuzz::enableFeatures(in);
    const int claimed = static_cast<int>(in.word()) - 64;
    const bool isOfText = in.flip();
    const Bytes some = in.take(32);
    const Bytes text = in.rest();
    Ntk8u inUse[256] = {};
    for (std::size_t i = 0; i < 8 * some.size(); ++i) {
        inUse[i] = static_cast<Ntk8u>((some[i / 8] >> i % 8 & 1) * (1 + i)); // any but 0
    }
    for (const Ntk8u byte : text) {
        inUse[byte] = isOfText ? 1 : inUse[byte];
    }
    const auto used =
        static_cast<int>(std::count_if(inUse, inUse + 256, [](Ntk8u u) { return u != 0; }));

    const fuzz::Block bytes(text);
    int found = -1;
    FUZZ_CHECK(ntksReduceDictionary_8u_I(inUse, bytes.data(), bytes.size(), &found) == ntkStsNoErr);
    FUZZ_CHECK(found == used);
    FUZZ_CHECK(bytes.first(bytes.size()) == oracle::reduced(inUse, text));
    FUZZ_CHECK(ntksExpandDictionary_8u_I(inUse, bytes.data(), bytes.size(), used) == ntkStsNoErr);
    FUZZ_CHECK(!isOfText || bytes.first(bytes.size()) == text);

    const fuzz::Block ranks(text);
    const NtkStatus status = ntksExpandDictionary_8u_I(inUse, ranks.data(), ranks.size(), claimed);
    FUZZ_CHECK(status == (claimed < 0 || claimed > 256 ? ntkStsBadValue : ntkStsNoErr));
    for (int value = 255, rank = used; status == ntkStsNoErr && value >= 0; --value) {
        inUse[value] = inUse[value] != 0 && --rank >= claimed ? 0 : inUse[value];
    }
    FUZZ_CHECK(ranks.first(ranks.size()) ==
               (status == ntkStsNoErr ? oracle::expanded(inUse, text) : text));
    return 0;
}
