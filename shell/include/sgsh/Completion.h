// Tab completion at the prompt: the words that may complete the one before
// the cursor. After "name." with an object in the variable `name`, the
// object's public properties (with a struct, its fields); otherwise the
// variables of the workspace and the built-ins. Matching ignores case; the
// answers keep the case of what they name.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace sgsh {

class Interpreter;

// Where the word being completed starts in `line` (up to `cursor`): after
// the last character that cannot be part of a name or a dotted name.
std::size_t completionWordStart(std::string_view line, std::size_t cursor);

// The whole words (the text from completionWordStart on, replaced) that
// complete the word before `cursor`, sorted, without repeats.
std::vector<std::string> completions(const Interpreter& interp, std::string_view line, std::size_t cursor);

}  // namespace sgsh
