// What of a child changed, as a scene viewer tells its parent: the same four
// kinds that a property set marks in DirtyFlags.
#pragma once

namespace sgutils {

enum class DirtyClass : unsigned char { Limits = 0, Object = 1, Legend = 2, StructUpdate = 3 };

}  // namespace sgutils
