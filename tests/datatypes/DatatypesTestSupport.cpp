// The helpers and test classes of DatatypesTestSupport.h.
#include "DatatypesTestSupport.h"

#include <cstring>

namespace dtt {

unique_vxArray matrixOf(vxSize m, vxSize n, std::initializer_list<double> columnMajor) {
  vxArray* a = vxCreateDoubleMatrix(m, n, vxREAL);
  if (columnMajor.size()) std::memcpy(vxGetPr(a), columnMajor.begin(), columnMajor.size() * sizeof(double));
  return own(a);
}

std::string raisedId(const std::function<void()>& fn) {
  try {
    fn();
  } catch (const foundation::core::except::IMsgIDException& e) {
    return e.identifier();
  }
  return "";
}

namespace {

struct WidgetData {};

class NamespaceInfo final : public COSNamespaceInfo {
 public:
  explicit NamespaceInfo(const char* name) : name_(name) {}
  const char* getName() const override { return name_; }

 private:
  const char* name_;
};

// A class with a stored Callback property "ClickFcn", an "any" property
// "ArrayFcn", and the events "Click" and "Ping".
class WidgetInfo final : public COSClassInfo {
 public:
  const char* getName() const override { return "Widget"; }
  void initializeClass(COSClass* c, const COSClient*) override {
    COSID me = c->getID();
    c->addProperty(new COSPropT(me, COSID("ClickFcn"), COSDataTypePtr(graphics::datatype::kCallbackType)));
    c->addProperty(new COSPropT(me, COSID("ArrayFcn"), COSDataTypePtr("any")));
    c->addProperty(new COSPropT(me, COSID("Visibility"), COSDataTypePtr(graphics::datatype::kHandleVisibilityType)));
    c->addEvent(new COSEventT(COSID("Click")));
    c->addEvent(new COSEventT(COSID("Ping")));
  }
};

class PlainInfo final : public COSClassInfo {
 public:
  explicit PlainInfo(const char* name) : name_(name) {}
  const char* getName() const override { return name_; }

 private:
  const char* name_;
};

}  // namespace

void setUp() {
  static bool done = false;
  if (done) return;
  done = true;
  VLInitialize_sgdatatypes();
  COSPackage::addNamespace(new NamespaceInfo("dtt"))->addClass(new WidgetInfo);
  COSPackage::addNamespace(new NamespaceInfo("vantel.ui"))->addClass(new PlainInfo("Figure"));
  COSPackage::addNamespace(new NamespaceInfo("vantel.ui.layout"))->addClass(new PlainInfo("LayoutOptions"));
}

COSInterfacePtr make(const char* className) {
  setUp();
  return COSClass::getClass(COSID(className))->createInstance(COSGetPublicClient());
}

unique_vxArray objectArray(const COSInterfacePtr& object) {
  vxArray* a = vxCreateObjectMatrix(1, 1, object->getClass()->getID().entry());
  vxGetObjectElements(a)[0] = object;
  return own(a);
}

COSValue fromAny(const char* type, const vxArray* value) {
  COSTypeConversion* c = COSTypeRepository::getConversion(COSID("any"), COSID(type));
  if (!c) throw std::logic_error(std::string("no conversion from any to ") + type);
  return c->convert(COSValue(value));
}

unique_vxArray toAny(const char* type, COSValue value) {
  COSTypeConversion* c = COSTypeRepository::getConversion(COSID(type), COSID("any"));
  if (!c) throw std::logic_error(std::string("no conversion to any from ") + type);
  return own(c->convert(value).asPointer<vxArray>());
}

void destroyValue(const char* type, COSValue value) { COSDataTypePtr(type)->destroy(value); }

}  // namespace dtt
