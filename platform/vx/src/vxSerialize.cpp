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
#include <cstring>
#include <fstream>
#include <memory>
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

using Packer = msgpack::packer<msgpack::sbuffer>;

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

struct Reader {
  const vxReadOptions& options;
  std::uint64_t rawLength;  // every element costs at least one byte of it
  std::size_t objectCount = 0;  // entries of the object table
  std::uint32_t version = 1;    // of the file being read

  static const msgpack::object& at(const msgpack::object& o, std::size_t i) { return o.via.array.ptr[i]; }

  static void expectArray(const msgpack::object& o, std::size_t n, const char* what) {
    if (o.type != msgpack::type::ARRAY || o.via.array.size != n) corrupt(what);
  }

  static std::uint64_t unsignedOf(const msgpack::object& o, const char* what) {
    if (o.type != msgpack::type::POSITIVE_INTEGER) corrupt(what);
    return o.via.u64;
  }

  static std::u16string utf16Of(const msgpack::object& o) {
    if (o.type != msgpack::type::BIN || o.via.bin.size % 2) corrupt("a text element is not UTF-16");
    std::u16string s(o.via.bin.size / 2, u'\0');
    if (!s.empty()) std::memcpy(s.data(), o.via.bin.ptr, o.via.bin.size);
    return s;
  }

