// Saved values: every class round-trips bit-exactly, and damaged or hostile
// bytes raise the reader's identifiers without handing back anything.
#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <limits>

#define MSGPACK_NO_BOOST 1
#include <msgpack.hpp>

#include <foundation/core/except/Error.h>
#include <vx/vx.h>
#include <vx/vxFunctionHandleData.h>
#include <vx/vxObjectStorage.h>
#include <vx/vxSerialize.h>

using foundation::core::except::Error;
using matrix::from_vantel;
using matrix::unique_vxArray;

namespace {

class TextHandle final : public vxFunctionHandleData {
 public:
  explicit TextHandle(std::string t) : text_(std::move(t)) {}
  std::string text() const override { return text_; }

 private:
  std::string text_;
};

vxReadOptions withHandles() {
  return {[](const std::string& t) { return vxCreateFunctionHandle(std::make_shared<TextHandle>(t)); }};
}

using Entries = std::vector<std::pair<std::string, const vxArray*>>;

// Same class, shape, complexity and bytes, recursively.
bool sameBits(const vxArray* a, const vxArray* b) {
  if (!a || !b) return a == b;
  if (vxGetClassID(a) != vxGetClassID(b) || vxIsComplex(a) != vxIsComplex(b)) return false;
  if (vxGetNumberOfDimensions(a) != vxGetNumberOfDimensions(b)) return false;
  const vxSize n = vxGetNumberOfElements(a);
  for (vxSize d = 0; d < vxGetNumberOfDimensions(a); ++d)
    if (vxGetDimensions(a)[d] != vxGetDimensions(b)[d]) return false;
  switch (vxGetClassID(a)) {
    case vxCELL_CLASS:
      for (vxSize i = 0; i < n; ++i)
        if (!sameBits(vxGetCell(a, i), vxGetCell(b, i))) return false;
      return true;
    case vxSTRUCT_CLASS:
      if (vxGetNumberOfFields(a) != vxGetNumberOfFields(b)) return false;
      for (int f = 0; f < vxGetNumberOfFields(a); ++f) {
        if (std::strcmp(vxGetFieldNameByNumber(a, f), vxGetFieldNameByNumber(b, f)) != 0) return false;
        for (vxSize i = 0; i < n; ++i)
          if (!sameBits(vxGetFieldByNumber(a, i, f), vxGetFieldByNumber(b, i, f))) return false;
      }
      return true;
    case vxSTRING_CLASS:
      for (vxSize i = 0; i < n; ++i)
        if (vxGetStringElement(a, i) != vxGetStringElement(b, i)) return false;
      return true;
    case vxFUNCTION_CLASS:
      return vxGetFunctionHandle(a)->text() == vxGetFunctionHandle(b)->text();
    default:
      return n == 0 || std::memcmp(vxGetData(a), vxGetData(b), n * vxGetElementSize(a)) == 0;
  }
}

std::vector<vxNamedValue> roundTrip(const Entries& entries) {
  return vxDeserializeValues(vxSerializeValues(entries), withHandles());
}

std::string idOf(const std::function<void()>& f) {
  try {
    f();
  } catch (const Error& e) {
    return e.identifier();
  }
  return "";
}

unique_vxArray doubles(std::initializer_list<double> values) {
  unique_vxArray a = from_vantel(vxCreateDoubleMatrix(1, values.size(), vxREAL));
  std::copy(values.begin(), values.end(), vxGetPr(a.get()));
  return a;
}

// A small set of values of several classes, used by the damage sweeps.
struct Sample {
  unique_vxArray num = doubles({1.5, -0.0, std::numeric_limits<double>::infinity()});
  unique_vxArray text = from_vantel(vxCreateString("saved text"));
  unique_vxArray cell = from_vantel(vxCreateCellMatrix(1, 2));
  Sample() { vxSetCell(cell.get(), 0, vxCreateString("inner")); }
  Entries entries() const { return {{"num", num.get()}, {"text", text.get()}, {"cell", cell.get()}}; }
};

// Frames a MessagePack body the way the writer does (uncompressed), so the
// reader's structural checks are reached past the checksum.
std::vector<std::uint8_t> frame(const msgpack::sbuffer& body, std::uint32_t version = 1) {
  std::vector<std::uint8_t> out = {'S', 'G', 'V', 'X', 'D', 'A', 'T', 0x1a};
  auto put = [&](std::uint64_t v, int n) {
    for (int i = 0; i < n; ++i) out.push_back(static_cast<std::uint8_t>(v >> (8 * i)));
  };
  std::uint64_t h = 0xcbf29ce484222325ULL;
  for (std::size_t i = 0; i < body.size(); ++i) {
    h ^= static_cast<std::uint8_t>(body.data()[i]);
    h *= 0x100000001b3ULL;
  }
  put(version, 4);
  put(0, 4);
  put(body.size(), 8);
  put(body.size(), 8);
  put(h, 8);
  out.insert(out.end(), body.data(), body.data() + body.size());
  return out;
}

// One named value whose encoding the test writes by hand.
template <typename F>
std::vector<std::uint8_t> handMade(F&& writeValue) {
  msgpack::sbuffer body;
  msgpack::packer<msgpack::sbuffer> pk(body);
  pk.pack_array(1);
  pk.pack_array(2);
  pk.pack(std::string("v"));
  writeValue(pk);
  return frame(body);
}

}  // namespace

