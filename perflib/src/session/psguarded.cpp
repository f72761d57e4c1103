#include "psguarded.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <memory>

#include "progresswords.h"
#include "pscstream.h"
#include "psinterruption.h"
#include "psistream.h"
#include "pspastrun.h"
#include "psremarks.h"
#include "pstest.h"
#include "pstestlist.h"

namespace {

// The file, of this type, whose number the variable holds; -1 when it holds none. Processes that
// the library may start have nothing to do with it.
int inheritedFile(const char* variable, mode_t type = S_IFREG) {
    const char* const text = getenv(variable);
    const int file = text ? atoi(text) : -1;
    unsetenv(variable);
    struct stat status = {};
    if (file <= STDERR_FILENO || fstat(file, &status) != 0 || (status.st_mode & S_IFMT) != type) {
        return -1;
    }
    fcntl(file, F_SETFD, FD_CLOEXEC);
    return file;
}

// Nothing in a field may pass for the end of the field or of the line.
psString fieldText(const psString& text) {
    psString field = text;
    for (int i = 0; i < field.length(); ++i) {
        if (field[i] == '\t' || field[i] == '\n' || field[i] == '\r') {
            field.at(i) = ' ';
        }
    }
    return field;
}

psStringList figureFields() {
    const psRunFigures& figures = psTest::m_figures;
    psStringList fields;
    fields.append(psText(figures.measured));
    fields.append(psText(figures.spread));
    fields.append(psText(figures.switchedOut));
    fields.append(psText(figures.clocksInCalls));
    return fields;
}

psStringList operator+(psStringList fields, const psStringList& more) {
    for (const psString& field : more) {
        fields.append(field);
    }
    return fields;
}

psStringList listOf(std::initializer_list<psString> fields) {
    psStringList list;
    for (const psString& field : fields) {
        list.append(field);
    }
    return list;
}

void muteTables(bool muted) {
    g_cstrm.setMuted(muted);
    g_ustrm.setMuted(muted);
    g_nstrm.setMuted(muted);
}

class Guarded : public psRunWatch, public psIStream::Memory {
public:
    Guarded(int file, int past);
    const psPastRun& past() const { return m_past; }
    bool continuesRun() const { return m_continues; }
    void noteSummaryWritten() { keep(progress::closed, {}); }
    void end();

    bool wasRun(psTest& test, psTestList& list) override;
    void testBegins(const psTest& test) override;
    void testEnds(psResult result, bool refused) override;
    void starts(psTest& test) override { tell(test, "canStart", {}); }
    void parametersRead(psTest& test) override;
    void prepares(psTest& test) override;
    void calls(psTest& test) override;
    void releases(psTest& test) override;

    bool knowsAnswer(const psString& name, psString& answer) override;
    void asks() override { sayForNow(listOf({progress::asks})); }
    void answered(const psString& name, const psString& answer) override;

private:
    void readPast(int file);
    void takeOver(psTestList& list);
    void countPast(psTestList& list);
    void tell(psTest& test, const char* label, const psString& combination);
    void keep(const char* word, const psStringList& fields);
    void keepRemarks();
    void sayForEver(const psStringList& fields);
    void sayForNow(const psStringList& fields);
    void put(const psString& text) const;

