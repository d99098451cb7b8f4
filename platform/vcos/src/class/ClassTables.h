// Not installed; internal to the class-object system.
//
// The tables of one class: ancestry and block slots, the merged property,
// method and event tables with their id indexes, and class listeners.
#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "vcos/src/core/IdTable.h"
#include "vcos/COSClass.h"
#include "vcos/COSEventInfo.h"
#include "vcos/COSMethodInfo.h"
#include "vcos/COSPropInfo.h"
#include "vcos/ExtendedMemberAccess.h"

class COSCustomMetaClass;

namespace vcos::internal {

// Bits of PropSlot::route: why the client path leaves its plain course for
// this property. One test of the byte keeps the common case fast.
enum PropRoute : unsigned char {
  kRouteCustomSet = 1,       // sets go through customSet
  kRouteCustomGet = 2,       // gets and releases go through customGet
  kRouteClassListeners = 4,  // the class or an ancestor has property listeners on it
};
// The bits that take a get, or a set, off the plain course.
constexpr unsigned char kGetRoutes = kRouteCustomGet | kRouteClassListeners;
constexpr unsigned char kSetRoutes = kRouteCustomSet | kRouteClassListeners;

// Where the block of one class lies in an instance (ClassTables::blockSlot).
struct BlockSlot {
  std::uint32_t index = 0;  // into the ancestry and an object's block array
  std::int32_t offset = 0;  // from the instance, for fixed blocks; 0: none
};

struct PropSlot {
  COSPropInfo* property = nullptr;
  // The meta classes whose customSetPropertyValue, and whose
  // customGetPropertyValue with customReleasePropertyValue, take this
  // property (the ones that turned the paths on); null for the plain path. A
  // subclass inherits the marks with the meta classes that set them.
  COSCustomMetaClass* customSet = nullptr;
  COSCustomMetaClass* customGet = nullptr;
  unsigned char route = 0;  // PropRoute bits
};

struct MethodGroup {
  COSID name;
  std::vector<COSMethodInfo*> candidates;  // most derived first
};

struct ClassListener {
  COSInterfacePtr listener;
  int priority = 0;
  std::uint64_t sequence = 0;
  // Sorted as the instance's own listener added before any other.
  bool firstOfInstance = false;
};

// A listener on a property event of a property (by name) of every instance
// of the class and its subclasses.
struct ClassPropertyListener {
  COSID property;
  COSPropertyEvent kind = COSPropertyEvent::PreSet;
  COSInterfacePtr listener;
  std::uint64_t sequence = 0;
};

// Moves on every change to any class's class listeners (added, removed, or
// gone with their class): the listeners an ancestry holds for an event, once
// gathered, stay true while it has not moved.
extern std::uint64_t classListenerEpoch;

// Moves on every method added to a built class, and when a class goes: the
// constructor a class chose for its instances is chosen again.
extern std::uint64_t methodTableEpoch;

// The constructor that makes the instances of a class: the first class of
// the ancestry that defines its own, found at `epoch` (0: never found).
// `openWithoutInputs`: a call of it without inputs reaches its entry for
// every client (the only candidate of its name, public without an access
// list, a signature that takes no inputs).
struct ConstructorChoice {
  std::uint64_t epoch = 0;
  COSClass* definer = nullptr;
  COSMethodInfo* ctor = nullptr;
  bool openWithoutInputs = false;
};

// The class listeners that the ancestry of a class holds for one event, in
// ancestry order, as gathered at `epoch` (0: never gathered), with the
// class's event of that id (null for none) found at the same time: an event
// added to a class moves the epoch too.
//
// `quiet`: none of the listeners would run for an instance without extras
// (no listeners of its own, no properties added at run time), as their ops
// answered at the property route epoch `quietEpoch` (0: not asked yet).
struct AncestryListeners {
  COSID eventId;
  std::uint64_t epoch = 0;
  COSEventInfo* event = nullptr;
  std::vector<const COSListener*> listeners;
  std::uint64_t quietEpoch = 0;
  bool quiet = false;
  // The public client may send the event (no event of the id, or one it is
  // admitted to).
  bool publicSends = true;
};

struct ClassTables {
  ClassTables() = default;
  ClassTables(const ClassTables&) = delete;
  ClassTables& operator=(const ClassTables&) = delete;
  // A class that goes takes its listeners with it.
  ~ClassTables() {
    if (classListenerCount) ++classListenerEpoch;
  }

  enum class State : unsigned char { Initializing, SlotsReady, Ready };
  State state = State::Initializing;

  std::vector<COSClass*> superclasses;
  std::vector<COSClass*> ancestry;
  std::vector<COSID> allowedSubclasses;
  bool closedList = false;

  // Members added by this class (strong references; the class owns them).
  std::vector<COSInterfacePtr> ownProperties;
  std::vector<COSInterfacePtr> ownMethods;
  std::vector<COSInterfacePtr> ownEvents;

