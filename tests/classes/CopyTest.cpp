// Copying object trees from C++: the transaction's checks and warnings, what
// an override of copyElement may and may not do, getCopy and willBeCopied,
// reconnected and deep-copied properties, callbacks on request, and the
// rollback that leaves no object behind.
#include <algorithm>
#include <string>
#include <vector>
#include <cstring>
#include <stdexcept>
#include <unordered_map>

#include "classes/ClassesTestSupport.h"
#include "foundation/core/except/WarningChannel.h"
#include "sgclasses/ClassNames.h"
#include "sgclasses/Drawnow.h"
#include "sgdatatypes/Registration.h"
#include "sgutils/classinfo/BaseObjectCOSInfo.h"
#include "sgutils/classinfo/SGHandleClassInfo.h"
#include "sgutils/copy/CopyContext.h"
#include "sgutils/copy/CopyContextImpl.h"
#include "sgutils/copy/Copyable.h"
#include "sgutils/copy/CopyableMethod.h"
#include "sgutils/defaults/DefaultNameAccess.h"
#include "sgutils/lifecycle/ObjectCtorMI.h"
#include "sgutils/lifecycle/SGHandle.h"
#include "sgutils/propinfos/PropInfoBase.h"
#include "sgutils/startup/Namespaces.h"
#include "support/ErrorId.h"
#include "vcos/COSClass.h"
#include "vcos/COSClassInfo.h"
#include "vcos/COSObjectOperations.h"
#include "vcos/COSPackage.h"
#include "vcos/COSPropInfo.h"
#include "vcos/COSPropT.h"
#include "vcos/ObjectCalls.h"
#include "vx/vxCompare.h"

namespace sgtest::classes {
namespace {

using sgutils::CopyContext;
using sgutils::Copyable;

// ---- A probe class whose copyElement a test can make misbehave, with an
// array property that refers to other objects (reconnected on copy), one that
// names parts of its own (deep copied), and a callback-typed one.

enum class Mode { Default, OwnObject, Empty, ThrowOnSecond, ThrowAfterDefault };
Mode gMode = Mode::Default;
int gCalls = 0;
std::vector<std::string> gEvents;  // the order of copyElement and connectCopyToTree

constexpr char kProbe[] = "sg2utils.CopyProbe";
constexpr char kProbeB[] = "sg2utils.CopyProbeB";

class SlotPI;
std::vector<SlotPI*> gSlots;

// Values by object; every test starts with none.
class SlotPI final : public COSPropT {
 public:
  SlotPI(COSID classId, const char* name, const char* type)
      : COSPropT(classId, COSID(name), COSDataTypePtr(type), COSValue(), PublicAccess, PublicAccess,
                 COSPropDefaultFlags) {
    gSlots.push_back(this);
  }
  void clear() { values_.clear(); }
  COSValue getValue(COSInterface* object) const override {
    const auto found = values_.find(object);
    return COSValue(found == values_.end() || !found->second ? vxCreateDoubleMatrix(0, 0, vxREAL)
                                                             : vxCreateSharedDataCopy(found->second.get()));
  }
  void setValue(COSInterface* object, COSValue value) override {
    values_[object].reset(vxCreateSharedDataCopy(value.asPointer<const vxArray>()));
  }
  void releaseValue(COSInterface*, COSValue value) const override { matrix::destroyArray(value.asPointer<vxArray>()); }

