// Classes defined the way a library on top defines them: class infos with
// C++ data blocks, properties of every kind, methods with signatures, events,
// several superclasses, closed subclass lists and a custom meta class. They
// are registered once per process in the package "vt".
#pragma once

#include <string>
#include <vector>

#include "vcos/vcos.h"

namespace vt {

// Counts of what the class infos saw, for the tests to check.
struct Journal {
  int shapeBlocks = 0;         // Shape blocks alive
  int circleBlocks = 0;        // Circle blocks alive
  std::vector<std::string> deallocations;  // class names, in order
  int customSets = 0;          // customSetPropertyValue calls
  std::vector<std::string> customSetNames;
  std::vector<std::string> customGetNames;      // customGetPropertyValue calls
  std::vector<std::string> customReleaseNames;  // customReleasePropertyValue calls
  int finishPropertyCalls = 0;
  int finishClassCalls = 0;
  int propertiesSeenAtFinish = 0;
  bool refuseDestroy = false;  // Shape's isOkToDestroy answer is the negation
  bool failAllocation = false;  // Fragile's block cannot be made
};
Journal& journal();

struct ShapeData {
  bool visible = true;
  double width = 1.0;
  std::int32_t secret = 7;
  std::int32_t internal = 0;
  bool getVisible() const { return visible; }
  void setVisible(bool v) { visible = v; }
  double getWidth() const { return width; }
  void setWidth(double w) { width = w; }
  std::int32_t getSecret() const { return secret; }
  void setSecret(std::int32_t s) { secret = s; }
  std::int32_t getInternal() const { return internal; }
  void setInternal(std::int32_t s) { internal = s; }
};

struct NamedData {
  std::string name;
  std::string getName() const { return name; }
  void setName(std::string n) { name = std::move(n); }
};

struct CircleData {
  double radius = 1.0;
  double getRadius() const { return radius; }
  void setRadius(double r) { radius = r; }
};

// Registers the package and its classes (once).
void registerClasses();

inline COSClass* cls(const char* name) {
  registerClasses();
  return COSClass::getClass(COSID(name));
}
inline COSInterfacePtr make(const char* name) { return cls(name)->createInstance(COSGetPublicClient()); }
inline COSPropInfo* prop(const COSInterfacePtr& o, const char* name) { return o->findPropertyInfo(COSID(name)); }

template <class T>
T get(const COSInterfacePtr& o, const char* name, const COSClient* client = COSGetPublicClient()) {
  COSPropInfo* p = prop(o, name);
  COSValue v = o->getPropertyValue(client, p);
  T result = COSValueTraits<T>::fromValue(v);
  o->releasePropertyValue(client, p, v);
  return result;
}

template <class T>
void set(const COSInterfacePtr& o, const char* name, T value, const COSClient* client = COSGetPublicClient()) {
  COSPropInfo* p = prop(o, name);
  COSValue v = COSValueTraits<T>::toValue(value);
  o->setPropertyValue(client, p, v);
  if constexpr (std::is_same_v<T, std::string>) p->getDataType()->destroy(v);
}

// A listener that runs a callable.
inline COSInterfacePtr listener(std::function<void(COSInterface*, COSEventData*)> fn) {
  return COSListener::createListener(COSListenerOp::fromFunction(std::move(fn)));
}
inline COSListener* L(const COSInterfacePtr& p) { return COSListener::toListener(p); }

}  // namespace vt
