// The method descriptors of a wrapped class, by exact name. Copies share one
// map.
#pragma once

#include <map>
#include <memory>
#include <string>

#include "sgutils/propinfos/MethodDescriptor.h"

namespace sgutils {

class SGUTILS_API MethodSet {
 public:
  MethodSet();
  // The copy shares the map of `other`.
  MethodSet& operator=(const MethodSet& other) = default;
  MethodSet(const MethodSet& other) = default;

  bool addMethod(const MethodDescriptor& descriptor);
  MethodDescriptor findMethod(const char* name) const;

 private:
  std::shared_ptr<std::map<std::string, MethodDescriptor>> map_;
};

}  // namespace sgutils
