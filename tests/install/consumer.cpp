// Links against the installed platform and renderer libraries and uses them.
#include <foundation/foundation.h>
#include <sgrender/ExportFormat.h>

int main() {
  foundation::core::except::Error e("VANTEL:vcos:OutOfMemory");
  if (e.identifier() != "VANTEL:vcos:OutOfMemory") return 1;
  return sgrender::exportFormatOf("picture.SVG") == sgrender::ExportFormat::Svg ? 0 : 1;
}
