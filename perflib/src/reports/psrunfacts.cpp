#include "psrunfacts.h"

#include <zlib.h>

#include <filesystem>
#include <system_error>
#include <vector>

#include "pscputick_gcc.h"
#include "psinfo.h"
#include "psloaded.h"
#include "psstream.h"

namespace {
namespace fs = std::filesystem;

// "12.0.0 (open build)"
psLibraryFacts factsOf(const NtkLibraryVersion& version) {
    const psString text = version.version;
    const int bracket = text.find(" (");
    psLibraryFacts facts{version.name, text, "", version.buildDate};
    if (bracket != psString::npos && text[text.length() - 1] == ')') {
        facts.version = text.substr(0, bracket);
        facts.build = text.substr(bracket + 2, text.length() - bracket - 3);
    }
    return facts;
}

} // namespace

std::optional<psInputFacts> psInputFactsOf(const psString& name) {
    std::error_code error;
    const fs::path path = fs::canonical(name.c_str(), error);
    if (error || !fs::is_regular_file(path, error)) {
        return std::nullopt;
    }
    i_stream file(path.c_str(), PS_OPEN_READ | PS_OPEN_BINARY, false);
    psInputFacts facts{name, path.c_str(), 0, crc32(0, nullptr, 0)};
    std::vector<unsigned char> block(size_t{1} << 16);
    while (const int got = file.read(block.data(), static_cast<int>(block.size()))) {
        facts.bytes += got;
        facts.crc32 = crc32(facts.crc32, block.data(), static_cast<unsigned>(got));
    }
    return file.failed() ? std::nullopt : std::optional(facts);
}

psRunFacts psRunFactsOf(const psRunPlan& plan) {
    psRunFacts facts;
    facts.plan = plan;
    facts.processor = psCpuBrand();
    facts.os = psOS();
    facts.computer = psHost();
    facts.processors = psGetNumOfProcessors();
    facts.ticksMHz = psCpuTicker::knownFreq();
    facts.cacheBytes = psGetMaxCacheSizeB();
    for (const NtkLibraryVersion* const version : psLibraryVersions()) {
        facts.libraries.append(factsOf(*version));
    }
    facts.libraryFiles = psLoadedLibraries();
    for (const psString& name : plan.inputFiles) {
        if (const auto input = psInputFactsOf(name)) {
            facts.corpus.append(*input);
        }
    }
    return facts;
}
