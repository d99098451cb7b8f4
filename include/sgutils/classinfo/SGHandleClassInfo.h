// The class info of "vantel.graphics.Graphics", the abstract root of all
// graphics objects: heterogeneous, open to dynamic properties, with display
// and copy, and a closed list of the classes that may derive from it. It
// adds the four properties Internal, ApplicationData,
// SerializableApplicationData and DefaultPropMap_Internal, the methods of
// graphics objects and the event "Reset".
#pragma once

#include <cstddef>

#include "sgutils/classinfo/RootClassInfo.h"

class SGHandle;

// A class info of a concrete class whose C++ block derives from SGHandle
// implements this: the Graphics block of its instances is then made here, so
// that the class's overrides of SGHandle's virtual operations take effect.
class SGUTILS_API SGHandleBlockFactory {
 public:
  virtual ~SGHandleBlockFactory();
  virtual SGHandle* createHandleBlock() const = 0;
};

class SGUTILS_API SGHandleClassInfo : public RootClassInfo {
 public:
  SGHandleClassInfo() noexcept;
  void* allocateInstance(COSInterface* instance) override;
  void deallocateInstance(COSInterface* instance, void* data) override;
  // The block shared with the ReferenceObject slot is all it answers
  // without making one.
  bool isSharedAnswerSkippable() const override;

 protected:
  // A graphics class of its own row (GraphicsPlaceholder).
  explicit SGHandleClassInfo(const RootClassRow& row) noexcept : RootClassInfo(row) {}
  void addMembers(COSClass* cls) override;
};

// The classes that "vantel.graphics.Graphics" lets derive from it, in order.
namespace sgutils {
SGUTILS_API const char* const* graphicsAllowedSubclasses(std::size_t& count) noexcept;
}
