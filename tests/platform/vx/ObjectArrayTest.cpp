// Object arrays keep their objects alive and let them go; class questions go
// to the hooks the class-object system installs.
#include <gtest/gtest.h>

#include <cstring>

#include <vx/vx.h>

#include "CountedObject.h"

using matrix::from_vantel;
using matrix::unique_vxArray;

TEST(ObjectArrayLifetime, ElementsLiveAsLongAsAnyCopy) {
  const int before = CountedObject::live;
  vxArray* a = CountedObject::makeArray(3);
  vxArray* shared = vxCreateSharedDataCopy(a);
  vxArray* deep = vxDuplicateArray(a);
  EXPECT_EQ(CountedObject::live, before + 3) << "copies refer to the same objects";

  vxDestroyArray(a);
  vxDestroyArray(deep);
  EXPECT_EQ(CountedObject::live, before + 3);
  EXPECT_EQ(vxGetObjectElements(static_cast<const vxArray*>(shared))[2]->strongReferenceCount(), 1u);
  vxDestroyArray(shared);
  EXPECT_EQ(CountedObject::live, before);
}

TEST(ObjectArrayLifetime, WritingElementsOfACopyLeavesTheSourceAlone) {
  const int before = CountedObject::live;
  unique_vxArray a = from_vantel(CountedObject::makeArray(1));
  unique_vxArray b = from_vantel(vxCreateSharedDataCopy(a.get()));
  vxGetObjectElements(b.get())[0] = nullptr;
  EXPECT_FALSE(vxGetObjectElements(static_cast<const vxArray*>(a.get()))[0].isNull());
  a.reset();
  EXPECT_EQ(CountedObject::live, before);
}

TEST(ObjectArrayLifetime, NestedObjectsNeedCycleDetectionAndAreReleased) {
  const int before = CountedObject::live;
  {
    unique_vxArray s = from_vantel(vxCreateStructMatrix(1, 1, 0, nullptr));
    unique_vxArray c = from_vantel(vxCreateCellMatrix(1, 2));
    vxSetCell(c.get(), 0, vxCreateDoubleScalar(1));
    EXPECT_FALSE(vxHasCycleDetectionContents(c.get()));
    vxSetCell(c.get(), 1, CountedObject::makeArray(1));
    vxSetField(s.get(), 0, "inner", c.release());
    EXPECT_TRUE(vxHasCycleDetectionContents(s.get()));
    unique_vxArray empty = from_vantel(vxCreateObjectMatrix(0, 0, nullptr));
    EXPECT_TRUE(vxHasCycleDetectionContents(empty.get()));
    EXPECT_FALSE(vxHasCycleDetectionContents(from_vantel(vxCreateString("x")).get()));
  }
  EXPECT_EQ(CountedObject::live, before);
}

namespace {

// Two classes: "test.Base" (a heterogeneous root) and "test.Leaf" below it.
const char kBase = 0;
const char kLeaf = 0;

const char* nameOf(const void* id) { return id == &kBase ? "test.Base" : "test.Leaf"; }
bool isA(const void* id, const char* name) {
  return std::strcmp(name, "test.Base") == 0 || std::strcmp(name, nameOf(id)) == 0;
}
bool isHeterogeneous(const void*) { return true; }

class ObjectHooks : public ::testing::Test {
 protected:
  void TearDown() override { vxSetObjectHooks(old_); }
  vxObjectHooks old_ = vxSetObjectHooks({});
};

}  // namespace

TEST_F(ObjectHooks, WithoutHooksAnObjectArrayIsPlainObject) {
  unique_vxArray a = from_vantel(vxCreateObjectMatrix(1, 1, &kLeaf));
  EXPECT_STREQ(vxGetClassName(a.get()), "object");
  EXPECT_TRUE(vxIsA(a.get(), "object"));
  EXPECT_FALSE(vxIsA(a.get(), "test.Base"));
  EXPECT_FALSE(vxIsHeterogeneousArray(a.get()));
}

