// Memory dictionary builder: a generator that writes no files and builds the dictionary records in memory.
#ifndef ZKTCOMP_GENDICT_H
#define ZKTCOMP_GENDICT_H

#include "dictenc.h"
#include "genout.h"
#include "zktdict.h"

// The runtime's allocators: every block of the dictionary comes from them,
// and the dictionary then belongs to the caller.
extern "C" {
void* zkt_sys_malloc(size_t size);
void* zkt_sys_calloc(size_t n, size_t size);
}

// The runtime's allocators called outside the compile arena: what the
// runtime allocates for itself on the way must outlive the compile.
void* runtimeMalloc(size_t size);
void* runtimeCalloc(size_t n, size_t size);

// A GenOutput whose streams all go nowhere and whose layout is all numbers:
// the numbers the target compiler would compute from the generated C, direct
// structs included. generate() runs the layout and builds the dictionary.
class MemoryGenDict : public GenOutput {
public:
  mstring m_outDir;

  // The target's zkt_size_t is this process's: fixed at 8.
  MemoryGenDict(Schema& sc, bool debug, bool nosort, bool dumpxml, bool gen_hpp, bool gen_cs, bool gen_java,
                bool gen_smartptr, IErrReporter* err, const mstring& outDir, const mstring& csNamespace,
                const mstring& javaPackage, bool cmode1, bool genXmlMethods, bool genJsonMethods, bool genSql,
                bool largeDatabase, int wcharSize, bool prefix, bool mergeable, bool dll);
  ~MemoryGenDict() override {}

  // A null stream for each of the eleven streams; m_java stays unset.
  void createStreams(bool udf, bool coll) override;
  bool layout(Struct& s, int start, Class* cls) override;
  // Numeric offsets; a field inside a direct struct takes its scalar's
  // natural alignment, and a direct struct is padded at its end.
  void layout(Layout& l, int start, Struct* s) override;
  void update_layout_strings(FldLayout& fl) override;  // nothing: no text here
  FSize getArraySize(FSize& elem, int n) override;     // the number elem * n
  using GenOutput::layout;

  zkt_dictionary_t_* generate();
  void generate_indexes(zkt_dictionary_t_* dict, unsigned int n_index_fields, unsigned int n_indexes);
  void generate_collations(zkt_dictionary_t_* dict);
  uint16_t GetClassFlags(Class* cls);

private:
  void classInfo(zkt_dictionary_t_* dict, Class& cls, int k, int firstIndex, int firstEvent);
  void events(zkt_dictionary_t_* dict, unsigned int n_events);
};

// Builds v_all_struct, the field records and the initialiser tables.
class MemoryClassDictCreator : public ClassDictCreator {
public:
  mvector<int> m_iinit_values;     // integer and boolean initialisers, in int4 words
  mvector<double> m_dinit_values;  // double initialisers
  mstring m_sinit_values;          // string initialisers, each ended by a zero byte
  int m_sinit_size = 0;            // not used

  MemoryClassDictCreator(Schema& sc, IErrReporter* err) : ClassDictCreator(sc, err, false) {}
  void create(zkt_dictionary_t_* dict, bool sort);

  static unsigned int GetFieldFlags(Field* f) { return DictEnc::fieldFlags(*f); }
  static unsigned int GetStructFlags(Struct* s) { return DictEnc::structFlags(*s); }
  int GetSeqOrder(Field* f);

private:
  // Appends f's initial values to their table; returns init_index.
  unsigned int initValues(const Struct& s, const Field& f, int elemSize);
  void copyTables(zkt_dictionary_t_* dict);
};

// A private copy of s from zkt_sys_malloc.
char* dictStrdup(const char* s);

#endif
