// Generator frame: output files and their routing, heads and tails, names with prefix, and column widths.
#include "genout.h"

#include <errno.h>
#include <string.h>
#include <unistd.h>

#include "buildout.h"

GenOutput::GenOutput(Schema& sc, bool debug, bool nosort, bool dumpxml, bool gen_hpp, bool gen_cs, bool gen_java,
                     bool gen_smartptr, IErrReporter* err, const mstring& dir, const mstring& csNamespace,
                     const mstring& javaPackage, bool cmode1, bool genXmlMethods, bool genJsonMethods,
                     bool genSql, bool largeDatabase, int target_sizeof_zkt_size_t, int wcharSize, bool prefix,
                     bool mergeable, bool dll)
    : m_sc(sc),
      m_err(err),
      m_dir(dir),
      m_csNamespace(csNamespace),
      m_javaPackage(javaPackage),
      m_prefix(prefix),
      m_h(nullptr),
      m_c(nullptr),
      m_def2(nullptr),
      m_body(nullptr),
      m_prot(nullptr),
      m_x(nullptr),
      m_hpp(nullptr),
      m_cs(nullptr),
      m_java(nullptr),
      m_udf(nullptr),
      m_coll(nullptr),
      m_gen_hpp(gen_hpp),
      m_gen_cs(gen_cs),
      m_gen_java(gen_java),
      m_gen_smartptr(gen_smartptr),
      m_debug(debug),
      m_nosort(nosort),
      m_dumpxml(dumpxml),
      m_cmode1(cmode1),
      m_genXmlMethods(genXmlMethods),
      m_genJsonMethods(genJsonMethods),
      m_genSql(genSql),
      m_largeDatabase(largeDatabase),
      m_target_sizeof_zkt_size_t(target_sizeof_zkt_size_t),
      m_mergeable(mergeable),
      m_dll(dll),
      m_wcharSize(wcharSize),
      m_hpp_tail(nullptr),
      m_maxClassName(0),
      m_maxIndexName(0),
      m_maxFieldName(0),
      m_maxCtypeName(0),
      m_fmtRet(0),
      m_idxMethodName(0) {}

GenOutput::~GenOutput() { close(); }

// ---------------------------------------------------------------- streams

void GenOutput::init() {
  bool udf = false;
  bool coll = false;
  if (m_sc.m_userdefIdxNum != 0) {
    for (ISet::HPos pos(m_sc.s_class.first()); pos.valid(); pos.next()) {
      const Class& cls = *static_cast<Class*>(pos.get().get());
      if (cls.m_hasUserdefIdx && !cls.m_suppressApi) udf = true;
    }
  }
  if (m_sc.m_collationsNum != 0) {
    for (ISet::HPos pos(m_sc.s_class.first()); pos.valid(); pos.next()) {
      const Class& cls = *static_cast<Class*>(pos.get().get());
      if (cls.m_hasCollations && !cls.m_suppressApi) coll = true;
    }
  }
  createStreams(udf, coll);
}

IOutStream* GenOutput::createFile(const mstring& name) {
  mstring path = UT::makefnm(m_dir, name);
  m_files_created.push_back(path);
  if (m_listOnly) return IOutStream::createNullStream();
  // Either stops the process when it can't open.
  IOutStream* os = m_ifchanged ? Replaced::open(path) : IOutStream::createFileStream(path);
  if (!os->good()) m_err->err("Cannot create output file " + path);
  return os;
}

IOutStream* GenOutput::createUserFile(const char* suffix, const char* warning) {
  mstring name = m_sc.m_dbname + suffix;
  if (access(UT::makefnm(m_dir, name).c_str(), F_OK) == 0) {
    name += ".new";
    m_err->warning1(warning, m_sc.m_dbname);
  }
  return createFile(name);
}

