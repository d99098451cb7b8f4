// Properties added to graphics objects at run time in saved files: those
// marked to be stored come back with their type, visibility, value
// (references into the saved tree too) and changed attributes, transient
// ones do not; a file that carries them is a newer version; a list that does
// not fit, or an attribute that this system lacks or that has the wrong
// type, loads nothing.
#include <cmath>
#include <span>
#include <string>
#include <vector>

#include "classes/ClassesTestSupport.h"
#include "support/DamagedFiles.h"
#include "foundation/core/except/IMsgIDException.h"
#include "sgclasses/ClassNames.h"
#include "sgclasses/Drawnow.h"
#include "sgutils/metadata/SGCustomMetaProperty.h"
#include "sgutils/persistence/GraphicsFile.h"
#include "support/ErrorId.h"
#include "vcos/COSDataType.h"  // before COSClass.h: COSDataTypePtr needs it complete
#include "vcos/COSClass.h"
#include "vcos/COSClassInfo.h"
#include "vcos/COSGenericProp.h"
#include "vcos/COSObjectOperations.h"
#include "vcos/COSPropInfo.h"
#include "vcos/DynamicProperties.h"
#include "vcos/ExtendedMemberAccess.h"
#include "vcos/ObjectCalls.h"
#include "vx/vxCell.h"
#include "vx/vxData.h"
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

COSGenericProp* generic(const COSInterfacePtr& object, const char* name) {
  return dynamic_cast<COSGenericProp*>(added(object, name));
}

std::vector<std::string> accessList(const ExtendedMemberAccess* list) {
  std::vector<std::string> out;
  if (list)
    for (const COSID& c : list->classes()) out.emplace_back(c.c_str());
  return out;
}

Arr int32Scalar(std::int32_t value) {
  Arr out(vxCreateNumericMatrix(1, 1, vxINT32_CLASS, vxREAL));
  *static_cast<std::int32_t*>(vxGetData(out.get())) = value;
  return out;
}

