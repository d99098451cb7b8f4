// The tree of the workloads and the searches over it: a root, 100
// containers, 1,000 leaves under each (100,101 objects); every tenth leaf of
// each container selected.
#pragma once

#include <cstddef>

#include "vcos/COSInterfacePtr.h"

class COSInterface;

namespace sgbench {

constexpr int kContainers = 100;
constexpr int kLeaves = 1000;
constexpr int kSelectEvery = 10;
constexpr int kObjects = 1 + kContainers + kContainers * kLeaves;

// Builds root -> containers -> leaves; each child is made, then hooked below
// its parent, which holds it from then on.
COSInterfacePtr buildTree(int containers = kContainers, int leaves = kLeaves);
// Deletes the root and with it the tree, and drops the caller's reference.
void destroyTree(COSInterfacePtr& root);
// Child `index` of `parent`, oldest first (the order they were hooked).
COSInterface* childAt(COSInterface* parent, int index);
// Selects leaf i of every container where i % kSelectEvery == 0.
void markSelected(COSInterface* root);
// Counts the objects below and including `root` whose "Selected" is on:
// findobj with the value given as text, or a walk with the typed getter.
std::size_t findSelectedByName(COSInterface* root);
std::size_t findSelectedTyped(COSInterface* root);

}  // namespace sgbench
