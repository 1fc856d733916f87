#include <cstdlib>
#include <fstream>
#include <thread>

#include <boost/filesystem.hpp>
#include <gtest/gtest.h>

#include "support/Environment.h"

namespace {

namespace fs = boost::filesystem;

constexpr char kName[] = "NORVIK_TEST_VARIABLE";

/// A directory of its own and a variable that isn't set.
class Environment : public testing::Test {
protected:
    Environment() : m_objDirectory(fs::temp_directory_path() / fs::unique_path()) {
        fs::create_directory(m_objDirectory);
        unsetenv(kName);
    }
    ~Environment() override {
        unsetenv(kName);
        fs::remove_all(m_objDirectory);
    }
    [[nodiscard]] std::string In(const char* pName) const { return (m_objDirectory / pName).string(); }

    fs::path m_objDirectory;
};

TEST_F(Environment, PathBeneathAVariableIsMadeWithItsParents) {
    EXPECT_EQ(GetEnvPath(kName, "xml/cache"), "");
    EXPECT_TRUE(SetEnvironment(kName, ""));
    EXPECT_EQ(GetEnvPath(kName, In("never").substr(1)), "");
    EXPECT_FALSE(PathExists(In("never")));

    ASSERT_TRUE(SetEnvironment(kName, m_objDirectory.string()));
    EXPECT_EQ(GetEnvPath(kName, "xml/cache"), In("xml/cache"));
    EXPECT_TRUE(fs::is_directory(In("xml/cache")));
    EXPECT_EQ(GetEnvPath(kName, "xml/cache"), In("xml/cache"));
}

TEST_F(Environment, FileInThePlaceOfAPathPassesAndOneInItsWayThrows) {
    std::ofstream(In("file")) << "x";
    ASSERT_TRUE(SetEnvironment(kName, m_objDirectory.string()));
    EXPECT_EQ(GetEnvPath(kName, "file"), In("file"));
    EXPECT_THROW(GetEnvPath(kName, "file/cache"), fs::filesystem_error);
}

TEST_F(Environment, OnlyWhatIsMissingOrEmptyIsSetIfMissing) {
    EXPECT_EQ(ReadEnvironment(kName), std::nullopt);
    EXPECT_TRUE(SetEnvironmentIfMissing(kName, ""));
    EXPECT_EQ(ReadEnvironment(kName), "");
    EXPECT_TRUE(SetEnvironmentIfMissing(kName, "first"));
    EXPECT_TRUE(SetEnvironmentIfMissing(kName, "second"));
    EXPECT_EQ(ReadEnvironment(kName), "first");
    EXPECT_TRUE(SetEnvironment(kName, "third"));
    EXPECT_EQ(ReadEnvironment(kName), "third");
    EXPECT_FALSE(SetEnvironment("", "x"));
    EXPECT_FALSE(SetEnvironment("A=B", "x"));
}

TEST_F(Environment, ReadersAndWritersOnManyThreadsSeeWholeValues) {
    const std::string arrValues[] = {std::string(100, 'a'), std::string(5000, 'b')};
    ASSERT_TRUE(SetEnvironment(kName, arrValues[0]));
    std::thread objWriter([&arrValues] {
        for (int i = 0; i < 500; ++i) {
            SetEnvironment(kName, arrValues[i % 2]);
        }
    });
    for (int i = 0; i < 500; ++i) {
        const auto strValue = ReadEnvironment(kName);
        EXPECT_TRUE(strValue == arrValues[0] || strValue == arrValues[1]);
    }
    objWriter.join();
}

}  // namespace
