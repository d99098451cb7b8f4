// The generated typed setter of a triple takes a short course when nothing
// observes the set; it must still be seen exactly as a public set by name:
// the same doPostSet journal, the same listener calls in the same order,
// the same fault points, and the client path whenever a listener or a
// class-level listener is attached to the face.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "PropertyModelClasses.h"
#include "sgutils/propinfos/WebPropertyChecks.h"
#include "vcos/COSClass.h"
#include "vcos/COSEventData.h"
#include "vcos/COSListener.h"
#include "vcos/COSListenerOp.h"
#include "vcos/FaultInjection.h"
#include "vcos/ObjectArray.h"
#include "vcos/VxProperty.h"
#include "vx/matrix.h"
#include "vx/vxCreate.h"
#include "vx/vxQuery.h"

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

  // A public set by name on the client path, the typed setter, or a set by
  // name of an array value on an element of an object array.
  enum class Route { ClientPath, Typed, Array };

  void set(Route route, bool value) {
    switch (route) {
      case Route::ClientPath:
        publicSet(object, "Selected", COSValue::fromBool(value));
        break;
      case Route::Typed:
        selectableOf(object).setSelected(value, PublicClient);
        break;
      case Route::Array: {
        matrix::unique_vxArray self(omCreateVCOSScalar(object)), v(vxCreateLogicalScalar(value));
        vxSetProperty(self.get(), 0, "Selected", v.get());
        break;
      }
    }
  }

  // What a set leaves seen: the journal of doPostSet and the listener calls.
  std::vector<std::string> seen(bool typed, bool value) { return seen(typed ? Route::Typed : Route::ClientPath, value); }
  std::vector<std::string> seen(Route route, bool value) {
    handleOf(object).posts.clear();
    heard.clear();
    set(route, value);
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

  // Counts the calls of a PostSet listener of the class on Selected until
  // it is removed (at the latest when it goes).
  struct ClassPostSetCounter {
    explicit ClassPostSetCounter(COSInterface* object)
        : cls(object->getClass()),
          face(prop(object, "Selected")),
          listener(COSListener::createListener(
              COSListenerOp::fromFunction([this](COSInterface*, COSEventData*) { ++calls; }))) {
      cls->addClassPropertyListener(COSGetPublicClient(), COSPropertyEvent::PostSet, face,
                                    COSListener::toListener(listener));
    }
    ClassPostSetCounter(const ClassPostSetCounter&) = delete;
    ClassPostSetCounter& operator=(const ClassPostSetCounter&) = delete;
    ~ClassPostSetCounter() { remove(); }
    void remove() {
      if (cls) cls->removeClassPropertyListener(COSPropertyEvent::PostSet, face, COSListener::toListener(listener));
      cls = nullptr;
    }
    COSClass* cls;
    COSPropInfo* face;
    COSInterfacePtr listener;
    int calls = 0;
  };

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

// A public set whose mode is manual already writes no mode, but the web
// set checks asked are those of the client path, from auto and from manual,
// by every route.
TEST_F(TypedSetterCourse, WebChecksAreAskedAsOnTheClientPathWhetherTheModeFlipsOrNot) {
  std::vector<std::string> asked;
  sgutils::registerCheckWebPropertySupportFunctor(
      [&asked](COSInterfacePtr, std::string name, COSValue) { asked.push_back(name); },
      [](COSInterfacePtr, std::string, COSValue) {});
  auto checks = [&](Route route, bool fromManual) {
    publicSet(object, "Selected_I", COSValue::fromBool(false));
    publicSet(object, "SelectedMode", COSValue(modeWord(fromManual ? AutoManual::Manual : AutoManual::Auto)));
    asked.clear();
    const std::vector<std::string> seenThen = seen(route, true);
    EXPECT_EQ(selectableOf(object).getSelectedMode(), AutoManual::Manual);
    EXPECT_TRUE(selectableOf(object).getSelected());
    std::vector<std::string> out = asked;
    out.insert(out.end(), seenThen.begin(), seenThen.end());
    return out;
  };
  for (bool fromManual : {false, true}) {
    SCOPED_TRACE(fromManual ? "from manual" : "from auto");
    const std::vector<std::string> byName = checks(Route::ClientPath, fromManual);
    EXPECT_EQ(checks(Route::Typed, fromManual), byName);
    EXPECT_EQ(checks(Route::Array, fromManual), byName);
    EXPECT_GE(byName.size(), 2u) << "the mode's check and the value's";
  }
  sgutils::clearCheckWebPropertySupportFunctor();
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
  ClassPostSetCounter counter(object.get());
  selectableOf(object).setSelected(true, PublicClient);
  counter.remove();
  EXPECT_EQ(counter.calls, 1);
  EXPECT_EQ(selectableOf(object).getSelectedMode(), AutoManual::Manual);
  selectableOf(object).setSelected(false, PublicClient);
  EXPECT_EQ(counter.calls, 1);
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

// The set by name of an array value keeps its answers per class (the
// property, its course); it must be seen as the client path's set in every
// state, and hear listeners attached after those answers were kept.
TEST_F(TypedSetterCourse, ArraySetByNameIsSeenAsTheClientPath) {
  auto fromAuto = [&](Route route, bool value) {
    publicSet(object, "Selected_I", COSValue::fromBool(false));
    publicSet(object, "SelectedMode", COSValue(modeWord(AutoManual::Auto)));
    return seen(route, value);
  };
  auto faults = [&](Route route) {
    vcos::fault::Scope scope(vcos::fault::Point::PropertySet, 1000);
    fromAuto(route, true);
    return scope.passed();
  };
  EXPECT_EQ(fromAuto(Route::Array, true), fromAuto(Route::ClientPath, true));
  EXPECT_EQ(selectableOf(object).getSelectedMode(), AutoManual::Manual);
  EXPECT_EQ(faults(Route::Array), faults(Route::ClientPath));
  // Listeners of the object attached after the first sets.
  listen(COSPropertyEvent::PreSet, "Selected");
  listen(COSPropertyEvent::PostSet, "Selected");
  const std::vector<std::string> observed = fromAuto(Route::Array, true);
  EXPECT_EQ(observed, fromAuto(Route::ClientPath, true));
  EXPECT_EQ(observed.size(), 3u) << "PreSet, PostSet, the post of the value";
  EXPECT_EQ(faults(Route::Array), faults(Route::ClientPath));
}

TEST_F(TypedSetterCourse, ClassListenersAddedAfterUseAreHeardByEveryRoute) {
  for (Route route : {Route::Typed, Route::Array}) {
    set(route, false);  // the course of the class is worked out and kept
    ClassPostSetCounter counter(object.get());
    set(route, true);
    EXPECT_EQ(counter.calls, 1) << "route " << static_cast<int>(route);
    EXPECT_EQ(selectableOf(object).getSelectedMode(), AutoManual::Manual);
    counter.remove();
    set(route, false);
    EXPECT_EQ(counter.calls, 1) << "removed, route " << static_cast<int>(route);
  }
}

TEST_F(TypedSetterCourse, ArrayGetByNameHearsGetListenersAttachedAfterUse) {
  matrix::unique_vxArray self(omCreateVCOSScalar(object));
  auto get = [&] {
    matrix::unique_vxArray v(vxGetProperty(self.get(), 0, "Selected"));
    return std::string(vxIsChar(v.get()) && vxGetNumberOfElements(v.get()) == 2 ? "on" : "off");
  };
  selectableOf(object).setSelected(true, PublicClient);
  EXPECT_EQ(get(), "on");
  listen(COSPropertyEvent::PostGet, "Selected");
  heard.clear();
  EXPECT_EQ(get(), "on");
  ASSERT_EQ(heard.size(), 1u);
  EXPECT_EQ(heard[0], "PostGet Selected mode=1 value=1");
}

}  // namespace
}  // namespace sgtest::propmodel
