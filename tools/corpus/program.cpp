#include "program.h"

#include <algorithm>

namespace corpus {

namespace {

constexpr Rule kRules[] = {
    {"ident", Split::Lines, kSteep, R"(
        $root
        $(root)_$root
        $verbroot_$root
        $root$root
        $(root)$d19)"},
    {"short", Split::Words, kZipf, R"(
        i n p c s j k x len buf fp t q m y cnt ptr tmp ch lim lo hi pos off np res nb w h r tab cur
        prev old new last first max min left right total depth level)"},
    {"root", Split::Words, kBroad, R"(
        node line tab buf word file list name sym key mark char page block entry field queue slot
        task rec hdr tok expr arg opt err msg win row col cell tree leaf link edge path step time
        clk rate gauge tide port tty path dev bit mask flag count size width depth base top end
        next prev head tail free max min sum avg var val num str text item set map pool heap stack
        frame scope type kind mode state event rule stmt item group unit scale level)"},
    {"verbroot", Split::Words, kBroad, R"(
        get put set add del find read write init open close next push pop make free copy move scan
        skip test show print parse match sort merge split join eval emit load save dump clear check
        count fill flush link lock mark merge reset send start stop swap trim update)"},
    {"funcname", Split::Lines, kZipf, R"(
        $verbroot$root
        $(verbroot)_$root
        $verbroot$root$root
        is_$root
        $root$verbroot)"},
    {"note", Split::Lines, kZipf, R"(
        $verbroot the $tnoun
        $tadj $tnoun
        number of $(tnoun:pl)
        $tnoun of the $tnoun
        $(tverb:s) the $tnoun
        $tthe $tdoes
        no more $(tnoun:pl)
        $tadj $tnoun?
        $tnoun $tnoun
        we $tverb $tobj here)"},
    {"about", Split::Lines, kZipf, R"(
        $tverb $tobj
        $tverb $tobj, and $tverb $tobj
        $tverb the $tnoun if $tclause
        returns the $tnoun of the $tnoun
        $tclause, so $tverb $tobj)"},
};

} // namespace

RuleBook programWords() {
    return kRules;
}

ProgramNames::ProgramNames(Expander& text, int locals, int globals, int functions)
    : m_text(text), m_locals(locals), m_functions(functions) {
    for (int i = 1; i <= globals; ++i) {
        bindNumbered('g', i, freshName("$ident"));
    }
    for (int i = 1; i <= functions; ++i) {
        bindNumbered('f', i, freshName("$funcname"));
    }
}

void ProgramNames::startFunction() {
    m_current = freshName("$funcname");
    m_text.bind("f", m_current);
    std::vector<std::string> taken;
    for (int i = 1; i <= m_locals;) {
        const std::string name = m_text.expand("$short");
        if (std::find(taken.begin(), taken.end(), name) == taken.end()) {
            bindNumbered('v', i, name);
            taken.push_back(name);
            ++i;
        }
    }
}

void ProgramNames::finishFunction() {
    bindNumbered('f', m_oldest + 1, m_current);
    m_oldest = (m_oldest + 1) % m_functions;
}

void ProgramNames::bindNumbered(char kind, int number, const std::string& value) {
    m_text.bind(kind + std::to_string(number), value);
}

std::string ProgramNames::freshName(std::string_view rule) {
    std::string name = m_text.expand(rule);
    while (std::find(m_used.begin(), m_used.end(), name) != m_used.end()) {
        name = m_text.expand(rule);
    }
    m_used.push_back(name);
    return name;
}

} // namespace corpus