TEST(Serialize, EveryValueClassRoundTripsBitExactly) {
  std::vector<unique_vxArray> keep;
  Entries entries;
  auto add = [&](const char* name, unique_vxArray a) {
    entries.emplace_back(name, a.get());
    keep.push_back(std::move(a));
  };
  // Doubles: a NaN with a payload, -0, infinities, a 2-by-3-by-2 array.
  unique_vxArray d = doubles({std::bit_cast<double>(0x7ff80000deadbeefULL), -0.0,
                              -std::numeric_limits<double>::infinity(), 4.25});
  add("d", std::move(d));
  const vxSize nd[] = {2, 3, 2};
  unique_vxArray cube = from_vantel(vxCreateNumericArray(3, nd, vxDOUBLE_CLASS, vxREAL));
  for (vxSize i = 0; i < 12; ++i) vxGetPr(cube.get())[i] = static_cast<double>(i) / 3;
  add("cube", std::move(cube));
  const vxSize emptyDims[] = {2, 0, 4};
  add("emptyNd", from_vantel(vxCreateNumericArray(3, emptyDims, vxINT16_CLASS, vxREAL)));
  add("empty0x3", from_vantel(vxCreateDoubleMatrix(0, 3, vxREAL)));
  // Every integer class at its extremes, and single and double complex.
  for (int c = vxSINGLE_CLASS; c <= vxUINT64_CLASS; ++c) {
    unique_vxArray a = from_vantel(vxCreateNumericMatrix(1, 2, static_cast<vxClassID>(c), vxREAL));
    std::memset(vxGetData(a.get()), 0xff, vxGetElementSize(a.get()));
    std::memset(static_cast<char*>(vxGetData(a.get())) + vxGetElementSize(a.get()), 0x80, 1);
    add(("int" + std::to_string(c)).c_str(), std::move(a));
  }
  unique_vxArray z = from_vantel(vxCreateNumericMatrix(2, 1, vxSINGLE_CLASS, vxCOMPLEX));
  static_cast<float*>(vxGetData(z.get()))[1] = -2.5f;
  add("zs", std::move(z));
  unique_vxArray zd = from_vantel(vxCreateDoubleMatrix(1, 1, vxCOMPLEX));
  vxGetComplexDoubles(zd.get())[0] = {1.0, -0.0};
  add("zd", std::move(zd));
  // Logical, UTF-16 text with a surrogate pair, strings with a missing one.
  unique_vxArray l = from_vantel(vxCreateLogicalMatrix(2, 2));
  vxGetLogicals(l.get())[3] = true;
  add("l", std::move(l));
  add("c", matrix::create(u"a\U0001F600\u00e9"));
  unique_vxArray s = from_vantel(vxCreateStringArray(1, 3));
  vxSetStringElement(s.get(), 0, u"x\u4e2d");
  vxSetStringElement(s.get(), 2, u"");
  add("s", std::move(s));
  // A cell with an empty slot and a nested cell; a struct row with an unset field.
  unique_vxArray cell = from_vantel(vxCreateCellMatrix(2, 2));
  unique_vxArray inner = from_vantel(vxCreateCellMatrix(1, 1));
  vxSetCell(inner.get(), 0, vxCreateLogicalScalar(true));
  vxSetCell(cell.get(), 1, inner.release());
  vxSetCell(cell.get(), 3, vxCreateString("t"));
  add("cell", std::move(cell));
  const char* fields[] = {"a", "b"};
  unique_vxArray st = from_vantel(vxCreateStructMatrix(1, 2, 2, fields));
  vxSetField(st.get(), 1, "a", vxCreateDoubleScalar(7));
  add("st", std::move(st));
  add("noFields", from_vantel(vxCreateStructMatrix(0, 0, 0, nullptr)));
  add("fh", from_vantel(vxCreateFunctionHandle(std::make_shared<TextHandle>("@(x)x+1"))));

  std::vector<vxNamedValue> back = roundTrip(entries);
  ASSERT_EQ(back.size(), entries.size());
  for (std::size_t i = 0; i < back.size(); ++i) {
    EXPECT_EQ(back[i].name, entries[i].first);
    EXPECT_TRUE(sameBits(back[i].value.get(), entries[i].second)) << entries[i].first;
  }
}

