// PropInfoBase, the default providers and the web-property checks.
#include "sgutils/propinfos/PropInfoBase.h"

#include <boost/make_shared.hpp>

#include "foundation/core/except/Error.h"
#include "foundation/log/LogRecord.h"
#include "sgdatatypes/Enumeration.h"
#include "sgutils/lifecycle/SGReference.h"
#include "sgutils/propinfos/DataTypeDefaultProvider.h"
#include "sgutils/propinfos/ObjectPropInfo.h"
#include "sgutils/propinfos/UserFcnDefaultProvider.h"
#include "sgutils/propinfos/WebPropertyChecks.h"
#include "vcos/COSDataType.h"

namespace sgutils {

PropInfoBase::PropInfoBase(COSID classId, const char* name, COSDataTypePtr dataType, MemberAccess getAccess,
                           MemberAccess setAccess, unsigned flags, const char* description)
    : name_(name),
      propID_(name && *name ? COSID(name) : COSID()),
      classID_(classId),
      dataType_(std::move(dataType)),
      getAccess_(getAccess),
      setAccess_(setAccess),
      flags_(flags),
      description_(description) {
  if (!dataType_) {
    // A type that does not resolve is a fault of the class description; it is
    // reported, and the property is still made.
    static foundation::log::Logger& lg = foundation::log::channel("sgutils::propinfos");
    FOUNDATION_LOG(lg, foundation::log::kError) << classId.str() << "." << (name ? name : "");
  }
}

PropInfoBase::~PropInfoBase() = default;

bool PropInfoBase::isAbortSet() const { return SGReference::getAbortSet() && flag(kPropAbortSet); }

bool PropInfoBase::canContainInterfaces() const {
  if (flag(kPropNoInterfaces)) return false;
  return dataType_ && dataType_->canContainInterfaces();
}

void PropInfoBase::setManualInBlock(SGReference& block, COSInterface* instance) {
  setInBlock(block, instance, COSValue(graphics::datatype::canonicalEnumerationByte(1)));
}

void PropInfoBase::setResetAllowed(bool allowed) {
  if (allowed)
    flags_ |= kPropResetAllowed;
  else
    flags_ &= ~unsigned(kPropResetAllowed);
}

void PropInfoBase::setUserGetDefaultFcn(const boost::function<COSValue()>& fcn) {
  defaultProvider_ = boost::make_shared<UserFcnDefaultProvider>(fcn);
}

void PropInfoBase::setDefaultProvider(boost::shared_ptr<DefaultProvider> provider) {
  defaultProvider_ = std::move(provider);
}

DefaultProvider::~DefaultProvider() = default;
COSValue DefaultProvider::getDefault() { return value_; }

DataTypeDefaultProvider::~DataTypeDefaultProvider() = default;
COSValue DataTypeDefaultProvider::getDefault() {
  if (!type_) return COSValue();
  COSValue typeDefault = type_->copy(COSValue());
  // The type's default is what it makes of an empty word; keep our own copy.
  return typeDefault;
}

UserFcnDefaultProvider::~UserFcnDefaultProvider() = default;

namespace detail {

WebChecks& webChecks() noexcept {
  static WebChecks checks{WebPropertyCheck(BoardUpUnimplementedWebFunctionality::checkWebPropertySupportDefault),
                          WebPropertyCheck(BoardUpUnimplementedWebFunctionality::checkWebPropertySupportDefault)};
  return checks;
}

bool webGetCheckActive = false;
bool webSetCheckActive = false;

void runWebCheck(const WebPropertyCheck& check, COSInterface* instance, const char* name, COSValue value) {
  check(COSInterfacePtr(instance), std::string(name ? name : ""), value);
}

}  // namespace detail

namespace {
bool isDefaultCheck(const WebPropertyCheck& f) noexcept {
  return f && f.target<BoardUpUnimplementedWebFunctionality::CheckWebPropertySupportDefault>() != nullptr;
}
}  // namespace

WebPropertyCheck getCheckWebPropertyGetSupportFunctor() { return detail::webChecks().get; }
WebPropertyCheck getCheckWebPropertySetSupportFunctor() { return detail::webChecks().set; }

void registerCheckWebPropertySupportFunctor(WebPropertyCheck setCheck, WebPropertyCheck getCheck) {
  detail::WebChecks& c = detail::webChecks();
  c.set = std::move(setCheck);
  c.get = std::move(getCheck);
  detail::webSetCheckActive = !isDefaultCheck(c.set);
  detail::webGetCheckActive = !isDefaultCheck(c.get);
}

void clearCheckWebPropertySupportFunctor() {
  registerCheckWebPropertySupportFunctor(
      WebPropertyCheck(BoardUpUnimplementedWebFunctionality::checkWebPropertySupportDefault),
      WebPropertyCheck(BoardUpUnimplementedWebFunctionality::checkWebPropertySupportDefault));
}

}  // namespace sgutils

namespace sgutils::detail {
void raiseBadHandle() { throw foundation::core::except::Error("VANTEL:sg:dt_conv:Matrix_to_HObject:BadHandle"); }
}  // namespace sgutils::detail
