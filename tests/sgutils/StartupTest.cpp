// Start-up: registration once per instance, the preference block and the
// command forms of its features, and the unique ids.
#include <gtest/gtest.h>

#include <set>
#include <string>
#include <thread>
#include <vector>

#include "TestGraphicsClasses.h"
#include "foundation/core/except/IMsgIDException.h"
#include "foundation/feature/Feature.h"
#include "foundation/feature/svFeatureEntry.h"
#include "foundation/usm/ScopedInstance.h"
#include "sgdatatypes/Registration.h"
#include "vcos/vcos.h"

using namespace sgtest;

namespace {

const char* const kLibraryClasses[] = {
    "vantel.graphics.Graphics",          "vantel.graphics.GraphicsPlaceholder",
    "vantel.graphics.GraphicsDisplay",   "vantel.graphics.internal.CopyContext",
    "vantel.graphics.mixin.internal.Copyable", "vantel.graphics.internal.GraphicsPropertyHandler",
    "vantel.graphics.internal.ReferenceObject", "vantel.graphics.internal.GraphicsMetaClass",
    "vantel.graphics.internal.StorageObject",
};

double query(const char* feature, const vxArray* input = nullptr) {
  vxArray* out[1] = {nullptr};
  const vxArray* in[1] = {input};
  foundation::feature::call(feature, 1, out, input ? 1 : 0, in);
  Arr result(out[0]);
  return vxGetScalar(result.get());
}

}  // namespace

TEST(Startup, ASecondStartInANewInstanceRegistersNothingNew) {
  registerTestClasses();
  std::vector<COSClass*> before;
  for (const char* name : kLibraryClasses) before.push_back(COSClass::getClass(COSID(name)));
  for (COSClass* c : before) ASSERT_NE(c, nullptr);
  VLInitialize_sgutils();
  {
    foundation::usm::ScopedInstance second;
    EXPECT_EQ(sgutils::initFlag(), 0);
    // Adding a class twice would raise; the same classes must come back.
    ASSERT_NO_THROW(VLInitialize_sgutils());
    EXPECT_EQ(sgutils::initFlag(), 1);
    for (std::size_t i = 0; i < before.size(); ++i)
      EXPECT_EQ(COSClass::getClass(COSID(kLibraryClasses[i])), before[i]) << kLibraryClasses[i];
  }
}

TEST(Startup, RootClassesAnswerAsTheirKind) {
  registerTestClasses();
  COSClass* graphics = COSClass::getClass(COSID("vantel.graphics.Graphics"));
  EXPECT_TRUE(graphics->isAbstract());
  EXPECT_TRUE(graphics->usesCustomMetaClass());
  EXPECT_TRUE(graphics->isSubclassOf(COSID("vantel.graphics.internal.ReferenceObject")));
  EXPECT_TRUE(graphics->isSubclassOf(COSID("dynamicprops")));
  EXPECT_NE(graphics->findEvent(COSID("Reset")), nullptr);
  COSClass* placeholder = COSClass::getClass(COSID("vantel.graphics.GraphicsPlaceholder"));
  EXPECT_FALSE(placeholder->isAbstract());
  EXPECT_TRUE(placeholder->isSealed());
  COSClass* handler = COSClass::getClass(COSID("vantel.graphics.internal.GraphicsPropertyHandler"));
  ASSERT_NE(handler, nullptr);
  EXPECT_TRUE(handler->isSubclassOf(COSID("vantel.graphics.internal.ReferenceObject")));
  EXPECT_EQ(SGHandle::getClassInstance(), graphics);
}

