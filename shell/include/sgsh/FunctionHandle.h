// What a function-handle value of the language holds: a function name
// (@disp), or an anonymous function with its parameters, body and the
// variables it captured when it was made (@(x) x + k).
#pragma once

#include <map>
#include <string>
#include <vector>

#include <vx/vxFunctionHandleData.h>

#include "sgsh/Node.h"
#include "sgsh/Value.h"

namespace sgsh {

class FunctionHandle final : public vxFunctionHandleData {
 public:
  // @name
  explicit FunctionHandle(std::string name) : name_(std::move(name)) {}
  // @(params) body, with the captured variables.
  FunctionHandle(NodePtr lambda, std::map<std::string, Value> captured)
      : lambda_(std::move(lambda)), captured_(std::move(captured)) {}
  ~FunctionHandle() override;

  std::string text() const override;
  // The captured variables, so that a saved anonymous function keeps them.
  std::vector<std::pair<std::string, const vxArray*>> capturedValues() const override;

  bool isAnonymous() const noexcept { return lambda_ != nullptr; }
  const std::string& name() const noexcept { return name_; }
  const Node& lambda() const noexcept { return *lambda_; }
  const std::map<std::string, Value>& captured() const noexcept { return captured_; }

 private:
  std::string name_;
  NodePtr lambda_;
  std::map<std::string, Value> captured_;
};

}  // namespace sgsh
