// Objects whose class saves a form of its own (its class info's customSave
// answers true): the file keeps the form instead of the object's values, and
// customLoad gets it back; in saved values, inside a graphics tree, shared,
// element by element, and when the class fails either way.
#include <algorithm>
#include <cmath>
#include <cstring>
#include <stdexcept>
#include <string>
#include <vector>

#include <zstd.h>

#include "classes/ClassesTestSupport.h"
#include "support/DamagedFiles.h"
#include "sgclasses/Drawnow.h"
#include "sgutils/persistence/GraphicsFile.h"
#include "support/ErrorId.h"
#include "vcos/COSClass.h"
#include "vcos/COSClassInfo.h"
#include "vcos/COSDataType.h"
#include "vcos/COSNamespaceInfo.h"
#include "vcos/COSObjectOperations.h"
#include "vcos/COSPackage.h"
#include "vcos/COSPropCPPT.h"
#include "vcos/ObjectSerialization.h"
#include "vx/vxSerialize.h"

namespace sgtest::classes {
namespace {

using sgutils::GraphicsFile;
using Bytes = std::vector<std::uint8_t>;

constexpr char kBookmark[] = "sgformtest.Bookmark";
constexpr char kNote[] = "sgformtest.Note";

// How the test classes misbehave, per test.
struct Knobs {
  bool failSave = false;
  bool noForm = false;
  bool notMadeOnLoad = false;
  bool failLoad = false;
} knobs;

// A bookmark: a label, marks and a target (any value, objects too). It saves
// one struct of its own layout, of the data type "struct".
struct BookmarkData {
  std::string label;
  std::vector<double> marks;
  Arr target;
  int loads = 0;
};

BookmarkData& bookmark(const COSInterfacePtr& object) {
  return *static_cast<BookmarkData*>(object->getInstanceData(COSID(kBookmark)));
}

class BookmarkInfo final : public COSClassInfo {
 public:
  const char* getName() const override { return "Bookmark"; }
  void initializeClass(COSClass* cls, const COSClient*) override { cls->addSuperclass(COSID("handle")); }
  void* allocateInstance(COSInterface*) override { return new BookmarkData; }
  void deallocateInstance(COSInterface*, void* data) override { delete static_cast<BookmarkData*>(data); }
  bool isConstructedOnLoad() const override { return !knobs.notMadeOnLoad; }

  bool customSave(COSInterface* object, COSValue& value, COSDataTypePtr& type) override {
    if (knobs.failSave) throw std::runtime_error("the bookmark refuses to be saved");
    if (knobs.noForm) return true;
    const BookmarkData& d = bookmark(COSInterfacePtr(object));
    const char* names[] = {"layout", "label", "marks", "target"};
    vxArray* form = vxCreateStructMatrix(1, 1, 4, names);
    vxSetField(form, 0, "layout", vxCreateDoubleScalar(1));
    vxSetField(form, 0, "label", vxCreateString(d.label.c_str()));
    vxArray* marks = vxCreateDoubleMatrix(1, d.marks.size(), vxREAL);
    if (!d.marks.empty()) std::memcpy(vxGetPr(marks), d.marks.data(), d.marks.size() * sizeof(double));
    vxSetField(form, 0, "marks", marks);
    if (d.target) vxSetField(form, 0, "target", vxCreateSharedDataCopy(d.target.get()));
    value = COSValue(form);
    type = COSDataTypePtr("struct");
    return true;
  }

