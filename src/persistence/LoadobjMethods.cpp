// "loadobj" and "finalizeIncomingObject" of the graphics classes: the forms
// of the call, the class's "doloadobj", and sgLoadObj on the result.
#include <string>

#include "foundation/core/except/Error.h"
#include "foundation/core/except/IMsgIDException.h"
#include "foundation/log/Logger.h"
#include "sgutils/classinfo/finalizeIncomingObjectMI.h"
#include "sgutils/classinfo/loadobjMI.h"
#include "sgutils/objects/GraphicsCoreProperties.gen.h"
#include "sgutils/propinfos/BlockOf.h"
#include "src/copy/ArrayValue.h"
#include "src/persistence/GraphicsLoader.h"
#include "vcos/COSClass.h"
#include "vcos/COSClient.h"
#include "vcos/COSDataType.h"
#include "vcos/COSMethodInfo.h"
#include "vcos/COSMethodSignature.h"
#include "vcos/COSObjectOperations.h"
#include "vcos/COSPropInfo.h"
#include "vcos/COSTypeRepository.h"
#include "vcos/COSVisitor.h"
#include "vcos/ObjectArray.h"
#include "vcos/ObjectCalls.h"
#include "vx/matrix.h"
#include "vx/vxCreate.h"
#include "vx/vxQuery.h"
#include "vx/vxStruct.h"

using foundation::core::except::IMsgIDException;

namespace {

// The verbosity bits of the lines of the load step.
constexpr std::uint32_t kFormBit = 1u << 3;     // the form, "Calling doloadobj"
constexpr std::uint32_t kStepBit = 1u << 2;     // "No doloadobj found", "Calling sgLoadObj", properties
constexpr std::uint32_t kSetBit = 1u << 8;      // a set that failed
constexpr std::uint32_t kConversionBit = 1u << 9;  // a conversion that failed

COSMethodSignaturePtr signatureOf(const char* name, bool twoInputs) {
  COSDataTypePtr any = COSTypeRepository::getType(COSID("any"));
  std::vector<COSMethodSignature::Argument> inputs{{COSID("S"), any, false}};
  if (twoInputs) inputs.push_back({COSID("obj"), any, true});
  return COSMethodSignature::createMethodSignature(COSID(name), std::move(inputs), {{COSID("obj"), any, false}},
                                                   COSMethodSignature::Static);
}

// Sets the fields of a struct on the object's properties of the same name.
// A field that does not convert or that its property refuses is logged and
// dropped, so the others load.
class LoadPropVisitor final : public COSVisitor {
 public:
  LoadPropVisitor(const COSInterfacePtr& object, const vxArray* structure) : object_(object), struct_(structure) {}
  bool visitProperty(COSClass*, COSPropInfo* property) override {
    if (property->isTransient()) return true;
    const char* name = property->getName();
    const vxArray* field = vxGetField(struct_, 0, name);
    if (!field) return true;
    foundation::log::Logger& lg = sgutils::persistence::serializationLog();
    if (lg.isOn(kStepBit)) lg.write(kStepBit, std::string("    Loading property: ") + name);
    const COSDataTypePtr type = property->getDataType();
    sgutils::copy::OwnedValue converted;
    try {
      converted = sgutils::copy::OwnedValue(type, sgutils::copy::fromArray(type, field));
    } catch (const IMsgIDException&) {
      if (lg.isOn(kConversionBit)) lg.write(kConversionBit, "        Failed datatype conversion");
      return true;
    }
    try {
      vcos::omCopyPropertyWithNoPermissionCheck(object_, property, converted.get());
    } catch (const IMsgIDException&) {
      if (lg.isOn(kSetBit)) lg.write(kSetBit, std::string("        set.") + name + " failed");
    }
    return true;
  }

 private:
  const COSInterfacePtr& object_;
  const vxArray* struct_;
};

// Deletes an object made by the "(struct)" form unless it is handed out.
struct MadeObject {
  COSInterfacePtr object;
  ~MadeObject() {
    if (!object || object->isDestroyed() || object->isBeingDestroyed()) return;
    try {
      object->deleteObject(COSGetPublicClient());
    } catch (...) {
      // The call's own error is what the caller sees.
    }
  }
};

}  // namespace

loadobjBaseMI::loadobjBaseMI(COSID classId, const char* name, const char* description, bool visible,
                             COSMethodSignaturePtr signature)
    : COSMethodBase(classId, COSID(name), PublicAccess, description, std::move(signature)),
      className_(classId.str()),
      visible_(visible) {}

