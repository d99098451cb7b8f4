// The class-system load step of graphics objects on a generated test class:
// the forms of "loadobj", the class's "doloadobj" and what it returns,
// sgLoadObj and the load fields, the pass after load, and the defaults a
// save carries in "InternalDefaultPropMap".
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "foundation/core/except/Error.h"
#include "foundation/log/LogCapture.h"
#include "foundation/log/Logger.h"
#include "sgutils/classinfo/loadobjBaseMI.h"
#include "sgutils/persistence/GraphicsFile.h"
#include "sgutils/objects/TestLoadObj.gen.h"
#include "support/ErrorId.h"
#include "../objects/MixinTestSupport.h"
#include "vcos/COSClass.h"
#include "vcos/COSClassInfo.h"
#include "vcos/COSDataType.h"
#include "vcos/COSMethodBase.h"
#include "vcos/COSPropInfo.h"

namespace sgtest {

namespace {

// What the test class's "doloadobj" returns.
enum class DoLoadObj { Same, Empty, Number, Throws };
DoLoadObj doLoadObjMode = DoLoadObj::Same;
int doLoadObjCalls = 0;
// What the last "doloadobj" saw of the object's stored defaults: the saved
// map waiting in its dynamic property, and the store itself.
bool sawSavedMap = false;
bool sawStore = false;
// The access and visibility the test class's "doloadobj" answers with.
MemberAccess doLoadObjAccess = PublicAccess;
bool doLoadObjVisible = true;

void lookAtDefaults(const vxArray* self) {
  if (!self || !omIsVCOS(self) || vxGetNumberOfElements(self) != 1) return;
  COSInterfacePtr object = omGetArrayElement(self, 0);
  COSInterfacePtr found;
  object->findDynamicProperty(found, COSID("InternalDefaultPropMap"));
  sawSavedMap = static_cast<bool>(found);
  sawStore = SGHandle::fromObject(object.get())->getDefaultProp() != nullptr;
}

class DoLoadObjMI final : public COSMethodBase {
 public:
  explicit DoLoadObjMI(COSID classId) : COSMethodBase(classId, COSID("doloadobj"), PublicAccess, "test load step") {}
  MemberAccess getMemberAccess() const override { return doLoadObjAccess; }
  bool isVisible() const override { return doLoadObjVisible; }
  void invoke(const COSClient*, int& nlhs, COSValue* plhs, int, const COSValue* prhs) const override {
    ++doLoadObjCalls;
    lookAtDefaults(prhs[0].asPointer<const vxArray>());
    if (nlhs < 1) nlhs = 1;
    switch (doLoadObjMode) {
      case DoLoadObj::Same:
        plhs[0] = COSValue(vxDuplicateArray(prhs[0].asPointer<const vxArray>()));
        return;
      case DoLoadObj::Empty: plhs[0] = COSValue(omCreateVCOSMatrix(0, 0, getClassID())); return;
      case DoLoadObj::Number: plhs[0] = COSValue(vxCreateDoubleScalar(7)); return;
      case DoLoadObj::Throws: throw foundation::core::except::Error("VANTEL:sg:load:BadContent", "from doloadobj");
    }
  }
};

}  // namespace

void TestLoadObj::addMethods(COSClass* cls, COSID classId) { cls->addMethod(new DoLoadObjMI(classId)); }

namespace mixins {
namespace {

namespace lg = foundation::log;

TestLoadObj& core(const COSInterfacePtr& object) {
  return *static_cast<TestLoadObj*>(static_cast<SGReference*>(object->getInstanceData(TestLoadObj::classID())));
}

struct Call {
  bool called = false;
  int nlhs = 0;
  Arr out;
};

// Calls a static method of the test class with the inputs, asking for `nlhs` outputs.
Call call(const char* method, std::vector<const vxArray*> in, int nlhs = 1,
          const COSClient* client = COSGetPublicClient()) {
  registerMixinTestClasses();
  vxArray* out[1] = {nullptr};
  Call c;
  c.called = omCallMethod(COSID("sg2utils.TestLoadObj"), COSID(method), client, nlhs, out,
                          static_cast<int>(in.size()), in.data(), false);
  c.out.reset(out[0]);
  return c;
}

COSInterfacePtr element(const Arr& array) {
  return array && omIsVCOS(array.get()) && vxGetNumberOfElements(array.get()) == 1 ? omGetArrayElement(array.get(), 0)
                                                                                    : COSInterfacePtr();
}

struct Log {
  explicit Log(std::uint32_t bits) { lg::setChannelLevel("graphics::object_serialization", bits); }
  ~Log() { lg::setChannelLevel("graphics::object_serialization", 0); }
  std::vector<std::string> lines() const {
    std::vector<std::string> out;
    for (const auto& r : capture.records())
      if (r.channel == "graphics::object_serialization") out.push_back(r.text);
    return out;
  }
  lg::LogCapture capture;
};

constexpr std::uint32_t kAllBits = (1u << 2) | (1u << 3) | (1u << 8) | (1u << 9);

struct LoadObjTest : ::testing::Test {
  void SetUp() override {
    registerMixinTestClasses();
    doLoadObjMode = DoLoadObj::Same;
    doLoadObjCalls = 0;
    doLoadObjAccess = PublicAccess;
    doLoadObjVisible = true;
    sawSavedMap = sawStore = false;
  }
};

// Saves the objects as one variable and loads them back; the loaded objects.
std::vector<COSInterfacePtr> saveAndLoad(const std::vector<COSInterfacePtr>& objects) {
  Arr array(omCreateVCOSMatrix(1, objects.size(), COSID("sg2utils.TestLoadObj")));
  for (std::size_t i = 0; i < objects.size(); ++i) omSetArrayElement(array.get(), i, objects[i]);
  const std::pair<std::string, const vxArray*> entry[] = {{"saved", array.get()}};
  const std::vector<std::uint8_t> bytes = sgutils::GraphicsFile::serialize(entry);
  std::vector<vxNamedValue> values = sgutils::GraphicsFile::deserialize(bytes, sgutils::GraphicsLoadOptions());
  std::vector<COSInterfacePtr> out;
  if (values.size() != 1 || !omIsVCOS(values[0].value.get())) return out;
  for (std::size_t i = 0; i < vxGetNumberOfElements(values[0].value.get()); ++i)
    out.push_back(omGetArrayElement(values[0].value.get(), i));
  return out;
}

// "finalizeIncomingObject" comes only to classes that load element by
// element (ElementLoadTest).
TEST_F(LoadObjTest, TheMetaclassAddsAStaticVisibleLoadobj) {
  COSClass* cls = COSClass::getClass(COSID("sg2utils.TestLoadObj"));
  ASSERT_NE(cls, nullptr);
  const COSMethodInfo* loadobj = cls->findMethod(COSID("loadobj"));
  ASSERT_NE(dynamic_cast<const loadobjBaseMI*>(loadobj), nullptr);
  EXPECT_TRUE(loadobj->isStatic());
  EXPECT_TRUE(loadobj->isVisible());
  EXPECT_EQ(cls->findMethod(COSID("finalizeIncomingObject")), nullptr);
  EXPECT_STREQ(loadobj->getDescription(), "Customized loadobj");
  EXPECT_EQ(static_cast<const loadobjBaseMI*>(loadobj)->getOwningClassName(), "sg2utils.TestLoadObj");
}

// The restored object goes through doloadobj and sgLoadObj; a top of a save
// runs its pass at once, any other object waits for its parent's.
TEST_F(LoadObjTest, ObjFormCallsDoloadobjThenSgLoadObjWithTheLogLines) {
  COSInterfacePtr object = make("sg2utils.TestLoadObj");
  core(object).setTopLevelSerializedObject(false);
  Arr self = obj(object);
  std::vector<std::string> lines;
  {
    Log log(kAllBits);
    Call c = call("loadobj", {self.get()});
    EXPECT_TRUE(c.called);
    EXPECT_EQ(element(c.out), object);
    lines = log.lines();
  }
  EXPECT_EQ(lines, (std::vector<std::string>{"sg2utils.TestLoadObj.loadobj(obj)", "    Calling doloadobj",
                                             "    Calling sgLoadObj"}));
  EXPECT_EQ(doLoadObjCalls, 1);
  EXPECT_TRUE(core(object).getLoadObjCalled());
  // Not a top and no parent's pass yet: nothing ran, so the mark is unchanged.
  EXPECT_FALSE(core(object).peekTopLevelSerializedObject());
  // A parent's pass now runs it; a second pass without force does nothing.
  core(object).executeCreateFcnAndApplyDefaultsAfterLoad(false);
  EXPECT_TRUE(core(object).peekTopLevelSerializedObject());
  remove(object);
}

TEST_F(LoadObjTest, APassBeforeTheObjectsOwnLoadStepLeavesAMarkThatSgLoadObjFollows) {
  COSInterfacePtr object = make("sg2utils.TestLoadObj");
  core(object).setTopLevelSerializedObject(false);
  core(object).executeCreateFcnAndApplyDefaultsAfterLoad(false);
  EXPECT_TRUE(core(object).getParentExecutedCreateFcn());
  EXPECT_FALSE(core(object).peekTopLevelSerializedObject());
  core(object).sgLoadObj();
  EXPECT_TRUE(core(object).getLoadObjCalled());
  EXPECT_TRUE(core(object).peekTopLevelSerializedObject());
  remove(object);
}

// doloadobj is looked up as the calling client sees it: a hidden one, or one
// whose access keeps the client out, counts as none, and the object itself
// goes on to sgLoadObj; the class's own client is admitted to a private one.
TEST_F(LoadObjTest, AHiddenOrInaccessibleDoloadobjCountsAsNone) {
  COSInterfacePtr object = make("sg2utils.TestLoadObj");
  core(object).setTopLevelSerializedObject(false);
  Arr self = obj(object);
  const COSClient* own = COSClass::getClass(COSID("sg2utils.TestLoadObj"))->getPrivateClient();
  struct Case {
    MemberAccess access;
    bool visible;
    const COSClient* client;
    bool runs;
  };
  const Case cases[] = {{PrivateAccess, true, COSGetPublicClient(), false},
                        {ProtectedAccess, true, COSGetPublicClient(), false},
                        {PublicAccess, false, COSGetPublicClient(), false},
                        {PrivateAccess, true, own, true},
                        {PrivateAccess, false, own, false}};
  for (const Case& c : cases) {
    doLoadObjAccess = c.access;
    doLoadObjVisible = c.visible;
    doLoadObjCalls = 0;
    std::vector<std::string> lines;
    Call result;
    {
      Log log(kAllBits);
      result = call("loadobj", {self.get()}, 1, c.client);
      lines = log.lines();
    }
    const char* step = c.runs ? "    Calling doloadobj" : "    No doloadobj found";
    EXPECT_EQ(lines, (std::vector<std::string>{"sg2utils.TestLoadObj.loadobj(obj)", step, "    Calling sgLoadObj"}))
        << int(c.access) << c.visible;
    EXPECT_EQ(doLoadObjCalls, c.runs ? 1 : 0);
    EXPECT_EQ(element(result.out), object);
  }
  // Through a file (the public client): a private doloadobj is passed over.
  doLoadObjAccess = PrivateAccess;
  doLoadObjCalls = 0;
  std::vector<COSInterfacePtr> loaded = saveAndLoad({object});
  ASSERT_EQ(loaded.size(), 1u);
  EXPECT_EQ(doLoadObjCalls, 0);
  EXPECT_TRUE(core(loaded[0]).getLoadObjCalled());
  remove(loaded[0]);
  remove(object);
}

// What doloadobj gives decides whether sgLoadObj runs; the result goes out as it came.
TEST_F(LoadObjTest, DoloadobjResultsThatAreNoObjectSkipSgLoadObjAndErrorsPassThrough) {
  COSInterfacePtr object = make("sg2utils.TestLoadObj");
  Arr self = obj(object);
  doLoadObjMode = DoLoadObj::Empty;
  Call empty = call("loadobj", {self.get()});
  ASSERT_TRUE(empty.out);
  EXPECT_TRUE(omIsVCOS(empty.out.get()));
  EXPECT_EQ(vxGetNumberOfElements(empty.out.get()), 0u);
  EXPECT_FALSE(core(object).getLoadObjCalled());

  doLoadObjMode = DoLoadObj::Number;
  Call number = call("loadobj", {self.get()});
  ASSERT_TRUE(number.out);
  EXPECT_TRUE(vxIsDouble(number.out.get()));
  EXPECT_EQ(vxGetScalar(number.out.get()), 7.0);
  EXPECT_FALSE(core(object).getLoadObjCalled());

  doLoadObjMode = DoLoadObj::Throws;
  EXPECT_EQ(errorId([&] { call("loadobj", {self.get()}); }), "VANTEL:sg:load:BadContent");
  EXPECT_FALSE(core(object).getLoadObjCalled());
  remove(object);
}

// "(struct)" makes an object and sets the fields it can; the others are
// logged and dropped. "(struct, obj)" with no usable object gives nothing.
TEST_F(LoadObjTest, StructFormsLoadWhatFitsAndIgnoreAnUnusableObject) {
  const char* names[] = {"Tag", "Interruptible", "NoSuchProperty"};
  Arr s(vxCreateStructMatrix(1, 1, 3, names));
  vxSetField(s.get(), 0, "Tag", vxCreateString("from struct"));
  vxSetField(s.get(), 0, "Interruptible", vxCreateString("not a switch"));
  vxSetField(s.get(), 0, "NoSuchProperty", vxCreateDoubleScalar(1));
  std::vector<std::string> lines;
  COSInterfacePtr made;
  {
    Log log(kAllBits);
    Call c = call("loadobj", {s.get()});
    made = element(c.out);
    lines = log.lines();
  }
  ASSERT_TRUE(made);
  EXPECT_EQ(getText(made, "Tag"), "from struct");
  EXPECT_EQ(getText(made, "Interruptible"), "on");
  EXPECT_TRUE(core(made).getLoadObjCalled());
  const std::vector<std::string> expected{"sg2utils.TestLoadObj.loadobj(struct)",
                                          "    Loading property: Interruptible",
                                          "        Failed datatype conversion",
                                          "    Loading property: Tag",
                                          "    Calling doloadobj",
                                          "    Calling sgLoadObj"};
  // Properties come in the order of the class; compare without it.
  std::vector<std::string> sortedLines = lines, sortedExpected = expected;
  std::sort(sortedLines.begin(), sortedLines.end());
  std::sort(sortedExpected.begin(), sortedExpected.end());
  EXPECT_EQ(sortedLines, sortedExpected);
  EXPECT_EQ(lines.front(), expected.front());
  remove(made);

  // doloadobj replacing the made object deletes it: nothing is left behind.
  doLoadObjMode = DoLoadObj::Empty;
  Call replaced = call("loadobj", {s.get()});
  EXPECT_EQ(vxGetNumberOfElements(replaced.out.get()), 0u);

  Arr none = empty();
  Call nothing = call("loadobj", {s.get(), none.get()});
  EXPECT_TRUE(nothing.called);
  EXPECT_FALSE(nothing.out);
  EXPECT_EQ(doLoadObjCalls, 2);
}

// The defaults stored on an object travel in a hidden dynamic property that
// the serializer stores; an object without defaults gets none.
TEST_F(LoadObjTest, CustomSavePutsStoredDefaultsInAHiddenStoredDynamicProperty) {
  COSInterfacePtr plain = make("sg2utils.TestLoadObj");
  COSInterfacePtr withDefaults = make("sg2utils.TestLoadObj");
  const char* names[] = {"defaultLineLineWidth"};
  Arr defaults(vxCreateStructMatrix(1, 1, 1, names));
  vxSetField(defaults.get(), 0, "defaultLineLineWidth", vxCreateDoubleScalar(3));
  SGHandle::fromObject(withDefaults.get())->setDefaultProp(defaults.get());
  COSClassInfo* info = withDefaults->getClass()->getClassInfo();
  for (const COSInterfacePtr& object : {plain, withDefaults}) {
    COSValue value;
    COSDataTypePtr type;
    EXPECT_FALSE(info->customSave(object.get(), value, type));
    const bool expectProperty = object == withDefaults;
    COSInterfacePtr found;
    object->findDynamicProperty(found, COSID("InternalDefaultPropMap"));
    ASSERT_EQ(static_cast<bool>(found), expectProperty);
    EXPECT_EQ(static_cast<bool>(type), expectProperty);
    if (!expectProperty) continue;
    EXPECT_EQ(element(Arr(value.asPointer<vxArray>())), object);
    auto* property = static_cast<COSPropInfo*>(found.get());
    EXPECT_FALSE(property->isTransient());
    EXPECT_FALSE(property->isVisible());
    Arr stored = get(object, "InternalDefaultPropMap");
    ASSERT_TRUE(vxIsStruct(stored.get()));
    EXPECT_EQ(vxGetScalar(vxGetField(stored.get(), 0, "defaultLineLineWidth")), 3.0);
  }
  remove(plain);
  remove(withDefaults);
}

// A file's stored defaults come back in the dynamic property they were saved
// in: the object's own load step sees them waiting there, and after the load
// they are in its store and the property is gone.
TEST_F(LoadObjTest, SavedDefaultsArriveInTheirDynamicPropertyAndMoveIntoTheStore) {
  COSInterfacePtr object = make("sg2utils.TestLoadObj");
  const char* names[] = {"defaultLineLineWidth"};
  Arr defaults(vxCreateStructMatrix(1, 1, 1, names));
  vxSetField(defaults.get(), 0, "defaultLineLineWidth", vxCreateDoubleScalar(3));
  SGHandle::fromObject(object.get())->setDefaultProp(defaults.get());
  const std::vector<COSInterfacePtr> loaded = saveAndLoad({object});
  ASSERT_EQ(loaded.size(), 1u);
  EXPECT_EQ(doLoadObjCalls, 1);
  EXPECT_TRUE(sawSavedMap);
  EXPECT_FALSE(sawStore);
  COSInterfacePtr left;
  loaded[0]->findDynamicProperty(left, COSID("InternalDefaultPropMap"));
  EXPECT_FALSE(left);
  const vxArray* store = SGHandle::fromObject(loaded[0].get())->getDefaultProp();
  ASSERT_TRUE(store && vxIsStruct(store));
  EXPECT_EQ(vxGetScalar(vxGetField(store, 0, "defaultLineLineWidth")), 3.0);
  // An object saved without defaults comes back with no store and no property.
  COSInterfacePtr plain = make("sg2utils.TestLoadObj");
  const std::vector<COSInterfacePtr> again = saveAndLoad({plain});
  ASSERT_EQ(again.size(), 1u);
  EXPECT_FALSE(sawSavedMap);
  EXPECT_EQ(SGHandle::fromObject(again[0].get())->getDefaultProp(), nullptr);
  for (const COSInterfacePtr& o : {object, plain, loaded[0], again[0]}) remove(o);
}

TEST_F(LoadObjTest, CustomLoadCallsLoadobjAndMarksTheObjectLoadedFromFile) {
  COSInterfacePtr object = make("sg2utils.TestLoadObj");
  core(object).setTopLevelSerializedObject(true);
  Arr number(vxCreateDoubleScalar(1));
  std::vector<std::string> lines;
  {
    Log log(1u << 2);
    object->getClass()->getClassInfo()->customLoad(object, COSValue(number.get()), COSDataTypePtr());
    lines = log.lines();
  }
  EXPECT_EQ(lines, (std::vector<std::string>{"BaseObjectCOSInfo::customLoad sg2utils.TestLoadObj",
                                             "    'val' is not an VCOS object", "    Calling sgLoadObj"}));
  EXPECT_EQ(doLoadObjCalls, 1);
  EXPECT_TRUE(core(object).getLoadObjCalled());
  EXPECT_TRUE(SGHandle::fromObject(object.get())->getLoadedFromFile());
  remove(object);
}

}  // namespace
}  // namespace mixins
}  // namespace sgtest
