/* libntkcore.so.12: processor features and the choice of kernels, cache size, status texts,
 * thread count, clock readers, floating-point words. Any function may be called before ntkInit.
 */
#pragma once

#include "ntkdefs.h"

#ifdef __cplusplus
extern "C" {
#endif

/* Bits of a feature mask. The AVX bits and those built on it are present only when the operating
 * system saves the 256-bit vector state, the AVX512 and AVX10 bits only when it saves the 512-bit
 * state too. Bits 12, 31 and 33 are never set by this library.
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

/* The 8 bytes which, found in *pFeatures, ask ntkGetCpuFeatures for the raw registers alone. */
#define NTK_GET_INFO_MARKER "getinfoa"

/* Largest thread count that ntkSetNumThreads takes. */
#define NTK_MAX_NUM_THREADS 1024

/* The library's name, number and build day. Never null; the record is the library's. */
NTK_API const NtkLibraryVersion* ntkcoreGetLibVersion(void);

/* Enables every feature that this machine has. That is also the state at start, so the call
 * serves to return to it after ntkSetCpuFeatures.
 * Returns ntkStsNoErr.
 */
NTK_API NtkStatus ntkInit(void);

/* Tells what the processor and the operating system support, whatever is enabled.
 *
 * pFeatures: 8 bytes. Receives the feature mask, unless it holds NTK_GET_INFO_MARKER and
 *   registers is given: then it is left alone.
 * registers: null, or four words. On entry registers[0] is the leaf and registers[2] the subleaf
 *   of the processor's identification instruction; on return the words hold EAX, EBX, ECX, EDX.
 *   The instruction is executed for any leaf: what it gives above the largest supported leaf
 *   (leaf 0, or 0x80000000 for the extended ones) is the processor's affair.
 * The two must not overlap.
 * Returns ntkStsNoErr; ntkStsNullPtr when pFeatures is null (registers stays as it was).
 */
NTK_API NtkStatus ntkGetCpuFeatures(Ntk64u* pFeatures, Ntk32u registers[4]);

/* The features from which kernels are chosen now: those of the machine, or what the last
 * ntkSetCpuFeatures left of them. Two clocks or so; may be called per operation.
 */
NTK_API Ntk64u ntkGetEnabledCpuFeatures(void);

/* Enables exactly the features of the mask that the machine has; later calls of every library of
 * the family, in all threads, choose their kernels from them. Bits imply no other bits: a mask of
 * NTK_CPU_AVX2 alone leaves a kernel that also needs NTK_CPU_CLMUL out. 0 leaves the generic
 * kernels. A call running in another thread keeps the kernel with which it began.
 * Returns ntkStsNoErr; ntkStsFeaturesUnavailable (a warning) when the machine lacks some of the
 * features asked for: the others are enabled.
 */
NTK_API NtkStatus ntkSetCpuFeatures(Ntk64u features);

/* The largest cache of the processor.
 *
 * pSizeBytes: receives the size in bytes, above 0 (INT_MAX for a larger one).
 * Returns ntkStsNoErr; ntkStsNullPtr; ntkStsNoProcessorInfo when the processor describes no cache
 * (*pSizeBytes stays as it was).
 */
NTK_API NtkStatus ntkGetMaxCacheSizeB(int* pSizeBytes);

/* One line of text for any status, also for one that no function returns. Never null; constant. */
NTK_API const char* ntkGetStatusString(NtkStatus status);

/* Sets the number of threads that functions may use, for the whole process. LZO takes
 * notice of it: the encoder of the method ntkLZOMT and the decoders of its streams. All other
 * functions of this build work on the caller's thread.
 * Returns ntkStsNoErr; ntkStsBadValue when numThreads is not within 1 to NTK_MAX_NUM_THREADS (the
 * number stays as it was).
 */
NTK_API NtkStatus ntkSetNumThreads(int numThreads);

/* pNumThreads: receives the number of threads, 1 until ntkSetNumThreads changes it.
 * Returns ntkStsNoErr; ntkStsNullPtr.
 */
NTK_API NtkStatus ntkGetNumThreads(int* pNumThreads);

/* The time-stamp counter as it stands, without fences: for spans of milliseconds and more. */
NTK_API Ntk64u ntkGetCpuClocks(void);

/* The time-stamp counter at the ends of a measured span. Everything before a Start is done when
 * the counter is read, and nothing after it has begun; everything before a Stop is done when the
 * counter is read. What follows a Stop may begin earlier: it is outside the span.
 * The Tscp forms need the RDTSCP instruction (leaf 0x80000001, EDX bit 27) and fault without it.
 */
NTK_API Ntk64u ntkStartTsc(void);
NTK_API Ntk64u ntkStopTsc(void);
NTK_API Ntk64u ntkStartTscp(void);
NTK_API Ntk64u ntkStopTscp(void);

/* Operations of ntkFpuSsx4TS. */
enum {
    ntkFpuSetControl = 1, /* x87 control word: the bits of mask become those of value */
    ntkFpuGetControl = 2, /* returns the x87 control word */
    ntkFpuGetStatus = 3,  /* returns the x87 status word */
    ntkFpuClear = 4,      /* clears the x87 exception flags */
    ntkSsxSet = 5,        /* SIMD control/status register: as operation 1 */
    ntkSsxGet = 6,        /* returns the SIMD control/status register */
    ntkSsxClear = 7       /* clears the six exception flags of the SIMD register */
};

/* Reads and writes the floating-point words of the calling thread. value and mask are used by
 * operations 1 and 5 only; bits that the processor reserves are left alone, whatever the mask.
 * Operations 1 and 5 return the word as it is afterwards, 4 and 7 return 0, and so does any other
 * number, which does nothing.
 * Operation 1 with a flag raised whose exception it unmasks makes the next x87 instruction trap:
 * clear first.
 */
NTK_API Ntk32u ntkFpuSsx4TS(int op, Ntk32u value, Ntk32u mask);

#ifdef __cplusplus
}
#endif
