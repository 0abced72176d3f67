// Schema analyzer: schema statements, class bodies, fields and types, indexes, events and TTL, reserved words.
#include "analyzer.h"

#include <string.h>

Analyzer::Analyzer(Parser& p, bool allCompact, bool sql, bool persist, bool transient, bool atomic,
                   IOnDbNameFound* onDbNameFound, bool largeDatabase, int target_sizeof_zkt_size_t,
                   bool strictAlignment, bool ddlCompatibility, int wcharSize,
                   const mvector<mstring>& suppressApiList)
    : m_p(p),
      m_sql(sql),
      m_allCompact(allCompact),
      m_onDbNameFound(onDbNameFound),
      m_field_seq(1),
      m_global_persist(persist),
      m_global_transient(transient),
      m_global_atomic(atomic),
      m_largeDatabase(largeDatabase),
      m_target_sizeof_zkt_size_t(target_sizeof_zkt_size_t),
      m_wcharSize(wcharSize),
      m_strictAlignment(strictAlignment),
      m_ddlCompatibility(ddlCompatibility),
      m_suppressApiList(suppressApiList) {
  if (m_largeDatabase) m_s.m_dict_flags |= 1;
  if (m_ddlCompatibility) m_s.m_dict_flags |= 2;
  initBaseTypes();
}

// ---------------------------------------------------------------- errors

// Analyzer errors carry position 0: they show a line and no column.
void Analyzer::error(const mstring& txt, int pos) { m_p.error(txt, pos); }
void Analyzer::error1(const mstring& txt, const mstring& p1, int pos) { m_p.error1(txt, p1, pos); }
void Analyzer::error2(const mstring& txt, const mstring& p1, const mstring& p2, int pos) {
  m_p.error2(txt, p1, p2, pos);
}
void Analyzer::error3(const mstring& txt, const mstring& p1, const mstring& p2, const mstring& p3, int pos) {
  m_p.error3(txt, p1, p2, p3, pos);
}
void Analyzer::error4(const mstring& txt, const mstring& p1, const mstring& p2, const mstring& p3,
                      const mstring& p4, int pos) {
  m_p.error4(txt, p1, p2, p3, p4, pos);
}
void Analyzer::warning(const mstring& txt, int pos) { m_p.warning(txt, pos); }

// ---------------------------------------------------------------- small helpers

bool Analyzer::accept(const char* word) {
  mstring t = m_p.get();
  if (t == word) return true;
  m_p.takeBack(t);
  return false;
}

void Analyzer::applySuppressList(Struct& s, const mstring& name) {
  for (unsigned int i = 0; i < m_suppressApiList.size(); i++) {
    if (m_suppressApiList[i].empty() || m_suppressApiList[i] == name) {
      s.m_suppressApi = true;
      return;
    }
  }
}

bool Analyzer::hasFieldNamed(const Struct& s, const mstring& name) {
  if (s.v_field.size() <= 16) {  // a short list is searched faster than hashed
    // Names are tokens, without NULs: equal lengths and bytes are equal texts.
    // The last bytes first: names of one struct often differ only there.
    for (unsigned int i = 0; i < s.v_field.size(); i++) {
      const mstring& n = s.v_field[i].m_name;
      const unsigned int len = name.size();
      if (n.size() == len && (len == 0 || n.p[len - 1] == name.p[len - 1]) && memcmp(n.c_str(), name.c_str(), len) == 0)
        return true;
    }
    return false;
  }
  if (m_fieldNamesOf != &s || m_fieldNamesCount > s.v_field.size()) {
    m_fieldNames = StringSet();
    m_fieldNamesOf = &s;
    m_fieldNamesCount = 0;
  }
  for (; m_fieldNamesCount < s.v_field.size(); m_fieldNamesCount++)
    m_fieldNames.insert(s.v_field[m_fieldNamesCount].m_name);
  return m_fieldNames.find(name);
}

void Analyzer::resetFieldNames() { m_fieldNamesOf = nullptr; }

// Ties a field to its struct and marks a direct-struct type. Only a direct
// struct declared before the field is seen here.
void Analyzer::placeInStruct(Struct& s, Field& f) {
  Struct* type = m_s.findType(f.m_eltype);
  if (type != nullptr && type->m_category == ET_DIRECT_STRUCT) {
    f.m_isDirectStruct = true;
    s.m_hasDirectStruct = true;
  }
  f.m_containerStruct = &s;
}

// ---------------------------------------------------------------- base types

namespace {
struct BaseTypeRow {
  const char* name;
  TypeCategory category;
  int cSize, uSize, cAlign, uAlign;
  const char* cType;
};
}  // namespace

// The types that exist before the first statement. The last column holds C
// type names: as schema types "int4", "uint2" and the like are unknown.
void Analyzer::initBaseTypes() {
  const int a8 = m_strictAlignment ? 8 : 4;
  const int blobSize = m_largeDatabase ? 12 : 8;
  const int blobAlign = m_largeDatabase ? 8 : 4;
  const int seq = m_largeDatabase ? 8 : 4;
  // clang-format off
  const BaseTypeRow rows[] = {
    // name           category            c size    u size    c align    u align    C type
    { "signed<1>",   ET_SIMPLE,          1,        1,        1,         1,         "int1" },
    { "signed<2>",   ET_SIMPLE,          2,        2,        2,         2,         "int2" },
    { "signed<4>",   ET_SIMPLE,          4,        4,        4,         4,         "int4" },
    { "signed<8>",   ET_SIMPLE,          8,        8,        a8,        a8,        "zkt_int8" },
    { "autoid_t",    ET_SIMPLE,          8,        8,        a8,        a8,        "autoid_t" },
    { "$autoid",     ET_AUTOID,          8,        8,        a8,        a8,        "autoid_t" },
    { "$auto_oid",   ET_AUTOOID,         8,        8,        a8,        a8,        "zkt_int8" },
    // $version: a size of 4 beside the C type int2, as the dictionary expects; intended
    { "$version",    ET_VERSION,         4,        4,        4,         4,         "int2" },
    { "float",       ET_SIMPLE,          4,        4,        4,         4,         "float" },
    { "double",      ET_SIMPLE,          8,        8,        a8,        a8,        "double" },
    { "unsigned<1>", ET_SIMPLE,          1,        1,        1,         1,         "uint1" },
    { "unsigned<2>", ET_SIMPLE,          2,        2,        2,         2,         "uint2" },
    { "unsigned<4>", ET_SIMPLE,          4,        4,        4,         4,         "uint4" },
    { "boolean",     ET_SIMPLE,          1,        1,        1,         1,         "uint1" },
    { "unsigned<8>", ET_SIMPLE,          8,        8,        a8,        a8,        "uint8" },
    { "datetime",    ET_SIMPLE,          8,        8,        a8,        a8,        "zkt_datetime" },
    { "date",        ET_SIMPLE,          4,        4,        4,         4,         "zkt_date" },
    { "time",        ET_SIMPLE,          4,        4,        4,         4,         "zkt_time" },
    { "string",      ET_STRING,          2,        4,        2,         4,         "" },
    { "varbinary",   ET_VARBINARY,       2,        4,        2,         4,         "" },
    { "nstring",     ET_UNICODE_STRING,  2,        4,        2,         4,         "" },
    { "blob",        ET_BLOB,            blobSize, blobSize, blobAlign, blobAlign, "" },
    { "sequence",    ET_SEQUENCE,        seq,      seq,      seq,       seq,       "" },
  };
  // clang-format on
  for (const BaseTypeRow& r : rows)
    m_s.s_struct.insert(HIComparable(new Struct(r.name, r.category, r.cSize, r.uSize, r.cAlign, r.uAlign, r.cType)));
}