// Fault pinned: each superclass was prepended in turn, so the lists came out
// reversed.
TEST(Startup, RootClassesListTheirSuperclassesInOrder) {
  registerTestClasses();
  auto superclassesOf = [](const char* name) {
    std::vector<std::string> names;
    for (COSClass* s : COSClass::getClass(COSID(name))->getSuperclasses()) names.push_back(s->getID().str());
    return names;
  };
  EXPECT_EQ(superclassesOf("vantel.graphics.Graphics"),
            (std::vector<std::string>{"vantel.graphics.internal.ReferenceObject", "dynamicprops",
                                      "vantel.mixin.Heterogeneous", "vantel.graphics.GraphicsDisplay",
                                      "vantel.graphics.mixin.internal.Copyable"}));
  EXPECT_EQ(superclassesOf("vantel.graphics.internal.GraphicsPropertyHandler"),
            (std::vector<std::string>{"vantel.graphics.internal.ReferenceObject",
                                      "vantel.mixin.internal.DefaultFactoryPropHandler"}));
  EXPECT_EQ(superclassesOf("vantel.graphics.GraphicsPlaceholder"),
            std::vector<std::string>{"vantel.graphics.Graphics"});
  EXPECT_TRUE(superclassesOf("vantel.graphics.internal.ReferenceObject").empty());
}

TEST(GraphicsPrefs, IndexOutsideTheBlockReadsZero) {
  registerTestClasses();
  EXPECT_EQ(sgutils::GraphicsPrefs::getPref(8), 0);
  EXPECT_EQ(sgutils::GraphicsPrefs::getPref(-1), 0);
  EXPECT_EQ(sgutils::GraphicsPrefs::getPref(sgutils::OpenGLMAXVBOSize), 1048576);
}

TEST(GraphicsPrefs, QueryWithoutInputChangesNothing) {
  registerTestClasses();
  const int before = sgutils::GraphicsPrefs::getPref(sgutils::OpenGLWideLines);
  EXPECT_EQ(query("OpenGLWideLines"), before);
  EXPECT_EQ(sgutils::GraphicsPrefs::getPref(sgutils::OpenGLWideLines), before);
  Arr zero = num(0);
  EXPECT_EQ(query("OpenGLWideLines", zero.get()), 0.0);
  EXPECT_EQ(sgutils::GraphicsPrefs::getPref(sgutils::OpenGLWideLines), 0);
  Arr restore = num(before);
  query("OpenGLWideLines", restore.get());
}

TEST(GraphicsPrefs, OnlyARealChangeOfDepthPeelingRaisesTheFlush) {
  registerTestClasses();
  svFeatureEntry* flush = svFindFeatureEntry("OpenGLFlushCommandCache");
  ASSERT_NE(flush, nullptr);
  flush->setValue(0);
  const int current = sgutils::GraphicsPrefs::getPref(sgutils::OpenGLDepthPeeling);
  Arr same = num(current), other = num(current ? 0 : 1);
  query("OpenGLDepthPeeling", same.get());
  EXPECT_EQ(flush->value(), 0);
  query("OpenGLDepthPeeling", other.get());
  EXPECT_EQ(flush->value(), 1);
  query("OpenGLDepthPeeling", same.get());
}

TEST(GraphicsPrefs, CommandFormsCheckTheirArgumentCounts) {
  registerTestClasses();
  vxArray* out[2] = {nullptr, nullptr};
  Arr one = num(1);
  const vxArray* in[2] = {one.get(), one.get()};
  EXPECT_ANY_THROW(foundation::feature::call("OpenGLWideLines", 2, out, 0, in));
  EXPECT_ANY_THROW(foundation::feature::call("OpenGLWideLines", 1, out, 2, in));
}

TEST(GraphicsPrefs, WebGraphicsRestrictionFollowsItsFeature) {
  registerTestClasses();
  const int before = sgutils::GraphicsPrefs::getPref(sgutils::WebGraphicsRestriction);
  foundation::feature::set("WebGraphicsRestriction", 0);
  EXPECT_EQ(sgutils::GraphicsPrefs::getPref(sgutils::WebGraphicsRestriction), 0);
  foundation::feature::set("WebGraphicsRestriction", before);
}

TEST(GraphicsPrefs, OldSetBehaviourSwitchIgnoresAnEmptyInput) {
  registerTestClasses();
  Arr empty(vxCreateDoubleMatrix(0, 0, vxREAL)), one = num(1), zero = num(0);
  query("UseOldSimplePropInfoSetValueBehavior", one.get());
  EXPECT_TRUE(sgutils::useOldSimplePropInfoSetValueBehavior());
  EXPECT_EQ(query("UseOldSimplePropInfoSetValueBehavior", empty.get()), 1.0);
  EXPECT_TRUE(sgutils::useOldSimplePropInfoSetValueBehavior());
  query("UseOldSimplePropInfoSetValueBehavior", zero.get());
  EXPECT_FALSE(sgutils::useOldSimplePropInfoSetValueBehavior());
}

