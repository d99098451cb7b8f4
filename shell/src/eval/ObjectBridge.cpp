// The object bridge over the platform's class-object system: constructors,
// properties through the public client path, method dispatch on the
// object's class, and display through the class's display method.
#include "eval/ObjectBridge.h"

#include <unordered_map>

#include <foundation/core/except/Error.h>
#include <foundation/io/ArrayNameScope.h>
#include <vcos/COSClass.h>
#include <vcos/COSClient.h>
#include <vcos/COSMethodInfo.h>
#include <vcos/ObjectArray.h>
#include <vcos/ObjectCalls.h>
#include <vx/vx.h>

#include "eval/ArrayOps.h"
#include "sgsh/Output.h"
#include "vcos/VxProperty.h"

namespace sgsh {

using foundation::core::except::Error;

COSPropInfo* PropertyKey::find(COSClass* cls) const noexcept {
  if (!cls) return nullptr;
  if (cls != class_.get()) {
    // Only exact hits are kept: they are what an instance's own look-up
    // finds first, whatever dynamic properties the instance has.
    COSPropInfo* found = cls->findPropertyExact(id_);
    if (!found) return nullptr;
    class_ = cls;
    property_ = found;
  }
  return property_;
}

namespace {

// The element's class, or null when the array holds no live first object.
COSClass* classAt(const vxArray* objects, vxSize index) {
  if (!objects || !vxIsObject(objects) || index >= vxGetNumberOfElements(objects)) return nullptr;
  const COSInterface* o = vxGetObjectElements(objects)[index].get();
  return o && !o->isDestroyed() ? o->getClass() : nullptr;
}

// Raises VANTEL:vcos:InvalidHandle when any of the objects was deleted.
void requireLive(const vxArray* objects) {
  const vxSize n = vxGetNumberOfElements(objects);
  for (vxSize i = 0; i < n; ++i)
    if (!omGetLiveArrayElement(objects, i)) throw Error("VANTEL:vcos:InvalidHandle");
}

// Methods that answer for deleted objects too: whether they are valid,
// deleting again, identity comparison and display.
bool acceptsDeleted(const std::string& method) {
  return method == "isvalid" || method == "delete" || method == "eq" || method == "ne" || method == "display" ||
         method == "double" ||
         method == "disp";
}

class VcosBridge final : public ObjectBridge {
 public:
  bool isClass(const std::string& name) override { return COSClass::getClass(COSID(name.c_str())) != nullptr; }

  Value construct(const std::string& name, std::span<const Value> args) override {
    COSClass* cls = COSClass::getClass(COSID(name.c_str()));
    const std::string shortName = name.substr(name.rfind('.') + 1);
    if (cls && !cls->findMethod(COSID(shortName.c_str()))) {
      // No constructor of its own: the inputs are name-value pairs, set in
      // order through the public client path after the object is made.
      if (args.size() % 2) throw Error("VANTEL:sgsh:NameValuePairs", name);
      Value object(omConstructObjectWithClient(name.c_str(), 0, nullptr, COSGetPublicClient()));
      for (std::size_t i = 0; i < args.size(); i += 2)
        vxSetProperty(object.mut(), 0, ops::nameOf(args[i].get(), "property name").c_str(), args[i + 1].get());
      return object;
    }
    std::vector<const vxArray*> in;
    for (const Value& v : args) in.push_back(v.get());
    return Value(omConstructObjectWithClient(name.c_str(), static_cast<int>(in.size()), in.data(), COSGetPublicClient()));
  }

  bool hasProperty(const vxArray* objects, const std::string& name) override {
    return keyOf(name).find(vcos::array::classOf(objects)) != nullptr;
  }

  // A property of the element's class is taken from the key; anything else
  // (a dynamic property, a name that needs folding or completing, a dead
  // element) goes the whole way by name, which also raises its errors.
  Value getProperty(const vxArray* objects, const std::string& name) override {
    if (vxGetNumberOfElements(objects) != 1) throw Error("VANTEL:sgsh:NotOneElement", vxGetNumberOfElements(objects));
    if (const COSPropInfo* p = keyOf(name).find(classAt(objects, 0))) return Value(vxGetProperty(objects, 0, p));
    return Value(vxGetProperty(objects, 0, name.c_str()));
  }

  void setProperty(vxArray* objects, const std::string& name, const vxArray* value) override {
    // A deleted object among several stops the set before the first write.
    requireLive(objects);
    const vxSize n = vxGetNumberOfElements(objects);
    for (vxSize i = 0; i < n; ++i) {
      // Asked again for each element: a set may run script code.
      if (const COSPropInfo* p = keyOf(name).find(classAt(objects, i)))
        vxSetProperty(objects, i, p, value);
      else
        vxSetProperty(objects, i, name.c_str(), value);
    }
  }

  bool callMethod(const vxArray* objects, const std::string& name, std::span<const Value> args, int nargout,
                  std::vector<Value>& out) override {
    COSClass* cls = vcos::array::classOf(objects);
    if (!cls || !cls->findMethod(COSID(name.c_str()))) return false;
    if (!acceptsDeleted(name)) requireLive(objects);  // before any method code runs
    std::vector<const vxArray*> in{objects};
    for (const Value& v : args) in.push_back(v.get());
    return invoke(cls, name, in, nargout, out);
  }

