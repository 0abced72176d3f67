// C# and Java class files: the type maps, the class-level attributes and annotations, and one member per field.
#include "genout.h"

namespace {

// clang-format off
struct TypeRow { const char* cType; const char* cs; };
const TypeRow kCsTypes[] = {   // cType, C# type
  { "uint1",        "byte" },
  { "uint2",        "ushort" },
  { "uint4",        "uint" },
  { "zkt_time",     "uint" },
  { "zkt_date",     "uint" },
  { "zkt_datetime", "zkt_datetime" },
  { "uint8",        "ulong" },
  { "autoid_t",     "ulong" },
  { "ref",          "ulong" },
  { "int1",         "sbyte" },
  { "int2",         "short" },
  { "int4",         "int" },
  { "int8",         "long" },
  { "zkt_int8",     "long" },
};

struct JavaTypeRow { const char* cType; const char* plain; const char* nullable; };
// "DateTime?" is no Java syntax; intended.
const JavaTypeRow kJavaTypes[] = {   // cType, not nullable, nullable
  { "uint1",        "byte",     "Byte" },
  { "int1",         "byte",     "Byte" },
  { "uint2",        "short",    "Short" },
  { "int2",         "short",    "Short" },
  { "uint4",        "int",      "Integer" },
  { "int4",         "int",      "Integer" },
  { "zkt_time",     "int",      "Integer" },
  { "zkt_date",     "int",      "Integer" },
  { "zkt_datetime", "DateTime", "DateTime?" },
  { "uint8",        "long",     "Long" },
  { "int8",         "long",     "Long" },
  { "autoid_t",     "long",     "Long" },
  { "ref",          "long",     "Long" },
  { "zkt_int8",     "long",     "Long" },
  { "float",        "float",    "Float" },
  { "double",       "double",   "Double" },
};

const TypeRow kJavaSeqTypes[] = {   // element type, Java word; anything else is "Char"
  { "uint8",        "UInt8" },
  { "zkt_datetime", "DateTime" },
  { "int8",         "Int8" },
  { "int2",         "Int2" },
  { "uint2",        "UInt2" },
  { "int4",         "Int4" },
  { "uint4",        "UInt4" },
  { "zkt_time",     "UInt4" },
  { "zkt_date",     "UInt4" },
  { "int1",         "Int1" },
  { "uint1",        "UInt1" },
  { "float",        "Float" },
  { "double",       "Double" },
};

// The storage words, in their order, with the flag that asks for each.
struct StorageWord { bool Class::*flag; const char* cs; const char* java; };
const StorageWord kStorageWords[] = {   // flag, C# word, Java word
  { &Class::m_persistent, "Disk=true",        "disk=true" },
  { &Class::m_sequential, "List=true",        "list=true" },
  { &Class::m_hasAutoId,  "AutoID=true",      "autoid=true" },
  { &Class::m_compact,    "Compact=true",     "compact=true" },
  { &Class::m_local,      "Local=true",       "local=true" },
  { &Class::m_distrib,    "Distributed=true", "distributed=true" },
};
const char kCsStorage[]   = "[Persistent";
const char kJavaStorage[] = "@Persistent";

const char kIot[]          = "@IoT(type=IoT.Type.{iot}{agents})\n";
const char* const kIotServer[] = { ", srcAgentId=\"agent_id\"", ", dstAgentId=\"agent_id\"" };   // up, down table
const char kIotRouter[]    = ", srcAgentId=\"src_agent_id\", dstAgentId=\"dst_agent_id\"";

struct IndexWords { const char* cs; const char* java; };
const IndexWords kTreeWords     = { "BTree",                        "BTree" };
const IndexWords kHashWords     = { "Hashtable, InitSize={count}", "Hashtable, initSize={count}" };
const IndexWords kRTreeWords    = { "RTree",                        "RTree" };
const IndexWords kPatriciaWords = { "Patricia",                     "Patricia" };
const IndexWords kTrigramWords  = { "Trigram",                      "Trigram" };

const char kCsIndex[]     = "[Index(\"{index}\", Type=Database.IndexType.{word}{unique}{thick}, Keys=new string[]{{keys}}{order})]\n";
const char kCsUnique[]    = ", Unique=true";
const char kCsThick[]     = ", Thick=true";
const char kCsKey[]       = "\"{key}\"";
const char kCsOrder[]     = ", Order=new string[]{{order}}";
const char kCsAsc[]       = "\"asc\"";
const char kCsDesc[]      = "\"desc\"";
const char kJavaIndexes[] = "@Indexes({";
const char kJavaIndex[]   = "@Index(name=\"{index}\", type=Database.IndexType.{word}{unique}{thick}, keys={{keys}})\n";
const char kJavaUnique[]  = ", unique=true";
const char kJavaThick[]   = ", thick=true";
const char kJavaKey[]     = "@Key(\"{key}\")";
const char kJavaKeyDesc[] = "@Key(\"{key}\", descending=true)";
const char kJavaIndexesEnd[] = "})\n";
const char kSep[]         = ", ";

struct EventWords { const char* cs; const char* java; };
const EventWords kNewEvent        = { "[Event(\"{name}\", EventType.OnNew)]\n",        "@Event(name=\"{name}\", type=Database.EventType.OnNew)\n" };
const EventWords kDeleteEvent     = { "[Event(\"{name}\", EventType.OnDelete)]\n",     "@Event(name=\"{name}\", type=Database.EventType.OnDelete)\n" };
const EventWords kDeleteAllEvent  = { "[Event(\"{name}\", EventType.OnDeleteAll)]\n",  "@Event(name=\"{name}\", type=Database.EventType.OnDeleteAll)\n" };
const EventWords kCheckpointEvent = { "[Event(\"{name}\", EventType.OnCheckpoint)]\n", "@Event(name=\"{name}\", type=Database.EventType.OnCheckpoint)\n" };
const EventWords kUpdateEvent     = { "[Event(\"{name}\", EventType.OnUpdate)]\n",     "@Event(name=\"{name}\", type=Database.EventType.OnUpdate)\n" };

const char kClassOpen[]  = "public class {class} {\n";
const char kClassClose[] = "}\n\n";

// A field's own update event; the Java text ends in "]" too: intended.
const char kCsFieldEvent[]   = "\t[Event(\"{name}\", EventType.OnFieldUpdate)]{nl}";
const char kJavaFieldEvent[] = "\t@Event(name=\"{name}\", type=Database.EventType.OnFieldUpdate)]{nl}";

// The member families of a field's type.
enum MemberFamily { MF_NONE, MF_SIMPLE, MF_CHARS, MF_STRING, MF_NCHARS, MF_NSTRING, MF_BLOB, MF_REF, MF_STRUCT };
struct MemberText { const char* cs; const char* java; };
const MemberText kPlainMembers[] = {   // by MemberFamily: C#, Java
  { nullptr, nullptr },
  { "\tpublic {cs}{q}{field};{nl}",
    "\tpublic {java} {field};{nl}" },
  { "\t[Dimension({usize})]{nl}\tpublic string {field};{nl}",
    "\t@Dimension({usize}){nl}\tpublic String {field};{nl}" },
  { "\tpublic string {field};{nl}",
    "\tpublic String {field};{nl}" },
  { "\t[Encoding(\"UTF-16\")]{nl}\t[Dimension({usize})]{nl}\tpublic string {field};{nl}",
    "\t@Encoding(\"UTF-16\"){nl}\t@Dimension({usize}){nl}\tpublic String {field};{nl}" },
  { "\t[Encoding(\"UTF-16\")]{nl}\tpublic string {field};{nl}",
    "\t@Encoding(\"UTF-16\"){nl}\tpublic String {field};{nl}" },
  { "\t[Blob]{nl}\tpublic byte[] {field};{nl}",
    "\t@Blob{nl}\tpublic byte[] {field};{nl}" },
  { "\tpublic ulong {field};{nl}",
    "\tpublic long {field};{nl}" },
  { "\tpublic {tname} {field};{nl}",
    "\tpublic {tname} {field};{nl}" },
};
const MemberText kOptionalMember =
  { "\t[Optional]{nl}\tpublic {tname} {field};{nl}",
    "\t@OptionalStruct{nl}\tpublic {tname} {field};{nl}" };
const MemberText kArrayMembers[] = {   // by MemberFamily of the element: C#, Java
  { nullptr, nullptr },
  { "\t[Dimension({n})]{nl}\tpublic {cs}[] {field};{nl}",
    "\t@Dimension({n}){nl}\tpublic {java}[] {field};{nl}" },
  { "\t[Dimension({n})]{nl}\tpublic string[] {field};{nl}",
    "\t@Dimension({n}){nl}\tpublic String[] {field};{nl}" },
  { "\t[Dimension({n})]{nl}\tpublic string[] {field};{nl}",
    "\t@Dimension({n}){nl}\tpublic String[] {field};{nl}" },
  { "\t[Encoding(\"UTF-16\")]{nl}\t[Dimension({n})]{nl}\tpublic string[] {field};{nl}",
    "\t@Encoding(\"UTF-16\"){nl}\t@Dimension({n}){nl}\tpublic String[] {field};{nl}" },
  { "\t[Encoding(\"UTF-16\")]{nl}\t[Dimension({n})]{nl}\tpublic string[] {field};{nl}",
    "\t@Encoding(\"UTF-16\"){nl}\t@Dimension({n}){nl}\tpublic String[] {field};{nl}" },
  { nullptr, nullptr },
  { "\t[Dimension({n})]{nl}\tpublic ulong[] {field};{nl}",
    "\t@Dimension({n}){nl}\tpublic long[] {field};{nl}" },
  { "\t[Dimension({n})]{nl}\tpublic {tname}[] {field};{nl}",
    "\t@Dimension({n}){nl}\tpublic {tname}[] {field};{nl}" },
};
const MemberText kVectorMembers[] = {   // by MemberFamily of the element: C#, Java
  { nullptr, nullptr },
  { "\tpublic {cs}[] {field};{nl}",
    "\tpublic {java}[] {field};{nl}" },
  { "\tpublic string[] {field};{nl}",
    "\tpublic String[] {field};{nl}" },
  { "\tpublic string[] {field};{nl}",
    "\tpublic String[] {field};{nl}" },
  { "\t[Encoding(\"UTF-16\")]{nl}\tpublic string[] {field};{nl}",
    "\t@Encoding(\"UTF-16\"){nl}\tpublic String[] {field};{nl}" },
  { "\t[Encoding(\"UTF-16\")]{nl}\tpublic string[] {field};{nl}",
    "\t@Encoding(\"UTF-16\"){nl}\tpublic String[] {field};{nl}" },
  { nullptr, nullptr },
  { "\tpublic ulong[] {field};{nl}",
    "\tpublic long[] {field};{nl}" },
  { "\tpublic {tname}[] {field};{nl}",
    "\tpublic {tname}[] {field};{nl}" },
};

const char kJavaSeq[]       = "\t@Sequence(type=Sequence.Type.{jseq}, order=Sequence.Order.{jorder}{jsize}){nl}\tpublic {jclass}{field};{nl}";
const char kJavaSeqSize[]   = ", elemSize={es}";
const char kCsUnordered[]   = "\tpublic UnorderedSequence<{cst}> {field};{nl}";
// An unordered char<n> sequence is declared ordered and descending: intended.
const char kCsOrdered[]     = "\t[Sequence(Order=SequenceOrder.{csorder}{cssize})]{nl}\tpublic OrderedSequence<{cst}> {field};{nl}";
const char kCsSeqSize[]     = ", ElemSize={es}";
const char kNoOrder[]       = "ZKT_SEQ_NO_ORDER";
const char kAscOrder[]      = "ZKT_SEQ_ASC_ORDER";
// clang-format on

MemberFamily memberFamily(TypeCategory category) {
  switch (category) {
    case ET_SIMPLE:
      return MF_SIMPLE;
    case ET_CHARS:
    case ET_BINARY:
      return MF_CHARS;
    case ET_STRING:
    case ET_VARBINARY:
      return MF_STRING;
    case ET_UNICODE_CHARS:
      return MF_NCHARS;
    case ET_UNICODE_STRING:
      return MF_NSTRING;
    case ET_BLOB:
      return MF_BLOB;
    case ET_REF:
      return MF_REF;
    case ET_STRUCT:
    case ET_DIRECT_STRUCT:
      return MF_STRUCT;
    case ET_AUTOID:  // no member
    case ET_VERSION:
    case ET_AUTOOID:
    case ET_WIDE_CHARS:
    case ET_WCHAR_STRING:
    case ET_SEQUENCE:
      return MF_NONE;
  }
  return MF_NONE;
}

// The type words of an index, or null for one without managed text.
const IndexWords* indexWords(IndexType type) {
  switch (type) {
    case IT_Tree:
      return &kTreeWords;
    case IT_Hash:
      return &kHashWords;
    case IT_RTree:
      return &kRTreeWords;
    case IT_PTree:
      return &kPatriciaWords;
    case IT_Trigram:
      return &kTrigramWords;
    case IT_KDTree:
    case IT_List:
      return nullptr;
  }
  return nullptr;
}

// The class-level text of an event, or null for one that has none.
const EventWords* eventWords(Event::Type type) {
  switch (type) {
    case Event::NEW:
      return &kNewEvent;
    case Event::DELETE:
      return &kDeleteEvent;
    case Event::DELETE_ALL:
      return &kDeleteAllEvent;
    case Event::CHECKPOINT:
      return &kCheckpointEvent;
    case Event::CLASS_UPDATE:
      return &kUpdateEvent;
    case Event::NONE:
    case Event::UPDATE:
    case Event::EXPRESSION:
      return nullptr;
  }
  return nullptr;
}

// The IoT type word of a table, or null for a class that is none.
const char* iotWord(TableIotType type) {
  switch (type) {
    case IOT_TABLE_UP:
      return "Uptable";
    case IOT_TABLE_DOWN:
      return "Downtable";
    case IOT_TABLE_NONE:
      return nullptr;
  }
  return nullptr;
}

const char* lookup(const TypeRow* rows, size_t n, const mstring& key) {
  for (size_t i = 0; i < n; i++)
    if (key == rows[i].cType) return rows[i].cs;
  return nullptr;
}

bool skipIndex(const Index& idx) {
  return idx.m_isListIndex || idx.m_isAutoidIndex || idx.m_isHistoryIndex || idx.m_hidden ||
         indexWords(idx.m_IndexType) == nullptr;
}

// The keys of idx: one per element of every segment, C# quoted or Java @Key.
void indexKeys(const Index& idx, mstring& cs, mstring& java) {
  Frag fr;
  for (unsigned int i = 0; i < idx.v_fldParsed.size(); i++) {
    const Index::Segment& seg = idx.v_fldParsed[i];
    const bool desc = i < idx.v_descending.size() && idx.v_descending[i];
    for (unsigned int j = 0; j < seg.size(); j++) {
      if (!cs.empty()) {
        cs += kSep;
        java += kSep;
      }
      fr.set("key", seg[j].m_name);
      cs += fr.fill(kCsKey);
      java += fr.fill(desc ? kJavaKeyDesc : kJavaKey);
    }
  }
}

// The C# order list of idx, empty unless a segment is descending.
mstring indexOrder(const Index& idx) {
  bool any = false;
  for (unsigned int i = 0; i < idx.v_fldParsed.size(); i++) any = any || idx.v_fldParsed[i].m_descending;
  if (!any) return mstring();
  mstring list;
  for (unsigned int i = 0; i < idx.v_descending.size(); i++) {
    if (i > 0) list += kSep;
    list += idx.v_descending[i] ? kCsDesc : kCsAsc;
  }
  return Frag().set("order", list).fill(kCsOrder);
}

}  // namespace

