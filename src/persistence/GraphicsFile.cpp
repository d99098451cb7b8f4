#include "sgutils/persistence/GraphicsFile.h"

#include "src/persistence/GraphicsLoader.h"
#include "src/persistence/GraphicsSaver.h"
#include "vcos/ObjectArray.h"
#include "vx/vxCell.h"
#include "vx/vxData.h"
#include "vx/vxFunctionHandleData.h"
#include "vx/vxQuery.h"
#include "vx/vxStruct.h"

namespace sgutils {

std::vector<std::uint8_t> GraphicsFile::serialize(Values values) {
  persistence::GraphicsSaver saver;
  saver.addObjectsIn(values);
  return saver.serialize(values);
}

std::vector<vxNamedValue> GraphicsFile::deserialize(std::span<const std::uint8_t> bytes,
                                                    const GraphicsLoadOptions& options) {
  persistence::GraphicsLoader loader(options);
  return loader.load(bytes);
}

void GraphicsFile::save(const std::string& path, Values values) { vxWriteFileAtomically(path, serialize(values)); }

std::vector<vxNamedValue> GraphicsFile::load(const std::string& path, const GraphicsLoadOptions& options) {
  return deserialize(vxReadSavedFile(path), options);
}

bool GraphicsFile::holdsObjects(const vxArray* value) {
  if (!value) return false;
  if (omIsVCOS(value)) return true;
  const std::size_t n = vxGetNumberOfElements(value);
  if (vxIsCell(value)) {
    for (std::size_t i = 0; i < n; ++i)
      if (holdsObjects(vxGetCell(value, i))) return true;
  } else if (vxIsStruct(value)) {
    const int nf = vxGetNumberOfFields(value);
    for (std::size_t i = 0; i < n; ++i)
      for (int f = 0; f < nf; ++f)
        if (holdsObjects(vxGetFieldByNumber(value, i, f))) return true;
  } else if (vxIsFunctionHandle(value)) {
    for (const auto& [name, captured] : vxGetFunctionHandle(value)->capturedValues())
      if (holdsObjects(captured)) return true;
  }
  return false;
}

}  // namespace sgutils
