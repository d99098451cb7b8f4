// Classes that load their own way: one the serializer restores element by
// element (its saved elements as content, its deserializer, then
// "finalizeIncomingObject"), and one with a "loadobj" of its own.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "foundation/core/except/Error.h"
#include "foundation/log/LogCapture.h"
#include "foundation/log/Logger.h"
#include "sgutils/classinfo/loadobjBaseMI.h"
#include "sgutils/objects/TestElementLoad.gen.h"
#include "sgutils/objects/TestOwnLoadobj.gen.h"
#include "sgutils/persistence/CustomElementSerialization.h"
#include "sgutils/persistence/GraphicsFile.h"
#include "sgutils/propinfos/BlockOf.h"
#include "../objects/MixinTestSupport.h"
#include "vcos/COSClass.h"
#include "vcos/COSMethodBase.h"
#include "vcos/COSMethodInfo.h"
#include "vcos/COSObjectOperations.h"
#include "vcos/ObjectSerialization.h"

namespace sgtest {

namespace {

// What the class's own "loadobj" was given.
int ownLoadobjCalls = 0;
int ownLoadobjInputs = 0;
COSInterfacePtr ownLoadobjObject;

class OwnLoadobjMI final : public COSMethodBase {
 public:
  explicit OwnLoadobjMI(COSID classId) : COSMethodBase(classId, COSID("loadobj"), PublicAccess, "own load step") {}
  void invoke(const COSClient*, int& nlhs, COSValue* plhs, int nrhs, const COSValue* prhs) const override {
    ++ownLoadobjCalls;
    ownLoadobjInputs = nrhs;
    const vxArray* first = prhs[0].asPointer<const vxArray>();
    if (first && omIsVCOS(first) && vxGetNumberOfElements(first) == 1) {
      ownLoadobjObject = omGetArrayElement(first, 0);
      sgtest::set(ownLoadobjObject, "Tag", matrix::unique_vxArray(vxCreateString("own loadobj")).get());
    }
    if (nlhs < 1) nlhs = 1;
    plhs[0] = COSValue(vxDuplicateArray(first));
  }
};

}  // namespace

void TestOwnLoadobj::addMethods(COSClass* cls, COSID classId) { cls->addMethod(new OwnLoadobjMI(classId)); }

namespace mixins {
namespace {

using graphics::internal::GraphicsCoreProperties;
using object_serialization::ElementBasedContent;
using sgutils::CustomElementSerialization;

constexpr char kElementClass[] = "sg2utils.TestElementLoad";
constexpr char kOwnClass[] = "sg2utils.TestOwnLoadobj";

GraphicsCoreProperties& core(const COSInterfacePtr& object) {
  return *sgutils::blockOf<GraphicsCoreProperties>(object.get(), GraphicsCoreProperties::classID());
}

struct ElementLoadTest : ::testing::Test {
  void SetUp() override {
    static const bool done = [] {
      registerMixinTestClasses();
      sgutils::generated::registerTestElementLoad();
      sgutils::generated::registerTestOwnLoadobj();
      return true;
    }();
    (void)done;
    ownLoadobjCalls = ownLoadobjInputs = 0;
    ownLoadobjObject.reset();
  }
  void TearDown() override {
    object_serialization::setElementDeserializer(COSID(kElementClass), {});
    ownLoadobjObject.reset();
  }
  // Saves the object alone and loads it back.
  static COSInterfacePtr saveAndLoad(const COSInterfacePtr& object) {
    Arr value = obj(object);
    const std::pair<std::string, const vxArray*> entry[] = {{"saved", value.get()}};
    std::vector<vxNamedValue> values =
        sgutils::GraphicsFile::deserialize(sgutils::GraphicsFile::serialize(entry), sgutils::GraphicsLoadOptions());
    if (values.size() != 1 || !omIsVCOS(values[0].value.get())) return {};
    return omGetArrayElement(values[0].value.get(), 0);
  }
  // An object of the class with a tag and Interruptible off.
  static COSInterfacePtr tagged(const char* cls) {
    COSInterfacePtr object = make(cls);
    set(object, "Tag", text("saved tag").get());
    set(object, "Interruptible", text("off").get());
    return object;
  }
};

TEST_F(ElementLoadTest, ContentIsTheSavedStructAndTheHelpersBuildStructsFromIt) {
  const char* names[] = {"Position", "Units", "Tag"};
  Arr saved(vxCreateStructMatrix(1, 1, 3, names));
  vxSetField(saved.get(), 0, "Position", vxCreateDoubleScalar(2));
  vxSetField(saved.get(), 0, "Units", vxCreateString("pixels"));
  vxSetField(saved.get(), 0, "Tag", vxCreateString("t"));
  const ElementBasedContent content(saved.get());
  ASSERT_EQ(content.size(), 3u);
  EXPECT_STREQ(content.nameAt(2), "Tag");
  EXPECT_TRUE(content.hasProperty("Units"));
  EXPECT_FALSE(content.hasProperty("units"));
  EXPECT_EQ(content.getValue("Missing"), nullptr);
  EXPECT_EQ(ElementBasedContent(nullptr).size(), 0u);
  Arr objects = obj(make(kElementClass));
  EXPECT_EQ(ElementBasedContent(objects.get()).size(), 0u);
  remove(omGetArrayElement(objects.get(), 0));

  // The whole content as a struct of copies, in saved order.
  Arr all = CustomElementSerialization::getElementBasedSerializationContent(content);
  ASSERT_EQ(vxGetNumberOfFields(all.get()), 3);
  EXPECT_STREQ(vxGetFieldNameByNumber(all.get(), 0), "Position");
  EXPECT_NE(vxGetField(all.get(), 0, "Tag"), vxGetField(saved.get(), 0, "Tag"));

  // A value with its units; a name the content lacks adds nothing, and
  // units never saved are empty.
  Arr out(vxCreateStructMatrix(1, 1, 0, nullptr));
  CustomElementSerialization::createStructFromUnitsAndValue(&content, "Position", "Units", out.get());
  CustomElementSerialization::createStructFromUnitsAndValue(&content, "OuterPosition", "Units", out.get());
  CustomElementSerialization::createStructFromUnitsAndValue(&content, "Tag", "TagUnits", out.get());
  ASSERT_EQ(vxGetNumberOfFields(out.get()), 2);
  const vxArray* position = vxGetField(out.get(), 0, "Position");
  EXPECT_EQ(vxGetScalar(vxGetField(position, 0, "Value")), 2.0);
  EXPECT_TRUE(vxIsChar(vxGetField(position, 0, "Units")));
  EXPECT_TRUE(vxIsEmpty(vxGetField(vxGetField(out.get(), 0, "Tag"), 0, "Units")));
}

// The metaclass adds the hidden finishing step only to classes that load
// element by element; "loadobj" to every class.
TEST_F(ElementLoadTest, OnlyElementLoadingClassesGetFinalizeIncomingObject) {
  COSClass* element = COSClass::getClass(COSID(kElementClass));
  COSClass* plain = COSClass::getClass(COSID("sg2utils.TestLoadObj"));
  ASSERT_TRUE(element && plain);
  const COSMethodInfo* finalize = element->findMethod(COSID("finalizeIncomingObject"));
  ASSERT_NE(dynamic_cast<const loadobjBaseMI*>(finalize), nullptr);
  EXPECT_FALSE(finalize->isVisible());
  EXPECT_TRUE(finalize->isStatic());
  EXPECT_STREQ(finalize->getDescription(), "Customized finalizeIncomingObject");
  EXPECT_EQ(plain->findMethod(COSID("finalizeIncomingObject")), nullptr);
  EXPECT_NE(dynamic_cast<const loadobjBaseMI*>(plain->findMethod(COSID("loadobj"))), nullptr);
  EXPECT_NE(dynamic_cast<const loadobjBaseMI*>(element->findMethod(COSID("loadobj"))), nullptr);
}

// The loader sets none of the object's fields: its deserializer gets them
// as content and takes what it wants; then "finalizeIncomingObject" runs the
// load step, sgLoadObj included.
TEST_F(ElementLoadTest, AnElementLoadingObjectTakesItsContentThroughItsDeserializer) {
  std::vector<std::string> seen;
  int calls = 0;
  object_serialization::setElementDeserializer(
      COSID(kElementClass), [&](const COSInterfacePtr& object, const ElementBasedContent& content) {
        ++calls;
        for (std::size_t i = 0; i < content.size(); ++i) seen.emplace_back(content.nameAt(i));
        // This class restores only its tag.
        ASSERT_TRUE(content.hasProperty("Tag_I"));
        Arr tagOnly(vxCreateStructMatrix(1, 1, 0, nullptr));
        vxSetFieldByNumber(tagOnly.get(), 0, vxAddField(tagOnly.get(), "Tag_I"),
                           vxDuplicateArray(content.getValue("Tag_I")));
        CustomElementSerialization::copyValuesFromStructToObject(object, tagOnly.get());
      });
  const COSInterfacePtr saved = tagged(kElementClass);
  std::vector<std::string> lines;
  COSInterfacePtr loaded;
  {
    foundation::log::setChannelLevel("graphics::object_serialization", (1u << 2) | (1u << 3));
    foundation::log::LogCapture capture;
    loaded = saveAndLoad(saved);
    foundation::log::setChannelLevel("graphics::object_serialization", 0);
    for (const auto& r : capture.records())
      if (r.channel == "graphics::object_serialization") lines.push_back(r.text);
  }
  ASSERT_TRUE(loaded);
  EXPECT_EQ(calls, 1);
  EXPECT_NE(std::find(seen.begin(), seen.end(), "Interruptible_I"), seen.end());
  EXPECT_EQ(getText(loaded, "Tag"), "saved tag");
  EXPECT_EQ(getText(loaded, "Interruptible"), "on");
  EXPECT_TRUE(core(loaded).getLoadObjCalled());
  EXPECT_TRUE(SGHandle::fromObject(loaded.get())->getLoadedFromFile());
  const std::vector<std::string> expected{"BaseObjectCOSInfo::customLoad sg2utils.TestElementLoad",
                                          "sg2utils.TestElementLoad.finalizeIncomingObject(obj)",
                                          "    Calling doloadobj", "    Calling sgLoadObj"};
  std::vector<std::string> loadLines(std::find(lines.begin(), lines.end(), expected.front()), lines.end());
  EXPECT_EQ(loadLines, expected);
  remove(loaded);

  // With no deserializer the serializer sets each element on its property.
  object_serialization::setElementDeserializer(COSID(kElementClass), {});
  loaded = saveAndLoad(saved);
  ASSERT_TRUE(loaded);
  EXPECT_EQ(calls, 1);
  EXPECT_EQ(getText(loaded, "Tag"), "saved tag");
  EXPECT_EQ(getText(loaded, "Interruptible"), "off");
  EXPECT_TRUE(core(loaded).getLoadObjCalled());
  remove(loaded);
  remove(saved);
}

// A deserializer that fails fails the load, which leaves nothing behind.
TEST_F(ElementLoadTest, AFailingDeserializerLoadsNothing) {
  object_serialization::setElementDeserializer(
      COSID(kElementClass), [](const COSInterfacePtr&, const ElementBasedContent&) {
        throw foundation::core::except::Error("VANTEL:sg:InvalidProperty", "Nope", kElementClass);
      });
  const COSInterfacePtr saved = tagged(kElementClass);
  const std::size_t live = vcos::liveObjectCount();
  EXPECT_THROW(saveAndLoad(saved), foundation::core::except::IMsgIDException);
  EXPECT_EQ(vcos::liveObjectCount(), live);
  remove(saved);
}

// A class with its own "loadobj" keeps it, and the loader's step calls it
// with the restored object instead of the library's.
TEST_F(ElementLoadTest, AClassesOwnLoadobjIsKeptAndCalledOnLoad) {
  COSClass* cls = COSClass::getClass(COSID(kOwnClass));
  ASSERT_TRUE(cls);
  const COSMethodInfo* loadobj = cls->findMethod(COSID("loadobj"));
  ASSERT_NE(loadobj, nullptr);
  EXPECT_EQ(dynamic_cast<const loadobjBaseMI*>(loadobj), nullptr);
  const COSInterfacePtr saved = tagged(kOwnClass);
  const COSInterfacePtr loaded = saveAndLoad(saved);
  ASSERT_TRUE(loaded);
  EXPECT_EQ(ownLoadobjCalls, 1);
  EXPECT_EQ(ownLoadobjInputs, 1);
  EXPECT_EQ(ownLoadobjObject, loaded);
  EXPECT_EQ(getText(loaded, "Tag"), "own loadobj");
  // The saved values were restored before, and the library's step did not run.
  EXPECT_EQ(getText(loaded, "Interruptible"), "off");
  EXPECT_FALSE(core(loaded).getLoadObjCalled());
  EXPECT_TRUE(SGHandle::fromObject(loaded.get())->getLoadedFromFile());
  ownLoadobjObject.reset();
  remove(loaded);
  remove(saved);
}

}  // namespace
}  // namespace mixins
}  // namespace sgtest
