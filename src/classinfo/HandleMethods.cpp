// The methods of graphics objects that keep numeric handles working beside
// objects: eq and ne, double, convertObject, isprop and isChildProperty,
// and clo.
#include <cstring>
#include <vector>
#include <strings.h>

#include "foundation/core/except/Error.h"
#include "sgutils/classinfo/EqMI.h"
#include "sgutils/classinfo/IsChildPropertyMI.h"
#include "sgutils/classinfo/NeMI.h"
#include "sgutils/classinfo/SGCloMI.h"
#include "sgutils/classinfo/SGDoubleHandleMI.h"
#include "sgutils/classinfo/SGHandleConvertMI.h"
#include "sgutils/classinfo/SGHandleRelOpMI.h"
#include "sgutils/classinfo/SGIsPropMI.h"
#include "sgutils/lifecycle/SGHandle.h"
#include "sgutils/persistence/HandleConversion.h"
#include "sgutils/propinfos/PropInfoLookup.h"
#include "sgutils/tree/ClearChildren.h"
#include "vcos/COSCasts.h"
#include "vcos/COSClass.h"
#include "vcos/COSMethodInfo.h"
#include "vcos/COSPropInfo.h"
#include "vcos/COSTypeConversion.h"
#include "vcos/COSTypeRepository.h"
#include "vcos/ObjectArray.h"
#include "vx/matrix.h"
#include "vx/vxCreate.h"
#include "vx/vxData.h"
#include "vx/vxMemory.h"
#include "vx/vxQuery.h"
#include "vx/vxText.h"

using foundation::core::except::Error;

namespace {

const vxArray* arrayOf(const COSValue& value) { return value.asPointer<const vxArray>(); }

bool isDoubleArray(const vxArray* a) { return a && vxIsDouble(a) && !vxIsComplex(a); }

}  // namespace

// ---- eq, ne

SGHandleRelOpMI::SGHandleRelOpMI(COSID classId, const char* name, const char* description)
    : COSMethodBase(classId, COSID(name), PublicAccess, description) {}

void SGHandleRelOpMI::invoke(const COSClient* client, int& nlhs, COSValue* plhs, int nrhs, const COSValue* prhs) const {
  if (nrhs != 2) throw Error("VANTEL:vcos:BadArgumentCount", 2);
  matrix::unique_vxArray converted[2];
  COSValue in[2];
  for (int i = 0; i < 2; ++i) {
    const vxArray* a = arrayOf(prhs[i]);
    if (isDoubleArray(a)) {
      converted[i] = sgutils::handles::toObjectArray(a, /*strict=*/false);
      in[i] = COSValue(converted[i].get());
    } else {
      in[i] = prhs[i];
    }
  }
  static const COSID handleId("handle");
  COSClass* handle = COSClass::getClass(handleId);
  COSMethodInfo* method = handle ? handle->findMethod(COSID(getName())) : nullptr;
  if (!method) throw Error("VANTEL:vcos:UndefinedFunction", getName());
  method->invoke(client, nlhs, plhs, 2, in);
}

EqMI::EqMI(COSID classId)
    : SGHandleRelOpMI(classId, "eq", "eq method override for the vantel.graphics.Graphics subclasses.") {}

NeMI::NeMI(COSID classId)
    : SGHandleRelOpMI(classId, "ne", "ne method override for the vantel.graphics.Graphics subclasses.") {}

// ---- double

SGDoubleHandleMI::SGDoubleHandleMI(COSID classId)
    : COSMethodBase(classId, COSID("double"), PublicAccess, "The double conversion method for SGHandle subclasses.") {}

void SGDoubleHandleMI::invoke(const COSClient*, int& nlhs, COSValue* plhs, int nrhs, const COSValue* prhs) const {
  if (nrhs < 1) matrix::detail::error_minrhs();
  const vxArray* objects = arrayOf(prhs[0]);
  if (!objects || !omIsVCOS(objects)) throw Error("VANTEL:sg:InvalidObjectHandle");
  matrix::unique_vxArray result(vxCreateDoubleMatrix(vxGetM(objects), vxGetN(objects), vxREAL));
  double* out = vxGetPr(result.get());
  const std::size_t n = vxGetNumberOfElements(objects);
  for (std::size_t i = 0; i < n; ++i) {
    COSInterfacePtr element = omGetArrayElement(objects, i);
    if (!element || element->isDestroyed()) {
      out[i] = -1.0;
      continue;
    }
    SGHandle* block = toSGHandle(element);
    if (!block) continue;  // stays 0
    double d = block->getDoubleRef();
    if (d == -1.0) {
      // The first request: the number table gives the object its number,
      // which the block keeps, so the next request does not convert.
      static const COSID from("vantel.graphics.datatype.COSInterface"), to("double");
      const COSTypeConversion* conversion = COSTypeRepository::getConversion(from, to);
      if (!conversion) throw Error("VANTEL:graphics:DoubleHandleConversionError");
      d = conversion->convert(COSValue(element.get())).asDouble();
      block->setDoubleRef(d);
    }
    out[i] = d;
  }
  if (nlhs == 0) nlhs = 1;
  if (nlhs == 1) plhs[0] = COSValue(result.release());
}

// ---- convertObject

SGHandleConvertMI::SGHandleConvertMI(COSID classId)
    : COSMethodBase(classId, COSID("convertObject"), PublicAccess, "Convert to heterogeneous object") {}

