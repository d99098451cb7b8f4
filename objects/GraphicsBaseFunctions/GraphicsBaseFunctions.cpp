// The hand-written half of GraphicsBaseFunctions: the Type property, filled
// from the class-name map when an object is set up, and the two methods
// that ask whether an object is a graphics handle (of a given type).
#include "sgutils/objects/GraphicsBaseFunctions.gen.h"

#include <optional>

#include <algorithm>
#include <cctype>
#include <cstring>
#include <string>

#include "sgdatatypes/ClassNameMap.h"
#include "sgutils/objects/MixinMethod.h"
#include "vcos/COSClient.h"
#include "vcos/COSDataType.h"
#include "vcos/COSPropInfo.h"
#include "sgutils/propinfos/BlockOf.h"
#include "vcos/FindobjLender.h"
#include "vcos/ObjectArray.h"
#include "vx/vx.h"

namespace graphics::internal {

namespace {

std::string lowerAscii(std::string text) {
  std::transform(text.begin(), text.end(), text.begin(),
                 [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
  return text;
}

bool equalIgnoringCase(const char* a, const std::string& b) {
  const std::size_t n = std::strlen(a);
  if (n != b.size()) return false;
  for (std::size_t i = 0; i < n; ++i)
    if (std::tolower(static_cast<unsigned char>(a[i])) != std::tolower(static_cast<unsigned char>(b[i])))
      return false;
  return true;
}

// The block of the object in prhs[0] (an object array), or null.
GraphicsBaseFunctions* blockOfInput(int nrhs, const COSValue* prhs) {
  if (nrhs < 1) return nullptr;
  const vxArray* self = prhs[0].asPointer<const vxArray>();
  if (!self || !omIsVCOS(self) || vxGetNumberOfElements(self) != 1) return nullptr;
  COSInterfacePtr object = omGetLiveArrayElement(self, 0);
  if (!object) return nullptr;
  void* slot = object->getInstanceData(GraphicsBaseFunctions::classID());
  return slot ? static_cast<GraphicsBaseFunctions*>(static_cast<SGReference*>(slot)) : nullptr;
}

void issghandlewoargsMethod(const COSClient*, int& nlhs, COSValue* plhs, int, const COSValue*) {
  if (nlhs < 1) nlhs = 1;
  plhs[0] = COSValue(vxCreateLogicalScalar(GraphicsBaseFunctions::issghandlewoargs()));
}

void issghandlewithargsMethod(const COSClient*, int& nlhs, COSValue* plhs, int nrhs, const COSValue* prhs) {
  GraphicsBaseFunctions* block = blockOfInput(nrhs, prhs);
  const vxArray* value = nrhs > 1 ? prhs[1].asPointer<const vxArray>() : nullptr;
  if (nlhs < 1) nlhs = 1;
  plhs[0] = COSValue(vxCreateLogicalScalar(block && block->issghandlewithargs(value)));
}

}  // namespace

void GraphicsBaseFunctions::addMethods(COSClass* cls, COSID classId) {
  sgutils::addMixinMethod(cls, classId, "issghandlewoargs", &issghandlewoargsMethod, {"object"}, {"result"});
  sgutils::addMixinMethod(cls, classId, "issghandlewithargs", &issghandlewithargsMethod, {"object", "type"},
                          {"result"});
}

COSValue GraphicsBaseFunctions::getTypeImpl(COSPropInfo* property, const COSClient*, COSInterface*) {
  // The caller releases what a get gives, so hand out a copy.
  return property->getDataType()->copy(COSValue(&type_));
}

void GraphicsBaseFunctions::registerFindobjLender() {
  // Lends findobj the Type an object keeps, so that a search by Type copies
  // no TypeName per object (a get hands out a copy for its caller to free).
  vcos::setFindobjLender(classID(), COSID("Type"), [](COSInterface* object, COSValue& out) {
    auto* block = sgutils::blockOf<GraphicsBaseFunctions>(object, GraphicsBaseFunctions::classID());
    if (!block) return false;
    out = COSValue(&block->type_);
    return true;
  });
  // Equal interned ids are equal texts, so a search by Type compares each
  // distinct Type once rather than the text of every object.
  vcos::setFindobjKey(classID(), COSID("Type"), [](COSInterface* object, const void* data, const void*& key) {
    // The search hands over the block it found by index; blocks are stored
    // as SGReference pointers.
    auto* block = data ? static_cast<const GraphicsBaseFunctions*>(static_cast<const SGReference*>(data))
                       : sgutils::blockOf<GraphicsBaseFunctions>(object, GraphicsBaseFunctions::classID());
    if (!block || !block->typeId_) return false;
    key = block->typeId_.entry();
    return true;
  });
}

void GraphicsBaseFunctions::setTypeImpl(COSPropInfo*, const COSClient*, COSInterface*, COSValue value) {
  type_ = value.isEmpty() ? graphics::datatype::TypeName() : *value.asPointer<const graphics::datatype::TypeName>();
  typeId_ = COSID(type_.str());
}

void GraphicsBaseFunctions::setType(const char* text, graphics::datatype::ClientEnum client) {
  static const COSID name("Type");
  COSInterface* self = getCOSObject();
  COSClass* cls = getClassInstance();
  if (!self || !cls) return;
  const graphics::datatype::TypeName value{std::string(text ? text : "")};
  const COSClient* writer = client == graphics::datatype::PrivateClient ? getPrivateClient() : COSGetPublicClient();
  self->setPropertyValue(writer, cls->findPropertyExact(name), COSValue(&value));
}

void GraphicsBaseFunctions::initializeTypeProperty(COSInterfacePtr object) {
  if (!object) return;
  // A class's Type never changes: it is looked up once per run of objects of
  // one class (interpreter thread only) and stored straight into the member,
  // since nothing listens to an object in its Setup.
  static COSID lastClass;
  static std::optional<graphics::datatype::TypeName> lastType;
  static COSID lastTypeId;
  const COSClass* cls = object->getClass();
  if (!cls) return;
  if (cls->getID() != lastClass) {
    const auto& reverse = sgdatatypes::typemap::getReverseClassNameMap();
    const auto found = reverse.find(cls->getName());
    // A class the map lacks keeps its Type as it is.
    lastType.reset();
    if (found != reverse.end()) lastType.emplace(lowerAscii(found->second));
    lastTypeId = lastType ? COSID(lastType->str()) : COSID();
    lastClass = cls->getID();
  }
  if (lastType) {
    type_ = *lastType;
    typeId_ = lastTypeId;
  }
}

bool GraphicsBaseFunctions::issghandlewithargs(const vxArray* value) const {
  if (!value || vxIsEmpty(value)) return true;
  if (!vxIsChar(value)) return false;
  const std::string text = vxArrayToStdString(value);
  const auto& names = sgdatatypes::typemap::getClassNameMap();
  const auto found = names.find(lowerAscii(text));
  // No entry gives the empty id, and the class system answers for it.
  const COSID full(found == names.end() ? "" : found->second.c_str());
  COSInterface* self = getCOSObject();
  if (self && self->getClass()->isSubclassOf(full)) return true;
  return equalIgnoringCase(getType(), text);
}

}  // namespace graphics::internal
