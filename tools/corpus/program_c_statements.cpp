#include "program.h"

namespace corpus {

namespace {

constexpr Rule kRules[] = {
    {"body", Split::Blocks, kZipf, R"(
$stmt
$stmt
$stmt
%%
$stmt
$stmt
%%
$stmt
$stmt
$stmt
$stmt
%%
$stmt

/* $note */
$stmt
$stmt
$stmt
%%
$stmt
#ifdef DEBUG
printf("$f: $tnoun %d\n", $var);
#endif
$stmt
$stmt)"},
    {"stmt", Split::Blocks, kZipf, R"(
$assign
%%
$assign		/* $note */
%%
$call;
%%
if ($cond)
	$simple
%%
if ($cond) {
	$stmt
	$stmt
}
%%
for ($v2 = 0; $v2 < $const; $v2++)
	$simple
%%
if (($var = $call) == NULL)
	$failure
%%
while ($cond) {
	$stmt
	$stmt
}
%%
/*
 * $(statement:cap)
 */
$stmt
%%
if ($cond)
	$simple
else
	$simple
%%
while (($var = getc($var)) != EOF)
	if ($var == '\n')
		$simple
%%
do {
	$stmt
} while ($cond);
%%
strcpy($var, "$tnoun");
%%
if ($cond)
	return($atom);)"},
    {"simple", Split::Lines, kZipf, R"(
        $assign
        $call;
        return($atom);
        $(var)++;
        $var->$member = $expr;
        goto out;)"},
    {"assign", Split::Lines, kZipf, R"(
        $var = $expr;
        $var->$member = $expr;
        $var[$var] = $expr;
        $var += $expr;
        *$(var)++ = $expr;
        $var = $call;
        $(var)++;
        $var &= ~$const;
        $var |= $const;)"},
    {"failure", Split::Blocks, kEven, R"(
error("$tverb: $tadj $tnoun", $var);
%%
fprintf(stderr, "$g1: can't $tverb $tnoun %s\n", $var);
%%
fatal("$tadj $tnoun");)"},
    {"var", Split::Lines, kZipf, R"(
        $v1
        $v2
        $v3
        $v4
        $g3
        $g4
        $g6
        $g7
        $g8)"},
    {"member", Split::Lines, kZipf, R"(
        $m1
        $m2
        $m3
        $m4)"},
    {"atom", Split::Lines, kZipf, R"(
        $var
        $size
        $const
        $var->$member
        $var[$var]
        *$var
        -1
        $g5[$var])"},
    {"expr", Split::Lines, kZipf, R"(
        $atom
        $atom + $atom
        $call
        $atom - 1
        ($atom << $d19) | $atom
        $atom * sizeof(struct $g2)
        &$g5[$atom]
        $atom & 0$digit$digit
        $atom ? $atom : $atom
        ($expr) / $atom
        (struct $g2 *) malloc($expr))"},
    {"cond", Split::Lines, kZipf, R"(
        $var == $atom
        $var < $atom
        $var != NULL
        $var > $const
        $var->$member == $atom
        $call
        !$call
        $cond && $cond
        *$var == '$letter'
        isdigit(*$var)
        strcmp($var, $var->$m3) == 0
        $var >= $atom || $cond)"},
    {"call", Split::Lines, kZipf, R"(
        $f1($var)
        $f2($atom, $var)
        $f3($var)
        $f4($atom)
        $f5()
        $f6($var, $atom)
        strlen($var)
        $f7($var->$member)
        $f8(&$var, $atom)
        sprintf($var, "%d $tnoun", $atom)
        printf("$tadj $tnoun: %s\n", $var))"},
};

} // namespace

RuleBook cStatements() {
    return kRules;
}

} // namespace corpus
