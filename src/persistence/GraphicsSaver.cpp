#include "src/persistence/GraphicsSaver.h"

#include <cstring>
#include <exception>
#include <unordered_map>
#include <unordered_set>


#include "sgutils/copy/Copyable.h"
#include "sgutils/copy/CopyableData.h"
#include "sgutils/lifecycle/SGHandle.h"
#include "sgutils/objects/GraphicsCoreProperties.gen.h"
#include "sgutils/propinfos/BlockOf.h"
#include "sgutils/persistence/GraphicsFile.h"
#include "sgutils/persistence/UDDConverter.h"
#include "sgutils/tree/ChildStrategy.h"
#include "src/copy/ArrayValue.h"
#include "src/persistence/GraphicsLoader.h"
#include "src/persistence/SavedDynamicProperties.h"
#include "src/persistence/SavedForms.h"
#include "src/persistence/SavedPropertyList.h"
#include "foundation/core/except/Error.h"
#include "foundation/log/Logger.h"
#include "vcos/COSClass.h"
#include "vcos/COSClassInfo.h"
#include "vcos/DynamicProperties.h"
#include "vcos/COSClient.h"
#include "vcos/COSDataType.h"
#include "vcos/ObjectCalls.h"
#include "vcos/COSInterface.h"
#include "vcos/COSPropInfo.h"
#include "vcos/COSVisitor.h"
#include "vcos/ObjectArray.h"
#include "vx/vxCell.h"
#include "vx/vxCreate.h"
#include "vx/vxFunctionHandleData.h"
#include "vx/vxData.h"
#include "vx/vxQuery.h"
#include "vx/vxStruct.h"

