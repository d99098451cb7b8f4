// The three property copy policies.
#include <string>
#include <vector>

#include "sgutils/copy/CopyContextImpl.h"
#include "src/copy/NamedChildCopyPolicy.h"
#include "src/copy/ReconnectHandleCopyPolicy.h"
#include "vcos/COSClass.h"
#include "vcos/COSDataType.h"
#include "vcos/COSPropInfo.h"
#include "vcos/ObjectArray.h"
#include "vcos/ObjectCalls.h"
#include "vx/vxQuery.h"

namespace sgutils::copy {

ArrayCopyPolicy::ArrayCopyPolicy(const COSPropInfo* property, COSInterfacePtr source, const COSClient* client)
    : PropertyCopyPolicy(property), source(std::move(source)), dataType(property->getDataType()), client(client) {}

bool ArrayCopyPolicy::hasValue() {
  resolve();
  return value.has();
}

void ArrayCopyPolicy::getValue(COSValue& out) {
  resolve();
  out = value.get();
}

void ArrayCopyPolicy::resolve() {
  if (resolved) return;
  resolved = true;
  if (!hasArrayForm(dataType)) return;
  matrix::unique_vxArray array;
  {
    const COSValue read = property->getValue(source.get());
    struct Release {
      const COSPropInfo* p;
      COSInterface* o;
      COSValue v;
      ~Release() { p->releaseValue(o, v); }
    } release{property, source.get(), read};
    array = toArray(dataType, read);
  }
  if (!array) return;
  if (matrix::unique_vxArray made = copyOf(array.get())) value = OwnedValue(dataType, fromArray(dataType, made.get()));
}

matrix::unique_vxArray NamedChildCopyPolicy::copyOf(const vxArray* array) {
  if (!omIsVCOS(array)) return nullptr;
  const std::size_t n = vxGetNumberOfElements(array);
  std::vector<COSInterfacePtr> copies;
  copies.reserve(n);
  COSClass* firstClass = nullptr;
  bool mixed = false;
  std::size_t lastColumns = 1;
  for (std::size_t i = 0; i < n; ++i) {
    const COSInterfacePtr element = omGetArrayElement(array, i);
    if (!element || element->isDestroyed()) return nullptr;
    matrix::unique_vxArray input(omCreateVCOSScalar(element));
    vxArray* out[1] = {nullptr};
    const vxArray* in[1] = {input.get()};
    static const COSID copyElement("copyElement");
    if (!omCallMethod(element->getClass()->getID(), copyElement, client, 1, out, 1, in, true)) return nullptr;
    matrix::unique_vxArray made(out[0]);
    if (!made || !omIsVCOS(made.get()) || vxIsEmpty(made.get())) return nullptr;
    lastColumns = vxGetN(made.get());
    COSInterfacePtr copy = omGetArrayElement(made.get(), 0);
    if (!firstClass)
      firstClass = copy->getClass();
    else if (copy->getClass() != firstClass)
      mixed = true;
    copies.push_back(std::move(copy));
  }
  const char* className = firstClass ? firstClass->getName() : "vantel.graphics.GraphicsPlaceholder";
  matrix::unique_vxArray result(copies.size() == n
                                    ? omCreateVCOSMatrix(vxGetM(array), vxGetN(array), className)
                                    : omCreateVCOSMatrix(copies.size(), lastColumns, className));
  for (std::size_t i = 0; i < copies.size(); ++i) omSetArrayElement(result.get(), i, copies[i]);
  if (mixed) omSetClassOfHeterogeneousArray(result.get());
  return result;
}

matrix::unique_vxArray ReconnectHandleCopyPolicy::copyOf(const vxArray* array) {
  // An empty reference has no copy to point at: the copy keeps its own.
  if (!context || vxIsEmpty(array)) return nullptr;
  matrix::unique_vxArray copies(context->getCopy(client, array));
  if (!copies || vxIsEmpty(copies.get())) return nullptr;
  return copies;
}

}  // namespace sgutils::copy
