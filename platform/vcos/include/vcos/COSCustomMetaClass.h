// Base of a custom meta class: the class info of a class whose instances are
// classes ("meta.class" and the ones libraries add). It says which meta
// classes the members of its classes belong to, finishes each class after its
// members are in, and can take over the set path of chosen properties.
#pragma once

#include "vcos/MetaClassBase.h"

class COSPropInfo;

class VCOS_API COSCustomMetaClass : public MetaClassBase {
 public:
  virtual COSID getMetaPropertyClassID() const;
  virtual COSID getMetaMethodClassID() const;
  virtual COSID getMetaEventClassID() const;
  virtual COSID getMetaEnumeratedValueClassID() const;
  // Called for a class with this meta class once it is complete, and before
  // that, once all its properties are in.
  virtual void finishClassCreation(COSClass* cls);
  virtual void finishPropertyCreation(COSClass* cls);
  // The set path of properties turned on with turnOnCustomSet; the default
  // ends in setPropertyValue.
  virtual void customSetPropertyValue(COSInterface* object, COSPropInfo* property, COSValue value);
  // The get path of properties turned on with turnOnCustomGet, and the
  // release of the values it handed out; the defaults are the property's
  // getValue and releaseValue.
  virtual COSValue customGetPropertyValue(COSInterface* object, COSPropInfo* property);
  virtual void customReleasePropertyValue(COSInterface* object, COSPropInfo* property, COSValue value);

  // The plain store: the property's setValue, no access check, no listeners.
  static void setPropertyValue(COSInterface* object, COSPropInfo* property, COSValue value);
  // Routes every client-path set of that property, on instances of `cls`
  // (and of subclasses made later), through the customSetPropertyValue of the
  // meta class of `cls`. Raises
  // "VANTEL:vcos:UnknownProperty" if `cls` has no such property.
  static void turnOnCustomSet(COSClass* cls, COSID propertyName);
  static void turnOnCustomSet(COSClass* cls, const char* propertyName) { turnOnCustomSet(cls, COSID(propertyName)); }
  // The same for the get path: every client-path get of that property goes
  // through customGetPropertyValue, and every client-path release of its
  // values through customReleasePropertyValue.
  static void turnOnCustomGet(COSClass* cls, COSID propertyName);
  static void turnOnCustomGet(COSClass* cls, const char* propertyName) { turnOnCustomGet(cls, COSID(propertyName)); }
};
