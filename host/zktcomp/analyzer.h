// Schema analyzer: recursive descent over the token reader that builds and checks the schema model.
#ifndef ZKTCOMP_ANALYZER_H
#define ZKTCOMP_ANALYZER_H

#include "job.h"
#include "parser.h"
#include "schema.h"

// Reads one schema into m_s (analyze), then finishes and checks it
// (doChecks). Every error goes through the Parser, which adds file and line,
// and never returns; warnings do.
class Analyzer {
public:
  enum mplacement { mem_dflt = 0, mem_trans = 1, mem_pers = 2 };
  enum atomicity { acid_default = 0, acid_atomic = 1, acid_nonatomic = 2 };

  Parser& m_p;
  Schema m_s;
  bool m_sql;         // also reserve the SQL words
  bool m_allCompact;  // every class compact
  IOnDbNameFound* m_onDbNameFound;  // not owned
  unsigned short m_field_seq;       // source of Field::m_seq_no, from 1
  bool m_global_persist;    // default placement of a class is persistent
  bool m_global_transient;  // stored, read by nobody
  bool m_global_atomic;     // default atomicity of a class
  bool m_largeDatabase;     // blob and sequence sizes; dictionary flag 1
  int m_target_sizeof_zkt_size_t;  // limits the fields of a class with a kd-tree index
  int m_wcharSize;                 // stored, read by nobody here
  bool m_strictAlignment;   // eight-byte base types aligned to 8 instead of 4
  bool m_ddlCompatibility;  // enum values 4 bytes, autoid field first, list index as a tree; flag 2
  const mvector<mstring>& m_suppressApiList;  // not owned; "" stands for every name

  Analyzer(Parser& p, bool allCompact, bool sql, bool persist, bool transient, bool atomic,
           IOnDbNameFound* onDbNameFound, bool largeDatabase, int target_sizeof_zkt_size_t,
           bool strictAlignment, bool ddlCompatibility, int wcharSize, const mvector<mstring>& suppressApiList);

  Schema& getSchema() { return m_s; }

  // ---- schema statements
  void analyze();
  void initBaseTypes();
  void do_declare();
  void do_iot();
  void do_struct();
  void do_direct_struct(bool packed);
  void do_enum();
  void do_calculator();

  // ---- classes
  void do_class(bool compact, mplacement placement, bool local, bool distributed, atomicity acid,
                TableIotType iotType);
  void add_iot_fields(Class& cls);

  // ---- fields and types
  mstring getTypeName(int& precision);
  mstring fieldTypeName(Field& f);  // the same, the precision kept in f
  void do_field(Struct& s);
  void do_direct_field(Struct& s);
  void add_indicators(Struct& s);

  // ---- indexes
  // The modifiers that stand in front of an index word, kept by the class
  // body loop until the next index word.
  struct IndexModifiers {
    bool userdef = false;
    bool voluntary = false;
    bool unique = false;
    bool nonunique = false;
    bool thick = false;
    bool inclusive = false;
    bool pending = false;  // set by every modifier but inclusive
  };
  // Applies word if it is an index modifier; false if it is none.
  bool do_index_modifier(const mstring& word, IndexModifiers& mods);
  // word is an index word: its checks, then do_index_declaration.
  void do_index_word(Class& cls, const mstring& word, IndexType type, const IndexModifiers& mods);
  void do_index_declaration(Class& cls, IndexType type, bool unique, bool voluntary, bool userdef, bool thick,
                            bool inclusive);
  void do_indexFields(Index& index, Class& cls);
  Index::Segment constructIndexSegment(const mstring& indexName, bool descending, bool case_insensitive,
                                       bool unique, Class& cls, const mstring& path, const mstring& collation);
  bool require_list_index(mvector<Index>& indexes);

  // ---- events and TTL
  void do_event(Class& cls);
  void do_ttl(Class& cls);

  // ---- finishing pass
  void doChecks();
  void finishDistribClasses();
  void finishUpDownClasses();
  void finishStructFields();
  void struct_finishStructFields(Struct& s, bool isClass);
  void finishIndices();
  void finishEvents();
  void checkObjid();
  void checkRefTo();

  // ---- reserved words
  static bool isReservedWord(const mstring& word, bool sql);
  void checkIsNotReserved(const mstring& word);

  // ---- errors: forwarded to the Parser, which adds file and line
  [[noreturn]] void error(const mstring& txt, int pos = 0);
  [[noreturn]] void error1(const mstring& txt, const mstring& p1, int pos = 0);
  [[noreturn]] void error2(const mstring& txt, const mstring& p1, const mstring& p2, int pos = 0);
  [[noreturn]] void error3(const mstring& txt, const mstring& p1, const mstring& p2, const mstring& p3,
                           int pos = 0);
  [[noreturn]] void error4(const mstring& txt, const mstring& p1, const mstring& p2, const mstring& p3,
                           const mstring& p4, int pos = 0);
  void warning(const mstring& txt, int pos = 0);

private:
  // Reads a token and pushes it back unless it is word.
  bool accept(const char* word);
  // Sets m_suppressApi when name (or "") stands in the suppress list.
  void applySuppressList(Struct& s, const mstring& name);
  void placeInStruct(Struct& s, Field& f);
  // Reads the "< class >" behind ref or autoid_t into the field's refto.
  void readRefTarget(Field& f);
  // Reads "= value" or "= { values }" into f.
  void readInitialValues(Field& f);
  // Class-body end: resizes updated_bitmap fields to the final field count.
  void resizeBitmaps(Class& cls);
  // The "struct already has a field of that name" test, kept fast by a name
  // set of the struct being read. Names are only ever appended while a body
  // is read; resetFieldNames drops the set (new body, or a field inserted in
  // the middle).
  bool hasFieldNamed(const Struct& s, const mstring& name);
  void resetFieldNames();

  StringSet m_fieldNames;
  const Struct* m_fieldNamesOf = nullptr;
  unsigned int m_fieldNamesCount = 0;

  // ---- finishing pass
  // A struct whose fields struct_finishStructFields is finishing: the flags
  // collected so far, and where it stands.
  struct FinishFrame {
    Struct* s = nullptr;
    unsigned int next = 0;  // the field being finished
    bool waiting = false;   // that field's type is being finished further up the stack
    bool dynamic = false;
    bool blobs = false;
    bool sequences = false;
    bool inits = false;
  };
  void pushFinishFrame(Struct& s);
  void resolveFieldType(Struct& s, Field& f, FinishFrame& fr);
  // The type of that name; an error naming s if there is none.
  Struct* findFieldType(const mstring& name, const Struct& s);
  void addListIndex(Class& cls);
  void checkSegment(const Class& cls, const Index& idx, Index::Segment& seg);

  mvector<FinishFrame> m_finishing;  // the types being finished, innermost last
  StringSet m_inProgress;            // names whose finishing has begun: a type met again unfinished includes itself

  Analyzer(const Analyzer&);
  Analyzer& operator=(const Analyzer&);
};

#endif
