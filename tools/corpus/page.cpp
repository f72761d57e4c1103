// Makes pic: a printed page, scanned with 1728 pixels in a row and a bit for each, set where there
// is ink. A letter is two or three strokes, upright or lying, that wander sideways from row to row,
// so that most inked bytes differ a little from those above them.
#include <vector>

#include "catalog.h"
#include "random.h"

namespace corpus {

// Lengths are in pixels; these were found by hand.
constexpr std::size_t kRowBytes = 216;
constexpr int kTopMargin = 228, kBottomMargin = 420, kLeftMargin = 100, kLineWidth = 1250;
constexpr int kLetters = 60, kHeight = 16, kLeading = 15, kThickness = 4, kWander = 4;

using Letter = std::vector<std::uint64_t>; // its rows, the leftmost pixel in the top bit

static void addStroke(Letter& letter, Random& random) {
    const int thickness = 2 + random.below(kThickness - 1);
    const bool isUpright = random.chance(600);
    const int rows = isUpright ? kHeight - random.below(kHeight / 2) : thickness;
    const int width = isUpright ? thickness : 8 + random.below(16);
    const int top = random.below(kHeight - rows + 1);
    const int turn = top + random.below(2 * rows) - rows / 2; // where it starts to wander back
    int left = random.below(12);
    for (int row = top; row < top + rows; ++row) {
        letter[static_cast<std::size_t>(row)] |= ~std::uint64_t{0} << (64 - width) >> left;
        left = std::clamp(left + (row < turn ? 1 : -1) * random.below(1 + kWander), 0, 24);
    }
}

static void print(std::string& page, int top, int left, const Letter& letter) {
    std::size_t at = static_cast<std::size_t>(top) * kRowBytes + static_cast<std::size_t>(left / 8);
    for (const std::uint64_t row : letter) {
        for (std::size_t byte = 0; byte < 8; ++byte) {
            const auto bits = static_cast<char>(row >> left % 8 >> (56 - 8 * byte));
            page[at + byte] = static_cast<char>(page[at + byte] | bits);
        }
        at += kRowBytes;
    }
}

std::string makePage(const FileKind& kind) {
    Random random(1);
    std::vector<Letter> alphabet(kLetters, Letter(kHeight));
    for (Letter& letter : alphabet) {
        for (int strokes = 2 + random.below(2); strokes > 0; --strokes) {
            addStroke(letter, random);
        }
    }
    const Zipf choice(kLetters);
    std::string page(kind.sizeBytes, '\0');
    const int bottom = static_cast<int>(page.size() / kRowBytes) - kBottomMargin;
    for (int top = kTopMargin; top + kHeight <= bottom; top += kHeight + kLeading) {
        for (int left = 0; left < kLineWidth; left += 24 + random.below(16)) {
            const auto letter = static_cast<std::size_t>(choice.draw(random)) - 1;
            print(page, top, kLeftMargin + left, alphabet[letter]);
        }
    }
    return page;
}

} // namespace corpus
