// progp: a Pascal program, its procedures before the main part.
#include "expander.h"
#include "files.h"
#include "program.h"
#include "sentences.h"
#include "textflow.h"
#include "vocabulary.h"

namespace corpus {

namespace {

// Below 100: program text uses few different words, and those again and again.
constexpr unsigned kFlatnessPercent = 60;

constexpr Rule kRules[] = {
    {"head", Split::Blocks, kEven, R"(
program $(g1:cap)(input, output);
{ $(about:cap).
  $(statement:cap) }
const
   Max$(g1:cap) = 100;		{ $note }
   Max$(g2:cap) = $three;		{ $note }
   Nil$(g3:cap) = -1;
type
   $(g1:cap)Index = 0..Max$(g1:cap);
   $(g2:cap)Ptr = ^$(g2:cap);
   $(g2:cap) = record
      $m1: integer;		{ $note }
      $m2: $(g2:cap)Ptr;	{ $note }
      $m3: array [$(g1:cap)Index] of real;
      $m4: boolean;
   end;
   $(g3:cap)Type = ($m1$g3, $m2$g3, $m3$g3);
var
   $g3, $g4: integer;
   $g5: array [$(g1:cap)Index] of $(g2:cap)Ptr;	{ $note }
   $g6: boolean;
)"},
    {"root", Split::Words, kBroad, R"(
        Node Line Buf Word File List Name Sym Key Mark Char Page Block Entry Field Queue Slot Task
        Rec Token Expr Arg Err Row Col Cell Tree Leaf Edge Path Step Time Gauge Tide Port Bit Mask
        Flag Count Size Width Depth Base Top Next Head Free Max Min Sum Avg Val Num Item Set Map)"},
    {"verbroot", Split::Words, kBroad, R"(
        Get Put Set Add Del Find Read Write Init Open Close Push Pop Make Copy Move Scan Skip Test
        Show Print Parse Match Sort Merge Split Save Clear Check Count Fill Swap Trim Update)"},
    {"ident", Split::Lines, kSteep, R"(
        $root$root
        $root
        Cur$root
        Last$root)"},
    {"funcname", Split::Lines, kZipf, R"(
        $verbroot$root
        $verbroot$root$root
        Is$root)"},
    {"function", Split::Blocks, kZipf, R"(
procedure $f(var $v1: $(g2:cap)Ptr; $v2: integer);
{ $about }
var
   $v3, $v4: integer;
begin
   $body
end; { $f }
%%
function $f($v1: integer): boolean;
var
   $v2, $v3: integer;
   $v4: $(g2:cap)Ptr;
begin
   $body
   $f := $cond;
end; { $f }
%%
procedure $f;
var $v1, $v2: integer;
    $v3, $v4: $(g2:cap)Ptr;
begin
   $body
   $body
end; { $f }
%%
function $f($v1, $v2: $(g2:cap)Ptr): $(g2:cap)Ptr;
{ $about
  $statement }
var
   $v3, $v4: integer;
begin
   if $v1 = nil then
      $f := $v2
   else begin
      $body
      $f := $v1
   end
end; { $f })"},
    {"body", Split::Blocks, kZipf, R"(
$stmt;
$stmt;
$stmt;
%%
$stmt;
$stmt;
%%
$stmt;
$stmt;
$stmt;
$stmt;)"},
    {"stmt", Split::Blocks, kZipf, R"(
$assign
%%
$call
%%
$assign;
$call
%%
if $cond then begin
   $stmt;
   $stmt
end
%%
for $v3 := 1 to Max$(g1:cap) do
   $simple
%%
while $cond do begin
   $stmt;
   $stmt
end
%%
if $cond then
   $simple
else
   $simple
%%
with $g5[$v3]^ do begin
   $assign;
   $assign;		{ $note }
   $stmt
end
%%
repeat
   $stmt;
   $stmt
until $cond
%%
case $var of
   1: $simple;
   2, 3: $simple;
   $two: begin
      $stmt;
      $stmt
   end
end
%%
begin	{ $note }
   $stmt;
   $stmt
end
%%
writeln('$tadj $tnoun ', $var:$digit)
%%
new($v4);
$v4^.$m2 := $v4;
$v4^.$m1 := $atom)"},
    {"simple", Split::Lines, kZipf, R"(
        $assign
        $call
        writeln('$tnoun $tnoun: ', $atom))"},
    {"assign", Split::Lines, kZipf, R"(
        $var := $expr
        $var^.$m1 := $expr
        $g5[$var] := $v4
        $g6 := $cond
        $var := $var + 1
        $var^.$m3[$atom] := $expr
        $g4 := 0)"},
    {"var", Split::Lines, kZipf, R"(
        $v1
        $v2
        $v3
        $v4
        $g3
        $g4)"},
    {"atom", Split::Lines, kZipf, R"(
        $var
        $digit
        $var^.$m1
        Max$(g1:cap)
        $g5[$var]^.$m1
        $three)"},
    {"expr", Split::Lines, kZipf, R"(
        $atom
        $atom + $atom
        $atom - 1
        $var^.$m2
        ord($atom)
        $atom div $d19
        ($expr) mod Max$(g2:cap)
        trunc($atom * $atom))"},
    {"cond", Split::Lines, kZipf, R"(
        $var = $atom
        $var < $atom
        $var <> nil
        ($var >= $atom) and ($cond)
        not $g6
        $f1($var)
        ($cond) or ($var = $atom)
        not eof)"},
    {"call", Split::Lines, kZipf, R"(
        $f1($var)
        $f2($var, $atom)
        $f3
        $f4($var, $var)
        $f5($atom)
        $f6($var, $atom)
        readln($var)
        write($var:$d19, ' '))"},
};

// As many procedures as fit; a comment fills the rest.
std::string procedures(Expander& text, ProgramNames& programNames, std::size_t sizeBytes) {
    constexpr std::string_view kFillerFrame = "\n{}\n";
    std::string all;
    for (;;) {
        programNames.startFunction();
        const std::string next = text.expand("\n$function\n");
        if (all.size() + next.size() + kFillerFrame.size() > sizeBytes) {
            return all + "\n{" + std::string(sizeBytes - all.size() - kFillerFrame.size(), '*') +
                   "}\n";
        }
        all += next;
        programNames.finishFunction();
    }
}

} // namespace

std::string makePascalProgram(std::size_t sizeBytes) {
    const Grammar grammar({technicalWords(), names(), reportSentences(), programWords(), kRules},
                          kFlatnessPercent);
    Expander text(grammar, 9);
    ProgramNames programNames(text, 4, 6, 6);
    text.bindSeries("m", 4, "$short");
    programNames.startFunction();
    const std::string head = text.expand("$head");
    const std::string mainPart = text.expand("\nbegin { main }\n   $body\n   $body\nend.\n");
    return head + procedures(text, programNames, sizeBytes - head.size() - mainPart.size()) +
           mainPart;
}

} // namespace corpus
