// A definition-family property whose value is held nowhere: get and set go
// to functions the class gives at construction (a getter, a setter, an
// optional setter that is given the client, an optional release). An empty
// getter or setter raises boost::bad_function_call.
#pragma once

#include <boost/function.hpp>

#include "sgutils/propinfos/BlockOf.h"
#include "sgutils/propinfos/SimplePropInfo.h"
#include "vcos/COSClient.h"

namespace sgutils {

template <class Class, class Storage>
class StubPI : public SimplePropInfoBase {
 public:
  using Getter = boost::function<COSValue(Class*, COSPropInfo*, const COSClient*, COSInterface*)>;
  using Setter = boost::function<void(Class*, COSPropInfo*, const COSClient*, COSInterface*, COSValue)>;
  using Release = boost::function<void(Class*, COSInterface*, COSValue)>;
  using Member = Storage Class::*;

  StubPI(const PropertyDefinitionInterface& record, const char* name, COSDataTypePtr type, const char* description,
         boost::shared_ptr<DefaultProvider> provider, Getter getter, Setter setter, Setter clientSetter = Setter(),
         Release release = Release(), Member observed = nullptr)
      : SimplePropInfoBase(record, name, std::move(type), description, /*publicFace=*/true, /*hasMode=*/false,
                           false, std::move(provider)),
        getter_(std::move(getter)),
        setter_(std::move(setter)),
        clientSetter_(std::move(clientSetter)),
        release_(std::move(release)),
        observed_(observed) {}

  COSValue getValue(COSInterface* instance) const override {
    Class* block = blockOf<Class>(instance, getClassID());
    if (!block) return COSValue();
    return getter_(block, const_cast<StubPI*>(this), nullptr, instance);
  }

  void setValue(COSInterface* instance, COSValue value) override {
    Class* block = blockOf<Class>(instance, getClassID());
    if (!block) return;
    checkWebPropertySet(instance, getName(), value);
    if (clientSetter_) clientSetter_(block, this, COSGetPublicClient(), instance, value);
    setter_(block, this, nullptr, instance, value);
    if (instance->isBeingDestroyed()) return;
    if (observed_ && (block->*observed_).hasObservers()) {
      const COSValue now = getter_(block, this, nullptr, instance);
      notifyStorageObservers(block->*observed_, instance, now);
      releaseValue(instance, now);
    }
    if (!instance->isBeingDestroyed()) block->doPostSet(instance, this, limitsDirty(), objectDirty());
  }

  void releaseValue(COSInterface* instance, COSValue value) const override {
    Class* block = blockOf<Class>(instance, getClassID());
    if (block && release_) release_(block, instance, value);
  }

  void setModeManual(COSInterface*) override {}

 private:
  Getter getter_;
  Setter setter_;
  Setter clientSetter_;
  Release release_;
  Member observed_;
};

}  // namespace sgutils
