// Built-ins over objects of the class-object system: get and set in their
// forms (one object or several, one name or a cell of names, listing),
// isprop, and isvalid for values that are not objects. delete,
// isvalid, addlistener and findobj on objects are methods of "handle" and
// reach the class through method dispatch.
#include <vcos/COSDataType.h>  // before COSClass.h: COSDataTypePtr needs it complete
#include <vcos/COSClass.h>
#include <vcos/COSPropInfo.h>
#include <vcos/DynamicProperties.h>
#include <vcos/MemberAccess.h>
#include <vcos/ObjectArray.h>
#include <vcos/VxProperty.h>

#include <algorithm>
#include <cctype>

#include "builtins/BuiltinSupport.h"
#include "eval/ObjectBridge.h"
#include "sgsh/Output.h"

namespace sgsh::builtins {
namespace {

const vxArray* objectsArg(const char* fn, const Value& v) {
  if (!vxIsObject(v.get())) throw Error("VANTEL:sgsh:NotObject", fn, vxGetClassName(v.get()));
  return v.get();
}

// Property names in the order get(h) and set(h) show them: by name without
// regard to case, then with it.
void sortNames(std::vector<const COSPropInfo*>& props) {
  std::sort(props.begin(), props.end(), [](const COSPropInfo* a, const COSPropInfo* b) {
    const std::string_view x = a->getName(), y = b->getName();
    const auto lower = [](char c) { return static_cast<char>(std::tolower(static_cast<unsigned char>(c))); };
    const bool less = std::lexicographical_compare(x.begin(), x.end(), y.begin(), y.end(),
                                                   [&](char p, char q) { return lower(p) < lower(q); });
    const bool more = std::lexicographical_compare(y.begin(), y.end(), x.begin(), x.end(),
                                                   [&](char p, char q) { return lower(p) < lower(q); });
    return less || (!more && x < y);
  });
}

enum class Access { Get, Set };

// The visible properties of the objects' class that the public client may
// read (or write), sorted; for one object, those added to it (addprop) too.
std::vector<const COSPropInfo*> publicProperties(const vxArray* objects, Access access) {
  std::vector<const COSPropInfo*> props;
  COSClass* cls = vcos::array::classOf(objects);
  if (!cls) return props;
  const auto take = [&](const COSPropInfo* p) {
    if (!p || !p->isVisible()) return;
    const MemberAccess a = access == Access::Get ? p->getMemberGetAccess() : p->getMemberSetAccess();
    if (a == PublicAccess) props.push_back(p);
  };
  for (std::size_t i = 0; i < cls->getPropertyCount(); ++i) take(cls->getPropertyAt(i));
  if (vxGetNumberOfElements(objects) == 1)
    if (COSInterfacePtr object = omGetLiveArrayElement(objects, 0))
      for (const COSInterfacePtr& p : vcos::dynamicProperties(object.get()))
        take(static_cast<const COSPropInfo*>(p.get()));
  sortNames(props);
  return props;
}

Value elementOf(const vxArray* objects, vxIndex i) { return ops::gather(objects, std::vector<vxIndex>{i}, {1, 1}); }

// Property names given as text or as a cell of texts.
std::vector<std::string> namesArg(const char* fn, const Value& v) {
  std::vector<std::string> names;
  if (vxIsCell(v.get())) {
    for (vxSize i = 0; i < vxGetNumberOfElements(v.get()); ++i) {
      const vxArray* el = vxGetCell(v.get(), i);
      if (!el || !ops::isText(el)) throw Error("VANTEL:sgsh:NotText", "property name");
      names.push_back(ops::checkedName(ops::textOf(el)));
    }
    return names;
  }
  names.push_back(ops::checkedName(textArg(fn, v)));
  return names;
}

// get(h): a struct (a struct column for several objects) of the public
// properties, sorted. get(h, 'Prop'): the value; a column cell for several
// objects. get(h, {'A', 'B'}): a cell with one row per object and one column
// per name.
void bGet(Interpreter&, int, Out& out, Args in) {
  checkArgs("get", in, 1, 2);
  const vxArray* h = objectsArg("get", in[0]);
  ObjectBridge& bridge = ObjectBridge::current();
  const vxSize n = vxGetNumberOfElements(h);
  if (in.size() == 2) {
    const bool several = vxIsCell(in[1].get());
    const std::vector<std::string> names = namesArg("get", in[1]);
    if (n == 1 && !several) {
      out.push_back(bridge.getProperty(h, names[0]));
      return;
    }
    Value c(vxCreateCellMatrix(n, names.size()));
    for (vxSize i = 0; i < n; ++i) {
      Value one = n == 1 ? Value::copyOf(h) : elementOf(h, i);
      for (std::size_t j = 0; j < names.size(); ++j)
        vxSetCell(c.mut(), i + j * n, bridge.getProperty(one.get(), names[j]).release());
    }
    out.push_back(std::move(c));
    return;
  }
  const std::vector<const COSPropInfo*> props = publicProperties(h, Access::Get);
  std::vector<const char*> fields;
  for (const COSPropInfo* p : props) fields.push_back(p->getName());
  Value s(vxCreateStructMatrix(n, 1, static_cast<int>(fields.size()), fields.data()));
  for (vxSize i = 0; i < n; ++i) {
    Value one = n == 1 ? Value::copyOf(h) : elementOf(h, i);
    for (std::size_t f = 0; f < fields.size(); ++f)
      vxSetFieldByNumber(s.mut(), i, static_cast<int>(f), bridge.getProperty(one.get(), fields[f]).release());
  }
  out.push_back(std::move(s));
}

// The values a property's type allows, as a column cell of text; empty
// where any value of its type goes.
Value allowedValues(const COSPropInfo* prop) {
  const std::vector<std::string> values = prop->getDataType()->getPossibleValues();
  Value c(vxCreateCellMatrix(values.size(), values.empty() ? 0 : 1));
  for (std::size_t i = 0; i < values.size(); ++i) vxSetCell(c.mut(), i, Value::text(values[i]).release());
  return c;
}

// The property that set may write, looked up as the set path does; raises
// before anything is set. A name the class lacks may be a property added to
// the objects (addprop): each of them must have it, and may write it.
const COSPropInfo* settable(const vxArray* h, const std::string& name) {
  COSClass* cls = vcos::array::classOf(h);
  const COSID id(name.c_str());
  const COSPropInfo* prop = cls ? cls->findProperty(id) : nullptr;
  const vxSize n = vxGetNumberOfElements(h);
  for (vxSize i = 0; !prop && cls && i < n; ++i) {
    COSInterfacePtr object = omGetLiveArrayElement(h, i);
    const COSPropInfo* added = object ? object->findPropertyInfo(id) : nullptr;
    if (!added) break;
    if (added->getMemberSetAccess() != PublicAccess) throw Error("VANTEL:sgsh:NotSettable", name, vxGetClassName(h));
    if (i + 1 == n) prop = added;
  }
  if (!prop) throw Error("VANTEL:vcos:UnknownProperty", name, vxGetClassName(h));  // as get and h.X raise
  if (prop->getMemberSetAccess() != PublicAccess) throw Error("VANTEL:sgsh:NotSettable", name, vxGetClassName(h));
  return prop;
}

// set(h) lists the settable properties, sorted, each with the values its
// type allows where the type enumerates them; s = set(h) gives them as a
// struct of column cells.
void listSettable(const vxArray* h, int nargout, Out& out) {
  const std::vector<const COSPropInfo*> props = publicProperties(h, Access::Set);
  if (nargout > 0) {
    std::vector<const char*> fields;
    for (const COSPropInfo* p : props) fields.push_back(p->getName());
    Value s(vxCreateStructMatrix(1, 1, static_cast<int>(fields.size()), fields.data()));
    for (std::size_t f = 0; f < props.size(); ++f)
      vxSetFieldByNumber(s.mut(), 0, static_cast<int>(f), allowedValues(props[f]).release());
    out.push_back(std::move(s));
    return;
  }
  std::string text;
  for (const COSPropInfo* p : props) {
    text += "  ";
    text += p->getName();
    const std::vector<std::string> values = p->getDataType()->getPossibleValues();
    for (std::size_t i = 0; i < values.size(); ++i) text += (i ? " | '" : ": '") + values[i] + "'";
    text += "\n";
  }
  writeOutput(text);
}

// set(h, 'Prop', value, ...) sets in order, the same values on every
// object. set(h, {'A', 'B'}, values) takes a cell with one column per name
// and one row per object (one row: the same values on all). set(h, 'Prop')
// answers the values the property allows. Names, shapes, deleted objects
// and every value against its property's type are checked before anything
// is set, so a set that fails changes nothing.
void bSet(Interpreter&, int nargout, Out& out, Args in) {
  if (in.empty()) throw Error("VANTEL:sgsh:NotEnoughInputs", "set");
  Value h = in[0];
  objectsArg("set", h);
  if (in.size() == 1) return listSettable(h.get(), nargout, out);
  ObjectBridge& bridge = ObjectBridge::current();
  if (in.size() == 2) {
    out.push_back(allowedValues(settable(h.get(), ops::checkedName(textArg("set", in[1])))));
    return;
  }
  const vxSize n = vxGetNumberOfElements(h.get());
  if (vxIsCell(in[1].get())) {
    if (in.size() != 3) throw Error("VANTEL:sgsh:TooManyInputs", "set");
    const std::vector<std::string> names = namesArg("set", in[1]);
    const vxArray* values = in[2].get();
    if (!vxIsCell(values)) throw Error("VANTEL:sgsh:NotCell", "set");
    const vxSize rows = vxGetM(values);
    if (vxGetNumberOfDimensions(values) != 2 || vxGetN(values) != names.size() || (rows != 1 && rows != n))
      throw Error("VANTEL:sgsh:SetValuesShape", n, names.size(), ops::sizeText(values));
    for (const std::string& name : names) settable(h.get(), name);
    const Value empty = Value::emptyDouble();
    auto valueAt = [&](vxSize i, std::size_t j) {
      const vxArray* v = vxGetCell(values, (rows == 1 ? 0 : i) + j * rows);
      return v ? v : empty.get();
    };
    for (vxSize i = 0; i < n; ++i)
      for (std::size_t j = 0; j < names.size(); ++j) vxCheckPropertyValue(h.get(), i, names[j].c_str(), valueAt(i, j));
    for (vxSize i = 0; i < n; ++i) {
      Value one = elementOf(h.get(), i);
      for (std::size_t j = 0; j < names.size(); ++j) bridge.setProperty(one.mut(), names[j], valueAt(i, j));
    }
    return;
  }
  if (in.size() % 2 == 0) throw Error("VANTEL:sgsh:NameValuePairs", "set");
  std::vector<std::string> names;
  for (std::size_t i = 1; i < in.size(); i += 2) names.push_back(ops::checkedName(textArg("set", in[i])));
  for (const std::string& name : names) settable(h.get(), name);
  for (vxSize i = 0; i < n; ++i)
    for (std::size_t k = 0; k < names.size(); ++k) vxCheckPropertyValue(h.get(), i, names[k].c_str(), in[2 * k + 2].get());
  for (std::size_t k = 0; k < names.size(); ++k) bridge.setProperty(h.mut(), names[k], in[2 * k + 2].get());
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
  r.add<bGet>("get", "v = get(h, name)\ns = get(h)\nc = get(h, {name, ...})",
              "Property values of objects; with no name all visible properties, sorted.");
  r.add<bSet>("set", "set(h, name, value, ...)\nset(h, {name, ...}, values)\ns = set(h)",
              "Sets property values of objects; with no name lists the settable properties.");
  r.add<bIsprop>("isprop", "tf = isprop(h, name)",
                 "True when the object has the property.");
  r.add<bIsvalid>("isvalid", "tf = isvalid(h)",
                  "True for each object that is not deleted.");
  r.add<bDelete>("delete", "delete(h)",
                 "Deletes objects.");
}

}  // namespace sgsh
