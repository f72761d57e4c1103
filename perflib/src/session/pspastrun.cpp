#include "pspastrun.h"

#include <cstdlib>
#include <cstring>

#include "progresswords.h"

psStringList psFields(const psString& line) {
    psStringList fields;
    const char* begin = line.c_str();
    while (const char* const tab = strchr(begin, '\t')) {
        fields.append(psString(begin, static_cast<int>(tab - begin)));
        begin = tab + 1;
    }
    fields.append(begin);
    return fields;
}

psString psField(const psStringList& fields, int n) {
    for (const psString& field : fields) {
        if (n-- == 0) {
            return field;
        }
    }
    return {};
}

static int number(const psStringList& fields, int n) {
    return atoi(psField(fields, n).c_str());
}

static time_t timeOf(const psStringList& fields, int n) {
    return static_cast<time_t>(atoll(psField(fields, n).c_str()));
}

static psRunFigures figuresFrom(const psStringList& fields, int n) {
    return {number(fields, n), number(fields, n + 1), number(fields, n + 2),
            atoll(psField(fields, n + 3).c_str())};
}

static psStringList behindFirst(psStringList fields, int count) {
    for (; count > 0 && !fields.empty(); --count) {
        fields.erase(fields.begin());
    }
    return fields;
}

long long psPastRun::clocksOfResults() const {
    return results.empty() ? 0 : results.back().figures.clocksInCalls;
}

// Words that are not known are of a newer watcher and tell nothing that is missed here.
void psPastRun::take(const psString& line) {
    const psStringList fields = psFields(line);
    const psString& word = fields.front();
    if (word == progress::begun) {
        begun = timeOf(fields, 1);
        begunInstant = atoll(psField(fields, 2).c_str());
    } else if (word == progress::answer) {
        answers.append({psField(fields, 1), psField(fields, 2)});
    } else if (word == progress::asked) {
        asked.append({psField(fields, 1), behindFirst(fields, 2)});
    } else if (word == progress::remark) {
        remarks.append(psField(fields, 1));
    } else if (word == progress::result) {
        results.append({number(fields, 1), number(fields, 2), figuresFrom(fields, 3)});
        figures = results.back().figures;
    } else if (word == progress::closed) {
        isSummaryWritten = true;
    } else if (word == progress::test) {
        lost.emplace();
        lost->function = psField(fields, 1);
        lost->startTime = timeOf(fields, 2);
        lost->label = "beginTest";
    } else if (lost && word == progress::at) {
        lost->label = psField(fields, 1);
        lost->combination = psField(fields, 2);
        lost->hasMeasured = number(fields, 3) != 0;
        figures = figuresFrom(fields, 4);
        lost->clocksInCalls = figures.clocksInCalls - clocksOfResults();
    } else if (lost && word == progress::row) {
        lost->cells = behindFirst(fields, 1);
    } else if (lost && word == progress::lost) {
        lost->word = psField(fields, 1);
        lost->message = psField(fields, 2);
        lost->lastError = psField(fields, 3);
    }
}
