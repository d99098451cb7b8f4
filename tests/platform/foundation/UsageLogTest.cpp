// Usage records: captured in order with their keys, written as JSON lines
// to the file that SG_USAGE_LOG names.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <unistd.h>

#include <foundation/usagelog/UsageCapture.h>
#include <foundation/usagelog/UsageLog.h>

TEST(UsageLog, CaptureSeesRecordsInOrderAndRestoresTheSink) {
  usagelog::UsageCapture outer;
  {
    usagelog::UsageCapture capture;
    usagelog::logUsageData("VL", "VL_GRAPHICS", "VL_GRAPHICS_DEFAULTS",
                           {{"operation_type", "get_default"}, {"target_object", "vantel.ui.Figure"}});
    usagelog::logUsageData("VL", "VL_GRAPHICS", "VL_GRAPHICS_DEFAULTS", {{"operation_type", "set_default"}});
    ASSERT_EQ(capture.records().size(), 2u);
    const auto& first = capture.records()[0];
    EXPECT_EQ(first.component, "VL_GRAPHICS");
    ASSERT_EQ(first.keyValues.size(), 2u);
    EXPECT_EQ(first.keyValues[1].second, "vantel.ui.Figure");
    EXPECT_EQ(capture.records()[1].keyValues[0].second, "set_default");
  }
  usagelog::logUsageData("VL", "C", "E", {});
  EXPECT_EQ(outer.records().size(), 1u);
}

TEST(UsageLog, JsonLineEscapesText) {
  usagelog::UsageRecord r{"VL", "C\"1", "E\\", {{"k\n", "v\x01"}}, usagelog::UsageOption::defaultOption};
  EXPECT_EQ(usagelog::toJsonLine(r),
            R"({"product":"VL","component":"C\"1","event":"E\\","data":{"k\n":"v\u0001"}})");
}

TEST(UsageLog, EnvironmentFileReceivesOneLinePerRecord) {
  // Not named after the process: the child that writes it is another process.
  std::filesystem::path file = std::filesystem::temp_directory_path() / ("sg-usage-" + std::to_string(::getuid()) + ".log");
  std::filesystem::remove(file);
  // The default sink reads SG_USAGE_LOG once, so the child starts fresh.
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  EXPECT_EXIT(
      {
        setenv("SG_USAGE_LOG", file.c_str(), 1);
        usagelog::logUsageData("VL", "VL_GRAPHICS", "VL_GRAPHICS_DEFAULTS", {{"property_name", "Color"}});
        usagelog::logUsageData("VL", "VL_GRAPHICS", "VL_GRAPHICS_DEFAULTS", {{"property_name", "LineWidth"}});
        std::exit(0);
      },
      ::testing::ExitedWithCode(0), "");
  std::ifstream in(file);
  std::vector<std::string> lines;
  for (std::string line; std::getline(in, line);) lines.push_back(line);
  std::filesystem::remove(file);
  ASSERT_EQ(lines.size(), 2u);
  EXPECT_NE(lines[0].find(R"("property_name":"Color")"), std::string::npos) << lines[0];
  EXPECT_NE(lines[1].find(R"("property_name":"LineWidth")"), std::string::npos) << lines[1];
}
