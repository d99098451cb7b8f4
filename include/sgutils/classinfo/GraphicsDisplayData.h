// The display data of a graphics class: which properties the scalar display
// of one of its objects shows, and the label in that display's header.
//
// The default methods getPropertyGroups and getDescriptiveLabelForDisplay of
// "vantel.graphics.GraphicsDisplay" ask the data registered for the object's
// class (exactly that class); a class without any gets the base behaviour:
// one group of its public, visible properties, and no label.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "sgutils/SgutilsExport.h"
#include "vcos/COSInternedBase.h"
#include "vx/vxTypes.h"

class COSClass;
class COSInterface;

namespace sgutils {

class SGUTILS_API GraphicsDisplayData {
 public:
  struct Group {
    std::string title;  // empty: the group shows no title line
    std::vector<std::string> names;
  };

  virtual ~GraphicsDisplayData();

  virtual std::vector<Group> getPropertyGroups(COSInterface& object) const;
  // The label as a char array or a cell of char rows (owned by the caller);
  // null for none.
  virtual vxArray* getDescriptiveLabelForDisplay(COSInterface& object) const;

  // Replaces the data of a class; null goes back to the base behaviour.
  static void setForClass(COSID classId, std::shared_ptr<const GraphicsDisplayData> data);
  static const GraphicsDisplayData& forClass(const COSClass* cls);
};

}  // namespace sgutils
