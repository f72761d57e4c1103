// trans: the transcript of a terminal session: a shell with a line editor, listings, a pager and a
// full-screen editor that moves the cursor and clears lines by escape sequences.
#include <algorithm>
#include <vector>

#include "expander.h"
#include "files.h"
#include "sentences.h"
#include "textflow.h"
#include "vocabulary.h"

namespace corpus {

namespace {

constexpr unsigned kFlatnessPercent = 100;

// The few files that the user goes on showing and editing, and how often a new one takes the place
// of an old one. This decides how much of the session is a repetition, and how far back.
constexpr int kFiles = 4;
constexpr int kFileParts = 20;
constexpr int kNewFilePerMille = 330;
constexpr int kScreenLines = 22;

constexpr std::size_t kLineColumns = 70;

// Terminals of that time needed a pause after a line was cleared or moved: two zero bytes.
const std::string kPause(2, '\0');
const std::string kClearLine = "\033[K" + kPause;
const std::string kHome = "\033[H";
const std::string kReverse = "\033[7m";
const std::string kPlain = "\033[m";

constexpr Rule kRules[] = {
    {"shortname", Split::Words, kBroad, R"(
        notes agenda report minutes survey budget draft letter plan review index tables figures
        outline summary todo readme refs glossary chapter thesis appendix course memo)"},
    {"login", Split::Words, kZipf, "hb anna karl rdm petra jmf warren sonia guest root daemon nbl"},
    // A command line and what it prints.
    {"command", Split::Blocks, kZipf, R"(
ls
$file	$shortname	$shortname	$file~
$shortname	core	$shortname	$file
%%
cat $file | wc
   $three   $four  $four5
%%
lpr -Pquay $file &
[1] $four
%%
cd ~/$shortname; ls
$shortname	$file	$shortname~
%%
who
$login	tty$digit	$mon $dayno $hhmm
$login	tty$digit	$mon $dayno $hhmm
$login	tty$digit	$mon $dayno $hhmm
%%
ls -l
total $two
-rw-r--r--  1 $login     $four $mon $dayno $hhmm $file
-rw-r--r--  1 $login     $four $mon $dayno $hhmm $shortname
-rw-rw-r--  1 $login    $four5 $mon $dayno $hhmm $shortname
drwxr-xr-x  2 $login      512 $mon $dayno $hhmm $shortname
%%
grep $tnoun *
$file: $tthem
$file: $tclause
%%
spell $file
$coined
$coined
%%
rm *~; $shortname
$shortname: Command not found.
%%
mail $login
Subject: $tfield
$(statement:cap)
$(statement:cap)
.
%%
diff $file $(file)~
$two,$(two)c$two
< $statement
---
> $statement
%%
from
From $login $weekday $mon $dayno $hhmm:$two 1987
From $login $weekday $mon $dayno $hhmm:$two 1987)"},
    {"four5", Split::Lines, kEven, "$four$digit"},
    {"markup", Split::Lines, kZipf, R"T(
        .sp
        .pp
        .sh "$(theading:cap)"
        .br
        .NP
        .ul
        .ce
        .ti +0.5i
        $tfield	$two%
        .in +2
        $(tnoun:cap) $tnoun:
        .ta 2i +1.5i +1i)T"},
};

std::string numbered(std::string_view before, int number, std::string_view after) {
    return std::string(before) + std::to_string(number) + std::string(after);
}

std::string cursorTo(int row, int column) {
    return numbered("\033[", row, ";") + std::to_string(column) + "H";
}

class Session {
public:
    Session()
        : m_grammar({technicalWords(), names(), reportSentences(), kRules}, kFlatnessPercent),
          m_text(m_grammar, 14), m_random(m_text.random()) {
        for (int i = 0; i < kFiles; ++i) {
            m_files.push_back(makeFile());
        }
    }

    std::string write(std::size_t sizeBytes) {
        m_out = "login: hb\r\nPassword:\r\nLast login: Tue Mar 3 09:12:44 from quayb\r\n"
                "Measuring System #12: Mon Feb 16 17:20:11 1987\r\n\r\n";
        while (m_out.size() < sizeBytes) {
            selectFile();
            switch (m_random.below(5)) {
            case 0: page(); break;
            case 1: edit(); break;
            default: command(); break;
            }
        }
        return fitTo(m_out, sizeBytes);
    }

private:
    struct File {
        std::string name;
        std::vector<std::string> lines;
    };

