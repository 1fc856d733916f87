#include <exception>
#include <iostream>

#include "ctl/ProducerPath.h"
#include "ctl/Program.h"
#include "ctl/StandardOutput.h"

int main(int argc, char* argv[]) {
    try {
        CStandardOutput objStandardOutput;
        AddBundledProducerToSearchPath();
        return static_cast<int>(
            RunProgram({argv + (argc > 0 ? 1 : 0), argv + argc},
                       {objStandardOutput.GetStream(), std::cerr, CStandardOutput::IsErrorTerminal()}));
    } catch (const std::exception& objException) {
        std::cerr << "norvikctl: " << objException.what() << '\n';
        return static_cast<int>(EXIT_CODE::Failure);
    }
}
