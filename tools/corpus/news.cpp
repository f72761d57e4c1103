// news: a spool of articles from many discussion groups, each behind its batch line and header,
// with quotations of earlier articles and signatures.
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

constexpr unsigned kFlatnessPercent = 300;

// An article is about one thing.
constexpr int kTopicSharePerMille = 200;
constexpr int kTopicWords = 20;

// Names of products, people and machines in place of listed words.
constexpr int kCoinedPerMille = 120;

constexpr std::size_t kLineColumns = 72;

// Quotations come from the articles that are still in the readers' minds.
constexpr std::size_t kRememberedArticles = 8;
constexpr int kReplyPerMille = 350;

// Articles that carry a small program as encoded bytes: nothing in them repeats, as in the parts
// of a real spool that are no prose.
constexpr int kEncodedPerMille = 40;
constexpr int kEncodedLines = 22;

constexpr Rule kRules[] = {
    {"site", Split::Words, kZipf, R"(
        norsk tamarix bluejay mtview redoak calvin quark zephyr heron osprey lakes uncity polaris
        dalton kestrel gamma6 pinetree watnet orchid granite pdx9 inca vega cobalt harbor mimas
        teknor elmwood plover sable ivory rigel merlin juniper axon delta4 cypress bison onyx
        nimbus larch titan corona umber falcon basalt willow atlas fjord amber loki raven)"},
    {"localsite", Split::Lines, kSteep, R"(
        $site
        $onset$rime$site
        cs-$site
        $onset$rime
        $onset$rime$d19)"},
    {"domain", Split::Words, kZipf, "UUCP EDU COM ARPA UUCP ac.uk SE BITNET MIL CA"},
    {"hops", Split::Lines, kZipf, R"(
        $site!$site
        $site!$site!$site
        $site!$localsite!$site
        $site!$site!$site!$localsite)"},
    {"group", Split::Lines, kZipf, R"(
        comp.sys.$onset$rime
        rec.$plain_topic
        comp.$plain_topic
        sci.$plain_topic
        talk.$plain_topic
        comp.sources.$plain_topic
        misc.$plain_topic
        soc.culture.$onset$rime)"},
    {"plain_topic", Split::Words, kZipf, R"(
        misc music boats maps weather graphics lang.misc cooking gardens physics terminals motors
        trains audio astronomy sailing chess databases jobs houses printers politics models bikes
        fishing clocks history compilers networks farming languages rivers engineering forsale)"},
    {"org", Split::Lines, kZipf, R"(
        University of $city, Dept. of $(tabstract:cap)
        $surname $(tabstract:cap) Inc., $city
        Institute of $(tabstract:cap), $city
        $surname and $surname, $city
        The $adj $thing, $city
        $city $(tabstract:cap) Laboratories)"},
    {"signature", Split::Blocks, kZipf, R"T(
--
$poster   $address
$organisation
%%
	$poster
	$hops!$login
%%
-- $poster
%%
--
"$(clause_of_day:cap)"
	$poster, $organisation, tel. $three-$four
	UUCP: ...!$hops!$login
%%
--$login)T"},
    {"clause_of_day", Split::Lines, kEven, R"(
        $adj $(thing:pl) make $adj $(person:pl).
        never $handle $(thing:an) in the $weather.
        the $tnoun is the $tnoun.)"},
    {"table", Split::Blocks, kZipf, R"(
	$tnoun	$number	$number
	$tnoun	$number	$number
	$tnoun	$number	$number
	$tadj $tnoun	$number
%%
    1)  $(tnoun:cap) $tnoun ($surname)
    2)  $(tadj:cap) $tnoun
    3)  $(thing:pl) and $(thing:pl)
    4)  $cobj
%%
		$forename $surname
		$two $surname Street
		$city
		$three-$four)"},
    {"header", Split::Blocks, kEven, R"(
Path: $hops!$localhost!$login
From: $address ($poster)
Newsgroups: $newsgroup
Subject: $subject_line
Message-ID: $id
Date: $dayno $mon 88 $hhmm:$sixth$digit GMT
$reference
Organization: $organisation
Lines: $lines)"},
};

struct Article {
    std::string id;
    std::string from;
    std::string subject;
    std::string group;
    std::vector<std::string> lines;
};

class Spool {
public:
    Spool()
        : m_grammar({everydayNouns(), everydayVerbsAndAdjectives(), technicalWords(), names(),
                     reportSentences(), chatSentences(), kRules},
                    kFlatnessPercent),
          m_text(m_grammar, 6) {
        m_text.setCoinedShare(kCoinedPerMille);
    }