  void customLoad(COSInterfacePtr& object, COSValue value, COSDataTypePtr type) override {
    if (knobs.failLoad) throw std::runtime_error("the bookmark cannot read its form");
    const vxArray* form = value.asPointer<const vxArray>();
    const vxArray* layout = form && vxIsStruct(form) && vxGetNumberOfElements(form) == 1 ? vxGetField(form, 0, "layout") : nullptr;
    const vxArray* label = layout ? vxGetField(form, 0, "label") : nullptr;
    const vxArray* marks = layout ? vxGetField(form, 0, "marks") : nullptr;
    if (!type || std::strcmp(type->getName(), "struct") != 0 || !layout || !vxIsDouble(layout) ||
        vxGetNumberOfElements(layout) != 1 || vxGetScalar(layout) != 1 || !label || !vxIsChar(label) || !marks ||
        !vxIsDouble(marks) || vxIsComplex(marks))
      throw std::runtime_error("not a bookmark's form");
    BookmarkData& d = bookmark(object);
    d.label = vxArrayToStdString(label);
    d.marks.assign(vxGetPr(marks), vxGetPr(marks) + vxGetNumberOfElements(marks));
    const vxArray* target = vxGetField(form, 0, "target");
    d.target.reset(target ? vxCreateSharedDataCopy(target) : nullptr);
    ++d.loads;
  }
};

// A note: its properties saved element by element (collectElements), and
// loaded back through customizeAndDeserialize.
struct NoteData {
  std::string text = "none";
  double size = 1;
  std::string getText() const { return text; }
  void setText(std::string t) { text = std::move(t); }
  double getSize() const { return size; }
  void setSize(double s) { size = s; }
};

class NoteInfo final : public COSClassInfo {
 public:
  const char* getName() const override { return "Note"; }
  void initializeClass(COSClass* cls, const COSClient*) override {
    const COSID me = cls->getID();
    cls->addSuperclass(COSID("handle"));
    cls->addSuperclass(COSID(object_serialization::CUSTOM_ELEMENT_SERIALIZATION_MIXIN_NAME));
    cls->addProperty(new COSPropCPPT<NoteData, std::string>(me, COSID("Text"), COSDataTypePtr("asciiString"),
                                                            &NoteData::getText, &NoteData::setText));
    cls->addProperty(new COSPropCPPT<NoteData, double>(me, COSID("Size"), COSDataTypePtr("double scalar"),
                                                       &NoteData::getSize, &NoteData::setSize));
  }
  void* allocateInstance(COSInterface*) override { return new NoteData; }
  void deallocateInstance(COSInterface*, void* data) override { delete static_cast<NoteData*>(data); }
  bool isConstructedOnLoad() const override { return true; }
  bool customSave(COSInterface* object, COSValue& value, COSDataTypePtr&) override {
    value = COSValue(object_serialization::collectElements(COSInterfacePtr(object)));
    return true;
  }
  void customLoad(COSInterfacePtr& object, COSValue value, COSDataTypePtr type) override {
    object_serialization::customizeAndDeserialize(object, object->getClass(), value, type);
  }
};

class FormPackage final : public COSNamespaceInfo {
 public:
  const char* getName() const override { return "sgformtest"; }
};

COSInterfacePtr makeObject(const char* cls) {
  return COSClass::getClass(COSID(cls))->createInstance(COSGetPublicClient(), 0, nullptr);
}

COSInterfacePtr makeBookmark(const char* label, std::vector<double> marks) {
  COSInterfacePtr object = makeObject(kBookmark);
  bookmark(object).label = label;
  bookmark(object).marks = std::move(marks);
  return object;
}

void remove(std::initializer_list<COSInterfacePtr> objects) {
  for (const COSInterfacePtr& object : objects)
    if (object && !object->isDestroyed()) object->deleteObject(COSGetPublicClient());
}

// The single element of an object array, or null.
COSInterfacePtr element(const vxArray* value, std::size_t i = 0) {
  return value && vxIsObject(value) && vxGetNumberOfElements(value) > i ? omGetLiveArrayElement(value, i)
                                                                         : COSInterfacePtr();
}

class SavedFormTest : public ClassesTest {
 protected:
  void SetUp() override {
    ClassesTest::SetUp();
    static const bool registered = [] {
      COSPackage* package = COSPackage::addNamespace(new FormPackage);
      package->addClass(new BookmarkInfo);
      package->addClass(new NoteInfo);
      return true;
    }();
    (void)registered;
    knobs = {};
  }
  void TearDown() override {
    knobs = {};
    object_serialization::setElementDeserializer(COSID(kNote), {});
    ClassesTest::TearDown();
  }
  static std::size_t liveCount() {
    sgclasses::forgetDeletedDirtyObjects();
    return vcos::liveObjectCount();
  }
  static sgutils::GraphicsLoadOptions options() {
    sgutils::GraphicsLoadOptions o;
    o.parentOfTopLevel = [](const COSInterfacePtr& object) {
      return sgclasses::isOfClass(object.get(), {sgclasses::kFigureClass}) ? sgclasses::root() : COSInterfacePtr();
    };
    return o;
  }
  using Entries = std::vector<std::pair<std::string, const vxArray*>>;
  static Bytes save(const Entries& entries) { return GraphicsFile::serialize(entries); }
  static std::vector<vxNamedValue> load(const Bytes& bytes) { return GraphicsFile::deserialize(bytes, options()); }
  // A figure with an axes and a line whose user data is a bookmark that
  // targets the line.
  struct MarkedLine {
    COSInterfacePtr figure, line, mark;
  };
  static MarkedLine markedLine(const COSInterfacePtr& parent) {
    MarkedLine m;
    m.figure = sgclasses::create(sgclasses::kFigureClass, parent);
    m.line = sgclasses::create(sgclasses::kLineClass, sgclasses::create(sgclasses::kAxesClass, m.figure));
    m.mark = makeBookmark("marked", {1.5, -0.0, std::nan("")});
    bookmark(m.mark).target = obj(m.line);
    Arr user = obj(m.mark);
    set(m.line, "UserData", user.get());
    return m;
  }
  // The figure's first line (below its axes) and its user data's bookmark.
  static MarkedLine markedLineOf(const COSInterfacePtr& figure) {
    MarkedLine m{figure, {}, {}};
    COSInterface* axes = figure ? figure->getNewestChild() : nullptr;
    for (; axes && !sgclasses::isOfClass(axes, {sgclasses::kAxesClass}); axes = axes->getOlderSibling()) {
    }
    if (!axes) return m;
    for (COSInterface* c = axes->getNewestChild(); c; c = c->getOlderSibling())
      if (sgclasses::isOfClass(c, {sgclasses::kLineClass})) m.line = COSInterfacePtr(c);
    if (m.line) m.mark = element(get(m.line, "UserData").get());
    return m;
  }
};

TEST_F(SavedFormTest, FormsComeBackInValuesAndInsideATreeWithReferencesShared) {
  const MarkedLine saved = markedLine(sgclasses::root());
  // A second bookmark, reached only through the first one's form, targets
  // the first: the references run in a circle.
  const COSInterfacePtr second = makeBookmark("second", {});
  Arr pair(vxCreateCellMatrix(1, 2));
  vxSetCell(pair.get(), 0, obj(saved.line).release());
  vxSetCell(pair.get(), 1, obj(second).release());
  bookmark(saved.mark).target = std::move(pair);
  bookmark(second).target = obj(saved.mark);
  Arr figureValue = obj(saved.figure), markValue = obj(saved.mark);
  const Bytes bytes = save({{"fig", figureValue.get()}, {"mark", markValue.get()}});
  EXPECT_EQ(bytes[8], vxSerializeSavedFormsVersion);

  const std::size_t live = liveCount();
  std::vector<vxNamedValue> values = load(bytes);
  ASSERT_EQ(values.size(), 2u);
  const MarkedLine loaded = markedLineOf(element(values[0].value.get()));
  ASSERT_TRUE(loaded.line);
  ASSERT_TRUE(loaded.mark);
  // The line's user data and the saved value are one bookmark, the line's.
  EXPECT_EQ(loaded.mark, element(values[1].value.get()));
  EXPECT_NE(loaded.mark, saved.mark);
  const BookmarkData& mark = bookmark(loaded.mark);
  EXPECT_EQ(mark.loads, 1);
  EXPECT_EQ(mark.label, "marked");
  ASSERT_EQ(mark.marks.size(), 3u);
  EXPECT_EQ(mark.marks[0], 1.5);
  EXPECT_TRUE(std::signbit(mark.marks[1]));
  EXPECT_TRUE(std::isnan(mark.marks[2]));
  ASSERT_TRUE(mark.target && vxIsCell(mark.target.get()));
  EXPECT_EQ(element(vxGetCell(mark.target.get(), 0)), loaded.line);
  const COSInterfacePtr loadedSecond = element(vxGetCell(mark.target.get(), 1));
  ASSERT_TRUE(loadedSecond);
  EXPECT_NE(loadedSecond, second);
  EXPECT_EQ(bookmark(loadedSecond).label, "second");
  EXPECT_EQ(bookmark(loadedSecond).loads, 1);
  EXPECT_EQ(element(bookmark(loadedSecond).target.get()), loaded.mark);
  // The tree was made once, and two bookmarks beside it.
  std::size_t treeObjects = 0;
  std::vector<COSInterface*> pending{loaded.figure.get()};
  while (!pending.empty()) {
    COSInterface* o = pending.back();
    pending.pop_back();
    ++treeObjects;
    for (COSInterface* c = o->getOldestChild(); c; c = c->getNewerSibling()) pending.push_back(c);
  }
  EXPECT_EQ(liveCount(), live + treeObjects + 2);

  // Files without forms keep their older versions.
  const COSInterfacePtr unmarked = sgclasses::create(sgclasses::kFigureClass, sgclasses::root());
  Arr unmarkedValue = obj(unmarked);
  EXPECT_LT(save({{"fig", unmarkedValue.get()}})[8], vxSerializeSavedFormsVersion);
  remove({loaded.figure, loaded.mark, loadedSecond, saved.figure, saved.mark, second, unmarked});
}

TEST_F(SavedFormTest, ElementsSavedByTheClassComeBackThroughItsElementContent) {
  const COSInterfacePtr note = makeObject(kNote);
  Arr words(vxCreateString("hello")), size(vxCreateDoubleScalar(-0.0));
  set(note, "Text", words.get());
  set(note, "Size", size.get());
  Arr value = obj(note);
  const Bytes bytes = save({{"note", value.get()}});

  // Without a deserializer each element goes to its property.
  {
    std::vector<vxNamedValue> values = load(bytes);
    const COSInterfacePtr back = element(values.at(0).value.get());
    ASSERT_TRUE(back);
    EXPECT_EQ(text(back, "Text"), "hello");
    EXPECT_TRUE(std::signbit(number(back, "Size")));
    remove({back});
  }
  // With one, it is handed the elements as saved, in the class's order.
  std::vector<std::string> names;
  object_serialization::setElementDeserializer(
      COSID(kNote), [&](const COSInterfacePtr& object, const object_serialization::ElementBasedContent& content) {
        for (std::size_t i = 0; i < content.size(); ++i) names.emplace_back(content.nameAt(i));
        if (const vxArray* saved = content.getValue("Text"))
          set(object, "Text", Arr(vxCreateString(("read " + vxArrayToStdString(saved)).c_str())).get());
      });
  std::vector<vxNamedValue> values = load(bytes);
  const COSInterfacePtr back = element(values.at(0).value.get());
  ASSERT_TRUE(back);
  EXPECT_EQ(names, (std::vector<std::string>{"Text", "Size"}));
  EXPECT_EQ(text(back, "Text"), "read hello");
  EXPECT_EQ(number(back, "Size"), 1);  // not taken by the deserializer
  remove({back, note});
}

TEST_F(SavedFormTest, AFailedCustomSaveSavesNothingAndNamesTheClass) {
  const MarkedLine saved = markedLine(sgclasses::root());
  Arr figureValue = obj(saved.figure);
  const std::size_t live = liveCount();
  const auto attempt = [&] { save({{"fig", figureValue.get()}}); };
  knobs.failSave = true;
  EXPECT_EQ(errorId(attempt), "VANTEL:sg:save:CustomSaveFailed");
  knobs = {};
  knobs.noForm = true;
  EXPECT_EQ(errorId(attempt), "VANTEL:sg:save:NoSavedForm");
  // A form that no reader could make again is refused at once.
  knobs = {};
  knobs.notMadeOnLoad = true;
  EXPECT_EQ(errorId(attempt), "VANTEL:sg:save:NotConstructedOnLoad");
  EXPECT_EQ(liveCount(), live);
  remove({saved.figure, saved.mark});
}

TEST_F(SavedFormTest, AFailedCustomLoadLoadsNothing) {
  const MarkedLine saved = markedLine(sgclasses::root());
  Arr figureValue = obj(saved.figure);
  const Bytes bytes = save({{"fig", figureValue.get()}});
  const std::size_t live = liveCount();
  const COSInterfacePtr current = element(get(sgclasses::root(), "CurrentFigure").get());
  knobs.failLoad = true;
  EXPECT_EQ(errorId([&] { load(bytes); }), "VANTEL:sg:load:CustomLoadFailed");
  knobs = {};
  knobs.notMadeOnLoad = true;
  EXPECT_EQ(errorId([&] { load(bytes); }), "VANTEL:sg:load:NotConstructedOnLoad");
  EXPECT_EQ(liveCount(), live);
  EXPECT_EQ(element(get(sgclasses::root(), "CurrentFigure").get()), current);
  remove({saved.figure, saved.mark});
}

TEST_F(SavedFormTest, EveryTruncationAndByteChangeLoadsTheSameFormOrNothing) {
  const MarkedLine saved = markedLine(sgclasses::root());
  Arr figureValue = obj(saved.figure);
  const Bytes bytes = save({{"fig", figureValue.get()}});
  const std::size_t live = liveCount();
  const sgtest::SweepResult r =
      sgtest::sweepDamagedCopies(bytes, live, liveCount, [&](std::span<const std::uint8_t> damaged) {
        std::vector<vxNamedValue> values = load(Bytes(damaged.begin(), damaged.end()));
        const MarkedLine loaded = markedLineOf(values.size() == 1 ? element(values[0].value.get()) : COSInterfacePtr());
        ASSERT_TRUE(loaded.mark);
        EXPECT_EQ(bookmark(loaded.mark).label, "marked");
        EXPECT_EQ(bookmark(loaded.mark).marks.size(), 3u);
        EXPECT_EQ(element(bookmark(loaded.mark).target.get()), loaded.line);
        remove({loaded.figure, loaded.mark});
        sgclasses::makeCurrent(saved.figure);
      });
  EXPECT_EQ(r.loadedSame + r.refused, static_cast<int>(2 * bytes.size()));
  EXPECT_GT(r.refused, 0);
  remove({saved.figure, saved.mark});
}

// The same below the checksum: each byte of the saved form in the unpacked
// body changed and framed again, so that the reader's, the loader's and the
// class's own checks meet it. A change may load other values; a refusal
// leaves no object behind.
TEST_F(SavedFormTest, ABodyChangedBelowTheChecksumLoadsOrLeavesNothing) {
  const MarkedLine saved = markedLine(sgclasses::root());
  Arr figureValue = obj(saved.figure);
  const Bytes bytes = save({{"fig", figureValue.get()}});
  const auto le = [&](std::size_t at) {
    std::uint64_t v = 0;
    for (int i = 7; i >= 0; --i) v = (v << 8) | bytes[at + static_cast<std::size_t>(i)];
    return v;
  };
  Bytes body(le(24));
  if (bytes[12] & 1)
    ASSERT_EQ(ZSTD_decompress(body.data(), body.size(), bytes.data() + 40, bytes.size() - 40), body.size());
  else
    body.assign(bytes.begin() + 40, bytes.end());
  // The header kept (magic, version), the body stored uncompressed.
  const auto frame = [&](const Bytes& raw) {
    Bytes out(bytes.begin(), bytes.begin() + 40);
    std::uint64_t h = 0xcbf29ce484222325ULL;
    for (std::uint8_t b : raw) h = (h ^ b) * 0x100000001b3ULL;
    const auto put = [&](std::size_t at, std::uint64_t v, int n) {
      for (int i = 0; i < n; ++i) out[at + static_cast<std::size_t>(i)] = static_cast<std::uint8_t>(v >> (8 * i));
    };
    put(12, 0, 4);  // flags: not compressed
    put(16, raw.size(), 8);
    put(24, raw.size(), 8);
    put(32, h, 8);
    out.insert(out.end(), raw.begin(), raw.end());
    return out;
  };
  // The unchanged body loads.
  {
    std::vector<vxNamedValue> values = load(frame(body));
    const MarkedLine loaded = markedLineOf(element(values.at(0).value.get()));
    ASSERT_TRUE(loaded.mark);
    remove({loaded.figure, loaded.mark});
    sgclasses::makeCurrent(saved.figure);
  }
  const std::size_t live = liveCount();
  // From the line's reference to the bookmark on: the forms follow the
  // records. (Damage to the tree itself, which may load a different tree,
  // is the graphics file's replay test's.)
  Bytes className{0xb3};  // a text of 19 bytes
  className.insert(className.end(), kBookmark, kBookmark + std::strlen(kBookmark));
  const auto first = std::search(body.begin(), body.end(), className.begin(), className.end());
  ASSERT_NE(first, body.end());
  const auto from = static_cast<std::size_t>(first - body.begin()) - 4;
  int loaded = 0, refused = 0;
  for (std::size_t i = from; i < body.size(); ++i) {
    Bytes damaged = body;
    damaged[i] ^= 0x5a;
    try {
      {
      std::vector<vxNamedValue> values = load(frame(damaged));
      // Whatever loaded goes again: the figures under the root, the
      // bookmarks with their last holders.
      std::vector<COSInterfacePtr> made;
      for (COSInterface* c = sgclasses::root()->getNewestChild(); c; c = c->getOlderSibling())
        if (c != saved.figure.get()) made.emplace_back(c);
      for (const vxNamedValue& v : values)
        if (COSInterfacePtr o = element(v.value.get()); o && o->getClass() == COSClass::getClass(COSID(kBookmark)))
          made.push_back(o);
      for (const COSInterfacePtr& f : made) {
        const MarkedLine loaded = markedLineOf(f);
        remove({loaded.mark, f});
      }
      sgclasses::makeCurrent(saved.figure);
      }
      ASSERT_EQ(liveCount(), live) << "byte " << i << " loaded";
      ++loaded;
    } catch (const foundation::core::except::IMsgIDException& e) {
      const std::string id = e.identifier();
      EXPECT_TRUE(sgtest::isLoaderRefusal(id)) << id;
      ASSERT_EQ(liveCount(), live) << "byte " << i << " refused with " << id << ": " << e.what();
      ++refused;
    }
  }
  // Bytes of the label load as another label; most others are refused.
  EXPECT_GT(loaded, 0);
  EXPECT_GT(refused, loaded);
  remove({saved.figure, saved.mark});
}

}  // namespace
}  // namespace sgtest::classes