void GenOutput::createRouting() {
  if (m_debug) {
    m_def2 = IOutStream::createDupStream(m_h, m_c, false);  // heads into both files
    m_prot = IOutStream::createWrapStream(m_h);             // prototypes in the header
    m_body = IOutStream::createWrapStream(m_c);             // bodies in the C file
  } else {
    m_def2 = IOutStream::createWrapStream(m_h);  // inline definitions in the header
    m_prot = IOutStream::createNullStream();
    m_body = IOutStream::createWrapStream(m_h);
  }
}

void GenOutput::createStreams(bool udf, bool coll) {
  const mstring& db = m_sc.m_dbname;
  m_h = createFile(db + ".h");
  m_c = createFile(db + ".c");
  createRouting();
  if (m_gen_hpp) {
    m_hpp_tail = IOutStream::createStrStream(m_dir);
    m_hpp = createFile(db + ".hpp");
  } else {
    m_hpp_tail = IOutStream::createNullStream();
    m_hpp = IOutStream::createNullStream();
  }
  m_cs = m_gen_cs ? createFile(db + ".cs") : IOutStream::createNullStream();
  m_java = IOutStream::createNullStream();  // Java files are opened by output()
  if (m_dumpxml) m_x = createFile(db + ".xml");
  if (m_sc.m_userdefIdxNum != 0 && udf)
    m_udf = createUserFile("_udf.c", "file #1_udf.c exists, generate #1_udf.c.new");
  else
    m_udf = IOutStream::createNullStream();
  if (m_sc.m_collationsNum != 0 && coll)
    m_coll = createUserFile("_coll.c", "file #1_coll.c exists, generate #1_coll.c.new");
  else
    m_coll = IOutStream::createNullStream();
}

// The routing streams go last: they only point at the others and never
// touch them when deleted.
void GenOutput::close() {
  IOutStream** const streams[] = {&m_h,         &m_c,    &m_x,    &m_hpp,  &m_udf, &m_coll,
                                  &m_hpp_tail,  &m_def2, &m_body, &m_prot, &m_cs,  &m_java};
  for (IOutStream** s : streams) {
    delete *s;
    *s = nullptr;
  }
}

mvector<mstring> GenOutput::listAllOutputs(const mstring& dir, const mstring& name) {
  mvector<mstring> res;
  res.push_back(UT::makefnm(dir, name + ".h"));
  res.push_back(UT::makefnm(dir, name + ".c"));
  res.push_back(UT::makefnm(dir, name + ".hpp"));
  res.push_back(UT::makefnm(dir, name + ".xml"));
  static const char* const userFiles[] = {"_udf.c", "_coll.c"};
  for (const char* suffix : userFiles) {
    mstring path = UT::makefnm(dir, name + suffix);
    if (access(path.c_str(), F_OK) == 0) path += ".new";
    res.push_back(path);
  }
  return res;
}

void GenOutput::run() {
  layout();
  calculateFormating();
  heading();
  outputCalculator();
  outputDictionary();
  output();
  outputUserdef();
  outputCollation();
  ending();
  checkWritten();
}

// Writes to a full disk fail silently into the stdio buffers: this makes the
// failure an error, whose final callback removes the outputs.
void GenOutput::checkWritten() {
  IOutStream* const files[] = {m_h, m_c, m_hpp, m_cs, m_x, m_udf, m_coll};
  for (IOutStream* os : files) {
    if (os == nullptr || os->flush()) continue;
    m_err->err(mstring("Cannot write output files: ") + strerror(errno));
  }
}

// ---------------------------------------------------------------- small writers

mstring GenOutput::MF(const mstring& name, int width) {
  return UT::adjust(m_dll ? "ZKT_DLL_SPEC " + name : name, width);
}

// clang-format off
static const char kHead2Rule[] = "\n/*---------------------------------------------------------------------*/\n";
// clang-format on

void GenOutput::head2(IOutStream* os, const mstring& title) {
  *os << kHead2Rule << UT::adjust("/* " + title, 70) << " */\n" << "\n";
}

void GenOutput::cFunction(const mstring& name, int width, const mstring& params, const mstring& body) {
  *m_def2 << inline_on_release() << retColumn() << " " << MF(name, width) << params;
  *m_prot << ";";
  *m_def2 << "\n";
  *m_body << body;
}

