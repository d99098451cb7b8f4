// The node of the cross-system workloads: a graphics object whose class,
// "sg2utils.AnchorNode", derives from "vantel.graphics.Graphics" and from the
// generated AnchorNodeData (a colour triple and a bool triple with a mode).
#pragma once

#include "sgutils/objects/AnchorNodeData.gen.h"
#include "vcos/COSInterfacePtr.h"

class COSClass;
class COSInterface;

namespace sgbench {

// Starts the library and registers the classes (once); the node class.
COSClass* anchorNodeClass();
// A new node through the class's constructor, in no tree yet.
COSInterfacePtr newAnchorNode();
// The node's generated block, where its typed accessors are.
AnchorNodeData& nodeData(COSInterface* node);

}  // namespace sgbench
