// The class infos of SupportClasses.h.
#include "src/classinfo/SupportClasses.h"

#include "sgutils/classinfo/GraphicsDisplayClassInfo.h"
#include "sgutils/classinfo/SGHandleClassInfo.h"
#include "src/startup/DatatypesBridge.h"
#include "vcos/AbstractClassInfo.h"
#include "vcos/COSClass.h"
#include "vcos/COSPackage.h"

namespace sgutils::support {
namespace {

// A graphics class below "vantel.graphics.Graphics" with no data of its own.
class GraphicsSubclassCI : public SGHandleClassInfo {
 public:
  void initializeClass(COSClass* cls, const COSClient*) override {
    setClient(cls);
    cls->addSuperclass(COSID("vantel.graphics.Graphics"), true, 0, 1);
  }
  void* allocateInstance(COSInterface*) override { return nullptr; }
  bool willAllocateData() const override { return false; }
};

class GraphicsTestBaseCI final : public GraphicsSubclassCI {
 public:
  const char* getName() const override { return "GraphicsTestBase"; }
  const char* getDescription() const override { return "The baseclass of graphics test classes"; }
};

// Not on the closed list of "vantel.graphics.Graphics": a handle root of its
// own with the answers of a graphics class.
class SGJavaVisibleMixinTestBaseCI final : public SGHandleClassInfo {
 public:
  const char* getName() const override { return "SGJavaVisibleMixinTestBase"; }
  const char* getDescription() const override { return "The baseclass of Java-visible mixin tests"; }
  void initializeClass(COSClass* cls, const COSClient*) override { setClient(cls); }
  void* allocateInstance(COSInterface*) override { return nullptr; }
  bool willAllocateData() const override { return false; }
};

// Derives from the generated class "vantel.graphics.internal.Legacy" once
// that class is registered.
class LegacyTestBaseCI final : public SGHandleClassInfo {
 public:
  const char* getName() const override { return "LegacyTestBase"; }
  const char* getDescription() const override { return "The baseclass of legacy pattern tests"; }
  void initializeClass(COSClass* cls, const COSClient*) override {
    setClient(cls);
    static const COSID legacy("vantel.graphics.internal.Legacy");
    if (COSClass::getClass(legacy)) cls->addSuperclass(legacy, true, 0, 1);
  }
  void* allocateInstance(COSInterface*) override { return nullptr; }
  bool willAllocateData() const override { return false; }
};

class DefaultFactoryPropHandlerCI final : public AbstractClassInfo {
 public:
  const char* getName() const override { return "DefaultFactoryPropHandler"; }
  bool isHidden() const override { return true; }
};

const char* noDescription() { return "no_description"; }
const char* noDetails() { return "no details"; }

}  // namespace

COSClassInfo* newGraphicsDisplayClassInfo() { return new sgutils::GraphicsDisplayClassInfo; }
COSClassInfo* newGraphicsTestBaseCI() { return new GraphicsTestBaseCI; }
COSClassInfo* newSGJavaVisibleMixinTestBaseCI() { return new SGJavaVisibleMixinTestBaseCI; }
COSClassInfo* newLegacyTestBaseCI() { return new LegacyTestBaseCI; }

void ensureDefaultFactoryPropHandler() {
  COSPackage* package = bridge::registerNamespace("vantel.mixin.internal", &noDescription, &noDetails);
  COSInterfacePtr found;
  package->findClass(found, "DefaultFactoryPropHandler");
  if (!found) package->addClass(new DefaultFactoryPropHandlerCI, 0, 2);
}

}  // namespace sgutils::support