TEST(Serialize, FramesCompressWhenItPaysAndRefuseWhatTheyCannotHold) {
  unique_vxArray big = from_vantel(vxCreateDoubleMatrix(1, 10000, vxREAL));
  unique_vxArray small = from_vantel(vxCreateDoubleScalar(3));
  const std::vector<std::uint8_t> bigBytes = vxSerializeValues(Entries{{"big", big.get()}});
  const std::vector<std::uint8_t> smallBytes = vxSerializeValues(Entries{{"small", small.get()}});
  EXPECT_LT(bigBytes.size(), 1000u) << "zeros compress";
  EXPECT_EQ(bigBytes[12], 1) << "the zstd flag";
  EXPECT_EQ(smallBytes[12], 0) << "a scalar is stored as it is";
  EXPECT_TRUE(sameBits(vxDeserializeValues(bigBytes, {})[0].value.get(), big.get()));

  unique_vxArray objects = from_vantel(vxCreateObjectMatrix(0, 0, nullptr));
  EXPECT_EQ(idOf([&] { vxSerializeValues(Entries{{"o", objects.get()}}); }), "VANTEL:vx:serialize:UnsupportedClass");
  unique_vxArray fh = from_vantel(vxCreateFunctionHandle(std::make_shared<TextHandle>("@sin")));
  const std::vector<std::uint8_t> fhBytes = vxSerializeValues(Entries{{"f", fh.get()}});
  EXPECT_EQ(idOf([&] { vxDeserializeValues(fhBytes, {}); }), "VANTEL:vx:serialize:NoFunctionHandles");
}

// The frame's checksum is the byte-wise FNV-1a of the body, whatever the
// body's length (the reader takes eight bytes at a time, then the rest); the
// writer's header holds the same sum.
TEST(Serialize, TheChecksumIsByteWiseFnv1aForEveryBodyLength) {
  const auto fnv1a = [](const std::uint8_t* p, std::size_t n) {
    std::uint64_t h = 0xcbf29ce484222325ULL;
    for (std::size_t i = 0; i < n; ++i) h = (h ^ p[i]) * 0x100000001b3ULL;
    return h;
  };
  const auto load = [](const std::vector<std::uint8_t>& b) { return idOf([&] { vxDeserializeValues(b, {}); }); };
  for (std::size_t n = 0; n <= 25; ++n) {
    msgpack::sbuffer body;
    for (std::size_t i = 0; i < n; ++i) body.write(std::string(1, static_cast<char>(0x80 + 37 * i)).data(), 1);
    std::vector<std::uint8_t> bytes = frame(body);
    // Past the checksum the body is no list of values (or too short to be one).
    EXPECT_NE(load(bytes), "VANTEL:vx:serialize:ChecksumMismatch") << n << " bytes";
    bytes[32] ^= 1;
    EXPECT_EQ(load(bytes), "VANTEL:vx:serialize:ChecksumMismatch") << n << " bytes";
  }
  unique_vxArray text = from_vantel(vxCreateString("seventeen letters"));
  const std::vector<std::uint8_t> saved = vxSerializeValues(Entries{{"t", text.get()}});
  ASSERT_EQ(saved[12], 0) << "stored as it is";
  std::uint64_t sum = 0;
  for (int i = 7; i >= 0; --i) sum = (sum << 8) | saved[32 + i];
  EXPECT_EQ(sum, fnv1a(saved.data() + 40, saved.size() - 40));
}

