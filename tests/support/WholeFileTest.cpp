#include <filesystem>
#include <iterator>
#include <string>
#include <thread>

#include <unistd.h>

#include <gtest/gtest.h>

#include "support/WholeFile.h"

namespace {

TEST(WholeFile, SeveralWritersAtOnceAllSucceedAndTheLastOneWinsWhole) {
    const std::string strFolder = testing::TempDir() + "whole-file-" + std::to_string(getpid());
    ASSERT_TRUE(std::filesystem::create_directory(strFolder));
    const std::string strPath = strFolder + "/file";
    const auto write = [&strPath](char cContent) {
        for (int i = 0; i < 300; ++i) {
            EXPECT_NO_THROW(WriteWholeFile(strPath, std::string(100'000, cContent), EWholeFile::Quick));
        }
    };
    std::thread objOther([&write] { write('b'); });
    write('a');
    objOther.join();
    const std::string strContent = ReadWholeFile(strPath, 100'000);
    EXPECT_EQ(strContent, std::string(100'000, strContent.at(0)));
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(strFolder), {}), 1);
    std::filesystem::remove_all(strFolder);
}

}  // namespace
