// Saving array values to bytes and files, and reading them back.
//
// A saved set is an ordered list of named values. The bytes are MessagePack
// (one array per value: class id, dimensions, complexity, payload) inside a
// frame with a magic number, a format version, the lengths and a checksum;
// the body is compressed with zstd when that makes it smaller. The layout is
// documented in docs/file-format.md.
//
// The reader trusts nothing it reads: every length is checked against the
// bytes that are really there and against fixed limits before anything is
// allocated, and any fault raises "VANTEL:vx:serialize:<Key>". A value is
// either read whole or not at all: nothing read is handed back on failure.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "foundation/PlatformExport.h"
#include "vx/matrix.h"
#include "vx/vxTypes.h"

// One named value of a saved set; the value is owned.
struct vxNamedValue {
  std::string name;
  matrix::unique_vxArray value;
};

// The head of an entry of a saved object table: the object's class and,
// for an object that another saved object makes as part of itself, that
// object's index and the property through which it is reached (madeBy -1
// for an object of its own).
struct vxSavedObjectHead {
  std::string className;
  std::int64_t madeBy = -1;
  std::string madeByProperty;
  // Set for an object whose class saved a form of its own (version 4): the
  // reader hands over its form (vxSavedForm) instead of named values.
  bool savedForm = false;
};

// An entry of a saved object table as the writer is given it: its head and
// its named values (borrowed).
struct vxSavedObjectView {
  vxSavedObjectHead head;
  std::vector<std::pair<std::string, const vxArray*>> fields;
};

// An entry of a saved object table as read; the values are owned.
struct vxSavedObject {
  vxSavedObjectHead head;
  std::vector<vxNamedValue> fields;
};

// An object whose class saved a form of its own instead of its values
// (version 4): the name of the form's data type ("" for an array) and the
// form, owned. Its index in the object table follows the records'.
struct vxSavedForm {
  vxSavedObjectHead head;
  std::string typeName;
  matrix::unique_vxArray value;
};

// A saved set with an object table.
struct vxSavedDocument {
  std::vector<vxNamedValue> values;
  std::vector<vxSavedObject> objects;
  std::vector<vxSavedForm> forms;
};

// What the writer needs to save object arrays: the class name of an object
// array, and the index in the object table of one of its elements (-1 for
// an element that is not in the table).
struct vxWriteOptions {
  std::function<std::string(const vxArray* objects)> objectClassName;
  std::function<std::int64_t(const vxArray* objects, std::size_t element)> objectIndex;
};

// What the reader needs from the layers above it.
struct vxReadOptions {
  // Makes a function handle from its text ("@sin", "@(x)x+1"); without it a
  // saved function handle raises VANTEL:vx:serialize:NoFunctionHandles.
  std::function<vxArray*(const std::string& text)> makeFunctionHandle;
  // Called once, after the frame and the shape of the body are checked and
  // before any value is made, with the heads of the object table: makes the
  // objects. Without it a file with objects raises
  // VANTEL:vx:serialize:UnsupportedClass.
  std::function<void(std::span<const vxSavedObjectHead> heads)> makeObjects;
  // Makes an object array of the class and dimensions whose elements are the
  // objects at the indexes of the table (each checked to lie in the table,
  // or -1 for an element not saved).
  std::function<vxArray*(const std::string& className, std::span<const vxSize> dims,
                         std::span<const std::int64_t> indexes)>
      makeObjectArray;
  // Makes an anonymous function from its text and the variables it had
  // captured (version 3); without it such a handle is made by
  // makeFunctionHandle and its captured variables are dropped.
  std::function<vxArray*(const std::string& text, std::vector<vxNamedValue> captured)> makeCapturingFunctionHandle;
  // Takes each record of the object table as soon as it is read, in table
  // order (its index, then its values, which become the callee's), so that
  // only one record's values exist at a time; the document's object list is
  // then left empty. Without it the records are kept in the document. The
  // whole body's form is checked before the first record is handed over;
  // a value that fails to read later ends the reading with the records
  // before it already handed over (the caller undoes what it did with them).
  std::function<void(std::size_t index, std::vector<vxNamedValue>& fields)> takeObject;
};

