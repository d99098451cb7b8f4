// Help kept beside each built-in and tab completion at the prompt, through
// the registry and the completion function the session uses.
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include <vcos/BuiltinClasses.h>
#include <vx/vx.h>

#include "sgsh/BuiltinRegistry.h"
#include "sgsh/Completion.h"
#include "sgsh/Interpreter.h"
#include "sgsh/Output.h"

namespace sgsh {
namespace {

using Words = std::vector<std::string>;

std::string run(Interpreter& in, std::string_view code) {
  std::string text;
  OutputCapture capture([&](std::string_view s) { text += s; });
  in.run(code);
  return text;
}

Words complete(const Interpreter& in, std::string_view line) { return completions(in, line, line.size()); }

TEST(HelpTest, EveryBuiltinHasAUsageAndADescription) {
  const BuiltinRegistry& r = BuiltinRegistry::instance();
  ASSERT_GT(r.names().size(), 100u);
  for (const std::string& name : r.names()) {
    const BuiltinRegistry::Help* help = r.help(name);
    ASSERT_NE(help, nullptr) << name;
    EXPECT_FALSE(help->usage.empty()) << name;
    EXPECT_FALSE(help->description.empty()) << name;
    // the usage names the built-in it describes
    EXPECT_NE(help->usage.find(name), std::string::npos) << name;
  }
  EXPECT_EQ(r.help("noSuchBuiltin"), nullptr);
}

TEST(HelpTest, HelpPrintsUsageLinesThenTheDescription) {
  Interpreter in;
  EXPECT_EQ(run(in, "help linspace"),
            "  y = linspace(a, b)\n  y = linspace(a, b, n)\n\n"
            "  A row of n (100) evenly spaced points from a to b.\n");
  run(in, "t = help('abs');");
  EXPECT_EQ(vxArrayToStdString(in.findVariable("t")->get()), "  y = abs(x)\n\n  The absolute value or magnitude.\n");
  EXPECT_EQ(run(in, "c = help('-missing'); n = numel(c)"), "n = 0\n");
  EXPECT_NE(run(in, "help").find("  linspace"), std::string::npos);
  EXPECT_THROW(run(in, "help nothingByThatName"), std::exception);
  EXPECT_EQ(run(in, "try, help nothingByThatName, catch e, disp(e.identifier), end"), "VANTEL:sgsh:NoHelp\n");
}

TEST(CompletionTest, NamesCompleteToVariablesAndBuiltins) {
  Interpreter in;
  run(in, "linear = 1; Lines = 2;");
  const Words got = complete(in, "x = lin");
  for (const char* want : {"linear", "Lines", "linspace"})
    EXPECT_NE(std::find(got.begin(), got.end(), want), got.end()) << want;
  EXPECT_EQ(complete(in, "y = linsp"), (Words{"linspace"}));
  EXPECT_EQ(complete(in, "disp(Lin"), (Words{"Lines", "linear", "linspace"}));
  // nothing to complete after a number or a blank
  EXPECT_TRUE(complete(in, "x = 3").empty());
  EXPECT_TRUE(complete(in, "x = ").empty());
  // the word ends at the cursor, not at the end of the line
  const std::string line = "a = linsp + 1";
  EXPECT_EQ(completions(in, line, 9), (Words{"linspace"}));
  EXPECT_EQ(completionWordStart(line, 9), 4u);
}

TEST(CompletionTest, AfterADotMembersOfTheVariableComplete) {
  vcos::registerBuiltinClasses();
  Interpreter in;
  run(in, "s.alpha = 1; s.Apex = 2; s.beta = 3; g = vantel.mixin.util.PropertyGroup({'A'}, 'T');");
  EXPECT_EQ(complete(in, "s.a"), (Words{"s.Apex", "s.alpha"}));
  EXPECT_EQ(complete(in, "disp(s.b"), (Words{"s.beta"}));
  EXPECT_EQ(complete(in, "g.Ti"), (Words{"g.Title"}));
  EXPECT_EQ(complete(in, "g.num"), (Words{"g.NumProperties"}));
  // not a variable, or a value without members: nothing
  EXPECT_TRUE(complete(in, "nothing.a").empty());
  run(in, "k = 3;");
  EXPECT_TRUE(complete(in, "k.a").empty());
}

}  // namespace
}  // namespace sgsh
