/* Preloaded into a program: from its main function on, memory of the C library is given VKRHDR_MEMORY_CALLS times, and
 * never again. Told to VKRHDR_MEMORY_COUNT, a path, is how often it was asked for. */
#define _GNU_SOURCE
#include <dlfcn.h>
#include <errno.h>
#include <stdatomic.h>
#include <stdio.h>
#include <stdlib.h>

typedef int (*Main)(int, char**, char**);

static Main g_pMain;
static atomic_long g_nCalls;
static long g_nGiven = -1; /* all of them, while main has not begun */

/* The C library's own, under the names that stay when these are replaced. */
extern void* __libc_malloc(size_t);
extern void* __libc_calloc(size_t, size_t);
extern void* __libc_realloc(void*, size_t);
extern void* __libc_memalign(size_t, size_t);

static int Refused(void)
{
    if (g_nGiven < 0 || atomic_fetch_add(&g_nCalls, 1) < g_nGiven) return 0;
    errno = ENOMEM;
    return 1;
}

void* malloc(size_t nBytes)
{
    return Refused() ? NULL : __libc_malloc(nBytes);
}

void* calloc(size_t nCount, size_t nBytes)
{
    return Refused() ? NULL : __libc_calloc(nCount, nBytes);
}

void* realloc(void* p, size_t nBytes)
{
    return Refused() ? NULL : __libc_realloc(p, nBytes);
}

void* aligned_alloc(size_t nAlignment, size_t nBytes)
{
    return Refused() ? NULL : __libc_memalign(nAlignment, nBytes);
}

static void Tell(void)
{
    const char* pPath = getenv("VKRHDR_MEMORY_COUNT");
    const long nCalls = atomic_load(&g_nCalls);
    g_nGiven = -1;
    FILE* pFile = pPath ? fopen(pPath, "w") : NULL;
    if (!pFile) return;
    fprintf(pFile, "%ld", nCalls);
    fclose(pFile);
}

static int CountedMain(int nArguments, char** ppArguments, char** ppEnvironment)
{
    const char* pGiven = getenv("VKRHDR_MEMORY_CALLS");
    atexit(Tell);
    g_nGiven = pGiven ? atol(pGiven) : -1;
    return g_pMain(nArguments, ppArguments, ppEnvironment);
}

int __libc_start_main(Main pMain, int nArguments, char** ppArguments, void (*pInit)(void), void (*pFini)(void),
                      void (*pLoaderFini)(void), void* pStackEnd)
{
    int (*pReal)(Main, int, char**, void (*)(void), void (*)(void), void (*)(void), void*);
    *(void**)&pReal = dlsym(RTLD_NEXT, "__libc_start_main");
    g_pMain = pMain;
    return pReal(CountedMain, nArguments, ppArguments, pInit, pFini, pLoaderFini, pStackEnd);
}