TEST(Serialize, EveryTruncationAndByteChangeLoadsTheSameOrFailsWithAnIdentifier) {
  Sample sample;
  const std::vector<std::uint8_t> good = vxSerializeValues(sample.entries());
  auto check = [&](const std::vector<std::uint8_t>& bytes, const std::string& what) {
    try {
      std::vector<vxNamedValue> back = vxDeserializeValues(bytes, {});
      ASSERT_EQ(back.size(), 3u) << what;
      for (std::size_t i = 0; i < 3; ++i) EXPECT_TRUE(sameBits(back[i].value.get(), sample.entries()[i].second)) << what;
    } catch (const Error& e) {
      EXPECT_EQ(e.identifier().rfind("VANTEL:vx:serialize:", 0), 0u) << what << ": " << e.identifier();
    }
  };
  for (std::size_t n = 0; n < good.size(); ++n)
    check(std::vector<std::uint8_t>(good.begin(), good.begin() + static_cast<std::ptrdiff_t>(n)), "cut at " + std::to_string(n));
  for (std::size_t i = 0; i < good.size(); ++i)
    for (std::uint8_t flip : {0x01, 0x80, 0xff}) {
      std::vector<std::uint8_t> bytes = good;
      bytes[i] ^= flip;
      check(bytes, "byte " + std::to_string(i));
    }
}

