#pragma once

// Process-wide objects are used from static initialisers of any file (tests and parameters
// register themselves before main), so they are constructed before all ordinary ones, which have
// no priority; the lower number comes first.
#define PS_INIT_FIRST __attribute__((init_priority(201)))
#define PS_INIT_SECOND __attribute__((init_priority(202)))
