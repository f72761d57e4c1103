#pragma once

#include <string>

#include "captured.h"
#include "pscstream.h"

// What a table and a log receive from the reports.

template <class Put> std::string tableText(Put put) {
    const std::string path = testPath("report.csv");
    psCStream table;
    table.addStream(path.c_str(), false);
    put(table);
    table.close();
    return readFile(path);
}

template <class Report> std::string logText(const Report& report) {
    const Captured output;
    g_ostrm << report;
    return output.text();
}
