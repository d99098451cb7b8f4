// The numbers that stand for objects. An object is given a number the first
// time one is asked for, and keeps it until vcos_destroy_handle: figures
// take the smallest whole number not in use, every other object a unique
// number that is not whole. The table holds its objects weakly, so a number
// never keeps an object alive; the number of a deleted object names nothing.
// Interpreter thread only.
#pragma once

#include <cstddef>

#include "sgdatatypes/DatatypesExport.h"

class COSInterface;

namespace graphics::datatype {

class SGDATATYPES_API HandleNumberTable {
 public:
  // The object's number, assigned on first request. Null and deleted objects
  // get no number: the answer is NaN.
  static double numberFor(COSInterface* object);
  // The live object of that number (borrowed), or null: for a number that
  // was never given, was removed, or whose object has been deleted.
  static COSInterface* objectFor(double number) noexcept;
  // The object of that number even when it has been deleted (its shell), or
  // null when the number is not in the table.
  static COSInterface* entryFor(double number) noexcept;
  // Removes the number (its object is being deleted); unknown numbers and
  // NaN are ignored.
  static void remove(double number) noexcept;
  // True when the number named an object that has since been deleted (the
  // most recent 65,536 such numbers are known).
  static bool isRetired(double number) noexcept;
  // Removes the object's number, if it has one (an object being deleted
  // whose number was asked for without its block learning it).
  static void removeObject(COSInterface* object) noexcept;
  // Numbers in the table.
  static std::size_t size() noexcept;
  // Empties the table (at termination).
  static void clear() noexcept;
};

// Removes the number of an object that is being deleted.
SGDATATYPES_API void vcos_destroy_handle(double number) noexcept;

}  // namespace graphics::datatype
