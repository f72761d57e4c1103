#pragma once

#include <string>
#include <string_view>

#include "rng.h"

namespace corpus {

// A page of black (1) and white (0) pixels, eight to a byte, the leftmost in the highest bit.
// Drawing outside the page does nothing.
class Bitmap {
public:
    Bitmap(int widthPixels, int heightPixels);

    bool isBlack(int x, int y) const;
    void setPixel(int x, int y, bool black);
    void fill(int x, int y, int widthPixels, int heightPixels);
    void frame(int x, int y, int widthPixels, int heightPixels, int thickness);
    void line(int x0, int y0, int x1, int y1, int thickness);
    void dashes(int x0, int x1, int y);

    // Writes characters in the built-in font, each of its dots dotPixels wide and high. Returns
    // the x behind the last character.
    int text(int x, int y, std::string_view characters, int dotPixels);

    // What a scanner does to a drawing: pixels beside an edge change colour by chance, so many
    // per mille, and now and then a speck of dust appears.
    void scan(int roughPerMille, Random& random);

    const std::string& bytes() const { return m_bytes; }

private:
    bool isAtEdge(int x, int y) const;

    int m_width;
    int m_height;
    int m_rowBytes;
    std::string m_bytes;
};

// The width of a character cell, in dots, with the gap to the next one.
constexpr int kGlyphDots = 6;

// Nine rows of five dots, the leftmost in bit 4; characters without a glyph are blank.
const unsigned char* glyphRows(char character);

} // namespace corpus
