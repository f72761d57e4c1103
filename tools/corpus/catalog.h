#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <string_view>

namespace corpus {

struct FileKind {
    std::string_view name;
    std::size_t sizeBytes; // that of the file it stands in for
    std::string (*make)(std::size_t sizeBytes);
};

// The fourteen files of the corpus in the order in which the benchmarks take them.
std::span<const FileKind> catalog();

} // namespace corpus
