/* Types, statuses and records shared by the three libraries of compression primitives.
 *
 * Conventions of every function declared in these headers:
 * - Lengths and sizes are in bytes unless the description says otherwise; a length is an int, in
 *   the LZO functions an Ntk32u.
 * - Functions report by an NtkStatus: 0 is success, a negative value an error (nothing was done, or
 *   the work was abandoned), a positive value a warning (the work was done as far as the warning's
 *   description says). They never print and never abort.
 * - Functions work in the caller's buffers and on the stack. Three groups also allocate memory and
 *   free it before they return:
 *   - ntksBWTFwd_8u and ntksBWTFwd_SelectSort_8u, whenever the suffix sort does the work: 257 KiB;
 *   - ntksEncodeLZ4HC_8u at levels 10 to 12: about 64 KiB;
 *   - the LZO encoder and decoders, when they start threads: the threads' stacks.
 *   If there is no memory they do without it, as their descriptions say.
 * - Arguments are checked in the order: null pointers, lengths, other values. The first fault found
 *   determines the status. A pointer must not be null even if its length is 0, unless its
 *   description allows it.
 * - A function that fails leaves its in/out lengths and values unchanged, unless its description
 *   says otherwise. What a failed encoder or decoder wrote to the destination, within the given
 *   capacity, is undefined.
 * - Buffers need no alignment: arrays of elements of any size and blocks for states may be at any
 *   address. Single values that are passed by their address (lengths, counts of bits, an
 *   NtksInflateState) must be aligned as their type is.
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
    ntkStsSrcEnd = 3,              /* the source ends before its contents are complete */
    ntkStsDstFull = 2,             /* the destination was full before the end of the source */
    ntkStsFeaturesUnavailable = 1, /* requested features that this machine lacks stay disabled */

    ntkStsNoErr = 0,

    /* Errors. */
    ntkStsNotImplemented = -2, /* this build has no such function */
    ntkStsNullPtr = -3,        /* a pointer that must not be null is null */
    ntkStsBadSize = -4,        /* a length is negative or too large */
    ntkStsBadValue = -5,       /* an argument other than a length is out of its range */
    ntkStsDstTooSmall = -6,    /* the result does not fit the destination */
    ntkStsBadSrcData = -7,     /* the source is malformed */
    ntkStsNoProcessorInfo = -8 /* the processor does not provide the information */
};

/* The version record of a library. The texts are constant, never null and contain no comma. */
typedef struct {
    const char* name;      /* the library, for example "ntkDC" */
    const char* version;   /* version number and build, for example "12.0.0 (open build)" */
    const char* buildDate; /* date of the build, for example "Jan 31 2024" */
} NtkLibraryVersion;

/* A two-dimensional size in elements. */
typedef struct {
    int width;
    int height;
} NtkiSize;

#ifdef __cplusplus
}
#endif
