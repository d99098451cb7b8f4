// The saved-value format: MessagePack values inside a checked frame, the
// body compressed with zstd when that pays. See docs/file-format.md.
#include "vx/vxSerialize.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <bit>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <memory>
#include <new>
#include <set>

#define MSGPACK_NO_BOOST 1
#include <msgpack.hpp>
#include <zstd.h>

#include "foundation/core/except/Error.h"
#include "vx/vxCell.h"
#include "vx/vxCreate.h"
#include "vx/vxData.h"
#include "vx/vxFunctionHandleData.h"
#include "vx/vxQuery.h"
#include "vx/vxStruct.h"

static_assert(std::endian::native == std::endian::little, "saved numeric bytes are little-endian");

using foundation::core::except::Error;

namespace {

constexpr char kMagic[8] = {'S', 'G', 'V', 'X', 'D', 'A', 'T', '\x1a'};
constexpr std::size_t kHeaderBytes = 40;  // magic, version, flags, body, raw length, checksum
constexpr std::uint32_t kFlagZstd = 1;
constexpr std::uint64_t kMaxRawBytes = std::uint64_t{1} << 30;
constexpr std::size_t kMaxDepth = 64;
constexpr std::size_t kMaxDims = 32;
constexpr std::size_t kMaxNameBytes = 4096;

// FNV-1a, 64 bits: cheap, and enough to tell a damaged body from a good one.
// Eight bytes are loaded at a time (the hash is the byte-wise one).
std::uint64_t checksum(std::span<const std::uint8_t> bytes) {
  constexpr std::uint64_t kPrime = 0x100000001b3ULL;
  std::uint64_t h = 0xcbf29ce484222325ULL;
  const std::uint8_t* p = bytes.data();
  std::size_t n = bytes.size();
  for (; n >= 8; n -= 8, p += 8) {
    std::uint64_t word;
    std::memcpy(&word, p, sizeof word);  // little-endian: the first byte is the lowest
    h = (h ^ (word & 0xff)) * kPrime;
    h = (h ^ ((word >> 8) & 0xff)) * kPrime;
    h = (h ^ ((word >> 16) & 0xff)) * kPrime;
    h = (h ^ ((word >> 24) & 0xff)) * kPrime;
    h = (h ^ ((word >> 32) & 0xff)) * kPrime;
    h = (h ^ ((word >> 40) & 0xff)) * kPrime;
    h = (h ^ ((word >> 48) & 0xff)) * kPrime;
    h = (h ^ (word >> 56)) * kPrime;
  }
  for (; n > 0; --n, ++p) h = (h ^ *p) * kPrime;
  return h;
}

// Compression contexts are kept per thread: making one allocates several
// megabytes, which would cost more than compressing a small file.
struct ZstdContexts {
  ZSTD_CCtx* compress = ZSTD_createCCtx();
  ZSTD_DCtx* decompress = ZSTD_createDCtx();
  ZstdContexts() = default;
  ZstdContexts(const ZstdContexts&) = delete;
  ZstdContexts& operator=(const ZstdContexts&) = delete;
  ~ZstdContexts() {
    ZSTD_freeCCtx(compress);
    ZSTD_freeDCtx(decompress);
  }
  static ZstdContexts& local() {
    thread_local ZstdContexts contexts;
    return contexts;
  }
};

[[noreturn]] void corrupt(const char* what) { throw Error("VANTEL:vx:serialize:Corrupt", what); }

bool isNumericClass(int c) { return c >= vxDOUBLE_CLASS && c <= vxUINT64_CLASS; }

std::size_t realElementBytes(int c) {
  switch (c) {
    case vxDOUBLE_CLASS: case vxINT64_CLASS: case vxUINT64_CLASS: return 8;
    case vxSINGLE_CLASS: case vxINT32_CLASS: case vxUINT32_CLASS: return 4;
    case vxINT16_CLASS: case vxUINT16_CLASS: case vxCHAR_CLASS: return 2;
    default: return 1;  // int8, uint8, logical
  }
}

// ---- writing ----

// The bytes being written. Appending is inline, so that the packer's small
// writes of known sizes become plain stores; the room doubles when full.
class ByteSink {
 public:
  ByteSink() : data_(static_cast<char*>(std::malloc(kFirstRoom))), room_(kFirstRoom) {
    if (!data_) throw std::bad_alloc();
  }
  ByteSink(const ByteSink&) = delete;
  ByteSink& operator=(const ByteSink&) = delete;

  void write(const char* bytes, std::size_t n) {
    if (room_ - size_ < n) grow(n);
    std::memcpy(data_.get() + size_, bytes, n);
    size_ += n;
  }
  char* data() { return data_.get(); }
  const char* data() const { return data_.get(); }
  std::size_t size() const { return size_; }

