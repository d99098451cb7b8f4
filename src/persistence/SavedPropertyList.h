// Not installed. The properties of a class that a file keeps, sorted once
// per class and kept for the process, so that saving or loading an object
// walks a short list and looks no name up.
#pragma once

#include <vector>

class COSClass;
class COSPropInfo;

namespace sgutils::persistence {

struct SavedPropertyList {
  // Properties whose values are written, in the class's order: not
  // transient, not dependent, with an array form, not Parent or Children
  // (the tree is written as child lists).
  std::vector<const COSPropInfo*> properties;

  static const SavedPropertyList& of(COSClass* cls);
  // Whether a property is a mode ("<name>Mode"), set after the values so
  // that a mode read from a file is the mode the object ends with.
  static bool isMode(const COSPropInfo* property);
};

}  // namespace sgutils::persistence
