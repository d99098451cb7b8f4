// Not installed; internal to the built-in classes of the class-object system.
//
// A method of a built-in class: a plain function with the array calling
// convention (every word a vxArray*), registered with a name, a description,
// the input counts it takes and whether it is static.
#pragma once

#include "vcos/COSMethodBase.h"
#include "vx/vxTypes.h"

namespace vcos::builtin {

class Method final : public COSMethodBase {
 public:
  // `nlhs` comes in as the outputs asked for; the body may raise 0 to 1.
  using Body = void (*)(const COSClient* client, int& nlhs, vxArray* plhs[], int nrhs, const vxArray* prhs[]);

  struct Row {
    const char* name;
    Body body;
    const char* description;
    int minInputs;   // the object counts as an input of an instance method
    int maxInputs;   // -1: any number
    int maxOutputs;  // -1: any number
    bool isStatic;
  };

  Method(COSID classId, const Row& row);
  void invoke(const COSClient* client, int& nlhs, COSValue* plhs, int nrhs, const COSValue* prhs) const override;

  // Adds the methods of a table to a class in initializeClass.
  template <std::size_t N>
  static void addAll(COSClass* cls, const Row (&rows)[N]) {
    for (const Row& r : rows) add(cls, r);
  }
  static void add(COSClass* cls, const Row& row);

 private:
  Body body_;
};

}  // namespace vcos::builtin
