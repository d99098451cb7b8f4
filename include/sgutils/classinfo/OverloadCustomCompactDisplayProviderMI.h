// compactRepresentationForSingleLine and compactRepresentationForColumn of
// graphics objects: the text that stands for an array of objects inside a
// struct or a cell, its dimensions and class with the short class name
// ("1x1 Line"), and "Graphics" for an array that mixes classes.
// (object, displayConfiguration) to one output; the text comes from the
// function "vantel.display.DimensionsAndClassNameRepresentation".
#pragma once

#include "sgutils/SgutilsExport.h"
#include "vcos/COSMethodBase.h"

class SGUTILS_API OverloadCustomCompactDisplayProviderMI : public COSMethodBase {
 public:
  // `name` is one of the two method names.
  OverloadCustomCompactDisplayProviderMI(COSID classId, const char* name);
  void invoke(const COSClient* client, int& nlhs, COSValue* plhs, int nrhs, const COSValue* prhs) const override;
};
