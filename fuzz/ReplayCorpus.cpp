// Runs every file of the folders given through the target, for compilers that have no fuzzer.
#include "Target.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

int main(int nArguments, char** aArguments)
{
    std::vector<std::filesystem::path> aFiles;
    for (int i = 1; i < nArguments; ++i)
        for (const auto& entry : std::filesystem::directory_iterator(aArguments[i]))
            aFiles.push_back(entry.path());
    std::sort(aFiles.begin(), aFiles.end());
    for (const std::filesystem::path& path : aFiles)
    {
        std::printf("%s\n", path.c_str());
        std::fflush(stdout); // it may be the last
        std::ifstream stream(path, std::ios::binary);
        const std::vector<char> aBytes{std::istreambuf_iterator<char>(stream), {}};
        LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(aBytes.data()), aBytes.size());
    }
    return aFiles.empty() ? 1 : 0;
}
