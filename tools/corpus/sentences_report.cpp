#include "sentences.h"

namespace corpus {

namespace {

constexpr Rule kRules[] = {
    {"tthe", Split::Lines, kBroad, R"(
        the $tnoun
        the $tadj $tnoun
        the $tnoun $tnoun
        $(tadj:an) $tnoun
        this $tnoun
        each $tnoun
        $(tnoun:an)
        the $tnoun of the $tnoun
        $tabstract
        $tadj $tabstract
        the $tadj $tnoun of $(tadj:an) $tnoun
        any $tnoun
        the $tnoun that $tdoes
        the $tabstract of $(tnoun:pl)
        every $tadj $tnoun
        the $tabstract of the $tnoun
        a number of $(tnoun:pl)
        one $tnoun)"},
    {"tthem", Split::Lines, kZipf, R"(
        the $(tnoun:pl)
        $tadj $(tnoun:pl)
        $(tnoun:pl)
        these $(tnoun:pl)
        most $(tnoun:pl)
        $numword $(tnoun:pl)
        the $(tnoun:pl) of the $tnoun
        $tnoun $(tnoun:pl)
        many $tadj $(tnoun:pl)
        $(tnoun:pl) and $(tnoun:pl)
        such $(tnoun:pl))"},
    {"tobj", Split::Lines, kEven, R"(
        $tthe
        $tthem
        $tthe
        $tthem
        $tthe
        $tthe
        it)"},
    {"tdoes", Split::Lines, kBroad, R"(
        is $(tadv) $(tverb:en)
        $(tverb:s) $tobj
        is $tadj
        can be $(tverb:en) by $tobj
        must be $(tverb:en)
        is $(tverb:en) in $tobj
        $(tverb:s) $tobj from $tobj
        may $tverb $tobj
        depends on $tobj
        is $(tverb:en)
        will $tverb $tobj
        has been $(tverb:en)
        cannot $tverb $tobj
        is $(tadj:an) $tnoun
        does not $tverb $tobj
        $(tadv) $(tverb:s) $tobj
        is used to $tverb $tobj
        was $(tverb:en) for $tobj
        is $(tadj) if $tthe is $tadj
        should be $(tverb:en) before $tobj)"},
    {"tdo", Split::Lines, kZipf, R"(
        are $(tverb:en)
        $tverb $tobj
        can be $(tverb:en) from $tobj
        are $tadj
        are $(tadv) $(tverb:en) by $tobj
        have been $(tverb:en)
        may be $(tverb:en) in $tobj
        must $tverb $tobj
        were $(tverb:en) with $tobj
        $tverb $tobj, and $tverb $tobj
        do not $tverb $tobj)"},
    {"tclause", Split::Lines, kZipf, R"(
        $tthe $tdoes
        $tthem $tdo
        it is $tadj to $tverb $tobj
        we $tverb $tobj
        there is $(tadj:an) $tnoun for $tobj
        one can $tverb $tobj
        it $tdoes
        they $tdo
        $(tverb:ing) $tobj $tdoes
        there are $numword $(tnoun:pl)
        the $tnoun $tdoes and $tdoes)"},
    {"thow", Split::Lines, kZipf, R"(
        however
        in $tobj
        for example
        for $tobj
        if $tclause
        when $tclause
        in this case
        unless $tclause
        because $tclause
        in general
        of course
        to $tverb $tobj
        in order to $tverb $tobj
        by $(tverb:ing) $tobj
        with $tobj
        as $tclause
        although $tclause
        at the same time
        on the other hand
        after $(tverb:ing) $tobj
        in practice)"},
    {"statement", Split::Lines, kZipf, R"(
        $tclause.
        $thow, $tclause.
        $tclause, and $tclause.
        $tclause $tlink $tclause.
        $tclause; $tclause.
        $tclause, $tlink $tclause.
        $thow, $tclause, and $tclause.
        $tclause ($tclause).
        $tthe $tdoes, $(tverb:ing) $tobj.
        the $(tnoun:pl) of $tobj -- $(tnoun:pl), $(tnoun:pl), and $(tnoun:pl) -- $tdo.
        $tclause: $tclause.
        what is $tadj is that $tclause.
        $tclause, $thow.
        note that $tclause.
        suppose $tclause.
        $(tthe) $tdoes $tlink $tdoes.)"},
    {"tlink", Split::Lines, kZipf, R"(
        and
        but
        so
        so that
        because
        when
        if
        since
        while
        although
        where
        whereas
        even though
        as soon as
        until)"},
    {"theading", Split::Lines, kZipf, R"(
        $tfield
        the $tnoun of $(tnoun:pl)
        $(tverb:ing) $tnoun $(tnoun:pl)
        $tadj $(tnoun:pl)
        $tabstract and $tabstract
        $tadj $tabstract of $(tnoun:pl))"},
};

} // namespace

RuleBook reportSentences() {
    return kRules;
}

} // namespace corpus
