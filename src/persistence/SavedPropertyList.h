// Not installed. The properties of a class that a file keeps, sorted once
// per class and kept for the process, so that saving or loading an object
// walks a short list and looks no name up.
#pragma once

#include <cstddef>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "vcos/COSDataTypePtr.h"

class COSClass;
class COSPropInfo;

namespace sgutils::persistence {

struct SavedPropertyList {
  // Properties whose values are written, in the class's order: not
  // transient, not dependent, with an array form, not Parent or Children
  // (the tree is written as child lists).
  std::vector<const COSPropInfo*> properties;
  // Per property, the index of the first of its group: a value and its
  // mode ("X" or "X_I" with "XMode") form one group, written together or
  // not at all, since loading a value may turn its mode manual.
  std::vector<std::size_t> group;
  // Per property, whether a value equal to a new object's may be left out
  // of a file. Scalar floats compare by their bits (-0, NaN); arrays by
  // class, shape and bytes (numeric, logical and char), or as empties of the
  // same class and shape (a struct without fields too), so an array holding
  // objects never matches; other values that can hold objects only when
  // neither holds one; the rest by their type's equality.
  enum class Omit : unsigned char { Never, WhenBitsEqual, WhenArrayBitsEqual, WhenEqualWithoutObjects, WhenEqual };
  std::vector<Omit> omit;
  // Per property, its data type, held once rather than asked per value.
  std::vector<COSDataTypePtr> types;
  // Per property, whether it is a mode (see isMode), worked out once.
  std::vector<unsigned char> mode;
  // The index of "SerializableApplicationData", or -1: the saver reads it
  // from the object's Graphics block without the copy its getter makes.
  std::ptrdiff_t applicationData = -1;

  // The index of a property by its name, or -1: the fields of a file are
  // found by hash, not by a walk of the list.
  std::ptrdiff_t find(std::string_view name) const {
    auto found = byName.find(name);
    return found == byName.end() ? -1 : static_cast<std::ptrdiff_t>(found->second);
  }
  std::unordered_map<std::string_view, std::size_t> byName;  // views of the properties' own names

  static const SavedPropertyList& of(COSClass* cls);
  // Whether a property is a mode ("<name>Mode"), set after the values so
  // that a mode read from a file is the mode the object ends with.
  static bool isMode(const COSPropInfo* property);
};

}  // namespace sgutils::persistence
