#include <array>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <string>

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include "ctl/StandardOutput.h"
#include "tests/TLClass/TemporaryDirectory.h"

namespace {

std::string ContentOf(const std::string& strPath) {
    std::ifstream objFile(strPath, std::ios::binary);
    return {std::istreambuf_iterator<char>(objFile), {}};
}

/// A process whose two outputs go to files, and which prints in the library's way and in the program's.
TEST(StandardOutput, KeepsApartWhatTheLibraryPrints) {
    const CTemporaryDirectory objDirectory;
    const std::string strOut = objDirectory.MakeFile("out");
    const std::string strErr = objDirectory.MakeFile("err");
    std::fflush(stdout);
    const pid_t nChild = fork();
    if (nChild == 0) {
        dup2(open(strOut.c_str(), O_WRONLY | O_CLOEXEC), STDOUT_FILENO);
        dup2(open(strErr.c_str(), O_WRONLY | O_CLOEXEC), STDERR_FILENO);
        {
            CStandardOutput objOutput;
            std::puts("Unable to uncompress ZIP file");
            objOutput.GetStream() << "{}\n";
        }
        std::puts("as before");
        std::fflush(stdout);
        std::_Exit(0);
    }
    int nStatus = -1;
    ASSERT_EQ(waitpid(nChild, &nStatus, 0), nChild);
    EXPECT_EQ(nStatus, 0);
    EXPECT_EQ(ContentOf(strOut), "{}\nas before\n");
    EXPECT_EQ(ContentOf(strErr), "Unable to uncompress ZIP file\n");
}

/// A process whose output nobody reads, and which was given no standard error.
TEST(StandardOutput, EndsTheProgramOnlyBehindItselfWhenItsReaderHasGone) {
    const CTemporaryDirectory objDirectory;
    const std::string strBehind = objDirectory.Path("behind");
    std::array<int, 2> arrPipe{};
    ASSERT_EQ(pipe(arrPipe.data()), 0);
    close(arrPipe[0]);
    const pid_t nChild = fork();
    if (nChild == 0) {
        dup2(arrPipe[1], STDOUT_FILENO);
        close(STDERR_FILENO);
        {
            CStandardOutput objOutput;
            objOutput.GetStream() << "lost" << std::flush;
            std::ofstream(strBehind) << (objOutput.GetStream() ? "good" : "bad");
        }
        std::_Exit(0);
    }
    close(arrPipe[1]);
    int nStatus = -1;
    ASSERT_EQ(waitpid(nChild, &nStatus, 0), nChild);
    EXPECT_TRUE(WIFSIGNALED(nStatus) && WTERMSIG(nStatus) == SIGPIPE) << nStatus;
    EXPECT_EQ(ContentOf(strBehind), "good");
}

TEST(StandardOutput, TellsOfAFullDisk) {
    const int nBefore = dup(STDOUT_FILENO);
    const int nFull = open("/dev/full", O_WRONLY | O_CLOEXEC);
    std::fflush(stdout);
    dup2(nFull, STDOUT_FILENO);
    bool bGood = true;
    {
        CStandardOutput objOutput;
        bGood = static_cast<bool>(objOutput.GetStream() << "lost" << std::flush);
    }
    dup2(nBefore, STDOUT_FILENO);
    close(nFull);
    close(nBefore);
    EXPECT_FALSE(bGood);
}

}  // namespace
