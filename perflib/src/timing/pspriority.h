#pragma once

// Scheduling priority of the process during a measured run. Class 0 changes nothing, 1 is high
// (nice -20), 2 normal (0), 3 low (10). Only the superuser's process is changed; for any other
// user, and for other classes, the call only marks that there is nothing to restore.
void psSetPriority(int priorityClass);
// Gives back what the last psSetPriority changed.
void psResetPriority();
