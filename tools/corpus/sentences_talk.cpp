#include "sentences.h"

namespace corpus {

namespace {

constexpr Rule kTalk[] = {
    {"said", Split::Lines, kZipf, R"(
        $(say:ed) $hero
        $(say:ed) $heroine
        he $(say:ed)
        she $(say:ed)
        $(say:ed) the $person
        he $(say:ed) $adv
        $(say:ed) $villain, $adv
        $(say:ed) $hero, $(handle:ing) $what
        she $(say:ed), $when
        $(say:ed) the $trait $person)"},
    {"you", Split::Lines, kBroad, R"(
        $pron $(feel:ed) $whom
        $pron $modal $handle $what
        $pron $modal $think $thought
        $pron $modal $handle $mine $thing
        $pron $modal $move $where
        'tis $(adj:an) $thing
        $pron had $(feel:en) $whom
        I have never $(think:en) $thought
        they say $who $did
        I am $degree $trait
        $pron $modal $feel $mine $person
        there's $what $where
        'tis $mine $idea, not $mine $idea
        I'll $feel $whom
        $who $did
        let us $move $where
        you are $(trait:an) $person
        $pron $modal $feel $whom $where
        $mine $person $did
        he's $trait, and $pron $modal $move $where
        'twas $mine $idea that $(feel:ed) $mine $person
        $pron $(handle:ed) $mine $thing $where
        $mine $thing was $adj
        $mine $person $modal $handle $mine $thing)"},
    {"call", Split::Lines, kZipf, R"(
        have you $(feel:en) $whom ?
        ah, $you !
        why, $you !
        will you $handle $what, $vocative ?
        what $idea was $mine $idea ?
        oh, $vocative !
        who $(handle:ed) $what ?
        do you $feel $whom ?
        and $you ?
        $mine $person ?
        how $trait $pron $(move:ed) !)"},
    {"utterance", Split::Lines, kZipf, R"(
        $you.
        $call
        $you, $vocative.
        $you, and $you.
        well, $you.
        $call
        no, $vocative ; $you.
        and $you, $you.
        if $you, $you.
        yes, $you.
        $you -- $you.
        $you ; but $you.)"},
    {"vocative", Split::Lines, kZipf, R"(
        sir
        $hero
        $heroine
        my dear
        ma'am
        neighbour
        lad
        $person
        Miss $surname)"},
    {"speech", Split::Lines, kZipf, R"T(
        "$(utterance:cap)"
        "$(call:cap)" $said.
        "$(you:cap)," $said. "$(utterance:cap)"
        "$(utterance:cap) $(utterance:cap)"
        "$(utterance:cap) $(you:cap)," $said.
        $(clause:cap). "$(utterance:cap)"
        "$(utterance:cap) $(utterance:cap) $(utterance:cap)")T"},
};

} // namespace

RuleBook storyTalk() {
    return kTalk;
}

} // namespace corpus
