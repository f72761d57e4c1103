#pragma once

#include "pslist.h"
#include "psstring.h"

class psTest;

// Which field of a test a condition looks at, and how conditions of a kind combine.
enum psConditionGroup : int { PS_BY_FUNCTION = 0, PS_BY_TEST = 1, PS_BY_FILE = 2 };
constexpr int psConditionGroups = 3;
enum psConditionKind : int { PS_MUST_HOLD = 0, PS_ANY_OF = 1, PS_EXACT = 2 };

// One "-f", "-t" or "-m" option. Comparisons are case-sensitive.
class RunCondition {
public:
    RunCondition(const psString& pattern, int kind, int group)
        : m_pattern(pattern), m_kind(kind), m_group(group) {}
    virtual ~RunCondition() = default;
    virtual bool tobeRun(const psTest* test) const = 0;
    // Whether it admits the test because of what it says, not for what it leaves out.
    bool names(const psTest* test) const {
        return tobeRun(test) && field(test).contains(m_pattern);
    }

    const psString& pattern() const { return m_pattern; }
    int kind() const { return m_kind; }
    int group() const { return m_group; }

protected:
    const psString& field(const psTest* test) const;

private:
    psString m_pattern;
    int m_kind;
    int m_group;
};

// The four forms, for one field group each.
template <int Group> class RunConditionContains : public RunCondition {
public:
    explicit RunConditionContains(const psString& p) : RunCondition(p, PS_ANY_OF, Group) {}
    bool tobeRun(const psTest* test) const override { return field(test).contains(pattern()); }
};
template <int Group> class RunConditionAnd : public RunCondition {
public:
    explicit RunConditionAnd(const psString& p) : RunCondition(p, PS_MUST_HOLD, Group) {}
    bool tobeRun(const psTest* test) const override { return field(test).contains(pattern()); }
};
template <int Group> class RunConditionNot : public RunCondition {
public:
    explicit RunConditionNot(const psString& p) : RunCondition(p, PS_MUST_HOLD, Group) {}
    bool tobeRun(const psTest* test) const override { return !field(test).contains(pattern()); }
};
template <int Group> class RunConditionEqual : public RunCondition {
public:
    explicit RunConditionEqual(const psString& p) : RunCondition(p, PS_EXACT, Group) {}
    bool tobeRun(const psTest* test) const override { return field(test) == pattern(); }
};
using RunCondition_f = RunConditionContains<PS_BY_FUNCTION>;
using RunCondition_t = RunConditionContains<PS_BY_TEST>;
using RunCondition_s = RunConditionContains<PS_BY_FILE>;
using RunCondition_fAnd = RunConditionAnd<PS_BY_FUNCTION>;
using RunCondition_tAnd = RunConditionAnd<PS_BY_TEST>;
using RunCondition_sAnd = RunConditionAnd<PS_BY_FILE>;
using RunCondition_fNot = RunConditionNot<PS_BY_FUNCTION>;
using RunCondition_tNot = RunConditionNot<PS_BY_TEST>;
using RunCondition_sNot = RunConditionNot<PS_BY_FILE>;
using RunCondition_fEqual = RunConditionEqual<PS_BY_FUNCTION>;
using RunCondition_tEqual = RunConditionEqual<PS_BY_TEST>;
using RunCondition_sEqual = RunConditionEqual<PS_BY_FILE>;

// Makes the condition that an option argument stands for ("=", "-" or "+" in front choose the
// form); null when the pattern is empty. The caller owns it.
RunCondition* psMakeCondition(const psString& argument, int group);

// All conditions of the command line. Owns them.
class psConditions : public psList<RunCondition*> {
public:
    psConditions() = default;
    psConditions(const psConditions&) = delete;
    psConditions& operator=(const psConditions&) = delete;
    ~psConditions() override;

    void setLogic(int logic) { m_logic = logic; } // 0: and, 1: or
    int logic() const { return m_logic; }

    // The overall verdict: without conditions every test is admitted.
    bool tobeRun(const psTest* test) const;
    // Whether any condition names the test.
    bool names(const psTest* test) const;
    // The verdict of one group.
    bool tobeRun(const psTest* test, int group) const;
    bool tobeRun_or(const psTest* test, int group, int kind) const;
    bool tobeRun_and(const psTest* test, int group) const;
    using psList<RunCondition*>::count;
    int count(int group) const;
    int count(int group, int kind) const;

private:
    int m_logic = 0;
};
