#include "powertable.h"

#include <algorithm>
#include <cstdio>
#include <vector>

#include "tally.h"

namespace {

using Row = std::vector<std::string>;

struct Table {
    Row titles;
    std::vector<Row> rows = {};
};

std::string text(const char* format, auto... values) {
    char line[80];
    std::snprintf(line, sizeof line, format, values...);
    return line;
}

std::string percent(double share, int digits = 2) {
    return text("%.*f%%", digits, 100 * share);
}

std::string ofAll(int part, int whole) {
    return text("%d (%.1f%%)", part, whole > 0 ? 100.0 * part / whole : 0);
}

std::string addedText(double added) {
    return added > 0 ? text("%g%%", 100 * added) : "nothing";
}

std::string range(const Tally& tally) {
    return text("%+.1f%% to %+.1f%%", 100 * (tally.lowestEstimate - 1),
                100 * (tally.highestEstimate - 1));
}

Table verdictTable(const Results& results) {
    Table table{{"added", "neighbour", "by", "cases", "right", "wrong", "missed", "estimates",
                 "off by, median", "off by, most"}};
    for (const Group& group : groupsOf(results.readings)) {
        const Tally tally = tallyOf(results.readings, group);
        const int right = tally.right(group.added), wrong = tally.wrong(group.added);
        table.rows.push_back({addedText(group.added), group.hasNeighbour ? "yes" : "no",
                              group.method, text("%d", tally.cases), ofAll(right, tally.cases),
                              ofAll(wrong, tally.cases),
                              ofAll(tally.cases - right - wrong, tally.cases), range(tally),
                              percent(tally.medianError), percent(tally.largestError)});
    }
    return table;
}

Table intervalTable(const Results& results) {
    Table table{{"added", "neighbour", "cases", "with interval", "interval holds the truth",
                 "half width, median", "time a case, median"}};
    for (const Group& group : groupsOf(results.readings)) {
        const Tally tally = tallyOf(results.readings, group);
        if (tally.withInterval > 0) {
            table.rows.push_back(
                {addedText(group.added), group.hasNeighbour ? "yes" : "no", text("%d", tally.cases),
                 text("%d", tally.withInterval), ofAll(tally.covered, tally.withInterval),
                 percent(tally.medianHalfWidth), text("%.2f s", tally.medianSeconds)});
        }
    }
    return table;
}

Table targetTable(const Results& results) {
    Table table{{"target", "found", "met"}};
    for (const Target& target : targetsOf(results)) {
        table.rows.push_back({target.what, target.found, target.isMet ? "yes" : "NO"});
    }
    return table;
}

std::string markdown(const Table& table) {
    std::string all;
    const auto add = [&](const Row& row) {
        for (const std::string& cell : row) {
            all += "| " + cell + " ";
        }
        all += "|\n";
    };
    add(table.titles);
    for (std::size_t i = 0; i < table.titles.size(); ++i) {
        all += "|---";
    }
    all += "|\n";
    for (const Row& row : table.rows) {
        add(row);
    }
    return all + "\n";
}

std::string plain(const Table& table) {
    std::vector<std::size_t> widths(table.titles.size());
    const auto widen = [&](const Row& row) {
        for (std::size_t i = 0; i < row.size(); ++i) {
            widths[i] = std::max(widths[i], row[i].size());
        }
    };
    widen(table.titles);
    for (const Row& row : table.rows) {
        widen(row);
    }
    std::string all;
    const auto add = [&](const Row& row) {
        for (std::size_t i = 0; i < row.size(); ++i) {
            const bool isLast = i + 1 == row.size();
            all += row[i] + (isLast ? "\n" : std::string(widths[i] - row[i].size() + 2, ' '));
        }
    };
    add(table.titles);
    for (const Row& row : table.rows) {
        add(row);
    }
    return all + "\n";
}

std::string tables(const Results& results, std::string (*write)(const Table&)) {
    std::string all;
    for (Table (*const make)(const Results&) : {verdictTable, intervalTable, targetTable}) {
        const Table table = make(results);
        all += table.rows.empty() ? "" : write(table);
    }
    for (const std::string& remark : results.remarks) {
        all += remark + "\n";
    }
    return all;
}

} // namespace

std::string plainTables(const Results& results) {
    return tables(results, plain);
}

std::string markdownTables(const Results& results) {
    return tables(results, markdown);
}