// ---------------------------------------------------------------- reserved words

// clang-format off
static const char* const kReservedWords[] = {  // 56 words of the schema language
  "class", "signed", "unsigned", "char", "binary", "OID", "oid", "compact", "struct", "list",
  "sequences", "autoid", "hash", "tree", "double", "float", "string", "declare", "database", "voluntary",
  "optional", "date", "time", "datetime", "vector", "history", "unique", "nonunique", "ascending", "asc",
  "descending", "desc", "case_insensitive", "ignore_case", "ref", "event", "new", "delete", "delete_all", "checkpoint",
  "update", "uptable", "downtable", "iot", "calculator", "nchar", "nstring", "direct", "packed", "persistent",
  "transient", "local", "distributed", "distrib", "userdef", "collate",
};

static const char* const kSqlReservedWords[] = {  // 115 words of the SQL layer
  "add", "all", "and", "any", "as", "asc", "avg", "atomic", "between", "binary",
  "bigint", "bit", "blob", "boolean", "by", "cascade", "cast", "char", "constraint", "count",
  "create", "date", "delete", "desc", "distinct", "domain", "drop", "escape", "except", "exists",
  "false", "for", "foreign", "from", "group", "having", "in", "index", "inner", "into",
  "intersect", "insert", "is", "int", "integer", "join", "key", "left", "length", "like",
  "limit", "longint", "lower", "max", "min", "minus", "natural", "not", "nonatomic", "now",
  "null", "on", "or", "order", "outer", "primary", "reference", "references", "right", "select",
  "set", "smallint", "some", "string", "sysdate", "substr", "sum", "table", "time", "timestamp",
  "tinyint", "to", "true", "values", "varbinary", "varchar", "longvarbinary", "longvarchar", "union", "unique",
  "unsigned", "update", "upper", "using", "where", "unicode", "abs", "acos", "asin", "atan",
  "ceil", "cos", "decimal", "double", "exp", "float", "floor", "log", "numeric", "real",
  "sin", "sqrt", "tan", "TTL_count", "TTL_clock_time",
};
// clang-format on

namespace {

// A fixed table of words by hash, filled when the program starts: a lookup
// hashes the word once and compares it with one or two candidates.
template <size_t N>
class WordTable {
public:
  template <size_t M>
  explicit WordTable(const char* const (&words)[M]) : m_slots() {
    static_assert(2 * M <= N, "a table at most half full");
    for (const char* w : words) {
      size_t i = hash(w) & (N - 1);
      while (m_slots[i] != nullptr) i = (i + 1) & (N - 1);
      m_slots[i] = w;
    }
  }
  bool has(const char* s) const {
    for (size_t i = hash(s) & (N - 1); m_slots[i] != nullptr; i = (i + 1) & (N - 1))
      if (strcmp(m_slots[i], s) == 0) return true;
    return false;
  }

private:
  const char* m_slots[N];
  static size_t hash(const char* s) {
    size_t h = 2166136261u;
    for (; *s; s++) h = (h ^ (unsigned char)*s) * 16777619u;
    return h ^ (h >> 15);
  }
};

const WordTable<128> kReserved(kReservedWords);
const WordTable<256> kSqlReserved(kSqlReservedWords);

}  // namespace

// Exact and case-sensitive; the SQL words only with sql.
bool Analyzer::isReservedWord(const mstring& word, bool sql) {
  const char* s = word.c_str();
  return kReserved.has(s) || (sql && kSqlReserved.has(s));
}

void Analyzer::checkIsNotReserved(const mstring& word) {
  if (isReservedWord(word, m_sql)) error1("reserved word #1", word);
}

// ---------------------------------------------------------------- schema statements

namespace {
// Modifiers in front of a class; they apply to the next class only.
struct ClassModifiers {
  bool compact;
  bool local = false;
  bool distributed = false;
  bool seen = false;
  Analyzer::mplacement placement = Analyzer::mem_dflt;
  Analyzer::atomicity acid = Analyzer::acid_default;
  TableIotType iot = IOT_TABLE_NONE;
  explicit ClassModifiers(bool allCompact) : compact(allCompact) {}
};
}  // namespace

// schema -> { class-modifiers 'class' ... | declare | struct | direct struct | enum | calculator | iot }
void Analyzer::analyze() {
  ClassModifiers m(m_allCompact);
  for (;;) {
    mstring tok = m_p.get();
    if (tok.empty()) break;

    bool modifier = true;
    if (tok == "local") {
      if (m.distributed) error("'local' contradicts with 'distributed' keyword.");
      m.local = true;
    } else if (tok == "distributed" || tok == "distrib") {
      if (m.local) error("'local' contradicts with 'distributed' keyword.");
      m.distributed = true;
    } else if (tok == "uptable") {
      if ((m_s.m_dict_flags & 4) == 0) error("'uptable' can be declared only for IoT schema");
      if (m.iot == IOT_TABLE_DOWN) error("'uptable' contradicts with 'downtable' keyword.");
      m.iot = IOT_TABLE_UP;
    } else if (tok == "downtable") {
      if ((m_s.m_dict_flags & 4) == 0) error("'downtable' can be declared only for IoT schema");
      if (m.iot == IOT_TABLE_UP) error("'downtable' contradicts with 'uptable' keyword.");
      m.iot = IOT_TABLE_DOWN;
    } else if (tok == "compact") {
      m.compact = true;
    } else if (tok == "persistent" || tok == "transient") {
      if (m.placement != mem_dflt) error("expected 'class' keyword");
      m.placement = tok == "persistent" ? mem_pers : mem_trans;
    } else if (tok == "atomic" || tok == "nonatomic") {
      if (m.acid != acid_default) error("expected 'class' keyword");
      m.acid = tok == "atomic" ? acid_atomic : acid_nonatomic;
    } else {
      modifier = false;
    }
    if (modifier) {
      m.seen = true;
      continue;
    }

    if (tok == "class") {
      do_class(m.compact, m.placement, m.local, m.distributed, m.acid, m.iot);
      m = ClassModifiers(m_allCompact);
      continue;
    }
    if (m.seen) error("Invalid syntax");

    if (tok == "declare") {
      do_declare();
    } else if (tok == "struct") {
      do_struct();
    } else if (tok == "packed" || tok == "direct") {
      bool packed = tok == "packed";
      if (packed && m_p.get() != "direct") error("expected 'direct' keyword");
      if (m_p.get() != "struct") error("expected 'struct' keyword");
      do_direct_struct(packed);
    } else if (tok == "enum") {
      do_enum();
    } else if (tok == "calculator") {
      do_calculator();
    } else if (tok == "iot") {
      do_iot();
    } else {
      error1("unexpected token #1", tok);
    }
  }

  // A field of type ref takes the size and layout of the object id: ref
  // becomes a copy of the oid type under its own name and category.
  if (m_s.m_objid_type.empty()) return;
  Struct* oidType = m_s.findType(m_s.m_objid_type);
  if (oidType == nullptr) error1("oid struct #1 was not defined", m_s.m_objid_type);
  Struct* ref = m_s.findType("ref");
  if (ref != oidType) {
    int handles = ref->count;  // the copy must not take the reference count along
    *ref = *oidType;
    ref->count = handles;
  }
  ref->m_name = "ref";
  ref->m_category = ET_REF;
}

