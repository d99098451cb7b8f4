// Data types and conversions, the array bridge, interned ids, and meta
// classes with attributes.
#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <thread>

#include "VcosTestClasses.h"
#include "foundation/core/except/Error.h"
#include "vcos/COSListener.h"
#include "vcos/COSListenerOp.h"
#include "vx/vx.h"
#include "vx/vxObjectStorage.h"
#include "vcos/VxProperty.h"

using foundation::core::except::Error;

namespace {

TEST(InternedIds, EqualTextsGiveOneIdAcrossThreads) {
  std::vector<const vcos::internal::InternedEntry*> seen(8);
  std::vector<std::thread> threads;
  for (int i = 0; i < 8; ++i)
    threads.emplace_back([&, i] { seen[i] = vcos::internal::makeInterned(std::string("Concurrent.Name")).entry(); });
  for (auto& t : threads) t.join();
  for (auto* e : seen) EXPECT_EQ(e, seen[0]);
  EXPECT_TRUE(vcos::internal::makeInterned(std::string()).isEmpty());
  EXPECT_EQ(COSID("MiXeD").folded(), COSID("mixed"));
}

TEST(DataTypes, BasicTypesKnowTheirWords) {
  COSDataTypePtr dbl("double scalar");
  EXPECT_FALSE(dbl->isEqual(COSValue::fromDouble(NAN), COSValue::fromDouble(NAN)));
  EXPECT_TRUE(dbl->isEqualWithEqualNans(COSValue::fromDouble(NAN), COSValue::fromDouble(NAN)));
  EXPECT_LT(dbl->compare(COSValue::fromDouble(-2.0), COSValue::fromDouble(1.0)), 0);
  COSDataTypePtr i8("int8 scalar");
  EXPECT_LT(i8->compare(COSValue::fromInt(-1), COSValue::fromInt(1)), 0);
  COSDataTypePtr text("asciiString");
  std::string a = "abc";
  COSValue copy = text->copy(COSValue(&a));
  EXPECT_NE(copy.asPointer<std::string>(), &a);
  EXPECT_TRUE(text->isEqual(copy, COSValue(&a)));
  text->destroy(copy);
  EXPECT_FALSE(COSDataTypePtr("logical scalar")->checkValue(COSValue::fromInt(7), false));
  EXPECT_THROW(COSDataTypePtr("logical scalar")->checkValue(COSValue::fromInt(7), true), Error);
  EXPECT_THROW(COSDataTypePtr("no such type"), Error);
}

TEST(DataTypes, ClassTypedNamesCheckTheClass) {
  vt::registerClasses();
  COSDataTypePtr circleScalar("vt.Circle scalar");
  COSInterfacePtr c = vt::make("vt.Circle");
  COSInterfacePtr s = vt::make("vt.Shape");
  EXPECT_TRUE(circleScalar->checkValue(COSValue(c.get()), false));
  EXPECT_FALSE(circleScalar->checkValue(COSValue(s.get()), false));
  EXPECT_TRUE(COSTypeRepository::getType(COSID("vt.Shape vector")));
  EXPECT_FALSE(COSTypeRepository::getType(COSID("vt.Missing scalar")));
  EXPECT_THROW(vt::cls("vt.Shape")->validatePropertyType(COSID("vt.Shape"), COSID("vt.Missing")), Error);
  // A copy of a handle keeps the object alive.
  COSInterfacePtr weak(c, COSWeakReference);
  COSValue held = circleScalar->copy(COSValue(c.get()));
  c = nullptr;
  EXPECT_FALSE(weak->isDestroyed());
  circleScalar->destroy(held);
  EXPECT_TRUE(weak->isDestroyed());
}

TEST(DataTypes, ConversionsCanBeAddedAndRemoved) {
  struct Negate final : COSTypeConversion {
    COSValue convert(COSValue v) const override { return COSValue::fromDouble(-v.asDouble()); }
  };
  COSID dbl("double scalar"), single("single scalar");
  COSTypeRepository::addConversion(dbl, single, new Negate);
  ASSERT_NE(COSTypeRepository::getConversion(dbl, single), nullptr);
  EXPECT_EQ(COSTypeRepository::getConversion(dbl, single)->convert(COSValue::fromDouble(2)).asDouble(), -2.0);
  COSTypeRepository::removeConversion(dbl, single);
  EXPECT_EQ(COSTypeRepository::getConversion(dbl, single), nullptr);
}

TEST(DataTypes, TextConvertsToAnyTypeMadeFromArrays) {
  const COSID text("asciiString");
  auto fromText = [&](const char* type, const std::string& s) {
    COSTypeConversion* c = COSTypeRepository::getConversion(text, COSID(type));
    if (!c) throw std::runtime_error(std::string("no conversion to ") + type);
    return c->convert(COSValue(&s));
  };
  EXPECT_EQ(fromText("double scalar", "2.5").asDouble(), 2.5) << "a number is read as a number";
  EXPECT_EQ(fromText("double scalar", " -Inf ").asDouble(), -INFINITY);
  // Fault pinned: a one-character text went as a char row, so "5" gave 53.
  EXPECT_EQ(fromText("double scalar", "5").asDouble(), 5.0) << "a digit is read as its number";
  EXPECT_EQ(fromText("int32 scalar", "7").asInt(), 7) << "a digit is read as its number";
  EXPECT_TRUE(fromText("logical scalar", "true").asBool());
  const COSValue u = fromText("unicodeString", "12");
  EXPECT_EQ(*u.asPointer<const std::u16string>(), u"12") << "a text type takes digits as text";
  COSTypeRepository::getType(COSID("unicodeString"))->destroy(u);
  const COSValue chars = fromText("any", "abc");
  EXPECT_TRUE(vxIsChar(chars.asPointer<const vxArray>()));
  vxDestroyArray(chars.asPointer<vxArray>());
  try {
    fromText("double scalar", "1 x");
    FAIL() << "a text that is no number became a double";
  } catch (const foundation::core::except::Error& e) {
    EXPECT_EQ(e.identifier(), "VANTEL:vcos:ConversionFailed") << "the first refusal is the one reported";
  }
  EXPECT_EQ(COSTypeRepository::getConversion(COSID("double scalar"), COSID("logical scalar")), nullptr)
      << "only text gets conversions made on demand";
}

TEST(ArrayBridge, GetAndSetByNameGoThroughTheClientPath) {
  COSInterfacePtr c = vt::make("vt.Circle");
  vxArray* arr = vxCreateObjectMatrix(1, 1, c->getClass()->getID().entry());
  vxGetObjectElements(arr)[0] = c.get();
  EXPECT_STREQ(vxGetClassName(arr), "vt.Circle");
  EXPECT_TRUE(vxIsA(arr, "vt.Shape"));

  vxArray* two = vxCreateDoubleScalar(2.5);
  vxSetProperty(arr, 0, "Radius", two);
  vxDestroyArray(two);
  EXPECT_EQ(vt::get<double>(c, "Radius"), 2.5);
  vxArray* r = vxGetProperty(arr, 0, "radius");
  EXPECT_EQ(vxGetScalar(r), 2.5);
  vxDestroyArray(r);

  vxArray* name = vxCreateString("ring");
  vxSetProperty(arr, 0, "Name", name);
  vxDestroyArray(name);
  vxArray* back = vxGetProperty(arr, 0, "Name");
  EXPECT_EQ(vxArrayToStdString(back), "ring");
  vxDestroyArray(back);

  vxArray* truth = vxCreateLogicalScalar(false);
  vxSetProperty(arr, 0, "Visible", truth);
  vxDestroyArray(truth);
  EXPECT_FALSE(vt::get<bool>(c, "Visible"));
  // Access still applies.
  vxArray* one = vxCreateDoubleScalar(1);
  EXPECT_THROW(vxSetProperty(arr, 0, "Secret", one), Error);
  vxDestroyArray(one);
  vxDestroyArray(arr);
}

// The answer kept for a name given in a buffer does not outlive the text:
// the same buffer naming another property, or an unknown one, is looked up
// again.
TEST(ArrayBridge, ABufferReusedForAnotherNameReachesThatProperty) {
  COSInterfacePtr c = vt::make("vt.Circle");
  vxArray* arr = vxCreateObjectMatrix(1, 1, c->getClass()->getID().entry());
  vxGetObjectElements(arr)[0] = c.get();
  vxArray* three = vxCreateDoubleScalar(3);
  vxArray* text = vxCreateString("disc");
  char name[16] = "Radius";
  vxSetProperty(arr, 0, name, three);
  vxDestroyArray(vxGetProperty(arr, 0, name));
  std::snprintf(name, sizeof name, "%s", "Name");
  vxSetProperty(arr, 0, name, text);
  vxArray* back = vxGetProperty(arr, 0, name);
  EXPECT_EQ(vxArrayToStdString(back), "disc");
  EXPECT_EQ(vt::get<double>(c, "Radius"), 3.0);
  std::snprintf(name, sizeof name, "%s", "Nameless");
  EXPECT_THROW(vxSetProperty(arr, 0, name, text), Error);
  vxDestroyArray(back);
  vxDestroyArray(text);
  vxDestroyArray(three);
  vxDestroyArray(arr);
}

// Sets and gets by name keep what they learnt of the class; listeners
// attached after that, to the object or to the class, are still heard.
TEST(ArrayBridge, ListenersAttachedAfterUseAreHeard) {
  COSInterfacePtr c = vt::make("vt.Circle");
  vxArray* arr = vxCreateObjectMatrix(1, 1, c->getClass()->getID().entry());
  vxGetObjectElements(arr)[0] = c.get();
  vxArray* one = vxCreateDoubleScalar(1);
  auto setAndGet = [&] {
    vxSetProperty(arr, 0, "Radius", one);
    vxDestroyArray(vxGetProperty(arr, 0, "Radius"));
  };
  setAndGet();
  std::vector<std::string> heard;
  auto noting = [&heard](const char* what) {
    return COSListener::createListener(
        COSListenerOp::fromFunction([&heard, what](COSInterface*, COSEventData*) { heard.push_back(what); }));
  };
  COSPropInfo* radius = c->getClass()->findPropertyExact(COSID("Radius"));
  COSInterfacePtr own = noting("own PostSet"), got = noting("own PostGet"), all = noting("class PostSet");
  c->addPropertyListener(COSPropertyEvent::PostSet, radius, COSListener::toListener(own));
  c->addPropertyListener(COSPropertyEvent::PostGet, radius, COSListener::toListener(got));
  setAndGet();
  EXPECT_EQ(heard, (std::vector<std::string>{"own PostSet", "own PostGet"}));
  c->removePropertyListener(COSPropertyEvent::PostSet, radius, COSListener::toListener(own));
  c->removePropertyListener(COSPropertyEvent::PostGet, radius, COSListener::toListener(got));
  heard.clear();
  setAndGet();
  EXPECT_TRUE(heard.empty());
  c->getClass()->addClassPropertyListener(COSGetPublicClient(), COSPropertyEvent::PostSet, radius,
                                          COSListener::toListener(all));
  setAndGet();
  c->getClass()->removeClassPropertyListener(COSPropertyEvent::PostSet, radius, COSListener::toListener(all));
  setAndGet();
  EXPECT_EQ(heard, (std::vector<std::string>{"class PostSet"}));
  vxDestroyArray(one);
  vxDestroyArray(arr);
}

TEST(MetaClasses, MembersAreInstancesOfMetaClassesWithReadableAttributes) {
  COSClass* shape = vt::cls("vt.Shape");
  EXPECT_STREQ(shape->getMetaClass()->getName(), "meta.class");
  COSPropInfo* secret = shape->findPropertyExact(COSID("Secret"));
  ASSERT_STREQ(secret->getClass()->getName(), "meta.property");
  EXPECT_EQ(secret->getInstanceData(COSID("vantel.metadata.Property")), static_cast<void*>(secret));
  COSInterfacePtr p(secret);
  COSInterfacePtr cls(shape);
  EXPECT_EQ(vt::get<std::int32_t>(p, "GetAccess"), ProtectedAccess);
  EXPECT_EQ(vt::get<std::string>(p, "Name"), "Secret");
  EXPECT_EQ(vt::get<std::string>(cls, "Name"), "vt.Shape");
  EXPECT_FALSE(vt::get<bool>(cls, "Abstract"));
  EXPECT_THROW(vt::set<bool>(p, "Dependent", true), Error);
  COSMethodInfo* area = shape->findMethod(COSID("area"));
  EXPECT_STREQ(area->getClass()->getName(), "meta.method");
  EXPECT_STREQ(shape->findEvent(COSID("Changed"))->getClass()->getName(), "meta.event");
  EXPECT_STREQ(vt::cls("meta.property")->getClass()->getName(), "meta.class");
}

TEST(MetaClasses, CustomMetaPropertiesCarryTheirOwnAttributeBlocks) {
  COSClass* tracked = vt::cls("vt.Tracked");
  EXPECT_STREQ(tracked->getMetaClass()->getName(), "vt.TrackingMetaClass");
  COSInterfacePtr color(tracked->findPropertyExact(COSID("Color")));
  COSInterfacePtr size(tracked->findPropertyExact(COSID("Size")));
  EXPECT_STREQ(color->getClass()->getName(), "vt.TrackedProperty");
  EXPECT_TRUE(vt::get<bool>(color, "Tracked"));
  EXPECT_FALSE(vt::get<bool>(size, "Tracked"));
  // The built-in attributes come along through the meta class's superclass.
  EXPECT_EQ(vt::get<std::string>(size, "Name"), "Size");
  EXPECT_THROW(tracked->setPropertyAttribute(COSID("Size"), COSID("NoSuchAttribute"), COSValue()), Error);
}

}  // namespace