mstring UT::mapCSType(const mstring& cType) {
  const char* cs = lookup(kCsTypes, sizeof kCsTypes / sizeof kCsTypes[0], cType);
  return cs != nullptr ? mstring(cs) : cType;
}

mstring UT::mapJavaType(const mstring& cType, const mstring& zktType, bool nullable) {
  if (zktType == "boolean") return mstring(nullable ? "Boolean" : "boolean");
  for (const JavaTypeRow& row : kJavaTypes)
    if (cType == row.cType) return mstring(nullable ? row.nullable : row.plain);
  return cType;
}

const char* java_seq_elem_type(const mstring& type) {
  const char* word = lookup(kJavaSeqTypes, sizeof kJavaSeqTypes / sizeof kJavaSeqTypes[0], type);
  return word != nullptr ? word : "Char";
}

IOutStream* GenOutput::outputManagedClassHead(Class& cls) {
  Frag fr;
  fr.set("class", cls.m_name);

  mstring cs = kCsStorage, java = kJavaStorage;
  bool any = false;
  for (const StorageWord& w : kStorageWords) {
    if (!(cls.*w.flag)) continue;
    cs += any ? "," : "(";
    java += any ? "," : "(";
    cs += w.cs;
    java += w.java;
    any = true;
  }
  if (any) {
    cs += ")";
    java += ")";
  }
  *m_cs << cs << "]\n";

  IOutStream* const outer = m_java;
  if (m_gen_java) m_java = createJavaFile(cls.m_name + ".java", true);
  *m_java << java << "\n";
  if (const char* iot = iotWord(cls.m_iot_type)) {
    const bool up = cls.m_iot_type == IOT_TABLE_UP;
    const unsigned level = m_sc.m_iot_level;
    fr.set("iot", iot);
    fr.set("agents", level == 1 ? kIotServer[up ? 0 : 1] : level < 65535 ? kIotRouter : "");
    fr.fillTo(*m_java, kIot);
  }

  bool javaIndexes = false;
  for (unsigned int i = 0; i < cls.v_index.size(); i++) {
    const Index& idx = cls.v_index[i];
    if (skipIndex(idx)) continue;
    const IndexWords& words = *indexWords(idx.m_IndexType);
    mstring csKeys, javaKeys;
    indexKeys(idx, csKeys, javaKeys);
    fr.set("index", idx.m_name).set("count", (long)idx.m_expectedCount);
    fr.set("word", fr.fill(words.cs)).set("keys", csKeys).set("order", indexOrder(idx));
    fr.set("unique", idx.m_isUnique ? kCsUnique : "").set("thick", idx.m_isThick ? kCsThick : "");
    fr.fillTo(*m_cs, kCsIndex);
    fr.set("word", fr.fill(words.java)).set("keys", javaKeys);
    fr.set("unique", idx.m_isUnique ? kJavaUnique : "").set("thick", idx.m_isThick ? kJavaThick : "");
    *m_java << (javaIndexes ? kSep : kJavaIndexes) << fr.fill(kJavaIndex);
    javaIndexes = true;
  }
  if (javaIndexes) *m_java << kJavaIndexesEnd;

  for (unsigned int i = 0; i < cls.v_events.size(); i++) {
    const EventWords* words = eventWords(cls.v_events[i].m_type);
    if (words == nullptr) continue;
    fr.set("name", cls.v_events[i].m_name);
    fr.fillTo(*m_cs, words->cs);
    fr.fillTo(*m_java, words->java);
  }

  fr.fillTo(*m_cs, kClassOpen);
  fr.fillTo(*m_java, kClassOpen);
  return outer;
}

