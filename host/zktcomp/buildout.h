// Build integration: outputs replaced only when their content changed, and the make-style dependency file.
#ifndef ZKTCOMP_BUILDOUT_H
#define ZKTCOMP_BUILDOUT_H

#include "util.h"

// Outputs written under -ifchanged. Each goes to a temporary file beside its
// target ("{target}.{pid}.tmp"); commitReplaced moves a temporary over its
// target only when the bytes differ, so an unchanged target keeps its
// modification time, and removes it otherwise. Until then the temporaries are
// pending: discardReplaced removes them, and so do the failure path and
// IErrReporter::panic, so a failed run leaves none behind.
namespace Replaced {
// A file stream on the temporary of target; stops the process like any file
// stream when it can't be opened. Opening one target twice reuses its
// temporary, truncated.
IOutStream* open(const mstring& target);
// Every pending temporary, in order of opening; false with the failed target
// in failed when a rename fails (the rest are then discarded).
bool commit(mstring& failed);
void discard();
}  // namespace Replaced

// Each path once, at its first place.
mvector<mstring> distinctPaths(const mvector<mstring>& paths);

// Writes path as a make rule: every target, then a colon, then the
// prerequisites, one a line behind a backslash continuation. Blanks, "#" and
// "$" are escaped as make reads them ("\ ", "\#", "$$"). False when the file
// can't be written.
bool writeDepfile(const mstring& path, const mvector<mstring>& targets, const mvector<mstring>& prereqs);

#endif
