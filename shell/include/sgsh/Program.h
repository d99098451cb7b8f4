// A parsed source: its statements and the functions it defines.
#pragma once

#include <vector>

#include "sgsh/Node.h"

namespace sgsh {

struct Program {
  NodePtr body;                    // a Block
  std::vector<NodePtr> functions;  // Function nodes, in source order
  bool openFunction = false;       // the last function ran to the end of the source without 'end'
};

}  // namespace sgsh
