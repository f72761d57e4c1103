#include "vocabulary.h"

namespace corpus {

namespace {

constexpr Rule kRules[] = {
    {"man", Split::Words, kZipf, R"(
        Amos Edwin Silas Hugh Matthew Robert Walter Ralph Jasper Nathan Martin Gilbert Stephen
        Roger Simon Caleb Luke Francis Oliver Reuben Clement Barnaby Giles Harold Felix Ambrose)"},
    {"lady", Split::Words, kZipf, R"(
        Hester Judith Ellen Margaret Rachel Lydia Agnes Harriet Dorcas Phoebe Susan Miriam Grace
        Rosamund Charlotte Tabitha Eleanor Winifred Naomi Frances Beatrice Cecily Prudence)"},
    {"forename", Split::Words, kBroad, R"(
        Peter Anna Karl Susan David Maria Hans Linda Robert Ingrid Paul Julia Mark Helen Tom Erik
        Alice George Nina Frank Laura Steve Petra Jim Carol Andrew Sonia Kevin Ruth Philip Diane
        Bruce Emma Roger Clara Neil Vera Martin Joan Stefan Heidi Greg Olga Simon Nancy Lars Irene
        Dennis Monica Keith Barbara Victor Teresa Gordon Judy Oscar Sheila Warren Edith Leon
        Karen)"},
    {"surname", Split::Lines, kSteep, R"(
        $family
        $(syl_head)$(syl_tail)
        $(syl_head)$(syl_mid)$(syl_tail)
        Mac$(syl_head)$(syl_tail))"},
    {"family", Split::Words, kBroad, R"(
        Harlow Brandt Keller Osborne Lindqvist Tanner Marchetti Novak Prescott Dufour Halloran
        Weston Ibarra Kowalski Langley Petersen Ashby Ferrara Moreau Stroud Becker Thornton Vance
        Okada Sorensen Galloway Rourke Pryce Delgado Engstrom Fairley Grimshaw Hendry Ingram Joyner
        Kessler Lomax Merriman Nyberg Oakley Pascoe Quayle Redfern Sattler Tolland Underhill Verney
        Whitlock Yardley Zeller Abbott Birch Coombes Dunmore Easterby Foley Garrick Holm)"},
    {"syl_head", Split::Words, kBroad, R"(
        Al Bar Bel Ber Bran Cal Car Cor Dal Dan Del Dor El Fal Fen Gar Gil Gor Hal Har Hol Kar Kel
        Kil Lan Lar Len Lin Mal Mar Mer Mor Nor Ol Pel Pen Per Ral Ran Ros Sal San Sel Sher Sil
        Stan Sut Tal Tar Ter Thor Tol Tre Val Ver Wal War Wes Wil Win Wol Yar Zan)"},
    {"syl_mid", Split::Words, kBroad, R"(a e i o an en in ar er ing el il)"},
    {"syl_tail", Split::Words, kBroad, R"(
        ton man ford ley son well wood by worth ham berg stein field land more den ner ski mann sen
        gate house wick croft dale ston bury combe ell ett ard er mond ville lund strom)"},
    {"town", Split::Lines, kEven, R"(
        $old_town
        $(syl_head)$(syl_tail)
        $(syl_head)$(syl_mid)$(syl_tail)
        $old_town)"},
    {"old_town", Split::Words, kBroad, R"(
        Saltmouth Ravenscar Penhallow Wexcombe Thornley Oldbridge Stapleford Marlhaven Kingsquay
        Dunmere Haleswick Corrydon Eastlow Fernhithe Graybury Holmsea Ivelden Lowerby Netherstow
        Orrington Pellworth Quarnham Rushmoor Seaborough Tidewell Upperthorpe Withern Yarrowdale)"},
    {"coined", Split::Lines, kSteep, R"(
        $onset$rime$coined_end
        $onset$rime
        $onset$rime$coined_end$coined_end)"},
    {"onset", Split::Words, kBroad, R"(
        b br bl c cl cr d dr f fl fr g gl gr h j k kn l m n p pl pr qu r s sc scr sh sk sl sm sn sp
        spl st str sw t th thr tr tw v w wh wr y)"},
    {"rime", Split::Words, kBroad, R"(
        ab ack ad ag ail am an and ang ank ap ar ark ash at aw ay each ear eck ed eg ell em en end
        ent er est et ew ick id ig ill im in ind ing ink ip irt ish it ob ock od og oil ole om ond
        oom oop op ore orm ost ot ow ub uck ud ug ull um un unch unt up ur ush ust ut)"},
    {"coined_end", Split::Words, kBroad, R"(
        er le et y ling ock in ers ing ster ow en ish kin some ard)"},
    {"city", Split::Words, kBroad, R"(
        London Boston Chicago Toronto Berlin Paris Geneva Stockholm Oslo Vienna Dublin Glasgow
        Denver Seattle Atlanta Montreal Ottawa Sydney Melbourne Tokyo Zurich Milan Munich Amsterdam
        Copenhagen Helsinki Edinburgh Leeds Bristol Dallas Houston Philadelphia Pittsburgh)"},
    {"month", Split::Words, kEven, R"(
        January February March April May June July August September October November December)"},
    {"mon", Split::Words, kEven, "Jan Feb Mar Apr May Jun Jul Aug Sep Oct Nov Dec"},
    {"weekday", Split::Words, kEven, "Mon Tue Wed Thu Fri Sat Sun"},
    {"initial", Split::Words, kBroad,
     "J. R. M. D. A. S. P. C. H. G. B. L. E. W. T. K. F. N. I. V."},
    {"initials", Split::Lines, kEven, R"(
        $initial
        $initial$initial
        $initial$initial)"},
    {"digit", Split::Words, kEven, "0 1 2 3 4 5 6 7 8 9"},
    {"d19", Split::Words, kEven, "1 2 3 4 5 6 7 8 9"},
    {"dayno", Split::Words, kEven, R"(
        1 2 3 4 5 6 7 8 9 10 11 12 13 14 15 16 17 18 19 20 21 22 23 24 25 26 27 28)"},
    {"two", Split::Lines, kEven, "$d19$digit"},
    {"three", Split::Lines, kEven, "$d19$digit$digit"},
    {"four", Split::Lines, kEven, "$d19$digit$digit$digit"},
    {"hhmm", Split::Lines, kEven, R"(
        1$digit:$(sixth)$digit
        0$d19:$(sixth)$digit)"},
    {"sixth", Split::Words, kEven, "0 1 2 3 4 5"},
    {"number", Split::Lines, kZipf, R"(
        $d19
        $two
        $d19.$digit
        $three
        0.$digit$digit
        $four)"},
    {"numword", Split::Words, kZipf, R"(
        two three four five six ten a+dozen several many few seven eight nine twelve twenty thirty
        forty fifty sixty a+hundred some+hundred)"},
};

} // namespace

RuleBook names() {
    return kRules;
}

} // namespace corpus
