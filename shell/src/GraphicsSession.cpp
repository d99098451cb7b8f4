#include "GraphicsSession.h"

#include <dlfcn.h>

#include <exception>

#include "builtins/CallbackBuiltins.h"
#include "builtins/CopyBuiltins.h"
#include "builtins/ExportViewBuiltins.h"
#include "builtins/GraphicsBuiltins.h"
#include "builtins/GraphicsFileBuiltins.h"
#include "builtins/PrintBuiltins.h"
#include "builtins/ThemeShellBuiltins.h"
#include "builtins/ThemeValueBuiltins.h"
#include "builtins/ViewBuiltins.h"
#include "builtins/ViewInfoBuiltins.h"
#include "foundation/core/except/Error.h"
#include "sgclasses/Registration.h"
#include "sgutils/startup/Startup.h"
#include "vcos/FunctionDispatcher.h"

namespace sgsh {

// The library's shared object joins the dispatcher's libraries, so that only
// its exports are searched, never the whole process.
GraphicsSession::GraphicsSession() {
  VLInitialize_sgutils();
  sgclasses::registerClasses();
  builtins::registerGraphicsBuiltins();
  builtins::registerCallbackBuiltins();
  builtins::registerCopyBuiltins();
  builtins::registerGraphicsFileBuiltins();
  builtins::registerPrintBuiltins();
  builtins::registerViewBuiltins();
  builtins::registerExportViewBuiltins();
  builtins::registerViewInfoBuiltins();
  builtins::registerThemeShellBuiltins();
  builtins::registerThemeValueBuiltins();
  Dl_info info{};
  if (dladdr(reinterpret_cast<void*>(&VLInitialize_sgutils), &info) == 0 || !info.dli_fname) return;
  // Already loaded: this only takes a handle of our own to it.
  handle_ = dlopen(info.dli_fname, RTLD_LAZY | RTLD_NOLOAD);
  if (!handle_) return;
  auto& dispatcher = vcos::FunctionDispatcher::instance();
  // The two entry points are exported too but are no built-ins: registered
  // built-ins are found first, so these names stay undefined for scripts.
  dispatcher.registerBuiltin("VLInitialize_sgutils", [](int, vxArray*[], int, const vxArray*[]) {
    throw foundation::core::except::Error("VANTEL:vcos:UndefinedFunction", "VLInitialize_sgutils");
  });
  dispatcher.registerBuiltin("VLTerminate_sgutils", [](int, vxArray*[], int, const vxArray*[]) {
    throw foundation::core::except::Error("VANTEL:vcos:UndefinedFunction", "VLTerminate_sgutils");
  });
  dispatcher.addLibrary(handle_);
}

GraphicsSession::~GraphicsSession() {
  if (handle_) {
    auto& dispatcher = vcos::FunctionDispatcher::instance();
    dispatcher.removeLibrary(handle_);
    dispatcher.unregisterBuiltin("VLInitialize_sgutils");
    dispatcher.unregisterBuiltin("VLTerminate_sgutils");
    dlclose(handle_);
  }
  try {
    sgclasses::releaseRoot();
  } catch (const std::exception&) {
    // A listener of a deletion whose callback needs the language, which has
    // ended: the tree is gone all the same, and there is no one to tell.
  }
  VLTerminate_sgutils();
}

}  // namespace sgsh