  bool callMethodOf(const vxArray* objects, const std::string& name, std::span<const Value> args, int nargout,
                    std::vector<Value>& out) override {
    COSClass* cls = vcos::array::classOf(objects);
    if (!cls || !cls->findMethod(COSID(name.c_str()))) return false;
    if (!acceptsDeleted(name)) requireLive(objects);
    std::vector<const vxArray*> in;
    for (const Value& v : args) in.push_back(v.get());
    return invoke(cls, name, in, nargout, out);
  }

  void callStatic(const std::string& className, const std::string& name, std::span<const Value> args, int nargout,
                  std::vector<Value>& out) override {
    COSClass* cls = COSClass::getClass(COSID(className.c_str()));
    const COSID method(name.c_str());
    const COSMethodInfo* info = cls ? cls->findMethod(method) : nullptr;
    if (!info) throw Error("VANTEL:sgsh:NoSuchMethod", name, className);
    if (!info->isStatic()) throw Error("VANTEL:sgsh:NotStaticMethod", name, className);
    std::vector<const vxArray*> in;
    for (const Value& v : args) in.push_back(v.get());
    std::vector<vxArray*> raw(static_cast<std::size_t>(std::max(nargout, 1)), nullptr);
    omCallMethod(cls->getID(), method, COSGetPublicClient(), nargout, raw.data(), static_cast<int>(in.size()),
                 in.data(), /*dispatchOnObject=*/false);
    for (vxArray* r : raw)
      if (r) out.emplace_back(r);
  }

  std::string display(const std::string& name, const vxArray* objects) override {
    COSClass* cls = vcos::array::classOf(objects);
    static const COSID displayId("display");
    if (cls && cls->findMethod(displayId)) {
      // The class's display prints through the same output sink.
      if (!name.empty()) writeOutput(name + " =\n");
      services::io::ArrayNameScope scope(objects, name);
      const vxArray* in[1] = {objects};
      omCallMethod(cls->getName(), "display", COSGetPublicClient(), 0, nullptr, 1, in, /*dispatchOnObject=*/true);
      return {};
    }
    const bool deleted = vxGetNumberOfElements(objects) == 1 && !omGetLiveArrayElement(objects, 0);
    const std::string line =
        (deleted ? std::string("handle to deleted ") : ops::sizeText(objects) + " ") + vxGetClassName(objects) + "\n";
    return name.empty() ? "  " + line : name + " = " + line;
  }

  std::string compactText(const vxArray* objects, CompactForm form) override {
    COSClass* cls = vcos::array::classOf(objects);
    const char* method =
        form == CompactForm::Column ? "compactRepresentationForColumn" : "compactRepresentationForSingleLine";
    if (!cls || !cls->findMethod(COSID(method))) return {};
    const Value configuration(vxCreateString(form == CompactForm::Column ? "Column" : "SingleLine"));
    const vxArray* in[2] = {objects, configuration.get()};
    vxArray* out[1] = {nullptr};
    omCallMethod(cls->getName(), method, COSGetPublicClient(), 1, out, 2, in, /*dispatchOnObject=*/true);
    const Value text(out[0]);
    return text && vxIsChar(text.get()) ? vxArrayToStdString(text.get()) : std::string();
  }

 private:
  bool invoke(COSClass* cls, const std::string& name, const std::vector<const vxArray*>& in, int nargout,
              std::vector<Value>& out) {
    std::vector<vxArray*> raw(static_cast<std::size_t>(std::max(nargout, 1)), nullptr);
    const bool called = omCallMethod(cls->getName(), name.c_str(), COSGetPublicClient(), nargout, raw.data(),
                                     static_cast<int>(in.size()), in.data(), /*dispatchOnObject=*/false);
    for (vxArray* r : raw)
      if (r) out.emplace_back(r);
    return called;
  }
};

std::unique_ptr<ObjectBridge>& slot() {
  static std::unique_ptr<ObjectBridge> bridge = std::make_unique<VcosBridge>();
  return bridge;
}

}  // namespace

ObjectBridge& ObjectBridge::current() { return *slot(); }

const PropertyKey& ObjectBridge::keyOf(const std::string& name) {
  // Per thread, so that no look-up takes a lock. Names from running code
  // (computed field names, get and set with text) join too, so the table
  // starts afresh when it grows past what scripts write.
  struct Table {
    std::unordered_map<std::string, std::unique_ptr<PropertyKey>> keys;
    // The last hit: a statement in a loop passes the same name (its parsed
    // node's text) each time, found again without hashing.
    const std::string* lastName = nullptr;
    const PropertyKey* last = nullptr;
  };
  thread_local Table t;
  if (&name == t.lastName && t.last->name() == name) return *t.last;
  auto it = t.keys.find(name);
  if (it == t.keys.end()) {
    if (t.keys.size() >= 4096) t.keys.clear();
    it = t.keys.emplace(name, std::make_unique<PropertyKey>(name)).first;
  }
  t.lastName = &name;
  t.last = it->second.get();
  return *t.last;
}

std::unique_ptr<ObjectBridge> ObjectBridge::install(std::unique_ptr<ObjectBridge> bridge) {
  return std::exchange(slot(), std::move(bridge));
}

}  // namespace sgsh
