#include "files.h"

#include <filesystem>

#include "comparisons.h"
#include "lines.h"
#include "records.h"
#include "table.h"
#include "titles.h"

namespace report {

namespace {

template <class Reader> void readLines(LineReader& lines, Reader& reader) {
    do {
        reader.take(lines.line(), lines.isWhole(), lines.number());
    } while (lines.next());
    reader.finish();
}

void readTable(const std::string& file, LineReader& lines, Reading& into) {
    TableReader table(file, into);
    do {
        table.take(lines.line(), lines.isWhole(), lines.number());
    } while (!table.isHopeless() && lines.next());
    table.finish();
}

std::string restOf(LineReader& lines) {
    std::string text;
    do {
        text.append(lines.line()) += '\n';
    } while (lines.next());
    return text;
}

// The first line of a file of records is a record, unless the file is one broken line.
bool isRecord(std::string_view line) {
    const Json record = Json::parse(line.begin(), line.end(), nullptr, false);
    return record.is_object() ? record.contains("record") : line.starts_with("{\"record\"");
}

bool isBlank(std::string_view line) {
    return line.find_first_not_of(" \t") == std::string_view::npos;
}

void readKnown(const std::string& file, Reading& into) {
    LineReader lines(file);
    do {
        if (!lines.next()) {
            throw Unreadable(file + " is empty");
        }
    } while (isBlank(lines.line()));
    const char first = lines.line()[lines.line().find_first_not_of(" \t")];
    if (first != '{' && first != '[') {
        readTable(file, lines, into);
    } else if (isRecord(lines.line())) {
        RecordReader records(file, into);
        readLines(lines, records);
    } else {
        into.comparisons.push_back(comparisonOf(file, restOf(lines)));
    }
}

bool beginsAsMeasurements(std::string_view line) {
    const std::string_view first = line.substr(0, line.find(','));
    return line.starts_with("{\"record\"") || isTitle(first) || first == "Function" ||
           (line.starts_with("\"format\"") && line.find("ntkcompare") != std::string_view::npos);
}

} // namespace

bool holdsMeasurements(const std::string& file) {
    std::error_code error;
    if (!std::filesystem::is_regular_file(file, error)) {
        return false; // reading a pipe would wait for who writes into it
    }
    try {
        LineReader lines(file);
        // The second line of a comparison tells it.
        for (int i = 0; i < 2 && lines.next(); ++i) {
            if (beginsAsMeasurements(lines.line())) {
                return true;
            }
        }
    } catch (const Unreadable&) {
        return false; // there is none yet, or it cannot be written either
    }
    return false;
}

void readFile(const std::string& file, Reading& into) {
    Reading its;
    try {
        readKnown(file, its);
    } catch (const Unreadable& problem) {
        into.problems.emplace_back(problem.what());
        return;
    }
    const auto move = [](auto& from, auto& to) {
        to.insert(to.end(), std::make_move_iterator(from.begin()),
                  std::make_move_iterator(from.end()));
    };
    move(its.runs, into.runs);
    move(its.comparisons, into.comparisons);
    move(its.notes, into.notes);
    move(its.problems, into.problems);
}

} // namespace report
