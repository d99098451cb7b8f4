// The hand-written half of ViewPropertiesManager: the choice of strategy by
// the kind of component, the marks, the walk up to a figure that may hold
// app-building defaults, and the methods that reach them from the language.
#include "sgutils/objects/ViewPropertiesManager.gen.h"

#include <mutex>
#include <string_view>
#include <utility>

#include "foundation/core/except/Error.h"
#include "sgutils/objects/MixinMethod.h"
#include "sgutils/propinfos/BlockOf.h"
#include "sgutils/view/LegacyRuntimeViewStrategy.h"
#include "sgutils/view/RuntimeViewStrategy.h"
#include "vcos/COSClass.h"
#include "vcos/COSClient.h"
#include "vcos/COSInterface.h"
#include "vcos/COSPropInfo.h"
#include "vcos/ObjectArray.h"
#include "vx/vx.h"

namespace graphics::mixin {

using foundation::core::except::Error;

namespace {

// The class name after its package.
std::string_view plainName(const COSInterface* object) {
  std::string_view name = object->getClass()->getName();
  const std::size_t dot = name.rfind('.');
  return dot == std::string_view::npos ? name : name.substr(dot + 1);
}

}  // namespace

ViewPropertiesManager* ViewPropertiesManager::fromObject(const COSInterface* object) noexcept {
  return object ? sgutils::blockOf<ViewPropertiesManager>(object, classID()) : nullptr;
}

bool ViewPropertiesManager::isCustomComponent(const COSInterface* self) {
  static const COSID container("lyt.Container");
  static const COSID componentContainer("vantel.ui.componentcontainer.ComponentContainer");
  const COSClass* cls = self->getClass();
  return cls->isSubclassOf(container) || cls->isSubclassOf(componentContainer);
}

bool ViewPropertiesManager::isVantelComponent(const COSInterface* self) {
  static const COSID model("appforgeservices.internal.interfaces.model.AbstractModel");
  return self->getClass()->isSubclassOf(model);
}

bool ViewPropertiesManager::isAppBuildingFigure(const COSInterfacePtr& object) {
  if (!object || plainName(object.get()) != "Figure") return false;
  static const COSID name("HasAppBuildingDefaults");
  // A figure class without the property is no app-building figure.
  const COSPropInfo* property = object->findPropertyInfo(name);
  if (!property) return false;
  const COSClient* client = COSGetPublicClient();
  COSValue value = object->getPropertyValue(client, property);
  const bool found = value.asPointer<const void>() != nullptr;
  object->releasePropertyValue(client, property, value);
  return found;
}

bool ViewPropertiesManager::isInAppBuildingFigure(COSInterface* self) {
  COSInterface* node = self;
  while (plainName(node) != "Figure" && node->getOwnerObject()) node = node->getOwnerObject();
  return isAppBuildingFigure(COSInterfacePtr(node));
}

// The kind of component and the names its strategy starts with are the
// same for every object of a class: found at the first object of the class
// and kept for the process (classes are not taken away while objects live).
struct ViewPropertiesManager::ClassChoice {
  enum class Kind : unsigned char { Custom, Runtime, Legacy };
  Kind kind = Kind::Custom;
  std::string name;
  std::vector<std::string> startingNames;

