/* The interface is C: it must compile as such, and its types must have their sizes. */
#include "ntkcore.h"
#include "ntkdc.h"
#include "ntks.h"

_Static_assert(sizeof(Ntk8u) == 1 && sizeof(Ntk16u) == 2 && sizeof(Ntk32u) == 4 &&
                   sizeof(Ntk64u) == 8 && sizeof(Ntk32f) == 4 && sizeof(Ntk64f) == 8,
               "sizes of the elementary types");
_Static_assert(sizeof(NTK_GET_INFO_MARKER) - 1 == sizeof(Ntk64u), "the marker fills a mask");
