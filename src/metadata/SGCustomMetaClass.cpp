// The metaclass "GraphicsMetaClass": once a class has its properties, it
// turns on the custom set path for those whose attributes ask for it; the
// custom set path turns a generated property's mode manual, applies the
// InternalComponent rule, stores, and marks the object dirty by the Affects
// attributes (unless AbortSet finds the value unchanged).
#include <string>

#include "foundation/core/except/Error.h"
#include "foundation/log/LogRecord.h"
#include "sgutils/classinfo/finalizeIncomingObjectMI.h"
#include "sgutils/classinfo/loadobjMI.h"
#include "sgutils/metadata/DirtyFlags.h"
#include "sgutils/metadata/SGCustomMetaEvent.h"
#include "sgutils/metadata/SGCustomMetaProperty.h"
#include "sgutils/lifecycle/SGHandle.h"
#include "sgutils/propinfos/PropInfoBase.h"
#include "src/metadata/SGCustomMetaClasses.h"
#include "vcos/BorrowedPropertyValue.h"
#include "vcos/COSClass.h"
#include "vcos/COSDataType.h"
#include "vcos/COSEventInfo.h"
#include "vcos/COSGenericClass.h"
#include "vcos/COSIterator.h"
#include "vcos/COSMethodInfo.h"
#include "vcos/ObjectArray.h"
#include "vcos/ObjectCalls.h"
#include "vcos/ObjectSerialization.h"
#include "vcos/VxProperty.h"
#include "vx/vx.h"