  std::unique_ptr<sgutils::ViewPropertiesStrategy> makeStrategy() const {
    if (kind == Kind::Custom) return nullptr;
    return kind == Kind::Runtime ? sgutils::RuntimeViewStrategy::getInstance(name)
                                 : sgutils::LegacyRuntimeViewStrategy::getInstance(name);
  }
};

namespace {

const ViewPropertiesManager::ClassChoice& choiceFor(COSInterface* self) {
  using Choice = ViewPropertiesManager::ClassChoice;
  static std::mutex lock;
  static std::vector<std::pair<COSID, std::unique_ptr<Choice>>> choices;
  const COSID id = self->getClass()->getID();
  // Objects come in runs of one class: the last answer of the thread first.
  thread_local COSID lastId;
  thread_local const Choice* last = nullptr;
  if (last && lastId == id) return *last;
  const std::lock_guard<std::mutex> held(lock);
  auto remember = [&id](const Choice* choice) -> const Choice& {
    lastId = id;
    last = choice;
    return *choice;
  };
  for (const auto& [classId, choice] : choices)
    if (classId == id) return remember(choice.get());
  auto choice = std::make_unique<Choice>();
  choice->name = std::string(plainName(self));
  if (!ViewPropertiesManager::isCustomComponent(self)) {
    choice->kind = ViewPropertiesManager::isVantelComponent(self) ? Choice::Kind::Runtime : Choice::Kind::Legacy;
    choice->startingNames = choice->makeStrategy()->getDirtyProperties();
  }
  return remember(choices.emplace_back(id, std::move(choice)).second.get());
}

const std::vector<std::string> kNoNames;

}  // namespace

void ViewPropertiesManager::setStrategy(COSInterface* self) {
  if (choice_) return;
  choice_ = &choiceFor(self);
  cacheReady_ = choice_->kind != ClassChoice::Kind::Custom;
}

const std::vector<std::string>& ViewPropertiesManager::startingNames() const noexcept {
  return choice_ && !startingNamesTaken_ ? choice_->startingNames : kNoNames;
}

bool ViewPropertiesManager::hasDirtyProperties() const {
  return strategy_ ? strategy_->hasDirtyProperties() : !startingNames().empty();
}

void ViewPropertiesManager::markClean() {
  if (strategy_) strategy_->markClean();
  if (choice_) startingNamesTaken_ = true;
}

void ViewPropertiesManager::markViewPropertyDirty(COSInterface* self, std::string_view name) {
  markViewPropertyDirty(self, COSID(name));
}

void ViewPropertiesManager::markViewPropertyDirty(COSInterface* self, const COSPropInfo* property) {
  // A property not yet added to a class has no id: its name is interned.
  const COSID id = property->getID();
  markViewPropertyDirty(self, id ? id : COSID(property->getName()));
}

void ViewPropertiesManager::markViewPropertyDirty(COSInterface* self, COSID name) {
  setStrategy(self);
  if (!strategy_) {
    strategy_ = choice_->makeStrategy();
    // A strategy starts with the class's names: gone if the view was told.
    if (strategy_ && startingNamesTaken_) strategy_->markClean();
  }
  if (strategy_) strategy_->markDirty(name);
}

void ViewPropertiesManager::markViewPropertiesDirty(COSInterface* self, const vxArray* names) {
  // Every entry is read as a cell, so a value that is no cell is refused at
  // its first entry and an empty one marks nothing. A cell keeps exactly its
  // elements, so no index runs past the end.
  setStrategy(self);
  const std::size_t n = names ? vxGetNumberOfElements(names) : 0;
  for (std::size_t i = 0; i < n; ++i) {
    if (!vxIsCell(names)) throw Error("VANTEL:sgutils:NotCellArray");
    const vxArray* entry = vxGetCell(names, i);
    const std::string name = entry ? vxArrayToStdString(entry) : std::string();
    markViewPropertyDirty(self, name);
  }
}

std::vector<std::string> ViewPropertiesManager::getDirtyPropertyStrings() const {
  return strategy_ ? strategy_->getDirtyProperties() : startingNames();
}

vxArray* ViewPropertiesManager::getDirtyProperties() const {
  if (!choice_ || choice_->kind == ClassChoice::Kind::Custom) return nullptr;
  const std::vector<std::string> names = getDirtyPropertyStrings();
  vxArray* out = vxCreateStringArray(1, names.size());
  for (std::size_t i = 0; i < names.size(); ++i)
    vxSetStringElement(out, i, std::u16string(names[i].begin(), names[i].end()));
  return out;
}

namespace {

// The block of the method's object (its first input), or null.
ViewPropertiesManager* selfBlock(int nrhs, const COSValue* prhs, COSInterfacePtr& object) {
  if (nrhs < 1) return nullptr;
  const vxArray* self = prhs[0].asPointer<const vxArray>();
  if (!self || !omIsVCOS(self) || vxGetNumberOfElements(self) != 1) return nullptr;
  object = omGetLiveArrayElement(self, 0);
  return ViewPropertiesManager::fromObject(object.get());
}

void getDirtyPropertiesMethod(const COSClient*, int& nlhs, COSValue* plhs, int nrhs, const COSValue* prhs) {
  COSInterfacePtr object;
  ViewPropertiesManager* block = selfBlock(nrhs, prhs, object);
  vxArray* names = block ? block->getDirtyProperties() : nullptr;
  // No strategy (a custom component) reaches the language as an empty array.
  nlhs = 1;
  plhs[0] = COSValue(names ? names : vxCreateDoubleMatrix(0, 0, vxREAL));
}

void disableCacheMethod(const COSClient*, int&, COSValue*, int nrhs, const COSValue* prhs) {
  COSInterfacePtr object;
  if (ViewPropertiesManager* block = selfBlock(nrhs, prhs, object)) block->disableCache();
}

void isCacheReadyMethod(const COSClient*, int& nlhs, COSValue* plhs, int nrhs, const COSValue* prhs) {
  COSInterfacePtr object;
  ViewPropertiesManager* block = selfBlock(nrhs, prhs, object);
  nlhs = 1;
  plhs[0] = COSValue(vxCreateLogicalScalar(block && block->isCacheReady()));
}

void markViewPropertiesDirtyMethod(const COSClient*, int&, COSValue*, int nrhs, const COSValue* prhs) {
  COSInterfacePtr object;
  ViewPropertiesManager* block = selfBlock(nrhs, prhs, object);
  if (block && nrhs > 1) block->markViewPropertiesDirty(object.get(), prhs[1].asPointer<const vxArray>());
}

void isInAppBuildingFigureMethod(const COSClient*, int& nlhs, COSValue* plhs, int nrhs, const COSValue* prhs) {
  COSInterfacePtr object;
  selfBlock(nrhs, prhs, object);
  nlhs = 1;
  plhs[0] = COSValue(vxCreateLogicalScalar(object && ViewPropertiesManager::isInAppBuildingFigure(object.get())));
}

}  // namespace

void ViewPropertiesManager::addMethods(COSClass* cls, COSID classId) {
  using sgutils::addMixinMethod;
  addMixinMethod(cls, classId, "getDirtyProperties", &getDirtyPropertiesMethod, {"object"}, {"names"});
  addMixinMethod(cls, classId, "disableCache", &disableCacheMethod, {"object"}, {});
  addMixinMethod(cls, classId, "isCacheReady", &isCacheReadyMethod, {"object"}, {"result"});
  addMixinMethod(cls, classId, "markViewPropertiesDirty", &markViewPropertiesDirtyMethod, {"object", "names"}, {});
  addMixinMethod(cls, classId, "isInAppBuildingFigure", &isInAppBuildingFigureMethod, {"object"}, {"result"});
}

}  // namespace graphics::mixin
