// findobj of class "handle" over a real tree: order, each condition and their
// combinations, custom children lists, depth, the errors of a bad list, and
// values read as the public client reads them (listeners, custom gets,
// access, defaults), and values lent by a lender.
#include <gtest/gtest.h>

#include <map>

#include "../VcosTestClasses.h"
#include "../builtin/BuiltinTestSupport.h"
#include "vcos/Findobj.h"
#include "vcos/FindobjLender.h"

using bt::number;
using bt::text;
using Names = std::vector<std::string>;

namespace {

// fo.Item: a bt.Node with a text property that has a default, and a number
// whose get access is private.
class ItemInfo final : public COSClassInfo {
 public:
  const char* getName() const override { return "Item"; }
  void initializeClass(COSClass* c, const COSClient*) override {
    c->addSuperclass(COSID("bt.Node"));
    std::string plain = "plain";
    c->addProperty(new COSPropT(c->getID(), COSID("Label"), COSDataTypePtr("asciiString"), COSValue(&plain)));
    c->addProperty(new COSPropT(c->getID(), COSID("Hidden"), COSDataTypePtr("double scalar"), COSValue(),
                                PrivateAccess, PublicAccess));
  }
};

class ItemNamespace final : public COSNamespaceInfo {
 public:
  const char* getName() const override { return "fo"; }
};

void registerItem() {
  static const bool done = [] {
    bt::setUp();
    COSPackage::addNamespace(new ItemNamespace)->addClass(new ItemInfo);
    return true;
  }();
  (void)done;
}

// Removes a class property listener when the test leaves.
struct ClassListener {
  COSClass* cls;
  COSPropertyEvent kind;
  const COSPropInfo* property;
  COSInterfacePtr listener;
  ClassListener(COSClass* c, COSPropertyEvent k, const COSPropInfo* p, COSInterfacePtr l)
      : cls(c), kind(k), property(p), listener(std::move(l)) {
    cls->addClassPropertyListener(COSGetPublicClient(), kind, property, vt::L(listener));
  }
  ~ClassListener() { cls->removeClassPropertyListener(kind, property, vt::L(listener)); }
};

// root (Folder) ─┬─ a (Node, Value 1)           hooked first
//                ├─ b (Node, Value 2) ─┬─ b1    raw tree below b
//                │                     └─ b2
//                └─ c (Folder, Value 0) ─┬─ c1 (Value 1)
//                                        └─ secret (Value 1, left out by Folder's list)
class FindobjTree : public ::testing::Test {
 protected:
  void SetUp() override {
    root = node("bt.Folder", "root", 0);
    a = node("bt.Node", "a", 1);
    b = node("bt.Node", "b", 2);
    c = node("bt.Folder", "c", 0);
    root->hookChild(a);
    root->hookChild(b);
    root->hookChild(c);
    b->hookChild(node("bt.Node", "b1", 5));
    b->hookChild(node("bt.Node", "b2", 5));
    c->hookChild(node("bt.Node", "c1", 1));
    c->hookChild(node("bt.Node", "secret", 1));
  }
  void TearDown() override { root->deleteObject(COSGetPublicClient()); }

  static COSInterfacePtr node(const char* cls, const char* name, double value) {
    COSInterfacePtr n = bt::make(cls);
    bt::setValue(n, "Name", text(name).get());
    bt::setValue(n, "Value", number(value).get());
    return n;
  }

  // findobj(root, args...) through the method of class "handle".
  Names find(std::vector<const vxArray*> args) { return findFrom(root, std::move(args)); }
  Names findFrom(const COSInterfacePtr& start, std::vector<const vxArray*> args) {
    auto self = bt::arr(start);
    args.insert(args.begin(), self.get());
    return bt::namesOf(bt::call("findobj", args).get());
  }

