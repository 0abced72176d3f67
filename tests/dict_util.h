// Test helpers: one in-memory compile through zkt_db_load_dictionary, with its messages and lookups into the result.
#ifndef ZKT_TESTS_DICT_UTIL_H
#define ZKT_TESTS_DICT_UTIL_H

#include <gtest/gtest.h>
#include <string.h>

#include <string>
#include <vector>

#include "fake_runtime.h"
#include "zktcomp.h"
#include "zktdict.h"

namespace dicttest {

struct Msg {
  CompilerErrorType type;
  std::string text;
  std::string file;
  int line;
  int pos;
};

// Runs the library on a schema. The runtime is reset first, so allocs()
// afterwards lists this compile's blocks alone.
struct Lib {
  int rc = -1;
  zkt_dict_h d = nullptr;
  size_t dsize = 7777;
  char name[64] = "untouched";
  size_t nameSize = sizeof name;
  std::vector<Msg> msgs;

  static void collect(CompilerErrorType type, const char* msg, const char* file, int line, int pos, void* ctx) {
    static_cast<Lib*>(ctx)->msgs.push_back(Msg{type, msg, file, line, pos});
  }

  explicit Lib(const std::string& schema, zktcomp_options_t o = zktcomp_options_t(), bool reset = true) {
    if (reset) fakert::reset();
    rc = zkt_db_load_dictionary(schema.c_str(), &o, &d, &dsize, name, &nameSize, collect, this);
  }

  // The class of that name and its struct record; null when absent.
  const zkt_dict_class_info_t* cls(const char* n) const {
    for (int k = 1; k <= d->n_class_codes; k++)
      if (strcmp(d->str_class_names[k], n) == 0) return &d->v_class_info[k];
    return nullptr;
  }
  const zkt_dict_struct_t* strct(const char* n) const {
    for (int i = 0; i < d->n_structs; i++)
      if (strcmp(d->v_all_struct[i].name, n) == 0) return &d->v_all_struct[i];
    return nullptr;
  }
  static const zkt_dict_field_t* field(const zkt_dict_struct_t* s, const char* n) {
    for (int i = 0; i < s->n_fields; i++)
      if (strcmp(s->fields[i].name, n) == 0) return &s->fields[i];
    return nullptr;
  }
  const zkt_dict_index_t* index(const char* n) const {
    for (int i = 0; i < d->n_desc_indexes; i++)
      if (strcmp(d->str_index_names[i], n) == 0) return &d->v_desc_indexes[i];
    return nullptr;
  }
  // Field names of a run, joined by blanks.
  static std::string run(const zkt_dict_struct_t* s) {
    std::string r;
    for (int i = 0; i < s->n_fields; i++) r += (i ? " " : "") + std::string(s->fields[i].name);
    return r;
  }
};

// EXPECT_EQ of every member named, on two records of one type.
template <class T, class... M>
void expectSame(const T& a, const T& b, const std::string& at, M T::*... members) {
  auto one = [&](auto m) { EXPECT_EQ(a.*m, b.*m) << at; };
  (one(members), ...);
}

}  // namespace dicttest

#endif