 private:
  static constexpr std::size_t kFirstRoom = 8192;
  struct Free {
    void operator()(char* p) const { std::free(p); }
  };
  [[gnu::noinline]] void grow(std::size_t n) {
    std::size_t room = room_ * 2;
    while (room - size_ < n) room *= 2;
    char* grown = static_cast<char*>(std::realloc(data_.get(), room));
    if (!grown) throw std::bad_alloc();
    (void)data_.release();
    data_.reset(grown);
    room_ = room;
  }
  std::unique_ptr<char, Free> data_;
  std::size_t room_;
  std::size_t size_ = 0;
};

using Packer = msgpack::packer<ByteSink>;

// Set while packing when a function handle with captured variables was
// written, which needs version 3.
thread_local bool tCapturesWritten = false;

void packBytes(Packer& pk, const void* data, std::size_t n) {
  pk.pack_bin(static_cast<std::uint32_t>(n));
  if (n) pk.pack_bin_body(static_cast<const char*>(data), static_cast<std::uint32_t>(n));
}

void packUtf16(Packer& pk, const std::u16string& s) { packBytes(pk, s.data(), s.size() * sizeof(char16_t)); }

void packValue(Packer& pk, const vxArray* a, std::size_t depth, const vxWriteOptions* objects) {
  if (depth > kMaxDepth) throw Error("VANTEL:vx:serialize:TooDeep", kMaxDepth);
  const vxClassID cls = vxGetClassID(a);
  const vxSize ndim = vxGetNumberOfDimensions(a);
  const vxSize* dims = vxGetDimensions(a);
  const vxSize numel = vxGetNumberOfElements(a);
  if (numel > 0xffffffffULL) throw Error("VANTEL:vx:serialize:TooLarge");
  pk.pack_array(4);
  pk.pack(static_cast<int>(cls));
  pk.pack_array(static_cast<std::uint32_t>(ndim));
  for (vxSize d = 0; d < ndim; ++d) pk.pack(static_cast<std::uint64_t>(dims[d]));
  pk.pack(vxIsComplex(a));
  switch (cls) {
    case vxLOGICAL_CLASS:
    case vxCHAR_CLASS:
      packBytes(pk, vxGetData(a), numel * vxGetElementSize(a));
      return;
    case vxSTRING_CLASS:
      pk.pack_array(static_cast<std::uint32_t>(numel));
      for (vxSize i = 0; i < numel; ++i) {
        std::optional<std::u16string> s = vxGetStringElement(a, i);
        if (s) packUtf16(pk, *s);
        else pk.pack_nil();
      }
      return;
    case vxCELL_CLASS:
      pk.pack_array(static_cast<std::uint32_t>(numel));
      for (vxSize i = 0; i < numel; ++i) {
        const vxArray* e = vxGetCell(a, i);
        if (e) packValue(pk, e, depth + 1, objects);
        else pk.pack_nil();
      }
      return;
    case vxSTRUCT_CLASS: {
      const int nf = vxGetNumberOfFields(a);
      pk.pack_array(2);
      pk.pack_array(static_cast<std::uint32_t>(nf));
      for (int f = 0; f < nf; ++f) pk.pack(std::string_view(vxGetFieldNameByNumber(a, f)));
      pk.pack_array(static_cast<std::uint32_t>(numel * static_cast<vxSize>(nf)));
      for (vxSize i = 0; i < numel; ++i)
        for (int f = 0; f < nf; ++f) {
          const vxArray* e = vxGetFieldByNumber(a, i, f);
          if (e) packValue(pk, e, depth + 1, objects);
          else pk.pack_nil();
        }
      return;
    }
    case vxFUNCTION_CLASS: {
      const auto handle = vxGetFunctionHandle(a);
      const std::vector<std::pair<std::string, const vxArray*>> captured = handle->capturedValues();
      if (captured.empty()) {
        pk.pack(handle->text());
        return;
      }
      // [text, entries]: version 3.
      tCapturesWritten = true;
      pk.pack_array(2);
      pk.pack(handle->text());
      pk.pack_array(static_cast<std::uint32_t>(captured.size()));
      for (const auto& [name, value] : captured) {
        pk.pack_array(2);
        pk.pack(name);
        packValue(pk, value, depth + 1, objects);
      }
      return;
    }
    case vxOBJECT_CLASS:
      if (!objects || !objects->objectIndex || !objects->objectClassName) break;
      pk.pack_array(2);
      pk.pack(objects->objectClassName(a));
      pk.pack_array(static_cast<std::uint32_t>(numel));
      for (vxSize i = 0; i < numel; ++i) pk.pack(objects->objectIndex(a, i));
      return;
    default:
      break;
  }
  {
      if (isNumericClass(cls)) {
        packBytes(pk, numel ? vxGetData(a) : nullptr, numel * vxGetElementSize(a));
        return;
      }
      throw Error("VANTEL:vx:serialize:UnsupportedClass", vxGetClassName(a));
  }
}

void putLE(std::vector<std::uint8_t>& out, std::uint64_t v, int bytes) {
  for (int i = 0; i < bytes; ++i) out.push_back(static_cast<std::uint8_t>(v >> (8 * i)));
}

std::uint64_t getLE(const std::uint8_t* p, int bytes) {
  std::uint64_t v = 0;
  for (int i = bytes - 1; i >= 0; --i) v = (v << 8) | p[i];
  return v;
}

// ---- reading ----

// The body is read in place, element by element, with no tree of its own:
// a cursor hands out one MessagePack head at a time, and a text's or byte
// string's bytes point into the body. Every count and length is checked
// against the bytes left before it is used.
enum class Kind : std::uint8_t { Nil, Boolean, Positive, Negative, Float, Str, Bin, Array, Map, Ext };

struct Item {
  Kind kind = Kind::Nil;
  bool boolean = false;
  std::uint32_t size = 0;  // a text's or byte string's length, an array's or map's count
  std::uint64_t u64 = 0;   // a non-negative integer
  std::int64_t i64 = 0;    // a negative integer
  const char* ptr = nullptr;
};

[[noreturn]] void malformed() { corrupt("the body is not well-formed"); }

class Cursor {
 public:
  explicit Cursor(std::span<const std::uint8_t> bytes) : begin_(bytes.data()), p_(bytes.data()), end_(bytes.data() + bytes.size()) {}

  std::size_t offset() const { return static_cast<std::size_t>(p_ - begin_); }
  void seek(std::size_t offset) { p_ = begin_ + offset; }
  bool atEnd() const { return p_ == end_; }

