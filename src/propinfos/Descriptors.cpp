// The property and method descriptors and their sets.
#include <cassert>

#include "sgutils/propinfos/MethodSet.h"
#include "sgutils/propinfos/PropertySet.h"

namespace sgutils {

PropertyDescriptor::PropertyDescriptor(const char* name) : valid_(true) {
  assert(name && "a descriptor needs a name");
  name_ = name ? name : "";
}

MethodDescriptor::MethodDescriptor(const char* name) : valid_(true) {
  assert(name && "a descriptor needs a name");
  name_ = name ? name : "";
}

PropertySet::PropertySet() : map_(std::make_unique<std::map<std::string, PropertyDescriptor>>()) {}
PropertySet::~PropertySet() = default;

bool PropertySet::addProperty(const PropertyDescriptor& descriptor) {
  if (!descriptor.isValid()) return false;
  return map_->emplace(descriptor.getName(), descriptor).second;
}

PropertyDescriptor PropertySet::findProperty(const char* name) const {
  if (!name) return PropertyDescriptor();
  auto it = map_->find(name);
  return it == map_->end() ? PropertyDescriptor() : it->second;
}

MethodSet::MethodSet() : map_(std::make_shared<std::map<std::string, MethodDescriptor>>()) {}

bool MethodSet::addMethod(const MethodDescriptor& descriptor) {
  if (!descriptor.isValid()) return false;
  return map_->emplace(descriptor.getName(), descriptor).second;
}

MethodDescriptor MethodSet::findMethod(const char* name) const {
  if (!name) return MethodDescriptor();
  auto it = map_->find(name);
  return it == map_->end() ? MethodDescriptor() : it->second;
}

}  // namespace sgutils
