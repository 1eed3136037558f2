// A host that takes the library in and lets go of it again, many times over. The library's part is played through a
// small module linked to it, so that the calls are the exported ones.

#include <dlfcn.h>

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <string>

namespace
{
void Check(bool bGood, const char* pWhat)
{
    if (bGood)
        return;
    const char* const pReason = dlerror();
    std::fprintf(stderr, "%s: %s\n", pWhat, pReason ? pReason : "");
    std::exit(1);
}

/// In pages.
long GetResidentSize()
{
    std::ifstream statm("/proc/self/statm");
    long nSize = 0, nResident = 0;
    statm >> nSize >> nResident;
    return nResident;
}
} // namespace

/// Arguments: the module, the file name of the library.
int main(int, char** argv)
{
    constexpr int nRounds = 200;
    long nAfterFirstRounds = 0;
    for (int nRound = 0; nRound < nRounds; ++nRound)
    {
        void* const pModule = dlopen(argv[1], RTLD_NOW | RTLD_LOCAL);
        Check(pModule != nullptr, "not loaded");
        using Use = int();
        Use* const pUse = reinterpret_cast<Use*>(dlsym(pModule, "UseLibrary"));
        Check(pUse != nullptr, "no function");
        Check(pUse() == 6, "the box that was drawn has not six faces");
        Check(dlclose(pModule) == 0, "not closed");
        Check(dlopen(argv[2], RTLD_NOW | RTLD_NOLOAD) == nullptr, "the library stays in the process");
        if (nRound == 20)
            nAfterFirstRounds = GetResidentSize();
    }
    // A History or a table left behind in each round would be some hundred kilobytes.
    Check(GetResidentSize() - nAfterFirstRounds < 256, "memory grows with each round");
    return 0;
}
