#include "textflow.h"

#include <algorithm>

namespace corpus {

void TextFlow::fill(std::string_view words) {
    while (!words.empty()) {
        const std::size_t length = std::min(words.find(' '), words.size());
        const std::string_view word = words.substr(0, length);
        words.remove_prefix(std::min(length + 1, words.size()));
        if (m_column > 0 && m_column + 1 + word.size() > m_width) {
            endParagraph();
        }
        if (m_column > 0) {
            m_text.push_back(' ');
            ++m_column;
        }
        m_text += word;
        m_column += word.size();
    }
}

void TextFlow::endParagraph() {
    if (m_column > 0) {
        m_text.push_back('\n');
        m_column = 0;
    }
}

void TextFlow::line(std::string_view text) {
    endParagraph();
    m_text += text;
    m_text.push_back('\n');
}

std::string fitTo(std::string text, std::size_t sizeBytes) {
    text.resize(sizeBytes, '\n');
    if (sizeBytes > 0) {
        text.back() = '\n';
    }
    return text;
}

} // namespace corpus
