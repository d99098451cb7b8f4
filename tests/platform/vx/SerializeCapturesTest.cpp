// Function handles that captured variables: written as version 3 with their
// variables, read back through the reader's capturing callback (or made from
// their text alone without it); files without them keep their versions.
#include <gtest/gtest.h>

#include <cstring>

#include <foundation/core/except/Error.h>
#include <vx/vx.h>
#include <vx/vxFunctionHandleData.h>
#include <vx/vxSerialize.h>

using matrix::from_vantel;
using matrix::unique_vxArray;

namespace {

class CapturingHandle final : public vxFunctionHandleData {
 public:
  CapturingHandle(std::string text, std::vector<vxNamedValue> captured)
      : text_(std::move(text)), captured_(std::move(captured)) {}
  std::string text() const override { return text_; }
  std::vector<std::pair<std::string, const vxArray*>> capturedValues() const override {
    std::vector<std::pair<std::string, const vxArray*>> out;
    for (const vxNamedValue& v : captured_) out.emplace_back(v.name, v.value.get());
    return out;
  }
  const std::vector<vxNamedValue>& captured() const { return captured_; }

 private:
  std::string text_;
  std::vector<vxNamedValue> captured_;
};

unique_vxArray handle(std::string text, std::vector<vxNamedValue> captured = {}) {
  return from_vantel(vxCreateFunctionHandle(std::make_shared<CapturingHandle>(std::move(text), std::move(captured))));
}

vxReadOptions reading(bool capturing) {
  vxReadOptions options;
  options.makeFunctionHandle = [](const std::string& t) { return vxCreateFunctionHandle(std::make_shared<CapturingHandle>(t, std::vector<vxNamedValue>{})); };
  if (capturing)
    options.makeCapturingFunctionHandle = [](const std::string& t, std::vector<vxNamedValue> captured) {
      return vxCreateFunctionHandle(std::make_shared<CapturingHandle>(t, std::move(captured)));
    };
  return options;
}

std::uint32_t versionOf(const std::vector<std::uint8_t>& bytes) {
  std::uint32_t v = 0;
  std::memcpy(&v, bytes.data() + 8, 4);
  return v;
}

const CapturingHandle& dataOf(const vxArray* a) {
  return dynamic_cast<const CapturingHandle&>(*vxGetFunctionHandle(a));
}

TEST(SerializeCaptures, CapturedVariablesComeBackAndOnlyThoseFilesAreVersionThree) {
  std::vector<vxNamedValue> captured;
  captured.push_back({"k", from_vantel(vxCreateDoubleScalar(3))});
  // A captured handle inside a captured value: nested variables come back too.
  std::vector<vxNamedValue> inner;
  inner.push_back({"name", from_vantel(vxCreateString("inner"))});
  captured.push_back({"g", handle("@()name", std::move(inner))});
  unique_vxArray lambda = handle("@(x)x+k+g()", std::move(captured));
  unique_vxArray plain = handle("@(x)x+1");
  unique_vxArray named = handle("@sin");

  const std::pair<std::string, const vxArray*> old[] = {{"p", plain.get()}, {"n", named.get()}};
  EXPECT_EQ(versionOf(vxSerializeValues(old)), 1u);
  EXPECT_EQ(versionOf(vxSerializeDocument(old, {}, {})), 2u);

  const std::pair<std::string, const vxArray*> entries[] = {{"f", lambda.get()}, {"p", plain.get()}};
  for (const std::vector<std::uint8_t>& bytes : {vxSerializeValues(entries), vxSerializeDocument(entries, {}, {})}) {
    EXPECT_EQ(versionOf(bytes), 3u);
    std::vector<vxNamedValue> back = vxDeserializeValues(bytes, reading(true));
    ASSERT_EQ(back.size(), 2u);
    const CapturingHandle& f = dataOf(back[0].value.get());
    EXPECT_EQ(f.text(), "@(x)x+k+g()");
    ASSERT_EQ(f.captured().size(), 2u);
    EXPECT_EQ(f.captured()[0].name, "k");
    EXPECT_EQ(vxGetScalar(f.captured()[0].value.get()), 3.0);
    const CapturingHandle& g = dataOf(f.captured()[1].value.get());
    ASSERT_EQ(g.captured().size(), 1u);
    EXPECT_EQ(g.captured()[0].name, "name");
    EXPECT_TRUE(dataOf(back[1].value.get()).captured().empty());

    // A reader that cannot take the variables makes the handle from its text.
    std::vector<vxNamedValue> textOnly = vxDeserializeValues(bytes, reading(false));
    EXPECT_EQ(dataOf(textOnly[0].value.get()).text(), "@(x)x+k+g()");
    EXPECT_TRUE(dataOf(textOnly[0].value.get()).captured().empty());
  }
}

// The variables form needs version 3: the same body framed as version 2 is damaged.
TEST(SerializeCaptures, AVariablesFormInAnOlderVersionIsCorrupt) {
  std::vector<vxNamedValue> captured;
  captured.push_back({"k", from_vantel(vxCreateDoubleScalar(3))});
  unique_vxArray lambda = handle("@(x)x+k", std::move(captured));
  const std::pair<std::string, const vxArray*> entries[] = {{"f", lambda.get()}};
  std::vector<std::uint8_t> bytes = vxSerializeDocument(entries, {}, {});
  ASSERT_EQ(versionOf(bytes), 3u);
  bytes[8] = 2;  // the version is not part of the checksum
  try {
    vxDeserializeValues(bytes, reading(true));
    ADD_FAILURE() << "read a version 2 file with a variables form";
  } catch (const foundation::core::except::Error& e) {
    EXPECT_EQ(std::string(e.identifier()), "VANTEL:vx:serialize:Corrupt");
  }
}

}  // namespace
