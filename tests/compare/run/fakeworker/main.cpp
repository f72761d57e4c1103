// A worker that plays a script instead of measuring: fakeworker SIDE SCRIPT LOG. Lines of the
// script:
//
//   case FUNCTION [NAME=NUMBER...]   begins a case
//   turns CLOCKS...                  of its turns, from each process's first; the last one stays
//   outcome STATUS [NAME=NUMBER...]  at its release
//   at POINT ACTION [ARGUMENT]       instead of the answer there
//   remark TEXT                      at the end
//
// Points: hello, case, prepare, turnN (N from 1, within a process), release. Actions: kill SIGNAL,
// exit STATUS, hang, say LINE, endless, close, twice, leave, passed WHY, status NUMBER, failed
// TEXT, words TEXT (these come before the answer). "startN" before "turns", "outcome" or "at" says
// that this holds in the N-th process of the side only. Each order but skips goes into the log.
#include <algorithm>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "message.h"

namespace {

using namespace compare;

struct Rule {
    std::string point, action, argument;
};

struct ScriptedCase {
    Announced announced;
    std::vector<double> clocks{1e9};
    Outcome outcome{0, "b", 1, {}};
    std::vector<Rule> rules;
};

struct Script {
    std::vector<Rule> rules; // before the first case
    std::vector<ScriptedCase> cases;
    std::vector<std::string> remarks;
};

std::string side;
std::string logFile;

void append(const std::string& file, const std::string& text) {
    const int descriptor = open(file.c_str(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0600);
    if (write(descriptor, text.data(), text.size()) < 0) {
        abort();
    }
    close(descriptor);
}

void log(const std::string& text) {
    append(logFile, side + " " + text + "\n");
}

// Of this side, this one included.
int countStarts() {
    const std::string file = logFile + "." + side;
    append(file, ".");
    struct stat facts {};
    stat(file.c_str(), &facts);
    return static_cast<int>(facts.st_size);
}

NamedValues readValues(std::istream& words) {
    NamedValues values;
    for (std::string word; words >> word;) {
        const size_t sign = word.find('=');
        values.push_back({word.substr(0, sign), std::stoll(word.substr(sign + 1))});
    }
    return values;
}

std::string rest(std::istream& words) {
    std::string text;
    std::getline(words >> std::ws, text);
    return text;
}

void readLine(Script& script, const std::string& line, int start) {
    std::istringstream words(line);
    std::string word;
    words >> word;
    if (word.starts_with("start")) {
        if (std::stoi(word.substr(5)) != start) {
            return;
        }
        words >> word;
    }
    if (word == "case") {
        ScriptedCase added;
        words >> added.announced.function;
        added.announced.parameters = readValues(words);
        script.cases.push_back(added);
    } else if (word == "turns") {
        script.cases.back().clocks.clear();
        for (double clocks; words >> clocks;) {
            script.cases.back().clocks.push_back(clocks);
        }
    } else if (word == "outcome") {
        words >> script.cases.back().outcome.status;
        script.cases.back().outcome.values = readValues(words);
    } else if (word == "remark") {
        script.remarks.push_back(rest(words));
    } else if (word == "at") {
        Rule rule;
        words >> rule.point >> rule.action;
        rule.argument = rest(words);
        (script.cases.empty() ? script.rules : script.cases.back().rules).push_back(rule);
    }
}

Script readScript(const std::string& file, int start) {
    Script script;
    std::ifstream lines(file);
    for (std::string line; std::getline(lines, line);) {
        readLine(script, line, start);
    }
    for (size_t i = 0; i < script.cases.size(); ++i) {
        script.cases[i].announced.test = static_cast<int>(i);
    }
    return script;
}

void sayLine(const std::string& line) {
    const std::string whole = line + "\n";
    if (write(4, whole.data(), whole.size()) < 0) {
        _exit(1);
    }
}

[[noreturn]] void hang() {
    for (;;) {
        pause();
    }
}

void act(const Rule& rule, const std::string& answer) {
    const std::string& action = rule.action;
    const int number = atoi(rule.argument.c_str());
    if (action == "kill") {
        signal(number, SIG_DFL); // a sanitizer handles some
        kill(getpid(), number);
        hang();
    } else if (action == "exit") {
        _exit(number);
    } else if (action == "hang") {
        hang();
    } else if (action == "say") {
        sayLine(rule.argument);
    } else if (action == "twice") {
        sayLine(answer + "\n" + answer);
    } else if (action == "leave") {
        sayLine(answer);
        _exit(0);
    } else if (action == "endless") {
        const std::string piece(1000, 'x');
        while (write(4, piece.data(), piece.size()) > 0) {
        }
    } else if (action == "close") {
        close(4);
        hang();
    } else if (action == "passed") {
        sayLine(toLine(PassedOver{rule.argument}));
    } else if (action == "status") {
        sayLine(toLine(Taken{number, "", {}}));
    } else if (action == "failed") {
        sayLine(toLine(Taken{0, rule.argument, {}}));
    }
}

// Whether the answer was given as it should be.
bool say(const std::vector<Rule>& rules, const std::string& point, const Answer& answer) {
    for (const Rule& rule : rules) {
        if (rule.point == point && rule.action == "words") {
            fprintf(stderr, "%s\n", rule.argument.c_str());
        } else if (rule.point == point) {
            act(rule, toLine(answer));
            return false;
        }
    }
    sayLine(toLine(answer));
    return true;
}

Order hear() {
    static FILE* const orders = fdopen(3, "r");
    char line[1000];
    if (!fgets(line, sizeof line, orders)) {
        _exit(0);
    }
    const std::optional<Order> order = parseOrder(line);
    if (!order) {
        log("no order");
        _exit(1);
    }
    if (order->word == Word::quit) {
        log("quit");
        _exit(0);
    }
    return *order;
}

void takeTurns(const ScriptedCase& played) {
    const std::string& function = played.announced.function;
    Order order = hear();
    for (size_t turn = 0; order.word == Word::turn; order = hear(), ++turn) {
        log("turn " + function + " " + std::to_string(order.callsPerSpan));
        Taken taken;
        taken.turn.clocks = played.clocks[std::min(turn, played.clocks.size() - 1)];
        taken.turn.calls = 1LL * order.callsPerSpan * order.spans;
        say(played.rules, "turn" + std::to_string(turn + 1), taken);
    }
    log("release " + function);
    say(played.rules, "release", Done{played.outcome});
}

void play(const Script& script) {
    say(script.rules, "hello", Hello{{"/lib of " + side}, "1.0 " + side});
    for (const ScriptedCase& played : script.cases) {
        say(played.rules, "case", played.announced);
        if (hear().word == Word::prepare) {
            log("prepare " + played.announced.function);
            if (say(played.rules, "prepare", Ready{})) {
                takeTurns(played);
            }
        }
    }
    sayLine(toLine(End{script.remarks}));
    hear();
}

} // namespace

int main(int, char** arguments) {
    side = arguments[1];
    logFile = arguments[3];
    const int start = countStarts();
    log("start");
    play(readScript(arguments[2], start));
}
