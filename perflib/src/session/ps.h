#pragma once

#include "psbase.h"
#include "pscmdline.h"
#include "pscond.h"
#include "psfileuses.h"
#include "psgivenkeys.h"
#include "psoption.h"
#include "psostream.h"

// Bits of the console-input mode ("-A").
enum psAskMode : int {
    PS_ASK_TIMING = 1,
    PS_ASK_PARAMS = 2,
    PS_ASK_MISALIGN = 4,
    PS_ASK_TESTS = 8, // console input stays open during the run
    PS_ASK_ALL = 15,
};

// One whole measuring session: options are parsed, the library is prepared, the registered tests
// are sorted, selected and run, and the summary is written. A harness for another library derives
// from it and registers its own with psRegSession.
class psSession {
public:
    psSession() = default;
    psSession(const psSession&) = delete;
    psSession& operator=(const psSession&) = delete;

    // The order of the virtual operations is kept by derived sessions: add new ones at the end.
    virtual ~psSession() = default;
    virtual void initSession(); // builds the option table; once, before the command line
    // The result of the tests: not 0 when one failed. 0 when none was to be run.
    virtual int run(int argc, char** argv);
    virtual void funcTitleToCStream();
    virtual void parmsTitleToCStream();
    virtual void resultTitleToCStream();
    virtual void putTableTitle(); // the name line of the table, once before the tests
    virtual void putTableTitleLine();
    // Called once when the command line is parsed; false ends the session.
    virtual bool startSession() { return true; }
    virtual int updateOptions(); // after all keys; returns the console-input mode in force
    virtual bool parseCommandLine(int argc, char** argv);
    virtual void listTests(int mode);
    virtual void hint(char key, bool hidden);
    virtual void hint_quick(bool hidden);
    virtual void hint_full(bool hidden);
    virtual void hint_descr(char key);
    virtual void outputHeader();
    virtual void outputFooter();
    virtual void outputSignal();
    virtual void readCommonData();

    psConditions& conditions() { return m_conditions; }
    psOptionList& options() { return m_options; }
    void initOption(char key, const psString& help, psOption::Info info, psOption::Apply apply,
                    const psString& detail, bool hidden = false) {
        m_options.initOption(key, help, info, apply, detail, hidden);
    }
    psOption* getOption(char key) { return m_options.getOption(key); } // null: no such key
    psCommandList& commands() { return m_commands; }
    const psGivenKeys& keys() const { return m_keys; }
    psFileUses& fileUses() { return m_fileUses; }
    void applyOption(char key, const psString& argument);

    // For the apply functions.
    void addCondition(RunCondition* condition) { m_conditions.append(condition); } // takes it
    void logicCondition(int logic) { m_conditions.setLogic(logic); }
    void addAskMode(int bits) { m_askMode |= bits; }
    void setBatMode(bool on) { m_batMode = on; }
    void addLevelMode(int levels) { m_levelMode |= levels; }
    void setQuickMode(bool on) { m_quickMode = on; }
    void setEnumMode(int mode) { m_enumMode = mode; }
    void unopenedFile() { m_unopenedFile = true; }
    // Opens the file when all keys are known, unless two of them want it for different things.
    using psFileOpener = bool (*)(const psString& path, bool append);
    void openOutput(const psString& path, bool append, psFileOpener open) {
        m_outputs.append({path, append, open});
    }
    void setIniMode(const psString& name, bool write);
    void setSglName(const psString& argument);
    void dropSignal() { m_sglName = ""; }
    void setHelp(char key, bool hidden); // 1: the quick help
    void setVersion() { m_versionAsked = true; }
    void setCpuFeatures(unsigned long long mask) { m_cpuFeatures = mask; }
    int askMode() const { return m_askMode; }
    bool batMode() const { return m_batMode; }
    int levelMode() const { return m_levelMode; }
    bool quickMode() const { return m_quickMode; }
    int enumMode() const { return m_enumMode; }
    const psString& sglName() const { return m_sglName; }

    // Whether the session will only print help (2), list the tests (1) or print the version (3):
    // true when m_exitLevel is at least level.
    static bool isExit(int level) { return m_exitLevel >= level; }
    // Why a key is passed over in such a session.
    static psString getExitInfo();

    // Paths. A directory is given as typed: it gets its "/" and, when relative, the program's
    // directory in front. A name without a dot gets the extension.
    static bool isAbsolutePath(const psString& name);
    static psString genDirName(const psString& dir);
    static void setInDir(const psString& dir);
    static void setOutDir(const psString& dir);
    static void setDefName(const psString& name);
    static psString genPathName(const psString& dir, const psString& name, const psString& ext);
    static psString genInPath(const psString& name, const psString& ext);
    static psString genOutPath(const psString& name, const psString& ext);
    static psString getDirPath(const psString& name, const psString& dir);
    static psString getInPath(const psString& name); // where a test's data file lies
    static psString getOutPath(const psString& name);
    // Three lines: the title between rows of stars.
    static psString getEnterTitle(const psString& title);

    void beginCommonData();
    void endCommonData();
    void selectTestParameters();

    // Of g_settings.
    static psString& m_exePath;
    static psString& m_inDir;
    static psString& m_outDir;
    static psString& m_defName;
    static int& m_exitLevel;
    static int& m_nameMode;
    static bool& m_nameExit;

protected:
    bool prepare(int argc, char** argv);
    bool hintOutput();
    void openOutputs();

private:
    // Of m_enumMode: the modes of "-e" are -1, 0 and 1.
    static constexpr int notListed = 100;

    void resetModes();
    void noteConsoleFiles();
    void readArguments(int argc, char** argv);
    bool readCfgFile(psString& text, psString& file);
    void setDirectories();
    void setExitLevel();
    void readArgumentFiles();
    void noteInputFiles();
    void applyCommands();
    void applyCommand(const psCommandKey& command);
    bool openSettings();
    void prepareLibrary();
    void guardBlocks();
    void reportLibraryStatus(NtkStatus status);
    void applyFeatures();
    void collectLibInfo();
    bool sortTests();
    int runTests();
    void beginRecords();
    void closeTests();
    void declareCommonParms();
    void warnUnusedPresets();
    void warnUnusedSettings();
    void finish();
    void registerCpuTest();

    psConditions m_conditions;
    psOptionList m_options;
    psCommandList m_commands;
    psGivenKeys m_keys;
    psFileUses m_fileUses;
    int m_askMode = 0;
    bool m_batMode = false;
    int m_levelMode = 0;
    bool m_quickMode = false;
    int m_enumMode = notListed;
    bool m_unopenedFile = false;
    struct Output {
        psString path;
        bool append;
        psFileOpener open;
    };
    psList<Output> m_outputs; // to be opened
    psString m_iniName;
    bool m_iniWrite = false;
    // Of the command line, until it is printed. In pieces, because a text that grows by one of a
    // hundred thousand keys after the other is copied for each.
    psStringList m_report;
    psString m_sglName;
    char m_helpKey = 0;
    bool m_helpHidden = false;
    bool m_versionAsked = false;
    unsigned long long m_cpuFeatures = 0;
};

// Reads the settings of the session from presets, settings file, console and defaults; each
// returns how many values came from somewhere.
int psReadTimingMethod(psSession& session);
int psReadTestParameters(psSession& session);
int psReadDataOffset(psSession& session);
