// Not installed. Collects the graphics trees held by values into the object
// table of a saved set: each object once, parents before children, with its
// stored properties read as arrays.
#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include "vcos/COSInterfacePtr.h"
#include "vx/matrix.h"
#include "vx/vxSerialize.h"

namespace sgutils::persistence {

class GraphicsSaver {
 public:
  // Adds every graphics object found in the values (in cells and structs
  // too) with the tree below it; an object below another found one is
  // saved in that one's tree.
  void addObjectsIn(std::span<const std::pair<std::string, const vxArray*>> values);
  std::vector<std::uint8_t> serialize(std::span<const std::pair<std::string, const vxArray*>> values);

 private:
  static void collect(const vxArray* value, std::vector<COSInterfacePtr>& out);
  std::int64_t addTree(const COSInterfacePtr& object, std::int64_t madeBy, std::string madeByProperty);
  void readFields(std::size_t index);
  std::int64_t indexOf(const COSInterface* object) const;

  std::unordered_map<const COSInterface*, std::int64_t> index_;
  std::vector<COSInterfacePtr> objects_;
  std::vector<vxSavedObjectView> views_;
  std::vector<matrix::unique_vxArray> held_;  // the values the views borrow
};

}  // namespace sgutils::persistence