 private:
  mutable std::unordered_map<const COSInterface*, Arr> values_;
};

std::string tagOf(const vxArray* in) {
  const COSInterfacePtr object = omGetArrayElement(in, 0);
  return text(object, "Name");
}

class ProbeCopyElementMI final : public sgutils::CopyableSubclassCopyElementMI {
 public:
  using CopyableSubclassCopyElementMI::CopyableSubclassCopyElementMI;
  void invoke(const COSClient* client, int& nlhs, COSValue* plhs, int nrhs, const COSValue* prhs) const override {
    gEvents.push_back("copy " + tagOf(prhs[0].asPointer<const vxArray>()));
    if (gMode == Mode::Empty) {
      nlhs = 1;
      plhs[0] = COSValue(vxCreateDoubleMatrix(0, 0, vxREAL));
      return;
    }
    if (gMode == Mode::ThrowOnSecond && ++gCalls == 2) throw std::runtime_error("probe refuses");
    invokeDefaultImpl(client, nlhs, plhs, nrhs, prhs);
    if (gMode == Mode::ThrowAfterDefault) {
      matrix::destroyArray(plhs[0].asPointer<vxArray>());
      throw std::runtime_error("probe refuses after the default");
    }
    if (gMode == Mode::OwnObject) {
      matrix::destroyArray(plhs[0].asPointer<vxArray>());
      plhs[0] = COSValue(omConstructObjectWithClient(kProbe, 0, nullptr, client));
    }
  }
};

class ProbeConnectMI final : public sgutils::CopyableSubclassConnectCopyMI {
 public:
  using CopyableSubclassConnectCopyMI::CopyableSubclassConnectCopyMI;
  void invoke(const COSClient* client, int& nlhs, COSValue* plhs, int nrhs, const COSValue* prhs) const override {
    gEvents.push_back("connect " + tagOf(prhs[0].asPointer<const vxArray>()));
    invokeDefaultImpl(client, nlhs, plhs, nrhs, prhs);
  }
};

template <const char* Name>
class ProbeInfo final : public BaseObjectCOSInfo, public SGHandleBlockFactory {
 public:
  const char* getName() const override { return std::strrchr(Name, '.') + 1; }
  void initializeClass(COSClass* cls, const COSClient*) override {
    setClient(cls);
    cls->addSuperclass(COSID("vantel.graphics.GraphicsTestBase"), true, 0, 1);
    cls->addMethod(new ObjectCtorMI<SGHandle, sgutils::PublicConstructorAccess>(cls->getID(), COSID(getName())));
    cls->addMethod(new ProbeCopyElementMI(cls->getID()));
    cls->addMethod(new ProbeConnectMI(cls->getID()));
    cls->addProperty(new SlotPI(cls->getID(), "Name", "any"));
    cls->addProperty(new SlotPI(cls->getID(), "Friends", "any"));
    cls->addProperty(new SlotPI(cls->getID(), "Parts", "any"));
    cls->setPropertyAttribute(COSID("Friends"), COSID("ReconnectOnCopy"), COSValue::fromBool(true));
    cls->setPropertyAttribute(COSID("Parts"), COSID("DeepCopy"), COSValue::fromBool(true));
  }
  SGHandle* createHandleBlock() const override { return new SGHandle; }
  void* allocateInstance(COSInterface* instance) override {
    return instance->getInstanceData(COSID("vantel.graphics.Graphics"));
  }
  void deallocateInstance(COSInterface*, void*) override {}
};

void registerProbes() {
  static const bool done = [] {
    sgutils::getNamespace()->addClass(new ProbeInfo<kProbe>, 0, 2);
    sgutils::getNamespace()->addClass(new ProbeInfo<kProbeB>, 0, 2);
    return true;
  }();
  (void)done;
}

COSInterfacePtr probe(const char* tag, const char* cls = kProbe) {
  registerProbes();
  Arr made(omConstructObjectWithClient(cls, 0, nullptr, COSGetPublicClient()));
  COSInterfacePtr object = omGetArrayElement(made.get(), 0);
  Arr value(vxCreateString(tag));
  set(object, "Name", value.get());
  return object;
}

Arr column(std::initializer_list<COSInterfacePtr> objects) {
  Arr out(omCreateVCOSMatrix(objects.size(), 1, "vantel.graphics.GraphicsPlaceholder"));
  std::size_t i = 0;
  for (const COSInterfacePtr& o : objects) omSetArrayElement(out.get(), i++, o);
  omSetClassOfHeterogeneousArray(out.get());
  return out;
}

class CopyTest : public ClassesTest {
 protected:
  void SetUp() override {
    ClassesTest::SetUp();
    gMode = Mode::Default;
    gCalls = 0;
    gEvents.clear();
    for (SlotPI* slot : gSlots) slot->clear();
  }
  void TearDown() override {
    gMode = Mode::Default;
    // The slots hold their values (and the objects in them) for the test only.
    for (SlotPI* slot : gSlots) slot->clear();
    ClassesTest::TearDown();
  }
  static Arr copy(std::vector<COSInterfacePtr> sources, std::vector<COSInterfacePtr> parents = {},
                  bool callbacks = false) {
    return Arr(CopyContext::doCopyObjects(sources, parents, callbacks));
  }
  static COSInterfacePtr at(const Arr& array, std::size_t i) { return omGetArrayElement(array.get(), i); }
};

TEST_F(CopyTest, AnOverrideMustReturnWhatTheDefaultMade) {
  const COSInterfacePtr a = probe("a");
  sgclasses::root();  // a copy reads the root's ShowHiddenHandles: make it first
  const std::size_t live = vcos::liveObjectCount();
  gMode = Mode::OwnObject;
  EXPECT_EQ(errorId([&] { copy({a}); }), "VANTEL:copyobj:IncorrectlyAllocatedCopy");
  EXPECT_EQ(vcos::liveObjectCount(), live);
  gMode = Mode::Empty;
  EXPECT_EQ(errorId([&] { copy({a}); }), "VANTEL:copyobj:InvalidReturnType");
  EXPECT_EQ(vcos::liveObjectCount(), live);
  gMode = Mode::Default;
  const Arr made = copy({a});
  ASSERT_EQ(vxGetNumberOfElements(made.get()), 1u);
  EXPECT_EQ(text(at(made, 0), "Name"), "a");
  EXPECT_NE(at(made, 0).get(), a.get());
}

TEST_F(CopyTest, AFailureInTheFirstPassLeavesNoObjectBehind) {
  const COSInterfacePtr figure = sgclasses::create(sgclasses::kFigureClass, sgclasses::root());
  const COSInterfacePtr axes = sgclasses::create(sgclasses::kAxesClass, figure);
  const COSInterfacePtr line = sgclasses::create(sgclasses::kLineClass, axes);
  const COSInterfacePtr a = probe("a");
  const COSInterfacePtr b = probe("b");
  const std::size_t live = vcos::liveObjectCount();
  const int children = childCount(axes);
  gMode = Mode::ThrowOnSecond;
  // The line and the first probe are copied before the second probe fails.
  EXPECT_THROW(copy({line, a, b}), std::runtime_error);
  EXPECT_EQ(vcos::liveObjectCount(), live);
  EXPECT_EQ(childCount(axes), children);
  // An override that fails after the default made the copy: the copy never
  // reaches the transaction, and goes all the same.
  gMode = Mode::ThrowAfterDefault;
  EXPECT_THROW(copy({a}), std::runtime_error);
  EXPECT_EQ(vcos::liveObjectCount(), live);
}

TEST_F(CopyTest, CopiesAreMadeBeforeAnyIsConnectedParentsFirst) {
  const COSInterfacePtr a = probe("a");
  const COSInterfacePtr b = probe("b");
  const COSInterfacePtr c = probe("c");
  copy({a, b, c});
  EXPECT_EQ(gEvents, (std::vector<std::string>{"copy c", "copy b", "copy a", "connect c", "connect b", "connect a"}));
}

TEST_F(CopyTest, ChecksOfSourcesAndParents) {
  const COSInterfacePtr figure = sgclasses::create(sgclasses::kFigureClass, sgclasses::root());
  const COSInterfacePtr axes = sgclasses::create(sgclasses::kAxesClass, figure);
  const COSInterfacePtr group = sgclasses::create(sgclasses::kGroupClass, axes);
  const COSInterfacePtr line = sgclasses::create(sgclasses::kLineClass, group);
  const COSInterfacePtr other = sgclasses::create(sgclasses::kAxesClass, figure);
  EXPECT_EQ(errorId([&] { copy({group, line}, {other}); }), "VANTEL:copyobj:DegenerateCopy");
  EXPECT_EQ(errorId([&] { copy({line, line}, {other}); }), "VANTEL:copyobj:DegenerateCopy");
  EXPECT_EQ(errorId([&] { copy({line, line, line}, {axes, other}); }), "VANTEL:copyobj:VectorLengthNotEqual");
  EXPECT_EQ(errorId([&] { copy({COSInterfacePtr()}, {other}); }),
            "VANTEL:sg:g_object:CannotCreateCopyOfInvalidHandle");
  const COSInterfacePtr gone = sgclasses::create(sgclasses::kAxesClass, figure);
  gone->deleteObject(COSGetPublicClient());
  EXPECT_EQ(errorId([&] { copy({line}, {gone}); }), "VANTEL:copyobj:InvalidParentHandle");

  // The copy method takes one parent at most, as a scalar.
  const Arr lines = column({line});
  const Arr two = column({axes, other});
  vxArray* out[1] = {nullptr};
  const vxArray* in[2] = {lines.get(), two.get()};
  EXPECT_EQ(errorId([&] { omCallMethod(sgclasses::kLineClass, "copy", nullptr, 1, out, 2, in, true); }),
            "VANTEL:copyobj:InvalidParentHandle");
  const Arr one = column({other});
  in[1] = one.get();
  ASSERT_TRUE(omCallMethod(sgclasses::kLineClass, "copy", nullptr, 1, out, 2, in, true));
  const Arr made(out[0]);
  EXPECT_EQ(omGetArrayElement(made.get(), 0)->getOwnerObject(), other.get());
}

TEST_F(CopyTest, AnUncopyableSourceWarnsAndAnUncopyableChildIsLeftOut) {
  const COSInterfacePtr figure = sgclasses::create(sgclasses::kFigureClass, sgclasses::root());
  const COSInterfacePtr axes = sgclasses::create(sgclasses::kAxesClass, figure);
  const COSInterfacePtr kept = sgclasses::create(sgclasses::kLineClass, axes);
  const COSInterfacePtr dropped = sgclasses::create(sgclasses::kLineClass, axes);
  const Arr marked = column({dropped});
  Copyable::makeObjectsInArrayNonCopyable(marked.get());
  EXPECT_FALSE(Copyable::isCopyable(dropped.get()));

  const Arr one = copy({axes}, {figure});
  EXPECT_EQ(childCount(at(one, 0)), childCount(axes) - 1);

  const COSInterfacePtr third = sgclasses::create(sgclasses::kLineClass, axes);
  auto& warnings = foundation::core::except::WarningChannel::instance();
  warnings.setLast("", "");
  auto quiet = warnings.setSink([](std::string_view) {});
  const Arr two = copy({kept, dropped, third}, {axes});
  warnings.setSink(quiet);
  EXPECT_EQ(warnings.lastId(), "VANTEL:copyobj:ObjectNotCopied");
  EXPECT_NE(warnings.lastText().find(sgclasses::kLineClass), std::string::npos);
  EXPECT_EQ(vxGetM(two.get()), 2u);
  EXPECT_EQ(vxGetN(two.get()), 1u);
}

TEST_F(CopyTest, ReferencesIntoTheCopyAreRepairedAndPartsAreCopiedDeep) {
  const COSInterfacePtr a = probe("a");
  const COSInterfacePtr b = probe("b");
  const COSInterfacePtr outside = probe("outside");
  const Arr friendB = column({b});
  set(a, "Friends", friendB.get());
  const Arr friendOutside = column({outside});
  set(b, "Friends", friendOutside.get());
  // Parts of two classes: the copies form a heterogeneous array.
  const Arr parts = column({probe("p1"), probe("p2", kProbeB)});
  set(a, "Parts", parts.get());

  const Arr made = copy({a, b});
  const COSInterfacePtr ca = at(made, 0);
  const COSInterfacePtr cb = at(made, 1);
  const Arr friendOfCa = get(ca, "Friends");
  ASSERT_TRUE(omIsVCOS(friendOfCa.get()));
  EXPECT_EQ(omGetArrayElement(friendOfCa.get(), 0).get(), cb.get());
  // Outside the copy: the copy keeps what its constructor made.
  EXPECT_TRUE(vxIsEmpty(get(cb, "Friends").get()));
  EXPECT_EQ(omGetArrayElement(get(b, "Friends").get(), 0).get(), outside.get());

  const Arr copiedParts = get(ca, "Parts");
  ASSERT_TRUE(omIsVCOS(copiedParts.get()));
  ASSERT_EQ(vxGetNumberOfElements(copiedParts.get()), 2u);
  EXPECT_NE(omGetArrayElement(copiedParts.get(), 0).get(), omGetArrayElement(parts.get(), 0).get());
  EXPECT_EQ(text(omGetArrayElement(copiedParts.get(), 1), "Name"), "p2");
  EXPECT_STREQ(vxGetClassName(copiedParts.get()), "vantel.graphics.GraphicsTestBase");
}

TEST_F(CopyTest, CallbacksAreCopiedOnlyWhenAsked) {
  const COSInterfacePtr figure = sgclasses::create(sgclasses::kFigureClass, sgclasses::root());
  const COSInterfacePtr axes = sgclasses::create(sgclasses::kAxesClass, figure);
  const COSInterfacePtr line = sgclasses::create(sgclasses::kLineClass, axes);
  const Arr callback(vxCreateString("disp('hit')"));
  set(line, "ButtonDownFcn", callback.get());
  const Arr plain = copy({line}, {axes});
  EXPECT_TRUE(vxIsEmpty(get(at(plain, 0), "ButtonDownFcn").get()));
  const Arr with = copy({line}, {axes}, true);
  EXPECT_EQ(text(at(with, 0), "ButtonDownFcn"), "disp('hit')");
}

TEST_F(CopyTest, TheContextFindsCopiesOfItsOwnObjectsOnlyAndDiesWithTheCopy) {
  const COSInterfacePtr a = probe("a");
  const COSInterfacePtr b = probe("b");
  const COSInterfacePtr stranger = probe("stranger");
  COSInterfacePtr contextObject;
  {
    sgutils::CopyContextImpl context(nullptr, {a, b});
    const Arr asked = column({stranger, b, a});
    const Arr flags(context.willBeCopied(nullptr, asked.get()));
    const bool* f = vxGetLogicals(flags.get());
    EXPECT_FALSE(f[0]);
    EXPECT_TRUE(f[1]);
    EXPECT_TRUE(f[2]);
    EXPECT_TRUE(gEvents.empty());  // asking runs no task
    // getCopy makes a pending copy at once; the stranger is dropped.
    const Arr copies(context.getCopy(nullptr, asked.get()));
    EXPECT_EQ(vxGetNumberOfElements(copies.get()), 2u);
    EXPECT_EQ(gEvents, (std::vector<std::string>{"copy b", "copy a"}));
    const Arr made(context.run());
    // Pass one skipped the tasks done already.
    EXPECT_EQ(std::count(gEvents.begin(), gEvents.end(), "copy a"), 1);
    EXPECT_EQ(omGetArrayElement(made.get(), 1).get(), omGetArrayElement(copies.get(), 0).get());
    contextObject = omGetArrayElement(context.getContextObject(), 0);
    const Arr sources = get(contextObject, "CopySources");
    EXPECT_EQ(vxGetNumberOfElements(sources.get()), 2u);
    EXPECT_TRUE(vxIsEmpty(get(contextObject, "DestinationParent").get()));
  }
  EXPECT_TRUE(contextObject->isDestroyed());
}

TEST_F(CopyTest, SeveralParentsEachGetACopyInATransactionOfItsOwn) {
  const COSInterfacePtr figure = sgclasses::create(sgclasses::kFigureClass, sgclasses::root());
  const COSInterfacePtr a1 = sgclasses::create(sgclasses::kAxesClass, figure);
  const COSInterfacePtr a2 = sgclasses::create(sgclasses::kAxesClass, figure);
  const COSInterfacePtr a3 = sgclasses::create(sgclasses::kAxesClass, figure);
  const COSInterfacePtr line = sgclasses::create(sgclasses::kLineClass, a1);
  const Arr made = copy({line}, {a1, a2, a3});
  ASSERT_EQ(vxGetM(made.get()), 3u);
  EXPECT_EQ(at(made, 0)->getOwnerObject(), a1.get());
  EXPECT_EQ(at(made, 1)->getOwnerObject(), a2.get());
  EXPECT_EQ(at(made, 2)->getOwnerObject(), a3.get());
}

// Walks source and copy in step (children in the raw tree, newest first) and
// compares every readable property that holds no object: values and modes.
void expectSameValues(const COSInterfacePtr& source, const COSInterfacePtr& copy, int& compared) {
  ASSERT_EQ(source->getClass(), copy->getClass());
  const COSClass* cls = source->getClass();
  for (std::size_t i = 0; i < cls->getPropertyCount(); ++i) {
    const COSPropInfo* property = cls->getPropertyAt(i);
    const std::string name = property->getName();
    // Number is handed out anew; EraseMode only warns that it does nothing.
    if (name == "Number" || name == "EraseMode" || property->getMemberGetAccess() != PublicAccess) continue;
    Arr a, b;
    try {
      a = get(source, name.c_str());
      b = get(copy, name.c_str());
    } catch (const std::exception&) {
      continue;
    }
    if (!a || !b || omIsVCOS(a.get()) || vxIsA(a.get(), "function_handle")) continue;
    EXPECT_TRUE(vxAreMatricesEqualNanOptional(a.get(), b.get(), true)) << cls->getName() << "." << name;
    ++compared;
  }
  COSInterface* s = source->getNewestChild();
  COSInterface* c = copy->getNewestChild();
  for (; s && c; s = s->getOlderSibling(), c = c->getOlderSibling())
    expectSameValues(COSInterfacePtr(s), COSInterfacePtr(c), compared);
  EXPECT_EQ(s == nullptr, c == nullptr) << "children of " << cls->getName();
}

TEST_F(CopyTest, EveryValueAndModeIsEqualInTheCopy) {
  const COSInterfacePtr figure = sgclasses::create(sgclasses::kFigureClass, sgclasses::root());
  const COSInterfacePtr axes = sgclasses::create(sgclasses::kAxesClass, figure);
  sgclasses::create(sgclasses::kContextMenuClass, figure);
  const COSInterfacePtr group = sgclasses::create(sgclasses::kGroupClass, axes);
  const COSInterfacePtr line = sgclasses::create(sgclasses::kLineClass, group);
  const COSInterfacePtr other = sgclasses::create(sgclasses::kLineClass, axes);
  sgclasses::create(sgclasses::kTextClass, axes);
  sgclasses::create(sgclasses::kPatchClass, axes);
  const Arr width(vxCreateDoubleScalar(4));
  set(line, "LineWidth", width.get());
  const Arr data(vxCreateDoubleMatrix(1, 3, vxREAL));
  set(other, "XData", data.get());
  const Arr lim(vxCreateDoubleMatrix(1, 2, vxREAL));
  vxGetPr(lim.get())[1] = 3;
  set(axes, "YLim", lim.get());

  const Arr made = copy({figure}, {sgclasses::root()});
  int compared = 0;
  expectSameValues(figure, at(made, 0), compared);
  EXPECT_GT(compared, 200);
  EXPECT_EQ(text(at(made, 0)->getNewestChild()->getOlderSibling(), "YLimMode"), "manual");
}

// The axes copies its limits as stored: an auto limit stays computed from
// the copy's own children, a manual one stays manual even where it equals
// what the new axes would compute.
TEST_F(CopyTest, AxesLimitsAreCopiedAsStoredWithTheirModes) {
  const COSInterfacePtr figure = sgclasses::create(sgclasses::kFigureClass, sgclasses::root());
  const COSInterfacePtr target = sgclasses::create(sgclasses::kFigureClass, sgclasses::root());
  const COSInterfacePtr axes = sgclasses::create(sgclasses::kAxesClass, figure);
  const COSInterfacePtr line = sgclasses::create(sgclasses::kLineClass, axes);
  const auto row = [](double a, double b) {
    Arr r(vxCreateDoubleMatrix(1, 2, vxREAL));
    vxGetPr(r.get())[0] = a;
    vxGetPr(r.get())[1] = b;
    return r;
  };
  set(line, "XData", row(1, 2).get());
  set(line, "YData", row(2, 5).get());
  set(axes, "XLim", row(0, 1).get());  // what a new axes computes, given by hand
  set(axes, "ZLim", row(-2, 2).get());
  const auto limits = [](const COSInterfacePtr& object, const char* name) {
    const Arr value = get(object, name);
    return std::vector<double>(vxGetPr(value.get()), vxGetPr(value.get()) + 2);
  };

  const Arr made = copy({axes}, {target});
  const COSInterfacePtr copied = at(made, 0);
  EXPECT_EQ(text(copied, "XLimMode"), "manual");
  EXPECT_EQ(limits(copied, "XLim"), (std::vector<double>{0, 1}));
  EXPECT_EQ(text(copied, "YLimMode"), "auto");
  EXPECT_EQ(limits(copied, "YLim"), limits(axes, "YLim"));
  EXPECT_EQ(text(copied, "ZLimMode"), "manual");
  EXPECT_EQ(limits(copied, "ZLim"), (std::vector<double>{-2, 2}));
  // Still auto: the copy's limits follow its own children.
  const COSInterfacePtr copiedLine = copied->getNewestChild();
  ASSERT_TRUE(copiedLine && sgclasses::isOfClass(copiedLine.get(), {sgclasses::kLineClass}));
  set(copiedLine, "XData", row(1, 2).get());
  set(copiedLine, "YData", row(10, 20).get());
  EXPECT_EQ(limits(copied, "YLim"), (std::vector<double>{10, 20}));
  EXPECT_EQ(limits(axes, "YLim"), (std::vector<double>{2, 5}));

  // A limit set back to auto copies as auto.
  set(axes, "XLimMode", Arr(vxCreateString("auto")).get());
  const Arr again = copy({axes}, {target});
  EXPECT_EQ(text(at(again, 0), "XLimMode"), "auto");
}

// A copy hooked under its parent's copy gets what a set of Parent gives: its
// place, the defaults of its new ancestors where its own value is not set by
// hand; a destination its class refuses is refused, whatever pair of classes
// was asked before, and leaves nothing behind.
TEST_F(CopyTest, CopiesAreHookedAsASetOfParentHooksThem) {
  const COSInterfacePtr figure = sgclasses::create(sgclasses::kFigureClass, sgclasses::root());
  const COSInterfacePtr axes = sgclasses::create(sgclasses::kAxesClass, figure);
  const COSInterfacePtr group = sgclasses::create(sgclasses::kGroupClass, axes);
  const COSInterfacePtr wide = sgclasses::create(sgclasses::kLineClass, group);
  const COSInterfacePtr plain = sgclasses::create(sgclasses::kLineClass, group);
  set(wide, "LineWidth", Arr(vxCreateDoubleScalar(4)).get());
  const COSInterfacePtr target = sgclasses::create(sgclasses::kFigureClass, sgclasses::root());
  const COSInterfacePtr targetAxes = sgclasses::create(sgclasses::kAxesClass, target);
  sgutils::DefaultNameAccess::set(target, "defaultLineLineWidth", Arr(vxCreateDoubleScalar(3)).get());

  const Arr made = copy({group}, {targetAxes});
  const COSInterfacePtr groupCopy = at(made, 0);
  EXPECT_EQ(groupCopy->getOwnerObject(), targetAxes.get());
  ASSERT_EQ(childCount(groupCopy), 2);
  // Newest first, as in the source.
  const COSInterfacePtr plainCopy(groupCopy->getNewestChild());
  const COSInterfacePtr wideCopy(plainCopy->getOlderSibling());
  EXPECT_EQ(wideCopy->getOwnerObject(), groupCopy.get());
  EXPECT_EQ(number(wideCopy, "LineWidth"), 4);
  EXPECT_EQ(text(wideCopy, "LineWidthMode"), "manual");
  EXPECT_EQ(number(plainCopy, "LineWidth"), 3);
  EXPECT_NE(number(plain, "LineWidth"), 3);  // the source keeps its own

  // A line under a group, then under a figure, then under axes again. The
  // drawnow queue holds deleted objects until told to forget them.
  sgclasses::forgetDeletedDirtyObjects();
  const std::size_t live = vcos::liveObjectCount();
  const int inTarget = childCount(target);
  EXPECT_EQ(errorId([&] { copy({wide}, {target}); }), "VANTEL:sgclasses:InvalidParent");
  sgclasses::forgetDeletedDirtyObjects();
  EXPECT_EQ(vcos::liveObjectCount(), live);
  EXPECT_EQ(childCount(target), inTarget);
  const Arr again = copy({wide}, {targetAxes});
  EXPECT_EQ(at(again, 0)->getOwnerObject(), targetAxes.get());
}

TEST_F(CopyTest, AValueANewObjectAlreadyHoldsKeepsItsModeAndClassInTheCopy) {
  const COSInterfacePtr figure = sgclasses::create(sgclasses::kFigureClass, sgclasses::root());
  const COSInterfacePtr axes = sgclasses::create(sgclasses::kAxesClass, figure);
  const COSInterfacePtr line = sgclasses::create(sgclasses::kLineClass, axes);
  // The colour a new line takes, given by hand: equal value, manual mode.
  const Arr color = get(line, "Color");
  set(line, "Color", color.get());
  ASSERT_EQ(text(line, "ColorMode"), "manual");
  // An empty text where a new line holds an empty double.
  const Arr emptyText(vxCreateString(""));
  set(line, "UserData", emptyText.get());

  const Arr made = copy({line}, {axes});
  const COSInterfacePtr twin = at(made, 0);
  EXPECT_EQ(text(twin, "ColorMode"), "manual");
  EXPECT_TRUE(vxAreMatricesEqualNanOptional(get(twin, "Color").get(), color.get(), false));
  EXPECT_TRUE(vxIsChar(get(twin, "UserData").get()));
}

// A plain class of the package that the Copyable registration names.
class PlainInfo final : public COSClassInfo {
 public:
  explicit PlainInfo(const char* name) : name_(name) {}
  const char* getName() const override { return name_; }

