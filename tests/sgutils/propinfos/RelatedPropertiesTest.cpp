// Finding the faces of a property by name, the guard that makes fan-outs
// honour modes, and the fan-out itself.
#include <gtest/gtest.h>

#include "PropertyModelClasses.h"
#include "sgutils/propinfos/ForceHonorModesScopeGuard.h"
#include "sgutils/propinfos/RelatedProperties.h"

namespace sgtest::propmodel {
namespace {

using graphics::datatype::AutoManual;

TEST(RelatedProperties, FindsModeAndInternalFacesAndWritesThem) {
  COSInterfacePtr object = makeObject(kSelectableClass);
  sgutils::RelatedProperties related(object, "Selected");
  ASSERT_TRUE(related.hasMode());
  ASSERT_TRUE(related.hasInternal());
  EXPECT_EQ(*related.modeValue(), AutoManual::Auto);
  EXPECT_TRUE(related.setMode(AutoManual::Manual));
  EXPECT_EQ(selectableOf(object).getSelectedMode(), AutoManual::Manual);
  EXPECT_TRUE(related.setInternal(COSValue::fromBool(true)));
  EXPECT_TRUE(selectableOf(object).getSelected());
  EXPECT_EQ(selectableOf(object).getSelectedMode(), AutoManual::Manual);

  // A name without the faces finds nothing.
  sgutils::RelatedProperties none(object, "ObjectOnly");
  EXPECT_FALSE(none.hasMode());
  EXPECT_FALSE(none.setMode(AutoManual::Auto));
  EXPECT_EQ(none.modeValue(), nullptr);

  object->deleteObject(COSGetPublicClient());
  EXPECT_EQ(related.modeValue(), nullptr) << "a destroyed object answered a mode";
  EXPECT_FALSE(related.setInternal(COSValue::fromBool(false)));
}

TEST(ForceHonorModesScopeGuard, OnlyTheOutermostGuardClearsTheMark) {
  COSInterfacePtr object = makeObject(kSelectableClass);
  SGHandle* handle = SGHandle::fromObject(object.get());
  {
    sgutils::ForceHonorModesScopeGuard outer(object.get());
    EXPECT_TRUE(outer.isActive());
    {
      sgutils::ForceHonorModesScopeGuard inner(object.get());
      EXPECT_FALSE(inner.isActive());
      auto moved = std::move(outer);
      EXPECT_TRUE(moved.isActive());
      EXPECT_FALSE(outer.isActive());
      auto copied = sgutils::ForceHonorModesScopeGuard::copyState(object.get(), object.get());
      EXPECT_FALSE(copied.isActive()) << "the target is marked already";
      outer = std::move(moved);
    }
    EXPECT_TRUE(handle->shouldFanoutsHonorModes()) << "an inner guard cleared the mark";
  }
  EXPECT_FALSE(handle->shouldFanoutsHonorModes());
  sgutils::ForceHonorModesScopeGuard disabled(object.get(), false);
  EXPECT_FALSE(disabled.isActive());
  object->deleteObject(COSGetPublicClient());
}

TEST(SetFanoutProperty, HonouringModesLeavesAManualPartAlone) {
  COSInterfacePtr part = makeObject(kSelectableClass);
  COSDataTypePtr type("vantel.graphics.datatype.on_off");
  sgutils::setFanoutProperty(COSValue::fromBool(true), type, part, "Selected", /*honorModes=*/true);
  EXPECT_TRUE(selectableOf(part).getSelected());
  EXPECT_EQ(selectableOf(part).getSelectedMode(), AutoManual::Auto);
  EXPECT_FALSE(SGHandle::fromObject(part.get())->shouldFanoutsHonorModes()) << "the guard outlived the write";

  selectableOf(part).setSelectedMode(AutoManual::Manual);
  sgutils::setFanoutProperty(COSValue::fromBool(false), type, part, "Selected", /*honorModes=*/true);
  EXPECT_TRUE(selectableOf(part).getSelected()) << "a manual value was overwritten";
  sgutils::setFanoutProperty(COSValue::fromBool(false), type, part, "Selected", /*honorModes=*/false);
  EXPECT_FALSE(selectableOf(part).getSelected());

  part->deleteObject(COSGetPublicClient());
  EXPECT_NO_THROW(sgutils::setFanoutProperty(COSValue::fromBool(true), type, part, "Selected", true));
}

}  // namespace
}  // namespace sgtest::propmodel
