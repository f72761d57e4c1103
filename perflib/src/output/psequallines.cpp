#include "psequallines.h"

#include <algorithm>
#include <string>
#include <tuple>

// A hash with nothing in common with that of the standard library (FNV-1a).
static std::uint32_t otherHash(const std::string& text) {
    std::uint32_t hash = 2166136261u;
    for (const char c : text) {
        hash = (hash ^ static_cast<unsigned char>(c)) * 16777619u;
    }
    return hash;
}

void psEqualLines::add(int number, const psString* cells, int count) {
    std::string text;
    for (int i = 0; i < count; ++i) {
        text.append(cells[i].c_str());
        text.push_back('\0'); // in no cell: "ab" "c" is not "a" "bc"
    }
    m_lines.push_back({std::hash<std::string>()(text), otherHash(text), number});
}

psEqualLines::Pair psEqualLines::firstPair() const {
    std::vector<Line> lines = m_lines;
    std::sort(lines.begin(), lines.end(), [](const Line& a, const Line& b) {
        return std::tie(a.hash, a.moreHash, a.number) < std::tie(b.hash, b.moreHash, b.number);
    });
    Pair best = {0, 0};
    for (size_t i = 1; i < lines.size(); ++i) {
        const Line& previous = lines[i - 1];
        if (previous.equals(lines[i]) && (best.first == 0 || previous.number < best.first)) {
            best = {previous.number, lines[i].number};
        }
    }
    return best;
}