  // Takes a nil if one is next.
  bool takeNil() {
    if (p_ < end_ && *p_ == 0xc0) {
      ++p_;
      return true;
    }
    return false;
  }

  // The next element's head; an array's or map's elements follow it. The
  // one-byte forms the writer uses most are read here, the others apart.
  Item next() {
    if (p_ == end_) malformed();
    const std::uint8_t b = *p_;
    Item it;
    if (b <= 0x7f) {
      ++p_;
      it.kind = Kind::Positive;
      it.u64 = b;
    } else if ((b & 0xf0) == 0x90) {
      ++p_;
      container(it, Kind::Array, b & 0x0f);
    } else if ((b & 0xe0) == 0xa0) {
      ++p_;
      bytes(it, Kind::Str, b & 0x1f);
    } else if (b == 0xc2 || b == 0xc3) {
      ++p_;
      it.kind = Kind::Boolean;
      it.boolean = b == 0xc3;
    } else {
      nextOther(it);
    }
    return it;
  }

  // Passes over one whole element, checking every head and length as
  // next() does. The elements still to pass are counted rather than
  // recursed into: nesting is limited where values are read.
  void skip() {
    std::uint64_t pending = 1;
    while (pending > 0) {
      --pending;
      if (p_ == end_) malformed();
      const std::uint8_t b = *p_;
      if (b <= 0x7f || b == 0xc0 || b == 0xc2 || b == 0xc3) {
        ++p_;
      } else if ((b & 0xf0) == 0x90) {
        ++p_;
        pending += b & 0x0f;
        if (static_cast<std::uint64_t>(end_ - p_) < pending) malformed();  // a byte at least each
      } else if ((b & 0xe0) == 0xa0) {
        ++p_;
        const std::uint8_t n = b & 0x1f;
        if (static_cast<std::size_t>(end_ - p_) < n) malformed();
        p_ += n;
      } else {
        const Item it = next();
        if (it.kind == Kind::Array) pending += it.size;
        else if (it.kind == Kind::Map) pending += std::uint64_t{it.size} * 2;
        if (static_cast<std::uint64_t>(end_ - p_) < pending) malformed();
      }
    }
  }

 private:
  [[gnu::noinline]] void nextOther(Item& it) {
    const std::uint8_t b = *p_++;
    if (b >= 0xe0) {
      it.kind = Kind::Negative;
      it.i64 = static_cast<std::int8_t>(b);
      return;
    }
    if (b >= 0x80 && b <= 0x8f) return container(it, Kind::Map, b & 0x0f);
    switch (b) {
      case 0xc0: it.kind = Kind::Nil; break;
      case 0xc4: bytes(it, Kind::Bin, big(1)); break;
      case 0xc5: bytes(it, Kind::Bin, big(2)); break;
      case 0xc6: bytes(it, Kind::Bin, big(4)); break;
      case 0xca: it.kind = Kind::Float; big(4); break;
      case 0xcb: it.kind = Kind::Float; big(8); break;
      case 0xcc: positive(it, big(1)); break;
      case 0xcd: positive(it, big(2)); break;
      case 0xce: positive(it, big(4)); break;
      case 0xcf: positive(it, big(8)); break;
      case 0xd0: integer(it, static_cast<std::int8_t>(big(1))); break;
      case 0xd1: integer(it, static_cast<std::int16_t>(big(2))); break;
      case 0xd2: integer(it, static_cast<std::int32_t>(big(4))); break;
      case 0xd3: integer(it, static_cast<std::int64_t>(big(8))); break;
      case 0xd9: bytes(it, Kind::Str, big(1)); break;
      case 0xda: bytes(it, Kind::Str, big(2)); break;
      case 0xdb: bytes(it, Kind::Str, big(4)); break;
      case 0xdc: container(it, Kind::Array, big(2)); break;
      case 0xdd: container(it, Kind::Array, big(4)); break;
      case 0xde: container(it, Kind::Map, big(2)); break;
      case 0xdf: container(it, Kind::Map, big(4)); break;
      default: malformed();  // extension types and the unused byte: the writer makes none
    }
  }
  std::uint64_t big(int n) {
    if (end_ - p_ < n) malformed();
    std::uint64_t v = 0;
    for (int i = 0; i < n; ++i) v = (v << 8) | p_[i];
    p_ += n;
    return v;
  }
  void bytes(Item& it, Kind kind, std::uint64_t n) {
    if (static_cast<std::uint64_t>(end_ - p_) < n) malformed();
    it.kind = kind;
    it.size = static_cast<std::uint32_t>(n);
    it.ptr = reinterpret_cast<const char*>(p_);
    p_ += n;
  }
  // Each element takes at least one byte, a map's two.
  void container(Item& it, Kind kind, std::uint64_t n) {
    if (static_cast<std::uint64_t>(end_ - p_) < (kind == Kind::Map ? n * 2 : n)) malformed();
    it.kind = kind;
    it.size = static_cast<std::uint32_t>(n);
  }
  static void positive(Item& it, std::uint64_t v) {
    it.kind = Kind::Positive;
    it.u64 = v;
  }
  // A signed encoding of a value that is not negative reads as a positive integer.
  static void integer(Item& it, std::int64_t v) {
    if (v >= 0) return positive(it, static_cast<std::uint64_t>(v));
    it.kind = Kind::Negative;
    it.i64 = v;
  }

  const std::uint8_t* begin_;
  const std::uint8_t* p_;
  const std::uint8_t* end_;
};

struct Reader {
  const vxReadOptions& options;
  std::uint64_t rawLength;  // every element costs at least one byte of it
  std::size_t objectCount = 0;  // entries of the object table
  std::uint32_t version = 1;    // of the file being read

