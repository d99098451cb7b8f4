// save and load from the evaluator: a file that cannot be loaded whole
// changes no variable, and function handles come back callable.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include <foundation/core/except/IMsgIDException.h>
#include <vx/vx.h>
#include <vx/vxSerialize.h>

#include "sgsh/Interpreter.h"
#include "sgsh/ScriptError.h"

namespace sgsh {
namespace {

namespace fs = std::filesystem;

class SaveLoad : public ::testing::Test {
 protected:
  fs::path dir = fs::temp_directory_path() / ("sgsh-saveload-" + std::to_string(::getpid()));
  std::string file = (dir / "values.sgd").string();
  Interpreter in;

  void SetUp() override { fs::create_directories(dir); }
  void TearDown() override { fs::remove_all(dir); }

  std::string failure(const std::string& code) {
    try {
      in.run(code);
    } catch (const ScriptError& e) {
      return e.identifier();
    } catch (const foundation::core::except::IMsgIDException& e) {
      return e.identifier();
    }
    return "";
  }
};

TEST_F(SaveLoad, AFileThatCannotLoadWholeSetsNothing) {
  // A name no variable can have, written past the shell's save.
  matrix::unique_vxArray one(vxCreateDoubleScalar(1));
  const std::vector<std::pair<std::string, const vxArray*>> values = {{"fine", one.get()}, {"2bad", one.get()}};
  vxSaveValuesFile(file, values);
  EXPECT_EQ(failure("load('" + file + "')"), "VANTEL:sgsh:load:BadName");
  EXPECT_EQ(in.findVariable("fine"), nullptr);

  // A damaged file: the first half of a good one.
  in.run("x = 1; y = 'two'; save('" + file + "');");
  const auto size = fs::file_size(file);
  fs::resize_file(file, size / 2);
  in.run("x = 10; clear y");
  EXPECT_EQ(failure("load('" + file + "')"), "VANTEL:vx:serialize:Truncated");
  EXPECT_EQ(vxGetScalar(in.findVariable("x")->get()), 10);
  EXPECT_EQ(in.findVariable("y"), nullptr);
}

TEST_F(SaveLoad, HandlesComeBackCallableAndLoadedStructsKeepSavedOrder) {
  in.run("sq = @(x) x.^2; mx = @max; zeta = 3; alpha = 1; save('" + file + "', 'zeta', 'sq', 'mx', 'alpha');");
  in.run("clear all; load('" + file + "'); r1 = sq(4); r2 = mx([2 8 1]); s = load('" + file + "'); n = fieldnames(s);");
  EXPECT_EQ(vxGetScalar(in.findVariable("r1")->get()), 16);
  EXPECT_EQ(vxGetScalar(in.findVariable("r2")->get()), 8);
  const vxArray* n = in.findVariable("n")->get();
  ASSERT_EQ(vxGetNumberOfElements(n), 4u);
  EXPECT_EQ(vxArrayToStdString(vxGetCell(n, 0)), "zeta");
  EXPECT_EQ(vxArrayToStdString(vxGetCell(n, 3)), "alpha");
}

}  // namespace
}  // namespace sgsh
