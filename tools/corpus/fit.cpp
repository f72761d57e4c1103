// Finds the recipes of the stand-ins. Packs prefixes of the real files and of what the makers make,
// with LZ4, gzip -6 and bzip2 -9, and changes the numbers at random, ever more gently, keeping what
// brings the sizes closer together. Prints the lines of the catalog, each with the deviations of
// the sizes in percent. Its search starts from the catalog: give it more tries to go on from the
// last.
#include <array>
#include <bit>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <utility>
#include <vector>

#include "catalog.h"
#include "packed.h"
#include "random.h"

namespace {

using corpus::FileKind;
using Numbers = std::array<int, 10>; // of a recipe
using Sizes = std::vector<double>;   // packed: three for each prefix

constexpr Numbers kLargest = {1500, 200, 60000, 1500, 900, 900, 100, 60000, 900, 500};
constexpr std::size_t kMethods = 3;

Sizes sizesOf(const std::string& file) {
    Sizes sizes;
    for (const std::size_t prefix :
         {std::size_t{1} << 14, std::size_t{1} << 16, std::size_t{1} << 18, file.size()}) {
        if (prefix < file.size() * 4 / 5 || prefix == file.size()) {
            const auto packed = corpus::packedSizes(file.substr(0, prefix));
            sizes.insert(sizes.end(), packed.begin(), packed.end());
        }
    }
    return sizes;
}

// The sum of the squared relative deviations, where the whole file counts six times.
double distance(const Sizes& made, const Sizes& real) {
    double sum = 0;
    for (std::size_t i = 0; i < real.size(); ++i) {
        const double weight = i + kMethods < real.size() ? 1 : 6;
        sum += weight * std::pow(std::log(made[i] / real[i]), 2);
    }
    return sum;
}

// One to three numbers are multiplied by a factor of at most e^step.
FileKind changed(FileKind kind, double step, corpus::Random& random) {
    Numbers numbers = std::bit_cast<Numbers>(kind.recipe);
    for (int left = 1 + random.below(3); left > 0; --left) {
        const auto i = static_cast<std::size_t>(random.below(static_cast<int>(numbers.size())));
        const double factor = std::exp(step * (random.below(2001) - 1000) / 1000);
        const int rounded =
            static_cast<int>(numbers[i] * factor + (random.chance(500) ? 0.9 : 0.1));
        numbers[i] = std::clamp(rounded, 1, kLargest[i]);
    }
    kind.recipe = std::bit_cast<corpus::Recipe>(numbers);
    return kind;
}

FileKind fitted(FileKind best, const Sizes& real, int tries) {
    double least = distance(sizesOf(best.make()), real);
    corpus::Random random(static_cast<std::uint64_t>(tries));
    for (int left = tries; left > 0; --left) {
        const FileKind next = changed(best, 0.02 + 0.8 * left / tries, random);
        const double reached = distance(sizesOf(next.make()), real);
        if (reached < least) {
            best = next;
            least = reached;
        }
    }
    return best;
}

void print(const FileKind& kind, const Sizes& real) {
    std::printf("%-6s ", kind.name.data());
    const char* separator = "{";
    for (const int number : std::bit_cast<Numbers>(kind.recipe)) {
        std::printf("%s%d", std::exchange(separator, ", "), number);
    }
    std::printf("}");
    const Sizes made = sizesOf(kind.make());
    for (std::size_t i = 0; i < real.size(); ++i) {
        std::printf("%s%+.1f", i % kMethods == 0 ? "  " : " ", 100 * (made[i] / real[i] - 1));
    }
    std::printf("\n");
}

} // namespace

int main(int argc, char** argv) {
    if (argc < 2) {
        std::fprintf(stderr, "usage: ntkcorpusfit CORPUSDIR [TRIES [NAME]]\n");
        return 2;
    }
    const int tries = argc > 2 ? std::atoi(argv[2]) : 0;
    for (const FileKind& kind : corpus::catalog()) {
        if (argc > 3 && kind.name != argv[3]) {
            continue;
        }
        std::ifstream file(std::string(argv[1]) + "/" + kind.name.data(), std::ios::binary);
        const std::string bytes(std::istreambuf_iterator<char>(file), {});
        if (bytes.size() != kind.sizeBytes) {
            std::fprintf(stderr, "ntkcorpusfit: %s in %s is not the file of %zu bytes\n",
                         kind.name.data(), argv[1], kind.sizeBytes);
            return 1;
        }
        const Sizes real = sizesOf(bytes);
        print(kind.recipe.words > 0 ? fitted(kind, real, tries) : kind, real);
    }
}
