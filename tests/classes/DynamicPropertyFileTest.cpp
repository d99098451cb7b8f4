// Properties added to graphics objects at run time in saved files: those
// marked to be stored come back with their type, visibility and value
// (references into the saved tree too), transient ones do not; a file that
// carries them is a newer version; a list that does not fit loads nothing.
#include <cmath>
#include <span>
#include <string>
#include <vector>

#include "classes/ClassesTestSupport.h"
#include "support/DamagedFiles.h"
#include "foundation/core/except/IMsgIDException.h"
#include "sgclasses/ClassNames.h"
#include "sgclasses/Drawnow.h"
#include "sgutils/persistence/GraphicsFile.h"
#include "support/ErrorId.h"
#include "vcos/COSDataType.h"  // before COSClass.h: COSDataTypePtr needs it complete
#include "vcos/COSClass.h"
#include "vcos/COSClassInfo.h"
#include "vcos/COSGenericProp.h"
#include "vcos/COSObjectOperations.h"
#include "vcos/COSPropInfo.h"
#include "vcos/DynamicProperties.h"
#include "vcos/ObjectCalls.h"
#include "vx/vxSerialize.h"

namespace sgtest::classes {
namespace {

using sgutils::GraphicsFile;
using Bytes = std::vector<std::uint8_t>;

COSPropInfo* addProperty(const COSInterfacePtr& object, const char* name, const char* type = "any") {
  COSGenericProp* property = COSGenericProp::createNewDynamicProp(name, object->getClass()->getID(), COSID(type));
  object->addDynamicProperty(property);
  return property;
}

COSPropInfo* added(const COSInterfacePtr& object, const char* name) {
  COSInterfacePtr found;
  object->findDynamicProperty(found, COSID(name));
  return static_cast<COSPropInfo*>(found.get());
}

COSInterfacePtr firstChildOfClass(const COSInterfacePtr& parent, const char* cls) {
  for (COSInterface* c = parent->getOldestChild(); c; c = c->getNewerSibling())
    if (sgclasses::isOfClass(c, {cls})) return COSInterfacePtr(c);
  return {};
}

class DynamicPropertyFileTest : public ClassesTest {
 protected:
  static std::size_t liveCount() {
    sgclasses::forgetDeletedDirtyObjects();
    return vcos::liveObjectCount();
  }
  static Bytes save(const COSInterfacePtr& top) {
    Arr value = obj(top);
    const std::pair<std::string, const vxArray*> entry[] = {{"top", value.get()}};
    return GraphicsFile::serialize(entry);
  }
  static COSInterfacePtr load(std::span<const std::uint8_t> bytes) {
    sgutils::GraphicsLoadOptions options;
    options.parentOfTopLevel = [](const COSInterfacePtr& object) {
      return sgclasses::isOfClass(object.get(), {sgclasses::kFigureClass}) ? sgclasses::root() : COSInterfacePtr();
    };
    std::vector<vxNamedValue> values = GraphicsFile::deserialize(bytes, options);
    if (values.size() != 1 || !vxIsObject(values[0].value.get())) return {};
    return omGetArrayElement(values[0].value.get(), 0);
  }
  // A figure, an axes and a line that carries added properties: a text, a
  // reference to its axes, a hidden one, a typed -0 and a transient one.
  void makeTree() {
    figure = sgclasses::create(sgclasses::kFigureClass, sgclasses::root());
    axes = sgclasses::create(sgclasses::kAxesClass, figure);
    line = sgclasses::create(sgclasses::kLineClass, axes);
    addProperty(line, "Note");
    Arr note(vxCreateString("remember"));
    set(line, "Note", note.get());
    addProperty(line, "Peer");
    Arr peer = obj(axes);
    set(line, "Peer", peer.get());
    static_cast<COSGenericProp*>(addProperty(line, "Secret"))->setVisible(false);
    Arr secret(vxCreateDoubleScalar(3));
    vcos::omCopyPropertyWithNoPermissionCheck(line, added(line, "Secret"), COSValue(secret.get()));
    addProperty(line, "Scale", "double scalar");
    Arr negativeZero(vxCreateDoubleScalar(-0.0));
    set(line, "Scale", negativeZero.get());
    static_cast<COSGenericProp*>(addProperty(line, "Scratch"))->setTransient(true);
  }
  COSInterfacePtr figure, axes, line;
};

TEST_F(DynamicPropertyFileTest, StoredAddedPropertiesComeBackWithTypeVisibilityAndValue) {
  makeTree();
  const Bytes bytes = save(figure);
  EXPECT_EQ(bytes[8], vxSerializeDynamicPropertiesVersion);
  const COSInterfacePtr loaded = load(bytes);
  ASSERT_TRUE(loaded);
  const COSInterfacePtr loadedAxes = firstChildOfClass(loaded, sgclasses::kAxesClass);
  ASSERT_TRUE(loadedAxes);
  const COSInterfacePtr loadedLine = firstChildOfClass(loadedAxes, sgclasses::kLineClass);
  ASSERT_TRUE(loadedLine);

  // In the order they were added, the transient one left out.
  std::vector<std::string> names;
  for (const COSInterfacePtr& p : vcos::dynamicProperties(loadedLine.get()))
    names.emplace_back(static_cast<const COSPropInfo*>(p.get())->getName());
  EXPECT_EQ(names, (std::vector<std::string>{"Note", "Peer", "Secret", "Scale"}));
  EXPECT_EQ(getText(loadedLine, "Note"), "remember");
  // The reference points into the loaded tree, not the saved one.
  Arr peer = get(loadedLine, "Peer");
  ASSERT_TRUE(vxIsObject(peer.get()));
  EXPECT_EQ(omGetArrayElement(peer.get(), 0), loadedAxes);
  EXPECT_FALSE(added(loadedLine, "Secret")->isVisible());
  EXPECT_TRUE(added(loadedLine, "Note")->isVisible());
  EXPECT_FALSE(added(loadedLine, "Note")->isTransient());
  EXPECT_STREQ(added(loadedLine, "Scale")->getDataType()->getID().c_str(), "double scalar");
  EXPECT_TRUE(std::signbit(number(loadedLine, "Scale")));
  EXPECT_EQ(number(loadedLine, "Secret"), 3.0);

  // Objects without added properties keep the file's older version.
  const COSInterfacePtr plain = sgclasses::create(sgclasses::kFigureClass, sgclasses::root());
  EXPECT_LT(save(plain)[8], vxSerializeDynamicPropertiesVersion);
}

// The list is written as a record field; lists that do not fit, or that
// name a type this system lacks, load nothing. A value that no longer fits
// its type is dropped and the property stays.
TEST_F(DynamicPropertyFileTest, AListThatDoesNotFitLoadsNothingAndAValueThatDoesNotFitIsDropped) {
  const char* fields[] = {"Name", "Type", "Value", "Visible"};
  auto list = [&](const char* name, const char* type, Arr value) {
    Arr s(vxCreateStructMatrix(1, 1, 4, fields));
    vxSetFieldByNumber(s.get(), 0, 0, vxCreateString(name));
    vxSetFieldByNumber(s.get(), 0, 1, vxCreateString(type));
    vxSetFieldByNumber(s.get(), 0, 2, value.release());
    vxSetFieldByNumber(s.get(), 0, 3, vxCreateLogicalScalar(true));
    return s;
  };
  // One figure, the saved value, written through a stand-in.
  const COSInterfacePtr standIn = sgclasses::create(sgclasses::kFigureClass, {});
  Arr standInValue = obj(standIn);
  auto document = [&](const vxArray* dynamic) {
    std::vector<vxSavedObjectView> objects{
        {vxSavedObjectHead{sgclasses::kFigureClass, -1, ""}, {{GraphicsFile::kDynamicPropertiesField, dynamic}}}};
    vxWriteOptions w;
    w.objectClassName = [](const vxArray*) { return std::string(sgclasses::kFigureClass); };
    w.objectIndex = [](const vxArray*, std::size_t) -> std::int64_t { return 0; };
    const std::pair<std::string, const vxArray*> values[] = {{"top", standInValue.get()}};
    return vxSerializeDocument(values, objects, w);
  };
  const std::size_t live = liveCount();
  const std::string loader = "VANTEL:sg:load:";
  Arr unknown = list("Odd", "no such type", Arr(vxCreateDoubleScalar(1)));
  EXPECT_EQ(errorId([&] { load(document(unknown.get())); }), loader + "UnknownPropertyType");
  EXPECT_EQ(liveCount(), live);
  Arr unnamed = list("", "any", Arr(vxCreateDoubleScalar(1)));
  EXPECT_EQ(errorId([&] { load(document(unnamed.get())); }), loader + "BadDynamicProperties");
  EXPECT_EQ(liveCount(), live);
  Arr notStruct(vxCreateDoubleScalar(1));
  EXPECT_EQ(errorId([&] { load(document(notStruct.get())); }), loader + "BadDynamicProperties");
  EXPECT_EQ(liveCount(), live);
  const char* three[] = {"Name", "Type", "Value"};
  Arr short3(vxCreateStructMatrix(1, 1, 3, three));
  EXPECT_EQ(errorId([&] { load(document(short3.get())); }), loader + "BadDynamicProperties");
  EXPECT_EQ(liveCount(), live);

  // A text where a number belongs: the property is made, its value dropped.
  Arr misfit = list("Scale", "double scalar", Arr(vxCreateString("wide")));
  const COSInterfacePtr loaded = load(document(misfit.get()));
  ASSERT_TRUE(loaded);
  ASSERT_TRUE(added(loaded, "Scale"));
  EXPECT_EQ(number(loaded, "Scale"), 0.0);
  // A name the class has a property of its own for is passed over.
  Arr own = list("Name", "any", Arr(vxCreateDoubleScalar(5)));
  const COSInterfacePtr second = load(document(own.get()));
  ASSERT_TRUE(second);
  EXPECT_FALSE(added(second, "Name"));
  EXPECT_EQ(text(second, "Name"), "");
  loaded->deleteObject(COSGetPublicClient());
  second->deleteObject(COSGetPublicClient());
  standIn->deleteObject(COSGetPublicClient());
}

TEST_F(DynamicPropertyFileTest, EveryTruncationAndByteChangeLoadsTheSameOrNothing) {
  const COSInterfacePtr top = sgclasses::create(sgclasses::kFigureClass, sgclasses::root());
  addProperty(top, "Note");
  Arr note(vxCreateString("kept"));
  set(top, "Note", note.get());
  const Bytes bytes = save(top);
  const std::size_t live = liveCount();
  auto loadAndCheck = [&](std::span<const std::uint8_t> damaged) {
    const COSInterfacePtr loaded = load(damaged);
    ASSERT_TRUE(loaded);
    EXPECT_EQ(getText(loaded, "Note"), "kept");
    loaded->deleteObject(COSGetPublicClient());
    sgclasses::makeCurrent(top);
  };
  sgtest::SweepResult whole;
  sgtest::tryDamagedCopy(bytes, live, liveCount, loadAndCheck, whole);
  ASSERT_EQ(whole.loadedSame, 1);
  const sgtest::SweepResult r = sgtest::sweepDamagedCopies(bytes, live, liveCount, loadAndCheck);
  EXPECT_EQ(r.refused + r.loadedSame, static_cast<int>(2 * bytes.size()));
}

// The class info's areChildrenSaved gates the walk below an object: the
// placeholder (a concrete class with the Graphics root's info, which answers
// false) is saved alone, while a group (a generated class, true) keeps its
// line.
TEST_F(DynamicPropertyFileTest, AClassWhoseInfoSavesNoChildrenIsSavedAlone) {
  auto recordCount = [](std::span<const std::uint8_t> bytes) {
    vxReadOptions read;
    read.makeObjects = [](std::span<const vxSavedObjectHead>) {};
    read.makeObjectArray = [](const std::string&, std::span<const vxSize>, std::span<const std::int64_t>) {
      return vxCreateDoubleMatrix(0, 0, vxREAL);
    };
    return vxDeserializeDocument(bytes, read).objects.size();
  };
  COSClass* placeholderClass = COSClass::getClass(COSID("vantel.graphics.GraphicsPlaceholder"));
  ASSERT_TRUE(placeholderClass);
  ASSERT_FALSE(placeholderClass->getClassInfo()->areChildrenSaved());
  const COSInterfacePtr placeholder = placeholderClass->createInstance(COSGetPublicClient());
  const COSInterfacePtr below = sgclasses::create(sgclasses::kLineClass, {});
  placeholder->hookChild(below.get());
  EXPECT_EQ(recordCount(save(placeholder)), 1u);

  const COSInterfacePtr group = sgclasses::create(sgclasses::kGroupClass, {});
  sgclasses::create(sgclasses::kLineClass, group);
  EXPECT_EQ(recordCount(save(group)), 2u);
  placeholder->deleteObject(COSGetPublicClient());  // and the line below it
  group->deleteObject(COSGetPublicClient());
}

}  // namespace
}  // namespace sgtest::classes
