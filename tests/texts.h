// What a text holds. With EXPECT_TRUE, a failure shows the text.
#pragma once

#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

inline int timesIn(const std::string& text, const std::string& part) {
    int times = 0;
    for (size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1)) {
        ++times;
    }
    return times;
}

inline std::vector<std::string> linesOf(const std::string& text) {
    std::istringstream in(text);
    std::vector<std::string> lines;
    for (std::string line; std::getline(in, line);) {
        lines.push_back(line);
    }
    return lines;
}

inline testing::AssertionResult has(const std::string& text, const std::string& part) {
    if (text.find(part) != std::string::npos) {
        return testing::AssertionSuccess();
    }
    return testing::AssertionFailure() << "no \"" << part << "\" in:\n" << text;
}

inline testing::AssertionResult hasOnce(const std::string& text, const std::string& part) {
    if (timesIn(text, part) == 1) {
        return testing::AssertionSuccess();
    }
    return testing::AssertionFailure() << timesIn(text, part) << " times \"" << part << "\" in:\n"
                                       << text;
}
