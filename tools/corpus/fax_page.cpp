// pic: a printed page in two columns as a fax machine of group 3 reads it in fine resolution:
// 1728 pixels a line, one bit each, no header.
#include "bitmap.h"
#include "expander.h"
#include "files.h"
#include "sentences.h"
#include "textflow.h"
#include "vocabulary.h"

namespace corpus {

namespace {

constexpr int kWidthPixels = 1728;
constexpr int kRowBytes = kWidthPixels / 8;

// The roughness of the edges is what a packer finds hard in a scanned page; the amount of text
// and the height of the letters set the rest.
constexpr int kRoughPerMille = 34;

constexpr int kDotPixels = 3;
constexpr int kLinePixels = 34;
constexpr int kColumnPixels = 660;
constexpr int kColumnCharacters = kColumnPixels / (kGlyphDots * kDotPixels);
constexpr int kFigurePixels = 300;

class FaxPage {
public:
    explicit FaxPage(int heightPixels)
        : m_height(heightPixels), m_page(kWidthPixels, heightPixels),
          m_grammar({technicalWords(), names(), reportSentences()}, 100), m_text(m_grammar, 13) {}

    std::string write() {
        const int top = m_height / 10;
        const int bottom = m_height - m_height / 14;
        drawColumn(110, top, bottom);
        m_page.fill(805, top, 3, bottom - top);
        drawColumn(840, top, bottom);
        m_page.scan(kRoughPerMille, m_text.random());
        return m_page.bytes();
    }

private:
    // Paragraphs and figures in turn until the column is full.
    void drawColumn(int x, int y, int bottom) {
        while (y < bottom) {
            y = drawParagraph(x, y, bottom);
            if (y + kFigurePixels + 3 * kLinePixels < bottom) {
                drawFigure(x, y + kLinePixels / 2);
                y += kFigurePixels + 3 * kLinePixels;
            }
        }
    }

    int drawParagraph(int x, int y, int bottom) {
        TextFlow flow(kColumnCharacters);
        for (int sentences = m_text.random().between(2, 5); sentences > 0; --sentences) {
            flow.fill(m_text.expand("$(statement:cap)"));
        }
        flow.endParagraph();
        std::string_view rest = flow.text();
        while (!rest.empty() && y < bottom) {
            const std::size_t end = rest.find('\n');
            m_page.text(x, y, rest.substr(0, end), kDotPixels);
            rest.remove_prefix(end + 1);
            y += kLinePixels;
        }
        return y + kLinePixels / 2;
    }

    void drawFigure(int x, int y) {
        m_page.frame(x, y, kColumnPixels, kFigurePixels, 5);
        m_text.random().chance(500) ? drawCurve(x + 90, y + 40) : drawBoxes(x + 40, y + 110);
        const std::string caption = "Fig. " + std::to_string(++m_figure);
        m_page.text(x + 260, y + kFigurePixels + 20, caption, kDotPixels);
    }

    // An oscillation that dies away, between axes: a damped resonance in fixed point.
    void drawCurve(int x, int y) {
        constexpr int kAxis = 480;
        m_page.fill(x, y, 4, 210);
        m_page.fill(x - 30, y + 110, kAxis + 60, 4);
        m_page.dashes(x, x + kAxis, y + 40);
        m_page.text(x + 20, y - 10, m_text.expand("$tnoun (t)"), 2);
        const int period = m_text.random().between(7950, 8060);
        int last = 90 * 256;
        int beforeLast = 85 * 256;
        for (int step = 0; step + 4 < kAxis; step += 4) {
            const int next = (period * last - 4020 * beforeLast) / 4096;
            m_page.line(x + step, y + 110 - last / 256, x + step + 4, y + 110 - next / 256, 4);
            beforeLast = last;
            last = next;
        }
    }

    // A chain of three boxes with arrows between them.
    void drawBoxes(int x, int y) {
        for (int box = 0; box < 3; ++box) {
            const int left = x + 60 + 190 * box;
            m_page.line(left - 60, y + 35, left, y + 35, 3);
            m_page.line(left - 14, y + 27, left, y + 35, 3);
            m_page.line(left - 14, y + 43, left, y + 35, 3);
            m_page.frame(left, y, 130, 74, 4);
            m_page.text(left + 12, y + 26, m_text.expand("$tnoun").substr(0, 9), 2);
        }
    }

    int m_height;
    Bitmap m_page;
    Grammar m_grammar;
    Expander m_text;
    int m_figure = 1;
};

} // namespace

std::string makeFaxPage(std::size_t sizeBytes) {
    std::string page = FaxPage(static_cast<int>(sizeBytes / kRowBytes)).write();
    page.resize(sizeBytes, '\0');
    return page;
}

} // namespace corpus