// declare -> 'declare' ( 'database' name | ('oid'|'OID') type '[' n ']' | ('HA'|'auto_oid'|'AUTO_OID') '[' n ']' ) ';'
void Analyzer::do_declare() {
  mstring what = m_p.get();
  if (what == "database") {
    if (!m_s.m_dbname.empty()) error("database already declared");
    m_s.m_dbname = m_p.getName();
    m_p.match(";");
    m_onDbNameFound->dbnameFound(m_s.m_dbname);
  } else if (what == "oid" || what == "OID") {
    if (what == "OID") warning("OID is deprecated, use oid instead");
    if (m_s.m_useObjid) error("oid already declared");
    int precision;
    m_s.m_objid_type = getTypeName(precision);
    m_p.match("[");
    m_s.m_nobjid_estimated = m_p.getNum();
    m_p.match("]");
    if (m_s.m_nobjid_estimated == 0) error("oid estimated count value is not valid");
    m_p.match(";");
    // The type ref exists from here on; its layout is the oid type's (end of analyze).
    Struct* ref = new Struct(ET_REF);
    ref->m_name = "ref";
    m_s.s_struct.insert(HIComparable(ref));
    m_s.m_useObjid = true;
  } else if (what == "HA" || what == "auto_oid" || what == "AUTO_OID") {
    if (m_s.m_HA_estimate != 0) error("duplicate HA [estimation]");
    m_p.match("[");
    m_s.m_HA_estimate = m_p.getNum();
    m_p.match("]");
    if (m_s.m_HA_estimate == 0) error("HA estimated count value is not valid");
    m_p.match(";");
  } else {
    error("invalid declare statement");
  }
}

// iot -> 'iot' ( 'server' | 'device' [agent-id] | 'router' '<' level '>' [agent-id] ) ';'
void Analyzer::do_iot() {
  mstring kind = m_p.get();
  m_s.m_dict_flags |= 4;  // before the kind is looked at
  if (kind == "server") {
    m_s.m_iot_level = 1;
  } else if (kind == "device") {
    m_s.m_iot_level = 65535;
  } else if (kind == "router") {
    m_p.match("<");
    unsigned int level = m_p.getNum();
    m_p.match(">");
    if (level < 2 || level > 65534) error2("Router level must be in interval #1 - #2", "2", "65534");
    m_s.m_iot_level = (unsigned short)level;
  } else {
    error("expected 'server', 'device' or 'router' keyword");
  }

  if (kind == "server") {
    m_p.match(";");
    m_s.m_iot_agentId = "1";
    return;
  }
  // Without an agent id the earlier value stays (initially "0").
  mstring id = m_p.get();
  if (id == ";") return;
  unsigned long long value;
  if (!UT::CVT::s2u8(id.c_str(), &value)) error("expected agent ID");
  m_s.m_iot_agentId = id;  // as written
  m_p.match(";");
}

// struct -> 'struct' name '{' { field } '}' ';'
void Analyzer::do_struct() {
  mstring name = m_p.getName();
  checkIsNotReserved(name);
  m_p.match("{");
  HIComparable h(new Struct(ET_STRUCT));
  Struct& s = *static_cast<Struct*>(h.get());
  // Only types are looked at: a struct may take the name of an earlier class.
  if (m_s.findType(name)) error1("type #1 already defined", name);
  s.m_name = name;
  resetFieldNames();
  for (;;) {
    mstring tok = m_p.get();
    if (tok == "}") break;
    m_p.takeBack(tok);
    do_field(s);
  }
  add_indicators(s);
  m_p.match(";");
  s.v_field.shrink_to_fit();  // complete: no spare slots for the rest of the run
  m_s.s_struct.insert(h);
}

// direct-struct -> ['packed'] 'direct' 'struct' name '{' { direct-field } '}' ';'
void Analyzer::do_direct_struct(bool packed) {
  mstring name = m_p.getName();
  checkIsNotReserved(name);
  m_p.match("{");
  HIComparable h(new Struct(ET_DIRECT_STRUCT));
  Struct& s = *static_cast<Struct*>(h.get());
  s.m_is_packed = packed;
  if (m_s.findType(name)) error1("type #1 already defined", name);
  applySuppressList(s, name);
  s.m_name = name;
  s.m_isDirectStruct = true;
  resetFieldNames();
  for (;;) {
    mstring tok = m_p.get();
    if (tok == "}") break;
    m_p.takeBack(tok);
    do_direct_field(s);
  }
  m_p.match(";");
  s.v_field.shrink_to_fit();  // complete: no spare slots for the rest of the run
  m_s.s_struct.insert(h);
}

// enum -> 'enum' name '{' element ['=' signed] { ',' element ['=' signed] } '}' ';'
void Analyzer::do_enum() {
  mstring name = m_p.getName();
  checkIsNotReserved(name);
  if (m_s.findType(name) || m_s.findEnum(name)) error1("type #1 already defined", name);
  HIComparable h(new Enum());
  Enum& e = *static_cast<Enum*>(h.get());
  e.m_name = name;
  m_p.match("{");
  int next = 0;
  bool first = true;
  for (;;) {
    EnumEl el;
    // Element names are unique across all enums of the schema and are not
    // tested against the reserved words.
    el.m_choice = m_p.getName();
    if (!m_s.s_allEnumVals.insert(el.m_choice)) error1("duplicate #1 in enum", el.m_choice);
    mstring tok = m_p.get();
    if (tok == "=") {
      next = m_p.getSigned();
      tok = m_p.get();
    }
    if (tok != "}" && tok != ",") error1("unexpected token #1", tok);
    el.m_val = next;
    if (first || next < e.minVal) e.minVal = next;
    if (first || next > e.maxVal) e.maxVal = next;
    e.v_els.push_back(el);
    next = (int)((unsigned int)next + 1u);  // wraps like the 32-bit counter it is
    first = false;
    if (tok == "}") break;
  }
  m_p.match(";");
  m_s.s_enum.insert(h);

  int size = 1;
  if (m_ddlCompatibility || e.minVal < -32768 || e.maxVal > 32767)
    size = 4;
  else if (e.minVal < 0 || e.maxVal > 255)
    size = 2;
  m_s.s_struct.insert(HIComparable(new Struct(name, ET_SIMPLE, size, size, size, size, name)));
}

