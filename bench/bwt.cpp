// The library's Burrows-Wheeler transform against libbz2: the forward transform against libbz2's
// sorting step alone, the inverse against the whole of libbz2's decompression, of which it is one
// of three steps.

#include <algorithm>

#include <divsufsort.h>

#include "bzip2.h"
#include "bzip2stages.h"
#include "ntkdc.h"

namespace {

// What bzip2 sorts: four equal bytes are followed by the number of further ones, 0 to 251.
Bytes runLengthCoded(const Bytes& data) {
    Bytes coded;
    for (std::size_t i = 0; i < data.size();) {
        std::size_t run = 1;
        while (run < 255 && i + run < data.size() && data[i + run] == data[i]) {
            ++run;
        }
        coded.insert(coded.end(), std::min<std::size_t>(run, 4), data[i]);
        if (run >= 4) {
            coded.push_back(static_cast<Ntk8u>(run - 4));
        }
        i += run;
    }
    return coded;
}

struct Sorting {
    const char* name;
    NtkBWTSortAlgorithmHint hint;
};
const Sorting sortings[] = {{"forward, two-stage, limited", ntkBWTItohTanakaLimSort},
                            {"forward, two-stage, unlimited", ntkBWTItohTanakaUnlimSort},
                            {"forward, suffix sort", ntkBWTSuffixSort},
                            {"forward, automatic", ntkBWTAutoSort}};

// The same transform by a packaged suffix sort: in the text written twice, the suffixes of the
// first half are in the order of the rotations.
class DoubledText {
public:
    explicit DoubledText(const Bytes& block)
        : m_length(lengthOf(block)), m_text(2 * block.size()), m_rows(m_text.size()),
          m_transform(block.size()) {
        std::copy(block.begin(), block.end(), m_text.begin());
        std::copy(block.begin(), block.end(), m_text.begin() + m_length);
    }
    void transform() {
        must(divsufsort(m_text.data(), m_rows.data(), 2 * m_length));
        std::size_t row = 0;
        for (const int position : m_rows) {
            if (position < m_length) {
                m_transform[row++] = m_text[(position == 0 ? m_length : position) - 1];
            }
        }
    }
    const Bytes& transformed() const { return m_transform; }

private:
    int m_length;
    Bytes m_text;
    std::vector<saidx_t> m_rows;
    Bytes m_transform;
};

void compareForward(const Run& run, const Bytes& block) {
    const auto length = static_cast<int>(block.size());
    DoubledText doubled(block);
    Bytes work = sized(ntksBWTFwdGetSize_8u, length);
    Bytes dst(block.size());
    int idx = 0;
    for (const Sorting& sorting : sortings) {
        const auto transform = [&] {
            must(ntksBWTFwd_SelectSort_8u(block.data(), dst.data(), length, &idx, work.data(),
                                          sorting.hint));
        };
        run.sideBySide(sorting.name, block.size(),
                       {{"", transform},
                        {.name = "BZ2_blockSort",
                         .call = [&] { bzip2CompressInStages(run.data); },
                         .partClocks = &g_bzip2Clocks.sort},
                        {"divsufsort, text twice", [&] { doubled.transform(); }}});
        mustEqual(dst, doubled.transformed());
    }
}

void compareInverse(const Run& run, const Bytes& block) {
    const auto length = static_cast<int>(block.size());
    Bytes work = sized(ntksBWTFwdGetSize_8u, length);
    Bytes sorted(block.size()), restored(block.size()), other(run.data.size());
    int idx = 0;
    must(ntksBWTFwd_8u(block.data(), sorted.data(), length, &idx, work.data()));
    work = sized(ntksBWTInvGetSize_8u, length);
    Bytes file = bzip2Compressed(run.data);
    const auto transform = [&] {
        must(ntksBWTInv_8u(sorted.data(), restored.data(), length, idx, work.data()));
    };
    run.sideBySide("inverse", block.size(), {{"", transform}, {"all of its decompression", [&] {
                                                                   bzip2Decompress(file, other);
                                                               }}});
    mustEqual(restored, block);
}

void compareBwt(Run& run) {
    const Bytes block = runLengthCoded(run.data);
    compareForward(run, block);
    compareInverse(run, block);
}

} // namespace

const Comparison bwtComparison = {
    "bwt",
    "the Burrows-Wheeler transform with libbz2's sort and decompression",
    {"book1", "pic", "trans", "geo"},
    102400,
    60,
    compareBwt};
