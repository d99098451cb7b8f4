// Generated callback properties: an event whose row asks for one gets an
// "<Event>Fcn" property, and setting it is all it takes to hear the event.
#include <gtest/gtest.h>

#include <memory>

#include "../propinfos/PropertyModelClasses.h"
#include "foundation/log/Logger.h"
#include "sgdatatypes/Registration.h"
#include "sgdatatypes/VCallback.h"
#include "sgutils/objects/GeneratedCallbackInterface.h"
#include "sgutils/objects/MetaRows.gen.h"
#include "sgutils/propinfos/GeneratedCallbackPropInfo.h"
#include "support/PropertyAccess.h"
#include "vcos/COSClass.h"
#include "vcos/COSClient.h"
#include "vcos/COSTypeConversion.h"
#include "vcos/COSTypeRepository.h"
#include "vcos/ObjectCalls.h"

namespace {

using graphics::datatype::VCallback;

COSInterfacePtr makeMetaRows() {
  sgtest::propmodel::registerPropertyModelClasses();
  sgutils::generated::registerMetaRows();
  matrix::unique_vxArray made(omConstructObjectWithClient("sg2utils.MetaRows", 0, nullptr, COSGetPublicClient()));
  return omGetArrayElement(made.get(), 0);
}

// A callback value as the language holds it, made from a C++ function.
matrix::unique_vxArray callbackArray(VCallback::Function fn) {
  static const COSID type(graphics::datatype::kCallbackType), any("any");
  VCallback cb(std::move(fn));
  return matrix::unique_vxArray(COSTypeRepository::getConversion(type, any)->convert(COSValue(&cb)).asPointer<vxArray>());
}

matrix::unique_vxArray emptyArray() { return matrix::unique_vxArray(vxCreateDoubleMatrix(0, 0, vxREAL)); }

void send(const COSInterfacePtr& object, const char* event) {
  object->notifyEvent(COSGetPublicClient(), COSID(event), nullptr);
}

sgutils::GeneratedCallbackInterface* holderOf(const COSInterfacePtr& object) {
  return sgutils::GeneratedCallbackPropInfo::interfaceOf(object.get(), sgtest::MetaRows::classID());
}

TEST(GeneratedCallbacks, OnlyAnEventThatAsksForOneGetsAProperty) {
  COSInterfacePtr object = makeMetaRows();
  ASSERT_TRUE(object);
  COSClass* cls = object->getClass();
  COSPropInfo* changed = cls->findPropertyExact(COSID("ChangedFcn"));
  ASSERT_NE(changed, nullptr);
  EXPECT_EQ(cls->findPropertyExact(COSID("MovedFcn")), nullptr);
  EXPECT_STREQ(changed->getDataType()->getID().str().c_str(), graphics::datatype::kCallbackType);
  EXPECT_STREQ(changed->getDescription(), "ChangedFcn is a generated callback property for the event: Changed");
  EXPECT_STREQ(changed->getDetailedDescription(), changed->getDescription());
  EXPECT_EQ(changed->getMemberGetAccess(), PublicAccess);
  EXPECT_EQ(changed->getMemberSetAccess(), PublicAccess);
  // One listener, for the flagged event only, attached while the property is still empty.
  ASSERT_NE(holderOf(object), nullptr);
  EXPECT_EQ(holderOf(object)->listenerCount(), 1u);
  EXPECT_TRUE(vxIsEmpty(sgtest::get(object, "ChangedFcn").get()));
  EXPECT_NO_THROW(send(object, "Changed"));
  object->deleteObject(COSGetPublicClient());
}

TEST(GeneratedCallbacks, SettingThePropertyHearsTheEventAndEmptyStopsIt) {
  COSInterfacePtr object = makeMetaRows();
  int heard = 0;
  COSInterface* seenSource = nullptr;
  sgtest::set(object, "ChangedFcn", callbackArray([&](COSInterface* s, COSEventData*) {
                ++heard;
                seenSource = s;
              }).get());
  send(object, "Changed");
  send(object, "Moved");
  EXPECT_EQ(heard, 1);
  EXPECT_EQ(seenSource, object.get());
  EXPECT_FALSE(vxIsEmpty(sgtest::get(object, "ChangedFcn").get())) << "the value reads back";

  sgtest::set(object, "ChangedFcn", emptyArray().get());
  send(object, "Changed");
  EXPECT_EQ(heard, 1) << "an empty callback stops it";
  object->deleteObject(COSGetPublicClient());
}

TEST(GeneratedCallbacks, ReplacedAndRemainingCallbacksAreFreedOnce) {
  auto token = std::make_shared<int>(0);
  std::weak_ptr<int> first = token, second;
  COSInterfacePtr object = makeMetaRows();
  {
    auto keep = token;
    token.reset();
    sgtest::set(object, "ChangedFcn", callbackArray([keep](COSInterface*, COSEventData*) {}).get());
  }
  EXPECT_FALSE(first.expired());
  {
    auto other = std::make_shared<int>(1);
    second = other;
    sgtest::set(object, "ChangedFcn", callbackArray([other](COSInterface*, COSEventData*) {}).get());
  }
  EXPECT_TRUE(first.expired()) << "the first callback went when it was replaced";
  EXPECT_FALSE(second.expired());
  object->deleteObject(COSGetPublicClient());
  EXPECT_TRUE(second.expired()) << "no callback remains after the object goes";
}

TEST(GeneratedCallbacks, TheLogChannelNamesTheLoopAndTheSetsWhenOn) {
  foundation::log::setChannelLevel("gencallback::setget", foundation::log::kAll);
  testing::internal::CaptureStderr();
  COSInterfacePtr object = makeMetaRows();
  sgtest::set(object, "ChangedFcn", callbackArray([](COSInterface*, COSEventData*) {}).get());
  object->deleteObject(COSGetPublicClient());
  const std::string log = testing::internal::GetCapturedStderr();
  foundation::log::setChannelLevel("gencallback::setget", 0);
  EXPECT_NE(log.find("Looping over cls: sg2utils.MetaRows event: Changed IsCallback: true"), std::string::npos) << log;
  EXPECT_NE(log.find("Looping over cls: sg2utils.MetaRows event: Moved IsCallback: false"), std::string::npos) << log;
  EXPECT_NE(log.find("Add Changed listener for: ChangedFcn on class: sg2utils.MetaRows"), std::string::npos) << log;
  EXPECT_NE(log.find("setCallbackFcn for propName: ChangedFcn"), std::string::npos) << log;
}

}  // namespace
