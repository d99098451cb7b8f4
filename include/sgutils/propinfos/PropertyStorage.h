// A member of a class's data block that keeps one property value for the
// definition family of properties (SimplePropInfo and kin): the value, an
// observer set made on first use, and, with HasMode, the mode byte.
#pragma once

#include <functional>
#include <memory>
#include <vector>

#include "sgutils/propinfos/StorageTraits.h"

namespace sgutils {

struct HasMode {};
struct NoMode {};
struct NoSerializableStorage {};
// The property has a serializable twin, "Serializable<name>", that a file
// keeps in place of the property (SerializablePropInfo).
struct SerializableStorage {};

// Told of every stored value of a property, with the value's word.
using PropertyObserver = std::function<void(COSValue)>;
using PropertyObserverSet = std::vector<std::shared_ptr<PropertyObserver>>;

template <class T, class ModeTag = HasMode, class SerializableTag = NoSerializableStorage>
class PropertyStorage {
 public:
  using value_type = T;
  using Traits = StorageTraits<T>;
  static constexpr bool hasMode = std::is_same_v<ModeTag, HasMode>;
  static constexpr bool hasSerializableTwin = std::is_same_v<SerializableTag, SerializableStorage>;

  PropertyStorage() = default;
  explicit PropertyStorage(T initial) : value_(std::move(initial)) {}
  PropertyStorage(const PropertyStorage&) = delete;
  PropertyStorage& operator=(const PropertyStorage&) = delete;

  const T& get() const noexcept { return value_; }
  COSValue word() const noexcept { return Traits::word(value_); }
  void assign(COSValue w, const COSDataType& type) { Traits::assign(value_, w, type); }
  // For storages that own what they hold (arrays); the block's destructor
  // calls this with the property's type.
  void destroy(const COSDataType& type) noexcept { Traits::destroy(value_, type); }

  unsigned char mode() const noexcept { return mode_; }
  void setMode(unsigned char m) noexcept { mode_ = m; }

  bool hasObservers() const noexcept { return observers_ && !observers_->empty(); }
  void addObserver(std::shared_ptr<PropertyObserver> observer) {
    if (!observers_) observers_ = std::make_unique<PropertyObserverSet>();
    observers_->push_back(std::move(observer));
  }
  void removeObserver(const std::shared_ptr<PropertyObserver>& observer) {
    if (observers_) std::erase(*observers_, observer);
  }
  // A copy of the set, so that an observer may add or remove observers.
  PropertyObserverSet snapshot() const { return observers_ ? *observers_ : PropertyObserverSet(); }

 private:
  T value_{};
  std::unique_ptr<PropertyObserverSet> observers_;
  // Auto (0) until a public set; unused without a mode.
  unsigned char mode_ = 0;
};

}  // namespace sgutils
