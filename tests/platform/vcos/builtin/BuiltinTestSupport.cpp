// The classes and helpers of BuiltinTestSupport.h.
#include "BuiltinTestSupport.h"

#include "foundation/core/except/Error.h"
#include "vcos/BuiltinClasses.h"
#include "vcos/FunctionDispatcher.h"
#include "vcos/ObjectArray.h"
#include "vcos/ObjectCalls.h"
#include "vcos/VxProperty.h"

namespace bt {

namespace {

COSID id(const char* s) { return COSID(s); }

struct TestHandle : vxFunctionHandleData {
  explicit TestHandle(Body b) : body(std::move(b)) {}
  std::string text() const override { return "@testBody"; }
  Body body;
};

class Info : public COSClassInfo {
 public:
  Info(const char* name, std::vector<const char*> supers, bool abstract = false)
      : name_(name), supers_(std::move(supers)), abstract_(abstract) {}
  const char* getName() const override { return name_; }
  bool isAbstract() const override { return abstract_; }
  void initializeClass(COSClass* c, const COSClient*) override {
    for (const char* s : supers_) c->addSuperclass(id(s));
    members(c);
  }
  virtual void members(COSClass*) {}

 private:
  const char* name_;
  std::vector<const char*> supers_;
  bool abstract_;
};

class NodeInfo : public Info {
 public:
  using Info::Info;
  NodeInfo() : Info("Node", {"handle", "dynamicprops"}) {}
  void members(COSClass* c) override {
    if (c->getID() != id("bt.Node")) return;
    c->addProperty(new COSPropT(c->getID(), id("Name"), COSDataTypePtr("asciiString")));
    c->addProperty(new COSPropT(c->getID(), id("Value"), COSDataTypePtr("double scalar")));
    c->addProperty(new COSPropT(c->getID(), id("Tag"), COSDataTypePtr("any")));
    c->addEvent(new COSEventT(id("Ping")));
  }
};

// Reports its children without those named "secret", newest first.
class FolderInfo final : public NodeInfo {
 public:
  FolderInfo() : NodeInfo("Folder", {"bt.Node"}) {}
  bool usesCustomChildrenList() const override { return true; }
  void getChildrenOfInstance(COSInterface* instance, std::vector<COSInterfacePtr>& out) override {
    for (COSInterface* c = instance->getNewestChild(); c; c = c->getOlderSibling())
      if (getText(COSInterfacePtr(c), "Name") != "secret") out.emplace_back(c);
  }
};

class BlankMethod final : public COSMethodBase {
 public:
  explicit BlankMethod(COSID cls)
      : COSMethodBase(cls, id("getDefaultScalarElement"), PublicAccess, "a new blank",
                      COSMethodSignature::createMethodSignature(id("getDefaultScalarElement"), {}, {},
                                                                COSMethodSignature::Static)) {}
  void invoke(const COSClient*, int& nlhs, COSValue* plhs, int, const COSValue*) const override {
    plhs[0] = COSValue(omCreateVCOSScalar(make("bt.Blank")));
    nlhs = 1;
  }
};

class ShapeInfo final : public Info {
 public:
  ShapeInfo() : Info("Shape", {"handle", "vantel.mixin.Heterogeneous"}, /*abstract=*/true) {}
  void members(COSClass* c) override {
    c->addProperty(new COSPropT(c->getID(), id("Name"), COSDataTypePtr("asciiString")));
    c->addMethod(new BlankMethod(c->getID()));
  }
};

class ShownInfo final : public Info {
 public:
  ShownInfo() : Info("Shown", {"handle", "vantel.mixin.CustomDisplay"}) {}
  void members(COSClass* c) override {
    c->addProperty(new COSPropT(c->getID(), id("Name"), COSDataTypePtr("asciiString")));
    c->addProperty(new COSPropT(c->getID(), id("Value"), COSDataTypePtr("double scalar")));
  }
};

// Replaces one piece of the default display: the footer.
class FooterMethod final : public COSMethodBase {
 public:
  explicit FooterMethod(COSID cls) : COSMethodBase(cls, id("getFooter"), PublicAccess, "a footer of its own") {}
  void invoke(const COSClient*, int& nlhs, COSValue* plhs, int, const COSValue*) const override {
    plhs[0] = COSValue(vxCreateString("  (footer)\n"));
    nlhs = 1;
  }
};

class FootedInfo final : public Info {
 public:
  FootedInfo() : Info("Footed", {"bt.Shown"}) {}
  void members(COSClass* c) override { c->addMethod(new FooterMethod(c->getID())); }
};

// Records how loadobj was called.
class LoadobjMethod final : public COSMethodBase {
 public:
  explicit LoadobjMethod(COSID cls) : COSMethodBase(cls, id("loadobj"), PublicAccess, "records its call") {}
  void invoke(const COSClient*, int& nlhs, COSValue*, int nrhs, const COSValue* prhs) const override {
    LoadobjCall& c = lastLoadobj();
    c.inputs = nrhs;
    c.firstIsObjectArray = omIsVCOS(prhs[0].asPointer<vxArray>());
    c.second = nrhs > 1 ? omGetArrayElement(prhs[1].asPointer<vxArray>(), 0).get() : nullptr;
    nlhs = 0;
  }
};

// A class whose C++ block counts itself, for wrapping data.
class WrappedInfo final : public Info {
 public:
  WrappedInfo() : Info("Wrapped", {"handle"}) {}
  void members(COSClass* c) override { c->addMethod(new LoadobjMethod(c->getID())); }
  bool willAllocateData() const override { return true; }
  void* allocateInstance(COSInterface*) override { return new WrappedBlock; }
  void deallocateInstance(COSInterface*, void* data) override { delete static_cast<WrappedBlock*>(data); }
};

class Namespace final : public COSNamespaceInfo {
 public:
  const char* getName() const override { return "bt"; }
};

}  // namespace

int WrappedBlock::alive = 0;

LoadobjCall& lastLoadobj() {
  static LoadobjCall c;
  return c;
}

void setUp() {
  static bool done = false;
  if (done) return;
  done = true;
  vcos::registerBuiltinClasses();
  COSPackage* p = COSPackage::addNamespace(new Namespace);
  p->addClass(new NodeInfo);
  p->addClass(new FolderInfo);
  p->addClass(new ShapeInfo);
  p->addClass(new Info("Square", {"bt.Shape"}));
  p->addClass(new Info("RedSquare", {"bt.Square"}));
  p->addClass(new Info("Round", {"bt.Shape"}));
  p->addClass(new Info("Blank", {"bt.Shape"}));
  p->addClass(new Info("Plain", {"handle"}));
  p->addClass(new ShownInfo);
  p->addClass(new FootedInfo);
  p->addClass(new WrappedInfo);
  vcos::FunctionDispatcher::instance().addHandleCaller(
      [](const vxFunctionHandleData& h, int nlhs, vxArray* plhs[], int nrhs, const vxArray* prhs[]) {
        auto* mine = dynamic_cast<const TestHandle*>(&h);
        if (!mine) return false;
        vxArray* out = mine->body(nrhs, prhs);
        if (nlhs > 0)
          plhs[0] = out;
        else if (out)
          matrix::destroyArray(out);
        return true;
      });
}

COSInterfacePtr make(const char* className) {
  setUp();
  COSClass* c = COSClass::getClass(id(className));
  assert(c && "unknown test class");
  return c->createInstance(COSGetPublicClient());
}

matrix::unique_vxArray arr(const COSInterfacePtr& object) { return matrix::unique_vxArray(omCreateVCOSScalar(object)); }

matrix::unique_vxArray column(const std::vector<COSInterfacePtr>& objects, const char* className) {
  matrix::unique_vxArray a(omCreateVCOSMatrix(objects.size(), 1, className));
  for (std::size_t i = 0; i < objects.size(); ++i) omSetArrayElement(a.get(), i, objects[i]);
  return a;
}

matrix::unique_vxArray text(const char* s) { return matrix::unique_vxArray(vxCreateString(s)); }
matrix::unique_vxArray number(double d) { return matrix::unique_vxArray(vxCreateDoubleScalar(d)); }

void setValue(const COSInterfacePtr& o, const char* property, const vxArray* value) {
  vxSetProperty(arr(o).get(), 0, property, value);
}

matrix::unique_vxArray getValue(const COSInterfacePtr& o, const char* property) {
  return matrix::unique_vxArray(vxGetProperty(arr(o).get(), 0, property));
}

std::string getText(const COSInterfacePtr& o, const char* property) {
  return vxArrayToStdString(getValue(o, property).get());
}

matrix::unique_vxArray fn(Body body) {
  return matrix::unique_vxArray(vxCreateFunctionHandle(std::make_shared<TestHandle>(std::move(body))));
}

matrix::unique_vxArray call(const char* method, std::vector<const vxArray*> inputs, int nlhs) {
  vxArray* out[1] = {nullptr};
  const bool called = omCallMethod(omGetCOSClassID(inputs[0]), id(method), COSGetPublicClient(), nlhs, out,
                                   static_cast<int>(inputs.size()), inputs.data(), true);
  if (!called) throw foundation::core::except::Error("VANTEL:test:NoSuchMethod", method);
  return matrix::unique_vxArray(out[0]);
}

std::vector<COSInterface*> objectsOf(const vxArray* a) {
  std::vector<COSInterface*> out;
  for (vxSize i = 0, n = vxGetNumberOfElements(a); i < n; ++i) out.push_back(omGetArrayElement(a, i).get());
  return out;
}

std::vector<std::string> namesOf(const vxArray* a) {
  std::vector<std::string> out;
  for (vxSize i = 0, n = vxGetNumberOfElements(a); i < n; ++i) out.push_back(getText(omGetArrayElement(a, i), "Name"));
  return out;
}

}  // namespace bt
