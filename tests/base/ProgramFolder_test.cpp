#include "base/ProgramFolder.h"
#include "base/UserHome.h"

#include <cstdlib>
#include <gtest/gtest.h>
#include <optional>
#include <pwd.h>
#include <string>
#include <unistd.h>

using namespace vornhale;

namespace {

// Sets an environment variable for one test and puts the old value back.
class EnvironmentValue
{
public:
    EnvironmentValue(const char* name, const char* value) : m_name(name)
    {
        if (const char* old = std::getenv(name)) {
            m_old = old;
        }
        if (value == nullptr) {
            ::unsetenv(name);
        } else {
            ::setenv(name, value, 1);
        }
    }
    ~EnvironmentValue()
    {
        if (m_old) {
            ::setenv(m_name, m_old->c_str(), 1);
        } else {
            ::unsetenv(m_name);
        }
    }

private:
    const char* m_name;
    std::optional<std::string> m_old;
};

} // namespace

TEST(ProgramFolder, WithoutHomeTheUsersHomeFolderComesFromTheUserDatabase)
{
    const EnvironmentValue vornhale("VORNHALE_HOME", nullptr);
    const EnvironmentValue xdg("XDG_DATA_HOME", nullptr);
    const EnvironmentValue home("HOME", nullptr);
    const passwd* user = ::getpwuid(::getuid());
    ASSERT_NE(user, nullptr);
    EXPECT_EQ(base::userHomeFolder(), std::filesystem::path(user->pw_dir));
    EXPECT_EQ(base::ProgramFolder::resolve(std::nullopt).strPath,
              std::filesystem::path(user->pw_dir) / ".local" / "share" / "vornhale" / "");
}

TEST(ProgramFolder, AnEmptyHomeCountsAsUnset)
{
    const EnvironmentValue home("HOME", "");
    const passwd* user = ::getpwuid(::getuid());
    ASSERT_NE(user, nullptr);
    EXPECT_EQ(base::userHomeFolder(), std::filesystem::path(user->pw_dir));
}

TEST(ProgramFolder, TheOrderIsGivenFolderThenVornhaleHomeThenXdgThenHome)
{
    const EnvironmentValue home("HOME", "/tmp/h");
    const EnvironmentValue xdg("XDG_DATA_HOME", "/tmp/x");
    const EnvironmentValue vornhale("VORNHALE_HOME", "/tmp/v");
    EXPECT_EQ(base::ProgramFolder::resolve(std::filesystem::path("/tmp/g")).strPath, "/tmp/g/");
    EXPECT_EQ(base::ProgramFolder::resolve(std::nullopt).strPath, "/tmp/v/");
    ::unsetenv("VORNHALE_HOME");
    EXPECT_EQ(base::ProgramFolder::resolve(std::nullopt).strPath, "/tmp/x/vornhale/");
    ::unsetenv("XDG_DATA_HOME");
    EXPECT_EQ(base::ProgramFolder::resolve(std::nullopt).strPath, "/tmp/h/.local/share/vornhale/");
}
