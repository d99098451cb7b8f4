// Applying defaults to an object under a three-level tree: the walk up the
// owners, the look-up of each store for the object's class, and the sets
// (internal faces, modes last).
#include <benchmark/benchmark.h>

#include "sgdatatypes/Registration.h"
#include "sgutils/defaults/DefaultProp.h"
#include "sgutils/sgutils.h"
#include "vcos/vcos.h"
#include "vx/vx.h"

namespace {

struct Block : SGHandle {
  double width = 1.0;
};

Block& block(COSInterface* o) { return *static_cast<Block*>(SGHandle::fromObject(o)); }

class WidthPI final : public COSPropT {
 public:
  explicit WidthPI(COSID cls) : COSPropT(cls, COSID("Width"), COSDataTypePtr("double scalar"), COSValue::fromDouble(1)) {}
  COSValue getValue(COSInterface* o) const override { return COSValue::fromDouble(block(o).width); }
  void setValue(COSInterface* o, COSValue v) override { block(o).width = v.asDouble(); }
};

// A class under a name that the class-name maps know ("lineshape").
class LineInfo final : public BaseObjectCOSInfo, public SGHandleBlockFactory {
 public:
  const char* getName() const override { return "Line"; }
  void initializeClass(COSClass* cls, const COSClient*) override {
    setClient(cls);
    cls->addSuperclass(COSID("vantel.graphics.Graphics"), true, 0, 1);
    cls->addProperty(new WidthPI(cls->getID()));
    cls->addProperty(new COSPropT(cls->getID(), COSID("Tag"), COSDataTypePtr("asciiString")));
    cls->addMethod(new ObjectCtorMI<Block, sgutils::PublicConstructorAccess>(cls->getID(), COSID(getName())));
  }
  SGHandle* createHandleBlock() const override { return new Block; }
  void* allocateInstance(COSInterface* i) override { return i->getInstanceData(COSID("vantel.graphics.Graphics")); }
  void deallocateInstance(COSInterface*, void*) override {}
};

const char* none() { return ""; }

COSInterfacePtr makeLine() {
  static const bool registered = [] {
    VLInitialize_sgutils();
    graphics::datatype::register_namespace("vantel.graphics.shape", &none, &none)->addClass(new LineInfo, 0, 2);
    return true;
  }();
  (void)registered;
  matrix::unique_vxArray made(omConstructObjectWithClient("vantel.graphics.shape.Line", 0, nullptr, COSGetPublicClient()));
  return omGetArrayElement(made.get(), 0);
}

struct Tree {
  COSInterfacePtr top = makeLine(), middle = makeLine(), leaf = makeLine();
  Tree() {
    top->hookChild(middle.get());
    middle->hookChild(leaf.get());
  }
  ~Tree() { top->deleteObject(COSGetPublicClient()); }
};

void BM_ApplyDefaultsNoStores(benchmark::State& state) {
  Tree t;
  SGHandle* h = SGHandle::fromObject(t.leaf.get());
  for (auto _ : state) h->applyDefaultProperties(t.middle, false);
}
BENCHMARK(BM_ApplyDefaultsNoStores);

// Two defaults of the leaf's class on the top, one on the middle, and two of
// another class in between.
void BM_ApplyDefaultsFromTwoStores(benchmark::State& state) {
  Tree t;
  using sgutils::DefaultProp;
  using sgutils::DefaultPropString;
  matrix::unique_vxArray w(vxCreateDoubleScalar(2)), tag(vxCreateString("t"));
  DefaultProp(t.top).set(DefaultPropString("defaultLineshapeWidth", false), w.get());
  DefaultProp(t.top).set(DefaultPropString("defaultLineshapeTag", false), tag.get());
  DefaultProp(t.middle).set(DefaultPropString("defaultLineshapeWidth", false), w.get());
  SGHandle* h = SGHandle::fromObject(t.leaf.get());
  for (auto _ : state) h->applyDefaultProperties(t.middle, false);
}
BENCHMARK(BM_ApplyDefaultsFromTwoStores);

}  // namespace
