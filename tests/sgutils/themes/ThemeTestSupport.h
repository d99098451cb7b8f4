// Theme objects for the theme tests: made through the class system, read and
// written through its property paths.
#pragma once

#include <string>

#include "sgutils/objects/GraphicsTheme.gen.h"
#include "sgutils/sgutils.h"
#include "vcos/COSClass.h"
#include "vcos/COSClient.h"
#include "vcos/COSDataType.h"
#include "vcos/COSPropInfo.h"
#include "vcos/COSTypeConversion.h"
#include "vcos/COSTypeRepository.h"
#include "vcos/ConvertedValue.h"
#include "vcos/ObjectArray.h"
#include "vx/vx.h"

namespace sgtest::themes {

using graphics::theme::GraphicsTheme;

// A theme array of the built-in factory and its object.
struct Theme {
  explicit Theme(bool dark) : array(GraphicsTheme::builtinThemeFactory(dark)), object(omGetArrayElement(array.get(), 0)) {}
  explicit Theme(vxArray* made) : array(made), object(omGetArrayElement(array.get(), 0)) {}
  GraphicsTheme& theme() const { return *GraphicsTheme::fromObject(object); }
  COSPropInfo* property(const char* name) const { return object->getClass()->findPropertyExact(COSID(name)); }

  // What a user reads: the public get, converted to an array.
  matrix::unique_vxArray get(const char* name) const {
    COSPropInfo* p = property(name);
    const COSValue v = object->getPropertyValue(COSGetPublicClient(), p);
    COSTypeConversion* c = COSTypeRepository::getConversion(p->getDataType()->getID(), COSID("any"));
    matrix::unique_vxArray out(c->convert(v).asPointer<vxArray>());
    object->releasePropertyValue(COSGetPublicClient(), p, v);
    return out;
  }
  // The same through the property info, past the access rules.
  matrix::unique_vxArray getDirect(const char* name) const {
    COSPropInfo* p = property(name);
    const COSValue v = p->getValue(object.get());
    COSTypeConversion* c = COSTypeRepository::getConversion(p->getDataType()->getID(), COSID("any"));
    matrix::unique_vxArray out(c->convert(v).asPointer<vxArray>());
    p->releaseValue(object.get(), v);
    return out;
  }
  // What a user writes, converted from an array, with the given client.
  void set(const char* name, const vxArray* value, const COSClient* client = COSGetPublicClient()) const {
    COSPropInfo* p = property(name);
    COSTypeConversion* c = COSTypeRepository::getConversion(COSID("any"), p->getDataType()->getID());
    // The converted value is freed also when the set is refused.
    const ConvertedValue owned(p->getDataType(), c->convert(COSValue(value)));
    object->setPropertyValue(client, p, owned.get());
  }
  void setText(const char* name, const char* text, const COSClient* client = COSGetPublicClient()) const {
    matrix::unique_vxArray a(vxCreateString(text));
    set(name, a.get(), client);
  }
  std::string text(const char* name) const {
    matrix::unique_vxArray a = get(name);
    return vxArrayToStdString(a.get());
  }

  matrix::unique_vxArray array;
  COSInterfacePtr object;
};

inline matrix::unique_vxArray row(double r, double g, double b) {
  matrix::unique_vxArray a(vxCreateDoubleMatrix(1, 3, vxREAL));
  double* p = vxGetPr(a.get());
  p[0] = r;
  p[1] = g;
  p[2] = b;
  return a;
}

}  // namespace sgtest::themes