TEST(Serialize, TheReaderChecksStructureBeforeItAllocates) {
  using Pk = msgpack::packer<msgpack::sbuffer>;
  auto header = [](Pk& pk, int cls, std::initializer_list<std::uint64_t> dims, bool complex = false) {
    pk.pack_array(4);
    pk.pack(cls);
    pk.pack_array(static_cast<std::uint32_t>(dims.size()));
    for (std::uint64_t d : dims) pk.pack(d);
    pk.pack(complex);
  };
  const std::string corrupt = "VANTEL:vx:serialize:Corrupt";
  auto load = [](const std::vector<std::uint8_t>& b) { return idOf([&] { vxDeserializeValues(b, {}); }); };

  // A hand-made value the reader accepts: the frame in the test matches the writer's.
  EXPECT_EQ(load(handMade([&](Pk& pk) { header(pk, vxDOUBLE_CLASS, {1, 1}); double x = 2; pk.pack_bin(8); pk.pack_bin_body(reinterpret_cast<const char*>(&x), 8); })), "");
  // Huge claimed sizes with little data behind them.
  EXPECT_EQ(load(handMade([&](Pk& pk) { header(pk, vxDOUBLE_CLASS, {1u << 20, 1u << 20}); pk.pack_bin(0); })), corrupt);
  EXPECT_EQ(load(handMade([&](Pk& pk) { header(pk, vxDOUBLE_CLASS, {~0ULL, 0}); pk.pack_bin(0); })), corrupt);
  EXPECT_EQ(load(handMade([&](Pk& pk) { header(pk, vxCELL_CLASS, {1000, 1000}); pk.pack_array(0); })), corrupt);
  EXPECT_EQ(load(handMade([&](Pk& pk) {
              header(pk, vxSTRUCT_CLASS, {1u << 20, 1u << 9});
              pk.pack_array(2);
              pk.pack_array(0);
              pk.pack_array(0);
            })),
            corrupt)
      << "a struct without fields takes no bytes per element, yet cannot claim more elements than bytes";
  // Payloads that do not fit their class.
  EXPECT_EQ(load(handMade([&](Pk& pk) { header(pk, vxLOGICAL_CLASS, {1, 1}); pk.pack_bin(1); pk.pack_bin_body("\x02", 1); })), corrupt);
  EXPECT_EQ(load(handMade([&](Pk& pk) { header(pk, vxCHAR_CLASS, {1, 1}); pk.pack_bin(3); pk.pack_bin_body("abc", 3); })), corrupt);
  EXPECT_EQ(load(handMade([&](Pk& pk) { header(pk, vxCHAR_CLASS, {1, 1}, true); pk.pack_bin(2); pk.pack_bin_body("ab", 2); })), corrupt);
  EXPECT_EQ(load(handMade([&](Pk& pk) { header(pk, 99, {1, 1}); pk.pack_bin(0); })), corrupt);
  EXPECT_EQ(load(handMade([&](Pk& pk) { header(pk, vxDOUBLE_CLASS, {1}); pk.pack_bin(8); pk.pack_bin_body("12345678", 8); })), corrupt);
  EXPECT_EQ(load(handMade([&](Pk& pk) {
              header(pk, vxSTRUCT_CLASS, {1, 1});
              pk.pack_array(2);
              pk.pack_array(2);
              pk.pack(std::string("a"));
              pk.pack(std::string("a"));
              pk.pack_array(2);
              pk.pack_nil();
              pk.pack_nil();
            })),
            corrupt);
  EXPECT_EQ(load(handMade([&](Pk& pk) {
              header(pk, vxSTRUCT_CLASS, {1, 1});
              pk.pack_array(2);
              pk.pack_array(1);
              pk.pack(std::string("not a name"));
              pk.pack_array(1);
              pk.pack_nil();
            })),
            corrupt);
  // Nesting deeper than the reader follows.
  EXPECT_EQ(load(handMade([&](Pk& pk) {
              for (int i = 0; i < 200; ++i) {
                header(pk, vxCELL_CLASS, {1, 1});
                pk.pack_array(1);
              }
              pk.pack_nil();
            })),
            corrupt);
  // Frames: a newer version, a wrong magic number, extra bytes.
  msgpack::sbuffer empty;
  msgpack::packer<msgpack::sbuffer>(empty).pack_array(0);
  EXPECT_EQ(load(frame(empty)), "");
  EXPECT_EQ(load(frame(empty, vxSerializeFormatVersion + 1)), "VANTEL:vx:serialize:NewerVersion");
  std::vector<std::uint8_t> bytes = frame(empty);
  bytes[0] = 'X';
  EXPECT_EQ(load(bytes), "VANTEL:vx:serialize:NotSavedData");
  bytes = frame(empty);
  bytes.push_back(0);
  EXPECT_EQ(load(bytes), "VANTEL:vx:serialize:Truncated");
}

