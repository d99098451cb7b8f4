// Not installed. Builds the objects of a saved set's object table: makes
// them while the set is read, then sets their properties, hooks the trees
// and places the tops. A failure anywhere deletes every object it made.
#pragma once

#include <cstdint>
#include <span>
#include <unordered_map>
#include <vector>

#include "sgutils/persistence/GraphicsFile.h"
#include "vcos/COSInterfacePtr.h"
#include "vx/matrix.h"
#include "vx/vxSerialize.h"

class COSPropInfo;

namespace foundation::log {
class Logger;
}

namespace sgutils::persistence {

// The channel "graphics::object_serialization": bit 2 names each object
// saved or loaded and each property loaded, bit 8 a set that failed, bit 9 a
// conversion that failed.
foundation::log::Logger& serializationLog();

class GraphicsLoader {
 public:
  explicit GraphicsLoader(const GraphicsLoadOptions& options) : options_(options) {}
  ~GraphicsLoader();
  GraphicsLoader(const GraphicsLoader&) = delete;
  GraphicsLoader& operator=(const GraphicsLoader&) = delete;

  std::vector<vxNamedValue> load(std::span<const std::uint8_t> bytes);

  // The children that the running load hooked to `object`, in saved order,
  // as a new object array; null when no load on this thread made the object.
  static vxArray* deserializedChildrenOf(const COSInterface* object);
  // The same for the parts the object made itself (an axes's title) that
  // the running load restored.
  static vxArray* deserializedPartsOf(const COSInterface* object);

 private:
  void makeObjects(std::span<const vxSavedObjectHead> heads);
  vxArray* makeObjectArray(const std::string& className, std::span<const vxSize> dims,
                           std::span<const std::int64_t> indexes);
  // Sets the values of the record at `index` as soon as it is read, and
  // keeps its child list.
  void setFields(std::size_t index, std::vector<vxNamedValue>& fields);
  void hookChildren();
  void placeTopLevel();
  void runLoadSteps();
  void keepCurrentObjectsOf(const COSInterfacePtr& holder);
  void restoreCurrentObjects() noexcept;
  void deleteMade() noexcept;

  // A current figure or axes of an object outside the load (the root, a
  // figure the tops go into), as it was before the tops were hooked.
  struct KeptCurrent {
    COSInterfacePtr holder;
    const COSPropInfo* property;
    matrix::unique_vxArray value;
  };

  const GraphicsLoadOptions& options_;
  std::vector<COSInterfacePtr> objects_;      // by table index
  std::vector<std::int64_t> madeBy_;          // by table index
  std::vector<COSInterfacePtr> constructed_;  // what a failure deletes, in making order
  std::unordered_map<const COSInterface*, std::size_t> partOwner_;  // part -> its owner's index
  std::vector<std::size_t> topLevel_;
  std::vector<std::vector<std::size_t>> children_;  // loaded children by index, in saved order
  std::vector<std::vector<std::size_t>> parts_;     // parts by their owner's index, in table order
  // Made object -> its table index, the first where one comes twice. The
  // load's look-ups mostly go in table order, so the one after the last
  // found is tried first; the others go through a table with open
  // addressing, made at the first of them.
  class IndexByObject {
   public:
    static constexpr std::size_t npos = ~std::size_t{0};
    explicit IndexByObject(const std::vector<COSInterfacePtr>& objects) : objects_(objects) {}
    std::size_t find(const COSInterface* object) const;
    // Some object comes twice: every look-up goes through the table.
    void noteTwice() noexcept { twice_ = true; }

   private:
    std::size_t slotOf(const COSInterface* object) const noexcept;
    void build() const;
    const std::vector<COSInterfacePtr>& objects_;
    mutable std::size_t last_ = 0;
    mutable std::vector<std::pair<const COSInterface*, std::size_t>> slots_;
    mutable std::size_t mask_ = 0;
    bool twice_ = false;
  };
  IndexByObject indexOf_{objects_};
  std::vector<const COSPropInfo*> properties_;  // one object's fields' properties, reused
  std::vector<unsigned char> modes_;            // each one's kind: value, mode, child list or defaults; reused
  std::vector<KeptCurrent> keptCurrent_;    // set back when the load fails
  // By table index: the saved elements of an object whose class takes them
  // in itself (a struct handed to its customLoad), else null.
  std::vector<matrix::unique_vxArray> elements_;
  // A saved child list: the table indexes of its elements (npos for one
  // not in the table), or none when the value is no object array.
  struct ChildList {
    bool objects = false;
    std::vector<std::size_t> indexes;
  };
  // By table index: the saved child lists, kept from a record's reading until the trees are hooked.
  std::vector<std::vector<ChildList>> childLists_;
  // The last object array made while reading, and the table indexes of its
  // elements: a record's child list is its last field.
  const vxArray* lastArray_ = nullptr;
  std::vector<std::size_t> lastIndexes_;
  std::size_t records_ = 0;  // records of the object table; the saved forms follow them
  bool done_ = false;
};

}  // namespace sgutils::persistence
