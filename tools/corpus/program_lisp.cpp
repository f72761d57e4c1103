// progl: a program in an early dialect of Lisp, much indented and with ruled headings.
#include <utility>

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
    {"rule_line", Split::Lines, kEven,
     ";;;-----------------------------------------------------------------------"},
    {"head", Split::Blocks, kEven, R"(
$rule_line
;;; $(g1).l -- $tverb $tobj
$rule_line

(declare
  (special $g1 $g2 $g3 $g4 $g5 $g6))

(eval-when (compile load)
  (load 'defs)
  (load '$g2)
  (load '$g3)
  (load '$g4))
)"},
    {"heading", Split::Blocks, kEven, R"(
$rule_line
;;;			$note
$rule_line
)"},
    {"ident", Split::Lines, kSteep, R"(
        $root-$root
        $root
        *$root*
        $verbroot-$root)"},
    {"funcname", Split::Lines, kZipf, R"(
        $verbroot-$root
        $verbroot-$root-$root
        $root-$verbroot
        $root-to-$root
        $root-p)"},
    {"function", Split::Blocks, kZipf, R"(
(defun $f ($v1 $v2)		; $note
  (let (($v3 $atom)
	($v4 $call))
    $form
    $form))
%%
(defun $f ($v1)			; $note
  $form)
%%
(defun $f ($v1 $v2 $v3)
  (prog ($v4)
    (setq $v4 $call)
    $form
    $form
    (return $v4)))
%%
;; $(about:cap).
;; $(statement:cap)

(defun $f ($v1 $v2)
  (cond $clause
	$clause
	(t $form)))
%%
(defmacro $f ($v1 $v2)		; $note
  `(let (($v3 ,$v1)
	 ($v4 ,$v2))
     (and $v3 $v4
	  ($f1 $v3 $v4))))
%%
(defun $f ($v1)			; $note
  (mapcar (function
	    (lambda ($v2)
	      $form))
	  ($f2 $v1)))
%%
(defvar $g4 nil)		; $note
(defvar $g5 '($root $root $root))	; $note

(defun $f nil
  (setq $g4 $call)
  (setq $g5 nil)
  t)
%%
(defstruct
  ($f			; $note
    (:type list)
    (:conc-name))
  ($short '$root)		; $note
  ($short nil)		; $note
  ($short ($f3))		; $note
))"},
    {"form", Split::Blocks, kZipf, R"(
$call
%%
(setq $var $value)
%%
(return $value)
%%
(cond $clause
      $clause)
%%
(if $cond
    (then $form)
    (else $form))
%%
(let (($v3 $value)
      ($v4 $atom))		; $note
  $form)
%%
(do (($v2 $atom (cdr $v2)))
    ((null $v2))
  $form)
%%
(alter-$g2 $var
  $short $value
  $short $atom)
%%
(progn
  $form			; $note
  $form)
%%
(mapc
  '(lambda ($v4)
     $form)
  $atom))"},
    {"clause", Split::Blocks, kZipf, R"(
($cond
 $form)
%%
($cond $value)
%%
($cond			; $note
 $form
 $form)
%%
((eq $var '$root)
 $form))"},
    {"var", Split::Lines, kZipf, R"(
        $v1
        $v2
        $v3
        $v4
        $g4
        $g5
        $g6)"},
    {"atom", Split::Lines, kZipf, R"(
        $var
        ($g2-$short $var)
        (car $var)
        '$root
        (cdr $var)
        nil
        $digit
        ($g3-$short $var)
        (cadr $var)
        '($root $root))"},
    {"value", Split::Lines, kZipf, R"(
        $atom
        $call
        (list $atom $atom)
        (cons $atom $var)
        (+ $atom $digit)
        (get $var '$root)
        (append $var ($f1 $atom))
        (- $atom $atom))"},
    {"cond", Split::Lines, kZipf, R"(
        (null $var)
        (eq $var $atom)
        ($f1 $atom)
        (and $var $cond)
        (not $cond)
        (> $var $digit)
        (memq $var '($root $root $root))
        (or $cond (null $atom)))"},
    {"call", Split::Lines, kZipf, R"(
        ($f1 $atom)
        ($f2 $var)
        ($f3 $var $atom)
        ($f4 $atom)
        ($f5 $var)
        ($f6 $var '$root)
        ($f7 $var $value)
        (msg "$tnoun: " $var N))"},
};

// One function in so many starts a new part of the file under a ruled heading.
constexpr int kFunctionsPerHeading = 6;

} // namespace

std::string makeLispProgram(std::size_t sizeBytes) {
    const Grammar grammar({technicalWords(), names(), reportSentences(), programWords(), kRules},
                          kFlatnessPercent);
    Expander text(grammar, 8);
    ProgramNames programNames(text, 4, 6, 7);
    std::string all = text.expand("$head");
    for (int count = 0; all.size() < sizeBytes; ++count) {
        if (count % kFunctionsPerHeading == 0) {
            all += text.expand("\n$heading\n");
        }
        programNames.startFunction();
        all += text.expand("\n$function\n");
        programNames.finishFunction();
    }
    return fitTo(std::move(all), sizeBytes);
}

} // namespace corpus
