// The generated typed setter of a triple takes a short course when nothing
// observes the set; it must still be seen exactly as a public set by name:
// the same doPostSet journal, the same listener calls in the same order,
// the same fault points, and the client path whenever a listener or a
// class-level listener is attached to the face.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "PropertyModelClasses.h"
#include "vcos/COSClass.h"
#include "vcos/COSEventData.h"
#include "vcos/COSListener.h"
#include "vcos/COSListenerOp.h"
#include "vcos/FaultInjection.h"

namespace sgtest::propmodel {
namespace {

using graphics::datatype::AutoManual;
using graphics::datatype::PublicClient;

class TypedSetterCourse : public ::testing::Test {
 protected:
  void SetUp() override { object = makeObject(kSelectableClass); }
  void TearDown() override {
    for (auto& [kind, property, listener] : attached)
      object->removePropertyListener(kind, property, COSListener::toListener(listener));
    if (object && !object->isDestroyed()) object->deleteObject(COSGetPublicClient());
  }

  // Notes "<event> <property> <value read then>" on each call.
  void listen(COSPropertyEvent kind, const char* property) {
    COSPropInfo* p = prop(object, property);
    const std::string name = std::string(cosPropertyEventName(kind)) + " " + property;
    COSInterfacePtr l = COSListener::createListener(COSListenerOp::fromFunction([this, name](COSInterface*, COSEventData*) {
      heard.push_back(name + " mode=" + std::to_string(static_cast<int>(selectableOf(object).getSelectedMode())) +
                      " value=" + std::to_string(selectableOf(object).getSelected()));
    }));
    object->addPropertyListener(kind, p, COSListener::toListener(l));
    attached.push_back({kind, p, l});
  }

  // What a set leaves seen: the journal of doPostSet and the listener calls.
  std::vector<std::string> seen(bool typed, bool value) {
    handleOf(object).posts.clear();
    heard.clear();
    if (typed)
      selectableOf(object).setSelected(value, PublicClient);
    else
      publicSet(object, "Selected", COSValue::fromBool(value));
    std::vector<std::string> out = heard;
    for (const PostSet& p : handleOf(object).posts)
      out.push_back("post " + p.property + " mode=" + std::to_string(static_cast<int>(p.selectedModeThen)));
    return out;
  }

  // Sets back to auto and off, then compares a typed and a by-name set from
  // the same state.
  void expectSameAsByName(bool value) {
    auto reset = [&] {
      publicSet(object, "Selected_I", COSValue::fromBool(false));
      publicSet(object, "SelectedMode", COSValue(modeWord(AutoManual::Auto)));
    };
    reset();
    const std::vector<std::string> byName = seen(false, value);
    reset();
    const std::vector<std::string> typed = seen(true, value);
    EXPECT_EQ(typed, byName);
    EXPECT_EQ(selectableOf(object).getSelected(), value);
    EXPECT_EQ(selectableOf(object).getSelectedMode(), AutoManual::Manual);
  }

  struct Attached {
    COSPropertyEvent kind;
    COSPropInfo* property;
    COSInterfacePtr listener;
  };
  COSInterfacePtr object;
  std::vector<std::string> heard;
  std::vector<Attached> attached;
};

TEST_F(TypedSetterCourse, UnobservedSetPostsAsASetByName) {
  expectSameAsByName(true);
  expectSameAsByName(false);  // no change of value: no post for Selected_I
  // A second equal typed set leaves the mode manual and posts nothing.
  const std::vector<std::string> again = seen(true, false);
  EXPECT_TRUE(again.empty());
}

TEST_F(TypedSetterCourse, ListenersOnTheFaceHearTheTypedSetInOrder) {
  listen(COSPropertyEvent::PreSet, "Selected");
  listen(COSPropertyEvent::PostSet, "Selected");
  expectSameAsByName(true);
  const std::vector<std::string> typed = seen(true, false);
  ASSERT_EQ(typed.size(), 3u);
  EXPECT_EQ(typed[0], "PreSet Selected mode=1 value=1");
  EXPECT_EQ(typed[1], "PostSet Selected mode=1 value=0");
  EXPECT_EQ(typed[2], "post Selected_I mode=1");
  // An equal value is still a set: the listeners hear it.
  EXPECT_EQ(seen(true, false).size(), 2u);
}

TEST_F(TypedSetterCourse, AClassListenerOnTheFaceIsHeard) {
  int calls = 0;
  COSInterfacePtr l = COSListener::createListener(
      COSListenerOp::fromFunction([&calls](COSInterface*, COSEventData*) { ++calls; }));
  COSClass* cls = object->getClass();
  COSPropInfo* face = prop(object, "Selected");
  cls->addClassPropertyListener(COSGetPublicClient(), COSPropertyEvent::PostSet, face, COSListener::toListener(l));
  selectableOf(object).setSelected(true, PublicClient);
  cls->removeClassPropertyListener(COSPropertyEvent::PostSet, face, COSListener::toListener(l));
  EXPECT_EQ(calls, 1);
  EXPECT_EQ(selectableOf(object).getSelectedMode(), AutoManual::Manual);
  selectableOf(object).setSelected(false, PublicClient);
  EXPECT_EQ(calls, 1);
}

TEST_F(TypedSetterCourse, PassesAsManyFaultPointsAsASetByNameAndStopsAtEach) {
  auto passages = [&](bool typed) {
    vcos::fault::Scope scope(vcos::fault::Point::PropertySet, 1000);
    seen(typed, true);
    return scope.passed();
  };
  const std::size_t byName = passages(false);
  EXPECT_EQ(passages(true), byName);
  ASSERT_GE(byName, 2u) << "the face and its mode";
  for (std::size_t n = 1; n <= byName; ++n) {
    publicSet(object, "Selected_I", COSValue::fromBool(false));
    publicSet(object, "SelectedMode", COSValue(modeWord(AutoManual::Auto)));
    vcos::fault::Scope scope(vcos::fault::Point::PropertySet, n);
    EXPECT_ANY_THROW(selectableOf(object).setSelected(true, PublicClient)) << "fault point " << n;
    EXPECT_FALSE(selectableOf(object).getSelected()) << "the value landed past fault point " << n;
  }
}

}  // namespace
}  // namespace sgtest::propmodel
