// Not installed; internal to sgutils.
// The class infos of the three graphics metadata classes: the metaclass
// "GraphicsMetaClass" (the custom set path and the passes that finish a
// class), and "GraphicsMetaProperty" and "GraphicsMetaEvent", whose instances
// carry the graphics attributes of properties and events.
#pragma once

#include "vcos/COSCustomMetaClass.h"
#include "vcos/COSCustomMetaEventInfo.h"
#include "vcos/COSCustomMetaPropertyInfo.h"

namespace sgutils::metadata {

class SGCustomMetaClass final : public COSCustomMetaClass {
 public:
  const char* getName() const override { return "GraphicsMetaClass"; }
  void initializeClass(COSClass* cls, const COSClient* client) override;
  COSID getMetaPropertyClassID() const override;
  COSID getMetaEventClassID() const override;
  void finishPropertyCreation(COSClass* cls) override;
  void finishClassCreation(COSClass* cls) override;
  void customSetPropertyValue(COSInterface* object, COSPropInfo* property, COSValue value) override;

 private:
  static void addLoadMethods(COSClass* cls);
};

class SGCustomMetaPropInfo final : public COSCustomMetaPropertyInfo {
 public:
  const char* getName() const override { return "GraphicsMetaProperty"; }
  void initializeClass(COSClass* cls, const COSClient* client) override;
  void* allocateInstance(COSInterface* instance) override;
  void deallocateInstance(COSInterface* instance, void* data) override;
};

class SGCustomMetaEventInfo final : public COSCustomMetaEventInfo {
 public:
  const char* getName() const override { return "GraphicsMetaEvent"; }
  void initializeClass(COSClass* cls, const COSClient* client) override;
  void* allocateInstance(COSInterface* instance) override;
  void deallocateInstance(COSInterface* instance, void* data) override;
};

}  // namespace sgutils::metadata
