// The results as people read them.
#pragma once

#include <string>

#include "reading.h"

std::string plainTables(const Results& results);
std::string markdownTables(const Results& results);