namespace sgutils::metadata {

namespace {

using foundation::log::kDebug;

// The class-creation passes and the InternalComponent rule.
foundation::log::Logger& updateLog() {
  static foundation::log::Logger& lg = foundation::log::channel("sgcustommetadata::update");
  return lg;
}
// AbortSet and the dirty flags of a set.
foundation::log::Logger& customSetLog() {
  static foundation::log::Logger& lg = foundation::log::channel("sgcustommetadata::customset");
  return lg;
}

struct Ids {
  COSID chartBaseProxy{"vantel.graphics.chart.internal.ChartBaseProxy"};
  COSID componentContainer{"vantel.ui.componentcontainer.ComponentContainer"};
  COSID chartContainerMixin{"vantel.graphics.chartcontainer.mixin.Mixin"};
  COSID componentContainerMixin{"vantel.ui.componentcontainer.mixin.Mixin"};
  COSID customElementSerialization{object_serialization::CUSTOM_ELEMENT_SERIALIZATION_MIXIN_NAME};
  COSID nodeParent{"NodeParent"};
  COSID addNode{"addNode"};
  COSID replaceChild{"replaceChild"};
};
const Ids& ids() {
  static const Ids i;
  return i;
}

bool isContainerFamily(const COSClass* cls) {
  const Ids& i = ids();
  return cls->isSubclassOf(i.chartBaseProxy) || cls->isSubclassOf(i.componentContainer) ||
         cls->isSubclassOf(i.chartContainerMixin) || cls->isSubclassOf(i.componentContainerMixin);
}

const char* classNameOf(const COSInterface* object) {
  return object && object->getClass() ? object->getClass()->getName() : "";
}

const char* text(bool b) { return b ? "true" : "false"; }

using unique_array = matrix::unique_vxArray;

// The InternalComponent rule: a component that replaces another is hooked
// into the tree in its place, or added below the parent when there was none.
void applyInternalComponentRule(COSInterface* object, COSPropInfo* property, COSValue value) {
  const BorrowedPropertyValue borrowed = BorrowedPropertyValue::readDirect(object, property);
  const COSValue oldWord = borrowed.get();
  const auto* oldValue = oldWord.asPointer<const vxArray>();
  const bool oldEmpty = !oldValue || vxIsEmpty(oldValue);
  FOUNDATION_LOG(updateLog(), kDebug) << "InternalComponent set on prop: " << property->getName()
                                      << " current value: "
                                      << (oldEmpty ? "nullptr" : vxGetClassName(oldValue));

  unique_array parentArray(oldEmpty ? omCreateVCOSScalar(COSInterfacePtr(object))
                                    : vxGetProperty(oldValue, 0, "NodeParent"));
  const bool parentEmpty = !parentArray || vxIsEmpty(parentArray.get());
  COSInterfacePtr parent = parentEmpty ? COSInterfacePtr() : omGetArrayElement(parentArray.get(), 0);

  const auto* newValue = value.asPointer<const vxArray>();
  if (!newValue || vxIsEmpty(newValue)) throw foundation::core::except::Error("VANTEL:class:InvalidHandle");
  unique_array newParentArray(vxGetProperty(newValue, 0, "NodeParent"));
  const bool newParentEmpty = !newParentArray || vxIsEmpty(newParentArray.get());

  const bool useAddNode = oldEmpty && newParentEmpty && !parentEmpty;
  const bool useReplaceChild = !oldEmpty && !parentEmpty;
  FOUNDATION_LOG(updateLog(), kDebug) << "useAddNode: " << text(useAddNode)
                                      << " useReplaceChild: " << text(useReplaceChild);
  if (!useAddNode && !useReplaceChild) return;

  COSClass* parentClass = parent ? parent->getClass() : nullptr;
  if (!parentClass) return;
  SGHandle* parentHandle = SGHandle::fromObject(parent.get());
  const COSClient* client = parentHandle ? parentHandle->getPrivateClient() : parentClass->getPrivateClient();
  if (!client) client = parentClass->getPrivateClient();
  if (useAddNode) {
    FOUNDATION_LOG(updateLog(), kDebug) << "addnode: parent: " << parentClass->getName()
                                        << " child: " << vxGetClassName(newValue);
    const vxArray* inputs[] = {parentArray.get(), newValue};
    if (!omCallMethod(parentClass->getID(), ids().addNode, client, 0, nullptr, 2, inputs, false))
      throw foundation::core::except::Error("VANTEL:sgutils:NoMethodFound", parentClass->getName(), "addNode");
    return;
  }
  if (!parentClass->findMethod(ids().replaceChild))
    throw foundation::core::except::Error("VANTEL:sgutils:NoMethodFound", parentClass->getName(), "replaceChild");
  FOUNDATION_LOG(updateLog(), kDebug) << "replacechild: parent: " << parentClass->getName()
                                      << " child: " << vxGetClassName(newValue);
  const vxArray* inputs[] = {parentArray.get(), oldValue, newValue};
  omCallMethod(parentClass->getID(), ids().replaceChild, client, 0, nullptr, 3, inputs, false);
}

}  // namespace

void SGCustomMetaClass::initializeClass(COSClass* cls, const COSClient*) { cls->addSuperclass(COSID("meta.class")); }

COSID SGCustomMetaClass::getMetaPropertyClassID() const { return SGCustomMetaProperty::classID(); }
COSID SGCustomMetaClass::getMetaEventClassID() const { return SGCustomMetaEvent::classID(); }

void SGCustomMetaClass::finishPropertyCreation(COSClass* cls) {
  // A component container runs its constructor at load. An abstract class is
  // never constructed and is skipped; only a class whose qualities are data
  // (a COSGenericClass) can be changed here.
  COSClassInfo* info = cls->getClassInfo();
  if (!cls->isAbstract() && cls->isSubclassOf(ids().componentContainer) && info && !info->isConstructedOnLoad()) {
    if (auto* generic = dynamic_cast<COSGenericClass*>(info)) {
      generic->setConstructedOnLoad(true);
      FOUNDATION_LOG(updateLog(), kDebug) << "setConstructedOnLoad to True for ComponentContainer cls: "
                                          << cls->getName();
    }
  }
  const bool containerFamily = isContainerFamily(cls);
  const std::size_t n = cls->getPropertyCount();
  for (std::size_t k = 0; k < n; ++k) {
    COSPropInfo* property = cls->getPropertyAt(k);
    SGCustomMetaProperty* meta = SGCustomMetaProperty::of(property);
    if (!meta) continue;
    FOUNDATION_LOG(updateLog(), kDebug) << "All PIV cls: " << cls->getName() << " prop: " << property->getName();
    if (meta->affects != 0 || meta->internalComponent) {
      FOUNDATION_LOG(updateLog(), kDebug) << "turnOnCustomSet: cls: " << cls->getName()
                                          << " prop: " << property->getName();
      turnOnCustomSet(cls, property->getID());
    } else if (meta->propInfoBase() && property->isDependent()) {
      // The public face of a generated triple: its mode turns manual on the
      // custom set path, so a public write must take that path.
      turnOnCustomSet(cls, property->getID());
    }
    if (!containerFamily) {
      meta->usedInUpdate = false;
      continue;
    }
    if (property->getDefiningClass() != cls || !meta->usedInUpdate) {
      meta->usedInUpdate = false;
      FOUNDATION_LOG(updateLog(), kDebug) << "PIVC CAF NOT turnOnCustomSet: cls: " << cls->getName()
                                          << " prop: " << property->getName();
      continue;
    }
    turnOnCustomSet(cls, property->getID());
    meta->usedInUpdate = true;
    FOUNDATION_LOG(updateLog(), kDebug) << "PIVC CAF turnOnCustomSet: cls: " << cls->getName()
                                        << " prop: " << property->getName();
  }
}

// "loadobj" of the class, and "finalizeIncomingObject" for a class that the
// serializer restores element by element. One of the class's own, or one it
// inherits that is not the metaclass's, is kept: a class that loads its own
// way overrides the step.
void SGCustomMetaClass::addLoadMethods(COSClass* cls) {
  static const COSID loadobj("loadobj"), finalize("finalizeIncomingObject");
  const COSMethodInfo* own = cls->findMethod(loadobj);
  if (!own || dynamic_cast<const loadobjBaseMI*>(own)) cls->addMethod(new loadobjMI(cls->getID()));
  if (!cls->isSubclassOf(ids().customElementSerialization)) return;
  const COSMethodInfo* ownFinalize = cls->findMethod(finalize);
  if (!ownFinalize || dynamic_cast<const loadobjBaseMI*>(ownFinalize))
    cls->addMethod(new finalizeIncomingObjectMI(cls->getID()));
}

void SGCustomMetaClass::finishClassCreation(COSClass* cls) {
  addLoadMethods(cls);
  // The generated callback properties of events come with the generated
  // callbacks. What is here already is the walk over the events, so that a
  // flagged event is reported.
  const Ids& i = ids();
  if (!cls->isSubclassOf(i.chartBaseProxy) && !cls->isSubclassOf(i.componentContainer)) return;
  if (!updateLog().isOn(kDebug)) return;
  COSIterator events;
  cls->getEvents(events);
  while (events.hasMoreElements()) {
    COSInterfacePtr event = events.nextElement();
    const SGCustomMetaEvent* meta = SGCustomMetaEvent::of(event.get());
    if (!meta) continue;
    FOUNDATION_LOG(updateLog(), kDebug) << "Looping over cls: " << cls->getName() << " event: "
                                        << static_cast<COSEventInfo*>(event.get())->getName()
                                        << " IsCallback: " << text(meta->hasCallbackProperty);
  }
}

void SGCustomMetaClass::customSetPropertyValue(COSInterface* object, COSPropInfo* property, COSValue value) {
  SGCustomMetaProperty* meta = SGCustomMetaProperty::of(property);
  PropInfoBase* propInfoBase =
      meta ? meta->propInfoBase() : dynamic_cast<PropInfoBase*>(property);
  // A public write of a generated property makes its mode manual first.
  if (propInfoBase) propInfoBase->setModeManual(object);

  if (meta && !propInfoBase && meta->internalComponent) applyInternalComponentRule(object, property, value);

  bool shouldMarkDirty = true;
  if (meta && meta->usedInUpdate && property->isAbortSet()) {
    const BorrowedPropertyValue old = BorrowedPropertyValue::readDirect(object, property);
    shouldMarkDirty = !property->getDataType()->isEqual(old.get(), value);
    FOUNDATION_LOG(customSetLog(), kDebug) << "AbortSet MarkDirty Class: " << classNameOf(object)
                                           << " Property: " << property->getName();
  }

  COSCustomMetaClass::setPropertyValue(object, property, value);

  if (propInfoBase || !meta) return;
  SGHandle* handle = SGHandle::fromObject(object);
  if (!handle) return;

  DirtyFlags flags;
  flags.object = (meta->affects & kAffectsObject) != 0;
  flags.limits = (meta->affects & kAffectsDataLimits) != 0;
  flags.legend = (meta->affects & kAffectsLegend) != 0;
  // The legend alone does not make anything dirty.
  if (!flags.object && !flags.limits) flags.legend = false;

  const Ids& i = ids();
  COSClass* cls = object->getClass();
  const bool componentContainer = cls->isSubclassOf(i.componentContainer);
  if ((componentContainer || cls->isSubclassOf(i.chartBaseProxy)) && cls->isSubclassOf(property->getDefiningClass()))
    flags.structUpdate = meta->usedInUpdate;

  FOUNDATION_LOG(customSetLog(), kDebug) << "Update Flags - Class: " << cls->getName()
                                         << " Property: " << property->getName() << ",  DirtyFlags: "
                                         << (flags.limits ? " limits" : "") << (flags.object ? " object" : "")
                                         << (flags.legend ? " legend" : "")
                                         << (flags.structUpdate ? " structUpdate" : "");
  if (!flags.limits && !flags.object && !flags.legend && !flags.structUpdate) return;
  FOUNDATION_LOG(customSetLog(), kDebug) << "doMarkDirty: " << text(shouldMarkDirty);
  if (!shouldMarkDirty) return;
  // The object is held for the call: a post-set may drop other references.
  const COSInterfacePtr self(object);
  if (!componentContainer || !flags.structUpdate)
    handle->doPostSet(self.get(), property, flags);
  else
    handle->doPostSet(self.get(), property, false, flags.structUpdate);
}


}  // namespace sgutils::metadata
