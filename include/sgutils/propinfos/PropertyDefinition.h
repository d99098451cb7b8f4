// The record of one definition-family property. With a moded storage it
// makes three infos, in this order: `XMode` (Mode_PI, type AutoManual),
// `X_I` (internal face) and `X` (public face), the last two sharing one
// factory-value provider; without a mode, the public face alone. Each info is
// added to the class as it is made; the record keeps a counted reference.
// A storage with a serializable twin adds a fourth info last,
// "Serializable<name>", showing the public face.
#pragma once

#include <boost/make_shared.hpp>
#include <vector>

#include "sgutils/propinfos/DataTypeDefaultProvider.h"
#include "sgutils/propinfos/Mode_PI.h"
#include "sgutils/propinfos/SerializablePropInfo.h"
#include "sgutils/propinfos/SimplePropInfo.h"
#include "sgutils/propinfos/StubPI.h"
#include "vcos/COSClass.h"
#include "vcos/COSTypeRepository.h"

namespace sgutils {

// The type name a storage of T takes when the record names none.
template <class T>
constexpr const char* defaultStorageTypeName() noexcept {
  if constexpr (std::is_same_v<T, std::u16string>) return "unicodeString";
  if constexpr (std::is_same_v<T, vxArray*>) return "any";
  return "";
}

namespace detail {
// The mode type, "vantel.graphics.datatype.AutoManual".
SGUTILS_API COSDataTypePtr autoManualType();
// The flag word of the mode face of a record.
SGUTILS_API unsigned modeFaceFlags(const PropertyDefinitionInterface& record) noexcept;
}  // namespace detail

template <class Class, class Storage>
class PropertyDefinition final : public PropertyDefinitionInterface {
 public:
  using Member = Storage Class::*;

  PropertyDefinition(COSID classId, const char* name, Member member, unsigned attributes,
                     const char* typeName = defaultStorageTypeName<typename Storage::value_type>())
      : PropertyDefinitionInterface(classId, name, attributes),
        member_(member),
        typeName_(typeName),
        modeName_(getName() + "Mode"),
        internalName_(getName() + "_I"),
        description_(getName() + " PropInfo"),
        modeDescription_(getName() + "Mode PropInfo"),
        internalDescription_(getName() + "_I PropInfo"),
        twinName_("Serializable" + getName()),
        twinDescription_(twinName_ + " PropInfo") {}

  void addTo(COSClass* cls) override {
    COSDataTypePtr type(typeName_.c_str());
    auto provider = boost::make_shared<DataTypeDefaultProvider>(type);
    constexpr bool twin = Storage::hasSerializableTwin;
    if constexpr (Storage::hasMode) {
      add(cls, new Mode_PI<Class, Storage>(*this, modeName_.c_str(), detail::autoManualType(),
                                           modeDescription_.c_str(), detail::modeFaceFlags(*this), member_));
      add(cls, new SimplePropInfo<Class, Storage>(*this, internalName_.c_str(), type, internalDescription_.c_str(),
                                                  /*publicFace=*/false, provider, member_, twin));
    }
    auto* publicFace = new SimplePropInfo<Class, Storage>(*this, getName().c_str(), type, description_.c_str(),
                                                          /*publicFace=*/true, provider, member_, twin);
    add(cls, publicFace);
    if constexpr (twin) {
      using Twin = std::conditional_t<Storage::hasMode, SerializablePropInfoManualMode<Class, Storage>,
                                      SerializablePropInfo<Class, Storage>>;
      add(cls, new Twin(*this, twinName_.c_str(), type, twinDescription_.c_str(), provider, member_, publicFace));
    }
  }

  const std::vector<COSInterfacePtr>& infos() const noexcept { return infos_; }

 private:
  void add(COSClass* cls, COSPropInfo* info) {
    infos_.emplace_back(info);
    cls->addProperty(info);
  }

  Member member_;
  std::string typeName_;
  std::string modeName_, internalName_, description_, modeDescription_, internalDescription_;
  std::string twinName_, twinDescription_;
  std::vector<COSInterfacePtr> infos_;
};

// The record of a property held nowhere (StubPI): one public face.
template <class Class, class Storage>
class StubPropertyDefinition final : public PropertyDefinitionInterface {
 public:
  using PI = StubPI<Class, Storage>;

  StubPropertyDefinition(COSID classId, const char* name, unsigned attributes, const char* typeName,
                         typename PI::Getter getter, typename PI::Setter setter,
                         typename PI::Setter clientSetter = {}, typename PI::Release release = {},
                         typename PI::Member observed = nullptr)
      : PropertyDefinitionInterface(classId, name, attributes),
        typeName_(typeName),
        description_(getName() + " PropInfo"),
        getter_(std::move(getter)),
        setter_(std::move(setter)),
        clientSetter_(std::move(clientSetter)),
        release_(std::move(release)),
        observed_(observed) {}

  void addTo(COSClass* cls) override {
    COSDataTypePtr type(typeName_.c_str());
    auto* info = new PI(*this, getName().c_str(), type, description_.c_str(),
                        boost::make_shared<DataTypeDefaultProvider>(type), getter_, setter_, clientSetter_, release_,
                        observed_);
    info_ = COSInterfacePtr(info);
    cls->addProperty(info);
  }

 private:
  std::string typeName_, description_;
  typename PI::Getter getter_;
  typename PI::Setter setter_, clientSetter_;
  typename PI::Release release_;
  typename PI::Member observed_;
  COSInterfacePtr info_;
};

}  // namespace sgutils
