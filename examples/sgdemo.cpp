// A short look at the platform runtime until the command language can run
// the tour: the error channel with message identifiers.
#include <cstdio>

#include <foundation/foundation.h>

int main() {
  std::printf("sgutils platform runtime\n");
  try {
    throw foundation::core::except::bad_alloc();
  } catch (const foundation::core::except::IMsgIDException& e) {
    std::printf("error %s: %s\n", e.identifier().c_str(), e.what());
  }
  return 0;
}
