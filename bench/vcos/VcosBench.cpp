// Hot paths of the class-object system: public get and set of a plain
// property through the client path, property look-up by id and by name, a
// method call by name, and creating and deleting an object. Each benchmark
// reports "allocs" per iteration, counted by the replacement of the global
// allocation functions below (this executable only).
#include <benchmark/benchmark.h>

#include <cstdlib>
#include <new>

#include "vcos/vcos.h"

namespace {

std::size_t allocationCount = 0;

void* countedAllocate(std::size_t bytes) {
  ++allocationCount;
  if (void* p = std::malloc(bytes ? bytes : 1)) return p;
  throw std::bad_alloc();
}

}  // namespace

void* operator new(std::size_t bytes) { return countedAllocate(bytes); }
void* operator new[](std::size_t bytes) { return countedAllocate(bytes); }
void operator delete(void* p) noexcept { std::free(p); }
void operator delete[](void* p) noexcept { std::free(p); }
void operator delete(void* p, std::size_t) noexcept { std::free(p); }
void operator delete[](void* p, std::size_t) noexcept { std::free(p); }

namespace {

struct Widget {
  bool enabled = false;
  double size = 1.0;
  bool getEnabled() const { return enabled; }
  void setEnabled(bool e) { enabled = e; }
  double getSize() const { return size; }
  void setSize(double s) { size = s; }
};

class ToggleMethod final : public COSMethodBase {
 public:
  explicit ToggleMethod(COSID cls) : COSMethodBase(cls, COSID("toggle"), PublicAccess, "") {}
  void invoke(const COSClient*, int& nlhs, COSValue*, int, const COSValue* prhs) const override {
    auto* w = static_cast<Widget*>(prhs[0].asPointer<COSInterface>()->getInstanceData(COSID("bench.Widget")));
    w->enabled = !w->enabled;
    nlhs = 0;
  }
};

class WidgetInfo final : public COSClassInfo {
 public:
  const char* getName() const override { return "Widget"; }
  void initializeClass(COSClass* c, const COSClient*) override {
    c->addProperty(new COSPropCPPT<Widget, bool>(c->getID(), COSID("Enabled"), COSDataTypePtr("logical scalar"),
                                                 &Widget::getEnabled, &Widget::setEnabled));
    c->addProperty(new COSPropCPPT<Widget, double>(c->getID(), COSID("Size"), COSDataTypePtr("double scalar"),
                                                   &Widget::getSize, &Widget::setSize));
    for (const char* name : {"Alpha", "Beta", "Gamma", "Delta", "Epsilon", "Zeta", "Eta", "Theta"})
      c->addProperty(new COSPropT(c->getID(), COSID(name), COSDataTypePtr("double scalar")));
    c->addMethod(new ToggleMethod(c->getID()));
  }
  void* allocateInstance(COSInterface*) override { return new Widget; }
  void deallocateInstance(COSInterface*, void* data) override { delete static_cast<Widget*>(data); }
};

class BenchNamespace final : public COSNamespaceInfo {
 public:
  const char* getName() const override { return "bench"; }
};

COSClass* widgetClass() {
  static COSClass* cls = [] {
    COSPackage::addNamespace(new BenchNamespace)->addClass(new WidgetInfo);
    return COSClass::getClass(COSID("bench.Widget"));
  }();
  return cls;
}

void reportAllocations(benchmark::State& state, std::size_t before) {
  state.counters["allocs"] =
      benchmark::Counter(static_cast<double>(allocationCount - before), benchmark::Counter::kAvgIterations);
}

void BM_SetBoolProperty(benchmark::State& state) {
  COSInterfacePtr o = widgetClass()->createInstance(COSGetPublicClient());
  COSPropInfo* p = o->findPropertyInfo(COSID("Enabled"));
  const COSClient* client = COSGetPublicClient();
  bool v = false;
  std::size_t before = allocationCount;
  for (auto _ : state) {
    o->setPropertyValue(client, p, COSValue::fromBool(v));
    v = !v;
  }
  reportAllocations(state, before);
}
BENCHMARK(BM_SetBoolProperty);

void BM_GetBoolProperty(benchmark::State& state) {
  COSInterfacePtr o = widgetClass()->createInstance(COSGetPublicClient());
  COSPropInfo* p = o->findPropertyInfo(COSID("Enabled"));
  const COSClient* client = COSGetPublicClient();
  std::size_t before = allocationCount;
  for (auto _ : state) {
    COSValue v = o->getPropertyValue(client, p);
    benchmark::DoNotOptimize(v);
    o->releasePropertyValue(client, p, v);
  }
  reportAllocations(state, before);
}
BENCHMARK(BM_GetBoolProperty);

void BM_SetDoubleProperty(benchmark::State& state) {
  COSInterfacePtr o = widgetClass()->createInstance(COSGetPublicClient());
  COSPropInfo* p = o->findPropertyInfo(COSID("Size"));
  const COSClient* client = COSGetPublicClient();
  double d = 0;
  std::size_t before = allocationCount;
  for (auto _ : state) o->setPropertyValue(client, p, COSValue::fromDouble(d += 1));
  reportAllocations(state, before);
}
BENCHMARK(BM_SetDoubleProperty);

void BM_FindPropertyById(benchmark::State& state) {
  COSInterfacePtr o = widgetClass()->createInstance(COSGetPublicClient());
  COSID id("Theta");
  std::size_t before = allocationCount;
  for (auto _ : state) benchmark::DoNotOptimize(o->findPropertyInfo(id));
  reportAllocations(state, before);
}
BENCHMARK(BM_FindPropertyById);

void BM_FindPropertyByCaseInsensitiveId(benchmark::State& state) {
  COSInterfacePtr o = widgetClass()->createInstance(COSGetPublicClient());
  COSID id("theta");
  std::size_t before = allocationCount;
  for (auto _ : state) benchmark::DoNotOptimize(o->findPropertyInfo(id));
  reportAllocations(state, before);
}
BENCHMARK(BM_FindPropertyByCaseInsensitiveId);

// From a name string: interning (hash, lock) then the look-up.
void BM_FindPropertyByName(benchmark::State& state) {
  COSInterfacePtr o = widgetClass()->createInstance(COSGetPublicClient());
  const char* name = "Theta";
  std::size_t before = allocationCount;
  for (auto _ : state) benchmark::DoNotOptimize(o->findPropertyInfo(COSID(name)));
  reportAllocations(state, before);
}
BENCHMARK(BM_FindPropertyByName);

void BM_CallMethodByName(benchmark::State& state) {
  COSClass* cls = widgetClass();
  COSInterfacePtr o = cls->createInstance(COSGetPublicClient());
  COSID toggle("toggle");
  COSValue in(o.get());
  std::size_t before = allocationCount;
  for (auto _ : state) {
    int nlhs = 0;
    vcos::internal::callMethod(cls, toggle, COSGetPublicClient(), nlhs, nullptr, 1, &in);
  }
  reportAllocations(state, before);
}
BENCHMARK(BM_CallMethodByName);

void BM_CreateAndDeleteObject(benchmark::State& state) {
  COSClass* cls = widgetClass();
  std::size_t before = allocationCount;
  for (auto _ : state) {
    COSInterfacePtr o = cls->createInstance(COSGetPublicClient());
    o->deleteObject(COSGetPublicClient());
  }
  reportAllocations(state, before);
}
BENCHMARK(BM_CreateAndDeleteObject);

}  // namespace
