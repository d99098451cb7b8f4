// sgsh: runs a script file, code given with -e, or an interactive session.
#include <cstdio>
#include <cstring>
#include <string>

#include "sgsh/Shell.h"

int main(int argc, char** argv) {
  sgsh::Shell shell;
  if (argc == 3 && std::strcmp(argv[1], "-e") == 0) return shell.runCode(argv[2]);
  if (argc == 2 && (std::strcmp(argv[1], "-h") == 0 || std::strcmp(argv[1], "--help") == 0)) {
    std::printf("usage: sgsh [FILE | -e CODE]\n  with no argument, an interactive session\n");
    return 0;
  }
  if (argc == 2) return shell.runFile(argv[1]);
  if (argc == 1) return shell.repl();
  std::fprintf(stderr, "usage: sgsh [FILE | -e CODE]\n");
  return 2;
}
