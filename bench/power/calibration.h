// What a call of a prepared case takes, and what chains of multiplications add to it.
#pragma once

#include <string>
#include <vector>

#include <nlohmann/json.hpp>

#include "psturns.h"

// Needs the library that slows functions (bench/slower); throws a std::runtime_error without.
//
// What a link of a chain costs is told by one that takes about as long as the call; the quickest
// turns with and without it count. As a control each level's chain is then switched on and off from
// turn to turn: in one process, code and data of both "sides" are the same at the same addresses.
nlohmann::ordered_json calibrate(const psTurns& turns, const std::string& function,
                                 const std::vector<double>& levels, double seconds);