// calculator -> 'calculator' '{' '}' | 'calculator' '{' class '<' n '>' { ',' class '<' n '>' } '}' ';'
void Analyzer::do_calculator() {
  // The message ends in a line break: intended, keep it.
  if (m_s.s_calc != nullptr) error("Each schema may have only one calculator.\n");
  Calculator calc;
  m_p.match("{");
  mstring tok = m_p.get();
  // An empty calculator is no calculator, and takes no ";".
  if (tok == "}") return;
  m_p.takeBack(tok);
  for (;;) {
    CalcEl el;
    el.m_class_name = m_p.getName();
    // "exiests" is the message as it has always read: keep it.
    if (m_s.findClass(el.m_class_name) == nullptr) error1("class #1 doesn't exiests", el.m_class_name);
    if (m_s.s_allCalcClasses.find(el.m_class_name)) error1("duplicate class #1 in calculator", el.m_class_name);
    m_p.match("<");
    el.m_nobjs = (int)m_p.getNum();
    m_p.match(">");
    calc.calc_els.push_back(el);
    m_s.s_allCalcClasses.insert(el.m_class_name);
    tok = m_p.get();
    if (tok == "}") break;
    if (tok != ",") error1("unexpected token #1", tok);
  }
  m_p.match(";");
  m_s.s_calc = new Calculator(calc);
}

// ---------------------------------------------------------------- classes

namespace {
// The hidden fields and indexes of an IoT up or down table, by node kind.
struct IotField {
  const char* name;
  bool hidden;
};
struct IotTable {
  int kind;  // 0 device, 1 server, 2 router
  TableIotType table;  // IOT_TABLE_NONE: either
  IotField fields[5];
  const char* idxId[4];  // fields of iot_idx_id@ (hash, unique)
  const char* idxTs[4];  // fields of iot_idx_ts@ (tree, not unique)
};

// clang-format off
const IotTable kIotTables[] = {
  // device up
  { 0, IOT_TABLE_UP,
    { {"iot_object_id@", true}, {"iot_timestamp@", true} },
    { },
    { "iot_timestamp@" } },
  // device down
  { 0, IOT_TABLE_DOWN,
    { {"iot_src_id@", true}, {"iot_db_id@", true}, {"iot_object_id@", true}, {"iot_timestamp@", true} },
    { "iot_src_id@", "iot_db_id@", "iot_object_id@" },
    { } },
  // server up
  { 1, IOT_TABLE_UP,
    { {"iot_db_id@", true}, {"iot_object_id@", true}, {"iot_timestamp@", true}, {"agent_id", false} },
    { "agent_id", "iot_db_id@", "iot_object_id@" },
    { } },
  // server down
  { 1, IOT_TABLE_DOWN,
    { {"iot_object_id@", true}, {"iot_timestamp@", true}, {"agent_id", false} },
    { },
    { "agent_id", "iot_timestamp@" } },
  // router, up or down
  { 2, IOT_TABLE_NONE,
    { {"iot_db_id@", true}, {"iot_object_id@", true}, {"iot_timestamp@", true}, {"src_agent_id", false},
      {"dst_agent_id", false} },
    { "src_agent_id", "iot_db_id@", "iot_object_id@" },
    { "src_agent_id", "iot_db_id@", "dst_agent_id", "iot_timestamp@" } },
};
// clang-format on
}  // namespace

void Analyzer::add_iot_fields(Class& cls) {
  const int kind = m_s.m_iot_level > 65534 ? 0 : m_s.m_iot_level == 1 ? 1 : 2;
  for (const IotTable& t : kIotTables) {
    if (t.kind != kind || (t.table != IOT_TABLE_NONE && t.table != cls.m_iot_type)) continue;
    for (const IotField& f : t.fields)
      if (f.name) cls.addSysField(f.name, "unsigned<8>", f.hidden, nullptr);
    if (t.idxId[0]) {
      SysIndex idx("iot_idx_id@", IT_Hash, true);
      for (const char* name : t.idxId)
        if (name) idx.addField(name);
      cls.addIndex(idx);
    }
    if (t.idxTs[0]) {
      SysIndex idx("iot_idx_ts@", IT_Tree, false);
      for (const char* name : t.idxTs)
        if (name) idx.addField(name);
      cls.addIndex(idx);
    }
    return;
  }
}

namespace {
struct IndexWord {
  const char* word;
  IndexType type;
};
const IndexWord kIndexWords[] = {
    {"tree", IT_Tree}, {"kdtree", IT_KDTree}, {"rtree", IT_RTree},
    {"trigram", IT_Trigram}, {"patricia", IT_PTree}, {"hash", IT_Hash},
};
}  // namespace

