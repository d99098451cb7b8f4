// The default and factory handlers of GraphicsPropertyHandler, and getdisp
// and setdisp of graphics objects. The handlers work on element 0 of their
// object input and leave the values to the default store.
#include <string>
#include <vector>

#include "foundation/core/except/Error.h"
#include "sgutils/classinfo/SGDefaultFactoryPropHandlerBaseMI.h"
#include "sgutils/classinfo/SGFilterDefaultFactoryPropMI.h"
#include "sgutils/classinfo/SGGetDefaultPropValueMI.h"
#include "sgutils/classinfo/SGGetDispMI.h"
#include "sgutils/classinfo/SGGetFactoryPropValueMI.h"
#include "sgutils/classinfo/SGSetDefaultPropValueMI.h"
#include "sgutils/classinfo/SGSetDispMI.h"
#include "sgutils/defaults/DefaultNameAccess.h"
#include "sgutils/defaults/DefaultProp.h"
#include "sgutils/defaults/DefaultPropString.h"
#include "vcos/COSCasts.h"
#include "vcos/COSClass.h"
#include "vcos/COSMethodSignature.h"
#include "vcos/COSPropInfo.h"
#include "vcos/COSTypeRepository.h"
#include "vcos/FunctionDispatcher.h"
#include "vcos/ObjectArray.h"
#include "vx/matrix.h"
#include "vx/vxCreate.h"
#include "vx/vxQuery.h"
#include "vx/vxText.h"

using foundation::core::except::Error;

namespace {

const vxArray* arrayOf(const COSValue& value) { return value.asPointer<const vxArray>(); }

// Element 0 of the object input and the name, checked: an empty name is no
// property of the object's class.
struct HandlerInput {
  COSInterfacePtr object;
  std::string name;
};

HandlerInput readInput(int nrhs, const COSValue* prhs, int minimum) {
  if (nrhs < minimum) matrix::detail::error_minrhs();
  const vxArray* objects = arrayOf(prhs[0]);
  if (!objects || !omIsVCOS(objects) || vxIsEmpty(objects)) throw Error("VANTEL:sg:InvalidObjectHandle");
  HandlerInput in{omGetLiveArrayElement(objects, 0), {}};
  if (!in.object) throw Error("VANTEL:sg:DeletedObject");
  const vxArray* name = arrayOf(prhs[1]);
  if (name && (vxIsChar(name) || vxIsString(name))) in.name = vxArrayToStdString(name);
  if (in.name.empty()) throw Error("VANTEL:sg:InvalidProperty", "''", in.object->getClass()->getName());
  return in;
}

void give(int& nlhs, COSValue* plhs, matrix::unique_vxArray value) {
  if (!value) return;
  nlhs = 1;
  plhs[0] = COSValue(value.release());
}

bool isWholeStoreName(const std::string& name) { return name == "default" || name == "Default"; }

bool isRemoveWord(const vxArray* value) {
  if (!value || !(vxIsChar(value) || vxIsString(value))) return false;
  const std::string text = vxArrayToStdString(value);
  return text == "default" || text == "remove";
}

}  // namespace

namespace {

COSMethodSignaturePtr handlerSignature(const char* name, SGDefaultFactoryPropHandlerBaseMI::ValueInput value) {
  // Method inputs are arrays, and the platform's "<class> scalar" types
  // hold one object rather than an array: the input takes the class's array
  // type, and the handler works on element 0. The type exists once the
  // platform class does (start-up makes it); without it the input is untyped.
  static const COSID objectType("vantel.mixin.internal.DefaultFactoryPropHandler");
  std::vector<COSMethodSignature::Argument> inputs{{COSID("object"), COSTypeRepository::getType(objectType), false},
                                                   {COSID("name"), COSDataTypePtr(), false}};
  if (value == SGDefaultFactoryPropHandlerBaseMI::ValueInput::Optional)
    inputs.push_back({COSID("value"), COSDataTypePtr(), true});
  return COSMethodSignature::createMethodSignature(COSID(name), std::move(inputs),
                                                   {{COSID("value"), COSDataTypePtr(), false}});
}

}  // namespace

SGDefaultFactoryPropHandlerBaseMI::SGDefaultFactoryPropHandlerBaseMI(COSID classId, const char* name,
                                                                     ValueInput value)
    : COSMethodBase(classId, COSID(name), PublicAccess, "", handlerSignature(name, value)) {}

SGFilterDefaultFactoryPropMI::SGFilterDefaultFactoryPropMI(COSID classId)
    : SGDefaultFactoryPropHandlerBaseMI(classId, "filterDefaultFactoryPropName") {}

