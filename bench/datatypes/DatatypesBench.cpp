// Data types: colour conversion from what users type (a 1-by-3 double row, a
// colour name), directly and through the type repository as a property set
// does it, and the number-to-object look-up of numeric handles.
#include <benchmark/benchmark.h>

#include <vector>

#include "sgdatatypes/sgdatatypes.h"
#include "vcos/vcos.h"
#include "vx/vx.h"

namespace {

using namespace graphics::datatype;

class BenchNamespace final : public COSNamespaceInfo {
 public:
  const char* getName() const override { return "dtbench"; }
};
class ThingInfo final : public COSClassInfo {
 public:
  const char* getName() const override { return "Thing"; }
};

void setUp() {
  static bool done = [] {
    VLInitialize_sgdatatypes();
    COSPackage::addNamespace(new BenchNamespace)->addClass(new ThingInfo);
    return true;
  }();
  (void)done;
}

matrix::unique_vxArray rgbRow() {
  vxArray* a = vxCreateDoubleMatrix(1, 3, vxREAL);
  double* p = vxGetPr(a);
  p[0] = 0.1, p[1] = 0.5, p[2] = 0.9;
  return matrix::unique_vxArray(a);
}

void BM_ColorFromDoubleRow(benchmark::State& state) {
  auto row = rgbRow();
  for (auto _ : state) benchmark::DoNotOptimize(RGBAColor::fromArray(row.get()));
}
BENCHMARK(BM_ColorFromDoubleRow);

void BM_ColorFromName(benchmark::State& state) {
  matrix::unique_vxArray name(vxCreateString("magenta"));
  for (auto _ : state) benchmark::DoNotOptimize(RGBAColor::fromArray(name.get()));
}
BENCHMARK(BM_ColorFromName);

void BM_ColorFromHex(benchmark::State& state) {
  matrix::unique_vxArray hex(vxCreateString("#0072BD"));
  for (auto _ : state) benchmark::DoNotOptimize(RGBAColor::fromArray(hex.get()));
}
BENCHMARK(BM_ColorFromHex);

// The path of a property set: find the conversion once, convert, free the value.
void BM_ColorConversionFromDoubleRow(benchmark::State& state) {
  setUp();
  COSTypeConversion* c = COSTypeRepository::getConversion(COSID("any"), COSID(kRGBAColorType));
  COSDataTypePtr type(kRGBAColorType);
  auto row = rgbRow();
  for (auto _ : state) {
    COSValue v = c->convert(COSValue(row.get()));
    benchmark::DoNotOptimize(v);
    type->destroy(v);
  }
}
BENCHMARK(BM_ColorConversionFromDoubleRow);

void BM_ColorConversionFromName(benchmark::State& state) {
  setUp();
  COSTypeConversion* c = COSTypeRepository::getConversion(COSID("any"), COSID(kRGBAColorType));
  COSDataTypePtr type(kRGBAColorType);
  matrix::unique_vxArray name(vxCreateString("magenta"));
  for (auto _ : state) {
    COSValue v = c->convert(COSValue(name.get()));
    benchmark::DoNotOptimize(v);
    type->destroy(v);
  }
}
BENCHMARK(BM_ColorConversionFromName);

// Look-up of a number in a table of state.range(0) objects.
void BM_NumberToObject(benchmark::State& state) {
  setUp();
  HandleNumberTable::clear();
  COSClass* cls = COSClass::getClass(COSID("dtbench.Thing"));
  std::vector<COSInterfacePtr> objects;
  std::vector<double> numbers;
  for (int i = 0; i < state.range(0); ++i) {
    objects.push_back(cls->createInstance(COSGetPublicClient()));
    numbers.push_back(HandleNumberTable::numberFor(objects.back().get()));
  }
  std::size_t i = 0;
  for (auto _ : state) {
    benchmark::DoNotOptimize(HandleNumberTable::objectFor(numbers[i]));
    if (++i == numbers.size()) i = 0;
  }
  HandleNumberTable::clear();
}
BENCHMARK(BM_NumberToObject)->Arg(100)->Arg(100000);

// The same through the repository's "double" to object conversion.
void BM_NumberToObjectConversion(benchmark::State& state) {
  setUp();
  HandleNumberTable::clear();
  COSClass* cls = COSClass::getClass(COSID("dtbench.Thing"));
  COSInterfacePtr object = cls->createInstance(COSGetPublicClient());
  const double n = HandleNumberTable::numberFor(object.get());
  COSTypeConversion* c = COSTypeRepository::getConversion(COSID("double"), COSID(kCOSInterfaceType));
  COSDataTypePtr type(kCOSInterfaceType);
  for (auto _ : state) {
    COSValue v = c->convert(COSValue::fromDouble(n));
    benchmark::DoNotOptimize(v);
    type->destroy(v);
  }
  HandleNumberTable::clear();
}
BENCHMARK(BM_NumberToObjectConversion);

void BM_ObjectToKnownNumber(benchmark::State& state) {
  setUp();
  HandleNumberTable::clear();
  COSInterfacePtr object = COSClass::getClass(COSID("dtbench.Thing"))->createInstance(COSGetPublicClient());
  HandleNumberTable::numberFor(object.get());
  for (auto _ : state) benchmark::DoNotOptimize(HandleNumberTable::numberFor(object.get()));
  HandleNumberTable::clear();
}
BENCHMARK(BM_ObjectToKnownNumber);

}  // namespace
