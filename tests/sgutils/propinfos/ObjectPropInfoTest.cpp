// The handle property of event data: one object in, one object out; anything
// else holds no object.
#include <gtest/gtest.h>

#include "PropertyModelClasses.h"
#include "sgutils/propinfos/ObjectPropInfo.h"
#include "vcos/COSClass.h"
#include "vcos/ObjectArray.h"
#include "vx/vx.h"

namespace sgtest::propmodel {
namespace {

struct EventDataBlock : SGReference {
  COSInterfacePtr child;
};

struct ChildNodePI final : sgutils::ObjectPropInfo<EventDataBlock, ChildNodePI> {
  using ObjectPropInfo::ObjectPropInfo;
  static COSInterfacePtr& handle(EventDataBlock& b) noexcept { return b.child; }
};

class EventDataInfo final : public BaseObjectCOSInfo {
 public:
  const char* getName() const override { return "TestChildData"; }
  void initializeClass(COSClass* cls, const COSClient*) override {
    setClient(cls);
    cls->addProperty(new ChildNodePI(cls->getID(), "ChildNode", COSDataTypePtr("any"), PublicAccess, PrivateAccess,
                                     2638, "ChildNode PropInfo"));
  }
  void* allocateInstance(COSInterface*) override { return static_cast<SGReference*>(new EventDataBlock); }
  void deallocateInstance(COSInterface*, void* data) override { delete static_cast<SGReference*>(data); }
};

TEST(ObjectPropInfo, KeepsOneObjectAndReadsItBack) {
  registerPropertyModelClasses();
  static const bool registered = (sgutils::getNamespace()->addClass(new EventDataInfo, 0, 2), true);
  (void)registered;
  COSClass* cls = COSClass::getClass(COSID("sg2utils.TestChildData"));
  ASSERT_NE(cls, nullptr);
  COSInterfacePtr data = cls->wrapInstanceData(static_cast<SGReference*>(new EventDataBlock));
  COSPropInfo* childNode = cls->findPropertyExact(COSID("ChildNode"));
  COSInterfacePtr target = makeObject(kFlagsClass);

  matrix::unique_vxArray one(omCreateVCOSScalar(target));
  childNode->setValue(data.get(), COSValue(one.get()));
  COSValue read = childNode->getValue(data.get());
  EXPECT_EQ(omGetArrayElement(read.asPointer<const vxArray>(), 0), target);
  childNode->releaseValue(data.get(), read);

  // A number is not an object: the property holds none afterwards.
  matrix::unique_vxArray number(vxCreateDoubleScalar(1));
  childNode->setValue(data.get(), COSValue(number.get()));
  read = childNode->getValue(data.get());
  EXPECT_TRUE(vxIsEmpty(read.asPointer<const vxArray>()));
  childNode->releaseValue(data.get(), read);
  target->deleteObject(COSGetPublicClient());
}

}  // namespace
}  // namespace sgtest::propmodel
