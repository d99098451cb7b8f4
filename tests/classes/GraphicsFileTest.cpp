// Graphics objects in saved files, from C++: a tree comes back equal (values,
// modes, order, references inside it); a damaged file, or one whose objects
// do not fit together, loads nothing and leaves no object behind.
#include <algorithm>
#include <cmath>
#include <cstring>
#include <span>
#include <string>
#include <vector>

#include "classes/ClassesTestSupport.h"
#include "support/DamagedFiles.h"
#include "sgclasses/ClassNames.h"
#include "sgclasses/Drawnow.h"
#include "foundation/log/LogCapture.h"
#include "foundation/log/Logger.h"
#include "sgutils/defaults/DefaultNameAccess.h"
#include "sgutils/lifecycle/SGHandle.h"
#include "sgutils/persistence/GraphicsFile.h"
#include "sgutils/persistence/UDDConverter.h"
#include "support/ErrorId.h"
#include "vcos/COSClass.h"
#include "vcos/COSObjectOperations.h"
#include "vcos/COSPropInfo.h"
#include "vcos/COSVisitor.h"
#include "vx/vxSerialize.h"
#include "vcos/ObjectCalls.h"

namespace sgtest::classes {
namespace {

using sgutils::GraphicsFile;
using Bytes = std::vector<std::uint8_t>;

Arr textArr(const char* s) { return Arr(vxCreateString(s)); }
Arr row(std::initializer_list<double> values) {
  Arr a(vxCreateDoubleMatrix(1, values.size(), vxREAL));
  std::copy(values.begin(), values.end(), vxGetPr(a.get()));
  return a;
}
COSInterfacePtr make(const char* cls, const COSInterfacePtr& parent,
                     std::initializer_list<std::pair<const char*, const vxArray*>> pairs = {}) {
  COSInterfacePtr object = sgclasses::create(cls, parent);
  for (const auto& [name, value] : pairs) set(object, name, value);
  return object;
}

// The objects of a tree, parents first, children oldest first, hidden ones
// included.
void walk(const COSInterfacePtr& object, std::vector<COSInterfacePtr>& out) {
  out.push_back(object);
  for (COSInterface* c = object->getOldestChild(); c; c = c->getNewerSibling()) walk(COSInterfacePtr(c), out);
}

// A text that is equal for two trees exactly when their objects have the
// same classes in the same places and the same stored values and modes, and
// their references point at the same places of their own tree.
std::string signature(const COSInterfacePtr& top) {
  std::vector<COSInterfacePtr> objects;
  walk(top, objects);
  auto place = [&](const COSInterface* o) -> std::string {
    for (std::size_t i = 0; i < objects.size(); ++i)
      if (objects[i].get() == o) return std::to_string(i);
    return "outside";
  };
  std::string out;
  for (const COSInterfacePtr& object : objects) {
    out += std::string("\n") + object->getClass()->getName() + ":";
    class Props final : public COSVisitor {
     public:
      bool visitProperty(COSClass*, COSPropInfo* p) override {
        const std::string name = p->getName();
        // A new figure takes a number of its own; the load mark is no value.
        if (p->isTransient() || p->isDependent() || name == "Parent" || name == "Children" || name == "Number" ||
            name == "TopLevelSerializedObject")
          return true;
        if (std::find(names.begin(), names.end(), name) == names.end()) names.push_back(name);
        return true;
      }
      std::vector<std::string> names;
    } props;
    object->getClass()->acceptPropertyVisitor(props);
    // The modes of triples are read through their public faces too.
    for (const std::string& name : props.names) {
      out += " " + name + "=";
      Arr self = obj(object);
      Arr value;
      try {
        value.reset(vxGetProperty(self.get(), 0, name.c_str()));
      } catch (...) {
        out += "?";
        continue;
      }
      if (!value) continue;
      if (vxIsObject(value.get())) {
        for (std::size_t i = 0; i < vxGetNumberOfElements(value.get()); ++i)
          out += place(omGetLiveArrayElement(value.get(), i).get()) + ",";
        continue;
      }
      if (GraphicsFile::holdsObjects(value.get())) {
        out += "objects";
        continue;
      }
      const std::pair<std::string, const vxArray*> entry[] = {{"v", value.get()}};
      // The value's bytes, as a short hash: a mismatch names the property.
      const Bytes bytes = vxSerializeValues(entry);
      std::uint64_t h = 0xcbf29ce484222325ULL;
      for (std::uint8_t b : bytes) h = (h ^ b) * 0x100000001b3ULL;
      out += std::to_string(h % 100000);
    }
  }
  return out;
}

class GraphicsFileTest : public ClassesTest {
 protected:
  // The objects alive now. Deleted objects stay in the list of dirty
  // objects until the next drawnow; they are forgotten first.
  static std::size_t liveCount() {
    sgclasses::forgetDeletedDirtyObjects();
    return vcos::liveObjectCount();
  }
  // A figure with axes (and its title), a context menu used by a line, a
  // group with a line, a text and a patch; manual and auto values, a value
  // set equal to its default, and user data. (Stored defaults are named
  // through the language; the script test save_figures has them.)
  COSInterfacePtr smallFigure() {
    const COSInterfacePtr figure = make(sgclasses::kFigureClass, sgclasses::root());
    const COSInterfacePtr axes = make(sgclasses::kAxesClass, figure);
    Arr title = textArr("Title text");
    set(COSInterfacePtr(omGetArrayElement(get(axes, "Title").get(), 0)), "String", title.get());
    Arr lim = row({0, 5});
    set(axes, "YLim", lim.get());
    const COSInterfacePtr menu = make(sgclasses::kContextMenuClass, figure);
    Arr red = row({1, 0, 0}), menuArr = obj(menu), tag = textArr("first"), x = row({1, 2, 3});
    make(sgclasses::kLineClass, axes, {{"Color", red.get()}, {"UIContextMenu", menuArr.get()}, {"Tag", tag.get()}, {"XData", x.get()}});
    const COSInterfacePtr second = make(sgclasses::kLineClass, axes);
    Arr same = get(second, "Color");
    set(second, "Color", same.get());
    Arr user = textArr("user data");
    set(second, "UserData", user.get());
    const COSInterfacePtr group = make(sgclasses::kGroupClass, axes);
    make(sgclasses::kLineClass, group);
    Arr words = textArr("a label");
    make(sgclasses::kTextClass, axes, {{"String", words.get()}});
    make(sgclasses::kPatchClass, axes);
    return figure;
  }
  static Bytes save(const COSInterfacePtr& figure) {
    Arr value = obj(figure);
    const std::pair<std::string, const vxArray*> entry[] = {{"figure", value.get()}};
    return GraphicsFile::serialize(entry);
  }
  static sgutils::GraphicsLoadOptions options() {
    sgutils::GraphicsLoadOptions o;
    o.parentOfTopLevel = [](const COSInterfacePtr& object) {
      return sgclasses::isOfClass(object.get(), {sgclasses::kFigureClass}) ? sgclasses::root() : COSInterfacePtr();
    };
    return o;
  }
  // The loaded figure, or null.
  static COSInterfacePtr load(std::span<const std::uint8_t> bytes) {
    std::vector<vxNamedValue> values = GraphicsFile::deserialize(bytes, options());
    if (values.size() != 1 || !vxIsObject(values[0].value.get())) return {};
    return omGetArrayElement(values[0].value.get(), 0);
  }
};

TEST_F(GraphicsFileTest, AFigureComesBackEqualAsANewFigureOfTheRoot) {
  const COSInterfacePtr figure = smallFigure();
  const int figures = childCount(sgclasses::root());
  const COSInterfacePtr loaded = load(save(figure));
  ASSERT_TRUE(loaded);
  EXPECT_NE(loaded.get(), figure.get());
  EXPECT_EQ(loaded->getOwnerObject(), sgclasses::root().get());
  EXPECT_EQ(childCount(sgclasses::root()), figures + 1);
  EXPECT_EQ(signature(loaded), signature(figure));
  EXPECT_NE(number(loaded, "Number"), number(figure, "Number"));
  EXPECT_TRUE(SGHandle::fromObject(loaded.get())->getLoadedFromFile());
}

// The saved fields of each object in a file, by table index, read with
// stand-ins for the objects.
std::vector<std::vector<std::string>> savedFieldNames(std::span<const std::uint8_t> bytes) {
  vxReadOptions read;
  read.makeObjects = [](std::span<const vxSavedObjectHead>) {};
  read.makeObjectArray = [](const std::string&, std::span<const vxSize>, std::span<const std::int64_t>) {
    return vxCreateDoubleMatrix(0, 0, vxREAL);
  };
  std::vector<std::vector<std::string>> out;
  for (const vxSavedObject& object : vxDeserializeDocument(bytes, read).objects) {
    out.emplace_back();
    for (const vxNamedValue& field : object.fields) out.back().push_back(field.name);
  }
  return out;
}

bool has(const std::vector<std::string>& names, const char* name) {
  return std::find(names.begin(), names.end(), name) != names.end();
}

// A child's values equal to a new object's are left out of the file; a value
// and its mode go together, so values, modes and the bits of a -0 come back.
TEST_F(GraphicsFileTest, ValuesEqualToANewObjectsAreLeftOutAndStillComeBackExact) {
  const COSInterfacePtr figure = make(sgclasses::kFigureClass, sgclasses::root());
  const COSInterfacePtr axes = make(sgclasses::kAxesClass, figure);
  const COSInterfacePtr plain = make(sgclasses::kLineClass, axes);
  const COSInterfacePtr manual = make(sgclasses::kLineClass, axes);
  Arr same = get(manual, "Color");
  set(manual, "Color", same.get());  // manual, with the value a new line has
  Arr width = row({2});
  const COSInterfacePtr wide = make(sgclasses::kLineClass, axes, {{"LineWidth", width.get()}});
  Arr minusZero = row({-0.0});
  const COSInterfacePtr turned = make(sgclasses::kTextClass, axes, {{"Rotation", minusZero.get()}});
  const std::size_t live = liveCount();
  const Bytes bytes = save(figure);
  EXPECT_EQ(liveCount(), live) << "the objects a save compares with are deleted";

  const std::vector<std::vector<std::string>> fields = savedFieldNames(bytes);
  // Table order: figure, axes, its parts, then the lines and the text.
  auto fieldsOf = [&](std::size_t childIndex) -> const std::vector<std::string>& {
    return fields.at(fields.size() - 4 + childIndex);
  };
  EXPECT_FALSE(has(fieldsOf(0), "Color_I"));
  EXPECT_FALSE(has(fieldsOf(0), "ColorMode"));
  EXPECT_LE(fieldsOf(0).size(), 4u) << "a plain line keeps only values that can hold objects";
  EXPECT_TRUE(has(fieldsOf(1), "Color_I"));
  EXPECT_TRUE(has(fieldsOf(1), "ColorMode"));
  EXPECT_TRUE(has(fieldsOf(2), "LineWidth_I"));
  EXPECT_TRUE(has(fieldsOf(2), "LineWidthMode"));
  EXPECT_FALSE(has(fieldsOf(2), "Color_I"));
  EXPECT_TRUE(has(fieldsOf(3), "Rotation_I")) << "-0 differs from a new text's 0 by its bits";

  const COSInterfacePtr loaded = load(bytes);
  ASSERT_TRUE(loaded);
  EXPECT_EQ(signature(loaded), signature(figure));
  COSInterface* loadedAxes = loaded->getOldestChild();
  ASSERT_TRUE(loadedAxes);
  std::vector<COSInterfacePtr> children;
  for (COSInterface* c = loadedAxes->getOldestChild(); c; c = c->getNewerSibling())
    if (sgclasses::isOfClass(c, {sgclasses::kLineClass, sgclasses::kTextClass})) children.emplace_back(c);
  ASSERT_GE(children.size(), 4u);
  EXPECT_EQ(text(children[children.size() - 4], "ColorMode"), "auto");
  EXPECT_EQ(text(children[children.size() - 3], "ColorMode"), "manual");
  EXPECT_EQ(number(children[children.size() - 2], "LineWidth"), 2);
  EXPECT_EQ(std::signbit(number(turned, "Rotation")), std::signbit(number(children.back(), "Rotation")));
}

TEST_F(GraphicsFileTest, EveryTruncationAndByteChangeLoadsTheSameTreeOrNothing) {
  // A small figure keeps the sweep short: two loads per byte.
  const COSInterfacePtr figure = make(sgclasses::kFigureClass, sgclasses::root());
  const COSInterfacePtr axes = make(sgclasses::kAxesClass, figure);
  Arr red = row({1, 0, 0});
  make(sgclasses::kLineClass, axes, {{"Color", red.get()}});
  const Bytes bytes = save(figure);
  const std::string expected = signature(figure);
  const std::size_t live = liveCount();
  const sgtest::SweepResult r =
      sgtest::sweepDamagedCopies(bytes, live, liveCount, [&](std::span<const std::uint8_t> damaged) {
        const COSInterfacePtr loaded = load(damaged);
        ASSERT_TRUE(loaded);
        EXPECT_EQ(signature(loaded), expected);
        loaded->deleteObject(COSGetPublicClient());
        // The root holds its current figure, the loaded one: point it back.
        sgclasses::makeCurrent(figure);
      });
  EXPECT_EQ(r.refused + r.loadedSame, static_cast<int>(2 * bytes.size()));
  EXPECT_GT(r.refused, 0);
}

// Files whose frame is sound but whose objects do not fit together: the
// reader's checks pass and the loader's refuse, after objects were made.
TEST_F(GraphicsFileTest, ObjectsThatDoNotFitTogetherLoadNothing) {
  // Child lists are written with stand-in lines that the writer maps to
  // table indexes.
  const COSInterfacePtr first = make(sgclasses::kLineClass, {});
  const COSInterfacePtr second = make(sgclasses::kLineClass, {});
  auto listOf = [&](const COSInterfacePtr& element) {
    Arr list(omCreateVCOSMatrix(1, 1, "vantel.graphics.Graphics"));
    omSetArrayElement(list.get(), 0, element);
    return list;
  };
  auto document = [&](std::vector<vxSavedObjectView> objects) {
    vxWriteOptions w;
    w.objectClassName = [](const vxArray* a) { return std::string(vcos::array::classOf(a)->getName()); };
    w.objectIndex = [&](const vxArray* a, std::size_t i) -> std::int64_t {
      return omGetArrayElement(a, i).get() == first.get() ? 0 : 1;
    };
    return vxSerializeDocument({}, objects, w);
  };
  auto entry = [](const char* cls, std::vector<std::pair<std::string, const vxArray*>> fields = {},
                  std::int64_t madeBy = -1, const char* property = "") {
    return vxSavedObjectView{vxSavedObjectHead{cls, madeBy, property}, std::move(fields)};
  };
  std::size_t live = liveCount();
  const std::string loader = "VANTEL:sg:load:";
  // An unknown or abstract class after a good one: the figure made first goes again.
  EXPECT_EQ(errorId([&] { load(document({entry(sgclasses::kFigureClass), entry("no.such.Class")})); }),
            loader + "UnknownClass");
  EXPECT_EQ(liveCount(), live);
  EXPECT_EQ(errorId([&] { load(document({entry("vantel.graphics.Graphics")})); }), loader + "UnknownClass");
  // A root would be a second one: refused, after a figure or as a saved root.
  EXPECT_EQ(errorId([&] { load(document({entry(sgclasses::kFigureClass), entry("vantel.ui.Root")})); }),
            loader + "SecondRoot");
  EXPECT_EQ(liveCount(), live);
  {
    Arr rootArr = obj(sgclasses::root());
    const std::pair<std::string, const vxArray*> values[] = {{"r", rootArr.get()}};
    const Bytes saved = GraphicsFile::serialize(values);
    // (Reading the root's values may make objects it keeps: counted after.)
    const std::size_t withRootParts = liveCount();
    EXPECT_EQ(errorId([&] { load(saved); }), loader + "SecondRoot");
    EXPECT_EQ(liveCount(), withRootParts);
    live = withRootParts;
  }

  // A part that the owner does not make.
  EXPECT_EQ(errorId([&] { load(document({entry(sgclasses::kFigureClass), entry(sgclasses::kTextClass, {}, 0, "Title")})); }),
            loader + "MissingPart");
  EXPECT_EQ(liveCount(), live);
  // An object listed as its own child, and a figure listed under a line,
  // which the line refuses as the classes do.
  Arr self = listOf(first), other = listOf(second);
  EXPECT_EQ(errorId([&] {
              load(document({entry(sgclasses::kFigureClass, {{GraphicsFile::kChildrenField, self.get()}}),
                             entry(sgclasses::kLineClass)}));
            }),
            loader + "BadChildren");
  EXPECT_EQ(liveCount(), live);
  EXPECT_EQ(errorId([&] {
              load(document({entry(sgclasses::kLineClass, {{GraphicsFile::kChildrenField, other.get()}}),
                             entry(sgclasses::kFigureClass)}));
            }),
            loader + "BadContent");
  EXPECT_EQ(liveCount(), live);
  first->deleteObject(COSGetPublicClient());
  second->deleteObject(COSGetPublicClient());
}

// Hooking a loaded figure makes it current; a load that fails after that
// leaves the figure that was current before it current again, and keeps no
// deleted figure's memory through the root's reference.
TEST_F(GraphicsFileTest, AFailedLoadLeavesTheCurrentFigureAsItWas) {
  const COSInterfacePtr current = make(sgclasses::kFigureClass, sgclasses::root());
  const COSInterfacePtr saved = make(sgclasses::kFigureClass, sgclasses::root());
  make(sgclasses::kAxesClass, saved);
  const COSInterfacePtr line = make(sgclasses::kLineClass, {});
  Arr figureArr = obj(saved), lineArr = obj(line);
  const std::pair<std::string, const vxArray*> entries[] = {{"f", figureArr.get()}, {"l", lineArr.get()}};
  const Bytes bytes = GraphicsFile::serialize(entries);
  sgclasses::makeCurrent(current);
  const std::size_t live = liveCount();
  // Every top goes below the root: the figure is hooked (and made current),
  // then the root refuses the line.
  sgutils::GraphicsLoadOptions o;
  o.parentOfTopLevel = [](const COSInterfacePtr&) { return sgclasses::root(); };
  EXPECT_EQ(errorId([&] { GraphicsFile::deserialize(bytes, o); }), "VANTEL:sg:load:BadContent");
  EXPECT_EQ(liveCount(), live);
  const Arr now = get(sgclasses::root(), "CurrentFigure");
  ASSERT_TRUE(vxIsObject(now.get())) << "no current figure after the failed load";
  EXPECT_EQ(omGetArrayElement(now.get(), 0).get(), current.get());
  line->deleteObject(COSGetPublicClient());
}

// A saved value that no longer fits its property is dropped, with a log
// line, and the object's other values load.
TEST_F(GraphicsFileTest, AValueThatNoLongerFitsIsDroppedAndTheOthersLoad) {
  namespace lg = foundation::log;
  Arr bad = textArr("no colour"), tag = textArr("kept");
  const std::vector<vxSavedObjectView> table = {
      {{sgclasses::kLineClass, -1, ""}, {{"Color_I", bad.get()}, {"Tag_I", tag.get()}, {"NoSuchProperty", tag.get()}}}};
  const Bytes bytes = vxSerializeDocument({}, table, {});
  lg::setChannelLevel("graphics::object_serialization", (1u << 2) | (1u << 8) | (1u << 9));
  lg::LogCapture capture;
  sgutils::GraphicsLoadOptions keep;
  // The top is kept by a value of the test: a line saved alone has no parent.
  COSInterfacePtr line;
  keep.parentOfTopLevel = [&](const COSInterfacePtr& object) {
    line = object;
    return COSInterfacePtr();
  };
  GraphicsFile::deserialize(bytes, keep);
  lg::setChannelLevel("graphics::object_serialization", 0);
  ASSERT_TRUE(line);
  EXPECT_EQ(text(line, "Tag"), "kept");
  std::vector<std::string> lines;
  for (const auto& r : capture.records())
    if (r.channel == "graphics::object_serialization") lines.push_back(r.text);
  // The properties are restored first; then the class's load step runs.
  EXPECT_EQ(lines, (std::vector<std::string>{"    Loading property: Color_I", "        Failed datatype conversion",
                                             "    Loading property: Tag_I",
                                             "BaseObjectCOSInfo::customLoad vantel.graphics.primitive.Line",
                                             "    No doloadobj found", "    Calling sgLoadObj"}));
  line->deleteObject(COSGetPublicClient());
}

// The saver reads application data where the object keeps it, without the
// copy of its getter: the file keeps the same values, and the object's own
// data is left as it was (none is made where there was none).
TEST_F(GraphicsFileTest, ApplicationDataIsSavedInItsSavedFormAndLeftUntouched) {
  const COSInterfacePtr figure = make(sgclasses::kFigureClass, sgclasses::root());
  const COSInterfacePtr axes = make(sgclasses::kAxesClass, figure);
  const COSInterfacePtr plain = make(sgclasses::kLineClass, axes);
  const COSInterfacePtr holding = make(sgclasses::kLineClass, axes);
  const char* names[] = {"n", "h"};
  Arr data(vxCreateStructMatrix(1, 1, 2, names));
  vxSetField(data.get(), 0, "n", vxCreateDoubleScalar(4));
  vxArray* old = vxCreateDoubleMatrix(1, 2, vxCOMPLEX);
  for (vxIndex k = 0; k < 2; ++k) vxGetComplexDoubles(old)[k] = {1.0, sgutils::UDDConverter::handleMarker()};
  vxSetField(data.get(), 0, "h", old);
  SGHandle::fromObject(holding.get())->setSerializableApplicationData(data.get());
  const vxArray* stored = SGHandle::fromObject(holding.get())->getApplicationData();

  const Bytes bytes = save(figure);
  EXPECT_EQ(SGHandle::fromObject(holding.get())->getApplicationData(), stored);
  EXPECT_STREQ(vxGetClassName(vxGetField(stored, 0, "h")), "vantel.graphics.GraphicsPlaceholder");
  // An object whose data nobody made gets none made by being saved.
  EXPECT_EQ(SGHandle::fromObject(plain.get())->madeApplicationData(), nullptr);
  EXPECT_EQ(vxGetNumberOfFields(SGHandle::fromObject(plain.get())->getApplicationData()), 0);

  const COSInterfacePtr loaded = load(bytes);
  ASSERT_TRUE(loaded);
  EXPECT_EQ(signature(loaded), signature(figure));
  COSInterface* loadedLine = loaded->getOldestChild()->getNewestChild();
  const vxArray* back = SGHandle::fromObject(loadedLine)->getApplicationData();
  ASSERT_TRUE(vxIsStruct(back));
  EXPECT_EQ(vxGetScalar(vxGetField(back, 0, "n")), 4.0);
  // Placeholders stand for no object: outside every saved tree, so none come back.
  EXPECT_TRUE(vxIsEmpty(vxGetField(back, 0, "h")));
}

// Stored defaults come back through the map each object saved: the top's
// reach its loaded children in the pass after load (a line whose width
// followed no default takes the figure's now), and a leaf's own map, which no
// look-up asked for during the load, is in its store once the load is done.
TEST_F(GraphicsFileTest, StoredDefaultsComeBackThroughTheSavedMaps) {
  const COSInterfacePtr figure = make(sgclasses::kFigureClass, sgclasses::root());
  const COSInterfacePtr axes = make(sgclasses::kAxesClass, figure);
  const COSInterfacePtr line = make(sgclasses::kLineClass, axes);
  Arr width(vxCreateDoubleScalar(4)), size(vxCreateDoubleScalar(20));
  sgutils::DefaultNameAccess::set(figure, "defaultLineLineWidth", width.get());
  sgutils::DefaultNameAccess::set(line, "defaultTextFontSize", size.get());
  ASSERT_EQ(number(line, "LineWidth"), 0.5);

  const COSInterfacePtr loaded = load(save(figure));
  ASSERT_TRUE(loaded);
  COSInterface* loadedLine = loaded->getOldestChild()->getNewestChild();
  ASSERT_STREQ(loadedLine->getClass()->getName(), sgclasses::kLineClass);
  EXPECT_EQ(number(COSInterfacePtr(loadedLine), "LineWidth"), 4.0);
  EXPECT_EQ(text(COSInterfacePtr(loadedLine), "LineWidthMode"), "auto");
  EXPECT_EQ(vxGetScalar(sgutils::DefaultNameAccess::get(loaded, "defaultLineLineWidth").get()), 4.0);
  const vxArray* leafStore = SGHandle::fromObject(loadedLine)->getDefaultProp();
  ASSERT_TRUE(leafStore && vxIsStruct(leafStore));
  EXPECT_EQ(vxGetNumberOfFields(leafStore), 1);
  std::vector<COSInterfacePtr> all;
  walk(loaded, all);
  for (const COSInterfacePtr& object : all) {
    COSInterfacePtr waiting;
    object->findDynamicProperty(waiting, COSID(GraphicsFile::kDefaultsField));
    EXPECT_FALSE(waiting) << object->getClass()->getName() << " still holds its saved map";
  }
}

TEST_F(GraphicsFileTest, ANewerFormatVersionIsRefusedWithItsOwnIdentifier) {
  const COSInterfacePtr figure = make(sgclasses::kFigureClass, sgclasses::root());
  Bytes bytes = save(figure);
  const std::size_t live = liveCount();
  bytes[8] = static_cast<std::uint8_t>(vxSerializeFormatVersion + 1);
  EXPECT_EQ(errorId([&] { load(bytes); }), "VANTEL:vx:serialize:NewerVersion");
  EXPECT_EQ(liveCount(), live);
}

}  // namespace
}  // namespace sgtest::classes
