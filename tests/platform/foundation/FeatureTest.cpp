// Features: registration, change callbacks, the command form, and errors for
// names that were never registered.
#include <gtest/gtest.h>

#include <foundation/core/except/Error.h>
#include <foundation/feature/Feature.h>
#include <foundation/feature/svFeatureEntry.h>
#include "support/ErrorId.h"

namespace feature = foundation::feature;
using foundation::core::except::Error;

using sgtest::errorId;

TEST(FeatureRegistry, RegisteringTwiceKeepsTheFirst) {
  int firstCalls = 0, secondCalls = 0;
  svFeatureEntry* a = svRegisterFeature("TestTwice", 3, [&](int) { ++firstCalls; });
  svFeatureEntry* b = svRegisterFeature("TestTwice", 9, [&](int) { ++secondCalls; });
  EXPECT_EQ(a, b);
  EXPECT_EQ(feature::value("TestTwice"), 3);
  feature::set("TestTwice", 4);
  EXPECT_EQ(firstCalls, 1);
  EXPECT_EQ(secondCalls, 0);
  EXPECT_EQ(svFindFeatureEntry("TestTwice"), a);
}

TEST(FeatureRegistry, SetStoresBeforeCallingOnSet) {
  int seenInCallback = -1, seenArgument = -1;
  svRegisterFeature("TestOrder", 0, [&](int v) {
    seenArgument = v;
    seenInCallback = feature::value("TestOrder");
  });
  feature::set("TestOrder", 5);
  EXPECT_EQ(seenArgument, 5);
  EXPECT_EQ(seenInCallback, 5);
  EXPECT_TRUE(feature::isOn("TestOrder"));
  feature::set("TestOrder", 0);
  EXPECT_FALSE(feature::isOn("TestOrder"));
}

TEST(FeatureRegistry, CallbackMayRaiseAnotherFeatureWithoutItsOnSet) {
  // The flush-request pattern: one feature's callback sets another's value
  // through its entry, which does not run that feature's onSet.
  int flushOnSetCalls = 0;
  svRegisterFeature("TestFlush", 0, [&](int) { ++flushOnSetCalls; });
  svRegisterFeature("TestPeeling", 1, [](int) { svFindFeatureEntry("TestFlush")->setValue(1); });
  feature::set("TestPeeling", 0);
  EXPECT_EQ(feature::value("TestFlush"), 1);
  EXPECT_EQ(flushOnSetCalls, 0);
}

TEST(FeatureRegistry, CommandFormGetsTheCallArguments) {
  int gotNlhs = -1, gotNrhs = -1;
  const vxArray* gotFirst = reinterpret_cast<const vxArray*>(1);
  svRegisterFeature("TestQuery", 0, {}, [&](int nlhs, vxArray* plhs[], int nrhs, const vxArray* prhs[]) {
    gotNlhs = nlhs;
    gotNrhs = nrhs;
    gotFirst = prhs[0];
    plhs[0] = nullptr;
  });
  vxArray* out[1] = {nullptr};
  const vxArray* in[1] = {nullptr};
  feature::call("TestQuery", 1, out, 1, in);
  EXPECT_EQ(gotNlhs, 1);
  EXPECT_EQ(gotNrhs, 1);
  EXPECT_EQ(gotFirst, nullptr);
}

TEST(FeatureRegistry, UnknownNamesAndMissingCommandFormsRaise) {
  EXPECT_EQ(svFindFeatureEntry("TestNeverRegistered"), nullptr);
  EXPECT_EQ(errorId([] { feature::value("TestNeverRegistered"); }), "VANTEL:feature:UnknownFeature");
  EXPECT_EQ(errorId([] { feature::isOn("TestNeverRegistered"); }), "VANTEL:feature:UnknownFeature");
  EXPECT_EQ(errorId([] { feature::set("TestNeverRegistered", 1); }), "VANTEL:feature:UnknownFeature");
  svRegisterFeature("TestNoQuery", 0);
  EXPECT_EQ(errorId([] { feature::call("TestNoQuery", 0, nullptr, 0, nullptr); }), "VANTEL:feature:NoCommandForm");
  EXPECT_EQ(svFindFeatureEntry("TestNeverRegistered"), nullptr) << "a failed look-up must not register the name";
}
