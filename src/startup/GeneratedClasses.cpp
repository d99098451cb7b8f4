// The list of class registrations (see GeneratedClasses.h): the
// hand-written data types the generated classes use, then every class of
// objects/, in the parent order that tools/genmixins.py writes into
// GeneratedRegistrations.h from the class descriptions.
#include "sgutils/startup/GeneratedClasses.h"

#include <vector>

#include "GeneratedRegistrations.h"
#include "sgutils/startup/PerInstance.h"
#include "sgutils/themes/BaseColorSchemeType.h"

namespace sgutils {
namespace {

const std::vector<ClassRegistrationFn>& registrations() {
  static const std::vector<ClassRegistrationFn> list = [] {
    std::vector<ClassRegistrationFn> fns = {&registerBaseColorSchemeType};
    fns.insert(fns.end(), std::begin(generated::kRegistrations), std::end(generated::kRegistrations));
    return fns;
  }();
  return list;
}

struct ClassBlock {
  ClassBlock() {
    std::size_t n = 0;
    const ClassRegistrationFn* fns = generatedClassRegistrations(n);
    for (std::size_t i = 0; i < n; ++i) fns[i]();
  }
};

}  // namespace

const ClassRegistrationFn* generatedClassRegistrations(std::size_t& count) noexcept {
  count = registrations().size();
  return registrations().data();
}

void registerGeneratedClasses() {
  // The block's constructor is the registration: once per instance with the
  // per-instance store, else once per process.
  struct Tag;
  PerInstance<Tag, ClassBlock>::get([] { return ClassBlock(); });
}

}  // namespace sgutils
