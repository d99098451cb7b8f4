// Not installed; internal to sgshell.
// The seam where objects of the class-object system plug into the
// language: construction by class name, property reads and writes, method
// calls and display. The one in use talks to the platform's class-object
// system; tests may install another.
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
  // True when a class of that full name exists.
  virtual bool isClass(const std::string& name) = 0;
  // The class's constructor with name-value (or other) inputs.
  virtual Value construct(const std::string& name, std::span<const Value> args) = 0;
  // True when the objects' class has a public property of that name.
  virtual bool hasProperty(const vxArray* objects, const std::string& name) = 0;
  // h.Name through the public client path.
  virtual Value getProperty(const vxArray* objects, const std::string& name) = 0;
  // h.Name = value; the array keeps its identity (objects are handles).
  virtual void setProperty(vxArray* objects, const std::string& name, const vxArray* value) = 0;
  // obj.name(args): false when the object has no method of that name.
  virtual bool callMethod(const vxArray* objects, const std::string& name, std::span<const Value> args, int nargout,
                          std::vector<Value>& out) = 0;
  // Class.method(args) for a static method; raises VANTEL:sgsh:NoSuchMethod
  // or VANTEL:sgsh:NotStaticMethod.
  virtual void callStatic(const std::string& className, const std::string& name, std::span<const Value> args,
                          int nargout, std::vector<Value>& out) = 0;
  // The display of a variable holding objects.
  virtual std::string display(const std::string& name, const vxArray* objects) = 0;

  static ObjectBridge& current();
  // Installs a bridge; returns the previous one.
  static std::unique_ptr<ObjectBridge> install(std::unique_ptr<ObjectBridge> bridge);
};

}  // namespace sgsh
