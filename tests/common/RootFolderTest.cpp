// The root folder rule: ZEVRIT_ROOT, installed mode by the InstallData marker, portable.
#include "common/RootFolder.h"
#include "support/ZvTestSupport.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>

namespace fs = std::filesystem;

namespace {

class RootFolderTest : public ::testing::Test {
protected:
    void SetUp() override {
        if (const char* root = std::getenv("ZEVRIT_ROOT"))
            savedRoot = root;
        ::unsetenv("ZEVRIT_ROOT");
        fs::create_directories(dir / "portable" / "bin");
        fs::create_directories(dir / "installed" / "bin" / "InstallData");
        fs::create_directories(dir / "prefix" / "bin");
        fs::create_directories(dir / "prefix" / "share" / "zevrit" / "InstallData");
    }
    void TearDown() override {
        if (!savedRoot.empty())
            ::setenv("ZEVRIT_ROOT", savedRoot.c_str(), 1);
    }
    zvtest::TTempDir temp{"zv-root"};
    const fs::path dir = temp.Path();
    std::string savedRoot;
};

TEST_F(RootFolderTest, PortableIsTheParentOfTheProgramFolder) {
    EXPECT_FALSE(zv::IsInstalledMode(dir / "portable" / "bin"));
    EXPECT_EQ(zv::ComputeRootFolder(dir / "portable" / "bin"), dir / "portable");
}

TEST_F(RootFolderTest, InstallDataMarkerMeansTheUsersConfigFolder) {
    ::setenv("XDG_CONFIG_HOME", (dir / "config").c_str(), 1);
    EXPECT_TRUE(zv::IsInstalledMode(dir / "installed" / "bin"));
    EXPECT_EQ(zv::ComputeRootFolder(dir / "installed" / "bin"), dir / "config" / "zevrit");
    EXPECT_TRUE(zv::IsInstalledMode(dir / "prefix" / "bin")) << "<prefix>/share/zevrit marker";
    ::unsetenv("XDG_CONFIG_HOME");
    EXPECT_EQ(zv::ComputeRootFolder(dir / "installed" / "bin"),
              fs::path(std::getenv("HOME")) / ".config" / "zevrit");
}

TEST_F(RootFolderTest, EnvironmentOverridesBoth) {
    ::setenv("ZEVRIT_ROOT", (dir / "elsewhere" / ".").c_str(), 1);
    EXPECT_EQ(zv::ComputeRootFolder(dir / "installed" / "bin"), dir / "elsewhere");
    EXPECT_EQ(zv::ComputeRootFolder(dir / "portable" / "bin"), dir / "elsewhere");
}

} // namespace
