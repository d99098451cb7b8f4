// Links against the installed platform library and uses it.
#include <foundation/foundation.h>

int main() {
  foundation::core::except::Error e("VANTEL:vcos:OutOfMemory");
  return e.identifier() == "VANTEL:vcos:OutOfMemory" ? 0 : 1;
}
