#include "sentences.h"

namespace corpus {

namespace {

constexpr Rule kParts[] = {
    {"who", Split::Lines, kZipf, R"(
        he
        she
        the $person
        $hero
        $heroine
        they
        the $trait $person
        $villain
        his $person
        her $person
        Mr. $elder
        the $person of $town
        one of the $(person:pl)
        every $person in $town
        neither of them
        the others
        nobody
        the $person at the $spot
        old $man
        $lady
        $man $surname
        the $person's $person
        Mrs. $surname
        the $trait, $trait $person)"},
    {"whom", Split::Lines, kZipf, R"(
        him
        her
        them
        the $person
        $hero
        $heroine
        the $trait $person
        $villain
        old $man
        a $person in $adj $thing
        the $(person:pl)
        Mr. $surname
        his $person
        her $trait $person
        so $trait a $person
        $lady
        the $beast
        $(trait:an) $person)"},
    {"modal", Split::Words, kZipf, R"(
        would could must should might will can had+to may shall never+could need+not dare+not
        used+to ought+to cannot won't didn't does+not were+to hoped+to meant+to tried+to failed+to
        began+to seemed+to chose+to had+better would+rather could+but wished+to came+to)"},
    {"pron", Split::Words, kZipf, R"(I you he she we they it one who)"},
    {"mine", Split::Words, kZipf, "my your his her our their the a that this any some no such+a"},
    {"det", Split::Words, kSteep, R"(
        the the the his her this the that some their another every no any our each either)"},
    {"what", Split::Lines, kBroad, R"(
        $det $thing
        $det $adj $thing
        his $thing
        her $thing
        $(adj:an) $thing
        the $(thing:pl)
        $(thing:an)
        the $person's $thing
        the $adj $(thing:pl)
        $numword $(thing:pl)
        $(adj:an), $adj $thing
        $det $thing and $det $thing
        some $(thing:pl)
        $(thing:an) of $adj $thing
        her $person's $thing
        the last of the $(thing:pl)
        his own $thing
        $det $adj $thing from $town
        that $thing
        a pair of $(thing:pl)
        $det $thing upon $det $spot)"},
    {"thought", Split::Lines, kBroad, R"(
        $det $idea
        his $idea
        her $idea
        $(idea:an)
        no $idea
        $det $idea of the $person
        some $adj $idea of $idea
        nothing but $idea
        $det $idea of $(feel:ing) $whom
        all her $idea
        such $(idea:an)
        the $person's $idea
        what the $person called $idea
        $det $idea and $det $idea of $whom
        so much $idea
        a kind of $idea
        $idea and $idea
        that $idea of $town
        the $degree $adj $idea)"},
    {"where", Split::Lines, kBroad, R"(
        in $det $spot
        at $det $spot
        by $det $spot
        on $det $spot
        near $det $spot
        behind $det $adj $spot
        under $det $spot
        beyond $det $spot
        across $det $spot
        along $det $adj $spot
        against $det $spot
        among the $(spot:pl)
        beside $det $spot
        before $det $spot
        through $det $spot
        over the $(spot:pl)
        towards $town
        in $town
        from $det $spot to $det $spot
        above $det $spot
        round $det $spot
        below $det $spot
        up $det $spot
        down $det $adj $spot
        between $det $spot and $det $spot
        upon $det $spot of the $person
        within sight of $det $spot
        on the other side of $det $spot
        at the foot of $det $spot
        out of $det $adj $spot
        into $det $spot
        past the $person's $spot
        in the $weather
        half-way to $town)"},
};

constexpr Rule kClauses[] = {
    {"did", Split::Lines, kBroad, R"(
        $(handle:ed) $what
        $(feel:ed) $whom
        $(move:ed) $where
        $still $(move:ed) $where
        was $still $(handle:ing) $what
        $still $(feel:ed) $whom
        $(handle:ed) $what $still, and $(move:ed) $where
        had $(handle:en) $what
        $(move:ed) $adv
        $(feel:ed) $whom $where
        $(handle:ed) $what $where
        was $degree $trait
        $modal $feel $whom
        $modal $handle $what
        had $(move:en) $where
        $adv $(handle:ed) $what
        was $(move:ing) $where
        was $(handle:ing) $what
        $modal $feel $whom, or $move $where
        $modal $feel $whom
        $modal $think $thought
        might have $(think:en) $thought
        $modal $move $where
        $modal $move $where again
        $(move:ed) $adv $where
        was more $trait than $whom
        had been $(feel:en) by $whom
        $(feel:ed) $whom and $(move:ed) $adv
        $(handle:ed) $what with $(idea:an)
        was too $trait for $thought
        had no $thing to $handle
        felt that $who had $(feel:en) $whom
        knew $adv that $who would $move $where
        thought of $thought
        $(think:ed) $thought
        looked $trait
        gave $whom $what
        told $whom that $who $did
        laid his $part upon the $thing
        turned her $part to $whom
        had not $(think:en) $thought since the $weather
        with $(trait:an) $part $(feel:ed) $whom)"},
    {"when", Split::Lines, kZipf, R"(
        when $who $did
        as $who $did
        while $who $did
        before $who $did
        since $who $did
        until $who $did
        in the $adj $weather
        that $weather
        at that moment
        for $numword days
        during the $idea
        without $(handle:ing) $what
        in spite of $thought
        with $(adj:an) $idea
        though $who $did
        on the following $weather
        having $(handle:en) $what
        $(feel:ing) $whom $where
        $(move:ing) $where
        once or twice
        as if $who had $(feel:en) $whom
        with her $part in the $thing
        $degree $trait
        after the $adj $idea
        in those days)"},
    {"clause", Split::Lines, kZipf, R"(
        $who $did
        $who $did, and $did
        $who $did $when
        there was $(adj:an) $thing $where
        the $weather $(blow:ed)
        $who, who $did, $did
        the $spot was $adj
        the $weather $(blow:ed) $where
        it was $what that $who $(handle:ed)
        $who and $who $did
        the $(beast:pl) $(move:ed) $where
        $thought $(feel:ed) $whom
        what $who $(think:ed) was $thought
        his $part was $adj
        there was $thought in her $part
        the $spot lay $adj and $adj in the $weather
        $(beast:an) $(move:ed) $where)"},
    {"narration", Split::Lines, kZipf, R"(
        $clause.
        $clause, and $clause.
        $when, $clause.
        $clause ; and $clause.
        $clause, but $clause.
        $clause, $when.
        $clause, for $clause.
        $clause -- $clause.
        $when, $clause ; $clause.
        $where $clause.
        $adv $clause.
        $clause, so that $clause.
        but $clause.
        and yet $clause, $when, and $clause.
        $clause, $(handle:ing) $what, and $(feel:ing) $whom.
        $clause : $clause ; $clause ; and $clause.
        never had $who $(feel:en) so $trait a $person.
        it was the $idea of $(trait:an) $person, $trait and $trait.
        $clause, as $(person:pl) will, $when.
        $when, and $when, $clause.)"},
    {"title", Split::Lines, kZipf, R"(
        the $spot and the $spot
        $what $where
        $idea and its $(idea:pl)
        $where -- $(trait:an) $person
        what the $person $(handle:ed)
        $(handle:ing) the $thing -- $idea
        $idea $where -- $who $did)"},
};

} // namespace

RuleBook storyParts() {
    return kParts;
}

RuleBook storyClauses() {
    return kClauses;
}

} // namespace corpus
