#pragma once

// Process-wide objects are used from static initialisers of any file (tests and parameters
// register themselves before main), so they come into being before all ordinary ones: a lower
// number is earlier. Ordinary objects have none.
#define PS_INIT_FIRST __attribute__((init_priority(201)))
#define PS_INIT_SECOND __attribute__((init_priority(202)))
