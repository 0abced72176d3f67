// Platform layer: files, time and the closing line of a compile.
#include <stdio.h>
#include <stdlib.h>
#include <time.h>
#include <unistd.h>

#include "ierrrep.h"

void file_remove(const char* name) { (void)unlink(name); }

namespace UT {

mstring currdir() {
  char buf[300];
  if (getcwd(buf, sizeof buf) == nullptr) buf[0] = 0;
  return mstring(buf);
}

mstring stringTime() {
  time_t t = time(nullptr);
  return mstring(asctime(localtime(&t)));
}

void finishComp(bool ok) {
  if (ok)
    printf("Compiled successfully: %s\n", stringTime().c_str());
  else
    printf("Error executing DDL compiler\n");
  fflush(stdout);
}

}  // namespace UT