void SGHandleConvertMI::invoke(const COSClient*, int& nlhs, COSValue* plhs, int nrhs, const COSValue* prhs) const {
  if (nlhs > 1) matrix::detail::error_maxlhs();
  if (nrhs > 2) matrix::detail::error_maxrhs();
  if (nrhs < 2) matrix::detail::error_minrhs();
  const vxArray* value = arrayOf(prhs[1]);
  if (isDoubleArray(value)) {
    if (vxIsEmpty(value)) {
      nlhs = 1;
      plhs[0] = COSValue(omCreateVCOSEmpty("vantel.graphics.Graphics"));
      return;
    }
    matrix::unique_vxArray objects = sgutils::handles::toObjectArray(value, /*strict=*/true);
    static const COSID placeholder("vantel.graphics.GraphicsPlaceholder");
    COSInterfacePtr first = omGetArrayElement(objects.get(), 0);
    if (first && !first->getClass()->isSubclassOf(placeholder)) {
      nlhs = 1;
      plhs[0] = COSValue(objects.release());
      return;
    }
  }
  throw Error("VANTEL:legacy_two_part:invalidConversion", value ? vxGetClassName(value) : "");
}

// ---- isprop

SGIsPropMI::SGIsPropMI(COSID classId)
    : COSMethodBase(classId, COSID("isprop"), PublicAccess,
                    "isprop method override for the vantel.graphics.internal.ReferenceObject subclasses.") {}

namespace {

bool hasProperty(const COSInterfacePtr& object, const char* name) {
  if (!object || object->isDestroyed()) return false;
  COSClass* cls = object->getClass();
  if (!cls) return false;
  const COSID id(name);
  if (cls->findPropertyExact(id)) return true;
  COSInterfacePtr dynamic;
  object->findDynamicProperty(dynamic, id);
  if (cosiToProp(dynamic.get())) return true;
  // A name that differs in case only names a public property; a shortened
  // name names none.
  const COSPropInfo* match = sgutils::getAmbiguousMatchingPropInfo(cls, name);
  if (!match || strcasecmp(match->getName(), name) != 0) return false;
  return match->getMemberSetAccess() == PublicAccess || match->getMemberGetAccess() == PublicAccess;
}

}  // namespace

void SGIsPropMI::invoke(const COSClient*, int& nlhs, COSValue* plhs, int nrhs, const COSValue* prhs) const {
  if (nrhs != 2) throw Error("VANTEL:vcos:BadArgumentCount", 2);
  const vxArray* objects = arrayOf(prhs[0]);
  const vxArray* nameArray = arrayOf(prhs[1]);
  const std::string name = nameArray && (vxIsChar(nameArray) || vxIsString(nameArray)) ? vxArrayToStdString(nameArray)
                                                                                      : std::string();
  matrix::unique_vxArray result(vxCreateLogicalArray(vxGetNumberOfDimensions(objects), vxGetDimensions(objects)));
  bool* out = vxGetLogicals(result.get());
  const std::size_t n = omIsVCOS(objects) ? vxGetNumberOfElements(objects) : 0;
  for (std::size_t i = 0; i < n; ++i) out[i] = !name.empty() && hasProperty(omGetArrayElement(objects, i), name.c_str());
  nlhs = 1;
  plhs[0] = COSValue(result.release());
}

// ---- isChildProperty

IsChildPropertyMI::IsChildPropertyMI(COSID classId)
    : COSMethodBase(classId, COSID("isChildProperty"), PublicAccess,
                    "The isChildProperty method for vantel.graphics.Graphics subclasses.") {}

void IsChildPropertyMI::invoke(const COSClient*, int& nlhs, COSValue* plhs, int nrhs, const COSValue* prhs) const {
  bool answer = false;
  const vxArray* objects = nrhs > 0 ? arrayOf(prhs[0]) : nullptr;
  if (nrhs == 2 && objects && omIsVCOS(objects) && !vxIsEmpty(objects)) {
    const vxArray* name = arrayOf(prhs[1]);
    if (SGHandle* block = toSGHandle(omGetArrayElement(objects, 0)); block && name)
      answer = block->isChildProperty(vxArrayToStdString(name).c_str());
  }
  nlhs = 1;
  plhs[0] = COSValue(vxCreateLogicalScalar(answer));
}

// ---- clo

SGCloMI::SGCloMI(COSID classId)
    : COSMethodBase(classId, COSID("clo"), PublicAccess,
                    "clo method override for the vantel.graphics.Graphics subclasses.") {}

void SGCloMI::invoke(const COSClient*, int& nlhs, COSValue*, int nrhs, const COSValue* prhs) const {
  if (nlhs > 0) matrix::detail::error_maxlhs();
  if (nrhs < 1) matrix::detail::error_minrhs();
  if (nrhs > 3) matrix::detail::error_maxrhs();
  const vxArray* objects = arrayOf(prhs[0]);
  if (!objects || !omIsVCOS(objects) || vxIsEmpty(objects)) return;
  COSInterfacePtr owner = omGetLiveArrayElement(objects, 0);
  if (!owner) throw Error("VANTEL:sg:DeletedObject");
  std::vector<COSInterfacePtr> keep;
  if (nrhs > 1) {
    const vxArray* kept = arrayOf(prhs[1]);
    if (kept && omIsVCOS(kept))
      for (std::size_t i = 0, n = vxGetNumberOfElements(kept); i < n; ++i) keep.push_back(omGetArrayElement(kept, i));
  }
  const vxArray* reset = nrhs > 2 ? arrayOf(prhs[2]) : nullptr;
  const bool doReset = reset && vxIsLogical(reset) && !vxIsEmpty(reset) && vxGetLogicals(reset)[0];
  sgutils::clearChildren(owner, keep, /*includeHidden=*/doReset);
  if (doReset) SGHandle::Reset(owner);
}
