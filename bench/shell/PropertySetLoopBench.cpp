// Property sets and gets from the command language on an object of a class
// with a plain double property, against the same loop with a variable
// assignment, so that the property's own share can be read off.
#include <benchmark/benchmark.h>

#include <string>

#include "sgsh/Interpreter.h"
#include "sgsh/Output.h"
#include "vcos/BuiltinClasses.h"
#include "vcos/COSClassInfo.h"
#include "vcos/COSNamespaceInfo.h"
#include "vcos/COSPackage.h"
#include "vcos/COSPropCPPT.h"
#include "vcos/vcos.h"

namespace {

struct Dial {
  double level = 0;
  double getLevel() const { return level; }
  void setLevel(double v) { level = v; }
};

class DialInfo final : public COSClassInfo {
 public:
  const char* getName() const override { return "Dial"; }
  void initializeClass(COSClass* c, const COSClient*) override {
    c->addSuperclass(COSID("handle"));
    c->addProperty(new COSPropCPPT<Dial, double>(c->getID(), COSID("Level"), COSDataTypePtr("double scalar"),
                                                 &Dial::getLevel, &Dial::setLevel));
  }
  void* allocateInstance(COSInterface*) override { return new Dial; }
  void deallocateInstance(COSInterface*, void* data) override { delete static_cast<Dial*>(data); }
};

class BenchPackage final : public COSNamespaceInfo {
 public:
  const char* getName() const override { return "sgbench"; }
};

void registerDial() {
  static const bool done = [] {
    vcos::registerBuiltinClasses();
    COSPackage::addNamespace(new BenchPackage)->addClass(new DialInfo);
    return true;
  }();
  (void)done;
}

void runLoop(benchmark::State& state, const char* body) {
  registerDial();
  sgsh::OutputCapture quiet([](std::string_view) {});
  const std::string script =
      std::string("dial = sgbench.Dial(); acc = 0; for i = 1:100000\n  ") + body + "\nend\n";
  for (auto _ : state) {
    sgsh::Interpreter interp;
    interp.run(script);
    benchmark::DoNotOptimize(interp.findVariable("acc"));
  }
  state.counters["per_loop_iteration"] =
      benchmark::Counter(1e5 * static_cast<double>(state.iterations()),
                         benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
}

// The loop with a plain variable assignment: what every iteration costs.
void BM_LoopWithVariableAssignment(benchmark::State& state) { runLoop(state, "x = i;"); }
BENCHMARK(BM_LoopWithVariableAssignment)->Unit(benchmark::kMillisecond)->Iterations(5);

// 100,000 property sets `dial.Level = i`.
void BM_PropertySetLoop(benchmark::State& state) { runLoop(state, "dial.Level = i;"); }
BENCHMARK(BM_PropertySetLoop)->Unit(benchmark::kMillisecond)->Iterations(5);

// 100,000 property reads `acc = dial.Level`.
void BM_PropertyGetLoop(benchmark::State& state) { runLoop(state, "acc = dial.Level;"); }
BENCHMARK(BM_PropertyGetLoop)->Unit(benchmark::kMillisecond)->Iterations(5);

}  // namespace
