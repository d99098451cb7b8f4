// Settings: the file round trip, the line format, corrupt files, and the
// group and full-name views. Each test works in a folder of its own.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <sstream>
#include <unistd.h>

#include <foundation/core/except/Error.h>
#include <foundation/core/except/WarningChannel.h>
#include <foundation/settings/Settings.h>
#include "support/ErrorId.h"

namespace fs = std::filesystem;
using foundation::core::except::WarningChannel;
using foundation::settings::SettingsStore;

namespace {

class SettingsTest : public ::testing::Test {
 protected:
  void SetUp() override {
    dir_ = fs::temp_directory_path() /
           ("sg-settings-" + std::to_string(::getpid()) + "-" +
            ::testing::UnitTest::GetInstance()->current_test_info()->name());
    fs::remove_all(dir_);
    previous_ = SettingsStore::instance().useDirectory(dir_);
  }
  void TearDown() override {
    SettingsStore::instance().useDirectory(previous_);
    fs::remove_all(dir_);
  }

  // Reads the file again, as a new process would.
  void reload() { SettingsStore::instance().useDirectory(dir_); }

  void writeFile(const std::string& text) {
    fs::create_directories(dir_);
    std::ofstream(dir_ / "settings.conf", std::ios::binary) << text;
    reload();
  }

  std::string fileText() {
    std::ifstream in(dir_ / "settings.conf", std::ios::binary);
    std::stringstream ss;
    ss << in.rdbuf();
    return ss.str();
  }

  fs::path dir_;
  fs::path previous_;
};

using sgtest::errorId;
}  // namespace

TEST_F(SettingsTest, ValuesSurviveAReloadFromTheFile) {
  auto appearance = getSettingsRoot().group("vantel.appearance");
  appearance.set("CurrentTheme", "dark");
  getSettingsRoot().group("vantel").group("appearance.figure").set("GraphicsTheme", "Light");
  reload();
  EXPECT_EQ(getSettingsByFullName("vantel.appearance.CurrentTheme").get(), "dark");
  EXPECT_EQ(getSettingsRoot().group("vantel.appearance.figure").get("GraphicsTheme"), "Light");
  EXPECT_NE(fileText().find("vantel.appearance.CurrentTheme = dark\n"), std::string::npos) << fileText();
}

TEST_F(SettingsTest, AwkwardValuesRoundTripExactly) {
  auto group = getSettingsRoot().group("test.values");
  const std::string awkward[] = {"  padded  ", "a\\b", "two\nlines\r\n", "tab\there", "x = y # not a comment", ""};
  for (size_t i = 0; i < std::size(awkward); ++i) group.set("v" + std::to_string(i), awkward[i]);
  reload();
  for (size_t i = 0; i < std::size(awkward); ++i) EXPECT_EQ(group.get("v" + std::to_string(i)), awkward[i]) << i;
}

TEST_F(SettingsTest, Utf16ReadConvertsAndFallsBack) {
  auto group = getSettingsRoot().group("test.utf");
  group.set("Name", "Gr\xC3\xBC\xC3\x9F" "e \xF0\x9F\x8E\xA8");  // "Grüße" and a character outside the BMP
  EXPECT_EQ(group.getUtf16("Name", u""), u"Grüße \U0001F3A8");
  EXPECT_EQ(group.getUtf16("Missing", u"fallback"), u"fallback");
  group.setUtf16("Back", u"\u00E9t\u00E9");
  EXPECT_EQ(group.get("Back"), "\xC3\xA9t\xC3\xA9");
}

TEST_F(SettingsTest, CorruptLinesAreSkippedWithAWarning) {
  std::string warnings;
  auto oldSink = WarningChannel::instance().setSink([&](std::string_view line) { warnings += line; });
  writeFile(
      "# comment\n"
      "vantel.appearance.CurrentTheme = dark\n"
      "no equals sign here\n"
      "bad name!.x = 1\n"
      "nogroup = 2\n"
      "test.escape = bad\\q\n"
      "\n"
      "test.after = ok\r\n");
  auto value = getSettingsByFullName("vantel.appearance.CurrentTheme").get();
  WarningChannel::instance().setSink(std::move(oldSink));
  EXPECT_EQ(value, "dark");
  EXPECT_EQ(getSettingsByFullName("test.after").get(), "ok") << "a bad line must not stop the reading";
  EXPECT_EQ(WarningChannel::instance().lastId(), "VANTEL:settings:CorruptLine");
  size_t count = 0;
  for (size_t pos = 0; (pos = warnings.find("Warning: ", pos)) != std::string::npos; ++pos) ++count;
  EXPECT_EQ(count, 4u) << warnings;
  EXPECT_NE(warnings.find("Line 3 "), std::string::npos) << warnings;
}

