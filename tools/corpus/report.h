#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "expander.h"
#include "textflow.h"

namespace corpus {

// Writes technical prose in the manner of a text formatter's source: lines that start with a dot
// are commands, "\fI" and "\fR" switch the font. Shared by the textbook, the article and the
// essay, which differ in their knobs.
struct ReportStyle {
    std::uint64_t seed;
    std::size_t widthColumns;
    unsigned flatnessPercent; // of the vocabulary, see Grammar
    int topicSharePerMille;   // how often a section returns to its own words
    int coinedPerMille;       // proper names and jargon in place of listed words
    int lineBreakPerMille;    // a sentence starts on a line of its own
    int emphasisPerMille;     // of the sentences, with a word in italics
    std::string_view paragraphCommand;
};

class Report {
public:
    explicit Report(const ReportStyle& style);

    // A line of its own, expanded as a template.
    void line(std::string_view text) { m_flow.line(m_text.expand(text)); }

    // A numbered or plain heading and some paragraphs about one topic.
    void section(std::string_view headingTemplate, std::size_t sizeBytes);

    std::size_t sizeBytes() const { return m_flow.sizeBytes(); }
    std::string finish(std::size_t sizeBytes) const { return fitTo(m_flow.text(), sizeBytes); }
    Expander& text() { return m_text; }

private:
    void paragraph();
    void sentence();
    void display();

    ReportStyle m_style;
    Grammar m_grammar;
    Expander m_text;
    TextFlow m_flow;
    int m_topic = 0;
};

} // namespace corpus
