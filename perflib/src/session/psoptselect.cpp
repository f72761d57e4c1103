// Keys for which tests are run.
#include "psoptionutil.h"
#include "pstestlist.h"

namespace {

// One of the three fields that conditions look at.
struct Field {
    char key;
    psConditionGroup group;
    const char* name;      // in the texts: "function" name
    const char* emptyText; // for a condition without a pattern
};
constexpr Field functionField = {'f', PS_BY_FUNCTION, "function",
                                 "ignored: empty function pattern"};
constexpr Field testField = {'t', PS_BY_TEST, "test", "ignored: empty test pattern"};
constexpr Field fileField = {'m', PS_BY_FILE, "source file", "ignored: empty file pattern"};

const char* verbOf(char form) {
    switch (form) {
    case '-': return "don't run tests with ";
    case '+': return "run only tests with ";
    default: return "run tests with ";
    }
}

template <const Field& F> psString conditionInfo(const psString& argument) {
    RunCondition* const condition = psMakeCondition(argument, F.group);
    if (!condition) {
        return F.emptyText;
    }
    const char* const relation = argument[0] == '=' ? " name equal to " : " name that contains ";
    const psString text = verbOf(argument[0]) + psString(F.name) + relation + condition->pattern();
    delete condition;
    return text;
}

template <const Field& F> void addCondition(const psString& argument, psSession* session) {
    if (RunCondition* const condition = psMakeCondition(argument, F.group)) {
        session->addCondition(condition);
    }
}

psString conditionDetail(const Field& field) {
    const psString key = "-" + psString(field.key);
    return "Several " + key + " keys may present in command line.\nThe test will be run if " +
           field.name + " name meets following conditions:\n" + "       it is equal to one of " +
           key + "= arguments\n" + "    OR\n" + "       it contains one of " + key +
           " arguments\n" + "       AND\n" + "       it contains all of " + key +
           "+ arguments if any\n" + "       AND\n" + "       it doesn't contain any of " + key +
           "- arguments\n";
}

template <const Field& F> void addConditionOption(psOptionList& options, const psString& help) {
    psAddOption<PS_USED_IN_LIST, conditionInfo<F>, addCondition<F>>(options, F.key, help,
                                                                    conditionDetail(F));
}

bool isOr(const psString& argument) {
    return argument.startsWith("o");
}

psString logicInfo(const psString& argument) {
    return isOr(argument) ? "run tests that meet -f or -t or -m conditions"
                          : "run tests that meet -f and -t and -m conditions";
}

void setLogic(const psString& argument, psSession* session) {
    session->logicCondition(isOr(argument) ? 1 : 0);
}

psString startInfo(const psString& argument) {
    return argument.empty() ? "start testing from the first function"
                            : "start testing from function with " + argument + " in name";
}

void setStart(const psString& argument, psSession*) {
    psTestList::m_startFunc = argument;
}

constexpr const char* logicDetail = "-kand: the test will be run if\n"
                                    "       function name meets -f conditions\n"
                                    "       AND\n"
                                    "       test name meets -t conditions\n"
                                    "       AND\n"
                                    "       source file name meets -m conditions\n"
                                    "-kor : the test will be run if any of them is met\n"
                                    "If -k key doesn't present in command line then\n"
                                    "    -kand is performed\n";

} // namespace

void psInitSelectOptions(psOptionList& options) {
    addConditionOption<functionField>(
        options, "-f < or-pattern> = run tests for functions with pattern in name\n"
                 "-f-<not-pattern> = don't run tests for functions with pattern in name\n"
                 "-f+<and-pattern> = run only tests for functions with pattern in name\n"
                 "-f=< eq-pattern> = run tests for function with name equal to pattern\n");
    addConditionOption<testField>(
        options, "-t[-|+|=]<patrn> = run (don't run) tests with pattern in test name\n");
    addConditionOption<fileField>(options, "-m[-|+|=]<patrn> = run (don't run) tests registered "
                                           "in file with pattern in file name\n");
    psAddOption<PS_USED_IN_LIST, logicInfo, setLogic>(
        options, 'k', "-k<and|or>       = compose different keys (-f,-t,-m) by logical operation\n",
        logicDetail + psLastKeyText("-k"));
    psAddOption<PS_USED_IN_RUN, startInfo, setStart>(
        options, 'F', "-F<func-name>    = start testing from function with func-name full name\n",
        psLastKeyText("-F"));
}
