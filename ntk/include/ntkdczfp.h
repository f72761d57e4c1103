/* ZFP blocks: part of libntkdc.so.12, included by ntkdc.h. */
#pragma once

#include "ntkdefs.h"

#ifdef __cplusplus
extern "C" {
#endif

#ifdef __cplusplus
}
#endif