void GenOutput::cFunctionDefines(const mstring& name, int width, const mstring& params, const mstring& defines,
                                 const mstring& body) {
  *m_def2 << inline_on_release() << retColumn() << " " << MF(name, width) << params;
  *m_prot << ";" << "\n";
  *m_def2 << "\n";
  *m_prot << defines;
  *m_body << body;
}

void GenOutput::cppMethod(const mstring& hpp, const mstring& decl, const mstring& def) {
  *m_hpp << decl;
  *m_hpp_tail << "inline" << "  ZKT_RET " << hpp << "::" << def;
}

void GenOutput::cppMember(const mstring& decl, const mstring& def) {
  *m_hpp << decl;
  *m_hpp_tail << def;
}

void GenOutput::outConstant(IOutStream* os, const mstring& name, int value) {
  *os << "#define " << name << " " << value << "\n";
}

// A plain prefix test: a name that already starts with the database name and
// is longer than it keeps its name, even without "_" behind the prefix.
mstring GenOutput::nameWithPrefix(const mstring& name) {
  const mstring& db = m_sc.m_dbname;
  if (m_prefix && !(name.size() > db.size() && name.startsWith(db.c_str()))) return db + "_" + name;
  return name;
}

// ---------------------------------------------------------------- names and widths

// A field of an enum type takes the enum's (prefixed) name as its type.
static void renameEnumFields(Struct& s) {
  for (unsigned int i = 0; i < s.v_field.size(); i++) {
    Field& f = s.v_field[i];
    if (f.rare().penum == nullptr) continue;
    f.m_eltype = f.rare().penum->m_name;
    f.m_pstruct->m_name = f.rare().penum->m_name;
    f.m_pstruct->m_cType = f.rare().penum->m_name;
  }
}

void GenOutput::calculateFormating() {
  // Names change below with a prefix, and for the fields of an enum type:
  // then the sets find by order from now on. Otherwise every name stays.
  if (m_prefix || m_sc.s_enum.get()->size() > 0) {
    m_sc.s_enum.get()->keysChanged();
    m_sc.s_class.get()->keysChanged();
    m_sc.s_struct.get()->keysChanged();
  }
  for (ISet::HPos pos(m_sc.s_enum.first()); pos.valid(); pos.next()) {
    Enum& e = *static_cast<Enum*>(pos.get().get());
    e.m_name = nameWithPrefix(e.m_name);
    for (unsigned int i = 0; i < e.v_els.size(); i++) e.v_els[i].m_choice = nameWithPrefix(e.v_els[i].m_choice);
  }
  for (ISet::HPos pos(m_sc.s_class.first()); pos.valid(); pos.next()) {
    Class& cls = *static_cast<Class*>(pos.get().get());
    cls.m_name = nameWithPrefix(cls.m_name);
    m_maxClassName = UT::imax(m_maxClassName, (int)cls.m_name.size());
    m_maxFieldName = UT::imax(m_maxFieldName, cls.m_maxFieldName);
    for (unsigned int i = 0; i < cls.v_index.size(); i++) {
      const int len = (int)cls.v_index[i].m_name.size();
      cls.m_maxIndexName = UT::imax(cls.m_maxIndexName, len);
      m_maxIndexName = UT::imax(m_maxIndexName, len);
    }
    cls.m_maxFuncName = cls.m_maxFieldName + cls.m_maxIndexName + (int)cls.m_name.size() + 16;
    renameEnumFields(cls);
  }
  for (ISet::HPos pos(m_sc.s_struct.first()); pos.valid(); pos.next()) {
    Struct& s = *static_cast<Struct*>(pos.get().get());
    s.m_name = nameWithPrefix(s.m_name);
    renameEnumFields(s);
    m_maxClassName = UT::imax(m_maxClassName, (int)s.m_name.size());
    if (s.m_category == ET_SIMPLE) m_maxCtypeName = UT::imax(m_maxCtypeName, (int)s.m_cType.size());
    s.m_maxFuncName = s.m_maxFieldName + (int)s.m_name.size() + 16;
  }
  m_fmtRet = UT::imax(m_maxCtypeName, 8);
  m_idxMethodName = 20;
}

