#include "psdenormals.h"

#include <xmmintrin.h>

void psFlushDenormals() {
    constexpr unsigned flushToZero = 0x8000;
    constexpr unsigned denormalsAreZero = 0x0040;
    _mm_setcsr(_mm_getcsr() | flushToZero | denormalsAreZero);
}
