#pragma once

// All measurements run with results below the normal range flushed to zero, and such operands
// read as zero: a primitive's cost must not depend on a stray denormal. Once, at a program's start.
void psFlushDenormals();
