// Move-to-front in pieces, both ways, against a reference; with states of any contents.
#include "cpufeatures.h"
#include "ntkdc.h"
#include "oracles/bz2_mtf.h"

namespace {

fuzz::Block stateOf(const Bytes& contents) {
    int size = 0;
    FUZZ_CHECK(ntksMTFGetSize_8u(&size) == ntkStsNoErr);
    fuzz::Block state(static_cast<std::size_t>(size));
    FUZZ_CHECK(ntksMTFInit_8u(state.data()) == ntkStsNoErr);
    std::copy_n(contents.begin(), std::min<std::size_t>(contents.size(), size), state.data());
    return state;
}

using Coder = NtkStatus (*)(const Ntk8u*, Ntk8u*, int, Ntk8u*);

Bytes coded(Coder coder, const Bytes& bytes, const fuzz::Block& state) {
    const fuzz::Block src(bytes);
    const fuzz::Block dst(bytes.size());
    FUZZ_CHECK(coder(src.data(), dst.data(), src.size(), state.data()) == ntkStsNoErr);
    return dst.first(dst.size());
}

} // namespace

int LLVMFuzzerTestOneInput(const Ntk8u* data, std::size_t size) {
    fuzz::Input in(data, size);
    fuzz::enableFeatures(in);
    if (in.flip()) { // the output is undefined
        const fuzz::Block state = stateOf(in.take(300));
        const Bytes bytes = in.rest();
        coded(ntksMTFFwd_8u, bytes, state);
        coded(ntksMTFInv_8u, bytes, state);
        return 0;
    }
    const std::size_t cut = in.word();
    const Bytes parts[] = {in.take(cut), in.rest()};
    oracle::Mtf forward, inverse;
    const fuzz::Block encoder = stateOf({});
    const fuzz::Block decoder = stateOf({});
    const fuzz::Block back = stateOf({});
    for (const Bytes& part : parts) {
        const Bytes positions = coded(ntksMTFFwd_8u, part, encoder);
        FUZZ_CHECK(positions == forward.forward(part));
        FUZZ_CHECK(coded(ntksMTFInv_8u, positions, back) == part);
        FUZZ_CHECK(coded(ntksMTFInv_8u, part, decoder) == inverse.inverse(part));
    }
    return 0;
}
