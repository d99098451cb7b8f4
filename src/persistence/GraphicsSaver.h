// Not installed. Collects the graphics trees held by values into the object
// table of a saved set (each object once, parents before children), then
// writes the table record by record: one object's stored values are read,
// packed and released before the next object's are read.
#pragma once

class COSClass;
class COSPropInfo;

#include <cstdint>
#include <functional>
#include <memory>
#include <span>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include "vcos/COSInterfacePtr.h"
#include "vcos/COSValue.h"
#include "vx/matrix.h"
#include "vx/vxSerialize.h"

namespace sgutils::persistence {
struct SavedPropertyList;
}

namespace sgutils::persistence {

class GraphicsSaver {
 public:
  GraphicsSaver() = default;
  GraphicsSaver(const GraphicsSaver&) = delete;
  GraphicsSaver& operator=(const GraphicsSaver&) = delete;
  // Gives back the reference objects' values and deletes the objects.
  ~GraphicsSaver();

  // Adds every graphics object found in the values (in cells and structs
  // too) with the tree below it; an object below another found one is
  // saved in that one's tree.
  void addObjectsIn(std::span<const std::pair<std::string, const vxArray*>> values);
  std::vector<std::uint8_t> serialize(std::span<const std::pair<std::string, const vxArray*>> values);

 private:
  static void collect(const vxArray* value, std::vector<COSInterfacePtr>& out);
  // A new object of a class, made once per save, and its stored values:
  // a child's values equal to these are left out of the file, since the
  // loader makes each object the same way before it sets the saved ones.
  struct Reference {
    COSInterfacePtr object;       // null when the class could not be made
    std::vector<COSValue> values;  // per property of the class's list
  };

  // One entry of the object table, read and written only when its turn
  // comes in serialize().
  struct Record {
    COSInterfacePtr object;
    std::int64_t madeBy;
    const char* madeByProperty;     // the owner's property name (lives with its class), or ""
    bool omitDefaults;              // a child of a saved tree leaves out values equal to a new object's
    matrix::unique_vxArray children;  // saved children oldest first, or null
  };

  std::int64_t addTree(const COSInterfacePtr& object, std::int64_t madeBy, const char* madeByProperty, bool child);
  // Reads the record's fields into fields_: arrays of array-typed values
  // borrowed from the values read (read_), the others made (held_).
  void readFields(Record& record);
  // Releases what readFields read and made.
  void releaseRead() noexcept;
  const Reference* referenceOf(COSClass* cls);
  std::int64_t indexOf(const COSInterface* object) const;

  std::unordered_map<const COSInterface*, std::int64_t> index_;
  std::vector<Record> records_;
  std::unordered_map<const COSClass*, Reference> references_;
  // One record's fields and the arrays they borrow, reused from record to
  // record: only one object's values exist as arrays at a time.
  std::vector<vxDocumentWriter::Field> fields_;
  std::vector<matrix::unique_vxArray> held_;
  std::vector<COSValue> read_;        // one object's values, reused
  const SavedPropertyList* readList_ = nullptr;  // whose properties read_ holds
  COSInterface* readObject_ = nullptr;           // and of which object
  std::size_t borrowed_ = 0;          // the index in read_ not to release (the application data)
  matrix::unique_vxArray converted_;  // its saved form, when that is a new array
  std::vector<unsigned char> differs_;  // per group head, reused
  std::vector<COSInterfacePtr> found_;  // objects a value holds, reused
  bool dynamicWritten_ = false;         // a record held added properties
};

}  // namespace sgutils::persistence
