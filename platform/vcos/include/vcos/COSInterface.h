// The run-time face of everything in the class-object system: instances,
// classes, properties, methods, events, data types and listeners. Classes and
// members are themselves instances of meta classes, so every COSInterface can
// carry a class and instance data blocks.
//
// Lifetime: two intrusive counts, like a shared/weak pair. A reference of type
// 0 (strong) keeps the object alive; a reference of type 2 (weak) keeps only
// its memory, so isDestroyed() can always be asked through it. When the last
// strong reference goes, lastStrongReferenceReleased() runs (a live instance
// deletes itself there); the memory goes with the last reference of any type.
// Counts are plain integers: class-system work runs on the interpreter thread.
//
// A destroyed object is a valid shell: isDestroyed() and the counts work, and
// every other operation raises "VANTEL:vcos:InvalidHandle".
#pragma once

#include <cassert>
#include <cstdint>

#include "foundation/PlatformExport.h"
#include "vcos/COSInternedBase.h"
#include "vcos/COSValue.h"

class COSClass;
class COSClient;
class COSCustomMetaClass;
class COSEventData;
class COSInterfacePtr;
class COSListener;
class COSPropInfo;

namespace vcos::internal {
struct InstanceExtras;
class ObjectOps;
}  // namespace vcos::internal

// What a COSInterface is; the casts (cosiToClass, ...) test it.
enum class COSKind : unsigned char { Other, Instance, Class, Property, Method, Event, DataType, Listener, EventData };

// The four property events that property listeners receive.
enum class COSPropertyEvent : unsigned char { PreSet = 0, PostSet = 1, PreGet = 2, PostGet = 3 };
// "PreSet", "PostSet", "PreGet" or "PostGet": the event's name as listeners give it.
VCOS_API const char* cosPropertyEventName(COSPropertyEvent kind) noexcept;

class VCOS_API COSInterface {
 public:
  explicit COSInterface(COSKind kind = COSKind::Other) noexcept : kind_(kind) {}
  COSInterface(const COSInterface&) = delete;
  COSInterface& operator=(const COSInterface&) = delete;

  void addReference(int referenceType) noexcept {
    if (referenceType == 0) ++strong_;
    ++total_;
  }

  void releaseReference(int referenceType) {
    assert(total_ > 0 && "reference released twice");
    if (referenceType == 0) {
      assert(strong_ > 0 && "strong reference released twice");
      if (--strong_ == 0) {
        // Hold the memory while the object tears itself down; the teardown
        // may take and drop references of its own.
        ++total_;
        lastStrongReferenceReleased();
        --total_;
      }
    }
    if (--total_ == 0) delete this;
  }

  std::uint32_t strongReferenceCount() const noexcept { return strong_; }
  std::uint32_t referenceCount() const noexcept { return total_; }

  COSKind getKind() const noexcept { return kind_; }

  // The class of this instance, or the meta class of a class or member
  // object; null for objects outside the class system (data types, ...).
  COSClass* getClass() const noexcept { return class_; }
  // The data block of the class `classId` within this object, or null (also
  // for a destroyed object). O(1): the block's fixed offset from the object,
  // read at the id's block key in its class's table (or a slot probe in the
  // class's table and the entry in the object's block array, kept in its
  // side table, for an object whose blocks do not lie where its class's
  // layout puts them).
  void* getInstanceData(COSID classId) const noexcept;
  // The owner in the object tree (a strong reference), or null.
  void getOwner(COSInterfacePtr& out) const;
  COSInterface* getOwnerObject() const noexcept { return owner_; }

  bool isBeingDestroyed() const noexcept { return (state_ & kBeingDestroyed) != 0; }
  bool isDestroyed() const noexcept { return (state_ & kDestroyed) != 0; }
  // Raises "VANTEL:vcos:InvalidHandle" when destroyed.
  void checkValid() const {
    if (state_ & kDestroyed) raiseInvalidHandle();
  }

  // Property look-up: exact, then without regard to case, then by unique
  // prefix where the class allows truncation; dynamic properties too. An
  // ambiguous prefix raises "VANTEL:vcos:AmbiguousPropertyName". Null if none.
  void findProperty(COSInterfacePtr& out, COSID name) const;
  COSPropInfo* findPropertyInfo(COSID name) const;
  // Only among the properties added to this instance at run time.
  void findDynamicProperty(COSInterfacePtr& out, COSID name) const;

