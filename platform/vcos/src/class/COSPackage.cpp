// Packages (namespaces) by name, and the registration of class infos in them.
#include "vcos/COSPackage.h"

#include <unordered_map>

#include "vcos/src/class/ClassRegistry.h"
#include "vcos/src/core/Messages.h"
#include "foundation/core/except/Error.h"
#include "vcos/COSClass.h"
#include "vcos/COSNamespaceInfo.h"
#include "vcos/COSObjectOperations.h"

using foundation::core::except::Error;

namespace {
std::unordered_map<COSID, std::unique_ptr<COSPackage>>& packages() {
  static auto* map = new std::unordered_map<COSID, std::unique_ptr<COSPackage>>;  // lives forever
  return *map;
}
}  // namespace

COSPackage::COSPackage(COSNamespaceInfo* info) : name_(info->getName()), info_(info) {}
COSPackage::~COSPackage() = default;

COSPackage* COSPackage::getNamespace(COSID name) {
  vcos::internal::ensureBuiltins();
  auto& map = packages();
  auto it = map.find(name);
  return it == map.end() ? nullptr : it->second.get();
}

COSPackage* COSPackage::addNamespace(COSNamespaceInfo* info) {
  assert(info && "addNamespace needs an info");
  std::unique_ptr<COSNamespaceInfo> owned(info);
  COSID name(info->getName());
  auto& map = packages();
  if (auto it = map.find(name); it != map.end()) return it->second.get();
  auto* package = new COSPackage(owned.release());
  map.emplace(name, std::unique_ptr<COSPackage>(package));
  package->getNamespaceInfo()->initializePackage(package);
  return package;
}

COSID COSPackage::fullNameOf(const char* shortName) const {
  if (!name_) return COSID(shortName);
  std::string full = name_.str();
  full += '.';
  full += shortName;
  return COSID(full);
}

void COSPackage::findClass(COSInterfacePtr& out, const char* name) {
  std::string_view n(name ? name : "");
  COSID full = n.find('.') == std::string_view::npos ? fullNameOf(name) : COSID(n);
  out = COSClass::getClass(full);
}

void COSPackage::addClass(COSClassInfo* info, int, int) {
  assert(info && "addClass needs a class info");
  std::unique_ptr<COSClassInfo> owned(info);
  COSID full = fullNameOf(info->getName());
  auto& registry = vcos::internal::classRegistry();
  if (registry.count(full)) throw Error(vcos::msg::ExistingName, full.str());
  registry[full] = vcos::internal::ClassRegistration{std::move(owned), this, nullptr};
}

COSNamespaceInfo::~COSNamespaceInfo() = default;
const char* COSNamespaceInfo::getDescription() const { return ""; }
const char* COSNamespaceInfo::getDetails() const { return ""; }
void COSNamespaceInfo::initializePackage(COSPackage*) {}
bool COSNamespaceInfo::attemptToLoadClass(const char*) { return false; }
bool COSNamespaceInfo::attemptToLoadFunction(const char*) { return false; }
bool COSNamespaceInfo::attemptToLoadInnerNamespace(const char*) { return false; }
bool COSNamespaceInfo::attemptToLoadSubPackage(const char*) { return false; }
bool COSNamespaceInfo::attemptToLoadType(const char*) { return false; }
bool COSNamespaceInfo::canLoadDynamicContent() const { return false; }
bool COSNamespaceInfo::isDestructible() const { return false; }
bool COSNamespaceInfo::isLocked() const { return false; }
int COSNamespaceInfo::getMethodSelector() const { return 0; }
void COSNamespaceInfo::throwErrorForDefinitionOfExistingName(const char* name) const {
  throw Error(vcos::msg::ExistingName, name ? name : "");
}

std::string vcos::nameresolution::getBaseClassNameFromFullName(const std::string& fullName) {
  auto dot = fullName.rfind('.');
  return dot == std::string::npos ? fullName : fullName.substr(dot + 1);
}
