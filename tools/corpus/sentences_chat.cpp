#include "sentences.h"

namespace corpus {

namespace {

constexpr Rule kRules[] = {
    {"cobj", Split::Lines, kZipf, R"(
        the $tnoun
        my $tnoun
        a $tadj $tnoun
        the $thing
        $(thing:an)
        your $tnoun
        the $tnoun in my $spot
        $(tnoun:pl)
        the $adj $thing
        it
        this $tnoun
        some $(tnoun:pl)
        any $thing
        $tabstract
        the $surname $tnoun
        a used $thing
        $(thing:pl) and $(thing:pl)
        the $idea
        $tadj $tnoun $(tnoun:pl)
        $coined $tnoun
        $number $(tnoun:pl)
        another $thing)"},
    {"chap", Split::Lines, kZipf, R"(
        I
        you
        we
        people
        my $person
        someone at $city
        they
        $forename $surname
        most $(person:pl)
        the $(person:pl) here
        nobody
        the folks at $surname)"},
    {"might", Split::Words, kZipf, R"(
        can could would should will might may must can't won't don't didn't wouldn't shouldn't
        never rarely always just really still also already usually+would used+to have+to want+to
        need+to tried+to like+to hope+to ought+to couldn't had+better seem+to happen+to)"},
    {"does", Split::Lines, kZipf, R"(
        $might $tverb $cobj
        $might $tverb $cobj
        $might $tverb $cobj
        $might $handle $cobj
        $might $tverb $cobj with $cobj
        $might $handle $cobj
        $might $think $idea
        $might $tverb $cobj in $spot $number
        $might $feel my $person
        $might $tverb $cobj
        never $(tverb:ed) $cobj
        $(handle:ed) $cobj
        $(tverb:ed) $cobj last $weekday
        $might $tverb $cobj
        $might $handle $cobj
        just $(tverb:ed) $cobj)"},
    {"chat", Split::Lines, kBroad, R"(
        $chap $does
        I think $chap $does
        the $tnoun is $(adv) $tadj
        it's $degree $adj
        there's $cobj in $cobj
        that's $(adj:an) $thing
        I've $(tverb:en) $cobj for $numword years
        you'll $handle $cobj
        I don't know if $chap $does
        it seems that $chap $does
        $chap $does when $chap $does
        $cobj isn't $adj
        I'm looking for $cobj
        the $idea is that $chap $does
        what $chap $(tverb:ed) was $cobj
        I'd rather $tverb $cobj than $handle $cobj
        if $chap $does, $chap $does
        $cobj costs $$$number
        somebody $(handle:ed) $cobj in $city)"},
    {"remark", Split::Lines, kZipf, R"(
        $chat.
        $chat, but $chat.
        $chat.  $(chat:cap)!
        $chat -- $chat.
        does anyone know if $chap $does?
        $chat, and $chat.
        has anybody $(tverb:en) $cobj?
        as far as I know, $chat.
        $chat (or so $chap said).
        $chat...
        by the way, $chat.
        what about $cobj?
        $chat; $chat.
        I *do* think $chat.
        any $(idea:pl)?
        please $tverb $cobj before $month $dayno.
        yes, $chat.
        in my opinion, $chat.
        $(statement)
        who $does?
        on $weekday $chap $does, so $chat.
        sorry, $chat.)"},
    {"subject", Split::Lines, kZipf, R"(
        $tnoun $(tnoun:pl)
        $cobj wanted
        $adj $(thing:pl)
        $tfield
        looking for $cobj
        $(tverb:ing) $cobj
        $tadj $tnoun for sale
        $idea and $idea
        question about $(tnoun:pl)
        $surname $tnoun $number
        $town $thing $idea)"},
};

} // namespace

RuleBook chatSentences() {
    return kRules;
}

} // namespace corpus
