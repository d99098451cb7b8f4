// The data block of "vantel.graphics.Graphics", carried by every graphics
// object: the Internal flag, application data, the defaults stored on the
// object, and the virtual operations that concrete classes override
// (display, reset, post-set, save and load). Also the statics of the
// construction path: setting name-value input, reset, and adding a class to
// a namespace.
#pragma once

#include <memory>

#include "sgutils/metadata/DirtyFlags.h"
#include "sgutils/defaults/StoredDefaultsEpoch.h"
#include "sgutils/lifecycle/SGReference.h"
#include "sgutils/SgutilsExport.h"
#include "vcos/COSDataTypePtr.h"

class COSClassInfo;
class COSClient;
class COSPackage;
class COSPropInfo;

class SGUTILS_API SGHandle : public SGReference {
 public:
  SGHandle();
  ~SGHandle() override;
  // SGHandle overrides no stage hook: what SGReference's do, the runners do.
  // A subclass that overrides one by hand overrides this too.
  unsigned stageHooksThatAct() const noexcept override { return 0; }

  // Display (the group of properties shown, a descriptive label, the whole
  // display); the defaults show nothing of their own.
  virtual vxArray* doGetPropertyGroup(vxArray* names) const;
  virtual vxArray* doGetDescriptiveLabelForDisplay(vxArray* names) const;
  virtual void doDisplay(COSInterfacePtr object) const;
  virtual bool resetAllowed(COSInterfacePtr object);
  // Puts the class defaults back.
  virtual void doReset(COSInterfacePtr object);
  virtual void doPostSet(COSInterface* object, COSPropInfo* property, DirtyFlags flags);
  virtual void doPostSet(COSInterface* object, COSPropInfo* property, bool limitsDirty, bool objectDirty);
  virtual bool isThisYours(COSInterfacePtr object);
  virtual bool isChildProperty(const char* name) const;
  // Save and load (src/persistence/LoadPass.cpp). doDefaultPropSave puts
  // the stored defaults in the dynamic property "InternalDefaultPropMap",
  // which the serializer stores; getDeserializedChildren gives the children
  // the running load hooked to this object, in saved order (owned; null
  // outside a load).
  virtual void doCustomSave();
  virtual void doDefaultPropSave(COSInterfacePtr object, COSValue& value, COSDataTypePtr& type);
  virtual bool isUIComponent();
  virtual bool isInWebFigure();
  virtual vxArray* getDeserializedChildren();
  virtual const COSClient* getPrivateClient();
  virtual void doLoadObj();

  bool getInternal() const noexcept { return internal_; }
  void setInternal(bool value) noexcept { internal_ = value; }
  bool getIsRequiredChild() const noexcept { return isRequiredChild_; }
  void setIsRequiredChild(bool value) noexcept { isRequiredChild_ = value; }
  bool shouldFanoutsHonorModes() const noexcept { return fanoutsHonorModes_; }
  void setFanoutsHonorModes(bool value) noexcept { fanoutsHonorModes_ = value; }
  bool getLoadedFromFile() const noexcept { return loadedFromFile_; }
  void setLoadedFromFile(bool value) noexcept {
    loadedFromFile_ = value;
    sgutils::noteStoredDefaultsChanged();
  }

  // The stored struct (borrowed; never null). The empty struct that a new
  // object holds is made on first read, so objects whose application data
  // nobody reads carry none.
  const vxArray* getApplicationData() const;
  // The stored struct, or null while none has been made: a reader that only
  // looks (the saver) makes none.
  const vxArray* madeApplicationData() const noexcept { return appData_ ? appData_->live : nullptr; }
  // Stores a copy of a struct or object-holding array; anything else, null
  // included, stores an empty 1-by-1 struct. The same pointer is a no-op.
  void setApplicationData(const vxArray* value);
  // A new converted copy of the application data, cached (and the previous
  // copy destroyed); borrowed by the caller.
  const vxArray* getSerializableApplicationData();
  void setSerializableApplicationData(const vxArray* value);
  // The struct of defaults stored on this object; null until one is set.
  const vxArray* getDefaultProp() const noexcept { return defaultProps_; }
  // The store itself, for its writer (DefaultProp), which edits it in place.
  vxArray* getDefaultPropForEdit() noexcept { return defaultProps_; }
  void setDefaultProp(const vxArray* value);

  // The Graphics block of an object: null for a null, destroyed or
  // non-graphics object.
  static SGHandle* fromObject(const COSInterface* object) noexcept;

  // Sets constructor input: name-value pairs, a cell of names with a cell of
  // values, or a struct (one set per field). `values` are vxArray words.
  static void setPVPairs(const COSClient* client, const COSInterfacePtr& object, int n, const COSValue* values);
  // One name-value set of constructor input.
  static void setProperty(const COSClient* client, const COSInterfacePtr& object, const char* name,
                          const vxArray* value);
  // The worker of the reset method.
  static void Reset(const COSInterfacePtr& object);
  // The one way a class is added to a package.
  static void addClassToNamespace(COSPackage* package, COSClassInfo* info);
  static COSClass* getClassInstance();

  // True for an object that is being destroyed or has an owner, at any
  // distance, that is.
  static bool isBeingDeleted(const COSInterface* object) noexcept;

 private:
  // The application data and its cached saved form, made on first use: a
  // new object has neither, so the block holds one pointer for the two.
  struct AppData {
    vxArray* live = nullptr;
    vxArray* serializable = nullptr;
  };
  AppData& appData() const;
  // The flags first: they fill the 4 bytes after the base's flag, so the
  // block is 48 bytes.
  bool internal_ = false;
  bool isRequiredChild_ = false;
  bool fanoutsHonorModes_ = false;
  bool loadedFromFile_ = false;
  mutable std::unique_ptr<AppData> appData_;
  vxArray* defaultProps_ = nullptr;
};

// The Graphics block of an object, or null (see SGHandle::fromObject).
inline SGHandle* toSGHandle(const COSInterfacePtr& object) noexcept { return SGHandle::fromObject(object.get()); }