TEST_F(SettingsTest, WarningSinkMayReadSettings) {
  // The warning is issued while the file is being read; a sink that reads a
  // setting in turn must find the store unlocked.
  std::optional<std::string> seen;
  auto oldSink = WarningChannel::instance().setSink(
      [&](std::string_view) { seen = getSettingsByFullName("test.good").get(); });
  writeFile("broken line\ntest.good = yes\n");
  WarningChannel::instance().setSink(std::move(oldSink));
  EXPECT_EQ(seen, "yes");
}

TEST_F(SettingsTest, BinaryGarbageIsReadWithoutCrashing) {
  auto oldSink = WarningChannel::instance().setSink([](std::string_view) {});
  const char raw[] = "\x00\xff\xfe=\x01\n=\n====\n.a.b = c\na..b = c\n\xC3";
  std::string garbage(raw, sizeof raw - 1);
  writeFile(garbage + "\ntest.ok = yes\n");
  EXPECT_EQ(getSettingsByFullName("test.ok").get(), "yes");
  WarningChannel::instance().setSink(std::move(oldSink));
}

TEST_F(SettingsTest, MissingFileMeansNoSettings) {
  EXPECT_FALSE(getSettingsByFullName("vantel.appearance.CurrentTheme").exists());
  EXPECT_EQ(getSettingsRoot().group("vantel.appearance").get("CurrentTheme", "light"), "light");
  EXPECT_FALSE(fs::exists(dir_)) << "reading must not create the folder";
}

TEST_F(SettingsTest, WriteLeavesNoTemporaryFiles) {
  getSettingsRoot().group("test").set("a", "1");
  getSettingsRoot().group("test").set("b", "2");
  EXPECT_TRUE(getSettingsRoot().group("test").remove("a"));
  EXPECT_FALSE(getSettingsRoot().group("test").remove("a"));
  std::vector<std::string> names;
  for (const auto& e : fs::directory_iterator(dir_)) names.push_back(e.path().filename().string());
  EXPECT_EQ(names, std::vector<std::string>{"settings.conf"});
  reload();
  EXPECT_FALSE(getSettingsRoot().group("test").has("a"));
  EXPECT_EQ(getSettingsRoot().group("test").get("b"), "2");
}

TEST_F(SettingsTest, FailedWriteKeepsTheOldValue) {
  getSettingsRoot().group("test").set("kept", "old");
  // A folder where the file should be makes the rename fail.
  fs::path blocked = dir_ / "blocked";
  fs::create_directories(blocked / "settings.conf");
  SettingsStore::instance().useDirectory(blocked);
  EXPECT_EQ(errorId([] { getSettingsRoot().group("test").set("kept", "new"); }), "VANTEL:settings:WriteFailed");
  EXPECT_FALSE(getSettingsRoot().group("test").has("kept"));
  SettingsStore::instance().useDirectory(dir_);
  EXPECT_EQ(getSettingsRoot().group("test").get("kept"), "old");
}

TEST_F(SettingsTest, NamesWithoutAGroupOrWithBadCharactersAreRejected) {
  for (const char* bad : {"", "NoGroup", "a..b", ".a.b", "a.b.", "a.b c", "a.b=c", "a.b\n"})
    EXPECT_EQ(errorId([bad] { getSettingsByFullName(bad); }), "VANTEL:settings:InvalidName") << bad;
  EXPECT_EQ(errorId([] { getSettingsRoot().set("NoGroup", "x"); }), "VANTEL:settings:InvalidName");
  auto s = getSettingsByFullName("vantel.appearance.figure.GraphicsTheme");
  EXPECT_EQ(s.group().path(), "vantel.appearance.figure");
  EXPECT_EQ(s.name(), "GraphicsTheme");
}

TEST(SettingsLocation, EnvironmentChoosesTheFolder) {
  // Environment changes stay inside a child process.
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  EXPECT_EXIT(
      {
        unsetenv("SG_SETTINGS_DIR");
        setenv("XDG_CONFIG_HOME", "/xdg", 1);
        bool xdg = SettingsStore::defaultDirectory() == fs::path("/xdg/sgutils");
        unsetenv("XDG_CONFIG_HOME");
        setenv("HOME", "/home/someone", 1);
        bool home = SettingsStore::defaultDirectory() == fs::path("/home/someone/.config/sgutils");
        setenv("SG_SETTINGS_DIR", "/explicit", 1);
        bool explicitDir = SettingsStore::defaultDirectory() == fs::path("/explicit");
        std::exit(xdg && home && explicitDir ? 0 : 1);
      },
      ::testing::ExitedWithCode(0), "");
}
