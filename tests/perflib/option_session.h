#pragma once

#include <stdexcept>
#include <string>
#include <vector>

#include "files.h"
#include "ps.h"
#include "psalloc.h"
#include "psctrl87.h"
#include "psistream.h"
#include "pssettings.h"
#include "pstest.h"

// A session before its command line, of a program "prog" in the test directory. What its keys
// change outside of it is restored at the end.
class OptionSession : public psSession {
public:
    OptionSession() {
        initSession();
        m_exePath = testPath("prog").c_str();
        setInDir("");
        setOutDir("");
        setDefName("");
        pSession = this;
    }
    ~OptionSession() override {
        pSession = nullptr;
        g_settings = m_settings;
        g_tool = psTool();
        ts87Base::Exception = m_exceptions.x87;
        tsSSXBase::Exception = m_exceptions.ssx;
        g_istrm.closeIniFile();
        g_istrm.setIStream(nullptr);
        g_istrm.removePresets();
    }

    psOption& option(char key) {
        if (psOption* const found = getOption(key)) {
            return *found;
        }
        throw std::invalid_argument(std::string("no option has the key ") + key);
    }

    // What the report of the command line says of a key; what differs from the start after it.
    std::string info(char key, const char* argument) { return option(key).info(argument).c_str(); }
    std::string effect(char key, const char* argument) {
        option(key).apply(argument, this);
        openOutputs();
        return state();
    }
    std::string state() {
        std::string text;
        const auto put = [&text](const std::string& name, bool differs) {
            text += differs ? (text.empty() ? "" : " ") + name : "";
        };
        const auto number = [&put](const char* name, long long value, long long usual) {
            put(name + std::to_string(value), value != usual);
        };
        put("bat", batMode());
        number("ask=", askMode(), 0);
        number("level=", levelMode(), 0);
        put("quick", quickMode());
        number("list=", enumMode(), 100);
        put(std::string("end=") + sglName().c_str(), !sglName().empty());
        for (const RunCondition* condition : conditions()) {
            put("cond=" + std::to_string(condition->group()) + std::to_string(condition->kind()) +
                    condition->pattern().c_str(),
                true);
        }
        put("or", conditions().logic() == 1);
        number("names=", m_nameMode, 0);
        put("nameExit", m_nameExit);
        put("pressing", psTest::m_pressing);
        put("cache", psTest::m_cache);
        number("hot=", psTest::m_hot, 0);
        number("ext=", psTool::m_numExtLoops, 8);
        number("ms=", psTool::m_numMilliseconds, 100);
        number("loops=", psTool::m_minNumLoops, 8);
        number("priority=", psTool::m_priority, 0);
        put("use", g_tool.harnessCalls);
        put("unmasked", psTest::m_unmasked);
        number("x87=", ts87Base::Exception, m_exceptions.x87);
        number("ssx=", tsSSXBase::Exception, m_exceptions.ssx);
        put(std::string("start=") + psTestList::m_startFunc.c_str(),
            !psTestList::m_startFunc.empty());
        for (const psString& name : g_istrm.unusedPresets()) {
            put(std::string("preset=") + name.c_str(), true);
        }
        return text;
    }

    bool parse(const std::vector<const char*>& words) {
        char* argv[16] = {};
        const std::string program = testPath("prog");
        argv[0] = const_cast<char*>(program.c_str());
        int argc = 1;
        for (const char* word : words) {
            argv[argc++] = const_cast<char*>(word);
        }
        return parseCommandLine(argc, argv);
    }
    using psSession::hintOutput;

private:
    const psSettings m_settings = g_settings;
    const struct { unsigned x87 = ts87Base::Exception, ssx = tsSSXBase::Exception; } m_exceptions;
};