 private:
  const char* name_;
};

const COSClient* clientOf(const char* name) {
  static COSPackage* package = [] {
    COSPackage* made = graphics::datatype::register_namespace(
        "vantel.graphics.eventdata", [] { return "test stand-ins"; }, [] { return "no details"; });
    made->addClass(new PlainInfo("Annotation"));
    made->addClass(new PlainInfo("Bystander"));
    return made;
  }();
  (void)package;
  return COSClass::getClass(COSID(std::string("vantel.graphics.eventdata.") + name))->getPrivateClient();
}

TEST_F(CopyTest, TheRestrictedMembersAdmitTheClassesTheRegistrationNames) {
  const COSInterfacePtr figure = sgclasses::create(sgclasses::kFigureClass, sgclasses::root());
  const COSInterfacePtr line = sgclasses::create(sgclasses::kLineClass, sgclasses::create(sgclasses::kAxesClass, figure));
  const Arr source(omCreateVCOSScalar(line));
  const vxArray* in[1] = {source.get()};
  vxArray* out[1] = {nullptr};
  COSPropInfo* flag = line->findPropertyInfo(COSID("Copyable"));
  ASSERT_NE(flag, nullptr);

  const COSClient* bystander = clientOf("Bystander");
  EXPECT_EQ(errorId([&] { omCallMethod(sgclasses::kLineClass, "copyElement", bystander, 1, out, 1, in, true); }),
            "VANTEL:vcos:MethodAccessDenied");
  EXPECT_FALSE(errorId([&] { line->getPropertyValue(bystander, flag); }).empty());

  const COSClient* annotation = clientOf("Annotation");
  ASSERT_TRUE(omCallMethod(sgclasses::kLineClass, "copyElement", annotation, 1, out, 1, in, true));
  const Arr made(out[0]);
  omGetArrayElement(made.get(), 0)->deleteObject(COSGetPublicClient());
  EXPECT_TRUE(line->getPropertyValue(annotation, flag).word() != 0);
}

TEST_F(CopyTest, TheCopyMethodTakesObjectsAndAnOptionalGraphicsParent) {
  const COSInterfacePtr figure = sgclasses::create(sgclasses::kFigureClass, sgclasses::root());
  const COSInterfacePtr axes = sgclasses::create(sgclasses::kAxesClass, figure);
  const COSInterfacePtr line = sgclasses::create(sgclasses::kLineClass, axes);
  const Arr lines = column({line});
  vxArray* out[1] = {nullptr};

  // Without a parent the copy has none.
  const vxArray* one[1] = {lines.get()};
  ASSERT_TRUE(omCallMethod(sgclasses::kLineClass, "copy", nullptr, 1, out, 1, one, true));
  const Arr alone(out[0]);
  EXPECT_EQ(omGetArrayElement(alone.get(), 0)->getOwnerObject(), nullptr);
  omGetArrayElement(alone.get(), 0)->deleteObject(COSGetPublicClient());

  // A parent that is no graphics object, sources that are no objects and a
  // third input do not reach the method.
  const Arr number(vxCreateDoubleScalar(1));
  auto call = [&](std::vector<const vxArray*> in) {
    return errorId([&] {
      omCallMethod(sgclasses::kLineClass, "copy", nullptr, 1, out, static_cast<int>(in.size()), in.data(), true);
    });
  };
  EXPECT_EQ(call({lines.get(), number.get()}), "VANTEL:vcos:NoMatchingSignature");
  EXPECT_EQ(call({number.get()}), "VANTEL:vcos:NoMatchingSignature");
  EXPECT_EQ(call({lines.get(), lines.get(), lines.get()}), "VANTEL:vcos:NoMatchingSignature");
}

// More objects than the task map starts with, so it grows while planning:
// the copies keep their order, values that differ from a new line's are
// written, and a reference into the copied tree points at the copy.
TEST_F(CopyTest, AWideTreeCopiesInOrderWithItsValuesAndReferences) {
  const COSInterfacePtr figure = sgclasses::create(sgclasses::kFigureClass, sgclasses::root());
  const COSInterfacePtr menu = sgclasses::create(sgclasses::kContextMenuClass, figure);
  const COSInterfacePtr axes = sgclasses::create(sgclasses::kAxesClass, figure);
  const Arr menuArray(omCreateVCOSScalar(menu));
  constexpr int kLines = 150;
  for (int i = 0; i < kLines; ++i) {
    const COSInterfacePtr line = sgclasses::create(sgclasses::kLineClass, axes);
    const Arr tag(vxCreateString(std::to_string(i).c_str()));
    set(line, "Tag", tag.get());
    if (i % 7 == 0) {
      const Arr width(vxCreateDoubleScalar(1 + i));
      set(line, "LineWidth", width.get());
    }
    if (i == 120) set(line, "UIContextMenu", menuArray.get());
  }

  const Arr made = copy({figure}, {sgclasses::root()});
  int compared = 0;
  expectSameValues(figure, at(made, 0), compared);
  EXPECT_GT(compared, 150 * 20);
  COSInterface* copiedAxes = nullptr;
  COSInterface* copiedMenu = nullptr;
  for (COSInterface* c = at(made, 0)->getOldestChild(); c; c = c->getNewerSibling())
    if (c->getClass() == axes->getClass())
      copiedAxes = c;
    else if (c->getClass() == menu->getClass())
      copiedMenu = c;
  ASSERT_TRUE(copiedAxes && copiedMenu);
  const COSClass* lineClass = COSClass::getClass(COSID(sgclasses::kLineClass));
  int i = 0;
  for (COSInterface* c = copiedAxes->getOldestChild(); c; c = c->getNewerSibling()) {
    if (c->getClass() != lineClass) continue;
    EXPECT_EQ(text(COSInterfacePtr(c), "Tag"), std::to_string(i));
    const Arr reference = get(COSInterfacePtr(c), "UIContextMenu");
    if (i == 120) {
      ASSERT_TRUE(omIsVCOS(reference.get()) && !vxIsEmpty(reference.get()));
      EXPECT_EQ(omGetArrayElement(reference.get(), 0).get(), copiedMenu);
    } else {
      EXPECT_TRUE(vxIsEmpty(reference.get())) << i;
    }
    ++i;
  }
  EXPECT_EQ(i, kLines);
}

// A face whose concrete class reads or writes its own way (a computed
// internal face, the serializable twin of a stored property) goes through
// its getValue and setValue; plain stored faces copy block to block.
TEST_F(CopyTest, OnlyPlainStoredFacesCopyBlockToBlock) {
  auto face = [](COSClass* cls, const char* name) {
    return cls ? dynamic_cast<sgutils::PropInfoBase*>(cls->findPropertyExact(COSID(name))) : nullptr;
  };
  COSClass* line = COSClass::getClass(COSID(sgclasses::kLineClass));
  ASSERT_NE(line, nullptr);
  for (const char* name : {"Color_I", "ColorMode", "LineWidth_I", "XData", "XDataMode"}) {
    const sgutils::PropInfoBase* f = face(line, name);
    ASSERT_NE(f, nullptr) << name;
    EXPECT_TRUE(f->copiesBetweenBlocks()) << name;
  }
  int twins = 0;
  for (std::size_t i = 0; i < line->getPropertyCount(); ++i) {
    const COSPropInfo* property = line->getPropertyAt(i);
    // Twins are named "Serializable<name>"; "Serializable" itself is a flag.
    if (std::strncmp(property->getName(), "Serializable", 12) != 0 || !property->getName()[12]) continue;
    if (const auto* f = dynamic_cast<const sgutils::PropInfoBase*>(property)) {
      EXPECT_FALSE(f->copiesBetweenBlocks()) << property->getName();
      ++twins;
    }
  }
  EXPECT_GT(twins, 0);
  const sgutils::PropInfoBase* computed = face(COSClass::getClass(COSID("vantel.graphics.theme.GraphicsTheme")), "Name_I");
  ASSERT_NE(computed, nullptr);
  EXPECT_FALSE(computed->copiesBetweenBlocks());
}

}  // namespace
}  // namespace sgtest::classes
