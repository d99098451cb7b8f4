// Deleted objects must not stay in memory through the library's side
// tables: the drawnow queue and the numbers that stand for objects hold
// weak references, which keep an object's memory.
#include "classes/ClassesTestSupport.h"
#include "sgclasses/Drawnow.h"
#include "sgclasses/ClassNames.h"
#include "sgdatatypes/HandleNumberTable.h"
#include "vcos/COSObjectOperations.h"

namespace sgtest::classes {
namespace {

TEST_F(ClassesTest, DeletedObjectsLeaveTheDrawnowQueueWithoutADrawnow) {
  COSInterfacePtr axes = sgclasses::create(sgclasses::kAxesClass, sgclasses::create(sgclasses::kFigureClass, sgclasses::root()));
  const std::size_t live = vcos::liveObjectCount();
  Arr width(vxCreateDoubleScalar(2));
  for (int i = 0; i < 1000; ++i) {
    COSInterfacePtr line = sgclasses::create(sgclasses::kLineClass, axes);
    set(line, "LineWidth", width.get());
    line->deleteObject(nullptr);
  }
  // The queue lets go of deleted objects before it grows: what stays is
  // bounded by the queue's storage, not by the objects made.
  EXPECT_LT(vcos::liveObjectCount() - live, 100u);
}

TEST_F(ClassesTest, AnObjectWhoseNumberWasAskedForIsFreedWithItsNumber) {
  COSInterfacePtr figure = sgclasses::create(sgclasses::kFigureClass, sgclasses::root());
  COSInterfacePtr line = sgclasses::create(sgclasses::kLineClass, sgclasses::create(sgclasses::kAxesClass, figure));
  const double number = graphics::datatype::HandleNumberTable::numberFor(line.get());
  ASSERT_EQ(graphics::datatype::HandleNumberTable::objectFor(number), line.get());
  // A new object waits in the drawnow queue (its view's first names); take it
  // out so that only the number table could keep its memory.
  sgclasses::drawnow();
  const std::size_t live = vcos::liveObjectCount();
  line->deleteObject(nullptr);
  line.reset();
  EXPECT_EQ(graphics::datatype::HandleNumberTable::entryFor(number), nullptr);
  EXPECT_EQ(vcos::liveObjectCount(), live - 1);
}

}  // namespace
}  // namespace sgtest::classes
