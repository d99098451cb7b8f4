// Construction of graphics objects: the three shapes of name-value input,
// the identifier of each bad shape, the stage order, and the catch-all that
// runs SetupFailed and takes a half-built object out of the tree.
#include <gtest/gtest.h>

#include "TestGraphicsClasses.h"
#include "foundation/core/except/IMsgIDException.h"
#include "foundation/graphicsstate/GraphicsState.h"

using namespace sgtest;
using foundation::core::except::IMsgIDException;

namespace {

class Construction : public ::testing::Test {
 protected:
  void SetUp() override {
    registerTestClasses();
    journal() = Journal();
  }
};

std::string raisedId(std::initializer_list<const vxArray*> inputs) {
  try {
    construct(inputs);
  } catch (const IMsgIDException& e) {
    return e.identifier();
  }
  return "nothing raised";
}

Arr cellOf(std::initializer_list<const vxArray*> items) {
  Arr c(vxCreateCellMatrix(1, items.size()));
  vxIndex i = 0;
  for (const vxArray* item : items) vxSetCell(c.get(), i++, vxCreateSharedDataCopy(item));
  return c;
}

}  // namespace

TEST_F(Construction, PairsCellsAndStructsAllSetTheirProperties) {
  Arr width = str("Width"), tag = str("Tag"), three = num(3), a = str("a");
  COSInterfacePtr byPairs = construct({width.get(), three.get(), tag.get(), a.get()});
  EXPECT_EQ(blockOf(byPairs)->width, 3.0);
  EXPECT_EQ(blockOf(byPairs)->tag, "a");

  Arr four = num(4), b = str("b");
  Arr names = cellOf({width.get(), tag.get()}), values = cellOf({four.get(), b.get()});
  COSInterfacePtr byCells = construct({names.get(), values.get()});
  EXPECT_EQ(blockOf(byCells)->width, 4.0);
  EXPECT_EQ(blockOf(byCells)->tag, "b");

  const char* fields[] = {"Width", "Tag"};
  Arr s(vxCreateStructMatrix(1, 1, 2, fields));
  vxSetField(s.get(), 0, "Width", vxCreateDoubleScalar(5));
  vxSetField(s.get(), 0, "Tag", vxCreateString("c"));
  // A struct is one input: the pair after it is read as well.
  Arr six = num(6);
  COSInterfacePtr byStruct = construct({s.get(), width.get(), six.get()});
  EXPECT_EQ(blockOf(byStruct)->width, 6.0);
  EXPECT_EQ(blockOf(byStruct)->tag, "c");
}

TEST_F(Construction, EmptyStructSetsNothingAndGoesOn) {
  Arr empty(vxCreateStructMatrix(0, 0, 0, nullptr)), width = str("Width"), two = num(2);
  COSInterfacePtr o = construct({empty.get(), width.get(), two.get()});
  EXPECT_EQ(blockOf(o)->width, 2.0);
}

TEST_F(Construction, EachBadShapeRaisesItsIdentifier) {
  Arr width = str("Width"), two = num(2), tag = str("Tag");
  EXPECT_EQ(raisedId({width.get(), two.get(), tag.get()}), "VANTEL:HandleCtor:InvalidArgument")
      << "a name at the very end has no value";
  EXPECT_EQ(raisedId({two.get()}), "VANTEL:HandleCtor:InvalidArgument");
  Arr names = cellOf({width.get(), tag.get()}), oneValue = cellOf({two.get()});
  EXPECT_EQ(raisedId({names.get(), oneValue.get()}), "VANTEL:HandleCtor:pvpairmismatch");
  EXPECT_EQ(raisedId({names.get(), two.get()}), "VANTEL:HandleCtor:InvalidArgument");
  EXPECT_EQ(raisedId({names.get()}), "VANTEL:HandleCtor:InvalidArgument");
  Arr structRow(vxCreateStructMatrix(1, 2, 0, nullptr));
  EXPECT_EQ(raisedId({structRow.get()}), "VANTEL:HandleCtor:InvalidArgument");
  Arr nope = str("NoSuchProperty");
  EXPECT_EQ(raisedId({nope.get(), two.get()}), "VANTEL:sg_graphics:invalidCtorProperty");
}

TEST_F(Construction, StagesRunInOrder) {
  Arr tag = str("Tag"), t = str("t");
  construct({tag.get(), t.get()});
  // Setup runs before the inputs are set, so it records the empty tag.
  EXPECT_EQ(journal().stages, (std::vector<std::string>{":Setup", "t:CreationComplete"}));
}

TEST_F(Construction, CreateFcnRunsAfterCreationComplete) {
  Arr tag = str("Tag"), t = str("t"), name = str("CreateFcn");
  Arr fn = callback([](COSInterface*, COSEventData*) { journal().stages.push_back("CreateFcn"); });
  construct({tag.get(), t.get(), name.get(), fn.get()});
  EXPECT_EQ(journal().stages, (std::vector<std::string>{":Setup", "t:CreationComplete", "CreateFcn"}));
}

TEST_F(Construction, FailedSetupRunsSetupFailedAndRaises) {
  journal().failSetup = true;
  Arr tag = str("Tag"), t = str("t");
  EXPECT_THROW(construct({tag.get(), t.get()}), IMsgIDException);
  EXPECT_EQ(journal().stages, (std::vector<std::string>{":Setup", ":SetupFailed"}));
}

TEST_F(Construction, FailedSetLeavesTheObjectOutOfTheTree) {
  COSInterfacePtr parent = construct({});
  Arr parentName = str("Parent"), parentArr = obj(parent), width = str("Width"), negative = num(-1);
  EXPECT_THROW(construct({parentName.get(), parentArr.get(), width.get(), negative.get()}), IMsgIDException);
  EXPECT_EQ(parent->getNewestChild(), nullptr) << "the half-built child stayed hooked below its parent";
  EXPECT_EQ(journal().stages.back(), ":SetupFailed");
}

TEST_F(Construction, FailedCreationCompleteAlsoUnhooks) {
  COSInterfacePtr parent = construct({});
  journal().failCreationComplete = true;
  Arr parentName = str("Parent"), parentArr = obj(parent);
  EXPECT_THROW(construct({parentName.get(), parentArr.get()}), IMsgIDException);
  EXPECT_EQ(parent->getNewestChild(), nullptr);
}

TEST_F(Construction, JavaCheckRunsFirstAndIsSkippedInAReducedRuntime) {
  auto& test = sgutils::ErrorWithoutJVM::fcnIsJVMAvailable();
  const auto saved = test;
  int calls = 0;
  test = [&calls] {
    ++calls;
    return false;
  };
  try {
    construct({});
    ADD_FAILURE() << "construction without the Java layer went through";
  } catch (const IMsgIDException& e) {
    EXPECT_EQ(e.identifier(), "VANTEL:SGGraphics:noJVM");
  }
  EXPECT_TRUE(journal().stages.empty()) << "the check must come before Setup";

  GraphicsState::setIsDecaf(true);
  calls = 0;
  EXPECT_NO_THROW(construct({}));
  EXPECT_EQ(calls, 0);
  GraphicsState::setIsDecaf(false);

  test = nullptr;
  EXPECT_THROW(construct({}), std::bad_function_call) << "with no test in force";
  test = saved;
}

TEST_F(Construction, NullValueOnAnExistingPropertyDoesNothing) {
  COSInterfacePtr o = construct({});
  blockOf(o)->width = 7;
  SGHandle::setProperty(COSGetPublicClient(), o, "Width", nullptr);
  EXPECT_EQ(blockOf(o)->width, 7.0);
}
