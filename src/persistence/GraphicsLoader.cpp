#include "src/persistence/GraphicsLoader.h"

#include <cstring>
#include <string>
#include <string_view>
#include <unordered_map>

#include "foundation/core/except/Error.h"
#include "foundation/core/except/IMsgIDException.h"
#include "foundation/log/Logger.h"
#include "sgdatatypes/CallbackListeners.h"
#include "sgutils/lifecycle/SGHandle.h"
#include "sgutils/objects/GraphicsCoreProperties.gen.h"
#include "sgutils/propinfos/BlockOf.h"
#include "src/copy/ArrayValue.h"
#include "src/persistence/ElementContent.h"
#include "src/persistence/LoadedValue.h"
#include "src/persistence/SavedDefaults.h"
#include "src/persistence/SavedDynamicProperties.h"
#include "src/persistence/SavedForms.h"
#include "src/persistence/SavedPropertyList.h"
#include "vcos/COSClass.h"
#include "vcos/COSClassInfo.h"
#include "vcos/COSDataType.h"
#include "vcos/COSClient.h"
#include "vcos/COSInterface.h"
#include "vcos/COSListener.h"
#include "vcos/COSObjectOperations.h"
#include "vcos/COSPropInfo.h"
#include "vcos/DynamicProperties.h"
#include "vcos/ObjectArray.h"
#include "vcos/ObjectCalls.h"
#include "vcos/VxProperty.h"
#include "vx/vxCreate.h"
#include "vx/vxQuery.h"

using foundation::core::except::Error;
using foundation::core::except::IMsgIDException;

namespace sgutils::persistence {

namespace {

// The kinds of a record's fields besides values (0) and modes (1).
constexpr unsigned char kChildren = 2;
constexpr unsigned char kDefaults = 3;
constexpr unsigned char kDynamic = 4;
constexpr std::string_view childrenField(GraphicsFile::kChildrenField);
constexpr std::string_view defaultsField(GraphicsFile::kDefaultsField);
constexpr std::string_view dynamicField(GraphicsFile::kDynamicPropertiesField);

const COSID& graphicsClassId() {
  static const COSID id("vantel.graphics.Graphics");
  return id;
}

// The object array's single element, or null.
COSInterface* singleElement(const vxArray* value) {
  if (!value || !omIsVCOS(value) || vxGetNumberOfElements(value) != 1) return nullptr;
  return omGetLiveArrayElement(value, 0).get();
}

// The value of "Parent" that names one parent, converted once for the type
// of the children's property and set on each of them.
class ParentValue {
 public:
  explicit ParentValue(const COSInterfacePtr& parent) : parent_(parent) {}
  // Sets "Parent" of the object through the public client, so the classes'
  // own rules on parents apply.
  void setOn(const COSInterfacePtr& object) {
    static const COSID parentName("Parent");
    // Siblings are mostly of one class: its property is looked up once,
    // unless the object has run-time properties of its own.
    if (object->getClass() != class_ || vcos::hasDynamicProperties(object.get())) {
      property_ = object->findPropertyInfo(parentName);
      if (!property_) throw Error("VANTEL:sg:load:NoParentProperty", object->getClass()->getName());
      class_ = vcos::hasDynamicProperties(object.get()) ? nullptr : object->getClass();
    }
    const COSPropInfo* property = property_;
    if (!value_.has() || property != valueProperty_) {
      COSDataTypePtr type = property->getDataType();
      if (!value_.has() || type.get() != type_.get()) {
        matrix::unique_vxArray scalar(omCreateVCOSScalar(parent_));
        value_ = copy::OwnedValue(type, copy::fromArray(type, scalar.get()));
        type_ = std::move(type);
      }
      valueProperty_ = property;
    }
    object->setPropertyValue(COSGetPublicClient(), property, value_.get());
  }