// ---------------------------------------------------------------- heads and tails

// clang-format off
static const char kBanner[] =
  "/* Generated by Vantrel Schema Compiler, build {build}, rev. {rev}\n"
  " * at {time} */\n"
  "\n";

const char kNoTimeBanner[] = "(time not recorded)\n";

static const char kCHeadDll[] = "#define ZKT_DLL_SPEC __declspec(dllexport)\n";
static const char kCHead[] =
  "#include \"{db}.h\"\n"
  "#define ZKT_DICT_CONST const\n"
  "#include \"zktwrap.h\"\n"
  "\n";

static const char kHHead[] =
  "#if defined(ZKT_CPP_INTERFACE) && defined(__ZKT__{db}__H__)\n"
  "#error C API schema file {db}.h should not be included directly from C++ application\n"
  "#endif\n"
  "#ifndef __ZKT__{db}__H__\n"
  "#define __ZKT__{db}__H__\n"
  "\n"
  "#ifdef __cplusplus\n"
  "extern \"C\" { \n"
  "#endif\n"
  "\n"
  "#include \"zkt.h\"\n"
  "#include \"zktuda.h\"\n";
static const char kHSequences[] = "#include \"zktseq.h\"\n";
static const char kHDll[] =
  "#ifndef ZKT_DLL_SPEC\n"
  "#define ZKT_DLL_SPEC __declspec(dllimport)\n"
  "#endif\n";
static const char kHWrap[] = "#include \"zktwrap.h\"\n";
static const char kHVersion[] =
  "\n#ifndef ZKT_COMP_VER_MAJOR "
  "\n#define ZKT_COMP_VER_MAJOR {major}"
  "\n#define ZKT_COMP_VER_MINOR {minor}"
  "\n#define ZKT_COMP_BUILD_NUM {build}"
  "\n#define ZKT_COMP_REVISION \"{rev}\""
  "\n#define ZKT_COMP_API_VERSION {api}"
  "\n#endif /*ZKT_COMP_VER_MAJOR*/ "
  "\n\n"
  "#if !defined(ZKT_MEMCPY_DEFINED) && !ZKT_CFG_BUILTIN_MEMCPY\n"
  "#define ZKT_MEMCPY_DEFINED\n"
  "void zkt_memcpy(void* dest, const void* src, zkt_size_t nbt);\n"
  "#endif /*ZKT_MEMCPY_DEFINED*/\n"
  "\n\n\n";
static const char kHDictionary[] =
  "zkt_dictionary_h {getdict}(void);\n"
  "\n"
  "zkt_calculator_h {db}_get_calculator(void);\n"
  "\n";
static const char kHNamespace[] =
  "#ifdef ZKT_CPP_INTERFACE\n"
  "namespace {db}\n"
  "{\n"
  "#endif\n"
  "\n";

static const char kHppGuard[] =
  "#ifndef __ZKT__{db}__HPP__\n"
  "#define __ZKT__{db}__HPP__\n"
  "\n";
static const char kHppIncSequences[] = "#include \"zktseq.hpp\"\n\n";
static const char kHppIncSmartptr[] = "#include \"zkt.hpp\"\n\n";
static const char kHppIncPlain[] = "#include \"zkt.h\"\n\n";
static const char kHppHead[] =
  "#define ZKT_CPP_INTERFACE\n"
  "#include \"{db}.h\"\n"
  "\n"
  "namespace {db}\n"
  "{\n"
  "\n"
  "class ZktBase_\n"
  "{\n"
  "  protected:\n"
  "  ZKT_Hf h_;\n"
  "  bool    valid_;\n"
  "  ZktBase_() : valid_(false) {} \n"
  "  ZktBase_(ZktBase_ const& other) : valid_(other.valid_) { zkt_assign_handle(&h_, &other.h_); } \n"
  "  public:\n"
  "  bool is_valid() const  { return valid_; }\n"
  "  void set_valid(bool v) { valid_ = v; }\n"
  "};\n"
  "\n";