namespace {

TEST(MetaClasses, AttributesOfRunTimePropertiesCanBeWrittenLikeProperties) {
  COSInterfacePtr s = vt::make("vt.Shape");
  COSGenericProp* extra = COSGenericProp::createNewDynamicProp("Scratch", COSID("vt.Shape"), COSID("double scalar"));
  s->addDynamicProperty(extra);
  COSInterfacePtr p(extra);
  EXPECT_STREQ(extra->getClass()->getName(), "meta.property");
  vt::set<bool>(p, "Hidden", true);
  vt::set<bool>(p, "Transient", true);
  EXPECT_FALSE(extra->isVisible());
  EXPECT_TRUE(extra->isTransient());
  // A class's compiled property refuses the same write.
  COSInterfacePtr width(vt::cls("vt.Shape")->findPropertyExact(COSID("Width")));
  EXPECT_THROW(vt::set<bool>(width, "Hidden", true), Error);
}

}  // namespace

namespace {

TEST(DataTypes, TypedValuesOwnTheirWordAcrossCopiesAndMoves) {
  COSInterfacePtr s = vt::make("vt.Shape");
  COSInterfacePtr weak(s, COSWeakReference);
  COSDataTypePtr handle("handle scalar");
  {
    COSTypedValue a(handle->copy(COSValue(s.get())), handle);
    COSTypedValue b = a;             // a second reference
    COSTypedValue c = std::move(a);  // moves the first
    s = nullptr;
    EXPECT_FALSE(weak->isDestroyed());
    EXPECT_TRUE(a.getValue().isEmpty());
    EXPECT_EQ(b.getValue(), c.getValue());
  }
  EXPECT_TRUE(weak->isDestroyed()) << "a typed value kept its object after going away";
}

}  // namespace
