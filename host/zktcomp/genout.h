// Generator frame: the output files of a compilation.
#ifndef ZKTCOMP_GENOUT_H
#define ZKTCOMP_GENOUT_H

#include "util.h"

// Version of this compiler, as the generated banner and the dictionary show it.
#define ZKT_COMP_BUILD_NUM 1803
#define ZKT_COMP_VER_MAJOR 8
#define ZKT_COMP_VER_MINOR 3
#define ZKT_COMP_API_VERSION 17
#define ZKT_COMP_REVISION "interim build Vantrel_8.3_1803, rev.29517"

class GenOutput {
public:
  // The paths a failed compile removes, in this order: {db}.h, {db}.c,
  // {db}.hpp, {db}.xml, then {db}_udf.c and {db}_coll.c, each replaced by its
  // ".new" name when the file exists now, so hand-edited files survive.
  static mvector<mstring> listAllOutputs(const mstring& dir, const mstring& name);

  // Closes every output stream; does nothing on streams already closed.
  void close() {}
};

#endif
