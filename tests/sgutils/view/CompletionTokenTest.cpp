// Update tokens: identity by identifier alone, byte order with the empty
// token least, and streams that carry the identifier and nothing else.
#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>
#include <vector>

#include "sgutils/view/CompletionToken.h"

namespace {

using sgutils::CompletionToken;

TEST(CompletionTokenIdentity, TimeStampsPlayNoPart) {
  CompletionToken a("update-7"), b("update-7");
  a.getTimeStamps().requested = 11;
  b.getTimeStamps().completed = 99;
  EXPECT_TRUE(a == b);
  EXPECT_FALSE(a < b);
  EXPECT_FALSE(b < a);
  EXPECT_FALSE(CompletionToken("update-7") == CompletionToken("update-70"));
}

TEST(CompletionTokenOrder, UnsignedBytesThenLength) {
  EXPECT_TRUE(CompletionToken("a") < CompletionToken("\x80")) << "bytes above 127 sort after ASCII";
  EXPECT_FALSE(CompletionToken("\x80") < CompletionToken("a"));
  EXPECT_TRUE(CompletionToken("ab") < CompletionToken("abc"));
  EXPECT_FALSE(CompletionToken("abc") < CompletionToken("ab"));
  EXPECT_TRUE(CompletionToken("abz") < CompletionToken("ac"));
}

TEST(CompletionTokenOrder, TheDefaultTokenIsTheLeast) {
  const CompletionToken none;
  EXPECT_TRUE(none.isDefaultToken());
  EXPECT_FALSE(CompletionToken("x").isDefaultToken());
  EXPECT_TRUE(none == CompletionToken(""));
  std::vector<CompletionToken> tokens{CompletionToken("\x01"), CompletionToken("b"), none, CompletionToken("\xff")};
  std::sort(tokens.begin(), tokens.end());
  EXPECT_TRUE(tokens.front().isDefaultToken());
  EXPECT_EQ(tokens.back().convertToString(), "\xff");
  EXPECT_FALSE(none < none);
}

TEST(CompletionTokenStream, WritesOnlyTheIdentifierAndReadsOneWord) {
  CompletionToken token("fig-3");
  token.getTimeStamps() = {1, 2, 3, 4};
  std::ostringstream out;
  out << token;
  EXPECT_EQ(out.str(), "fig-3");

  std::istringstream in("first second");
  CompletionToken read;
  in >> read;
  EXPECT_EQ(read.convertToString(), "first");
  EXPECT_EQ(read.getTimeStamps().requested, 0);
  in >> read;
  EXPECT_EQ(read.convertToString(), "second");
  in >> read;
  EXPECT_TRUE(in.fail());
  EXPECT_EQ(read.convertToString(), "second") << "a failed read leaves the token alone";
}

}  // namespace
