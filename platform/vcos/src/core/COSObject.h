// Not installed; internal to the class-object system.
//
// An instance of a class. Small ancestries keep their data-block pointers
// inline; the last strong reference of a live instance deletes it. Instances
// come from a slot pool, so objects made in a row are neighbours in memory.
#pragma once

#include <atomic>
#include <cstddef>

#include "vcos/COSInterface.h"

namespace vcos::internal {

class COSObject final : public COSInterface {
 public:
  static constexpr int kInlineBlocks = 6;
  COSObject() noexcept;
  static void* operator new(std::size_t size);
  static void operator delete(void* p) noexcept;
  void** inlineBlocks() noexcept { return inline_; }
  static std::size_t live() noexcept;

 protected:
  ~COSObject() override;
  void lastStrongReferenceReleased() override;

 private:
  void* inline_[kInlineBlocks] = {};
};

}  // namespace vcos::internal
