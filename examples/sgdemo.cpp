// A short look at the platform runtime until the command language can run
// the tour: the error channel with message identifiers, and arrays whose
// shared copies part ways on the first write.
#include <cstdio>

#include <foundation/foundation.h>
#include <vx/vx.h>

namespace {

void showArrays() {
  using matrix::from_vantel;
  matrix::unique_vxArray a = from_vantel(vxCreateDoubleMatrix(1, 3, vxREAL));
  double* p = vxGetPr(a.get());
  p[0] = 1, p[1] = 2, p[2] = 3;
  matrix::unique_vxArray b = from_vantel(vxCreateSharedDataCopy(a.get()));
  const vxArray* ca = a.get();
  const vxArray* cb = b.get();
  std::printf("b = shared copy of a: same data? %s\n", vxGetPr(ca) == vxGetPr(cb) ? "yes" : "no");
  vxGetPr(b.get())[0] = 100;
  std::printf("after b(1) = 100: same data? %s; a(1) = %g, b(1) = %g\n", vxGetPr(ca) == vxGetPr(cb) ? "yes" : "no",
              vxGetPr(ca)[0], vxGetPr(cb)[0]);

  matrix::unique_vxArray s = from_vantel(vxCreateStructMatrix(1, 1, 0, nullptr));
  vxSetField(s.get(), 0, "Name", vxCreateString("gr\xC3\xBC\xC3\x9F"));
  std::printf("s.Name = '%s' (%zu UTF-16 chars)\n", vxArrayToStdString(vxGetField(s.get(), 0, "Name")).c_str(),
              vxGetN(vxGetField(s.get(), 0, "Name")));
  try {
    vxGetCell(s.get(), 0);
  } catch (const foundation::core::except::IMsgIDException& e) {
    std::printf("error %s: %s\n", e.identifier().c_str(), e.what());
  }
}

}  // namespace

int main() {
  std::printf("sgutils platform runtime\n");
  try {
    throw foundation::core::except::bad_alloc();
  } catch (const foundation::core::except::IMsgIDException& e) {
    std::printf("error %s: %s\n", e.identifier().c_str(), e.what());
  }
  showArrays();
  return 0;
}
