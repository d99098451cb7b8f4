// The object-operations fuzz target's inputs replayed in the ordinary
// build: the kept corpus (the seeds and what the fuzzer learnt) and the
// inputs that once broke something, each with no violation.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

#include "GraphicsFileLoad.h"
#include "ObjectOps.h"
#include "sgclasses/Registration.h"

namespace {

std::vector<std::filesystem::path> inputs(const char* folder) {
  std::vector<std::filesystem::path> files;
  const std::filesystem::path dir = std::filesystem::path(SG_SOURCE_ROOT) / "fuzz" / folder / "objectops";
  if (!std::filesystem::is_directory(dir)) return files;
  for (const auto& entry : std::filesystem::directory_iterator(dir))
    if (entry.is_regular_file() && entry.path().filename().string()[0] != '.') files.push_back(entry.path());
  return files;
}

void replay(const std::filesystem::path& file) {
  std::ifstream in(file, std::ios::binary);
  const std::vector<std::uint8_t> data{std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
  EXPECT_EQ(sgfuzz::runObjectOps(data), "") << file.filename();
}

TEST(ObjectOpsReplay, CorpusRunsWithoutViolation) {
  const auto files = inputs("corpus");
  ASSERT_FALSE(files.empty());
  for (const auto& f : files) replay(f);
}

TEST(ObjectOpsReplay, RegressionInputsRunWithoutViolation) {
  for (const auto& f : inputs("regressions")) replay(f);
}

// Sequences written out here for what they pin down.
TEST(ObjectOpsReplay, OperationsOnDeletedObjectsRaise) {
  // figure, axes, line; delete the axes; then set, get, reparent and reorder
  // the deleted line and axes (the engine reports any that does not raise).
  const std::vector<std::uint8_t> ops = {0, 0, 200, 0, 1, 0, 0, 2, 1, 6, 1, 1, 2, 3, 7, 2, 2, 4,
                                         4, 2, 0,  4, 0, 1, 5, 1, 0, 0};
  EXPECT_EQ(sgfuzz::runObjectOps(ops), "");
}

TEST(ObjectOpsReplay, ACycleOfReferencesOutsideTheTreeIsDeletedAtTheEnd) {
  // figure, axes, line; the line unhooked, a property of it set to the line
  // itself, the pool's reference dropped: the counted references form a
  // cycle that the release of the pool cannot free.
  const std::vector<std::uint8_t> ops = {0, 0, 200, 0, 1, 0, 0, 2, 1, 4, 2, 255, 1, 2, 46, 226, 9, 2};
  EXPECT_EQ(sgfuzz::runObjectOps(ops), "");
}

TEST(ObjectOpsReplay, SavedTreesLoadWithTheirShapeAndDamagedOnesLeaveNothing) {
  // figure, axes, line; saved and loaded from memory and from a file, the
  // line and the axes together (the line below the axes), then the figure
  // with its body damaged at 1/8, 1/2 and 7/8 and cut in the middle.
  const std::vector<std::uint8_t> ops = {0, 0, 200, 0, 1, 0, 0, 2, 1, 13, 0, 255, 0, 0, 13, 0, 255, 1, 0,
                                         13, 1, 2, 4, 0, 13, 0, 255, 2, 32, 13, 0, 255, 2, 128, 13, 0, 255, 2,
                                         224, 13, 0, 255, 3, 128};
  EXPECT_EQ(sgfuzz::runObjectOps(ops), "");
}

}  // namespace

// The graphics-file fuzz target's engine over its kept inputs: each body
// loads or is refused with an identifier, leaving no object behind; and the
// same for every truncation of the smallest seed.
namespace {

std::vector<std::filesystem::path> bodies(const char* folder) {
  std::vector<std::filesystem::path> files;
  const std::filesystem::path dir = std::filesystem::path(SG_SOURCE_ROOT) / "fuzz" / folder / "graphicsfile";
  if (!std::filesystem::is_directory(dir)) return files;
  for (const auto& entry : std::filesystem::directory_iterator(dir))
    if (entry.is_regular_file() && entry.path().filename().string()[0] != '.') files.push_back(entry.path());
  return files;
}

std::vector<std::uint8_t> bytesOf(const std::filesystem::path& file) {
  std::ifstream in(file, std::ios::binary);
  return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

TEST(GraphicsFileReplay, CorpusAndRegressionsLoadOrAreRefused) {
  const auto corpus = bodies("corpus");
  ASSERT_FALSE(corpus.empty());
  for (const auto& f : corpus) EXPECT_EQ(sgfuzz::loadGraphicsBody(bytesOf(f)), "") << f.filename();
  for (const auto& f : bodies("regressions")) EXPECT_EQ(sgfuzz::loadGraphicsBody(bytesOf(f)), "") << f.filename();
}

TEST(GraphicsFileReplay, DamagedBodiesLoadOrAreRefused) {
  // Past the checksum: prefixes of a well-formed body, and the body with one
  // byte changed, are new bodies that reach the loader's checks. Every third
  // byte keeps the run short under the sanitizers; the fuzz target goes on.
  const std::vector<std::uint8_t> body = bytesOf(std::filesystem::path(SG_SOURCE_ROOT) / "fuzz/corpus/graphicsfile/small");
  for (std::size_t n = 0; n < body.size(); n += 7)
    ASSERT_EQ(sgfuzz::loadGraphicsBody(std::span(body).first(n)), "") << n;
  for (std::size_t i = 0; i < body.size(); i += 3) {
    std::vector<std::uint8_t> damaged = body;
    damaged[i] ^= 0x5a;
    ASSERT_EQ(sgfuzz::loadGraphicsBody(damaged), "") << "byte " << i;
  }
}

}  // namespace
