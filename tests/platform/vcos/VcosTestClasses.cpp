// The test classes of VcosTestClasses.h.
#include "VcosTestClasses.h"

#include <cstring>

#include "foundation/core/except/Error.h"
#include "vx/vxObjectStorage.h"

#include <gtest/gtest.h>

namespace vt {

Journal& journal() {
  static Journal j;
  return j;
}

namespace {

COSID id(const char* s) { return COSID(s); }

template <class Data>
class BlockInfo : public COSClassInfo {
 public:
  void* allocateInstance(COSInterface* instance) override {
    instance->getClass();  // blocks of base classes exist already
    ++count();
    return new Data;
  }
  void deallocateInstance(COSInterface*, void* data) override {
    --count();
    journal().deallocations.push_back(getName());
    delete static_cast<Data*>(data);
  }
  virtual int& count() = 0;
};

// A method whose body is a callable.
class FnMethod final : public COSMethodBase {
 public:
  using Fn = std::function<void(int&, COSValue*, int, const COSValue*)>;
  FnMethod(COSID cls, const char* name, MemberAccess access, COSMethodSignaturePtr sig, Fn fn)
      : COSMethodBase(cls, COSID(name), access, "", std::move(sig)), fn_(std::move(fn)) {}
  void invoke(const COSClient*, int& nlhs, COSValue* plhs, int nrhs, const COSValue* prhs) const override {
    fn_(nlhs, plhs, nrhs, prhs);
  }