// class -> modifiers 'class' name '{' { member } '}' ';'
void Analyzer::do_class(bool compact, mplacement placement, bool local, bool distributed, atomicity acid,
                        TableIotType iotType) {
  HIComparable h(new Class());
  Class& cls = *static_cast<Class*>(h.get());
  cls.m_isClass = true;
  cls.m_compact = compact;
  cls.m_persistent = placement == mem_pers ? true : placement == mem_trans ? false : m_global_persist;
  cls.m_atomic = acid == acid_atomic ? true : acid == acid_nonatomic ? false : m_global_atomic;
  cls.m_local = local;
  cls.m_distrib = distributed;
  cls.m_iot_type = iotType;

  // System fields come first, ahead of the name: auto_oid@, the distributed
  // time stamp, the IoT fields.
  if (m_s.auto_oid_declared()) {
    Field f;  // by hand: m_no and m_seq_no 0, not hidden
    f.m_name = "auto_oid@";
    f.m_eltype = "$auto_oid";
    f.m_containerStruct = &cls;
    cls.v_field.push_back(f);
  }
  if (cls.m_distrib) {
    cls.addSysField("timestamp@", "unsigned<8>", true, nullptr);
    SysIndex idx("timestamp_idx@", IT_Tree, false);
    idx.addField("timestamp@");
    cls.addIndex(idx);
  }
  if (cls.m_iot_type != IOT_TABLE_NONE) add_iot_fields(cls);

  mstring name = m_p.getName();
  checkIsNotReserved(name);
  if (m_s.findType(name) || m_s.findEnum(name)) error1("type #1 already defined", name);
  if (m_s.findClass(name)) error1("class #1 already defined", name);
  applySuppressList(cls, name);
  m_p.match("{");
  cls.m_name = name;
  if (cls.m_distrib && !m_s.auto_oid_declared())
    error1("Class #1 declared as distributed, but auto_oid undeclared", name);

  // member statements, tested in this order
  IndexModifiers mods;
  resetFieldNames();
  for (;;) {
    mstring tok = m_p.get();
    if (tok == "}") break;  // pending index modifiers are dropped
    if (do_index_modifier(tok, mods)) continue;
    const IndexWord* iw = nullptr;
    for (const IndexWord& w : kIndexWords)
      if (tok == w.word) iw = &w;
    if (iw) {
      do_index_word(cls, tok, iw->type, mods);
      mods = IndexModifiers();
      continue;
    }
    if (mods.pending) error("Invalid syntax");

    if (tok == "list" || tok == "sequences") {
      // list -> ('list' | 'sequences') ';'
      m_p.match(";");
      if (cls.m_sequential) error("list already declared");
      cls.m_sequential = true;
      if (tok == "sequences") cls.m_sequences = true;
      Index idx;
      idx.m_isUnique = true;
      idx.m_IndexType = IT_Tree;
      idx.m_name = "list_index_";
      idx.m_expectedCount = 0;
      idx.m_isListIndex = true;
      cls.s_indexNames.insert(idx.m_name);
      cls.v_index.push_back(idx);
    } else if (tok == "oid" || tok == "OID") {
      // oid -> ('oid' | 'OID') ';'
      if (tok == "OID") warning("OID is deprecated, use oid instead");
      if (cls.m_hasId) error("oid already declared");
      cls.m_hasId = true;
      m_p.match(";");
    } else if (tok == "autoid") {
      // autoid -> 'autoid' '[' n ']' ';'
      if (cls.m_hasAutoId) error("autoid already declared");
      cls.m_hasAutoId = true;
      m_p.match("[");
      cls.m_autoidEstimate = (int)m_p.getNum();
      m_p.match("]");
      if (cls.m_autoidEstimate < 1) error("estimated count value is not valid for the autoid");
      m_p.match(";");
      Field f;
      f.m_name = "autoid";
      f.m_eltype = "$autoid";
      f.m_no = cls.v_field.size();
      f.m_containerStruct = &cls;
      if (m_ddlCompatibility) {
        // Right behind auto_oid@, ahead of everything else; m_no stays as counted.
        cls.v_field.insert(m_s.auto_oid_declared() ? 1 : 0, f);
        resetFieldNames();
      } else {
        cls.v_field.push_back(f);
      }
      Index idx;
      idx.m_name = "autoid";
      idx.m_isUnique = true;
      idx.m_IndexType = IT_Hash;
      idx.m_expectedCount = cls.m_autoidEstimate;
      idx.m_isAutoidIndex = true;
      idx.v_indfield.push_back("autoid");
      idx.v_descending.push_back(false);
      idx.v_case_insensitive.push_back(false);
      idx.v_colls.push_back(mstring());
      cls.s_indexNames.insert(idx.m_name);
      cls.v_index.push_back(idx);
    } else if (tok == "history") {
      // history -> 'history' '[' n ']' ';'   (read and dropped)
      warning("History is not currently supported");
      m_p.match("[");
      m_p.getNum();
      m_p.match("]");
      m_p.match(";");
    } else if (tok == "event") {
      do_event(cls);
    } else if (tok == "TTL_count" || tok == "TTL_clock_time") {
      m_p.takeBack(tok);
      do_ttl(cls);
    } else {
      m_p.takeBack(tok);
      do_field(cls);
    }
  }

  add_indicators(cls);
  m_p.match(";");
  if (cls.m_history) {
    // No statement sets m_history at present. The message runs two texts
    // together; it is the established wording.
    const Index* autoidIdx = nullptr;
    for (unsigned int i = 0; i < cls.v_index.size(); i++)
      if (cls.v_index[i].m_isAutoidIndex) autoidIdx = &cls.v_index[i];
    if (autoidIdx == nullptr)
      error("history declared, but no autoidhistory is defined in a class, where no autoid specified");
    Index idx;
    idx.m_isUnique = true;
    idx.m_IndexType = IT_Tree;
    idx.v_indfield = autoidIdx->v_indfield;
    idx.v_indfield.push_back("history@");
    for (unsigned int i = 0; i < idx.v_indfield.size(); i++) {
      idx.v_descending.push_back(false);
      idx.v_case_insensitive.push_back(false);
      idx.v_colls.push_back(mstring());
    }
    idx.m_name = "history_index@";
    idx.m_isHistoryIndex = true;
    cls.s_indexNames.insert(idx.m_name);
    cls.v_index.push_back(idx);
  }
  resizeBitmaps(cls);
  cls.v_field.shrink_to_fit();  // complete: no spare slots for the rest of the run
  cls.v_index.shrink_to_fit();
  m_s.s_class.insert(h);
}

// An updated_bitmap holds one flag per field of the class, system fields and
// indicators included. An array declared much too small holds words of e
// bytes instead of booleans.
void Analyzer::resizeBitmaps(Class& cls) {
  const int n = (int)cls.v_field.size();
  for (unsigned int i = 0; i < cls.v_field.size(); i++) {
    Field& f = cls.v_field[i];
    if (!f.m_isBitmapFld) continue;
    const int e = n <= 255 ? 1 : n <= 32767 ? 2 : 4;
    if (n == 1) error("Only updated_bitmap field declared for class, please declare other class fields.");
    if (f.m_arraySize == 0 || f.m_arraySize > n) f.m_arraySize = n;
    if ((f.m_arraySize + 1) * e < (n + 7) / 8) {
      f.m_arraySize++;
      f.m_eltype = e == 1 ? "unsigned<1>" : e == 2 ? "unsigned<2>" : "unsigned<4>";
    }
  }
}

// ---------------------------------------------------------------- index modifiers and declarations

// index-modifier -> 'userdef' | 'voluntary' | 'unique' | 'nonunique' | 'thick' | 'inclusive'
bool Analyzer::do_index_modifier(const mstring& word, IndexModifiers& m) {
  if (word == "userdef") {
    if (m.thick) error("'thick' contradicts with 'userdef' keyword.");
    m.userdef = true;
  } else if (word == "voluntary") {
    m.voluntary = true;
  } else if (word == "unique") {
    if (m.nonunique) error("'nonunique' keyword was already defined.");
    m.unique = true;
  } else if (word == "nonunique") {
    if (m.unique) error("'unique' keyword was already defined.");
    m.nonunique = true;
  } else if (word == "thick") {
    if (m.unique) error("'thick' contradicts with 'unique' keyword.");
    if (m.userdef) error("'thick' contradicts with 'userdef' keyword.");
    m.thick = true;
    m.nonunique = true;
  } else if (word == "inclusive") {
    m.inclusive = true;  // never pending: kept until the next index word
    return true;
  } else {
    return false;
  }
  m.pending = true;
  return true;
}

