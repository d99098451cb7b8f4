// Access levels of members and classes. A member's access is checked on the
// client path only (get, set, method calls, events), never when a property
// info is used directly.
#pragma once

enum MemberAccess : unsigned char {
  PublicAccess = 0,     // everyone
  ProtectedAccess = 1,  // the defining class and its subclasses
  PrivateAccess = 2,    // the defining class alone
  NoAccess = 3,         // nobody on the client path
};

// Access of a class itself (who may name and construct it).
enum ClassAccess : unsigned char { ClassPublic = 0, ClassHidden = 1 };

// How objects of a class connect in the tree.
enum COSConnectivity : unsigned char {
  COSConnectNone = 0,
  COSConnectChild = 1,   // may be hooked under an owner
  COSConnectParent = 2,  // may own children
  COSConnectTree = 3,    // both
};
