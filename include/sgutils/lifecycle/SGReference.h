// The data block at the root of every graphics object and of the lighter
// reference objects: the object's own (weak) reference, its numeric handle
// and the applying-defaults flag, with the stage hooks that a new object
// passes through in order (Setup, CreationComplete, ApplyingDefaults,
// DefaultsApplied; SetupFailed when construction fails).
#pragma once

#include <cstddef>
#include <cstdint>
#include <utility>

#include "sgutils/lifecycle/CVObject.h"
#include "sgutils/SgutilsExport.h"
#include "sgutils/defaults/PropValuePairs.h"
#include "vcos/COSInterfacePtr.h"

class COSClass;
struct vxArray;

class SGUTILS_API SGReference : public CVObject {
 public:
  SGReference() noexcept = default;
  SGReference(const SGReference&) = delete;
  SGReference& operator=(const SGReference&) = delete;
  virtual ~SGReference();

  // Blocks come from per-thread pools of a few sizes (BlockPool.cpp): objects
  // are made and deleted by the thousand, so their blocks skip the general
  // allocator and sit together in memory.
  static void* operator new(std::size_t size);
  static void operator delete(void* block, std::size_t size) noexcept;

  // Stage hooks. A chain of blocks runs its Setup base first; the others
  // forward to the base only for a live object.
  virtual void Setup(COSInterfacePtr object);
  virtual void SetupFailed(COSInterfacePtr object);
  virtual void CreationComplete(COSInterfacePtr object);
  virtual void ApplyingDefaults(COSInterfacePtr object);
  virtual void DefaultsApplied(COSInterfacePtr object, bool fromReset);
  // Collects the defaults that apply under `parent` and sets them:
  // ApplyingDefaults, the pairs, DefaultsApplied.
  virtual void applyDefaultProperties(COSInterfacePtr parent, bool fromReset);

  // The hooks of this block's class that do more than trace a line and hand
  // on to the base: a bit per hook. Every bit is set here, so a block that
  // overrides a hook by hand runs it; the generated classes (whose hooks
  // only trace and hand on, save the Setup members they name) answer for
  // their line. A class that overrides a hook by hand overrides this too.
  enum StageHook : unsigned {
    kSetupActs = 1u << 0,
    kCreationCompleteActs = 1u << 1,
    kApplyingDefaultsActs = 1u << 2,
    kDefaultsAppliedActs = 1u << 3,
    kAllHooksAct = 0xFu,
  };
  virtual unsigned stageHooksThatAct() const noexcept { return kAllHooksAct; }
  // The hooks as the construction and defaults paths run them: the virtual
  // hook when it acts, when the generated classes' trace is on (their lines
  // must come), or for an object that is not live (where a generated hook
  // stops); otherwise only what this class's own hook does.
  void runSetup(const COSInterfacePtr& object) { runSetup(object, stageHooksThatAct()); }
  void runCreationComplete(const COSInterfacePtr& object) { runCreationComplete(object, stageHooksThatAct()); }
  // The same for a block whose stageHooksThatAct answered `acts` already.
  void runSetup(const COSInterfacePtr& object, unsigned acts);
  void runCreationComplete(const COSInterfacePtr& object, unsigned acts);
  void runApplyingDefaults(const COSInterfacePtr& object);
  void runDefaultsApplied(const COSInterfacePtr& object, bool fromReset);

  // The object itself, as a strong reference (null before allocation).
  COSInterfacePtr getCOSReference() const { return COSInterfacePtr(cosReference_, COSStrongReference); }
  // Stores a weak reference: the block never keeps its object alive.
  void setCOSReference(const COSInterfacePtr& object) {
    COSInterface* next = object.get();
    if (next) next->addReference(COSWeakReference);
    if (COSInterface* old = std::exchange(cosReference_, next)) old->releaseReference(COSWeakReference);
  }
  COSInterface* getCOSObject() const noexcept { return cosReference_; }

  double getDoubleRef() const noexcept { return doubleRef_; }
  void setDoubleRef(double value) noexcept { doubleRef_ = value; }
  bool isApplyingDefaults() const noexcept { return applyingDefaults_ != 0; }

  // Drops every default stored on this object.
  void clearDefaultProperty();
  // The names and values of the defaults that apply to this object under
  // `parent`: the stores of the ancestors for this object's class, root
  // first, so that a nearer ancestor's value comes later and wins.
  sgutils::PropValuePairs getDefaultPropValuePairs(const COSInterfacePtr& parent);

  // The process-wide AbortSet switch (false at first).
  static bool getAbortSet() noexcept;
  static void setAbortSet(bool value) noexcept;
  static COSClass* getClassInstance();

 protected:
  void setApplyingDefaults(bool on) noexcept { applyingDefaults_ = on ? 1 : 0; }

 private:
  friend class SGHandle;
  // Lets go of the weak reference to the object (at the latest when the
  // block goes).
  void releaseCOSReference() noexcept {
    if (COSInterface* old = std::exchange(cosReference_, nullptr)) old->releaseReference(COSWeakReference);
  }
  // The weak reference held by hand as a bare pointer (a counted pointer
  // carries its kind beside it and takes 16 bytes); the 4-byte flag last, so
  // that a subclass's first 4-byte member fills the padding after it.
  COSInterface* cosReference_ = nullptr;
  double doubleRef_ = -1.0;
  std::int32_t applyingDefaults_ = 1;
};

// Whether a stage hook may forward: a live object that is not being deleted.
inline bool isLiveForHooks(const COSInterfacePtr& object) noexcept {
  return object && !object->isDestroyed() && !object->isBeingDestroyed();
}