  static void expectArray(const Item& o, std::size_t n, const char* what) {
    if (o.kind != Kind::Array || o.size != n) corrupt(what);
  }

  static std::uint64_t unsignedOf(const Item& o, const char* what) {
    if (o.kind != Kind::Positive) corrupt(what);
    return o.u64;
  }

  static std::u16string utf16Of(const Item& o) {
    if (o.kind != Kind::Bin || o.size % 2) corrupt("a text element is not UTF-16");
    std::u16string s(o.size / 2, u'\0');
    if (!s.empty()) std::memcpy(s.data(), o.ptr, o.size);
    return s;
  }

  // The value that starts at the cursor; the cursor ends past it.
  matrix::unique_vxArray value(Cursor& c, std::size_t depth) const {
    if (depth > kMaxDepth) corrupt("values are nested too deeply");
    expectArray(c.next(), 4, "a value is not a four-element array");
    const std::uint64_t cls = unsignedOf(c.next(), "a class id is not a number");
    const Item dimsObj = c.next();
    if (dimsObj.kind != Kind::Array || dimsObj.size < 2 || dimsObj.size > kMaxDims)
      corrupt("the dimensions are not a list of two to 32 sizes");
    // The sizes on the stack: a value read allocates only its array.
    std::array<vxSize, kMaxDims> dimsStore;
    const std::span<vxSize> dims(dimsStore.data(), dimsObj.size);
    std::uint64_t numel = 1;
    for (std::size_t d = 0; d < dims.size(); ++d) {
      const std::uint64_t n = unsignedOf(c.next(), "a dimension is not a size");
      if (n > kMaxRawBytes) corrupt("a dimension is larger than the data");
      dims[d] = n;
      numel = numel == 0 ? 0 : (n > kMaxRawBytes / std::max<std::uint64_t>(numel, 1) ? kMaxRawBytes + 1 : numel * n);
      if (numel > rawLength) corrupt("the element count is larger than the data");
    }
    const Item flag = c.next();
    if (flag.kind != Kind::Boolean) corrupt("the complexity is not a flag");
    const bool complex = flag.boolean;
    const Item payload = c.next();
    if (complex && !isNumericClass(static_cast<int>(cls))) corrupt("a complex value of a class that has none");

    switch (cls) {
      case vxLOGICAL_CLASS: {
        if (payload.kind != Kind::Bin || payload.size != numel) corrupt("logical data of the wrong length");
        for (std::uint32_t i = 0; i < payload.size; ++i)
          if (static_cast<std::uint8_t>(payload.ptr[i]) > 1) corrupt("a logical element is neither 0 nor 1");
        matrix::unique_vxArray a(vxCreateLogicalArray(dims.size(), dims.data()));
        if (numel) std::memcpy(vxGetData(a.get()), payload.ptr, numel);
        return a;
      }
      case vxCHAR_CLASS: {
        if (payload.kind != Kind::Bin || payload.size != numel * 2) corrupt("char data of the wrong length");
        matrix::unique_vxArray a(vxCreateCharArray(dims.size(), dims.data()));
        if (numel) std::memcpy(vxGetData(a.get()), payload.ptr, numel * 2);
        return a;
      }
      case vxSTRING_CLASS: {
        if (payload.kind != Kind::Array || payload.size != numel) corrupt("string elements of the wrong count");
        std::vector<std::optional<std::u16string>> elems;
        for (std::uint64_t i = 0; i < numel; ++i) {
          if (c.takeNil()) elems.emplace_back();
          else elems.emplace_back(utf16Of(c.next()));
        }
        if (dims.size() != 2) corrupt("a string array with more than two dimensions");
        matrix::unique_vxArray a(vxCreateStringArray(dims[0], dims[1]));
        for (std::uint64_t i = 0; i < numel; ++i) vxSetStringElement(a.get(), i, std::move(elems[i]));
        return a;
      }
      case vxCELL_CLASS: {
        if (payload.kind != Kind::Array || payload.size != numel) corrupt("cell elements of the wrong count");
        matrix::unique_vxArray a(vxCreateCellArray(dims.size(), dims.data()));
        for (std::uint64_t i = 0; i < numel; ++i)
          if (!c.takeNil()) vxSetCell(a.get(), i, value(c, depth + 1).release());
        return a;
      }
      case vxSTRUCT_CLASS: {
        expectArray(payload, 2, "struct data is not names and values");
        const Item names = c.next();
        if (names.kind != Kind::Array || names.size > 65535) corrupt("struct field names are not a list");
        std::vector<std::string> fieldNames;
        std::set<std::string> seen;
        for (std::uint32_t f = 0; f < names.size; ++f) {
          const Item n = c.next();
          if (n.kind != Kind::Str || n.size == 0 || n.size > kMaxNameBytes) corrupt("a field name is not text");
          fieldNames.emplace_back(n.ptr, n.size);
          if (!seen.insert(fieldNames.back()).second) corrupt("a field name appears twice");
        }
        const std::uint64_t nf = fieldNames.size();
        const Item values = c.next();
        if (values.kind != Kind::Array || values.size != numel * nf) corrupt("struct values of the wrong count");
        std::vector<const char*> cnames;
        for (const std::string& n : fieldNames) cnames.push_back(n.c_str());
        matrix::unique_vxArray a;
        try {
          a.reset(vxCreateStructArray(dims.size(), dims.data(), static_cast<int>(nf), cnames.data()));
        } catch (const Error&) {
          corrupt("a field name is not a valid name");
        }
        for (std::uint64_t i = 0; i < numel; ++i)
          for (std::uint64_t f = 0; f < nf; ++f)
            if (!c.takeNil()) vxSetFieldByNumber(a.get(), i, static_cast<int>(f), value(c, depth + 1).release());
        return a;
      }
      case vxFUNCTION_CLASS: {
        if (numel != 1 || dims.size() != 2) corrupt("a function handle that is not 1-by-1");
        // Version 3 adds [text, entries] for a handle with captured variables.
        const bool withCaptures = payload.kind == Kind::Array && version >= 3;
        if (withCaptures) expectArray(payload, 2, "a function handle is not its text and its variables");
        const Item textObject = withCaptures ? c.next() : payload;
        if (textObject.kind != Kind::Str || textObject.size == 0) corrupt("a function handle without text");
        std::string handleText(textObject.ptr, textObject.size);
        if (withCaptures) {
          const Item list = c.next();
          if (list.kind != Kind::Array || list.size == 0) corrupt("a function handle's variables are not a list");
          std::vector<vxNamedValue> captured;
          for (std::uint32_t k = 0; k < list.size; ++k) {
            expectArray(c.next(), 2, "a captured variable is not a name and a value");
            const Item name = c.next();
            if (name.kind != Kind::Str || name.size == 0 || name.size > kMaxNameBytes)
              corrupt("a captured variable's name is not text");
            std::string captureName(name.ptr, name.size);
            captured.push_back({std::move(captureName), value(c, depth + 1)});
          }
          if (options.makeCapturingFunctionHandle) {
            matrix::unique_vxArray a(options.makeCapturingFunctionHandle(handleText, std::move(captured)));
            if (!a || !vxIsFunctionHandle(a.get())) corrupt("a function handle whose text is not a function");
            return a;
          }
        }
        if (!options.makeFunctionHandle) throw Error("VANTEL:vx:serialize:NoFunctionHandles");
        matrix::unique_vxArray a(options.makeFunctionHandle(handleText));
        if (!a || !vxIsFunctionHandle(a.get())) corrupt("a function handle whose text is not a function");
        return a;
      }
      default:
        break;
    }
    if (!isNumericClass(static_cast<int>(cls))) {
      if (cls == vxOBJECT_CLASS) return objects(c, payload, dims, numel);
      corrupt("an unknown class id");
    }
    const std::uint64_t bytes = numel * realElementBytes(static_cast<int>(cls)) * (complex ? 2 : 1);
    if (payload.kind != Kind::Bin || payload.size != bytes) corrupt("numeric data of the wrong length");
    matrix::unique_vxArray a(vxCreateNumericArray(dims.size(), dims.data(), static_cast<vxClassID>(cls),
                                                  complex ? vxCOMPLEX : vxREAL));
    if (bytes) std::memcpy(vxGetData(a.get()), payload.ptr, bytes);
    return a;
  }

