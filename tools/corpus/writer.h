#pragma once

#include <filesystem>
#include <iosfwd>
#include <stdexcept>
#include <string>
#include <string_view>

namespace corpus {

// What went wrong, with which file, and why, as one line for the user.
class CorpusError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

struct MakeResult {
    int written = 0;
    int unchanged = 0; // were there already, byte by byte the same
};

// Writes the files of the catalog into a directory, which is created when it is missing, and
// prints a line per file. A file of one of the names with other contents may be the user's real
// corpus: when there is one, nothing at all is written unless replaceOthers is set. Throws
// CorpusError.
MakeResult makeCorpus(const std::filesystem::path& directory, bool replaceOthers,
                      std::ostream& log);

// Writes the bytes under a temporary name in the same directory and gives the complete file its
// name, so that an interrupted run leaves no half file of that name. Throws CorpusError.
void replaceFile(const std::filesystem::path& path, std::string_view bytes);

// Writes a file in place. Throws CorpusError with the name and the reason of the system.
void writeFile(const std::filesystem::path& path, std::string_view bytes);

} // namespace corpus
