/* Types, statuses and records shared by the three libraries of the compression primitives.
 *
 * Conventions of every function declared in these headers:
 * - Lengths and sizes are counted in bytes unless the name says otherwise; a length is an int.
 * - Functions report by an NtkStatus: 0 is success, a negative value an error (nothing was
 *   done, or the work was given up), a positive value a warning (the work was done, with the
 *   stated remark). They never print, never abort and, but for the highest levels of the LZ4
 *   high-compression encoder and the threads of LZO, never allocate memory.
 * - Arguments are checked in the order: null pointers, lengths, other values. The first fault
 *   found names the status. A pointer must not be null even where its length is 0, unless its
 *   description says so.
 * - A function that fails leaves its in/out lengths and values as they were, unless its
 *   description says otherwise. What a failed encoder or decoder wrote into the destination,
 *   within the capacity given, is undefined.
 * - Buffers need no alignment.
 * - Any number of threads may call at once as long as no two of them write the same memory.
 */
#pragma once

#if defined(__GNUC__)
#define NTK_API __attribute__((visibility("default")))
#else
#define NTK_API
#endif

#ifdef __cplusplus
extern "C" {
#endif

typedef unsigned char Ntk8u;
typedef unsigned short Ntk16u;
typedef unsigned int Ntk32u;
typedef unsigned long long Ntk64u;
typedef signed char Ntk8s;
typedef short Ntk16s;
typedef int Ntk32s;
typedef long long Ntk64s;
typedef float Ntk32f;
typedef double Ntk64f;

typedef int NtkStatus;

enum {
    /* Warnings. */
    ntkStsSrcEnd = 3,              /* the source is at its end before what it holds is */
    ntkStsDstFull = 2,             /* the destination is full before the source is at its end */
    ntkStsFeaturesUnavailable = 1, /* features this processor lacks were asked for and left out */

    ntkStsNoErr = 0,

    /* Errors. */
    ntkStsNotImplemented = -2, /* this build has no such function */
    ntkStsNullPtr = -3,        /* a pointer that must point somewhere is null */
    ntkStsBadSize = -4,        /* a length is negative or too large */
    ntkStsBadValue = -5,       /* an argument other than a length is out of its range */
    ntkStsDstTooSmall = -6,    /* the result does not fit the destination */
    ntkStsBadSrcData = -7,     /* the source is not what an encoder writes */
    ntkStsNoProcessorInfo = -8 /* the processor does not tell what was asked */
};

/* What a library says about itself. The texts are constant, never null and hold no comma. */
typedef struct {
    const char* name;      /* the library, for example "ntkDC" */
    const char* version;   /* its number and build, for example "12.0.0 (open build)" */
    const char* buildDate; /* the day of the build, for example "Jan 31 2024" */
} NtkLibraryVersion;

/* A two-dimensional size in elements. */
typedef struct {
    int width;
    int height;
} NtkiSize;

#ifdef __cplusplus
}
#endif
