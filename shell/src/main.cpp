// sgsh: runs a script file, code given with -e, or an interactive session.
// Before the language starts, the graphics library starts and its exported
// built-in functions join the function dispatcher, so scripts call them by
// name and make objects of its classes. The concrete graphics classes
// register, and the graphics built-ins (figure, plot, ...) join the language.
#include <dlfcn.h>

#include <cstdio>
#include <cstring>
#include <string>

#include "builtins/CallbackBuiltins.h"
#include "builtins/CopyBuiltins.h"
#include "builtins/ExportViewBuiltins.h"
#include "builtins/GraphicsFileBuiltins.h"
#include "builtins/PrintBuiltins.h"
#include "builtins/ViewBuiltins.h"
#include "builtins/ViewInfoBuiltins.h"
#include "builtins/ThemeShellBuiltins.h"
#include "builtins/ThemeValueBuiltins.h"
#include "builtins/GraphicsBuiltins.h"
#include "foundation/core/except/Error.h"
#include "sgclasses/Registration.h"
#include "sgsh/Shell.h"
#include "sgutils/startup/Startup.h"
#include "vcos/FunctionDispatcher.h"

namespace {

// The graphics library for the life of the session: started, its shared
// object added to the dispatcher's libraries (so that only its exports are
// searched, never the whole process), and ended after the language.
class GraphicsLibrary {
 public:
  GraphicsLibrary() {
    VLInitialize_sgutils();
    sgclasses::registerClasses();
    sgsh::builtins::registerGraphicsBuiltins();
    sgsh::builtins::registerCallbackBuiltins();
    sgsh::builtins::registerCopyBuiltins();
    sgsh::builtins::registerGraphicsFileBuiltins();
    sgsh::builtins::registerPrintBuiltins();
    sgsh::builtins::registerViewBuiltins();
    sgsh::builtins::registerExportViewBuiltins();
    sgsh::builtins::registerViewInfoBuiltins();
    sgsh::builtins::registerThemeShellBuiltins();
    sgsh::builtins::registerThemeValueBuiltins();
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
  ~GraphicsLibrary() {
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
  GraphicsLibrary(const GraphicsLibrary&) = delete;
  GraphicsLibrary& operator=(const GraphicsLibrary&) = delete;

 private:
  void* handle_ = nullptr;
};

}  // namespace

int main(int argc, char** argv) {
  if (argc == 2 && (std::strcmp(argv[1], "-h") == 0 || std::strcmp(argv[1], "--help") == 0)) {
    std::printf("usage: sgsh [FILE | -e CODE]\n  with no argument, an interactive session\n");
    return 0;
  }
  // Declared first, so it ends after the shell.
  GraphicsLibrary graphics;
  sgsh::Shell shell;
  if (argc == 3 && std::strcmp(argv[1], "-e") == 0) return shell.runCode(argv[2]);
  if (argc == 2) return shell.runFile(argv[1]);
  if (argc == 1) return shell.repl();
  std::fprintf(stderr, "usage: sgsh [FILE | -e CODE]\n");
  return 2;
}
