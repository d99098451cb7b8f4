// An access list: the classes (and their subclasses) that may use a member
// besides its defining class. A member with a list ignores its plain
// MemberAccess.
#pragma once

#include <initializer_list>
#include <vector>

#include "vcos/COSInternedBase.h"

class ExtendedMemberAccess {
 public:
  ExtendedMemberAccess() = default;
  ExtendedMemberAccess(std::initializer_list<COSID> classes) : classes_(classes) {}
  void add(COSID classId) { classes_.push_back(classId); }
  const std::vector<COSID>& classes() const noexcept { return classes_; }

 private:
  std::vector<COSID> classes_;
};
