#include "bitmap.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>

namespace corpus {

Bitmap::Bitmap(int widthPixels, int heightPixels)
    : m_width(widthPixels), m_height(heightPixels), m_rowBytes((widthPixels + 7) / 8),
      m_bytes(static_cast<std::size_t>(m_rowBytes * heightPixels), '\0') {}

bool Bitmap::isBlack(int x, int y) const {
    if (x < 0 || y < 0 || x >= m_width || y >= m_height) {
        return false;
    }
    const char byte = m_bytes[static_cast<std::size_t>(y * m_rowBytes + x / 8)];
    return (byte & (0x80 >> (x % 8))) != 0;
}

bool Bitmap::isAtEdge(int x, int y) const {
    const bool black = isBlack(x, y);
    return black != isBlack(x - 1, y) || black != isBlack(x + 1, y) || black != isBlack(x, y - 1) ||
           black != isBlack(x, y + 1);
}

void Bitmap::setPixel(int x, int y, bool black) {
    if (x < 0 || y < 0 || x >= m_width || y >= m_height) {
        return;
    }
    char& byte = m_bytes[static_cast<std::size_t>(y * m_rowBytes + x / 8)];
    const int mask = 0x80 >> (x % 8);
    byte = static_cast<char>(black ? byte | mask : byte & ~mask);
}

void Bitmap::fill(int x, int y, int widthPixels, int heightPixels) {
    for (int dy = 0; dy < heightPixels; ++dy) {
        for (int dx = 0; dx < widthPixels; ++dx) {
            setPixel(x + dx, y + dy, true);
        }
    }
}

void Bitmap::frame(int x, int y, int widthPixels, int heightPixels, int thickness) {
    fill(x, y, widthPixels, thickness);
    fill(x, y + heightPixels - thickness, widthPixels, thickness);
    fill(x, y, thickness, heightPixels);
    fill(x + widthPixels - thickness, y, thickness, heightPixels);
}

// Bresenham's line with a square pen.
void Bitmap::line(int x0, int y0, int x1, int y1, int thickness) {
    const int dx = std::abs(x1 - x0);
    const int dy = -std::abs(y1 - y0);
    const int stepX = x0 < x1 ? 1 : -1;
    const int stepY = y0 < y1 ? 1 : -1;
    int error = dx + dy;
    for (;;) {
        fill(x0, y0, thickness, thickness);
        if (x0 == x1 && y0 == y1) {
            return;
        }
        const int twice = 2 * error;
        if (twice >= dy) {
            error += dy;
            x0 += stepX;
        }
        if (twice <= dx) {
            error += dx;
            y0 += stepY;
        }
    }
}

void Bitmap::dashes(int x0, int x1, int y) {
    constexpr int kDash = 10;
    constexpr int kGap = 6;
    for (int x = x0; x < x1; x += kDash + kGap) {
        fill(x, y, kDash, 3);
    }
}

int Bitmap::text(int x, int y, std::string_view characters, int dotPixels) {
    for (const char character : characters) {
        const unsigned char* rows = glyphRows(character);
        for (int dot = 0; dot < 9 * 5; ++dot) {
            if ((rows[dot / 5] >> (4 - dot % 5) & 1) != 0) {
                // One pixel more than the dot: dots of a stroke run into each other.
                const int pen = dotPixels + 1;
                fill(x + dot % 5 * dotPixels, y + dot / 5 * dotPixels, pen, pen);
            }
        }
        x += kGlyphDots * dotPixels;
    }
    return x;
}

void Bitmap::scan(int roughPerMille, Random& random) {
    constexpr std::uint32_t kPixelsPerSpeck = 400000;
    const Bitmap clean = *this;
    for (int y = 0; y < m_height; ++y) {
        for (int x = 0; x < m_width; ++x) {
            if (clean.isAtEdge(x, y) && random.chance(roughPerMille)) {
                setPixel(x, y, !clean.isBlack(x, y));
            }
        }
    }
    const auto pixels = static_cast<std::uint32_t>(m_width * m_height);
    for (std::uint32_t speck = 0; speck < pixels / kPixelsPerSpeck; ++speck) {
        // Drawn one after the other: the order of two arguments is the compiler's choice.
        const int x = random.between(0, m_width - 1);
        const int y = random.between(0, m_height - 1);
        fill(x, y, 2, 1);
    }
}

} // namespace corpus
