// The saved forms of format version 4 at the format's level: where the
// writer takes them, and which versions may hold them. (Their round trip
// through the graphics writer and reader is SavedFormTest's.)
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

// Read options that make no objects: an object array reads as an empty
// double matrix.
vxReadOptions makingNoObjects() {
  vxReadOptions options;
  options.makeObjects = [](std::span<const vxSavedObjectHead>) {};
  options.makeObjectArray = [](const std::string&, std::span<const vxSize>, std::span<const std::int64_t>) {
    return vxCreateDoubleMatrix(0, 0, vxREAL);
  };
  return options;
}

// Write options that name every object an "a.Owner" at record 0.
vxWriteOptions everyObjectAnOwner() {
  vxWriteOptions write;
  write.objectClassName = [](const vxArray*) { return std::string("a.Owner"); };
  write.objectIndex = [](const vxArray*, std::size_t) -> std::int64_t { return 0; };
  return write;
}

// A set of one value referring to a form after one record (index 1); a
// form is refused before the last record.
std::vector<std::uint8_t> writeWithForm() {
  unique_vxArray value = oneObject(), form(vxCreateDoubleScalar(7));
  vxWriteOptions options;
  options.objectClassName = [](const vxArray*) { return std::string("a.Mark"); };
  options.objectIndex = [](const vxArray*, std::size_t) -> std::int64_t { return 1; };
  const Entries values{{"x", value.get()}};
  vxDocumentWriter writer(values, 1, options);
  EXPECT_EQ(idOf([&] { writer.addSavedForm("a.Mark", "", form.get()); }), "VANTEL:vx:serialize:Corrupt");
  writer.addObject("a.Owner", -1, "", {});
  writer.addSavedForm("a.Mark", "double", form.get());
  return writer.finish();
}

TEST(SavedFormFormat, OnlyVersionFourBodiesHoldForms) {
  std::vector<std::uint8_t> bytes = writeWithForm();
  EXPECT_EQ(bytes[8], vxSerializeSavedFormsVersion);
  const vxReadOptions options = makingNoObjects();
  const vxSavedDocument document = vxDeserializeDocument(bytes, options);
  ASSERT_EQ(document.forms.size(), 1u);
  EXPECT_TRUE(document.forms[0].head.savedForm);
  EXPECT_EQ(document.forms[0].typeName, "double");
  EXPECT_EQ(vxGetScalar(document.forms[0].value.get()), 7);
  // The version is outside the checksum: the same body read as version 3.
  bytes[8] = 3;
  EXPECT_EQ(idOf([&] { vxDeserializeDocument(bytes, options); }), "VANTEL:vx:serialize:Corrupt");
  // A set without forms keeps version 2, and version 4 reads two-part bodies.
  unique_vxArray value = oneObject();
  const vxWriteOptions write = everyObjectAnOwner();
  const Entries values{{"x", value.get()}};
  vxDocumentWriter writer(values, 1, write);
  writer.addObject("a.Owner", -1, "", {});
  std::vector<std::uint8_t> plain = writer.finish();
  EXPECT_EQ(plain[8], vxSerializeObjectTableVersion);
  plain[8] = 4;
  EXPECT_EQ(vxDeserializeDocument(plain, options).forms.size(), 0u);
}

// A writer may ask for a newer version than its contents need (added
// properties in its records): the body stays that of version 4, with or
// without forms; a version this build does not write is refused.
TEST(SavedFormFormat, AWriterAsksForTheVersionItsRecordsNeed) {
  const vxReadOptions options = makingNoObjects();
  unique_vxArray value = oneObject();
  const vxWriteOptions write = everyObjectAnOwner();
  const Entries values{{"x", value.get()}};
  vxDocumentWriter writer(values, 1, write);
  writer.addObject("a.Owner", -1, "", {});
  EXPECT_EQ(idOf([&] { writer.requireVersion(vxSerializeFormatVersion + 1); }), "VANTEL:vx:serialize:NewerVersion");
  writer.requireVersion(vxSerializeDynamicPropertiesVersion);
  writer.requireVersion(vxSerializeObjectTableVersion);  // the highest asked for counts
  std::vector<std::uint8_t> plain = writer.finish();
  EXPECT_EQ(plain[8], vxSerializeDynamicPropertiesVersion);
  EXPECT_EQ(vxDeserializeDocument(plain, options).values.size(), 1u);
}

}  // namespace
