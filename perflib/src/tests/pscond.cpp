#include "pscond.h"

#include "pstest.h"

const psString& RunCondition::field(const psTest* test) const {
    switch (m_group) {
    case PS_BY_TEST: return test->info().name;
    case PS_BY_FILE: return test->sourceName();
    default: return test->functionName();
    }
}

template <int Group> static RunCondition* makeCondition(const psString& argument) {
    const psString rest = argument.empty() ? psString() : argument.substr(1);
    switch (argument[0]) {
    case '=': return rest.empty() ? nullptr : new RunConditionEqual<Group>(rest);
    case '-': return rest.empty() ? nullptr : new RunConditionNot<Group>(rest);
    case '+': return rest.empty() ? nullptr : new RunConditionAnd<Group>(rest);
    default: return argument.empty() ? nullptr : new RunConditionContains<Group>(argument);
    }
}

RunCondition* psMakeCondition(const psString& argument, int group) {
    switch (group) {
    case PS_BY_TEST: return makeCondition<PS_BY_TEST>(argument);
    case PS_BY_FILE: return makeCondition<PS_BY_FILE>(argument);
    default: return makeCondition<PS_BY_FUNCTION>(argument);
    }
}

psConditions::~psConditions() {
    for (const RunCondition* condition : *this) {
        delete condition;
    }
}

int psConditions::count(int group) const {
    int n = 0;
    for (const RunCondition* condition : *this) {
        n += condition->group() == group;
    }
    return n;
}

int psConditions::count(int group, int kind) const {
    int n = 0;
    for (const RunCondition* condition : *this) {
        n += condition->group() == group && condition->kind() == kind;
    }
    return n;
}

bool psConditions::tobeRun_or(const psTest* test, int group, int kind) const {
    for (const RunCondition* condition : *this) {
        if (condition->group() == group && condition->kind() == kind && condition->tobeRun(test)) {
            return true;
        }
    }
    return false;
}

bool psConditions::tobeRun_and(const psTest* test, int group) const {
    for (const RunCondition* condition : *this) {
        if (condition->group() == group && condition->kind() == PS_MUST_HOLD &&
            !condition->tobeRun(test)) {
            return false;
        }
    }
    return true;
}

bool psConditions::tobeRun(const psTest* test, int group) const {
    if (tobeRun_or(test, group, PS_EXACT)) {
        return true;
    }
    const int exact = count(group, PS_EXACT);
    if (exact > 0 && exact == count(group)) {
        return false;
    }
    if (count(group, PS_ANY_OF) > 0 && !tobeRun_or(test, group, PS_ANY_OF)) {
        return false;
    }
    return tobeRun_and(test, group);
}

bool psConditions::tobeRun(const psTest* test) const {
    if (empty()) {
        return true;
    }
    const bool orMode = m_logic != 0;
    for (int group = 0; group < psConditionGroups; ++group) {
        if (count(group) > 0 && tobeRun(test, group) == orMode) {
            return orMode; // the first group that decides
        }
    }
    return !orMode;
}

bool psConditions::names(const psTest* test) const {
    for (const RunCondition* condition : *this) {
        if (condition->names(test)) {
            return true;
        }
    }
    return false;
}