  // An object array: [class name, indexes into the object table].
  matrix::unique_vxArray objects(Cursor& c, const Item& payload, std::span<const vxSize> dims,
                                 std::uint64_t numel) const {
    if (!options.makeObjectArray) throw Error("VANTEL:vx:serialize:UnsupportedClass", "object");
    expectArray(payload, 2, "object data is not a class and indexes");
    const Item name = c.next();
    if (name.kind != Kind::Str || name.size == 0 || name.size > kMaxNameBytes)
      corrupt("an object class name is not text");
    const Item list = c.next();
    if (list.kind != Kind::Array || list.size != numel) corrupt("object elements of the wrong count");
    std::vector<std::int64_t> indexes(numel);
    for (std::uint64_t i = 0; i < numel; ++i) {
      const Item e = c.next();
      if (e.kind == Kind::Negative && e.i64 == -1) indexes[i] = -1;
      else if (e.kind == Kind::Positive && e.u64 < objectCount) indexes[i] = static_cast<std::int64_t>(e.u64);
      else corrupt("an object index outside the object table");
    }
    matrix::unique_vxArray a(options.makeObjectArray(std::string(name.ptr, name.size), dims, indexes));
    if (!a) corrupt("an object array could not be made");
    return a;
  }
};

// The MessagePack bytes of a frame: decompressed into a buffer of their own
// (not zeroed first), or the stored body itself.
struct RawBody {
  std::unique_ptr<std::uint8_t[]> owned;
  std::span<const std::uint8_t> bytes;
};

// The unpacked MessagePack body of framed bytes, after every frame check.
RawBody unframe(std::span<const std::uint8_t> bytes, std::uint32_t& versionOut) {
  if (bytes.size() < sizeof kMagic || std::memcmp(bytes.data(), kMagic, sizeof kMagic) != 0)
    throw Error("VANTEL:vx:serialize:NotSavedData");
  if (bytes.size() < kHeaderBytes) throw Error("VANTEL:vx:serialize:Truncated");
  const std::uint8_t* h = bytes.data();
  const auto version = static_cast<std::uint32_t>(getLE(h + 8, 4));
  if (version > vxSerializeFormatVersion) throw Error("VANTEL:vx:serialize:NewerVersion", version, vxSerializeFormatVersion);
  if (version == 0) corrupt("the format version is 0");
  versionOut = version;
  const auto flags = static_cast<std::uint32_t>(getLE(h + 12, 4));
  const std::uint64_t bodyLength = getLE(h + 16, 8);
  const std::uint64_t rawLength = getLE(h + 24, 8);
  const std::uint64_t sum = getLE(h + 32, 8);
  if ((flags & ~kFlagZstd) != 0) corrupt("unknown frame flags");
  if (bodyLength != bytes.size() - kHeaderBytes) throw Error("VANTEL:vx:serialize:Truncated");
  if (rawLength > kMaxRawBytes) throw Error("VANTEL:vx:serialize:TooLarge");
  std::span<const std::uint8_t> body = bytes.subspan(kHeaderBytes);
  RawBody raw;
  if (flags & kFlagZstd) {
    if (ZSTD_getFrameContentSize(body.data(), body.size()) != rawLength) corrupt("the compressed size does not match");
    raw.owned = std::make_unique_for_overwrite<std::uint8_t[]>(rawLength);
    const std::size_t n =
        ZSTD_decompressDCtx(ZstdContexts::local().decompress, raw.owned.get(), rawLength, body.data(), body.size());
    if (ZSTD_isError(n) || n != rawLength) corrupt("the compressed body does not decompress");
    raw.bytes = std::span<const std::uint8_t>(raw.owned.get(), rawLength);
  } else {
    if (rawLength != body.size()) corrupt("the body length does not match");
    raw.bytes = body;  // read where it lies: the caller's bytes outlive the reading
  }
  if (checksum(raw.bytes) != sum) throw Error("VANTEL:vx:serialize:ChecksumMismatch");
  return raw;
}

}  // namespace