// The object table of version 2, as the layer above sees it through the
// callbacks: heads first and in order, indexes checked against the table,
// owners only earlier objects; plain values stay version 1.
TEST(Serialize, AnObjectTableIsHandedUpBeforeAnyValueAndChecked) {
  Sample s;
  EXPECT_EQ(vxSerializeValues(s.entries())[8], 1);
  // A table without object arrays in its values: the heads and fields come back.
  unique_vxArray tag = from_vantel(vxCreateString("t"));
  const std::vector<vxSavedObjectView> table = {{{"a.Owner", -1, ""}, {{"Tag", tag.get()}}},
                                                {{"a.Part", 0, "Title"}, {}}};
  const std::vector<std::uint8_t> bytes = vxSerializeDocument(s.entries(), table, {});
  EXPECT_EQ(bytes[8], vxSerializeObjectTableVersion);
  std::vector<std::string> order;
  vxReadOptions options;
  options.makeObjects = [&](std::span<const vxSavedObjectHead> heads) {
    for (const vxSavedObjectHead& h : heads) order.push_back(h.className + ":" + std::to_string(h.madeBy) + h.madeByProperty);
  };
  options.makeObjectArray = [](const std::string&, std::span<const vxSize>, std::span<const std::int64_t>) -> vxArray* {
    return nullptr;
  };
  const vxSavedDocument doc = vxDeserializeDocument(bytes, options);
  EXPECT_EQ(order, (std::vector<std::string>{"a.Owner:-1", "a.Part:0Title"}));
  ASSERT_EQ(doc.objects.size(), 2u);
  ASSERT_EQ(doc.objects[0].fields.size(), 1u);
  EXPECT_EQ(vxArrayToStdString(doc.objects[0].fields[0].value.get()), "t");
  EXPECT_EQ(doc.values.size(), 3u);
  // A reader that makes no objects refuses a table.
  EXPECT_EQ(idOf([&] { vxDeserializeDocument(bytes, {}); }), "VANTEL:vx:serialize:UnsupportedClass");

  // The record-by-record writer gives the same bytes, and refuses a table
  // that does not hold the records it announced.
  {
    vxDocumentWriter writer(s.entries(), 2, {});
    const vxDocumentWriter::Field fields[] = {{"Tag", tag.get()}};
    writer.addObject("a.Owner", -1, "", fields);
    writer.addObject("a.Part", 0, "Title", {});
    EXPECT_EQ(writer.finish(), bytes);
    EXPECT_EQ(idOf([&] { writer.addObject("a.Extra", -1, "", {}); }), "VANTEL:vx:serialize:Corrupt");
  }
  EXPECT_EQ(idOf([&] { vxDocumentWriter(s.entries(), 1, {}).finish(); }), "VANTEL:vx:serialize:Corrupt");

  // Hand-made tables: an owner that is not earlier, an index outside the table.
  using Pk = msgpack::packer<msgpack::sbuffer>;
  auto document = [](std::int64_t owner, std::int64_t index) {
    msgpack::sbuffer body;
    Pk pk(body);
    pk.pack_array(2);
    pk.pack_array(1);  // one value: a 1-by-1 object array
    pk.pack_array(2);
    pk.pack(std::string("o"));
    pk.pack_array(4);
    pk.pack(static_cast<int>(vxOBJECT_CLASS));
    pk.pack_array(2);
    pk.pack(1);
    pk.pack(1);
    pk.pack(false);
    pk.pack_array(2);
    pk.pack(std::string("a.Owner"));
    pk.pack_array(1);
    pk.pack(index);
    pk.pack_array(1);  // the table
    pk.pack_array(4);
    pk.pack(std::string("a.Owner"));
    pk.pack(owner);
    pk.pack(std::string(owner < 0 ? "" : "Title"));
    pk.pack_array(0);
    return frame(body, vxSerializeFormatVersion);
  };
  int arrays = 0;
  options.makeObjects = [](std::span<const vxSavedObjectHead>) {};
  options.makeObjectArray = [&](const std::string&, std::span<const vxSize>, std::span<const std::int64_t> indexes) {
    ++arrays;
    EXPECT_EQ(indexes.size(), 1u);
    return vxCreateDoubleMatrix(0, 0, vxREAL);
  };
  EXPECT_EQ(idOf([&] { vxDeserializeDocument(document(-1, 0), options); }), "");
  EXPECT_EQ(idOf([&] { vxDeserializeDocument(document(-1, -1), options); }), "");
  EXPECT_EQ(arrays, 2);
  EXPECT_EQ(idOf([&] { vxDeserializeDocument(document(-1, 1), options); }), "VANTEL:vx:serialize:Corrupt");
  EXPECT_EQ(idOf([&] { vxDeserializeDocument(document(0, 0), options); }), "VANTEL:vx:serialize:Corrupt");
  EXPECT_EQ(arrays, 2);
}

