// sgsh: runs a script file, code given with -e, or an interactive session.
// Before the language starts, the graphics library starts and its exported
// built-in functions join the function dispatcher, so scripts call them by
// name and make objects of its classes. The concrete graphics classes
// register, and the graphics built-ins (figure, plot, ...) join the language.
#include <cstdio>
#include <cstring>

#include "GraphicsSession.h"
#include "sgsh/Shell.h"

int main(int argc, char** argv) {
  if (argc == 2 && (std::strcmp(argv[1], "-h") == 0 || std::strcmp(argv[1], "--help") == 0)) {
    std::printf("usage: sgsh [FILE | -e CODE]\n  with no argument, an interactive session\n");
    return 0;
  }
  // Declared first, so it ends after the shell.
  sgsh::GraphicsSession graphics;
  sgsh::Shell shell;
  if (argc == 3 && std::strcmp(argv[1], "-e") == 0) return shell.runCode(argv[2]);
  if (argc == 2) return shell.runFile(argv[1]);
  if (argc == 1) return shell.repl();
  std::fprintf(stderr, "usage: sgsh [FILE | -e CODE]\n");
  return 2;
}