// The checks that an index word makes before its declaration is read, and
// the modifiers that it hands on. A tree is non-unique unless "unique" was
// written, a hash unique unless "nonunique" (or "thick", which sets it) was,
// and a trigram index ignores every modifier in front of it.
void Analyzer::do_index_word(Class& cls, const mstring&, IndexType type, const IndexModifiers& m) {
  switch (type) {
    case IT_Tree:
    case IT_KDTree:
    case IT_RTree:
      do_index_declaration(cls, type, m.unique, m.voluntary, m.userdef, m.thick, m.inclusive);
      return;
    case IT_PTree:
      if (cls.m_persistent) error1("Patricia index available only for transient classes.", "");
      do_index_declaration(cls, type, m.unique, m.voluntary, m.userdef, m.thick, m.inclusive);
      return;
    case IT_Hash:
      // "indeces" is the established wording of this message: keep it.
      if (m.voluntary) error("Hash indeces can not be voluntary");
      if (cls.m_persistent) warning("Tree declaration expected");  // the hash is kept all the same
      do_index_declaration(cls, type, !m.nonunique, m.voluntary, m.userdef, m.thick, m.inclusive);
      return;
    case IT_Trigram:  // always thick and inclusive, never unique, voluntary or user-defined
      do_index_declaration(cls, type, false, false, false, true, true);
      return;
    case IT_List:  // made by the finishing pass, never written
      break;
  }
  throw "unknown case";
}

// index -> modifiers index-word '<' fields '>' name ['[' estimate ']'] ';'
// Only the paths as written are kept here; the finishing pass resolves them.
void Analyzer::do_index_declaration(Class& cls, IndexType type, bool unique, bool voluntary, bool userdef,
                                    bool thick, bool inclusive) {
  m_p.match("<");
  Index idx;
  idx.m_isUnique = unique;
  idx.m_isThick = thick;
  idx.m_isVoluntary = voluntary;
  idx.m_isInclusive = inclusive;
  idx.m_IndexType = type;
  idx.m_isUserdef = userdef;
  do_indexFields(idx, cls);
  // The paths are only appended to: their lists can lose their spare room.
  idx.v_indfield.shrink_to_fit();
  idx.v_colls.shrink_to_fit();
  idx.v_descending.shrink_to_fit();
  idx.v_case_insensitive.shrink_to_fit();

  idx.m_name = m_p.getName();
  checkIsNotReserved(idx.m_name);
  // Index names are unique within their class only.
  if (cls.s_indexNames.find(idx.m_name)) error1("index #1 already defined", idx.m_name);
  cls.s_indexNames.insert(idx.m_name);

  // A hash, and only a hash, must give its estimated count.
  if (type == IT_Hash) {
    m_p.match("[");
    idx.m_expectedCount = (int)m_p.getNum();
    m_p.match("]");
    if (idx.m_expectedCount < 1) error1("estimated count value is not valid for the hash index #1", idx.m_name);
  }
  m_p.match(";");
  cls.v_index.push_back(std::move(idx));
}

// fields -> '*' '>' | path { option } ['collate' name] { ',' path { option } ['collate' name] } '>'
// path   -> name { '.' name }
// What each index type accepts:
//   tree      order and case options, collate, dotted paths, several fields
//   hash      one case option, collate, dotted paths, several fields
//   kdtree    several fields
//   rtree     one field
//   patricia  a dotted path, one field
//   trigram   read like patricia with ',' allowed; the finished index takes one plain field
void Analyzer::do_indexFields(Index& idx, Class& cls) {
  const IndexType type = idx.m_IndexType;
  mstring tok = m_p.get();
  if (tok == "*") {
    // All fields of the class; expanded when the index is finished.
    idx.v_indfield.push_back(tok);
    if (m_p.get() != ">") error("'>' expected");
    return;
  }
  m_p.takeBack(tok);

  for (;;) {
    // autoid is reserved, but an index may name the class's autoid field.
    mstring path = m_p.getName();
    if (path != "autoid") checkIsNotReserved(path);
    tok = m_p.get();
    while (tok == ".") {
      // "indeces" is the established wording of this message: keep it.
      if (type == IT_RTree || type == IT_KDTree)
        error("Fields of inner structs are not allowed as an element of R-Tree or KD-Tree indeces");
      mstring name = m_p.getName();
      checkIsNotReserved(name);
      path += ".";
      path += name;
      tok = m_p.get();
    }
    idx.v_indfield.push_back(path);

    // Field options: in any order and repeated; the last sort order wins.
    bool desc = false;
    bool ci = false;
    if (type == IT_Tree) {
      for (;; tok = m_p.get()) {
        if (tok == "ascending" || tok == "asc")
          desc = false;
        else if (tok == "descending" || tok == "desc")
          desc = true;
        else if (tok == "ignore_case" || tok == "case_insensitive")
          ci = true;
        else
          break;
      }
    } else if (type == IT_Hash && (tok == "ignore_case" || tok == "case_insensitive")) {
      ci = true;
      tok = m_p.get();
    }
    idx.v_descending.push_back(desc);
    idx.v_case_insensitive.push_back(ci);

    // A collation needs no declaration: its first use makes it.
    mstring collName;
    if ((type == IT_Tree || type == IT_Hash) && tok == "collate") {
      if (idx.m_isUserdef) error("unexpected \"collate\" for user-defined index");
      collName = m_p.getName();
      checkIsNotReserved(collName);
      Collation* coll = m_s.findCollation(collName);
      if (coll == nullptr) {
        coll = new Collation();
        coll->m_name = collName;
        m_s.s_coll.insert(HIComparable(coll));
      }
      if (!cls.m_suppressApi) coll->suppressed = false;
      if (type != IT_Tree) coll->isTree = false;
      tok = m_p.get();
    }
    idx.v_colls.push_back(collName);

    if (type == IT_RTree) {
      if (tok != ">") error("rtree index specification error");
      return;
    }
    if (tok == ",") {
      if (type == IT_PTree) error("patricia index specification error");
      continue;
    }
    if (tok == ">") return;
    error1("unexpected token #1", tok);
  }
}

// ---------------------------------------------------------------- events and TTL

