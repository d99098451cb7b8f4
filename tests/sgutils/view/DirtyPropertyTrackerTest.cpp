// The ordered set of changed view property names and the two strategies
// that fill it.
#include <gtest/gtest.h>

#include "sgutils/view/DirtyPropertyTracker.h"
#include "sgutils/view/LegacyRuntimeViewStrategy.h"
#include "sgutils/view/RuntimeViewStrategy.h"

namespace {

using Names = std::vector<std::string>;

TEST(DirtyPropertyTracker, KeepsFirstPlaceAndPutsTheLatestPriorityFirst) {
  vantel::graphics::DirtyPropertyTracker tracker;
  EXPECT_FALSE(tracker.hasDirtyProperties());
  tracker.appendDirtyProperty("Color");
  tracker.appendDirtyProperty("XData");
  tracker.appendDirtyProperty("Color");
  // Already dirty: stays where it is rather than moving to the priority list.
  tracker.appendPriorityProperty("XData");
  tracker.appendPriorityProperty("A");
  tracker.appendPriorityProperty("B");
  tracker.appendDirtyProperty("A");
  EXPECT_EQ(tracker.getDirtyProperties(), (Names{"B", "A", "Color", "XData"}));
  EXPECT_TRUE(tracker.hasDirtyProperty("A"));
  EXPECT_FALSE(tracker.hasDirtyProperty("color"));

  vantel::graphics::DirtyPropertyTracker copy = tracker;
  tracker.clearDirtyProperties();
  EXPECT_FALSE(tracker.hasDirtyProperties());
  EXPECT_TRUE(tracker.getDirtyProperties().empty());
  // A cleared name can be marked again, at the end.
  tracker.appendDirtyProperty("XData");
  tracker.appendDirtyProperty("Color");
  EXPECT_EQ(tracker.getDirtyProperties(), (Names{"XData", "Color"}));
  EXPECT_EQ(copy.getDirtyProperties(), (Names{"B", "A", "Color", "XData"}));
}

// Past a few names the tracker looks names up in a hash set: order, the
// refusal of repeats and clearing must not change across that point.
TEST(DirtyPropertyTracker, ManyNamesKeepOrderAndRefuseRepeatsAcrossClears) {
  vantel::graphics::DirtyPropertyTracker tracker;
  for (int round = 0; round < 2; ++round) {
    Names dirty, priority;
    for (int i = 0; i < 30; ++i) {
      const std::string name = "P" + std::to_string(i);
      if (i % 3 == 0) {
        tracker.appendPriorityProperty(name);
        priority.insert(priority.begin(), name);
      } else {
        tracker.appendDirtyProperty(name);
        dirty.push_back(name);
      }
      // Repeats of every name so far, in either list, change nothing.
      for (int j = 0; j <= i; ++j) {
        tracker.appendDirtyProperty("P" + std::to_string(j));
        tracker.appendPriorityProperty("P" + std::to_string(j));
      }
      Names expected = priority;
      expected.insert(expected.end(), dirty.begin(), dirty.end());
      ASSERT_EQ(tracker.getDirtyProperties(), expected) << "after " << name;
      EXPECT_TRUE(tracker.hasDirtyProperty(name));
      EXPECT_FALSE(tracker.hasDirtyProperty("P" + std::to_string(i + 1)));
    }
    vantel::graphics::DirtyPropertyTracker copy = tracker;
    EXPECT_EQ(copy.getDirtyProperties().size(), 30u);
    EXPECT_TRUE(copy.hasDirtyProperty("P29"));
    tracker.clearDirtyProperties();
    EXPECT_FALSE(tracker.hasDirtyProperties());
    EXPECT_FALSE(tracker.hasDirtyProperty("P0"));
  }
}

TEST(ViewStrategies, StartWithTheNamesOfTheirClass) {
  using sgutils::LegacyRuntimeViewStrategy;
  using sgutils::RuntimeViewStrategy;
  EXPECT_EQ(LegacyRuntimeViewStrategy::getInstance("ContextMenu")->getDirtyProperties(), (Names{"ObjectID"}));
  EXPECT_EQ(LegacyRuntimeViewStrategy::getInstance("Figure")->getDirtyProperties(),
            (Names{"Uuid", "Visible", "Icon", "ContextMenu"}));
  EXPECT_EQ(LegacyRuntimeViewStrategy::getInstance("Menu")->getDirtyProperties(), (Names{"Position", "ContextMenu"}));
  EXPECT_EQ(LegacyRuntimeViewStrategy::getInstance("Line")->getDirtyProperties(), (Names{"ContextMenu"}));
  EXPECT_EQ(RuntimeViewStrategy::getInstance("DatePicker")->getDirtyProperties(),
            (Names{"ViewLanguage", "Value", "DisplayFormat", "ContextMenu"}));
  EXPECT_EQ(RuntimeViewStrategy::getInstance("PasswordField")->getDirtyProperties(),
            (Names{"ChannelID", "ContextMenu"}));
  EXPECT_TRUE(RuntimeViewStrategy::getInstance("ContextMenu")->getDirtyProperties().empty());
  // Each call makes a strategy of its own.
  auto a = RuntimeViewStrategy::getInstance("Button");
  auto b = RuntimeViewStrategy::getInstance("Button");
  a->markClean();
  EXPECT_FALSE(a->hasDirtyProperties());
  EXPECT_TRUE(b->hasDirtyProperties());
}

TEST(ViewStrategies, OnlyTheLegacyKindFoldsTheInternalFace) {
  auto legacy = sgutils::LegacyRuntimeViewStrategy::getInstance("ContextMenu");
  legacy->markClean();
  legacy->markDirty("Color_I");
  legacy->markDirty("Color");
  legacy->markDirty("_I");
  legacy->markDirty("X_I_I");
  EXPECT_EQ(legacy->getDirtyProperties(), (Names{"Color", "", "X_I"}));

  auto runtime = sgutils::RuntimeViewStrategy::getInstance("ContextMenu");
  runtime->markDirty("Color_I");
  runtime->markDirty("Color");
  EXPECT_EQ(runtime->getDirtyProperties(), (Names{"Color_I", "Color"}));
}

// Marks by interned id and by text name one property; the legacy kind's
// folding of "_I" holds when internal names alternate between marks.
TEST(DirtyPropertyTracker, AnIdAndItsTextAreOneName) {
  vantel::graphics::DirtyPropertyTracker tracker;
  tracker.appendDirtyProperty(COSID("XData"));
  tracker.appendDirtyProperty("XData");
  tracker.appendPriorityProperty(COSID("XData"));
  tracker.appendDirtyProperty("Color");
  EXPECT_EQ(tracker.getDirtyProperties(), (Names{"XData", "Color"}));
  EXPECT_TRUE(tracker.hasDirtyProperty(COSID("Color")));
  EXPECT_TRUE(tracker.hasDirtyProperty("XData"));
  EXPECT_FALSE(tracker.hasDirtyProperty("A name nobody marked"));

  auto legacy = sgutils::LegacyRuntimeViewStrategy::getInstance("ContextMenu");
  legacy->markClean();
  for (const char* name : {"Color_I", "LineWidth_I", "Color_I", "Marker", "LineWidth"})
    legacy->markDirty(COSID(name));
  EXPECT_EQ(legacy->getDirtyProperties(), (Names{"Color", "LineWidth", "Marker"}));
}

}  // namespace
