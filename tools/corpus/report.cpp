#include "report.h"

#include "sentences.h"
#include "vocabulary.h"

namespace corpus {

namespace {

// A section keeps to a few dozen words of each list.
constexpr int kTopicWords = 25;

// Of the paragraphs, per mille: lists, formulas, tables and references to figures.
constexpr int kDisplayPerMille = 170;

constexpr Rule kDisplays[] = {
    {"coined", Split::Lines, kSteep, R"(
        $surname
        $onset$rime$coined_end
        $(onset:cap)$rime-$d19
        $(onset:up)$(onset:up))"},
    {"letter", Split::Words, kBroad, "x n i t k y p m j s f r a b c N T P z q u v w"},
    {"greek", Split::Words, kEven, "alpha beta gamma delta epsilon lambda mu sigma theta omega"},
    {"aside", Split::Lines, kZipf, R"(
        \fI$tnoun\fR $tnoun
        ($surname and $surname, 19$decade$digit)
        \fI$tadj\fR
        ``$tnoun $tnoun''
        Figure $d19.$d19
        Section $d19.$d19
        equation ($d19.$d19)
        $$$letter$$
        $$$letter sub $letter$$
        $number%
        \(em $tadj $tnoun \(em
        ($surname \fIet al\fR, 19$decade$digit))"},
    {"decade", Split::Words, kEven, "6 7 7 7 8 8 8"},
    {"term", Split::Lines, kZipf, R"(
        $letter
        $letter sub $letter
        $number
        $greek
        { $letter + $number } over { $letter }
        $letter sup 2
        ( $term - $term )
        $letter ( $letter )
        sqrt { $term }
        $greek sub $letter)"},
    {"display", Split::Blocks, kZipf, R"(
.EQ
$letter ~=~ $term ~+~ $term
.EN
%%
.LB
.NP
$statement
.NP
$statement
.NP
$statement
.LE
%%
.FC "Figure $d19.$d19"
%%
.EQ
$term ~~=~~ sum from $letter = $digit to $letter $term ~<~ $term
.EN
%%
.nf
.ta 0.5i +1.2i +1.0i +1.0i
	$tnoun	$number	$number	$number
	$tnoun	$number	$number	$number
	$tadj $tnoun	$number	$number	$number
	$tnoun	$number	$number	$number
.fi
%%
.sp
.ti +0.5i
$tnoun $tnoun, $tnoun, $number $tnoun
.sp)"},
};

} // namespace

Report::Report(const ReportStyle& style)
    : m_style(style),
      m_grammar({technicalWords(), names(), reportSentences(), kDisplays}, style.flatnessPercent),
      m_text(m_grammar, style.seed), m_flow(style.widthColumns) {
    m_text.setCoinedShare(style.coinedPerMille);
}

void Report::section(std::string_view headingTemplate, std::size_t sizeBytes) {
    m_text.setTopic(++m_topic, m_style.topicSharePerMille, kTopicWords);
    const std::size_t end = m_flow.sizeBytes() + sizeBytes;
    line(headingTemplate);
    while (m_flow.sizeBytes() < end) {
        m_text.random().chance(kDisplayPerMille) ? display() : paragraph();
    }
}

void Report::paragraph() {
    m_flow.line(m_style.paragraphCommand);
    for (int sentences = m_text.random().between(2, 7); sentences > 0; --sentences) {
        sentence();
    }
    m_flow.endParagraph();
}

void Report::sentence() {
    m_flow.fill(m_text.expand("$(statement:cap)"));
    if (m_text.random().chance(m_style.emphasisPerMille)) {
        m_flow.fill(m_text.expand("$(thow:cap), $tclause: $aside $tdoes."));
    }
    if (m_text.random().chance(m_style.lineBreakPerMille)) {
        m_flow.endParagraph();
    }
}

void Report::display() {
    m_flow.line(m_text.expand("$display"));
}

} // namespace corpus