  std::vector<PropSlot> properties;
  IdTable<std::uint32_t> propertyIndex;
  IdTable<std::uint32_t> foldedPropertyIndex;
  std::vector<MethodGroup> methods;
  IdTable<std::uint32_t> methodIndex;
  std::vector<COSEventInfo*> events;
  IdTable<std::uint32_t> eventIndex;

  // Ancestor class id -> where its block lies in an instance: the index into
  // the block array of an object that has one, and the offset from the
  // instance of a block at a fixed place (see blockOffsets).
  IdTable<BlockSlot> blockSlot;
  // Per ancestry index: the offset from an instance of this class to the
  // block of that class, the same for every instance made with the class's
  // room (0 for a class that makes no block). Learnt from the first
  // instance whose blocks all lie in its room or are null; an instance whose
  // blocks lie elsewhere keeps a block array instead.
  std::vector<std::int32_t> blockOffsets;
  // The same by the block key of a class id (InternedEntry::blockKey; 0
  // where this class has no block of it): the look-up of a fixed block reads
  // it without a probe.
  std::vector<std::int32_t> offsetByKey;
  // The ancestry index of the block at each key: an object whose blocks are
  // made or freed in part answers only those at or past its blocksGone_.
  std::vector<std::uint8_t> indexByKey;
  // The ancestry indices whose class info allocates a block, base first,
  // with their offsets: what is checked when an instance is made and freed
  // when it is deleted.
  std::vector<std::pair<std::uint32_t, std::int32_t>> fixedBlocks;
  bool blockOffsetsKnown = false;
  // The calls that make and free the blocks of an instance at the fixed
  // offsets, base first: the entries of fixedBlocks less those whose class
  // info may skip its answer (COSClassInfo::isSharedAnswerSkippable) and
  // whose first instance got null or a block made before its own. Worked
  // out with the offsets, so an instance is made by a plain loop.
  struct BlockStep {
    COSClassInfo* info;
    std::uint32_t index;     // into the ancestry
    std::int32_t offset;     // from the instance; 0: the block is null
    std::uint32_t position;  // in fixedBlocks
  };
  std::vector<BlockStep> blockSteps;
  // Objects whose blocks wait for this (meta) class's slot table.
  std::vector<COSInterface*> pendingInstances;
  // Properties turned on for the custom set or get path before the table
  // existed.
  std::vector<COSID> pendingCustomSet;
  std::vector<COSID> pendingCustomGet;
  // Some slot routes gets through a custom meta class; releases look then.
  bool anyCustomGet = false;
  // The name of the constructor method (the last component of the class name).
  COSID constructorId;
  ConstructorChoice constructor;
  // Per-class answers for making instances, found on the first instance:
  // the ancestry indices whose class info allocates a block (base first).
  std::vector<std::uint32_t> allocatingBlocks;
  bool allocatingBlocksKnown = false;
  // The room that an instance's slot keeps for its blocks: what the blocks
  // of the first instance made by createInstance asked for (0 past the
  // largest room).
  bool blockRoomKnown = false;
  std::uint32_t blockRoom = 0;

  std::vector<std::pair<COSID, std::vector<ClassListener>>> classListeners;
  std::size_t classListenerCount = 0;
  // The events sent to every instance ("InstanceCreated",
  // "ObjectBeingDestroyed") ask these first: most have no listener that
  // would run, and then nothing is dispatched without a walk of the ancestry.
  std::array<AncestryListeners, 2> ancestryListeners;
  std::vector<ClassPropertyListener> propertyListeners;

  // The meta classes of this class's members.
  COSID metaPropertyId, metaMethodId, metaEventId;
  COSCustomMetaClass* metaInfo = nullptr;

  bool truncationAllowed = false;
  bool caseInsensitive = true;
};

// Whether a notification of `eventId` from the public client to an
// instance of `cls` without extras (no listener of its own, no property
// added at run time) would do nothing at all: no class listener of the
// ancestry would run for it, and the public client may send it. Asked from
// the kept answer of notifyEvent, without a walk.
bool sendsToNoOneSlow(const COSClass* cls, COSID eventId) noexcept;
inline bool sendsToNoOne(const COSClass* cls, COSID eventId) noexcept {
  const auto& cache = cls->tables().ancestryListeners;
  const AncestryListeners& e = cache[0].eventId == eventId ? cache[0] : cache[1];
  if (e.eventId == eventId && e.epoch == classListenerEpoch && e.listeners.empty()) return e.publicSends;
  return sendsToNoOneSlow(cls, eventId);
}

// The class info of the meta class of `cls`, when it is a COSCustomMetaClass.
// A unique-prefix match among `candidates`; null for none, raises for an
// ambiguous prefix.
COSPropInfo* matchByPrefix(const std::vector<COSPropInfo*>& candidates, COSID name, const char* className);

inline COSCustomMetaClass* metaInfoOf(const COSClass* cls) noexcept { return cls->tables().metaInfo; }

// Sets the kRouteClassListeners bit of each slot of `t` (a class whose
// ancestry is known) whose property some class of the ancestry has class
// property listeners on, and clears it elsewhere.
void markClassListenedSlots(ClassTables& t) noexcept;

}  // namespace vcos::internal
