// Runs every file of a corpus through a fuzz target once: the main of a fuzz target that is built as a test.

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* pData, std::size_t nSize);

int main(int argc, char* argv[]) {
    std::size_t nFiles = 0;
    for (int i = 1; i < argc; ++i) {
        for (const auto& objEntry : std::filesystem::recursive_directory_iterator(argv[i])) {
            if (!objEntry.is_regular_file()) {
                continue;
            }
            std::ifstream objFile(objEntry.path(), std::ios::binary);
            const std::vector<char> vecBytes{std::istreambuf_iterator<char>(objFile), std::istreambuf_iterator<char>()};
            LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(vecBytes.data()), vecBytes.size());
            ++nFiles;
        }
    }
    std::printf("%zu files\n", nFiles);
    return nFiles > 0 ? 0 : 1;  // an empty corpus is a mistake
}