// event -> 'event' '<' ('new'|'delete'|'delete_all'|'checkpoint'|'update'|field 'update') '>' name ';'
void Analyzer::do_event(Class& cls) {
  Event ev;
  m_p.match("<");
  mstring tok = m_p.get();
  if (tok == "new") {
    ev.m_type = Event::NEW;
  } else if (tok == "delete") {
    ev.m_type = Event::DELETE;
  } else if (tok == "delete_all") {
    ev.m_type = Event::DELETE_ALL;
  } else if (tok == "checkpoint") {
    ev.m_type = Event::CHECKPOINT;
  } else if (tok == "update") {
    ev.m_type = Event::CLASS_UPDATE;
  } else {
    // A field update. Whether the field exists is checked when the events
    // are numbered; a field with a reserved name can have no event.
    if (isReservedWord(tok, m_sql)) error1("field name expected, found #1", tok);
    ev.m_fldName = tok;
    m_p.match("update");
    ev.m_type = Event::UPDATE;
    for (unsigned int i = 0; i < cls.v_events.size(); i++)
      if (cls.v_events[i].m_fldName == tok) error1("update #1 event already defined", tok);
  }
  m_p.match(">");
  // Event names are unique across the schema and may be reserved words.
  ev.m_name = m_p.getName();
  m_p.match(";");
  if (m_s.s_allEventNames.find(ev.m_name)) error1("event #1 already defined", ev.m_name);
  m_s.s_allEventNames.insert(ev.m_name);
  cls.v_events.push_back(ev);
}

// ttl -> 'TTL_count' count ';' | 'TTL_clock_time' value ('sec'|'ms'|'us') ';'
// Each clause adds a hidden unsigned<8> field, whose one initial value holds
// the limit so that the dictionary carries it, and a hidden tree over it.
void Analyzer::do_ttl(Class& cls) {
  const mstring word = m_p.get();
  mstring value = m_p.get();
  const char* fieldName;
  const char* indexName;
  bool unique;
  if (word == "TTL_count") {
    // The count is kept as written and not examined.
    fieldName = "ttl_count@";
    indexName = "ttl_count_idx@";
    unique = true;
  } else if (word == "TTL_clock_time") {
    fieldName = "ttl_timestamp@";
    indexName = "ttl_timestamp_idx@";
    unique = false;
    // The value becomes microseconds by appending zeros to its text, which
    // only works for a plain decimal. The message names "s" while the
    // language takes "sec": intended, keep it.
    mstring unit = m_p.get();
    if (unit == "sec")
      value += "000000";
    else if (unit == "ms")
      value += "000";
    else if (unit != "us")
      error("invalid TTL_clock_time time unit (must be s, ms or us)");
    // A leading "0" refuses zero and the octal and hexadecimal ("0x", "0X")
    // forms; any other text passes.
    if (value.c_str()[0] == '0') error1("invalid TTL_clock_time value #1", value);
  } else {
    error1("unexpected TTL condition #1", word);
  }
  // Each clause once per class; the two may stand together.
  for (unsigned int i = 0; i < cls.v_field.size(); i++)
    if (cls.v_field[i].m_name == fieldName) error1("#1 already defined", word);

  SysIndex idx(indexName, IT_Tree, unique);
  cls.addSysField(fieldName, "unsigned<8>", true, value.c_str());
  idx.addField(fieldName);
  cls.addIndex(idx);
  m_p.match(";");
}

// ---------------------------------------------------------------- fields and types

// type -> ('numeric'|'decimal') '<' width any-token [precision] '>'
//       | ('signed'|'unsigned'|'char'|'binary'|'nchar') '<' n '>' | name
mstring Analyzer::getTypeName(int& precision) {
  precision = -1;
  mstring w = m_p.getName();
  if (w == "numeric" || w == "decimal") {
    m_p.match("<");
    unsigned int width = m_p.getNum();
    precision = 0;
    // The token behind the width is dropped whatever it is, so a width alone
    // needs a second '>': "decimal<5>>". This is the language's rule; keep it.
    if (m_p.get() == ",") precision = (int)m_p.getNum();
    if (width > 19) error("decimal width not be larger than 19");
    if (width < (unsigned int)precision) error("precision should be smaller than width");
    m_p.match(">");
    if (width < 3) return "signed<1>";
    if (width < 5) return "signed<2>";
    if (width < 10) return "signed<4>";
    return "signed<8>";
  }
  const bool isSigned = w == "signed" || w == "unsigned";
  if (!isSigned && w != "char" && w != "binary" && w != "nchar") return w;  // existence is checked later

  m_p.match("<");
  unsigned int n = m_p.getNum();
  m_p.match(">");
  if (isSigned && n != 1 && n != 2 && n != 4 && n != 8) error("numerical size must be 1,2,4 or 8");
  // Normalised (char<0x10> is char<16>), in a buffer that fits: every field of the type keeps it.
  char digits[24];
  const size_t nd = UT::decimal((long long)n, digits);
  mstring res;
  res.reserve(w.size() + nd + 2);
  res += w;
  res += '<';
  res.add(digits, nd);
  res += '>';
  if (!isSigned && m_s.findType(res) == nullptr) {
    Struct* t;
    if (w == "nchar")  // the name keeps n, the size is 2n bytes
      t = new Struct(res, ET_UNICODE_CHARS, (int)(2 * n), (int)(2 * n), 2, 2, "");
    else
      t = new Struct(res, w == "char" ? ET_CHARS : ET_BINARY, (int)n, (int)n, 1, 1, "");
    m_s.s_struct.insert(HIComparable(t));
  }
  return res;
}

// getTypeName for a field, which keeps the precision.
mstring Analyzer::fieldTypeName(Field& f) {
  int precision;
  mstring type = getTypeName(precision);
  f.setPrecision(precision);
  return type;
}

void Analyzer::readRefTarget(Field& f) {
  mstring tok = m_p.get();
  if (tok == "<") {
    f.editRare().refto = m_p.get();
    m_p.match(">");
  } else {
    m_p.takeBack(tok);
  }
}

// init -> '=' value | '=' '{' value { ',' value } '}'   (values are kept as raw tokens)
void Analyzer::readInitialValues(Field& f) {
  if (f.m_isOptional) error("optional: can't init");
  if (f.m_isVector) error("vector: can't init");
  if (!f.m_isArray) {
    mstring v = m_p.get();
    if (v == "{") error("scalar init with {");
    f.editRare().initVals.push_back(v);
    return;
  }
  m_p.match("{");
  int left = f.m_arraySize;
  for (;;) {
    f.editRare().initVals.push_back(m_p.get());
    left--;
    if (left == 0) {
      m_p.match("}");
      break;
    }
    mstring sep = m_p.get();
    if (sep == "}") break;
    if (sep != ",") error("expected ,");
  }
  if (f.rare().initVals.size() == 0) error("array not initialized");
  for (; left > 0; left--) f.editRare().initVals.push_back("0");
}

