#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace corpus {

// Collects a text document: sentences are filled into lines of a width, other lines stand alone.
class TextFlow {
public:
    explicit TextFlow(std::size_t widthColumns) : m_width(widthColumns) {}

    // Adds words to the running paragraph.
    void fill(std::string_view words);

    // Ends the running paragraph, if there is one.
    void endParagraph();

    // Ends the running paragraph and adds text as it is, followed by a line end.
    void line(std::string_view text);

    std::size_t sizeBytes() const { return m_text.size(); }
    const std::string& text() const { return m_text; }

private:
    std::size_t m_width;
    std::string m_text;
    std::size_t m_column = 0;
};

// Cuts or lengthens a text to exactly this size; its last byte is a line end.
std::string fitTo(std::string text, std::size_t sizeBytes);

} // namespace corpus