void SGFilterDefaultFactoryPropMI::invoke(const COSClient*, int& nlhs, COSValue* plhs, int nrhs,
                                          const COSValue* prhs) const {
  const HandlerInput in = readInput(nrhs, prhs, 2);
  const COSID id(in.name.c_str());
  const COSPropInfo* property = in.object->getClass()->findProperty(id);
  if (!property) {
    COSInterfacePtr dynamic;
    in.object->findDynamicProperty(dynamic, id);
    property = cosiToProp(dynamic.get());
  }
  if (!property) throw Error("VANTEL:sg:InvalidProperty", in.name, in.object->getClass()->getName());
  give(nlhs, plhs, matrix::unique_vxArray(vxCreateString(property->getName())));
}

SGGetDefaultPropValueMI::SGGetDefaultPropValueMI(COSID classId)
    : SGDefaultFactoryPropHandlerBaseMI(classId, "getDefaultPropValue") {}

void SGGetDefaultPropValueMI::invoke(const COSClient*, int& nlhs, COSValue* plhs, int nrhs,
                                     const COSValue* prhs) const {
  const HandlerInput in = readInput(nrhs, prhs, 2);
  give(nlhs, plhs, sgutils::DefaultNameAccess::get(in.object, in.name));
}

SGSetDefaultPropValueMI::SGSetDefaultPropValueMI(COSID classId)
    : SGDefaultFactoryPropHandlerBaseMI(classId, "setDefaultPropValue", ValueInput::Optional) {}

void SGSetDefaultPropValueMI::invoke(const COSClient*, int& nlhs, COSValue* plhs, int nrhs,
                                     const COSValue* prhs) const {
  const HandlerInput in = readInput(nrhs, prhs, 2);
  const vxArray* value = nrhs > 2 ? arrayOf(prhs[2]) : nullptr;
  if (sgutils::DefaultPropString::isFactoryProp(in.name))
    throw Error("VANTEL:sgutils:CannotSetFactoryValue", in.name);
  if (isWholeStoreName(in.name)) {
    // The whole list: without a value its possible values, with "default"
    // or "remove" it is emptied.
    sgutils::DefaultProp defaults(in.object);
    if (!value) {
      give(nlhs, plhs, defaults.set());
      return;
    }
    if (isRemoveWord(value)) {
      defaults.clear();
      return;
    }
  }
  give(nlhs, plhs, sgutils::DefaultNameAccess::set(in.object, in.name, value));
}

SGGetFactoryPropValueMI::SGGetFactoryPropValueMI(COSID classId)
    : SGDefaultFactoryPropHandlerBaseMI(classId, "getFactoryPropValue") {}

void SGGetFactoryPropValueMI::invoke(const COSClient*, int& nlhs, COSValue* plhs, int nrhs,
                                     const COSValue* prhs) const {
  const HandlerInput in = readInput(nrhs, prhs, 2);
  give(nlhs, plhs, sgutils::DefaultNameAccess::getFactory(in.object, in.name));
}

// ---- getdisp, setdisp

namespace {

// getdisp and setdisp pass any inputs and outputs on; their signature is
// of the legacy class "sgsetget".
COSMethodSignaturePtr setGetDispSignature() {
  return COSMethodSignature::createMethodSignature(COSID("sgsetget"), {{COSID("varargin"), COSDataTypePtr(), true}},
                                                   {{COSID("varargout"), COSDataTypePtr(), true}},
                                                   COSMethodSignature::VarArgIn | COSMethodSignature::VarArgOut);
}

}  // namespace

SGSetGetDispBaseMI::SGSetGetDispBaseMI(COSID classId, const char* name)
    : COSMethodBase(classId, COSID(name), PublicAccess, "", setGetDispSignature()) {}

void SGSetGetDispBaseMI::invoke(const COSClient*, int& nlhs, COSValue* plhs, int nrhs, const COSValue* prhs) const {
  std::vector<const vxArray*> in(static_cast<std::size_t>(nrhs));
  for (int i = 0; i < nrhs; ++i) in[static_cast<std::size_t>(i)] = arrayOf(prhs[i]);
  std::vector<vxArray*> out(static_cast<std::size_t>(nlhs > 0 ? nlhs : 1), nullptr);
  const std::string function = std::string("sg") + getName();
  inCallFcn(function.c_str(), nlhs, out.data(), nrhs, in.data());
  for (int i = 0; i < static_cast<int>(out.size()); ++i)
    if (out[static_cast<std::size_t>(i)]) plhs[i] = COSValue(out[static_cast<std::size_t>(i)]);
}

SGGetDispMI::SGGetDispMI(COSID classId) : SGSetGetDispBaseMI(classId, "getdisp") {}
SGSetDispMI::SGSetDispMI(COSID classId) : SGSetGetDispBaseMI(classId, "setdisp") {}