static const char kUserFileHead[] =
  "#include \"{db}.h\"\n"
  "#include \"zktwrap.h\"\n"
  "\n";

static const char kHEnd[] =
  "\n"
  "#ifdef __cplusplus\n"
  "#ifdef ZKT_CPP_INTERFACE\n"
  "} // namespace {db}\n"
  "#endif\n"
  "} // extern \"C\" \n"
  "#endif\n"
  "\n"
  "#endif\n";
static const char kHppEnd[] =
  "\n\n"
  "} // namespace {db}\n"
  "\n"
  "#endif\n";
// clang-format on

void GenOutput::heading() {
  Frag fr;
  fr.set("db", m_sc.m_dbname);
  fr.set("build", (long)ZKT_COMP_BUILD_NUM);
  fr.set("major", (long)ZKT_COMP_VER_MAJOR);
  fr.set("minor", (long)ZKT_COMP_VER_MINOR);
  fr.set("api", (long)ZKT_COMP_API_VERSION);
  fr.set("rev", ZKT_COMP_REVISION);
  fr.set("time", m_notime ? mstring(kNoTimeBanner) : UT::stringTime());  // ends in its own line feed
  fr.set("getdict", MF(m_sc.m_dbname + "_get_dictionary", 0));

  const mstring banner = fr.fill(kBanner);
  IOutStream* const bannered[] = {m_h, m_c, m_hpp, m_udf, m_coll};
  for (IOutStream* os : bannered) *os << banner;

  if (m_dll) *m_c << kCHeadDll;
  fr.fillTo(*m_c, kCHead);

  fr.fillTo(*m_h, kHHead);
  if (m_sc.m_useSequences) *m_h << kHSequences;
  if (m_dll) *m_h << kHDll;
  if (!m_debug) *m_h << kHWrap;
  fr.fillTo(*m_h, kHVersion);
  head2(m_h, "Dictionary");
  fr.fillTo(*m_h, kHDictionary);

  fr.fillTo(*m_hpp, kHppGuard);
  if (m_sc.m_useSequences)
    *m_hpp << kHppIncSequences;
  else if (m_gen_smartptr)
    *m_hpp << kHppIncSmartptr;
  else
    *m_hpp << kHppIncPlain;
  fr.fillTo(*m_hpp, kHppHead);

  fr.fillTo(*m_h, kHNamespace);

  fr.fillTo(*m_udf, kUserFileHead);
  fr.fillTo(*m_coll, kUserFileHead);
}

void GenOutput::ending() {
  Frag fr;
  fr.set("db", m_sc.m_dbname);
  fr.fillTo(*m_h, kHEnd);
  fr.fillTo(*m_hpp, kHppEnd);
}

// ---------------------------------------------------------------- layout

namespace {

bool isStructType(const Struct& t) { return t.m_category == ET_STRUCT || t.m_category == ET_DIRECT_STRUCT; }

// One struct on the layout stack. A struct met for the first time is laid
// out field by field; one that was finished before only passes a new owner
// down to the structs nested in it.
struct LayoutFrame {
  Struct* s = nullptr;
  int start = 0;
  Class* cls = nullptr;
  bool spreading = false;
  unsigned int next = 0;    // the field being handled
  bool nestedDone = false;  // the struct type of that field has been handled
};

// Adds cls to the owners unless it is there; true when it was added. All
// owners that one class adds come in a row, so the last one is checked first.
bool addOwner(Struct& s, Class* cls) {
  if (s.m_owners.size() > 0 && s.m_owners.back() == cls) return false;
  for (unsigned int i = 0; i < s.m_owners.size(); i++)
    if (s.m_owners[i] == cls) return false;
  s.m_owners.push_back(cls);
  return true;
}

const long long kMaxSize = 2147483647;

}  // namespace

