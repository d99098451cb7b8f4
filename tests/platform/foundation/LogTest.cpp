// Log channels: the bit test before any text is built, the SG_LOG setting,
// levels set before a channel exists, and records reaching a sink.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>

#include <foundation/log/LogCapture.h>
#include <foundation/log/LogRecord.h>
#include <foundation/log/Logger.h>

namespace lg = foundation::log;

namespace {
// Counts evaluations of a log argument, to prove a silent channel builds nothing.
struct Probe {
  int* count;
};
std::ostream& operator<<(std::ostream& os, const Probe& p) {
  ++*p.count;
  return os << "probe";
}
}  // namespace

TEST(LogChannel, SilentChannelEvaluatesNoArgument) {
  lg::Logger& ch = lg::channel("test::silent");
  lg::setChannelLevel("test::silent", lg::kError);
  int evaluated = 0;
  lg::LogCapture capture;
  FOUNDATION_LOG(ch, lg::kDebug) << Probe{&evaluated};
  EXPECT_EQ(evaluated, 0);
  EXPECT_TRUE(capture.records().empty());
  FOUNDATION_LOG(ch, lg::kError) << Probe{&evaluated};
  EXPECT_EQ(evaluated, 1);
}

TEST(LogChannel, LevelBitsAreTestedIndependently) {
  lg::Logger& ch = lg::channel("test::bits");
  lg::setChannelLevel("test::bits", lg::kWarning | lg::kTrace);
  EXPECT_TRUE(ch.isOn(lg::kWarning));
  EXPECT_TRUE(ch.isOn(lg::kTrace));
  EXPECT_FALSE(ch.isOn(lg::kError));
  EXPECT_FALSE(ch.isOn(lg::kDebug));
  EXPECT_TRUE(ch.isOn(lg::kDebug | lg::kTrace)) << "a mask is on when any of its bits is";
  lg::setChannelLevel("test::bits", 0);
  EXPECT_FALSE(ch.isOn(lg::kAll));
}

TEST(LogChannel, LevelSetBeforeCreationIsPickedUp) {
  lg::setChannelLevel("test::later", lg::kInfo);
  EXPECT_EQ(lg::channelLevel("test::later"), lg::kInfo);
  EXPECT_EQ(lg::channel("test::later").bits(), lg::kInfo);
}

TEST(LogSetting, ParsesDecimalHexBareNamesAndSkipsBadEntries) {
  int applied = lg::applyLogSetting(" test::a=3 , test::b=0x10,test::c,test::d=zz,=5,test::e= ,test::f=0X1f");
  EXPECT_EQ(applied, 4);
  EXPECT_EQ(lg::channelLevel("test::a"), 3u);
  EXPECT_EQ(lg::channelLevel("test::b"), 0x10u);
  EXPECT_EQ(lg::channelLevel("test::c"), static_cast<std::uint32_t>(lg::kAll));
  EXPECT_EQ(lg::channelLevel("test::d"), lg::channelLevel("test::never-set")) << "bad bits leave the channel alone";
  EXPECT_EQ(lg::channelLevel("test::f"), 0x1Fu);
}

TEST(LogSetting, ChannelNamesMayHoldColonsAndTheLastEqualsSplits) {
  lg::applyLogSetting("sgutils::themes::Themeable::sgclassgen=8");
  EXPECT_TRUE(lg::channel("sgutils::themes::Themeable::sgclassgen").isOn(lg::kDebug));
}

// What a generated class's channel may hold: its own level, or the
// default word; other channels do not count.
TEST(LogSetting, ClassGenBitsFollowTheLevelsOfGeneratedClassChannels) {
  const std::uint32_t before = lg::classGenBits() & lg::kTrace;
  lg::setChannelLevel("test::Probe::sgclassgen", lg::kTrace);
  EXPECT_TRUE(lg::classGenBits() & lg::kTrace);
  lg::setChannelLevel("test::Probe::sgclassgen", 0);
  EXPECT_EQ(lg::classGenBits() & lg::kTrace, before);
  lg::setChannelLevel("test::probe-plain", lg::kTrace);
  EXPECT_EQ(lg::classGenBits() & lg::kTrace, before) << "not a generated class's channel";
  lg::setChannelLevel("test::probe-plain", 0);
  lg::setChannelLevel("*", lg::kTrace);
  EXPECT_TRUE(lg::classGenBits() & lg::kTrace) << "the default word reaches channels without a level";
  lg::setChannelLevel("*", 0);
  EXPECT_EQ(lg::classGenBits() & lg::kTrace, before);
}

TEST(LogSetting, StarSetsOnlyChannelsWithoutTheirOwnLevel) {
  lg::Logger& own = lg::channel("test::star-own");
  lg::setChannelLevel("test::star-own", lg::kError);
  lg::Logger& plain = lg::channel("test::star-plain");
  lg::setChannelLevel("*", lg::kTrace);
  EXPECT_TRUE(plain.isOn(lg::kTrace));
  EXPECT_TRUE(lg::channel("test::star-new").isOn(lg::kTrace)) << "channels created later get it too";
  EXPECT_FALSE(own.isOn(lg::kTrace));
  lg::setChannelLevel("*", 0);
  EXPECT_FALSE(plain.isOn(lg::kTrace));
}

TEST(LogSetting, EnvironmentIsReadOnFirstUse) {
  // The child re-runs this test in a fresh process, so the registry is new.
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  EXPECT_EXIT(
      {
        setenv("SG_LOG", "theme::property=5,gencallback::setget,graphics::mixin::Selectable::sgclassgen=2", 1);
        auto names = lg::channelNames();
        bool ok = lg::channel("theme::property").bits() == 5u &&
                  lg::channel("gencallback::setget").isOn(lg::kTrace) &&
                  !lg::channel("theme::visitor").isOn(lg::kAll) &&
                  lg::classGenChannel("graphics::mixin::Selectable").bits() == 2u &&
                  std::find(names.begin(), names.end(), "graphics::object_serialization") != names.end();
        std::exit(ok ? 0 : 1);
      },
      ::testing::ExitedWithCode(0), "");
}

TEST(LogCapture, RecordsCarryChannelLevelAndText) {
  lg::Logger& ch = lg::channel("test::capture");
  lg::setChannelLevel("test::capture", lg::kInfo | lg::kDebug);
  lg::LogCapture capture;
  FOUNDATION_LOG(ch, lg::kInfo) << "Class name: " << 42;
  FOUNDATION_LOG(ch, lg::kDebug) << "second";
  auto records = capture.records();
  ASSERT_EQ(records.size(), 2u);
  EXPECT_EQ(records[0].channel, "test::capture");
  EXPECT_EQ(records[0].level, lg::kInfo);
  EXPECT_EQ(records[0].text, "Class name: 42");
  EXPECT_EQ(records[1].text, "second");
}

TEST(LogCapture, EndsWhenDestroyed) {
  lg::Logger& ch = lg::channel("test::capture-end");
  lg::setChannelLevel("test::capture-end", lg::kInfo);
  lg::LogCapture outer;
  { lg::LogCapture inner; }
  FOUNDATION_LOG(ch, lg::kInfo) << "after";
  EXPECT_EQ(outer.records().size(), 1u) << "a removed capture must not take the outer one's records";
}
