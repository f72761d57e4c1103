// The table of keys in the guide: each example is run as it stands there and must have the effect
// that its row promises.
#include <sys/resource.h>
#include <unistd.h>

#include <filesystem>

#include "../patterns.h"
#include "session.h"

namespace {

namespace fs = std::filesystem;

// How often a text stands in an output.
struct Seen {
    std::string text;
    int times = 1;
    std::string file = ""; // none: the console
};

struct Check {
    const char* example;
    std::vector<Seen> seen;
    const char* answers = nullptr; // none: nobody ever types
};

const std::string old = "of an older run\n";
const std::string end = "\f"; // stands behind the last character of an output

Seen in(const std::string& file, const std::string& text, int times = 1) {
    return {text, times, file};
}

Seen never(const std::string& text, const std::string& file = "") {
    return {text, 0, file};
}

// A listing of exactly these names, one on a line.
Seen listing(const std::string& names) {
    return {"=\n" + names + end};
}

Texts guideLines() {
    return linesOf(readFile(NTK_GUIDE_FILE));
}

// Of the rows "| `<key>` | `<example>` | <effect> |" of the guide: the key of each example.
std::map<std::string, std::string> keysOfExamples() {
    const char* const pattern = "^\\| `(-[^`]+)` \\| `((ntkperf|psexample) [^`]+)` \\| .+ \\|$";
    std::map<std::string, std::string> keys;
    for (const std::string& line : guideLines()) {
        if (const Texts cells = groupsOf(line, pattern); !cells.empty()) {
            EXPECT_TRUE(keys.emplace(cells[2], cells[1]).second) << "twice: " << line;
        }
    }
    return keys;
}

// What there is before an example: the files that the guide shows with "$ cat <name>", some of an
// older run, and of the corpus what is needed.
std::map<std::string, std::string> filesBefore() {
    std::map<std::string, std::string> files = {{"book1", std::string(65536, 'x')}};
    for (const char* const ending : {".txt", ".csv", "_name.csv"}) {
        files[std::string("night") + ending] = old;
    }
    std::string name;
    for (const std::string& line : guideLines()) {
        if (line.starts_with("$ cat ")) {
            name = line.substr(6);
        } else if (line.starts_with("$ ") || line.starts_with("```")) {
            name.clear();
        } else if (!name.empty()) {
            files[name] += line + "\n";
        }
    }
    return files;
}

// The nice value that a process of this user gets who asks for the highest priority.
int highestNice() {
    const int own = getpriority(PRIO_PROCESS, 0);
    const bool allowed = getuid() == 0 && setpriority(PRIO_PROCESS, 0, own - 1) == 0;
    setpriority(PRIO_PROCESS, 0, own);
    return allowed ? -20 : own;
}

const std::string asksTiming = "Method {Auto|Manual|Statistic|Iterative} [Auto]: ";
const std::string asksLength = "for CodeLength [16384; 262144; *2]: ";
const std::string asksPlace = "AlignVectorsBy {byte|element} [byte]: ";
const std::string figure = "-- performance:\n";
const std::string columns = "\nFunction,Types,Length,";
const std::string adler = "\nntksAdler32_8u,8u,262144,";
const std::string parameters = "\nntksAdler32_8u,8u,CodeLength\n";
const std::string summary = "\nFunction,Class,Control87,";
const std::string hidden = "This is hidden key used by developers only\n";

const Check checks[] = {
    {"ntkperf -B -f=ntksAdler32_8u -dMethod=Manual -rnight",
     {never("]: "), {figure, 5}, in("night.csv", ",nLps=10,", 5)}},
    {"ntkperf -A -f=ntksAdler32_8u",
     {{asksTiming}, {asksLength, 2}, {asksPlace}, {figure, 5}},
     "Manual\n1\n\n\n\n\n\n\n\n"},
    {"ntkperf -ATiming -f=ntksAdler32_8u",
     {{asksTiming}, never(asksLength), never(asksPlace), {figure, 5}},
     "Manual\n1\n\n"},
    {"ntkperf -@quick.arg -f=ntksCRC32_8u -dCodeLength=1000", {{figure}, {"CodeLength=1000 \n"}}},
    {"ntkperf -@quick.arg -fCRC32C -itwo", {{figure}, {"ntksCRC32C_8u: CodeLength=1000 \n"}}},
    {"ntkperf -@quick.arg -fCRC32C -Inew",
     {never(figure), in("new.ini", "\n[Perf System]\n"), in("new.ini", "\nAccuracy=5\t"),
      in("new.ini", "\n[ntksCRC32C_8u]\nCodeLength=16384; 262144; *2\t")}},
    {"ntkperf -@quick.arg -P -itwo",
     {{" Function : ", 2},
      {"\nntksCRC32C_8u: CodeLength=1000 \n"},
      {"\nntksEncodeLZ4Dict_8u: length=65536 dict=E CodeLength=65536 CodeFile=book1 \n"}}},
    {"ntkperf -@quick.arg -fAdler -onight",
     {never(old, "night.txt"), in("night.txt", figure, 5), in("night.txt", "PS Summary\n")}},
    {"ntkperf -@quick.arg -fAdler -Onight",
     {in("night.txt", old + "Command line options: \n"), in("night.txt", "PS Summary\n")}},
    {"ntkperf -@quick.arg -fAdler -LERR", {never(figure), never(" Result   :"), {"PS Summary\n"}}},
    {"ntkperf -@quick.arg -fAdler -LINFO",
     {{figure, 5}, {"        funcClocks = ", 5}, never("trace into")}},
    {"ntkperf -@quick.arg -fAdler -LTRACE",
     {{figure, 5}, never("funcClocks = "), {"trace into   initData\n", 5}, {" - psMalloc: ", 5}}},
    {"ntkperf -@quick.arg -fAdler -dCodeLength=100 -LDATA -LINFO",
     {{figure},
      {"START === before function calls"},
      {"START === after function calls"},
      {"funcClocks = "}}},
    {"ntkperf -@quick.arg -fAdler -LINFO -J2",
     {{"-J2: set number of external measurement loops to 2\n"},
      {"    Manual method: \n        numLoops   = 1\n", 5},
      {figure, 5}}},
    {"ntkperf -@quick.arg -fAdler -rnight",
     {never(old, "night.csv"), in("night.csv", columns), in("night.csv", adler)}},
    {"ntkperf -@quick.arg -fAdler -Rnight",
     {in("night.csv", old + "Processor,"), in("night.csv", columns), in("night.csv", adler)}},
    {"ntkperf -@quick.arg -fAdler -fLZ4Dict_8u -dCodeFile=book1 -qnight",
     {in("night_name.csv", parameters + "ntksEncodeLZ4Dict_8u,8u,dict,CodeLength,CodeFile\n" + end),
      never(old, "night_name.csv")}},
    {"ntkperf -@quick.arg -fAdler -rnight -q+",
     {in("night.csv", parameters + "ntksAdler32_8u,8u,16384,"), in("night.csv", adler)}},
    {"ntkperf -@quick.arg -q -Q",
     {never(figure), in("ntkperf_name.csv", parameters),
      in("ntkperf_name.csv", "ntksEncodeLZ4HC_8u,8u,dict,CodeLength,CodeFile\n"),
      in("ntkperf_name.csv", "ntksAdler32_8u,8u,CodeLength\n")}},
    {"ntkperf -@quick.arg -fAdler -unight",
     {never(old, "night.csv"), in("night.csv", summary), in("night.csv", "\nEND_DATA\n")}},
    {"ntkperf -@quick.arg -fAdler -Unight",
     {in("night.csv", old + " Processor: "), in("night.csv", summary),
      in("night.csv", "\nEND_DATA\n")}},
    {"ntkperf -@quick.arg -fAdler -xnight",
     {in("night.jsonl", "{\"record\":\"run\",\"format\":\"ntkperf\",\"version\":1,"),
      in("night.jsonl", "{\"record\":\"measurement\",\"function\":\"ntksAdler32_8u\",", 5),
      in("night.jsonl", "{\"record\":\"end\",\"tests\":1,\"failed\":0,")}},
    {"ntkperf -@quick.arg -fAdler -gdone", {in("done.end", "00:00:0"), in("done.end", "\n", 3)}},
    {"ntkperf -@quick.arg -fAdler -nnight -o -r -u -q -g",
     {in("night.txt", "PS Summary\n"), in("night.csv", adler), in("night_sum.csv", summary),
      in("night_name.csv", parameters), in("night.end", "00:00:0")}},
    {"ntkperf -@quick.arg -fAdler -pmore -ione", {{figure}, {"CodeLength=1000 \n"}}},
    {"ntkperf -@quick.arg -fAdler -lout -o -r",
     {in("out/ntkperf.txt", "PS Summary\n"), in("out/ntkperf.csv", adler)}},
    {"ntkperf -e- -fAdler -fCRC32",
     {listing("ntksAdler32_8u\nntksCRC32C_8u\nntksCRC32_8u\nntksCRC32_BZ2_8u\n")}},
    {"ntkperf -e- -fCRC32 -f-BZ2", {listing("ntksCRC32C_8u\nntksCRC32_8u\n")}},
    {"ntkperf -e- -f+LZ4 -f+Safe", {listing("ntksEncodeLZ4DictSafe_8u\nntksEncodeLZ4Safe_8u\n")}},
    {"ntkperf -e- -f=ntksCRC32_8u", {listing("ntksCRC32_8u\n")}},
    {"ntkperf -e- -t=TimdcLZ4",
     {listing("ntksDecodeLZ4_8u\nntksEncodeLZ4Safe_8u\nntksEncodeLZ4_8u\n")}},
    {"ntkperf -e- -m-lz -mp_dcc -mp_dcl",
     {listing("ntksAdler32_8u\nntksCRC32C_8u\nntksCRC32_8u\nntksCRC32_BZ2_8u\n")}},
    {"ntkperf -e- -fSafe -tDict -kand", {listing("ntksEncodeLZ4DictSafe_8u\n")}},
    {"ntkperf -e- -fAdler -t=TimdcLZ4 -kor",
     {listing("ntksAdler32_8u\nntksDecodeLZ4_8u\nntksEncodeLZ4Safe_8u\nntksEncodeLZ4_8u\n")}},
    {"ntkperf -@quick.arg -fCRC32 -FntksCRC32_8u",
     {{" Function : ", 2}, {" Function : ntksCRC32_8u\n"}, {" Function : ntksCRC32_BZ2_8u\n"}}},
    {"ntkperf -B -fAdler -dCodeLength=262144 -dMethod=Manual -dNumLoops=20000 -YHIGH", {{figure}}},
    {"ntkperf -@quick.arg -fAdler -H -rnight",
     {in("night.csv", ",Comment,Interest,Spread\n"), in("night.csv", ",nLps=1,-,", 5)}},
    {"psexample -@quick.arg -fmem -dLength=1000 -H -rnight",
     {in("night.csv", "\nmemcpy,-,1000,"), in("night.csv", ",+,-\n"),
      in("night.csv", ",-,-\n", 2)}},
    {"ntkperf -@quick.arg -HO", {never(" Function : "), {"-- No test meets the conditions"}}},
    {"psexample -@quick.arg -HO", {{" Function : "}, {" Function : memcpy\n"}}},
    {"ntkperf -@quick.arg -fAdler -W -unight",
     {in("night.csv", ",Near 53 Inexact,Ok,Near Inexact FlushToZero,Ok,")}},
    {"psexample -@quick.arg -f=result03 -W", {{"FP fail"}, {" Result   : exception"}}},
    {"ntkperf -@quick.arg -f-ntks -TSSE2",
     {{"\n--calling ntkSetCpuFeatures( ntkCpuFeatures =      0x7 )\n--status = ntkStsNoErr\n"},
      {" MMX SSE SSE2 SSE3(off) SSSE3(off) "}}},
    {"ntkperf -@quick.arg -fAdler -SU -LINFO",
     {{"   funcCall with Set&Use is called for measuring.\n"}, {figure, 5}}},
    {"ntkperf -@quick.arg -fAdler -C",
     {never(figure),
      {"-- Can't run In-Outof-Cache timing: no program support for function ntksAdler32_8u\n"}}},
    {"ntkperf -e- -fCRC -s", {listing("ntksCRC32C_8u\nntksCRC32_8u\nntksCRC32_BZ2_8u\n")}},
    {"ntkperf -e- -fCRC -s-", {listing("ntksCRC32_8u\nntksCRC32C_8u\nntksCRC32_BZ2_8u\n")}},
    {"ntkperf -e -fAdler",
     {listing("   #  Function        Test           Source\n"
              "   1  ntksAdler32_8u  TimdcChecksum  p_dcchecksum_ia\n")}},
    {"ntkperf -e+ -fAdler",
     {{"   1  ntksAdler32_8u  TimdcChecksum  p_dcchecksum_ia\n\n   #  Function "},
      {"\n   4  ntksCRC32_BZ2_8u "},
      {"+\n   5  ntksEncodeLZ4_8u "}}},
    {"ntkperf -e- -fAdler", {listing("ntksAdler32_8u\n")}},
    {"ntkperf -v", {{"\nBrask NTK. Performance System 2.0, "}, never("-B  ")}},
    {"ntkperf -@quick.arg -f=ntksCRC32_8u",
     {{"-B: batch mode\n-dMethod=Manual: "}, {"\nNumLoops = 1\n"}, {figure, 5}}},
    {"ntkperf -h", {{"QUICK HELP\n-B   "}, {"\n-r[<"}, never("\n-c["), never("If several")}},
    {"ntkperf -hh", {{"EXTENDED HELP\n-B   "}, {"If several -F keys"}, never("\n-c[")}},
    {"ntkperf -hf", {{"EXTENDED KEY HELP\n-f < or-pattern> "}, {"Several -f keys"}}},
    {"ntkperf -B -fAdler -dCodeLength=8000000 -rnight -c1", {in("night.csv", ",nLps=8,")}},
    {"ntkperf -B -fAdler -dCodeLength=16384 -rnight -c1 -j200000",
     {in("night.csv", ",nLps=200000,")}},
    {"ntkperf -?",
     {{"QUICK HELP with hidden keys\n-B   "},
      {"\n-x["},
      {"\n-W="},
      {"\n-c["},
      {"\n-j["},
      {"\n-?   "}}},
    {"ntkperf -??", {{"EXTENDED HELP with hidden keys\n"}, {hidden, 5}, {"If several -F keys"}}},
    {"ntkperf -?c", {{"EXTENDED KEY HELP\n-c[<num-ms>] "}, {"If num-ms is less than 1"}}},
};

class EveryKey : public SystemTest {
protected:
    void prepare() const {
        for (const auto& left : fs::directory_iterator(directory())) {
            fs::remove_all(left);
        }
        fs::create_symlink(NTK_PERF_FILE, path("ntkperf"));
        fs::create_symlink(NTK_EXAMPLE_FILE, path("psexample"));
        fs::create_directory(path("out"));
        for (const auto& [name, content] : m_files) {
            fs::create_directories(fs::path(path(name)).parent_path());
            write(name, content);
        }
    }
    void expect(const Check& check) const {
        prepare();
        Texts words = linesOf(replaced(check.example, " ", "\n"));
        Command command = {.program = path(words.front()), .directory = directory()};
        if (check.answers) {
            command.input = check.answers;
        }
        const Outcome run = runWell(Texts(words.begin() + 1, words.end()), command);
        for (const Seen& seen : check.seen) {
            const std::string where = seen.file.empty() ? run.output : text(seen.file);
            EXPECT_EQ(timesIn(where + end, seen.text), seen.times) << seen.text << seen.file << "\n"
                                                                   << where;
        }
        if (words.back() == "-YHIGH") {
            EXPECT_EQ(run.leastNice, highestNice());
        }
    }

private:
    std::map<std::string, std::string> m_files = filesBefore();
};

TEST_F(EveryKey, HasTheEffectThatTheGuideTells) {
    std::map<std::string, std::string> told = keysOfExamples();
    std::set<char> keysTold, keys;
    for (const auto& [example, key] : told) {
        EXPECT_TRUE(has(example, " " + key));
        keysTold.insert(key.at(1));
    }
    for (const Check& check : checks) {
        SCOPED_TRACE(check.example);
        EXPECT_EQ(told.erase(check.example), 1u) << "not in the guide, or checked before";
        expect(check);
    }
    EXPECT_TRUE(told.empty()) << "not checked: " << testing::PrintToString(told);
    const std::string help = run({"-?"}).output;
    for (const std::string& line : linesOf(help.substr(help.find("QUICK HELP")))) {
        if (line.starts_with("-")) {
            keys.insert(line.at(1));
        }
    }
    EXPECT_EQ(std::string(keysTold.begin(), keysTold.end()), std::string(keys.begin(), keys.end()));
}

} // namespace
