// The property descriptors of a wrapped class, by exact name.
#pragma once

#include <map>
#include <memory>
#include <string>

#include "sgutils/propinfos/PropertyDescriptor.h"

namespace sgutils {

class SGUTILS_API PropertySet {
 public:
  PropertySet();
  ~PropertySet();
  PropertySet(const PropertySet&) = delete;
  PropertySet& operator=(const PropertySet&) = delete;

  // False for an invalid descriptor, and for a name present already (the
  // earlier entry stays).
  bool addProperty(const PropertyDescriptor& descriptor);
  // A copy of the entry, or an invalid descriptor.
  PropertyDescriptor findProperty(const char* name) const;

 private:
  std::unique_ptr<std::map<std::string, PropertyDescriptor>> map_;
};

}  // namespace sgutils