namespace {

std::vector<std::uint8_t> frame(const ByteSink& buffer, std::uint32_t version) {
  if (buffer.size() > kMaxRawBytes) throw Error("VANTEL:vx:serialize:TooLarge");
  std::span<const std::uint8_t> raw(reinterpret_cast<const std::uint8_t*>(buffer.data()), buffer.size());
  // The compressed bytes go straight behind the header; the buffer is not
  // zeroed first.
  const std::size_t bound = ZSTD_compressBound(raw.size());
  auto packed = std::make_unique_for_overwrite<std::uint8_t[]>(bound);
  const std::size_t n = ZSTD_compressCCtx(ZstdContexts::local().compress, packed.get(), bound, raw.data(), raw.size(), 3);
  const bool useZstd = !ZSTD_isError(n) && n < raw.size();
  std::vector<std::uint8_t> out;
  out.reserve(kHeaderBytes + (useZstd ? n : raw.size()));
  out.insert(out.end(), kMagic, kMagic + sizeof kMagic);
  putLE(out, version, 4);
  putLE(out, useZstd ? kFlagZstd : 0, 4);
  putLE(out, useZstd ? n : raw.size(), 8);
  putLE(out, raw.size(), 8);
  putLE(out, checksum(raw), 8);
  if (useZstd) out.insert(out.end(), packed.get(), packed.get() + n);
  else out.insert(out.end(), raw.begin(), raw.end());
  return out;
}

void packEntries(Packer& pk, std::span<const std::pair<std::string, const vxArray*>> values,
                 const vxWriteOptions* objects) {
  pk.pack_array(static_cast<std::uint32_t>(values.size()));
  for (const auto& [name, value] : values) {
    pk.pack_array(2);
    pk.pack(name);
    packValue(pk, value, 0, objects);
  }
}

std::string nameOf(const Item& o, const char* what) {
  if (o.kind != Kind::Str || o.size == 0 || o.size > kMaxNameBytes) corrupt(what);
  return std::string(o.ptr, o.size);
}

// A list of [name, value] entries at the cursor, into `out`, which is
// emptied first.
void readEntriesInto(Cursor& c, const Reader& reader, std::vector<vxNamedValue>& out) {
  const Item list = c.next();
  if (list.kind != Kind::Array) corrupt("the body is not a list of values");
  out.clear();
  out.reserve(list.size);
  for (std::uint32_t i = 0; i < list.size; ++i) {
    Reader::expectArray(c.next(), 2, "an entry is not a name and a value");
    std::string name = nameOf(c.next(), "a value's name is not text");
    out.push_back({std::move(name), reader.value(c, 0)});
  }
}

std::vector<vxNamedValue> readEntries(Cursor& c, const Reader& reader) {
  std::vector<vxNamedValue> out;
  readEntriesInto(c, reader, out);
  return out;
}

}  // namespace

std::vector<std::uint8_t> vxSerializeValues(std::span<const std::pair<std::string, const vxArray*>> values) {
  ByteSink buffer;
  Packer pk(buffer);
  tCapturesWritten = false;
  packEntries(pk, values, nullptr);
  // Captured variables need version 3, whose body is that of version 2.
  if (tCapturesWritten) return vxSerializeDocument(values, {}, {});
  return frame(buffer, 1);
}

struct vxDocumentWriter::State {
  explicit State(const vxWriteOptions& o) : options(o), pk(buffer) {}
  vxWriteOptions options;
  ByteSink buffer;
  Packer pk;
  std::size_t remaining = 0;
  bool captures = false;  // a handle with captured variables was written: version 3
  // Saved forms (version 4): the offset of their list's count, written as a
  // 32-bit placeholder and filled in by finish(), and how many were added.
  std::size_t formsCountAt = 0;
  std::uint32_t forms = 0;
  std::uint32_t required = 0;  // the least version the writer asked for
};

vxDocumentWriter::vxDocumentWriter(std::span<const std::pair<std::string, const vxArray*>> values,
                                   std::size_t objectCount, const vxWriteOptions& options)
    : state_(std::make_unique<State>(options)) {
  if (objectCount > 0xffffffffULL) throw Error("VANTEL:vx:serialize:TooLarge");
  Packer& pk = state_->pk;
  pk.pack_array(2);
  tCapturesWritten = false;
  packEntries(pk, values, &state_->options);
  state_->captures = tCapturesWritten;
  pk.pack_array(static_cast<std::uint32_t>(objectCount));
  state_->remaining = objectCount;
}

vxDocumentWriter::~vxDocumentWriter() = default;

