// The set and get paths of moded properties: a public set of Selected (the
// mode turning manual, the custom set path of the metaclass, the dirty mark
// through doPostSet), a write of Selected_I, a public get, and the same for
// a colour triple held by value. The direct calls of the property infos
// show how much of a set is the class system's own path.
#include <benchmark/benchmark.h>

#include "sgdatatypes/RGBAColor.h"
#include "sgutils/objects/EdgeColorTriple.gen.h"
#include "sgutils/objects/Selectable.gen.h"
#include "sgutils/propinfos/PropertyDefinition.h"
#include "sgutils/sgutils.h"
#include "vcos/ObjectArray.h"
#include "vcos/vcos.h"
#include "vx/vx.h"

namespace {

using graphics::datatype::AutoManual;
using graphics::datatype::RGBAColor;

const COSID& graphicsId() {
  static const COSID id("vantel.graphics.Graphics");
  return id;
}

// A graphics class written by hand in the generated pattern: a colour triple
// EdgeColor on its own block, and Selectable as a mixin. doPostSet counts.
struct BenchHandle : SGHandle {
  void doPostSet(COSInterface*, COSPropInfo*, DirtyFlags) override { ++marks; }
  void doPostSet(COSInterface*, COSPropInfo*, bool, bool) override { ++marks; }
  RGBAColor edgeColor;
  unsigned char edgeColorMode = 0;
  long marks = 0;
};

class BenchInfo final : public BaseObjectCOSInfo, public SGHandleBlockFactory {
 public:
  const char* getName() const override { return "TestStubPropertyDefinition"; }
  void initializeClass(COSClass* cls, const COSClient*) override {
    setClient(cls);
    const COSID me = cls->getID();
    cls->addSuperclass(graphicsId(), true, 0, 1);
    cls->addSuperclass(graphics::mixin::Selectable::classID(), false, 0, 1);
    sgtest::addEdgeColorTriple<BenchHandle>(cls);
    cls->addMethod(new ObjectCtorMI<BenchHandle, sgutils::PublicConstructorAccess>(me, COSID(getName())));
  }
  SGHandle* createHandleBlock() const override { return new BenchHandle; }
  void* allocateInstance(COSInterface* i) override { return i->getInstanceData(graphicsId()); }
  void deallocateInstance(COSInterface*, void*) override {}
};

struct Fixture {
  COSInterfacePtr object;
  const COSClient* client = COSGetPublicClient();
  COSPropInfo* selected;
  COSPropInfo* selectedMode;
  COSPropInfo* selectedI;
  COSPropInfo* edgeColor;
  COSPropInfo* edgeColorI;

  Fixture() {
    static const bool registered = [] {
      VLInitialize_sgutils();
      sgutils::getNamespace()->addClass(new BenchInfo, 0, 2);
      return true;
    }();
    (void)registered;
    matrix::unique_vxArray made(
        omConstructObjectWithClient("sg2utils.TestStubPropertyDefinition", 0, nullptr, COSGetPublicClient()));
    object = omGetArrayElement(made.get(), 0);
    COSClass* cls = object->getClass();
    selected = cls->findPropertyExact(COSID("Selected"));
    selectedMode = cls->findPropertyExact(COSID("SelectedMode"));
    selectedI = cls->findPropertyExact(COSID("Selected_I"));
    edgeColor = cls->findPropertyExact(COSID("EdgeColor"));
    edgeColorI = cls->findPropertyExact(COSID("EdgeColor_I"));
  }
  ~Fixture() { object->deleteObject(client); }
  long marks() const { return static_cast<BenchHandle*>(SGHandle::fromObject(object.get()))->marks; }
};

void reportMarks(benchmark::State& state, const Fixture& f) {
  state.counters["marks/iter"] = benchmark::Counter(static_cast<double>(f.marks()) / static_cast<double>(state.iterations()));
}

// The user's set: mode to manual (already manual after the first), custom
// set path, the value through Selected_I, a dirty mark on every change.
void BM_PublicSetSelected(benchmark::State& state) {
  Fixture f;
  bool v = false;
  for (auto _ : state) {
    v = !v;
    f.object->setPropertyValue(f.client, f.selected, COSValue::fromBool(v));
  }
  reportMarks(state, f);
}
BENCHMARK(BM_PublicSetSelected);

// As above, with the mode handed back to auto before each set, so every set
// really flips the mode (two sets per iteration, the second marking too).
void BM_PublicSetSelectedFromAuto(benchmark::State& state) {
  Fixture f;
  const COSValue autoWord(graphics::datatype::canonicalEnumerationByte(0));
  bool v = false;
  for (auto _ : state) {
    v = !v;
    f.object->setPropertyValue(f.client, f.selectedMode, autoWord);
    f.object->setPropertyValue(f.client, f.selected, COSValue::fromBool(v));
  }
  reportMarks(state, f);
}
BENCHMARK(BM_PublicSetSelectedFromAuto);

// What the library and defaults write: the internal face, the mode untouched.
void BM_InternalWriteSelected_I(benchmark::State& state) {
  Fixture f;
  bool v = false;
  for (auto _ : state) {
    v = !v;
    f.object->setPropertyValue(f.client, f.selectedI, COSValue::fromBool(v));
  }
  reportMarks(state, f);
}
BENCHMARK(BM_InternalWriteSelected_I);

void BM_PublicGetSelected(benchmark::State& state) {
  Fixture f;
  for (auto _ : state) {
    const COSValue v = f.object->getPropertyValue(f.client, f.selected);
    benchmark::DoNotOptimize(v);
    f.object->releasePropertyValue(f.client, f.selected, v);
  }
}
BENCHMARK(BM_PublicGetSelected);

// A colour triple: the same path with a colour held by value in the block.
void BM_PublicSetColor(benchmark::State& state) {
  Fixture f;
  const RGBAColor colors[2] = {RGBAColor(1, 0, 0), RGBAColor(0, 0, 1)};
  int i = 0;
  for (auto _ : state) {
    i ^= 1;
    f.object->setPropertyValue(f.client, f.edgeColor, COSValue(&colors[i]));
  }
  reportMarks(state, f);
}
BENCHMARK(BM_PublicSetColor);

void BM_PublicGetColor(benchmark::State& state) {
  Fixture f;
  for (auto _ : state) {
    const COSValue v = f.object->getPropertyValue(f.client, f.edgeColor);
    benchmark::DoNotOptimize(v);
    f.object->releasePropertyValue(f.client, f.edgeColor, v);
  }
}
BENCHMARK(BM_PublicGetColor);

// The property info alone, without the client path: the store into
// Selected_I with its comparison and doPostSet.
void BM_DirectSetValueSelected_I(benchmark::State& state) {
  Fixture f;
  bool v = false;
  for (auto _ : state) {
    v = !v;
    f.selectedI->setValue(f.object.get(), COSValue::fromBool(v));
  }
}
BENCHMARK(BM_DirectSetValueSelected_I);

// The mode flip alone: setModeManual writes SelectedMode through the client
// path as the public client.
void BM_SetModeManualSelected(benchmark::State& state) {
  Fixture f;
  auto* base = dynamic_cast<sgutils::PropInfoBase*>(f.selected);
  for (auto _ : state) base->setModeManual(f.object.get());
}
BENCHMARK(BM_SetModeManualSelected);

}  // namespace