// The newest format version this build reads and writes. A set whose
// writer asks for it (objects with properties added at run time) is written
// as version 5; else a set with objects that saved forms of their own as
// version 4; else a set with a function handle that captured variables as
// version 3; else a set with an object table as version 2, and a set
// without one as version 1, so that older readers read every file they can
// represent. The body of version 5 has the form of version 4.
inline constexpr std::uint32_t vxSerializeFormatVersion = 5;
// The version of a set whose objects carry properties added at run time.
inline constexpr std::uint32_t vxSerializeDynamicPropertiesVersion = 5;
// The version of a set with objects that saved forms of their own.
inline constexpr std::uint32_t vxSerializeSavedFormsVersion = 4;
// The version of a set with a function handle that captured variables.
inline constexpr std::uint32_t vxSerializeCapturesVersion = 3;
// The version of a set with an object table and no captured variables.
inline constexpr std::uint32_t vxSerializeObjectTableVersion = 2;

// The framed bytes of the values, in order. Object arrays raise
// VANTEL:vx:serialize:UnsupportedClass.
VX_API std::vector<std::uint8_t> vxSerializeValues(std::span<const std::pair<std::string, const vxArray*>> values);
// The values of framed bytes, in saved order.
VX_API std::vector<vxNamedValue> vxDeserializeValues(std::span<const std::uint8_t> bytes, const vxReadOptions& options);

// The framed bytes of values and an object table (format version 2). Object
// arrays in any value are written as indexes into the table.
VX_API std::vector<std::uint8_t> vxSerializeDocument(std::span<const std::pair<std::string, const vxArray*>> values,
                                                     std::span<const vxSavedObjectView> objects,
                                                     const vxWriteOptions& options);
// Writes a set with an object table (format version 2) one record at a
// time: the values first, then each object as it is given, so that only
// one object's values need to exist as arrays at once. The bytes are the
// same as vxSerializeDocument's for the same values and table.
class VX_API vxDocumentWriter {
 public:
  // A field of a record: its name and its value, both borrowed for the call.
  struct Field {
    std::string_view name;
    const vxArray* value;
  };
  // Writes the values; `objectCount` records must follow.
  vxDocumentWriter(std::span<const std::pair<std::string, const vxArray*>> values, std::size_t objectCount,
                   const vxWriteOptions& options);
  ~vxDocumentWriter();
  vxDocumentWriter(const vxDocumentWriter&) = delete;
  vxDocumentWriter& operator=(const vxDocumentWriter&) = delete;

  // The next record of the table (see vxSavedObjectHead).
  void addObject(std::string_view className, std::int64_t madeBy, std::string_view madeByProperty,
                 std::span<const Field> fields);
  // After every record: the next object whose class saved a form of its
  // own, with the name of the form's data type ("" for an array). Its index
  // is the record count plus the forms added before it; forms may be added
  // while one is written (an object its form holds). Makes the set version 4.
  void addSavedForm(std::string_view className, std::string_view typeName, const vxArray* form);
  // Marks the set as needing at least `version` (a meaning of its records'
  // fields that older readers lack); at most vxSerializeFormatVersion.
  void requireVersion(std::uint32_t version);
  // The framed bytes; every announced record must have been added.
  std::vector<std::uint8_t> finish();

 private:
  struct State;
  std::unique_ptr<State> state_;
};

// The values and object table of framed bytes (either version). Nothing read
// is handed back on failure; objects made by options.makeObjects are the
// caller's to remove.
VX_API vxSavedDocument vxDeserializeDocument(std::span<const std::uint8_t> bytes, const vxReadOptions& options);

// Writes bytes to a file atomically (see vxSaveValuesFile).
VX_API void vxWriteFileAtomically(const std::string& path, std::span<const std::uint8_t> bytes);
// The bytes of a file, refused as VANTEL:vx:serialize:TooLarge when larger
// than any saved set can be.
VX_API std::vector<std::uint8_t> vxReadSavedFile(const std::string& path);

// Writes the values to a file atomically: a temporary file beside it is
// written, flushed and renamed over the target, so a failed save leaves the
// previous file as it was.
VX_API void vxSaveValuesFile(const std::string& path, std::span<const std::pair<std::string, const vxArray*>> values);
// Reads a file written by vxSaveValuesFile.
VX_API std::vector<vxNamedValue> vxLoadValuesFile(const std::string& path, const vxReadOptions& options);