TEST_F(ObjectHooks, ClassQuestionsGoToTheHooks) {
  vxSetObjectHooks({nameOf, isA, isHeterogeneous});
  unique_vxArray a = from_vantel(vxCreateObjectMatrix(1, 2, &kLeaf));
  EXPECT_STREQ(vxGetClassName(a.get()), "test.Leaf");
  EXPECT_TRUE(vxIsA(a.get(), "test.Base"));
  EXPECT_FALSE(vxIsA(a.get(), "double"));
  EXPECT_TRUE(vxIsHeterogeneousArray(a.get()));

  unique_vxArray copy = from_vantel(vxCreateSharedDataCopy(a.get()));
  vxSetObjectClassID(a.get(), &kBase);
  EXPECT_STREQ(vxGetClassName(a.get()), "test.Base");
  EXPECT_EQ(vxGetObjectClassID(copy.get()), &kLeaf) << "narrowing one array leaves its copies";

  unique_vxArray d = from_vantel(vxCreateDoubleScalar(1));
  EXPECT_FALSE(vxIsHeterogeneousArray(d.get()));
}

// The one-call reads of a set by name: an object array's element, and the
// value of a logical scalar. Anything else answers nothing.
TEST(OneCallReads, ElementAtAnswersOnlyInsideAnObjectArray) {
  const int before = CountedObject::live;
  {
    unique_vxArray a = from_vantel(CountedObject::makeArray(3));
    const vxArray* c = a.get();
    EXPECT_EQ(vxGetObjectElementAt(c, 0), &vxGetObjectElements(c)[0]);
    EXPECT_EQ(vxGetObjectElementAt(c, 2), &vxGetObjectElements(c)[2]);
    EXPECT_EQ(vxGetObjectElementAt(c, 3), nullptr) << "one past the end";
    const vxSize dims[3] = {1, 2, 2};
    unique_vxArray cube = from_vantel(vxCreateObjectArray(3, dims, nullptr));
    EXPECT_NE(vxGetObjectElementAt(cube.get(), 3), nullptr) << "more than two dimensions count them all";
    EXPECT_TRUE(vxGetObjectElementAt(cube.get(), 3)->isNull());
    EXPECT_EQ(vxGetObjectElementAt(cube.get(), 4), nullptr);
    EXPECT_EQ(vxGetObjectElementAt(from_vantel(vxCreateDoubleScalar(1)).get(), 0), nullptr);
    EXPECT_EQ(vxGetObjectElementAt(nullptr, 0), nullptr);
  }
  EXPECT_EQ(CountedObject::live, before);
}

TEST(OneCallReads, LogicalScalarOnlyForOneByOneLogicals) {
  bool value = false;
  EXPECT_TRUE(vxGetLogicalScalar(from_vantel(vxCreateLogicalScalar(true)).get(), &value));
  EXPECT_TRUE(value);
  EXPECT_TRUE(vxGetLogicalScalar(from_vantel(vxCreateLogicalScalar(false)).get(), &value));
  EXPECT_FALSE(value);
  value = true;
  EXPECT_FALSE(vxGetLogicalScalar(from_vantel(vxCreateLogicalMatrix(1, 2)).get(), &value));
  EXPECT_FALSE(vxGetLogicalScalar(from_vantel(vxCreateLogicalMatrix(0, 0)).get(), &value));
  EXPECT_FALSE(vxGetLogicalScalar(from_vantel(vxCreateDoubleScalar(1)).get(), &value));
  EXPECT_FALSE(vxGetLogicalScalar(from_vantel(vxCreateString("on")).get(), &value));
  EXPECT_FALSE(vxGetLogicalScalar(nullptr, &value));
  EXPECT_TRUE(value) << "left alone when the answer is no";
  // A logical scalar grown out of its inline room and shrunk back to one element.
  unique_vxArray grown = from_vantel(vxCreateLogicalMatrix(1, 3));
  static_cast<bool*>(vxGetData(grown.get()))[0] = true;
  const vxSize one[2] = {1, 1};
  vxSetDimensions(grown.get(), one, 2);
  EXPECT_TRUE(vxGetLogicalScalar(grown.get(), &value));
  EXPECT_TRUE(value);
}
