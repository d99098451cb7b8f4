// The array helpers under the evaluator: ranges with fractional steps,
// indexing shapes, growth and deletion rules, concatenation classes, and
// conversions at their limits.
#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <functional>

#include <foundation/core/except/Error.h>
#include <vx/vx.h>

#include "eval/ArrayOps.h"
#include "eval/Concat.h"
#include "eval/Indexing.h"
#include "eval/Operators.h"

namespace sgsh::ops {
namespace {

Value row(std::vector<double> v) { return doubles({1, v.size()}, v); }
Value col(std::vector<double> v) { return doubles({v.size(), 1}, v); }

std::string idOf(const std::function<void()>& f) {
  try {
    f();
  } catch (const foundation::core::except::IMsgIDException& e) {
    return e.identifier();
  }
  return "none";
}

TEST(ArrayOpsTest, RangesCountFractionalStepsWithoutLosingTheLastElement) {
  EXPECT_EQ(rangeCount(0, 0.1, 1), 11u);
  EXPECT_EQ(rangeCount(1, 0.2, 2), 6u);
  EXPECT_EQ(rangeCount(0, 0.3, 0.9), 4u);
  EXPECT_EQ(rangeCount(5, 1, 1), 0u);
  EXPECT_EQ(rangeCount(5, -2, 1), 3u);
  EXPECT_EQ(rangeCount(1, 0, 5), 0u);
  Value r = range(Value::scalar(0).get(), Value::scalar(0.1).get(), Value::scalar(1).get());
  EXPECT_DOUBLE_EQ(vxGetPr(r.get())[10], 1.0);
}

TEST(ArrayOpsTest, IndexingKeepsTheOrientationOfVectors) {
  Value r = row({10, 20, 30, 40});
  Value c = col({10, 20, 30, 40});
  Value idx = col({1, 3});
  EXPECT_EQ(dimsOf(indexGet(r.get(), std::vector<Value>{idx}).get()), (Dims{1, 2}));
  EXPECT_EQ(dimsOf(indexGet(c.get(), std::vector<Value>{row({1, 3})}).get()), (Dims{2, 1}));
  // A matrix indexed by a matrix takes the index's shape.
  Value m = doubles({2, 2}, {1, 2, 3, 4});
  Value im = doubles({2, 2}, {4, 3, 2, 1});
  Value got = indexGet(m.get(), std::vector<Value>{im});
  EXPECT_EQ(dimsOf(got.get()), (Dims{2, 2}));
  EXPECT_EQ(vxGetPr(got.get())[0], 4);
  // ':' gives a column of everything.
  EXPECT_EQ(dimsOf(indexGet(r.get(), std::vector<Value>{Value::text(":")}).get()), (Dims{4, 1}));
  EXPECT_EQ(idOf([&] { indexGet(r.get(), std::vector<Value>{Value::scalar(5)}); }), "VANTEL:sgsh:IndexOutOfBounds");
  EXPECT_EQ(idOf([&] { indexGet(r.get(), std::vector<Value>{Value::scalar(-1)}); }), "VANTEL:sgsh:BadIndex");
}

TEST(ArrayOpsTest, AssignmentGrowsAlongVectorsAndPadsMatrices) {
  Value r = indexAssign(row({1, 2}), std::vector<Value>{Value::scalar(4)}, Value::scalar(9).get());
  EXPECT_EQ(dimsOf(r.get()), (Dims{1, 4}));
  EXPECT_EQ(vxGetPr(r.get())[2], 0);
  Value c = indexAssign(col({1, 2}), std::vector<Value>{Value::scalar(3)}, Value::scalar(9).get());
  EXPECT_EQ(dimsOf(c.get()), (Dims{3, 1}));
  Value m = indexAssign(doubles({2, 2}, {1, 2, 3, 4}), std::vector<Value>{Value::scalar(3), Value::scalar(1)},
                        Value::scalar(5).get());
  EXPECT_EQ(dimsOf(m.get()), (Dims{3, 2}));
  EXPECT_EQ(vxGetPr(m.get())[3], 3) << "old elements keep their subscripts";
  EXPECT_EQ(idOf([&] {
              indexAssign(doubles({2, 2}, {1, 2, 3, 4}), std::vector<Value>{Value::scalar(7)}, Value::scalar(1).get());
            }),
            "VANTEL:sgsh:CannotGrow");
  // An undefined target takes the class of the value.
  Value t = indexAssign(Value(), std::vector<Value>{Value::scalar(2)}, Value::text("x").get());
  EXPECT_TRUE(vxIsChar(t.get()));
  EXPECT_EQ(dimsOf(t.get()), (Dims{1, 2}));
}

TEST(ArrayOpsTest, DeletionRemovesWholeSlicesOnly) {
  Value m = doubles({2, 3}, {1, 2, 3, 4, 5, 6});
  Value d = indexAssign(m, std::vector<Value>{Value::text(":"), Value::scalar(2)}, Value::emptyDouble().get());
  EXPECT_EQ(dimsOf(d.get()), (Dims{2, 2}));
  EXPECT_EQ(vxGetPr(d.get())[2], 5);
  EXPECT_EQ(idOf([&] {
              indexAssign(m, std::vector<Value>{Value::scalar(1), Value::scalar(2)}, Value::emptyDouble().get());
            }),
            "VANTEL:sgsh:BadDeletion");
  // Linear deletion from a matrix leaves a row.
  Value lin = indexAssign(m, std::vector<Value>{Value::scalar(1)}, Value::emptyDouble().get());
  EXPECT_EQ(dimsOf(lin.get()), (Dims{1, 5}));
}

TEST(ArrayOpsTest, ConcatenationPicksTheResultClass) {
  auto cat = [](std::vector<Value> pieces) { return concat(pieces, true); };
  EXPECT_TRUE(vxIsChar(cat({Value::text("a"), Value::scalar(66)}).get()));
  EXPECT_TRUE(vxIsLogical(cat({Value::logical(true), Value::logical(false)}).get()));
  EXPECT_TRUE(vxIsDouble(cat({Value::logical(true), Value::scalar(2)}).get()));
  EXPECT_TRUE(vxIsCell(cat({Value(vxCreateCellMatrix(1, 1)), Value::scalar(2)}).get()));
  EXPECT_TRUE(vxIsString(cat({Value(vxCreateStringArray(1, 1)), Value::text("b")}).get()));
  Value skipped = cat({Value::emptyDouble(), row({1, 2}), Value::emptyDouble()});
  EXPECT_EQ(dimsOf(skipped.get()), (Dims{1, 2}));
  std::vector<Value> bad{row({1, 2}), row({1, 2, 3})};
  EXPECT_EQ(idOf([&] { concat(bad, false); }), "VANTEL:sgsh:VertcatMismatch");
}

TEST(ArrayOpsTest, ConversionsSaturateAndNarrow) {
  Value big = convertTo(row({300, -5, 2.5}).get(), vxUINT8_CLASS, false);
  const auto* p = static_cast<const std::uint8_t*>(vxGetData(big.get()));
  EXPECT_EQ(p[0], 255);
  EXPECT_EQ(p[1], 0);
  EXPECT_EQ(p[2], 3) << "rounds half away from zero";
  EXPECT_EQ(idOf([&] { convertTo(row({std::nan("")}).get(), vxLOGICAL_CLASS, false); }), "VANTEL:sgsh:NaNToLogical");
  // A complex result with no imaginary part is real.
  Value z = binary(Op::Mul, complexes({1, 1}, {{0, 1}}).get(), complexes({1, 1}, {{0, 1}}).get());
  EXPECT_FALSE(vxIsComplex(z.get()));
  EXPECT_EQ(vxGetPr(z.get())[0], -1);
}

}  // namespace
}  // namespace sgsh::ops
