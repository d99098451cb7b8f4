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
#include "vcos/COSInterfacePtr.h"
#include "vcos/COSInternedBase.h"

class COSClass;
class COSPropInfo;

namespace sgsh {

// A property name as the object system knows it: interned once, with the
// property it found on the last class it was used with, so that a get or
// set on objects of one class neither interns nor looks up the name again.
class PropertyKey {
 public:
  explicit PropertyKey(const std::string& name) : name_(name), id_(name.c_str()) {}
  const std::string& name() const noexcept { return name_; }
  COSID id() const noexcept { return id_; }
  // The property of exactly this name on `cls`, or null.
  COSPropInfo* find(COSClass* cls) const noexcept;

 private:
  std::string name_;
  COSID id_;
  // Weak: keeps the class's memory, so that no other class can take its
  // address while the property found on it is remembered.
  mutable COSInterfacePtr class_{nullptr, COSWeakReference};
  mutable COSPropInfo* property_ = nullptr;
};

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
  // name(args) where `objects`, one of `args` but not the first, decides the
  // class whose method runs; the inputs keep their order.
  virtual bool callMethodOf(const vxArray* objects, const std::string& name, std::span<const Value> args, int nargout,
                            std::vector<Value>& out) = 0;
  // Class.method(args) for a static method; raises VANTEL:sgsh:NoSuchMethod
  // or VANTEL:sgsh:NotStaticMethod.
  virtual void callStatic(const std::string& className, const std::string& name, std::span<const Value> args,
                          int nargout, std::vector<Value>& out) = 0;
  // The display of a variable holding objects.
  virtual std::string display(const std::string& name, const vxArray* objects) = 0;
  // Where objects are shown inside another value: a field of a struct (one
  // line) or an element of a cell (a cell of a column).
  enum class CompactForm { SingleLine, Column };
  // The class's compact representation of the objects in that place, or
  // empty when the class provides none.
  virtual std::string compactText(const vxArray* /*objects*/, CompactForm /*form*/) { return {}; }

  static ObjectBridge& current();
  // Installs a bridge; returns the previous one.
  static std::unique_ptr<ObjectBridge> install(std::unique_ptr<ObjectBridge> bridge);

  // The key of a property name, made on first use for the calling thread;
  // the parser asks for each field name it reads, so that names are
  // interned when a script is parsed rather than when it runs. Valid until
  // the next call with a name never seen (the table may start afresh), so
  // hold it only across code that runs no script.
  static const PropertyKey& keyOf(const std::string& name);
};

}  // namespace sgsh
