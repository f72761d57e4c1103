#include "comparison.h"

#include <cstdio>
#include <stdexcept>

namespace {

// For people and for Markdown.
const char* const titles[] = {
    "call                          data     bytes  clocks/byte  against                     "
    "clocks/byte  ratio  spread       size\n",
    "| call | data | bytes | clocks/byte | against | clocks/byte | ratio | spread | size |\n"
    "|---|---|---:|---:|---|---:|---:|---:|---:|\n"};
const char* const rows[] = {"%-29s %-7s %6zu  %11.3f  %-27s %11.3f %6.3f  %.3f-%.3f  %s\n",
                            "| %s | %s | %zu | %.3f | %s | %.3f | %.3f | %.3f-%.3f | %s |\n"};

} // namespace

void printTitle(bool asMarkdown) {
    std::fputs(titles[asMarkdown], stdout);
}

void Run::print(const Row& row) const {
    char size[32] = "";
    if (row.sizeRatio) {
        std::snprintf(size, sizeof size, "%.3f", *row.sizeRatio);
    }
    std::printf(rows[asMarkdown], row.call.c_str(), dataName.c_str(), row.bytes, row.clocks,
                row.against.c_str(), row.otherClocks, row.ratio.value, row.ratio.lowest,
                row.ratio.highest, size);
    std::fflush(stdout); // a reader follows a long run row by row
}

void Run::sideBySide(const std::string& call, std::size_t bytes,
                     const std::vector<Variant>& variants) const {
    // In pairs: in a longer round, a variant that shares code with the one before it would find
    // the processor's branch prediction prepared.
    for (std::size_t i = 1; i < variants.size(); ++i) {
        std::vector<Variant> pair = {variants[0], variants[i]};
        measureInterleaved(pair, rounds);
        const Variant &own = pair[0], &other = pair[1];
        const auto perByte = [bytes](const Variant& v) {
            return v.bestClocks() / static_cast<double>(bytes);
        };
        Row row = {call, bytes, perByte(own), other.name, perByte(other), ratioOf(own, other)};
        if (own.size && other.size) {
            row.sizeRatio = own.size() / other.size();
        }
        print(row);
    }
}

void Run::decodersSideBySide(const std::string& call, Bytes& decoded,
                             const std::vector<Variant>& variants) const {
    sideBySide(call, data.size(), variants);
    for (const Variant& variant : variants) {
        decoded.assign(data.size(), 0);
        if (variant.prepare) {
            variant.prepare();
        }
        variant.call();
        mustEqual(decoded, data);
    }
}

void must(int status) {
    if (status < 0) {
        throw std::runtime_error("a call of the library ended with status " +
                                 std::to_string(status));
    }
}

void mustEqual(const Bytes& decoded, const Bytes& expected) {
    if (decoded != expected) {
        throw std::runtime_error("a decoder did not restore the data");
    }
}
