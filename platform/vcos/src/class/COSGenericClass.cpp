// Class infos described by data, and the property visitor walk.
#include "vcos/COSGenericClass.h"

#include "vcos/COSClass.h"
#include "vcos/COSVisitor.h"
#include "vcos/src/class/ClassTables.h"

COSGenericClass::COSGenericClass(std::string name, std::string description)
    : name_(std::move(name)), description_(std::move(description)) {}

const char* COSGenericClass::getName() const { return name_.c_str(); }
const char* COSGenericClass::getDescription() const { return description_.c_str(); }
bool COSGenericClass::isAbstract() const { return abstract_; }
bool COSGenericClass::isSealed() const { return sealed_; }
bool COSGenericClass::isHidden() const { return hidden_; }
bool COSGenericClass::isConstructedOnLoad() const { return constructedOnLoad_; }
bool COSGenericClass::isPropertyTruncationAllowed() const { return truncation_; }

COSVisitor::~COSVisitor() = default;

void COSClass::acceptPropertyVisitor(COSVisitor& visitor) const {
  for (COSClass* c : tables_->ancestry)
    for (const COSInterfacePtr& p : c->tables().ownProperties)
      if (!visitor.visitProperty(c, static_cast<COSPropInfo*>(p.get()))) return;
}
