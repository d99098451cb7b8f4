// The number-to-object table behind numeric handles. Two hash maps, one per
// direction; a look-up is one hash probe and allocates nothing.
#include "sgdatatypes/HandleNumberTable.h"

#include <bit>
#include <cmath>
#include <cstdint>
#include <limits>
#include <unordered_map>
#include <unordered_set>

#include "vcos/COSClass.h"
#include "vcos/COSInterfacePtr.h"

namespace graphics::datatype {
namespace {

// Hashes the bits of a number; -0.0 and NaN never enter the table.
struct NumberHash {
  std::size_t operator()(double d) const noexcept {
    std::uint64_t b = std::bit_cast<std::uint64_t>(d);
    b ^= b >> 33;
    b *= 0xff51afd7ed558ccdULL;
    b ^= b >> 33;
    return static_cast<std::size_t>(b);
  }
};

struct Table {
  // Weak references: the memory of an entry's object stays valid while the
  // entry exists, so a deleted object is seen as a shell, never reused.
  std::unordered_map<double, COSInterfacePtr, NumberHash> objects;
  std::unordered_map<COSInterface*, double> numbers;
  // Non-whole numbers run k + 1/2 from this counter on; they are never
  // reused, so a stale number cannot name a newer object.
  std::uint64_t nextFraction = 1;
  // Numbers of deleted objects, so that a stale number is told apart from
  // one that never named anything. Bounded: started afresh when full.
  std::unordered_set<double, NumberHash> retired;
};

constexpr std::size_t kRetiredLimit = std::size_t{1} << 16;

Table& table() {
  static Table t;
  return t;
}

bool isFigure(COSInterface* object) noexcept {
  static const COSID figure("vantel.ui.Figure");
  COSClass* cls = object->getClass();
  return cls && cls->isSubclassOf(figure);
}

double nextNumber(Table& t, COSInterface* object) {
  if (isFigure(object)) {
    double n = 1.0;
    while (t.objects.contains(n)) n += 1.0;
    return n;
  }
  double n;
  do n = static_cast<double>(t.nextFraction++) + 0.5;
  while (t.objects.contains(n));
  return n;
}

}  // namespace

double HandleNumberTable::numberFor(COSInterface* object) {
  if (!object || object->isDestroyed()) return std::numeric_limits<double>::quiet_NaN();
  Table& t = table();
  if (auto it = t.numbers.find(object); it != t.numbers.end()) return it->second;
  const double n = nextNumber(t, object);
  t.retired.erase(n);  // a figure number given again
  t.objects.emplace(n, COSInterfacePtr(object, COSWeakReference));
  try {
    t.numbers.emplace(object, n);
  } catch (...) {
    t.objects.erase(n);
    throw;
  }
  return n;
}

COSInterface* HandleNumberTable::entryFor(double number) noexcept {
  Table& t = table();
  auto it = t.objects.find(number);
  return it == t.objects.end() ? nullptr : it->second.get();
}

COSInterface* HandleNumberTable::objectFor(double number) noexcept {
  COSInterface* o = entryFor(number);
  return o && !o->isDestroyed() ? o : nullptr;
}

void HandleNumberTable::remove(double number) noexcept {
  Table& t = table();
  auto it = t.objects.find(number);
  if (it == t.objects.end()) return;
  t.numbers.erase(it->second.get());
  t.objects.erase(it);  // drops the weak reference last
  try {
    if (t.retired.size() >= kRetiredLimit) t.retired.clear();
    t.retired.insert(number);
  } catch (...) {
    // Without memory the number is only forgotten: it then names nothing.
  }
}

bool HandleNumberTable::isRetired(double number) noexcept { return table().retired.contains(number); }

void HandleNumberTable::removeObject(COSInterface* object) noexcept {
  Table& t = table();
  // Asked for every graphics object deleted; most never had a number.
  if (t.numbers.empty()) return;
  auto it = t.numbers.find(object);
  if (it != t.numbers.end()) remove(it->second);
}

std::size_t HandleNumberTable::size() noexcept { return table().objects.size(); }

void HandleNumberTable::clear() noexcept {
  Table& t = table();
  t.numbers.clear();
  t.objects.clear();
  t.retired.clear();
}

void vcos_destroy_handle(double number) noexcept { HandleNumberTable::remove(number); }

}  // namespace graphics::datatype
