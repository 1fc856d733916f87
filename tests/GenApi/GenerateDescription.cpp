// Writes the description of a big camera to the file named, for tests, benchmarks and the eye.

#include <fstream>
#include <iostream>

#include "tests/GenApi/DescriptionGenerator.h"

int main(int nArguments, char** ppArgument) {
    if (nArguments != 2) {
        std::cerr << "usage: generate_description FILE\n";
        return 2;
    }
    std::ofstream objFile(ppArgument[1], std::ios::binary);
    objFile << GenerateDescription(kBigDescriptionSize);
    objFile.close();
    if (!objFile) {
        std::cerr << ppArgument[1] << ": can't be written\n";
        return 1;
    }
    return 0;
}
