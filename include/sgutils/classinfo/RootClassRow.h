// One row describing a root class of the library (Graphics, ReferenceObject,
// GraphicsPropertyHandler, StorageObject, GraphicsPlaceholder): its names,
// its answers to the class system, its superclasses in their final order
// and the closed list of classes that may derive from it.
#pragma once

#include <cstddef>
#include <optional>
#include <span>

struct RootClassRow {
  const char* name;
  const char* description;
  const char* detailedDescription;
  bool handle;
  bool abstract;
  bool sealed;
  // Unset: the class system's own answer.
  std::optional<bool> childrenSaved;
  bool truncationAllowed;
  // Full names, in the order the class lists them. The first `firstCount`
  // are added as first superclasses, the rest after them.
  std::span<const char* const> superclasses;
  std::size_t firstCount;
  // Applied while graphics classes are sealed; empty for an open class.
  std::span<const char* const> allowedSubclasses;
};
