// Not installed. Objects whose class saves a form of its own: the class
// info's customSave answers true with a value and its type, and the file
// keeps that value instead of the object's properties; on load the object
// is made by its constructor and its class info's customLoad is handed the
// value back. Such objects are not graphics objects: they are found where
// the saved values and the graphics objects' values refer to them, and
// they follow the object table's records (format version 4).
#pragma once

#include <cstdint>
#include <string>
#include <unordered_map>
#include <vector>

#include "vcos/COSInterfacePtr.h"
#include "vx/matrix.h"
#include "vx/vxSerialize.h"

class COSClass;

namespace sgutils::persistence {

// The saving side: collects the forms while the set is written.
class SavedForms {
 public:
  // The forms' indexes start after the object table's records.
  explicit SavedForms(std::size_t firstIndex) : first_(firstIndex) {}

  // The table index of an object that is not a graphics object and whose
  // class saves a form of its own; -1 for any other. The class's customSave
  // is asked once per object, when the writer first meets it. A customSave
  // that fails, or answers true without a form, fails the save
  // ("VANTEL:sg:save:*").
  std::int64_t indexOf(const COSInterface* object);

  // Writes the forms after the table's records, those met while writing
  // them too, each released once written.
  void writeTo(vxDocumentWriter& writer);

 private:
  struct Form {
    COSInterfacePtr object;
    std::string typeName;  // "" when the form is an array itself
    matrix::unique_vxArray value;
  };
  std::size_t first_;
  std::unordered_map<const COSInterface*, std::int64_t> index_;  // -1: saves no form
  std::vector<Form> forms_;
};

// The loading side.
// Checks that a saved form's class exists and may be made on load (a class
// whose info answers isConstructedOnLoad, not abstract, not a graphics
// class), and makes one by its constructor without arguments.
COSInterfacePtr makeSavedFormObject(const std::string& className);
// Hands the form to the class info's customLoad of the object made for it,
// converted to the saved data type when it names one. A type this system
// lacks, a form that no longer converts, or a customLoad that fails raises
// a loader identifier ("VANTEL:sg:load:*").
void loadSavedForm(const COSInterfacePtr& object, const vxSavedForm& form);

}  // namespace sgutils::persistence
