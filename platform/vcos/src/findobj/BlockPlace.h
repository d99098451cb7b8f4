// Not installed; internal to the findobj of class "handle".
//
// Where one data block of the instances of a class lies, found once per
// class: an instance that keeps its blocks at its class's fixed offsets
// (nearly all of them) has it at a known distance from the object, so a
// walk over many objects of one class finds it with one addition per
// object; the others are asked through their block arrays.
#pragma once

#include <cstddef>
#include <cstdint>

#include "vcos/COSClass.h"
#include "vcos/COSInterface.h"
#include "vcos/src/class/ClassTables.h"
#include "vcos/src/core/ObjectOps.h"

namespace vcos::search {

struct BlockPlace {
  int slot = -1;             // in the class's block table; -1: the class has none
  std::int32_t offset = 0;   // from the object, for fixed blocks; 0: not made
  bool fixed = false;        // the class's offsets are known

  // For the block at `slot` (-1: none) of the instances of `cls`.
  void bind(const COSClass* cls, int blockSlot) noexcept {
    slot = blockSlot;
    fixed = false;
    offset = 0;
    if (!cls || slot < 0) return;
    const internal::ClassTables& t = cls->tables();
    if (t.blockOffsetsKnown && static_cast<std::size_t>(slot) < t.blockOffsets.size()) {
      fixed = true;
      offset = t.blockOffsets[static_cast<std::size_t>(slot)];
    }
  }

  // The block of `o`, an instance of the class bound, or null.
  const void* in(const COSInterface* o) const noexcept {
    if (slot < 0) return nullptr;
    // Fixed blocks are flagged only once all of them are made, and lose the
    // flag when the first goes.
    if (fixed && internal::ObjectOps::hasFixedBlocks(o))
      return offset ? reinterpret_cast<const char*>(o) + offset : nullptr;
    return internal::ObjectOps::blockAt(o, static_cast<std::size_t>(slot));
  }
};

}  // namespace vcos::search