void loadobjBaseMI::invoke(const COSClient* client, int& nlhs, COSValue* plhs, int nrhs, const COSValue* prhs) const {
  foundation::log::Logger& lg = sgutils::persistence::serializationLog();
  const vxArray* first = nrhs > 0 ? prhs[0].asPointer<const vxArray>() : nullptr;
  COSInterfacePtr target;
  MadeObject made;
  const auto logForm = [&](const char* form) {
    if (lg.isOn(kFormBit)) lg.write(kFormBit, className_ + "." + getName() + form);
  };
  if (first && omIsVCOS(first)) {
    // The serializer restored the object already; a second input is not looked at.
    logForm(nrhs == 1 ? "(obj)" : "(obj, obj)");
    if (vxGetNumberOfElements(first) > 0) target = omGetLiveArrayElement(first, 0);
  } else if (nrhs < 2) {
    logForm("(struct)");
    matrix::unique_vxArray object(omConstructObjectWithClient(COSID(className_.c_str()), 0, nullptr,
                                                              COSGetPublicClient()));
    if (object && omIsVCOS(object.get()) && vxGetNumberOfElements(object.get()) == 1)
      target = omGetLiveArrayElement(object.get(), 0);
    made.object = target;
    if (target && first && vxIsStruct(first) && vxGetNumberOfElements(first) > 0) {
      LoadPropVisitor visitor(target, first);
      target->getClass()->acceptPropertyVisitor(visitor);
    }
  } else {
    logForm("(struct, obj)");
    // The class system restored the properties; an unusable object gives nothing.
    const vxArray* second = prhs[1].asPointer<const vxArray>();
    if (!second || !omIsVCOS(second) || vxGetNumberOfElements(second) == 0) return;
    target = omGetLiveArrayElement(second, 0);
  }
  if (!target) return;

  COSClass* cls = target->getClass();
  // An object array of the object alone, of its own class, as the loader
  // passes it, stands for the object as a shared copy instead of a new array.
  const bool ownScalar = first && omIsVCOS(first) && vxGetNumberOfElements(first) == 1 &&
                         vcos::array::classOf(first) == cls;
  matrix::unique_vxArray scalar(ownScalar ? vxCreateSharedDataCopy(first) : omCreateVCOSScalar(target));
  vxArray* result = nullptr;
  static const COSID doloadobj("doloadobj");
  // Static or instance, visible, and admitted to this client: a hidden
  // doloadobj, or one whose access keeps this client out, counts as none.
  // The method found is the one called.
  if (const COSMethodInfo* method = cls->findMethod(doloadobj, true, false, client)) {
    if (lg.isOn(kFormBit)) lg.write(kFormBit, "    Calling doloadobj");
    const COSValue in[1] = {COSValue(static_cast<const vxArray*>(scalar.get()))};
    const COSMethodSignature* signature = method->getMethodSignature();
    if (signature && !signature->accepts(1, in))
      throw foundation::core::except::Error("VANTEL:vcos:NoMatchingSignature", "doloadobj", cls->getName());
    COSValue out[1];
    int n = 1;
    method->invoke(client, n, out, 1, in);
    result = out[0].asPointer<vxArray>();
  } else {
    if (lg.isOn(kStepBit)) lg.write(kStepBit, "    No doloadobj found");
    result = scalar.release();
  }
  matrix::unique_vxArray owned(result ? result : omCreateVCOSMatrix(0, 1, cls->getID()));
  if (result && vxGetNumberOfElements(result) > 0 && omIsVCOS(result)) {
    using graphics::internal::GraphicsCoreProperties;
    COSInterfacePtr loaded = omGetLiveArrayElement(result, 0);
    // The object made here goes out with the result; one that doloadobj
    // replaced is deleted.
    if (loaded == made.object) made.object.reset();
    COSClass* core = GraphicsCoreProperties::getClassInstance();
    if (loaded && !loaded->isDestroyed() && !loaded->isBeingDestroyed() && core &&
        loaded->getClass()->isSubclassOf(core)) {
      if (auto* block = sgutils::blockOf<GraphicsCoreProperties>(loaded.get(), GraphicsCoreProperties::classID())) {
        if (lg.isOn(kStepBit)) lg.write(kStepBit, "    Calling sgLoadObj");
        block->sgLoadObj();
      }
    }
  }
  if (nlhs == 0) nlhs = 1;
  if (nlhs == 1) plhs[0] = COSValue(owned.release());
}

loadobjMI::loadobjMI(COSID classId)
    : loadobjBaseMI(classId, "loadobj", "Customized loadobj", true, signatureOf("loadobj", true)) {}

finalizeIncomingObjectMI::finalizeIncomingObjectMI(COSID classId)
    : loadobjBaseMI(classId, "finalizeIncomingObject", "Customized finalizeIncomingObject", false,
                    signatureOf("finalizeIncomingObject", false)) {}
