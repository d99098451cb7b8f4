// The second bases of the generated property kinds. Each only gives the kind
// a virtual destructor of its own; the factory value itself is computed by
// the property class (see InternalPropInfo.h and ModePropInfo.h).
#pragma once

namespace sgutils {

template <class Class, class PI>
class DependentPropertyFactoryDefaultInitializer {
 public:
  virtual ~DependentPropertyFactoryDefaultInitializer() = default;
};

template <class Class, class PI>
class ModePropertyFactoryDefaultInitializer {
 public:
  virtual ~ModePropertyFactoryDefaultInitializer() = default;

 protected:
  // The factory mode, auto.
  unsigned char autoByte_ = 0;
};

template <class Class, class PI>
class InternalPropertyFactoryDefaultInitializer {
 public:
  virtual ~InternalPropertyFactoryDefaultInitializer() = default;
};

}  // namespace sgutils
