#pragma once

// What measured code left in the floating-point words: flags that its watchers did not expect.

// Whether either word has such a flag, and which.
bool psBadCtrlStatus(bool& bad87, bool& badSSX);
// A warning for each word that is asked for.
void psPrintCtrlStatus(bool p87, bool pSSX);
void psClearCtrlStatus();