TEST(Serialize, AFailedSaveLeavesThePreviousFileAndNoTemporaryFile) {
  namespace fs = std::filesystem;
  const fs::path dir = fs::temp_directory_path() / ("sg-serialize-" + std::to_string(::getpid()));
  fs::create_directories(dir);
  const std::string path = (dir / "values.sgd").string();
  Sample sample;
  vxSaveValuesFile(path, sample.entries());
  const auto before = fs::file_size(path);

  unique_vxArray objects = from_vantel(vxCreateObjectMatrix(0, 0, nullptr));
  EXPECT_EQ(idOf([&] { vxSaveValuesFile(path, Entries{{"o", objects.get()}}); }), "VANTEL:vx:serialize:UnsupportedClass");
  EXPECT_EQ(idOf([&] { vxSaveValuesFile((dir / "missing" / "x.sgd").string(), sample.entries()); }),
            "VANTEL:vx:serialize:WriteFailed");
  EXPECT_EQ(fs::file_size(path), before);
  std::vector<vxNamedValue> back = vxLoadValuesFile(path, {});
  ASSERT_EQ(back.size(), 3u);
  EXPECT_TRUE(sameBits(back[2].value.get(), sample.cell.get()));
  EXPECT_EQ(std::distance(fs::directory_iterator(dir), fs::directory_iterator()), 1);
  EXPECT_EQ(idOf([&] { vxLoadValuesFile((dir / "absent.sgd").string(), {}); }), "VANTEL:vx:serialize:ReadFailed");
  fs::remove_all(dir);
}

// The writer uses the shortest MessagePack heads, but the reader takes every
// form of a head that holds the same thing (a size in a wider or a signed
// integer, a name or bytes behind a longer length), and refuses the kinds
// the format never holds (floats, maps, extensions, the unused byte) and
// counts or lengths that run past the body.
TEST(Serialize, TheReaderTakesEveryFormOfAHeadAndRefusesWhatTheBodyCannotHold) {
  using Pk = msgpack::packer<msgpack::sbuffer>;
  const std::string corrupt = "VANTEL:vx:serialize:Corrupt";
  auto load = [](const std::vector<std::uint8_t>& b) { return idOf([&] { vxDeserializeValues(b, {}); }); };
  // One named value written by hand after a head of `headBytes`.
  auto entry = [](const std::string& headBytes, const std::function<void(Pk&)>& rest) {
    msgpack::sbuffer body;
    Pk pk(body);
    pk.pack_array(1);
    pk.pack_array(2);
    pk.pack(std::string("v"));
    body.write(headBytes.data(), headBytes.size());
    rest(pk);
    return frame(body);
  };
  const double two = 2;
  auto doubleBytes = [&](Pk& pk) {
    pk.pack_bin(8);
    pk.pack_bin_body(reinterpret_cast<const char*>(&two), 8);
  };
  {
    // Class id as uint16, dimensions as int8 and int64, the flag, then the
    // bytes behind a bin32 head.
    msgpack::sbuffer body;
    Pk pk(body);
    pk.pack_array(1);
    pk.pack_array(2);
    body.write("\xd9\x01v", 3);  // the name as str8
    pk.pack_array(4);
    pk.pack_fix_uint16(vxDOUBLE_CLASS);
    pk.pack_array(2);
    pk.pack_fix_int8(1);
    pk.pack_fix_int64(1);
    pk.pack(false);
    body.write("\xc6\0\0\0\x08", 5);
    body.write(reinterpret_cast<const char*>(&two), 8);
    std::vector<vxNamedValue> back = vxDeserializeValues(frame(body), {});
    ASSERT_EQ(back.size(), 1u);
    EXPECT_EQ(back[0].name, "v");
    ASSERT_TRUE(vxIsDouble(back[0].value.get()));
    EXPECT_EQ(vxGetScalar(back[0].value.get()), 2);
  }
  // A negative size, a float for a size, a map, an extension and the unused
  // byte where a value's head is due.
  auto value = [&](const std::function<void(Pk&)>& dims) {
    return entry("", [&](Pk& pk) {
      pk.pack_array(4);
      pk.pack(static_cast<int>(vxDOUBLE_CLASS));
      pk.pack_array(2);
      dims(pk);
      pk.pack(false);
      doubleBytes(pk);
    });
  };
  EXPECT_EQ(load(value([](Pk& pk) { pk.pack(1); pk.pack(1); })), "");
  EXPECT_EQ(load(value([](Pk& pk) { pk.pack_fix_int8(-1); pk.pack(1); })), corrupt);
  EXPECT_EQ(load(value([](Pk& pk) { pk.pack_double(1.5); pk.pack(1); })), corrupt);
  EXPECT_EQ(load(entry("\x80", [](Pk&) {})), corrupt);
  EXPECT_EQ(load(entry("\xd4\x01\x00", [](Pk&) {})), corrupt);
  EXPECT_EQ(load(entry("\xc1", [](Pk&) {})), corrupt);
  // Counts and lengths larger than the bytes behind them, in a value and in
  // a part only passed over before the values are read.
  EXPECT_EQ(load(entry("\xdd\x7f\xff\xff\xff", [](Pk&) {})), corrupt);
  EXPECT_EQ(load(entry("\x94\x01\x92\x01\x01\xc2\xc6\x7f\xff\xff\xff", [](Pk&) {})), corrupt);
  EXPECT_EQ(load(entry("\x94\x01\x92\x01\x01\xc2\xdb\x00\x00\x00\x09", [](Pk&) {})), corrupt);
  msgpack::sbuffer table;
  Pk pk(table);
  pk.pack_array(2);
  pk.pack_array(0);
  table.write("\xdd\x00\x01\x00\x00", 5);  // 65,536 records announced, none there
  EXPECT_EQ(idOf([&] { vxDeserializeDocument(frame(table, vxSerializeObjectTableVersion), {}); }), corrupt);
}