 private:
  Fn fn_;
};

COSMethodSignaturePtr signature(const char* name, std::vector<const char*> inputTypes, unsigned flags = 0) {
  std::vector<COSMethodSignature::Argument> in;
  for (const char* t : inputTypes) in.push_back({COSID("arg"), t ? COSDataTypePtr(t) : COSDataTypePtr(), false});
  return COSMethodSignature::createMethodSignature(COSID(name), std::move(in), {{COSID("out"), {}, false}}, flags);
}

// The object under construction.
COSValue constructed(COSValue* plhs) {
  return COSValue(vxGetObjectElements(plhs[0].asPointer<const vxArray>())[0].get());
}

ShapeData* shapeOf(COSValue v) {
  return static_cast<ShapeData*>(v.asPointer<COSInterface>()->getInstanceData(COSID("vt.Shape")));
}

class ShapeInfo final : public BlockInfo<ShapeData> {
 public:
  const char* getName() const override { return "Shape"; }
  int& count() override { return journal().shapeBlocks; }
  bool isPropertyTruncationAllowed() const override { return true; }
  bool isOkToDestroy(const COSClient*, COSInterface*) override { return !journal().refuseDestroy; }
  void initializeClass(COSClass* c, const COSClient*) override {
    COSID me = c->getID();
    c->addProperty(new COSPropCPPT<ShapeData, bool>(me, id("Visible"), c->validatePropertyType(me, id("logical scalar")),
                                                    &ShapeData::getVisible, &ShapeData::setVisible));
    c->addProperty(new COSPropCPPT<ShapeData, double>(me, id("Width"), COSDataTypePtr("double scalar"),
                                                      &ShapeData::getWidth, &ShapeData::setWidth));
    c->addProperty(new COSPropCPPT<ShapeData, std::int32_t>(me, id("Secret"), COSDataTypePtr("int32 scalar"),
                                                            &ShapeData::getSecret, &ShapeData::setSecret,
                                                            ProtectedAccess, ProtectedAccess));
    c->addProperty(new COSPropCPPT<ShapeData, std::int32_t>(me, id("Internal"), COSDataTypePtr("int32 scalar"),
                                                            &ShapeData::getInternal, &ShapeData::setInternal,
                                                            PrivateAccess, PrivateAccess));
    std::string none = "none";
    c->addProperty(new COSPropT(me, id("WindowStyle"), COSDataTypePtr("asciiString"), COSValue(&none)));
    auto* listed = new COSPropT(me, id("Listed"), COSDataTypePtr("double scalar"));
    listed->setExtendedSetAccess(ExtendedMemberAccess{id("vt.Friend")});
    c->addProperty(listed);
    auto* quiet = new COSPropT(me, id("Quiet"), COSDataTypePtr("double scalar"), COSValue(), PublicAccess,
                               PublicAccess, COSPropDefaultFlags & ~unsigned(COSPropListenerSetAllowed));
    c->addProperty(quiet);
    c->addEvent(new COSEventT(id("Changed")));
    c->addEvent(new COSEventT(id("Guarded"), PrivateAccess));
    c->addEvent(new COSEventT(id("Whisper"), PublicAccess, ProtectedAccess));
    c->addMethod(new FnMethod(me, "area", PublicAccess, signature("area", {nullptr}),
                              [](int& nlhs, COSValue* plhs, int, const COSValue* prhs) {
                                double w = shapeOf(prhs[0])->width;
                                nlhs = 1;
                                plhs[0] = COSValue::fromDouble(w * w);
                              }));
    c->addMethod(new FnMethod(me, "hiddenWork", ProtectedAccess, nullptr,
                              [](int& nlhs, COSValue*, int, const COSValue*) { nlhs = 0; }));
    // The constructor: Shape() or Shape(width); the new object is element 0
    // of the array in plhs[0].
    c->addMethod(new FnMethod(me, "Shape", PublicAccess, signature("Shape", {nullptr}),
                              [](int&, COSValue* plhs, int, const COSValue* prhs) {
                                shapeOf(constructed(plhs))->width = prhs[0].asDouble();
                              }));
    c->addMethod(new FnMethod(me, "Shape", PublicAccess, signature("Shape", {}),
                              [](int&, COSValue* plhs, int, const COSValue*) {
                                EXPECT_NE(shapeOf(constructed(plhs)), nullptr);
                              }));
  }
};

class NamedInfo final : public BlockInfo<NamedData> {
 public:
  const char* getName() const override { return "Named"; }
  int& count() override {
    static int n = 0;
    return n;
  }
  void initializeClass(COSClass* c, const COSClient*) override {
    c->addProperty(new COSPropCPPT<NamedData, std::string>(c->getID(), id("Name"), COSDataTypePtr("asciiString"),
                                                           &NamedData::getName, &NamedData::setName));
    c->addMethod(new FnMethod(c->getID(), "describe", PublicAccess, signature("describe", {nullptr}),
                              [](int& nlhs, COSValue* plhs, int, const COSValue*) {
                                nlhs = 1;
                                plhs[0] = COSValue::fromInt(1);
                              }));
  }
};

class CircleInfo final : public BlockInfo<CircleData> {
 public:
  const char* getName() const override { return "Circle"; }
  int& count() override { return journal().circleBlocks; }
  void initializeClass(COSClass* c, const COSClient*) override {
    COSID me = c->getID();
    c->addSuperclass(id("vt.Shape"));
    c->addSuperclass(id("vt.Named"));
    c->addProperty(new COSPropCPPT<CircleData, double>(me, id("Radius"), COSDataTypePtr("double scalar"),
                                                       &CircleData::getRadius, &CircleData::setRadius));
    c->addMethod(new FnMethod(me, "area", PublicAccess, signature("area", {nullptr}),
                              [](int& nlhs, COSValue* plhs, int, const COSValue* prhs) {
                                auto* d = static_cast<CircleData*>(
                                    prhs[0].asPointer<COSInterface>()->getInstanceData(COSID("vt.Circle")));
                                nlhs = 1;
                                plhs[0] = COSValue::fromDouble(3.0 * d->radius * d->radius);
                              }));
    // Two definitions of "describe": one for a circle argument, one for text.
    c->addMethod(new FnMethod(me, "describe", PublicAccess, signature("describe", {nullptr, "vt.Circle scalar"}),
                              [](int& nlhs, COSValue* plhs, int, const COSValue*) {
                                nlhs = 1;
                                plhs[0] = COSValue::fromInt(2);
                              }));
    c->addMethod(new FnMethod(me, "unit", PublicAccess, signature("unit", {}, COSMethodSignature::Static),
                              [](int& nlhs, COSValue* plhs, int, const COSValue*) {
                                nlhs = 1;
                                plhs[0] = COSValue::fromDouble(1.0);
                              }));
  }
};

// A root whose direct subclasses are a closed list.
class GuardedRootInfo final : public COSClassInfo {
 public:
  const char* getName() const override { return "GuardedRoot"; }
  void initializeClass(COSClass* c, const COSClient*) override { c->addAllowedSubclass(id("vt.Allowed")); }
};
class AllowedInfo final : public COSClassInfo {
 public:
  const char* getName() const override { return "Allowed"; }
  void initializeClass(COSClass* c, const COSClient*) override { c->addSuperclass(id("vt.GuardedRoot")); }
};
class IntruderInfo final : public COSClassInfo {
 public:
  const char* getName() const override { return "Intruder"; }
  void initializeClass(COSClass* c, const COSClient*) override { c->addSuperclass(id("vt.GuardedRoot")); }
};
// Derives from Allowed: the closed list of GuardedRoot restricts direct
// subclasses only.
class GrandchildInfo final : public COSClassInfo {
 public:
  const char* getName() const override { return "Grandchild"; }
  void initializeClass(COSClass* c, const COSClient*) override { c->addSuperclass(id("vt.Allowed")); }
};
class FriendInfo final : public COSClassInfo {
 public:
  const char* getName() const override { return "Friend"; }
};
class SealedInfo final : public COSClassInfo {
 public:
  const char* getName() const override { return "Sealed"; }
  bool isSealed() const override { return true; }
};
class UnderSealedInfo final : public COSClassInfo {
 public:
  const char* getName() const override { return "UnderSealed"; }
  void initializeClass(COSClass* c, const COSClient*) override { c->addSuperclass(id("vt.Sealed")); }
};
class AbstractInfo final : public AbstractClassInfo {
 public:
  const char* getName() const override { return "Abstract"; }
};
// Diamond: Left and Right derive from Shape, Diamond from both.
class LeftInfo final : public COSClassInfo {
 public:
  const char* getName() const override { return "Left"; }
  void initializeClass(COSClass* c, const COSClient*) override { c->addSuperclass(id("vt.Shape")); }
};
class RightInfo final : public COSClassInfo {
 public:
  const char* getName() const override { return "Right"; }
  void initializeClass(COSClass* c, const COSClient*) override { c->addSuperclass(id("vt.Shape")); }
};
class DiamondInfo final : public COSClassInfo {
 public:
  const char* getName() const override { return "Diamond"; }
  void initializeClass(COSClass* c, const COSClient*) override {
    c->addSuperclass(id("vt.Left"));
    c->addSuperclass(id("vt.Right"));
  }
};

// Custom metadata: a meta property class whose blocks hold one attribute,
// and a meta class that turns on the custom set path for properties whose
// attribute is set.
struct TrackedAttribute {
  bool tracked = false;
  bool getTracked() const { return tracked; }
  void setTracked(bool t) { tracked = t; }
};

class TrackedMetaPropertyInfo final : public COSCustomMetaPropertyInfo {
 public:
  const char* getName() const override { return "TrackedProperty"; }
  void initializeClass(COSClass* c, const COSClient*) override {
    c->addSuperclass(id("meta.property"));
    c->addProperty(new COSPropCPPT<TrackedAttribute, bool>(c->getID(), id("Tracked"), COSDataTypePtr("logical scalar"),
                                                           &TrackedAttribute::getTracked, &TrackedAttribute::setTracked));
  }
  void* allocateInstance(COSInterface*) override { return new TrackedAttribute; }
  void deallocateInstance(COSInterface*, void* data) override { delete static_cast<TrackedAttribute*>(data); }
};

class TrackingMetaClass final : public COSCustomMetaClass {
 public:
  const char* getName() const override { return "TrackingMetaClass"; }
  void initializeClass(COSClass* c, const COSClient*) override { c->addSuperclass(id("meta.class")); }
  COSID getMetaPropertyClassID() const override { return id("vt.TrackedProperty"); }
  void finishPropertyCreation(COSClass* cls) override {
    ++journal().finishPropertyCalls;
    journal().propertiesSeenAtFinish = static_cast<int>(cls->getPropertyCount());
    COSIterator it;
    cls->getProperties(it);
    while (it.hasMoreElements()) {
      COSInterfacePtr p = it.nextElement();
      auto* a = static_cast<TrackedAttribute*>(p->getInstanceData(id("vt.TrackedProperty")));
      if (a && a->tracked) {
        turnOnCustomSet(cls, cosiToProp(p.get())->getID());
        turnOnCustomGet(cls, cosiToProp(p.get())->getID());
      }
    }
  }
  void finishClassCreation(COSClass*) override { ++journal().finishClassCalls; }
  void customSetPropertyValue(COSInterface* object, COSPropInfo* property, COSValue value) override {
    ++journal().customSets;
    journal().customSetNames.push_back(property->getName());
    setPropertyValue(object, property, value);
  }
  COSValue customGetPropertyValue(COSInterface* object, COSPropInfo* property) override {
    journal().customGetNames.push_back(property->getName());
    return COSCustomMetaClass::customGetPropertyValue(object, property);
  }
  void customReleasePropertyValue(COSInterface* object, COSPropInfo* property, COSValue value) override {
    journal().customReleaseNames.push_back(property->getName());
    COSCustomMetaClass::customReleasePropertyValue(object, property, value);
  }
};

class TrackedInfo final : public COSClassInfo, public COSUseCustomMetaData {
 public:
  const char* getName() const override { return "Tracked"; }
  COSID getMetaClassClassID() const override { return id("vt.TrackingMetaClass"); }
  void initializeClass(COSClass* c, const COSClient*) override {
    COSID me = c->getID();
    c->addProperty(new COSPropT(me, id("Color"), COSDataTypePtr("double scalar")));
    c->addProperty(new COSPropT(me, id("Size"), COSDataTypePtr("double scalar")));
    c->setPropertyAttribute(id("Color"), id("Tracked"), COSValue::fromBool(true));
    // Turned on while the class is being built: the mark waits for the table.
    COSCustomMetaClass::turnOnCustomGet(c, "Size");
  }
};

// An ordinary class deriving from Tracked: it inherits the custom set marks.
class TrackedChildInfo final : public COSClassInfo {
 public:
  const char* getName() const override { return "TrackedChild"; }
  void initializeClass(COSClass* c, const COSClient*) override { c->addSuperclass(id("vt.Tracked")); }
};

// CycleA derives from CycleB, which derives from CycleA.
class CycleAInfo final : public COSClassInfo {
 public:
  const char* getName() const override { return "CycleA"; }
  void initializeClass(COSClass* c, const COSClient*) override { c->addSuperclass(id("vt.CycleB")); }
};
class CycleBInfo final : public COSClassInfo {
 public:
  const char* getName() const override { return "CycleB"; }
  void initializeClass(COSClass* c, const COSClient*) override { c->addSuperclass(id("vt.CycleA")); }
};

// Derives from Shape; its own block cannot be made while
// journal().failAllocation is set, and its constructor fails on a negative
// input.
class FragileInfo final : public COSClassInfo {
 public:
  const char* getName() const override { return "Fragile"; }
  void initializeClass(COSClass* c, const COSClient*) override {
    c->addSuperclass(id("vt.Shape"));
    c->addMethod(new FnMethod(c->getID(), "Fragile", PublicAccess, nullptr,
                              [](int&, COSValue*, int nrhs, const COSValue* prhs) {
                                if (nrhs > 0 && prhs[0].asDouble() < 0)
                                  throw foundation::core::except::Error("VANTEL:vcos:InvalidValueForType", "width");
                              }));
  }
  void* allocateInstance(COSInterface*) override {
    if (journal().failAllocation) throw foundation::core::except::Error("VANTEL:vcos:NoInstanceData", "Fragile");
    return nullptr;
  }
};

// A Shape subclass that only the class property listener tests build, so
// that it is built after their listeners are in place.
class LateShapeInfo final : public COSClassInfo {
 public:
  const char* getName() const override { return "LateShape"; }
  void initializeClass(COSClass* c, const COSClient*) override { c->addSuperclass(id("vt.Shape")); }
};

class TestNamespace final : public COSNamespaceInfo {
 public:
  const char* getName() const override { return "vt"; }
};

}  // namespace

void registerClasses() {
  static bool done = false;
  if (done) return;
  done = true;
  COSPackage* p = COSPackage::addNamespace(new TestNamespace);
  p->addClass(new ShapeInfo);
  p->addClass(new NamedInfo);
  p->addClass(new CircleInfo);
  p->addClass(new GuardedRootInfo);
  p->addClass(new AllowedInfo);
  p->addClass(new IntruderInfo);
  p->addClass(new GrandchildInfo);
  p->addClass(new FriendInfo);
  p->addClass(new SealedInfo);
  p->addClass(new UnderSealedInfo);
  p->addClass(new AbstractInfo);
  p->addClass(new LeftInfo);
  p->addClass(new RightInfo);
  p->addClass(new DiamondInfo);
  p->addClass(new TrackedMetaPropertyInfo);
  p->addClass(new TrackingMetaClass);
  p->addClass(new TrackedInfo);
  p->addClass(new TrackedChildInfo);
  p->addClass(new CycleAInfo);
  p->addClass(new CycleBInfo);
  p->addClass(new FragileInfo);
  p->addClass(new LateShapeInfo);
}

}  // namespace vt
