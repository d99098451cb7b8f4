// The per-object side of generated callback properties. An event whose
// graphics metadata says HasCallbackProperty gets a property named after it
// with "Fcn" behind it (GeneratedCallbackPropInfo); the object holds the
// callback stored in that property and one listener per such event, which
// runs whatever the property holds when the event fires. A generated class
// with such events derives from this class as well as from its parent; its
// Setup attaches the listeners and its destructor detaches them.
#pragma once

#include <map>
#include <memory>
#include <string>

#include "sgutils/SgutilsExport.h"
#include "vcos/COSInterfacePtr.h"
#include "vcos/COSInternedBase.h"

namespace graphics::datatype {
class VCallback;
}

namespace sgutils {

class SGUTILS_API GeneratedCallbackInterface {
 public:
  GeneratedCallbackInterface();
  GeneratedCallbackInterface(const GeneratedCallbackInterface&) = delete;
  GeneratedCallbackInterface& operator=(const GeneratedCallbackInterface&) = delete;
  virtual ~GeneratedCallbackInterface();

  // One listener per event of the object's class that asks for a callback
  // property, attached to the object for that event. Attaching twice adds
  // nothing.
  virtual void attachGeneratedCallbacks(COSInterfacePtr object);
  // Takes the listeners off the object and frees them and every callback.
  virtual void detachGeneratedCallbacks(COSInterfacePtr object);
  // The same, for an object that is being torn down (no counted reference
  // is taken); a null object only frees.
  void detachGeneratedCallbacks(COSInterface* object) noexcept;

  // The stored callback (owned here), or null when there is none.
  graphics::datatype::VCallback* getCallbackFcn(const std::string& propertyName) const;
  // Stores `callback` (ownership passes here), replacing without freeing
  // what was stored: the property's setValue frees the old one.
  void setCallbackFcn(const std::string& propertyName, graphics::datatype::VCallback* callback);

  // The number of attached listeners (for tests and the display).
  std::size_t listenerCount() const noexcept { return listeners_.size(); }

 private:
  struct Attached {
    COSID event;
    COSInterfacePtr listener;
  };
  std::map<std::string, graphics::datatype::VCallback*> callbacks_;
  std::map<std::string, Attached> listeners_;
};

}  // namespace sgutils
