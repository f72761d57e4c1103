/* libntkcore.so.12: processor features and the selection of kernels, cache size, status texts,
 * thread count, time-stamp counter, floating-point control and status words. Any function may be
 * called before ntkInit.
 */
#pragma once

#include "ntkdefs.h"

#ifdef __cplusplus
extern "C" {
#endif

/* Bits of a feature mask. The AVX bits and those that build on AVX are present only if the
 * operating system saves the 256-bit vector state, the AVX512 and AVX10 bits only if it saves the
 * 512-bit state too. This library never sets bits 12, 31 and 33.
 */
#define NTK_CPU_MMX 0x1ULL
#define NTK_CPU_SSE 0x2ULL
#define NTK_CPU_SSE2 0x4ULL
#define NTK_CPU_SSE3 0x8ULL
#define NTK_CPU_SSSE3 0x10ULL
#define NTK_CPU_MOVBE 0x20ULL
#define NTK_CPU_SSE41 0x40ULL
#define NTK_CPU_SSE42 0x80ULL
#define NTK_CPU_AVX 0x100ULL
#define NTK_CPU_AVX_OS 0x200ULL /* the operating system saves the 256-bit vector state */
#define NTK_CPU_AES 0x400ULL
#define NTK_CPU_CLMUL 0x800ULL
#define NTK_CPU_RDRAND 0x2000ULL
#define NTK_CPU_F16C 0x4000ULL
#define NTK_CPU_AVX2 0x8000ULL
#define NTK_CPU_ADCOX 0x10000ULL
#define NTK_CPU_RDSEED 0x20000ULL
#define NTK_CPU_PREFETCHW 0x40000ULL
#define NTK_CPU_SHA 0x80000ULL
#define NTK_CPU_AVX512F 0x100000ULL
#define NTK_CPU_AVX512CD 0x200000ULL
#define NTK_CPU_AVX512ER 0x400000ULL
#define NTK_CPU_AVX512PF 0x800000ULL
#define NTK_CPU_AVX512BW 0x1000000ULL
#define NTK_CPU_AVX512DQ 0x2000000ULL
#define NTK_CPU_AVX512VL 0x4000000ULL
#define NTK_CPU_AVX512VBMI 0x8000000ULL
#define NTK_CPU_MPX 0x10000000ULL
#define NTK_CPU_AVX512_4FMADDPS 0x20000000ULL
#define NTK_CPU_AVX512_4VNNIW 0x40000000ULL
#define NTK_CPU_AVX512IFMA 0x100000000ULL
#define NTK_CPU_AVX512VPOPCNTDQ 0x400000000ULL
#define NTK_CPU_AVX512_BITALG 0x800000000ULL
#define NTK_CPU_AVX512_FP16 0x1000000000ULL
#define NTK_CPU_AVX_VNNI 0x2000000000ULL
#define NTK_CPU_AVX_VNNI_INT8 0x4000000000ULL
#define NTK_CPU_AVX_VNNI_INT16 0x8000000000ULL
#define NTK_CPU_AVX10_256 0x10000000000ULL
#define NTK_CPU_AVX10_512 0x20000000000ULL

/* The 8 bytes that, in *pFeatures, ask ntkGetCpuFeatures for the raw registers only. */
#define NTK_GET_INFO_MARKER "getinfoa"

/* Largest thread count that ntkSetNumThreads accepts. */
#define NTK_MAX_NUM_THREADS 1024

/* The library's name, version and build date. Never null; the library owns the record. */
NTK_API const NtkLibraryVersion* ntkcoreGetLibVersion(void);

/* Enables every feature that this machine has. This is also the initial state; call it to return
 * there after ntkSetCpuFeatures.
 * Returns ntkStsNoErr.
 */
NTK_API NtkStatus ntkInit(void);

/* Gets the features that the processor has and the operating system supports, enabled or not.
 *
 * pFeatures: 8 bytes. Receives the feature mask; if it holds NTK_GET_INFO_MARKER and registers is
 *   not null, it is left unchanged.
 * registers: null, or four words. On entry registers[0] is the leaf and registers[2] the subleaf of
 *   the CPUID instruction; on return the words hold EAX, EBX, ECX, EDX. The instruction is executed
 *   for any leaf: what it returns above the largest supported leaf (in EAX of leaf 0, or of
 *   0x80000000 for the extended ones) depends on the processor.
 * The two must not overlap.
 * Returns ntkStsNoErr; ntkStsNullPtr if pFeatures is null (registers is unchanged).
 */
NTK_API NtkStatus ntkGetCpuFeatures(Ntk64u* pFeatures, Ntk32u registers[4]);

/* The features that kernels are currently chosen by: those of the machine, or those of them that
 * the last ntkSetCpuFeatures enabled. Takes about two clocks; may be called per operation.
 */
NTK_API Ntk64u ntkGetEnabledCpuFeatures(void);

/* Enables exactly those features of the mask that the machine has; later calls into any of the
 * three libraries, from all threads, choose their kernels by them. No bit implies another: a mask
 * of NTK_CPU_AVX2 alone excludes a kernel that also needs NTK_CPU_CLMUL. A mask of 0 leaves only
 * the generic kernels. A call already running in another thread keeps its kernel. Returns
 * ntkStsNoErr; ntkStsFeaturesUnavailable (a warning) if the machine lacks some of the requested
 * features: the others are enabled.
 */
NTK_API NtkStatus ntkSetCpuFeatures(Ntk64u features);

/* Gets the size of the processor's largest cache.
 *
 * pSizeBytes: receives the size in bytes, above 0 (INT_MAX for a larger one).
 * Returns ntkStsNoErr; ntkStsNullPtr; ntkStsNoProcessorInfo if the processor describes no cache
 * (*pSizeBytes is unchanged).
 */
NTK_API NtkStatus ntkGetMaxCacheSizeB(int* pSizeBytes);

/* A one-line text for any status, even one that no function returns. Never null; constant. */
NTK_API const char* ntkGetStatusString(NtkStatus status);

/* Sets the number of threads that functions may use, for the whole process. In this build it
 * affects LZO only: the encoder with the method ntkLZOMT and the decoders of its streams. All other
 * functions work on the caller's thread.
 * Returns ntkStsNoErr; ntkStsBadValue if numThreads is not within 1 to NTK_MAX_NUM_THREADS (the
 * number is unchanged).
 */
NTK_API NtkStatus ntkSetNumThreads(int numThreads);

/* Gets the number of threads that functions may use.
 *
 * pNumThreads: receives the number, 1 until ntkSetNumThreads changes it.
 * Returns ntkStsNoErr; ntkStsNullPtr.
 */
NTK_API NtkStatus ntkGetNumThreads(int* pNumThreads);

/* Reads the time-stamp counter without fences: for intervals of a millisecond or more. */
NTK_API Ntk64u ntkGetCpuClocks(void);

/* Read the time-stamp counter at the start and the end of a measured interval. When a Start reads
 * the counter, all instructions before it have executed and none after it has begun. When a Stop
 * reads it, all instructions before it have executed; those after it may already have begun, as
 * they are not measured. The Tscp forms need the RDTSCP instruction (CPUID leaf 0x80000001, EDX bit
 * 27) and fault without it.
 */
NTK_API Ntk64u ntkStartTsc(void);
NTK_API Ntk64u ntkStopTsc(void);
NTK_API Ntk64u ntkStartTscp(void);
NTK_API Ntk64u ntkStopTscp(void);

/* Operations of ntkFpuSsx4TS. */
enum {
    ntkFpuSetControl = 1, /* sets the bits of the x87 control word that mask selects to value's */
    ntkFpuGetControl = 2, /* returns the x87 control word */
    ntkFpuGetStatus = 3,  /* returns the x87 status word */
    ntkFpuClear = 4,      /* clears the x87 exception flags */
    ntkSsxSet = 5,  /* as ntkFpuSetControl, for the SIMD control and status register (MXCSR) */
    ntkSsxGet = 6,  /* returns MXCSR */
    ntkSsxClear = 7 /* clears the six exception flags of MXCSR */
};

/* Reads or writes the floating-point control and status words of the calling thread. Only
 * operations 1 and 5 use value and mask; bits that the processor reserves stay unchanged whatever
 * the mask. Operations 1 and 5 return the new word, 4 and 7 return 0. Any other number does nothing
 * and returns 0.
 * If operation 1 unmasks an exception whose flag is raised, the next x87 instruction traps: clear
 * the flags first.
 */
NTK_API Ntk32u ntkFpuSsx4TS(int op, Ntk32u value, Ntk32u mask);

#ifdef __cplusplus
}
#endif
