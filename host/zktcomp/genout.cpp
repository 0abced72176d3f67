// Generator frame: output file names.
#include "genout.h"

#include <unistd.h>

mvector<mstring> GenOutput::listAllOutputs(const mstring& dir, const mstring& name) {
  mvector<mstring> res;
  res.push_back(UT::makefnm(dir, name + ".h"));
  res.push_back(UT::makefnm(dir, name + ".c"));
  res.push_back(UT::makefnm(dir, name + ".hpp"));
  res.push_back(UT::makefnm(dir, name + ".xml"));
  static const char* const userFiles[] = {"_udf.c", "_coll.c"};
  for (const char* suffix : userFiles) {
    mstring path = UT::makefnm(dir, name + suffix);
    if (access(path.c_str(), F_OK) == 0) path += ".new";
    res.push_back(path);
  }
  return res;
}
