// Numeric handles: the number-to-object table on real objects, through its
// own calls and through the conversions of the type repository, and the
// handle-holding value types that read numbers and object arrays.
#include <gtest/gtest.h>

#include <cmath>

#include "DatatypesTestSupport.h"

using namespace graphics::datatype;
using namespace dtt;

namespace {

class HandleNumbers : public ::testing::Test {
 protected:
  void SetUp() override {
    dtt::setUp();
    HandleNumberTable::clear();
  }
  void TearDown() override { HandleNumberTable::clear(); }

  static COSValue convert(const char* from, const char* to, COSValue v) {
    return COSTypeRepository::getConversion(COSID(from), COSID(to))->convert(v);
  }
};

TEST_F(HandleNumbers, OneObjectKeepsOneNumber) {
  COSInterfacePtr w = make("dtt.Widget");
  double n = HandleNumberTable::numberFor(w.get());
  EXPECT_EQ(HandleNumberTable::numberFor(w.get()), n);
  EXPECT_EQ(HandleNumberTable::objectFor(n), w.get());
  // Through the repository, as the library above reaches it.
  COSValue asNumber = convert(kCOSInterfaceType, "double", COSValue(w.get()));
  EXPECT_EQ(asNumber.asDouble(), n);
  COSValue asObject = convert("double", kCOSInterfaceType, COSValue::fromDouble(n));
  EXPECT_EQ(asObject.asPointer<COSInterface>(), w.get());
  destroyValue(kCOSInterfaceType, asObject);
}

TEST_F(HandleNumbers, FiguresTakeTheSmallestFreeWholeNumberOthersUniqueFractions) {
  COSInterfacePtr f1 = make("vantel.ui.Figure"), f2 = make("vantel.ui.Figure");
  COSInterfacePtr a = make("dtt.Widget"), b = make("dtt.Widget");
  EXPECT_EQ(HandleNumberTable::numberFor(f1.get()), 1.0);
  EXPECT_EQ(HandleNumberTable::numberFor(f2.get()), 2.0);
  double na = HandleNumberTable::numberFor(a.get()), nb = HandleNumberTable::numberFor(b.get());
  EXPECT_NE(std::floor(na), na);
  EXPECT_NE(std::floor(nb), nb);
  EXPECT_NE(na, nb);
  vcos_destroy_handle(1.0);
  COSInterfacePtr f3 = make("vantel.ui.Figure");
  EXPECT_EQ(HandleNumberTable::numberFor(f3.get()), 1.0);  // a freed figure number is taken again
  vcos_destroy_handle(na);
  COSInterfacePtr c = make("dtt.Widget");
  EXPECT_NE(HandleNumberTable::numberFor(c.get()), na);  // other numbers are never reused
}

TEST_F(HandleNumbers, DeletedObjectsHaveNoNumberAndNameNothing) {
  COSInterfacePtr w = make("dtt.Widget");
  double n = HandleNumberTable::numberFor(w.get());
  ASSERT_TRUE(w->deleteObject(COSGetPublicClient()));
  EXPECT_EQ(HandleNumberTable::objectFor(n), nullptr);
  EXPECT_EQ(HandleNumberTable::entryFor(n), w.get());  // the shell, so callers can say "deleted"
  EXPECT_TRUE(std::isnan(HandleNumberTable::numberFor(w.get())));
  COSValue shell = convert("double", kCOSInterfaceType, COSValue::fromDouble(n));
  ASSERT_EQ(shell.asPointer<COSInterface>(), w.get());
  EXPECT_TRUE(shell.asPointer<COSInterface>()->isDestroyed());
  destroyValue(kCOSInterfaceType, shell);
  vcos_destroy_handle(n);
  EXPECT_EQ(HandleNumberTable::entryFor(n), nullptr);
  EXPECT_EQ(convert("double", kCOSInterfaceType, COSValue::fromDouble(n)).asPointer<COSInterface>(), nullptr);
  vcos_destroy_handle(n);  // twice, and unknown numbers, are ignored
  vcos_destroy_handle(std::nan(""));
}

TEST_F(HandleNumbers, TheTableDoesNotKeepObjectsAlive) {
  COSInterfacePtr w = make("dtt.Widget");
  COSInterfacePtr watcher(w.get(), COSWeakReference);
  double n = HandleNumberTable::numberFor(w.get());
  w.reset();
  EXPECT_TRUE(watcher->isDestroyed());
  EXPECT_EQ(HandleNumberTable::objectFor(n), nullptr);
  vcos_destroy_handle(n);
  EXPECT_EQ(HandleNumberTable::size(), 0u);
}

TEST_F(HandleNumbers, HandleOrEmptyReadsObjectsNumbersAndEmpties) {
  COSInterfacePtr w = make("dtt.Widget");
  EXPECT_EQ(HandleOrEmpty::fromArray(objectArray(w).get()).get(), w);
  EXPECT_EQ(HandleOrEmpty::fromArray(scalar(HandleNumberTable::numberFor(w.get())).get()).get(), w);
  EXPECT_TRUE(HandleOrEmpty::fromArray(emptyDouble().get()).isEmpty());
  EXPECT_TRUE(HandleOrEmpty::fromArray(own(vxCreateCellMatrix(0, 0)).get()).isEmpty());

  HandleOrEmpty held(w);
  auto back = own(held.toArray());
  EXPECT_EQ(HandleOrEmpty::fromArray(back.get()), held);
  EXPECT_NE(HandleOrEmpty(make("dtt.Widget")), held);
  EXPECT_EQ(vxGetNumberOfElements(own(HandleOrEmpty().toArray()).get()), 0u);

  const char* id = "VANTEL:datatypes:InvalidHandleOrEmpty";
  EXPECT_EQ(raisedId([] { HandleOrEmpty::fromArray(scalar(12345.5).get()); }), id);  // names nothing
  EXPECT_EQ(raisedId([] { HandleOrEmpty::fromArray(text("w").get()); }), id);
  auto two = own(vxCreateObjectMatrix(1, 2, w->getClass()->getID().entry()));
  vxGetObjectElements(two.get())[0] = w;
  vxGetObjectElements(two.get())[1] = w;
  EXPECT_EQ(raisedId([&] { HandleOrEmpty::fromArray(two.get()); }), id);
}

TEST_F(HandleNumbers, HandleOrEmptyKeepsADeletedObjectAsAShell) {
  COSInterfacePtr w = make("dtt.Widget");
  HandleOrEmpty held(w);
  EXPECT_TRUE(held.isAlive());
  w->deleteObject(COSGetPublicClient());
  EXPECT_FALSE(held.isAlive());
  EXPECT_FALSE(held.isEmpty());
}

TEST_F(HandleNumbers, LayoutOrEmptyTakesOnlyLayoutOptions) {
  COSInterfacePtr options = make("vantel.ui.layout.LayoutOptions");
  EXPECT_EQ(LayoutOrEmpty::fromArray(objectArray(options).get()).get(), options);
  EXPECT_TRUE(LayoutOrEmpty::fromArray(emptyDouble().get()).isEmpty());
  auto back = own(LayoutOrEmpty(options).toArray());
  EXPECT_EQ(LayoutOrEmpty::fromArray(back.get()), LayoutOrEmpty(options));
  COSInterfacePtr widget = make("dtt.Widget");
  EXPECT_EQ(raisedId([&] { LayoutOrEmpty::fromArray(objectArray(widget).get()); }),
            "VANTEL:datatypes:InvalidLayout");
  EXPECT_EQ(raisedId([] { LayoutOrEmpty::fromArray(text("grid").get()); }), "VANTEL:datatypes:InvalidLayout");
}

}  // namespace
