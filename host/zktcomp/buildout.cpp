// Build integration: outputs replaced only when their content changed, and the make-style dependency file.
#include "buildout.h"

#include <stdio.h>
#include <string.h>
#include <unistd.h>

#include "arena.h"

namespace {

// Targets (even) and their temporaries (odd) not yet committed. One list per
// process: a failure anywhere, panic included, must find them.
mvector<mstring>& pending() {
  static mvector<mstring> list;
  return list;
}

bool sameContent(const char* a, const char* b) {
  FILE* fa = fopen(a, "rb");
  FILE* fb = fopen(b, "rb");
  bool same = fa != nullptr && fb != nullptr;
  char ba[8192], bb[8192];
  while (same) {
    size_t na = fread(ba, 1, sizeof ba, fa);
    size_t nb = fread(bb, 1, sizeof bb, fb);
    same = na == nb && memcmp(ba, bb, na) == 0;
    if (na == 0) break;
  }
  if (fa) fclose(fa);
  if (fb) fclose(fb);
  return same;
}

mstring depEscape(const mstring& path) {
  mstring out;
  for (const char* p = path.c_str(); *p; p++) {
    if (*p == ' ' || *p == '#') out += '\\';
    if (*p == '$') out += '$';
    out += *p;
  }
  return out;
}

}  // namespace

namespace Replaced {

IOutStream* open(const mstring& target) {
  const mstring temp = target + "." + UT::n2s((int)getpid()) + ".tmp";
  CompileArena::Outside keep;  // the list outlives the compile
  mvector<mstring>& list = pending();
  bool known = false;
  for (unsigned int i = 0; i < list.size(); i += 2) known = known || list[i] == target;
  if (!known) {
    list.push_back(target);
    list.push_back(temp);
  }
  return IOutStream::createFileStream(temp);
}

bool commit(mstring& failed) {
  mvector<mstring>& list = pending();
  for (unsigned int i = 0; i < list.size(); i += 2) {
    const char* target = list[i].c_str();
    const char* temp = list[i + 1].c_str();
    if (sameContent(temp, target)) {
      file_remove(temp);
    } else if (rename(temp, target) != 0) {
      failed = list[i];
      discard();
      return false;
    }
  }
  list = mvector<mstring>();
  return true;
}

void discard() {
  mvector<mstring>& list = pending();
  for (unsigned int i = 1; i < list.size(); i += 2) file_remove(list[i].c_str());
  list = mvector<mstring>();
}

}  // namespace Replaced

mvector<mstring> distinctPaths(const mvector<mstring>& paths) {
  StringSet seen;
  for (unsigned int i = 0; i < paths.size(); i++) seen.insert(paths[i]);
  return seen.els;
}

bool writeDepfile(const mstring& path, const mvector<mstring>& targets, const mvector<mstring>& prereqs) {
  FILE* f = fopen(path.c_str(), "w");
  if (f == nullptr) return false;
  for (unsigned int i = 0; i < targets.size(); i++) fprintf(f, "%s%s", i ? " " : "", depEscape(targets[i]).c_str());
  fputc(':', f);
  for (unsigned int i = 0; i < prereqs.size(); i++) fprintf(f, " \\\n  %s", depEscape(prereqs[i]).c_str());
  fputc('\n', f);
  return fclose(f) == 0;
}