    std::string write(std::size_t sizeBytes) {
        std::string all;
        while (all.size() < sizeBytes) {
            const std::string article = writeArticle();
            all += "#! rnews " + std::to_string(article.size()) + "\n" + article;
        }
        return fitTo(std::move(all), sizeBytes);
    }

private:
    std::string writeArticle() {
        m_text.setTopic(++m_topic, kTopicSharePerMille, kTopicWords);
        const bool isReply = !m_recent.empty() && m_text.random().chance(kReplyPerMille);
        const Article* const parent = isReply ? &m_text.random().pick(m_recent) : nullptr;
        Article article = startArticle(parent);
        TextFlow body(kLineColumns);
        if (parent != nullptr) {
            quote(*parent, body);
        }
        writeBody(body);
        article.lines = linesOf(body.text());
        m_text.bind("lines", std::to_string(article.lines.size()));
        std::string text = m_text.expand("$header\n\n") + body.text();
        remember(std::move(article));
        return text;
    }

    // Binds the fields of the header, which the signature uses again.
    Article startArticle(const Article* parent) {
        Article article;
        m_text.bindFrom("localhost", "$localsite");
        m_text.bindFrom("dom", "$domain");
        m_text.bindFrom("login", "$onset$rime");
        m_text.bindFrom("poster", "$forename $surname");
        m_text.bindFrom("organisation", "$org");
        article.from = m_text.bindFrom("address", "$login@$localhost.$dom");
        article.id = m_text.bindFrom("id", "<$four@$localhost.$dom>");
        article.group = parent != nullptr ? parent->group : m_text.expand("$group");
        article.subject = parent != nullptr ? parent->subject : m_text.expand("$(subject:cap)");
        m_text.bind("newsgroup", article.group);
        m_text.bind("subject_line", (parent != nullptr ? "Re: " : "") + article.subject);
        m_text.bind("reference", parent != nullptr ? "References: " + parent->id
                                                   : "Keywords: " + m_text.expand("$tnoun"));
        return article;
    }

    void quote(const Article& parent, TextFlow& body) {
        body.line("In article " + parent.id + ", " + parent.from + " writes:");
        const auto count = static_cast<std::uint32_t>(parent.lines.size());
        const std::uint32_t first = m_text.random().below(count);
        const std::uint32_t last = std::min(count, first + 3 + m_text.random().below(8));
        for (std::uint32_t i = first; i < last; ++i) {
            body.line("> " + parent.lines[i]);
        }
        body.line("");
    }

    void writeBody(TextFlow& body) {
        for (int paragraphs = m_text.random().between(1, 6); paragraphs > 0; --paragraphs) {
            for (int sentences = m_text.random().between(1, 6); sentences > 0; --sentences) {
                body.fill(m_text.expand("$(remark:cap)"));
            }
            body.line("");
            if (m_text.random().chance(120)) {
                body.line(m_text.expand("$table\n"));
            }
        }
        if (m_text.random().chance(kEncodedPerMille)) {
            writeEncoded(body);
        }
        body.line(m_text.expand("$signature"));
    }

    // The usual six-bit encoding: a length letter ("M" for 45 bytes) and characters from 32 on.
    void writeEncoded(TextFlow& body) {
        body.line(m_text.expand("begin 644 $onset$rime.arc"));
        for (int i = 0; i < kEncodedLines; ++i) {
            std::string line = "M";
            for (int column = 0; column < 60; ++column) {
                const auto sixBits = static_cast<char>(m_text.random().below(64));
                line.push_back(sixBits == 0 ? '`' : static_cast<char>(' ' + sixBits));
            }
            body.line(line);
        }
        body.line("`\nend\n");
    }

    static std::vector<std::string> linesOf(const std::string& text) {
        std::vector<std::string> lines;
        for (std::size_t at = 0; at < text.size();) {
            const std::size_t end = text.find('\n', at);
            lines.push_back(text.substr(at, end - at));
            at = end + 1;
        }
        return lines;
    }

    void remember(Article article) {
        m_recent.push_back(std::move(article));
        if (m_recent.size() > kRememberedArticles) {
            m_recent.erase(m_recent.begin());
        }
    }

    Grammar m_grammar;
    Expander m_text;
    std::vector<Article> m_recent;
    int m_topic = 0;
};

} // namespace

std::string makeNews(std::size_t sizeBytes) {
    return Spool().write(sizeBytes);
}

} // namespace corpus
