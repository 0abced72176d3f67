// The library against the file compiler's layout: class codes, struct numbers, numeric sizes and offsets per schema.
#include <dirent.h>
#include <gtest/gtest.h>

#include <fstream>
#include <sstream>

#include "analyzer_util.h"
#include "dict_util.h"
#include "dictenc.h"
#include "genout.h"
#include "proc_util.h"

namespace {

using dicttest::Lib;

const std::string kSchemas = std::string(ZKT_SOURCE_DIR) + "/tests/schemas";

// Direct structs are laid out by the target compiler in one form and
// replayed in numbers in the other; they (and what holds them) differ by design.
bool involvesDirect(const Struct& s) {
  if (s.m_isDirectStruct || s.m_hasDirectStruct) return true;
  for (unsigned int i = 0; i < s.v_field.size(); i++)
    if (s.v_field[i].m_isDirectStruct || s.v_field[i].m_pstruct->m_category == ET_DIRECT_STRUCT) return true;
  return false;
}

// An index with two vector- or array-based segments passes the analyzer but
// has no place in the dictionary: its name is the panic.
const Index* twoVectorSegments(Schema& sc) {
  for (ISet::HPos pos(sc.s_class.first()); pos.valid(); pos.next()) {
    const Class& c = *static_cast<Class*>(pos.get().get());
    for (unsigned int i = 0; i < c.v_index.size(); i++) {
      int n = 0;
      for (unsigned int j = 0; j < c.v_index[i].v_fldParsed.size(); j++) {
        const Index::Segment& seg = c.v_index[i].v_fldParsed[j];
        if (seg.m_isVectorBased || seg.m_isArrayBased) n++;
      }
      if (n > 1) return &c.v_index[i];
    }
  }
  return nullptr;
}

struct Option {
  const char* name;
  bool nosort, large, compact;
};

TEST(DictDifferential, LibraryAgreesWithTheFileCompilerLayout) {
  const Option options[] = {
      {"none", false, false, false}, {"nosort", true, false, false},
      {"large", false, true, false}, {"compact", false, false, true},
  };
  const std::vector<std::string> files = procutil::schemaFiles(kSchemas);
  int compared = 0;  // fields compared, so that skipping can't pass for agreement
  ASSERT_GE(files.size(), 9u);
  for (const std::string& file : files) {
    const std::string text = procutil::readFile(kSchemas + "/" + file);
    for (const Option& opt : options) {
      const std::string what = file + " / " + opt.name;
      antest::Options ao;
      ao.nosort = opt.nosort;
      ao.large = opt.large;
      ao.allCompact = opt.compact;
      antest::Analysis a(text, ao);
      ASSERT_TRUE(a.ok) << what << ": " << a.msg;
      a.an.doChecks();
      Schema& sc = a.schema();
      GenOutput gen(sc, false, opt.nosort, false, false, false, false, false, &a.rep, "", "", "", false, false,
                    false, false, opt.large, 8, 4, false, false, false);
      gen.layout();
      ClassDictCreator numbers(sc, &a.rep, false);

      zktcomp_options_t o = zktcomp_options_t();
      o.nosort = opt.nosort;
      o.largeDatabase = opt.large;
      o.allCompact = opt.compact;
      o.wcharSize = 4;
      o.include_dir = kSchemas.c_str();
      if (const Index* bad = twoVectorSegments(sc)) {
        ProcResult p = procutil::runChild([&] { Lib l(text, o); });
        EXPECT_EQ(p.err, "internal error: index(" + std::string(bad->m_name.c_str()) +
                             ") : An index on a vector of structs may only include one field of the structure.\n")
            << what;
        continue;
      }
      Lib l(text, o);
      ASSERT_EQ(l.rc, 0) << what << ": " << (l.msgs.empty() ? "" : l.msgs.back().text);

      // Class codes and the order of v_all_struct.
      for (ISet::HPos pos(sc.s_class.first()); pos.valid(); pos.next()) {
        const Class& c = *static_cast<Class*>(pos.get().get());
        EXPECT_STREQ(l.d->str_class_names[c.m_classCode], c.m_name.c_str()) << what;
      }
      ASSERT_EQ((int)l.d->n_structs, numbers.m_nStructs) << what;
      for (int i = 0; i < numbers.m_nStructs; i++) {
        const Struct& s = *numbers.v_allStructs[i];
        const zkt_dict_struct_t& ds = l.d->v_all_struct[i];
        EXPECT_STREQ(ds.name, s.m_name.c_str()) << what;
        if (involvesDirect(s)) continue;
        const Layout& c = s.m_layout.c;
        const Layout& u = s.m_layout.u;
        ASSERT_FALSE(c.m_size.is_str() || u.m_size.is_str()) << what << " " << s.m_name.c_str();
        EXPECT_EQ(ds.c_size, (uint16_t)(int)c.m_size) << what << " " << s.m_name.c_str();
        EXPECT_EQ(ds.c_align, (int)c.m_align) << what << " " << s.m_name.c_str();
        EXPECT_EQ(ds.u_size, (unsigned)(int)u.m_size) << what << " " << s.m_name.c_str();
        EXPECT_EQ(ds.u_align, (unsigned)(int)u.m_align) << what << " " << s.m_name.c_str();
        for (unsigned int j = 0; j < s.v_field.size(); j++) {
          const Field& f = s.v_field[j];
          const zkt_dict_field_t* df = Lib::field(&ds, f.m_name.c_str());
          ASSERT_NE(df, nullptr) << what << " " << f.m_name.c_str();
          const std::string at = what + " " + s.m_name.c_str() + "." + f.m_name.c_str();
          EXPECT_EQ(df->layout.c_offset, (uint16_t)(int)f.m_c_layout->m_offset) << at;
          EXPECT_EQ(df->layout.u_offset, (unsigned)(int)f.m_u_layout->m_offset) << at;
          EXPECT_EQ(df->layout.u_size, (unsigned)(int)f.m_u_layout->m_size) << at;
          EXPECT_EQ(df->layout.u_align, (unsigned)(int)f.m_u_layout->m_align) << at;
          compared++;
        }
      }
    }
  }
  EXPECT_GT(compared, 500);
}

}  // namespace
