// Extended regular expressions of POSIX: std::regex draws false warnings from gcc 12 in the build
// with sanitizers, and takes seconds to compile.
#pragma once

#include <regex.h>

#include <string>
#include <vector>

#include <gtest/gtest.h>

class Pattern {
public:
    explicit Pattern(const std::string& text, int flags = 0) {
        EXPECT_EQ(regcomp(&m_compiled, text.c_str(), REG_EXTENDED | flags), 0) << text;
    }
    Pattern(const Pattern&) = delete;
    Pattern& operator=(const Pattern&) = delete;
    ~Pattern() { regfree(&m_compiled); }

    // The places of its first match and of the groups in it; none when it fits nowhere.
    std::vector<regmatch_t> match(const std::string& text) const {
        std::vector<regmatch_t> places(m_compiled.re_nsub + 1);
        const bool fits = regexec(&m_compiled, text.c_str(), places.size(), places.data(), 0) == 0;
        return fits ? places : std::vector<regmatch_t>();
    }

private:
    regex_t m_compiled = {};
};

// Whether the pattern fits somewhere in the text. ^ and $ are at the ends of each line.
inline bool fits(const std::string& text, const std::string& pattern) {
    return !Pattern(pattern, REG_NEWLINE).match(text).empty();
}

// Of the first match: all of it, then each group; nothing when it fits nowhere.
inline std::vector<std::string> groupsOf(const std::string& text, const std::string& pattern) {
    std::vector<std::string> groups;
    for (const regmatch_t& place : Pattern(pattern).match(text)) {
        const auto length = static_cast<std::size_t>(place.rm_eo - place.rm_so);
        groups.push_back(
            place.rm_so < 0 ? "" : text.substr(static_cast<std::size_t>(place.rm_so), length));
    }
    return groups;
}

// All matches replaced; where the pattern begins with a group, what is behind that.
inline std::string replaced(std::string text, const std::string& pattern,
                            const std::string& replacement) {
    const Pattern compiled(pattern);
    std::string before;
    for (auto places = compiled.match(text); !places.empty(); places = compiled.match(text)) {
        const regoff_t kept = places.size() > 1 ? places[1].rm_eo : places[0].rm_so;
        before += text.substr(0, static_cast<std::size_t>(kept)) + replacement;
        text.erase(0, static_cast<std::size_t>(places[0].rm_eo));
    }
    return before + text;
}
