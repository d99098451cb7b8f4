// The object bridge in use, and the one in place before the class-object
// system provides a real one: every operation raises NoObjects.
#include "eval/ObjectBridge.h"

#include <foundation/core/except/Error.h>
#include <vx/vx.h>

#include "eval/ArrayOps.h"

namespace sgsh {

using foundation::core::except::Error;

namespace {

class NoObjectBridge final : public ObjectBridge {
 public:
  Value getProperty(const vxArray* objects, const std::string&) override { fail(objects); }
  void setProperty(const vxArray* objects, const std::string&, const vxArray*) override { fail(objects); }
  bool callMethod(const vxArray*, const std::string&, std::span<const Value>, int, std::vector<Value>&) override {
    return false;
  }
  std::string display(const std::string& name, const vxArray* objects) override {
    return name + " = " + ops::sizeText(objects) + " " + vxGetClassName(objects) + "\n";
  }

 private:
  [[noreturn]] static void fail(const vxArray* objects) { throw Error("VANTEL:sgsh:NoObjects", vxGetClassName(objects)); }
};

std::unique_ptr<ObjectBridge>& slot() {
  static std::unique_ptr<ObjectBridge> bridge = std::make_unique<NoObjectBridge>();
  return bridge;
}

}  // namespace

ObjectBridge& ObjectBridge::current() { return *slot(); }

std::unique_ptr<ObjectBridge> ObjectBridge::install(std::unique_ptr<ObjectBridge> bridge) {
  return std::exchange(slot(), std::move(bridge));
}

}  // namespace sgsh
