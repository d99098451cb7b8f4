// A property of the definition family whose value lives in a
// PropertyStorage member of the class's block. Two set behaviours exist,
// chosen by the feature "UseOldSimplePropInfoSetValueBehavior":
// - new (feature off): an equal write to an AbortSet property is dropped
//   whole (no store, no observers, no post-set); every other write stores,
//   tells the observers and runs the post-set, changed or not;
// - old (feature on): every write stores, and observers and post-set run
//   only when the value changed.
#pragma once

#include <typeinfo>

#include "sgutils/startup/GraphicsPrefs.h"
#include "sgutils/propinfos/BlockOf.h"
#include "sgutils/propinfos/PropertyStorage.h"
#include "sgutils/propinfos/SimplePropInfoBase.h"
#include "sgutils/propinfos/WebPropertyChecks.h"

namespace sgutils {

// Tells each observer of a snapshot the value, stopping once the object is
// being destroyed.
template <class Storage>
void notifyStorageObservers(const Storage& storage, const COSInterface* instance, COSValue value) {
  for (const auto& observer : storage.snapshot()) {
    (*observer)(value);
    if (instance->isBeingDestroyed()) return;
  }
}

template <class Class, class Storage>
class SimplePropInfo : public SimplePropInfoBase {
 public:
  using Member = Storage Class::*;

  SimplePropInfo(const PropertyDefinitionInterface& record, const char* name, COSDataTypePtr type,
                 const char* description, bool publicFace, boost::shared_ptr<DefaultProvider> provider,
                 Member member, bool hasSerializableTwin = false)
      : SimplePropInfoBase(record, name, std::move(type), description, publicFace, Storage::hasMode,
                           hasSerializableTwin, std::move(provider)),
        member_(member) {}

  COSValue getValue(COSInterface* instance) const override {
    const Class* block = blockOf<Class>(instance, getClassID());
    if (!block) return COSValue();
    checkWebPropertyGet(instance, getName());
    return (block->*member_).word();
  }

  void setValue(COSInterface* instance, COSValue value) override {
    if (Class* block = blockOf<Class>(instance, getClassID())) setIn(block, instance, value);
  }

  // Only for this class itself: the serializable twin reads and writes
  // otherwise.
  bool copiesBetweenBlocks() const noexcept override { return typeid(*this) == typeid(SimplePropInfo); }
  void copyBetweenBlocks(COSInterface* source, const SGReference* from, SGReference* to, COSInterface* target) override {
    const Class& sourceBlock = *static_cast<const Class*>(from);
    Class* block = static_cast<Class*>(to);
    checkWebPropertyGet(source, getName());
    const COSValue value = (sourceBlock.*member_).word();
    checkWebPropertyGet(target, getName());
    if (type()->isEqual((block->*member_).word(), value)) return;
    target->checkValid();
    setIn(block, target, value);
  }

  void setIn(Class* block, COSInterface* instance, COSValue value) {
    checkWebPropertySet(instance, getName(), value);
    Storage& storage = block->*member_;
    const COSDataType& t = *type();
    if (!useOldSimplePropInfoSetValueBehavior()) {
      if (isAbortSet() && t.isEqual(storage.word(), value)) return;
      storage.assign(value, t);
      afterStore(block, storage, instance);
    } else {
      const bool same = t.isEqual(storage.word(), value);
      storage.assign(value, t);
      if (!same) afterStore(block, storage, instance);
    }
  }

  void releaseValue(COSInterface*, COSValue) const override {}

  void setModeManual(COSInterface* instance) override {
    if constexpr (Storage::hasMode) {
      if (!publicFace()) return;
      if (Class* block = blockOf<Class>(instance, getClassID())) (block->*member_).setMode(1);
    } else {
      (void)instance;
    }
  }

  void getVLArrays(const COSClient* client, COSInterface* instance, std::vector<vxArray*>& out) const override {
    const Class* block = blockOf<Class>(instance, getClassID());
    if (block && Storage::Traits::holdsArrays) {
      if (auto* a = (block->*member_).word().template asPointer<vxArray>()) out.push_back(a);
      return;
    }
    COSPropInfo::getVLArrays(client, instance, out);
  }

 protected:
  Member member() const noexcept { return member_; }

 private:
  void afterStore(Class* block, const Storage& storage, COSInterface* instance) {
    if (storage.hasObservers()) notifyStorageObservers(storage, instance, storage.word());
    if (!instance->isBeingDestroyed())
      block->doPostSet(instance, this, limitsDirty(), objectDirty());
  }

  Member member_;
};

}  // namespace sgutils
