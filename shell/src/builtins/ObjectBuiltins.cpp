// Built-ins over objects of the class-object system: get and set in their
// forms, isprop, and isvalid for values that are not objects. delete,
// isvalid, addlistener and findobj on objects are methods of "handle" and
// reach the class through method dispatch.
#include <vcos/COSDataType.h>  // before COSClass.h: COSDataTypePtr needs it complete
#include <vcos/COSClass.h>
#include <vcos/COSPropInfo.h>
#include <vcos/MemberAccess.h>
#include <vcos/ObjectArray.h>

#include "builtins/BuiltinSupport.h"
#include "eval/ObjectBridge.h"

namespace sgsh::builtins {
namespace {

const vxArray* objectsArg(const char* fn, const Value& v) {
  if (!vxIsObject(v.get())) throw Error("VANTEL:sgsh:NotObject", fn, vxGetClassName(v.get()));
  return v.get();
}

// The public, visible properties of the objects' class, in class order.
std::vector<std::string> publicProperties(const vxArray* objects) {
  std::vector<std::string> names;
  COSClass* cls = vcos::array::classOf(objects);
  if (!cls) return names;
  for (std::size_t i = 0; i < cls->getPropertyCount(); ++i) {
    const COSPropInfo* p = cls->getPropertyAt(i);
    if (p && p->getMemberGetAccess() == PublicAccess && p->isVisible()) names.emplace_back(p->getName());
  }
  return names;
}

Value elementOf(const vxArray* objects, vxIndex i) { return ops::gather(objects, std::vector<vxIndex>{i}, {1, 1}); }

// get(h, 'Prop'): the value, or a column cell for several objects.
// get(h): a struct of all public properties of one object.
void bGet(Interpreter&, int, Out& out, Args in) {
  checkArgs("get", in, 1, 2);
  const vxArray* h = objectsArg("get", in[0]);
  ObjectBridge& bridge = ObjectBridge::current();
  const vxSize n = vxGetNumberOfElements(h);
  if (in.size() == 2) {
    const std::string name = textArg("get", in[1]);
    if (n == 1) {
      out.push_back(bridge.getProperty(h, name));
      return;
    }
    Value c(vxCreateCellMatrix(n, 1));
    for (vxSize i = 0; i < n; ++i) vxSetCell(c.mut(), i, bridge.getProperty(elementOf(h, i).get(), name).release());
    out.push_back(std::move(c));
    return;
  }
  if (n != 1) throw Error("VANTEL:sgsh:NotOneElement", n);
  const std::vector<std::string> names = publicProperties(h);
  Value s(vxCreateStructMatrix(1, 1, 0, nullptr));
  for (const std::string& name : names) vxSetField(s.mut(), 0, name.c_str(), bridge.getProperty(h, name).release());
  out.push_back(std::move(s));
}

// set(h, 'Prop', value, ...) sets in order; set(h, 'Prop') answers the
// values the property's type allows as a column cell of text (empty where
// any value of its type goes).
void bSet(Interpreter&, int nargout, Out& out, Args in) {
  if (in.size() < 2) throw Error("VANTEL:sgsh:NotEnoughInputs", "set");
  Value h = in[0];
  objectsArg("set", h);
  ObjectBridge& bridge = ObjectBridge::current();
  if (in.size() == 2) {
    const std::string name = textArg("set", in[1]);
    COSClass* cls = vcos::array::classOf(h.get());
    const COSPropInfo* prop = cls ? cls->findPropertyExact(COSID(name.c_str())) : nullptr;
    if (!prop || prop->getMemberSetAccess() != PublicAccess)
      throw Error("VANTEL:sgsh:NoSuchProperty", name, vxGetClassName(h.get()));
    const std::vector<std::string> values = prop->getDataType()->getPossibleValues();
    Value c(vxCreateCellMatrix(values.size(), values.empty() ? 0 : 1));
    for (std::size_t i = 0; i < values.size(); ++i) vxSetCell(c.mut(), i, Value::text(values[i]).release());
    (void)nargout;
    out.push_back(std::move(c));
    return;
  }
  if (in.size() % 2 == 0) throw Error("VANTEL:sgsh:NameValuePairs", "set");
  for (std::size_t i = 1; i < in.size(); i += 2) bridge.setProperty(h.mut(), textArg("set", in[i]), in[i + 1].get());
}

void bIsprop(Interpreter&, int, Out& out, Args in) {
  checkArgs("isprop", in, 2, 2);
  const vxArray* h = in[0].get();
  const std::string name = textArg("isprop", in[1]);
  const bool has = vxIsObject(h) && ObjectBridge::current().hasProperty(h, name);
  std::vector<bool> r(vxGetNumberOfElements(h), has);
  if (!vxIsObject(h)) r.assign(r.size(), false);
  out.push_back(r.size() == 1 ? Value::logical(r[0]) : ops::logicals(ops::dimsOf(h), r));
}

// isvalid of anything that is not an object: false for each element.
void bIsvalid(Interpreter&, int, Out& out, Args in) {
  checkArgs("isvalid", in, 1, 1);
  std::vector<bool> r(vxGetNumberOfElements(in[0].get()), false);
  out.push_back(ops::logicals(ops::dimsOf(in[0].get()), r));
}

void bDelete(Interpreter&, int, Out&, Args in) {
  checkArgs("delete", in, 1, 1);
  objectsArg("delete", in[0]);  // objects reach handle's delete first
}

}  // namespace
}  // namespace sgsh::builtins

namespace sgsh {

void registerObjectBuiltins(BuiltinRegistry& r) {
  using namespace builtins;
  r.add<bGet>("get");
  r.add<bSet>("set");
  r.add<bIsprop>("isprop");
  r.add<bIsvalid>("isvalid");
  r.add<bDelete>("delete");
}

}  // namespace sgsh
