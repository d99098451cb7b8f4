// The saved forms of format version 4: objects whose class saves a form of
// its own follow the object table's records, may be met while forms are
// written, and are handed up with the heads before any value is read.
#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include <foundation/core/except/IMsgIDException.h>
#include <vx/vx.h>
#include <vx/vxObjectStorage.h>
#include <vx/vxSerialize.h>

namespace {

using matrix::unique_vxArray;
using Entries = std::vector<std::pair<std::string, const vxArray*>>;

std::string idOf(const std::function<void()>& f) {
  try {
    f();
  } catch (const foundation::core::except::IMsgIDException& e) {
    return e.identifier();
  }
  return "";
}

// A 1-by-1 object array; the writer asks the callbacks for its class and index.
unique_vxArray oneObject() { return unique_vxArray(vxCreateObjectMatrix(1, 1, nullptr)); }

// Values holding one object outside the table: it becomes form 0 (index 1,
// after one record); its form holds another object, met while it is
// written, which becomes form 1 and whose form refers back to form 0.
std::vector<std::uint8_t> writeWithForms() {
  unique_vxArray value = oneObject(), inner = oneObject(), back = oneObject();
  int met = 0;
  vxWriteOptions options;
  options.objectClassName = [](const vxArray*) { return std::string("a.Mark"); };
  // First the value's object, then the inner one, then the one back to the first.
  options.objectIndex = [&](const vxArray*, std::size_t) -> std::int64_t {
    ++met;
    return met == 2 ? 2 : 1;
  };
  const Entries values{{"x", value.get()}};
  vxDocumentWriter writer(values, 1, options);
  EXPECT_EQ(idOf([&] { writer.addSavedForm("a.Mark", "", inner.get()); }), "VANTEL:vx:serialize:Corrupt");
  writer.addObject("a.Owner", -1, "", {});
  writer.addSavedForm("a.Mark", "struct", inner.get());
  writer.addSavedForm("a.Mark", "", back.get());
  EXPECT_EQ(met, 3);
  return writer.finish();
}

TEST(SavedFormFormat, FormsFollowTheRecordsAndReadBackWithTheirHeadsFirst) {
  const std::vector<std::uint8_t> bytes = writeWithForms();
  EXPECT_EQ(bytes[8], vxSerializeFormatVersion);
  std::vector<vxSavedObjectHead> heads;
  std::vector<std::vector<std::int64_t>> arrays;
  vxReadOptions options;
  options.makeObjects = [&](std::span<const vxSavedObjectHead> h) { heads.assign(h.begin(), h.end()); };
  options.makeObjectArray = [&](const std::string&, std::span<const vxSize>, std::span<const std::int64_t> indexes) {
    EXPECT_EQ(heads.size(), 3u) << "an object array before the heads";
    arrays.emplace_back(indexes.begin(), indexes.end());
    return vxCreateDoubleMatrix(0, 0, vxREAL);
  };
  const vxSavedDocument document = vxDeserializeDocument(bytes, options);
  ASSERT_EQ(heads.size(), 3u);
  EXPECT_FALSE(heads[0].savedForm);
  EXPECT_TRUE(heads[1].savedForm);
  EXPECT_TRUE(heads[2].savedForm);
  EXPECT_EQ(heads[2].className, "a.Mark");
  ASSERT_EQ(document.objects.size(), 1u);
  ASSERT_EQ(document.forms.size(), 2u);
  EXPECT_EQ(document.forms[0].typeName, "struct");
  EXPECT_EQ(document.forms[1].typeName, "");
  EXPECT_TRUE(document.forms[1].head.savedForm);
  EXPECT_EQ(arrays, (std::vector<std::vector<std::int64_t>>{{1}, {2}, {1}}));
}

TEST(SavedFormFormat, OnlyVersionFourBodiesHoldForms) {
  std::vector<std::uint8_t> bytes = writeWithForms();
  vxReadOptions options;
  options.makeObjects = [](std::span<const vxSavedObjectHead>) {};
  options.makeObjectArray = [](const std::string&, std::span<const vxSize>, std::span<const std::int64_t>) {
    return vxCreateDoubleMatrix(0, 0, vxREAL);
  };
  // The version is outside the checksum: the same body read as version 3.
  bytes[8] = 3;
  EXPECT_EQ(idOf([&] { vxDeserializeDocument(bytes, options); }), "VANTEL:vx:serialize:Corrupt");
  // A set without forms keeps version 2, and version 4 reads two-part bodies.
  unique_vxArray value = oneObject();
  vxWriteOptions write;
  write.objectClassName = [](const vxArray*) { return std::string("a.Owner"); };
  write.objectIndex = [](const vxArray*, std::size_t) -> std::int64_t { return 0; };
  const Entries values{{"x", value.get()}};
  vxDocumentWriter writer(values, 1, write);
  writer.addObject("a.Owner", -1, "", {});
  std::vector<std::uint8_t> plain = writer.finish();
  EXPECT_EQ(plain[8], vxSerializeObjectTableVersion);
  plain[8] = 4;
  EXPECT_EQ(vxDeserializeDocument(plain, options).forms.size(), 0u);
}

}  // namespace
