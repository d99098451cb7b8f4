// findobj of class "handle" by a property value over a large tree, and a
// method called by name through omCallMethod with arrays.
#include <benchmark/benchmark.h>

#include "vcos/BuiltinClasses.h"
#include "vcos/Findobj.h"
#include "vcos/ObjectArray.h"
#include "vcos/ObjectCalls.h"
#include "vcos/vcos.h"
#include "vx/vx.h"

namespace {

struct ItemBlock {
  double size = 0;
  double getSize() const { return size; }
  void setSize(double s) { size = s; }
};

// A plain handle class with a numeric and a text property in the core's
// generic value store, and a numeric property in a C++ block.
class ItemInfo final : public COSClassInfo {
 public:
  const char* getName() const override { return "Item"; }
  void initializeClass(COSClass* c, const COSClient*) override {
    c->addSuperclass(COSID("handle"));
    c->addProperty(new COSPropT(c->getID(), COSID("Value"), COSDataTypePtr("double scalar")));
    c->addProperty(new COSPropT(c->getID(), COSID("Kind"), COSDataTypePtr("asciiString")));
    c->addProperty(new COSPropCPPT<ItemBlock, double>(c->getID(), COSID("Size"), COSDataTypePtr("double scalar"),
                                                      &ItemBlock::getSize, &ItemBlock::setSize));
  }
  bool willAllocateData() const override { return true; }
  void* allocateInstance(COSInterface*) override { return new ItemBlock; }
  void deallocateInstance(COSInterface*, void* data) override { delete static_cast<ItemBlock*>(data); }
};

class BenchNamespace final : public COSNamespaceInfo {
 public:
  const char* getName() const override { return "findbench"; }
};

COSClass* itemClass() {
  static COSClass* cls = [] {
    vcos::registerBuiltinClasses();
    COSPackage::addNamespace(new BenchNamespace)->addClass(new ItemInfo);
    return COSClass::getClass(COSID("findbench.Item"));
  }();
  return cls;
}

// A root with `branches` children, each with `leaves` children; one leaf in
// `every` has Value 1 and Kind "marked", the rest 0 and "plain".
struct Tree {
  COSInterfacePtr root;
  std::size_t size = 0;
  Tree(std::size_t branches, std::size_t leaves, std::size_t every) {
    COSClass* cls = itemClass();
    const COSClient* client = COSGetPublicClient();
    COSPropInfo* value = cls->findProperty(COSID("Value"));
    COSPropInfo* kind = cls->findProperty(COSID("Kind"));
    COSPropInfo* sizeProperty = cls->findProperty(COSID("Size"));
    std::string marked = "marked", plain = "plain";
    auto make = [&](bool mark) {
      COSInterfacePtr o = cls->createInstance(client);
      o->setPropertyValue(client, value, COSValue::fromDouble(mark ? 1.0 : 0.0));
      o->setPropertyValue(client, kind, COSValue(mark ? &marked : &plain));
      o->setPropertyValue(client, sizeProperty, COSValue::fromDouble(mark ? 1.0 : 0.0));
      ++size;
      return o;
    };
    root = make(false);
    for (std::size_t b = 0; b < branches; ++b) {
      COSInterfacePtr branch = make(false);
      root->hookChild(branch);
      for (std::size_t l = 0; l < leaves; ++l) branch->hookChild(make(size % every == 0));
    }
  }
  ~Tree() { root->deleteObject(COSGetPublicClient()); }
};

void findobjByValue(benchmark::State& state, const char* property, vxArray* value) {
  const std::size_t total = static_cast<std::size_t>(state.range(0));
  Tree tree(total / 1000, 999, 1000);
  matrix::unique_vxArray start(omCreateVCOSScalar(tree.root));
  matrix::unique_vxArray name(vxCreateString(property));
  matrix::unique_vxArray wanted(value);
  const vxArray* args[] = {name.get(), wanted.get()};
  std::size_t found = 0;
  for (auto _ : state) {
    matrix::unique_vxArray result(vcos::findobj(start.get(), 2, args));
    found = vxGetNumberOfElements(result.get());
    benchmark::DoNotOptimize(found);
  }
  state.counters["objects"] = static_cast<double>(tree.size);
  state.counters["found"] = static_cast<double>(found);
}

void BM_FindobjByNumber(benchmark::State& state) { findobjByValue(state, "Value", vxCreateDoubleScalar(1)); }
BENCHMARK(BM_FindobjByNumber)->Arg(100000)->Arg(1000000)->Unit(benchmark::kMillisecond);

// The same search on a property kept in a C++ block.
void BM_FindobjByBlockNumber(benchmark::State& state) { findobjByValue(state, "Size", vxCreateDoubleScalar(1)); }
BENCHMARK(BM_FindobjByBlockNumber)->Arg(1000000)->Unit(benchmark::kMillisecond);

void BM_FindobjByText(benchmark::State& state) { findobjByValue(state, "Kind", vxCreateString("MARKED")); }
BENCHMARK(BM_FindobjByText)->Arg(100000)->Arg(1000000)->Unit(benchmark::kMillisecond);

// The walk and a class test alone, no property read: the share of findobj
// itself in the figures above.
void BM_FindobjWalkOnly(benchmark::State& state) { findobjByValue(state, "-class", vxCreateString("findbench.None")); }
BENCHMARK(BM_FindobjWalkOnly)->Arg(1000000)->Unit(benchmark::kMillisecond);

// isvalid of one object, dispatched by name on the array's class.
void BM_CallMethodThroughArrays(benchmark::State& state) {
  COSInterfacePtr item = itemClass()->createInstance(COSGetPublicClient());
  matrix::unique_vxArray self(omCreateVCOSScalar(item));
  const vxArray* in[] = {self.get()};
  const COSID cls("findbench.Item"), method("isvalid");
  for (auto _ : state) {
    vxArray* out[1] = {nullptr};
    omCallMethod(cls, method, COSGetPublicClient(), 1, out, 1, in, true);
    matrix::destroyArray(out[0]);
  }
}
BENCHMARK(BM_CallMethodThroughArrays);

}  // namespace
