// Not installed; internal to sgshell.
// The seam where objects of the class-object system plug into the
// language: property reads and writes, method calls and display. Until an
// implementation is installed every object operation reports that objects
// are not available.
#pragma once

#include <memory>
#include <span>
#include <string>
#include <vector>

#include "sgsh/Value.h"

namespace sgsh {

class ObjectBridge {
 public:
  virtual ~ObjectBridge() = default;
  // h.Name through the public client path.
  virtual Value getProperty(const vxArray* objects, const std::string& name) = 0;
  // h.Name = value; the array keeps its identity (objects are handles).
  virtual void setProperty(const vxArray* objects, const std::string& name, const vxArray* value) = 0;
  // obj.name(args): false when the object has no method of that name.
  virtual bool callMethod(const vxArray* objects, const std::string& name, std::span<const Value> args, int nargout,
                          std::vector<Value>& out) = 0;
  // The display of a variable holding objects.
  virtual std::string display(const std::string& name, const vxArray* objects) = 0;

  static ObjectBridge& current();
  // Installs a bridge; returns the previous one.
  static std::unique_ptr<ObjectBridge> install(std::unique_ptr<ObjectBridge> bridge);
};

}  // namespace sgsh
