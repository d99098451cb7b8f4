// Test blocks of class infos written for the block tests: made in the
// object's room while it has space (or on the heap when a test asks for a
// block off its place), and freed from wherever they lie.
#pragma once

#include <new>

#include "vcos/BlockArena.h"
#include "vcos/COSInterface.h"

namespace sgtest {

template <class Block>
void* makeRoomBlock(bool outside) {
  if (!outside)
    if (void* room = vcos::blockarena::allocate(sizeof(Block))) return ::new (room) Block;
  return new Block;
}

template <class Block>
void freeRoomBlock(void* b) {
  if (vcos::blockarena::owns(b))
    static_cast<Block*>(b)->~Block();
  else
    delete static_cast<Block*>(b);
}

// Whether the object answers a block for the class, as a word for the record.
inline const char* foundBlock(COSInterface* o, const COSID& id) { return o->getInstanceData(id) ? "found" : "none"; }

}  // namespace sgtest
