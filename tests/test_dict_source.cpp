// Dictionary as C source: the text of both forms, and the compiled C dictionary against the in-memory one.
#include <dirent.h>
#include <dlfcn.h>
#include <unistd.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "dict_util.h"
#include "dictenc.h"
#include "genout_util.h"
#include "proc_util.h"

namespace {

using gentest::Generated;
using gentest::Options;

Options cmode1(bool on, bool debug = false) {
  Options o;
  o.cmode1 = on;
  o.debug = debug;
  return o;
}

struct TextCase {
  const char* schema;  // behind "declare database d;\n"
  Options options;
  const char* text;    // must stand in the C file
};

// clang-format off
const TextCase kTexts[] = {
  // the static and the assignment form of whole dictionaries are in tests/expected/model*/d.c
  // a fixed class with no index gets a list index without key records
  { "class k { signed<4> a; };", cmode1(false),
    "      static const zkt_dict_index_field_t v_all_index_fields[1] = { {0,0,0,0,0} /*empty*/ \n"
    "      }; \n" },
  { "class k { signed<4> a; };", cmode1(true),
    "      static const zkt_dict_index_field_t v_all_index_fields[1]; /*empty*/\n" },
  // name tables only for debugging
  { "class k { signed<4> a; tree<a> ia; };", cmode1(false, true),
    "    {\n      static const char * const v_class_names[] = \n      {\n        0, \n"
    "        \"k\"           , /* [1] */\n        0\n      };\n\n      dict.str_class_names = v_class_names;\n    }\n\n"
    "    {\n      static const char * const v_index_names[] = \n      {\n"
    "        \"k.ia\"           , /* [0] */\n        0\n      };\n\n      dict.str_index_names = v_index_names;\n    }\n" },
  { "class k { signed<4> a; tree<a> ia; };", cmode1(false),
    "    dict.str_class_names = 0;\n    dict.str_index_names = 0;\n" },
};
// clang-format on

TEST(DictSource, Texts) {
  for (const TextCase& c : kTexts) {
    Generated g(std::string("declare database d;\n") + c.schema, c.options);
    ASSERT_TRUE(g.run()) << c.schema << ": " << g.msg;
    const std::string text = Generated::text(g.gen.m_c);
    EXPECT_NE(text.find(c.text), std::string::npos) << c.schema << "\n--- want:\n" << c.text << "\n--- in:\n" << text;
  }
}

TEST(DictSource, Errors) {
  struct Case {
    const char* schema;
    const char* message;
  };
  const Case cases[] = {
      {"class k { signed<4> a = x; };", "initial value for k.a is not integer: \"x\""},
      {"class k { string s = 5; };", "initial value for k.s is not string literal: \"5\""},
  };
  for (const Case& c : cases) {
    Generated g(std::string("declare database d;\n") + c.schema);
    ASSERT_TRUE(g.ok) << g.msg;
    EXPECT_FALSE(g.run());
    EXPECT_EQ(g.msg, c.message);
  }
}

// ---------------------------------------------------------------- the compiled dictionary

const std::string kCompiler = ZKT_COMPILER_PATH;
const std::string kSchemas = std::string(ZKT_SOURCE_DIR) + "/tests/schemas";
const std::string kRuntime = std::string(ZKT_SOURCE_DIR) + "/tests/runtime";

// The generated dictionary function of a shared object built from {db}.c.
struct Compiled {
  void* so = nullptr;
  const zkt_dictionary_t_* d = nullptr;
  std::string err;
  Compiled(const std::string& dir, const std::string& db) {
    const std::string lib = dir + "/" + db + ".so";
    // Only the C file up to the end of the dictionary function: the accessor
    // bodies behind it don't all compile (the fixed view of a struct whose
    // member struct is declared behind it names a member it lacks).
    const std::string text = procutil::readFile(dir + "/" + db + ".c");
    const size_t at = text.find("zkt_dictionary_h " + db + "_get_dictionary(void)");
    const size_t end = at == std::string::npos ? at : text.find("\n}\n", at);
    const std::string unit = dir + "/" + db + "_dict.c";
    procutil::writeFile(unit, end == std::string::npos ? text : text.substr(0, end + 3));
    // The sequence interface up front: a class declared with sequences names
    // it without a sequence field, when the header doesn't include it.
    ProcResult r = procutil::runProgram({"/usr/bin/gcc", "-std=c99", "-shared", "-fPIC", "-w", "-I", kRuntime, "-I",
                                         dir, "-include", "zktseq.h", unit, "-o", lib});
    if (r.status != 0) {
      err = r.err;
      return;
    }
    so = dlopen(lib.c_str(), RTLD_LAZY | RTLD_LOCAL);
    if (so == nullptr) {
      err = dlerror();
      return;
    }
    auto fn = reinterpret_cast<const zkt_dictionary_t_* (*)()>(dlsym(so, (db + "_get_dictionary").c_str()));
    if (fn == nullptr) {
      err = "no " + db + "_get_dictionary";
      return;
    }
    d = fn();
  }
  ~Compiled() {
    if (so) dlclose(so);
  }
};

// What differs between the two builders by design, per schema.
struct Differences {
  bool debug;
  bool cmode1;
};

// Compares two runs of field records; a run sorted in one builder and kept
// in declaration order in the other is matched by order_no.
void compareRuns(const zkt_dict_struct_t& c, const zkt_dict_struct_t& m, const std::string& at) {
  ASSERT_EQ(c.n_fields, m.n_fields) << at;
  for (int i = 0; i < c.n_fields; i++) {
    const zkt_dict_field_t& cf = c.fields[i];
    const zkt_dict_field_t* mf = nullptr;
    for (int j = 0; j < m.n_fields; j++)
      if (m.fields[j].order_no == cf.order_no) mf = &m.fields[j];
    ASSERT_NE(mf, nullptr) << at;
    const std::string f = at + "." + cf.name;
    EXPECT_STREQ(cf.name, mf->name) << f;
    EXPECT_EQ(cf.field_el_type, mf->field_el_type) << f;
    EXPECT_EQ(cf.flags, mf->flags) << f;
    EXPECT_EQ(cf.array_size, mf->array_size) << f;
    EXPECT_EQ(cf.struct_num, mf->struct_num) << f;
    EXPECT_EQ(cf.refto_class, mf->refto_class) << f;
    EXPECT_EQ(cf.no, mf->no) << f;
    EXPECT_EQ(cf.event_id, mf->event_id) << f;
    EXPECT_EQ(cf.precision, mf->precision) << f;
    EXPECT_EQ(cf.seq_order, mf->seq_order) << f;
    EXPECT_EQ(cf.seq_elem_size, mf->seq_elem_size) << f;
    EXPECT_EQ(cf.init_index != 0, mf->init_index != 0) << f;
    // the indicator is a position in the run: compare the field it names
    if (cf.indicator != 65535 && mf->indicator != 65535) {
      EXPECT_STREQ(c.fields[cf.indicator].name, m.fields[mf->indicator].name) << f;
    } else {
      EXPECT_EQ(cf.indicator, mf->indicator) << f;
    }
  }
}

bool runIsNumeric(const Struct& s) {
  if (s.m_isDirectStruct || s.m_hasDirectStruct) return false;
  for (unsigned int i = 0; i < s.v_field.size(); i++) {
    const Field& f = s.v_field[i];
    if (f.m_isDirectStruct || f.m_pstruct->m_category == ET_DIRECT_STRUCT) return false;
    if (f.m_pstruct->m_category == ET_STRUCT && !runIsNumeric(*f.m_pstruct)) return false;
  }
  return (int)s.m_layout.c.m_size <= 65535;
}

struct Option {
  const char* name;
  std::vector<std::string> args;
  bool nosort, cmode1, debug, large;
};

// Every corpus schema through the generated C file and through the library:
// equal records but for the differences the two builders have by design.
TEST(DictSource, CompiledDictionaryEqualsTheLibrarys) {
  if (access("/usr/bin/gcc", X_OK) != 0) GTEST_SKIP() << "no gcc";
  // The C files are compiled with the functions out of the header (-debug):
  // only the dictionary is of interest here.
  const Option options[] = {
      {"none", {"-debug"}, false, false, true, false},
      {"nosort", {"-debug", "-nosort"}, true, false, true, false},
      {"cmode1", {"-debug", "-cmode1"}, false, true, true, false},
      {"large", {"-debug", "-large"}, false, false, true, true},
  };
  const std::string dir = procutil::makeTempDir();
  const std::string libDir = procutil::makeTempDir();
  int compared = 0;
  for (const std::string& file : procutil::schemaFiles(kSchemas)) {
    const std::string text = procutil::readFile(kSchemas + "/" + file);
    for (const Option& opt : options) {
      const std::string what = file + " / " + opt.name;
      const std::string out = dir + "/" + std::to_string(compared + 1);
      std::filesystem::create_directory(out);
      std::vector<std::string> argv{kCompiler, "-o", out, "-I", kSchemas};
      argv.insert(argv.end(), opt.args.begin(), opt.args.end());
      argv.push_back(kSchemas + "/" + file);
      ProcResult gen = procutil::runProgram(argv);
      zktcomp_options_t o = zktcomp_options_t();
      o.nosort = opt.nosort;
      o.largeDatabase = opt.large;
      o.cmode1 = opt.cmode1;
      o.debug = opt.debug;
      o.wcharSize = 4;
      o.include_dir = kSchemas.c_str();
      o.outDir = libDir.c_str();  // where a message removes the database's files
      dicttest::Lib lib(text, o);
      if (lib.rc != 0 || gen.status != 0) {  // refused by the library alone, by design
        EXPECT_EQ(gen.status == 0 ? 1005 : lib.rc, lib.rc) << what << ": " << gen.err;
        continue;
      }
      const std::string db = lib.name;
      Compiled c(out, db);
      ASSERT_NE(c.d, nullptr) << what << ": " << c.err;
      const zkt_dictionary_t_& cd = *c.d;
      const zkt_dictionary_t_& md = *lib.d;
      compared++;

      // the head; exact_OID_sizeof and the compiled-for widths differ by design
      EXPECT_EQ(cd.version_major, md.version_major) << what;
      EXPECT_EQ(cd.version_build, md.version_build) << what;
      EXPECT_EQ(cd.magic_number, md.magic_number) << what;
      EXPECT_EQ(cd.flags, md.flags) << what;
      EXPECT_EQ(cd.oid_is_supported, md.oid_is_supported) << what;
      EXPECT_EQ(cd.auto_oid_supported, md.auto_oid_supported) << what;
      EXPECT_EQ(cd.n_class_codes, md.n_class_codes) << what;
      EXPECT_EQ(cd.n_list_indexes, md.n_list_indexes) << what;
      EXPECT_EQ(cd.n_autoid_indexes, md.n_autoid_indexes) << what;
      EXPECT_EQ(cd.n_userdef_indexes, md.n_userdef_indexes) << what;
      EXPECT_EQ(cd.max_numof_indexes_per_obj, md.max_numof_indexes_per_obj) << what;
      EXPECT_EQ(cd.n_structs, md.n_structs) << what;
      EXPECT_EQ(cd.num_oid_estimation, md.num_oid_estimation) << what;
      EXPECT_EQ(cd.num_HA_estimation, md.num_HA_estimation) << what;
      EXPECT_EQ(cd.n_desc_indexes, md.n_desc_indexes) << what;
      EXPECT_EQ(cd.n_desc_events, md.n_desc_events) << what;
      EXPECT_EQ(cd.n_desc_colls, md.n_desc_colls) << what;
      EXPECT_EQ(cd.layout_OID_size, md.layout_OID_size) << what;
      EXPECT_EQ(cd.sizeof_zkt_offs_t[1], md.sizeof_zkt_offs_t[1]) << what;
      EXPECT_EQ(cd.sizeof_zkt_size_t[1], md.sizeof_zkt_size_t[1]) << what;
      EXPECT_EQ(cd.init_i_data_n, md.init_i_data_n) << what;
      EXPECT_EQ(cd.init_d_data_n, md.init_d_data_n) << what;
      for (int k = 1; k <= cd.n_class_codes; k++) EXPECT_STREQ(cd.str_class_names[k], md.str_class_names[k]) << what;
      for (int i = 0; i < cd.n_desc_indexes; i++) EXPECT_STREQ(cd.str_index_names[i], md.str_index_names[i]) << what;

      // Re-analyse to know which structs have numeric layouts in both forms.
      gentest::Options go;
      go.nosort = opt.nosort;
      go.large = opt.large;
      Generated model(text, go);
      ASSERT_TRUE(model.layout()) << what << ": " << model.msg;
      ClassDictCreator numbers(model.schema(), &model.rep, false);

      for (int k = 1; k <= cd.n_class_codes; k++) {
        const zkt_dict_class_info_t_& cc = cd.v_class_info[k];
        const zkt_dict_class_info_t_& mc = md.v_class_info[k];
        const std::string at = what + " class " + std::to_string(k);
        EXPECT_EQ(cc.first_index_num, mc.first_index_num) << at;
        EXPECT_EQ(cc.last_index_num, mc.last_index_num) << at;
        EXPECT_EQ(cc.list_index_num, mc.list_index_num) << at;
        EXPECT_EQ(cc.autoid_index_num, mc.autoid_index_num) << at;
        EXPECT_EQ(cc.history_index_num, mc.history_index_num) << at;
        EXPECT_EQ(cc.first_event_num, mc.first_event_num) << at;
        EXPECT_EQ(cc.last_event_num, mc.last_event_num) << at;
        EXPECT_EQ(cc.flags, mc.flags) << at;
        EXPECT_EQ(cc.struct_ptr - cd.v_all_struct, mc.struct_ptr - md.v_all_struct) << at;
        const Struct& s = *numbers.v_allStructs[cc.struct_ptr - cd.v_all_struct];
        if (!runIsNumeric(s)) continue;  // sizes of direct structs differ by design
        EXPECT_EQ(cc.fixedsize, mc.fixedsize) << at;
        EXPECT_EQ(cc.init_size, mc.init_size) << at;
        EXPECT_EQ(cc.autoid_offset, mc.autoid_offset) << at;
        EXPECT_EQ(cc.auto_oid_offset, mc.auto_oid_offset) << at;
      }
      for (int i = 0; i < cd.n_structs; i++) {
        const zkt_dict_struct_t& cs = cd.v_all_struct[i];
        const zkt_dict_struct_t& ms = md.v_all_struct[i];
        const std::string at = what + " " + cs.name;
        EXPECT_STREQ(cs.name, ms.name) << at;
        EXPECT_EQ(cs.flags, ms.flags) << at;
        compareRuns(cs, ms, at);
        if (!runIsNumeric(*numbers.v_allStructs[i])) continue;
        EXPECT_EQ(cs.c_size, ms.c_size) << at;
        EXPECT_EQ(cs.u_size, ms.u_size) << at;
        EXPECT_EQ(cs.c_align, ms.c_align) << at;
        EXPECT_EQ(cs.u_align, ms.u_align) << at;
      }
      for (int i = 0; i < cd.n_desc_indexes; i++) {
        const zkt_dict_index_t& ci = cd.v_desc_indexes[i];
        const zkt_dict_index_t& mi = md.v_desc_indexes[i];
        const std::string at = what + " index " + std::to_string(i);
        EXPECT_EQ(ci.class_code, mi.class_code) << at;
        EXPECT_EQ(ci.impl_no, mi.impl_no) << at;
        EXPECT_EQ(ci.numof_fields, mi.numof_fields) << at;
        EXPECT_EQ(ci.flags, mi.flags) << at;
        EXPECT_EQ(ci.numof_keys_estimate, mi.numof_keys_estimate) << at;
        EXPECT_EQ(ci.userdef_id, mi.userdef_id) << at;
        for (int j = 0; j < ci.numof_fields; j++) {
          const zkt_dict_index_field_t& cf = ci.fields[j];
          const zkt_dict_index_field_t& mf = mi.fields[j];
          EXPECT_EQ(cf.field_type, mf.field_type) << at;
          EXPECT_EQ(cf.fld_flags & ~16, mf.fld_flags) << at;  // 16: binary keys, C form only
          EXPECT_EQ(cf.fld_no, mf.fld_no) << at;
          EXPECT_EQ(cf.collation_id, mf.collation_id) << at;
          if (cf.field_type != 23) {  // a bit field's key size is its bit count in the C form
            EXPECT_EQ(cf.field_size, mf.field_size) << at;
          }
        }
      }
      for (int i = 0; i < cd.n_desc_events; i++) {
        EXPECT_EQ(cd.v_desc_events[i].class_code, md.v_desc_events[i].class_code) << what;
        EXPECT_EQ(cd.v_desc_events[i].flags, md.v_desc_events[i].flags) << what;
        EXPECT_EQ(cd.v_desc_events[i].fld_no, md.v_desc_events[i].fld_no) << what;
      }
      for (int i = 0; i < cd.n_desc_colls; i++) {
        EXPECT_STREQ(cd.v_desc_colls[i].name, md.v_desc_colls[i].name) << what;
        EXPECT_EQ(cd.v_desc_colls[i].type, md.v_desc_colls[i].type) << what;
      }
      for (unsigned int i = 0; i < cd.init_i_data_n; i++)
        EXPECT_EQ(cd.init_i_data.ptr[i], md.init_i_data.ptr[i]) << what;
      for (unsigned int i = 0; i < cd.init_d_data_n; i++)
        EXPECT_EQ(cd.init_d_data.ptr[i], md.init_d_data.ptr[i]) << what;
    }
  }
  EXPECT_GE(compared, 35);
  std::filesystem::remove_all(dir);
  std::filesystem::remove_all(libDir);
}

}  // namespace