// field -> ['nullable'] ( 'optional' type name
//                       | 'sequence' '<' type [order] '>' name
//                       | 'vector' '<' type ['<' class '>'] '>' name
//                       | ('rectangle'|'rect'|'point') '<' type '>' name '[' dimension ']'
//                       | type ['<' class '>'] name ['[' size ']'] )
//          [init] { ',' name [init] } ';'
void Analyzer::do_field(Struct& s) {
  Field f;
  f.m_seq_no = m_field_seq++;
  f.m_no = s.v_field.size();

  mstring tok = m_p.get();
  if (tok == "nullable") {
    f.m_isNullable = true;
    tok = m_p.get();
  }
  if (tok == "optional") {
    f.m_isOptional = true;
    f.m_eltype = fieldTypeName(f);
    f.m_name = m_p.getName();
    checkIsNotReserved(f.m_name);
  } else if (tok == "sequence") {
    if (!s.m_isClass) error("Sequence cannot be element of a struct");
    m_p.match("<");
    m_s.m_useSequences = true;
    f.m_eltype = "sequence";
    f.editRare().seqElemType = fieldTypeName(f);
    if (f.rare().precision > 0) error("Sequence element can not be of numeric type");  // decimal<n,0> passes
    f.m_isSequence = true;
    tok = m_p.get();
    if (tok == "asc" || tok == "ascending") {
      f.editRare().seqOrder = "ZKT_SEQ_ASC_ORDER";
      tok = m_p.get();
    } else if (tok == "desc" || tok == "descending") {
      f.editRare().seqOrder = "ZKT_SEQ_DESC_ORDER";
      tok = m_p.get();
    } else {
      f.editRare().seqOrder = "ZKT_SEQ_NO_ORDER";
    }
    if (tok != ">") error("sequence specification error");
    f.m_name = m_p.getName();
    checkIsNotReserved(f.m_name);
  } else if (tok == "vector") {
    m_p.match("<");
    f.m_isVector = true;
    f.m_eltype = fieldTypeName(f);
    if (f.m_eltype == "autoid_t" || f.m_eltype == "ref") readRefTarget(f);
    m_p.match(">");
    f.m_name = m_p.getName();
    checkIsNotReserved(f.m_name);
  } else if (tok == "rectangle" || tok == "rect" || tok == "point") {
    const bool rect = tok != "point";
    m_p.match("<");
    f.m_eltype = fieldTypeName(f);
    m_p.match(">");
    if (rect)
      f.m_isRTreeRect = true;
    else
      f.m_isRTreePoint = true;
    f.m_name = m_p.getName();
    checkIsNotReserved(f.m_name);
    if (m_p.get() != "[") error(rect ? "rectangle dimension must be specified" : "point dimension must be specified");
    f.m_isArray = true;
    unsigned int dim = m_p.getNum();
    if (dim < 2 || dim > (rect ? 16u : 8u)) error("dimension size limits");
    m_p.match("]");
    f.m_arraySize = rect ? (int)dim * 2 : (int)dim;
  } else {
    m_p.takeBack(tok);
    f.m_eltype = fieldTypeName(f);
    if (f.m_eltype == "autoid_t" || f.m_eltype == "ref") readRefTarget(f);
    // The first name of a plain declaration is not tested against the
    // reserved words ("signed<4> date;" is accepted): intended, keep it.
    f.m_name = m_p.getName();
    if (f.m_name == "updated_bitmap") {
      f.m_isBitmapFld = true;
      if (f.m_eltype != "boolean") error("updated_bitmap - could be only of type boolean.");
    }
    tok = m_p.get();
    if (tok != "[") {
      m_p.takeBack(tok);
      if (f.m_isBitmapFld)
        error("updated_bitmap - could be only of type bool and should be declared as array field.");
    } else {
      f.m_isArray = true;
      // A bitmap may leave its size out ("[]"): the class end fills it in.
      // A negative size is a number too large for an int.
      f.m_arraySize = (int)m_p.getNumEx(f.m_isBitmapFld);
      if (f.m_arraySize > 65535 || f.m_arraySize < (f.m_isBitmapFld ? 0 : 1)) error("array size limits");
      m_p.match("]");
    }
  }

  placeInStruct(s, f);

  // Every name repeats the whole declarator, with the same m_no and m_seq_no.
  for (;;) {
    if (hasFieldNamed(s, f.m_name)) error1("field #1 already defined", f.m_name);
    s.v_field.push_back(std::move(f));
    tok = m_p.get();
    if (tok == "=") {
      readInitialValues(s.v_field.back());
      tok = m_p.get();
    }
    if (tok == ";") return;
    if (tok != ",") error("expected , or ;");
    f = s.v_field.back();  // the declarator again, without the values of this name
    if (f.rare().initVals.size() > 0) f.editRare().initVals = mvector<mstring>();
    f.m_name = m_p.getName();
    checkIsNotReserved(f.m_name);
  }
}

// direct-field -> type name ['[' size ']'] { ',' name } ';'
void Analyzer::do_direct_field(Struct& s) {
  Field f;  // m_seq_no and m_no stay 0
  mstring tok = m_p.get();
  if (tok == "rect") error("Rect field is not allowed in direct structure");
  if (tok == "optional") error("Optional field is not allowed in direct structure");
  if (tok == "nullable") error("Nullable field is not allowed in direct structure");
  if (tok == "vector") error("Vector is not allowed in direct structure");
  m_p.takeBack(tok);
  f.m_eltype = fieldTypeName(f);
  f.m_name = m_p.getName();
  checkIsNotReserved(f.m_name);  // here the first name is tested too
  if (accept("[")) {
    f.m_isArray = true;
    f.m_arraySize = (int)m_p.getNum();
    if (f.m_arraySize < 1 || f.m_arraySize > 65535) error("array size limits");
    m_p.match("]");
  }
  placeInStruct(s, f);
  for (;;) {
    if (hasFieldNamed(s, f.m_name)) error1("field #1 already defined", f.m_name);
    s.v_field.push_back(f);
    tok = m_p.get();
    if (tok == ";") return;
    if (tok != ",") error("expected , or ;");
    f.m_name = m_p.getName();
    checkIsNotReserved(f.m_name);
  }
}

// Appends one boolean "{name}_indicator" per nullable field, behind all
// declared fields. Names are not tested for clashes.
void Analyzer::add_indicators(Struct& s) {
  const unsigned int declared = s.v_field.size();
  for (unsigned int i = 0; i < declared; i++) {
    if (!s.v_field[i].m_isNullable) continue;
    Field ind;
    ind.m_seq_no = m_field_seq++;
    ind.m_no = s.v_field.size();
    ind.m_name = s.v_field[i].m_name + "_indicator";
    ind.m_eltype = "boolean";
    ind.m_isIndicator = true;
    ind.m_containerStruct = &s;
    if (s.v_field[i].rare().initVals.size() > 0) ind.editRare().initVals.push_back("1");  // a default is not null
    s.v_field[i].m_indicator = (int)s.v_field.size();
    s.v_field.push_back(ind);
    s.m_nNullableFields++;
  }
}
