// Listeners and callbacks on the concrete classes from C++: the addlistener
// method of graphics arrays and where it hands over to the base method, and
// the running-callback context that gcbo reads.
#include <string>
#include <vector>

#include "classes/ClassesTestSupport.h"
#include "sgclasses/ClassNames.h"
#include "sgdatatypes/CallbackContext.h"
#include "sgdatatypes/Registration.h"
#include "sgdatatypes/VCallback.h"
#include "support/ErrorId.h"
#include "vcos/COSClass.h"
#include "vcos/COSListener.h"
#include "vcos/COSListenerOp.h"
#include "vcos/COSTypeConversion.h"
#include "vcos/COSTypeRepository.h"
#include "vcos/FunctionDispatcher.h"
#include "vcos/ObjectCalls.h"

namespace sgtest::classes {
namespace {

using graphics::datatype::CallbackContext;
using graphics::datatype::VCallback;

class CallbacksTest : public AxesInFigureTest {
 protected:
  COSInterfacePtr line() { return sgclasses::create(sgclasses::kLineClass, axes); }

  static Arr array(const std::vector<COSInterfacePtr>& objects) {
    Arr a(omCreateVCOSMatrix(1, objects.size(), objects.empty() ? sgclasses::kLineClass
                                                                 : objects[0]->getClass()->getName()));
    for (std::size_t i = 0; i < objects.size(); ++i) omSetArrayElement(a.get(), i, objects[i]);
    return a;
  }

  // A language callback: a C++ function in the Callback type's array form.
  static Arr callback(VCallback::Function fn) {
    static const COSID type(graphics::datatype::kCallbackType), any("any");
    VCallback cb(std::move(fn));
    return Arr(COSTypeRepository::getConversion(type, any)->convert(COSValue(&cb)).asPointer<vxArray>());
  }

  // addlistener(sources, inputs...) as the language calls it on the array's class.
  static Arr addlistener(const vxArray* sources, std::vector<const vxArray*> inputs) {
    inputs.insert(inputs.begin(), sources);
    vxArray* out[1] = {nullptr};
    omCallMethod(COSID(vcos::array::classOf(sources)->getName()), COSID("addlistener"), COSGetPublicClient(), 1,
                 out, static_cast<int>(inputs.size()), inputs.data(), /*dispatchOnObject=*/true);
    return Arr(out[0]);
  }

  static Arr str(const char* s) { return Arr(vxCreateString(s)); }