void vxDocumentWriter::addObject(std::string_view className, std::int64_t madeBy, std::string_view madeByProperty,
                                 std::span<const Field> fields) {
  if (state_->remaining == 0) throw Error("VANTEL:vx:serialize:Corrupt", "more records than the object table announced");
  --state_->remaining;
  Packer& pk = state_->pk;
  pk.pack_array(4);
  pk.pack(className);
  pk.pack(madeBy);
  pk.pack(madeByProperty);
  pk.pack_array(static_cast<std::uint32_t>(fields.size()));
  tCapturesWritten = false;
  for (const Field& field : fields) {
    pk.pack_array(2);
    pk.pack(field.name);
    packValue(pk, field.value, 0, &state_->options);
  }
  state_->captures = state_->captures || tCapturesWritten;
  // A large body is checked as it grows, not only at the end.
  if (state_->buffer.size() > kMaxRawBytes) throw Error("VANTEL:vx:serialize:TooLarge");
}

void vxDocumentWriter::addSavedForm(std::string_view className, std::string_view typeName, const vxArray* form) {
  if (state_->remaining != 0) throw Error("VANTEL:vx:serialize:Corrupt", "a saved form before the last record");
  if (!form) throw Error("VANTEL:vx:serialize:Corrupt", "a saved form without a value");
  ByteSink& buffer = state_->buffer;
  if (state_->forms == 0) {
    // The list's count is not known yet: an array32 head, filled in later.
    state_->formsCountAt = buffer.size() + 1;
    buffer.write("\xdd\0\0\0\0", 5);
  }
  if (state_->forms == 0xffffffffU) throw Error("VANTEL:vx:serialize:TooLarge");
  ++state_->forms;
  Packer& pk = state_->pk;
  pk.pack_array(3);
  pk.pack(className);
  pk.pack(typeName);
  tCapturesWritten = false;
  packValue(pk, form, 0, &state_->options);
  if (buffer.size() > kMaxRawBytes) throw Error("VANTEL:vx:serialize:TooLarge");
}

void vxDocumentWriter::requireVersion(std::uint32_t version) {
  if (version > vxSerializeFormatVersion) throw Error("VANTEL:vx:serialize:NewerVersion", version, vxSerializeFormatVersion);
  state_->required = std::max(state_->required, version);
}

std::vector<std::uint8_t> vxDocumentWriter::finish() {
  // A table shorter than announced would not read back.
  if (state_->remaining != 0) throw Error("VANTEL:vx:serialize:Corrupt", "records missing from the object table");
  const std::uint32_t required = state_->required;
  if (state_->forms > 0) {
    // [values, objects] becomes [values, objects, forms]: the body's head is
    // the one-byte array head the constructor wrote.
    char* data = state_->buffer.data();
    data[0] = static_cast<char>(0x93);
    for (int i = 0; i < 4; ++i)
      data[state_->formsCountAt + static_cast<std::size_t>(i)] = static_cast<char>(state_->forms >> (8 * (3 - i)));
    return frame(state_->buffer, std::max(vxSerializeSavedFormsVersion, required));
  }
  return frame(state_->buffer,
               std::max(state_->captures ? vxSerializeCapturesVersion : vxSerializeObjectTableVersion, required));
}

std::vector<std::uint8_t> vxSerializeDocument(std::span<const std::pair<std::string, const vxArray*>> values,
                                              std::span<const vxSavedObjectView> objects,
                                              const vxWriteOptions& options) {
  ByteSink buffer;
  Packer pk(buffer);
  tCapturesWritten = false;
  pk.pack_array(2);
  packEntries(pk, values, &options);
  pk.pack_array(static_cast<std::uint32_t>(objects.size()));
  for (const vxSavedObjectView& object : objects) {
    pk.pack_array(4);
    pk.pack(object.head.className);
    pk.pack(object.head.madeBy);
    pk.pack(object.head.madeByProperty);
    packEntries(pk, object.fields, &options);
  }
  return frame(buffer, tCapturesWritten ? vxSerializeCapturesVersion : vxSerializeObjectTableVersion);
}

