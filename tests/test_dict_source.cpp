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
using dicttest::expectSame;

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
    using F = zkt_dict_field_t;
    expectSame(cf, *mf, f, &F::field_el_type, &F::flags, &F::array_size, &F::struct_num, &F::refto_class, &F::no,
               &F::event_id, &F::precision, &F::seq_order, &F::seq_elem_size);
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
      using D = zkt_dictionary_t_;
      expectSame(cd, md, what, &D::version_major, &D::version_build, &D::magic_number, &D::flags, &D::oid_is_supported,
                 &D::auto_oid_supported, &D::n_class_codes, &D::n_list_indexes, &D::n_autoid_indexes,
                 &D::n_userdef_indexes, &D::max_numof_indexes_per_obj, &D::n_structs, &D::num_oid_estimation,
                 &D::num_HA_estimation, &D::n_desc_indexes, &D::n_desc_events, &D::n_desc_colls, &D::layout_OID_size,
                 &D::init_i_data_n, &D::init_d_data_n);
      EXPECT_EQ(cd.sizeof_zkt_offs_t[1], md.sizeof_zkt_offs_t[1]) << what;
      EXPECT_EQ(cd.sizeof_zkt_size_t[1], md.sizeof_zkt_size_t[1]) << what;
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
        using C = zkt_dict_class_info_t_;
        expectSame(cc, mc, at, &C::first_index_num, &C::last_index_num, &C::list_index_num, &C::autoid_index_num,
                   &C::history_index_num, &C::first_event_num, &C::last_event_num, &C::flags);
        EXPECT_EQ(cc.struct_ptr - cd.v_all_struct, mc.struct_ptr - md.v_all_struct) << at;
        const Struct& s = *numbers.v_allStructs[cc.struct_ptr - cd.v_all_struct];
        if (!runIsNumeric(s)) continue;  // sizes of direct structs differ by design
        expectSame(cc, mc, at, &C::fixedsize, &C::init_size, &C::autoid_offset, &C::auto_oid_offset);
      }
      for (int i = 0; i < cd.n_structs; i++) {
        const zkt_dict_struct_t& cs = cd.v_all_struct[i];
        const zkt_dict_struct_t& ms = md.v_all_struct[i];
        const std::string at = what + " " + cs.name;
        EXPECT_STREQ(cs.name, ms.name) << at;
        EXPECT_EQ(cs.flags, ms.flags) << at;
        compareRuns(cs, ms, at);
        using S = zkt_dict_struct_t;
        if (runIsNumeric(*numbers.v_allStructs[i])) expectSame(cs, ms, at, &S::c_size, &S::u_size, &S::c_align, &S::u_align);
      }
      for (int i = 0; i < cd.n_desc_indexes; i++) {
        const zkt_dict_index_t& ci = cd.v_desc_indexes[i];
        const zkt_dict_index_t& mi = md.v_desc_indexes[i];
        const std::string at = what + " index " + std::to_string(i);
        using I = zkt_dict_index_t;
        expectSame(ci, mi, at, &I::class_code, &I::impl_no, &I::numof_fields, &I::flags, &I::numof_keys_estimate,
                   &I::userdef_id);
        for (int j = 0; j < ci.numof_fields; j++) {
          const zkt_dict_index_field_t& cf = ci.fields[j];
          const zkt_dict_index_field_t& mf = mi.fields[j];
          using K = zkt_dict_index_field_t;
          expectSame(cf, mf, at, &K::field_type, &K::fld_no, &K::collation_id);
          EXPECT_EQ(cf.fld_flags & ~16, mf.fld_flags) << at;  // 16: binary keys, C form only
          if (cf.field_type != 23) {  // a bit field's key size is its bit count in the C form
            EXPECT_EQ(cf.field_size, mf.field_size) << at;
          }
        }
      }
      for (int i = 0; i < cd.n_desc_events; i++) {
        using E = zkt_dict_event_t;
        expectSame(cd.v_desc_events[i], md.v_desc_events[i], what, &E::class_code, &E::flags, &E::fld_no);
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
