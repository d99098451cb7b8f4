// Descriptors and proxies, default providers, the web checks and the
// look-ups by description.
#include <gtest/gtest.h>

#include <boost/function.hpp>
#include <stdexcept>

#include "PropertyModelClasses.h"
#include "foundation/core/except/IMsgIDException.h"
#include "sgutils/propinfos/DefaultProvider.h"
#include "sgutils/propinfos/InternalPropInfo.h"
#include "sgutils/propinfos/MethodSet.h"
#include "sgutils/propinfos/NullPropInfoException.h"
#include "sgutils/propinfos/PropInfoLookup.h"
#include "sgutils/propinfos/PropertySet.h"
#include "sgutils/propinfos/UserFcnDefaultProvider.h"
#include "sgutils/propinfos/VCOSMethodInvoker.h"
#include "sgutils/propinfos/WebPropertyChecks.h"
#include "vcos/COSClass.h"

namespace sgtest::propmodel {
namespace {

using sgutils::PropertyDescriptor;

COSInterfacePtr sameObject(COSInterfacePtr o) { return o; }

TEST(PropertySet, FirstDescriptorOfANameStays) {
  sgutils::PropertySet set;
  PropertyDescriptor a("Color");
  a.setAlias("EdgeColor");
  EXPECT_TRUE(set.addProperty(a));
  PropertyDescriptor b("Color");
  b.setAlias("FaceColor");
  EXPECT_FALSE(set.addProperty(b));
  EXPECT_FALSE(set.addProperty(PropertyDescriptor()));
  EXPECT_STREQ(set.findProperty("Color").getAlias(), "EdgeColor");
  EXPECT_FALSE(set.findProperty("color").isValid()) << "the look-up is case-sensitive";

  sgutils::MethodSet methods;
  EXPECT_TRUE(methods.addMethod(sgutils::MethodDescriptor("draw")));
  sgutils::MethodSet shared;
  shared = methods;
  EXPECT_TRUE(shared.findMethod("draw").isValid());
  EXPECT_FALSE(methods.addMethod(sgutils::MethodDescriptor("draw")));
}

TEST(CreatePropInfo, ChoosesTheCheapProxyOnlyForADescriptorThatChangesNothing) {
  COSInterfacePtr object = makeObject(kFlagsClass);
  sgutils::WrappedPropInfoPtr wrapped(COSInterfacePtr(prop(object, "Plain")));
  EXPECT_EQ(sgutils::createPropInfo(PropertyDescriptor(), wrapped, &sameObject), nullptr);

  COSInterfacePtr plain(sgutils::createPropInfo(PropertyDescriptor("Plain"), wrapped, &sameObject));
  auto* proxy = dynamic_cast<sgutils::ProxyPropInfo*>(plain.get());
  ASSERT_NE(proxy, nullptr);
  EXPECT_STREQ(proxy->getName(), "Plain");
  proxy->setValue(object.get(), COSValue::fromDouble(7));
  EXPECT_EQ(proxy->getValue(object.get()).asDouble(), 7) << "the proxy did not reach the wrapped property";

  PropertyDescriptor d("Plain");
  d.setAlias("Shown");
  d.setSetAccess(PropertyDescriptor::Protected);
  COSInterfacePtr general(sgutils::createPropInfo(d, wrapped, &sameObject));
  auto* g = static_cast<COSPropInfo*>(general.get());
  EXPECT_STREQ(g->getName(), "Shown");
  EXPECT_FALSE(g->isInitAllowed()) << "without an initial value a proxy is not init-allowed";
  EXPECT_EQ(g->getMemberSetAccess(), ProtectedAccess);
  EXPECT_EQ(g->getMemberGetAccess(), PublicAccess);
  // An initial value is text, converted once to the wrapped type.
  d.setInitialValue("2.5");
  COSInterfacePtr initial(sgutils::createPropInfo(d, wrapped, &sameObject));
  auto* i = static_cast<COSPropInfo*>(initial.get());
  EXPECT_TRUE(i->isInitAllowed());
  EXPECT_EQ(i->getFactoryDefault().asDouble(), 2.5);
  d.setInitialValue("two and a half");
  EXPECT_ANY_THROW(sgutils::createPropInfo(d, wrapped, &sameObject));

  EXPECT_THROW(sgutils::ProxyPropInfo(wrapped, nullptr), sgutils::NullPropInfoException);
  object->deleteObject(COSGetPublicClient());
}

TEST(AmbiguousMatchingPropInfo, AmbiguousPrefixAnswersLikeAnUnknownName) {
  COSInterfacePtr object = makeObject(kFlagsClass);
  COSClass* cls = object->getClass();
  EXPECT_EQ(sgutils::getAmbiguousMatchingPropInfo(cls, "Plain"), prop(object, "Plain"));
  EXPECT_EQ(sgutils::getAmbiguousMatchingPropInfo(cls, "LegendO"), prop(object, "LegendOnly"));
  EXPECT_EQ(sgutils::getAmbiguousMatchingPropInfo(cls, "Object"), nullptr);
  EXPECT_EQ(sgutils::getAmbiguousMatchingPropInfo(cls, "NoSuchName"), nullptr);
  EXPECT_EQ(sgutils::getAmbiguousMatchingPropInfo(cls, nullptr), nullptr);
  object->deleteObject(COSGetPublicClient());
}

TEST(VCOSMethodInvoker, UnknownAccessOrNameFindsNoMethod) {
  registerPropertyModelClasses();
  COSClass* cls = graphics::mixin::Selectable::getClassInstance();
  int nlhs = 0;
  COSValue out[1];
  try {
    sgutils::callVCOSMethod(COSID("Selectable"), 2, cls, COSGetPublicClient(), nlhs, out, 0, nullptr);
    FAIL() << "a call with access 2 found a method";
  } catch (const foundation::core::except::IMsgIDException& e) {
    EXPECT_EQ(e.identifier(), "VANTEL:sgutils:NoMethodFound");
  }
  EXPECT_TRUE(sgutils::VCOSMethodInvoker(cls, COSID("Selectable"), nullptr, 4).exists());
  EXPECT_FALSE(sgutils::VCOSMethodInvoker(cls, COSID("NoSuchMethod"), nullptr).exists());
  EXPECT_FALSE(sgutils::isMethodOverridden(*cls, *cls, "Selectable"));
}

TEST(VCOSMethodInvoker, StaticCallConvertsInputsAndOutputsByTheSignature) {
  COSInterfacePtr object = makeObject(kFlagsClass);
  COSClass* cls = object->getClass();
  sgutils::VCOSMethodInvoker twice(cls, COSID("twice"), 1, 1, PublicAccess);
  ASSERT_TRUE(twice.exists());
  int nlhs = 1;
  COSValue out[1];
  const COSValue in[1] = {COSValue::fromDouble(21)};
  twice.invokeStatic(COSGetPublicClient(), nlhs, out, 1, in);
  EXPECT_EQ(nlhs, 1);
  EXPECT_EQ(out[0].asDouble(), 42);
  nlhs = 1;
  sgutils::callStaticVCOSMethod(COSID("twice"), cls, COSGetPublicClient(), nlhs, out, 1, in);
  EXPECT_EQ(out[0].asDouble(), 42);

  auto idOf = [&](auto&& call) {
    try {
      call();
    } catch (const foundation::core::except::IMsgIDException& e) {
      return e.identifier();
    }
    return std::string("nothing raised");
  };
  EXPECT_EQ(idOf([&] { twice.invoke(COSGetPublicClient(), nlhs, out, 1, in); }), "VANTEL:sgutils:MethodStatic");
  const COSValue two[2] = {in[0], in[0]};
  EXPECT_EQ(idOf([&] { twice.invokeStatic(COSGetPublicClient(), nlhs, out, 2, two); }),
            "VANTEL:sgutils:BadMethodSignatureInvalidNumberOfInputs");
  EXPECT_FALSE(sgutils::VCOSMethodInvoker(cls, COSID("twice"), 2, 1, PublicAccess).exists())
      << "a method with another output count was chosen";
  object->deleteObject(COSGetPublicClient());
}

TEST(DefaultProvider, AskedOnceEvenWhenTheFunctionThrows) {
  int calls = 0;
  sgutils::UserFcnDefaultProvider provider([&] {
    ++calls;
    return COSValue::fromInt(42);
  });
  EXPECT_EQ(provider.getDefaultValue().asInt(), 42);
  EXPECT_EQ(provider.getDefaultValue().asInt(), 42);
  EXPECT_EQ(calls, 1);
  sgutils::UserFcnDefaultProvider failing([&]() -> COSValue { throw std::runtime_error("no default"); });
  EXPECT_THROW(failing.getDefaultValue(), std::runtime_error);
  EXPECT_TRUE(failing.getDefaultValue().isEmpty()) << "a failed default was computed again";
  sgutils::UserFcnDefaultProvider empty{boost::function<COSValue()>()};
  EXPECT_THROW(empty.getDefaultValue(), boost::bad_function_call);
}

// A PropInfoBase with flags of its own and a chosen set access.
struct FlagProbe final : sgutils::PropInfoBase {
  FlagProbe(MemberAccess setAccess, unsigned flags)
      : PropInfoBase(COSID("probe"), "Probe", COSDataTypePtr("logical scalar"), PublicAccess, setAccess, flags,
                     "Probe PropInfo") {}
  COSValue getFactoryDefault() const override { return {}; }
  COSValue getValue(COSInterface*) const override { return {}; }
  void setValue(COSInterface*, COSValue) override {}
  void setModeManual(COSInterface*) override {}
};

TEST(PropInfoBase, DefaultAllowedNeedsSetAccessOtherThanProtected) {
  COSInterfacePtr open(new FlagProbe(PublicAccess, sgutils::kPropDefaultAllowed));
  COSInterfacePtr guarded(new FlagProbe(ProtectedAccess, sgutils::kPropDefaultAllowed));
  EXPECT_TRUE(static_cast<FlagProbe*>(open.get())->isDefaultAllowed());
  EXPECT_FALSE(static_cast<FlagProbe*>(guarded.get())->isDefaultAllowed());
  EXPECT_FALSE(static_cast<FlagProbe*>(guarded.get())->hasInternalDefault());
  auto* p = static_cast<FlagProbe*>(open.get());
  p->setResetAllowed(true);
  EXPECT_TRUE(p->isResetAllowed());
  p->setResetAllowed(false);
  EXPECT_FALSE(p->isResetAllowed());
  EXPECT_TRUE(p->isDefaultAllowed()) << "clearing the reset bit touched another bit";
}

TEST(WebPropertyChecks, SetCheckStandsBeforeTheValueButAfterTheModeFlip) {
  COSInterfacePtr object = makeObject(kSelectableClass);
  int getChecks = 0;
  sgutils::registerCheckWebPropertySupportFunctor(
      [](COSInterfacePtr, std::string name, COSValue) {
        if (name == "Selected") throw std::runtime_error("not on the web");
      },
      [&](COSInterfacePtr, std::string, COSValue) { ++getChecks; });
  EXPECT_THROW(publicSet(object, "Selected", COSValue::fromBool(true)), std::runtime_error);
  EXPECT_FALSE(selectableOf(object).getSelected()) << "the value landed past a refusing check";
  EXPECT_EQ(selectableOf(object).getSelectedMode(), graphics::datatype::AutoManual::Manual);
  publicGet(object, "HitTest");
  EXPECT_EQ(getChecks, 1);
  sgutils::clearCheckWebPropertySupportFunctor();
  EXPECT_NO_THROW(publicSet(object, "Selected", COSValue::fromBool(true)));
  sgutils::registerCheckWebPropertySupportFunctor(nullptr, nullptr);
  EXPECT_THROW(publicSet(object, "Selected", COSValue::fromBool(false)), std::bad_function_call);
  sgutils::clearCheckWebPropertySupportFunctor();
  object->deleteObject(COSGetPublicClient());
}

}  // namespace
}  // namespace sgtest::propmodel