void GenOutput::outputManagedClassEnd(Class&) {
  *m_cs << kClassClose;
  *m_java << kClassClose;
}

void GenOutput::closeManagedClassFile(IOutStream* outer) {
  if (m_java == outer) return;
  delete m_java;
  m_java = outer;
}

void GenOutput::outputEventAttribute(Class& cls, int ev) {
  Frag fr;
  fr.set("name", cls.v_events[cls.getEventPos(ev)].m_name).set("nl", "\n");
  fr.fillTo(*m_cs, kCsFieldEvent);
  fr.fillTo(*m_java, kJavaFieldEvent);
}

void GenOutput::outputManagedMember(Struct&, Field& f, Frag& fr) {
  // Its placeholders serve only the texts below: without a C# or Java file
  // to write there is nothing to do.
  if (m_cs->discards() && m_java->discards()) return;
  if (f.m_isSequence) {
    const Struct& e = *f.rare().seqElemStruct;
    const bool sized = e.m_category == ET_CHARS || e.m_category == ET_BINARY;
    const mstring order = fr.fill("{order}");
    const bool unordered = order == kNoOrder, asc = order == kAscOrder;
    fr.set("jseq", java_seq_elem_type(fr.fill("{seqtype}")));
    fr.set("jorder", unordered ? "None" : asc ? "Ascending" : "Descending");
    fr.set("jsize", sized ? fr.fill(kJavaSeqSize) : mstring());
    fr.set("jclass", unordered ? "UnorderedSequence " : "OrderedSequence ");
    fr.fillTo(*m_java, kJavaSeq);
    fr.set("cst", UT::mapCSType(fr.fill("{seqtype}")));
    fr.set("csorder", asc ? "Ascending" : "Descending");
    fr.set("cssize", sized ? fr.fill(kCsSeqSize) : mstring());
    fr.fillTo(*m_cs, unordered && e.m_category != ET_CHARS ? kCsUnordered : kCsOrdered);
    return;
  }

  const Struct& t = *f.m_pstruct;
  const bool plain = !f.m_isArray && !f.m_isVector;
  const bool nullable = plain && f.m_isNullable;
  fr.set("cs", f.m_eltype == "boolean" ? mstring("bool") : UT::mapCSType(t.m_cType));
  fr.set("java", UT::mapJavaType(t.m_cType, f.m_eltype, nullable));
  fr.set("q", nullable ? "? " : " ");
  const MemberFamily fam = memberFamily(t.m_category);
  const MemberText& text = f.m_isOptional ? kOptionalMember
                           : f.m_isArray  ? kArrayMembers[fam]
                           : f.m_isVector ? kVectorMembers[fam]
                                          : kPlainMembers[fam];
  if (text.cs == nullptr) return;
  fr.fillTo(*m_cs, text.cs);
  fr.fillTo(*m_java, text.java);
}
