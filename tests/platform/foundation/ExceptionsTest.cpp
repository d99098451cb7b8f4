// Errors carry identifiers and catalog texts; warnings go through one channel.
#include <gtest/gtest.h>

#include <foundation/foundation.h>

using foundation::core::except::Error;
using foundation::core::except::IMsgIDException;
using foundation::core::except::WarningChannel;

TEST(MessageCatalog, FormatsPositionalArgumentsAndBraces) {
  std::vector<std::string> args{"a", "b"};
  EXPECT_EQ(i18n::MessageCatalog::format("{2}-{1} {{x} {3}", args), "b-a {x} ");
}

TEST(MessageCatalog, UnknownIdentifierIsItsOwnText) {
  EXPECT_FALSE(i18n::MessageCatalog::has("VANTEL:test:NoSuchMessage"));
  EXPECT_EQ(i18n::Message("VANTEL:test:NoSuchMessage").text(), "VANTEL:test:NoSuchMessage");
}

TEST(MessageId, SplitsCatalogAndKeyAtLastColon) {
  auto m = i18n::Message::fromParts("VANTEL:sg:default_child_strategy", "IllegalPermutation");
  EXPECT_EQ(m.id(), "VANTEL:sg:default_child_strategy:IllegalPermutation");
  EXPECT_EQ(m.catalog(), "VANTEL:sg:default_child_strategy");
  EXPECT_EQ(m.key(), "IllegalPermutation");
}

TEST(Exceptions, CloneKeepsTheMostDerivedType) {
  foundation::core::except::bad_alloc original;
  std::unique_ptr<IMsgIDException> copy = original.clone();
  EXPECT_THROW(copy->rethrow(), foundation::core::except::bad_alloc);
  EXPECT_EQ(copy->identifier(), "VANTEL:vcos:OutOfMemory");
  EXPECT_STRNE(copy->what(), "VANTEL:vcos:OutOfMemory") << "catalog text expected";
}

TEST(Exceptions, NumberArgumentsReadAsPeopleWriteThem) {
  Error e("VANTEL:test:Args", 3, 2.5, "x", true);
  ASSERT_EQ(e.message().arguments().size(), 4u);
  EXPECT_EQ(e.message().arguments()[0], "3");
  EXPECT_EQ(e.message().arguments()[1], "2.5");
  EXPECT_EQ(e.message().arguments()[3], "true");
}

class WarningChannelTest : public ::testing::Test {
 protected:
  void SetUp() override {
    old_ = WarningChannel::instance().setSink([this](std::string_view line) { printed_ += line; });
  }
  void TearDown() override {
    WarningChannel::instance().setSink(std::move(old_));
    WarningChannel::instance().setEnabled("all", true);
  }
  WarningChannel::Sink old_;
  std::string printed_;
};

TEST_F(WarningChannelTest, PrintsAndRecordsTheLastWarning) {
  WarningChannel::instance().issue(i18n::Message("VANTEL:vcos:OutOfMemory"));
  EXPECT_EQ(WarningChannel::instance().lastId(), "VANTEL:vcos:OutOfMemory");
  EXPECT_EQ(printed_, "Warning: " + WarningChannel::instance().lastText() + "\n");
}

TEST_F(WarningChannelTest, SwitchedOffWarningIsNeitherPrintedNorRecorded) {
  WarningChannel::instance().setLast("", "");
  WarningChannel::instance().setEnabled("VANTEL:test:Off", false);
  WarningChannel::instance().issue(i18n::Message("VANTEL:test:Off"));
  EXPECT_TRUE(printed_.empty());
  EXPECT_EQ(WarningChannel::instance().lastId(), "");

  WarningChannel::instance().setEnabled("all", false);
  WarningChannel::instance().setEnabled("VANTEL:test:On", true);
  WarningChannel::instance().issue(i18n::Message("VANTEL:test:On"));
  WarningChannel::instance().issue(i18n::Message("VANTEL:test:Other"));
  EXPECT_EQ(WarningChannel::instance().lastId(), "VANTEL:test:On");
}