vxSavedDocument vxDeserializeDocument(std::span<const std::uint8_t> bytes, const vxReadOptions& options) {
  std::uint32_t version = 0;
  const RawBody body = unframe(bytes, version);
  const std::span<const std::uint8_t> raw = body.bytes;
  Cursor c(raw);
  Reader reader{options, raw.size()};
  reader.version = version;
  vxSavedDocument out;
  if (version == 1) {
    // The whole body is checked before any value is made.
    c.skip();
    if (!c.atEnd()) corrupt("bytes follow the saved values");
    c.seek(0);
    out.values = readEntries(c, reader);
    return out;
  }
  // Versions 2 to 5: [values, object table], and from version 4 the saved
  // forms may follow. One pass over the body checks its form, reads the
  // heads and notes where each record's values start; the heads are handed
  // up first, so that the objects exist before any value refers to them.
  const Item top = c.next();
  if (top.kind != Kind::Array || top.size < 2 || top.size > (version >= 4 ? 3u : 2u))
    corrupt("the body is not values and objects");
  const std::size_t valuesAt = c.offset();
  c.skip();
  const Item table = c.next();
  if (table.kind != Kind::Array) corrupt("the object table is not a list");
  std::vector<vxSavedObjectHead> heads;
  heads.reserve(table.size);
  std::vector<std::size_t> fieldsAt;
  fieldsAt.reserve(table.size);
  for (std::uint32_t i = 0; i < table.size; ++i) {
    Reader::expectArray(c.next(), 4, "an object is not a class, an owner, a property and values");
    vxSavedObjectHead head;
    head.className = nameOf(c.next(), "an object's class name is not text");
    const Item owner = c.next();
    if (owner.kind == Kind::Negative && owner.i64 == -1) head.madeBy = -1;
    else if (owner.kind == Kind::Positive && owner.u64 < i) head.madeBy = static_cast<std::int64_t>(owner.u64);
    else corrupt("an object's owner is not an earlier object");
    const Item property = c.next();
    if (property.kind != Kind::Str || property.size > kMaxNameBytes) corrupt("an owner's property is not text");
    head.madeByProperty.assign(property.ptr, property.size);
    if ((head.madeBy >= 0) != !head.madeByProperty.empty()) corrupt("an owner without its property");
    fieldsAt.push_back(c.offset());
    if (c.next().kind != Kind::Array) corrupt("an object's values are not a list");
    c.seek(fieldsAt.back());
    c.skip();
    heads.push_back(std::move(head));
  }
  // Each saved form: [class, data type name, value].
  std::uint32_t formCount = 0;
  std::vector<std::pair<std::string, std::size_t>> formTypes;  // type name, where the value starts
  if (top.size == 3) {
    const Item forms = c.next();
    if (forms.kind != Kind::Array) corrupt("the saved forms are not a list");
    formCount = forms.size;
    formTypes.reserve(formCount);
    for (std::uint32_t i = 0; i < formCount; ++i) {
      Reader::expectArray(c.next(), 3, "a saved form is not a class, a type and a value");
      vxSavedObjectHead head;
      head.className = nameOf(c.next(), "a saved form's class name is not text");
      const Item type = c.next();
      if (type.kind != Kind::Str || type.size > kMaxNameBytes) corrupt("a saved form's type is not text");
      head.savedForm = true;
      formTypes.emplace_back(std::string(type.ptr, type.size), c.offset());
      c.skip();
      heads.push_back(std::move(head));
    }
  }
  if (!c.atEnd()) corrupt("bytes follow the saved values");
  if (!heads.empty()) {
    if (!options.makeObjects || !options.makeObjectArray) throw Error("VANTEL:vx:serialize:UnsupportedClass", "object");
    options.makeObjects(heads);
  }
  reader.objectCount = heads.size();
  c.seek(valuesAt);
  out.values = readEntries(c, reader);
  if (!options.takeObject) out.objects.reserve(table.size);
  // Records handed over one at a time are read into one list, reused.
  std::vector<vxNamedValue> taken;
  for (std::uint32_t i = 0; i < table.size; ++i) {
    c.seek(fieldsAt[i]);
    if (options.takeObject) {
      readEntriesInto(c, reader, taken);
      options.takeObject(i, taken);
    } else {
      out.objects.push_back({std::move(heads[i]), readEntries(c, reader)});
    }
  }
  out.forms.reserve(formCount);
  for (std::uint32_t i = 0; i < formCount; ++i) {
    c.seek(formTypes[i].second);
    out.forms.push_back({std::move(heads[table.size + i]), std::move(formTypes[i].first), reader.value(c, 0)});
  }
  return out;
}

std::vector<vxNamedValue> vxDeserializeValues(std::span<const std::uint8_t> bytes, const vxReadOptions& options) {
  return vxDeserializeDocument(bytes, options).values;
}

void vxWriteFileAtomically(const std::string& path, std::span<const std::uint8_t> bytes) {
  std::string tmp = path + ".tmpXXXXXX";
  const int fd = ::mkstemp(tmp.data());
  if (fd < 0) throw Error("VANTEL:vx:serialize:WriteFailed", path, std::strerror(errno));
  auto fail = [&](int err) {
    ::close(fd);
    ::unlink(tmp.c_str());
    throw Error("VANTEL:vx:serialize:WriteFailed", path, std::strerror(err));
  };
  std::size_t done = 0;
  while (done < bytes.size()) {
    const ssize_t w = ::write(fd, bytes.data() + done, bytes.size() - done);
    if (w < 0) {
      if (errno == EINTR) continue;
      fail(errno);
    }
    done += static_cast<std::size_t>(w);
  }
  ::fchmod(fd, 0644);
  if (::fsync(fd) != 0) fail(errno);
  if (::close(fd) != 0) {
    const int err = errno;
    ::unlink(tmp.c_str());
    throw Error("VANTEL:vx:serialize:WriteFailed", path, std::strerror(err));
  }
  if (std::rename(tmp.c_str(), path.c_str()) != 0) {
    const int err = errno;
    ::unlink(tmp.c_str());
    throw Error("VANTEL:vx:serialize:WriteFailed", path, std::strerror(err));
  }
}

void vxSaveValuesFile(const std::string& path, std::span<const std::pair<std::string, const vxArray*>> values) {
  vxWriteFileAtomically(path, vxSerializeValues(values));
}

std::vector<std::uint8_t> vxReadSavedFile(const std::string& path) {
  std::ifstream in(path, std::ios::binary | std::ios::ate);
  if (!in) throw Error("VANTEL:vx:serialize:ReadFailed", path);
  const std::streamoff size = in.tellg();
  if (size < 0) throw Error("VANTEL:vx:serialize:ReadFailed", path);
  if (static_cast<std::uint64_t>(size) > kMaxRawBytes + kHeaderBytes) throw Error("VANTEL:vx:serialize:TooLarge");
  std::vector<std::uint8_t> bytes(static_cast<std::size_t>(size));
  in.seekg(0);
  if (size && !in.read(reinterpret_cast<char*>(bytes.data()), size)) throw Error("VANTEL:vx:serialize:ReadFailed", path);
  return bytes;
}

std::vector<vxNamedValue> vxLoadValuesFile(const std::string& path, const vxReadOptions& options) {
  return vxDeserializeValues(vxReadSavedFile(path), options);
}
