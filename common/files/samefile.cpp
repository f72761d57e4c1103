#include "samefile.h"

#include <algorithm>
#include <filesystem>

namespace common {

namespace {

// As far as it exists; a file that is still to be made has no other names.
std::string placeOf(const std::string& file) {
    std::error_code error;
    return std::filesystem::weakly_canonical(std::filesystem::absolute(file, error), error);
}

bool isSame(const std::string& one, const std::string& other) {
    std::error_code error;
    return !one.empty() && !other.empty() &&
           (placeOf(one) == placeOf(other) || std::filesystem::equivalent(one, other, error));
}

} // namespace

std::string sameFile(const std::vector<std::pair<std::string, std::string>>& files) {
    for (auto one = files.begin(); one != files.end(); ++one) {
        const auto other = std::find_if(one + 1, files.end(), [&](const auto& candidate) {
            return isSame(one->second, candidate.second);
        });
        if (other != files.end()) {
            return one->first + " " + one->second + " and " + other->first + " " + other->second +
                   " are the same file; name two";
        }
    }
    return "";
}

} // namespace common
