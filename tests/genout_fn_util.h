// Test helpers for generated functions: names of the prototypes in a header, in order.
#ifndef ZKT_TESTS_GENOUT_FN_UTIL_H
#define ZKT_TESTS_GENOUT_FN_UTIL_H

#include <sstream>
#include <string>
#include <vector>

namespace gentest {

// The names of the functions whose prototypes (or definitions) start a line
// with "ZKT_RET" or the inline macro, in order; a "ZKT_DLL_SPEC" is skipped.
inline std::vector<std::string> functionNames(const std::string& text) {
  std::vector<std::string> names;
  std::istringstream in(text);
  std::string line;
  while (std::getline(in, line)) {
    std::istringstream words(line);
    std::string w;
    words >> w;
    if (w == "ZKT_TARGET_INLINE") words >> w;
    if (w != "ZKT_RET") continue;
    words >> w;
    if (w == "ZKT_DLL_SPEC") words >> w;
    names.push_back(w.substr(0, w.find('(')));
  }
  return names;
}

// The names of functions of text that begin with prefix.
inline std::vector<std::string> functionsOf(const std::string& text, const std::string& prefix) {
  std::vector<std::string> all = functionNames(text), res;
  for (const std::string& n : all)
    if (n.compare(0, prefix.size(), prefix) == 0) res.push_back(n);
  return res;
}

}  // namespace gentest

#endif
