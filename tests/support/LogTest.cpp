#include <chrono>
#include <ctime>
#include <fstream>
#include <latch>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

#include <boost/filesystem.hpp>
#include <gtest/gtest.h>

#include "support/Log.h"
#include "support/Text.h"

namespace {

namespace fs = boost::filesystem;

/// A log of its own on a file that isn't there yet.
class Log : public testing::Test {
protected:
    Log()
        : m_objDirectory(fs::temp_directory_path() / fs::unique_path()), m_strFile((m_objDirectory / "log").string()) {
        fs::create_directory(m_objDirectory);
        m_objLog.DisableTimestamp();
        m_objLog.SetFileName(m_strFile);
    }
    ~Log() override {
        m_objLog.SetMode(0);
        fs::remove_all(m_objDirectory);
    }

    [[nodiscard]] std::string InFile() const {
        std::ostringstream objText;
        objText << std::ifstream(m_strFile).rdbuf();
        return objText.str();
    }

    fs::path m_objDirectory;
    std::string m_strFile;
    CLog m_objLog;
};

TEST_F(Log, BurstOf1024BytesReachesTheFile) {
    const std::string strHalf(500, 'h');
    m_objLog.Write(strHalf);
    m_objLog.Write(strHalf);
    EXPECT_EQ(InFile(), "");
    m_objLog.Write(strHalf);
    std::string strExpected = strHalf + "\n" + strHalf + "\n" + strHalf + "\n";
    EXPECT_EQ(InFile(), strExpected);

    // The count starts anew, and line ends aren't in it.
    m_objLog.Write(std::string(1022, 'a'));
    m_objLog.Write("b");
    EXPECT_EQ(InFile(), strExpected);
    m_objLog.Write("c");
    strExpected += std::string(1022, 'a') + "\nb\nc\n";
    EXPECT_EQ(InFile(), strExpected);
}

TEST_F(Log, LinesWaitForAFileThatOpens) {
    m_objLog.SetFileName((m_objDirectory / "missing" / "log").string());
    m_objLog.Write(std::string(2000, 'a'));
    m_objLog.Write("b");
    m_objLog.Flush();
    m_objLog.SetMode(1);
    m_objLog.SetFileName(m_strFile);
    EXPECT_EQ(m_objLog.GetFileName(), m_strFile);
    m_objLog.Flush();  // of the file mode alone
    m_objLog.SetMode(2);
    EXPECT_EQ(InFile(), "");
    m_objLog.Write("c");
    EXPECT_EQ(InFile(), std::string(2000, 'a') + "\nb\nc\n");
}

TEST_F(Log, LeavingTheFileModeWritesWhatWaits) {
    testing::internal::CaptureStderr();
    m_objLog.Write("file");
    m_objLog.SetMode(7);
    m_objLog.Write("file still");
    m_objLog.SetMode(1);
    EXPECT_EQ(InFile(), "file\nfile still\n");
    m_objLog.Write("debug");
    m_objLog.SetMode(0);
    m_objLog.Write("nowhere");
    m_objLog.Flush();
    m_objLog.SetMode(2);
    m_objLog.Write("file again");
    m_objLog.SetMode(0);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "debug\n");
    EXPECT_EQ(InFile(), "file\nfile still\nfile again\n");
}

TEST_F(Log, TimePrefixIsTheLocalTimeAndCountsForTheBurst) {
    const auto Now = [] {
        const auto objNow = std::chrono::system_clock::now();
        const std::time_t nSecond = std::chrono::system_clock::to_time_t(objNow);
        const auto nMs =
            std::chrono::duration_cast<std::chrono::milliseconds>(objNow.time_since_epoch()).count() % 1000;
        std::tm objTime{};
        localtime_r(&nSecond, &objTime);
        char arrText[40];
        std::strftime(arrText, sizeof arrText, "%Y-%m-%d %H:%M:%S", &objTime);
        return Format("%s.%03d ", arrText, static_cast<int>(nMs));
    };
    m_objLog.EnableTimestamp();
    m_objLog.Write(std::string(999, 'x'));
    EXPECT_EQ(InFile(), "");
    m_objLog.Flush();
    // Into the next second, since the text of a second is made once.
    const std::string strFirst = Now();
    for (std::string strBefore = strFirst; strBefore.compare(0, 19, strFirst, 0, 19) == 0;) {
        fs::remove(m_strFile);
        strBefore = Now();
        m_objLog.Write(std::string(1000, 'x'));
        const std::string strAfter = Now();
        const std::string strLine = InFile();
        ASSERT_EQ(strLine.size(), 1025U);
        ASSERT_LE(strBefore, strLine.substr(0, 24));
        ASSERT_LE(strLine.substr(0, 24), strAfter);
    }
}

TEST_F(Log, LinesOfManyThreadsArriveWholeAndInOrder) {
    constexpr int kThreads = 4;
    constexpr int kLines = 5000;
    std::latch objStart(kThreads);
    std::vector<std::thread> vecThreads;
    for (int nThread = 0; nThread < kThreads; ++nThread) {
        vecThreads.emplace_back([this, nThread, &objStart] {
            objStart.arrive_and_wait();
            for (int nLine = 0; nLine < kLines; ++nLine) {
                m_objLog.Write(Format("%d %d", nThread, nLine));
                if (nLine % 100 == 0) {
                    m_objLog.SetMode(2);
                    m_objLog.SetFileName(m_objLog.GetFileName());
                    m_objLog.DisableTimestamp();
                }
            }
        });
    }
    for (auto& objThread : vecThreads) {
        objThread.join();
    }
    m_objLog.Flush();

    int arrNext[kThreads] = {};
    std::istringstream objText(InFile());
    for (std::string strLine; std::getline(objText, strLine);) {
        const int nThread = strLine[0] - '0';
        ASSERT_EQ(strLine, Format("%d %d", nThread, arrNext[nThread]++));
    }
    for (const int nNext : arrNext) {
        EXPECT_EQ(nNext, kLines);
    }
}

}  // namespace
