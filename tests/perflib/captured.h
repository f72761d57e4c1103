#pragma once

#include <string>

#include "files.h"
#include "psostream.h"

// Captures what is written to g_ostrm during its life, at the output level given.
class Captured {
public:
    explicit Captured(int outLevel = PS_OUT_PERF) : m_levelBefore(g_ostrm.outLevel()) {
        g_ostrm.setOutLevel(outLevel);
        g_ostrm.addStream(m_path.c_str(), false);
    }
    ~Captured() {
        g_ostrm.close();
        g_ostrm.setOutLevel(m_levelBefore);
    }
    Captured(const Captured&) = delete;
    Captured& operator=(const Captured&) = delete;

    std::string text() const {
        g_ostrm.flush();
        return readFile(m_path);
    }

private:
    const std::string m_path = testPath("captured.txt");
    const int m_levelBefore;
};