// clang-format off
static const char kAlignText[]      = "alignsz({sz},{a})";
static const char kArraySizeText[]  = "({elem})*{n}";
static const char kStructSizeText[] = "structsz({struct}_d_aligned_to_1)";
static const char kSumText[]        = "{offs}+{size}";
// clang-format on

// A negative number is a length that did not fit an int when it was read
// (char<3000000000>): too large as well, before sums of such lengths overflow.
int GenOutput::checkedSize(long long n, const Struct& s) {
  if (n > kMaxSize || n < 0) m_err->err("Struct " + s.m_name + " is too large");
  return (int)n;
}

FSize GenOutput::alignInt(FSize sz, FSize a) {
  if (sz.is_str()) {
    const mstring szText = sz;
    const mstring aText = a;
    return FSize(Frag().set("sz", szText).set("a", aText).fill(kAlignText));
  }
  if (sz.m_size_n <= 0) return sz;
  const int an = a;
  if (an == 2 || an == 4 || an == 8) return FSize(((sz.m_size_n - 1) / an + 1) * an);
  return sz;
}

FSize GenOutput::alignInt(FSize sz, int& a) { return alignInt(sz, FSize(a)); }

FSize GenOutput::getArraySize(FSize& elem, int n) {
  const mstring elemText = elem;
  return FSize(Frag().set("elem", elemText).set("n", (long)n).fill(kArraySizeText));
}

void GenOutput::update_layout_strings(FldLayout& fl) { fl.update_strings(); }

void GenOutput::layout() {
  if (m_sc.m_useObjid) {
    Struct* ref = m_sc.findType("ref");
    if (ref == nullptr) IErrReporter::panic("oid type ref not found", false);
    m_sc.m_oid_sizeof_uplimit = (unsigned int)oid_layout(*ref);
  }
  for (ISet::HPos pos(m_sc.s_struct.first()); pos.valid(); pos.next())
    layout(*static_cast<Struct*>(pos.get().get()), 0, nullptr);
  int code = 1;
  for (ISet::HPos pos(m_sc.s_class.first()); pos.valid(); pos.next()) {
    Class& cls = *static_cast<Class*>(pos.get().get());
    cls.m_classCode = code++;
    // The oid stands in front of the fields.
    const int start = cls.m_hasId ? (int)((m_sc.m_oid_sizeof_uplimit + 1) / 2 * 2) : 0;
    layout(cls, start, &cls);
    if (cls.m_compact && (int)cls.m_layout.c.m_size > 65535)
      m_err->err("Class " + cls.m_name + " is too large to be compact");
  }
  if (m_dumpxml) dump(*m_x);
}

// The oid is packed: alignment 1 as a whole, no padding behind the last
// field. Only a simple field is aligned, to 2 for two bytes and to 4 for
// anything larger (eight bytes included). Modifiers are not looked at.
int GenOutput::oid_layout(Struct& s) {
  long long size = 0;
  for (unsigned int i = 0; i < s.v_field.size(); i++) {
    const Struct& t = *s.v_field[i].m_pstruct;
    const int el = t.m_layout.u.m_size;
    const char* refused = nullptr;
    switch (t.m_category) {
      case ET_STRUCT:
        refused = "Nested structure in oid";
        break;
      case ET_SIMPLE:
        if (el == 2) size = (size + 1) / 2 * 2;
        if (el > 2) size = (size + 3) / 4 * 4;
        break;
      case ET_CHARS:
      case ET_BINARY:
      case ET_UNICODE_CHARS:
        break;
      case ET_STRING:
      case ET_BLOB:
      case ET_REF:
      case ET_AUTOID:
      case ET_VERSION:
      case ET_AUTOOID:
      case ET_UNICODE_STRING:
      case ET_DIRECT_STRUCT:
      case ET_WIDE_CHARS:
      case ET_WCHAR_STRING:
      case ET_SEQUENCE:
      case ET_VARBINARY:
        refused = "Variable-length field in oid";
        break;
    }
    if (refused != nullptr) m_err->err(refused);
    size = checkedSize(size + el, s);
  }
  s.m_layout.c.m_size = (int)size;
  s.m_layout.c.m_align = 1;
  s.m_layout.u.m_size = (int)size;
  s.m_layout.u.m_align = 1;
  return (int)size;
}

