// Bits of the flag word of a COSPropT. Bits 0 to 14 have the layout that the
// library's own property base uses, so one decimal constant means the same on
// both (974: init, default, reset, copy, get and set listeners, inspect; 3022:
// the same and visible). The bits above 14 are the platform's own.
#pragma once

enum COSPropFlags : unsigned {
  COSPropAbstract = 1u << 0,
  COSPropInitAllowed = 1u << 1,
  COSPropDefaultAllowed = 1u << 2,
  COSPropResetAllowed = 1u << 3,
  COSPropSealed = 1u << 4,
  COSPropTransient = 1u << 5,
  COSPropCopyAllowed = 1u << 6,
  COSPropListenerGetAllowed = 1u << 7,
  COSPropListenerSetAllowed = 1u << 8,
  COSPropInspectAllowed = 1u << 9,
  COSPropAbortSet = 1u << 10,
  COSPropVisible = 1u << 11,
  COSPropStatic = 1u << 12,
  COSPropDependent = 1u << 13,
  // Inverted: when set the property holds no objects, whatever its type.
  COSPropNoInterfaces = 1u << 14,
  // Wins a prefix match against the other candidates.
  COSPropNeverAmbiguous = 1u << 15,
  COSPropWeakReference = 1u << 16,
  COSPropInternalDefault = 1u << 17,
  COSPropWarnOnCopyError = 1u << 18,
  COSPropGrandfathered = 1u << 19,
  // The usual word of an ordinary public property (3022).
  COSPropDefaultFlags = 3022,
};
