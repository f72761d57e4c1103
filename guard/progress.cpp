#include "progress.h"

#include <cstring>
#include <sstream>

#include "progresswords.h"

namespace guard {

namespace {

// The field behind so many tabs; empty when there is none.
std::string field(const std::string& line, int n) {
    size_t begin = 0;
    for (; n > 0; --n) {
        begin = line.find('\t', begin);
        if (begin == std::string::npos) {
            return {};
        }
        ++begin;
    }
    return line.substr(begin, line.find('\t', begin) - begin);
}

// "SIGABRT"; real-time signals have no names.
std::string signalName(int signal) {
    const char* const name = sigabbrev_np(signal);
    return name ? std::string("SIG") + name : "signal " + std::to_string(signal);
}

std::string signalText(int signal) {
    const char* const text = sigdescr_np(signal);
    return text ? std::string(text) + " (" + signalName(signal) + ")" : signalName(signal);
}

} // namespace

std::string Ending::word() const {
    return silentSeconds > 0 ? "no answer"
           : signal != 0     ? signalName(signal)
                             : "exit " + std::to_string(status);
}

std::string Ending::message() const {
    if (silentSeconds > 0) {
        return "--NTK. Exception: no answer for " + std::to_string(silentSeconds) + " s";
    }
    return signal != 0 ? "--NTK. Signal: " + signalText(signal) + "."
                       : "--NTK. Exception: exit with status " + std::to_string(status);
}

std::string Ending::inWords() const {
    if (silentSeconds > 0) {
        return "gave no answer for " + std::to_string(silentSeconds) + " s and was ended";
    }
    return signal != 0 ? "was ended by " + signalText(signal)
                       : "ended with status " + std::to_string(status);
}

void Progress::newProcess() {
    m_before = m_now;
    read("");
}

void Progress::read(const std::string& text) {
    m_now = m_before;
    m_isOfHarness = m_hasEnded = m_isWaiting = m_hasAdvanced = false;
    m_signalsHeard = text.empty() ? 0 : text.front() - '0';
    std::istringstream lines(text);
    std::string line;
    for (std::getline(lines, line); std::getline(lines, line);) { // behind the first
        take(line);
    }
}

void Progress::take(const std::string& line) {
    const std::string word = field(line, 0);
    m_isWaiting = word == progress::asks;
    if (word == progress::hello) {
        m_isOfHarness = true;
    } else if (word == progress::end) {
        m_hasEnded = true;
    } else if (word == progress::keep) {
        takeKept(line.substr(line.find('\t') + 1));
    } else if (word == progress::test) {
        beginTest(line);
    } else if (word == progress::at) {
        m_now.at = line;
    } else if (word == progress::row) {
        m_now.row = line;
    }
}

void Progress::beginTest(const std::string& line) {
    m_now.test = line;
    m_now.at = m_now.row = m_now.lost = "";
    m_hasBegun = m_hasAdvanced = true;
}

void Progress::takeKept(const std::string& line) {
    m_now.kept.push_back(line);
    if (field(line, 0) == progress::result) {
        beginTest(""); // none
    }
}

// A process that ends before it has told of the test that is lost adds nothing to that.
void Progress::ended(const Ending& ending) {
    if (!m_now.test.empty() && m_now.lost.empty()) {
        m_now.lost = std::string(progress::lost) + "\t" + ending.word() + "\t" + ending.message() +
                     "\t" + ending.lastError;
    }
}

std::string Progress::place() const {
    std::string text = field(m_now.test, 1);
    if (!m_now.at.empty()) {
        text += " in " + field(m_now.at, 1);
        const std::string combination = field(m_now.at, 2);
        text += combination.empty() ? "" : ", " + combination;
    }
    return text;
}

std::string Progress::forSuccessor() const {
    std::string text;
    const auto add = [&text](const std::string& line) { text += line.empty() ? "" : line + "\n"; };
    for (const std::string& line : m_now.kept) {
        add(line);
    }
    for (const std::string& line : {m_now.test, m_now.at, m_now.row, m_now.lost}) {
        add(line);
    }
    return text;
}

} // namespace guard