    File makeFile() {
        File file{m_text.expand("$shortname"), {}};
        TextFlow flow(kLineColumns);
        for (int part = 0; part < kFileParts; ++part) {
            if (m_random.chance(500)) {
                flow.line(m_text.expand("$markup"));
            } else {
                flow.fill(m_text.expand("$(statement:cap)"));
                flow.endParagraph();
            }
        }
        std::string_view rest = flow.text();
        while (!rest.empty()) {
            const std::size_t end = rest.find('\n');
            file.lines.emplace_back(rest.substr(0, end));
            rest.remove_prefix(end + 1);
        }
        return file;
    }

    void selectFile() {
        m_file = &m_files[m_random.below(kFiles)];
        if (m_random.chance(kNewFilePerMille)) {
            *m_file = makeFile();
        }
        m_text.bind("file", m_file->name);
    }

    // The line editor of the shell prints a line again when it is finished.
    void prompt(const std::string& line) {
        m_out += "QUAY% " + line + std::string(line.size(), '\b') + line + "\r\n";
    }

    void command() {
        const std::string text = m_text.expand("$command");
        const std::size_t end = text.find('\n');
        prompt(text.substr(0, end));
        addLines(text.substr(end + 1));
    }

    void addLines(const std::string& text) {
        for (const char c : text + "\n") {
            m_out += c == '\n' ? "\r\n" : std::string(1, c);
        }
    }

    void page() {
        prompt("more " + m_file->name);
        int shown = 0;
        for (const std::string& line : m_file->lines) {
            m_out += line + "\r\n";
            if (++shown % kScreenLines == 0) {
                const int percent = shown * 100 / static_cast<int>(m_file->lines.size());
                m_out +=
                    kReverse + numbered("--More--(", percent, "%)") + kPlain + "\r" + kClearLine;
            }
        }
    }

    void edit() {
        prompt("e " + m_file->name);
        for (int screens = m_random.between(1, 4); screens > 0; --screens) {
            const int lineCount = static_cast<int>(m_file->lines.size());
            const int top = m_random.between(0, std::max(0, lineCount - kScreenLines));
            showScreen(top);
            for (int changes = m_random.between(2, 12); changes > 0; --changes) {
                changeLine(top, m_random.between(0, kScreenLines - 1));
            }
        }
        m_out += cursorTo(24, 1) + "Wrote /quayb/staff/hb/" + m_file->name + "\r\n";
    }

    void showScreen(int top) {
        m_out += kHome;
        const auto first = static_cast<std::size_t>(top);
        const std::size_t last = std::min(first + kScreenLines, m_file->lines.size());
        for (std::size_t i = first; i < last; ++i) {
            m_out += m_file->lines[i] + kClearLine + "\r\n";
        }
        showModeLine();
    }

    void showModeLine() {
        m_minute = (m_minute + m_random.between(0, 1)) % 60;
        m_out += cursorTo(23, 1) + kReverse + "-----Edit: " + m_file->name +
                 numbered("          2:", 10 + m_minute / 2, "pm ") +
                 numbered("0.", m_random.between(40, 60), "  (Text Fill)----") + kPlain;
    }

    // Types a word between two words of a line or some new lines below it. For a word the terminal
    // shows letter by letter, for lines it moves the rest of the screen down.
    void changeLine(int top, int row) {
        const auto index = static_cast<std::size_t>(top + row);
        if (index >= m_file->lines.size()) {
            return;
        }
        std::string& line = m_file->lines[index];
        const std::size_t column = line.find(' ', m_random.below(kLineColumns)) + 1;
        if (column > 0 && line[0] != '.' && line.size() < kLineColumns) {
            const std::string word = m_text.expand("$tadj ");
            m_out += cursorTo(row + 1, static_cast<int>(column) + 1) +
                     numbered("\033[", static_cast<int>(word.size()), "@") + kPause + word;
            line.insert(column, word);
        } else {
            const std::string added = m_text.expand("$(statement:cap)").substr(0, kLineColumns);
            m_out += cursorTo(row + 2, 1) + "\033[1L" + kPause + added;
            m_file->lines.insert(m_file->lines.begin() + top + row + 1, added);
        }
        if (m_random.chance(300)) {
            showModeLine();
        }
    }

    Grammar m_grammar;
    Expander m_text;
    Random& m_random;
    std::vector<File> m_files;
    File* m_file = nullptr;
    int m_minute = 0;
    std::string m_out;
};

} // namespace

std::string makeSession(std::size_t sizeBytes) {
    return Session().write(sizeBytes);
}

} // namespace corpus
