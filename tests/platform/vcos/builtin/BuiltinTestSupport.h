// Classes of a small library on top of the built-in ones, in package "bt":
//   bt.Node     handle + dynamicprops; Name, Value, Tag; event "Ping"
//   bt.Folder   a Node whose class reports its own children list (all but
//               children named "secret"), newest first
//   bt.Shape    handle + vantel.mixin.Heterogeneous, abstract; its default
//               element is a new bt.Blank
//   bt.Square, bt.RedSquare (a Square), bt.Round, bt.Blank: Shapes
//   bt.Plain    a bare handle class
//   bt.Shown    handle + vantel.mixin.CustomDisplay; Name, Value
//   bt.Footed   a Shown with a footer of its own
//   bt.Wrapped  a handle class with a counted C++ block and a loadobj that
//               records its call
// Function handles made by fn() run a C++ callable through the dispatcher.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "vcos/ObjectArray.h"
#include "vcos/FunctionDispatcher.h"
#include "vcos/ObjectCalls.h"
#include "vcos/vcos.h"
#include "vx/vx.h"
#include "support/ErrorId.h"

namespace bt {

struct WrappedBlock {
  WrappedBlock() { ++alive; }
  ~WrappedBlock() { --alive; }
  static int alive;
};
struct LoadobjCall {
  int inputs = 0;
  bool firstIsObjectArray = false;
  COSInterface* second = nullptr;
};
LoadobjCall& lastLoadobj();

// Registers the built-in classes and this package (once).
void setUp();

COSInterfacePtr make(const char* className);
// A 1-by-1 array of the object.
matrix::unique_vxArray arr(const COSInterfacePtr& object);
// A column of the objects, of the class named (narrowed afterwards by the
// caller where wanted).
matrix::unique_vxArray column(const std::vector<COSInterfacePtr>& objects, const char* className = "handle");
matrix::unique_vxArray text(const char* s);
matrix::unique_vxArray number(double d);

void setValue(const COSInterfacePtr& o, const char* property, const vxArray* value);
matrix::unique_vxArray getValue(const COSInterfacePtr& o, const char* property);
std::string getText(const COSInterfacePtr& o, const char* property);

// A function handle whose call runs `body` with the inputs; its output, if
// any, is what `body` returns (null for none).
using Body = std::function<vxArray*(int nrhs, const vxArray* prhs[])>;
matrix::unique_vxArray fn(Body body);

// Calls a method by name on the class of the first input, as the language
// does; returns the first output (null when none).
matrix::unique_vxArray call(const char* method, std::vector<const vxArray*> inputs, int nlhs = 1);

// The objects of an object array, in order.
std::vector<COSInterface*> objectsOf(const vxArray* a);
// The Name of each object, for readable expectations.
std::vector<std::string> namesOf(const vxArray* a);

using sgtest::errorId;

}  // namespace bt