  // The client path: access check, property listeners, get/set methods (and
  // the custom set and get paths of the meta class where turned on). The
  // value from getPropertyValue belongs to the caller: give it back with
  // releasePropertyValue. A set value is borrowed.
  COSValue getPropertyValue(const COSClient* client, const COSPropInfo* property);
  void setPropertyValue(const COSClient* client, const COSPropInfo* property, COSValue value);
  void releasePropertyValue(const COSClient* client, const COSPropInfo* property, COSValue value);
  // For a caller that does the set path's work itself: true when a public
  // client's set of `property` (a property of the class) on this live object
  // would pass the access check and reach no listener; `customSet` is then
  // the meta class whose customSetPropertyValue the path would run, or null.
  bool isUnobservedPublicSet(const COSPropInfo* property, COSCustomMetaClass*& customSet) const noexcept;
  // Whether this object has property listeners of its own (class property
  // listeners are marked in the class's slots instead).
  bool hasOwnPropertyListeners() const noexcept;
  // The same with the property as found by findProperty; raises
  // "VANTEL:vcos:UnknownProperty" for a null or non-property pointer.
  COSValue getPropertyValue(const COSClient* client, const COSInterfacePtr& property);
  void setPropertyValue(const COSClient* client, const COSInterfacePtr& property, COSValue value);
  void releasePropertyValue(const COSClient* client, const COSInterfacePtr& property, COSValue value);

  // Sends the event synchronously to the listeners of this instance and the
  // class listeners of its classes, higher priority first. `eventData` may be
  // null (a plain event data object is made then).
  void notifyEvent(const COSClient* client, COSID eventId, COSEventData* eventData);

  // Full deletion. False when a class info refuses (isOkToDestroy) or the
  // object is already being deleted.
  bool deleteObject(const COSClient* client);
  // Puts every property whose isResetAllowed is true back to its default.
  void resetToClassDefaults();

  // Run-time properties of this instance; the instance holds them.
  void addDynamicProperty(COSPropInfo* property);
  void removeDynamicProperty(const COSPropInfo* property);

  // Instance listeners. The instance holds a strong reference to each. An
  // event that the class declares must admit `client` by its listen access
  // ("VANTEL:vcos:EventAccessDenied"). A property listener needs a property
  // that allows listeners for the event's kind
  // ("VANTEL:vcos:PropertyNotObservable") and whose get access admits
  // `client` ("VANTEL:vcos:PropertyListenDenied"). The forms without a
  // client add as the public client.
  void addListener(const COSClient* client, COSID eventId, COSListener* listener, int priority = 0);
  void addListener(COSID eventId, COSListener* listener, int priority = 0);
  void removeListener(COSID eventId, const COSListener* listener);
  void addPropertyListener(const COSClient* client, COSPropertyEvent kind, const COSPropInfo* property,
                           COSListener* listener);
  void addPropertyListener(COSPropertyEvent kind, const COSPropInfo* property, COSListener* listener);
  void removePropertyListener(COSPropertyEvent kind, const COSPropInfo* property, const COSListener* listener);

  // The object tree. The owner's chain holds each child with a strong
  // reference; a child's owner link is weak. The chain runs newest first.
  void hookChild(COSInterface* child);
  // Takes this object out of its owner's chain (no-op without an owner).
  void unhookFromOwner();
  COSInterface* getNewestChild() const noexcept { return newestChild_; }
  COSInterface* getOldestChild() const noexcept { return oldestChild_; }
  // Neighbours in the owner's chain: the next older and next newer sibling.
  COSInterface* getOlderSibling() const noexcept { return older_; }
  COSInterface* getNewerSibling() const noexcept { return newer_; }

 protected:
  virtual ~COSInterface();
  // Runs when the last strong reference goes. Instances delete themselves.
  virtual void lastStrongReferenceReleased();

 private:
  friend class vcos::internal::ObjectOps;
  friend class COSClass;

  // kHeapBlocks: the blocks are listed in an array in the side table, freed
  // with the blocks; kFixedBlocks: the blocks lie at their class's offsets;
  // kFixedBlocksPartial: they lie there but some are not made yet or freed
  // already, those with an ancestry index below blocksGone_;
  // kListedBlocks: they are being made into a list of the maker's (see
  // ObjectOps::BlockListScope); kEveryInfoAsked: with kFixedBlocks, every
  // class info of the ancestry was asked for its block, the skippable ones
  // too (an instance made before its class's steps were known), and each
  // is asked to free it.
  enum : unsigned char {
    kBeingDestroyed = 1,
    kDestroyed = 2,
    kHeapBlocks = 4,
    kFixedBlocks = 8,
    kFixedBlocksPartial = 16,
    kListedBlocks = 32,
    kEveryInfoAsked = 64
  };
  // Out of line: the look-up for an object whose blocks are listed, or are
  // being made or freed.
  void* listedInstanceData(COSID classId) const noexcept;
  [[noreturn]] static void raiseInvalidHandle();

  std::uint32_t strong_ = 0;
  std::uint32_t total_ = 0;
  COSKind kind_;
  unsigned char state_ = 0;
  unsigned char blocksGone_ = 0;  // see kFixedBlocksPartial
  COSClass* class_ = nullptr;
  vcos::internal::InstanceExtras* extras_ = nullptr;
  COSInterface* owner_ = nullptr;        // weak
  COSInterface* newestChild_ = nullptr;  // each child holds one strong count
  COSInterface* oldestChild_ = nullptr;
  COSInterface* older_ = nullptr;
  COSInterface* newer_ = nullptr;
};
