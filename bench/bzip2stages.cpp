#include "bzip2stages.h"

#include <dlfcn.h>

#include <stdexcept>

#include "bzip2.h"

Bzip2Clocks g_bzip2Clocks;

namespace {

// The moments of a block. Tables are made in rounds, each of a pass over all symbols and then a
// call for each table. The first pass lies behind move-to-front without a call between them: it is
// taken to cost what the second one does.
struct Moments {
    Ntk64u begun = 0, blockBegun = 0, sorted = 0;
    Ntk64u firstTable = 0; // the first call for a table
    Ntk64u roundEnd = 0;   // the last return from one before the second round
    Ntk64u secondPass = 0;
    Ntk32u tables = 0; // calls until now
    void* firstLengths = nullptr;
};
Moments g_moments;

template <class Function> Function* realFunction(const char* name) {
    return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

// Memory that stays, so that no page is touched for the first time within a stage.
struct Pool {
    Bytes memory = Bytes(std::size_t{10} << 20);
    std::size_t used = 0;
};

void* take(void* pool, int count, int size) {
    auto& from = *static_cast<Pool*>(pool);
    const std::size_t bytes = (static_cast<std::size_t>(count) * size + 63) / 64 * 64;
    if (from.used + bytes > from.memory.size()) {
        return nullptr;
    }
    void* const taken = from.memory.data() + from.used;
    from.used += bytes;
    return taken;
}

void giveBack(void*, void*) {}

} // namespace

extern "C" {

// Visible, so that libbz2 finds these in place of its own.
__attribute__((visibility("default"))) void BZ2_blockSort(void* state) {
    using Sort = void(void*);
    static Sort* const sort = realFunction<Sort>("BZ2_blockSort");
    const Ntk64u start = ntkStartTsc();
    sort(state);
    g_moments.sorted = ntkStopTsc();
    g_bzip2Clocks.sort = g_moments.sorted - start;
}

__attribute__((visibility("default"))) void
BZ2_hbMakeCodeLengths(unsigned char* lengths, int* frequencies, int alphabet, int longest) {
    using Make = void(unsigned char*, int*, int, int);
    static Make* const make = realFunction<Make>("BZ2_hbMakeCodeLengths");
    Moments& m = g_moments;
    if (m.tables++ == 0) {
        m.firstTable = ntkStopTsc();
        m.firstLengths = lengths;
    } else if (lengths == m.firstLengths && m.secondPass == 0) {
        m.secondPass = ntkStopTsc() - m.roundEnd;
    }
    make(lengths, frequencies, alphabet, longest);
    if (m.secondPass == 0) {
        m.roundEnd = ntkStopTsc();
    }
}

__attribute__((visibility("default"))) void BZ2_compressBlock(void* state, unsigned char isLast) {
    using Compress = void(void*, unsigned char);
    static Compress* const compress = realFunction<Compress>("BZ2_compressBlock");
    Moments& m = g_moments;
    m.blockBegun = ntkStopTsc();
    compress(state, isLast);
    const Ntk64u end = ntkStopTsc();
    g_bzip2Clocks.runs = m.blockBegun - m.begun;
    g_bzip2Clocks.positions = m.firstTable - m.sorted - m.secondPass;
    g_bzip2Clocks.huffman = end - m.firstTable + m.secondPass;
}
}

std::size_t bzip2CompressInStages(const Bytes& data) {
    static Pool pool;
    static Bytes file(std::size_t{2} << 20);
    pool.used = 0;
    bz_stream stream = {};
    stream.bzalloc = take;
    stream.bzfree = giveBack;
    stream.opaque = &pool;
    if (BZ2_bzCompressInit(&stream, 9, 0, 0) != BZ_OK) {
        throw std::runtime_error("libbz2 cannot begin to compress");
    }
    Bytes source = data;
    stream.next_in = chars(source);
    stream.avail_in = static_cast<unsigned>(source.size());
    stream.next_out = chars(file);
    stream.avail_out = static_cast<unsigned>(file.size());
    g_moments = {};
    g_moments.begun = ntkStartTsc();
    const int status = BZ2_bzCompress(&stream, BZ_FINISH);
    BZ2_bzCompressEnd(&stream);
    if (status != BZ_STREAM_END || g_moments.secondPass == 0) {
        throw std::runtime_error("libbz2 did not compress the data as one block");
    }
    return file.size() - stream.avail_out;
}