void GenOutput::fieldLayout(Struct& s, Field& f, FldLayout& c, FldLayout& u) {
  const Struct& t = *f.m_pstruct;
  const bool packed = s.m_is_packed;
  const Layout& tc = t.m_layout.c;
  const Layout& tu = t.m_layout.u;
  if (f.m_isOptional || f.m_isVector) {
    // An offset to data outside the fixed part, whatever the element.
    c.m_size = f.m_isOptional ? 2 : 4;
    u.m_size = f.m_isOptional ? 4 : 6;
    c.m_align = packed ? 1 : 2;
    u.m_align = packed ? 1 : 4;
    return;
  }
  c.m_align = packed ? FSize(1) : tc.m_align;
  u.m_align = packed ? FSize(1) : tu.m_align;
  if (!f.m_isArray) {
    c.m_size = tc.m_size;
    u.m_size = tu.m_size;
    return;
  }
  const long long n = f.m_arraySize;
  if (f.m_eltype == "boolean") {
    // One bit an element, rounded up to bytes.
    c.m_size = checkedSize((n + 7) / 8 * (int)alignInt(tc.m_size, c.m_align), s);
    u.m_size = checkedSize((n + 7) / 8 * (int)alignInt(tu.m_size, u.m_align), s);
  } else if (f.m_isDirectStruct || tc.m_size.is_str() || tu.m_size.is_str()) {
    FSize cs = tc.m_size;
    FSize us = tu.m_size;
    c.m_size = getArraySize(cs, (int)n);
    u.m_size = getArraySize(us, (int)n);
  } else {
    // Each element is rounded up to its alignment: a struct's own size is not.
    c.m_size = checkedSize((int)alignInt(tc.m_size, c.m_align) * n, s);
    u.m_size = checkedSize((int)alignInt(tu.m_size, u.m_align) * n, s);
  }
}

bool GenOutput::layout(Struct& top, int start, Class* cls) {
  mvector<LayoutFrame> stack;
  // Opens one struct: its owner, then either nothing (finished, or a base
  // type), a frame that spreads the owner, or a frame that lays it out.
  auto open = [&](Struct& s, int st, Class* owner) {
    const bool added = owner != nullptr && addOwner(s, owner);
    if (!isStructType(s)) s.m_layout.m_finished = true;
    LayoutFrame fr;
    fr.s = &s;
    fr.start = st;
    fr.cls = owner;
    if (s.m_layout.m_finished) {
      // A struct that already has this owner passed it down when it got it.
      if (!added) return;
      fr.spreading = true;
      stack.push_back(fr);
      return;
    }
    if (s.m_layout.m_inuse) m_err->err("recursive definition of " + UT::Q(s.m_name));
    s.m_layout.m_inuse = true;
    // Every field gets one slot in each layout: no growth, no spare capacity.
    s.m_layout.c.v_fldOrder.reserve(s.v_field.size());
    s.m_layout.u.v_fldOrder.reserve(s.v_field.size());
    stack.push_back(fr);
  };

  open(top, start, cls);
  while (stack.size() > 0) {
    LayoutFrame& fr = stack.back();  // stale after the next open()
    Struct& s = *fr.s;
    Class* owner = fr.cls;
    if (fr.spreading) {
      while (fr.next < s.v_field.size() && !isStructType(*s.v_field[fr.next].m_pstruct)) fr.next++;
      if (fr.next == s.v_field.size()) {
        stack.pop_back();
        continue;
      }
      Struct& nested = *s.v_field[fr.next++].m_pstruct;
      open(nested, 0, owner);
      continue;
    }
    if (fr.next == s.v_field.size()) {
      const int st = fr.start;
      stack.pop_back();
      Layout2& l2 = s.m_layout;
      // A direct struct keeps its declared order: it must match the target's own struct.
      if (!m_nosort && !s.m_isDirectStruct) {
        const auto key = [](const FldLayout& r) { return r.sortKey(); };
        sort_vector_by_key(l2.c.v_fldOrder, key);
        sort_vector_by_key(l2.u.v_fldOrder, key);
      }
      layout(l2.c, st, &s);
      layout(l2.u, st, &s);
      for (unsigned int i = 0; i < l2.c.v_fldOrder.size(); i++) {
        l2.c.v_fldOrder[i].m_ref->m_c_layout = &l2.c.v_fldOrder[i];
        l2.u.v_fldOrder[i].m_ref->m_u_layout = &l2.u.v_fldOrder[i];
      }
      l2.m_finished = true;
      l2.m_inuse = false;
      continue;
    }
    Field& f = s.v_field[fr.next];
    if (!fr.nestedDone && isStructType(*f.m_pstruct)) {
      fr.nestedDone = true;
      open(*f.m_pstruct, 0, owner);
      continue;
    }
    fr.nestedDone = false;
    fr.next++;
    if (f.m_pstruct->m_category == ET_REF && m_sc.m_oid_sizeof_uplimit == 0)
      IErrReporter::panic("oid size unknown", false);
    FldLayout c;
    FldLayout u;
    c.m_ref = &f;
    u.m_ref = &f;
    fieldLayout(s, f, c, u);
    update_layout_strings(c);
    update_layout_strings(u);
    s.m_layout.c.v_fldOrder.push_back(c);
    s.m_layout.u.v_fldOrder.push_back(u);
  }
  return true;
}

