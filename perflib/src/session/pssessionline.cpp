// The command line of a session: where it comes from, in which order it takes effect.

#include <string_view>
#include <unistd.h>

#include "ps.h"
#include "psguarded.h"
#include "psistream.h"
#include "psremarks.h"
#include "pstest.h"

// Everything that the keys set, as it was before them.
void psSession::resetModes() {
    m_askMode = 0;
    m_batMode = false;
    m_quickMode = false;
    m_enumMode = notListed;
    m_nameMode = 0;
    m_nameExit = false;
    m_unopenedFile = false;
    m_iniName = "";
    m_outputs.clear();
    g_remarks.clear();
    m_report.clear();
    m_report.append("Command line options: ");
}

bool psSession::parseCommandLine(int argc, char** argv) {
    m_exePath = argc > 0 ? argv[0] : "";
    resetModes();
    noteConsoleFiles();
    readArguments(argc, argv);
    m_keys.indexCommandLine(m_commands);
    setExitLevel();
    setDirectories();
    g_ostrm.setOutLevel(PS_OUT_PERF);
    readArgumentFiles();
    applyCommands();
    openOutputs();
    g_ostrm << PS_NORMAL;
    for (const psString& piece : m_report) {
        g_ostrm << piece;
    }
    g_ostrm << PS_END_FLUSH;
    m_report.clear();
    if (m_unopenedFile) {
        g_ostrm << PS_ERR << "FATAL FAIL: can't open output file for writing\n" << PS_END_FLUSH;
        return false;
    }
    if (!openSettings()) {
        return false;
    }
    updateOptions();
    g_istrm.setIStream(m_batMode ? nullptr : stdin);
    return true;
}

void psSession::readArguments(int argc, char** argv) {
    psString text;
    psString file;
    if (argc >= 2) {
        m_commands.setArgs(argc - 1, argv + 1);
        m_report.append("\n");
    } else if (readCfgFile(text, file)) {
        m_fileUses.add(file, "command line options", 0);
        m_commands.setArgs(text.c_str());
        m_report.append("read from " + file + " file\n");
    } else if (pCmdLine) {
        m_commands.setArgs(pCmdLine->c_str());
        m_report.append("set by _FORCE_CMDLINE preprocessor definition\n");
    } else {
        m_report.clear();
    }
}

bool psSession::readCfgFile(psString& text, psString& file) {
    return psReadCfgFile(m_exePath, text, file);
}

void psSession::setExitLevel() {
    m_exitLevel = m_keys.isGiven('?') || m_keys.isGiven('h') ? 2
                  : m_keys.isGiven('e')                      ? 1
                  : m_keys.isGiven('v')                      ? 3
                                                             : 0;
}

// Before any other key, so that the order of keys on the line never changes where files go.
void psSession::setDirectories() {
    const auto argument = [this](char key) {
        psString text;
        for (const psCommandKey& command : m_commands) {
            command.getArg(key, text);
        }
        return text;
    };
    setInDir(argument('p'));
    setOutDir(argument('l'));
    setDefName(argument('n'));
}

// Files that the shell opened for the session must not become output files, too.
void psSession::noteConsoleFiles() {
    m_fileUses.clear();
    m_fileUses.addOpen(STDIN_FILENO, "console input");
    m_fileUses.addOpen(STDOUT_FILENO, "console output");
}

void psSession::readArgumentFiles() {
    for (const psCommandKey& command : m_commands) {
        if (command.key() == '@') {
            m_fileUses.add(command.arg(), "command line options", '@');
        }
    }
    if (!m_commands.expandFiles()) {
        m_unopenedFile = true;
    }
    noteInputFiles(); // first: "-I" may name one of them
    for (const psCommandKey& command : m_commands) {
        if (command.key() == 'i' || command.key() == 'I') {
            m_fileUses.add(genInPath(command.arg(), ".ini"), "PS parameters", command.key());
        }
    }
}

void psSession::applyCommands() {
    m_keys.indexAll(m_commands, m_options);
    for (const psCommandKey& command : m_commands) {
        const bool isBlankEntry = command.key() == ' ' && command.arg().empty();
        if (!isBlankEntry) {
            applyCommand(command);
        }
    }
}

// After the last key: the first of two keys that conflict over a file must not have emptied it.
void psSession::openOutputs() {
    for (const Output& output : m_outputs) {
        const psFileUses::Use* const use = m_fileUses.find(output.path);
        const bool conflicting = use && use->conflicting;
        if (conflicting) {
            continue;
        }
        if (psContinuesRun()) {
            psEndLastLine(output.path.c_str());
        }
        if (!output.open(output.path, output.append || psContinuesRun())) {
            m_unopenedFile = true;
        }
    }
    m_outputs.clear();
}

// A valid key that a later one overrides has no effect.
void psSession::applyCommand(const psCommandKey& command) {
    if (const psCommandKey* const later = m_keys.overriddenBy(command, m_options)) {
        m_report.append("-" + psText(command.key()) + command.arg() +
                        ": ignored because of later -" + psText(later->key()) + " key\n");
    } else {
        applyOption(command.key(), command.arg());
    }
}

// Whether a key, or a part of it, has no effect. One that another key replaces or that this session
// has no use for is no mistake.
static bool isUnheeded(const psString& effect) {
    const std::string_view text = effect.c_str();
    return text.starts_with("ignored: ") || text.ends_with(" are ignored") ||
           text.ends_with(": there is no such file");
}

void psSession::applyOption(char key, const psString& argument) {
    m_report.append("-" + psText(key) + argument + ": ");
    psOption* const option = getOption(key);
    if (!option) {
        m_report.append("ignored: incorrect option key\n");
        g_remarks.add("-" + psText(key) + argument);
        return;
    }
    const psString effect = option->report(argument);
    m_report.append(effect + "\n");
    if (isUnheeded(effect)) {
        g_remarks.add("-" + psText(key) + argument);
    }
    if (option->apply) {
        option->apply(argument, this);
    }
}