    int m_file;
    long m_end = 0;   // of the lines for ever
    psString m_now;   // the lines behind them
    int m_places = 0; // told
    bool m_continues;
    psPastRun m_past;
    psList<psPastRun::Result>::const_iterator m_nextResult;
    bool m_testsReached = false;
    int m_remarks = 0; // that the watcher knows, or that every process makes again
};

Guarded::Guarded(int file, int past) : m_file(file), m_continues(past >= 0) {
    put("0\n");
    m_end = 2;
    sayForEver(listOf({progress::hello}));
    setvbuf(stdin, nullptr, _IONBF, 0); // what is not read yet is the successor's
    if (m_continues) {
        readPast(past);
        g_ostrm.hold();
        muteTables(true);
    }
    m_nextResult = m_past.results.begin();
}

void Guarded::readPast(int file) {
    FILE* const in = fdopen(file, "r");
    char* text = nullptr;
    size_t room = 0;
    ssize_t length;
    while (in && (length = getline(&text, &room, in)) > 0) {
        text[length - 1] = '\0'; // every line is ended
        m_past.take(text);
    }
    free(text);
    if (in) {
        fclose(in);
    }
}

// What came before the tests is in the outputs already, and what the earlier processes learned of
// the settings counts.
void Guarded::takeOver(psTestList& list) {
    m_testsReached = true;
    if (m_continues) {
        g_ostrm.release(false);
        muteTables(false);
        list.setStartTime(m_past.begun);
        list.setStartInstant(m_past.begunInstant);
    } else {
        keep(progress::begun, listOf({psText(static_cast<long long>(list.startTime())),
                                      psText(list.startInstant())}));
    }
    for (const psString& remark : m_past.remarks) {
        g_remarks.add(remark);
    }
    m_remarks = g_remarks.count();
    for (const psPastRun::Asked& asked : m_past.asked) {
        g_istrm.setSection(asked.function);
        for (const psString& name : asked.names) {
            g_istrm.declareName(name);
            g_istrm.markUsed(name);
        }
        g_istrm.markSectionRead();
    }
}

bool Guarded::wasRun(psTest& test, psTestList& list) {
    if (!m_testsReached) {
        takeOver(list);
    }
    if (g_istrm.isWriting()) { // settings, at the end and whole: nothing to go on with
        g_runWatch = nullptr;
        return false;
    }
    if (m_nextResult != m_past.results.end()) {
        countPast(list);
        return true;
    }
    if (!m_past.lost) {
        return false;
    }
    psTest::m_figures = m_past.figures;
    test.reportLost(*m_past.lost);
    m_past.lost.reset();
    list.plus(PS_EXCEPTION);
    testEnds(PS_EXCEPTION, false);
    return true;
}

void Guarded::countPast(psTestList& list) {
    const psPastRun::Result& past = *m_nextResult++;
    g_cstrm.setLineCount(past.tableLines);
    psTest::m_figures = past.figures;
    if (past.code >= 0) {
        list.plus(static_cast<psResult>(past.code));
    }
}

void Guarded::testBegins(const psTest& test) {
    m_now = "";
    sayForEver(listOf(
        {progress::test, test.functionName(), psText(static_cast<long long>(time(nullptr)))}));
}

void Guarded::testEnds(psResult result, bool refused) {
    m_now = "";
    keepRemarks();
    keep(progress::result,
         listOf({psText(refused ? -1 : int{result}), psText(g_cstrm.lineCount())}) +
             figureFields());
}

void Guarded::parametersRead(psTest& test) {
    psStringList fields = listOf({test.functionName()});
    for (const psParameter* const parm : test.parms()) {
        fields.append(parm->name());
    }
    keep(progress::asked, fields);
    keepRemarks();
}

void Guarded::prepares(psTest& test) {
    tell(test, "initData", test.combination());
}

void Guarded::calls(psTest& test) {
    tell(test, "ntkFunctionCalls", test.combination());
    sayForNow(listOf({progress::row}) + test.combinationCells());
}

void Guarded::releases(psTest& test) {
    tell(test, "flushData", test.combination());
}

// The log has all that leads there before it is told: what a process still holds goes with it.
void Guarded::tell(psTest& test, const char* label, const psString& combination) {
    g_ostrm.flush();
    m_now = "";
    sayForNow(listOf({progress::at, label, combination, test.hasMeasured() ? "1" : "0"}) +
              figureFields() + listOf({psText(++m_places)}));
}

bool Guarded::knowsAnswer(const psString& name, psString& answer) {
    if (m_testsReached) {
        return false;
    }
    auto& answers = m_past.answers;
    for (auto known = answers.begin(); known != answers.end(); ++known) {
        if (known->name == name) {
            answer = known->text;
            answers.erase(known); // one that is rejected is asked for again
            return true;
        }
    }
    return false;
}

// The answers for one test are of no use to a successor, which does not run it again.
void Guarded::answered(const psString& name, const psString& answer) {
    if (!m_testsReached) {
        keep(progress::answer, listOf({name, answer}));
    }
}

void Guarded::end() {
    if (!m_testsReached) {
        g_ostrm.release(true); // it says why
        muteTables(false);
    }
    if (m_testsReached || !m_continues) { // else the tests of this process are still to be run
        sayForEver(listOf({progress::end}));
    }
}

// Of very many remarks the first texts are known, and the others count.
void Guarded::keepRemarks() {
    for (; m_remarks < g_remarks.count(); ++m_remarks) {
        keep(progress::remark, listOf({psField(g_remarks.shown(), m_remarks)}));
    }
}

void Guarded::keep(const char* word, const psStringList& fields) {
    sayForEver(listOf({progress::keep, word}) + fields);
}

static psString lineOf(const psStringList& fields) {
    psString line;
    for (const psString& field : fields) {
        line << (line.empty() ? "" : "\t") << fieldText(field);
    }
    return line + "\n";
}

void Guarded::sayForEver(const psStringList& fields) {
    const psString line = lineOf(fields);
    put(line + m_now);
    m_end += line.length();
}

void Guarded::sayForNow(const psStringList& fields) {
    m_now += lineOf(fields);
    put(m_now);
}

// Behind the lines for ever, in place of what was there. The file is memory: neither is slow nor
// fails, unless there is no memory, and then the watcher knows less.
void Guarded::put(const psString& text) const {
    const auto length = static_cast<size_t>(text.length());
    const auto end = m_end + static_cast<off_t>(length);
    if (pwrite(m_file, text.c_str(), length, m_end) != static_cast<ssize_t>(length) ||
        ftruncate(m_file, end) != 0) {
        return;
    }
}

std::unique_ptr<Guarded> g_guarded;
constinit int g_file = -1;
constinit int g_terminal = -1;

// In a signal handler.
void tellSignal() {
    [[maybe_unused]] const ssize_t lost = pwrite(g_file, "1", 1, 0);
}

} // namespace

void psConnectGuard() {
    const int file = inheritedFile(progress::fileVariable);
    const int past = inheritedFile(progress::pastVariable);
    g_terminal = inheritedFile(progress::terminalVariable, S_IFCHR);
    if (file < 0) {
        return;
    }
    g_guarded = std::make_unique<Guarded>(file, past);
    g_runWatch = g_guarded.get();
    g_file = file;
    psInterruption::setListener(tellSignal);
    g_istrm.setMemory(g_guarded.get());
}

int psTerminalOfGuard() {
    return g_terminal;
}

bool psContinuesRun() {
    return g_guarded && g_guarded->continuesRun();
}

void psEndLastLine(const char* path) {
    FILE* const file = fopen(path, "r+");
    if (!file) {
        return;
    }
    if (fseek(file, -1, SEEK_END) == 0 && fgetc(file) != '\n') {
        fseek(file, 0, SEEK_END);
        fputc('\n', file);
    }
    fclose(file);
}

bool psIsSummaryWritten() {
    return g_guarded && g_guarded->past().isSummaryWritten;
}

void psNoteSummaryWritten() {
    if (g_guarded) {
        g_guarded->noteSummaryWritten();
    }
}

void psEndGuarded() {
    if (g_guarded) {
        g_guarded->end();
    }
}