void GenOutput::layout(Layout& l, int start, Struct* s) {
  FSize pos(start);
  int largest = 1;
  Struct* direct = nullptr;
  FldLayout* last = nullptr;
  for (unsigned int i = 0; i < l.v_fldOrder.size(); i++) {
    FldLayout& rec = l.v_fldOrder[i];
    const int align = rec.m_align;
    if (align > largest) largest = align;
    if (!pos.is_str() && (align == 2 || align == 4 || align == 8))
      checkedSize(((long long)pos.m_size_n + align - 1) / align * align, *s);  // room to align
    pos = alignInt(pos, rec.m_align);
    rec.m_offset = pos;
    checkedSize((long long)pos.m_size_n + rec.m_size.m_size_n, *s);
    pos += rec.m_size;
    rec.update_strings();
    Struct* container = rec.m_ref->m_containerStruct;
    if (container != nullptr && container->m_isDirectStruct) direct = container;
    if (container != nullptr && container->m_hasDirectStruct) last = &rec;
    if (!rec.m_isDirectStruct) continue;
    // Direct fields follow each other without alignment: the struct they
    // live in is aligned to 1. The first one is at "0", even behind an oid.
    if (i == 0) {
      rec.m_offset = mstring("0");
    } else if (l.v_fldOrder[i - 1].m_isDirectStruct) {
      const FldLayout& p = l.v_fldOrder[i - 1];
      const mstring offs = p.m_offset;
      const mstring size = p.m_size;
      rec.m_offset = Frag().set("offs", offs).set("size", size).fill(kSumText);
    } else {
      FSize offs = l.v_fldOrder[i - 1].m_offset;
      offs += l.v_fldOrder[i - 1].m_size;
      rec.m_offset = offs;
    }
  }
  // No tail padding: the fixed part ends with its last field.
  l.m_size = pos;
  l.m_align = direct != nullptr ? 1 : largest;
  if (last != nullptr) {
    const mstring offs = last->m_offset;
    const mstring size = last->m_size;
    l.m_size = Frag().set("offs", offs).set("size", size).fill(kSumText);
  } else if (direct != nullptr) {
    l.m_size = Frag().set("struct", direct->m_name).fill(kStructSizeText);
  }
}

void GenOutput::dump(IOutStream& os) { m_sc.dump(os, 0); }