// The added-properties list of the first record of a file that has one.
Arr savedList(std::span<const std::uint8_t> bytes) {
  vxReadOptions read;
  read.makeObjects = [](std::span<const vxSavedObjectHead>) {};
  read.makeObjectArray = [](const std::string&, std::span<const vxSize>, std::span<const std::int64_t>) {
    return vxCreateDoubleMatrix(0, 0, vxREAL);
  };
  vxSavedDocument document = vxDeserializeDocument(bytes, read);
  for (vxSavedObject& record : document.objects)
    for (vxNamedValue& field : record.fields)
      if (field.name == GraphicsFile::kDynamicPropertiesField) return std::move(field.value);
  return nullptr;
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
  // A file of one figure whose record holds `dynamic` as its added
  // properties; `top` is a figure's value, written through it.
  static Bytes figureDocument(const vxArray* top, const vxArray* dynamic) {
    std::vector<vxSavedObjectView> objects{
        {vxSavedObjectHead{sgclasses::kFigureClass, -1, ""}, {{GraphicsFile::kDynamicPropertiesField, dynamic}}}};
    vxWriteOptions w;
    w.objectClassName = [](const vxArray*) { return std::string(sgclasses::kFigureClass); };
    w.objectIndex = [](const vxArray*, std::size_t) -> std::int64_t { return 0; };
    const std::pair<std::string, const vxArray*> values[] = {{"top", top}};
    return vxSerializeDocument(values, objects, w);
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
  auto document = [&](const vxArray* dynamic) { return figureDocument(standInValue.get(), dynamic); };
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

// The file carries changed attributes too: a copy that loads has them all.
TEST_F(DynamicPropertyFileTest, EveryTruncationAndByteChangeLoadsTheSameOrNothing) {
  const COSInterfacePtr top = sgclasses::create(sgclasses::kFigureClass, sgclasses::root());
  auto* property = static_cast<COSGenericProp*>(addProperty(top, "Note"));
  Arr note(vxCreateString("kept"));
  set(top, "Note", note.get());
  property->setAccess(PublicAccess, PrivateAccess);
  property->setFlags(property->getFlags() | COSPropAbortSet);
  SGCustomMetaProperty::of(property)->setAffectsObject(true);
  const Bytes bytes = save(top);
  const std::size_t live = liveCount();
  auto loadAndCheck = [&](std::span<const std::uint8_t> damaged) {
    const COSInterfacePtr loaded = load(damaged);
    ASSERT_TRUE(loaded);
    EXPECT_EQ(getText(loaded, "Note"), "kept");
    const COSGenericProp* p = generic(loaded, "Note");
    EXPECT_EQ(p->getFlags(), property->getFlags());
    EXPECT_EQ(p->getMemberSetAccess(), PrivateAccess);
    EXPECT_TRUE(SGCustomMetaProperty::of(p)->getAffectsObject());
    loaded->deleteObject(COSGetPublicClient());
    sgclasses::makeCurrent(top);
  };
  sgtest::SweepResult whole;
  sgtest::tryDamagedCopy(bytes, live, liveCount, loadAndCheck, whole);
  ASSERT_EQ(whole.loadedSame, 1);
  const sgtest::SweepResult r = sgtest::sweepDamagedCopies(bytes, live, liveCount, loadAndCheck);
  EXPECT_EQ(r.refused + r.loadedSame, static_cast<int>(2 * bytes.size()));
}

// Attributes set from C++ and from the graphics metadata come back as they
// were saved, after the value: a property saved read-only keeps its value
// and refuses a public set after load. A property left as added keeps the
// attributes of a new one.
TEST_F(DynamicPropertyFileTest, ChangedAttributesComeBackAndAReadOnlyPropertyKeepsItsValue) {
  makeTree();
  COSGenericProp* locked = generic(line, "Note");
  locked->setAccess(ProtectedAccess, PrivateAccess);
  const unsigned flags = (locked->getFlags() | COSPropAbortSet | COSPropDependent | COSPropWeakReference) &
                         ~unsigned(COSPropListenerGetAllowed | COSPropListenerSetAllowed | COSPropResetAllowed);
  locked->setFlags(flags);
  SGCustomMetaProperty* meta = SGCustomMetaProperty::of(locked);
  ASSERT_TRUE(meta);
  meta->setDeepCopy(true);
  meta->setAffectsLegend(true);
  meta->setUsedInUpdate(false);
  generic(line, "Peer")->setExtendedSetAccess(ExtendedMemberAccess{COSID(sgclasses::kLineClass), COSID("no.such.Class")});

  const COSInterfacePtr loaded = load(save(figure));
  ASSERT_TRUE(loaded);
  const COSInterfacePtr loadedAxes = firstChildOfClass(loaded, sgclasses::kAxesClass);
  const COSInterfacePtr loadedLine = firstChildOfClass(loadedAxes, sgclasses::kLineClass);
  ASSERT_TRUE(loadedLine);
  const COSGenericProp* note = generic(loadedLine, "Note");
  ASSERT_TRUE(note);
  EXPECT_EQ(note->getFlags(), flags);
  EXPECT_EQ(note->getMemberGetAccess(), ProtectedAccess);
  EXPECT_EQ(note->getMemberSetAccess(), PrivateAccess);
  // Read past access checks: its get access is protected now.
  const COSValue value = note->getValue(loadedLine.get());
  EXPECT_EQ(vxArrayToStdString(value.asPointer<vxArray>()), "remember");
  note->releaseValue(loadedLine.get(), value);
  Arr other(vxCreateString("other"));
  EXPECT_EQ(errorId([&] { set(loadedLine, "Note", other.get()); }), "VANTEL:vcos:SetProhibited");
  const SGCustomMetaProperty* loadedMeta = SGCustomMetaProperty::of(note);
  ASSERT_TRUE(loadedMeta);
  EXPECT_TRUE(loadedMeta->getDeepCopy());
  EXPECT_TRUE(loadedMeta->getAffectsLegend());
  EXPECT_FALSE(loadedMeta->getAffectsObject());
  EXPECT_FALSE(loadedMeta->getUsedInUpdate());
  // The access list, a class this system lacks included; the plain access
  // beside it stays public.
  const COSGenericProp* peer = generic(loadedLine, "Peer");
  EXPECT_EQ(accessList(peer->getExtendedSetAccess()), (std::vector<std::string>{sgclasses::kLineClass, "no.such.Class"}));
  EXPECT_EQ(peer->getExtendedGetAccess(), nullptr);
  EXPECT_EQ(omGetArrayElement(get(loadedLine, "Peer").get(), 0), loadedAxes);
  // Left as added: the visibility it was given, nothing else.
  const COSGenericProp* scale = generic(loadedLine, "Scale");
  EXPECT_EQ(scale->getFlags(), unsigned(COSPropDefaultFlags));
  EXPECT_EQ(scale->getMemberSetAccess(), PublicAccess);
  EXPECT_EQ(generic(loadedLine, "Secret")->getFlags(), unsigned(COSPropDefaultFlags) & ~unsigned(COSPropVisible));
  EXPECT_TRUE(SGCustomMetaProperty::of(scale)->getUsedInUpdate());
  loaded->deleteObject(COSGetPublicClient());
}

// Only a list with a changed attribute has the fifth field, unset for the
// properties left as added; a list without it, as every earlier writer
// wrote, loads as it always did.
TEST_F(DynamicPropertyFileTest, OnlyChangedAttributesAreWrittenAndAnEarlierListLoadsAsBefore) {
  makeTree();
  Arr plain = savedList(save(figure));
  ASSERT_TRUE(plain);
  EXPECT_EQ(vxGetNumberOfFields(plain.get()), 4);

  generic(line, "Peer")->setAccess(PublicAccess, NoAccess);
  Arr changed = savedList(save(figure));
  ASSERT_EQ(vxGetNumberOfFields(changed.get()), 5);
  EXPECT_EQ(vxGetFieldByNumber(changed.get(), 0, 4), nullptr);  // Note
  const vxArray* peer = vxGetFieldByNumber(changed.get(), 1, 4);
  ASSERT_TRUE(peer);
  ASSERT_EQ(vxGetNumberOfFields(peer), 1);
  EXPECT_STREQ(vxGetFieldNameByNumber(peer, 0), "SetAccess");

  // The list as the writer of before wrote it: four fields.
  const COSInterfacePtr earlier = load(figureDocument(Arr(obj(figure)).get(), plain.get()));
  ASSERT_TRUE(earlier);
  for (const char* name : {"Note", "Peer", "Scale"}) {
    SCOPED_TRACE(name);
    const COSGenericProp* p = generic(earlier, name);
    ASSERT_TRUE(p);
    EXPECT_EQ(p->getFlags(), unsigned(COSPropDefaultFlags));
    EXPECT_EQ(p->getMemberGetAccess(), PublicAccess);
    EXPECT_EQ(p->getMemberSetAccess(), PublicAccess);
    EXPECT_EQ(p->getExtendedSetAccess(), nullptr);
  }
  EXPECT_EQ(getText(earlier, "Note"), "remember");
  earlier->deleteObject(COSGetPublicClient());
}

TEST_F(DynamicPropertyFileTest, AnUnknownOrBadlyTypedAttributeLoadsNothing) {
  const char* fields[] = {"Name", "Type", "Value", "Visible", "Attributes"};
  auto list = [&](Arr attributes) {
    Arr s(vxCreateStructMatrix(1, 1, 5, fields));
    vxSetFieldByNumber(s.get(), 0, 0, vxCreateString("Note"));
    vxSetFieldByNumber(s.get(), 0, 1, vxCreateString("any"));
    vxSetFieldByNumber(s.get(), 0, 2, vxCreateDoubleScalar(7));
    vxSetFieldByNumber(s.get(), 0, 3, vxCreateLogicalScalar(true));
    vxSetFieldByNumber(s.get(), 0, 4, attributes.release());
    return s;
  };
  auto one = [](const char* name, Arr value) {
    const char* names[] = {name};
    Arr s(vxCreateStructMatrix(1, 1, 1, names));
    vxSetFieldByNumber(s.get(), 0, 0, value.release());
    return s;
  };
  auto cellOf = [](Arr element) {
    Arr c(vxCreateCellMatrix(1, 1));
    vxSetCell(c.get(), 0, element.release());
    return c;
  };
  const COSInterfacePtr standIn = sgclasses::create(sgclasses::kFigureClass, {});
  Arr standInValue = obj(standIn);
  const std::size_t live = liveCount();
  const std::string loader = "VANTEL:sg:load:";
  struct Case {
    const char* what;
    Arr attributes;
    std::string id;
  };
  Case cases[] = {
      {"a name that is no attribute", one("Colour", Arr(vxCreateLogicalScalar(true))), "UnknownPropertyAttribute"},
      {"transience, which a saved property never has", one("Transient", Arr(vxCreateLogicalScalar(true))),
       "UnknownPropertyAttribute"},
      {"a number for a flag", one("AbortSet", Arr(vxCreateDoubleScalar(1))), "BadPropertyAttribute"},
      {"two flags for one", one("Dependent", Arr(vxCreateLogicalMatrix(1, 2))), "BadPropertyAttribute"},
      {"a graphics attribute as text", one("DeepCopy", Arr(vxCreateString("true"))), "BadPropertyAttribute"},
      {"an access past the last", one("SetAccess", int32Scalar(4)), "BadPropertyAttribute"},
      {"an access as a double", one("SetAccess", Arr(vxCreateDoubleScalar(1))), "BadPropertyAttribute"},
      {"a list with a number", one("GetAccess", cellOf(Arr(vxCreateDoubleScalar(1)))), "BadPropertyAttribute"},
      {"a list with an empty name", one("GetAccess", cellOf(Arr(vxCreateString("")))), "BadPropertyAttribute"},
      {"attributes that are no struct", Arr(vxCreateDoubleScalar(1)), "BadDynamicProperties"},
      {"two sets of attributes", Arr(vxCreateStructMatrix(1, 2, 0, nullptr)), "BadDynamicProperties"},
  };
  for (Case& c : cases) {
    SCOPED_TRACE(c.what);
    Arr saved = list(std::move(c.attributes));
    EXPECT_EQ(errorId([&] { load(figureDocument(standInValue.get(), saved.get())); }), loader + c.id);
    EXPECT_EQ(liveCount(), live);
  }

  // An empty access list is a list: only the defining class may read.
  Arr emptyList = list(one("GetAccess", Arr(vxCreateCellMatrix(1, 0))));
  const COSInterfacePtr loaded = load(figureDocument(standInValue.get(), emptyList.get()));
  ASSERT_TRUE(loaded);
  const COSGenericProp* note = generic(loaded, "Note");
  ASSERT_TRUE(note && note->getExtendedGetAccess());
  EXPECT_TRUE(note->getExtendedGetAccess()->classes().empty());
  EXPECT_EQ(errorId([&] { get(loaded, "Note"); }), "VANTEL:vcos:GetProhibited");
  loaded->deleteObject(COSGetPublicClient());
  standIn->deleteObject(COSGetPublicClient());
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