TEST(GraphicsPrefs, PostProcessingEffectIsText) {
  registerTestClasses();
  EXPECT_EQ(sgutils::GraphicsPrefs::getDepthPeelingPostProcessingEffect(), "none");
  Arr effect = str("blur");
  vxArray* out[1] = {nullptr};
  const vxArray* in[1] = {effect.get()};
  foundation::feature::call("WebDepthPeelingPostProcessingEffect", 1, out, 1, in);
  Arr result(out[0]);
  EXPECT_EQ(vxArrayToStdString(result.get()), "blur");
  EXPECT_EQ(sgutils::GraphicsPrefs::getDepthPeelingPostProcessingEffect(), "blur");
  Arr none = str("none");
  in[0] = none.get();
  foundation::feature::call("WebDepthPeelingPostProcessingEffect", 1, out, 1, in);
  Arr(out[0]).reset();
}

TEST(UniqueIDGenerator, IdsCountFromOneAndCopiesShareTheCounter) {
  sgutils::UniqueIDGenerator a;
  sgutils::UniqueIDGenerator b = a;
  EXPECT_EQ(a.nextID(), "1");
  EXPECT_EQ(b.nextID(), "2");
  const sgutils::UniqueIDGenerator& c = a;
  EXPECT_EQ(c.nextID(), "3");
}

TEST(UniqueIDGenerator, RaisesOnlyAfterTheCounterWraps) {
  sgutils::UniqueIDGenerator g;
  g.setCounterForTesting(UINT64_MAX);
  EXPECT_EQ(g.nextID(), "18446744073709551615");
  EXPECT_THROW(g.nextID(), sgutils::OutOfUniqueIDs);
  // An internal exception: no identifier that a catalog would be asked for.
  try {
    g.nextID();
    FAIL() << "the counter did not stay exhausted";
  } catch (const foundation::core::except::IMsgIDException&) {
    FAIL() << "OutOfUniqueIDs carries a message identifier";
  } catch (const sgutils::OutOfUniqueIDs&) {
  }
}

TEST(UniqueIDGenerator, ThreadsNeverGetTheSameId) {
  sgutils::UniqueIDGenerator g;
  constexpr int kThreads = 4, kEach = 2000;
  std::vector<std::vector<std::string>> got(kThreads);
  std::vector<std::thread> threads;
  for (int t = 0; t < kThreads; ++t)
    threads.emplace_back([&, t] {
      for (int i = 0; i < kEach; ++i) got[t].push_back(g.nextID());
    });
  for (auto& t : threads) t.join();
  std::set<std::string> all;
  for (auto& v : got) all.insert(v.begin(), v.end());
  EXPECT_EQ(all.size(), std::size_t(kThreads * kEach));
}

// Shut-down only undoes what this instance's start-up did. Each case runs in
// a fresh process, where nothing has started yet.
namespace {
bool handleConversionPresent() {
  return COSTypeRepository::getConversion(COSID("double"), COSID("vantel.graphics.datatype.COSInterface")) != nullptr;
}
}  // namespace

TEST(StartupDeathTest, TerminateBeforeStartupLeavesTheDataTypesAlone) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  EXPECT_EXIT(
      {
        VLInitialize_sgdatatypes();
        const bool before = handleConversionPresent();
        VLTerminate_sgutils();
        std::exit(before && handleConversionPresent() ? 0 : 1);
      },
      ::testing::ExitedWithCode(0), "");
  EXPECT_EXIT(
      {
        VLInitialize_sgutils();
        const bool before = handleConversionPresent();
        VLTerminate_sgutils();
        std::exit(before && !handleConversionPresent() ? 0 : 1);
      },
      ::testing::ExitedWithCode(0), "")
      << "after its own start-up, shut-down ends the data types";
}