 private:
  const COSInterfacePtr& parent_;
  const COSClass* class_ = nullptr;
  const COSPropInfo* property_ = nullptr;
  const COSPropInfo* valueProperty_ = nullptr;  // the property value_ was made for
  COSDataTypePtr type_;
  copy::OwnedValue value_;
};

void setParent(const COSInterfacePtr& object, const COSInterfacePtr& parent) { ParentValue(parent).setOn(object); }

bool isLoaderIdentifier(const std::string& id) {
  return id.rfind("VANTEL:vx:serialize:", 0) == 0 || id.rfind("VANTEL:sg:load:", 0) == 0;
}

}  // namespace

foundation::log::Logger& serializationLog() {
  static foundation::log::Logger& lg = foundation::log::channel("graphics::object_serialization");
  return lg;
}

GraphicsLoader::~GraphicsLoader() {
  if (!done_) deleteMade();
}

std::vector<vxNamedValue> GraphicsLoader::load(std::span<const std::uint8_t> bytes) {
  vxReadOptions read;
  read.makeFunctionHandle = options_.makeFunctionHandle;
  read.makeCapturingFunctionHandle = options_.makeCapturingFunctionHandle;
  read.makeObjects = [this](std::span<const vxSavedObjectHead> heads) { makeObjects(heads); };
  read.makeObjectArray = [this](const std::string& className, std::span<const vxSize> dims,
                                std::span<const std::int64_t> indexes) {
    return makeObjectArray(className, dims, indexes);
  };
  // Each record's values are set as soon as it is read, and freed before the
  // next one is read.
  read.takeObject = [this](std::size_t index, std::vector<vxNamedValue>& fields) { setFields(index, fields); };
  try {
    vxSavedDocument document = vxDeserializeDocument(bytes, read);
    hookChildren();
    placeTopLevel();
    // Saved forms go back before the graphics objects' load steps run, so
    // that a CreateFcn finds them loaded; the last found first, so that an
    // object whose form holds another finds that one loaded.
    for (std::size_t k = document.forms.size(); k-- > 0;) {
      const COSInterfacePtr& object = objects_[records_ + k];
      if (!object->isDestroyed() && !object->isBeingDestroyed()) loadSavedForm(object, document.forms[k]);
    }
    runLoadSteps();
    done_ = true;
    return std::move(document.values);
  } catch (const IMsgIDException& e) {
    restoreCurrentObjects();
    deleteMade();
    if (isLoaderIdentifier(e.identifier())) throw;
    // What the classes raise while a tree is built (a parent they refuse, a
    // callback that fails) reaches the caller as the loader's error.
    throw Error("VANTEL:sg:load:BadContent", e.what());
  } catch (...) {
    restoreCurrentObjects();
    deleteMade();
    throw;
  }
}

void GraphicsLoader::makeObjects(std::span<const vxSavedObjectHead> heads) {
  objects_.reserve(heads.size());
  madeBy_.reserve(heads.size());
  constructed_.reserve(heads.size());
  // The class of the previous record, checked once: a saved tree names the
  // same few classes over and over.
  const std::string* lastName = nullptr;
  COSClass* lastClass = nullptr;
  const COSClient* client = COSGetPublicClient();
  records_ = 0;
  for (const vxSavedObjectHead& head : heads) records_ += head.savedForm ? 0 : 1;
  elements_.resize(heads.size());
  childLists_.resize(heads.size());
  for (const vxSavedObjectHead& head : heads) {
    COSInterfacePtr object;
    if (head.savedForm) {
      // An object whose class saved a form of its own: made now, so that the
      // values can refer to it, and handed its form once the trees are built.
      object = makeSavedFormObject(head.className);
      constructed_.push_back(object);
    } else if (head.madeBy < 0) {
      if (!lastName || *lastName != head.className) {
        COSClass* cls = COSClass::getClass(COSID(head.className.c_str()));
        if (!cls || !cls->isSubclassOf(graphicsClassId()) || cls->isAbstract())
          throw Error("VANTEL:sg:load:UnknownClass", head.className);
        // There is one root; a saved one would come back as a second, outside the tree.
        static const COSID rootClassId("vantel.ui.Root");
        if (cls->isSubclassOf(rootClassId)) throw Error("VANTEL:sg:load:SecondRoot", head.className);
        lastName = &head.className;
        lastClass = cls;
      }
      // Made as a constructor call without arguments through the public
      // client makes it, without the array that call hands back; one that a
      // creation callback deleted counts as not made, as before.
      object = lastClass->createInstance(client, 0, nullptr);
      if (!object || object->isDestroyed()) throw Error("VANTEL:sg:load:UnknownClass", head.className);
      constructed_.push_back(object);
    } else {
      // A part its owner made with itself (an axes's title): take the one
      // the new owner made.
      const COSInterfacePtr& owner = objects_[static_cast<std::size_t>(head.madeBy)];
      const COSPropInfo* property = owner->findPropertyInfo(COSID(head.madeByProperty.c_str()));
      matrix::unique_vxArray value;
      if (property) {
        const COSValue read = property->getValue(owner.get());
        value = copy::toArray(property->getDataType(), read);
        property->releaseValue(owner.get(), read);
      }
      COSInterface* part = singleElement(value.get());
      if (!part || std::strcmp(part->getClass()->getName(), head.className.c_str()) != 0)
        throw Error("VANTEL:sg:load:MissingPart", head.className, head.madeByProperty);
      object = COSInterfacePtr(part);
      // A part named twice is one object at two places of the table.
      if (!partOwner_.emplace(part, static_cast<std::size_t>(head.madeBy)).second) indexOf_.noteTwice();
    }
    objects_.push_back(std::move(object));
    madeBy_.push_back(head.madeBy);
  }
}

vxArray* GraphicsLoader::makeObjectArray(const std::string& className, std::span<const vxSize> dims,
                                         std::span<const std::int64_t> indexes) {
  COSClass* cls = COSClass::getClass(COSID(className.c_str()));
  if (!cls) throw Error("VANTEL:sg:load:UnknownClass", className);
  if (dims.size() != 2) throw Error("VANTEL:sg:load:BadObjectArray", className);
  std::size_t kept = 0;
  for (std::int64_t index : indexes) kept += index >= 0 ? 1 : 0;
  // Elements outside the saved trees were written as none and are left out.
  const bool whole = kept == indexes.size();
  matrix::unique_vxArray array(whole ? omCreateVCOSMatrix(dims[0], dims[1], cls->getID())
                                     : omCreateVCOSMatrix(kept ? 1 : 0, kept, cls->getID()));
  std::size_t at = 0;
  lastArray_ = nullptr;
  lastIndexes_.clear();
  for (std::int64_t index : indexes) {
    if (index < 0) continue;
    const COSInterfacePtr& element = objects_[static_cast<std::size_t>(index)];
    if (!element->getClass()->isSubclassOf(cls)) throw Error("VANTEL:sg:load:BadObjectArray", className);
    omSetArrayElement(array.get(), at++, element);
    lastIndexes_.push_back(static_cast<std::size_t>(index));
  }
  lastArray_ = array.get();
  return array.release();
}

void GraphicsLoader::setFields(std::size_t i, std::vector<vxNamedValue>& fields) {
  const COSInterfacePtr& object = objects_[i];
  // A class that restores itself element by element gets its fields in its
  // load step instead.
  if (restoresElements(object->getClass())) elements_[i] = elementsOf(fields);
  const SavedPropertyList& list = SavedPropertyList::of(object->getClass());
  // Values first, then modes: setting a value may turn its mode manual,
  // and the saved mode is the one the object ends with.
  properties_.clear();
  modes_.clear();
  // Per field: its property, and whether it is a mode (1), a value (0),
  // the child list (kChildren) or the stored defaults (kDefaults).
  for (const vxNamedValue& field : fields) {
    const std::string_view name = field.name;
    if (name == childrenField) {
      properties_.push_back(nullptr);
      modes_.push_back(kChildren);
      continue;
    }
    if (name == defaultsField || name == dynamicField) {
      properties_.push_back(nullptr);
      modes_.push_back(name == defaultsField ? kDefaults : kDynamic);
      continue;
    }
    const std::ptrdiff_t k = list.find(name);
    properties_.push_back(k < 0 ? nullptr : list.properties[static_cast<std::size_t>(k)]);
    modes_.push_back(k < 0 ? 0 : list.mode[static_cast<std::size_t>(k)]);
  }
  for (int pass = 0; pass < 2; ++pass) {
    for (std::size_t f = 0; f < fields.size(); ++f) {
      const vxNamedValue& field = fields[f];
      const vxArray* value = field.value.get();
      if (modes_[f] == kChildren) continue;
      if (modes_[f] == kDynamic) {
        // Made again, with their values, by the first pass.
        if (pass == 0) restoreDynamicProperties(object, value);
        continue;
      }
      if (modes_[f] == kDefaults) {
        if (pass == 1) continue;
        if (!vxIsStruct(value)) throw Error("VANTEL:sg:load:BadDefaults");
        // Restored as saved, in "InternalDefaultPropMap": the object's first
        // DefaultProp takes it into the store.
        restoreSavedDefaults(object, value);
        continue;
      }
      if (elements_[i]) continue;
      const COSPropInfo* property = properties_[f];
      // A property the class no longer has, or no longer keeps, is passed
      // over: the file loads all the others.
      if (!property || (modes_[f] != 0) != (pass == 1)) continue;
      // A property holding a part the object made itself keeps it.
      if (COSInterface* part = singleElement(value)) {
        auto owner = partOwner_.find(part);
        if (owner != partOwner_.end() && owner->second == i) continue;
      }
      // A value that no longer fits is dropped, and the others load.
      setLoadedValue(object, property, value, field.name);
    }
  }
  // The child lists are kept, as table indexes, for hooking the trees once
  // every record is set. The indexes the file gave are taken when the list
  // is the object array read last; any other is looked up element by element.
  for (std::size_t f = 0; f < fields.size(); ++f) {
    if (modes_[f] != kChildren) continue;
    const vxArray* list = fields[f].value.get();
    ChildList& kept = childLists_[i].emplace_back();
    kept.objects = omIsVCOS(list);
    if (!kept.objects) continue;
    if (list == lastArray_) {
      kept.indexes = lastIndexes_;
      continue;
    }
    const std::size_t n = vxGetNumberOfElements(list);
    kept.indexes.reserve(n);
    for (std::size_t k = 0; k < n; ++k) {
      const COSInterfacePtr child = omGetLiveArrayElement(list, k);
      kept.indexes.push_back(child ? indexOf_.find(child.get()) : IndexByObject::npos);
    }
  }
  lastArray_ = nullptr;
}

std::size_t GraphicsLoader::IndexByObject::slotOf(const COSInterface* object) const noexcept {
  // Objects are at least 16 bytes apart: the low bits carry nothing.
  const auto key = reinterpret_cast<std::uintptr_t>(object) >> 4;
  return static_cast<std::size_t>(key * 0x9e3779b97f4a7c15ULL) & mask_;
}

void GraphicsLoader::IndexByObject::build() const {
  std::size_t size = 16;
  while (size < objects_.size() * 2) size *= 2;
  slots_.assign(size, {nullptr, npos});
  mask_ = size - 1;
  for (std::size_t i = 0; i < objects_.size(); ++i) {
    const COSInterface* object = objects_[i].get();
    std::size_t at = slotOf(object);
    while (slots_[at].first && slots_[at].first != object) at = (at + 1) & mask_;
    if (!slots_[at].first) slots_[at] = {object, i};
  }
}

std::size_t GraphicsLoader::IndexByObject::find(const COSInterface* object) const {
  if (!object) return npos;
  // While no object comes twice, a place found is the object's only one.
  if (!twice_) {
    if (last_ < objects_.size() && objects_[last_].get() == object) return last_;
    if (last_ + 1 < objects_.size() && objects_[last_ + 1].get() == object) return ++last_;
  }
  if (slots_.empty()) build();
  for (std::size_t at = slotOf(object);; at = (at + 1) & mask_) {
    if (slots_[at].first == object) return last_ = slots_[at].second;
    if (!slots_[at].first) return npos;
  }
}

void GraphicsLoader::hookChildren() {
  std::vector<bool> hooked(objects_.size(), false);
  children_.assign(objects_.size(), {});
  for (std::size_t i = 0; i < records_; ++i)
    for (const ChildList& list : childLists_[i]) {
      if (!list.objects) throw Error("VANTEL:sg:load:BadChildren");
      ParentValue parent(objects_[i]);
      // Oldest first: each hooked child becomes the newest.
      for (const std::size_t found : list.indexes) {
        // The table lists parents before children, so a child after its
        // parent cannot be its own ancestor.
        if (found == IndexByObject::npos || found <= i || found >= records_ || hooked[found] || madeBy_[found] >= 0)
          throw Error("VANTEL:sg:load:BadChildren");
        const COSInterfacePtr& child = objects_[found];
        if (child->isDestroyed() || child->isBeingDestroyed()) throw Error("VANTEL:sg:load:BadChildren");
        hooked[found] = true;
        children_[i].push_back(found);
        parent.setOn(child);
      }
    }
  childLists_.clear();
  topLevel_.clear();
  // Objects that saved forms of their own are in no tree.
  for (std::size_t i = 0; i < records_; ++i)
    if (!hooked[i] && madeBy_[i] < 0) topLevel_.push_back(i);
}

void GraphicsLoader::placeTopLevel() {
  if (!options_.parentOfTopLevel) return;
  for (std::size_t i : topLevel_) {
    const COSInterfacePtr& object = objects_[i];
    if (object->getOwnerObject()) continue;
    if (COSInterfacePtr parent = options_.parentOfTopLevel(object)) {
      // A hooked figure or axes becomes current in its parent (and an axes's
      // figure in the root): kept as they are, to be set back on failure.
      keepCurrentObjectsOf(parent);
      if (COSInterface* owner = parent->getOwnerObject()) keepCurrentObjectsOf(COSInterfacePtr(owner));
      setParent(object, parent);
    }
  }
}

void GraphicsLoader::keepCurrentObjectsOf(const COSInterfacePtr& holder) {
  static const COSID names[] = {COSID("CurrentFigure"), COSID("CurrentAxes")};
  for (const KeptCurrent& kept : keptCurrent_)
    if (kept.holder == holder) return;
  for (const COSID& name : names) {
    const COSPropInfo* property = holder->findPropertyInfo(name);
    if (!property) continue;
    const COSValue read = property->getValue(holder.get());
    matrix::unique_vxArray value = copy::toArray(property->getDataType(), read);
    property->releaseValue(holder.get(), read);
    keptCurrent_.push_back({holder, property, std::move(value)});
  }
}

// Sets the kept current objects back, before the objects made go: what was
// current before the load is current again, or nothing when it has gone.
void GraphicsLoader::restoreCurrentObjects() noexcept {
  for (const KeptCurrent& kept : keptCurrent_) {
    if (kept.holder->isDestroyed() || kept.holder->isBeingDestroyed()) continue;
    try {
      const vxArray* value = kept.value.get();
      const bool gone = !value || (omIsVCOS(value) && vxGetNumberOfElements(value) == 1 &&
                                   !omGetLiveArrayElement(value, 0));
      matrix::unique_vxArray none(vxCreateDoubleMatrix(0, 0, vxREAL));
      const COSDataTypePtr type = kept.property->getDataType();
      copy::OwnedValue back(type, copy::fromArray(type, gone ? none.get() : value));
      kept.holder->setPropertyValue(COSGetPublicClient(), kept.property, back.get());
    } catch (...) {
      // The others are set back; the load's own error is what the caller sees.
    }
  }
  keptCurrent_.clear();
}

namespace {

// The load on this thread whose steps are running (loads may nest: a
// CreateFcn may load a file).
thread_local const GraphicsLoader* activeLoader = nullptr;

class ActiveLoader {
 public:
  explicit ActiveLoader(const GraphicsLoader* loader) : previous_(activeLoader) { activeLoader = loader; }
  ~ActiveLoader() { activeLoader = previous_; }
  ActiveLoader(const ActiveLoader&) = delete;
  ActiveLoader& operator=(const ActiveLoader&) = delete;

