// Callback values: the forms a user may give, what runs them, equality and
// the round trip of a C++ function through an array.
#include <gtest/gtest.h>

#include <memory>

#include "DatatypesTestSupport.h"

using namespace graphics::datatype;
using namespace dtt;

namespace {

class LanguageHandle final : public vxFunctionHandleData {
 public:
  std::string text() const override { return "@(s,e)disp(s)"; }
};

unique_vxArray functionHandle() { return own(vxCreateFunctionHandle(std::make_shared<LanguageHandle>())); }

// Installs a runner for the length of a test and puts the previous one back.
struct RunnerScope {
  explicit RunnerScope(VCallback::Runner r) : previous(VCallback::setRunner(std::move(r))) {}
  ~RunnerScope() { VCallback::setRunner(std::move(previous)); }
  VCallback::Runner previous;
};

TEST(CallbackValues, FormsAUserMayGive) {
  EXPECT_EQ(VCallback::fromArray(emptyDouble().get()).kind(), VCallback::Kind::Empty);
  EXPECT_EQ(VCallback::fromArray(text("").get()).kind(), VCallback::Kind::Empty);
  EXPECT_EQ(VCallback::fromArray(own(vxCreateCellMatrix(0, 0)).get()).kind(), VCallback::Kind::Empty);
  EXPECT_EQ(VCallback::fromArray(functionHandle().get()).kind(), VCallback::Kind::FunctionHandle);
  EXPECT_EQ(VCallback::fromArray(text("disp(1)").get()).kind(), VCallback::Kind::Text);

  auto cell = own(vxCreateCellMatrix(1, 3));
  vxSetCell(cell.get(), 0, functionHandle().release());
  vxSetCell(cell.get(), 1, vxCreateDoubleScalar(7));
  EXPECT_EQ(VCallback::fromArray(cell.get()).kind(), VCallback::Kind::CellWithArguments);
  auto named = own(vxCreateCellMatrix(1, 1));
  vxSetCell(named.get(), 0, vxCreateString("myFunction"));
  EXPECT_EQ(VCallback::fromArray(named.get()).kind(), VCallback::Kind::CellWithArguments);
}

TEST(CallbackValues, RefusedForms) {
  const char* id = "VANTEL:datatypes:InvalidCallback";
  EXPECT_EQ(raisedId([] { VCallback::fromArray(scalar(3).get()); }), id);
  EXPECT_EQ(raisedId([] { VCallback::fromArray(own(vxCreateStructMatrix(1, 1, 0, nullptr)).get()); }), id);
  auto numberFirst = own(vxCreateCellMatrix(1, 2));
  vxSetCell(numberFirst.get(), 0, vxCreateDoubleScalar(1));
  EXPECT_EQ(raisedId([&] { VCallback::fromArray(numberFirst.get()); }), id);
  auto square = own(vxCreateCellMatrix(2, 2));
  vxSetCell(square.get(), 0, functionHandle().release());
  EXPECT_EQ(raisedId([&] { VCallback::fromArray(square.get()); }), id);
}

TEST(CallbackRunning, CxxFunctionGetsSourceAndEventData) {
  COSInterface* seenSource = nullptr;
  COSEventData* seenData = nullptr;
  VCallback cb([&](COSInterface* s, COSEventData* d) {
    seenSource = s;
    seenData = d;
  });
  auto source = reinterpret_cast<COSInterface*>(0x10);
  auto data = reinterpret_cast<COSEventData*>(0x20);
  cb.execute(source, data);
  EXPECT_EQ(seenSource, source);
  EXPECT_EQ(seenData, data);
  VCallback().execute(source, data);  // empty: nothing runs, nothing raised
}

TEST(CallbackRunning, LanguageValuesGoToTheRegisteredRunner) {
  VCallback text = VCallback::fromArray(dtt::text("disp(1)").get());
  {
    RunnerScope none{VCallback::Runner()};
    EXPECT_EQ(raisedId([&] { text.execute(nullptr, nullptr); }), "VANTEL:datatypes:NoCallbackRunner");
  }
  std::string ran;
  RunnerScope scope([&](const vxArray* value, COSInterface*, COSEventData*) { ran = vxArrayToStdString(value); });
  text.execute(nullptr, nullptr);
  EXPECT_EQ(ran, "disp(1)");
}

TEST(CallbackValues, CxxFunctionSurvivesTheRoundTripThroughAnArray) {
  int calls = 0;
  VCallback cb([&](COSInterface*, COSEventData*) { ++calls; });
  auto asArray = own(cb.toArray());
  ASSERT_TRUE(vxIsFunctionHandle(asArray.get()));
  VCallback back = VCallback::fromArray(asArray.get());
  EXPECT_EQ(back, cb);
  back.execute(nullptr, nullptr);
  EXPECT_EQ(calls, 1);
  EXPECT_NE(VCallback([](COSInterface*, COSEventData*) {}), cb);  // another function
}

TEST(CallbackValues, EqualityByContentAndHandleIdentity) {
  EXPECT_EQ(VCallback::fromArray(text("a").get()), VCallback::fromArray(text("a").get()));
  EXPECT_NE(VCallback::fromArray(text("a").get()), VCallback::fromArray(text("b").get()));
  auto fh = functionHandle();
  EXPECT_EQ(VCallback::fromArray(fh.get()), VCallback::fromArray(fh.get()));
  EXPECT_NE(VCallback::fromArray(fh.get()), VCallback::fromArray(functionHandle().get()));
  EXPECT_EQ(VCallback(), VCallback::fromArray(emptyDouble().get()));
  // A copy shares the language value and still compares equal after the
  // original is gone.
  auto original = std::make_unique<VCallback>(VCallback::fromArray(text("x").get()));
  VCallback copy = *original;
  original.reset();
  EXPECT_EQ(copy, VCallback::fromArray(text("x").get()));
  EXPECT_EQ(vxArrayToStdString(own(copy.toArray()).get()), "x");
}

}  // namespace
