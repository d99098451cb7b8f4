// What a property set made dirty, handed to doPostSet so that a concrete
// class knows what its views must fetch again.
#pragma once

struct DirtyFlags {
  bool limits = false;
  bool object = false;
  bool legend = false;
  bool structUpdate = false;
};
