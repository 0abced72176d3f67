// Finishing pass: completes and checks the schema model once every name is known.
#include "analyzer.h"

// Nothing to finish yet: types, indexes and events are resolved here once
// index, event and TTL statements are read.
void Analyzer::doChecks() {}
