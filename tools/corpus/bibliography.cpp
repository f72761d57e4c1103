// bib: literature references, one field per line under a percent sign and a letter, sorted by the
// first author.
#include <algorithm>
#include <utility>
#include <vector>

#include "expander.h"
#include "files.h"
#include "sentences.h"
#include "textflow.h"
#include "vocabulary.h"

namespace corpus {

namespace {

constexpr unsigned kFlatnessPercent = 100;

// Most references are about the few fields that the collector works in.
constexpr int kTopicSharePerMille = 300;
constexpr int kTopicWords = 60;

constexpr Rule kRules[] = {
    {"author", Split::Lines, kEven, "%A $surname, $initials"},
    {"authors", Split::Blocks, kZipf, R"(
$author
%%
$author
$author
%%
$author
%%
$author
$author
$author
%%
$author
$author)"},
    {"entry", Split::Blocks, kZipf, R"(
$authors
%D $year
%T $(worktitle:cap)
%J $journal
%V $volume
%N $d19
%P $pages$tail
%%
$authors
%D $year
%T $(worktitle:cap)
%B $meeting
%C $city
%P $pages$tail
%%
$authors
%D $year
%T $(worktitle:cap)
%J $journal
%V $volume
%P $pages
%O $month$tail
%%
$authors
%D $year
%T $(worktitle:cap)
%I $publisher
%C $city$tail
%%
$authors
%D $year
%T $(worktitle:cap)
%R $report
%I $institute
%C $city$tail
%%
$authors
%D $year
%T $(worktitle:cap)
%J $journal
%V $volume
%N $d19
%P $pages
%O $month
%X $(statement:cap)
$(statement:cap)$tail
%%
$authors
%D $year
%T $(worktitle:cap)
%E $initials $surname and $initials $surname
%B $(worktitle:cap)
%I $publisher
%C $city
%P $pages$tail
%%
$authors
%D $year
%T $(worktitle:cap)
%O Ph.D. thesis
%I $institute
%C $city$tail)"},
    {"tail", Split::Lines, kEven, R"(
        $nothing
        $nothing
        $nothing
        $keywords
        $nothing)"},
    {"keywords", Split::Blocks, kZipf, R"(
$nothing
%K *
%%
$nothing
%K $tnoun $tnoun
%%
$nothing
%K $tabstract $tnoun
%O $month)"},
    {"year", Split::Words, kZipf, R"(
        1984 1985 1983 1986 1982 1981 1980 1979 1978 1987 1977 1976 1975 1974 1972 1973 1971 1969
        1970 1968 1966 1967 1965 1963 1964)"},
    {"volume", Split::Words, kZipf, R"(
        12 7 21 26 5 3 14 9 18 30 C-28 2 33 8 11 17 24 4 6 1 19 22 16 10 13 15 41 37 64 103)"},
    {"ordinal", Split::Words, kZipf, R"(
        Third Fifth Second Fourth Seventh First Sixth Ninth Tenth Eighth Twelfth 15th 21st 30th)"},
    {"worktitle", Split::Lines, kZipf, R"(
        $tfield
        $tfield in $tfield
        on the $tabstract of $(tnoun:pl)
        $(tnoun:an) for $tfield
        $tfield: a survey
        $(tverb:ing) $(tnoun:pl) by $tfield
        the $tnoun $tnoun and its $tabstract
        $tfield and $tfield
        $(tadj:an) $tnoun for $(tverb:ing) $tadj $(tnoun:pl)
        a comparison of $tnoun and $tnoun $(tnoun:pl)
        $tadj $tabstract for $tnoun $(tnoun:pl)
        some $(tnoun:pl) in the $tabstract of $tadj $(tnoun:pl)
        towards $tadj $tfield
        an introduction to $tfield
        $tfield with $tadj $(tnoun:pl)
        $(tadv) $tadj $(tnoun:pl) and the $tabstract of $(tnoun:pl)
        using $tfield to $tverb $(tnoun:pl))"},
    {"journal", Split::Lines, kZipf, R"(
        Trans Measurement Soc
        J Applied Computation
        Int J Measuring Machines
        Software in Practice
        Computing Notes
        J Tidal Research
        Proc Inst Survey Engineers, Part $d19
        Archives of Information Processing
        Bulletin of the $(tabstract:cap) Society
        J $(tabstract:cap) and $(tabstract:cap)
        Annals of $(tabstract:cap)
        $(tabstract:cap) Letters
        Computers and $(tabstract:cap)
        European J of $(tabstract:cap))"},
    {"meeting", Split::Lines, kZipf, R"(
        Proc Int Conference on $(tabstract:cap)
        Proc $ordinal Annual Symposium on $(tabstract:cap) and $(tabstract:cap)
        Proc National Measurement Conference
        Proc Workshop on $(tfield:cap)
        $(tfield:cap), edited by $initials $surname
        Proc Joint Computing Conference)"},
    {"publisher", Split::Lines, kZipf, R"(
        Harbour and Sons
        North Quay Press
        Whitlock
        University of $city Press
        $surname and $surname
        Measuring House)"},
    {"institute", Split::Lines, kZipf, R"(
        Department of Computing, University of $city
        Department of $(tabstract:cap), $city Institute
        $surname Laboratories
        National $(tabstract:cap) Centre)"},
    {"report", Split::Lines, kZipf, R"(
        Research Report $two-$three
        Technical Report $four
        Memorandum $two
        Internal Report $two/$d19)"},
};

} // namespace

std::string makeBibliography(std::size_t sizeBytes) {
    const Grammar grammar({technicalWords(), names(), reportSentences(), kRules}, kFlatnessPercent);
    Expander text(grammar, 5);
    text.setTopic(1, kTopicSharePerMille, kTopicWords);
    text.bind("nothing", "");
    std::vector<std::string> entries;
    for (std::size_t bytes = 0; bytes < sizeBytes; bytes += entries.back().size()) {
        const int firstPage = text.random().between(1, 1900);
        const int lastPage = firstPage + text.random().between(2, 40);
        text.bind("pages", std::to_string(firstPage) + "-" + std::to_string(lastPage));
        entries.push_back(text.expand("$entry\n\n"));
    }
    std::sort(entries.begin(), entries.end());
    std::string all;
    for (const std::string& entry : entries) {
        all += entry;
    }
    return fitTo(std::move(all), sizeBytes);
}

} // namespace corpus
