// Bits of the flag word of a COSPropT. A set bit turns the quality on.
#pragma once

enum COSPropFlags : unsigned {
  COSPropTransient = 0x001,
  COSPropVisible = 0x002,
  COSPropCopyAllowed = 0x004,
  COSPropResetAllowed = 0x008,
  COSPropDependent = 0x010,
  COSPropStatic = 0x020,
  COSPropInitAllowed = 0x040,
  COSPropDefaultAllowed = 0x080,
  COSPropListenerGetAllowed = 0x100,
  COSPropListenerSetAllowed = 0x200,
  COSPropAbortSet = 0x400,
  // Never matched ambiguously: wins a prefix match against the others.
  COSPropNeverAmbiguous = 0x800,
  COSPropAbstract = 0x1000,
  COSPropSealed = 0x2000,
  COSPropWeakReference = 0x4000,
  COSPropInternalDefault = 0x8000,
  COSPropInspectAllowed = 0x10000,
  COSPropWarnOnCopyError = 0x20000,
  COSPropGrandfathered = 0x40000,
  // The usual word of an ordinary public property.
  COSPropDefaultFlags = 0x3CE,
};
