// Not installed; internal to the class-object system.
//
// The tables of one class: ancestry and block slots, the merged property,
// method and event tables with their id indexes, and class listeners.
#pragma once

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

struct PropSlot {
  COSPropInfo* property = nullptr;
  // The meta class whose customSetPropertyValue takes the sets of this
  // property (the one that turned it on); null for the plain path. A subclass
  // inherits the mark with the meta class that set it.
  COSCustomMetaClass* customSet = nullptr;
};

struct MethodGroup {
  COSID name;
  std::vector<COSMethodInfo*> candidates;  // most derived first
};

struct ClassListener {
  COSInterfacePtr listener;
  int priority = 0;
  std::uint64_t sequence = 0;
};

struct ClassTables {
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

  // Ancestor class id -> index into the instance's block array.
  IdTable<std::uint32_t> blockSlot;
  // Objects whose blocks wait for this (meta) class's slot table.
  std::vector<COSInterface*> pendingInstances;
  // Properties turned on for the custom set path before the table existed.
  std::vector<COSID> pendingCustomSet;
  // The name of the constructor method (the last component of the class name).
  COSID constructorId;

  std::vector<std::pair<COSID, std::vector<ClassListener>>> classListeners;
  std::size_t classListenerCount = 0;

  // The meta classes of this class's members.
  COSID metaPropertyId, metaMethodId, metaEventId;
  COSCustomMetaClass* metaInfo = nullptr;

  bool truncationAllowed = false;
  bool caseInsensitive = true;
};

// The class info of the meta class of `cls`, when it is a COSCustomMetaClass.
// A unique-prefix match among `candidates`; null for none, raises for an
// ambiguous prefix.
COSPropInfo* matchByPrefix(const std::vector<COSPropInfo*>& candidates, COSID name, const char* className);

inline COSCustomMetaClass* metaInfoOf(const COSClass* cls) noexcept { return cls->tables().metaInfo; }

}  // namespace vcos::internal
