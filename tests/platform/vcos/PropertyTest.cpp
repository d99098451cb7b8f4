// Property look-up (exact, case-insensitive, prefix, ambiguity, dynamic) and
// the client path (access, listeners, custom set and get).
#include <gtest/gtest.h>

#include "VcosTestClasses.h"
#include "vcos/DynamicProperties.h"
#include "foundation/core/except/Error.h"

using foundation::core::except::Error;

namespace {

TEST(PropertyLookup, ExactThenCaseInsensitiveThenUniquePrefix) {
  COSInterfacePtr s = vt::make("vt.Shape");
  COSPropInfo* width = s->findPropertyInfo(COSID("Width"));
  ASSERT_NE(width, nullptr);
  EXPECT_EQ(s->findPropertyInfo(COSID("wIDTH")), width);
  EXPECT_EQ(s->findPropertyInfo(COSID("Wid")), width);
  EXPECT_EQ(s->findPropertyInfo(COSID("windows")), s->findPropertyInfo(COSID("WindowStyle")));
  EXPECT_EQ(s->findPropertyInfo(COSID("Nope")), nullptr);
  // Circle does not allow truncation, though its base does.
  COSInterfacePtr c = vt::make("vt.Circle");
  EXPECT_EQ(c->findPropertyInfo(COSID("Rad")), nullptr);
  EXPECT_NE(c->findPropertyInfo(COSID("radius")), nullptr);
}

TEST(PropertyLookup, AmbiguousPrefixNamesTheCandidates) {
  COSInterfacePtr s = vt::make("vt.Shape");
  try {
    s->findPropertyInfo(COSID("Wi"));
    FAIL() << "an ambiguous prefix was accepted";
  } catch (const Error& e) {
    EXPECT_EQ(e.identifier(), "VANTEL:vcos:AmbiguousPropertyName");
    std::string text = e.what();
    EXPECT_NE(text.find("Width"), std::string::npos) << text;
    EXPECT_NE(text.find("WindowStyle"), std::string::npos) << text;
  }
}

TEST(PropertyLookup, DynamicPropertiesLiveOnTheInstance) {
  COSInterfacePtr a = vt::make("vt.Shape");
  COSInterfacePtr b = vt::make("vt.Shape");
  COSGenericProp* extra = COSGenericProp::createNewDynamicProp("Extra", COSID("vt.Shape"), COSID("asciiString"));
  a->addDynamicProperty(extra);
  EXPECT_EQ(b->findPropertyInfo(COSID("Extra")), nullptr);
  COSInterfacePtr found;
  a->findDynamicProperty(found, COSID("extra"));
  EXPECT_EQ(found.get(), extra);
  // The quick test sees the added property, and an object whose side table
  // holds only a stored value has none.
  vt::set<std::int32_t>(b, "Width", 3);
  EXPECT_TRUE(vcos::hasDynamicProperties(a.get()));
  EXPECT_FALSE(vcos::hasDynamicProperties(b.get()));
  EXPECT_FALSE(vcos::hasDynamicProperties(nullptr));
  vt::set<std::string>(a, "Extra", "hello");
  EXPECT_EQ(vt::get<std::string>(a, "Extra"), "hello");
  // A dynamic property of one object is not a property of another.
  EXPECT_THROW(b->getPropertyValue(COSGetPublicClient(), extra), Error);
  EXPECT_THROW(a->addDynamicProperty(COSGenericProp::createNewDynamicProp("Width", COSID("vt.Shape"), COSID("any"))),
               Error);
}

TEST(PropertyAccess, ProtectedRefusesPublicAndAdmitsClassAndSubclass) {
  COSInterfacePtr s = vt::make("vt.Circle");
  try {
    vt::set<std::int32_t>(s, "Secret", 1);
    FAIL() << "public client set a protected property";
  } catch (const Error& e) {
    EXPECT_EQ(e.identifier(), "VANTEL:vcos:SetProhibited");
  }
  EXPECT_THROW(vt::get<std::int32_t>(s, "Secret"), Error);
  vt::set<std::int32_t>(s, "Secret", 11, vt::cls("vt.Shape")->getPrivateClient());
  EXPECT_EQ(vt::get<std::int32_t>(s, "Secret", vt::cls("vt.Circle")->getPrivateClient()), 11);
  // An unrelated class's client is refused too.
  EXPECT_THROW(vt::get<std::int32_t>(s, "Secret", vt::cls("vt.Friend")->getPrivateClient()), Error);
}

TEST(PropertyAccess, PrivateAdmitsOnlyTheDefiningClassAndListsAdmitNamedClasses) {
  COSInterfacePtr s = vt::make("vt.Circle");
  EXPECT_THROW(vt::set<std::int32_t>(s, "Internal", 1, vt::cls("vt.Circle")->getPrivateClient()), Error);
  vt::set<std::int32_t>(s, "Internal", 5, vt::cls("vt.Shape")->getPrivateClient());
  EXPECT_EQ(vt::get<std::int32_t>(s, "Internal", vt::cls("vt.Shape")->getPrivateClient()), 5);
  EXPECT_THROW(vt::set<double>(s, "Listed", 1.0), Error);
  vt::set<double>(s, "Listed", 2.5, vt::cls("vt.Friend")->getPrivateClient());
  EXPECT_EQ(vt::get<double>(s, "Listed"), 2.5);
  // The direct path does no access check.
  vcos::omCopyPropertyWithNoPermissionCheck(s, vt::prop(s, "Internal"), COSValue::fromInt(9));
  EXPECT_EQ(static_cast<vt::ShapeData*>(s->getInstanceData(COSID("vt.Shape")))->internal, 9);
}

TEST(PropertySet, ListenersSeeTheValueBeforeAndAfterTheStore) {
  COSInterfacePtr s = vt::make("vt.Shape");
  COSPropInfo* width = vt::prop(s, "Width");
  std::vector<std::string> seen;
  auto record = [&](const char* tag) {
    return vt::listener([&, tag](COSInterface* src, COSEventData* d) {
      auto* data = static_cast<vt::ShapeData*>(src->getInstanceData(COSID("vt.Shape")));
      seen.push_back(std::string(tag) + " new=" + std::to_string(d->getValue().asDouble()) +
                     " stored=" + std::to_string(data->width));
    });
  };
  COSInterfacePtr pre = record("pre"), post = record("post");
  s->addPropertyListener(COSPropertyEvent::PreSet, width, vt::L(pre));
  s->addPropertyListener(COSPropertyEvent::PostSet, width, vt::L(post));
  vt::set<double>(s, "Width", 4.0);
  ASSERT_EQ(seen.size(), 2u);
  EXPECT_EQ(seen[0], "pre new=4.000000 stored=1.000000");
  EXPECT_EQ(seen[1], "post new=4.000000 stored=4.000000");
  s->removePropertyListener(COSPropertyEvent::PostSet, width, vt::L(post));
  vt::set<double>(s, "Width", 5.0);
  EXPECT_EQ(seen.size(), 3u);
  COSInterfacePtr quietListener = record("quiet");
  EXPECT_THROW(s->addPropertyListener(COSPropertyEvent::PostSet, vt::prop(s, "Quiet"), vt::L(quietListener)), Error);
}

// The query behind the library's short course for unobserved sets: it must
// say no wherever the client path would do more than the property's set.
TEST(PropertySet, UnobservedPublicSetAnswersOnlyForThePlainCourse) {
  COSInterfacePtr s = vt::make("vt.Shape");
  COSInterfacePtr c = vt::make("vt.Circle");
  COSPropInfo* width = vt::prop(s, "Width");
  COSCustomMetaClass* custom = nullptr;
  EXPECT_TRUE(s->isUnobservedPublicSet(width, custom));
  EXPECT_EQ(custom, nullptr);
  EXPECT_FALSE(c->isUnobservedPublicSet(vt::prop(c, "Secret"), custom)) << "protected";
  EXPECT_FALSE(s->isUnobservedPublicSet(vt::prop(c, "Radius"), custom)) << "a property of another class";

  COSInterfacePtr l = vt::listener([](COSInterface*, COSEventData*) {});
  s->addPropertyListener(COSPropertyEvent::PreSet, width, vt::L(l));
  EXPECT_FALSE(s->isUnobservedPublicSet(width, custom)) << "an object listener";
  s->removePropertyListener(COSPropertyEvent::PreSet, width, vt::L(l));
  EXPECT_TRUE(s->isUnobservedPublicSet(width, custom));
  s->getClass()->addClassPropertyListener(COSGetPublicClient(), COSPropertyEvent::PostSet, width, vt::L(l));
  EXPECT_FALSE(s->isUnobservedPublicSet(width, custom)) << "a class listener";
  s->getClass()->removeClassPropertyListener(COSPropertyEvent::PostSet, width, vt::L(l));
  EXPECT_TRUE(s->isUnobservedPublicSet(width, custom));

  COSInterfacePtr o = vt::cls("vt.Tracked")->createInstance(COSGetPublicClient());
  EXPECT_TRUE(o->isUnobservedPublicSet(vt::prop(o, "Color"), custom));
  EXPECT_NE(custom, nullptr) << "the custom set's meta class";
  EXPECT_TRUE(o->isUnobservedPublicSet(vt::prop(o, "Size"), custom));
  EXPECT_EQ(custom, nullptr);
  COSPropInfo* size = vt::prop(o, "Size");
  o->deleteObject(COSGetPublicClient());
  EXPECT_FALSE(o->isUnobservedPublicSet(size, custom)) << "a deleted object";
}

TEST(PropertySet, GenericPropertiesCopyStoredValuesAndResetToDefaults) {
  COSInterfacePtr s = vt::make("vt.Shape");
  EXPECT_EQ(vt::get<std::string>(s, "WindowStyle"), "none");
  std::string text = "framed";
  s->setPropertyValue(COSGetPublicClient(), vt::prop(s, "WindowStyle"), COSValue(&text));
  text = "changed after the set";
  EXPECT_EQ(vt::get<std::string>(s, "WindowStyle"), "framed");
  s->resetToClassDefaults();
  EXPECT_EQ(vt::get<std::string>(s, "WindowStyle"), "none");
}

TEST(CustomSet, RunsOnlyForPropertiesTurnedOnForTheClass) {
  vt::Journal& j = vt::journal();
  COSClass* tracked = vt::cls("vt.Tracked");
  ASSERT_NE(tracked, nullptr);
  EXPECT_TRUE(tracked->usesCustomMetaClass());
  EXPECT_EQ(j.finishPropertyCalls, 1);
  EXPECT_EQ(j.finishClassCalls, 1);
  EXPECT_EQ(j.propertiesSeenAtFinish, 2);
  COSInterfacePtr o = tracked->createInstance(COSGetPublicClient());
  j.customSetNames.clear();
  vt::set<double>(o, "Size", 2.0);
  vt::set<double>(o, "Color", 3.0);
  vt::set<double>(o, "Size", 4.0);
  EXPECT_EQ(j.customSetNames, (std::vector<std::string>{"Color"}));
  EXPECT_EQ(vt::get<double>(o, "Color"), 3.0);
  EXPECT_EQ(vt::get<double>(o, "Size"), 4.0);
  // The direct path never reaches the meta class.
  vcos::omCopyPropertyWithNoPermissionCheck(o, vt::prop(o, "Color"), COSValue::fromDouble(1.0));
  EXPECT_EQ(j.customSetNames.size(), 1u);
  EXPECT_FALSE(vt::cls("vt.Shape")->usesCustomMetaClass());
  // A subclass with the ordinary meta class keeps the marks of its base, and
  // the sets still reach the meta class that turned them on.
  COSInterfacePtr child = vt::make("vt.TrackedChild");
  EXPECT_FALSE(child->getClass()->usesCustomMetaClass());
  vt::set<double>(child, "Color", 5.0);
  vt::set<double>(child, "Size", 5.0);
  EXPECT_EQ(j.customSetNames, (std::vector<std::string>{"Color", "Color"}));
}

TEST(CustomGet, GetsAndReleasesOfTurnedOnPropertiesGoThroughTheMetaClass) {
  vt::Journal& j = vt::journal();
  COSInterfacePtr o = vt::make("vt.Tracked");
  COSClass* tracked = o->getClass();
  // Color was turned on once the class was complete, Size while it was
  // being built.
  EXPECT_TRUE(tracked->isCustomGetOn(vt::prop(o, "Color")));
  EXPECT_TRUE(tracked->isCustomGetOn(vt::prop(o, "Size")));
  EXPECT_FALSE(tracked->isCustomSetOn(vt::prop(o, "Size")));
  EXPECT_FALSE(vt::cls("vt.Shape")->isCustomGetOn(vt::prop(vt::make("vt.Shape"), "Width")));
  vt::set<double>(o, "Color", 2.5);
  vt::set<double>(o, "Size", 1.5);
  j.customGetNames.clear();
  j.customReleaseNames.clear();
  EXPECT_EQ(vt::get<double>(o, "Color"), 2.5);
  EXPECT_EQ(vt::get<double>(o, "Size"), 1.5);
  EXPECT_EQ(j.customGetNames, (std::vector<std::string>{"Color", "Size"}));
  EXPECT_EQ(j.customReleaseNames, j.customGetNames) << "a value went back another way than it came";
  // Inherited by a subclass with the ordinary meta class.
  COSInterfacePtr child = vt::make("vt.TrackedChild");
  vt::set<double>(child, "Color", 3.0);
  EXPECT_EQ(vt::get<double>(child, "Color"), 3.0);
  EXPECT_EQ(j.customGetNames.back(), "Color");
  EXPECT_EQ(j.customReleaseNames.size(), 3u);
  // A PostGet listener that fails: the value the custom get made goes back
  // through the custom release.
  COSInterfacePtr failing = vt::listener([](COSInterface*, COSEventData*) {
    throw foundation::core::except::Error("VANTEL:vcos:InvalidValueForType", "Color");
  });
  o->addPropertyListener(COSPropertyEvent::PostGet, vt::prop(o, "Color"), vt::L(failing));
  EXPECT_THROW(vt::get<double>(o, "Color"), Error);
  EXPECT_EQ(j.customGetNames.size(), 4u);
  EXPECT_EQ(j.customReleaseNames.size(), 4u);
  o->removePropertyListener(COSPropertyEvent::PostGet, vt::prop(o, "Color"), vt::L(failing));
}

}  // namespace

namespace {

TEST(PropertyAccess, FoundPropertiesWorkThroughTheGeneralPointer) {
  COSInterfacePtr s = vt::make("vt.Shape");
  COSInterfacePtr width;
  s->findProperty(width, COSID("width"));
  ASSERT_TRUE(width);
  s->setPropertyValue(COSGetPublicClient(), width, COSValue::fromDouble(3.5));
  COSValue v = s->getPropertyValue(COSGetPublicClient(), width);
  EXPECT_EQ(v.asDouble(), 3.5);
  s->releasePropertyValue(COSGetPublicClient(), width, v);
  // A class is not a property.
  EXPECT_THROW(s->getPropertyValue(COSGetPublicClient(), COSClass::getClassInterface(COSID("vt.Shape"))), Error);
}

}  // namespace
