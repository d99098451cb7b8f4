// Construction and deletion of a graphics object through the constructor
// method (Java check, Setup, name-value input, CreationComplete, the
// "InstanceCreated" event), and the per-object reset.
#include <benchmark/benchmark.h>

#include "sgutils/sgutils.h"
#include "vcos/vcos.h"
#include "vx/vx.h"

namespace {

// A concrete graphics class as a library above would write it, with two
// properties kept in its block.
struct BenchObject : SGHandle {
  double width = 1.0;
  bool visible = true;
};

BenchObject& block(COSInterface* o) { return *static_cast<BenchObject*>(SGHandle::fromObject(o)); }

class WidthPI final : public COSPropT {
 public:
  explicit WidthPI(COSID cls) : COSPropT(cls, COSID("Width"), COSDataTypePtr("double scalar"), COSValue::fromDouble(1)) {}
  COSValue getValue(COSInterface* o) const override { return COSValue::fromDouble(block(o).width); }
  void setValue(COSInterface* o, COSValue v) override { block(o).width = v.asDouble(); }
};

class VisiblePI final : public COSPropT {
 public:
  explicit VisiblePI(COSID cls) : COSPropT(cls, COSID("Visible"), COSDataTypePtr("logical scalar"), COSValue::fromBool(true)) {}
  COSValue getValue(COSInterface* o) const override { return COSValue::fromBool(block(o).visible); }
  void setValue(COSInterface* o, COSValue v) override { block(o).visible = v.asBool(); }
};

class BenchInfo final : public BaseObjectCOSInfo, public SGHandleBlockFactory {
 public:
  const char* getName() const override { return "TestPostSetFcn"; }
  void initializeClass(COSClass* cls, const COSClient*) override {
    setClient(cls);
    cls->addSuperclass(COSID("vantel.graphics.Graphics"), true, 0, 1);
    cls->addProperty(new WidthPI(cls->getID()));
    cls->addProperty(new VisiblePI(cls->getID()));
    cls->addMethod(new ObjectCtorMI<BenchObject, sgutils::PublicConstructorAccess>(cls->getID(), COSID(getName())));
  }
  SGHandle* createHandleBlock() const override { return new BenchObject; }
  void* allocateInstance(COSInterface* i) override { return i->getInstanceData(COSID("vantel.graphics.Graphics")); }
  void deallocateInstance(COSInterface*, void*) override {}
};

COSClass* benchClass() {
  static COSClass* cls = [] {
    VLInitialize_sgutils();
    sgutils::getNamespace()->addClass(new BenchInfo, 0, 2);
    return COSClass::getClass(COSID("sg2utils.TestPostSetFcn"));
  }();
  return cls;
}

void BM_ConstructAndDeleteWithPairs(benchmark::State& state) {
  COSClass* cls = benchClass();
  matrix::unique_vxArray width(vxCreateString("Width")), two(vxCreateDoubleScalar(2));
  matrix::unique_vxArray visible(vxCreateString("Visible")), off(vxCreateLogicalScalar(false));
  const COSValue in[] = {COSValue(width.get()), COSValue(two.get()), COSValue(visible.get()), COSValue(off.get())};
  for (auto _ : state) {
    COSInterfacePtr o = cls->createInstance(COSGetPublicClient(), 4, in);
    o->deleteObject(COSGetPublicClient());
  }
}
BENCHMARK(BM_ConstructAndDeleteWithPairs);

void BM_ConstructAndDeleteBare(benchmark::State& state) {
  COSClass* cls = benchClass();
  for (auto _ : state) {
    COSInterfacePtr o = cls->createInstance(COSGetPublicClient());
    o->deleteObject(COSGetPublicClient());
  }
}
BENCHMARK(BM_ConstructAndDeleteBare);

void BM_Reset(benchmark::State& state) {
  COSInterfacePtr o = benchClass()->createInstance(COSGetPublicClient());
  for (auto _ : state) SGHandle::Reset(o);
  o->deleteObject(COSGetPublicClient());
}
BENCHMARK(BM_Reset);

}  // namespace