// With takeObject the records go to the caller one at a time as they are
// read: after the heads, in table order, owned by the caller; none is kept
// in the document, and an error of the callee ends the reading.
TEST(Serialize, RecordsAreHandedOverOneAtATimeWhenTheCallerTakesThem) {
  Sample s;
  unique_vxArray tag = from_vantel(vxCreateString("t"));
  unique_vxArray three = doubles({3});
  const std::vector<vxSavedObjectView> table = {{{"a.Owner", -1, ""}, {{"Tag", tag.get()}, {"N", three.get()}}},
                                                {{"a.Part", 0, "Title"}, {}},
                                                {{"a.Other", -1, ""}, {{"N", three.get()}}}};
  const std::vector<std::uint8_t> bytes = vxSerializeDocument(s.entries(), table, {});
  std::vector<std::string> events;
  vxReadOptions options;
  options.makeObjects = [&](std::span<const vxSavedObjectHead> heads) {
    events.push_back("heads " + std::to_string(heads.size()));
  };
  options.makeObjectArray = [](const std::string&, std::span<const vxSize>, std::span<const std::int64_t>) -> vxArray* {
    return nullptr;
  };
  std::vector<vxNamedValue> taken;
  options.takeObject = [&](std::size_t index, std::vector<vxNamedValue>& fields) {
    events.push_back(std::to_string(index) + ":" + std::to_string(fields.size()));
    for (vxNamedValue& field : fields) taken.push_back(std::move(field));
  };
  const vxSavedDocument doc = vxDeserializeDocument(bytes, options);
  EXPECT_EQ(events, (std::vector<std::string>{"heads 3", "0:2", "1:0", "2:1"}));
  EXPECT_TRUE(doc.objects.empty());
  EXPECT_EQ(doc.values.size(), 3u);
  ASSERT_EQ(taken.size(), 3u);
  EXPECT_EQ(taken[0].name, "Tag");
  EXPECT_EQ(vxArrayToStdString(taken[0].value.get()), "t");
  EXPECT_TRUE(sameBits(taken[2].value.get(), three.get()));

  events.clear();
  options.takeObject = [&](std::size_t index, std::vector<vxNamedValue>&) {
    events.push_back(std::to_string(index));
    if (index == 1) throw Error("VANTEL:vx:serialize:Corrupt", "refused by the caller");
  };
  EXPECT_EQ(idOf([&] { vxDeserializeDocument(bytes, options); }), "VANTEL:vx:serialize:Corrupt");
  EXPECT_EQ(events, (std::vector<std::string>{"heads 3", "0", "1"}));
}