  // A listener callback by name: a built-in of the function dispatcher that
  // records each source it is called with.
  static std::vector<COSInterface*>& heardSources() {
    static std::vector<COSInterface*> sources;
    return sources;
  }
  static Arr recordingListener() {
    heardSources().clear();
    vcos::FunctionDispatcher::instance().registerBuiltin(
        "callbacksTestRecord", [](int, vxArray*[], int nrhs, const vxArray* prhs[]) {
          if (nrhs > 0) heardSources().push_back(omGetArrayElement(prhs[0], 0).get());
        });
    return str("callbacksTestRecord");
  }
};

TEST_F(CallbacksTest, AddListenerOverAnArrayGivesOneScalarListenerPerElementInAColumn) {
  std::vector<COSInterfacePtr> lines{line(), line(), line()};
  Arr sources = array(lines);
  Arr cb = recordingListener();
  Arr name = str("LineWidth"), kind = str("PostSet");
  Arr listeners = addlistener(sources.get(), {name.get(), kind.get(), cb.get()});
  ASSERT_TRUE(listeners);
  EXPECT_EQ(vxGetM(listeners.get()), 3u);
  EXPECT_EQ(vxGetN(listeners.get()), 1u);
  EXPECT_STREQ(vcos::array::classOf(listeners.get())->getName(), "event.proplistener");
  for (std::size_t i = 0; i < 3; ++i) {
    COSInterfacePtr listener = omGetArrayElement(listeners.get(), i);
    Arr source = get(listener, "Source");
    ASSERT_EQ(vxGetNumberOfElements(source.get()), 1u) << "each listener has its element alone";
    const vxArray* first = vxGetCell(source.get(), 0);
    EXPECT_EQ(omGetArrayElement(first, 0).get(), lines[i].get());
  }
  Arr two(vxCreateDoubleScalar(2));
  set(lines[1], "LineWidth", two.get());
  EXPECT_EQ(heardSources(), std::vector<COSInterface*>{lines[1].get()});
}

TEST_F(CallbacksTest, AnEmptySourceGivesAnEmptyColumn) {
  Arr sources = array({});
  Arr cb = callback([](COSInterface*, COSEventData*) {});
  Arr event = str("Reset");
  Arr listeners = addlistener(sources.get(), {event.get(), cb.get()});
  ASSERT_TRUE(listeners);
  EXPECT_EQ(vxGetM(listeners.get()), 0u);
  EXPECT_EQ(vxGetN(listeners.get()), 1u);
}

TEST_F(CallbacksTest, AFailedCheckGoesToTheBaseWholeAndAddsNothing) {
  Arr cb = recordingListener();
  Arr width = str("LineWidth"), kind = str("PostSet"), two(vxCreateDoubleScalar(2));

  // A name that all elements but one have: the base reports it for the figure.
  COSInterfacePtr l = line();
  Arr mixed(omCreateVCOSMatrix(1, 2, "vantel.graphics.Graphics"));
  omSetArrayElement(mixed.get(), 0, l);
  omSetArrayElement(mixed.get(), 1, figure);
  omSetClassOfHeterogeneousArray(mixed.get());
  EXPECT_EQ(errorId([&] { addlistener(mixed.get(), {width.get(), kind.get(), cb.get()}); }),
            "VANTEL:vcos:addlistener:UnknownProperty");
  set(l, "LineWidth", two.get());
  EXPECT_TRUE(heardSources().empty()) << "the element that has the property got no listener either";

  // One deleted element.
  COSInterfacePtr gone = line();
  Arr withDeleted = array({l, gone});
  gone->deleteObject(COSGetPublicClient());
  EXPECT_EQ(errorId([&] { addlistener(withDeleted.get(), {width.get(), kind.get(), cb.get()}); }),
            "VANTEL:vcos:InvalidHandle");
  set(l, "LineWidth", two.get());
  EXPECT_TRUE(heardSources().empty());

  // A wrong event name.
  Arr lines = array({l, line()});
  Arr wrong = str("NoSuchEvent");
  EXPECT_EQ(errorId([&] { addlistener(lines.get(), {wrong.get(), cb.get()}); }),
            "VANTEL:vcos:addlistener:UnknownEvent");
}

TEST_F(CallbacksTest, ObjectBeingDestroyedIsHeardOnEveryElement) {
  std::vector<COSInterfacePtr> lines{line(), line()};
  Arr sources = array(lines);
  Arr cb = recordingListener();
  Arr event = str("ObjectBeingDestroyed");
  Arr listeners = addlistener(sources.get(), {event.get(), cb.get()});
  EXPECT_STREQ(vcos::array::classOf(listeners.get())->getName(), "event.listener");
  lines[1]->deleteObject(COSGetPublicClient());
  lines[0]->deleteObject(COSGetPublicClient());
  EXPECT_EQ(heardSources(), (std::vector<COSInterface*>{lines[1].get(), lines[0].get()}));
}

TEST_F(CallbacksTest, TheRunningCallbackNamesItsObjectAndSeesItBeingDeleted) {
  COSInterfacePtr l = line();
  COSInterface* current = nullptr;
  bool beingDeleted = false;
  Arr cb = callback([&](COSInterface* s, COSEventData*) {
    current = CallbackContext::currentObject().get();
    beingDeleted = sgtest::getText(COSInterfacePtr(s), "BeingDeleted") == "on";
  });
  set(l, "DeleteFcn", cb.get());
  EXPECT_FALSE(CallbackContext::currentObject());
  l->deleteObject(COSGetPublicClient());
  EXPECT_EQ(current, l.get());
  EXPECT_TRUE(beingDeleted);
  EXPECT_EQ(CallbackContext::depth(), 0u);
}

// DeleteFcn runs as the object's first own listener of its deletion (after
// the class listeners, before a listener added to the object later), and
// also for an object that another object's DeleteFcn deletes.
TEST_F(CallbacksTest, DeleteFcnRunsFirstOfTheObjectsListenersAndForAnObjectItDeletes) {
  COSInterfacePtr outer = line(), inner = line(), quiet = line();
  std::vector<std::string> order;
  Arr innerCb = callback([&](COSInterface* s, COSEventData* data) {
    order.push_back(s == inner.get() && data ? "inner" : "inner, wrong source or no data");
  });
  Arr outerCb = callback([&](COSInterface*, COSEventData*) {
    order.push_back("outer");
    inner->deleteObject(COSGetPublicClient());
  });
  set(inner, "DeleteFcn", innerCb.get());
  set(outer, "DeleteFcn", outerCb.get());
  COSInterfacePtr later = COSListener::createListener(
      COSListenerOp::fromFunction([&](COSInterface*, COSEventData*) { order.push_back("later"); }));
  outer->addListener(COSID("ObjectBeingDestroyed"), COSListener::toListener(later));
  // A class listener, even one added after the class was built, comes
  // before the objects' own listeners.
  COSInterfacePtr ofClass = COSListener::createListener(
      COSListenerOp::fromFunction([&](COSInterface*, COSEventData*) { order.push_back("class"); }));
  COSClass* lineClass = outer->getClass();
  lineClass->addClassListener(COSID("ObjectBeingDestroyed"), COSListener::toListener(ofClass));
  outer->deleteObject(COSGetPublicClient());
  lineClass->removeClassListener(COSID("ObjectBeingDestroyed"), COSListener::toListener(ofClass));
  EXPECT_EQ(order, (std::vector<std::string>{"class", "outer", "class", "inner", "later"}));
  EXPECT_TRUE(inner->isDestroyed());
  // Without a DeleteFcn nothing runs.
  order.clear();
  quiet->deleteObject(COSGetPublicClient());
  EXPECT_TRUE(order.empty());
}

TEST_F(CallbacksTest, AHitWhileANonInterruptibleCallbackRunsWaitsOrIsDropped) {
  COSInterfacePtr p = line(), q = line();
  std::vector<std::string> order;
  Arr qcb = callback([&](COSInterface*, COSEventData*) { order.push_back("q"); });
  Arr pcb = callback([&](COSInterface*, COSEventData*) {
    q->notifyEvent(COSGetPublicClient(), COSID("Hit"), nullptr);
    order.push_back("p");
  });
  set(q, "ButtonDownFcn", qcb.get());
  set(p, "ButtonDownFcn", pcb.get());
  Arr off = str("off"), cancel = str("cancel");
  set(p, "Interruptible", off.get());
  p->notifyEvent(COSGetPublicClient(), COSID("Hit"), nullptr);
  EXPECT_EQ(order, (std::vector<std::string>{"p", "q"}));
  order.clear();
  set(q, "BusyAction", cancel.get());
  p->notifyEvent(COSGetPublicClient(), COSID("Hit"), nullptr);
  EXPECT_EQ(order, (std::vector<std::string>{"p"}));
  EXPECT_EQ(CallbackContext::queuedCount(), 0u);
}

}  // namespace
}  // namespace sgtest::classes