  matrix::unique_vxArray value(const msgpack::object& o, std::size_t depth) const {
    if (depth > kMaxDepth) corrupt("values are nested too deeply");
    expectArray(o, 4, "a value is not a four-element array");
    const std::uint64_t cls = unsignedOf(at(o, 0), "a class id is not a number");
    const msgpack::object& dimsObj = at(o, 1);
    if (dimsObj.type != msgpack::type::ARRAY || dimsObj.via.array.size < 2 || dimsObj.via.array.size > kMaxDims)
      corrupt("the dimensions are not a list of two to 32 sizes");
    // The sizes on the stack: a value read allocates only its array.
    std::array<vxSize, kMaxDims> dimsStore;
    const std::span<vxSize> dims(dimsStore.data(), dimsObj.via.array.size);
    std::uint64_t numel = 1;
    for (std::size_t d = 0; d < dims.size(); ++d) {
      const std::uint64_t n = unsignedOf(at(dimsObj, d), "a dimension is not a size");
      if (n > kMaxRawBytes) corrupt("a dimension is larger than the data");
      dims[d] = n;
      numel = numel == 0 ? 0 : (n > kMaxRawBytes / std::max<std::uint64_t>(numel, 1) ? kMaxRawBytes + 1 : numel * n);
      if (numel > rawLength) corrupt("the element count is larger than the data");
    }
    if (at(o, 2).type != msgpack::type::BOOLEAN) corrupt("the complexity is not a flag");
    const bool complex = at(o, 2).via.boolean;
    const msgpack::object& payload = at(o, 3);
    if (complex && !isNumericClass(static_cast<int>(cls))) corrupt("a complex value of a class that has none");

    switch (cls) {
      case vxLOGICAL_CLASS: {
        if (payload.type != msgpack::type::BIN || payload.via.bin.size != numel) corrupt("logical data of the wrong length");
        for (std::uint32_t i = 0; i < payload.via.bin.size; ++i)
          if (static_cast<std::uint8_t>(payload.via.bin.ptr[i]) > 1) corrupt("a logical element is neither 0 nor 1");
        matrix::unique_vxArray a(vxCreateLogicalArray(dims.size(), dims.data()));
        if (numel) std::memcpy(vxGetData(a.get()), payload.via.bin.ptr, numel);
        return a;
      }
      case vxCHAR_CLASS: {
        if (payload.type != msgpack::type::BIN || payload.via.bin.size != numel * 2) corrupt("char data of the wrong length");
        matrix::unique_vxArray a(vxCreateCharArray(dims.size(), dims.data()));
        if (numel) std::memcpy(vxGetData(a.get()), payload.via.bin.ptr, numel * 2);
        return a;
      }
      case vxSTRING_CLASS: {
        if (payload.type != msgpack::type::ARRAY || payload.via.array.size != numel) corrupt("string elements of the wrong count");
        std::vector<std::optional<std::u16string>> elems;
        for (std::uint64_t i = 0; i < numel; ++i) {
          const msgpack::object& e = at(payload, i);
          if (e.type == msgpack::type::NIL) elems.emplace_back();
          else elems.emplace_back(utf16Of(e));
        }
        if (dims.size() != 2) corrupt("a string array with more than two dimensions");
        matrix::unique_vxArray a(vxCreateStringArray(dims[0], dims[1]));
        for (std::uint64_t i = 0; i < numel; ++i) vxSetStringElement(a.get(), i, std::move(elems[i]));
        return a;
      }
      case vxCELL_CLASS: {
        if (payload.type != msgpack::type::ARRAY || payload.via.array.size != numel) corrupt("cell elements of the wrong count");
        matrix::unique_vxArray a(vxCreateCellArray(dims.size(), dims.data()));
        for (std::uint64_t i = 0; i < numel; ++i) {
          const msgpack::object& e = at(payload, i);
          if (e.type != msgpack::type::NIL) vxSetCell(a.get(), i, value(e, depth + 1).release());
        }
        return a;
      }
      case vxSTRUCT_CLASS: {
        expectArray(payload, 2, "struct data is not names and values");
        const msgpack::object& names = at(payload, 0);
        const msgpack::object& values = at(payload, 1);
        if (names.type != msgpack::type::ARRAY || names.via.array.size > 65535) corrupt("struct field names are not a list");
        std::vector<std::string> fieldNames;
        std::set<std::string> seen;
        for (std::uint32_t f = 0; f < names.via.array.size; ++f) {
          const msgpack::object& n = at(names, f);
          if (n.type != msgpack::type::STR || n.via.str.size == 0 || n.via.str.size > kMaxNameBytes) corrupt("a field name is not text");
          fieldNames.emplace_back(n.via.str.ptr, n.via.str.size);
          if (!seen.insert(fieldNames.back()).second) corrupt("a field name appears twice");
        }
        const std::uint64_t nf = fieldNames.size();
        if (values.type != msgpack::type::ARRAY || values.via.array.size != numel * nf) corrupt("struct values of the wrong count");
        std::vector<const char*> cnames;
        for (const std::string& n : fieldNames) cnames.push_back(n.c_str());
        matrix::unique_vxArray a;
        try {
          a.reset(vxCreateStructArray(dims.size(), dims.data(), static_cast<int>(nf), cnames.data()));
        } catch (const Error&) {
          corrupt("a field name is not a valid name");
        }
        for (std::uint64_t i = 0; i < numel; ++i)
          for (std::uint64_t f = 0; f < nf; ++f) {
            const msgpack::object& e = at(values, i * nf + f);
            if (e.type != msgpack::type::NIL) vxSetFieldByNumber(a.get(), i, static_cast<int>(f), value(e, depth + 1).release());
          }
        return a;
      }
      case vxFUNCTION_CLASS: {
        if (numel != 1 || dims.size() != 2) corrupt("a function handle that is not 1-by-1");
        // Version 3 adds [text, entries] for a handle with captured variables.
        const bool withCaptures = payload.type == msgpack::type::ARRAY && version >= 3;
        if (withCaptures) expectArray(payload, 2, "a function handle is not its text and its variables");
        const msgpack::object& textObject = withCaptures ? at(payload, 0) : payload;
        if (textObject.type != msgpack::type::STR || textObject.via.str.size == 0) corrupt("a function handle without text");
        std::string handleText(textObject.via.str.ptr, textObject.via.str.size);
        if (withCaptures) {
          const msgpack::object& list = at(payload, 1);
          if (list.type != msgpack::type::ARRAY || list.via.array.size == 0) corrupt("a function handle's variables are not a list");
          std::vector<vxNamedValue> captured;
          for (std::uint32_t k = 0; k < list.via.array.size; ++k) {
            const msgpack::object& entry = at(list, k);
            expectArray(entry, 2, "a captured variable is not a name and a value");
            const msgpack::object& name = at(entry, 0);
            if (name.type != msgpack::type::STR || name.via.str.size == 0 || name.via.str.size > kMaxNameBytes)
              corrupt("a captured variable's name is not text");
            captured.push_back({std::string(name.via.str.ptr, name.via.str.size), value(at(entry, 1), depth + 1)});
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
      if (cls == vxOBJECT_CLASS) return objects(payload, dims, numel);
      corrupt("an unknown class id");
    }
    const std::uint64_t bytes = numel * realElementBytes(static_cast<int>(cls)) * (complex ? 2 : 1);
    if (payload.type != msgpack::type::BIN || payload.via.bin.size != bytes) corrupt("numeric data of the wrong length");
    matrix::unique_vxArray a(vxCreateNumericArray(dims.size(), dims.data(), static_cast<vxClassID>(cls),
                                                  complex ? vxCOMPLEX : vxREAL));
    if (bytes) std::memcpy(vxGetData(a.get()), payload.via.bin.ptr, bytes);
    return a;
  }

  // An object array: [class name, indexes into the object table].
  matrix::unique_vxArray objects(const msgpack::object& payload, std::span<const vxSize> dims,
                                 std::uint64_t numel) const {
    if (!options.makeObjectArray) throw Error("VANTEL:vx:serialize:UnsupportedClass", "object");
    expectArray(payload, 2, "object data is not a class and indexes");
    const msgpack::object& name = at(payload, 0);
    const msgpack::object& list = at(payload, 1);
    if (name.type != msgpack::type::STR || name.via.str.size == 0 || name.via.str.size > kMaxNameBytes)
      corrupt("an object class name is not text");
    if (list.type != msgpack::type::ARRAY || list.via.array.size != numel) corrupt("object elements of the wrong count");
    std::vector<std::int64_t> indexes(numel);
    for (std::uint64_t i = 0; i < numel; ++i) {
      const msgpack::object& e = at(list, i);
      if (e.type == msgpack::type::NEGATIVE_INTEGER && e.via.i64 == -1) indexes[i] = -1;
      else if (e.type == msgpack::type::POSITIVE_INTEGER && e.via.u64 < objectCount) indexes[i] = static_cast<std::int64_t>(e.via.u64);
      else corrupt("an object index outside the object table");
    }
    matrix::unique_vxArray a(options.makeObjectArray(std::string(name.via.str.ptr, name.via.str.size), dims, indexes));
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

std::vector<std::uint8_t> frame(const msgpack::sbuffer& buffer, std::uint32_t version) {
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

std::string nameOf(const msgpack::object& o, const char* what) {
  if (o.type != msgpack::type::STR || o.via.str.size == 0 || o.via.str.size > kMaxNameBytes) corrupt(what);
  return std::string(o.via.str.ptr, o.via.str.size);
}

std::vector<vxNamedValue> readEntries(const msgpack::object& list, const Reader& reader) {
  if (list.type != msgpack::type::ARRAY) corrupt("the body is not a list of values");
  std::vector<vxNamedValue> out;
  out.reserve(list.via.array.size);
  for (std::uint32_t i = 0; i < list.via.array.size; ++i) {
    const msgpack::object& entry = list.via.array.ptr[i];
    Reader::expectArray(entry, 2, "an entry is not a name and a value");
    std::string name = nameOf(entry.via.array.ptr[0], "a value's name is not text");
    out.push_back({std::move(name), reader.value(entry.via.array.ptr[1], 0)});
  }
  return out;
}

}  // namespace

std::vector<std::uint8_t> vxSerializeValues(std::span<const std::pair<std::string, const vxArray*>> values) {
  msgpack::sbuffer buffer;
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
  msgpack::sbuffer buffer;
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
  msgpack::sbuffer& buffer = state_->buffer;
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
  msgpack::sbuffer buffer;
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
  msgpack::object_handle handle;
  try {
    // Counts can be no larger than the bytes that hold them.
    const std::size_t n = raw.size();
    msgpack::unpack_limit limit(n, n, n, n, 0, kMaxDepth * 2 + 8);
    std::size_t offset = 0;
    // Texts and byte strings point into `raw`, which outlives the tree,
    // rather than being copied into it.
    const auto inPlace = [](msgpack::type::object_type, std::size_t, void*) { return true; };
    handle = msgpack::unpack(reinterpret_cast<const char*>(raw.data()), raw.size(), offset, inPlace, nullptr, limit);
    if (offset != raw.size()) corrupt("bytes follow the saved values");
  } catch (const Error&) {
    throw;
  } catch (const std::exception&) {
    corrupt("the body is not well-formed");
  }
  const msgpack::object& top = handle.get();
  Reader reader{options, raw.size()};
  reader.version = version;
  vxSavedDocument out;
  if (version == 1) {
    out.values = readEntries(top, reader);
    return out;
  }
  // Versions 2 to 5: [values, object table], and from version 4 the saved
  // forms may follow. The heads are checked and handed up first, so that the
  // objects exist before any value refers to them.
  if (top.type != msgpack::type::ARRAY || top.via.array.size < 2 || top.via.array.size > (version >= 4 ? 3u : 2u))
    corrupt("the body is not values and objects");
  const msgpack::object& table = Reader::at(top, 1);
  if (table.type != msgpack::type::ARRAY) corrupt("the object table is not a list");
  static const msgpack::object noForms = [] {
    msgpack::object o;
    o.type = msgpack::type::ARRAY;
    o.via.array.size = 0;
    o.via.array.ptr = nullptr;
    return o;
  }();
  const msgpack::object& forms = top.via.array.size == 3 ? Reader::at(top, 2) : noForms;
  if (forms.type != msgpack::type::ARRAY) corrupt("the saved forms are not a list");
  std::vector<vxSavedObjectHead> heads;
  heads.reserve(table.via.array.size);
  for (std::uint32_t i = 0; i < table.via.array.size; ++i) {
    const msgpack::object& record = Reader::at(table, i);
    Reader::expectArray(record, 4, "an object is not a class, an owner, a property and values");
    vxSavedObjectHead head;
    head.className = nameOf(Reader::at(record, 0), "an object's class name is not text");
    const msgpack::object& owner = Reader::at(record, 1);
    if (owner.type == msgpack::type::NEGATIVE_INTEGER && owner.via.i64 == -1) head.madeBy = -1;
    else if (owner.type == msgpack::type::POSITIVE_INTEGER && owner.via.u64 < i) head.madeBy = static_cast<std::int64_t>(owner.via.u64);
    else corrupt("an object's owner is not an earlier object");
    const msgpack::object& property = Reader::at(record, 2);
    if (property.type != msgpack::type::STR || property.via.str.size > kMaxNameBytes) corrupt("an owner's property is not text");
    head.madeByProperty.assign(property.via.str.ptr, property.via.str.size);
    if ((head.madeBy >= 0) != !head.madeByProperty.empty()) corrupt("an owner without its property");
    if (Reader::at(record, 3).type != msgpack::type::ARRAY) corrupt("an object's values are not a list");
    heads.push_back(std::move(head));
  }
  // Each saved form: [class, data type name, value].
  for (std::uint32_t i = 0; i < forms.via.array.size; ++i) {
    const msgpack::object& form = Reader::at(forms, i);
    Reader::expectArray(form, 3, "a saved form is not a class, a type and a value");
    vxSavedObjectHead head;
    head.className = nameOf(Reader::at(form, 0), "a saved form's class name is not text");
    const msgpack::object& type = Reader::at(form, 1);
    if (type.type != msgpack::type::STR || type.via.str.size > kMaxNameBytes) corrupt("a saved form's type is not text");
    head.savedForm = true;
    heads.push_back(std::move(head));
  }
  if (!heads.empty()) {
    if (!options.makeObjects || !options.makeObjectArray) throw Error("VANTEL:vx:serialize:UnsupportedClass", "object");
    options.makeObjects(heads);
  }
  reader.objectCount = heads.size();
  out.values = readEntries(Reader::at(top, 0), reader);
  out.objects.reserve(heads.size());
  for (std::uint32_t i = 0; i < table.via.array.size; ++i)
    out.objects.push_back({std::move(heads[i]), readEntries(Reader::at(Reader::at(table, i), 3), reader)});
  out.forms.reserve(forms.via.array.size);
  for (std::uint32_t i = 0; i < forms.via.array.size; ++i) {
    const msgpack::object& form = Reader::at(forms, i);
    const msgpack::object& type = Reader::at(form, 1);
    out.forms.push_back({std::move(heads[table.via.array.size + i]), std::string(type.via.str.ptr, type.via.str.size),
                         reader.value(Reader::at(form, 2), 0)});
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
