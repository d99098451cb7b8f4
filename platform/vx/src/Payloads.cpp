// Copies and resizing of every kind of payload.
#include <algorithm>
#include <cstring>
#include <string_view>
#include <vector>

#include "CellPayload.h"
#include "FunctionHandlePayload.h"
#include "NumericPayload.h"
#include "ObjectPayload.h"
#include "StringPayload.h"
#include "StructPayload.h"

namespace vx::impl {
namespace {

std::vector<ElementRef> copyElements(const std::vector<ElementRef>& from, Payload::Depth depth) {
  std::vector<ElementRef> to;
  to.reserve(from.size());
  for (const ElementRef& e : from)
    to.push_back(depth == Payload::Depth::Deep ? duplicateElement(e) : shareElement(e));
  return to;
}

bool anyHoldsObjects(const std::vector<ElementRef>& elements) {
  return std::any_of(elements.begin(), elements.end(), [](const ElementRef& e) {
    if (!e) return false;
    if (e->cls() == vxOBJECT_CLASS) return true;
    return (e->cls() == vxCELL_CLASS || e->cls() == vxSTRUCT_CLASS) && e->payload && e->payload->holdsObjects();
  });
}

// The small numeric payload kept on this thread (NumericPayload::make).
// Plain data with a fixed model, so that reaching it costs no call; the
// payload is freed at the thread's end by a guard made when the first one is
// kept, and nothing is kept after that.
struct KeptPayload {
  NumericPayload* payload;
  bool guarded;
  bool ended;
};
[[gnu::tls_model("initial-exec")]] thread_local KeptPayload kept{};

struct KeptPayloadGuard {
  ~KeptPayloadGuard() {
    kept.ended = true;
    delete std::exchange(kept.payload, nullptr);
  }
};

[[gnu::noinline]] void guardKeptPayload() noexcept {
  thread_local KeptPayloadGuard guard;
  (void)guard;
  kept.guarded = true;
}

}  // namespace

Payload::~Payload() = default;

void destroyPayload(Payload* p) noexcept {
  if (p->numeric_ && NumericPayload::keepIfSmall(static_cast<NumericPayload*>(p))) return;
  thread_local std::vector<Payload*> queued;
  thread_local bool draining = false;
  if (draining) {
    try {
      queued.push_back(p);
      return;
    } catch (...) {
      // No room to queue: free it here, one level deeper.
    }
    delete p;
    return;
  }
  draining = true;
  delete p;
  while (!queued.empty()) {
    Payload* next = queued.back();
    queued.pop_back();
    delete next;
  }
  draining = false;
}

NumericPayload::NumericPayload(vxSize numel, vxSize elementBytes)
    : numel_(numel), capacity_(numel), elementBytes_(elementBytes) {
  numeric_ = true;
  if (numel * elementBytes <= kSmallBytes)
    capacity_ = elementBytes ? kSmallBytes / elementBytes : numel;
  else
    bytes_ = std::make_unique<std::byte[]>(numel * elementBytes);
}

PayloadRef NumericPayload::make(vxSize numel, vxSize elementBytes) {
  if (elementBytes != 0 && numel * elementBytes <= kSmallBytes && kept.payload) {
    NumericPayload* p = std::exchange(kept.payload, nullptr);
    p->numel_ = numel;
    p->capacity_ = kSmallBytes / elementBytes;
    p->elementBytes_ = elementBytes;
    std::memset(p->small_, 0, sizeof p->small_);
    return PayloadRef(p);
  }
  return makePayload<NumericPayload>(numel, elementBytes);
}

bool NumericPayload::keepIfSmall(NumericPayload* p) noexcept {
  if (p->bytes_ || kept.payload || kept.ended) return false;
  if (!kept.guarded) guardKeptPayload();
  kept.payload = p;
  return true;
}

PayloadRef NumericPayload::clone(Depth) const {
  auto p = make(numel_, elementBytes_);
  std::memcpy(static_cast<NumericPayload*>(p.get())->data(), data(), numel_ * elementBytes_);
  return p;
}

void NumericPayload::resize(vxSize numel) {
  if (numel <= capacity_ && (numel >= capacity_ / 4 || !bytes_)) {
    // Fits: new elements read as zero; a modest shrink keeps the room, and
    // the small room is kept whatever the shrink.
    if (numel > numel_) std::memset(data() + numel_ * elementBytes_, 0, (numel - numel_) * elementBytes_);
    numel_ = numel;
    return;
  }
  // Growing past the room leaves room for half as many again; a one-off
  // resize of an empty or shrinking payload allocates exactly.
  const vxSize capacity = numel > numel_ && numel_ > 0 ? std::max(numel, numel_ + numel_ / 2) : numel;
  auto bytes = std::make_unique<std::byte[]>(capacity * elementBytes_);
  std::memcpy(bytes.get(), data(), std::min(numel, numel_) * elementBytes_);
  bytes_ = std::move(bytes);
  numel_ = numel;
  capacity_ = capacity;
}

PayloadRef CellPayload::clone(Depth depth) const {
  auto p = makePayload<CellPayload>(0);
  static_cast<CellPayload*>(p.get())->cells = copyElements(cells, depth);
  return p;
}

bool CellPayload::holdsObjects() const { return anyHoldsObjects(cells); }

PayloadRef StructPayload::clone(Depth depth) const {
  auto p = makePayload<StructPayload>(numel_);
  auto& to = static_cast<StructPayload*>(p.get())->fields_;
  to.reserve(fields_.size());
  for (const auto& f : fields_) to.push_back(std::make_unique<Field>(Field{f->name, copyElements(f->values, depth)}));
  return p;
}

void StructPayload::resize(vxSize numel) {
  for (auto& f : fields_) f->values.resize(numel);
  numel_ = numel;
}

bool StructPayload::holdsObjects() const {
  return std::any_of(fields_.begin(), fields_.end(), [](const auto& f) { return anyHoldsObjects(f->values); });
}

int StructPayload::find(const char* name) const noexcept {
  // Measure the name once; each field then costs a length test before any
  // byte compare.
  const std::string_view key(name);
  for (std::size_t i = 0; i < fields_.size(); ++i)
    if (std::string_view(fields_[i]->name) == key) return static_cast<int>(i);
  return -1;
}

int StructPayload::add(const char* name) {
  int n = find(name);
  if (n >= 0) return n;
  fields_.push_back(std::make_unique<Field>(Field{name, std::vector<ElementRef>(numel_)}));
  return fieldCount() - 1;
}

void StructPayload::remove(int number) { fields_.erase(fields_.begin() + number); }

bool isValidFieldName(const char* name) noexcept {
  // ASCII only, whatever the locale says.
  auto letter = [](char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); };
  auto digit = [](char c) { return c >= '0' && c <= '9'; };
  if (!name || !letter(name[0])) return false;
  for (const char* c = name + 1; *c; ++c)
    if (!letter(*c) && !digit(*c) && *c != '_') return false;
  return true;
}

PayloadRef StringPayload::clone(Depth) const {
  auto p = makePayload<StringPayload>(0);
  static_cast<StringPayload*>(p.get())->strings = strings;
  return p;
}

PayloadRef FunctionHandlePayload::clone(Depth) const { return makePayload<FunctionHandlePayload>(data); }

PayloadRef ObjectPayload::clone(Depth) const {
  // Objects are handles: a copy of the array refers to the same objects.
  auto p = makePayload<ObjectPayload>(0, classId);
  static_cast<ObjectPayload*>(p.get())->elements = elements;
  return p;
}

}  // namespace vx::impl
