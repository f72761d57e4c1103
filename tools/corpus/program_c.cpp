// progc: a program in the C of the eighties, arguments declared behind the head of a function.
#include "expander.h"
#include "files.h"
#include "program.h"
#include "sentences.h"
#include "textflow.h"
#include "vocabulary.h"

namespace corpus {

namespace {

constexpr unsigned kFlatnessPercent = 100;

// The frame of the file: declarations and the heads of functions.
constexpr Rule kRules[] = {
    {"head", Split::Blocks, kEven, R"(
/*
 * $g1.c - $tverb $tobj.
 *
 * Authors:	$forename $surname	($site!$short$root)
 *		$forename $surname	($site!$short$root)
 *
 * $$Log:	$g1.c,v $$
 * Revision 3.2  86/0$d19/1$d19  1$d19:0$digit:2$digit  $root
 * $(about:cap).  $(about:cap).
 *
 * Revision 3.1  86/0$d19/0$d19  0$d19:1$digit:4$digit  $root
 * $(about:cap).
 *
 * Revision 2.4  85/0$d19/1$d19  1$d19:3$digit:0$digit  $root
 * $(about:cap); $tverb $tobj.
 */
static char ident[] = "@(#)$g1.c	3.2 (Measuring) $d19/1$d19/86";

#include <stdio.h>
#include <ctype.h>
#include <signal.h>
#include <utility>
#include "$g1.h"

$defines

$defines

$globals

$globals)"},
    {"letter", Split::Words, kEven, "a b c d e f h k m n o p r s t v x 0 . - : /"},
    {"site", Split::Words, kZipf, "quay harbor tarn mere"},
    {"macro", Split::Lines, kEven, R"(
        MAX$(root:up)
        $(root:up)SIZE
        $(root:up)_$(root:up)
        N$(root:up))"},
    {"size", Split::Words, kZipf, "256 1024 64 128 0 1 512 100 32 10 4096 16 80 40 0377 0177 8"},
    {"defines", Split::Blocks, kEven, R"(
#define	$macro	$size		/* $note */
#define	$macro	$size		/* $note */
#define	$macro	($const + 1)
%%
/*
 * $(about:cap).
 */
#define	$macro(x)	((x) & $const)
#define	$macro(x, y)	((x)->$m1 = (y)->$m2)
%%
#ifdef	$(root:up)
#define	$macro	$size
#else
#define	$macro	$size
#endif	/* $note */)"},
    {"globals", Split::Blocks, kEven, R"(
struct	$g2 {
	int	$m1;		/* $note */
	struct	$g2 *$m2;	/* $note */
	char	*$m3;		/* $note */
	short	$m4;
};
%%
static	int	$g3 = $size;	/* $note */
char	*$g4;			/* $note */
struct	$g2 *$g5[$const];
extern	char	*$f1();
extern	int	$f2(), $f3();)"},
    {"const", Split::Lines, kZipf, R"(
        $k1
        $k2
        $k3
        $k4
        $k5
        $k6)"},
    {"function", Split::Blocks, kZipf, R"(
/*
 * $(about:cap).
 */
$f($v1, $v2)
register char *$v1;
int $v2;
{
	register int $v3;
	char *$v4;

	$body
	return($atom);
}
%%
static int
$f($v1)
struct $g2 *$v1;
{
	register struct $g2 *$v2;
	int $v3, $v4;

	for ($v2 = $v1; $v2 != NULL; $v2 = $v2->$m2) {
		$body
	}
	return($v3);
}
%%
/*
 * $f:  $about.
 *	$(about:cap).  $(statement:cap)
 *	$(statement:cap)
 */
char *
$f($v1)
FILE *$v1;
{
	int $v2;
	register char *$v3 = $g4;
	static char $v4[$const];

	$body
	return(NULL);
}
%%
$f()
{
	register int $v1, $v2;
	struct $g2 *$v3;
	char $v4[$const];

	$body
}
%%
/*ARGSUSED*/
$f($v1, $v2, $v3)
char **$v1;
int $v2, $v3;
{
	int $v4 = $size;

	switch ($v2) {
	$cases
	}
	$body
	return($atom);
})"},
    {"cases", Split::Blocks, kEven, R"(
case '$letter':
	$stmt
	break;
case '$letter':		/* $note */
	$stmt
	break;
default:
	$failure
%%
case $const:
	$stmt
	/* fall through */
case $const:
	$stmt
	break;
case $size:
	$stmt
	return($size);)"}};

} // namespace

std::string makeCProgram(std::size_t sizeBytes) {
    const Grammar grammar(
        {technicalWords(), names(), reportSentences(), programWords(), kRules, cStatements()},
        kFlatnessPercent);
    Expander text(grammar, 7);
    ProgramNames programNames(text, 4, 8, 8);
    text.bindSeries("m", 4, "$(short)_$root");
    text.bindSeries("k", 6, "$macro");
    programNames.startFunction();
    std::string all = text.expand("$head\n");
    while (all.size() < sizeBytes) {
        programNames.startFunction();
        all += text.expand("\n$function\n");
        programNames.finishFunction();
    }
    return fitTo(std::move(all), sizeBytes);
}

} // namespace corpus
