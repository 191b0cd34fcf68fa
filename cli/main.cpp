// Headless tool: runs the main road and inspects files without a display.
#include <cstdio>
#include <cstring>

#include "version.h"

int main(int argc, char** argv) {
  for (int i = 1; i < argc; ++i) {
    if (std::strcmp(argv[i], "--version") == 0) {
      std::printf("%s %s\n", tg::TitreProgramme, tg::VersionTexte);
      return 0;
    }
  }
  std::fprintf(stderr, "Usage : tessellographe-cli --version\n");
  return 2;
}