  COSInterfacePtr root, a, b, c;
};

TEST_F(FindobjTree, ListsPreOrderNewestChildFirstThroughCustomLists) {
  EXPECT_EQ(find({}), (Names{"root", "c", "c1", "b", "b2", "b1", "a"}));
}

TEST_F(FindobjTree, PropertyValuePairsMatchNumbersAndTextWithoutCase) {
  auto value = text("Value"), one = number(1), name = text("nAmE"), upperB = text("B");
  EXPECT_EQ(find({value.get(), one.get()}), (Names{"c1", "a"}));
  EXPECT_EQ(find({name.get(), upperB.get()}), (Names{"b"}));
  auto missing = text("NoSuchProperty");
  EXPECT_EQ(find({missing.get(), one.get()}), Names{}) << "an object without the property never matches";
}

TEST_F(FindobjTree, DepthLimitsTheLevelsBelowTheStart) {
  auto depth = text("-depth"), zero = number(0), one = number(1);
  EXPECT_EQ(find({depth.get(), zero.get()}), (Names{"root"}));
  EXPECT_EQ(find({depth.get(), one.get()}), (Names{"root", "c", "b", "a"}));
  auto value = text("Value"), five = number(5);
  EXPECT_EQ(find({value.get(), five.get(), depth.get(), one.get()}), Names{}) << "-depth may follow the terms";
}

TEST_F(FindobjTree, ClassMatchesExactlyAndIsaMatchesSubclasses) {
  auto cls = text("-class"), isa = text("-isa"), folder = text("bt.Folder"), nodeName = text("bt.Node");
  EXPECT_EQ(find({cls.get(), folder.get()}), (Names{"root", "c"}));
  EXPECT_EQ(find({cls.get(), nodeName.get()}), (Names{"c1", "b", "b2", "b1", "a"}));
  EXPECT_EQ(find({isa.get(), nodeName.get()}).size(), 7u);
}

TEST_F(FindobjTree, NotAndOrCombineWithAndBindingTighter) {
  auto no = text("-not"), andOp = text("-and"), orOp = text("-or");
  auto cls = text("-class"), folder = text("bt.Folder");
  auto value = text("Value"), one = number(1), name = text("Name"), nb = text("b"), nc1 = text("c1"), na = text("a");
  EXPECT_EQ(find({no.get(), cls.get(), folder.get()}), (Names{"c1", "b", "b2", "b1", "a"}));
  EXPECT_EQ(find({value.get(), one.get(), orOp.get(), name.get(), nb.get()}), (Names{"c1", "b", "a"}));
  EXPECT_EQ(find({value.get(), one.get(), andOp.get(), name.get(), na.get()}), (Names{"a"}));
  EXPECT_EQ(find({value.get(), one.get(), name.get(), na.get()}), (Names{"a"})) << "neighbours are joined by -and";
  // b or (Value 1 and c1): -and binds first.
  EXPECT_EQ(find({name.get(), nb.get(), orOp.get(), value.get(), one.get(), andOp.get(), name.get(), nc1.get()}),
            (Names{"c1", "b"}));
  EXPECT_EQ(find({no.get(), value.get(), one.get(), andOp.get(), no.get(), cls.get(), folder.get()}),
            (Names{"b", "b2", "b1"}));
}

TEST_F(FindobjTree, PropertyRegexpAndFunctionConditions) {
  auto barr = bt::arr(b);
  auto extra = text("Extra");
  bt::call("addprop", {barr.get(), extra.get()}, 0);
  auto prop = text("-property");
  EXPECT_EQ(find({prop.get(), extra.get()}), (Names{"b"})) << "a property added to one instance";

  auto rx = text("-regexp"), name = text("Name"), startsWithC = text("^c");
  EXPECT_EQ(find({rx.get(), name.get(), startsWithC.get()}), (Names{"c", "c1"}));

  auto f = text("-function");
  auto isB = bt::fn([](int, const vxArray* in[]) -> vxArray* {
    return vxCreateLogicalScalar(bt::getText(omGetArrayElement(in[0], 0), "Name") == "b");
  });
  EXPECT_EQ(find({f.get(), isB.get()}), (Names{"b"}));
  auto value = text("Value");
  auto big = bt::fn([](int, const vxArray* in[]) -> vxArray* { return vxCreateLogicalScalar(vxGetScalar(in[0]) > 1); });
  EXPECT_EQ(find({f.get(), value.get(), big.get()}), (Names{"b", "b2", "b1"}));
}

TEST_F(FindobjTree, StartingArrayIsSearchedInOrderAndEachObjectOnce) {
  auto starts = bt::column({b, root, c});
  auto name = text("Name"), c1 = text("c1");
  const vxArray* in[] = {starts.get()};
  EXPECT_EQ(bt::namesOf(bt::call("findobj", {in[0]}).get()), (Names{"b", "b2", "b1", "root", "c", "c1", "a"}));
  EXPECT_EQ(bt::namesOf(bt::call("findobj", {starts.get(), name.get(), c1.get()}).get()), (Names{"c1"}));
}

TEST_F(FindobjTree, DeletedObjectsAreSkipped) {
  COSInterfacePtr b2 = omGetArrayElement(bt::call("findobj", {bt::arr(b).get()}).get(), 1);
  b2->deleteObject(COSGetPublicClient());
  EXPECT_EQ(find({}), (Names{"root", "c", "c1", "b", "b1", "a"}));
}

TEST_F(FindobjTree, FunctionThatDeletesObjectsMidSearchIsSafe) {
  // While testing b, delete b itself (and so b2, b1): the search goes on with
  // b's older sibling a, and b is not in the result.
  auto f = text("-function");
  auto deleter = bt::fn([&](int, const vxArray* in[]) -> vxArray* {
    COSInterfacePtr o = omGetArrayElement(in[0], 0);
    if (bt::getText(o, "Name") == "b") o->deleteObject(COSGetPublicClient());
    return vxCreateLogicalScalar(true);
  });
  EXPECT_EQ(find({f.get(), deleter.get()}), (Names{"root", "c", "c1", "a"}));
}

TEST_F(FindobjTree, GetListenerThatChangesTheChainAheadIsSafe) {
  // A wide level is followed in place, looking some children ahead. While
  // the first child's Value is read, a listener deletes the next child and
  // two a few places further on, and moves one under `side`: the search
  // goes on along the changed chain and finds the moved one under `side`.
  // Only the chains hold the children, so a deleted one is freed at once.
  COSInterfacePtr top = node("bt.Node", "top", 0), side = node("bt.Node", "side", 1);
  top->hookChild(side);
  std::vector<COSInterface*> n;
  for (int i = 0; i < 20; ++i) {
    top->hookChild(node("bt.Node", ("n" + std::to_string(i)).c_str(), 1));
    n.push_back(top->getNewestChild());
  }
  auto change = vt::listener([&](COSInterface*, COSEventData*) {
    for (int i : {18, 11, 10}) n[i]->deleteObject(COSGetPublicClient());
    COSInterfacePtr moved(n[12]);
    moved->unhookFromOwner();
    side->hookChild(moved);
  });
  COSInterfacePtr first(n[19]);
  first->addPropertyListener(COSPropertyEvent::PreGet, vt::prop(first, "Value"), vt::L(change));
  const auto value = text("Value"), one = number(1);
  EXPECT_EQ(findFrom(top, {value.get(), one.get()}),
            (Names{"n19", "n17", "n16", "n15", "n14", "n13", "n9", "n8", "n7", "n6", "n5", "n4", "n3", "n2", "n1",
                   "n0", "side", "n12"}));
  top->deleteObject(COSGetPublicClient());
}

TEST_F(FindobjTree, ResultTakesTheClassTheObjectsShare) {
  auto cls = text("-class"), folder = text("bt.Folder"), nodeName = text("bt.Node");
  EXPECT_STREQ(vxGetClassName(bt::call("findobj", {bt::arr(root).get(), cls.get(), folder.get()}).get()), "bt.Folder");
  auto none = bt::call("findobj", {bt::arr(root).get(), cls.get(), text("bt.Round").get()});
  EXPECT_TRUE(vxIsEmpty(none.get()));
  EXPECT_STREQ(vxGetClassName(none.get()), "bt.Folder") << "an empty result has the starting array's class";
}

TEST_F(FindobjTree, BadConditionListsRaiseWithIdentifiers) {
  auto self = bt::arr(root);
  auto run = [&](std::vector<const vxArray*> args) {
    return bt::errorId([&] {
      args.insert(args.begin(), self.get());
      bt::call("findobj", args);
    });
  };
  auto depth = text("-depth"), minus = number(-1), half = number(0.5), name = text("Name");
  EXPECT_EQ(run({depth.get(), text("x").get()}), "VANTEL:vcos:findobj:BadDepth");
  EXPECT_EQ(run({depth.get(), minus.get()}), "VANTEL:vcos:findobj:BadDepth");
  EXPECT_EQ(run({depth.get(), half.get()}), "VANTEL:vcos:findobj:BadDepth");
  EXPECT_EQ(run({depth.get()}), "VANTEL:vcos:findobj:MissingValue");
  EXPECT_EQ(run({name.get()}), "VANTEL:vcos:findobj:MissingValue");
  EXPECT_EQ(run({text("-bogus").get()}), "VANTEL:vcos:findobj:UnknownOption");
  EXPECT_EQ(run({text("-and").get(), name.get(), text("a").get()}), "VANTEL:vcos:findobj:MisplacedOperator");
  EXPECT_EQ(run({name.get(), text("a").get(), text("-or").get()}), "VANTEL:vcos:findobj:MisplacedOperator");
  EXPECT_EQ(run({text("-not").get()}), "VANTEL:vcos:findobj:MisplacedOperator");
  EXPECT_EQ(run({text("-regexp").get(), name.get(), text("(").get()}), "VANTEL:vcos:findobj:BadRegexp");
  EXPECT_EQ(run({number(3).get(), number(4).get()}), "VANTEL:vcos:findobj:ExpectedPropertyName");
  EXPECT_EQ(run({text("-function").get(), number(1).get()}), "VANTEL:vcos:findobj:ExpectedFunction");
}

TEST_F(FindobjTree, GetListenersOfTheObjectAndTheClassRunForEachRead) {
  COSPropInfo* value = vt::prop(a, "Value");
  int classPreGets = 0, postGetsOfA = 0;
  auto onA = vt::listener([&](COSInterface*, COSEventData*) { ++postGetsOfA; });
  a->addPropertyListener(COSPropertyEvent::PostGet, value, vt::L(onA));
  auto name = text("Value"), one = number(1);
  EXPECT_EQ(find({name.get(), one.get()}), (Names{"c1", "a"}));
  EXPECT_EQ(postGetsOfA, 1);

  ClassListener onClass(COSClass::getClass(COSID("bt.Node")), COSPropertyEvent::PreGet, value,
                        vt::listener([&](COSInterface*, COSEventData*) { ++classPreGets; }));
  EXPECT_EQ(find({name.get(), one.get()}), (Names{"c1", "a"}));
  EXPECT_EQ(classPreGets, 7) << "each object searched is read once, Folders (a subclass) included";
  EXPECT_EQ(postGetsOfA, 2);
}

TEST_F(FindobjTree, TextDefaultsAreReadAndWhatThePublicMayNotReadNeverMatches) {
  registerItem();
  COSInterfacePtr top = node("fo.Item", "top", 0), marked = node("fo.Item", "marked", 0),
                  unset = node("fo.Item", "unset", 0);
  bt::setValue(marked, "Label", text("Marked").get());
  top->hookChild(unset);
  top->hookChild(marked);
  auto label = text("Label"), plain = text("PLAIN"), mark = text("marked");
  EXPECT_EQ(findFrom(top, {label.get(), plain.get()}), (Names{"top", "unset"})) << "the default where none is stored";
  EXPECT_EQ(findFrom(top, {label.get(), mark.get()}), (Names{"marked"}));

  int labelReads = 0;
  ClassListener onLabel(COSClass::getClass(COSID("fo.Item")), COSPropertyEvent::PostGet, vt::prop(top, "Label"),
                        vt::listener([&](COSInterface*, COSEventData*) { ++labelReads; }));
  EXPECT_EQ(findFrom(top, {label.get(), mark.get()}), (Names{"marked"}));
  EXPECT_EQ(labelReads, 3) << "text compared in place still goes through the listeners";

  auto hidden = text("Hidden"), zero = number(0), has = text("-property");
  EXPECT_EQ(findFrom(top, {hidden.get(), zero.get()}), Names{}) << "a private property never matches";
  EXPECT_EQ(findFrom(top, {has.get(), hidden.get()}).size(), 3u) << "though every object has it";
  top->deleteObject(COSGetPublicClient());
}

TEST(FindobjCustomGet, ValuesComeFromTheCustomGetAndGoBackToIt) {
  bt::setUp();
  COSInterfacePtr top = vt::make("vt.Tracked");
  for (double size : {1.0, 2.0, 3.0}) {
    COSInterfacePtr child = vt::make("vt.Tracked");
    vt::set<double>(child, "Size", size);
    top->hookChild(child);
  }
  vt::Journal& j = vt::journal();
  j.customGetNames.clear();
  j.customReleaseNames.clear();
  auto start = bt::arr(top);
  auto size = text("Size"), two = number(2);
  const vxArray* args[] = {size.get(), two.get()};
  matrix::unique_vxArray found(vcos::findobj(start.get(), 2, args));
  EXPECT_EQ(vxGetNumberOfElements(found.get()), 1u);
  EXPECT_EQ(j.customGetNames, std::vector<std::string>(4, "Size")) << "one custom get per object";
  EXPECT_EQ(j.customReleaseNames, j.customGetNames) << "each value went back where it came from";
  top->deleteObject(COSGetPublicClient());
}


// fo.Scored: a computed "Score" (every get says 1) whose lender, when one is
// installed, says what `lent` holds for the object.
std::map<const COSInterface*, double> lent;

class ScorePI final : public COSPropT {
 public:
  explicit ScorePI(COSID cls) : COSPropT(cls, COSID("Score"), COSDataTypePtr("double scalar"), COSValue()) {}
  COSValue getValue(COSInterface*) const override { return COSValue::fromDouble(1); }
};

class ScoredInfo final : public COSClassInfo {
 public:
  const char* getName() const override { return "Scored"; }
  void initializeClass(COSClass* c, const COSClient*) override {
    c->addSuperclass(COSID("bt.Node"));
    c->addProperty(new ScorePI(c->getID()));
  }
};

bool lendScore(COSInterface* object, COSValue& out) {
  const auto found = lent.find(object);
  if (found == lent.end()) return false;
  out = COSValue::fromDouble(found->second);
  return true;
}

TEST(FindobjLender, ALentValueIsComparedOnlyWhereTheGetTakesItsPlainCourse) {
  registerItem();
  static const bool done = [] {
    COSPackage::getNamespace("fo")->addClass(new ScoredInfo);
    return true;
  }();
  (void)done;
  const COSID scored("fo.Scored"), score("Score");
  COSInterfacePtr top = bt::make("fo.Scored"), x = bt::make("fo.Scored"), y = bt::make("fo.Scored");
  top->hookChild(x);
  top->hookChild(y);
  auto start = bt::arr(top);
  auto name = text("Score"), one = number(1), two = number(2);
  auto count = [&](const matrix::unique_vxArray& value) {
    const vxArray* args[] = {name.get(), value.get()};
    return vxGetNumberOfElements(matrix::unique_vxArray(vcos::findobj(start.get(), 2, args)).get());
  };
  lent[x.get()] = 2;
  EXPECT_EQ(count(one), 3u) << "no lender installed: every get says 1";

  vcos::setFindobjLender(scored, score, &lendScore);
  EXPECT_EQ(count(two), 1u) << "x lends 2";
  EXPECT_EQ(count(one), 2u) << "what lends nothing is read";

  // A listener on x's property: its value must come through the get.
  auto onX = vt::listener([](COSInterface*, COSEventData*) {});
  x->addPropertyListener(COSPropertyEvent::PostGet, vt::prop(x, "Score"), vt::L(onX));
  EXPECT_EQ(count(two), 0u);
  x->removePropertyListener(COSPropertyEvent::PostGet, vt::prop(x, "Score"), vt::L(onX));

  vcos::setFindobjLender(scored, score, nullptr);
  EXPECT_EQ(count(two), 0u) << "the lender is gone";
  lent.clear();
  top->deleteObject(COSGetPublicClient());
}

}  // namespace