 private:
  const GraphicsLoader* previous_;
};

}  // namespace

namespace {

// The objects of a list of table indexes, as a new object array.
vxArray* objectsAt(const std::vector<COSInterfacePtr>& objects, const std::vector<std::size_t>& indexes) {
  matrix::unique_vxArray list(omCreateVCOSMatrix(1, indexes.size(), graphicsClassId()));
  for (std::size_t k = 0; k < indexes.size(); ++k) omSetArrayElement(list.get(), k, objects[indexes[k]]);
  return list.release();
}

}  // namespace

vxArray* GraphicsLoader::deserializedChildrenOf(const COSInterface* object) {
  const GraphicsLoader* loader = activeLoader;
  if (!loader || !object) return nullptr;
  const std::size_t found = loader->indexOf_.find(object);
  if (found == IndexByObject::npos) return nullptr;
  const std::vector<std::size_t>& children = loader->children_[found];
  if (children.empty()) {
    // Most loaded objects are leaves: each gets a shared copy of one kept
    // empty list rather than a new one.
    static vxArray* const none = [] {
      vxArray* list = omCreateVCOSMatrix(1, 0, graphicsClassId());
      vxSetArrayScope(list, vxSCOPE_PERSISTENT);
      return list;
    }();
    return vxCreateSharedDataCopy(none);
  }
  return objectsAt(loader->objects_, children);
}

vxArray* GraphicsLoader::deserializedPartsOf(const COSInterface* object) {
  const GraphicsLoader* loader = activeLoader;
  if (!loader || !object) return nullptr;
  const std::size_t found = loader->indexOf_.find(object);
  if (found == IndexByObject::npos || loader->parts_[found].empty()) return nullptr;
  return objectsAt(loader->objects_, loader->parts_[found]);
}

// The class system's load step for every object, children before their
// parents as the serializer finishes them: customLoad of the class info,
// which calls "loadobj", which calls sgLoadObj. The tops of the saved trees
// are marked as such, so their sgLoadObj runs the pass after load (CreateFcn,
// then each loaded child's pass and defaults); every other object waits for
// its parent's pass.
void GraphicsLoader::runLoadSteps() {
  using graphics::internal::GraphicsCoreProperties;
  const std::size_t n = objects_.size();
  std::vector<bool> top(n, false);
  for (std::size_t i : topLevel_) top[i] = true;
  COSClass* core = GraphicsCoreProperties::getClassInstance();
  for (std::size_t i = 0; i < n; ++i) {
    COSInterface* object = objects_[i].get();
    if (core && object->getClass()->isSubclassOf(core))
      if (auto* block = sgutils::blockOf<GraphicsCoreProperties>(object, GraphicsCoreProperties::classID()))
        block->setTopLevelSerializedObject(top[i]);
  }
  // Each tree in the order of its top, its objects after the objects below
  // them: loaded children in saved order, then the parts the object made.
  parts_.assign(n, {});
  for (std::size_t i = 0; i < n; ++i)
    if (madeBy_[i] >= 0) parts_[static_cast<std::size_t>(madeBy_[i])].push_back(i);
  const std::vector<std::vector<std::size_t>>& parts = parts_;
  std::vector<std::size_t> order;
  order.reserve(n);
  struct Frame {
    std::size_t index;
    std::size_t next;  // over children, then parts
  };
  std::vector<Frame> stack;
  for (std::size_t t : topLevel_) {
    stack.push_back({t, 0});
    while (!stack.empty()) {
      Frame& f = stack.back();
      const std::vector<std::size_t>& kids = children_[f.index];
      const std::vector<std::size_t>& own = parts[f.index];
      if (f.next < kids.size() + own.size()) {
        const std::size_t k = f.next++;
        stack.push_back({k < kids.size() ? kids[k] : own[k - kids.size()], 0});
      } else {
        order.push_back(f.index);
        stack.pop_back();
      }
    }
  }
  const ActiveLoader active(this);
  // One object array of one element carries each object of a class in turn
  // to its load step, which reads it and keeps none of it.
  matrix::unique_vxArray value;
  COSClass* valueClass = nullptr;
  for (std::size_t i : order) {
    COSInterfacePtr object = objects_[i];
    // A callback of an earlier object may have deleted this one.
    if (object->isBeingDestroyed() || object->isDestroyed()) continue;
    COSClassInfo* info = object->getClass()->getClassInfo();
    if (!info) continue;
    if (elements_[i]) {
      // An element-loading object takes its saved elements instead.
      matrix::unique_vxArray elements = std::move(elements_[i]);
      info->customLoad(object, COSValue(elements.get()), COSDataTypePtr());
      continue;
    }
    if (!value || valueClass != object->getClass()) {
      value.reset(omCreateVCOSScalar(object));
      valueClass = object->getClass();
    } else {
      omSetArrayElement(value.get(), 0, object);
    }
    info->customLoad(object, COSValue(value.get()), COSDataTypePtr());
  }
  // A saved map no default look-up took during the load goes into its store now.
  for (const COSInterfacePtr& object : objects_)
    if (!object->isBeingDestroyed() && !object->isDestroyed()) takeWaitingSavedDefaults(object);
}

void GraphicsLoader::deleteMade() noexcept {
  // The newest first: children were made after their parents.
  for (auto it = constructed_.rbegin(); it != constructed_.rend(); ++it) {
    const COSInterfacePtr& object = *it;
    if (!object || object->isDestroyed() || object->isBeingDestroyed()) continue;
    try {
      object->deleteObject(COSGetPublicClient());
    } catch (...) {
      // Keep deleting the others; the first error is what the caller sees.
    }
  }
  constructed_.clear();
  objects_.clear();
}

}  // namespace sgutils::persistence
