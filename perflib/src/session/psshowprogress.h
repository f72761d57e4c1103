#pragma once

// From now on the run shows how far it is on the terminal of standard error, or on that of the
// process that watches over it. Nowhere when that is none, or when the log goes there.
void psShowProgress();
