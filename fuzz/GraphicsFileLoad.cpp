#include "GraphicsFileLoad.h"

#include <vector>

#include "foundation/core/except/IMsgIDException.h"
#include "sgclasses/ClassNames.h"
#include "sgclasses/Drawnow.h"
#include "sgclasses/Objects.h"
#include "sgclasses/Registration.h"
#include "sgutils/persistence/GraphicsFile.h"
#include "vcos/COSObjectOperations.h"
#include "vx/vxSerialize.h"

namespace sgfuzz {

namespace {

void putLE(std::vector<std::uint8_t>& out, std::uint64_t v, int bytes) {
  for (int i = 0; i < bytes; ++i) out.push_back(static_cast<std::uint8_t>(v >> (8 * i)));
}

// The frame of the saved-value format around an uncompressed body.
std::vector<std::uint8_t> frame(std::span<const std::uint8_t> body) {
  std::vector<std::uint8_t> out = {'S', 'G', 'V', 'X', 'D', 'A', 'T', 0x1a};
  std::uint64_t h = 0xcbf29ce484222325ULL;
  for (std::uint8_t b : body) h = (h ^ b) * 0x100000001b3ULL;
  putLE(out, vxSerializeFormatVersion, 4);
  putLE(out, 0, 4);
  putLE(out, body.size(), 8);
  putLE(out, body.size(), 8);
  putLE(out, h, 8);
  out.insert(out.end(), body.begin(), body.end());
  return out;
}

std::size_t liveCount() {
  sgclasses::forgetDeletedDirtyObjects();
  return vcos::liveObjectCount();
}

}  // namespace

void startGraphicsFileLoad() { sgclasses::registerClasses(); }

std::string loadGraphicsBody(std::span<const std::uint8_t> body) {
  startGraphicsFileLoad();
  sgclasses::root();
  const std::size_t live = liveCount();
  std::string broke;
  sgutils::GraphicsLoadOptions options;
  options.parentOfTopLevel = [](const COSInterfacePtr& object) {
    return sgclasses::isOfClass(object.get(), {sgclasses::kFigureClass}) ? sgclasses::root() : COSInterfacePtr();
  };
  try {
    // Loaded values go with this scope; the figures with the root.
    sgutils::GraphicsFile::deserialize(frame(body), options);
  } catch (const foundation::core::except::IMsgIDException& e) {
    const std::string& id = e.identifier();
    if (id.rfind("VANTEL:vx:serialize:", 0) != 0 && id.rfind("VANTEL:sg:load:", 0) != 0)
      broke = "a failed load raised " + id;
    else if (liveCount() != live)
      broke = "a failed load left objects behind";
  } catch (const std::exception& e) {
    broke = std::string("a load raised no identifier: ") + e.what();
  }
  sgclasses::releaseRoot();
  return broke;
}

}  // namespace sgfuzz
