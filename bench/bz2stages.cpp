// The stages of bzip2's compression in front of and behind the transform, each beside the same work
// in libbz2 (bzip2stages.h): run lengths and checksum; move-to-front and runs of zeroes; Huffman
// tables and codes. Both sides work on the same bytes; the positions of the list are compared too.

#include <stdexcept>

#include "bzip2stages.h"
#include "ntkdc.h"

namespace {

// Ours, stage by stage, each leaving what the next one reads.
class Stages {
public:
    explicit Stages(const Bytes& data) : m_data(data) { must(ntksMTFInit_8u(m_list.data())); }

    void codeRuns() {
        Ntk8u* src = m_data.data();
        int left = lengthOf(m_data), written = lengthOf(m_coded), flushed = 0;
        must(ntksEncodeRLEInit_BZ2_8u(m_runs.data()));
        must(ntksEncodeRLE_BZ2_8u(&src, &left, m_coded.data(), &written, m_runs.data()));
        must(ntksEncodeRLEFlush_BZ2_8u(m_coded.data() + written, &flushed, m_runs.data()));
        m_length = written + flushed;
        Ntk32u crc = 0;
        must(ntksCRC32_BZ2_8u(m_data.data(), lengthOf(m_data), &crc));
    }
    void reduceAndSort() {
        Ntk8u inUse[256];
        must(ntksRLEGetInUseTable_8u(inUse, m_runs.data()));
        must(ntksReduceDictionary_8u_I(inUse, m_coded.data(), m_length, &m_dictionary));
        Bytes work = sized(ntksBWTFwdGetSize_8u, m_length);
        int row = 0;
        must(ntksBWTFwd_8u(m_coded.data(), m_sorted.data(), m_length, &row, work.data()));
    }
    void moveToFront() {
        must(ntksMTFInit_8u(m_list.data()));
        must(ntksMTFFwd_8u(m_sorted.data(), m_positions.data(), m_length, m_list.data()));
    }
    void moveBack() {
        must(ntksMTFInit_8u(m_list.data()));
        must(ntksMTFInv_8u(m_positions.data(), m_restored.data(), m_length, m_list.data()));
    }
    void codeZeroes() {
        Ntk8u* src = m_positions.data();
        int left = m_length, written = static_cast<int>(m_symbols.size()) - 1;
        int frequencies[258] = {};
        must(ntksEncodeZ1Z2_BZ2_8u16u(&src, &left, m_symbols.data(), &written, frequencies));
        m_symbols[static_cast<std::size_t>(written)] = static_cast<Ntk16u>(m_dictionary + 1);
        m_count = written + 1;
    }
    void codeSymbols() {
        Ntk32u code = 0;
        int bits = 0, head = lengthOf(m_file), left = m_count;
        Ntk16u* src = m_symbols.data();
        must(ntksEncodeHuffInit_BZ2_16u8u(m_dictionary + 2, nullptr, src, m_count,
                                          m_huffman.data()));
        must(ntksPackHuffContext_BZ2_16u8u(&code, &bits, m_file.data(), &head, m_huffman.data()));
        int rest = lengthOf(m_file) - head;
        must(ntksEncodeHuff_BZ2_16u8u(&code, &bits, &src, &left, m_file.data() + head, &rest,
                                      m_huffman.data()));
        m_written = head + rest;
    }
    std::size_t length() const { return static_cast<std::size_t>(m_length); }
    int bytesWritten() const { return m_written; }
    bool isRestored() const {
        return std::equal(m_sorted.begin(), m_sorted.begin() + m_length, m_restored.begin());
    }

private:
    static constexpr int longest = 200000;
    Bytes m_data;
    Bytes m_coded = Bytes(longest), m_sorted = Bytes(longest), m_positions = Bytes(longest);
    Bytes m_restored = Bytes(longest), m_file = Bytes(2 * longest);
    std::vector<Ntk16u> m_symbols = std::vector<Ntk16u>(longest + 1);
    Bytes m_runs = sized(ntksRLEGetSize_BZ2_8u);
    Bytes m_list = sized(ntksMTFGetSize_8u);
    Bytes m_huffman = sized(ntksEncodeHuffGetSize_BZ2_16u8u, longest);
    int m_length = 0, m_dictionary = 0, m_count = 0, m_written = 0;
};

Variant stageOfBzip2(const Bytes& data, const char* name, const Ntk64u& clocks) {
    return {.name = name, .call = [&data] { bzip2CompressInStages(data); }, .partClocks = &clocks};
}

void compareStages(Run& run) {
    Stages own(run.data);
    own.codeRuns();
    const std::size_t bytes = own.length();
    run.sideBySide(
        "run lengths and checksum", run.data.size(),
        {{"", [&] { own.codeRuns(); }}, stageOfBzip2(run.data, "that stage", g_bzip2Clocks.runs)});
    own.reduceAndSort();
    const Variant positions = stageOfBzip2(run.data, "both in one loop", g_bzip2Clocks.positions);
    run.sideBySide("ntksMTFFwd_8u", bytes, {{"", [&] { own.moveToFront(); }}, positions});
    run.sideBySide("ntksMTFInv_8u", bytes, {{"", [&] { own.moveBack(); }}, positions});
    if (!own.isRestored()) {
        throw std::runtime_error("the positions do not lead back to the bytes");
    }
    run.sideBySide("MTFFwd and EncodeZ1Z2", bytes,
                   {{"",
                     [&] {
                         own.moveToFront();
                         own.codeZeroes();
                     }},
                    positions});
    run.sideBySide("Huffman tables and codes", bytes,
                   {{"", [&] { own.codeSymbols(); }},
                    stageOfBzip2(run.data, "that stage", g_bzip2Clocks.huffman)});
}

} // namespace

const Comparison bz2stagesComparison = {
    "bz2stages",
    "the stages of bzip2's compression but for the transform with those of libbz2",
    {"book1", "pic", "geo"},
    102400,
    60,
    compareStages};