namespace sgutils::persistence {

namespace {

graphics::internal::GraphicsCoreProperties* coreBlockOf(const COSInterface* object) {
  using graphics::internal::GraphicsCoreProperties;
  COSClass* core = GraphicsCoreProperties::getClassInstance();
  if (!core || !object->getClass()->isSubclassOf(core)) return nullptr;
  return sgutils::blockOf<GraphicsCoreProperties>(object, GraphicsCoreProperties::classID());
}

// A live graphics object, or null.
COSInterfacePtr graphicsElement(const vxArray* array, std::size_t i) {
  COSInterfacePtr element = omGetLiveArrayElement(array, i);
  if (!element || element->isBeingDestroyed() || !SGHandle::fromObject(element.get())) return {};
  return element;
}

// A child its owner makes as part of itself (an axes's title): it is not
// copyable on its own, and the owner reaches it through a property.
bool isMadeByOwner(const COSInterface* child) {
  const CopyableData* data = Copyable::dataOf(child);
  return data && !data->copyable;
}

// Whether the owner's property holds exactly `child`. Only a type that can
// hold objects can hold the part: the others (limits computed from every
// child among them) are not read.
bool holds(COSInterface* owner, const COSPropInfo* property, const COSInterface* child) {
  const COSDataTypePtr type = property->getDataType();
  if (property->isDependent() || !type || !type->canContainInterfaces() || !copy::hasArrayForm(type)) return false;
  matrix::unique_vxArray value;
  {
    const COSValue read = property->getValue(owner);
    value = copy::toArray(type, read);
    property->releaseValue(owner, read);
  }
  return value && omIsVCOS(value.get()) && vxGetNumberOfElements(value.get()) == 1 &&
         omGetLiveArrayElement(value.get(), 0).get() == child;
}

// The owner's property that holds exactly `child`: any property, transient
// ones too (an axes's Title is not saved as a value; the title's own values
// are).
const COSPropInfo* propertyHolding(COSInterface* owner, const COSInterface* child) {
  class Finder final : public COSVisitor {
   public:
    Finder(COSInterface* owner, const COSInterface* child) : owner_(owner), child_(child) {}
    bool visitProperty(COSClass*, COSPropInfo* property) override {
      if (!holds(owner_, property, child_)) return true;
      found = property;
      return false;
    }
    const COSPropInfo* found = nullptr;

   private:
    COSInterface* owner_;
    const COSInterface* child_;
  } finder(owner, child);
  owner->getClass()->acceptPropertyVisitor(finder);
  return finder.found;
}

// Per owner class and part class, the property that held the last part
// saved: kept for the process, as classes and their properties are (the
// interpreter thread only, as all class-system work). A hit is checked
// before it is used, so a stale one costs a walk, never a wrong part.
const COSPropInfo*& lastPartProperty(const COSClass* owner, const COSClass* part) {
  struct ClassPairHash {
    std::size_t operator()(const std::pair<const COSClass*, const COSClass*>& p) const noexcept {
      return std::hash<const void*>()(p.first) * 31 + std::hash<const void*>()(p.second);
    }
  };
  static std::unordered_map<std::pair<const COSClass*, const COSClass*>, const COSPropInfo*, ClassPairHash> found;
  return found[{owner, part}];
}

// The empty 1-by-1 struct without fields that a new object's application
// data is, made once and kept.
vxArray* emptyApplicationData() {
  static vxArray* const empty = [] {
    vxArray* s = vxCreateStructMatrix(1, 1, 0, nullptr);
    vxSetArrayScope(s, vxSCOPE_PERSISTENT);
    return s;
  }();
  return empty;
}

}  // namespace

void GraphicsSaver::collect(const vxArray* value, std::vector<COSInterfacePtr>& out) {
  if (!value) return;
  const std::size_t n = vxGetNumberOfElements(value);
  if (omIsVCOS(value)) {
    for (std::size_t i = 0; i < n; ++i)
      if (COSInterfacePtr object = graphicsElement(value, i)) out.push_back(std::move(object));
  } else if (vxIsCell(value)) {
    for (std::size_t i = 0; i < n; ++i) collect(vxGetCell(value, i), out);
  } else if (vxIsStruct(value)) {
    const int nf = vxGetNumberOfFields(value);
    for (std::size_t i = 0; i < n; ++i)
      for (int f = 0; f < nf; ++f) collect(vxGetFieldByNumber(value, i, f), out);
  } else if (vxIsFunctionHandle(value)) {
    // Objects an anonymous function captured are saved with it.
    for (const auto& [name, captured] : vxGetFunctionHandle(value)->capturedValues()) collect(captured, out);
  }
}

void GraphicsSaver::addObjectsIn(std::span<const std::pair<std::string, const vxArray*>> values) {
  std::vector<COSInterfacePtr> found;
  for (const auto& [name, value] : values) collect(value, found);
  // An object below another one of the values is saved in that one's tree,
  // so that its place there is kept.
  std::unordered_set<const COSInterface*> all;
  for (const COSInterfacePtr& object : found) all.insert(object.get());
  for (const COSInterfacePtr& object : found) {
    bool below = false;
    for (const COSInterface* up = object->getOwnerObject(); up && !below; up = up->getOwnerObject())
      below = all.count(up) != 0;
    if (!below && indexOf(object.get()) < 0) addTree(object, -1, "", false);
  }
}

std::int64_t GraphicsSaver::indexOf(const COSInterface* object) const {
  auto found = index_.find(object);
  return found == index_.end() ? -1 : found->second;
}

std::int64_t GraphicsSaver::addTree(const COSInterfacePtr& object, std::int64_t madeBy, const char* madeByProperty,
                                    bool child) {
  const auto index = static_cast<std::int64_t>(records_.size());
  index_.emplace(object.get(), index);
  // The top of a saved tree is marked as such, so that its load step runs
  // the pass after load; the others wait for their parent's.
  if (auto* core = coreBlockOf(object.get())) core->setTopLevelSerializedObject(!child);
  // The class's save step: the stored defaults go into the dynamic property
  // that readFields writes.
  if (COSClassInfo* info = object->getClass()->getClassInfo()) {
    COSValue value;
    COSDataTypePtr type;
    const bool ownForm = info->customSave(object.get(), value, type);
    if (type) type->destroy(value);
    else if (ownForm) matrix::destroyArray(value.asPointer<vxArray>());
    // A graphics object is saved by its values (its class info's customSave
    // answers false); a form of its own would be lost, so none is accepted.
    if (ownForm) throw foundation::core::except::Error("VANTEL:sg:save:GraphicsForm", object->getClass()->getName());
  }
  // Only a child of a saved tree leaves values out: a top (a figure) or a
  // part its owner made is written whole.
  records_.push_back({object, madeBy, madeByProperty, child && madeBy < 0, {}});
  // The class system's rule: a class whose info answers areChildrenSaved
  // false is saved without the objects below it (the library's classes
  // inherit true; the walk below is the library's own).
  if (const COSClassInfo* info = object->getClass()->getClassInfo(); info && !info->areChildrenSaved()) return index;

  // Children oldest first, hidden ones too; the ones not saved
  // (Serializable off) and those already in the table are left out.
  std::vector<COSInterfacePtr> saved;
  for (COSInterface* c = object->getOldestChild(); c; c = c->getNewerSibling()) {
    COSInterfacePtr child(c);
    if (child->isBeingDestroyed() || !SGHandle::fromObject(c) || indexOf(c) >= 0) continue;
    // A class without "Serializable" has no way to opt out: its children are saved.
    static const COSID serializable("Serializable");
    if (c->findPropertyInfo(serializable) && !ChildStrategy::isChildSerializable(child)) continue;
    if (isMadeByOwner(c)) {
      // Saved as a part of the owner when a property of the owner holds it;
      // the owner makes it again on load.
      // The property found for the last part of this class in an owner of
      // this class, in this save or an earlier one, is tried first: the walk
      // reads every property that can hold objects, the children among them.
      const COSPropInfo*& last = lastPartProperty(object->getClass(), c->getClass());
      if (!last || !holds(object.get(), last, c)) last = propertyHolding(object.get(), c);
      if (last) addTree(child, index, last->getName(), true);
      continue;
    }
    saved.push_back(child);
    addTree(child, -1, "", true);
  }
  if (!saved.empty()) {
    matrix::unique_vxArray list(omCreateVCOSMatrix(1, saved.size(), "vantel.graphics.Graphics"));
    for (std::size_t i = 0; i < saved.size(); ++i) omSetArrayElement(list.get(), i, saved[i]);
    records_[static_cast<std::size_t>(index)].children = std::move(list);
  }
  return index;
}

GraphicsSaver::~GraphicsSaver() {
  for (auto& [cls, reference] : references_) {
    if (!reference.object) continue;
    const SavedPropertyList& list = SavedPropertyList::of(const_cast<COSClass*>(cls));
    for (std::size_t k = 0; k < reference.values.size(); ++k)
      list.properties[k]->releaseValue(reference.object.get(), reference.values[k]);
    try {
      if (!reference.object->isDestroyed() && !reference.object->isBeingDestroyed())
        reference.object->deleteObject(COSGetPublicClient());
    } catch (...) {
      // A reference that refuses to go is left to its class; the save stands.
    }
  }
}

const GraphicsSaver::Reference* GraphicsSaver::referenceOf(COSClass* cls) {
  auto [found, added] = references_.try_emplace(cls);
  Reference& reference = found->second;
  if (!added) return reference.object ? &reference : nullptr;
  try {
    // Made as the loader makes an object: no parent, the public client.
    matrix::unique_vxArray made(omConstructObjectWithClient(cls->getID(), 0, nullptr, COSGetPublicClient()));
    if (!made || !omIsVCOS(made.get()) || vxGetNumberOfElements(made.get()) != 1) return nullptr;
    reference.object = omGetLiveArrayElement(made.get(), 0);
  } catch (const std::exception&) {
    return nullptr;  // its objects are then written whole
  }
  if (!reference.object) return nullptr;
  const SavedPropertyList& list = SavedPropertyList::of(cls);
  reference.values.reserve(list.properties.size());
  for (const COSPropInfo* property : list.properties) reference.values.push_back(property->getValue(reference.object.get()));
  return &reference;
}

namespace {

// Whether two arrays are the same class, shape and bytes. Numeric, logical
// and char arrays compare by their bytes; of the others only empties (and
// structs without fields) match; object arrays never do.
bool sameArrayBits(const vxArray* x, const vxArray* y) {
  if (!x || !y) return x == y;
  const vxClassID cls = vxGetClassID(x);
  if (cls != vxGetClassID(y) || cls == vxOBJECT_CLASS || vxIsComplex(x) != vxIsComplex(y)) return false;
  const vxSize ndim = vxGetNumberOfDimensions(x);
  if (ndim != vxGetNumberOfDimensions(y) || std::memcmp(vxGetDimensions(x), vxGetDimensions(y), ndim * sizeof(vxSize)) != 0)
    return false;
  const vxSize numel = vxGetNumberOfElements(x);
  if (vxIsNumeric(x) || vxIsLogical(x) || vxIsChar(x)) {
    const std::size_t bytes = numel * vxGetElementSize(x);
    return bytes == 0 || std::memcmp(vxGetData(x), vxGetData(y), bytes) == 0;
  }
  if (cls == vxSTRUCT_CLASS) return vxGetNumberOfFields(x) == 0 && vxGetNumberOfFields(y) == 0;
  return numel == 0;
}

// Whether the value holds no object; `found` is a list reused by the caller.
bool holdsNoObjects(const COSDataType& type, COSValue value, std::vector<COSInterfacePtr>& found) {
  found.clear();
  type.getInterfaces(value, found);
  const bool none = found.empty();
  found.clear();
  return none;
}

bool sameValue(SavedPropertyList::Omit omit, const COSDataType* type, COSValue a, COSValue b,
               std::vector<COSInterfacePtr>& found) {
  using Omit = SavedPropertyList::Omit;
  switch (omit) {
    case Omit::Never: return false;
    case Omit::WhenBitsEqual: return a.word() == b.word();
    case Omit::WhenArrayBitsEqual:
      return a.word() == b.word() || sameArrayBits(a.asPointer<const vxArray>(), b.asPointer<const vxArray>());
    case Omit::WhenEqual: return a.word() == b.word() || type->isEqual(a, b);
    case Omit::WhenEqualWithoutObjects:
      return holdsNoObjects(*type, a, found) && holdsNoObjects(*type, b, found) &&
             (a.word() == b.word() || type->isEqual(a, b));
  }
  return false;
}

}  // namespace

void GraphicsSaver::readFields(Record& record) {
  COSInterface* object = record.object.get();
  fields_.clear();
  held_.clear();
  const SavedPropertyList& list = SavedPropertyList::of(object->getClass());
  const Reference* reference = record.omitDefaults ? referenceOf(object->getClass()) : nullptr;
  const std::size_t n = list.properties.size();
  // Every value is read first, so that a value and its mode are written
  // together when either differs from the new object's.
  read_.clear();
  // The application data is read where the Graphics block keeps it, not
  // through its getter, which makes a copy per read: the form a file keeps
  // is a new array only when it holds handles of the older object layer.
  const SGHandle* handle = SGHandle::fromObject(object);
  readList_ = &list;
  readObject_ = object;
  borrowed_ = handle && list.applicationData >= 0 ? static_cast<std::size_t>(list.applicationData) : n;
  differs_.assign(n, reference ? 0 : 1);
  for (std::size_t k = 0; k < n; ++k) {
    if (k == borrowed_) {
      // An object whose application data nobody made holds the empty
      // struct: one shared here stands for it, rather than one made on it.
      auto* stored = const_cast<vxArray*>(handle->madeApplicationData());
      vxArray* saved = stored ? UDDConverter::convertUDDToHandles(stored) : emptyApplicationData();
      if (saved != stored && stored) converted_.reset(saved);
      read_.push_back(COSValue(saved));
    } else {
      read_.push_back(list.properties[k]->getValue(object));
    }
    if (reference && !sameValue(list.omit[k], list.types[k].get(), read_[k], reference->values[k], found_))
      differs_[list.group[k]] = 1;
  }
  for (std::size_t k = 0; k < n; ++k) {
    if (!differs_[list.group[k]]) continue;
    const COSPropInfo* property = list.properties[k];
    // An array value is written as it was read: it lives until the record
    // is packed, since the values are released after that.
    if (list.omit[k] == SavedPropertyList::Omit::WhenArrayBitsEqual) {
      if (const auto* array = read_[k].asPointer<const vxArray>()) fields_.push_back({property->getName(), array});
      continue;
    }
    matrix::unique_vxArray array = copy::toArray(list.types[k], read_[k]);
    if (!array) continue;
    fields_.push_back({property->getName(), array.get()});
    held_.push_back(std::move(array));
  }
  // Run-time properties that are stored: the defaults put there by
  // customSave, and those added by addprop.
  if (vcos::hasDynamicProperties(object)) {
    if (matrix::unique_vxArray added = savedDynamicProperties(object)) {
      fields_.push_back({GraphicsFile::kDynamicPropertiesField, added.get()});
      held_.push_back(std::move(added));
      dynamicWritten_ = true;
    }
    static const COSID defaults(GraphicsFile::kDefaultsField);
    COSInterfacePtr found;
    object->findDynamicProperty(found, defaults);
    if (const auto* property = static_cast<const COSPropInfo*>(found.get()); property && !property->isTransient()) {
      const COSValue read = property->getValue(object);
      matrix::unique_vxArray array = copy::toArray(property->getDataType(), read);
      property->releaseValue(object, read);
      if (array && vxIsStruct(array.get())) {
        fields_.push_back({GraphicsFile::kDefaultsField, array.get()});
        held_.push_back(std::move(array));
      }
    }
  }
  if (record.children) fields_.push_back({GraphicsFile::kChildrenField, record.children.get()});
  // Objects held by the values (a context menu, objects in user data) are
  // saved where their own tree puts them; one outside every saved tree is
  // written as none.
}

std::vector<std::uint8_t> GraphicsSaver::serialize(std::span<const std::pair<std::string, const vxArray*>> values) {
  vxWriteOptions options;
  options.objectClassName = [](const vxArray* a) -> std::string {
    COSClass* cls = vcos::array::classOf(a);
    return cls ? cls->getName() : "vantel.graphics.GraphicsPlaceholder";
  };
  // An object outside the saved trees is kept when its class saves a form
  // of its own; the forms follow the records.
  SavedForms forms(records_.size());
  options.objectIndex = [this, &forms](const vxArray* a, std::size_t i) {
    const COSInterfacePtr element = omGetLiveArrayElement(a, i);
    const std::int64_t index = indexOf(element.get());
    return index >= 0 ? index : forms.indexOf(element.get());
  };
  // The table is written record by record; each record's values are
  // released once it is packed, and its child list with it.
  vxDocumentWriter writer(values, records_.size(), options);
  for (Record& record : records_) {
    struct Release {
      GraphicsSaver& saver;
      Record& record;
      ~Release() {
        saver.releaseRead();
        record.children.reset();
      }
    } release{*this, record};
    readFields(record);
    writer.addObject(record.object->getClass()->getName(), record.madeBy, record.madeByProperty, fields_);
  }
  forms.writeTo(writer);
  // Older readers would pass the added properties over: such a set is
  // written in the version that has them.
  if (dynamicWritten_) writer.requireVersion(vxSerializeDynamicPropertiesVersion);
  return writer.finish();
}

void GraphicsSaver::releaseRead() noexcept {
  for (std::size_t k = 0; k < read_.size(); ++k)
    if (k != borrowed_) readList_->properties[k]->releaseValue(readObject_, read_[k]);
  read_.clear();
  fields_.clear();
  held_.clear();
  converted_.reset();
}

}  // namespace sgutils::persistence
